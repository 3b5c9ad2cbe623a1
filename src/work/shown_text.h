#pragma once

#include <QString>

/// Texts out of a backup, made ready for places that would otherwise take them for more than a text. A name
/// may have any length and may look like HTML, which tool tips and labels without a fixed format then load
/// and lay out.

/// The same text with places where a line may break within words that are longer than a line.
QString breakable(const QString &text);

/// A tool tip that shows exactly this text, its line ends too; a very long one is cut. Empty for an empty
/// text.
QString toolTipOf(const QString &text);
