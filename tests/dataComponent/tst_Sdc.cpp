#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCad.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcTrn.h"

#include <QDomDocument>
#include <QSignalSpy>

#include <functional>
#include <memory>

namespace {

using Make = std::function<Sdc *()>;

template <typename T>
Make maker()
{
    return [] { return new T(nullptr); };
}

/// The kinds for which isSdcX() is true, and a "!" where toSdcX() disagrees.
QString kinds(Sdc *sdc)
{
    QStringList list;
    const auto ask = [&](const char *name, bool is, Sdc *to) {
        if (is)
            list.append(QLatin1String(name));
        if (is != (to == sdc))
            list.append("!");
    };
    ask("Bst", sdc->isSdcBst(), sdc->toSdcBst());
    ask("Mcp", sdc->isSdcMcp(), sdc->toSdcMcp());
    ask("Mol", sdc->isSdcMol(), sdc->toSdcMol());
    ask("Mli", sdc->isSdcMli(), sdc->toSdcMli());
    ask("Cpx", sdc->isSdcCpx(), sdc->toSdcCpx());
    ask("Cxi", sdc->isSdcCxi(), sdc->toSdcCxi());
    ask("Trn", sdc->isSdcTrn(), sdc->toSdcTrn());
    ask("BstBst", sdc->isSdcBstBst(), sdc->toSdcBstBst());
    ask("BstBstMli", sdc->isSdcBstBstMli(), sdc->toSdcBstBstMli());
    ask("BstBstCpx", sdc->isSdcBstBstCpx(), sdc->toSdcBstBstCpx());
    ask("BstBstCxi", sdc->isSdcBstBstCxi(), sdc->toSdcBstBstCxi());
    ask("McpTag", sdc->isSdcMcpTag(), sdc->toSdcMcpTag());
    ask("McpTagSet", sdc->isSdcMcpTagSet(), sdc->toSdcMcpTagSet());
    ask("BstSet", sdc->isSdcBstSet(), sdc->toSdcBstSet());
    return list.join(u' ');
}

} // namespace

Q_DECLARE_METATYPE(Make)

class tst_Sdc : public ZelTest
{
    Q_OBJECT
private slots:
    void kindsNamesAndTags_data()
    {
        rows<Make, QString, int, QString, QString>({"make", "kind", "type", "tag", "name"},
            {{"base", {maker<Sdc>(), "", -1, "", ""}},
                {"site", {maker<SdcBst>(), "Bst", 0, "bst", "Binding site"}},
                {"component", {maker<SdcMcp>(), "Mcp", 1, "mcp", "Molecule component"}},
                {"molecule", {maker<SdcMol>(), "Mol", 2, "mol", "Molecule"}},
                {"interaction", {maker<SdcMli>(), "Mli", 3, "mli", "Molecule Interaction"}},
                {"complex", {maker<SdcCpx>(), "Cpx", 4, "cpx", "Complex Species"}},
                {"complex interaction", {maker<SdcCxi>(), "Cxi", 5, "cxi", "Complex Interaction"}},
                {"transformation", {maker<SdcTrn>(), "Trn", -1, "", ""}},
                {"association", {maker<SdcCad>(), "", -1, "", ""}},
                {"bond", {maker<SdcBstBst>(), "BstBst", -1, "", ""}},
                {"mli bond", {maker<SdcBstBstMli>(), "BstBst BstBstMli", -1, "", ""}},
                {"cpx bond", {maker<SdcBstBstCpx>(), "BstBst BstBstCpx", -1, "", ""}},
                {"cxi bond",
                    {maker<SdcBstBstCxi>(), "BstBst BstBstCxi", -1, "",
                        "CXI Binding Site Interaction"}},
                {"feature", {maker<SdcMcpTag>(), "McpTag", 19, "", "Feature"}},
                {"feature set", {maker<SdcMcpTagSet>(), "McpTagSet", 20, "", ""}},
                {"site set", {maker<SdcBstSet>(), "BstSet", 21, "", ""}}});
    }

