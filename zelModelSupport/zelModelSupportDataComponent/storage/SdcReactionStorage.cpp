#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCode.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXml.h"

#include <QDebug>
#include <QXmlStreamReader>

#include <cmath>

namespace {

constexpr int MaxDepth = 16; // of a layout text; a document is taken apart level by level
constexpr double MaxNumber = 1.0e6; // beyond, nobody can have drawn it
constexpr double PartGap = 40.0;

/// Empty when the text is well-formed and flat enough, else what is wrong with it.
QString whatIsWrongWith(const QString &xml)
{
    if (const QString refusal = SdcXml::refusal(xml); !refusal.isEmpty())
        return refusal;
    QXmlStreamReader reader(xml);
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::StartElement && ++depth > MaxDepth)
            return QStringLiteral("it is nested too deep");
    }
    return reader.hasError() ? reader.errorString() : QString();
}

double numberOf(const QDomElement &element, const char *name)
{
    const double number = element.attribute(QLatin1String(name)).toDouble();
    return std::isfinite(number) && std::abs(number) <= MaxNumber ? number : 0.0;
}

} // namespace

void SdcReactionStorage::report(const char *function, const QString &what)
{
    qDebug().noquote().nospace() << "Error found at " << function << ": " << what;
}

bool SdcReactionStorage::refuse(Sdc *sdc, const char *function, const QString &why)
{
    report(function, why);
    sdc->setRefusal(why);
    return false;
}

ZelDbRecord SdcReactionStorage::findRecord(const Sdc *sdc, const char *function,
    ZelDbRecord (ZelDbSqliteModel::*read)(const QString &) const, const char *what,
    const QString &psiimId)
{
    ZelDbSqliteModel *const db = sdc->getZelDbSqliteModel();
    const ZelDbRecord record = db ? (db->*read)(psiimId) : ZelDbRecord();
    if (record.isEmpty())
        report(function,
            db ? QStringLiteral("no %1 %2").arg(QLatin1String(what), psiimId)
               : QStringLiteral("no database"));
    return record;
}

void SdcReactionStorage::readProperties(
    Sdc *sdc, const ZelDbRecord &record, StoredProperties properties)
{
    for (const StoredProperty &property : properties)
        sdc->setProperty(property.key, record.value(property.column));
}

void SdcReactionStorage::readProperties(Sdc *sdc, const char *recordWord, const QString &psiimId,
    const ZelDbRecord &record, StoredProperties properties)
{
    sdc->setProperty(SdcProperty::PsiimId, psiimId);
    readProperties(sdc, record, properties);
    sdc->setProperty(SdcProperty::References,
        sdc->getZelDbSqliteModel()->refGetReferences(QLatin1String(recordWord), psiimId));
}

ZelDbRecord SdcReactionStorage::recordOf(const Sdc *sdc, StoredProperties properties)
{
    ZelDbRecord record{{ZelDbColumn::PsiimId, sdc->getPsiimId()}};
    for (const StoredProperty &property : properties)
        record.insert(property.column, sdc->getProperty(property.key));
    return record;
}

void SdcReactionStorage::Assignments::assign(Sdc *sdc, int key, const QString &value)
{
    m_olds.push_back({sdc, key, sdc->hasProperty(key), sdc->getProperty(key)});
    sdc->setProperty(key, value);
}

void SdcReactionStorage::Assignments::takeBack()
{
    for (; !m_olds.empty(); m_olds.pop_back()) {
        const Old &old = m_olds.back();
        old.sdc->setProperty(old.key, old.value);
        if (!old.present)
            old.sdc->clearProperty(old.key);
    }
}

bool SdcReactionStorage::writeInTransaction(Sdc *sdc, const char *function,
    Assignments *assignments, const std::function<bool(QString *why)> &writes)
{
    ZelDbSqliteModel *const db = sdc->getZelDbSqliteModel();
    ZelDbTransaction transaction(db->database());
    QString why;
    bool good = transaction.isActive() && writes(&why);
    // The commit takes everything back by itself when a statement has failed.
    if (good)
        good = transaction.commit();
    if (good) {
        sdc->setRefusal(QString());
        return true;
    }
    if (why.isEmpty())
        why = db->errorText();
    transaction.rollback();
    assignments->takeBack();
    return refuse(sdc, function, why);
}

