#include "personal/country_lib_db.h"

#include "base/app_folders.h"
#include "base/error.h"

#include <QFile>
#include <QSaveFile>
#include <QStringTokenizer>

#include <sqlite3.h>

#include <algorithm>

namespace {
constexpr char byMmcSql[] =
    "select c.* from mmc_sn as m inner join countries as c on m.[sn] = c.sn and m.mmc=?";
constexpr char bySnSql[] = "select * from countries where sn=?";

QByteArray shippedData()
{
    QFile resource(QStringLiteral(":res/countries.db"));
    if (!resource.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not find :res/countries.db."));
    return resource.readAll();
}

// Written beside its place and renamed, so that neither a killed run nor a second one leaves half a file.
void makeCopy(const QString &path)
{
    const QByteArray data = shippedData();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throw Error(QStringLiteral("can not create %1. %2").arg(path, file.errorString()));
}

bool isWhole(Sqlite3DB &db)
{
    for (const char *table : {"countries", "mmc_sn"})
        if (!db.hasTable(QLatin1String(table)))
            return false;
    db.checkPages();
    return db.damage().isEmpty();
}

// No other program writes this file, so no lock is taken and no companion file is looked at.
bool openCopy(Sqlite3DB &db, const QString &path)
{
    if (!QFile::exists(path) || !db.open(path, SqliteOpen::Immutable))
        return false;
    if (isWhole(db))
        return true;
    db.close();
    return false;
}

CountryInfo countryOf(const Sqlite3Cursor &row)
{
    const auto text = [&row](const char *column) { return row.getText(QLatin1String(column)); };
    CountryInfo country{text("sn"), text("n"), text("ln"), text("pnum"), text("mmc"), text("numc"), {}};
    if (const QString pattern = text("r1"); !pattern.isEmpty())
        country.mobilePattern.setPattern(QLatin1Char('^') + pattern + QLatin1Char('$'));
    return country;
}

bool isMobile(const CountryInfo &country, const QString &number)
{
    return !country.mobilePattern.pattern().isEmpty() && country.mobilePattern.match(number).hasMatch();
}

bool isAddressCharacter(QChar c)
{
    return c == u'@' || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}
} // namespace

void CountryLibDb::open()
{
    const QString path = appDataFolder().filePath(QStringLiteral("countries.db"));
    if (!openCopy(m_db, path)) {
        try {
            makeCopy(path);
        } catch (const Error &error) {
            qWarning("%s", error.what());
        }
        if (!openCopy(m_db, path))
            openShippedData();
    }
    m_byMmc.clear();
    m_bySn.clear();
    m_default = query(byMmcSql, m_defaultMmc).value_or(CountryInfo());
}

void CountryLibDb::openShippedData()
{
    m_db.openThrow(QStringLiteral(":memory:"), SqliteOpen::ReadWriteCreate);
    m_image = shippedData();
    auto *bytes = reinterpret_cast<unsigned char *>(m_image.data());
    if (sqlite3_deserialize(m_db.handle(), "main", bytes, m_image.size(), m_image.size(),
                            SQLITE_DESERIALIZE_READONLY) != SQLITE_OK)
        throw Error(QStringLiteral("can not open :res/countries.db. %1")
                        .arg(QString::fromUtf8(sqlite3_errmsg(m_db.handle()))));
}

std::optional<CountryInfo> CountryLibDb::query(const char *sql, const QString &code) const
{
    Sqlite3Cursor row = m_db.queryThrow(Sqlite3Sql(QLatin1String(sql)).addTextParam(code));
    if (!row.moveNext())
        return std::nullopt;
    return countryOf(row);
}

CountryLibDb::Lookup CountryLibDb::lookUp(Cache &cache, const char *sql, const QString &code)
{
    auto known = cache.constFind(code);
    if (known == cache.constEnd())
        known = cache.insert(code, query(sql, code));
    return *known ? Lookup{**known, true} : Lookup{m_default, false};
}

CountryLibDb::Lookup CountryLibDb::byMobileCountryCode(const QString &mmc)
{
    return lookUp(m_byMmc, byMmcSql, mmc);
}

CountryLibDb::Lookup CountryLibDb::byIsoCode(const QString &isoCode)
{
    return lookUp(m_bySn, bySnSql, isoCode.toUpper());
}

bool CountryLibDb::validLength(const CountryInfo &country, qsizetype length)
{
    for (const QStringView valid : qTokenize(country.numc, u','))
        if (valid.toInt() == length)
            return true;
    return false;
}

QString CountryLibDb::normalise(const QString &number, const CountryInfo &country)
{
    if (std::any_of(number.begin(), number.end(), isAddressCharacter))
        return number.toLower();
    QString digits;
    std::copy_if(number.begin(), number.end(), std::back_inserter(digits),
                 [](QChar c) { return c == u'+' || (c >= u'0' && c <= u'9'); });
    if (std::none_of(digits.begin(), digits.end(), [](QChar c) { return c.isDigit(); }))
        return {};
    if (digits.startsWith(u'+'))
        return digits;
    const qsizetype length = digits.size();
    if (validLength(country, length) && isMobile(country, digits))
        return u'+' + country.pnum + digits;
    if (digits.startsWith(u'0') && validLength(country, length - 1) && isMobile(country, digits.mid(1)))
        return u'+' + country.pnum + digits.mid(1);
    if (digits.startsWith(country.pnum) && validLength(country, length - country.pnum.size()))
        return u'+' + digits;
    return digits;
}

QString CountryLibDb::normaliseFor(const QString &number, const QString &isoCode)
{
    return normalise(number, isoCode.isEmpty() ? m_default : byIsoCode(isoCode).country);
}
