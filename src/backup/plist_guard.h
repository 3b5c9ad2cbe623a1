#pragma once

#include <QByteArrayView>

#include <cstdint>

/// What is checked before bytes go to the property-list library, which builds a copy of an object for each
/// reference to it, walks its trees by recursion and has steps whose time grows with the square of their input:
/// small hostile bytes could ask it for any amount of memory or time, or for more stack than there is. Both
/// checks take time and memory in proportion to the bytes.

/// Every object lies inside, nothing refers to itself, nesting is bounded, and the tree stays in proportion
/// to the bytes.
bool isSafeBinaryPlist(QByteArrayView bytes);
/// The same for one of a million small ones: its tree takes `treeBytes` at most.
bool isSafeBinaryPlist(QByteArrayView bytes, std::uint64_t treeBytes);

/// Nesting and work are bounded, no declarations of its own, no NUL.
bool isSafeXmlPlist(QByteArrayView bytes);
