#pragma once

#include "sample/backup_container.h"
#include "sample/generation.h"

namespace sample {

/// What a backup is apart from its files: the catalogue in the chosen layout, the keys that protect it, and
/// the property lists. Construct, put files into container(), finish().
class BackupFrame
{
public:
    /// `scratch` is a folder for files in the making. Throws Error when the options do not go together.
    BackupFrame(const SampleOptions &options, const Generation &generation, const QString &scratch);

    BackupContainer &container() { return *m_container; }
    /// Ends the catalogue, protects it and writes the property lists, Manifest.plist last.
    void finish();

private:
    QString inFolder(const char *name) const;
    std::unique_ptr<CatalogueWriter> makeCatalogue() const;
    QByteArray protectCatalogue() const;
    void writePlist(const char *name, const QByteArray &content) const;

    const SampleOptions &m_options;
    const Generation &m_generation;
    QString m_scratch;
    SeededGenerator m_chance;
    bool m_doubleProtection;
    std::unique_ptr<KeybagWriter> m_keybag;
    std::unique_ptr<BackupContainer> m_container;
};

} // namespace sample
