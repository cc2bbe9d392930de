#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxGraph.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxBondTable.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxReadAhead.h"

#include <algorithm>
#include <functional>

namespace {

using SdcCpxTexts::units;

constexpr QStringView HeadEnd = u"(2): ";
constexpr QStringView Joint = u"--";

struct Entry
{
    QStringView id;
    SdcBst *site;
};

// As getListSdcBst(), without a list for each component.
void collectSites(Sdc *sdc, QVarLengthArray<Entry, 16> *entries)
{
    if (SdcBst *site = sdc->toSdcBst())
        entries->append({site->getPsiimIdView(), site});
    for (Sdc *child : sdc->sdcChildren()) {
        if (child)
            collectSites(child, entries);
    }
}

} // namespace

SdcCpxGraph::SdcCpxGraph(const QList<SdcMol *> &molSet, const QList<SdcMol *> &others,
    const QList<SdcBstBst *> &bonds, bool withStatuses)
{
    SdcCpxReadAhead::parts(molSet);
    addMols(molSet, others);
    const SdcCpxBondTable held(bonds);
    Partners partners;
    for (const SdcCpxBondTable::Held &entry : held.entries()) {
        const SdcMol *const mol = entry.partner ? entry.partner->getParentSdcMol() : nullptr;
        partners.append(mol ? find(mol) : None);
    }
    for (Mol &mol : m_mols) {
        if (mol.count > 0)
            addTexts(mol, held, partners, withStatuses);
    }
    for (int i = 0; i < size(); ++i)
        findShape(i);
}

QStringView SdcCpxGraph::head(int number) const
{
    if (number == m_first)
        return {m_firstHead.constData(), m_firstHead.size()};
    return text(m_mols[number].head);
}

int SdcCpxGraph::find(const SdcMol *mol) const
{
    const auto at = std::lower_bound(m_mols.cbegin(), m_mols.cend(), mol,
        [](const Mol &entry, const SdcMol *wanted) { return std::less<>()(entry.mol, wanted); });
    return at != m_mols.cend() && at->mol == mol ? static_cast<int>(at - m_mols.cbegin()) : None;
}

bool SdcCpxGraph::isConnected() const
{
    if (m_mols.isEmpty())
        return false;
    QVarLengthArray<bool, 16> seen(m_mols.size(), false);
    QVarLengthArray<int, 16> reached{0};
    seen[0] = true;
    for (qsizetype i = 0; i < reached.size(); ++i) {
        const Mol &mol = m_mols[reached[i]];
        for (int k = mol.firstSite; k < mol.firstSite + mol.siteCount; ++k) {
            const int partner = m_sites[k].partner;
            if (partner == None || seen[partner])
                continue;
            seen[partner] = true;
            reached.append(partner);
        }
    }
    return reached.size() == m_mols.size();
}

void SdcCpxGraph::setFirst(int number)
{
    m_first = number;
    m_firstHead.clear();
    if (number == None)
        return;
    const QStringView usual = text(m_mols[number].head);
    m_firstHead.append(usual.utf16(), usual.size());
    if (!usual.isEmpty())
        m_firstHead[usual.size() - HeadEnd.size() + 1] = u'1';
}

void SdcCpxGraph::setRank(int number, int rank)
{
    if (m_mols[number].rank == None)
        m_mols[number].rank = rank;
}

void SdcCpxGraph::clearRanks()
{
    for (Mol &mol : m_mols)
        mol.rank = None;
}

void SdcCpxGraph::addMols(const QList<SdcMol *> &molSet, const QList<SdcMol *> &others)
{
    QVarLengthArray<SdcMol *, 32> all;
    all.append(molSet.constData(), molSet.size());
    all.append(others.constData(), others.size());
    std::sort(all.begin(), all.end(), std::less<>());
    const auto end = std::unique(all.begin(), all.end());
    m_mols.reserve(end - all.begin());
    for (auto at = all.begin(); at != end; ++at) {
        m_mols.append(Mol());
        m_mols.last().mol = *at;
    }
    for (const SdcMol *mol : molSet) {
        if (mol)
            ++m_mols[find(mol)].count;
    }
}

void SdcCpxGraph::addTexts(
    Mol &mol, const SdcCpxBondTable &held, const Partners &partners, bool withStatuses)
{
    QVarLengthArray<Entry, 16> sorted;
    collectSites(mol.mol, &sorted);
    const auto isLess = [](const Entry &a, const Entry &b) { return units(a.id) < units(b.id); };
    if (!std::is_sorted(sorted.cbegin(), sorted.cend(), isLess))
        std::stable_sort(sorted.begin(), sorted.end(), isLess);

    const qsizetype begin = m_text.size();
    m_text.append(u'[');
    m_text.append(mol.mol->getPsiimIdView());
    m_text.append(HeadEnd);
    mol.head = m_text.since(begin);
    mol.firstSite = static_cast<int>(m_sites.size());
    mol.siteCount = static_cast<int>(sorted.size());
    for (const Entry &entry : std::as_const(sorted))
        addSite(mol, entry.site, entry.id, held, partners, withStatuses);
}

void SdcCpxGraph::addSite(Mol &mol, SdcBst *site, QStringView id, const SdcCpxBondTable &held,
    const Partners &partners, bool withStatuses)
{
    Site entry;
    const qsizetype begin = m_text.size();
    m_text.append(id);
    if (withStatuses)
        appendStatus(site);
    m_text.append(Joint);
    if (const int number = held.find(site); number == None) {
        m_text.append(u'0');
    } else {
        const SdcCpxBondTable::Held &end = held.entries()[number];
        if (end.partner) { // a bond that has lost its other site leads nowhere
            m_text.append(end.partner->getPsiimIdView());
            if (withStatuses)
                appendStatus(end.partner);
        }
        entry.partner = partners[number];
        mol.doublyBound = mol.doublyBound || end.twice;
        m_hasDoublyBound = m_hasDoublyBound || end.twice;
    }
    entry.text = m_text.since(begin);
    m_sites.append(entry);
}

void SdcCpxGraph::findShape(int number)
{
    Mol &mol = m_mols[number];
    for (int i = 0; i < number; ++i) {
        // Only the first of each shape is compared.
        if (m_mols[i].shape == i && haveSameTexts(m_mols[i], mol)) {
            mol.shape = i;
            return;
        }
    }
    mol.shape = number;
}

bool SdcCpxGraph::haveSameTexts(const Mol &a, const Mol &b) const
{
    if (a.siteCount != b.siteCount || a.head.size != b.head.size
        || units(text(ownTexts(a))) != units(text(ownTexts(b))))
        return false;
    for (int i = 0; i < a.siteCount; ++i) {
        if (m_sites[a.firstSite + i].text.size != m_sites[b.firstSite + i].text.size)
            return false;
    }
    return true;
}

// Head and sites lie one after the other.
SdcCpxGraph::Piece SdcCpxGraph::ownTexts(const Mol &mol) const
{
    if (mol.siteCount == 0)
        return mol.head;
    const Piece &last = m_sites[mol.firstSite + mol.siteCount - 1].text;
    return {mol.head.begin, last.begin + last.size - mol.head.begin};
}

void SdcCpxGraph::appendStatus(SdcBst *site)
{
    m_text.append(u'(');
    m_text.append(SdcBst::bindingStatusName(site->getBindingStatus()));
    m_text.append(u')');
}
