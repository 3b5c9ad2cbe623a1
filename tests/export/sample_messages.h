#pragma once

#include "backup/file_source.h"
#include "base/error.h"
#include "messages/msg_records.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <deque>

/// Files held in memory, each a fault away from a good one.
class MemorySource : public FileSource
{
public:
    struct File
    {
        QByteArray content;
        bool listedOnly = false;
        bool locked = false;
        QString failure; // thrown by fetchTo
        bool unwritable = false;
        std::uint64_t lacks = 0; // bytes that are listed and not there
    };
    QMap<QString, File> files; // by relative path
    int fetches = 0;

    bool hasContent(const SourceFile &file) const override
    {
        return files.contains(file.relativePath) && !files[file.relativePath].listedOnly;
    }
    bool lists(const SourceFile &file) const override { return files.contains(file.relativePath); }
    std::optional<QString> fetchDatabase(const SourceFile &) override { return std::nullopt; }
    void fetchTo(const SourceFile &file, const QString &destination, const CopyProgress &progress) override
    {
        const File &held = files[file.relativePath];
        ++fetches;
        if (!held.failure.isEmpty())
            throw Error(held.failure);
        if (held.unwritable)
            throw Error(QStringLiteral("no"), ErrorKind::Denied, FileAccess::Writing);
        if (progress)
            progress(static_cast<std::uint64_t>(held.content.size()), 0);
        QFile out(destination);
        if (!out.open(QIODevice::WriteOnly) || out.write(held.content) != held.content.size() || !out.flush())
            throw Error::ofFile(QStringLiteral("can not write %1. %2"), out, FileAccess::Writing);
        out.setFileTime(QDateTime::fromSecsSinceEpoch(1325419200), QFileDevice::FileModificationTime);
    }
    bool isLocked(const SourceFile &file) const override { return files[file.relativePath].locked; }
    std::uint64_t listedBytes(const SourceFile &file) const override
    {
        return static_cast<std::uint64_t>(files[file.relativePath].content.size()) + files[file.relativePath].lacks;
    }
    SourceFile fileOfDevicePath(const QString &) const override { return {}; }
    QString fetchForViewing(const SourceFile &) override { return {}; }
};

/// Conversations built in code. Everything lives as long as this.
class SampleMessages
{
public:
    /// 2012-01-01 12:00 in Berlin.
    static constexpr int noon = 347108400;

    _MsgHandle &handle(const QString &id, const QString &name = {})
    {
        _MsgHandle &made = m_handles.emplace_back();
        made.rowid = qint64(m_handles.size());
        made.id = id;
        made._ct_name = name;
        return made;
    }
    _MsgChat &chat(const QString &identifier, const std::vector<const _MsgHandle *> &handles,
                   const QString &displayName = {})
    {
        _MsgChat &made = m_chats.emplace_back();
        made.rowid = qint64(m_chats.size());
        made.chat_identifier = identifier;
        made.handles = handles;
        made.display_name = displayName;
        return made;
    }
    /// An incoming message of the chat's first handle, one minute after the one before it.
    _MsgMessage &message(const _MsgChat *chat, const QString &text)
    {
        _MsgMessage &made = m_messages.emplace_back();
        made.rowid = made.sourceRowid = qint64(m_messages.size());
        made.date = noon + 60 * int(m_messages.size() - 1);
        made.text = text;
        made.chat = chat;
        made.handle = chat && !chat->handles.empty() ? chat->handles.front() : nullptr;
        refs.push_back({chat, &made});
        return made;
    }
    _MsgAttachment &attach(_MsgMessage &message, const QString &devicePath, const QString &mimeType)
    {
        _MsgAttachment &made = m_attachments.emplace_back();
        made.rowid = qint64(m_attachments.size());
        made.filename = devicePath;
        made.mime_type = mimeType;
        message.attachments.push_back(&made);
        return made;
    }
    /// An attachment that `source` holds.
    _MsgAttachment &attach(_MsgMessage &message, const QString &devicePath, const QString &mimeType,
                           MemorySource &source, const QByteArray &content)
    {
        _MsgAttachment &made = attach(message, devicePath, mimeType);
        made.source = {QStringLiteral("MediaDomain"), QStringLiteral("%1").arg(made.rowid)};
        made.total_bytes = content.size();
        source.files[made.source.relativePath] = {content, false, false, {}};
        return made;
    }

    std::vector<MessageRef> refs;

private:
    std::deque<_MsgHandle> m_handles;
    std::deque<_MsgChat> m_chats;
    std::deque<_MsgMessage> m_messages;
    std::deque<_MsgAttachment> m_attachments;
};

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Names of the files in a folder, sorted.
inline QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}
