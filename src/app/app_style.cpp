#include "app/app_style.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QPalette>

namespace {
const QColor accent(0x2b, 0x7a, 0x78);
const QColor linkOnLight(0x1f, 0x66, 0x64);
const QColor linkOnDark(0x6c, 0xc5, 0xc1);

QIcon applicationIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/res/app_%1.png").arg(size), QSize(size, size));
    return icon;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}
} // namespace

void installStyle(QApplication &application)
{
    QPalette palette = application.palette();
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, isDark(palette) ? linkOnDark : linkOnLight);
    application.setPalette(palette);
    application.setWindowIcon(applicationIcon());
    QFile sheet(QStringLiteral(":/res/app.qss"));
    if (sheet.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(sheet.readAll()));
    else
        qWarning("the style sheet could not be loaded");
}
