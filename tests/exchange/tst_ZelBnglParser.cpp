#include "support/ZelTest.h"

#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/export/ZelBnglWriter.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

namespace {

QByteArray block(const char *name, const QByteArray &entry)
{
    return QByteArray("begin ") + name + "\n  " + entry + "\nend " + name + '\n';
}

/// An entry of a block, and what it reads as.
void addEntry(const char *row, const char *name, const char *entry, const char *canonical)
{
    QTest::newRow(row) << block(name, entry) << block(name, canonical);
}

void addRule(const char *row, const char *entry, const char *canonical)
{
    addEntry(row, "reaction rules", entry, canonical);
}

void addFault(const char *row, const char *name, const char *entry, int column, const char *message)
{
    // Entries are indented by two.
    QTest::newRow(row) << block(name, entry) << 2 << column + 2 << QString::fromUtf8(message);
}

} // namespace

class tst_ZelBnglParser : public ZelTest
{
    Q_OBJECT

private slots:
    void readsEveryForm_data();
    void readsEveryForm();
    void reportsPlaceAndRemedy_data();
    void reportsPlaceAndRemedy();
    void joinsTheEndsOfBonds();
    void keepsEntriesAroundABrokenOne();
    void limitsListOfErrors();
    void refusesWhatIsTooDeepOrTooLong();
    void refusesUnreadableFiles();
    void survivesDamagedText();
};

