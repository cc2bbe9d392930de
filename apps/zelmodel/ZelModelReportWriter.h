#pragma once

#include "apps/zelmodel/ZelModelDetails.h"
#include "apps/zelmodel/ZelModelReportFrame.h"
#include "apps/zelmodel/ZelModelReportPlaces.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class ZelModelReportFolder;
class ZelModelReportPage;
class ZelModelReportRecords;
class ZelModelReportSearch;
class ZelModelReportTable;
class ZelModelRun;

/// Writes all pages of a report, record by record.
class ZelModelReportWriter
{
public:
    /// Both must outlive it.
    ZelModelReportWriter(ZelModelRun *run, ZelModelReportFolder *folder, const QString &modelName);
    ~ZelModelReportWriter();

    /// False when the user interrupted, the database refused, or the folder could not be written.
    bool write();
    /// The ids of the records that could not be drawn whole.
    QStringList faulty() const;

private:
    bool writeResources();
    bool writeChapter(const ZelModelReportChapter &chapter);
    bool writeRecord(const ZelModelReportChapter &chapter, int place, const ZelDbRecord &record);
    bool turnPage(const ZelModelReportChapter &chapter, int part);
    bool endPart();
    void beginSection(const ZelModelKind &kind);
    void endSection();
    bool writeIndex();
    void writeCounts(ZelModelReportPage *page);
    bool writeMap(ZelModelReportPage *page);
    void writeContacts(ZelModelReportPage *page);
    void writeContactsOf(ZelModelReportPage *page, const zel::species::MoleculeTypes::Mol &mol);
    bool writeTable(ZelModelReportPage *page, const ZelModelReportChapter &chapter);
    bool visit(const ZelModelReportChapter &chapter,
        const std::function<bool(int, const ZelDbRecord &)> &visitor);

    ZelModelRun &m_run;
    ZelModelReportFolder &m_folder;
    ZelModelDetails m_details;
    ZelModelReportPlaces m_places;
    ZelModelReportFrame m_frame;
    std::unique_ptr<ZelModelReportSearch> m_search;
    std::unique_ptr<ZelModelReportRecords> m_records;
    qint64 m_done = 0;

    // The page that is written
    std::unique_ptr<ZelModelReportPage> m_page;
    std::unique_ptr<ZelModelReportTable> m_table;
    const ZelModelReportChapter *m_chapter = nullptr;
    const ZelModelKind *m_section = nullptr;
    int m_part = 0;
};
