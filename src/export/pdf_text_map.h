#pragma once

#include <QByteArray>

/// A piece of a PDF file in which every table that tells the characters behind a font's shapes names the
/// common character. Qt names the first one that has the shape, which for many Chinese characters is the sign
/// of an index, and for Arabic letters one for each form: nobody who searches for a word types those. The
/// length of the piece stays as it is, since the file's index counts bytes.
QByteArray withCommonCharacters(const QByteArray &piece);