void tst_ZelBnglParser::readsEveryForm_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QByteArray>("canonical");

    addEntry("parameter with equals sign", "parameters", "k=1.5e-3", "k 1.5e-3");
    addEntry("parameter with number and label", "parameters", "3 a: k .5 # half", "k .5");
    addEntry(
        "expression", "parameters", "k -(a+b)^2 / ( 3*ln( x ) ) ; ", "k -(a+b)^2 / ( 3*ln( x ) )");
    addEntry("condition", "parameters", "k if(a>=1 && !(b==2),x**2,_pi)",
        "k if(a>=1 && !(b==2),x**2,_pi)");
    addEntry("volume and membrane", "compartments", "PM 2 sa * w  EC # membrane", "PM 2 sa * w EC");
    addEntry("molecule type", "molecule types", "1 A( b , c~0~1~pY ,c )", "A(b,c~0~1~pY,c)");
    addEntry("bare molecule type", "molecule types", "A", "A()");
    addEntry("population type", "population types", "P()", "P()");
    addEntry("species without amount", "seed species", "A(b~?)", "A(b~?) 0");
    addEntry("fixed species", "seed species", "$A(b) n0*2", "$A(b) n0*2");
    addEntry("generated species", "seed species", "7 @CP::$Sink()   0", "7 @CP::$Sink() 0");
    addEntry("bonds by name", "seed species", "A(x!ab).B(y~P!ab)@c 1", "A(x!ab).B(y~P!ab)@c 1");
    addEntry("two bonds on a site", "seed species", "A(x!1!2).B(y!1).B(y!2) 1",
        "A(x!1!2).B(y!1).B(y!2) 1");
    addEntry("amount that begins with a dot", "seed species", "A .5", "A() .5");
    addEntry("labels and compartment", "seed species", "%x@c:A(b%1)%y@d 1", "%x@c::A(b%1)%y@d 1");
    addEntry(
        "attributes", "seed species", "{MatchOnce}A(b{n=1}){k=2} 1", "{MatchOnce}A(b{n=1}){k=2} 1");
    addEntry("observable of several patterns", "observables", "Molecules X A(b!+),B(c!?) C",
        "Molecules X A(b!+), B(c!?), C()");
    addEntry("observable with quantifiers", "observables", "species 2X R.R==2, A >= 3,B<1",
        "Species 2X R().R()==2, A()>=3, B()<1");
    addEntry("observable of an old network", "observables", "2 X A(b!1).B(a!1), C",
        "Molecules X A(b!1).B(a!1), C()");
    addEntry("function without arguments", "functions", "f() k*X", "f() = k*X");
    addEntry("local function", "functions", "1 f(x, y) = k*X(x)/y", "f(x,y) = k*X(x)/y");
    addEntry("table function", "functions", "f() = tfun('a#b.txt', t)", "f() = tfun('a#b.txt', t)");
    addEntry(
        "energy pattern", "energy patterns", "e1: A(b!1).B(a!1) G/RT", "e1: A(b!1).B(a!1) G/RT");
    addEntry("population map", "population maps", "A(b)->P() k", "A(b) -> P() k");

    addRule("rule", "A(b)+B(a)->A(b!1).B(a!1) k", "A(b) + B(a) -> A(b!1).B(a!1) k");
    addRule("reversible rule", "A() <-> B() k1 , k2*3", "A() <-> B() k1, k2*3");
    addRule(
        "reversible rule of one rate law", "A <-> B Arrhenius(p,E)", "A() <-> B() Arrhenius(p,E)");
    addRule("rule with number and name", "2 R1: A() -> B() k", "R1: A() -> B() k");
    addRule("name that begins with a number", "2 1 set: A() -> B() k", "0 1 set: A() -> B() k");
    addRule("rule name with blanks", "bind (A) to-B: A -> B k", "bind (A) to-B: A() -> B() k");
    addRule("production", "0 -> A() k", "0 -> A() k");
    addRule("numbered production", "12 0->A() k", "0 -> A() k");
    addRule("degradation", "A() -> 0 k", "A() -> 0 k");
    addRule("trash", "A + B -> Trash 0.5 DeleteMolecules", "A() + B() -> 0 0.5 DeleteMolecules");
    addRule(
        "compartments before patterns", "@PM:R.R -> @EM::R.R k", "@PM::R().R() -> @EM::R().R() k");
    addRule("continued line", "R1: \\\n A() \\ # why\r\n -> B() k\\\n *2", "R1: A() -> B() k *2");
    addRule("rate laws", "A <-> B Sat(k,K), Hill(V,K,n)", "A() <-> B() Sat(k,K), Hill(V,K,n)");
    addRule("negative rate", "A -> B -k", "A() -> B() -k");
    addRule("modifiers", "A -> B k MoveConnected TotalRate priority=2*n MatchOnce",
        "A() -> B() k MoveConnected TotalRate priority=2*n MatchOnce");
    addRule("included and excluded",
        "A -> B k include_reactants(1,A(b!1).B(a!1), C) exclude_products( 2 ,D)",
        "A() -> B() k include_reactants(1,A(b!1).B(a!1),C()) exclude_products(2,D())");
    addRule("local function", "%x:A(b~0) -> %x:A(b~1) f(x)", "%x::A(b~0) -> %x::A(b~1) f(x)");

    addEntry("reactions of a network", "reactions", "3 1,1 0 0.5*kab #Rule3", "3 1,1 0 0.5*kab");
    addEntry("group of a network", "groups", "2 B 3,2*4 , 5", "2 B 3,2*4,5");
    QTest::newRow("long and old block names")
        << QByteArray("begin molecule_types\nA()\nend molecule types\nbegin species\nA() 1\nend "
                      "seed_species\nbegin Reaction Rules\nA->0 1\nend reaction_rules")
        << QByteArray(
               "begin molecule types\n  A()\nend molecule types\nbegin seed species\n  A() 1\nend "
               "seed species\nbegin reaction rules\n  A() -> 0 1\nend reaction rules\n");
    QTest::newRow("blocks in any order, twice, in a model")
        << QByteArray(
               "begin model\nbegin seed species\nA 1\nend seed species\nbegin parameters\na 1\n"
               "end parameters\nbegin parameters\nb 2\nend parameters\nend model\n")
        << QByteArray(
               "begin parameters\n  a 1\n  b 2\nend parameters\nbegin seed species\n  A() 1\nend "
               "seed species\n");
    QTest::newRow("actions in and out of a block")
        << QByteArray(
               "\xef\xbb\xbfversion(\"2.2\");setOption(\"a\",')(')\nbegin actions\nrun({a=>[1,\n"
               "  2]}) # one\nend actions\nwrite();\n")
        << QByteArray("version(\"2.2\")\nsetOption(\"a\",')(')\nrun({a=>[1,\n  2]})\nwrite()\n");
    QTest::newRow("line ends of all systems")
        << QByteArray("begin parameters\ra 1\r\nb 2\nend parameters")
        << QByteArray("begin parameters\n  a 1\n  b 2\nend parameters\n");
    QTest::newRow("comments of any encoding")
        << block("parameters", "a 1 # \xb5m \\\n  b 2") << block("parameters", "a 1\n  b 2");
}

