#pragma once

#include "RandomModel.h"
#include "RandomSession.h"

#include <QPointer>
#include <QString>

#include <memory>
#include <vector>

class Sdc;
class ZelGraphicsView;
class ZelScene;

/// A user who does anything to views of all kinds and to what they show: turns wheels, resizes and
/// pairs them, shows other records, and destroys scenes and what is drawn there.
class ViewUser : public RandomSession
{
    Q_OBJECT
public:
    explicit ViewUser(quint32 seed);
    ~ViewUser() override;

private:
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
    void adjust();
    void gesture();
    void hover();
    void show();
    void pair();
    void openOrClose();
    void destroy();

    ZelGraphicsView *openView();
    ZelScene *openScene();
    void closeScene(std::size_t index);
    void load(Shown &shown);
    void checkScene(ZelScene *scene);

    QPointF anyPoint(QGraphicsView *view);
    ZelGraphicsView *anyView();
    ZelScene *anyScene();
    QString anyId(const QString &tag);

    RandomModel m_model;
    std::vector<Shown> m_scenes;
    std::vector<std::unique_ptr<ZelGraphicsView>> m_windows;
};
