// How a complex is written to the database and built from its records and its layout.

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/support/ZelDialogs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxLoader.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"

#include <QDebug>

#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr char NoDatabase[] = "there is no open model to save it to";
constexpr char NotConnected[] =
    "not all of its molecules are joined; draw the missing bonds or delete what does not belong "
    "to it";
constexpr char NeededAsItWas[] =
    "its structure was changed, and stored states and reactions need it as it was; save it as a "
    "complex of its own";

QString cpxWord()
{
    return QStringLiteral("cpx");
}

bool saveMols(SdcCpx *cpx, ZelDbSqliteModel *db)
{
    const QList<Sdc *> mols = cpx->getListSdcChildren();
    for (qsizetype i = 0; i < mols.size(); ++i) {
        if (!mols.at(i)
            || !db->cpxInsertMol(cpx->getPsiimId(), mols.at(i)->getPsiimId(), QString::number(i)))
            return false;
    }
    return true;
}

/// The stored notes of bonds by the four texts of their records.
using BondNotes = QHash<QStringList, QString>;

bool saveBonds(SdcCpx *cpx, ZelDbSqliteModel *db, const BondNotes &storedNotes = {})
{
    const auto molPosOf = [](SdcBst *site) {
        SdcMol *const mol = site->getParentSdcMol();
        return QString::number(mol ? mol->getPosIndex() : -1);
    };
    bool good = true;
    const QList<SdcBstBstCpx *> bonds = cpx->getListSdcBstBstCpx();
    for (SdcBstBstCpx *bond : bonds) {
        const QList<SdcBst *> sites = bond->getListSdcBst();
        if (sites.size() != 2) {
            qDebug() << "Warning at void CpxEdit::saveCpx() " << sites.size();
            return false;
        }
        const QString pos1 = molPosOf(sites.at(0));
        const QString pos2 = molPosOf(sites.at(1));
        const QString id1 = sites.at(0)->getPsiimId();
        const QString id2 = sites.at(1)->getPsiimId();
        QString notes = bond->getProperty(SdcProperty::Notes);
        if (!bond->hasProperty(SdcProperty::Notes))
            notes = storedNotes.value(
                {pos1, id1, pos2, id2}, storedNotes.value({pos2, id2, pos1, id1}));
        good = db->cpxInsertBstBst(cpx->getPsiimId(), pos1, id1, pos2, id2, notes) && good;
    }
    return good;
}

bool saveRecord(SdcCpx *cpx, ZelDbSqliteModel *db, const QString &fingerPrint)
{
    return db->cpxInsert(cpx->getPsiimId(), cpx->getProperty(SdcProperty::ShortName),
        cpx->getProperty(SdcProperty::Name), cpx->getProperty(SdcProperty::CpxText),
        cpx->getProperty(SdcProperty::Notes), fingerPrint, cpx->getGraphicsInfo(),
        cpx->getMolCode(), QStringLiteral("0"));
}

/// The other complex that is stored as the species of that fingerprint, in words.
QString storedTwin(const SdcCpx *cpx, ZelDbSqliteModel *db, const QString &fingerPrint)
{
    const QString id = db->cpxIsFingerPrintExisted(fingerPrint)
        ? db->cpxGetPsiimIdFromFingerPrint(fingerPrint)
        : cpx->getPsiimId();
    return id == cpx->getPsiimId()
        ? QString()
        : QLatin1String(
            "the model has this species already, as %1 '%2'; open that one to change it")
              .arg(id, db->cpxGetHashInfo(id).value(ZelDbColumn::ShortName));
}

/// The same as the contract reports it: whether there is one.
bool isStoredUnderOtherId(SdcCpx *cpx, ZelDbSqliteModel *db, const QString &fingerPrint)
{
    const QString twin = storedTwin(cpx, db, fingerPrint);
    if (twin.isEmpty())
        return false;
    qDebug() << "zelModelSupport/zelModelSupportDataComponent/SdcCpx" << 978 << "Error found ";
    cpx->setRefusal(twin);
    return true;
}