void tst_ZelBnglParser::readsEveryForm()
{
    QFETCH(const QByteArray, source);
    QFETCH(const QByteArray, canonical);
    const ZelBnglModel model = ZelBnglParser::parse(source, "m.bngl");
    QCOMPARE(model.errorTexts(), QStringList());
    const QByteArray written = ZelBnglWriter::write(model);
    QCOMPARE(written, canonical);
    const ZelBnglModel again = ZelBnglParser::parse(written, "m.bngl");
    QCOMPARE(again.errorTexts(), QStringList());
    QCOMPARE(ZelBnglWriter::write(again), canonical);
}

void tst_ZelBnglParser::reportsPlaceAndRemedy_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("message");

    addFault("open molecule", "seed species", "A(b,c 10", 7,
        "\"10\" stands behind a component of the molecule \"A\". Write \",\" before the next "
        "component or "
        "\")\" behind the last.");
    addFault("molecule open at the end of the line", "seed species", "A(b", 4,
        "The molecule \"A\" is not closed. Add \")\" behind its last component.");
    addFault(
        "comma without component", "seed species", "A(b,) 1", 5, "\")\" stands where a component");
    addFault("digit first", "seed species", "A().2B() 1", 5, "The name of a molecule cannot begin");
    addFault("letter of another script", "seed species", "A(\xc3\xa9\xc3\xa9,) 1", 3,
        "The character U+00E9 stands where a component");
    addFault(
        "columns count characters", "seed species", "A{\xc3\xa9\xc3\xa9} 1 1", 9, "\"1\" follows");
    addFault("two states", "seed species", "A(b~0~1) 1", 6, "The component \"b\" has two states");
    addFault("state without name", "molecule types", "A(b~)", 5,
        "\")\" stands where the name of a state");
    addFault("bond in a type", "molecule types", "A(b!1)", 4,
        "A molecule type says nothing about bonds");
    addFault("bond without label", "seed species", "A(b!) 1", 5, "\")\" stands behind \"!\"");
    addFault("dangling bond", "seed species", "A(b!1,c!2).B(a!1) 1", 8,
        "The bond \"2\" has only one end in its pattern.");
    addFault("bond of three ends", "seed species", "A(b!1).B(a!1,c!1) 1", 15,
        "The bond \"1\" has more than");
    addFault(
        "bond to itself", "seed species", "A(b!1!1) 1", 6, "The bond \"1\" begins and ends at");
    addFault("compartment without colon", "seed species", "@c A() 1", 3, "A blank follows \"@c\"");
    addFault("two compartments", "seed species", "A@c()@d 1", 6,
        "The molecule \"A\" has two compartments");
    addFault("unclosed attribute", "seed species", "A(b){x 1", 5, "This \"{\" is never closed");
    addFault("no value", "parameters", "k", 2, "In the value, the end of the line stands where");
    addFault(
        "two operators", "parameters", "k 2*/3", 5, "In the value, \"/\" stands where a number");
    addFault(
        "number runs into name", "parameters", "k 2x", 3, "In the value, \"x\" follows a number");
    addFault(
        "exponent without digits", "parameters", "k 2e", 3, "In the value, a number has no digits");
    addFault("open parenthesis", "parameters", "k 2*(a+(b)", 5, "In the value, this parenthesis");
    addFault("comma in a group", "parameters", "k (a,b)", 5,
        "In the value, \",\" stands in parentheses");
    addFault(
        "closing parenthesis too much", "parameters", "k a)", 4, "\")\" follows where the entry");
    addFault("block word for a name", "parameters", "3 end 5", 3,
        "The name of a parameter cannot be \"end\"");
    addFault("dimensions", "compartments", "c 4 1", 3, "\"4\" stands where the dimensions");
    addFault("kind of observable", "observables", "Atoms X A()", 1,
        "An observable begins with \"Atoms\"");
    addFault("quantifier", "observables", "Species X A==b", 14,
        "\"b\" stands where the number of matches");
    addFault("arguments", "functions", "f(x y) 1", 5, "\"y\" stands behind an argument");
    addFault("no arrow", "reaction rules", "A B -> C k", 3, "\"B\" stands where \"+\" or an arrow");
    addFault("empty side", "reaction rules", "A -> k", 7, "This rule has no rate.");
    addFault("no rate before modifier", "reaction rules", "A -> B DeleteMolecules", 8,
        "This rule has no rate");
    addFault(
        "second rate one way", "reaction rules", "A -> B k1,k2", 10, "A rule that goes one way");
    addFault(
        "rates without comma", "reaction rules", "A <-> B k1 k2", 12, "\"k2\" is nothing that can");
    addFault(
        "priority", "reaction rules", "A -> B k priority 5", 19, "Behind \"priority\" a \"=\"");
    addFault("number of the reactant", "reaction rules", "A -> B k exclude_reactants(A,B)", 28,
        "\"A\" stands where the number of the reactant or product is missing");
    addFault(
        "reversible map", "population maps", "A() <-> P() k", 5, "A population map goes one way");
    addFault("species number", "reactions", "1 1,x 2 k", 5,
        "\"x\" stands where the number of a species");
    addFault("species number and rate in one", "reactions", "1 1 2/k", 6,
        "\"/\" follows the numbers of species at once");
    addFault("reaction without number", "reactions", "0 1 2 k", 1, "This reaction has no number.");
    addFault("on a continued line", "reaction rules", "A \\\n B -> C k", 0, "");

    const auto addWhole = [](const char *row, const char *source, int line, int column,
                              const char *message) {
        QTest::newRow(row) << QByteArray(source) << line << column << QString::fromUtf8(message);
    };
    addWhole("empty file", "", 1, 1, "The file holds no block.");
    addWhole("prose", "\nDear all,\n", 2, 1, "\"Dear\" stands outside of all blocks");
    addWhole(
        "unknown block", "begin  gizmos\n???\nend gizmos\n", 1, 8, "There is no kind of block");
    addWhole("nameless block", "begin\nend\n", 1, 6, "A block begins without a name.");
    addWhole("block never closed", "\nbegin parameters\nk 1\n", 2, 1,
        "The block \"parameters\", begun in line 2, is still open.");
    addWhole("block in a block", "begin parameters\nbegin actions\nend actions\n", 2, 1,
        "The block \"parameters\", begun in line 1, is still open.");
    addWhole("other block ended", "begin parameters\nend actions\n", 2, 1,
        "This ends \"actions\", but the open block is \"parameters\" of line 1.");
    addWhole("end too much", "begin parameters\nend parameters\nend parameters\n", 3, 1,
        "No block is open");
    addWhole("model never closed", "begin model\nbegin actions\nend actions\n", 1, 1,
        "The model is never");
    addWhole(
        "model in a model", "begin model\nbegin model\nend model\n", 2, 1, "A model begins inside");
    addWhole(
        "action never closed", "run({a=>(1})\n", 1, 11, "\"}\" closes a bracket of another kind.");
    addWhole("action open before a block", "run({\nbegin parameters\nend parameters\n", 1, 5,
        "This bracket is never closed. Add a \"}\".");
    addWhole(
        "action open to the end", "run(\n", 1, 4, "This bracket is never closed. Add a \")\".");
    addWhole("open text", "run(\"a)\n", 1, 5, "This text is never closed.");
}

