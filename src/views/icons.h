#pragma once

#include <QIcon>

/// The picture ":/res/NAME.png" as an icon that stays visible on the selection's colour, which is the icons'
/// own.
QIcon listIcon(const char *name);
