#pragma once

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbTypes.h"

#include <QDomDocument>
#include <QHash>
#include <QList>
#include <QPointF>
#include <QString>

#include <functional>
#include <span>
#include <vector>

class Sdc;
class SdcBst;
class SdcBstBst;
class SdcCpx;
class ZelDbSqliteModel;
class ZelLineItemBstBst;
class ZelScene;
class ZelSceneEditing;

/// What the records of interactions and reactions have in common when they are written and read.
namespace SdcReactionStorage {

/// Why nothing is saved that belongs to no open model.
inline constexpr char NoDatabase[] = "no database is there to save it to; open a model first";

/// Writes the debug line "Error found at <function>: <what>".
void report(const char *function, const QString &what);
/// The same as an answer, false, after which the component's getRefusal() says why.
bool refuse(Sdc *sdc, const char *function, const QString &why);

/// A property and where it is stored.
struct StoredProperty
{
    SdcProperty::Key key;
    ZelDbColumn::Column column;
};
using StoredProperties = std::span<const StoredProperty>;

/// Of a molecule interaction and of an association, in the order in which they are set.
inline constexpr StoredProperty mliProperties[]{
    {SdcProperty::AssociationRate, ZelDbColumn::AssociationRate},
    {SdcProperty::DissociationRate, ZelDbColumn::DissociationRate},
    {SdcProperty::ShortName, ZelDbColumn::ShortName}, {SdcProperty::Name, ZelDbColumn::Name},
    {SdcProperty::Notes, ZelDbColumn::Notes}};
inline constexpr StoredProperty caiProperties[]{{SdcProperty::ShortName, ZelDbColumn::ShortName},
    {SdcProperty::Name, ZelDbColumn::Name},
    {SdcProperty::AssociationRate, ZelDbColumn::AssociationRate},
    {SdcProperty::ResultCpaPsiimId, ZelDbColumn::CaiResultCpa},
    {SdcProperty::Notes, ZelDbColumn::Notes}};

/// What the database has under an id; empty, after a report, when that is nothing.
ZelDbRecord findRecord(const Sdc *sdc, const char *function,
    ZelDbRecord (ZelDbSqliteModel::*read)(const QString &) const, const char *what,
    const QString &psiimId);
void readProperties(Sdc *sdc, const ZelDbRecord &record, StoredProperties properties);
/// The same with the id and the references.
void readProperties(Sdc *sdc, const char *recordWord, const QString &psiimId,
    const ZelDbRecord &record, StoredProperties properties);
/// The component's record as far as it is made of its id and these properties.
ZelDbRecord recordOf(const Sdc *sdc, StoredProperties properties);

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

/// Runs a component's writes in a transaction that nests in the host's. After a failure the
/// assignments are taken back and the reason is reported in the name of the function: what the
/// writes have put into `why`, else what the database says.
bool writeInTransaction(Sdc *sdc, const char *function, Assignments *assignments,
    const std::function<bool(QString *why)> &writes);

/// Gives a component without id a new one, and one without short name the wanted one, with a number
/// when another record has it. False when there is no id or name to be had.
bool assignIdAndShortName(Assignments *assignments, Sdc *sdc, int recordType,
    const char *recordWord, const QString &wanted, ZelDbSqliteModel *db);
/// Stores the references that the component was ever given.
bool writeReferences(Sdc *sdc, const char *recordWord, ZelDbSqliteModel *db);

/// The layouts of what takes part in an interaction, read from its own stored layout.
class Layouts
{
public:
    /// Reads the first element of that tag below the root, and in it those of the parts' tag.
    /// A text that is not well-formed, or nested deeper than any layout, is reported and as good
    /// as none.
    Layouts(const char *function, const QString &psiimId, const QString &xml, const char *tag,
        const char *partTag);

    /// The element itself.
    QDomElement element() const { return m_element; }
    /// Among those at that position the one that carries the id, else the first there, else the
    /// one that stands at that place among its siblings, else null.
    QDomElement find(const QString &psiimId, int index) const;
    /// Where the places in the layouts are counted from.
    QPointF origin() const { return m_origin; }
    /// The reference position for a part that was found: the origin; or not: beside the one before.
    QPointF refPosOf(const QDomElement &part, Sdc *before) const;

private:
    QDomDocument m_document;
    QDomElement m_element;
    QList<QDomElement> m_parts;
    QPointF m_origin;
};

/// The top left corner of an element's rectangle; (0, 0) where it cannot be used.
QPointF topLeftOf(const QDomElement &element);
QList<QDomElement> childElements(const QDomElement &element, const char *tag);
/// A place to the right of what is built already, for a part that the layout does not mention.
QPointF placeBeside(Sdc *before);

/// Builds the complex in the alias's states: where the layout element says, shifted by refPos, or,
/// when that is null, as in its own layout with the top left corner at refPos. False, after a
/// report, when it is not stored.
bool loadAlias(SdcCpx *cpx, const char *function, const QString &cpaPsiimId,
    const QDomElement &layout, ZelScene *scene, const QPointF &refPos);
/// The id and the short name of a record, as in "cai1 'binds'".
QString titleOf(const QString &psiimId, const ZelDbRecord &record);
/// The id of the stored alias that the complex is, or empty.
QString aliasOf(SdcCpx *cpx);
/// A complex of the owner's beside another one; null, after a report, when it is not stored.
SdcCpx *newAlias(
    Sdc *owner, const char *function, const QString &cpaPsiimId, Sdc *before, ZelScene *scene);

/// Joins two sites by a stored bond, which is shown even where the user may not draw it. The line
/// is null without a scene.
void joinSites(
    SdcBstBst *bond, SdcBst *site1, SdcBst *site2, ZelSceneEditing *scene, ZelLineItemBstBst *line);

/// One end of a bond between complexes as it is stored.
struct End
{
    QString cpaPsiimId;
    QString bstPsiimId;
    QString molPos;

    bool operator==(const End &other) const = default;
};
/// Empty unless the site lies in a molecule of a complex.
End endOf(SdcBst *site);
/// What tells associations apart; two of them may be stored with the ends exchanged.
struct AssociationKey
{
    End end1;
    End end2;
    QString geometry;
    QString bindingType;

    bool isSame(const AssociationKey &other) const;
};
AssociationKey keyOf(const ZelDbRecord &association);
/// The stored association of that key; empty when there is none.
QString findAssociation(const AssociationKey &key, bool bothDirections, const ZelDbSqliteModel *db);

} // namespace SdcReactionStorage
