#pragma once

#include <QObject>
#include <QPoint>

class QWidget;

/// Lets a window without a frame be moved by dragging anywhere on it. Owned by the window.
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
