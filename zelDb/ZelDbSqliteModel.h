#pragma once

#include "zelDb/ZelDbExport.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbTypes.h"

#include <QHash>
#include <QList>
#include <QMultiHash>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class ZelDbConnection;

/// A feature state of a component as the database defines it.
struct ZelDbState
{
    QString psiimId;
    QString name;
    QString color;
};

/// What a saved molecule consists of; everything else stored for it is surplus.
struct ZelDbMolRows
{
    QStringList mcpPsiimIds;
    QStringList bstPsiimIds;
    QHash<QString, QStringList> stateNames; ///< component psiimId to the names of its states
    QList<QPair<int, int>> mcpPairs; ///< backbone pairs of component indices, in any order
};

/// Answers about the records of a model and writes them.
///
/// Unknown ids give empty answers. Records are keyed by ZelDbColumn. An insert updates the record
/// that has the id already: columns that the given record lacks are then left as stored, in a new
/// record they are empty. Columns that refer to other records take their ids or an empty text; the
/// referred record must exist. A failed write answers false and changes nothing; errorText() says
/// why. Lists are in the order of creation where no other order is named.
class ZELDB_EXPORT ZelDbSqliteModel : public QObject
{
    Q_OBJECT
public:
    /// The connection is not owned and may be null, closed, or die before the model.
    explicit ZelDbSqliteModel(ZelDbSqlite *db, QObject *parent = nullptr);
    ~ZelDbSqliteModel() override;

    ZelDbSqlite *database() const;
    /// Sentences for the user about the last operation that failed.
    QString errorText() const;

    // All kinds of records (ZelDb::RecordType)
    /// Calls `visit` for each record with its id and the named columns, in the order of creation,
    /// until it answers false: one statement for a list of any length. `visit` may ask for other
    /// records, but not for the same columns of the same kind. False when a column is not of the
    /// kind or the database refused.
    bool visitRecords(int recordType, const QList<int> &columns,
        const std::function<bool(const ZelDbRecord &)> &visit) const;
    /// -1 for an unknown kind or when the database refused.
    qint64 countRecords(int recordType) const;

    // Molecules
    QStringList molGetListPsiimId() const;
    ZelDbRecord molGetHashInfo(const QString &molPsiimId) const;
    /// The molecule's components in chain order (by position index).
    QStringList molGetListMcpPsiimId(const QString &molPsiimId) const;
    /// Pairs of component indices that the backbone joins, the smaller index as key.
    QMultiHash<int, int> molGetMultiHashMcpMcp(const QString &molPsiimId) const;
    bool molInsert(const ZelDbRecord &record);
    /// Joins two components; the order of the indices does not matter.
    bool molInsertMcpMcp(const QString &molPsiimId, int indexA, int indexB);
    /// Removes the molecule's stored components, sites, states and backbone pairs that are not
    /// among the kept ones; refused while something refers to one of them.
    bool molRemoveRowsExcept(const QString &molPsiimId, const ZelDbMolRows &kept);
    bool molRemove(const QString &molPsiimId);

    // Molecule components and their feature states
    QStringList mcpGetListPsiimId() const;
    ZelDbRecord mcpGetHashInfo(const QString &mcpPsiimId) const;
    QList<ZelDbState> mcpGetOrderedStates(const QString &mcpPsiimId) const;
    QStringList mcpGetOrderedStateNames(const QString &mcpPsiimId) const;
    /// The name of the state at that place in the order, counted from 0.
    QString mcpGetStateNameFromIndex(const QString &mcpPsiimId, int index) const;
    bool mcpInsert(const ZelDbRecord &record);
    /// Adds a state or updates the one of that name, which keeps its id.
    bool mcpInsertState(
        const QString &mcpPsiimId, const QString &name, const QString &colorName, int index);
    /// Components of one molecule with the same non-empty group are copies of each other: which of
    /// them is used makes no difference. The group is the name that they share.
    bool mcpSetCopyGroup(const QString &mcpPsiimId, const QString &group);
    bool mcpRemove(const QString &mcpPsiimId);
    ZelDbRecord mcpStateGetHashInfo(const QString &statePsiimId) const;
    bool mcpStateInsert(const ZelDbRecord &record);
    bool mcpStateRemove(const QString &statePsiimId);
    /// States of one component with the same non-empty group exclude each other.
    bool mcpStateSetExclusionGroup(const QString &statePsiimId, const QString &group);
    QString mcpStateGetExclusionGroup(const QString &statePsiimId) const;
    /// The ids of the component's states that exclude each other, one list for each group.
    QList<QStringList> mcpGetExclusionGroups(const QString &mcpPsiimId) const;

