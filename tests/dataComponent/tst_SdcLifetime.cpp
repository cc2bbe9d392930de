#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QPointer>
#include <QStandardItemModel>

#include <memory>

// The sanitizers look for what the eye cannot see here: uses after death, double deletes, leaks.
class tst_SdcLifetime : public ZelTest
{
    Q_OBJECT

    static SdcMol *molecule(QObject *parent)
    {
        auto *mol = ZelTree::bareMolecule(nullptr, "M", {{"a", {}, 2}, {"b", {}, 2}, {"c", {}, 1}});
        mol->QObject::setParent(parent);
        return mol;
    }

private slots:
    void anyOneDies_data()
    {
        QTest::addColumn<bool>("inModel");
        QTest::addColumn<bool>("withObjectParent");
        QTest::addColumn<QString>("victim");
        for (const bool inModel : {false, true}) {
            for (const bool withParent : {false, true}) {
                for (const char *victim : {"model row", "complex", "molecule", "component", "site",
                         "object parent", "rows of molecule"}) {
                    QTest::addRow("%s, %s model, %s object parent", victim,
                        inModel ? "in a" : "without", withParent ? "with" : "without")
                        << inModel << withParent << QString::fromLatin1(victim);
                }
            }
        }
    }

    void anyOneDies()
    {
        QFETCH(bool, inModel);
        QFETCH(bool, withObjectParent);
        QFETCH(QString, victim);
        auto parent = std::make_unique<QObject>();
        auto itemModel = std::make_unique<QStandardItemModel>();
        QPointer<SdcCpx> cpx = new SdcCpx(nullptr);
        QPointer<SdcMol> mol = molecule(withObjectParent ? parent.get() : nullptr);
        cpx->addSdcChild(mol, true);
        if (inModel)
            itemModel->appendRow(cpx.data());
        QPointer<SdcMcp> mcp = mol->getSdcMcpAtIndex(1);
        QPointer<SdcMcp> last = mol->getSdcMcpAtIndex(2);
        QPointer<SdcBst> site = mcp->getListSdcBst().first();
        if (withObjectParent)
            mcp->QObject::setParent(parent.get());

        if (victim == QLatin1String("complex")) {
            delete cpx;
            QVERIFY(!mol && !mcp && !site);
        } else if (victim == QLatin1String("molecule")) {
            delete mol;
            QVERIFY(!mcp && !site);
            QVERIFY(cpx->getListSdcChildren().isEmpty());
        } else if (victim == QLatin1String("component")) {
            delete mcp;
            QVERIFY(!site);
            QCOMPARE(last->getPosIndex(), 1);
        } else if (victim == QLatin1String("site")) {
            delete site;
            QCOMPARE(mcp->getListSdcChildren().size(), 1);
            QCOMPARE(last->getListSdcBst().first()->getDisplayIndex(), 4);
        } else if (victim == QLatin1String("object parent")) {
            parent.reset();
            QCOMPARE(mol.isNull(), withObjectParent);
            QCOMPARE(mcp.isNull(), withObjectParent);
        } else if (victim == QLatin1String("rows of molecule")) {
            mol->removeRows(0, 2);
            QVERIFY(!mcp && !site && last);
            QCOMPARE(mol->getListSdcChildren(), QList<Sdc *>({last}));
            QCOMPARE(mol->rowCount(), 1);
        } else if (inModel) {
            itemModel.reset();
            QVERIFY(!cpx && !mol && !mcp && !site);
        }
        // What lives on is numbered without gaps and without empty rows.
        QCoreApplication::processEvents();
        if (cpx)
            QCOMPARE(cpx->rowCount(), mol ? 1 : 0);
        if (mol) {
            QCOMPARE(mol->rowCount(), mol->getListSdcChildren().size());
            for (int i = 0; i < mol->rowCount(); ++i) {
                QCOMPARE(mol->QStandardItem::child(i), mol->getChildSdcAtIndex(i));
                QVERIFY(mol->QStandardItem::child(i)->text().startsWith(
                    QStringLiteral("Molecule component %1:").arg(i + 1)));
            }
            int number = 0;
            for (SdcBst *bst : mol->getListSdcBst())
                QVERIFY(bst->text().startsWith(QStringLiteral("Binding site %1:").arg(++number)));
        }
        if (!inModel)
            delete cpx;
    }

