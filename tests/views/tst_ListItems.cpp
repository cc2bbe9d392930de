#include "ReactionStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/support/zgs.h"

#include <QStandardItem>

#include <memory>

namespace C = ZelDbColumn;

using Record = QHash<int, QString>;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

std::unique_ptr<QStandardItem> itemOf(ZelDbSqliteModel *db, int kind, const QString &psiimId,
    bool withPrefix = true, const QString &note = {}, bool checkShow = false)
{
    return std::unique_ptr<QStandardItem>(zgs::createItem(
        db, QSize(40, 30), {}, psiimId, kind, withPrefix, note, checkShow, {}, nullptr, {}));
}

} // namespace

class tst_ListItems : public ZelTest
{
    Q_OBJECT
private slots:
    void describesEachKind_data()
    {
        rows<int, QString, QString, bool>({"kind", "psiimId", "expected", "hasIcon"},
            {{"molecule", {2, "mol1", "Molecule: L", false}},
                {"molecule interaction", {3, "mli1", "Molecule Interaction: L-R", false}},
                {"complex species", {4, "cpx1", "Complex Species: L", false}},
                {"complex with a degradation",
                    {13, "cpa1", "Complex: L  - - ( degradation rate: 0.25/s )", false}},
                {"complex without", {13, "cpa2", "Complex: R", false}},
                {"production", {18, "pdn1", "Production: make  - - ( m=1, n=2, k=0.5 )", true}},
                {"transformation",
                    {6, "trn1", "Transformation: switch  - - ( rate: 1.00e+00 /s )", true}},
                {"association",
                    {15, "cai1", "Association: bind  - - ( rate: 1.00e-03 /M/s, 3D )", true}},
                {"dissociation",
                    {14, "cad1", "Dissociation: part  - - ( rate: 2.00e+00 /s )", true}}});
    }
    void describesEachKind()
    {
        QFETCH(int, kind);
        QFETCH(QString, psiimId);
        QFETCH(QString, expected);
        QFETCH(bool, hasIcon);
        ReactionStage stage;
        QVERIFY(stage.db.mliInsert({{C::PsiimId, text("mli1")}, {C::ShortName, text("L-R")}}));
        const auto item = itemOf(&stage.db, kind, psiimId);
        QCOMPARE(item->data(Qt::DisplayRole).toString(), expected);
        QVERIFY(!item->isEditable());
        QVERIFY(item->isEnabled() && item->isSelectable());
        QCOMPARE(item->data(Qt::UserRole).toString(), psiimId.chopped(1) + u';' + psiimId);
        QCOMPARE(!item->icon().isNull(), hasIcon);
        // Without the prefix, and with a note.
        const QString name = expected.mid(expected.indexOf(QLatin1String(": ")) + 2);
        QCOMPARE(itemOf(&stage.db, kind, psiimId, false)->text(), name);
        const QString noteTail = text("  - - a note");
        const QString withNote = kind == 13 ? name.section(u' ', 0, 0) : name;
        QCOMPARE(
            itemOf(&stage.db, kind, psiimId, false, text("a note"))->text(), withNote + noteTail);
    }

