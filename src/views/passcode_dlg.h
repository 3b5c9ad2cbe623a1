#pragma once

#include "work/open_backup.h"

#include <QDialog>

class BackgroundJob;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

/// Asks for the password of an encrypted backup and tries it on a worker; the dialog stays usable meanwhile.
/// Accepted: the backup is unlocked. A backup whose keybag or catalogue cannot be read shows that in the
/// error box and ends the dialog rejected, as no password would help.
class PasscodeDlg : public QDialog
{
    Q_OBJECT

public:
    explicit PasscodeDlg(OpenBackupPtr backup, QWidget *parent = nullptr);
    ~PasscodeDlg() override;

public slots:
    void btnOKPressed();

private:
    void buildWidgets();
    void showMessage(const QString &text);
    void setBusy(bool busy);
    void onChecked(bool unlocked);
    void onFailed(const QString &text);

    OpenBackupPtr m_backup;
    std::unique_ptr<BackgroundJob> m_job;
    QLineEdit *m_password = nullptr;
    QLabel *m_message = nullptr;
    QProgressBar *m_busy = nullptr;
    QPushButton *m_ok = nullptr;
};
