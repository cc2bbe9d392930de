#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QGraphicsView>

/// A plain view of a scene, with an optional grid behind the drawing.
class ZELMODELSUPPORT_EXPORT ZelGraphicsView : public QGraphicsView
{
    Q_OBJECT
public:
    explicit ZelGraphicsView(QWidget *parent = nullptr);
    ~ZelGraphicsView() override;

    /// The grid's steps in scene units; a step of 0 (the default) or less has no lines.
    void setGrid(int stepX, int stepY);
    /// Scales the view so that the scene's rectangle fills it but for a small margin. The factor
    /// multiplies the current scale.
    void setSceneFitToView();

protected:
    void drawBackground(QPainter *painter, const QRectF &rect) override;

private:
    int m_gridStepX = 0;
    int m_gridStepY = 0;
};