bool SdcReactionStorage::assignIdAndShortName(Assignments *assignments, Sdc *sdc, int recordType,
    const char *recordWord, const QString &wanted, ZelDbSqliteModel *db)
{
    if (sdc->getPsiimId().isEmpty()) {
        const QString id = ZelDb::getNewSdcPsiimId(recordType, db);
        if (id.isEmpty())
            return false;
        assignments->assign(sdc, SdcProperty::PsiimId, id);
    }
    if (!sdc->getProperty(SdcProperty::ShortName).isEmpty())
        return true;
    const QString name =
        ZelDbSqlite::getFreeShortName(QLatin1String(recordWord), wanted, sdc->getPsiimId(), db);
    if (name.isEmpty() && !wanted.isEmpty())
        return false;
    assignments->assign(sdc, SdcProperty::ShortName, name);
    return true;
}

bool SdcReactionStorage::writeReferences(Sdc *sdc, const char *recordWord, ZelDbSqliteModel *db)
{
    return !sdc->hasProperty(SdcProperty::References)
        || db->refInsert(QLatin1String(recordWord), sdc->getPsiimId(),
            sdc->getProperty(SdcProperty::References));
}

SdcReactionStorage::Layouts::Layouts(const char *function, const QString &psiimId,
    const QString &xml, const char *tag, const char *partTag)
{
    if (xml.isEmpty())
        return;
    if (const QString error = whatIsWrongWith(xml); !error.isEmpty()) {
        report(function,
            QStringLiteral("the layout of %1 is not readable, its parts get default places: %2")
                .arg(psiimId, error));
        return;
    }
    m_document.setContent(xml);
    m_element = m_document.documentElement().firstChildElement(QLatin1String(tag));
    m_origin = topLeftOf(m_element);
    m_parts = childElements(m_element, partTag);
}

QDomElement SdcReactionStorage::Layouts::find(const QString &psiimId, int index) const
{
    const QString position = QString::number(index);
    QDomElement found;
    for (const QDomElement &part : m_parts) {
        if (part.attribute(QStringLiteral("posIndex")) != position)
            continue;
        if (part.attribute(QStringLiteral("psiimId")) == psiimId)
            return part;
        if (found.isNull())
            found = part;
    }
    return found.isNull() ? m_parts.value(index) : found;
}

QPointF SdcReactionStorage::Layouts::refPosOf(const QDomElement &part, Sdc *before) const
{
    return part.isNull() ? placeBeside(before) : m_origin;
}

QPointF SdcReactionStorage::topLeftOf(const QDomElement &element)
{
    const QDomElement rect = element.firstChildElement(QStringLiteral("boundingRect"));
    return {numberOf(rect, "x"), numberOf(rect, "y")};
}

QList<QDomElement> SdcReactionStorage::childElements(const QDomElement &element, const char *tag)
{
    QList<QDomElement> list;
    for (QDomElement child = element.firstChildElement(QLatin1String(tag)); !child.isNull();
         child = child.nextSiblingElement(QLatin1String(tag)))
        list.append(child);
    return list;
}

QPointF SdcReactionStorage::placeBeside(Sdc *before)
{
    const QRectF rect = before ? before->getSdcSceneRectF() : QRectF();
    return rect.isNull() ? QPointF(0.0, 0.0) : rect.topRight() + QPointF(PartGap, 0.0);
}

