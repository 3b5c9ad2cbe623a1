#pragma once

#include <QFont>

/// 1.4 times the given font, semi-bold: the titles of views.
QFont titleFont(const QFont &base);
/// The given font, semi-bold.
QFont strongFont(const QFont &base);
