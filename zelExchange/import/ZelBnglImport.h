#pragma once

#include "zelExchange/ZelImportReport.h"
#include "zelExchange/bngl/ZelBnglModel.h"

#include <functional>
#include <memory>

class ZelDbSqliteModel;

/// Brings a file of the BioNetGen language into the model database: molecule types, species and
/// patterns, reactions, parameters, compartments, observables, seed amounts; what the model cannot
/// say is kept whole as an untranslated item. All or nothing: a failure leaves the database as it
/// was.
class ZELEXCHANGE_EXPORT ZelBnglImport
{
public:
    /// Called with what is done of what is to do; false breaks the import off.
    using Progress = std::function<bool(int done, int total)>;

    /// The model is not owned and may be null.
    explicit ZelBnglImport(ZelDbSqliteModel *db);

    void setProgress(const Progress &progress) { m_progress = progress; }

    /// False when nothing was imported; the report's error says why and what to do.
    bool importFile(const QString &path);
    bool importModel(const ZelBnglModel &model);

    const ZelImportReport &report() const { return m_report; }

private:
    bool fail(const QString &text);

    ZelDbSqliteModel *m_db;
    Progress m_progress;
    ZelImportReport m_report;
};
