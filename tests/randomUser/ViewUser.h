#pragma once

#include "RandomModel.h"
#include "RandomSession.h"

#include <QHash>
#include <QPixmap>
#include <QPointer>
#include <QString>

#include <memory>
#include <vector>

class QGraphicsView;
class Sdc;
class ZelGraphicsView;
class ZelGraphicsViewTrn;
class ZelScene;

/// A user who does anything to views of all kinds and to what they show: turns wheels, resizes and
/// pairs them, shows other records, destroys scenes and what is drawn there, and asks for pictures
/// of records, some of them damaged.
class ViewUser : public RandomSession
{
    Q_OBJECT
public:
    explicit ViewUser(quint32 seed);
    ~ViewUser() override;

private:
    struct Window
    {
        std::unique_ptr<ZelGraphicsView> view;
        QPointer<ZelGraphicsViewTrn> twin;
    };
    struct Shown
    {
        std::unique_ptr<ZelScene> scene;
        QPointer<Sdc> sdc; // the host's own, where a scene holds one
    };

    QList<QGraphicsView *> views() const override;
    void step() override;
    void check() override;
    void close() override;
    std::vector<Act> mishaps() override;
    void interrupt() override;

    void turnWheel();
    void zoom();
    void resize();
    void gesture();
    void hover();
    void contextMenu();
    void show();
    void pair();
    void openOrClose();
    void damage();
    void pictures();
    void pictureOfRecord(const QSize &size);
    void pictureOfReaction(const QSize &size, QHash<QString, QPixmap> *cache);
    void destroy();

    ZelGraphicsView *openView();
    ZelScene *openScene();
    void closeScene(std::size_t index);
    void load(Shown &shown);
    void checkScene(ZelScene *scene);
    void checkPicture(
        const QPixmap &picture, const QString &tag, const QString &id, const QSize &size);

    QPointF anyPoint(QGraphicsView *view);
    ZelGraphicsView *anyView();
    ZelScene *anyScene();
    QString anyId(const QString &tag);
    double expectedScale(QGraphicsView *view, double factor) const;

    RandomModel m_model;
    std::vector<Shown> m_scenes;
    std::vector<Window> m_windows;
    QHash<QString, QPixmap> m_pictures;
};
