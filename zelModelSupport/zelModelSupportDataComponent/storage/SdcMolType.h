#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"

#include <QColor>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <utility>

class ZelDbSqliteModel;

/// What is stored of a molecule: what each of its copies is made and drawn from.
///
/// Complexes by the thousand are made of the same few molecules: a molecule is read once for a
/// database model and kept there until anything in its file changes.
struct SdcMolType
{
    /// Properties in the order in which a component takes them over.
    using Properties = QList<std::pair<int, QString>>;

    struct State
    {
        QString psiimId;
        QString name;
        QString colorName;
        QColor color; ///< invalid when there is none of its own
        QString references;
    };

    struct Mcp
    {
        QString psiimId;
        Properties properties;
        QList<State> states;
        QStringList stateNames;
        QString stateCode; ///< with every state On
        QStringList bstPsiimIds;
        QList<Properties> bstProperties;
    };

    /// Where a molecule that stands alone was drawn.
    struct Drawing
    {
        SdcLayout layout;
        QString error; ///< why it is not readable
    };

    Properties properties;
    QColor color; ///< invalid when none is stored
    QList<Mcp> mcps; ///< in chain order
    QList<QPair<int, int>> backbones; ///< indices of mcps as stored, ascending
    bool isDamaged = false; ///< there is no colour, or a backbone line to nowhere

    const Drawing &drawing() const;

    /// Reads molecules of one file while that does not change: for one load, not to be kept.
    class Reader
    {
    public:
        /// The model is not owned and may be null.
        explicit Reader(ZelDbSqliteModel *db) : m_db(db) { }

        ZelDbSqliteModel *db() const { return m_db; }
        /// Null when there is no such molecule.
        std::shared_ptr<const SdcMolType> read(const QString &molPsiimId);

    private:
        struct Kept;

        void findKept();

        ZelDbSqliteModel *m_db;
        bool m_isReading = false;
        std::shared_ptr<Kept> m_kept; // null when the content of the file cannot be told
    };

private:
    static std::shared_ptr<const SdcMolType> fromRecords(
        const QString &molPsiimId, const ZelDbSqliteModel *db);
    void readMcp(const QString &mcpPsiimId, const ZelDbSqliteModel *db);
    void readBackbones(const QString &molPsiimId, const ZelDbSqliteModel *db);

    QString m_graphicsInfo;
    mutable std::optional<Drawing> m_drawing;
};
