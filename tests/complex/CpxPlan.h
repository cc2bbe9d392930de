#pragma once

#include "zelDb/ZelDbTypes.h"

#include <QList>
#include <QString>

#include <memory>
#include <vector>

class SdcBst;
class SdcBstBstCpx;
class SdcCpx;
class SdcMol;
class ZelEllipseItemMcp;

/// What a complex is made of, as plain data: to make it, change it, compare it and print it.
struct CpxPlan
{
    struct Site
    {
        QString id;
        int status = BindingStatusUnspecified; ///< as stored
    };
    struct Mcp
    {
        QList<Site> sites;
        QList<int> states; ///< a ComponentStateType for each feature
        bool negated = false;
    };
    struct Mol
    {
        QString id;
        QList<Mcp> mcps;
    };
    /// A site by its place: the site-th of all sites of the molecule.
    struct End
    {
        int mol = 0;
        int site = 0;
    };
    using Bond = QList<End>; ///< one or two ends

    QList<Mol> mols;
    QList<Bond> bonds;

    int siteCount(int mol) const;
    const Site &site(const End &end) const;
    QString text() const;
};

/// The complex of a plan; what it is made of dies with it.
class CpxModel
{
public:
    explicit CpxModel(const CpxPlan &plan);
    ~CpxModel();

    SdcCpx *cpx() const { return m_cpx.get(); }
    const QList<SdcMol *> &mols() const { return m_mols; } ///< in the plan's order, for good
    SdcBst *site(const CpxPlan::End &end) const;
    /// Bonds as the ranking functions take them.
    QList<SdcBstBstCpx *> bonds() const;

private:
    std::vector<std::unique_ptr<ZelEllipseItemMcp>> m_items; // of components with features
    std::unique_ptr<SdcCpx> m_cpx;
    QList<SdcMol *> m_mols;
};
