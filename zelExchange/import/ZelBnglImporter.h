#pragma once

#include "zelDb/ZelDb.h"
#include "zelExchange/export/ZelBnglWriter.h"
#include "zelExchange/import/ZelBnglImport.h"
#include "zelExchange/import/ZelBnglInteractions.h"
#include "zelExchange/import/ZelBnglRules.h"
#include "zelExchange/import/ZelBnglStore.h"

#include <QHash>
#include <QSet>

/// One import, inside of a transaction.
class ZelBnglImporter
{
public:
    ZelBnglImporter(const ZelBnglModel &model, ZelDbSqliteModel *db, ZelImportReport *report,
        const ZelBnglImport::Progress &progress)
        : m_model(model), m_db(db), m_report(*report), m_progress(progress), m_types(model),
          m_rules(model, m_types), m_store(model, m_types, db), m_interactions(model, m_types, db)
    {
    }

    /// False when a record could not be written or the import was broken off.
    bool run();
    bool isBrokenOff() const { return m_isBrokenOff; }
    /// Why the file cannot be imported into this database, empty when it can.
    QString obstacle() const;

private:
    bool advance();
    bool importCompartments();
    bool importParameters();
    bool importTypes();
    bool importSpecies();
    bool importSeed(const ZelBnglSpecies &species, const ZelBnglStored &stored);
    bool importRules();
    bool importReaction(
        const ZelBnglRule &rule, const QString &name, const ZelBnglRules::Reaction &reaction);
    bool importObservables();
    bool importRest();

    bool storePattern(quint32 pattern, ZelBnglStored *stored);
    /// The name is one that the text itself does not give.
    bool keep(const char *kind, quint32 offset, const QByteArray &text, const QString &reason,
        const QString &name = QString());
    /// As it stands before an entry.
    QByteArray label(ZelBnglText text) const
    {
        return text.isEmpty() ? QByteArray() : m_model.line(text) + ": ";
    }
    void leaveOut(quint32 offset, const QByteArray &text, const QString &reason);
    QString name(quint32 name) const { return QString::fromLatin1(m_model.name(name)); }
    QString line(ZelBnglText text) const { return QString::fromUtf8(m_model.line(text)); }
    QByteArray pattern(quint32 index) const
    {
        return ZelBnglWriter::pattern(m_model, m_model.patterns[index]);
    }
    QString newId(int type) { return ZelDb::getNewSdcPsiimId(type, m_db); }
    QString geometryOf(const ZelBnglRules::Reaction &reaction) const;

    const ZelBnglModel &m_model;
    ZelDbSqliteModel *m_db;
    ZelImportReport &m_report;
    const ZelBnglImport::Progress &m_progress;
    ZelBnglTypes m_types;
    ZelBnglRules m_rules;
    ZelBnglStore m_store;
    ZelBnglInteractions m_interactions;
    QHash<QByteArray, ZelBnglStored> m_patterns; ///< stored ones by their text
    QSet<quint32> m_membranes; ///< names of compartments
    int m_done = 0;
    int m_total = 0;
    bool m_isBrokenOff = false;
};