    // Binding sites
    QStringList bstGetListPsiimId() const;
    QStringList bstGetListPsiimIdBasedOnMcp(const QString &mcpPsiimId) const;
    ZelDbRecord bstGetHashInfo(const QString &bstPsiimId) const;
    bool bstInsert(const ZelDbRecord &record);
    bool bstRemove(const QString &bstPsiimId);

    // References of records: kind is the record word ("mol", "mcp", "mcpState", "bst", ...)
    QString refGetReferences(const QString &kind, const QString &psiimId) const;
    /// Stores the text for an existing record; an empty text removes it.
    bool refInsert(const QString &kind, const QString &psiimId, const QString &text);

    // Molecule interactions
    QStringList mliGetListPsiimId() const;
    bool mliIsDefined(const QString &bstPsiimId1, const QString &bstPsiimId2) const;
    /// The interaction of the two sites, in either order.
    ZelDbRecord mliGetHashInfo(const QString &bstPsiimId1, const QString &bstPsiimId2) const;
    ZelDbRecord mliGetHashInfo(const QString &mliPsiimId) const;
    /// Rows of interaction, ordinal, molecule position 1, site 1, molecule position 2, site 2.
    QList<QStringList> mliGetArrayBstBst(const QString &mliPsiimId) const;
    /// Columns Bst1, MolPos1, Bst2, MolPos2, when present, become the pair of ordinal 0.
    bool mliInsert(const ZelDbRecord &record);
    /// Adds a pair of sites or replaces the one of that ordinal.
    bool mliInsertBstBst(const QString &mliPsiimId, int ordinal, const QString &molPos1,
        const QString &bstPsiimId1, const QString &molPos2, const QString &bstPsiimId2);
    bool mliRemoveAllBstBst(const QString &mliPsiimId);
    bool mliRemove(const QString &mliPsiimId);

    // Complexes
    QStringList cpxGetListPsiimId() const;
    ZelDbRecord cpxGetHashInfo(const QString &cpxPsiimId) const;
    /// Rows of molecule position 1, site 1, molecule position 2, site 2, in stored order.
    QList<QStringList> cpxGetArrayBstBst(const QString &cpxPsiimId) const;
    /// The notes of the bonds that have any, by those rows.
    QHash<QStringList, QString> cpxGetBstBstNotes(const QString &cpxPsiimId) const;
    QString cpxGetFingerPrint(const QString &cpxPsiimId) const;
    bool cpxIsFingerPrintExisted(const QString &fingerPrint) const;
    QString cpxGetPsiimIdFromFingerPrint(const QString &fingerPrint) const;
    /// The complexes that are made of the same molecules.
    QStringList cpxGetCpxPsiimIdListAtMolCodeFromCpx(
        const QString &cpxPsiimId, bool includeSelf) const;
    /// The molecules by position; a molecule may appear more than once.
    QStringList cpxGetListMolPsiimId(const QString &cpxPsiimId) const;
    /// Writes the complex and clears its molecule and bond rows.
    bool cpxInsert(const QString &psiimId, const QString &shortName, const QString &name,
        const QString &text, const QString &notes, const QString &fingerPrint,
        const QString &graphicsInfo, const QString &molCode, const QString &flag);
    bool cpxInsertMol(
        const QString &cpxPsiimId, const QString &molPsiimId, const QString &position);
    bool cpxInsertBstBst(const QString &cpxPsiimId, const QString &molPos1,
        const QString &bstPsiimId1, const QString &molPos2, const QString &bstPsiimId2,
        const QString &notes);
    bool cpxRemove(const QString &cpxPsiimId);

    // Complex aliases (a complex with its states)
    QStringList cpaGetListPsiimId() const;
    QStringList cpaGetListPsiimIdBasedOnCpx(const QString &cpxPsiimId) const;
    QStringList cpaGetListWellDefinedPsiimIds() const;
    QString cpaGetPsiimId(
        const QString &cpxPsiimId, const QString &key2, const QString &stateCode) const;
    QString cpaGetCpxPsiimId(const QString &cpaPsiimId) const;
    ZelDbRecord cpaGetHashInfo(const QString &cpaPsiimId) const;
    /// False for an unknown alias; a new alias is shown.
    bool cpaIsShowEnabled(const QString &cpaPsiimId) const;
    bool cpaIsWellDefined(const QString &cpaPsiimId) const;
    /// Complex, second key and state code together may belong to one alias only.
    bool cpaInsert(const QString &psiimId, const QString &cpxPsiimId, const QString &key2,
        const QString &stateCode, const QString &shortName);
    bool cpaInsert(const ZelDbRecord &record);
    bool cpaUpdateMcpStateCode(const QString &cpaPsiimId, const QString &stateCode);
    bool cpaSetShowEnabled(const QString &cpaPsiimId, bool shown);
    bool cpaSetWellDefined(const QString &cpaPsiimId, bool wellDefined);
    bool cpaRemove(const QString &cpaPsiimId);

