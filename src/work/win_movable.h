#pragma once

#include <QObject>
#include <QPoint>

class QWidget;

/// Puts a dialog into the middle of the window that it belongs to, as far as the screen allows. Qt does so
/// too, but makes room for a frame that a dialog without one does not have.
void centreOnItsWindow(QWidget *dialog);

/// Lets a window without a frame be moved by dragging anywhere on it, and shows it in the middle of the
/// window that it belongs to. Owned by the window.
class WinMovable : public QObject
{
    Q_OBJECT

public:
    explicit WinMovable(QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    QPoint m_grip;
    bool m_moving = false;
};
