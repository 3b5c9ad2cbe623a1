#include "personal/card_file.h"

#include "base/error.h"
#include "personal/vcard_reader.h"

#include <QFile>

namespace {
constexpr qint64 largestCardFile = qint64(1) << 30;

class CardFile : public PersonalSource
{
public:
    CardFile(VCardContacts cards, const QString &path) : m_contacts(std::move(cards.contacts))
    {
        for (const QString &problem : std::as_const(cards.problems))
            m_problems.append(path + QStringLiteral(": ") + problem);
    }

    QList<ContactRecord> contacts() override { return m_contacts; }
    QList<CallEntry> calls() override { return {}; }
    QList<NoteEntry> notes() override { return {}; }
    QList<CalendarEvent> calendar() override { return {}; }
    BookmarkTree bookmarks() override { return {}; }
    qint64 count(DataClass dataClass) override { return has(dataClass) ? m_contacts.size() : 0; }
    bool has(DataClass dataClass) const override { return dataClass == DataClass::Contacts; }
    QStringList problems(DataClass) const override { return m_problems; }

private:
    QList<ContactRecord> m_contacts;
    QStringList m_problems;
};
} // namespace

std::unique_ptr<PersonalSource> openCardFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, file.errorString()));
    if (file.size() > largestCardFile)
        throw Error(QStringLiteral("%1: too large for a file of cards").arg(path));
    VCardContacts cards = readVCards(file.readAll());
    if (cards.contacts.isEmpty() && cards.problems.isEmpty())
        throw Error(QStringLiteral("%1: there is no card in it").arg(path));
    return std::make_unique<CardFile>(std::move(cards), path);
}
