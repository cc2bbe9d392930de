#pragma once

#include "apps/zelmodel/ZelModelReportPlaces.h"

#include <QString>
#include <QStringList>

class ZelDbSqliteModel;
class ZelModelReportPage;
class ZelModelReportSheet;

/// Writes one reaction: the pictures of its species with signs between them, its equation, its rate
/// and which sites bond.
class ZelModelReportReaction
{
public:
    /// Everything must outlive it; the species' pages were written before.
    ZelModelReportReaction(ZelDbSqliteModel *db, const zel::species::MoleculeTypes &catalog,
        const ZelModelReportPlaces &places)
        : m_db(db), m_catalog(catalog), m_places(places)
    {
    }

    /// Answers what it is found by.
    QString write(ZelModelReportSheet *sheet, ZelModelReportPage *page, int place,
        const ZelDbRecord &record) const;

private:
    void writePictures(ZelModelReportSheet *sheet, ZelModelReportPage *page,
        const QStringList &reactants, const QStringList &products) const;
    void writeSites(ZelModelReportSheet *sheet, const ZelDbRecord &record) const;
    QString equation(
        const QStringList &reactants, const QStringList &products, bool isWrittenOut) const;
    QString side(const QStringList &aliases, bool isWrittenOut) const;

    ZelDbSqliteModel *m_db;
    const zel::species::MoleculeTypes &m_catalog;
    const ZelModelReportPlaces &m_places;
};
