#pragma once

#include <QString>

/// Loads ":/en.qm" and installs it on the running application. Call once, after the application object
/// exists.
void installTexts();

/// The text for people that belongs to a key such as "IDS_ROOT_BK"; a key without an entry shows as itself.
QString textFor(const char *key);

/// The same for a text with a form for one and a form for many: the one that fits `number`, with %n replaced by it.
QString textFor(const char *key, qint64 number);
