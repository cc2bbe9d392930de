#include "zelModelSupport/zelModelSupportDataComponent/SdcReactionStorage.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpxStateCode.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcLayout.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcXml.h"

#include <QDebug>
#include <QXmlStreamReader>

#include <cmath>

namespace {

constexpr int MaxDepth = 16; // of a layout text; a document is taken apart level by level
constexpr int MaxNameNumber = 10000;
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

bool SdcReactionStorage::writeInTransaction(ZelDbSqliteModel *db, const char *function,
    Assignments *assignments, const std::function<bool()> &writes)
{
    ZelDbTransaction transaction(db->database());
    bool good = transaction.isActive() && writes();
    // The commit takes everything back by itself when a statement has failed.
    if (good)
        good = transaction.commit();
    if (good)
        return true;
    const QString reason = db->errorText();
    transaction.rollback();
    assignments->takeBack();
    report(function, reason);
    return false;
}

bool SdcReactionStorage::assignId(
    Assignments *assignments, Sdc *sdc, int recordType, ZelDbSqliteModel *db)
{
    if (!sdc->getPsiimId().isEmpty())
        return true;
    const QString id = ZelDb::getNewSdcPsiimId(recordType, db);
    if (id.isEmpty())
        return false;
    assignments->assign(sdc, SdcProperty::PsiimId, id);
    return true;
}

void SdcReactionStorage::assignShortName(Assignments *assignments, Sdc *sdc, const char *recordWord,
    const QString &wanted, ZelDbSqliteModel *db)
{
    if (!sdc->getProperty(SdcProperty::ShortName).isEmpty())
        return;
    const QString word = QLatin1String(recordWord);
    QString name = wanted;
    for (int i = 1;
         i <= MaxNameNumber && !ZelDbSqlite::isUniqueShortName(word, name, sdc->getPsiimId(), db);
         ++i)
        name = wanted + u'_' + QString::number(i);
    assignments->assign(sdc, SdcProperty::ShortName, name);
}

bool SdcReactionStorage::writeReferences(Sdc *sdc, const char *recordWord, ZelDbSqliteModel *db)
{
    return !sdc->hasProperty(SdcProperty::References)
        || db->refInsert(QLatin1String(recordWord), sdc->getPsiimId(),
            sdc->getProperty(SdcProperty::References));
}

SdcReactionStorage::Layouts::Layouts(const QString &xml, const char *tag, const char *partTag)
    : m_error(xml.isEmpty() ? QString() : whatIsWrongWith(xml))
{
    if (xml.isEmpty() || !m_error.isEmpty())
        return;
    m_document.setContent(xml);
    m_element = m_document.documentElement().firstChildElement(QLatin1String(tag));
    m_origin = topLeftOf(m_element);
    for (QDomElement part = m_element.firstChildElement(QLatin1String(partTag)); !part.isNull();
         part = part.nextSiblingElement(QLatin1String(partTag)))
        m_parts.append(part);
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

QPointF SdcReactionStorage::topLeftOf(const QDomElement &element)
{
    const QDomElement rect = element.firstChildElement(QStringLiteral("boundingRect"));
    return {numberOf(rect, "x"), numberOf(rect, "y")};
}

QPointF SdcReactionStorage::placeBeside(Sdc *before)
{
    const QRectF rect = before ? before->getSdcSceneRectF() : QRectF();
    return rect.isNull() ? QPointF(0.0, 0.0) : rect.topRight() + QPointF(PartGap, 0.0);
}

bool SdcReactionStorage::loadAlias(SdcCpx *cpx, const QString &cpaPsiimId,
    const QDomElement &layout, ZelScene *scene, const QPointF &refPos)
{
    ZelDbSqliteModel *const db = cpx->getZelDbSqliteModel();
    const ZelDbRecord alias = db ? db->cpaGetHashInfo(cpaPsiimId) : ZelDbRecord();
    const QString cpxPsiimId = alias.value(ZelDbColumn::CpaCpx);
    if (cpxPsiimId.isEmpty())
        return false;
    if (layout.isNull()) {
        QString error;
        const SdcLayout own =
            SdcLayout::fromXml(ZelDbSqlite::getGraphicsInfo(QStringLiteral("cpx"), cpxPsiimId, db),
                SdcType::Cpx, &error);
        return cpx->loadCpaFromDb(cpaPsiimId, scene, refPos - own.topLeft, false);
    }
    if (!cpx->loadDom(cpxPsiimId, layout, scene, refPos, false))
        return false;
    cpx->updateBstBstCpx(scene, true);
    cpx->setProperty(SdcProperty::CpaPsiimId, cpaPsiimId);
    cpx->setProperty(SdcProperty::CpaShortName, alias.value(ZelDbColumn::CpaShortName));
    cpx->setProperty(SdcProperty::CpaKey2, alias.value(ZelDbColumn::CpaKey2));
    SdcCpxStateCode::apply(
        cpx, alias.value(ZelDbColumn::CpaStateCode), true, SdcCpxStateCode::MolPositions::FromOne);
    return true;
}

QString SdcReactionStorage::aliasOf(SdcCpx *cpx)
{
    return cpx ? cpx->getProperty(SdcProperty::CpaPsiimId) : QString();
}
