#pragma once

#include <QString>

#include <limits>

/// What somebody who reads `html` sees, without markup: blocks and cells stand on lines of their own, and
/// blanks run together as in a browser. Nothing that the markup refers to is looked at. May stop as soon as
/// it has more than `enough` characters.
QString plainTextOfHtml(const QString &html, qsizetype enough = std::numeric_limits<qsizetype>::max());

/// How many elements at most stand in one another. What needs no end tag does not count.
int nestingOfHtml(const QString &html);

/// The first `atMost` UTF-16 units of a text, or one less where that would cut a character in two.
QString firstCharacters(const QString &text, qsizetype atMost);
