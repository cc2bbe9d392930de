#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

namespace {

QString text(const char *s)
{
    return QString::fromLatin1(s);
}

/// What addComplex() stores for mol1.
ZelDbMolRows rowsOfMol1()
{
    return {{text("mcp1"), text("mcp2")}, {text("bst1"), text("bst2")},
        {{text("mcp1"), {text("P"), text("Q")}}}, {{1, 0}}};
}

} // namespace

class tst_ZelDbMolecule : public ZelTest
{
    Q_OBJECT
private slots:
    void listsFollowThePositions()
    {
        DbFixture f;
        QVERIFY(f.model.molInsert({{C::PsiimId, text("m")}}));
        const QStringList positions{text("10"), text("9"), text("0"), text("9")};
        for (int i = 0; i < positions.size(); ++i) {
            const QString number = QString::number(i);
            QVERIFY(f.model.mcpInsert({{C::PsiimId, text("c") + number},
                {C::OwnerPsiimId, text("m")}, {C::PosIndex, positions.at(i)}}));
            QVERIFY(f.model.bstInsert({{C::PsiimId, text("b") + number},
                {C::OwnerPsiimId, text("c0")}, {C::PosIndex, positions.at(i)}}));
            QVERIFY(f.model.mcpInsertState(
                text("c0"), text("s") + number, {}, positions.at(i).toInt()));
        }
        QCOMPARE(f.model.molGetListMcpPsiimId(text("m")),
            (QStringList{text("c2"), text("c1"), text("c3"), text("c0")}));
        QCOMPARE(f.model.bstGetListPsiimIdBasedOnMcp(text("c0")),
            (QStringList{text("b2"), text("b1"), text("b3"), text("b0")}));
        QCOMPARE(f.model.mcpGetOrderedStateNames(text("c0")),
            (QStringList{text("s2"), text("s1"), text("s3"), text("s0")}));
        QCOMPARE(f.model.mcpGetStateNameFromIndex(text("c0"), 3), text("s0"));
        QCOMPARE(f.model.mcpGetStateNameFromIndex(text("c0"), 4), QString());
        QCOMPARE(f.model.mcpGetStateNameFromIndex(text("c0"), -1), QString());
    }

