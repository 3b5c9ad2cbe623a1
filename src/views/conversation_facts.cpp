#include "views/conversation_facts.h"

#include "base/apple_time.h"
#include "base/texts.h"

#include <QDateTime>
#include <QLocale>

namespace {
constexpr qsizetype peopleNamed = 12;

QString dayText(std::int64_t appleSeconds)
{
    return QLocale::system().toString(QDateTime::fromSecsSinceEpoch(unixFromApple(appleSeconds)).date(),
                                      QLocale::LongFormat);
}
} // namespace

QString peopleText(const QStringList &people)
{
    if (people.size() <= peopleNamed)
        return people.join(QStringLiteral(", "));
    return people.first(peopleNamed).join(QStringLiteral(", ")) + QStringLiteral(", ") +
           textFor("IDS_AND_%1_MORE").arg(people.size() - peopleNamed);
}

QString messageCountText(qint64 count)
{
    return textFor("IDS_MESSAGE_COUNT", count);
}

QString daysText(const DateRange &days)
{
    const QString first = dayText(days.from);
    const QString last = dayText(days.to);
    return first == last ? first : QStringLiteral("%1 – %2").arg(first, last);
}
