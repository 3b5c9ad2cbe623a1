#pragma once

#include <QString>

#include <optional>

/// The kinds of data that a source may hold, in the order in which a backup lists them.
enum class DataClass {
    Photos,
    Videos,
    Messages,
    Contacts,
    Voicemail,
    Calendar,
    Notes,
    Calls,
    Recordings,
    Bookmarks,
    Files,
};

inline constexpr DataClass allDataClasses[] = {
    DataClass::Photos,     DataClass::Videos,    DataClass::Messages, DataClass::Contacts,
    DataClass::Voicemail,  DataClass::Calendar,  DataClass::Notes,    DataClass::Calls,
    DataClass::Recordings, DataClass::Bookmarks, DataClass::Files,
};

/// "photos", "messages", ...: the name on the command line.
QString dataClassName(DataClass dataClass);
std::optional<DataClass> dataClassOf(const QString &name);

/// True for the classes that are files of the backup: photos, videos, voicemail, recordings, and all files.
bool isMediaClass(DataClass dataClass);
