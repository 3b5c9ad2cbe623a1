#include "base/error.h"
#include "base/texts.h"
#include "export/contacts_export.h"
#include "export/vcard_export.h"
#include "personal/contact_words.h"
#include "personal/vcard_reader.h"
#include "resources/resources.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

using Kind = ContactDataKind;

class TestContactExports : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initResources();
        installTexts();
    }
    void properties_data();
    void properties();
    void cardWithoutRows();
    void photoIsFolded();
    void quotedPrintableBreaks();
    void cardsAreReadElsewhere();
    void roundTrip();
    void foreignCards_data();
    void foreignCards();
    void encodingsOfOtherSystems_data();
    void encodingsOfOtherSystems();
    void picturesOfCards_data();
    void picturesOfCards();
    void whatCardsLoseIsNamed();
    void columnsByRank();
    void textColumnsAlign();
    void pageOfCards();
    void cancelKeepsWhatIsWritten();

private:
    QTemporaryDir m_folder;

    static ContactDataRow row(std::initializer_list<std::pair<int, const char *>> columns);
    static ContactRecord person(const char *first, const char *last);
    QByteArray written(const QList<ContactRecord> &contacts, ContactFormat format, const char *name);
};

ContactDataRow TestContactExports::row(std::initializer_list<std::pair<int, const char *>> columns)
{
    ContactDataRow row;
    for (const auto &[column, text] : columns)
        row.data(column) = QString::fromUtf8(text);
    return row;
}

ContactRecord TestContactExports::person(const char *first, const char *last)
{
    ContactRecord record;
    ContactDataRow name = row({{2, first}, {3, last}});
    name.data(1) = composeDisplayName(name);
    record.rows[Kind::Name] = {name};
    return record;
}

QByteArray TestContactExports::written(const QList<ContactRecord> &contacts, ContactFormat format,
                                       const char *name)
{
    NoProgress progress;
    const QString path = m_folder.filePath(name);
    exportContacts(contacts, format, path, progress);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not written");
}

void TestContactExports::properties_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<ContactDataRow>("data");
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("given name first, semicolons escaped")
        << Kind::Name << row({{2, "A;d,a"}, {3, "King"}, {5, "Lady"}})
        << QByteArray("N;CHARSET=UTF-8:A\\;d,a;King;;Lady;\r\n");
    QTest::newRow("mobile") << Kind::Phone << row({{1, "+44"}, {2, "2"}})
                            << QByteArray("TEL;TYPE=cell:+44\r\n");
    QTest::newRow("main number has no type")
        << Kind::Phone << row({{1, "5"}, {2, "12"}}) << QByteArray("TEL:5\r\n");
    QTest::newRow("e-mail") << Kind::Email << row({{1, "a@b"}, {2, "1"}})
                            << QByteArray("EMAIL;TYPE=internet:a@b\r\n");
    QTest::newRow("birthday") << Kind::Event << row({{1, "d"}, {2, "3"}}) << QByteArray("BDAY:d\r\n");
    QTest::newRow("other day") << Kind::Event << row({{1, "d"}, {2, "0"}})
                               << QByteArray("X-EVENT;TYPE=other:d\r\n");
    QTest::newRow("messenger") << Kind::Im << row({{1, "x"}, {5, "9"}})
                               << QByteArray("X-IM;CHARSET=UTF-8;TYPE=netmetting:x\r\n");
    QTest::newRow("note") << Kind::Note << row({{1, "a b"}})
                          << QByteArray("NOTE;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=20b\r\n");
    QTest::newRow("organisation without a title")
        << Kind::Organization << row({{1, "C;o"}, {5, "D"}})
        << QByteArray("TITLE;CHARSET=UTF-8:\r\nORG;CHARSET=UTF-8:C\\;o;D;;\r\n");
    QTest::newRow("address")
        << Kind::PostalAddress << row({{2, "0"}, {4, "1 S"}, {7, "C"}, {9, "Z"}, {10, "L"}})
        << QByteArray("ADR;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE;TYPE=intl:;;1=20S;C;;Z;L\r\n");
    QTest::newRow("website") << Kind::Website << row({{1, "http://x"}, {2, "0"}})
                             << QByteArray("URL;TYPE=other:http://x\r\n");
    QTest::newRow("relation") << Kind::Relation << row({{1, "M"}, {2, "4"}})
                              << QByteArray("X-REL;CHARSET=UTF-8;TYPE=dompartner:M\r\n");
    QTest::newRow("group") << Kind::GroupMembership << row({{1, "7"}, {2, "G"}})
                           << QByteArray("CATEGORIES;CHARSET=UTF-8:G\r\n");
}

