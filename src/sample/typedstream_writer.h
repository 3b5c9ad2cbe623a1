#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace sample {

/// A stretch of a styled text that is one part of a message.
struct TextRun
{
    int length = 0; // UTF-16 units
    int part = 0;
    QByteArray transferGuid; // of the attachment that stands here; empty for text
};

/// Which classes the archive is made of; both kinds are met.
enum class StyledText { Plain, Mutable };

/// A message body as `attributedBody` holds it: an archived attributed string in the typedstream format.
/// The runs must cover the text; without any the whole text is part 0.
QByteArray typedstreamBody(const QByteArray &utf8, std::vector<TextRun> runs = {},
                           StyledText kind = StyledText::Plain);

} // namespace sample
