#pragma once

#include <Qt>

/// Longer texts are cut in lists and tool tips; a name out of a backup may have any length.
inline constexpr int longestShown = 1000;

/// What the models of records give besides what is displayed.
namespace RecordRole {
enum Role {
    Sort = Qt::UserRole, // the raw value of a cell
    Search,              // the texts that a filter looks in
    Detail,              // the record as HTML
    Identity,            // what removes it from a local database
    Number,              // its place in the list that was loaded
};
} // namespace RecordRole
