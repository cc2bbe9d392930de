#include "zelExchange/import/ZelBnglStore.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelLayout/AutoLayout.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>

namespace {

constexpr char StateGroup[] = "state";
constexpr qsizetype MaxNameParts = 6;
constexpr size_t MaxSpareMols = 32; // of each type

} // namespace

ZelBnglStore::ZelBnglStore(const ZelBnglModel &model, ZelBnglTypes &types, ZelDbSqliteModel *db)
    : m_model(model), m_types(types), m_db(db)
{
}

ZelBnglStore::~ZelBnglStore() = default;

bool ZelBnglStore::storeType(ZelBnglType &type, int index)
{
    SdcMol mol(m_db);
    const QString name = QString::fromLatin1(m_model.name(type.name));
    mol.setProperty(SdcProperty::Name, name);
    mol.setProperty(SdcProperty::ShortName, name);
    mol.setProperty(SdcProperty::Color, zel::layout::colorAt(index).name());
    for (const ZelBnglTypeSite &site : type.sites) {
        auto *const mcp = new SdcMcp(m_db);
        mcp->setProperty(SdcProperty::Name, QString::fromLatin1(m_model.name(site.name)));
        mcp->setProperty(SdcProperty::ShortName, site.shortName);
        mol.addSdcMcp(mcp);
        zel::layout::makeItem(mcp, nullptr);
        for (const quint32 state : site.states) {
            if (!m_stateColors.contains(state))
                m_stateColors.insert(
                    state, zel::layout::featureColorAt(static_cast<int>(m_stateColors.size())));
            mcp->addTag(
                QString::fromLatin1(m_model.name(state)), m_stateColors.value(state).name());
        }
        if (site.canBind)
            mcp->addSdcBst(new SdcBst(m_db));
    }
    if (type.sites.empty()) {
        // Only components are drawn: without one there would be nothing to see or to pick.
        auto *const body = new SdcMcp(m_db);
        body->setProperty(SdcProperty::Name, name);
        body->setProperty(SdcProperty::ShortName, name);
        mol.addSdcMcp(body);
    }
    zel::layout::drawMolecule(&mol, nullptr);
    if (!mol.saveToDb())
        return false;
    type.psiimId = mol.getPsiimId();
    for (size_t i = 0; i < type.sites.size(); ++i) {
        SdcMcp *const mcp = mol.getSdcMcpAtIndex(static_cast<int>(i));
        type.sites[i].mcpPsiimId = mcp->getPsiimId();
        const auto isCopy = [&site = type.sites[i]](const ZelBnglTypeSite &other) {
            return &other != &site && other.group == site.group;
        };
        if (std::any_of(type.sites.begin(), type.sites.end(), isCopy)
            && !m_db->mcpSetCopyGroup(
                mcp->getPsiimId(), QString::fromLatin1(m_model.name(type.sites[i].name))))
            return false;
        if (type.sites[i].canBind)
            type.sites[i].bstPsiimId = mcp->getListSdcBst().first()->getPsiimId();
        const QList<ZelDbState> states = m_db->mcpGetOrderedStates(mcp->getPsiimId());
        for (const ZelDbState &state : states) {
            if (!m_db->mcpStateSetExclusionGroup(state.psiimId, QLatin1String(StateGroup)))
                return false;
        }
    }
    return true;
}

bool ZelBnglStore::storeInstance(
    const ZelBnglPattern &pattern, ZelBnglInstance instance, ZelBnglStored *stored)
{
    instance.makeCanonical(m_model, m_types);
    Mols mols = takeMols(instance);
    if (mols.size() < instance.mols.size())
        return false;
    std::vector<int> molPos(mols.size()); // in the complex, by molecule of the instance
    bool isNewComplex = false;
    {
        SdcCpx cpx(m_db);
        build(&cpx, instance, mols);
        if (!storeComplex(&cpx, &isNewComplex))
            return false;
        // The state code is written over this order; places and second key must be, too.
        cpx.reRankMols(true, true);
        QStringList compartments(static_cast<qsizetype>(mols.size()));
        bool hasCompartments = false;
        for (size_t m = 0; m < mols.size(); ++m) {
            const quint32 compartment = instance.mols[m].compartment;
            molPos[m] = mols[m]->getPosIndex();
            compartments[molPos[m]] = QString::fromLatin1(m_model.name(compartment));
            hasCompartments = hasCompartments || compartment != ZelBnglNames::None;
        }
        if (!storeAlias(&cpx, hasCompartments ? compartments.join(u';') : QString(), stored))
            return false;
    }
    if (!isNewComplex)
        giveBack(instance, std::move(mols));

    const std::span<const ZelBnglMolecule> molecules = m_model.moleculesOf(pattern);
    const quint32 firstComponent = molecules.empty() ? 0 : molecules.front().components.first;
    for (size_t m = 0; m < instance.mols.size(); ++m) {
        const ZelBnglInstance::Mol &mol = instance.mols[m];
        const ZelBnglType &type = m_types.types[static_cast<size_t>(mol.type)];
        for (size_t s = 0; s < mol.sites.size(); ++s) {
            if (mol.sites[s].component == ZelBnglInstance::None)
                continue;
            const size_t place = static_cast<size_t>(mol.sites[s].component) - firstComponent;
            stored->ends.resize(std::max(stored->ends.size(), place + 1));
            stored->ends[place] = {molPos[m], type.sites[s].bstPsiimId};
        }
    }
    return true;
}

