#pragma once

#include "personal/number_normaliser.h"

#include <QString>

class FileSource;
class Sqlite3DB;

/// How the numbers of one source are normalised.
struct SourceNumbers
{
    NumberNormaliser normalise;
    QString defaultCountry; // ISO code in upper case; empty when nothing tells it
};

/// By the rules of all countries. A number without a country follows those of the country that the
/// telephone's SIM card is from, else of the country that most of its message partners are in, else of this
/// computer. Every reader of one source must get the same, or one number would have two names. `source` may
/// be null; `messages` is its message database where that is open already. Where the countries data cannot be
/// had numbers are only cleaned of punctuation. Never throws Error: a guess is no data.
SourceNumbers numbersOf(FileSource *source, const Sqlite3DB *messages = nullptr);
