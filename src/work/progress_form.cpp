#include "work/progress_form.h"

#include "base/shell.h"
#include "base/texts.h"
#include "work/elided_label.h"
#include "work/message_boxes.h"
#include "work/win_movable.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int formWidth = 460;
}

ProgressForm::ProgressForm(const QString &title, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint),
      m_title(new ElidedLabel(this)),
      m_bar(new QProgressBar(this)),
      m_detail(new ElidedLabel(this)),
      m_remaining(new QLabel(this)),
      m_cancel(new QPushButton(textFor("IDS_CANCEL"), this))
{
    m_link.receiver = this;
    setWindowTitle(title);
    setModal(true);
    m_title->setText(title);
    m_title->setObjectName(QStringLiteral("lbTitle"));
    QFont bold = m_title->font();
    bold.setWeight(QFont::DemiBold);
    m_title->setFont(bold);
    m_bar->setRange(0, 100);
    m_bar->setValue(0);
    m_bar->setAccessibleName(textFor("IDS_ACC_PROGRESS"));
    m_detail->setObjectName(QStringLiteral("lbDetail"));
    m_remaining->setObjectName(QStringLiteral("lbRemaining"));
    m_cancel->setObjectName(QStringLiteral("btnCancel"));
    m_cancel->setFocusPolicy(Qt::NoFocus);
    m_cancel->setAutoDefault(false);
    new WinMovable(this);

    auto *details = new QHBoxLayout;
    details->setSpacing(16);
    details->addWidget(m_detail, 1);
    details->addWidget(m_remaining);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(8);
    layout->addWidget(m_title);
    layout->addSpacing(8);
    layout->addWidget(m_bar);
    layout->addLayout(details);
    layout->addSpacing(8);
    layout->addWidget(m_cancel, 0, Qt::AlignRight);
    setFixedWidth(formWidth);

    connect(this, &QDialog::finished, this, &ProgressForm::onFinish);
    connect(m_cancel, &QPushButton::pressed, this, &ProgressForm::cancel);
    m_clock.start();
}

ProgressForm::~ProgressForm() = default;

void ProgressForm::updateProgress(QString status, int curProgress, QString progressText)
{
    if (!status.isEmpty())
        m_title->setText(status);
    if (curProgress >= 0)
        m_bar->setValue(curProgress);
    if (progressText.isEmpty())
        progressText = textFor("IDS_PROGRESS_%1").arg(m_bar->value());
    m_detail->setText(progressText);
    showRemaining();
}

void ProgressForm::showRemaining()
{
    const auto seconds = m_estimate.secondsLeft(m_bar->value(), m_clock.elapsed());
    m_remaining->setText(seconds ? remainingText(*seconds) : QString());
}

// True once: the job may end while the question of cancel() is open, which then has nothing left to ask.
bool ProgressForm::beginEnd()
{
    if (m_ended)
        return false;
    m_ended = true;
    if (m_question)
        m_question->done(QMessageBox::No);
    return true;
}

void ProgressForm::errorOccurred(QString err)
{
    if (!beginEnd())
        return;
    showErrorBox(err);
    done(0);
}

void ProgressForm::succeed(QString tipsStr)
{
    if (!beginEnd())
        return;
    if (!tipsStr.isEmpty())
        showSuccess(tipsStr);
    done(1);
}

void ProgressForm::showSuccess(const QString &text)
{
    const bool isWarning = *m_link.withFailures;
    MessageBox box(isWarning ? BoxIcon::Warning : BoxIcon::Information, text, BoxButton::Ok, this);
    QPushButton *open = nullptr;
    if (!m_resultPath.isEmpty()) {
        open = box.addButton(textFor("IDS_OPEN_RESULT"), QMessageBox::ActionRole);
        open->setObjectName(QStringLiteral("btnOpenResult"));
        box.setDefaultButton(QMessageBox::Ok);
    }
    box.ask();
    if (!open || box.clickedButton() != open)
        return;
    if (QFileInfo(m_resultPath).isDir())
        openFolderInShell(m_resultPath);
    else
        openInShell(m_resultPath);
}

void ProgressForm::onFinish(int result)
{
    *m_link.cancelled = result == 0;
}

void ProgressForm::tipsWait(QString info)
{
    showInformationBox(info);
    *m_link.tipPending = false;
}

void ProgressForm::cancel()
{
    if (m_ended || m_question)
        return;
    m_cancel->setDown(false); // its release goes to the question
    MessageBox question(BoxIcon::Question, textFor("IDS_CONFIRM_CANCEL"), BoxButton::Yes | BoxButton::No,
                        this);
    m_question = &question;
    const BoxButton answer = question.ask();
    m_question = nullptr;
    if (answer != BoxButton::Yes || m_ended)
        return;
    m_ended = true;
    emit userCacel();
    done(0);
}

void ProgressForm::reject()
{
    cancel();
}