void TestContactExports::properties()
{
    QFETCH(Kind, kind);
    QFETCH(ContactDataRow, data);
    QFETCH(QByteArray, lines);
    ContactRecord record;
    record.rows[kind] = {data};
    QCOMPARE(VCardExport::exportContact(record),
             "BEGIN:VCARD\r\nVERSION:3.0\r\nFN;CHARSET=UTF-8:\r\n" + lines + "END:VCARD\r\n");
}

void TestContactExports::cardWithoutRows()
{
    QCOMPARE(VCardExport::exportContact({}),
             QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nFN;CHARSET=UTF-8:\r\nEND:VCARD\r\n"));
}

void TestContactExports::photoIsFolded()
{
    const QByteArray base64 = QByteArray(57, 'x').toBase64();
    QCOMPARE(base64.size(), 76);
    QCOMPARE(VCardExport::foldBase64(QByteArray(57, 'x'), 75), base64.left(75) + "\r\n " + base64.right(1));
    QCOMPARE(VCardExport::foldBase64(QByteArray(57, 'x'), 0), base64);
}

void TestContactExports::quotedPrintableBreaks()
{
    QCOMPARE(VCardExport::quotedPrintable("a=\r\n\xc3\xa4~", 0), QByteArray("a=3D=0D=0A=C3=A4~"));
    QCOMPARE(VCardExport::quotedPrintable("abcdef", 6), QByteArray("abc=\r\n def=\r\n "));
}

void TestContactExports::cardsAreReadElsewhere()
{
    ContactRecord ada = person("Ada", "King");
    ada.rows[Kind::Phone] = {row({{1, "+44 7700 900123"}, {2, "2"}}), row({{1, "5"}, {2, "4"}})};
    ada.rows[Kind::Email] = {row({{1, "ada@example.org"}, {2, "1"}})};
    ada.rows[Kind::Website] = {row({{1, "http://example.org/"}, {2, "4"}})};
    ada.rows[Kind::Photo] = {ContactDataRow()};
    ada.rows[Kind::Photo].first().data15 = QByteArray(300, '\x7f');
    written({ada, person("B\xc3\xa4rbel", "")}, ContactFormat::VCard, "cards.vcf");

    QProcess reader;
    reader.start(QStringLiteral(DEBIAN_PYTHON),
                 {QStringLiteral(TEST_TOOLS "/read_vcards.py"), m_folder.filePath("cards.vcf")});
    QVERIFY2(reader.waitForFinished(30000) && reader.exitCode() == 0,
             reader.readAllStandardError().constData());
    const QJsonArray cards = QJsonDocument::fromJson(reader.readAllStandardOutput()).array();
    QCOMPARE(cards.size(), 2);
    const QJsonObject first = cards.at(0).toObject();
    QCOMPARE(first.value("FN").toArray(), QJsonArray{"Ada King"});
    QCOMPARE(first.value("TEL").toArray(), (QJsonArray{"+44 7700 900123", "5"}));
    QCOMPARE(first.value("EMAIL").toArray(), QJsonArray{"ada@example.org"});
    QCOMPARE(first.value("URL").toArray(), QJsonArray{"http://example.org/"});
    QCOMPARE(first.value("PHOTO").toArray().at(0).toString(),
             QString::fromLatin1(QByteArray(300, '\x7f').toBase64()));
    QCOMPARE(cards.at(1).toObject().value("FN").toArray(), QJsonArray{QString::fromUtf8("B\xc3\xa4rbel")});
}

void TestContactExports::roundTrip()
{
    ContactRecord contact = person("Ada", "King");
    contact.rows[Kind::Photo] = {ContactDataRow()};
    contact.rows[Kind::Photo].first().data15 = QByteArray::fromHex("ffd8ffe000ff");
    contact.rows[Kind::Phone] = {row({{1, "1"}, {2, "5"}}), row({{1, "2"}, {2, "13"}}),
                                 row({{1, "3"}, {2, "0"}})};
    contact.rows[Kind::Event] = {row({{1, "1815-12-10"}, {2, "3"}}), row({{1, "1835-07-08"}, {2, "1"}})};
    contact.rows[Kind::Note] = {row({{1, "two\nlines; \\ and , \xf0\x9f\x98\x80"}})};
    contact.rows[Kind::Organization] = {row({{1, "Co"}, {4, "Boss"}, {5, "Looms"}})};
    contact.rows[Kind::Website] = {row({{1, "http://x"}, {2, "6"}})};
    ContactDataRow address = row({{2, "1"}, {4, "1 Main"}, {7, "London"}, {8, "S"}, {9, "N1"}, {10, "UK"}});
    address.data(1) = composeAddress(address);
    contact.rows[Kind::PostalAddress] = {address};
    const VCardContacts back = readVCards(VCardExport::exportContact(contact), {});
    QVERIFY(back.report.isEmpty());
    QCOMPARE(back.contacts.size(), 1);
    // A backslash before a character is an escape for every reader.
    contact.rows[Kind::Note].first().data(1) = QString::fromUtf8("two\nlines; \\ and , \xf0\x9f\x98\x80");
    QCOMPARE(back.contacts.first(), contact);
}

void TestContactExports::foreignCards_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<ContactDataRow>("expected");
    const ContactDataRow ada = row({{1, "Ada King"}, {2, "Ada"}, {3, "King"}, {4, "Byron"}, {5, "Lady"}});
    QTest::newRow("family name first")
        << QByteArray("FN:Ada King\r\nN:King;Ada;Byron;Lady;\r\n") << Kind::Name << ada;
    QTest::newRow("family name first, and in the full name too")
        << QByteArray("FN:King Ada\nN:King;Ada\n") << Kind::Name
        << row({{1, "King Ada"}, {2, "Ada"}, {3, "King"}});
    QTest::newRow("no full name") << QByteArray("N:King;Ada\n") << Kind::Name
                                  << row({{1, "Ada King"}, {2, "Ada"}, {3, "King"}});
    QTest::newRow("own mark") << QByteArray("VERSION:3.0\nFN;CHARSET=UTF-8:Ada King\n"
                                            "N;CHARSET=UTF-8:Ada;King;Byron;Lady;\n")
                              << Kind::Name << ada;
    QTest::newRow("charset of a card of version 2.1")
        << QByteArray("VERSION:2.1\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:King;Ada;Byron;Lady\n"
                      "FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:Ada=20King\n")
        << Kind::Name << ada;
    QTest::newRow("charset of the full name alone")
        << QByteArray("VERSION:3.0\nFN;CHARSET=UTF-8:Ada King\nN:King;Ada;Byron;Lady\n") << Kind::Name << ada;
    QTest::newRow("2.1 with bare types")
        << QByteArray("FN:A\nTEL;WORK;FAX:5\n") << Kind::Phone << row({{1, "5"}, {2, "4"}});
    QTest::newRow("4.0 with an address of a number")
        << QByteArray("FN:A\nTEL;VALUE=uri;TYPE=\"cell,voice\":tel:+1-2\n") << Kind::Phone
        << row({{1, "+1-2"}, {2, "2"}});
    QTest::newRow("soft breaks and a charset")
        << QByteArray("FN:A\nNOTE;CHARSET=ISO-8859-1;QUOTED-PRINTABLE:gr=FC=\n=DFe\n") << Kind::Note
        << row({{1, "gr\xc3\xbc\xc3\x9f"
                    "e"}});
    QTest::newRow("blank behind a soft break")
        << QByteArray("FN:A\r\nNOTE;ENCODING=QUOTED-PRINTABLE:a=\r\n b=\r\n=20c\r\n") << Kind::Note
        << row({{1, "a b c"}});
    QTest::newRow("soft break that is folded, where blanks are encoded")
        << QByteArray("FN:A\r\nNOTE;ENCODING=QUOTED-PRINTABLE:a=20=\r\n b=\r\n c\r\n") << Kind::Note
        << row({{1, "a bc"}});
    QTest::newRow("equals sign before the end of the card")
        << QByteArray("FN:A\r\nNOTE;ENCODING=QUOTED-PRINTABLE:a=\r\n") << Kind::Note << row({{1, "a="}});
    QTest::newRow("two notes") << QByteArray("FN:A\nNOTE:one\nTEL:1\nNOTE:two\nNOTE:\n") << Kind::Note
                               << row({{1, "one\n\ntwo"}});
    QTest::newRow("two nicknames") << QByteArray("FN:A\nNICKNAME:Al,Ali\nNICKNAME:Bo\n") << Kind::Nickname
                                   << row({{1, "Al,Ali, Bo"}});
    QTest::newRow("two organisations")
        << QByteArray("FN:A\nORG:Co;Looms;East\nTITLE:Boss\nORG:Inc\nTITLE:Clerk\n") << Kind::Organization
        << row({{1, "Co; Inc"}, {4, "Boss; Clerk"}, {5, "Looms, East"}});
    QTest::newRow("organisation that ends in an escape")
        << QByteArray("FN:A\nORG:Co;East\\\n") << Kind::Organization << row({{1, "Co"}, {5, "East\\"}});
    QTest::newRow("organisation of one escape")
        << QByteArray("FN:A\nORG:\\\n") << Kind::Organization << row({{1, "\\"}});
    QTest::newRow("folded line in a group")
        << QByteArray("FN:A\r\nitem1.EMAIL;type=INTERNET;type=WORK:a@\r\n b.c\r\n") << Kind::Email
        << row({{1, "a@b.c"}, {2, "2"}});
    QTest::newRow("escapes") << QByteArray("FN:A\nNOTE:a\\nb\\, c\\; d\\\\e\n") << Kind::Note
                             << row({{1, "a\nb, c; d\\e"}});
    QTest::newRow("colon in a quoted parameter") << QByteArray("FN:A\nURL;X-LABEL=\"a:b;c\":http://x\n")
                                                 << Kind::Website << row({{1, "http://x"}, {2, "0"}});
}

