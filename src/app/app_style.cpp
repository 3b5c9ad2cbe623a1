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

// Quiet, and still readable: a contrast above 4.5 with the base.
QColor mixed(const QColor &text, const QColor &base)
{
    constexpr int textParts = 65;
    constexpr int allParts = 100;
    const auto mix = [](int a, int b) { return (a * textParts + b * (allParts - textParts)) / allParts; };
    return QColor(mix(text.red(), base.red()), mix(text.green(), base.green()),
                  mix(text.blue(), base.blue()));
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
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        palette.setColor(group, QPalette::PlaceholderText,
                         mixed(palette.color(group, QPalette::Text), palette.color(group, QPalette::Base)));
    application.setPalette(palette);
    application.setWindowIcon(applicationIcon());
    QFile sheet(QStringLiteral(":/res/app.qss"));
    if (sheet.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(sheet.readAll()));
    else
        qWarning("the style sheet could not be loaded");
}
