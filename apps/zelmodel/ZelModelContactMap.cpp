#include "apps/zelmodel/ZelModelContactMap.h"

#include "zelLayout/ContactMapLayout.h"
#include "zelModelSupport/graphics/contact/ZelSceneContactMap.h"

namespace {

constexpr double Scale = 1.5; // of the scene's units: the smallest names are to be read

} // namespace

ZelModelContactMap::ZelModelContactMap(ZelDbSqliteModel *db)
    : m_scene(std::make_unique<ZelSceneContactMap>())
{
    m_scene->setItemIndexMethod(QGraphicsScene::NoIndex);
    if (!m_scene->load(db))
        return;
    zel::layout::arrangeContactMap(m_scene.get());
    m_source = m_scene->getMapRect();
}

ZelModelContactMap::~ZelModelContactMap() = default;

QByteArray ZelModelContactMap::toSvg(const QString &title) const
{
    return toSvg(1.0, Qt::white, title);
}

int ZelModelContactMap::missingCount() const
{
    return m_scene->getMissingCount();
}

QSize ZelModelContactMap::size() const
{
    return (m_source.size() * Scale).toSize();
}

void ZelModelContactMap::paint(QPainter *painter) const
{
    m_scene->render(painter, QRectF(QPointF(), size()), m_source);
}
