#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

using Insert = bool (ZelDbSqliteModel::*)(const ZelDbRecord &);
using Read = ZelDbRecord (ZelDbSqliteModel::*)(const QString &) const;
using List = QStringList (ZelDbSqliteModel::*)() const;
Q_DECLARE_METATYPE(Insert)
Q_DECLARE_METATYPE(Read)
Q_DECLARE_METATYPE(List)

class tst_ZelDbRecords : public ZelTest
{
    Q_OBJECT
private slots:
    void everyKindKeepsEveryColumn_data()
    {
        QTest::addColumn<Insert>("insert");
        QTest::addColumn<Read>("read");
        QTest::addColumn<List>("list");
        QTest::addColumn<QList<int>>("columns");
        QTest::addColumn<ZelDbRecord>("given"); // texts that may not be free ones
        const auto row = [](const char *name, Insert insert, Read read, List list,
                             QList<int> columns, const ZelDbRecord &given = {}) {
            QTest::newRow(name) << insert << read << list << columns + QList<int>{C::Name, C::Notes}
                                << given;
        };
        const auto id = [](const char *text) { return QString::fromLatin1(text); };
        using M = ZelDbSqliteModel;
        const auto mli = qOverload<const QString &>(&M::mliGetHashInfo);
        row("mol", &M::molInsert, &M::molGetHashInfo, &M::molGetListPsiimId,
            {C::ShortName, C::GraphicsInfo, C::MolNumber15, C::MolNumber16, C::MolNumber18,
                C::Color, C::Location});
        row("mcp", &M::mcpInsert, &M::mcpGetHashInfo, &M::mcpGetListPsiimId,
            {C::ShortName, C::Location, C::CopyGroup},
            {{C::OwnerPsiimId, id("mol2")}, {C::PosIndex, id("4")}});
        row("bst", &M::bstInsert, &M::bstGetHashInfo, &M::bstGetListPsiimId, {C::ShortName},
            {{C::OwnerPsiimId, id("mcp3")}, {C::PosIndex, id("2")}});
        row("mli", &M::mliInsert, mli, &M::mliGetListPsiimId,
            {C::ShortName, C::GraphicsInfo, C::AssociationRate, C::DissociationRate},
            {{C::Bst1, id("bst3")}, {C::MolPos1, id("1")}, {C::Bst2, id("bst2")},
                {C::MolPos2, id("0")}});
        row("cpa", qOverload<const ZelDbRecord &>(&M::cpaInsert), &M::cpaGetHashInfo,
            &M::cpaGetListPsiimId, {C::CpaKey2, C::CpaStateCode, C::CpaShortName},
            {{C::CpaCpx, id("cpx1")}, {C::CpaShown, id("0")}, {C::CpaWellDefined, id("1")}});
        row("cai", &M::caiInsert, &M::caiGetHashInfo, &M::caiGetListPsiimId,
            {C::ShortName, C::GraphicsInfo, C::AssociationRate, C::BindingType, C::Geometry},
            {{C::CaiCpa1, id("cpa1")}, {C::CaiCpa2, id("cpa2")}, {C::CaiResultCpa, id("cpa3")},
                {C::Bst1, id("bst1")}, {C::MolPos1, id("0")}, {C::Bst2, id("bst3")},
                {C::MolPos2, id("1")}});
        row("cad", &M::cadInsert, &M::cadGetHashInfo, &M::cadGetListPsiimId,
            {C::ShortName, C::DissociationRate, C::BindingType, C::GeometryText},
            {{C::CadSourceCpa, id("cpa1")}, {C::CadResultCpa1, id("cpa2")},
                {C::CadResultCpa2, id("cpa3")}});
        row("trn", &M::trnInsert, &M::trnGetHashInfo, &M::trnGetListPsiimId,
            {C::ShortName, C::Rate}, {{C::TrnFromCpa, id("cpa1")}, {C::TrnToCpa, id("cpa2")}});
        row("pdn", &M::pdnInsert, &M::pdnGetHashInfo, &M::pdnGetListPsiimId,
            {C::ShortName, C::PdnDelay, C::PdnM, C::PdnN, C::PdnK},
            {{C::PdnSourceCpa, id("cpa1")}, {C::PdnProductCpa, id("cpa2")}});
        row("deg", &M::degInsert, &M::degGetHashInfo, &M::degGetListPsiimId,
            {C::ShortName, C::DegradationRate}, {{C::DegradationCpa, id("cpa1")}});
        row("par", &M::parInsert, &M::parGetHashInfo, &M::parGetListPsiimId,
            {C::ShortName, C::ParameterValue, C::Unit});
        row("obs", &M::obsInsert, &M::obsGetHashInfo, &M::obsGetListPsiimId,
            {C::ShortName, C::ObservableKind, C::ObservablePattern});
        row("sed", &M::sedInsert, &M::sedGetHashInfo, &M::sedGetListPsiimId,
            {C::ShortName, C::SeedAmount, C::Unit}, {{C::SeedCpa, id("cpa1")}});
        row("cmp", &M::cmpInsert, &M::cmpGetHashInfo, &M::cmpGetListPsiimId,
            {C::ShortName, C::CompartmentDimension, C::CompartmentSize, C::Unit},
            {{C::CompartmentParent, id("outer")}});
        row("utr", &M::utrInsert, &M::utrGetHashInfo, &M::utrGetListPsiimId,
            {C::ShortName, C::SourceFile, C::SourceText, C::Reason}, {{C::SourceLine, id("12")}});
    }

