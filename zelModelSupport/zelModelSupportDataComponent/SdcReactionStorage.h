#pragma once

#include <QDomDocument>
#include <QHash>
#include <QList>
#include <QPointF>
#include <QString>

#include <functional>
#include <utility>
#include <vector>

class Sdc;
class SdcCpx;
class ZelDbSqliteModel;
class ZelScene;

/// What the records of interactions and reactions have in common when they are written and read.
namespace SdcReactionStorage {

/// Writes the debug line "Error found at <function>: <what>".
void report(const char *function, const QString &what);

/// Values that a save gives to components before it knows that it succeeds.
class Assignments
{
public:
    void assign(Sdc *sdc, int key, const QString &value);
    void takeBack();

private:
    struct Old
    {
        Sdc *sdc;
        int key;
        bool present;
        QString value;
    };
    std::vector<Old> m_olds;
};

/// Runs the writes in a transaction that nests in the host's. After a failure the assignments are
/// taken back and the reason is reported in the name of the function.
bool writeInTransaction(ZelDbSqliteModel *db, const char *function, Assignments *assignments,
    const std::function<bool()> &writes);

/// Gives a component without id a new one; false when there is none to be had.
bool assignId(Assignments *assignments, Sdc *sdc, int recordType, ZelDbSqliteModel *db);
/// Gives a component without short name that one, with a number when another record has it.
void assignShortName(Assignments *assignments, Sdc *sdc, const char *recordWord,
    const QString &wanted, ZelDbSqliteModel *db);
/// Stores the references that the component was ever given.
bool writeReferences(Sdc *sdc, const char *recordWord, ZelDbSqliteModel *db);

/// The layouts of what takes part in an interaction, read from its own stored layout.
class Layouts
{
public:
    /// Reads the first element of that tag below the root, and in it those of the parts' tag.
    /// A text that is not well-formed, or nested deeper than any layout, is as good as none.
    Layouts(const QString &xml, const char *tag, const char *partTag);

    QString error() const { return m_error; }
    /// The element itself.
    QDomElement element() const { return m_element; }
    /// Among those at that position the one that carries the id, else the first there, else the
    /// one that stands at that place among its siblings, else null.
    QDomElement find(const QString &psiimId, int index) const;
    /// Where the parts' places are counted from.
    QPointF origin() const { return m_origin; }

private:
    QDomDocument m_document;
    QDomElement m_element;
    QList<QDomElement> m_parts;
    QPointF m_origin;
    QString m_error;
};

/// The top left corner of an element's rectangle; (0, 0) where it cannot be used.
QPointF topLeftOf(const QDomElement &element);
/// A place to the right of what is built already, for a part that the layout does not mention.
QPointF placeBeside(Sdc *before);

/// Builds the complex in the alias's states: where the layout element says, shifted by refPos, or,
/// when that is null, with its top left corner at refPos. False when it is not stored.
bool loadAlias(SdcCpx *cpx, const QString &cpaPsiimId, const QDomElement &layout, ZelScene *scene,
    const QPointF &refPos);
/// The id of the stored alias that the complex is, or empty.
QString aliasOf(SdcCpx *cpx);

} // namespace SdcReactionStorage
