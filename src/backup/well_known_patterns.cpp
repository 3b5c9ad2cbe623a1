#include "backup/well_known_patterns.h"

#include <algorithm>
#include <optional>

namespace {
constexpr QByteArrayView voicemail = "Library/Voicemail/";
constexpr QByteArrayView recordings = "Media/Recordings/";
constexpr QByteArrayView messages = "Library/SMS/";
constexpr QByteArrayView messageParts = "Library/SMS/Parts/";
constexpr QByteArrayView attachments = "Library/SMS/Attachments/";
constexpr QByteArrayView camera = "Media/DCIM/";
constexpr QByteArrayView cameraThumbnails = "Media/DCIM/.THMB/";
constexpr QByteArrayView cameraMetadata = "Media/PhotoData/MetaData/DCIM/";

bool isDigits(QByteArrayView text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// Takes what stands before the next "/" off `path`; nothing when there is no "/" or nothing before it.
std::optional<QByteArrayView> takeFolder(QByteArrayView &path)
{
    const qsizetype slash = path.indexOf('/');
    if (slash <= 0)
        return std::nullopt;
    const QByteArrayView folder = path.first(slash);
    path = path.sliced(slash + 1);
    return folder;
}

bool isName(QByteArrayView text)
{
    return !text.isEmpty() && !text.contains('/');
}

/// A file's name in parts. The last ending is what desktops decide by what a file is, so it is what counts.
struct Item
{
    QByteArrayView base;   // up to the first dot: what a thumbnail shares with its picture
    QByteArrayView ending; // with the dot
};

std::optional<Item> itemNamed(QByteArrayView name)
{
    const qsizetype first = name.indexOf('.');
    const qsizetype last = name.lastIndexOf('.');
    if (!isName(name) || first <= 0 || last + 1 == name.size())
        return std::nullopt;
    return Item{name.first(first), name.sliced(last)};
}

/// "100APPLE" and its like.
bool isCameraFolder(QByteArrayView folder)
{
    return folder.endsWith("APPLE") && isDigits(folder.chopped(5));
}

bool hasEnding(const Item &item, std::initializer_list<QByteArrayView> endings)
{
    return std::any_of(endings.begin(), endings.end(), [&](QByteArrayView ending) {
        return item.ending.compare(ending, Qt::CaseInsensitive) == 0;
    });
}

/// A picture or video under "Media/DCIM/".
bool isCameraItem(QByteArrayView path)
{
    path = path.sliced(camera.size());
    const auto folder = takeFolder(path);
    const auto item = folder && isCameraFolder(*folder) ? itemNamed(path) : std::nullopt;
    return item && hasEnding(*item, {".mov", ".jpg", ".png", ".jpeg", ".heic", ".heif", ".avif", ".gif",
                                     ".tif", ".tiff", ".webp", ".dng", ".mp4", ".m4v", ".3gp"});
}

/// The item that a stored thumbnail belongs to.
std::optional<QByteArrayView> thumbnailKey(QByteArrayView path)
{
    if (path.startsWith(cameraMetadata)) {
        path = path.sliced(cameraMetadata.size());
        const auto folder = takeFolder(path);
        const auto item = folder && isCameraFolder(*folder) ? itemNamed(path) : std::nullopt;
        return item && hasEnding(*item, {".jpg", ".png"}) ? std::optional(item->base) : std::nullopt;
    }
    constexpr QByteArrayView folderMark = "APPLE___";
    path = path.sliced(cameraThumbnails.size());
    if (!takeFolder(path))
        return std::nullopt;
    const qsizetype mark = path.indexOf(folderMark);
    if (mark < 0 || !isDigits(path.first(mark)))
        return std::nullopt;
    const auto item = itemNamed(path.sliced(mark + folderMark.size()));
    return item && hasEnding(*item, {".thm"}) ? std::optional(item->base) : std::nullopt;
}

/// "GUID/name" of "Library/SMS/Attachments/GUID/name.jpg".
std::optional<QByteArrayView> attachmentKey(QByteArrayView path)
{
    if (!path.startsWith(attachments))
        return std::nullopt;
    const QByteArrayView whole = path.sliced(attachments.size());
    QByteArrayView name = whole;
    const auto folder = takeFolder(name);
    if (!folder || !isName(name))
        return std::nullopt;
    const qsizetype dot = name.indexOf('.');
    return dot < 0 ? whole : whole.first(folder->size() + 1 + dot);
}

bool isMessagePart(QByteArrayView path)
{
    if (!path.startsWith(messageParts))
        return false;
    path = path.sliced(messageParts.size());
    return takeFolder(path) && takeFolder(path) && isName(path);
}

bool isVoicemail(QByteArrayView path)
{
    return path.startsWith(voicemail) && path.endsWith(".amr") &&
           isDigits(path.sliced(voicemail.size()).chopped(4));
}

bool isRecording(QByteArrayView path)
{
    constexpr QByteArrayView ending = ".m4a";
    if (!path.startsWith(recordings) || !path.endsWith(ending))
        return false;
    const QByteArrayView name = path.sliced(recordings.size());
    return isName(name) && name.indexOf('.') == name.size() - ending.size() && name.size() > ending.size();
}

QByteArray part(QByteArrayView bytes)
{
    return QByteArray::fromRawData(bytes.data(), bytes.size());
}

QByteArrayView lastName(QByteArrayView path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}
} // namespace

WellKnownGroup groupOf(PatternDomain domain, QByteArrayView path)
{
    switch (domain) {
    case PatternDomain::Home:
        return isVoicemail(path) ? WellKnownGroup::VoicemailAudio : WellKnownGroup::Count;
    case PatternDomain::Media:
        if (path.startsWith(messages))
            return isMessagePart(path) ? WellKnownGroup::MessagePart : WellKnownGroup::MessageAttachment;
        return isRecording(path) ? WellKnownGroup::RecordingAudio : WellKnownGroup::Count;
    case PatternDomain::CameraRoll:
        if (path.startsWith(cameraThumbnails) || path.startsWith(cameraMetadata))
            return thumbnailKey(path) ? WellKnownGroup::CameraRollThumbnail : WellKnownGroup::Count;
        return path.startsWith(camera) && isCameraItem(path) ? WellKnownGroup::CameraRoll
                                                             : WellKnownGroup::Count;
    case PatternDomain::Other:
        break;
    }
    return WellKnownGroup::Count;
}

QVarLengthArray<QByteArray, 2> groupKeys(WellKnownGroup group, QByteArrayView path)
{
    switch (group) {
    case WellKnownGroup::VoicemailAudio:
        return {part(path.sliced(voicemail.size()).chopped(4))};
    case WellKnownGroup::RecordingAudio:
    case WellKnownGroup::MessagePart:
        return {part(lastName(path))};
    case WellKnownGroup::MessageAttachment: {
        QVarLengthArray<QByteArray, 2> keys{"/var/mobile/" + path.toByteArray()};
        if (const auto key = attachmentKey(path))
            keys.append(part(*key));
        return keys;
    }
    case WellKnownGroup::CameraRoll:
        return {part(path)};
    case WellKnownGroup::CameraRollThumbnail:
        if (const auto key = thumbnailKey(path))
            return {part(*key)};
        break;
    case WellKnownGroup::Count:
        break;
    }
    return {};
}
