#include "views/view_header.h"

#include "views/fonts.h"
#include "work/elided_label.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace {
constexpr int filterWidth = 260;
}

ViewHeader::ViewHeader(const QString &title, QWidget *parent)
    : QWidget(parent),
      m_title(new ElidedLabel),
      m_count(new QLabel),
      m_toolRow(new QWidget),
      m_tools(new QHBoxLayout(m_toolRow)),
      m_actions(new QHBoxLayout)
{
    m_title->setText(title);
    m_title->setFont(titleFont(m_title->font()));
    m_count->setObjectName(QStringLiteral("lbCount"));
    m_count->setForegroundRole(QPalette::PlaceholderText);
    m_actions->setSpacing(8);
    m_tools->setContentsMargins(0, 0, 0, 0);
    m_tools->setSpacing(8);

    auto *top = new QHBoxLayout;
    top->setSpacing(8);
    top->addWidget(m_title);
    top->addWidget(m_count, 1, Qt::AlignBottom);
    top->addLayout(m_actions);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 8);
    layout->setSpacing(8);
    layout->addLayout(top);
    layout->addWidget(m_toolRow);
    m_tools->addStretch();
}

void ViewHeader::setCount(const QString &count)
{
    m_count->setText(count);
}

QLineEdit *ViewHeader::addFilter(const QString &placeholder)
{
    m_filter = new QLineEdit;
    m_filter->setObjectName(QStringLiteral("edFilter"));
    m_filter->setPlaceholderText(placeholder);
    m_filter->setAccessibleName(placeholder);
    m_filter->setClearButtonEnabled(true);
    m_filter->setFixedWidth(filterWidth);
    m_filter->installEventFilter(this);
    addWidget(m_filter);
    return m_filter;
}

void ViewHeader::addWidget(QWidget *widget)
{
    m_tools->insertWidget(m_tools->count() - 1, widget);
}

void ViewHeader::setToolsEnabled(bool enabled)
{
    m_toolRow->setEnabled(enabled);
}

void ViewHeader::addAction(QAction *action)
{
    auto *button = new QToolButton;
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setFocusPolicy(Qt::StrongFocus);
    m_actions->addWidget(button);
}

bool ViewHeader::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        if (m_filter->text().isEmpty())
            emit filterLeft();
        else
            m_filter->clear();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
