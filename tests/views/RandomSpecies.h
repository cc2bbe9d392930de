#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QImage>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>

class SdcCpx;
class SdcMol;
class ZelScene;

/// A stored model of random molecules and of aliases of random complexes of them: turned, flipped,
/// in any states, with negations and bonds.
class RandomSpecies
{
public:
    explicit RandomSpecies(quint32 seed);

    const QStringList &mols() const { return m_mols; }
    const QStringList &aliases() const { return m_aliases; }

    /// The alias as the side window shows it, fitted into the size as its picture is; null when it
    /// shows nothing.
    static QImage sceneImage(const QString &cpaPsiimId, const QSize &size, ZelDbSqliteModel *db);

    QTemporaryDir dir;
    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};

private:
    void storeMolecule();
    void storeAlias();
    void place(SdcMol *mol, ZelScene *scene, double x);
    void setStates(SdcCpx *cpx);

    QRandomGenerator m_random;
    QStringList m_mols;
    QStringList m_aliases;
};
