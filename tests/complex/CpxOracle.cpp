#include "complex/CpxOracle.h"

#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDebug>
#include <QMap>

namespace CpxOracle {

namespace {

void writeIdAndStatus(SdcBst *site, bool considerBstStatus, QString *text)
{
    if (!site)
        return;
    *text += site->getPsiimId();
    if (considerBstStatus) {
        *text += u'(';
        *text += site->getBindingStatusName();
        *text += u')';
    }
}

// False once a site with two bonds was met, wherever that was: the text is nothing then.
bool writeSignature(SdcMol *mol, const Mols &molSet, const Mols &ranked, const Bonds &bonds,
    bool considerBstStatus, SdcMol *firstMol, QString *text)
{
    if (!mol || !molSet.contains(mol))
        return true;
    Mols rest = molSet;
    rest.removeOne(mol);
    *text += u'[';
    *text += mol->getPsiimId();
    *text += firstMol && mol == firstMol ? QLatin1String("(1): ") : QLatin1String("(2): ");
    const QList<SdcBst *> sites = Sdc::getSortedSdcBstListByPsiimId(mol->getListSdcBst());
    for (qsizetype i = 0; i < sites.size(); ++i) {
        SdcBst *const site = sites.at(i);
        writeIdAndStatus(site, considerBstStatus, text);
        *text += QLatin1String("--");
        int bondsOfSite = 0;
        for (SdcBstBst *bond : bonds) {
            if (!bond || !bond->hasSdcBst(site))
                continue;
            if (++bondsOfSite == 2) {
                qDebug() << "zelModelSupport/zelModelSupportDataComponent/SdcCpx" << 2042
                         << "Error found";
                return false;
            }
            SdcBst *const partner = bond->getPartnerSdcBst(site);
            SdcMol *const partnerMol = partner ? partner->getParentSdcMol() : nullptr;
            writeIdAndStatus(partner, considerBstStatus, text);
            if (partnerMol && ranked.contains(partnerMol)) {
                *text += QLatin1String("[rankedNeighborMol-");
                *text += QString::number(ranked.indexOf(partnerMol));
                *text += u']';
            } else if (!writeSignature(
                           partnerMol, rest, ranked, bonds, considerBstStatus, firstMol, text)) {
                return false;
            }
        }
        if (bondsOfSite == 0)
            *text += u'0';
        if (i + 1 < sites.size())
            *text += u';';
    }
    *text += u']';
    return true;
}

Mols molsOf(SdcCpx *cpx)
{
    return cpx->getChildMolList();
}

Bonds bondsOf(SdcCpx *cpx)
{
    return Sdc::toListSdcBstBst(cpx->getListSdcBstBstCpx());
}

template <typename FlagOrFirstMol>
SdcMol *frontOfList(const Mols &candidates, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, FlagOrFirstMol tail)
{
    if (candidates.isEmpty())
        return nullptr;
    SdcMol *front = candidates.first();
    for (qsizetype i = 1; i < candidates.size(); ++i)
        front = constFrontMol(front, candidates.at(i), molSet, ranked, bonds, tail);
    return front;
}

template <typename FlagOrFirstMol>
Mols rankList(const Mols &mols, const Mols &molSet, const Bonds &bonds, FlagOrFirstMol tail)
{
    Mols remaining = mols;
    Mols ranked;
    for (qsizetype i = 0; i < mols.size(); ++i) {
        SdcMol *const front = constFrontMol(remaining, molSet, ranked, bonds, tail);
        if (!front)
            continue;
        ranked.append(front);
        remaining.removeAll(front);
    }
    return ranked;
}

Mols frontPass(const Mols &mols, const Bonds &bonds, bool considerBstStatus)
{
    SdcMol *front = mols.first();
    Mols set{front};
    for (qsizetype i = 1; i < mols.size(); ++i) {
        SdcMol *const mol = mols.at(i);
        SdcMol *const winner = frontMol(front, mol, mols, {}, bonds, considerBstStatus);
        if (!winner) {
            set.append(mol);
        } else if (winner != front) {
            front = winner;
            set = {winner};
        }
    }
    return set;
}

} // namespace

QString molSignature(SdcMol *mol, const Mols &molSet, const Mols &ranked, const Bonds &bonds,
    bool considerBstStatus, SdcMol *firstMol)
{
    QString text;
    return writeSignature(mol, molSet, ranked, bonds, considerBstStatus, firstMol, &text)
        ? text
        : QString();
}

SdcMol *frontMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, bool considerBstStatus)
{
    const QString text1 = molSignature(mol1, molSet, ranked, bonds, considerBstStatus, nullptr);
    const QString text2 = molSignature(mol2, molSet, ranked, bonds, considerBstStatus, nullptr);
    if (text1 < text2)
        return mol1;
    return text2 < text1 ? mol2 : nullptr;
}

