"""show, export, save and remove of contacts, calls, notes, calendar and bookmarks, held against the samples' own
databases read with Python's SQLite, in every generation and both layouts."""

import base64
import contextlib
import csv
import datetime
import html.parser
import io
import json
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import zoneinfo

from command_line import APPLE_EPOCH, PASSWORD, Case, file_id, main, run, stored

SOURCES = [(ios, layout) for ios in ("5", "6", "9", "12", "17") for layout in ("mbdb", "modern")]
CLASSES = ("contacts", "calls", "notes", "calendar", "bookmarks")
READ_BOOKMARKS = pathlib.Path(__file__).parent.parent / "tools" / "read_bookmarks.py"
NEWER_CALLS = ("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata")
ZONE = zoneinfo.ZoneInfo("Europe/Berlin")
IDENTITY = {"contacts": "_id", "calls": "_id", "notes": "hash", "calendar": "id", "bookmarks": "id"}


def rows(backup, domain, path, sql):
    """The rows of a statement on a database of a sample."""
    database = sqlite3.connect(f"file:{stored(backup, file_id(domain, path))}?immutable=1", uri=True)
    try:
        return database.execute(sql).fetchall()
    finally:
        database.close()


def people(backup):
    """src_id -> (display name, numbers with a label)."""
    book = "Library/AddressBook/AddressBook.sqlitedb"
    found = {}
    for rowid, *name in rows(backup, "HomeDomain", book,
                             "select rowid, prefix, first, middle, last, suffix from ABPerson"):
        found[str(rowid)] = (" ".join(part for part in name if part), [])
    for person, number in rows(backup, "HomeDomain", book,
                               "select v.record_id, v.value from ABMultiValue v join ABMultiValueLabel l "
                               "on l.rowid = v.label where v.property = 3 order by v.rowid"):
        found[str(person)][1].append(number)
    return found


def calls(backup, ios):
    """(address, seconds, type) of every call."""
    if ios == "5":
        return rows(backup, "WirelessDomain", "Library/CallHistory/call_history.db",
                    "select address, duration, flags from call")
    if ios == "6":
        return rows(backup, "WirelessDomain", "Library/CallHistory/call_history.db",
                    "select address, duration, case flags when 0 then 4 when 9 then 5 else 8 end from call")
    return rows(backup, *NEWER_CALLS,
                "select ifnull(cast(ZADDRESS as text), ''), cast(ZDURATION as int), "
                "case when ZORIGINATED then 5 when ZANSWERED then 4 else 8 end from ZCALLRECORD")


def bookmark_titles(backup):
    """The titles of the bookmarks that hang on the top level by folders that are shown."""
    found = rows(backup, "HomeDomain", "Library/Safari/Bookmarks.db",
                 "with recursive shown(id, type, title) as (select id, type, title from bookmarks where parent = 0 "
                 "and id > 0 and hidden = 0 union all select b.id, b.type, b.title from bookmarks b join shown s on "
                 "b.parent = s.id and s.type = 1 where b.hidden = 0) select title from shown where type = 0")
    return sorted(title for title, in found)


def leaves(nodes):
    for node in nodes:
        if node["type"] == 0:
            yield node
        yield from leaves(node["children"])


class Cards(html.parser.HTMLParser):
    """Names and pictures of a page of contacts. Every element that is opened is closed in its turn."""

    def __init__(self, text):
        super().__init__()
        self.open, self.names, self.pictures, self.naming = [], [], [], None
        self.feed(text)
        assert not self.open, self.open

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if tag == "img":
            self.pictures.append(values["src"])
        elif tag not in ("meta", "br"):
            self.open.append(tag)
        if values.get("class") == "ct_name":
            self.names.append("")
            self.naming = len(self.open)

    def handle_startendtag(self, tag, attributes):
        if tag == "br":
            self.naming = None
        elif tag == "img":
            self.pictures.append(dict(attributes)["src"])

    def handle_endtag(self, tag):
        assert self.open.pop() == tag, tag
        if self.naming and len(self.open) < self.naming:
            self.naming = None

    def handle_data(self, data):
        if self.naming:
            self.names[-1] += data


