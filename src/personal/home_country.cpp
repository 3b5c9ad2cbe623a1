#include "personal/home_country.h"

#include "backup/cf_type.h"
#include "backup/device_database.h"
#include "base/error.h"
#include "base/private_folder.h"
#include "personal/country_lib_db.h"
#include "sqlite/sqlite3_db.h"

#include <QFile>
#include <QLocale>
#include <QTemporaryDir>

#include <memory>

namespace {
const SourceFile simFile{QStringLiteral("WirelessDomain"),
                         QStringLiteral("Library/Preferences/com.apple.commcenter.plist")};
const SourceFile messagesFile{QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db")};

constexpr qint64 largestSimFile = 4 << 20;
constexpr qsizetype mobileCountryCodeDigits = 3;

CFType readSimFile(FileSource &source)
{
    const QTemporaryDir folder(runFolder() + QStringLiteral("/sim-XXXXXX"));
    const QString path = folder.filePath(QStringLiteral("sim.plist"));
    source.fetchTo(simFile, path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestSimFile)
        return {};
    return CFType::parse(file.readAll());
}

/// The mobile country code, with which the subscriber's number on a SIM card begins; of the first card that
/// has one.
QString mobileCountryCodeOfSim(FileSource &source)
{
    if (!source.hasContent(simFile) || source.isLocked(simFile))
        return {};
    const CFType cards = readSimFile(source).get(QStringLiteral("PersonalWallet"));
    for (const QString &card : cards.keys()) {
        const CFType carrier = cards.get(card).get(QStringLiteral("CarrierEntitlements"));
        const QString subscriber = carrier.get(QStringLiteral("lastGoodImsi")).toString();
        if (subscriber.size() > mobileCountryCodeDigits)
            return subscriber.first(mobileCountryCodeDigits);
    }
    return {};
}

QString countryOfMost(const Sqlite3DB &messages)
{
    for (const char *table : {"handle", "group_member"}) {
        if (!messages.hasTable(QLatin1String(table)))
            continue;
        Sqlite3Cursor row = messages.queryThrow(
            QStringLiteral("select upper(country) as code from %1 where country <> '' group by code "
                           "order by count(*) desc, code limit 1")
                .arg(QLatin1String(table)));
        if (row.moveNext())
            return row.getText(0);
    }
    return {};
}

QString countryOfMost(FileSource &source)
{
    Sqlite3DB messages;
    return openDeviceDatabase(messages, source, messagesFile) ? countryOfMost(messages) : QString();
}

/// What `tell` gives, nothing where it fails: the next one down tells then.
template <typename Tell>
QString attempt(Tell tell)
{
    try {
        return tell();
    } catch (const Error &error) {
        qWarning("the country of the numbers: %s", error.what());
        return {};
    }
}

void chooseDefault(CountryLibDb &countries, FileSource *source, const Sqlite3DB *messages)
{
    const QString mobileCode = source ? attempt([&] { return mobileCountryCodeOfSim(*source); }) : QString();
    if (const auto sim = countries.byMobileCountryCode(mobileCode); sim.found)
        return countries.setDefault(sim.country);
    const QString most = attempt([&] {
        return messages ? countryOfMost(*messages) : source ? countryOfMost(*source) : QString();
    });
    if (const auto country = countries.byIsoCode(most); country.found)
        return countries.setDefault(country.country);
    const auto here = countries.byIsoCode(QLocale::territoryToCode(QLocale().territory()));
    if (here.found)
        countries.setDefault(here.country);
}
} // namespace

SourceNumbers numbersOf(FileSource *source, const Sqlite3DB *messages)
{
    const auto countries = std::make_shared<CountryLibDb>();
    try {
        countries->open();
    } catch (const Error &error) {
        qWarning("%s", error.what());
        return {[](const QString &number, const QString &) { return CountryLibDb::normalise(number, {}); },
                {}};
    }
    chooseDefault(*countries, source, messages);
    return {[countries](const QString &number, const QString &isoCode) {
                return countries->normaliseFor(number, isoCode);
            },
            countries->defaultCountry().sn};
}