bool SdcReactionStorage::loadAlias(SdcCpx *cpx, const char *function, const QString &cpaPsiimId,
    const QDomElement &layout, ZelScene *scene, const QPointF &refPos)
{
    ZelDbSqliteModel *const db = cpx->getZelDbSqliteModel();
    const ZelDbRecord alias = db->cpaGetHashInfo(cpaPsiimId);
    const QString cpxPsiimId = alias.value(ZelDbColumn::CpaCpx);
    const auto refuseAlias = [&] {
        return refuse(
            cpx, function, QStringLiteral("no complex in the stored states ") + cpaPsiimId);
    };
    if (cpxPsiimId.isEmpty())
        return refuseAlias();
    if (layout.isNull()) {
        QString error;
        const SdcLayout own =
            SdcLayout::fromXml(ZelDbSqlite::getGraphicsInfo(QStringLiteral("cpx"), cpxPsiimId, db),
                SdcType::Cpx, &error);
        return cpx->loadCpaFromDb(cpaPsiimId, scene, refPos - own.topLeft, false) || refuseAlias();
    }
    if (!cpx->loadDom(cpxPsiimId, layout, scene, refPos, false))
        return refuseAlias();
    cpx->updateBstBstCpx(scene, true);
    cpx->setProperty(SdcProperty::CpaPsiimId, cpaPsiimId);
    cpx->setProperty(SdcProperty::CpaShortName, alias.value(ZelDbColumn::CpaShortName));
    cpx->setProperty(SdcProperty::CpaKey2, alias.value(ZelDbColumn::CpaKey2));
    SdcCpxStateCode::apply(
        cpx, alias.value(ZelDbColumn::CpaStateCode), true, SdcCpxStateCode::MolPositions::FromOne);
    return true;
}

QString SdcReactionStorage::titleOf(const QString &psiimId, const ZelDbRecord &record)
{
    const QString name = record.value(ZelDbColumn::ShortName);
    return name.isEmpty() ? psiimId : QLatin1String("%1 '%2'").arg(psiimId, name);
}

QString SdcReactionStorage::aliasOf(SdcCpx *cpx)
{
    return cpx ? cpx->getProperty(SdcProperty::CpaPsiimId) : QString();
}

SdcCpx *SdcReactionStorage::newAlias(
    Sdc *owner, const char *function, const QString &cpaPsiimId, Sdc *before, ZelScene *scene)
{
    auto *const cpx = new SdcCpx(owner->getZelDbSqliteModel(), owner);
    if (loadAlias(cpx, function, cpaPsiimId, {}, scene, placeBeside(before)))
        return cpx;
    delete cpx;
    return nullptr;
}

void SdcReactionStorage::joinSites(
    SdcBstBst *bond, SdcBst *site1, SdcBst *site2, ZelSceneEditing *scene, ZelLineItemBstBst *line)
{
    bond->addSdcBst(site1);
    bond->addSdcBst(site2);
    if (scene)
        scene->addBondLine(bond, line);
}

SdcReactionStorage::End SdcReactionStorage::endOf(SdcBst *site)
{
    SdcCpx *const cpx = site->getParentSdcCpx();
    SdcMol *const mol = site->getParentSdcMol();
    if (!cpx || !mol)
        return {};
    return {aliasOf(cpx), site->getPsiimId(), QString::number(mol->getPosIndex())};
}

bool SdcReactionStorage::AssociationKey::isSame(const AssociationKey &other) const
{
    return geometry == other.geometry && bindingType == other.bindingType
        && ((end1 == other.end1 && end2 == other.end2)
            || (end1 == other.end2 && end2 == other.end1));
}

SdcReactionStorage::AssociationKey SdcReactionStorage::keyOf(const ZelDbRecord &association)
{
    using namespace ZelDbColumn;
    const auto c = [&](Column column) { return association.value(column); };
    return {{c(CaiCpa1), c(Bst1), c(MolPos1)}, {c(CaiCpa2), c(Bst2), c(MolPos2)}, c(Geometry),
        c(BindingType)};
}

QString SdcReactionStorage::findAssociation(
    const AssociationKey &key, bool bothDirections, const ZelDbSqliteModel *db)
{
    return db->caiGetPsiimId(key.end1.cpaPsiimId, key.end1.bstPsiimId, key.end1.molPos,
        key.end2.cpaPsiimId, key.end2.bstPsiimId, key.end2.molPos, key.geometry, key.bindingType,
        bothDirections);
}
