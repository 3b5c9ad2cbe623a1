#pragma once

#include "sqlite/sqlite3_db.h"

#include <QHash>
#include <QRegularExpression>
#include <QString>

#include <optional>

/// What normalising a phone number needs to know of one country. An unknown country is empty throughout.
struct CountryInfo
{
    QString sn;                       // ISO code, "GB"
    QString n;                        // English name
    QString ln;                       // name in the country's own language
    QString pnum;                     // international dialling code, "44"
    QString mmc;                      // mobile country codes, "234,235"
    QString numc;                     // lengths of a national number, "9,10"
    QRegularExpression mobilePattern; // of a whole national mobile number; an empty one matches none

    bool operator==(const CountryInfo &) const = default;
};

/// The countries database "countries.db". Its copy in the application data folder is made when missing and
/// made anew when damaged; where that folder cannot be written, the shipped data is read from memory instead,
/// because no reader of messages or calls may fail for it. Used by one thread at a time.
class CountryLibDb
{
public:
    struct Lookup
    {
        CountryInfo country; // the default country when nothing was found
        bool found = false;
    };

    /// Selects the default country. Set it before open(); without it, or when it matches nothing, the default
    /// country is empty.
    void setDefaultMobileCountryCode(const QString &mmc) { m_defaultMmc = mmc; }

    /// Throws Error("can not find :res/countries.db.") when there is neither a copy nor shipped data.
    void open();

    const CountryInfo &defaultCountry() const { return m_default; }
    /// The same for a country that is known by other means.
    void setDefault(const CountryInfo &country) { m_default = country; }
    Lookup byMobileCountryCode(const QString &mmc);
    /// In either case of letters.
    Lookup byIsoCode(const QString &isoCode);

    /// Whether a national number of that country may have so many digits.
    static bool validLength(const CountryInfo &country, qsizetype length);

    /// The number with "+" and the dialling code in front where the country's rules tell that they are
    /// missing, else its digits (and "+") alone; empty without a digit. Text with a letter or "@" is an
    /// address and comes back in lower case.
    static QString normalise(const QString &number, const CountryInfo &country);
    /// By the country of an ISO code; the default country for an empty or unknown one.
    QString normaliseFor(const QString &number, const QString &isoCode);

private:
    using Cache = QHash<QString, std::optional<CountryInfo>>;

    void openShippedData();
    std::optional<CountryInfo> query(const char *sql, const QString &code) const;
    Lookup lookUp(Cache &cache, const char *sql, const QString &code);

    QByteArray m_image; // what a database in memory stands on: must outlive m_db
    Sqlite3DB m_db;
    QString m_defaultMmc;
    CountryInfo m_default;
    Cache m_byMmc;
    Cache m_bySn;
};
