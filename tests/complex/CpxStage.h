#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelScene.h"

#include <QList>
#include <QString>

class SdcBst;
class SdcBstBstCpx;
class SdcCpx;
class SdcMol;

/// A model in memory with two stored molecule types, and complexes made of them.
///
/// Type A: component "kinase" with features P and Q and sites 0 and 1, component "tail" with
/// site 2. Type B: component "head" with feature P and sites 0 and 1.
struct CpxStage
{
    /// The site at an index within a molecule of the complex, by its index.
    struct End
    {
        int mol;
        int site;
    };
    struct Bond
    {
        End a;
        End b;
    };

    CpxStage();

    /// A complex of the types ("AAB"), drawn side by side in the scene, or in none.
    SdcCpx *complex(const QString &types, const QList<Bond> &bonds, ZelScene *scene = nullptr);
    static SdcBst *site(SdcCpx *cpx, End end);
    SdcBstBstCpx *bond(SdcCpx *cpx, Bond bond, ZelScene *scene = nullptr);
    /// Sets a feature of a molecule's first component.
    static void setState(SdcCpx *cpx, int mol, int feature, int state);
    /// All that is stored of a complex, its aliases included, as lines.
    QStringList rows(const QString &cpxPsiimId) const;

    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};
    QString molA;
    QString molB;
};
