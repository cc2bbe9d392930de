#pragma once

#include "SceneHistory.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelDb/ZelDbTypes.h"

#include <QGraphicsView>
#include <QObject>
#include <QPointer>
#include <QStandardItemModel>

#include <memory>

class QGraphicsEllipseItem;
class Sdc;
class SdcBst;
class SdcMcp;
class SdcMol;
class ZelEllipseItem;
class ZelRectItemMcpSticky;
class ZelScene;

/// The application around a scene: holds the molecules, applies what the scene asks for, keeps the
/// undo stack, loads and saves. It tells of molecules that are stored otherwise than drawn.
class SceneHost : public QObject
{
    Q_OBJECT
public:
    enum Kind {
        OneMolecule, ///< a molecule scene
        LooseMolecules ///< a base scene, molecules as rows of an item model
    };
    /// What a drag moves in a base scene.
    enum DragMode { MoveNothing, MoveMolecule, MoveComponent, MoveAttached, MoveGroup };

    SceneHost(Kind kind, const LiveObjects *objects, SceneHistory::Fail fail);
    ~SceneHost() override;

    Kind kind() const { return m_kind; }
    ZelScene *scene() const { return m_scene.get(); }
    QGraphicsView *view() const { return m_view.get(); }
    ZelDbSqliteModel *db() { return &m_db; }
    SceneHistory *history() { return m_history.get(); }
    QList<SdcMol *> molecules() const;

    void setDragMode(DragMode mode);

    SdcMol *addMolecule();
    void addComponent(SdcMol *mol, QGraphicsEllipseItem *ref, SdcMcp *attachTo);
    void addFeature(SdcMcp *mcp, const QString &color);
    void addBond(SdcBst *first, SdcBst *second);
    void removeMolecule(SdcMol *mol);
    void cycleState(ZelRectItemMcpSticky *sticky);
    void rename(Sdc *sdc, const QString &name);
    void save(SdcMol *mol);
    void load(const QString &psiimId, const QPointF &offset);

    /// Destroys an object behind everybody's back; tidy() removes what belonged to it.
    void destroy(QObject *object);
    void tidy();
    /// Destroys everything: 0 scene first, 1 molecules first, 2 views first.
    void close(int order);

private:
    void setStickyState(ZelRectItemMcpSticky *sticky, int state);
    void setNegation(SdcMcp *mcp, bool negated);
    void setBindingStatus(SdcBst *bst, BindingStatusType status);
    void keep(SdcMol *mol);
    void forget(SdcMol *mol);
    QString newName(QChar kind);

    Kind m_kind;
    SceneHistory::Fail m_fail;
    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QStandardItemModel m_model;
    QList<QPointer<SdcMol>> m_molecules;
    std::unique_ptr<ZelScene> m_scene;
    std::unique_ptr<QGraphicsView> m_view;
    std::unique_ptr<SceneHistory> m_history;
    bool m_untidy = false;
    int m_names = 0;
};