class Records(Case):
    def setUp(self):
        self.home = self.folder / self.id()
        self.home.mkdir()

    def on_every_sample(self, check):
        for ios, layout in SOURCES:
            with self.subTest(ios=ios, layout=layout):
                check(self.sample("--ios", ios, "--layout", layout), ios)

    def export(self, kind, source, form, name):
        target = self.home / name
        self.succeed("export", kind, source, "--format", form, "-o", target)
        return target

    def test_show(self):
        self.on_every_sample(self.check_show)

    def check_show(self, backup, ios):
        shown = {row["src_id"]: (row["display_name"], [value["data1"] for value in row["rows"] if value["kind"] == 3])
                 for row in self.lines("show", "contacts", backup)}
        self.assertEqual(shown, people(backup))
        listed = [(call["address"], call["duration"], call["type"]) for call in self.lines("show", "calls", backup)]
        self.assertEqual(sorted(listed), sorted(calls(backup, ios)))
        notes = rows(backup, "HomeDomain", "Library/Notes/notes.sqlite",
                     "select cast(ZINTEGERID as text), ZTITLE, ZCONTENT from ZNOTE, ZNOTEBODY "
                     "where ZNOTEBODY.Z_PK = ZBODY")
        self.assertEqual(sorted((note["src_id"], note["title"], note["content"])
                                for note in self.lines("show", "notes", backup)), sorted(notes))
        events = rows(backup, "HomeDomain", "Library/Calendar/Calendar.sqlitedb",
                      "select i.rowid, c.title, i.all_day from CalendarItem i join Calendar c on c.rowid = "
                      "i.calendar_id where entity_type = 2 and availability = 0 and ifnull(birthday_id, 0) <= 0")
        self.assertEqual(sorted((event["id"], event["calendar"], event["all_day"])
                                for event in self.lines("show", "calendar", backup)), sorted(events))
        shown = list(leaves(self.lines("show", "bookmarks", backup)))
        self.assertEqual(sorted(node["title"] for node in shown), bookmark_titles(backup))

    def test_pictures_and_labels(self):
        backup = self.sample("--ios", "17", "--layout", "modern")
        pictures = dict(rows(backup, "HomeDomain", "Library/AddressBook/AddressBookImages.sqlitedb",
                             "select cast(record_id as text), hex(data) from ABFullSizeImage"))
        shown = self.lines("show", "contacts", backup)
        found = {row["src_id"]: base64.b64decode(value["data15"]).hex().upper()
                 for row in shown for value in row["rows"] if value["kind"] == 2}
        self.assertEqual(found, pictures)
        full, = (row for row in shown if row["display_name"].startswith("Dr. Wilhelmina"))
        phones = [(value["data2"], value.get("data3", "")) for value in full["rows"] if value["kind"] == 3]
        self.assertEqual(phones, [("2", ""), ("12", ""), ("5", ""), ("4", ""), ("3", ""), ("1", ""), ("6", ""),
                                  ("13", ""), ("0", ""), ("0", "TextNow")])

    def test_export(self):
        self.on_every_sample(self.check_export)

    def check_export(self, backup, ios):
        names = [row["display_name"] for row in self.lines("show", "contacts", backup)]
        text = self.export("contacts", backup, "vcard", "c.vcf").read_bytes().decode()
        self.assertEqual(re.findall("\r\nFN;CHARSET=UTF-8:(.*)\r\n", text), names)
        back = self.lines("show", "contacts", self.home / "c.vcf")
        self.assertEqual([row["display_name"] for row in back], names)
        page = self.export("contacts", backup, "html", "page/c.html")
        cards = Cards(page.read_bytes().decode())
        self.assertEqual(cards.names, names)
        self.assertEqual({picture for picture in cards.pictures if not (page.parent / picture).is_file()}, set())
        self.assertEqual(len(set(cards.pictures) - {"photos/contact.png"}), 3)

        table = list(csv.reader(io.StringIO(self.export("calls", backup, "csv", "calls.csv").read_text())))
        self.assertEqual(table[0], ["Flag", "Number", "Contact", "Date", "Duration"])
        flags = {4: "Incoming", 5: "Outgoing", 8: "Blocked"}
        self.assertEqual(sorted((row[0], row[1], int(row[4])) for row in table[1:]),
                         sorted((flags[kind], address, duration) for address, duration, kind in calls(backup, ios)))

        folder = self.export("notes", backup, "html", f"notes {ios} {backup.name}")
        notes = self.lines("show", "notes", backup)
        self.assertEqual(len(list(folder.iterdir())), len({(n["title"], n["content"], n["create_date"]) for n in notes}))
        calendar = self.export("calendar", backup, "ical", "c.ics").read_text(encoding="utf-8")
        self.assertEqual(calendar.count("BEGIN:VEVENT\n"), len(self.lines("show", "calendar", backup)))

        page = self.export("bookmarks", backup, "html", "b.html")
        read = subprocess.run([sys.executable, READ_BOOKMARKS, page], capture_output=True)
        self.assertEqual(read.returncode, 0, read.stderr.decode())
        titles = []

        def walk(nodes):
            for title, inside in nodes:
                if isinstance(inside, list):
                    walk(inside)
                else:
                    titles.append(title)

        walk(json.loads(read.stdout))
        self.assertEqual(sorted(titles), bookmark_titles(backup))

    def test_dates_are_local_and_both_ends_count(self):
        backup = self.home / "backup"
        shutil.copytree(self.sample("--ios", "17"), backup)
        target = self.home / "calls.csv"

        def dates(*arguments):
            self.succeed("export", "calls", backup, "--format", "csv", "-o", target, *arguments)
            return sorted(row["Date"] for row in csv.DictReader(io.StringIO(target.read_text())))

        before = dates()
        day = before[len(before) // 3][:10]
        last = int(datetime.datetime.fromisoformat(day + "T23:59:59").replace(tzinfo=ZONE).timestamp())
        with contextlib.closing(sqlite3.connect(stored(backup, file_id(*NEWER_CALLS)))) as database, database:
            database.execute("update ZCALLRECORD set ZDATE = ? where Z_PK = 1", (last - APPLE_EPOCH,))
        everything = dates()
        early, late = f"{day} 23:59:59", everything[2 * len(everything) // 3]
        self.assertIn(early, everything)
        second = lambda date: date.replace(" ", "T")
        for situation, arguments, expected in (
                ("seconds", ["--from", second(early), "--to", second(late)],
                 [date for date in everything if early <= date <= late]),
                ("one second", ["--from", second(early), "--to", second(early)],
                 [date for date in everything if date == early]),
                ("one day", ["--from", day, "--to", day], [date for date in everything if date[:10] == day])):
            with self.subTest(situation):
                self.assertTrue(expected)
                self.assertEqual(dates(*arguments), expected)

    def test_save_show_and_remove(self):
        self.on_every_sample(self.check_save_show_and_remove)

    def check_save_show_and_remove(self, backup, ios):
        home = self.home / f"{ios} {backup.name}"
        home.mkdir()
        first = self.lines("save", "all", backup, "--into", "Family", home=home)
        again = self.lines("save", "all", backup, "--into", "Family", home=home)
        saved = {row["class"]: row for row in first if row["class"] in CLASSES}
        self.assertEqual(set(saved), set(CLASSES))
        for row in again:
            if row["class"] in CLASSES:
                self.assertEqual((row["added"], row["merged"]), (0, row["handled"]), row)
                self.assertEqual(row["handled"], saved[row["class"]]["handled"])
        for name in CLASSES:
            here = self.lines("show", name, "local:Family", home=home)
            records = list(leaves(here)) if name == "bookmarks" else here
            self.assertEqual(len(records), saved[name]["added"], name)
            identity = records[0][IDENTITY[name]]
            self.refuse(1, "remove", name, "--from", "Family", "--id", identity, "--id", "987654", home=home)
            self.assertEqual(self.lines("show", name, "local:Family", home=home), here)
            self.succeed("remove", name, "--from", "Family", "--id", identity, home=home)
            left = self.lines("show", name, "local:Family", home=home)
            left = list(leaves(left)) if name == "bookmarks" else left
            self.assertEqual(len(left), len(records) - 1, name)
        stores = list(home.rglob("Family/*.db"))
        self.assertEqual({store.name for store in stores} >= {"contacts.db", "calls.db", "notes.db", "calendars.db",
                                                             "bookmarks.db"}, True)
        for store in stores:
            checked = subprocess.run(["sqlite3", store, "pragma integrity_check"], capture_output=True)
            self.assertEqual(checked.stdout, b"ok\n", store)

    def test_cards_of_other_programs(self):
        cards = self.home / "cards.vcf"
        cards.write_bytes(b"BEGIN:VCARD\r\nVERSION:2.1\r\nN:K\xf6nig;Ada\r\nFN;CHARSET=ISO-8859-1:Ada K\xf6nig\r\n"
                          b"TEL;CELL:1\r\nNOTE;ENCODING=QUOTED-PRINTABLE:a=\r\nb\r\nno property\r\nEND:VCARD\r\n"
                          b"BEGIN:VCARD\r\nFN:Lost\r\n"
                          b"BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Gr\r\n ace\r\nTEL;VALUE=uri:tel:2\r\nEND:VCARD\r\n")
        for added in (2, 0):
            ended = run("save", "contacts", cards, "--into", "Friends", home=self.home)
            self.assertEqual(ended.returncode, 1, ended.stderr)
            self.assertEqual(json.loads(ended.stdout), {"class": "contacts", "handled": 2, "added": added,
                                                        "merged": 2 - added})
            complaint = ended.stderr.decode()
            self.assertRegex(complaint, r"1 line of the cards could not be read: cards\.vcf card 1 \(Ada König\)\n")
            self.assertRegex(complaint, r"1 card has no end and is left out: cards\.vcf card 2 \(Lost\)\n")
        shown = self.lines("show", "contacts", "local:Friends", home=self.home)
        self.assertEqual([row["display_name"] for row in shown], ["Ada König", "Grace"])
        cards.write_bytes(b"nothing of the kind")
        self.refuse(1, "save", "contacts", cards, "--into", "Friends", home=self.home)

    def test_damaged_stores(self):
        backup = self.sample("--ios", "17", "--layout", "modern")
        for name in ("Damaged", "Whole"):
            self.succeed("save", "all", backup, "--into", name, home=self.home)
        folder = next(self.home.rglob("Damaged"))
        (folder / "contacts.db").write_bytes(b"no database")
        subprocess.run(["sqlite3", folder / "notes.db", "drop table notes; create table notes(hash)"], check=True)
        listed = run("databases", "--json", home=self.home)
        self.assertEqual(listed.returncode, 1)
        damaged, whole = json.loads(listed.stdout)
        self.assertEqual((len(damaged["problems"]), whole["problems"]), (1, []))
        self.assertEqual((damaged["name"], damaged["counts"]["contacts"]), ("Damaged", None))
        self.assertEqual(damaged["counts"]["calls"], whole["counts"]["calls"])
        self.assertGreater(whole["counts"]["contacts"], 0)
        for name in ("contacts", "notes"):
            self.refuse(1, "save", name, backup, "--into", "Damaged", home=self.home)
            self.refuse(1, "show", name, "local:Damaged", home=self.home)
        self.assertEqual((folder / "contacts.db").read_bytes(), b"no database")

    def test_encrypted(self):
        plain = self.sample("--ios", "17", "--layout", "modern")
        locked = self.sample("--ios", "17", "--layout", "modern", "--password", PASSWORD)
        for name in CLASSES:
            self.assertEqual(self.lines("show", name, locked, password=PASSWORD), self.lines("show", name, plain), name)
            self.refuse(3, "show", name, locked, password="wrong")


if __name__ == "__main__":
    main()
