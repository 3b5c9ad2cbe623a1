#pragma once

#include <QByteArray>

#include <span>

namespace sample {

/// Texts that have broken readers, pages and tables before; UTF-8.
std::span<const QByteArrayView> trickyTexts();
/// Right-to-left, mixed and combining scripts.
std::span<const QByteArrayView> scriptTexts();
/// What breaks a table of comma-separated values that is not quoted well.
std::span<const QByteArrayView> tableTexts();

} // namespace sample