SdcMol *frontMolWithFirstMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, SdcMol *firstMol)
{
    if (molSet.isEmpty())
        return nullptr;
    if (!mol1)
        return mol2;
    if (!mol2)
        return mol1;
    const QString text1 = molSignature(mol1, molSet, ranked, bonds, false, firstMol);
    const QString text2 = molSignature(mol2, molSet, ranked, bonds, false, firstMol);
    if (text1 < text2)
        return mol1;
    if (text2 < text1)
        return mol2;
    qDebug() << "Possible error at SdcMol * SdcCpx::getFrontMol(SdcMol * sdcMol1, SdcMol * "
                "sdcMol2, QList<SdcMol *> & molSet, const QList<SdcBstBst *> & listSbb, SdcMol * "
                "firstMol)"
             << text1 << text2;
    return nullptr;
}

SdcMol *constFrontMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, bool considerBstStatus)
{
    SdcMol *const front = frontMol(mol1, mol2, molSet, ranked, bonds, considerBstStatus);
    return front ? front : mol1;
}

SdcMol *constFrontMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, SdcMol *firstMol)
{
    return frontMolWithFirstMol(mol1, mol2, molSet, ranked, bonds, firstMol);
}

SdcMol *constFrontMol(const Mols &candidates, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, bool considerBstStatus)
{
    return frontOfList(candidates, molSet, ranked, bonds, considerBstStatus);
}

SdcMol *constFrontMol(const Mols &candidates, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, SdcMol *firstMol)
{
    return frontOfList(candidates, molSet, ranked, bonds, firstMol);
}

Mols constRankedMolList(
    const Mols &mols, const Mols &molSet, const Bonds &bonds, bool considerBstStatus)
{
    return rankList(mols, molSet, bonds, considerBstStatus);
}

Mols constRankedMolList(const Mols &mols, const Mols &molSet, const Bonds &bonds, SdcMol *firstMol)
{
    return rankList(mols, molSet, bonds, firstMol);
}

Mols frontMolSet(const Mols &mols, const Bonds &bonds, bool considerBstStatus)
{
    if (mols.isEmpty())
        return {};
    const Mols set = frontPass(mols, bonds, false);
    if (set.size() < 2 || !considerBstStatus)
        return set;
    return frontPass(set, bonds, true);
}

bool isSymmetricSpecies(SdcCpx *cpx)
{
    return cpx->areAllConnected() && numWayToRank(cpx) >= 2;
}

int numWayToRank(SdcCpx *cpx)
{
    return static_cast<int>(frontMolSet(molsOf(cpx), bondsOf(cpx), false).size());
}

int symmetryState(SdcCpx *cpx)
{
    if (!cpx->areAllConnected())
        return SdcCpx::SymmetryUnknown;
    if (cpx->getSpecisStaticSymmetryState() != SdcCpx::SymmetryUnknown)
        return cpx->getSpecisStaticSymmetryState();
    return isSymmetricSpecies(cpx) ? SdcCpx::SymmetricSpecies : SdcCpx::AsymmetricSpecies;
}

