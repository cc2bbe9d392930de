#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/bngl/ZelBnglModel.h"
#include "zelExchange/import/ZelBnglImport.h"

#include <QRandomGenerator>
#include <QStringList>

/// A model in memory that a file is imported into.
class ImportStage
{
public:
    ImportStage();

    bool import(const ZelBnglModel &model);
    bool import(const QByteArray &source);

    /// Fingerprint, second key and state code of every alias, sorted.
    QStringList identities() const;
    /// "line: text (reason)" of each loss.
    QStringList losses() const;
    const ZelImportReport &report() const { return importer.report(); }

    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};
    ZelBnglImport importer{&db};
};

/// A model's types and species, and each pattern of its rules as one that is degraded, in another
/// order of entries, molecules and components, with other bond labels.
QByteArray shuffled(const ZelBnglModel &model, QRandomGenerator &random);
