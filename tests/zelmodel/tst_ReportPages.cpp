#include "CommandStage.h"
#include "ReportBrowser.h"
#include "ReportFolder.h"

#include "support/ZelTest.h"

/// The report's pages in a browser, opened from the disk as a reader opens them.
class tst_ReportPages : public ZelTest
{
    Q_OBJECT
private slots:
    void initTestCase();
    void searchLeadsToTheRecord();
    void withoutScripts();
    void colours_data();
    void colours();
    void print();
    void hostileTextsStayTexts_data();
    void hostileTextsStayTexts();
    void nothingRunsOverOnAPhone_data();
    void nothingRunsOverOnAPhone();

private:
    /// Once what the expression says is true; false when it never is.
    bool becomesTrue(const QString &expression);

    ReportBrowser m_browser;
};

void tst_ReportPages::initTestCase()
{
    QVERIFY2(m_browser.isRunning(), "Chromium does not start; scripts/setup test installs it.");
}

bool tst_ReportPages::becomesTrue(const QString &expression)
{
    return QTest::qWaitFor([&] { return m_browser.evaluate(expression).toBool(); }, 60000);
}

void tst_ReportPages::searchLeadsToTheRecord()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    QVERIFY(m_browser.open(stage.path("r/index.html"), 1000));
    // By keys alone: "/" leads to the box, Down to the results, Enter to the record.
    m_browser.evaluate("document.dispatchEvent(new KeyboardEvent('keydown', {key: '/'}))");
    m_browser.type("b(a!1");
    QVERIFY(becomesTrue("document.querySelectorAll('#found a').length > 1"));
    QVERIFY(becomesTrue("document.querySelector('#found p').textContent.endsWith(' found')"));
    QCOMPARE(m_browser.evaluate("document.querySelector('#found p').ariaLive").toString(),
        QString("polite"));
    m_browser.press("ArrowDown", 40);
    QVERIFY(becomesTrue("document.activeElement.matches('#found li:first-child a')"));
    m_browser.press("ArrowUp", 38);
    QVERIFY(becomesTrue("document.activeElement.id === 'query'"));
    m_browser.press("Escape", 27);
    QVERIFY(becomesTrue("document.querySelector('#found').hidden"));
    m_browser.type("mark"); // the only reaction of that name
    QVERIFY(becomesTrue("document.querySelectorAll('#found a').length === 1"));
    m_browser.press("Enter", 13);
    QVERIFY(becomesTrue("location.href.endsWith('reactions.html#trn1')"));
    QVERIFY(becomesTrue("document.querySelector(':target h3')?.textContent.startsWith('mark')"));
    m_browser.evaluate("document.querySelector('#trn1 .species a').click()");
    QVERIFY(becomesTrue("/\\/(species|patterns).html#cpa\\d+$/.test(location.href)"));
    QVERIFY(becomesTrue("[...document.images].every((i) => { i.loading = 'eager'; "
                        "return i.complete && i.naturalWidth > 0; })"));
}

void tst_ReportPages::withoutScripts()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    QFile script(stage.path("r/search.js"));
    QVERIFY(script.remove());
    QVERIFY(m_browser.open(stage.path("r/reactions.html"), 1000));
    QCOMPARE(m_browser.evaluate("document.querySelectorAll('input, button').length").toInt(-1), 0);
    QCOMPARE(m_browser.evaluate("document.querySelectorAll('.site nav a').length").toInt(), 6);
    m_browser.evaluate("document.querySelector('#cai1 .species a').click()");
    QVERIFY(becomesTrue("document.querySelector(':target')?.id.startsWith('cpa')"));
}

