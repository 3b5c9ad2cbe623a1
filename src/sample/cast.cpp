#include "sample/cast.h"

#include <algorithm>

namespace sample {

namespace {

constexpr CastMember members[] = {
    {"Ada", "Brückner", "+14155550132", "us", "(415) 555-0132", "_$!<Mobile>!$_", "ada@example.org"},
    {"Émile", "Łukasiewicz-Fernández", "+4917139200123", "de", "+49 171 39200-123", "_$!<Mobile>!$_",
     "emile@example.com"},
    {"Zoë", "O’Neill", "+447700900123", "gb", "+44 7700 900 123", "_$!<Home>!$_", "zoe@example.net"},
    {"Noa", "בן־דוד", "+14155550147", "us", "415.555.0147", "_$!<Mobile>!$_", ""},
    {"太郎", "山田", "+14155550161", "us", "1 (415) 555 0161", "iPhone", "taro@example.org"},
    {"Marguerite", "", "+14155550172", "us", "415-555-0172", "_$!<Work>!$_", ""},
    {"", "Quist, MD", "+14155550183", "us", "+1 415-555-0183", "_$!<Main>!$_", "quist@example.org"},
    {"Priya", "Raghunathan", "+14155550194", "us", "(415)5550194", "_$!<Other>!$_", "priya@example.org"},
};

} // namespace

QString CastMember::name() const
{
    return (QString::fromUtf8(first) + QLatin1Char(' ') + QString::fromUtf8(last)).trimmed();
}

std::span<const CastMember> cast()
{
    return members;
}

const CastMember *castMemberByPhone(const QString &phone)
{
    const auto found = std::find_if(std::begin(members), std::end(members), [&](const CastMember &member) {
        return phone == QLatin1String(member.phone);
    });
    return found == std::end(members) ? nullptr : found;
}

QString strangerPhone(int index)
{
    // 555-0100 to 555-0199 are nobody's in every North American area; the cast lives in 415.
    int area = 201 + index / 100 % 780;
    if (area >= 415)
        ++area;
    return QStringLiteral("+1%1555%2").arg(area).arg(100 + index % 100, 4, 10, QLatin1Char('0'));
}

} // namespace sample
