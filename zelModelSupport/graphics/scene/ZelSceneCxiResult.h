#pragma once

#include <QGraphicsObject>
#include <QString>

#include <memory>

class SdcCpx;
class ZelDbSqliteModel;
class ZelSceneCpx;
class ZelSceneState;

/// The complex that an interaction yields, drawn in a frame beside the complexes that yield it.
///
/// It is a complex of its own on a scene of its own, so that nothing in the frame can be edited and
/// nothing of it depends on the objects that it was copied from. Clicks pass through.
class ZelSceneCxiResult : public QGraphicsObject
{
    Q_OBJECT
public:
    explicit ZelSceneCxiResult(ZelDbSqliteModel *zelDbSqliteModel);
    ~ZelSceneCxiResult() override;

    /// Belongs to this item.
    SdcCpx *getSdcCpx() const { return m_cpx.get(); }
    /// Shows what a state of an interaction comes to when its bonds are made. False when it cannot
    /// be drawn.
    bool show(const ZelSceneState &state);
    QString getTitle() const { return m_title; }
    void setTitle(const QString &title);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    QRectF m_source; // on the scene of its own
    QRectF m_frame; // about the origin
    QString m_title;
    std::unique_ptr<ZelSceneCpx> m_scene;
    std::unique_ptr<SdcCpx> m_cpx; // dies before its drawing
};