    void everyKindKeepsEveryColumn()
    {
        QFETCH(Insert, insert);
        QFETCH(Read, read);
        QFETCH(List, list);
        QFETCH(QList<int>, columns);
        QFETCH(ZelDbRecord, given);
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        QVERIFY(f.model.cmpInsert({{C::PsiimId, "outer"}}));
        const QStringList others = (f.model.*list)();

        ZelDbRecord record = given;
        record.insert(C::PsiimId, "z9");
        for (const int column : columns)
            record.insert(column, QStringLiteral("text %1").arg(column));
        QVERIFY2((f.model.*insert)(record), qPrintable(f.model.errorText()));
        ZelDbRecord stored = (f.model.*read)("z9");
        QVERIFY(!stored.value(C::RowNumber).isEmpty());
        // A record that was read can be written again as it is, under another id too.
        QVERIFY2((f.model.*insert)(stored), qPrintable(f.model.errorText()));
        stored.remove(C::RowNumber);
        QCOMPARE(stored, record);
        QCOMPARE((f.model.*list)(), others + QStringList{"z9"});
        QVERIFY((f.model.*read)("z8").isEmpty());
        QVERIFY((f.model.*read)(QString()).isEmpty());
    }

    void updatesLeaveAbsentColumnsAlone()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QString id = QStringLiteral("mcp1");
        const QString row = f.model.mcpGetHashInfo(id).value(C::RowNumber);
        QVERIFY2(f.model.mcpInsert({{C::PsiimId, id}, {C::Notes, "new"}}),
            qPrintable(f.model.errorText())); // without its owner
        QCOMPARE(DbFixture::texts(f.model.mcpGetHashInfo(id),
                     {C::RowNumber, C::OwnerPsiimId, C::ShortName, C::Notes, C::Name}),
            (QStringList{row, "mol1", "mcp1 name", "new", QString()}));
        QVERIFY(f.model.mcpInsert({{C::PsiimId, id}, {C::Notes, QString()}}));
        QCOMPARE(f.model.mcpGetHashInfo(id).value(C::Notes, "-"), QString());
        QVERIFY(f.model.mcpInsert({{C::PsiimId, id}}));
        // What belongs to a record and what refers to it survives.
        QVERIFY(f.model.molInsert({{C::PsiimId, "mol1"}, {C::Name, "x"}}));
        QCOMPARE(f.model.mcpGetOrderedStateNames(id).size(), 2);
        QCOMPARE(f.model.cpxGetListMolPsiimId("cpx1").size(), 2);
    }

    void hostileTextsComeBack_data()
    {
        rows<QString>({"text"},
            {{"quotes", {"x'); DROP TABLE mol; --\"`[%1%2?1:a"}},
                {"zero character", {QStringLiteral("a") + QChar(0) + QStringLiteral("b")}},
                {"beyond the basic plane",
                    {QString::fromUtf8("\xf0\x9f\xa7\xac \xce\xb1-\xce\xb2")}},
                {"line ends", {"\r\n\t\n "}},
                {"a million characters", {QString(1000000, QChar(0x3b1))}},
                {"number", {"1.10e+05"}}});
    }

    void hostileTextsComeBack()
    {
        QFETCH(QString, text);
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY2(
            f.model.molInsert({{C::PsiimId, text}, {C::ShortName, text}, {C::MolNumber15, text}}),
            qPrintable(f.model.errorText()));
        QVERIFY(f.model.mcpInsertState("mcp1", text, text, 5));
        QVERIFY(f.model.refInsert("mol", text, text));
        f.db.close();
        QVERIFY(f.db.open(f.path));
        const ZelDbRecord record = f.model.molGetHashInfo(text);
        QCOMPARE(DbFixture::texts(record, {C::PsiimId, C::ShortName, C::MolNumber15}),
            (QStringList{text, text, text}));
        QCOMPARE(f.model.mcpGetStateNameFromIndex("mcp1", 2), text);
        QCOMPARE(f.model.refGetReferences("mol", text), text);
        QVERIFY(!ZelDbSqlite::isUniqueShortName("mol", text, {}, &f.model));
        QVERIFY2(f.model.molRemove(text), qPrintable(f.model.errorText()));
        QVERIFY(f.model.molGetHashInfo(text).isEmpty());
    }

    void unusableRecordsAreRefused_data()
    {
        QTest::addColumn<Insert>("insert");
        QTest::addColumn<ZelDbRecord>("record");
        QTest::addColumn<QString>("says");
        const auto row =
            [](const char *name, Insert insert, int column, const char *value, const char *says) {
                QTest::newRow(name)
                    << insert
                    << ZelDbRecord{{C::PsiimId, "x"}, {column, QString::fromLatin1(value)}}
                    << QString::fromLatin1(says);
            };
        using M = ZelDbSqliteModel;
        row("no id", &M::molInsert, C::PsiimId, "", "without an id");
        row("column of another kind", &M::molInsert, C::PdnDelay, "1", "does not have");
        row("column that does not exist", &M::molInsert, 4711, "1", "does not have");
        row("no number", &M::bstInsert, C::PosIndex, "one", "'one' is no value for its posIndex");
        row("negative position", &M::caiInsert, C::MolPos1, "-1", "'-1' is no value");
        row("no flag", qOverload<const ZelDbRecord &>(&M::cpaInsert), C::CpaShown, "yes", "'yes'");
        row("unknown owner", &M::mcpInsert, C::OwnerPsiimId, "mol9",
            "refers to molecule 'mol9', which does not exist; store that first.");
        row("no owner", &M::mcpInsert, C::OwnerPsiimId, "", "NOT NULL");
        row("unknown alias", &M::cadInsert, C::CadResultCpa2, "cpa9", "complex alias 'cpa9'");
    }

    void unusableRecordsAreRefused()
    {
        QFETCH(Insert, insert);
        QFETCH(ZelDbRecord, record);
        QFETCH(QString, says);
        DbFixture f;
        QVERIFY(f.addComplex());
        const QStringList before = DbFixture::dump(f.path);
        QVERIFY(!(f.model.*insert)(record));
        QVERIFY2(f.model.errorText().contains(says), qPrintable(f.model.errorText()));
        QCOMPARE(DbFixture::dump(f.path), before);
    }

    void referencesFollowTheirRecord()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QString state = f.model.mcpGetOrderedStates("mcp1").first().psiimId;
        const QString kind = QStringLiteral("mcpState");
        QVERIFY(f.model.refInsert(kind, state, "old"));
        QVERIFY(f.model.refInsert(kind, state, "paper"));
        QCOMPARE(f.model.refGetReferences(kind, state), "paper");
        QCOMPARE(f.model.refGetReferences("mol", state), QString());
        QVERIFY(!f.model.refInsert(kind, "none", "paper"));
        QVERIFY(!f.model.refInsert("idCounter", state, "paper"));
        QVERIFY(f.model.mcpStateRemove(state));
        QVERIFY(f.model.mcpStateInsert({{C::PsiimId, state}, {C::OwnerPsiimId, "mcp1"}}));
        QCOMPARE(f.model.refGetReferences(kind, state), QString());
        QVERIFY(f.model.refInsert(kind, state, "again"));
        QVERIFY(f.model.refInsert(kind, state, QString()));
        QCOMPARE(f.model.refGetReferences(kind, state), QString());
    }

    void graphicsInfoIsFoundByWord()
    {
        DbFixture f;
        QVERIFY(f.model.molInsert({{C::PsiimId, "same"}, {C::GraphicsInfo, "<mol/>"}}));
        QVERIFY(f.model.cpxInsert("same", {}, {}, {}, {}, {}, "<cpx/>", {}, {}));
        const auto find = [&](const char *word, const char *id) {
            return ZelDbSqlite::getGraphicsInfo(
                QString::fromLatin1(word), QString::fromLatin1(id), &f.model);
        };
        QCOMPARE(find("mol", "same"), "<mol/>");
        QCOMPARE(find("cpx", "same"), "<cpx/>");
        QCOMPARE(find("cpx", "other"), QString());
        QCOMPARE(find("trn", "same"), QString()); // keeps none
        QCOMPARE(find("sqlite_master", "same"), QString());
        QCOMPARE(ZelDbSqlite::getGraphicsInfo("mol", "same", nullptr), QString());
    }

    void shortNamesAreUniquePerKind_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("except");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("holder");
        QTest::addColumn<QString>("free");
        const auto row = [](const char *word, const char *name, const char *except, int state,
                             const char *holder, const char *free) {
            QTest::addRow("%s %s except '%s'", word, name, except)
                << QString::fromLatin1(word) << QString::fromLatin1(name)
                << QString::fromLatin1(except) << state << QString::fromLatin1(holder)
                << QString::fromLatin1(free);
        };
        using A = ZelDbNameAnswer;
        row("cpx", "A.B", "", A::Taken, "cpx1", "A.B_1");
        row("cpx", "A.B", "cpx1", A::Free, "", "A.B");
        row("cpx", "A.B", "mol1", A::Taken, "cpx1", "A.B_1");
        row("cpx", "a.b", "", A::Free, "", "a.b");
        row("mol", "A.B", "", A::Free, "", "A.B");
        row("cpa", "alias2", "cpa1", A::Taken, "cpa2", "alias2_1");
        row("cpa", "alias4", "", A::Free, "", "alias4");
        row("nonsense", "A", "", A::Unknown, "", "");
        row("closed", "A.B", "", A::Unknown, "", "");
    }

    void shortNamesAreUniquePerKind()
    {
        QFETCH(QString, word);
        QFETCH(QString, name);
        QFETCH(QString, except);
        QFETCH(int, state);
        QFETCH(QString, holder);
        QFETCH(QString, free);
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        if (word == "closed") {
            f.db.close();
            word = "cpx";
        }
        const ZelDbNameAnswer answer = ZelDbSqlite::askShortName(word, name, except, &f.model);
        QCOMPARE(int(answer.state), state);
        QCOMPARE(answer.psiimId, holder);
        QCOMPARE(ZelDbSqlite::isUniqueShortName(word, name, except, &f.model),
            state == ZelDbNameAnswer::Free);
        qint64 number = 0;
        QCOMPARE(ZelDbSqlite::getFreeShortName(word, name, except, &f.model, &number), free);
        if (!free.isEmpty()) // the same name for another one
            QCOMPARE(ZelDbSqlite::getFreeShortName(word, name, except, &f.model, &number),
                name + u'_' + QString::number(free == name ? 1 : 2));
    }

    void withoutDatabaseEverythingIsEmpty()
    {
        ZelDbSqliteModel model(nullptr);
        const QString id = QStringLiteral("mol1");
        QVERIFY(model.molGetListPsiimId().isEmpty());
        QVERIFY(model.molGetMultiHashMcpMcp(id).isEmpty());
        QVERIFY(model.mcpGetOrderedStates(id).isEmpty());
        QVERIFY(model.cpxGetArrayBstBst(id).isEmpty());
        QVERIFY(!model.mliIsDefined(id, id));
        QVERIFY(!model.cpaIsShowEnabled(id));
        QVERIFY(!model.molRemoveRowsExcept(id, {}));
        QVERIFY(!model.mcpRemove(id));
        QVERIFY(!model.cpaInsert({}));
        QVERIFY(!model.cpaUpdateMcpStateCode(id, id));
        QVERIFY(!model.cpxInsert(id, id, id, id, id, id, id, id, id));
        QVERIFY(!model.mcpInsertState(id, id, id, 0));
        QVERIFY(!model.errorText().isEmpty());
        QVERIFY(ZelDbSqlite::isUniqueShortName("mol", id, {}, nullptr));
        QVERIFY(ZelDbSqlite::isUniqueShortName("mol", id, {}, &model));
    }
};

ZEL_TEST(tst_ZelDbRecords)
#include "tst_ZelDbRecords.moc"