void TestContactExports::foreignCards()
{
    QFETCH(QByteArray, lines);
    QFETCH(Kind, kind);
    QFETCH(ContactDataRow, expected);
    const VCardContacts cards = readVCards("\xef\xbb\xbf"
                                           "begin:vcard\n" +
                                               lines + "end:vcard\n",
                                           {});
    QCOMPARE(cards.contacts.size(), 1);
    QCOMPARE(cards.contacts.first().rows.value(kind), QList{expected});
}

void TestContactExports::encodingsOfOtherSystems_data()
{
    QTest::addColumn<QByteArray>("file");
    const QString card = QStringLiteral("BEGIN:VCARD\nFN:J\u00f6rg\nEND:VCARD\n");
    using Encoder = QStringEncoder;
    const auto encoded = [&](Encoder::Encoding encoding) {
        return QByteArray(Encoder(encoding, Encoder::Flag::WriteBom).encode(card));
    };
    QTest::newRow("UTF-16, low byte first") << encoded(Encoder::Utf16LE);
    QTest::newRow("UTF-16, high byte first") << encoded(Encoder::Utf16BE);
    QTest::newRow("neither UTF-8 nor named") << card.toLatin1();
}

void TestContactExports::encodingsOfOtherSystems()
{
    QFETCH(QByteArray, file);
    const VCardContacts cards = readVCards(file, {});
    QVERIFY(cards.report.isEmpty());
    QCOMPARE(cards.contacts.size(), 1);
    QCOMPARE(displayNameOf(cards.contacts.first()), QStringLiteral("J\u00f6rg"));
}

