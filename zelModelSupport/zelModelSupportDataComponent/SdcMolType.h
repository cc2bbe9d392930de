#pragma once

#include <QColor>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <memory>

class ZelDbSqliteModel;

/// What is stored of a molecule, as far as drawings of it need it.
///
/// Complexes by the thousand are made of the same few molecules: a molecule is read once and kept
/// until anything in its file changes.
struct SdcMolType
{
    struct State
    {
        QString name;
        QColor color; ///< invalid when there is none of its own
    };

    struct Mcp
    {
        QString psiimId;
        QList<State> states;
        QStringList bstPsiimIds;
    };

    QColor color;
    QList<Mcp> mcps; ///< in chain order
    QList<QPair<int, int>> backbones; ///< indices of mcps

    /// Reads molecules of one file while that does not change.
    class Reader
    {
    public:
        explicit Reader(ZelDbSqliteModel *db);

        /// Null when there is no such molecule, or it is damaged.
        std::shared_ptr<const SdcMolType> read(const QString &molPsiimId);

    private:
        ZelDbSqliteModel *m_db;
        bool m_isKept = false;
    };
};
