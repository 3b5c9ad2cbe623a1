#pragma once

#include "work/progress_link.h"
#include "work/remaining_time.h"

#include <QDialog>
#include <QElapsedTimer>

class ElidedLabel;
class MessageBox;
class QLabel;
class QProgressBar;
class QPushButton;

/// The modal dialog that shows one running job and lets the user stop it. Workers call its slots by name.
/// Ends with result 1 on success and 0 on a failure or a cancel; what comes after that is ignored.
class ProgressForm : public QDialog
{
    Q_OBJECT

public:
    explicit ProgressForm(const QString &title, QWidget *parent = nullptr);
    ~ProgressForm() override;

    /// What a worker is given.
    const ProgressLink &link() const { return m_link; }
    bool isCancelled() const { return *m_link.cancelled; }
    /// A file or folder that the box shown on success offers to open.
    void setResultToOpen(const QString &path) { m_resultPath = path; }

signals:
    void userCacel();

public slots:
    void updateProgress(QString status, int curProgress, QString progressText);
    void errorOccurred(QString err);
    void succeed(QString tipsStr);
    void onFinish(int result);
    void tipsWait(QString info);
    void cancel();

public:
    /// Escape and the window system's close ask the same question as the button.
    void reject() override;

private:
    void showRemaining();
    bool beginEnd();
    void showSuccess(const QString &text);

    ElidedLabel *m_title;
    QProgressBar *m_bar;
    ElidedLabel *m_detail;
    QLabel *m_remaining;
    QPushButton *m_cancel;
    ProgressLink m_link;
    QString m_resultPath;
    QPointer<MessageBox> m_question;
    RemainingTime m_estimate;
    QElapsedTimer m_clock;
    bool m_ended = false;
};
