#include "zelExchange/import/ZelBnglInteractions.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelLayout/AutoLayout.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDomDocument>
#include <QHash>

namespace {

/// A rate that no rule gives.
constexpr QLatin1String NoRate("0");

} // namespace

ZelBnglInteractions::ZelBnglInteractions(
    const ZelBnglModel &model, const ZelBnglTypes &types, ZelDbSqliteModel *db)
    : m_model(model), m_types(types), m_db(db)
{
}

void ZelBnglInteractions::add(
    const ZelBnglRule &rule, const std::vector<ZelBnglRules::Reaction> &reactions)
{
    QHash<quint32, End> ends; // by component of the file
    QHash<quint32, quint32> partners;
    for (const ZelBnglRange side : {rule.reactants, rule.products}) {
        for (const ZelBnglPattern &pattern : ZelBnglModel::items(m_model.patterns, side)) {
            for (const ZelBnglMolecule &molecule : m_model.moleculesOf(pattern)) {
                const int type = m_types.find(molecule.name);
                for (quint32 c = 0; c < molecule.components.count; ++c) {
                    const quint32 index = molecule.components.first + c;
                    const ZelBnglComponent &component = m_model.components[index];
                    const int group =
                        m_types.types[static_cast<size_t>(type)].findGroup(component.name);
                    if (group < 0)
                        continue;
                    ends.insert(index, {type, group});
                    for (const ZelBnglBond &bond :
                        ZelBnglModel::items(m_model.bonds, component.bonds)) {
                        // An interaction joins two molecules.
                        const quint32 place = bond.partner - molecule.components.first;
                        if (bond.label >= ZelBnglNames::FirstFree
                            && place >= molecule.components.count)
                            partners.insert(index, bond.partner);
                    }
                }
            }
        }
    }
    for (auto bond = partners.cbegin(); bond != partners.cend(); ++bond) {
        if (ends.contains(*bond))
            ratesOf(ends.value(bond.key()), ends.value(*bond));
    }
    using Kind = ZelBnglRules::Kind;
    for (const ZelBnglRules::Reaction &reaction : reactions) {
        if (reaction.kind != Kind::Association && reaction.kind != Kind::Dissociation)
            continue;
        Rates &rates = ratesOf(ends.value(reaction.site1), ends.value(reaction.site2));
        QString &rate = reaction.kind == Kind::Association ? rates.association : rates.dissociation;
        // Several rules may join one pair under different conditions; the first one's rates stand.
        if (rate.isEmpty())
            rate = QString::fromUtf8(m_model.line(reaction.rate));
    }
}

ZelBnglInteractions::Rates &ZelBnglInteractions::ratesOf(const End &end1, const End &end2)
{
    return m_pairs[std::minmax(end1, end2)];
}

bool ZelBnglInteractions::store(int *count)
{
    const auto copiesOf = [this](const End &end) {
        std::vector<int> copies;
        const auto &sites = m_types.types[static_cast<size_t>(end.first)].sites;
        for (size_t s = 0; s < sites.size(); ++s) {
            if (sites[s].group == end.second)
                copies.push_back(static_cast<int>(s));
        }
        return copies;
    };
    for (const auto &[ends, rates] : m_pairs) {
        const auto &[end1, end2] = ends;
        for (const int site1 : copiesOf(end1)) {
            for (const int site2 : copiesOf(end2)) {
                if (end1 == end2 && site2 < site1)
                    continue;
                if (!storePair(end1.first, site1, end2.first, site2, rates))
                    return false;
                ++*count;
            }
        }
    }
    return true;
}

bool ZelBnglInteractions::storePair(int type1, int site1, int type2, int site2, const Rates &rates)
{
    // A complex of the two gives the drawing, in which the two sites face each other.
    SdcCpx cpx(m_db);
    QString ids[2];
    QStringList names;
    auto *const drawnBond = new SdcBstBstCpx(m_db, &cpx);
    for (const auto &[index, typeIndex, siteIndex] :
        {std::tuple(0, type1, site1), std::tuple(1, type2, site2)}) {
        const ZelBnglType &type = m_types.types[static_cast<size_t>(typeIndex)];
        const ZelBnglTypeSite &site = type.sites[static_cast<size_t>(siteIndex)];
        auto *const mol = new SdcMol(m_db);
        cpx.addSdcChild(mol, true);
        if (!mol->loadFromDb(type.psiimId))
            return false;
        ids[index] = site.bstPsiimId;
        drawnBond->addSdcBst(mol->getSdcBstFromPsiimId(site.bstPsiimId));
        names.append(QString::fromLatin1(m_model.name(type.name)) + u'(' + site.shortName + u')');
    }
    cpx.addSdcBstBstCpx(drawnBond);
    zel::layout::arrangeComplex(&cpx);
    QDomDocument layout;
    layout.setContent(cpx.getGraphicsInfo());

    SdcMli mli(m_db);
    if (!mli.loadDom(
            QString(), layout.documentElement().firstChildElement(QStringLiteral("cpx")), nullptr))
        return false;
    auto *const bond = new SdcBstBstMli(m_db, &mli);
    bond->addSdcBst(mli.getSdcBstFromMolPosBstId(QStringLiteral("0"), ids[0]));
    bond->addSdcBst(mli.getSdcBstFromMolPosBstId(QStringLiteral("1"), ids[1]));
    mli.addSdcBstBstMli(bond);
    mli.setProperty(SdcProperty::Name, names.join(u'.'));
    mli.setProperty(SdcProperty::ShortName, names.join(u'.'));
    mli.setProperty(SdcProperty::AssociationRate,
        rates.association.isEmpty() ? QString(NoRate) : rates.association);
    mli.setProperty(SdcProperty::DissociationRate,
        rates.dissociation.isEmpty() ? QString(NoRate) : rates.dissociation);
    return mli.saveToDb();
}