namespace {

Mols rankWithState(SdcCpx *cpx, int state, bool considerBstStatus, bool considerMcpState)
{
    const Mols mols = molsOf(cpx);
    if (mols.isEmpty())
        return {};
    const Bonds bonds = bondsOf(cpx);
    if (state == SdcCpx::AsymmetricSpecies)
        return constRankedMolList(mols, mols, bonds, false);
    Mols set = frontMolSet(mols, bonds, considerBstStatus);
    if (set.size() >= 2 && considerMcpState) {
        SdcMol *best = set.first();
        QString bestText = mcpStateCodeSignature(constRankedMolList(mols, mols, bonds, best), true);
        Mols candidates{best};
        for (qsizetype i = 1; i < set.size(); ++i) {
            SdcMol *const mol = set.at(i);
            const QString text =
                mcpStateCodeSignature(constRankedMolList(mols, mols, bonds, mol), true);
            if (text == bestText) {
                candidates.append(mol);
            } else if (text < bestText) {
                best = mol;
                bestText = text;
                candidates = {best};
            }
        }
        set = candidates;
    }
    SdcMol *first = nullptr;
    for (SdcMol *mol : std::as_const(set)) {
        if (!first || mol->getPosIndex() < first->getPosIndex())
            first = mol;
    }
    return constRankedMolList(mols, mols, bonds, first);
}

} // namespace

Mols rankedListMol(SdcCpx *cpx, bool considerBstStatus, bool considerMcpState)
{
    return rankWithState(
        cpx, cpx->getSpecisStaticSymmetryState(), considerBstStatus, considerMcpState);
}

ReRanking reRankMols(SdcCpx *cpx, bool considerBstStatus, bool considerMcpState)
{
    const Mols before = molsOf(cpx);
    ReRanking result;
    result.mols = before;
    result.symmetryState = symmetryState(cpx);
    if (result.symmetryState != SdcCpx::SymmetryUnknown) {
        Mols after = rankWithState(cpx, result.symmetryState, considerBstStatus, considerMcpState);
        // Ties may leave molecules out of the order; they stay molecules of the complex.
        for (SdcMol *mol : before) {
            if (!after.contains(mol))
                after.append(mol);
        }
        if (after != before) {
            for (SdcMol *mol : std::as_const(after))
                result.prevIndices.append(static_cast<int>(before.indexOf(mol)));
            result.mols = after;
        }
    }
    result.posMap = result.prevIndices;
    for (int i = 0; result.prevIndices.isEmpty() && i < before.size(); ++i)
        result.posMap.append(i);
    return result;
}

Mols sortListMol(const Mols &group, const QList<SdcBstBstCpx *> &bonds)
{
    QMap<int, Mols> molsOfCount;
    QMap<SdcMol *, QList<SdcBst *>> recordsOfMol;
    for (SdcMol *mol : group) {
        QList<SdcBst *> records;
        for (SdcBst *site : mol->getListSdcBst()) {
            for (SdcBstBstCpx *bond : bonds) {
                if (bond->hasSdcBst(site))
                    records.append(site);
            }
        }
        recordsOfMol.insert(mol, records);
        molsOfCount[static_cast<int>(records.size())].append(mol);
    }
    Mols sorted;
    for (const Mols &mols : std::as_const(molsOfCount)) {
        if (mols.size() == 1) {
            sorted.append(mols.first());
            continue;
        }
        QMap<QString, Mols> molsOfSite;
        for (SdcMol *mol : mols) {
            for (SdcBst *site : recordsOfMol.value(mol))
                molsOfSite[site->getPsiimId()].append(mol);
        }
        for (const Mols &ofSite : std::as_const(molsOfSite)) {
            if (ofSite.size() == 1)
                sorted.append(ofSite.first());
        }
    }
    return sorted;
}

