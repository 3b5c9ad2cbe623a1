#pragma once

#include <QWidget>

class ElidedLabel;
class QAction;
class QHBoxLayout;
class QLabel;
class QLineEdit;

/// The top of a view: title and count, the filter, and the actions of the view.
class ViewHeader : public QWidget
{
    Q_OBJECT

public:
    explicit ViewHeader(const QString &title, QWidget *parent = nullptr);

    void setCount(const QString &count);
    /// A filter box that says what it looks in. Escape empties it, then gives the focus back.
    QLineEdit *addFilter(const QString &placeholder);
    void addWidget(QWidget *widget);
    /// The filter and what stands beside it can only be used while there is something to filter.
    void setToolsEnabled(bool enabled);
    /// A button for an action of the view.
    void addAction(QAction *action);

signals:
    /// Escape in a filter that is empty already.
    void filterLeft();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ElidedLabel *m_title;
    QLabel *m_count;
    QWidget *m_toolRow;
    QHBoxLayout *m_tools;
    QHBoxLayout *m_actions;
    QLineEdit *m_filter = nullptr;
};