QString usedName(const QString &shortName)
{
    return QLatin1String("Complex species short name '") + shortName
        + QLatin1String("' is already used, please rename and try to save again.");
}

/// Whether aliases need the stored complex of this id, which is another species.
bool isNeededAsItWas(const SdcCpx *cpx, ZelDbSqliteModel *db, const QString &fingerPrint)
{
    const QString stored = db->cpxGetFingerPrint(cpx->getPsiimId());
    return !stored.isEmpty() && stored != fingerPrint
        && !db->cpaGetListPsiimIdBasedOnCpx(cpx->getPsiimId()).isEmpty();
}

} // namespace

QString SdcCpx::getDefaultComplexName(const QStringList &molShortNames)
{
    return molShortNames.join(u'.');
}

QString SdcCpx::getDefaultSpeciesName()
{
    QStringList names;
    const QList<SdcMol *> mols = getRankedListMol(false, false);
    for (const SdcMol *mol : mols)
        names.append(mol->getProperty(SdcProperty::ShortName));
    const QString base = getDefaultComplexName(names);
    return ZelDbSqlite::getFreeShortName(cpxWord(), base, getPsiimId(), getZelDbSqliteModel());
}

QString SdcCpx::getSaveRefusal()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString shortName = getProperty(SdcProperty::ShortName);
    if (!areAllConnected())
        return toSentence(QLatin1String(NotConnected));
    if (!db || !db->database())
        return toSentence(QLatin1String(NoDatabase));
    const ZelDbNameAnswer answer =
        ZelDbSqlite::askShortName(cpxWord(), shortName, getPsiimId(), db);
    if (answer.state == ZelDbNameAnswer::Unknown)
        return toSentence(db->errorText());
    if (answer.state == ZelDbNameAnswer::Taken && !shortName.isEmpty())
        return usedName(shortName);
    const QString fingerPrint = getCpxFingerPrint();
    if (const QString twin = storedTwin(this, db, fingerPrint); !twin.isEmpty())
        return toSentence(twin);
    return isNeededAsItWas(this, db, fingerPrint) ? toSentence(QLatin1String(NeededAsItWas))
                                                  : QString();
}

bool SdcCpx::saveToDbCpx()
{
    if (!areAllConnected()) {
        qDebug() << "Warning at bool SdcCpx::saveToDb(), Complex component are not all connected. "
                    "Can't save.";
        setRefusal(QLatin1String(NotConnected));
        return false;
    }
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db || !db->database()) {
        qDebug() << "Error found at bool SdcCpx::saveToDb(): no database";
        setRefusal(QLatin1String(NoDatabase));
        return false;
    }
    setRefusal(QString());
    reRankMols(false, false);
    if (getPsiimId().isEmpty())
        setProperty(SdcProperty::PsiimId, ZelDb::getNewSdcPsiimId(ZelDb::Cpx, db));
    const QString shortName = getProperty(SdcProperty::ShortName);
    if (shortName.isEmpty()) {
        const QList<SdcMol *> mols = getChildMolList();
        const QString molName =
            mols.size() == 1 ? mols.first()->getProperty(SdcProperty::ShortName) : QString();
        const bool takesMolName = !molName.isEmpty() && molName != mols.first()->getPsiimId();
        setProperty(SdcProperty::ShortName, takesMolName ? molName : getDefaultSpeciesName());
        if (getProperty(SdcProperty::ShortName).isEmpty()) {
            setRefusal(db->errorText());
            return false;
        }
    } else if (const ZelDbNameAnswer answer =
                   ZelDbSqlite::askShortName(cpxWord(), shortName, getPsiimId(), db);
               answer.state != ZelDbNameAnswer::Free) {
        const bool isTaken = answer.state == ZelDbNameAnswer::Taken;
        setRefusal(isTaken ? usedName(shortName) : db->errorText());
        if (isTaken)
            ZelDialogs::current()->tellRefusal(getRefusal());
        else
            qDebug() << "Error found at bool SdcCpx::saveToDb():" << getRefusal();
        return false;
    }
    if (getProperty(SdcProperty::Name).isEmpty())
        setProperty(SdcProperty::Name, getProperty(SdcProperty::ShortName));
    const QString fingerPrint = getCpxFingerPrint();
    if (isStoredUnderOtherId(this, db, fingerPrint))
        return false;
    if (isNeededAsItWas(this, db, fingerPrint)) {
        setRefusal(QLatin1String(NeededAsItWas));
        qDebug() << "Error found at bool SdcCpx::saveToDb(): aliases need" << getPsiimId()
                 << "as it was; adoptStoredSpecies() makes this a species of its own";
        return false;
    }
    const BondNotes storedNotes = db->cpxGetFingerPrint(getPsiimId()) == fingerPrint
        ? db->cpxGetBstBstNotes(getPsiimId())
        : BondNotes();
    const bool good = saveRecord(this, db, fingerPrint) && saveMols(this, db);
    if (!good)
        setRefusal(db->errorText());
    if (hasProperty(SdcProperty::References))
        db->refInsert(cpxWord(), getPsiimId(), getProperty(SdcProperty::References));
    // The bonds are written whatever became of the rest, and do not count in the answer: a host's
    // transaction remembers every failed statement.
    saveBonds(this, db, storedNotes);
    return good;
}

