#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

#include <QDebug>
#include <QDomDocument>

using namespace SdcReactionStorage;

namespace {

#define ZEL_ALIAS_FUNCTION                                                                         \
    "void SdcBstBstCxi::setResultCpxAliasPsiimId(const QString & cpxAliasPsiimId)"

void appendLayout(QDomDocument *doc, QDomElement *root, const char *tag, SdcCpx *cpx)
{
    QDomElement element = doc->createElement(QLatin1String(tag));
    root->appendChild(element);
    QDomDocument own;
    own.setContent(cpx->getGraphicsInfo());
    const QDomElement layout = own.documentElement().firstChildElement(QStringLiteral("cpx"));
    if (!layout.isNull())
        element.appendChild(doc->importNode(layout, true));
}

} // namespace

SdcBstBstCxi::SdcBstBstCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : SdcBstBst(zelDbSqliteModel, parent)
{
    setSdcName(QStringLiteral("CXI Binding Site Interaction"));
}

ZelLineItemBstBstCxi *SdcBstBstCxi::getZelLineItemBstBstCxi() const
{
    ZelLineItemBstBst *const line = getZelLineItemBstBst();
    return line ? line->asLineItemBstBstCxi() : nullptr;
}

SdcCpx *SdcBstBstCxi::getSdcCpx1() const
{
    return m_sdcCpx1;
}

void SdcBstBstCxi::setSdcCpx1(SdcCpx *cpx)
{
    m_sdcCpx1 = cpx;
}

SdcCpx *SdcBstBstCxi::getSdcCpx2() const
{
    return m_sdcCpx2;
}

void SdcBstBstCxi::setSdcCpx2(SdcCpx *cpx)
{
    m_sdcCpx2 = cpx;
}

SdcCpx *SdcBstBstCxi::getSdcCpxResult() const
{
    return m_sdcCpxResult;
}

void SdcBstBstCxi::setSdcCpxResult(SdcCpx *cpx)
{
    m_sdcCpxResult = cpx;
}

void SdcBstBstCxi::updatePropertiesFromDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db || !getSdcBst1() || !getSdcBst2())
        return;
    const End end1 = endOf(getSdcBst1());
    const End end2 = endOf(getSdcBst2());
    if (end1.cpaPsiimId.isEmpty() || end2.cpaPsiimId.isEmpty())
        return;
    const QString id = findAssociation(
        {end1, end2, getProperty(SdcProperty::Geometry), getProperty(SdcProperty::BindingType)},
        false, db);
    if (id.isEmpty())
        return;
    readProperties(this, "cai", id, db->caiGetHashInfo(id), caiProperties);
}

QString SdcBstBstCxi::getResultCpxFingerPrint() const
{
    SdcBst *const site1 = getSdcBst1();
    SdcBst *const site2 = getSdcBst2();
    if (!site1 || !site2) {
        qDebug() << "Error found at QString SdcBstBstCxi::getResultCpxFingerPrint() ";
        return {};
    }
    SdcCpx *const cpxA = site1->getParentSdcCpx();
    SdcCpx *const cpxB = site2->getParentSdcCpx();
    if (!cpxA || !cpxB)
        return {};
    const QList<SdcMol *> mols = cpxA->getListSdcMol() + cpxB->getListSdcMol();
    QList<SdcBstBstCpx *> bonds = cpxA->getListSdcBstBstCpx() + cpxB->getListSdcBstBstCpx();
    SdcBstBstCpx newBond(getZelDbSqliteModel()); // leaves the sites when it goes
    newBond.addSdcBst(site1);
    newBond.addSdcBst(site2);
    bonds.append(&newBond);
    const QList<SdcBstBst *> listSbb = toListSdcBstBst(bonds);
    return SdcCpx::getCpxFingerPrint(
        SdcCpx::getConstRankedMolList(mols, mols, listSbb, false), listSbb);
}

void SdcBstBstCxi::setResultCpxAliasPsiimId(const QString &cpxAliasPsiimId)
{
    const QString fingerPrint = getResultCpxFingerPrint();
    if (fingerPrint.isEmpty()) {
        qDebug() << "Error found at " ZEL_ALIAS_FUNCTION ": empty finger print";
        return;
    }
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString cpxPsiimId = db ? db->cpaGetCpxPsiimId(cpxAliasPsiimId) : QString();
    if (cpxPsiimId.isEmpty())
        return;
    const QString stored = db->cpxGetFingerPrint(cpxPsiimId);
    if (stored == fingerPrint) {
        setProperty(SdcProperty::ResultCpaPsiimId, cpxAliasPsiimId);
        return;
    }
    const auto quoted = [](const QString &text) { return u'"' + text + u'"'; };
    qDebug() << "Error found at " ZEL_ALIAS_FUNCTION ": finger print not match";
    qDebug() << "fingerPrintCpx:";
    qDebug().noquote() << quoted(stored);
    qDebug() << "fingerPrintSbbc:";
    qDebug().noquote() << quoted(fingerPrint);
}

bool SdcBstBstCxi::isIntraComplex() const
{
    SdcCpx *const cpx = getSdcBst1() ? getSdcBst1()->getParentSdcCpx() : nullptr;
    return cpx && getSdcBst2() && getSdcBst2()->getParentSdcCpx() == cpx;
}

QString SdcBstBstCxi::getDefaultGeometry() const
{
    if (isIntraComplex())
        return QLatin1String(ZelGeometry::IntraComplex);
    const auto isAtMembrane = [](SdcBst *site) {
        SdcCpx *const cpx = site ? site->getParentSdcCpx() : nullptr;
        return cpx && cpx->containsMemAssociatedMol();
    };
    return isAtMembrane(getSdcBst1()) && isAtMembrane(getSdcBst2())
        ? QLatin1String(ZelGeometry::Plane)
        : QLatin1String(ZelGeometry::Space);
}

QString SdcBstBstCxi::getGraphicsInfo()
{
    if (!m_sdcCpx1 || !m_sdcCpx2)
        return {};
    QDomDocument doc(QStringLiteral("doc"));
    QDomElement root = doc.createElement(QStringLiteral("schema"));
    doc.appendChild(root);
    appendLayout(&doc, &root, "cpx1", m_sdcCpx1);
    appendLayout(&doc, &root, "cpx2", m_sdcCpx2);
    return doc.toString(1);
}

SdcBstBstCxi *SdcBstBstCxi::toSdcBstBstCxi()
{
    return this;
}

bool SdcBstBstCxi::isSdcBstBstCxi() const
{
    return true;
}
