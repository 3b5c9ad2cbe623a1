#include "personal/contact_functions.h"

#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>

namespace {
constexpr qsizetype suffixDigits = 9;

QString textOf(sqlite3_value *value)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return QString::fromUtf8(text, text ? sqlite3_value_bytes(value) : 0);
}

void setResult(sqlite3_context *context, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_result_text(context, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

void personNameFunction(sqlite3_context *context, int, sqlite3_value **values)
{
    setResult(context, personName(textOf(values[0]), textOf(values[1]), textOf(values[2])));
}

void numberSuffixFunction(sqlite3_context *context, int, sqlite3_value **values)
{
    setResult(context, numberSuffix(textOf(values[0])));
}

void registerFunction(Sqlite3DB &db, const char *name, int arguments,
                      void (*function)(sqlite3_context *, int, sqlite3_value **))
{
    if (sqlite3_create_function_v2(db.handle(), name, arguments, SQLITE_ANY, nullptr, function, nullptr,
                                   nullptr, nullptr) != SQLITE_OK)
        throw Error(QStringLiteral("can not read %1. %2")
                        .arg(db.path(), QString::fromUtf8(sqlite3_errmsg(db.handle()))));
}
} // namespace

QString personName(const QString &first, const QString &middle, const QString &last)
{
    QString name = first;
    if (!middle.isEmpty())
        name += u' ' + middle;
    name += u' ' + last;
    return name.trimmed();
}

QString numberSuffix(const QString &number)
{
    const auto isLetter = [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); };
    if (std::any_of(number.begin(), number.end(), isLetter))
        return number;
    std::array<QChar, suffixDigits> digits;
    auto first = digits.end();
    for (auto c = number.crbegin(); c != number.crend() && first != digits.begin(); ++c)
        if (*c >= u'0' && *c <= u'9')
            *--first = *c;
    return QString(first, digits.end() - first);
}

void registerContactFunctions(Sqlite3DB &db)
{
    registerFunction(db, "person_name", 3, personNameFunction);
    registerFunction(db, "number_suffix", 1, numberSuffixFunction);
}