bool SdcCpx::adoptStoredSpecies()
{
    if (!areAllConnected())
        return false; // no species at all
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString fingerPrint = getCpxFingerPrint();
    const QString id = db ? db->cpxGetPsiimIdFromFingerPrint(fingerPrint) : QString();
    const bool wasOther = db && !getPsiimId().isEmpty() && getPsiimId() != id
        && !db->cpxGetFingerPrint(getPsiimId()).isEmpty();
    if (!id.isEmpty() && getPsiimId() != id) {
        const ZelDbRecord record = db->cpxGetHashInfo(id);
        setProperty(SdcProperty::PsiimId, id);
        setProperty(SdcProperty::ShortName, record.value(ZelDbColumn::ShortName));
        setProperty(SdcProperty::Name, record.value(ZelDbColumn::Name));
        // A save would write what this has over what is stored.
        const auto take = [&](int key, const QString &stored) {
            if (wasOther || !stored.isEmpty())
                setProperty(key, stored);
        };
        take(SdcProperty::CpxText, record.value(ZelDbColumn::CpxText));
        take(SdcProperty::Notes, record.value(ZelDbColumn::Notes));
        take(SdcProperty::References, db->refGetReferences(cpxWord(), id));
    } else if (wasOther) {
        setProperty(SdcProperty::PsiimId, QString());
        setProperty(SdcProperty::ShortName, QString());
        setProperty(SdcProperty::Name, QString());
    }
    if (wasOther) {
        setProperty(SdcProperty::CpaPsiimId, QString());
        setProperty(SdcProperty::CpaShortName, QString());
    }
    return !id.isEmpty();
}

