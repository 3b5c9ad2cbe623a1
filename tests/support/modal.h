#pragma once

#include "work/message_boxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>
#include <QTimer>

#include <functional>

/// Calls `answer` once with the next modal window of the given class. The object must be kept while one is
/// awaited; `wasShown` tells whether it came.
template <typename Dialog>
class OnModal
{
public:
    explicit OnModal(std::function<void(Dialog &)> answer) : m_answer(std::move(answer))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(1);
    }
    bool wasShown() const { return m_shown; }

private:
    void look()
    {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog || m_shown)
            return;
        m_shown = true;
        m_timer.stop();
        m_answer(*dialog);
    }

    QTimer m_timer;
    std::function<void(Dialog &)> m_answer;
    bool m_shown = false;
};

/// Presses a button of the next message box and keeps what the box said.
class AnswerBox
{
public:
    explicit AnswerBox(QMessageBox::StandardButton button = QMessageBox::Ok)
        : m_modal([this, button](MessageBox &box) {
              m_text = box.text();
              QTest::mouseClick(box.button(button), Qt::LeftButton);
          })
    {
    }
    bool wasShown() const { return m_modal.wasShown(); }
    QString text() const { return m_text; }

private:
    QString m_text;
    OnModal<MessageBox> m_modal;
};
