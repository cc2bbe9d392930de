#pragma once

#include <QList>
#include <QString>

class SdcBstBst;
class SdcBstBstCpx;
class SdcCpx;
class SdcMol;

/// A plain and slow version of the canonical order: every comparison writes both texts out. It
/// uses nothing of what SdcCpx makes of the same rules, and changes no complex.
namespace CpxOracle {

using Mols = QList<SdcMol *>;
using Bonds = QList<SdcBstBst *>;

QString molSignature(SdcMol *mol, const Mols &molSet, const Mols &ranked, const Bonds &bonds,
    bool considerBstStatus, SdcMol *firstMol);

SdcMol *frontMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, bool considerBstStatus);
SdcMol *frontMolWithFirstMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, SdcMol *firstMol);
SdcMol *constFrontMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, bool considerBstStatus);
SdcMol *constFrontMol(SdcMol *mol1, SdcMol *mol2, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, SdcMol *firstMol);
SdcMol *constFrontMol(const Mols &candidates, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, bool considerBstStatus);
SdcMol *constFrontMol(const Mols &candidates, const Mols &molSet, const Mols &ranked,
    const Bonds &bonds, SdcMol *firstMol);

Mols constRankedMolList(
    const Mols &mols, const Mols &molSet, const Bonds &bonds, bool considerBstStatus);
Mols constRankedMolList(const Mols &mols, const Mols &molSet, const Bonds &bonds, SdcMol *firstMol);
Mols frontMolSet(const Mols &mols, const Bonds &bonds, bool considerBstStatus);

bool isSymmetricSpecies(SdcCpx *cpx);
int numWayToRank(SdcCpx *cpx);
/// The symmetry state that an update leaves.
int symmetryState(SdcCpx *cpx);
/// As with the complex's present symmetry state.
Mols rankedListMol(SdcCpx *cpx, bool considerBstStatus, bool considerMcpState);

struct ReRanking
{
    int symmetryState = 0;
    Mols mols;
    QList<int> prevIndices;
    QList<int> posMap;
};
ReRanking reRankMols(SdcCpx *cpx, bool considerBstStatus, bool considerMcpState);

Mols sortListMol(const Mols &group, const QList<SdcBstBstCpx *> &bonds);
Mols sortedListMol(SdcCpx *cpx);
QString molCode(SdcCpx *cpx);
QString fingerPrint(SdcCpx *cpx);
QString fingerPrint(const Mols &mols, const Bonds &bonds);
QString mcpStateCodeSignature(const Mols &mols, bool withMolPsiimId);

} // namespace CpxOracle
