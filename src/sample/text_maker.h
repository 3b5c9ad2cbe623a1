#pragma once

#include "sample/seeded_generator.h"

namespace sample {

/// A text of one to some hundred words in UTF-8: mostly short, now and then long, some with emoji or line
/// breaks.
QByteArray makeText(SeededGenerator &chance);

/// A few words for a title.
QByteArray makeTitle(SeededGenerator &chance);

} // namespace sample
