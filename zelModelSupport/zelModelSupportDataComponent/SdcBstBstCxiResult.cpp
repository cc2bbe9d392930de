// How what an association yields is found among the stored aliases, or stored.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

#include <QDomDocument>
#include <QHash>

using namespace SdcReactionStorage;

namespace {

constexpr char SaveFunction[] = "bool SdcBstBstCxi::saveResultToDb()";

/// A complex that is a copy of others, joined by bonds of its own. It has no scene.
class Product
{
public:
    explicit Product(ZelDbSqliteModel *db) : m_cpx(db) { }

    SdcCpx *cpx() { return &m_cpx; }

    /// False when a molecule is not what is stored.
    bool take(SdcCpx *source)
    {
        QDomDocument document;
        document.setContent(source->getGraphicsInfo());
        const QDomElement layout =
            document.documentElement().firstChildElement(QStringLiteral("cpx"));
        const QList<QDomElement> layouts = childElements(layout, "mol");
        const QList<SdcMol *> mols = source->getListSdcMol();
        const QStringList places =
            source->getProperty(SdcProperty::CpaKey2).split(u';', Qt::KeepEmptyParts);
        for (qsizetype i = 0; i < mols.size(); ++i) {
            auto *const copy = new SdcMol(m_cpx.getZelDbSqliteModel());
            m_cpx.addSdcChild(copy, true);
            if (!copy->loadDom(
                    mols.at(i)->getPsiimId(), layouts.value(i), nullptr, topLeftOf(layout), false)
                || !takeStates(copy, mols.at(i)))
                return false;
            if (places.size() == mols.size())
                m_places.insert(copy, places.at(i));
        }
        const QList<SdcBstBstCpx *> bonds = source->getListSdcBstBstCpx();
        for (SdcBstBstCpx *bond : bonds) {
            if (!join(bond->getSdcBst1(), bond->getSdcBst2()))
                return false;
        }
        return true;
    }

    /// Joins the copies of two sites.
    bool join(SdcBst *first, SdcBst *second)
    {
        SdcBst *const copies[]{m_copies.value(first), m_copies.value(second)};
        if (!copies[0] || !copies[1])
            return false;
        auto *const bond = new SdcBstBstCpx(m_cpx.getZelDbSqliteModel(), &m_cpx);
        for (SdcBst *copy : copies) {
            copy->setBindingStatus(BindingStatusBound);
            bond->addSdcBst(copy);
        }
        return m_cpx.addSdcBstBstCpx(bond);
    }

    /// Stores what the model does not have of it.
    bool save()
    {
        if (!m_cpx.adoptStoredSpecies() && !m_cpx.saveToDbCpx())
            return false;
        // Places are listed in the order of the states.
        m_cpx.reRankMols(true, true);
        QStringList places;
        for (SdcMol *mol : m_cpx.getListSdcMol())
            places.append(m_places.value(mol));
        if (!places.join(QString()).isEmpty())
            m_cpx.setProperty(SdcProperty::CpaKey2, places.join(u';'));
        return m_cpx.saveToDbCpa();
    }

private:
    bool takeStates(SdcMol *copy, SdcMol *source)
    {
        const QList<SdcBst *> sites = source->getListSdcBst();
        const QList<SdcBst *> copies = copy->getListSdcBst();
        if (sites.size() != copies.size())
            return false;
        copy->synchronizeMcpTagStates(source, false);
        for (qsizetype i = 0; i < sites.size(); ++i) {
            copies.at(i)->setBindingStatus(sites.at(i)->getStoredBindingStatus());
            m_copies.insert(sites.at(i), copies.at(i));
        }
        return true;
    }

    SdcCpx m_cpx;
    QHash<SdcBst *, SdcBst *> m_copies;
    QHash<SdcMol *, QString> m_places; ///< of the molecules in the second key
};

} // namespace

bool SdcBstBstCxi::saveResultToDb()
{
    SdcBst *const site1 = getSdcBst1();
    SdcBst *const site2 = getSdcBst2();
    SdcCpx *const cpx1 = site1 ? site1->getParentSdcCpx() : nullptr;
    SdcCpx *const cpx2 = site2 ? site2->getParentSdcCpx() : nullptr;
    if (!getZelDbSqliteModel() || !getZelDbSqliteModel()->database())
        return refuse(this, SaveFunction, QLatin1String(NoDatabase));
    if (!cpx1 || !cpx2)
        return refuse(this, SaveFunction, QStringLiteral("a bond needs two sites of complexes"));
    Product product(getZelDbSqliteModel());
    if (!product.take(cpx1) || (cpx2 != cpx1 && !product.take(cpx2)) || !product.join(site1, site2))
        return refuse(this, SaveFunction,
            QStringLiteral("a molecule of its complexes is not what the model has of it; save "
                           "molecule and complexes first"));
    Assignments assignments;
    return writeInTransaction(this, SaveFunction, &assignments, [&](QString *why) {
        if (!product.save()) {
            *why = product.cpx()->getRefusal();
            return false;
        }
        assignments.assign(this, SdcProperty::ResultCpaPsiimId, aliasOf(product.cpx()));
        return true;
    });
}
