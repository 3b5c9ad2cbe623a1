#include "views/passcode_dlg.h"

#include "base/texts.h"
#include "views/fonts.h"
#include "work/background_job.h"
#include "work/elided_label.h"
#include "work/message_boxes.h"
#include "work/unlock_thread.h"
#include "work/win_movable.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int dialogWidth = 460;
}

PasscodeDlg::PasscodeDlg(OpenBackupPtr backup, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), m_backup(std::move(backup))
{
    setWindowTitle(textFor("IDS_ENTER_PASSWORD"));
    setModal(true);
    buildWidgets();
    new WinMovable(this);
    setFixedWidth(dialogWidth);
}

PasscodeDlg::~PasscodeDlg() = default;

void PasscodeDlg::buildWidgets()
{
    auto *title = new ElidedLabel;
    title->setText(m_backup->info().displayName);
    title->setFont(titleFont(title->font()));
    auto *prompt = new QLabel(textFor("IDS_BACKUP_ENCRYPTED_PROMPT"));
    prompt->setWordWrap(true);
    m_password = new QLineEdit;
    m_password->setObjectName(QStringLiteral("edPassword"));
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(textFor("IDS_ENTER_PASSWORD"));
    m_password->setAccessibleName(textFor("IDS_ENTER_PASSWORD"));
    prompt->setBuddy(m_password);
    auto *reveal = new QCheckBox(textFor("IDS_SHOW_PASSWORD"));
    m_message = new QLabel;
    m_message->setObjectName(QStringLiteral("lbMessage"));
    m_message->setFont(strongFont(m_message->font()));
    m_busy = new QProgressBar;
    m_busy->setRange(0, 0);
    m_busy->setTextVisible(false);
    m_busy->setAccessibleName(textFor("IDS_CHECKING_PASSWORD"));
    QSizePolicy keepRoom = m_busy->sizePolicy();
    keepRoom.setRetainSizeWhenHidden(true);
    m_busy->setSizePolicy(keepRoom);
    m_busy->hide();
    m_ok = new QPushButton(textFor("IDS_OK"));
    m_ok->setObjectName(QStringLiteral("btnOK"));
    m_ok->setDefault(true);
    auto *cancel = new QPushButton(textFor("IDS_CANCEL"));
    cancel->setObjectName(QStringLiteral("btnCancel"));

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_message, 1);
    buttons->addWidget(m_ok);
    buttons->addWidget(cancel);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(8);
    layout->addWidget(title);
    layout->addWidget(prompt);
    layout->addSpacing(8);
    layout->addWidget(m_password);
    layout->addWidget(reveal);
    layout->addWidget(m_busy);
    layout->addLayout(buttons);

    connect(m_ok, &QPushButton::clicked, this, &PasscodeDlg::btnOKPressed);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(reveal, &QCheckBox::toggled, this,
            [this](bool on) { m_password->setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password); });
    connect(m_password, &QLineEdit::textEdited, this, [this] { m_message->clear(); });
}

void PasscodeDlg::btnOKPressed()
{
    if (m_password->text().isEmpty()) {
        showMessage(textFor("IDS_PASSWORD_REQUIRED"));
        return;
    }
    auto worker = std::make_unique<UnlockThread>(m_backup, m_password->text());
    const UnlockThread *unlock = worker.get();
    m_job = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_job.get(), &BackgroundJob::succeeded, this,
            [this, unlock] { onChecked(unlock->isUnlocked()); });
    connect(m_job.get(), &BackgroundJob::failed, this, &PasscodeDlg::onFailed);
    connect(m_job.get(), &BackgroundJob::progressed, this,
            [this](const QString &status, int percent, const QString &detail) {
                m_busy->setRange(0, 100);
                m_busy->setValue(percent);
                m_message->setText(detail.isEmpty() ? status : detail);
            });
    setBusy(true);
    m_job->start();
}

void PasscodeDlg::onChecked(bool unlocked)
{
    setBusy(false);
    if (unlocked) {
        m_password->clear();
        accept();
        return;
    }
    showMessage(textFor("IDS_INVALID_PASSWORD"));
    m_password->selectAll();
}

void PasscodeDlg::onFailed(const QString &text)
{
    setBusy(false);
    showErrorBox(text);
    reject();
}

void PasscodeDlg::showMessage(const QString &text)
{
    m_message->setText(text);
    m_password->setFocus();
}

void PasscodeDlg::setBusy(bool busy)
{
    m_busy->setRange(0, 0); // until it is known how long it takes
    m_busy->setVisible(busy);
    m_ok->setEnabled(!busy);
    m_password->setEnabled(!busy);
    m_message->setText(busy ? textFor("IDS_CHECKING_PASSWORD") : QString());
    if (!busy)
        m_password->setFocus();
}