void TestContactExports::picturesOfCards_data()
{
    QTest::addColumn<QByteArray>("lineEnd");
    QTest::addColumn<QByteArray>("fold");
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("folded") << QByteArray("\r\n") << QByteArray("\r\n ") << true;
    QTest::newRow("line ends of a copy in text mode")
        << QByteArray("\r\r\n") << QByteArray("\r\r\n ") << true;
    QTest::newRow("line ends of an old Mac") << QByteArray("\r") << QByteArray("\r ") << true;
    QTest::newRow("one odd line end") << QByteArray("\r\n") << QByteArray("\r\n\r\n ") << true;
    QTest::newRow("lines that nobody folded") << QByteArray("\n") << QByteArray("\n") << true;
    QTest::newRow("rubbish within") << QByteArray("\n") << QByteArray("\n?") << false;
    QTest::newRow("end of line of another kind") << QByteArray("\n") << QByteArray("\x0b") << false;
}

void TestContactExports::picturesOfCards()
{
    QFETCH(QByteArray, lineEnd);
    QFETCH(QByteArray, fold);
    QFETCH(bool, isWhole);
    const QByteArray picture = QByteArray::fromHex("ffd8ff") + QByteArray(200, 'x');
    const QByteArray base64 = picture.toBase64();
    for (const char *head : {"PHOTO;ENCODING=B;TYPE=JPEG:", "PHOTO:data:image/jpeg;base64,"}) {
        const QByteArray photo = head + base64.left(76) + fold + base64.mid(76, 76) + fold + base64.mid(152);
        const VCardContacts cards = readVCards(
            QList<QByteArray>{"BEGIN:VCARD", "FN:Ada", photo, "TEL:5", "END:VCARD", ""}.join(lineEnd),
            "a.vcf");
        QCOMPARE(cards.contacts.size(), 1);
        const auto rows = cards.contacts.first().rows;
        QCOMPARE(rows.value(Kind::Phone).size(), 1);
        QCOMPARE(rows.value(Kind::Photo).size(), isWhole ? 1 : 0);
        QCOMPARE(cards.report.isEmpty(), isWhole);
        if (isWhole)
            QCOMPARE(rows.value(Kind::Photo).first().data15, picture);
    }
}

