#include "zelExchange/import/ZelBnglImport.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/import/ZelBnglImporter.h"

namespace {

constexpr int MaxShownErrors = 20;

} // namespace

ZelBnglImport::ZelBnglImport(ZelDbSqliteModel *db) : m_db(db) { }

bool ZelBnglImport::importFile(const QString &path)
{
    return importModel(ZelBnglParser::parseFile(path));
}

bool ZelBnglImport::importModel(const ZelBnglModel &model)
{
    m_report = {};
    m_report.fileName = model.fileName();
    if (!model.isValid()) {
        const QStringList texts = model.errorTexts();
        return fail(texts.mid(0, MaxShownErrors).join(u'\n'));
    }
    if (!m_db || !m_db->database() || !m_db->database()->isOpen())
        return fail(QStringLiteral("No model is open. Open or create one first."));
    ZelDbTransaction transaction(m_db->database());
    if (!transaction.isActive())
        return fail(m_db->errorText());
    ZelBnglImporter importer(model, m_db, &m_report, m_progress);
    if (const QString obstacle = importer.obstacle(); !obstacle.isEmpty())
        return fail(transaction.failures().value(0, obstacle));
    if (importer.run() && transaction.commit())
        return true;
    // What failed first is the cause of what failed then.
    const QString reason = transaction.failures().value(0);
    transaction.rollback();
    return fail(importer.isBrokenOff() ? QStringLiteral("The import was broken off.") : reason);
}

bool ZelBnglImport::fail(const QString &text)
{
    const QString fileName = m_report.fileName;
    m_report = {};
    m_report.fileName = fileName;
    m_report.error = text.isEmpty() ? QStringLiteral("A record could not be written.") : text;
    return false;
}
