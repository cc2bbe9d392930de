#pragma once

#include "zelExchange/ZelExportReport.h"

class ZelDbSqliteModel;

/// Writes a model database as a file of the BioNetGen language.
///
/// Molecules, species and rules are written from their records, in one order whatever the numbers
/// of the records are; untranslated items go out as they came in. What the language cannot say is
/// listed in the report.
class ZELEXCHANGE_EXPORT ZelBnglExport
{
public:
    /// The model is not owned and may be null.
    explicit ZelBnglExport(ZelDbSqliteModel *db);

    /// False when nothing was written; the report's error says why and what to do. A file that was
    /// there is then as it was.
    bool exportFile(const QString &path);
    /// The text of the file; empty on failure.
    QByteArray exportText();

    const ZelExportReport &report() const { return m_report; }

private:
    QByteArray write();
    bool fail(const QString &text);

    ZelDbSqliteModel *m_db;
    ZelExportReport m_report;
};