void TestContactExports::whatCardsLoseIsNamed()
{
    const VCardContacts cards = readVCards(
        "rubbish\nBEGIN:VCARD\nFN:Ada\nBEGIN:VCARD\nno colon here\nFN:B\nEND:VCARD\n"
        "BEGIN:VCARD\nPHOTO:http://x/y.jpg\nEND:VCARD\n"
        "BEGIN:VCARD\nUID:1\nPHOTO;ENCODING=b:!!!\nROLE:boss\nROLE:aide\nNOTE:a\nNOTE:b\nEND:VCARD\n"
        "BEGIN:VCARD\nFN:cut",
        "a.vcf");
    QCOMPARE(cards.contacts.size(), 2);
    QCOMPARE(sentencesOf(cards.report),
             (QStringList{
                 "2 cards have no end and are left out: a.vcf card 1 (Ada), a.vcf card 5 (cut)",
                 "1 line of the cards could not be read: a.vcf card 2 (B)",
                 "1 picture of the cards is not whole and is left out: a.vcf card 4",
                 "1 picture of the cards lies on a server and was not fetched: a.vcf card 3",
                 "1 card is empty and is left out: a.vcf card 3",
                 "2 entries of the cards have no place in a contact and are left out: a.vcf card 4 ROLE",
                 "1 repeated entry of the cards was joined with the first of its kind: a.vcf card 4 NOTE"}));
}