    void resetDestroysRowsAndLeavesOthersAlone()
    {
        SdcCpx cpx(nullptr);
        QPointer<SdcMol> row = molecule(nullptr);
        const std::unique_ptr<SdcMol> listed(molecule(nullptr));
        cpx.addSdcChild(row, true);
        cpx.addSdcChild(listed.get(), false);
        cpx.setProperty(1, "cpx1");
        cpx.reset();
        QVERIFY(!row);
        QCOMPARE(cpx.getProperties(), (QHash<int, QString>{{2, QString()}}));
        QCOMPARE(listed->getParentSdc(), nullptr);
        QVERIFY(!listed->hasSdcChild()); // reset reaches every child
    }

    void parentOfARemovedChildMayDie()
    {
        auto mol = std::unique_ptr<SdcMol>(molecule(nullptr));
        SdcMcp *const mcp = mol->getSdcMcpAtIndex(0);
        mol->removeSdcMcp(mcp);
        mol.reset();
        QCOMPARE(mcp->getParentSdc(), nullptr);
        QCOMPARE(mcp->getPosIndex(), -1);
        delete mcp;
    }

    void setsAndTheirMembersInAnyOrder()
    {
        auto mcp = std::make_unique<SdcMcp>(nullptr);
        auto bstSet = std::make_unique<SdcBstSet>(nullptr);
        auto tagSet = std::make_unique<SdcMcpTagSet>(nullptr);
        mcp->setSdcBstSet(bstSet.get());
        mcp->setSdcMcpTagSet(tagSet.get());
        auto *bst = new SdcBst(nullptr);
        mcp->addSdcBst(bst);
        takeDebugLines(); // no molecule, no number
        auto tag = std::make_unique<SdcMcpTag>(nullptr);
        tag->setParentSdcMcp(mcp.get());
        mcp->addSdcTag(tag.get());
        tagSet->addSdcMcpTag(tag.get());
        tagSet->addSdcMcpTag(tag.get());
        QCOMPARE(tagSet->getListSdcMcpTags().size(), 1);
        delete bst;
        QVERIFY(bstSet->isSetEmpty());
        tag.reset();
        QVERIFY(tagSet->isSetEmpty());
        QVERIFY(mcp->getListSdcMcpTags().isEmpty());
        tagSet.reset();
        QCOMPARE(mcp->getSdcMcpTagSet(), nullptr);
        mcp.reset();
        QCOMPARE(bstSet->getParentSdcMcp(), nullptr);
    }

    void whatHasMovedBelongsToItsNewComponent()
    {
        auto old = std::make_unique<SdcMcp>(nullptr);
        SdcMcp owner(nullptr);
        SdcBstSet bstSet(nullptr);
        SdcMcpTagSet tagSet(nullptr);
        SdcMcpTag tag(nullptr);
        for (SdcMcp *mcp : {old.get(), &owner}) {
            mcp->setSdcBstSet(&bstSet);
            mcp->setSdcMcpTagSet(&tagSet);
            tag.setParentSdcMcp(mcp);
            mcp->addSdcTag(&tag);
        }
        QVERIFY(!old->getSdcBstSet() && !old->getSdcMcpTagSet());
        // A feature that is only listed knows no component, and leaves it all the same.
        auto *listed = new SdcMcpTag(nullptr);
        old->addSdcTag(listed);
        delete listed;
        QCOMPARE(old->getListSdcMcpTags(), QList<SdcMcpTag *>{&tag});
        old.reset();
        QCOMPARE(tag.getParentSdcMcp(), &owner);
        QCOMPARE(bstSet.getParentSdcMcp(), &owner);
        QCOMPARE(tagSet.getParentSdcMcp(), &owner);
    }
};

ZEL_TEST(tst_SdcLifetime)
#include "tst_SdcLifetime.moc"