ZelBnglStore::Mols ZelBnglStore::takeMols(const ZelBnglInstance &instance)
{
    m_spareMols.resize(m_types.types.size());
    Mols mols;
    mols.reserve(instance.mols.size());
    for (const ZelBnglInstance::Mol &source : instance.mols) {
        const auto type = static_cast<size_t>(source.type);
        if (Mols &spare = m_spareMols[type]; !spare.empty()) {
            mols.push_back(std::move(spare.back()));
            spare.pop_back();
            continue;
        }
        auto mol = std::make_unique<SdcMol>(m_db);
        if (!mol->loadFromDb(m_types.types[type].psiimId))
            break;
        mols.push_back(std::move(mol));
    }
    return mols;
}

void ZelBnglStore::giveBack(const ZelBnglInstance &instance, Mols mols)
{
    for (size_t m = 0; m < mols.size(); ++m) {
        Mols &spare = m_spareMols[static_cast<size_t>(instance.mols[m].type)];
        if (spare.size() < MaxSpareMols)
            spare.push_back(std::move(mols[m]));
    }
}

void ZelBnglStore::build(SdcCpx *cpx, const ZelBnglInstance &instance, const Mols &mols)
{
    for (size_t m = 0; m < mols.size(); ++m) {
        const ZelBnglInstance::Mol &source = instance.mols[m];
        const ZelBnglType &type = m_types.types[static_cast<size_t>(source.type)];
        SdcMol *const mol = mols[m].get();
        cpx->addSdcChild(mol, false);
        for (size_t s = 0; s < source.sites.size(); ++s) {
            const ZelBnglInstance::Site &site = source.sites[s];
            SdcMcp *const mcp = mol->getSdcMcpAtIndex(static_cast<int>(s));
            const QList<ZelRectItemMcpSticky *> stickies = mcp->getListSticky();
            for (qsizetype i = 0; i < stickies.size(); ++i) {
                const int state = site.state == ZelBnglInstance::NoState ? ComponentStateDontCare
                    : site.state == i                                    ? ComponentStateOn
                                                                         : ComponentStateOff;
                stickies.at(i)->setStateType(state, false);
            }
            mcp->updateStatePropertyFromSticky();
            if (type.sites[s].canBind) {
                mcp->getListSdcBst().first()->setBindingStatus(site.bond == ZelBnglInstance::AnyBond
                        ? BindingStatusUnspecified
                        : site.bond == ZelBnglInstance::Unbound ? BindingStatusUnbound
                                                                : BindingStatusBound);
            }
        }
    }
    join(cpx, instance, mols);
}

void ZelBnglStore::join(SdcCpx *cpx, const ZelBnglInstance &instance, const Mols &mols)
{
    const auto siteOf = [&mols](size_t mol, size_t site) {
        return mols[mol]->getSdcMcpAtIndex(static_cast<int>(site))->getListSdcBst().first();
    };
    for (size_t m = 0; m < instance.mols.size(); ++m) {
        for (size_t s = 0; s < instance.mols[m].sites.size(); ++s) {
            const ZelBnglInstance::Site &site = instance.mols[m].sites[s];
            // Each bond is met at both of its ends.
            if (site.partnerMol <= static_cast<int>(m))
                continue;
            auto *const bond = new SdcBstBstCpx(m_db, cpx);
            bond->addSdcBst(siteOf(m, s));
            bond->addSdcBst(siteOf(
                static_cast<size_t>(site.partnerMol), static_cast<size_t>(site.partnerSite)));
            cpx->addSdcBstBstCpx(bond);
        }
    }
}

bool ZelBnglStore::storeAlias(SdcCpx *cpx, const QString &key2, ZelBnglStored *stored)
{
    cpx->setProperty(SdcProperty::CpaKey2, key2);
    if (!cpx->retrieveAliasBasedOnState(false)) {
        cpx->setProperty(
            SdcProperty::CpaShortName, uniqueName("cpa", cpx->getProperty(SdcProperty::ShortName)));
        stored->isNew = true;
        if (!cpx->saveToDbCpa())
            return false;
    }
    stored->cpaPsiimId = cpx->getProperty(SdcProperty::CpaPsiimId);
    return true;
}

bool ZelBnglStore::storeComplex(SdcCpx *cpx, bool *isNew)
{
    cpx->reRankMols(false, false);
    const QString known = m_db->cpxGetPsiimIdFromFingerPrint(cpx->getCpxFingerPrint());
    *isNew = known.isEmpty();
    if (!*isNew) {
        cpx->setProperty(SdcProperty::PsiimId, known);
        cpx->setProperty(
            SdcProperty::ShortName, m_db->cpxGetHashInfo(known).value(ZelDbColumn::ShortName));
        return true;
    }
    QStringList names;
    for (const SdcMol *mol : cpx->getChildMolList())
        names.append(mol->getProperty(SdcProperty::ShortName));
    if (names.size() > MaxNameParts)
        names = names.mid(0, MaxNameParts)
            << QStringLiteral("and_%1").arg(names.size() - MaxNameParts);
    const QString name = uniqueName("cpx", SdcCpx::getDefaultComplexName(names));
    if (name.isEmpty())
        return false;
    cpx->setProperty(SdcProperty::Name, name);
    cpx->setProperty(SdcProperty::ShortName, name);
    zel::layout::arrangeComplex(cpx);
    ++m_complexCount;
    return cpx->saveToDbCpx();
}

QString ZelBnglStore::uniqueName(const char *kind, const QString &base)
{
    const QString word = QLatin1String(kind);
    qint64 &number = m_names[word + u' ' + base];
    const QString name = ZelDbSqlite::getFreeShortName(word, base, QString(), m_db, &number);
    if (number == 1)
        ++number; // what comes after the base is the second of its name
    return name;
}
