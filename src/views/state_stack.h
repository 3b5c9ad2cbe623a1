#pragma once

#include <QStackedWidget>

class QLabel;
class QProgressBar;
class QPushButton;

/// The four looks of a view: empty, loading, full and failed. Full shows the content widget; the others say
/// what is the matter and what to do.
class StateStack : public QStackedWidget
{
    Q_OBJECT

public:
    /// Takes over `content`.
    explicit StateStack(QWidget *content, QWidget *parent = nullptr);

    QWidget *content() const { return m_content; }
    void showContent();
    /// `action` is the text of the button that helps, or empty for none.
    void showEmpty(const QString &title, const QString &hint, const QString &action = {});
    /// Why it failed; the button offers to try again.
    void showFailed(const QString &title, const QString &reason);
    void showLoading(const QString &text);
    void setProgress(const QString &status, int percent, const QString &detail);

signals:
    /// The button of the empty or failed look.
    void actionRequested();

private:
    QWidget *makeMessagePage();
    QWidget *makeLoadingPage();
    void showMessage(const QString &title, const QString &text, const QString &action);

    QLabel *m_title = nullptr;
    QLabel *m_text = nullptr;
    QPushButton *m_action = nullptr;
    QLabel *m_loading = nullptr;
    QLabel *m_loadingDetail = nullptr;
    QProgressBar *m_bar = nullptr;
    QWidget *m_content;
    QWidget *m_messagePage;
    QWidget *m_loadingPage;
};