void tst_ZelBnglParser::reportsPlaceAndRemedy()
{
    QFETCH(const QByteArray, source);
    QFETCH(const int, line);
    QFETCH(const int, column);
    QFETCH(const QString, message);
    const ZelBnglModel model = ZelBnglParser::parse(source, "dir/m.bngl");
    const QStringList texts = model.errorTexts();
    QCOMPARE(texts.size(), 1);
    if (message.isEmpty()) {
        QVERIFY2(texts.first().startsWith(QLatin1String("dir/m.bngl:3:2: \"B\" stands")),
            qPrintable(texts.first()));
        return;
    }
    const QString expected =
        QStringLiteral("dir/m.bngl:%1:%2: %3").arg(line).arg(column).arg(message);
    QVERIFY2(texts.first().startsWith(expected), qPrintable(texts.first()));
}

void tst_ZelBnglParser::joinsTheEndsOfBonds()
{
    const ZelBnglModel model = ZelBnglParser::parse(
        block("seed species", "A(x!7,y!b!7).B(z!b) 1\n  A(x!7,y!+).B(z!7) 1"), "m.bngl");
    QVERIFY(model.isValid());
    QList<quint32> partners;
    for (const ZelBnglBond &bond : model.bonds)
        partners.append(bond.partner);
    QCOMPARE(partners, (QList<quint32>{1, 2, 0, 1, 5, ZelBnglBond::NoPartner, 3}));
}