    void backbonePairsAreStoredOnce()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.model.molInsertMcpMcp(text("mol1"), 1, 0));
        QVERIFY(f.model.molInsertMcpMcp(text("mol1"), 2, 0));
        QCOMPARE(
            f.model.molGetMultiHashMcpMcp(text("mol1")), (QMultiHash<int, int>{{0, 1}, {0, 2}}));
        QVERIFY(!f.model.molInsertMcpMcp(text("mol1"), -1, 0));
        QVERIFY(!f.model.molInsertMcpMcp(text("none"), 0, 1));
        QVERIFY(f.model.errorText().contains(text("molecule 'none', which does not exist")));
    }

    void statesKeepTheirIds()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QString p = f.model.mcpGetOrderedStates(text("mcp1")).first().psiimId;
        QVERIFY(f.model.mcpInsertState(text("mcp1"), text("P"), text("#123456"), 7));
        const QList<ZelDbState> states = f.model.mcpGetOrderedStates(text("mcp1"));
        QCOMPARE(states.size(), 2);
        QCOMPARE(states.last().psiimId, p);
        QCOMPARE(states.last().color, text("#123456"));
        QVERIFY(f.model.mcpInsertState(text("mcp2"), text("P"), {}, 0));
        QVERIFY(f.model.mcpGetOrderedStates(text("mcp2")).first().psiimId != p);
        QVERIFY(!f.model.mcpInsertState(text("none"), text("P"), {}, 0));
    }

    void stateGroupsAreRemembered()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.model.mcpInsertState(text("mcp1"), text("R"), {}, 2));
        QStringList ids;
        for (const ZelDbState &state : f.model.mcpGetOrderedStates(text("mcp1")))
            ids.append(state.psiimId);
        QVERIFY(f.model.mcpGetExclusionGroups(text("mcp1")).isEmpty());
        QVERIFY(f.model.mcpStateSetExclusionGroup(ids.at(2), text("a")));
        QVERIFY(f.model.mcpStateSetExclusionGroup(ids.at(1), text("b")));
        QVERIFY(f.model.mcpStateSetExclusionGroup(ids.at(0), text("a")));
        QCOMPARE(f.model.mcpGetExclusionGroups(text("mcp1")),
            (QList<QStringList>{{ids.at(0), ids.at(2)}, {ids.at(1)}}));
        // Saving the molecule again does not forget it.
        QVERIFY(f.model.mcpInsertState(text("mcp1"), text("P"), {}, 0));
        QCOMPARE(f.model.mcpStateGetExclusionGroup(ids.at(0)), text("a"));
        QVERIFY(!f.model.mcpStateSetExclusionGroup(text("none"), text("a")));
    }

    void removingAComponentMendsTheBackbone()
    {
        DbFixture f;
        QVERIFY(f.model.molInsert({{C::PsiimId, text("m")}}));
        for (int i = 0; i < 4; ++i) {
            const QString number = QString::number(i);
            QVERIFY(f.model.mcpInsert({{C::PsiimId, text("c") + number},
                {C::OwnerPsiimId, text("m")}, {C::PosIndex, number}}));
            if (i > 0)
                QVERIFY(f.model.molInsertMcpMcp(text("m"), i - 1, i));
        }
        QVERIFY(f.model.molInsertMcpMcp(text("m"), 0, 2));
        QVERIFY2(f.model.mcpRemove(text("c1")), qPrintable(f.model.errorText()));
        QCOMPARE(f.model.molGetMultiHashMcpMcp(text("m")), (QMultiHash<int, int>{{0, 1}, {1, 2}}));
        QVERIFY(!f.model.mcpRemove(text("c1")));
        QCOMPARE(f.db.checkIntegrity(), QStringList());
    }

    void surplusRowsOfASaveAreRemoved()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QStringList before = DbFixture::dump(f.path);
        QVERIFY(f.model.molRemoveRowsExcept(text("mol1"), rowsOfMol1()));
        QCOMPARE(DbFixture::dump(f.path), before);
        ZelDbMolRows kept = rowsOfMol1();
        kept.mcpPsiimIds.removeLast();
        kept.bstPsiimIds.removeLast();
        kept.stateNames[text("mcp1")] = QStringList{text("Q")};
        kept.mcpPairs.clear();
        QVERIFY2(f.model.molRemoveRowsExcept(text("mol1"), kept), qPrintable(f.model.errorText()));
        QCOMPARE(f.model.mcpGetListPsiimId(), (QStringList{text("mcp1"), text("mcp3")}));
        QCOMPARE(f.model.bstGetListPsiimId(), (QStringList{text("bst1"), text("bst3")}));
        QCOMPARE(f.model.mcpGetOrderedStateNames(text("mcp1")), QStringList{text("Q")});
        QVERIFY(f.model.molGetMultiHashMcpMcp(text("mol1")).isEmpty());
    }

    void surplusRowsInUseRefuseTheSave_data()
    {
        rows<QString, bool, QString>({"lost", "aliases", "says"},
            {{"bound site",
                 {text("bst1"), false,
                     text("Binding site 'bst1 name' (bst1) is used by complex 'A.B' "
                          "(cpx1) and 1 more; remove those first.")}},
                {"component of a bound site",
                    {text("mcp1"), false,
                        text("Molecule component 'mcp1 name' (mcp1) is used by complex 'A.B' "
                             "(cpx1)")}},
                {"state that aliases count",
                    {text("P"), true,
                        text("Feature state 'P' (mcpState1) is used by complex alias 'alias1'")}},
                {"site of an association",
                    {text("bst2"), true,
                        text("Binding site 'bst2 name' (bst2) is used by "
                             "complex alias 'alias1' (cpa1) and 3 more")}}});
    }

    void surplusRowsInUseRefuseTheSave()
    {
        QFETCH(QString, lost);
        QFETCH(bool, aliases);
        QFETCH(QString, says);
        DbFixture f;
        QVERIFY(f.addComplex());
        if (aliases)
            QVERIFY(f.addReactions());
        ZelDbMolRows kept = rowsOfMol1();
        kept.mcpPairs.clear();
        kept.mcpPsiimIds.removeAll(lost);
        kept.bstPsiimIds.removeAll(lost);
        kept.stateNames[text("mcp1")].removeAll(lost);
        const QStringList before = DbFixture::dump(f.path);
        ZelDbTransaction transaction(&f.db);
        QVERIFY(!f.model.molRemoveRowsExcept(text("mol1"), kept));
        QVERIFY2(f.model.errorText().startsWith(says), qPrintable(f.model.errorText()));
        QCOMPARE(f.db.error(), ZelDbSqlite::InUse);
        QVERIFY(!transaction.commit());
        QCOMPARE(DbFixture::dump(f.path), before);
    }
};

ZEL_TEST(tst_ZelDbMolecule)
#include "tst_ZelDbMolecule.moc"
