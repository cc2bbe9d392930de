#pragma once

#include "support/ZelTest.h"
#include "support/ZelTree.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneEditing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QGraphicsView>
#include <QMenu>

#include <functional>

/// A model in memory with molecules A (two components, features P and Q on the first, sites a1, a2
/// and a3) and B (one component, sites b1 and b2).
class EditingModel
{
public:
    EditingModel();

    ZelDbSqliteModel *db() { return &m_db; }
    QString molA() const { return m_molA; }
    QString molB() const { return m_molB; }

private:
    QString save(const QString &name, const QList<ZelTree::Mcp> &mcps, const QStringList &sites);

    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QString m_molA;
    QString m_molB;
};

/// The user's hands on a scene that is shown in a view.
class Hands
{
public:
    explicit Hands(ZelSceneEditing *scene);

    QGraphicsView &view() { return m_view; }
    Qt::KeyboardModifiers modifiers; // held down

    void press(const QPointF &p, Qt::MouseButton button = Qt::LeftButton);
    void move(const QPointF &p);
    void release(const QPointF &p, Qt::MouseButton button = Qt::LeftButton);
    void click(const QPointF &p);
    void drag(const QPointF &from, const QPointF &to);
    void key(Qt::Key key);
    /// Drags a record onto the view and lets it go; whether it was taken.
    bool drop(const QString &tagAndPsiimId, const QPointF &p);
    /// Chooses an entry of the context menu; false when there is no such entry or no menu.
    bool choose(const QPointF &p, const QString &entry);
    /// The texts of the context menu's entries.
    QStringList entries(const QPointF &p);

    static QPointF centreOf(Sdc *sdc);

private:
    void send(
        QEvent::Type type, const QPointF &p, Qt::MouseButton button, Qt::MouseButtons buttons);
    void menu(const QPointF &p, const std::function<void(QMenu *)> &onMenu);

    QGraphicsView m_view;
};

/// A site of a molecule by its short name.
SdcBst *siteOf(SdcMol *mol, const char *name);
