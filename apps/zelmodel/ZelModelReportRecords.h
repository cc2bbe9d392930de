#pragma once

#include "apps/zelmodel/ZelModelReportPlaces.h"
#include "zelSpecies/SpeciesReader.h"

#include <QHash>
#include <QString>
#include <QStringList>

class ZelDbSqliteModel;
class ZelModelDetails;
class ZelModelReportFolder;
class ZelModelReportPage;
class ZelModelReportSearch;
class ZelModelReportSheet;

/// Writes the records that have a page of their own: their pictures as files, what is said of them
/// to the page, and what they are found by.
class ZelModelReportRecords
{
public:
    /// Everything must outlive it.
    ZelModelReportRecords(ZelDbSqliteModel *db, const ZelModelDetails &details,
        ZelModelReportPlaces *places, ZelModelReportFolder *folder, ZelModelReportSearch *search);

    /// False, which the folder explains, when the picture could not be written.
    bool write(ZelModelReportPage *page, int headingLevel, int place, const ZelDbRecord &record);
    /// The ids of those that could not be drawn whole.
    const QStringList &faulty() const { return m_faulty; }

private:
    void addFaulty(const QString &id);
    bool draw(int place, const ZelDbRecord &record);
    void writeMolecule(
        ZelModelReportSheet *sheet, ZelModelReportPage *page, int place, const ZelDbRecord &record);
    void writeComponents(ZelModelReportSheet *sheet, ZelModelReportPage *page,
        const zel::species::MoleculeTypes::Mol &mol);
    void writePartners(ZelModelReportSheet *sheet, ZelModelReportPage *page, const QString &site);
    void writePartNotes(ZelModelReportSheet *sheet, const zel::species::MoleculeTypes::Mol &mol);
    void writeInteraction(
        ZelModelReportSheet *sheet, ZelModelReportPage *page, int place, const ZelDbRecord &record);
    void writeSpecies(ZelModelReportSheet *sheet, int place, const ZelDbRecord &record);

    ZelDbSqliteModel *m_db;
    const ZelModelDetails &m_details;
    ZelModelReportPlaces &m_places;
    ZelModelReportFolder &m_folder;
    ZelModelReportSearch &m_search;
    zel::species::SpeciesReader m_reader;
    QHash<QString, QString> m_complexNotes;
    QStringList m_faulty;
};
