#pragma once

#include <QWidget>

class QAction;
class QLineEdit;

/// What the window around it needs of a right-hand view.
class DataView : public QWidget
{
    Q_OBJECT

public:
    explicit DataView(QWidget *parent = nullptr);

    /// Exports what is selected; its text says how many, its tool tip why it is disabled.
    QAction *exportAction() const { return m_export; }
    /// Saves into a local database; null when this view cannot.
    virtual QAction *saveAction() const { return nullptr; }
    /// Deletes what is selected; null when this view cannot.
    virtual QAction *removeAction() const { return nullptr; }
    /// Prints what is selected; null when this view cannot.
    virtual QAction *printAction() const { return nullptr; }
    virtual QLineEdit *filterEdit() const = 0;
    virtual void reload() = 0;

    /// One line on what is shown and selected.
    QString status() const { return m_status; }

signals:
    void statusChanged(const QString &text);

protected:
    virtual void exportSelection() = 0;
    void setStatus(const QString &text);
    /// `text` for the action; disabled with the reason `why` unless that is empty.
    void setExportState(const QString &text, const QString &why);

private:
    QAction *m_export;
    QString m_status;
};
