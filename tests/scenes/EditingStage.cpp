#include "EditingStage.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

#include <memory>

EditingModel::EditingModel()
{
    if (!m_file.create(":memory:"))
        qFatal("%s", qPrintable(m_file.errorText()));
    m_molA = save("A", {{"x", {"P", "Q"}, 2}, {"y", {}, 1}}, {"a1", "a2", "a3"});
    m_molB = save("B", {{"z", {}, 2}}, {"b1", "b2"});
}

QString EditingModel::save(
    const QString &name, const QList<ZelTree::Mcp> &mcps, const QStringList &sites)
{
    ZelScene scene;
    const std::unique_ptr<SdcMol> mol(ZelTree::molecule(&m_db, name, mcps, &scene));
    const QList<SdcBst *> list = mol->getListSdcBst();
    for (qsizetype i = 0; i < list.size(); ++i)
        list.at(i)->setProperty(SdcProperty::ShortName, sites.at(i));
    mol->setMolColor(name == u'A' ? "#88bbee" : "#eebb77");
    mol->setProperty(SdcProperty::Color, mol->getMolColor().name());
    if (!mol->saveToDb())
        qFatal("%s", qPrintable(m_db.errorText()));
    return mol->getPsiimId();
}

bool Hands::drop(const QString &tagAndPsiimId, const QPointF &p)
{
    const std::unique_ptr<QMimeData> data(ZelSceneEditing::createPsiimIdMimeData(tagAndPsiimId));
    const QPoint at = view().mapFromScene(p);
    QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &enter);
    QDragMoveEvent over(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &over);
    if (!over.isAccepted())
        return false;
    QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &drop);
    return drop.isAccepted();
}

QPointF Hands::centreOf(Sdc *sdc)
{
    return sdc->getSdcSceneRectF().center();
}

SdcBst *siteOf(SdcMol *mol, const char *name)
{
    const QList<SdcBst *> sites = mol->getListSdcBst();
    for (SdcBst *site : sites) {
        if (site->getProperty(SdcProperty::ShortName) == QLatin1String(name))
            return site;
    }
    return nullptr;
}
