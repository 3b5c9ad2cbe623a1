#include "personal/contact_words.h"

#include <QHash>
#include <QStringList>

namespace {
using Words = QHash<int, QString>;

Words wordsOf(const char *list, int first = 1)
{
    Words words;
    const QStringList all = QString::fromLatin1(list).split(QLatin1Char('|'));
    for (int i = 0; i < all.size(); ++i)
        if (!all.at(i).isEmpty())
            words.insert(first + i, all.at(i));
    return words;
}

// Numbers without a word leave an empty place between two bars.
const QHash<ContactDataKind, Words> &typeWords()
{
    static const QHash<ContactDataKind, Words> words{
        {ContactDataKind::Phone, wordsOf("Home|Mobile|Work|Work Fax|Home Fax|Pager||Callback|Car|Company "
                                         "Main|ISDN|Main|Other Fax|Radio|Telex|"
                                         "TTY TDD|Work Mobile|Work Pager|Assistant|MMS")},
        {ContactDataKind::Email, wordsOf("Home|Work||Mobile")},
        {ContactDataKind::Event, wordsOf("Anniversary||Birthday")},
        {ContactDataKind::PostalAddress, wordsOf("Home|Work")},
        {ContactDataKind::Organization, wordsOf("Work")},
        {ContactDataKind::Im,
         wordsOf("AIM|MSN|Yahoo|Skype|QQ|Google Talk|ICQ|Jabber|Net Meeting|Gadu Gadu|Facebook")},
        {ContactDataKind::Relation, wordsOf("Assistant|Brother|Child|Domestic "
                                            "Partner|Father|Friend|Manager|Mother|Parent|Partner|Referred by|"
                                            "Relative|Sister|Spouse")},
        {ContactDataKind::Website, wordsOf("Home page|Blog|Profile|Home|Work|FTP")},
    };
    return words;
}

using Labels = QHash<QString, int>;

// The device writes its own labels as "_$!<Mobile>!$_"; anything else is a label that the user typed.
const QHash<ContactDataKind, Labels> &deviceLabels()
{
    const auto own = [](std::initializer_list<std::pair<const char *, int>> list) {
        Labels labels;
        for (const auto &[name, type] : list)
            labels.insert(QStringLiteral("_$!<%1>!$_").arg(QLatin1String(name)), type);
        return labels;
    };
    static const Labels homeWork = own({{"Home", 1}, {"Work", 2}, {"Other", 0}});
    static const QHash<ContactDataKind, Labels> labels{
        {ContactDataKind::Phone, own({{"Mobile", 2},
                                      {"Main", 12},
                                      {"HomeFAX", 5},
                                      {"WorkFAX", 4},
                                      {"Work", 3},
                                      {"Home", 1},
                                      {"Pager", 6},
                                      {"OtherFAX", 13},
                                      {"Other", 0}})},
        {ContactDataKind::Email, homeWork},
        {ContactDataKind::PostalAddress, homeWork},
        {ContactDataKind::Im, homeWork},
        {ContactDataKind::Event, own({{"Anniversary", 1}, {"Other", 0}})},
        {ContactDataKind::Website, own({{"Home", 4}, {"HomePage", 1}, {"Work", 5}, {"Other", 0}})},
        {ContactDataKind::Relation, own({{"Assistant", 1},
                                         {"Mother", 8},
                                         {"Father", 5},
                                         {"Friend", 6},
                                         {"Parent", 9},
                                         {"Partner", 10},
                                         {"Child", 3},
                                         {"Manager", 7},
                                         {"Brother", 2},
                                         {"Sister", 13},
                                         {"Spouse", 14},
                                         {"Other", 0}})},
    };
    return labels;
}
} // namespace

QString contactTypeWord(ContactDataKind kind, int type)
{
    const auto found = typeWords().constFind(kind);
    if (found == typeWords().constEnd())
        return {};
    return found->value(type, QStringLiteral("Other"));
}

QString contactRowLabel(ContactDataKind kind, const ContactDataRow &row)
{
    if (!row.data(3).isEmpty() && kind != ContactDataKind::Name)
        return row.data(3);
    return contactTypeWord(kind, row.data(kind == ContactDataKind::Im ? 5 : 2).toInt());
}

int contactTypeOfLabel(ContactDataKind kind, const QString &label, QString &custom)
{
    const Labels known = deviceLabels().value(kind);
    const auto found = known.constFind(label);
    custom = found == known.constEnd() ? label : QString();
    return found == known.constEnd() ? 0 : *found;
}

QString composeDisplayName(const ContactDataRow &name)
{
    QString text = name.data(5);
    for (const int column : {2, 4, 3, 6})
        if (!name.data(column).isEmpty())
            text += QLatin1Char(' ') + name.data(column);
    return text.trimmed();
}

QString composeAddress(const ContactDataRow &address)
{
    const QString &city = address.data(7);
    const QString &state = address.data(8);
    const QString &zip = address.data(9);
    QString text = address.data(4);
    if (!city.isEmpty() || !state.isEmpty()) {
        text += QLatin1Char('\n');
        if (!city.isEmpty())
            text += city + (state.isEmpty() && zip.isEmpty() ? QString() : QStringLiteral(","));
        if (!state.isEmpty())
            text += QLatin1Char(' ') + state;
        if (!zip.isEmpty())
            text += QLatin1Char(' ') + zip;
    }
    if (!address.data(10).isEmpty())
        text += QLatin1Char('\n') + address.data(10);
    return text.trimmed();
}

QString displayNameOf(const ContactRecord &contact)
{
    const auto names = contact.rows.value(ContactDataKind::Name);
    return names.isEmpty() ? QString() : names.first().data(1);
}