    void kindsNamesAndTags()
    {
        QFETCH(Make, make);
        QFETCH(QString, kind);
        QFETCH(int, type);
        QFETCH(QString, tag);
        QFETCH(QString, name);
        const std::unique_ptr<Sdc> sdc(make());
        QCOMPARE(kinds(sdc.get()), kind);
        QCOMPARE(sdc->getSdcType(), type);
        QCOMPARE(sdc->text(),
            kind.endsWith(QLatin1String("Set")) ? QString() : name + ": ShortName not defined");
        QCOMPARE(sdc->getDomXmlTag(), tag);
        QStringList expected;
        if (tag.isEmpty())
            expected.append(QStringLiteral("QString Sdc::getDomXmlTag() const Undefined domeXml "
                                           "tag for  \"%1\"")
                                .arg(sdc->getSdcName()));
        QCOMPARE(takeDebugLines(), expected);
        // A kind without a tag leaves no trace in the layout, and no toolkit warning.
        QDomDocument doc;
        const QString layout = sdc->getGraphicsInfo();
        QVERIFY(layout.isEmpty() || doc.setContent(layout)); // a bond's is that of its complexes
        QCOMPARE(doc.documentElement().firstChildElement().tagName(), tag);
        takeDebugLines();
    }

    void settingTheNameEmptiesTheShortName()
    {
        SdcMol mol(nullptr);
        mol.setProperty(2, "EGFR");
        QCOMPARE(mol.text(), "Molecule: EGFR");
        QSignalSpy changed(&mol, &Sdc::propertyChanged);
        mol.setSdcName("Receptor");
        QCOMPARE(changed, (QList<QList<QVariant>>{{2, QString()}}));
        QCOMPARE(mol.text(), "Receptor: ShortName not defined");
    }

    void propertyIsAnnouncedOnceAndOnlyWhenItDiffers_data()
    {
        rows<int>({"key"}, {{"the id", {int(SdcProperty::PsiimId)}}, {"another", {7}}});
    }

    void propertyIsAnnouncedOnceAndOnlyWhenItDiffers()
    {
        QFETCH(int, key);
        SdcCpx cpx(nullptr);
        auto *mol = new SdcMol(nullptr);
        cpx.addSdcChild(mol, true);
        QStringList log;
        connect(mol, &Sdc::propertyChanged, this, [&](int changed, const QString &value) {
            log.append(QStringLiteral("%1=%2").arg(changed).arg(value));
        });
        connect(mol, &Sdc::signal_changed, this, [&] { log.append("mol"); });
        connect(&cpx, &Sdc::signal_changed, this, [&] { log.append("cpx"); });
        mol->setProperty(key, "x");
        QCOMPARE(log, QStringList({QStringLiteral("%1=x").arg(key), "mol", "cpx"}));
        log.clear();
        mol->setProperty(key, "x");
        QCOMPARE(mol->getPropertyView(key), QStringView(u"x"));
        SdcMol copy(nullptr);
        mol->copyPropertiesTo(&copy);
        QCOMPARE(copy.getProperty(key), "x");
        QCOMPARE(copy.getProperties(), mol->getProperties());
        mol->clearProperty(key);
        QVERIFY(!mol->hasProperty(key));
        mol->setProperty(key, QString());
        QVERIFY(log.isEmpty());
        QVERIFY(mol->hasProperty(key));
        mol->clearProperties();
        QVERIFY(mol->getProperties().isEmpty());
    }

    void nthChildWithAnId_data()
    {
        rows<QString, int, int>({"id", "n", "index"},
            {{"first", {"a", 1, 0}}, {"second match is the third child", {"a", 2, 2}},
                {"too few", {"a", 3, -1}}, {"zeroth", {"a", 0, -1}}, {"negative", {"a", -1, -1}},
                {"empty id", {"", 1, -1}}});
    }

    void nthChildWithAnId()
    {
        QFETCH(QString, id);
        QFETCH(int, n);
        QFETCH(int, index);
        SdcCpx cpx(nullptr);
        for (const char *childId : {"a", "b", "a"}) {
            auto *mol = new SdcMol(nullptr);
            mol->setProperty(1, QString::fromLatin1(childId));
            cpx.addSdcChild(mol, true);
        }
        cpx.addSdcChild(nullptr, false);
        QCOMPARE(cpx.getChildSdcFromPsiimId(id, n), cpx.getChildSdcAtIndex(index));
    }

