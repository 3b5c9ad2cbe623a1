#include "sample/backup_frame.h"

#include "base/error.h"
#include "sample/cipher.h"
#include "sample/information_plists.h"
#include "sample/manifest_writer.h"
#include "sample/mbdb_writer.h"

#include <QCryptographicHash>
#include <QFile>

namespace sample {

namespace {

constexpr int catalogueClass = 4;
constexpr const char *plainCatalogue = "Manifest-plain.db";

bool wantsDoubleProtection(const SampleOptions &options, const Generation &generation)
{
    if (options.password.isEmpty() || options.layout == SampleOptions::Layout::Mbdb ||
        options.saltedDescriptors)
        return false;
    return options.protection == SampleOptions::Protection::ByGeneration
               ? generation.ios >= 10
               : options.protection == SampleOptions::Protection::Double;
}

void checkOptions(const SampleOptions &options)
{
    if (options.iter < 1 || options.dpic < 1)
        throw Error(QStringLiteral("A key derivation needs at least one round."));
    const bool mbdb = options.layout == SampleOptions::Layout::Mbdb;
    if (options.saltedDescriptors && (options.password.isEmpty() || mbdb))
        throw Error(QStringLiteral("Salted descriptors need a password and the modern layout."));
    if (options.protection == SampleOptions::Protection::Double && (mbdb || options.saltedDescriptors))
        throw Error(QStringLiteral("Double protection needs the modern layout without salted descriptors."));
}

} // namespace

BackupFrame::BackupFrame(const SampleOptions &options, const Generation &generation, const QString &scratch)
    : m_options(options),
      m_generation(generation),
      m_scratch(scratch),
      m_chance(options.seed),
      m_doubleProtection(wantsDoubleProtection(options, generation))
{
    checkOptions(options);
    if (!options.password.isEmpty())
        m_keybag = std::make_unique<KeybagWriter>(
            options.password.toUtf8(),
            KeybagWriter::Rounds{m_doubleProtection ? options.dpic : 0, options.iter},
            m_chance.fork("keybag"));
    m_container = std::make_unique<BackupContainer>(options, makeCatalogue(), m_keybag.get(),
                                                    m_chance.fork("container"));
}

QString BackupFrame::inFolder(const char *name) const
{
    return m_options.folder + QLatin1Char('/') + QLatin1String(name);
}

std::unique_ptr<CatalogueWriter> BackupFrame::makeCatalogue() const
{
    if (m_options.layout == SampleOptions::Layout::Mbdb)
        return std::make_unique<MbdbWriter>(inFolder("Manifest.mbdb"));
    if (m_doubleProtection)
        return std::make_unique<ManifestWriter>(m_scratch + QLatin1Char('/') + QLatin1String(plainCatalogue));
    if (!m_options.saltedDescriptors)
        return std::make_unique<ManifestWriter>(inFolder("Manifest.db"));
    const QByteArray salt = m_chance.fork("descriptors").bytes(16);
    const QByteArray digest =
        QCryptographicHash::hash(m_options.password.toUtf8() + salt, QCryptographicHash::Sha1);
    return std::make_unique<ManifestWriter>(inFolder("Manifest.db"), digest.left(16), salt);
}

QByteArray BackupFrame::protectCatalogue() const
{
    if (!m_doubleProtection)
        return {};
    QFile plain(m_scratch + QLatin1Char('/') + QLatin1String(plainCatalogue));
    if (!plain.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(plain.fileName(), plain.errorString()));
    const QByteArray key = m_chance.fork("catalogue").bytes(32);
    writeFile(inFolder("Manifest.db"),
              encryptContent(key, plain.readAll(), !m_options.catalogueWithoutPadding));
    return m_keybag->wrapForClass(catalogueClass, key);
}

void BackupFrame::writePlist(const char *name, const QByteArray &content) const
{
    writeFile(inFolder(name), content);
    setModified(inFolder(name), m_generation.backupDate);
}

void BackupFrame::finish()
{
    m_container->finish();
    const QByteArray manifestKey = protectCatalogue();
    setModified(inFolder(m_options.layout == SampleOptions::Layout::Mbdb ? "Manifest.mbdb" : "Manifest.db"),
                m_generation.backupDate);
    const Device device = makeDevice(m_generation, m_chance.fork("device"));
    writePlist("Info.plist", infoPlist(device, m_generation));
    writePlist("Status.plist", statusPlist(m_generation, m_chance.fork("status")));
    writePlist("Manifest.plist", manifestPlist(device, m_generation,
                                               {m_keybag ? m_keybag->bytes() : QByteArray(), manifestKey}));
}

} // namespace sample