bool SdcCpx::updateToDbWithNewBst()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!areAllConnected()) {
        qDebug() << "Warning at bool SdcCpx::updateToDbWithNewBst() , Complex component are not "
                    "all connected. Can't update.";
        setRefusal(QLatin1String(NotConnected));
        return false;
    }
    if (!db || db->cpxGetHashInfo(getPsiimId()).isEmpty()) {
        qDebug() << "Error (1) found at bool SdcCpx::updateToDbWithNewBst()";
        setRefusal(QStringLiteral("the complex is not stored yet; save it first"));
        return false;
    }
    ZelDbTransaction transaction(db->database());
    // Its aliases name molecules by position, and a new bond may change these.
    std::vector<std::pair<QString, std::unique_ptr<SdcCpx>>> aliases;
    const QStringList aliasIds = db->cpaGetListPsiimIdBasedOnCpx(getPsiimId());
    for (const QString &id : aliasIds) {
        aliases.emplace_back(id, std::make_unique<SdcCpx>(db));
        aliases.back().second->loadCpaFromDb(id);
    }
    const QStringList storedMols = db->cpxGetListMolPsiimId(getPsiimId());
    QStringList mols;
    for (const SdcMol *mol : getChildMolList())
        mols.append(mol->getPsiimId());

    reRankMols(false, false);
    const QString fingerPrint = getCpxFingerPrint();
    if (isStoredUnderOtherId(this, db, fingerPrint))
        return false;
    const bool hasSameMols = aliases.empty() || mols == storedMols;
    bool good = hasSameMols && saveRecord(this, db, fingerPrint) && saveMols(this, db)
        && saveBonds(this, db);
    for (const auto &[id, old] : aliases)
        good = good && updateAlias(id, old.get());
    good = good && transaction.commit();
    setRefusal(good ? QString() : hasSameMols ? db->errorText() : QLatin1String(NeededAsItWas));
    if (!good)
        qDebug() << "Error (2) found at bool SdcCpx::updateToDbWithNewBst()";
    return good;
}

bool SdcCpx::updateAlias(const QString &cpaPsiimId, SdcCpx *old)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    SdcCpx renewed(db);
    if (!renewed.loadCpxFromDb(getPsiimId()))
        return false;
    const QList<SdcMol *> mols = renewed.getChildMolList();
    const QList<SdcMol *> oldMols = old->getChildMolList();
    const QList<int> oldPositions = getListMolPosMap();
    for (qsizetype i = 0; i < mols.size(); ++i) {
        SdcMol *const oldMol = oldMols.value(oldPositions.value(i, -1));
        if (!oldMol)
            return false;
        mols.at(i)->synchronizeMcpTagStates(oldMol, false);
        const QList<SdcBst *> sites = mols.at(i)->getListSdcBst();
        const QList<SdcBst *> oldSites = oldMol->getListSdcBst();
        for (qsizetype k = 0; k < sites.size() && k < oldSites.size(); ++k) {
            // What a bond of the complex held before and none holds now is free.
            const bool isReleased = oldSites.at(k)->isInCpxBinding();
            sites.at(k)->setBindingStatus(
                isReleased ? BindingStatusUnbound : oldSites.at(k)->getStoredBindingStatus());
        }
    }
    renewed.reRankMols(true, true);
    return db->cpaUpdateMcpStateCode(cpaPsiimId, renewed.getAliasMcpStateCode());
}

bool SdcCpx::loadDom(const QString &psiimId, const QDomElement &domEltCpx, ZelScene *scene,
    const QPointF &refPos, bool limited)
{
    SdcMolType::Reader types(getZelDbSqliteModel());
    return SdcCpxLoader(this, &types, scene, refPos, limited)
        .load(psiimId, SdcLayout::fromElement(domEltCpx));
}

bool SdcCpx::loadCpx(const QString &psiimId, const QString &graphicsInfo, ZelScene *scene,
    const QPointF &refPos, bool limited)
{
    SdcMolType::Reader types(getZelDbSqliteModel());
    if (!SdcCpxLoader(this, &types, scene, refPos, limited)
             .load(psiimId, SdcCpxLoader::readLayout(psiimId, graphicsInfo)))
        return false;
    updateBstBstCpx(scene, true);
    return true;
}

bool SdcCpx::loadCpxFromDb(
    const QString &psiimId, ZelScene *scene, const QPointF &refPos, bool limited)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbReading reading(db ? db->database() : nullptr);
    SdcMolType::Reader types(db);
    return SdcCpxLoader(this, &types, scene, refPos, limited).loadAsStored(psiimId);
}
