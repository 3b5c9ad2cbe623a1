#pragma once

#include "sample/seeded_generator.h"

namespace sample {

/// Content of files that views open and exports copy: small, but whole enough for the programs that look at
/// it.

/// A picture of soft coloured rings; throws Error when Qt lacks the format ("JPEG" or "PNG").
QByteArray picture(const char *format, int width, int height, SeededGenerator &chance);
/// The same as a HEIC with a smaller version of itself in it.
QByteArray heicPicture(int width, int height, SeededGenerator &chance);
/// Begins like a HEIC picture and holds none: what a decoder has to refuse in good order.
QByteArray heicHead(SeededGenerator &chance);
/// A QuickTime movie of no tracks.
QByteArray movie(SeededGenerator &chance);
/// MPEG-4 audio of no tracks.
QByteArray mpegAudio(SeededGenerator &chance);
/// AMR narrow-band audio, all silence.
QByteArray amrAudio(int seconds);
QByteArray pdfDocument(const QByteArray &asciiText);
/// A vCard 3.0; with a picture when `jpeg` is not empty.
QByteArray vcard(const QByteArray &name, const QByteArray &phone, const QByteArray &jpeg);

} // namespace sample
