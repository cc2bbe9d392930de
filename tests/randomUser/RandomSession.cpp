#include "RandomSession.h"

#include "PopupUser.h"
#include "support/ZelTest.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <numeric>

namespace {

constexpr qsizetype LogLength = 20;
constexpr int PaintedPercent = 6; // painting is dear

} // namespace

RandomSession::RandomSession(quint32 seed, QStringList expectedLines)
    : m_dice(seed), m_seed(seed), m_expectedLines(std::move(expectedLines)),
      m_popups(std::make_unique<PopupUser>(
          &m_dice, [this](const QString &action) { log(action); }, [this] { interrupt(); }))
{
}

RandomSession::~RandomSession() = default;

bool RandomSession::play(int steps)
{
    for (int i = 0; i < steps && m_failure.isEmpty(); ++i) {
        ++m_step;
        const bool painted = m_dice.chance(PaintedPercent);
        for (QGraphicsView *view : views())
            view->setUpdatesEnabled(painted);
        step();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        checkLines();
        check();
    }
    return m_failure.isEmpty();
}

bool RandomSession::finish()
{
    m_popups->giveUp();
    close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QStringList left = m_objects.leftovers();
    if (!left.isEmpty())
        fail(QLatin1String("left over at the end: ") + left.join(QLatin1String(", ")));
    return m_failure.isEmpty();
}

void RandomSession::doOneOf(const std::vector<Act> &acts)
{
    int thrown = m_dice.below(std::accumulate(
        acts.cbegin(), acts.cend(), 0, [](int sum, const Act &act) { return sum + act.weight; }));
    for (const Act &act : acts) {
        thrown -= act.weight;
        if (thrown < 0)
            return act.act();
    }
}

void RandomSession::mishap(int percent)
{
    if (m_calm || m_inMishap || !m_dice.chance(percent))
        return;
    m_inMishap = true;
    ++m_mishaps;
    doOneOf(mishaps());
    m_inMishap = false;
}

void RandomSession::checkLines()
{
    const QStringList lines = ZelTest::takeDebugLines();
    for (const QString &line : lines) {
        const bool expected = std::any_of(m_expectedLines.cbegin(), m_expectedLines.cend(),
            [&line](const QString &text) { return line.contains(text); });
        if (!m_tolerant && !expected)
            fail(QLatin1String("unexpected line: ") + line);
    }
}

void RandomSession::fail(const QString &what)
{
    if (m_failure.isEmpty() && !what.isEmpty())
        m_failure = QStringLiteral("seed %1, step %2: %3\nthe last actions:\n%4")
                        .arg(m_seed)
                        .arg(m_step)
                        .arg(what, m_log.join(u'\n'));
}

void RandomSession::log(const QString &action)
{
    m_log.append(QStringLiteral("%1: %2").arg(m_step).arg(action));
    if (m_log.size() > LogLength)
        m_log.removeFirst();
}

void RandomSession::mouse(
    QGraphicsView *view, QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button)
{
    QWidget *const viewport = view->viewport();
    const QPointF pos = view->mapFromScene(scenePos);
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick)
        m_buttons |= button;
    else if (type == QEvent::MouseButtonRelease)
        m_buttons &= ~Qt::MouseButtons(button);
    QMouseEvent event(type, pos, viewport->mapToGlobal(pos), button, m_buttons, m_modifiers);
    QApplication::sendEvent(viewport, &event);
}

void RandomSession::wheel(QGraphicsView *view, const QPointF &scenePos, const QPoint &delta)
{
    const QPointF pos = view->mapFromScene(scenePos);
    QWheelEvent event(pos, view->viewport()->mapToGlobal(pos), {}, delta, m_buttons, m_modifiers,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(view->viewport(), &event);
}

void RandomSession::askForMenu(QGraphicsView *view, const QPointF &scenePos)
{
    log(QStringLiteral("ask for a menu"));
    const QPoint pos = view->mapFromScene(scenePos);
    QContextMenuEvent event(
        QContextMenuEvent::Mouse, pos, view->viewport()->mapToGlobal(pos), Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
}

QPointF RandomSession::anyPointOf(QGraphicsItem *item)
{
    const QPointF share(m_dice.between(0.2, 0.8), m_dice.between(0.2, 0.8));
    if (!item)
        return {};
    const QRectF rect = item->sceneBoundingRect();
    return rect.topLeft() + QPointF(rect.width() * share.x(), rect.height() * share.y());
}
