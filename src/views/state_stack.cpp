#include "views/state_stack.h"

#include "base/texts.h"
#include "views/centred_column.h"
#include "views/fonts.h"
#include "work/shown_text.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int barWidth = 240;

QLabel *centredLabel(const char *name)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}
} // namespace

StateStack::StateStack(QWidget *content, QWidget *parent)
    : QStackedWidget(parent),
      m_content(content),
      m_messagePage(makeMessagePage()),
      m_loadingPage(makeLoadingPage())
{
    addWidget(m_content);
    addWidget(m_messagePage);
    addWidget(m_loadingPage);
}

QWidget *StateStack::makeMessagePage()
{
    auto *page = new QWidget;
    m_title = centredLabel("lbStateTitle");
    m_title->setFont(titleFont(m_title->font()));
    m_text = centredLabel("lbStateText");
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_action = new QPushButton;
    m_action->setObjectName(QStringLiteral("btnStateAction"));
    connect(m_action, &QPushButton::clicked, this, &StateStack::actionRequested);

    auto *layout = centredColumn(page);
    layout->addWidget(m_title);
    layout->addWidget(m_text);
    layout->addSpacing(8);
    layout->addWidget(m_action, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    return page;
}

QWidget *StateStack::makeLoadingPage()
{
    auto *page = new QWidget;
    m_loading = centredLabel("lbLoading");
    m_loadingDetail = centredLabel("lbLoadingDetail");
    m_bar = new QProgressBar;
    m_bar->setFixedWidth(barWidth);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(textFor("IDS_ACC_PROGRESS"));

    auto *layout = centredColumn(page);
    layout->addWidget(m_loading);
    layout->addSpacing(8);
    layout->addWidget(m_bar, 0, Qt::AlignHCenter);
    layout->addWidget(m_loadingDetail);
    layout->addStretch(3);
    return page;
}

void StateStack::showContent()
{
    setCurrentWidget(m_content);
}

void StateStack::showMessage(const QString &title, const QString &text, const QString &action)
{
    m_title->setText(title);
    m_text->setText(breakable(text));
    m_text->setVisible(!text.isEmpty());
    m_action->setText(action);
    m_action->setVisible(!action.isEmpty());
    setCurrentWidget(m_messagePage);
}

void StateStack::showEmpty(const QString &title, const QString &hint, const QString &action)
{
    showMessage(title, hint, action);
}

void StateStack::showFailed(const QString &title, const QString &reason)
{
    showMessage(title, reason, textFor("IDS_TRY_AGAIN"));
}

void StateStack::showLoading(const QString &text)
{
    m_loading->setText(text);
    m_loadingDetail->clear();
    m_bar->setRange(0, 0);
    setCurrentWidget(m_loadingPage);
}

void StateStack::setProgress(const QString &status, int percent, const QString &detail)
{
    if (!status.isEmpty())
        m_loading->setText(breakable(status));
    if (percent >= 0) {
        m_bar->setRange(0, 100);
        m_bar->setValue(percent);
    }
    m_loadingDetail->setText(breakable(detail));
}
