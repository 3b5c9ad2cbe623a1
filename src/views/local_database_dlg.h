#pragma once

#include <QString>

class QWidget;

/// Lets the user pick a local database or name a new one; `suggestion` is the name offered. Gives its folder,
/// which need not exist yet; empty when the user thought better of it. With `update` a box asks whether newer
/// versions of messages win, ticked at first, and `update` is the answer.
QString chooseLocalDatabase(const QString &suggestion, QWidget *parent, bool *update = nullptr);
