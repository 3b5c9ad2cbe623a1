#include "personal/data_class.h"

QString dataClassName(DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Photos:
        return QStringLiteral("photos");
    case DataClass::Videos:
        return QStringLiteral("videos");
    case DataClass::Messages:
        return QStringLiteral("messages");
    case DataClass::Contacts:
        return QStringLiteral("contacts");
    case DataClass::Voicemail:
        return QStringLiteral("voicemail");
    case DataClass::Calendar:
        return QStringLiteral("calendar");
    case DataClass::Notes:
        return QStringLiteral("notes");
    case DataClass::Calls:
        return QStringLiteral("calls");
    case DataClass::Recordings:
        return QStringLiteral("recordings");
    case DataClass::Bookmarks:
        return QStringLiteral("bookmarks");
    case DataClass::Files:
        return QStringLiteral("files");
    }
    return {};
}

std::optional<DataClass> dataClassOf(const QString &name)
{
    for (const DataClass dataClass : allDataClasses)
        if (dataClassName(dataClass) == name)
            return dataClass;
    return std::nullopt;
}

bool isMediaClass(DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Photos:
    case DataClass::Videos:
    case DataClass::Voicemail:
    case DataClass::Recordings:
    case DataClass::Files:
        return true;
    default:
        return false;
    }
}
