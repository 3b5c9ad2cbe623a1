#pragma once

#include "export/message_export.h"

#include <QDateTime>
#include <QDialog>

class QButtonGroup;
class QLabel;
class QLineEdit;

/// What to write and where: a file for text and CSV, a folder for HTML, PDF and a message database.
struct MessageExportChoice
{
    MessageFormat format = MessageFormat::Html;
    QString target;
};

/// Asks for the format and the target of an export of messages.
class MessageExportDlg : public QDialog
{
    Q_OBJECT

public:
    /// `title` says what is exported.
    explicit MessageExportDlg(const QString &title, QWidget *parent = nullptr);

    MessageExportChoice choice() const;
    void setChoice(const MessageExportChoice &choice);
    void accept() override;

private:
    void buildWidgets(const QString &title);
    QWidget *makeFormats();
    MessageFormat format() const;
    void onFormatChanged();
    void browse();

    QButtonGroup *m_formats;
    QLabel *m_targetLabel = nullptr;
    QLineEdit *m_target = nullptr;
};

/// "mms(20240131-235959)".
QString proposedExportName(const QDateTime &now);