    void additionIsAnnouncedByTheTopAncestorOnly()
    {
        SdcCpx cpx(nullptr);
        auto *mol = new SdcMol(nullptr);
        cpx.addSdcChild(mol, true);
        auto *mcp = new SdcMcp(nullptr);
        QSignalSpy onTop(&cpx, &Sdc::childSdcAdded);
        QSignalSpy onMol(mol, &Sdc::childSdcAdded);
        mol->addSdcMcp(mcp);
        auto *bst = new SdcBst(nullptr);
        QSignalSpy onMcp(mcp, &Sdc::childSdcAdded);
        mcp->addSdcBst(bst);
        QCOMPARE(onTop,
            (QList<QList<QVariant>>{
                {QVariant::fromValue<Sdc *>(mcp)}, {QVariant::fromValue<Sdc *>(bst)}}));
        QVERIFY(onMol.isEmpty());
        QVERIFY(onMcp.isEmpty());
        QCOMPARE(bst->getTopParentSdc(), &cpx);
        QCOMPARE(bst->getParentSdcCpx(), &cpx);
        QCOMPARE(cpx.getParentSdcCpx(), nullptr);
        QVERIFY(!bst->isEditable());
    }

    void positionsFollowAdditionRemovalAndExchange()
    {
        SdcCpx cpx(nullptr);
        QList<SdcMol *> mols;
        for (int i = 0; i < 4; ++i) {
            mols.append(new SdcMol(nullptr));
            cpx.addSdcChild(mols.last(), true);
        }
        QCOMPARE(mols.at(3)->text(), "Molecule 4: ShortName not defined");
        mols.at(3)->setProperty(2, "D");
        mols.at(3)->updateCurrentIndexToPrevIndex();
        cpx.removeSdcChild(mols.at(1));
        QCOMPARE(mols.at(1)->getPosIndex(), -1);
        QCOMPARE(mols.at(1)->getParentSdc(), &cpx); // a removed child still knows it
        QCOMPARE(mols.at(1)->QStandardItem::parent(), nullptr);
        QCOMPARE(cpx.rowCount(), 3);
        QCOMPARE(mols.at(3)->getPosIndex(), 2);
        QCOMPARE(mols.at(3)->getPrevIndex(), 3);
        QCOMPARE(mols.at(3)->text(), "Molecule 3: D");
        cpx.switchChildrenBetween2Indices(0, 2);
        QCOMPARE(mols.at(3)->getPosIndex(), 0);
        QCOMPARE(mols.at(0)->getPosIndex(), 2);
        QCOMPARE(mols.at(3)->text(), "Molecule 3: D"); // texts are not touched
        cpx.switchChildrenBetween2Indices(0, 3);
        cpx.switchChildrenBetween2Indices(-1, 0);
        QCOMPARE(mols.at(3)->getPosIndex(), 0);
        mols.at(0)->removeSelfFromParent();
        QCOMPARE(mols.at(0)->getParentSdc(), nullptr);
        QCOMPARE(cpx.getListSdcChildren().size(), 2);
        delete mols.at(0);
        delete mols.at(1);
    }

    void aChildAddedElsewhereMovesItsRow()
    {
        SdcCpx first(nullptr);
        SdcCpx second(nullptr);
        auto *mol = new SdcMol(nullptr);
        mol->setProperty(2, "M");
        first.addSdcChild(mol, true);
        second.addSdcChild(mol, true);
        QCOMPARE(first.rowCount(), 0);
        QCOMPARE(second.rowCount(), 1);
        QCOMPARE(second.QStandardItem::child(0), mol);
        QCOMPARE(mol->getParentSdc(), &second);
        first.removeSdcChild(mol);
        QCOMPARE(second.rowCount(), 1);
    }

    void displayName()
    {
        SdcCpx cpx(nullptr);
        auto *mol = new SdcMol(nullptr);
        mol->setProperty(2, "S");
        cpx.addSdcChild(mol, true);
        QCOMPARE(mol->getDisplayName(false, false), "S");
        QCOMPARE(mol->getDisplayName(true, false), "Molecule: S");
        QCOMPARE(mol->getDisplayName(false, true), "1: S");
        QCOMPARE(mol->getDisplayName(true, true), "Molecule 1: S");
    }