    void describesDetails_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<Record>("columns");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, int kind, const Record &columns,
                             const char *expected) {
            QTest::newRow(name) << kind << columns << text(expected);
        };
        row("membrane", 2, {{C::Location, text("Membrane Associated")}},
            "N  ------  (Membrane Associated)");
        row("no membrane", 2, {{C::Location, text("Freely Diffusing")}}, "N");
        const Record mnk{{C::PdnM, text("3")}, {C::PdnN, text("4")}, {C::PdnK, text("0.1")}};
        const auto delayed = [&mnk](const char *delay) {
            Record record = mnk;
            record.insert(C::PdnDelay, text(delay));
            return record;
        };
        row("no delay", 18, delayed("0"), "N  - - ( m=3, n=4, k=0.1 )");
        row("delay", 18, delayed("5"), "N  - - ( m=3, n=4, k=0.1,  delay=5s )");
        row("rate with many digits", 6, {{C::Rate, text("0.00123456")}},
            "N  - - ( rate: 1.23456e-03 /s )");
        row("rate that is no number", 6, {{C::Rate, text("kf*2")}}, "N  - - ( rate: kf*2 /s )");
        const auto association = [](const char *geometry, const char *type) {
            return Record{{C::AssociationRate, text("10")}, {C::Geometry, text(geometry)},
                {C::BindingType, text(type)}};
        };
        row("2D", 15, association("2D", ""), "N  - - ( rate: 1.00e+01 µm²/s, 2D )");
        row("3D, cis", 15, association("3D", "cis"),
            "N  - - ( rate: 1.00e+01 /M/s, 3D, cis-binding )");
        row("inside, trans", 15, association("", "trans"),
            "N  - - ( rate: 1.00e+01 /s, Intra Complex, trans-binding )");
        row("trans within another word", 15, association("2D", "cis or trans"),
            "N  - - ( rate: 1.00e+01 µm²/s, 2D, trans-binding )");
        row("cis only alone", 15, association("2D", "cis only"),
            "N  - - ( rate: 1.00e+01 µm²/s, 2D )");
        const auto dissociation = [](const char *geometry, const char *type) {
            return Record{{C::DissociationRate, text("0.5")}, {C::GeometryText, text(geometry)},
                {C::BindingType, text(type)}};
        };
        row("dissociation of another geometry", 14, dissociation("3D", "cis"),
            "N  - - ( rate: 5.00e-01 /s, cis-binding )");
        row("dissociation inside", 14, dissociation("Intra Complex (ring)", "trans"),
            "N  - - ( rate: 5.00e-01 /s, Intra Complex (ring), trans-binding )");
    }
    void describesDetails()
    {
        QFETCH(int, kind);
        QFETCH(Record, columns);
        QFETCH(QString, expected);
        ReactionStage stage;
        columns.insert(C::PsiimId, text("x1"));
        columns.insert(C::ShortName, text("N"));
        const bool stored = kind == 2 ? stage.db.molInsert(columns)
            : kind == 18              ? stage.db.pdnInsert(columns)
            : kind == 6               ? stage.db.trnInsert(columns)
            : kind == 15              ? stage.db.caiInsert(columns)
                                      : stage.db.cadInsert(columns);
        QVERIFY2(stored, qPrintable(stage.db.errorText()));
        const auto item = itemOf(&stage.db, kind, text("x1"), false);
        QCOMPARE(item->text(), expected);
        QVERIFY(item->icon().isNull());
        takeDebugLines(); // a reaction without species has no picture
    }

    void marksAliases()
    {
        ReactionStage stage;
        QVERIFY(stage.db.cpaSetShowEnabled(stage.cpaL, false));
        QVERIFY(stage.db.cpaSetWellDefined(stage.cpaL, true));
        const auto hidden = itemOf(&stage.db, 13, stage.cpaL, true, {}, true);
        QCOMPARE(hidden->text(),
            text("* Complex: L   [ Well Defined ]  - - ( degradation rate: 0.25/s )"));
        QCOMPARE(hidden->toolTip(), text("Complex is set not to show"));
        QVERIFY(!hidden->isEnabled() && !hidden->isSelectable());

        const auto unchecked = itemOf(&stage.db, 13, stage.cpaL, true, {}, false);
        QVERIFY(unchecked->isEnabled() && unchecked->isSelectable());
        QVERIFY(unchecked->text().startsWith(QLatin1String("Complex: L   [")));
        QVERIFY(unchecked->toolTip().isEmpty());
        const auto shown = itemOf(&stage.db, 13, stage.cpaR, false, text("kept"), true);
        QCOMPARE(shown->text(), text("R  - - kept"));
        QVERIFY(shown->isEnabled() && shown->isSelectable());
    }

    void reportsUnknownRecords_data()
    {
        rows<int, QString, QString>({"kind", "expected", "message"},
            {{"molecule", {2, "Molecule: ", "zgs::createItem()"}},
                {"complex", {13, "Complex: ", "zgs::createItem()"}},
                {"association", {15, "Association: ", "zgs::getPixMapForAssociation("}},
                {"no kind", {99, "", "zgs::createItem()"}}});
    }
    void reportsUnknownRecords()
    {
        QFETCH(int, kind);
        QFETCH(QString, expected);
        QFETCH(QString, message);
        ReactionStage stage;
        for (ZelDbSqliteModel *db : {&stage.db, static_cast<ZelDbSqliteModel *>(nullptr)}) {
            const auto item = itemOf(db, kind, text("none9"));
            QCOMPARE(item->text(), expected);
            QVERIFY(item->icon().isNull());
            QCOMPARE(item->data(Qt::UserRole).isValid(), kind != 99);
            const QStringList lines = takeDebugLines();
            QCOMPARE(lines.size(), 1);
            QVERIFY2(lines.first().contains(message), qPrintable(lines.first()));
        }
    }

    void headsAListWithoutAnId()
    {
        ReactionStage stage;
        const auto item = itemOf(&stage.db, 4, QString(), true, text("all"));
        QCOMPARE(item->text(), text("Complex Species:   - - all"));
        QCOMPARE(item->data(Qt::UserRole).toString(), text("cpx;"));
    }

    void describesDegradations()
    {
        ReactionStage stage;
        QHash<QString, QPixmap> cache;
        std::unique_ptr<QStandardItem> item(zgs::createDegradationItem(
            &stage.db, QSize(40, 30), text("deg1"), true, text("slow"), &cache));
        QCOMPARE(item->text(),
            text("Degradation: decay  - - ( degradation rate: 0.25/s, complex: L )  - - slow"));
        QCOMPARE(item->data(Qt::UserRole).toString(), text("deg;deg1"));
        QVERIFY(!item->isEditable() && !item->icon().isNull());
        item.reset(
            zgs::createDegradationItem(&stage.db, QSize(40, 30), text("deg9"), true, {}, &cache));
        QCOMPARE(item->text(), text("Degradation: "));
        QVERIFY(item->icon().isNull());
        QCOMPARE(takeDebugLines().size(), 1);
    }
};

ZEL_TEST(tst_ListItems)
#include "tst_ListItems.moc"
