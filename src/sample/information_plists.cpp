#include "sample/information_plists.h"

#include "base/apple_time.h"
#include "sample/plist_value.h"

namespace sample {

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

PlistDate backupDate(const Generation &generation)
{
    return {static_cast<double>(appleFromUnix(generation.backupDate))};
}

} // namespace

Device makeDevice(const Generation &generation, SeededGenerator chance)
{
    Device device;
    device.name = QStringLiteral("Jördis’ iPhone");
    // Devices since 2018 have an 8-16 identifier, older ones forty hexadecimal digits.
    const QString hex = QString::fromLatin1(chance.bytes(20).toHex());
    device.udid = generation.ios >= 14 ? QStringLiteral("00008110-") + hex.left(16).toUpper() : hex;
    device.serialNumber = QString::fromLatin1("F" + chance.bytes(5).toHex().toUpper() + "N");
    device.phoneNumber = QStringLiteral("+1 (415) 555-0100");
    return device;
}

QByteArray infoPlist(const Device &device, const Generation &generation)
{
    return xmlPlist(PlistValue::Dictionary{
        {text("Build Version"), text(generation.buildVersion)},
        {text("Device Name"), device.name},
        {text("Display Name"), device.name},
        {text("GUID"), device.udid.right(16).toUpper()},
        {text("Installed Applications"),
         PlistValue::Array{text("com.example.notebook"), text("com.example.weather")}},
        {text("Last Backup Date"), backupDate(generation)},
        {text("Phone Number"), device.phoneNumber},
        {text("Product Name"), text(generation.productName)},
        {text("Product Type"), text(generation.productType)},
        {text("Product Version"), text(generation.productVersion)},
        {text("Serial Number"), device.serialNumber},
        {text("Target Identifier"), device.udid},
        {text("Target Type"), text("Device")},
        {text("Unique Identifier"), device.udid.toUpper()},
    });
}

QByteArray manifestPlist(const Device &device, const Generation &generation, const Protection &protection)
{
    const PlistValue::Dictionary lockdown{
        {text("BuildVersion"), text(generation.buildVersion)},
        {text("DeviceName"), device.name},
        {text("ProductType"), text(generation.productType)},
        {text("ProductVersion"), text(generation.productVersion)},
        {text("SerialNumber"), device.serialNumber},
        {text("UniqueDeviceID"), device.udid},
    };
    PlistValue::Dictionary manifest;
    if (!protection.keybag.isEmpty())
        manifest.emplace_back(text("BackupKeyBag"), protection.keybag);
    manifest.emplace_back(text("Version"), text(generation.ios >= 10 ? "10.0" : "9.1"));
    manifest.emplace_back(text("Date"), backupDate(generation));
    manifest.emplace_back(text("SystemDomainsVersion"), text("24.0"));
    if (!protection.manifestKey.isEmpty())
        manifest.emplace_back(text("ManifestKey"), protection.manifestKey);
    manifest.emplace_back(text("WasPasscodeSet"), true);
    manifest.emplace_back(text("Lockdown"), lockdown);
    manifest.emplace_back(text("Applications"), PlistValue::Dictionary{});
    manifest.emplace_back(text("IsEncrypted"), !protection.keybag.isEmpty());
    return binaryPlist(manifest);
}

QByteArray statusPlist(const Generation &generation, SeededGenerator chance)
{
    return binaryPlist(PlistValue::Dictionary{
        {text("IsFullBackup"), true},
        {text("Version"), text("3.3")},
        {text("UUID"), QString::fromLatin1(chance.uuid())},
        {text("Date"), backupDate(generation)},
        {text("BackupState"), text("new")},
        {text("SnapshotState"), text("finished")},
    });
}

} // namespace sample
