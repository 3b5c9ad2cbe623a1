#include "views/data_view.h"

#include <QAction>
#include <QIcon>

DataView::DataView(QWidget *parent) : QWidget(parent), m_export(new QAction(this))
{
    m_export->setIcon(QIcon(QStringLiteral(":/res/act_export.png")));
    m_export->setObjectName(QStringLiteral("actExport"));
    m_export->setEnabled(false);
    connect(m_export, &QAction::triggered, this, [this] { exportSelection(); });
}

void DataView::setStatus(const QString &text)
{
    m_status = text;
    emit statusChanged(text);
}

void DataView::setExportState(const QString &text, const QString &why)
{
    m_export->setText(text);
    m_export->setEnabled(why.isEmpty());
    m_export->setToolTip(why.isEmpty() ? text : why);
}
