#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"

#include <QGraphicsView>
#include <QObject>
#include <QPointer>
#include <QStandardItemModel>

#include <memory>

class QGraphicsEllipseItem;
class Sdc;
class SdcBst;
class SdcCpx;
class SdcMcp;
class SdcMol;
class ZelEllipseItem;
class ZelRectItemMcpSticky;
class ZelScene;

/// The application around a scene: holds the molecules, applies what the scene asks for, keeps the
/// undo stack, loads and saves.
///
/// It notes what goes wrong in its part: changes that were not announced, states that do not come
/// back, molecules that are stored otherwise than drawn.
class SceneHost : public QObject
{
    Q_OBJECT
public:
    enum Kind {
        OneMolecule, ///< a molecule scene
        LooseMolecules, ///< a base scene, molecules as rows of an item model
        Complex ///< a base scene with a complex as its data component
    };
    /// What a drag moves in a base scene.
    enum DragMode { MoveNothing, MoveMolecule, MoveComponent, MoveAttached, MoveGroup };

    explicit SceneHost(Kind kind);
    ~SceneHost() override;

    Kind kind() const { return m_kind; }
    ZelScene *scene() const { return m_scene.get(); }
    QGraphicsView *view() const { return m_view.get(); }
    ZelDbSqliteModel *db() { return &m_db; }
    QList<SdcMol *> molecules() const;
    /// The first thing that went wrong; empty when nothing did.
    QString fault() const { return m_fault; }
    void setFault(const QString &fault);

    void setDragMode(DragMode mode);
    /// A second view, or only one again.
    void toggleSecondView();

    SdcMol *addMolecule();
    void addComponent(SdcMol *mol, QGraphicsEllipseItem *ref, SdcMcp *attachTo);
    void addFeature(SdcMcp *mcp, const QString &color);
    void addBond(SdcBst *first, SdcBst *second);
    void removeMolecule(SdcMol *mol);
    void cycleState(ZelRectItemMcpSticky *sticky);
    void rename(Sdc *sdc, const QString &name);
    void save(SdcMol *mol);
    void load(const QString &psiimId, const QPointF &offset);

    void undo();
    void redo();
    void bookmark();
    void restoreBookmark(int index);
    bool isRestoring() const { return m_restoring; }

    /// Destroys an object behind everybody's back; tidy() removes what belonged to it.
    void destroy(QObject *object);
    void tidy();
    /// Notes a change since the last announced one.
    void checkAnnounced();
    /// Destroys everything: 0 scene first, 1 molecules first, 2 views first.
    void close(int order);

private:
    struct Snapshot
    {
        ZelSceneState state;
        QList<QPointer<SdcMol>> molecules;
    };
    struct Entry
    {
        Snapshot before;
        Snapshot after;
    };

    void changeBegins();
    void changeEnds();
    void setStickyState(ZelRectItemMcpSticky *sticky, int state);
    void setNegation(SdcMcp *mcp, bool negated);
    void setBindingStatus(SdcBst *bst, BindingStatusType status);
    Snapshot take() const;
    bool restore(const Snapshot &snapshot);
    void keep(SdcMol *mol);
    void forget(SdcMol *mol);
    QString newName(QChar kind);

    Kind m_kind;
    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QStandardItemModel m_model;
    SdcCpx *m_cpx = nullptr; // a row of the model
    QList<QPointer<SdcMol>> m_molecules;
    std::unique_ptr<ZelScene> m_scene;
    std::unique_ptr<QGraphicsView> m_view;
    std::unique_ptr<QGraphicsView> m_secondView;
    QList<Entry> m_undo;
    QList<Entry> m_redo;
    QList<Snapshot> m_bookmarks;
    Snapshot m_before; // of the change that is under way
    ZelSceneState m_known; // after the last change that was announced
    bool m_changing = false;
    bool m_untidy = false;
    bool m_restoring = false;
    int m_names = 0;
    QString m_fault;
};