void TestContactExports::columnsByRank()
{
    ContactRecord a = person("A", "");
    a.rows[Kind::PostalAddress] = {row({{2, "2"}, {8, "S2"}, {10, "C2"}}),
                                   row({{2, "1"}, {8, "S1"}, {10, "C1"}})};
    ContactRecord b = person("B", "b");
    b.rows[Kind::Note] = {row({{1, "n"}})};
    b.rows[Kind::Phone] = {row({{1, "1,2"}, {2, "2"}}), row({{1, "3"}, {2, "2"}})};
    QCOMPARE(written({a, b}, ContactFormat::Csv, "c.csv"),
             QByteArray(
                 "First Name,Last "
                 "Name,Tel:Mobile,Addr:Work:Country,Addr:Home:Country,Addr:Work:State,Addr:Home:State,Notes\n"
                 "A,,,C2,C1,S2,S1,\nB,b,1,2;3,,,,,n\n"));
    QVERIFY(!written({a}, ContactFormat::Csv, "c.csv").contains("Tel:"));
}

void TestContactExports::textColumnsAlign()
{
    ContactRecord a = person("A\nB", "x");
    QCOMPARE(written({a, person("Constance", "y")}, ContactFormat::Text, "c.txt"),
             QByteArray("First Name  Last Name  \nA B         x          \nConstance   y          \n"));
}

void TestContactExports::pageOfCards()
{
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(&buffer, "JPEG"));
    ContactRecord a = person("<script>A</script>", "\"x\"");
    a.src_id = QStringLiteral("5");
    a.rows[Kind::Photo] = {ContactDataRow()};
    a.rows[Kind::Photo].first().data15 = jpeg;
    ContactRecord same = a;
    ContactRecord broken = a;
    broken.rows[Kind::Photo].first().data15 = "neither JPEG nor PNG";
    const QByteArray page = written({a, same, broken}, ContactFormat::Html, "page/c.html");
    QVERIFY(!page.contains("<script"));
    QCOMPARE(page.count("src=\"photos/5.jpg\""), 1);
    QCOMPARE(page.count("src=\"photos/5(1).jpg\""), 1);
    QCOMPARE(page.count("src=\"photos/contact.png\""), 1);
    QCOMPARE(QImage(m_folder.filePath("page/photos/5.jpg")).size(), QSize(40, 30));
    QCOMPARE(QImage(m_folder.filePath("page/photos/contact.png")).isNull(), false);
    QVERIFY(page.startsWith("<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\""));
    QVERIFY(page.endsWith("</body></html>"));
    QVERIFY(page.indexOf("http-equiv=\"Content-Security-Policy\" content=\"default-src 'none';") <
            page.indexOf("<title>"));
    QCOMPARE(page.count("Content-Security-Policy"), 1);
}

void TestContactExports::cancelKeepsWhatIsWritten()
{
    class StopAfter : public Progress
    {
    public:
        void report(const QString &, int, const QString &) override {}
        bool isCancelled() const override { return ++asked > 2; }
        mutable int asked = 0;
    } progress;
    const QString path = m_folder.filePath("cancelled.vcf");
    QVERIFY_EXCEPTION_THROWN(exportContacts({person("A", ""), person("B", ""), person("C", "")},
                                            ContactFormat::VCard, path, progress),
                             Cancelled);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(readVCards(file.readAll(), {}).contacts.size(), 2);
}

QTEST_MAIN(TestContactExports)
#include "tst_contact_exports.moc"
