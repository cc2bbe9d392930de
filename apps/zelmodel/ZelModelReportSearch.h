#pragma once

#include <QFile>
#include <QString>

class ZelModelReportFolder;
class ZelModelReportPlaces;

/// Writes what the pages' search box looks through, a record at a time: a script that browsers also
/// load from a disk.
class ZelModelReportSearch
{
public:
    static constexpr char FileName[] = "search-index.js";

    ZelModelReportSearch(ZelModelReportFolder *folder, const ZelModelReportPlaces &places);

    /// The record of that place is found by its key, its title and the text.
    void add(int place, const QString &text);
    /// False, which the folder then explains, when not all could be written.
    bool finish();

private:
    void write(const QByteArray &bytes);

    ZelModelReportFolder *m_folder;
    const ZelModelReportPlaces &m_places;
    QFile m_file;
    qsizetype m_longestText;
    bool m_isFirst = true;
    bool m_isGood;
};
