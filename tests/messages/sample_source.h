#pragma once

#include "backup/file_source.h"
#include "base/error.h"
#include "sample/sample_maker.h"

#include <QFile>
#include <QTemporaryDir>

/// The files of an unencrypted modern sample backup, found through what its maker said it wrote.
class SampleSource : public FileSource
{
public:
    SampleSource(const QString &folder, const SampleSummary &summary) : m_folder(folder), m_summary(summary)
    {
    }

    bool hasContent(const SourceFile &file) const override
    {
        const SampleFile *found = m_summary.file(file.domain, file.relativePath);
        return found && found->stored;
    }
    std::optional<QString> fetchDatabase(const SourceFile &file) override
    {
        if (!m_summary.file(file.domain, file.relativePath))
            return {};
        const QString copy = m_copies.filePath(file.relativePath.section(u'/', -1));
        if (!QFile::exists(copy))
            fetchTo(file, copy);
        return copy;
    }
    void fetchTo(const SourceFile &file, const QString &destination, const CopyProgress & = {}) override
    {
        const SampleFile *found = m_summary.file(file.domain, file.relativePath);
        if (!found ||
            !QFile::copy(QStringLiteral("%1/%2/%3").arg(m_folder, found->fileId.left(2), found->fileId),
                         destination))
            throw Error(QStringLiteral("no content for ") + file.relativePath);
    }
    SourceFile fileOfDevicePath(const QString &devicePath) const override
    {
        const QString path = devicePath.mid(QStringLiteral("var/mobile/").size());
        const QString inMedia = path.startsWith(u"Media/") ? path.mid(6) : path;
        for (const SourceFile &place : {SourceFile{QStringLiteral("HomeDomain"), path},
                                        SourceFile{QStringLiteral("MediaDomain"), inMedia}})
            if (m_summary.file(place.domain, place.relativePath))
                return place;
        return {};
    }
    QString fetchForViewing(const SourceFile &file) override { return *fetchDatabase(file); }

private:
    QString m_folder;
    const SampleSummary &m_summary;
    QTemporaryDir m_copies;
};
