#pragma once

#include "LiveObjects.h"
#include "RandomDice.h"
#include "RandomModel.h"

#include <QEvent>
#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QPointF>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class PopupUser;
class QGraphicsItem;
class QGraphicsView;
class Sdc;
class ZelGraphicsView;
class ZelGraphicsViewTrn;
class ZelScene;

/// A user who does anything to views of all kinds and to what they show: turns wheels, resizes and
/// pairs them, shows other records, destroys scenes and what is drawn there, and asks for pictures
/// of records, some of them damaged.
class ViewUser : public QObject
{
    Q_OBJECT
public:
    explicit ViewUser(quint32 seed);
    ~ViewUser() override;

    /// Checks everything after every step. False as soon as something is wrong.
    bool play(int steps);
    /// Destroys views and scenes; false when something is left of them.
    bool finish();
    QString failure() const { return m_failure; }

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

    void step();
    void wheel();
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
    void mishap();
    void interrupt();
    void destroy();

    ZelGraphicsView *openView();
    ZelScene *openScene();
    void closeScene(std::size_t index);
    void load(Shown &shown);
    void check();
    void checkScene(ZelScene *scene);
    void checkLines();
    void checkPicture(
        const QPixmap &picture, const QString &tag, const QString &id, const QSize &size);

    void mouse(QGraphicsView *view, QEvent::Type type, const QPointF &pos, Qt::MouseButton button);
    QPointF anyPoint(QGraphicsView *view);
    ZelGraphicsView *anyView();
    ZelScene *anyScene();
    QString anyId(const QString &tag);
    double expectedScale(QGraphicsView *view, double factor) const;
    void fail(const QString &what);
    void log(const QString &action);

    quint32 m_seed;
    LiveObjects m_objects; // before what it counts
    RandomDice m_dice;
    RandomModel m_model;
    std::vector<Shown> m_scenes;
    std::vector<Window> m_windows;
    std::unique_ptr<PopupUser> m_popups;
    QHash<QString, QPixmap> m_pictures;
    Qt::MouseButtons m_buttons;
    bool m_tolerant = false; // something unknown or damaged was asked for: lines are due
    bool m_inMishap = false;
    int m_step = 0;
    QStringList m_log;
    QString m_failure;
};
