#pragma once

#include <QString>

#include <functional>

/// Gives the form of a phone number in which numbers are compared, for the country of an ISO code; an empty
/// code stands for the default country. What CountryLibDb::normaliseFor() does, or a test in its place.
using NumberNormaliser = std::function<QString(const QString &number, const QString &isoCode)>;
