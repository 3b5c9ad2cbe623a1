#pragma once

#include <QString>

/// Loads ":/en.qm" and installs it on the running application. Call once, after the application object
/// exists.
void installTexts();

/// The text for people that belongs to a key such as "IDS_ROOT_BK"; a key without an entry shows as itself.
QString textFor(const char *key);