void tst_ZelBnglParser::keepsEntriesAroundABrokenOne()
{
    const QByteArray source(
        "begin seed species\nA(b~0) 1\nA(c,d!1).B(a!2 2\nB(a) 3 4\nC 5\nend seed "
        "species\nbegin zzz\n1\nend zzz\nbegin parameters\nk 1\nend parameters\n");
    const ZelBnglModel model = ZelBnglParser::parse(source, "m.bngl");
    QList<int> lines;
    for (const ZelBnglError &error : model.errors)
        lines.append(error.place.line);
    QCOMPARE(lines, (QList<int>{3, 4, 7}));
    QCOMPARE(ZelBnglWriter::write(model),
        block("parameters", "k 1") + block("seed species", "A(b~0) 1\n  C() 5"));
    QCOMPARE(model.components.size(), size_t(1));
    QCOMPARE(model.bonds.size(), size_t(0));
}

void tst_ZelBnglParser::limitsListOfErrors()
{
    for (const char *line : {"?\n", "begin parameters\n", "a(\nbegin x\nend x\n"}) {
        const ZelBnglModel model =
            ZelBnglParser::parse(QByteArray(line).repeated(100000), "m.bngl");
        QCOMPARE(model.errors.size(), size_t(ZelBnglParser::MaxErrors + 1));
        QVERIFY(model.errors.back().message.startsWith(QLatin1String("There are more errors")));
    }
}

