#pragma once

#include <QString>

/// A GUID for a record that has none of its own. The same text always gives the same GUID.
QString guidFrom(const QString &text);

/// "chat" and digits, as devices name the conversations of a group. The same text always gives the same.
QString groupIdentifierFrom(const QString &text);
