#include "support/ZelTest.h"

#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXml.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXmlScanner.h"

#include <QRandomGenerator>
#include <QXmlStreamReader>

namespace {

constexpr char Written[] = "<!DOCTYPE doc>\n<schema>\n <mol sdcType=\"2\" psiimId=\"mol1\">\n"
                           "  <boundingRect x=\"-6.5\" y=\"1e+02\" w=\"3\" h=\"\"/>\n"
                           "  <mcp psiimId=\"a>b\" ></mcp >\n </mol>\n</schema>\n";

/// The elements with some of their attributes, as a reader tells them.
template <typename Reader>
void list(Reader *reader, QString *out)
{
    *out += u'<' + reader->qualifiedName().toString();
    const auto &attributes = reader->attributes();
    for (const char *name : {"psiimId", "x", "y", "h", "sdcType", "a"}) {
        const QStringView value = attributes.value(QLatin1String(name));
        *out += value.isNull() ? QStringLiteral(" -") : u' ' + value.toString();
    }
    while (SdcXml::readChild(reader))
        list(reader, out);
    *out += u'>';
}

template <typename Reader>
QString list(Reader *reader)
{
    QString out;
    if (SdcXml::readRoot(reader))
        list(reader, &out);
    SdcXml::readToEnd(reader);
    return out;
}

QString listByToolkit(const QString &text, bool *good)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    const QString out = list(&reader);
    *good = !reader.hasError();
    return out;
}

} // namespace

class tst_SdcXmlScanner : public ZelTest
{
    Q_OBJECT
private slots:
    void readsWhatIsPlain_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("plain");
        const auto row = [](const char *name, const char *text, bool plain) {
            QTest::newRow(name) << QString::fromUtf8(text) << plain;
        };
        row("as layouts are written", Written, true);
        row("as state codes are written",
            "<cpx><mol pos=\"1\"><bst id=\"b\" pos=\"1\" /></mol></cpx>", true);
        row("nothing", "", false);
        row("text", "<a>b</a>", false);
        row("an entity", "<a x=\"&amp;\"/>", false);
        row("single quotes", "<a x='1'/>", false);
        row("a comment", "<a><!-- b --></a>", false);
        row("a declaration", "<?xml version=\"1.0\"?><a/>", false);
        row("a document type with content", "<!DOCTYPE a [ <!ENTITY b \"c\"> ]><a/>", false);
        row("a letter beyond ASCII", "<a x=\"\u00e9\"/>", false);
        row("a line in a value", "<a x=\"1\n\"/>", false);
        row("an attribute twice", "<a x=\"1\" x=\"2\"/>", false);
        row("attributes without space", "<a x=\"1\"y=\"2\"/>", false);
        row("crossed elements", "<a><b></a></b>", false);
        row("an open element", "<a><b/>", false);
        row("two roots", "<a/><b/>", false);
        row("deep nesting",
            "<a><a><a><a><a><a><a><a><a><a><a><a><a><a><a><a><a>"
            "</a></a></a></a></a></a></a></a></a></a></a></a></a></a></a></a></a>",
            false);
    }
    void readsWhatIsPlain()
    {
        QFETCH(QString, text);
        QFETCH(bool, plain);
        SdcXmlScanner scanner(text);
        const QString scanned = list(&scanner);
        QCOMPARE(scanner.isPlain(), plain);
        bool good = false;
        const QString expected = listByToolkit(text, &good);
        if (plain)
            QVERIFY(good);
        if (plain)
            QCOMPARE(scanned, expected);
    }

    void skipsElements()
    {
        const QString text = QStringLiteral("<a><b x=\"1\"><c/><c><d/></c></b><e/><f></f></a>");
        SdcXmlScanner scanner(text);
        QStringList names;
        QVERIFY(scanner.readRoot());
        while (scanner.readChild()) {
            names.append(scanner.qualifiedName().toString());
            scanner.skipElement();
        }
        scanner.readToEnd();
        QVERIFY(scanner.isPlain());
        QCOMPARE(names.join(u' '), QStringLiteral("b e f"));
    }

    /// Whatever it takes for plain, the toolkit takes for the same.
    void agreesWithTheToolkit()
    {
        const QString alphabet = QStringLiteral("<>/\"'= ab:x1&;!-?\n\t\u00e9[]D");
        QRandomGenerator random(7);
        int plain = 0;
        for (int i = 0; i < 20000; ++i) {
            QString text = QString::fromLatin1(Written);
            for (int change = random.bounded(3); change >= 0; --change) {
                const int at = random.bounded(int(text.size()));
                const QChar c = alphabet.at(random.bounded(int(alphabet.size())));
                if (const int what = random.bounded(3); what == 0)
                    text.insert(at, c);
                else if (what == 1)
                    text.remove(at, 1 + random.bounded(3));
                else
                    text[at] = c;
            }
            SdcXmlScanner scanner(text);
            const QString scanned = list(&scanner);
            if (!scanner.isPlain())
                continue;
            ++plain;
            bool good = false;
            const QString expected = listByToolkit(text, &good);
            QVERIFY2(good && scanned == expected, qPrintable(text));
        }
        QVERIFY(plain > 1000);
    }
};

ZEL_TEST(tst_SdcXmlScanner)
#include "tst_SdcXmlScanner.moc"