    void layoutIsRelativeToTheParent()
    {
        const std::unique_ptr<SdcMol> mol(
            ZelTree::molecule(nullptr, "M", {{"a", {"P"}, 1}, {"b", {}, 0}}));
        mol->setProperty(1, "mol<1>&\"'");
        SdcMcp *const mcp = mol->getSdcMcpAtIndex(1);
        mcp->setTagDirectionCode(3);
        mcp->setTagSize(1.0 / 3.0);
        QDomDocument doc;
        QVERIFY(doc.setContent(mol->getGraphicsInfo()));
        QCOMPARE(doc.doctype().name(), "doc");
        QCOMPARE(doc.documentElement().tagName(), "schema");
        const QDomElement molElement = doc.documentElement().firstChildElement();
        QCOMPARE(molElement.attribute("psiimId"), mol->getPsiimId());
        QVERIFY(!molElement.hasAttribute("posIndex"));
        QCOMPARE(molElement.firstChildElement().tagName(), "boundingRect");
        const QDomElement a = molElement.firstChildElement("mcp");
        const QDomElement b = a.nextSiblingElement();
        QVERIFY(!a.hasAttribute("tagDirectCode"));
        QCOMPARE(b.attribute("tagDirectCode"), "3");
        QCOMPARE(b.attribute("tagSize"), "0.333333");
        QCOMPARE(b.attribute("posIndex"), "1");
        const QDomElement rectB = b.firstChildElement();
        QCOMPARE(rectB.attribute("x"), "80");
        QCOMPARE(rectB.attribute("y"), "0");
        QCOMPARE(rectB.attribute("w"), "60");
        // The site on the right rim, from its component's top left corner.
        const QDomElement site = a.firstChildElement("bst").firstChildElement();
        QCOMPARE(site.attribute("x"), "54");
        QCOMPARE(site.attribute("y"), "14");
        for (SdcMcp *each : mol->getListSdcMcp())
            delete each->getZelEllipseItemMcp();
    }

    void highlightStopsWhereTheTargetSays()
    {
        const std::unique_ptr<SdcMol> mol(
            ZelTree::bareMolecule(nullptr, "M", {{"a", {}, 2}, {"b", {}, 1}}));
        SdcMcp *const mcp = mol->getSdcMcpAtIndex(0);
        const auto lit = [&] {
            QString text;
            for (Sdc *sdc :
                QList<Sdc *>{mol.get(), mcp, mcp->getChildSdcAtIndex(0), mol->getSdcMcpAtIndex(1)})
                text += sdc->isHighlighted() ? u'1' : u'0';
            return text;
        };
        mol->highlightChildSdc(mcp);
        QCOMPARE(lit(), "0100");
        mol->highlightChildSdc(mcp->getChildSdcAtIndex(0));
        QCOMPARE(lit(), "0010");
        mol->highlightChildSdc(mol.get());
        QCOMPARE(lit(), "1111");
        mol->setHighlight(false);
        QCOMPARE(lit(), "0000");
    }

    void equalIdsKeepTheirOrder()
    {
        QObject owner;
        QList<Sdc *> list;
        for (const char *id : {"b", "a", "b", "a", ""}) {
            list.append(new SdcMol(nullptr, &owner));
            list.last()->setProperty(1, QString::fromLatin1(id));
        }
        QCOMPARE(Sdc::getSortedSdcListByPsiimId(list),
            QList<Sdc *>({list.at(4), list.at(1), list.at(3), list.at(0), list.at(2)}));
    }

