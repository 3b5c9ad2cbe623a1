#include "work/win_movable.h"

#include <QMouseEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

void centreOnItsWindow(QWidget *dialog)
{
    const QRect screen = dialog->screen()->availableGeometry();
    QRect place(QPoint(), dialog->size());
    place.moveCenter(dialog->parentWidget() ? dialog->parentWidget()->window()->geometry().center()
                                            : screen.center());
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    dialog->move(place.topLeft());
}

WinMovable::WinMovable(QWidget *window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

bool WinMovable::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (!event->spontaneous())
            centreOnItsWindow(m_window);
        break;
    case QEvent::MouseButtonPress: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() != Qt::LeftButton)
            break;
        // The window system moves better than we can, and on Wayland it is the only one that may.
        if (m_window->windowHandle() && m_window->windowHandle()->startSystemMove())
            return true;
        m_moving = true;
        m_grip = mouse->globalPosition().toPoint() - m_window->pos();
        return true;
    }
    case QEvent::MouseMove:
        if (!m_moving)
            break;
        m_window->move(static_cast<QMouseEvent *>(event)->globalPosition().toPoint() - m_grip);
        return true;
    case QEvent::MouseButtonRelease:
        m_moving = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
