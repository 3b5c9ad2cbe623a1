#include "work/elided_label.h"

#include "work/shown_text.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace {
constexpr int widestHint = 480;

QString oneLine(const QString &text)
{
    return text.simplified();
}
} // namespace

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const
{
    return {std::min(fontMetrics().horizontalAdvance(oneLine(text())) + 2, widestHint),
            fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 8, fontMetrics().height()};
}

bool ElidedLabel::isElided() const
{
    return fontMetrics().horizontalAdvance(oneLine(text())) > contentsRect().width();
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(oneLine(text()), Qt::ElideMiddle, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
                          shown, foregroundRole());
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        QToolTip::showText(help->globalPos(), isElided() ? toolTipOf(text()) : toolTip(), this);
        return true;
    }
    return QLabel::event(event);
}