    // Associations
    QStringList caiGetListPsiimId() const;
    ZelDbRecord caiGetHashInfo(const QString &caiPsiimId) const;
    /// The association of two aliases through two sites; bothDirections also tries the exchange of
    /// the first three arguments with the second three.
    QString caiGetPsiimId(const QString &cpaPsiimId1, const QString &bstPsiimId1,
        const QString &molPos1, const QString &cpaPsiimId2, const QString &bstPsiimId2,
        const QString &molPos2, const QString &geometry, const QString &bindingType,
        bool bothDirections) const;
    bool caiInsert(const ZelDbRecord &record);
    bool caiRemove(const QString &caiPsiimId);

    // Dissociations
    QStringList cadGetListPsiimId() const;
    ZelDbRecord cadGetHashInfo(const QString &cadPsiimId) const;
    /// The dissociation of one alias into two others, in either order; of several, one of that
    /// binding type first.
    QString cadGetPsiimId(const QString &sourceCpaPsiimId, const QString &cpaPsiimId1,
        const QString &cpaPsiimId2, const QString &bindingType) const;
    bool cadInsert(const ZelDbRecord &record);
    bool cadRemove(const QString &cadPsiimId);

    // Transformations
    QStringList trnGetListPsiimId() const;
    ZelDbRecord trnGetHashInfo(const QString &trnPsiimId) const;
    bool trnInsert(const ZelDbRecord &record);
    bool trnRemove(const QString &trnPsiimId);

    // Productions
    QStringList pdnGetListPsiimId() const;
    ZelDbRecord pdnGetHashInfo(const QString &pdnPsiimId) const;
    bool pdnInsert(const ZelDbRecord &record);
    bool pdnRemove(const QString &pdnPsiimId);

    // Degradations
    QStringList degGetListPsiimId() const;
    ZelDbRecord degGetHashInfo(const QString &degPsiimId) const;
    /// The rate of the alias's first degradation.
    QString degGetDegradationRate(const QString &cpaPsiimId) const;
    bool degInsert(const ZelDbRecord &record);
    bool degRemove(const QString &degPsiimId);

    // What files of other tools carry beside the model
    QStringList parGetListPsiimId() const;
    ZelDbRecord parGetHashInfo(const QString &parPsiimId) const;
    bool parInsert(const ZelDbRecord &record);
    bool parRemove(const QString &parPsiimId);
    QStringList obsGetListPsiimId() const;
    ZelDbRecord obsGetHashInfo(const QString &obsPsiimId) const;
    bool obsInsert(const ZelDbRecord &record);
    bool obsRemove(const QString &obsPsiimId);
    QStringList sedGetListPsiimId() const;
    ZelDbRecord sedGetHashInfo(const QString &sedPsiimId) const;
    bool sedInsert(const ZelDbRecord &record);
    bool sedRemove(const QString &sedPsiimId);
    QStringList cmpGetListPsiimId() const;
    ZelDbRecord cmpGetHashInfo(const QString &cmpPsiimId) const;
    bool cmpInsert(const ZelDbRecord &record);
    bool cmpRemove(const QString &cmpPsiimId);
    QStringList utrGetListPsiimId() const;
    ZelDbRecord utrGetHashInfo(const QString &utrPsiimId) const;
    bool utrInsert(const ZelDbRecord &record);
    bool utrRemove(const QString &utrPsiimId);

    /// What a library above has read of this model and may use again while the database's
    /// moleculesStamp() stays the same; it dies with the model.
    const std::shared_ptr<void> &kept() const { return m_kept; }
    void setKept(const std::shared_ptr<void> &kept) { m_kept = kept; }

    /// For the database library itself: null, with the failure noted, when no file is open.
    ZelDbConnection *openConnection() const;

private:
    QPointer<ZelDbSqlite> m_db;
    std::shared_ptr<void> m_kept;
};
