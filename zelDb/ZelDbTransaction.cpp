#include "zelDb/ZelDbConnection.h"
#include "zelDb/ZelDbSqlite.h"

ZelDbTransaction::ZelDbTransaction(ZelDbSqlite *db) : m_db(db)
{
    if (!m_db)
        return;
    ZelDbConnection &connection = *m_db->m_connection;
    if (!connection.isOpen()) {
        connection.failNotOpen();
        m_failures.append(connection.errorText());
        return;
    }
    bool began = false;
    m_level = connection.begin(&began, &m_serial);
}

ZelDbTransaction::~ZelDbTransaction()
{
    if (m_db)
        m_db->m_connection->rollback(m_level, m_serial, false);
}

bool ZelDbTransaction::isActive() const
{
    return m_db && m_db->m_connection->isSound(m_level, m_serial);
}

bool ZelDbTransaction::commit()
{
    if (!m_db || !m_db->m_connection->isCurrent(m_level, m_serial))
        return false;
    // The nested levels that commit() closes add their failures, which are wanted here.
    ZelDbConnection &connection = *m_db->m_connection;
    const bool done = connection.commit(m_level, m_serial, &m_failures);
    m_level = 0;
    return done;
}

void ZelDbTransaction::rollback()
{
    if (!m_db || !m_db->m_connection->isCurrent(m_level, m_serial))
        return;
    m_failures = m_db->m_connection->failures(m_level, m_serial);
    m_db->m_connection->rollback(m_level, m_serial, true);
    m_level = 0;
}

QStringList ZelDbTransaction::failures() const
{
    if (m_db && m_db->m_connection->isCurrent(m_level, m_serial))
        return m_db->m_connection->failures(m_level, m_serial);
    return m_failures;
}

ZelDbReading::ZelDbReading(ZelDbSqlite *db) : m_db(db && db->isOpen() ? db : nullptr)
{
    if (m_db)
        m_db->m_connection->beginReading();
}

ZelDbReading::~ZelDbReading()
{
    if (m_db)
        m_db->m_connection->endReading();
}
