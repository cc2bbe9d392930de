#pragma once

#include <QList>

class SdcBst;
class SdcBstBst;
class SdcMcp;
class SdcMol;

/// Walks from molecule to molecule through bonds. Bonds that have lost a site lead nowhere.
namespace SdcCpxConnectivity {

/// The two molecules that the bond joins; null where a site or its molecule is missing.
struct Ends
{
    SdcMol *first = nullptr;
    SdcMol *second = nullptr;
};
Ends endsOf(const SdcBstBst *bond);

/// The molecules that bonds join to mol, nearest first, mol itself at the front.
QList<SdcMol *> reachable(SdcMol *mol, const QList<SdcBstBst *> &bonds);
/// Whether each molecule is reached from the first through molecules of the list alone.
bool isConnectedWithin(const QList<SdcMol *> &mols, const QList<SdcBstBst *> &bonds);
/// Whether the bond's two molecules, which are not the same, stay connected without it.
bool isPartOfRing(const SdcBstBst *bond, const QList<SdcBstBst *> &bonds);
/// Whether the bond holds a site of the molecule (of the component).
bool touches(const SdcBstBst *bond, const SdcMol *mol);
bool touches(const SdcBstBst *bond, const SdcMcp *mcp);

} // namespace SdcCpxConnectivity