Mols sortedListMol(SdcCpx *cpx)
{
    if (!cpx->areAllConnected()) {
        qDebug() << "Error found at QList<SdcMol *> SdcCpx::getSortedListMol() ";
        return {};
    }
    QMap<QString, Mols> groups;
    for (SdcMol *mol : molsOf(cpx))
        groups[mol->getPsiimId()].append(mol);
    Mols sorted;
    for (const Mols &group : std::as_const(groups)) {
        if (group.size() == 1)
            sorted.append(group.first());
        else
            sorted.append(sortListMol(group, cpx->getListSdcBstBstCpx()));
    }
    return sorted;
}

QString molCode(SdcCpx *cpx)
{
    QStringList ids;
    for (SdcMol *mol : molsOf(cpx))
        ids.append(mol->getPsiimId());
    ids.sort();
    return ids.join(u';');
}

QString fingerPrint(SdcCpx *cpx)
{
    return fingerPrint(rankedListMol(cpx, false, false), bondsOf(cpx));
}

QString fingerPrint(const Mols &mols, const Bonds &bonds)
{
    QStringList ids;
    for (SdcMol *mol : mols)
        ids.append(mol->getPsiimId());
    QStringList entries;
    for (SdcBstBst *bond : bonds) {
        QStringList sites;
        for (SdcBst *site : bond->getListSdcBst()) {
            const auto index = mols.indexOf(site->getParentSdcMol());
            sites.append(
                QStringLiteral("(mol-") + QString::number(index) + u')' + site->getPsiimId());
        }
        sites.sort();
        entries.append(sites.join(u'-'));
    }
    entries.sort();
    return QStringLiteral("Mols[") + ids.join(QStringLiteral(", "))
        + QStringLiteral("]; Interactions[") + entries.join(QStringLiteral(", ")) + u']';
}

QString mcpStateCodeSignature(const Mols &mols, bool withMolPsiimId)
{
    QString text;
    for (qsizetype i = 0; i < mols.size(); ++i) {
        text += QStringLiteral("<mol ");
        if (withMolPsiimId)
            text += QStringLiteral("id=\"") + mols.at(i)->getPsiimId() + QStringLiteral("\" ");
        text += QStringLiteral("pos=\"") + QString::number(i + 1) + QStringLiteral("\">");
        const QList<SdcMcp *> mcps = mols.at(i)->getListSdcMcp();
        for (qsizetype j = 0; j < mcps.size(); ++j) {
            QStringList entries;
            const QList<ZelRectItemMcpSticky *> stickies = mcps.at(j)->getListSticky();
            for (qsizetype k = 0; k < stickies.size(); ++k) {
                const int state = stickies.at(k)->getStateType();
                QString entry = QString::number(k);
                if (state == ComponentStateOff)
                    entry += QStringLiteral("(-)");
                else if (state != ComponentStateOn)
                    entry += QStringLiteral("(0)");
                entries.append(entry);
            }
            while (!entries.isEmpty() && entries.last().endsWith(QStringLiteral("(0)")))
                entries.removeLast();
            text += QStringLiteral("<mcp pos=\"") + QString::number(j + 1) + u'"';
            if (mcps.at(j)->getProperty(SdcProperty::Negation) == QStringLiteral("1"))
                text += QStringLiteral(" not=\"1\"");
            text += QStringLiteral(" states=\"") + entries.join(u';') + QStringLiteral("\">");
            const QList<SdcBst *> sites = mcps.at(j)->getListSdcBst();
            for (qsizetype k = 0; k < sites.size(); ++k) {
                text += QStringLiteral("<bst id=\"") + sites.at(k)->getPsiimId()
                    + QStringLiteral("\" pos=\"") + QString::number(k + 1) + u'"';
                if (sites.at(k)->getBindingStatus() == BindingStatusBound)
                    text += QStringLiteral(" bindingStatus=\"Bound\"");
                else if (sites.at(k)->getBindingStatus() == BindingStatusUnbound)
                    text += QStringLiteral(" bindingStatus=\"Unbound\"");
                text += QStringLiteral(" />");
            }
            text += QStringLiteral("</mcp>");
        }
        text += QStringLiteral("</mol>");
    }
    return text;
}

} // namespace CpxOracle
