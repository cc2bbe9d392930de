#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxLoader.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMolLoader.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcNewParts.h"

#include <QDebug>

namespace {

constexpr double DefaultMolGap = 20.0; // between molecules that the layout does not mention

void report(const QString &id, const QString &what)
{
    qDebug() << "Error found at bool SdcCpx::loadDom():" << id << what;
}

} // namespace

SdcCpxLoader::SdcCpxLoader(
    SdcCpx *cpx, SdcMolType::Reader *types, ZelScene *scene, const QPointF &refPos, bool limited)
    : m_cpx(cpx), m_types(types), m_scene(scene), m_refPos(refPos), m_limited(limited)
{
}

bool SdcCpxLoader::load(const QString &psiimId, const SdcLayout &layout)
{
    return load(psiimId, readRecord(psiimId), layout);
}

bool SdcCpxLoader::loadAsStored(const QString &psiimId)
{
    const ZelDbRecord record = readRecord(psiimId);
    const QString graphicsInfo = record.value(ZelDbColumn::GraphicsInfo);
    if (!load(psiimId, record, readLayout(psiimId, graphicsInfo)))
        return false;
    m_cpx->updateBstBstCpx(m_scene, true);
    return true;
}

SdcLayout SdcCpxLoader::readLayout(const QString &psiimId, const QString &graphicsInfo)
{
    QString error;
    SdcLayout layout = graphicsInfo.isEmpty()
        ? SdcLayout()
        : SdcLayout::fromXml(graphicsInfo, SdcType::Cpx, &error);
    if (!error.isEmpty())
        qDebug() << "Error found at bool SdcCpx::loadCpx(): the layout of" << psiimId
                 << "is not readable, parts get default places:" << error;
    return layout;
}

ZelDbRecord SdcCpxLoader::readRecord(const QString &psiimId) const
{
    return m_types->db() ? m_types->db()->cpxGetHashInfo(psiimId) : ZelDbRecord();
}

bool SdcCpxLoader::load(const QString &psiimId, const ZelDbRecord &record, const SdcLayout &layout)
{
    ZelDbSqliteModel *const db = m_types->db();
    if (record.isEmpty()) {
        report(psiimId, db ? QStringLiteral("no such complex") : QStringLiteral("no database"));
        return false;
    }
    if (!layout.isNull() && layout.psiimId != psiimId)
        report(psiimId, QLatin1String("has the layout of ") + layout.psiimId);
    m_cpx->setProperty(SdcProperty::PsiimId, psiimId);
    m_cpx->setProperty(SdcProperty::ShortName, record.value(ZelDbColumn::ShortName));
    m_cpx->setProperty(SdcProperty::Name, record.value(ZelDbColumn::Name));
    m_cpx->setProperty(SdcProperty::CpxText, record.value(ZelDbColumn::CpxText));
    m_cpx->setProperty(SdcProperty::Notes, record.value(ZelDbColumn::Notes));
    m_cpx->setProperty(
        SdcProperty::References, db->refGetReferences(QStringLiteral("cpx"), psiimId));
    loadMols(psiimId, layout);
    return true;
}

void SdcCpxLoader::loadMols(const QString &psiimId, const SdcLayout &layout)
{
    SdcMolLoader loader(m_types, m_scene, m_limited);
    const QPointF origin = m_refPos + layout.topLeft;
    const SdcLayoutChildren layouts(layout, SdcType::Mol);
    QRectF occupied; // measured when a molecule without a place asks for it
    qsizetype measured = m_cpx->sdcChildren().size();
    SdcNewParts::Drawn drawn;
    const QStringList molIds = m_types->db()->cpxGetListMolPsiimId(psiimId);
    for (qsizetype i = 0; i < molIds.size(); ++i) {
        const SdcLayout &molLayout = layouts.find(molIds.at(i), static_cast<int>(i));
        QPointF place = origin;
        if (molLayout.isNull()) {
            report(molIds.at(i), QStringLiteral("has no place in the layout"));
            for (; measured < m_cpx->sdcChildren().size(); ++measured)
                occupied |=
                    m_cpx->getChildSdcAtIndex(static_cast<int>(measured))->getSdcSceneRectF();
            if (!occupied.isNull())
                place = occupied.topRight() + QPointF(DefaultMolGap, 0.0);
        }
        auto *const mol = new SdcMol(m_types->db());
        if (!loader.load(mol, molIds.at(i), molLayout, place))
            mol->setProperty(SdcProperty::PsiimId, molIds.at(i)); // it keeps its position
        m_cpx->addSdcChild(mol, true);
        drawn.emplace_back(mol, &molLayout);
    }
    SdcNewParts::settle(drawn);
}
