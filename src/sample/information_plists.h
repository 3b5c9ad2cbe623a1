#pragma once

#include "sample/generation.h"
#include "sample/seeded_generator.h"

namespace sample {

/// The device that a sample pretends to come from.
struct Device
{
    QString name;
    QString udid;
    QString serialNumber;
    QString phoneNumber;
};

Device makeDevice(const Generation &generation, SeededGenerator chance);

/// What Manifest.plist carries besides the device. Empty arrays are left out.
struct Protection
{
    QByteArray keybag;
    QByteArray manifestKey;
};

/// Info.plist, XML.
QByteArray infoPlist(const Device &device, const Generation &generation);
/// Manifest.plist, binary.
QByteArray manifestPlist(const Device &device, const Generation &generation, const Protection &protection);
/// Status.plist, binary: a finished backup.
QByteArray statusPlist(const Generation &generation, SeededGenerator chance);

} // namespace sample
