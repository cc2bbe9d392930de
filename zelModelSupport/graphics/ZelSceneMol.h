#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

/// The scene in which one molecule is drawn and edited.
///
/// A drag moves the whole molecule, unless it starts on a site or on an end of the chain: those
/// move about the component to which they are attached.
class ZELMODELSUPPORT_EXPORT ZelSceneMol : public ZelScene
{
    Q_OBJECT
public:
    explicit ZelSceneMol(QObject *parent = nullptr);
    ~ZelSceneMol() override;

    /// The one site item that may be moved in limited edit.
    void setZelEllipseItemBstLimited(ZelEllipseItemBst *item);
    QAction *getChangeColorAction() const { return m_changeColorAction; }

    bool toMove() const override;
    bool allowToChangeRelativePos() const override;

protected:
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

private:
    QPointer<ZelEllipseItemBst> m_limitedItem;
    bool m_moveWhole = false;
    QAction *m_changeColorAction = nullptr;
};
