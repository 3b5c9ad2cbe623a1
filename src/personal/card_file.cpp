#include "personal/card_file.h"

#include "base/error.h"
#include "base/source_guard.h"
#include "personal/vcard_reader.h"

#include <QFile>
#include <QFileInfo>

namespace {
constexpr qint64 largestCardFile = qint64(1) << 30;

class CardFile : public PersonalSource
{
public:
    CardFile(VCardContacts cards, const QString &path) : m_cards(std::move(cards)), m_guard({path}) {}

    QList<ContactRecord> contacts(Scope, Report &report) override
    {
        report.merge(m_cards.report);
        return m_cards.contacts;
    }
    QList<CallEntry> calls(Scope, Report &) override { return {}; }
    QList<NoteEntry> notes(Scope, Report &) override { return {}; }
    QList<CalendarEvent> calendar(Scope, Report &) override { return {}; }
    BookmarkTree bookmarks(Scope, Report &) override { return {}; }
    bool has(DataClass dataClass) const override { return dataClass == DataClass::Contacts; }

private:
    VCardContacts m_cards;
    SourceGuard m_guard;
};
} // namespace

std::unique_ptr<PersonalSource> openCardFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, file.errorString()));
    if (file.size() > largestCardFile)
        throw Error(QStringLiteral("%1: too large for a file of cards").arg(path));
    VCardContacts cards = readVCards(file.readAll(), QFileInfo(path).fileName());
    if (cards.contacts.isEmpty() && cards.report.isEmpty())
        throw Error(QStringLiteral("%1: there is no card in it").arg(path));
    return std::make_unique<CardFile>(std::move(cards), path);
}