    void copyingPropertiesPairsChildrenOfOneKind()
    {
        const std::unique_ptr<SdcMol> from(
            ZelTree::bareMolecule(nullptr, "From", {{"a", {}, 1}, {"b", {}, 0}}));
        const std::unique_ptr<SdcMol> to(ZelTree::bareMolecule(nullptr, "To", {{"x", {}, 3}}));
        from->getSdcMcpAtIndex(0)->getChildSdcAtIndex(0)->setProperty(2, "s");
        to->addSdcChild(new SdcBst(nullptr), true);
        takeDebugLines(); // a site outside a component has no number
        from->copyPropertiesTo(to.get());
        QCOMPARE(to->text(), "Molecule: From");
        QCOMPARE(to->getSdcMcpAtIndex(0)->text(), "Molecule component 1: a");
        QCOMPARE(to->getListSdcBst().at(0)->getProperty(2), "s");
        QCOMPARE(to->getListSdcBst().at(1)->getProperty(2), QString());
        QCOMPARE(to->getChildSdcAtIndex(1)->getProperty(2), QString());
        takeDebugLines();
    }

    void nullChildrenArePassedOver()
    {
        SdcCpx cpx(nullptr);
        QVERIFY(cpx.isEmpty());
        QSignalSpy changed(&cpx, &Sdc::signal_changed);
        cpx.addSdcChild(nullptr, true);
        QVERIFY(changed.isEmpty());
        QVERIFY(cpx.hasSdcChild());
        QVERIFY(cpx.isEmpty());
        auto *mol = new SdcMol(nullptr);
        cpx.addSdcChild(mol, true);
        cpx.addSdcChild(nullptr, false);
        QVERIFY(!cpx.isEmpty());
        QCOMPARE(mol->getPosIndex(), 1);
        QCOMPARE(cpx.getListSdcMol().size(), 1);
        cpx.setHighlight(true);
        cpx.highlightChildSdc(mol);
        cpx.getGraphicsInfo();
        cpx.setAllMcpStateType(4, false);
        cpx.setAllBstStatus(BindingStatusBound);
        QVERIFY(!cpx.hasTagDontCareOrNegation());
        SdcCpx copy(nullptr);
        copy.addSdcChild(nullptr, false);
        cpx.copyPropertiesTo(&copy);
        cpx.removeSdcChild(nullptr);
        QCOMPARE(cpx.getListSdcChildren().size(), 1);
        cpx.reset();
        QVERIFY(!cpx.hasSdcChild());
        QCOMPARE(cpx.rowCount(), 0);
    }

    void negationAndDontCareAreFoundByKind_data()
    {
        rows<bool, bool>({"negated", "dontCare"},
            {{"neither", {false, false}}, {"negated", {true, false}}, {"don't care", {false, true}},
                {"both", {true, true}}});
    }

    void negationAndDontCareAreFoundByKind()
    {
        QFETCH(bool, negated);
        QFETCH(bool, dontCare);
        const std::unique_ptr<SdcMol> mol(
            ZelTree::molecule(nullptr, "M", {{"a", {}, 0}, {"b", {"P"}, 0}}));
        mol->getSdcMcpAtIndex(1)->setProperty(10, negated ? "1" : QString());
        mol->setAllMcpStateType(dontCare ? 4 : 1, false);
        QCOMPARE(mol->hasTagDontCare(), dontCare);
        QCOMPARE(mol->hasTagNegation(), negated);
        QCOMPARE(mol->hasTagDontCareOrNegation(), negated || dontCare);
        QCOMPARE(mol->getSdcMcpAtIndex(1)->getProperty(9), dontCare ? "P(0)" : "P(-)");
        for (SdcMcp *mcp : mol->getListSdcMcp())
            delete mcp->getZelEllipseItemMcp();
    }

    void aThousandLevels()
    {
        SdcMol top(nullptr);
        Sdc *last = &top;
        for (int i = 0; i < 1000; ++i) {
            auto *next = new SdcMol(nullptr);
            last->addSdcChild(next, true);
            last = next;
        }
        int changes = 0;
        connect(&top, &Sdc::signal_changed, this, [&] { ++changes; });
        last->setProperty(2, "deep");
        QCOMPARE(changes, 1);
        QCOMPARE(last->getTopParentSdc(), &top);
        QCOMPARE(top.getListSdcMol().size(), 1001);
        top.setHighlight(true);
        QVERIFY(last->isHighlighted());
        QDomDocument doc;
        QVERIFY(doc.setContent(top.getGraphicsInfo()));
    }
};

ZEL_TEST(tst_Sdc)
#include "tst_Sdc.moc"