void tst_ZelBnglParser::refusesWhatIsTooDeepOrTooLong()
{
    const auto firstError = [](const QByteArray &source) {
        return ZelBnglParser::parse(source, "m.bngl").errorTexts().value(0);
    };
    const auto nested = [](int depth) {
        return block("parameters", "k " + QByteArray(depth, '(') + '1' + QByteArray(depth, ')'));
    };
    QCOMPARE(firstError(nested(200)), QString());
    QVERIFY(firstError(nested(201))
                .startsWith(QLatin1String("m.bngl:2:205: In the value, parentheses are")));
    QVERIFY(firstError(nested(5000000)).startsWith(QLatin1String("m.bngl:2:205:")));
    QVERIFY(firstError(QByteArray(1000000, '{')).startsWith(QLatin1String("m.bngl:1:1:")));
    QVERIFY(firstError("f" + QByteArray(1000000, '('))
                .startsWith(QLatin1String("m.bngl:1:202: Brackets")));
    QVERIFY(firstError(block("parameters", QByteArray(256, 'k') + " 1"))
                .startsWith(QLatin1String("m.bngl:2:3: The name \"kkkk")));
    QVERIFY(firstError(block("parameters", "k " + QByteArray(1 << 20, '-') + '1'))
                .startsWith(QLatin1String("m.bngl:2:3: This entry has more than")));
    // What stands between two entries is part of neither.
    QCOMPARE(firstError(block("parameters", "k 1\n#" + QByteArray(1 << 20, '-'))), QString());
    QVERIFY(firstError(QByteArray(ZelBnglParser::MaxLength + 1, ' '))
                .startsWith(QLatin1String("m.bngl: The file is longer than 64 MB.")));
    QVERIFY(firstError("\xff\xfe"
                       "b")
                .startsWith(QLatin1String("m.bngl:1:1: The file is written in UTF-16.")));
}

void tst_ZelBnglParser::refusesUnreadableFiles()
{
    const QTemporaryDir dir;
    const QString missing = dir.filePath("missing.bngl");
    QCOMPARE(ZelBnglParser::parseFile(missing).errorTexts(),
        QStringList{
            missing + QLatin1String(": There is no such file. Check the name and the folder.")});
    QCOMPARE(ZelBnglParser::parseFile(dir.path()).errorTexts(),
        QStringList{dir.path() + QLatin1String(": This is no file. Choose a model file.")});
}

void tst_ZelBnglParser::survivesDamagedText()
{
    const QByteArray whole =
        "setOption(\"a\",{b=>[1,2]})\nbegin model\nbegin parameters\n k1 (a+2)*ln(x)/3e-5\nend "
        "parameters\n"
        "begin molecule types\nA(b~0~1,c)\nend molecule types\nbegin seed species\n"
        "@c:A(b~0!1,c).B(a!1)@d{x} 1\nend seed species\nbegin observables\nSpecies X "
        "A.A==2,B(a!+)\n"
        "end observables\nbegin reaction rules\nR1: A(b) + B(a) <-> A(b!1).B(a!1) k1,f(x) \\\n "
        "include_reactants(1,A(b!?)) priority=2\nend reaction rules\nend model\nrun()\n";
    QRandomGenerator random(20240611);
    const QByteArray signs("()!~.,+-<>@:%${}=\\#\"'\n\r\0 0A_eb\xc3", 32);
    for (int round = 0; round < 3000; ++round) {
        QByteArray text = whole;
        for (int i = random.bounded(1, 6); i > 0; --i) {
            const int at = random.bounded(int(text.size()));
            switch (random.bounded(3)) {
            case 0:
                text[at] = signs[random.bounded(int(signs.size()))];
                break;
            case 1:
                text.insert(at, signs[random.bounded(int(signs.size()))]);
                break;
            default:
                text.remove(at, random.bounded(1, 20));
                break;
            }
        }
        const ZelBnglModel model = ZelBnglParser::parse(text, "m.bngl");
        for (const ZelBnglError &error : model.errors)
            QVERIFY2(error.place.line > 0 && error.place.column > 0, text.constData());
        // What was accepted must be whole: it can be written, and reads back as itself.
        const QByteArray written = ZelBnglWriter::write(model);
        if (!written.isEmpty()) {
            const ZelBnglModel again = ZelBnglParser::parse(written, "m.bngl");
            QVERIFY2(again.isValid(),
                qPrintable(again.errorTexts().join(u'\n') + QString::fromLatin1(written)));
            QCOMPARE(ZelBnglWriter::write(again), written);
        }
    }
}

ZEL_TEST(tst_ZelBnglParser)

#include "tst_ZelBnglParser.moc"