void tst_ReportPages::colours_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void tst_ReportPages::colours()
{
    QFETCH(const bool, isDark);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    QVERIFY(m_browser.open(stage.path("r/reactions.html"), 1000, isDark));
    // The ratio of luminances as accessibility guidelines define it; 4.5 is theirs, too.
    m_browser.evaluate(
        "luminance = (c) => { const [r, g, b] = c.match(/[\\d.]+/g).map((v) => { v /= 255; "
        "  return v <= 0.03928 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4; }); "
        "  return 0.2126 * r + 0.7152 * g + 0.0722 * b; };"
        "ground = (e) => { const c = getComputedStyle(e).backgroundColor; "
        "  return /, 0\\)$/.test(c) ? ground(e.parentElement) : c; };"
        "contrast = (e) => { const a = [luminance(getComputedStyle(e).color), "
        "  luminance(ground(e))].sort(); return (a[1] + 0.05) / (a[0] + 0.05); };");
    QCOMPARE(m_browser.evaluate("luminance(ground(document.body)) < 0.2").toBool(), isDark);
    for (const char *element : {"h1", "h3", "small", ".model", "dt", "dd", "dd a", "code",
             ".caption", ".sign", ".site a", ".site a[aria-current]"}) {
        const double contrast =
            m_browser.evaluate(QString("contrast(document.querySelector('%1'))").arg(element))
                .toDouble();
        QVERIFY2(contrast >= 4.5, element);
    }
    // Black lines stand on a light ground.
    QVERIFY(m_browser.evaluate("luminance(ground(document.querySelector('.reaction'))) > 0.8")
                .toBool());
}

void tst_ReportPages::print()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    QVERIFY(m_browser.open(stage.path("r/species.html"), 1000, true));
    m_browser.setMedia("print", true);
    const auto style = [this](const char *element, const char *property) {
        return m_browser
            .evaluate(
                QString("getComputedStyle(document.querySelector('%1')).%2").arg(element, property))
            .toString();
    };
    QCOMPARE(style("body", "backgroundColor"), QString("rgb(255, 255, 255)"));
    QCOMPARE(style("body", "color"), QString("rgb(0, 0, 0)"));
    QCOMPARE(style(".site", "display"), QString("none"));
    QCOMPARE(style(".record", "breakInside"), QString("avoid"));
}

void tst_ReportPages::hostileTextsStayTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("element") << QString("<img src=x onerror=\"ran = 1\"><script>ran = 1</script>");
    QTest::newRow("end of a script") << QString("</script><script>ran = 1</script>");
    QTest::newRow("end of a title") << QString("</title></bdi><script>ran = 1</script><!--");
    QTest::newRow("attribute") << QString("\" autofocus onfocus=\"ran = 1\" x='");
    QTest::newRow("address") << QString("javascript:ran = 1");
    QTest::newRow("text of a script") << QString("\\\"]]});ran = 1;//");
}

void tst_ReportPages::hostileTextsStayTexts()
{
    QFETCH(const QString, text);
    CommandStage stage;
    QVERIFY(stage.makeModelCalled("m.zel", text));
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    const QStringList pages = ReportFolder(stage.path("r")).pages();
    QVERIFY(pages.size() >= 4);
    for (const QString &page : pages) {
        QVERIFY(m_browser.open(stage.path("r/" + page), 1000));
        m_browser.evaluate("document.querySelector('#query').focus()");
        m_browser.type("ran");
        QVERIFY(becomesTrue("document.querySelectorAll('#found a').length > 0"));
        QCOMPARE(m_browser.evaluate("typeof ran").toString(), QString("undefined"));
        // The page's own script, and the index that it asked for.
        QCOMPARE(
            m_browser.evaluate("[...document.scripts].map((s) => s.getAttribute('src')).join()")
                .toString(),
            QString("search.js,search-index.js"));
        QVERIFY(m_browser
                    .evaluate("[...document.images].every((i) => "
                              "i.getAttribute('src').startsWith('pictures/'))")
                    .toBool());
    }
    QVERIFY(m_browser.evaluate("document.body.innerText").toString().contains(text.left(20)));
}

void tst_ReportPages::nothingRunsOverOnAPhone_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << QString();
    QTest::newRow("long word") << QString(10000, u'W');
    QTest::newRow("long line") << QString("- ").repeated(5000);
}

void tst_ReportPages::nothingRunsOverOnAPhone()
{
    QFETCH(const QString, text);
    CommandStage stage;
    if (text.isEmpty())
        QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    else
        QVERIFY(stage.makeModelCalled("m.zel", text));
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    for (const QString &page : ReportFolder(stage.path("r")).pages()) {
        QVERIFY(m_browser.open(stage.path("r/" + page), 360));
        m_browser.evaluate("document.querySelectorAll('details').forEach((d) => d.open = true)");
        QCOMPARE(m_browser.evaluate("document.documentElement.scrollWidth").toInt(), 360);
    }
}

ZEL_TEST(tst_ReportPages)
#include "tst_ReportPages.moc"
