#include "RandomSpecies.h"

#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QPainter>

#include <algorithm>
#include <memory>

RandomSpecies::RandomSpecies(quint32 seed) : m_random(seed)
{
    if (!file.create(dir.filePath(QStringLiteral("model.zel"))))
        qFatal("%s", qPrintable(file.errorText()));
    ZelDbTransaction transaction(&file);
    for (int i = 0; i < 3; ++i)
        storeMolecule();
    for (int i = 0; i < 4; ++i)
        storeAlias();
    if (!transaction.commit())
        qFatal("%s", qPrintable(db.errorText()));
}

QImage RandomSpecies::sceneImage(const QString &cpaPsiimId, const QSize &size, ZelDbSqliteModel *db)
{
    ZelSceneSideWindow scene;
    if (!scene.loadCpa(cpaPsiimId, db))
        return {};
    const QRectF bounds = scene.itemsBoundingRect();
    QRectF source(QPointF(), bounds.size() * 1.1);
    if (const double ratio = double(size.width()) / size.height();
        source.width() > source.height() * ratio)
        source.setHeight(source.width() / ratio);
    else
        source.setWidth(source.height() * ratio);
    source.moveCenter(bounds.center());
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene.render(&painter, image.rect(), source, Qt::KeepAspectRatio);
    return image;
}

void RandomSpecies::storeMolecule()
{
    ZelScene scene;
    QList<ZelTree::Mcp> mcps;
    const int count = 1 + m_random.bounded(3);
    for (int i = 0; i < count; ++i) {
        QStringList features;
        for (int k = m_random.bounded(4); k > 0; --k)
            features.append(QStringLiteral("f%1").arg(k));
        mcps.append({QStringLiteral("c%1").arg(i), features, i == 0 ? 2 : m_random.bounded(3)});
    }
    const QString name = QStringLiteral("M%1").arg(m_mols.size());
    const std::unique_ptr<SdcMol> mol(ZelTree::molecule(&db, name, mcps, &scene));
    for (SdcMcp *mcp : mol->getListSdcMcp()) {
        mcp->setTagDirectionCode(m_random.bounded(5));
        mcp->getZelEllipseItemMcp()->updateLayoutOfListStateSticky(m_random.bounded(2) == 0);
        for (ZelRectItemMcpSticky *sticky : mcp->getListSticky())
            sticky->setColor(QColor::fromHsv(m_random.bounded(360), 200, 200), true);
    }
    const QString color = QColor::fromRgb(m_random.generate() & 0xffffff).name();
    mol->setMolColor(color);
    mol->setProperty(SdcProperty::Color, color);
    if (!mol->saveToDb())
        qFatal("%s", qPrintable(db.errorText()));
    m_mols.append(mol->getPsiimId());
}

void RandomSpecies::storeAlias()
{
    ZelScene scene;
    SdcCpx cpx(&db);
    SdcBst *before = nullptr;
    const int count = 1 + m_random.bounded(4);
    for (int i = 0; i < count; ++i) {
        auto *const mol = new SdcMol(&db);
        mol->loadFromDb(m_mols.at(m_random.bounded(int(m_mols.size()))), &scene);
        place(mol, &scene, 300.0 * i);
        cpx.addSdcChild(mol, true);
        const QList<SdcBst *> sites = mol->getListSdcBst();
        if (before)
            scene.addSdcBstBstCpx(&cpx, before, sites.first());
        before = sites.last();
    }
    setStates(&cpx);
    const QString stored = db.cpxGetPsiimIdFromFingerPrint(cpx.getCpxFingerPrint());
    if (stored.isEmpty()) {
        cpx.setProperty(SdcProperty::ShortName, QStringLiteral("X%1").arg(m_aliases.size()));
        cpx.saveToDbCpx();
    } else {
        cpx.setProperty(SdcProperty::PsiimId, stored);
    }
    if (!cpx.saveToDbCpa())
        qFatal("%s", qPrintable(db.errorText()));
    m_aliases.append(cpx.getProperty(SdcProperty::CpaPsiimId));
}

void RandomSpecies::place(SdcMol *mol, ZelScene *scene, double x)
{
    const QList<SdcMcp *> mcps = mol->getListSdcMcp();
    switch (m_random.bounded(4)) {
    case 0:
        zgs::rotate(mcps, m_random.bounded(2) ? 90.0 : -90.0, false);
        break;
    case 1:
        zgs::rotate(mcps, m_random.bounded(360), false);
        break;
    case 2:
        zgs::flipY(mcps, false);
        break;
    default:
        break;
    }
    scene->moveListSdcMcps(mcps, QPointF(x, m_random.bounded(100.0)));
}

void RandomSpecies::setStates(SdcCpx *cpx)
{
    static constexpr ComponentStateType states[] = {
        ComponentStateOff, ComponentStateOn, ComponentStateDontCare};
    for (SdcMcp *mcp : cpx->getListSdcMcp()) {
        for (ZelRectItemMcpSticky *sticky : mcp->getListSticky())
            sticky->setStateType(states[m_random.bounded(3)], false);
        mcp->updateStatePropertyFromSticky();
        mcp->setProperty(SdcProperty::Negation, QLatin1String(m_random.bounded(4) == 0 ? "1" : ""));
    }
    for (SdcBst *bst : cpx->getListSdcBst())
        bst->setBindingStatus(m_random.bounded(2) ? BindingStatusBound : BindingStatusUnbound);
}
