"""What a source holds is what was handed over and what was named as left out, whatever the class, the system and the damage."""

import json
import pathlib
import re
import shutil
import sqlite3

from command_line import PASSWORD, Case, file_id, main, mbdb_records, modern_records, run, stored

HOME = "HomeDomain"
ADDRESS_BOOK = (HOME, "Library/AddressBook/AddressBook.sqlitedb")
OLD_CALLS = ("WirelessDomain", "Library/CallHistory/call_history.db")
NEW_CALLS = (HOME, "Library/CallHistoryDB/CallHistory.storedata")
RECORDINGS = [(("MediaDomain", "Media/Recordings/Recordings.db"), "ZRECORDING"),
              (("MediaDomain", "Media/Recordings/CloudRecordings.db"), "ZCLOUDRECORDING"),
              (("AppDomainGroup-group.com.apple.VoiceMemos.shared", "Recordings/CloudRecordings.db"), "ZCLOUDRECORDING")]

# Class: the databases that hold it, each with its main table, and what of the table is a record.
TABLES = {
    "messages": [((HOME, "Library/SMS/sms.db"), "message", "1")],
    "contacts": [(ADDRESS_BOOK, "ABPerson", "1")],
    "calls": [(OLD_CALLS, "call", "1"), (NEW_CALLS, "ZCALLRECORD", "1")],
    "notes": [((HOME, "Library/Notes/notes.sqlite"), "ZNOTE", "1")],
    "calendar": [((HOME, "Library/Calendar/Calendar.sqlitedb"), "CalendarItem", "1")],
    "bookmarks": [((HOME, "Library/Safari/Bookmarks.db"), "bookmarks", "id <> 0")],
    "voicemail": [((HOME, "Library/Voicemail/voicemail.db"), "voicemail", "1")],
    "recordings": [(file, table, "1") for file, table in RECORDINGS],
}
# What a line names that is no record of its own: parts of records, and files that belong to them.
PARTS = re.compile(r"sound|content is missing|attachment|picture|label|birthdays? (?:at|before|on)|value|propert|"
                   r"photo|handle|sender|number|text|row of the backup|rows of the backup|^\d+ databases?,")
SAMPLES = [("--ios", ios, "--layout", layout) for ios in ("5", "6", "9", "12", "17") for layout in ("modern", "mbdb")
           if (ios, layout) not in (("5", "modern"), ("6", "modern"), ("17", "mbdb"))]


def records_of(backup):
    return mbdb_records(backup) if (pathlib.Path(backup) / "Manifest.mbdb").exists() else modern_records(backup)


def nodes(bookmarks):
    return sum(1 + nodes(node["children"]) for node in bookmarks)


class Source(Case):
    def copy(self, sample, name):
        backup = self.folder / name
        shutil.copytree(sample, backup)
        return backup

    def database(self, backup, file):
        """A private copy of a database with its log, as SQLite itself reads it; None when the backup lists none."""
        listed = records_of(backup)
        if file_id(*file) not in listed or not stored(backup, file_id(*file)).exists():
            return None
        copy = self.folder / "private" / "copy.db"
        shutil.rmtree(copy.parent, ignore_errors=True)
        copy.parent.mkdir()
        shutil.copy(stored(backup, file_id(*file)), copy)
        log = file_id(file[0], file[1] + "-wal")
        if log in listed:
            shutil.copy(stored(backup, log), f"{copy}-wal")
        return sqlite3.connect(copy)

    def held(self, backup, name):
        """How many records the source holds, counted by SQLite."""
        total = 0
        for file, table, condition in TABLES[name]:
            database = self.database(backup, file)
            if database:
                total += database.execute(f"select count(*) from {table} where {condition}").fetchone()[0]
                database.close()
        return total

    def show(self, name, backup, *options, **how):
        """Exit status, the number of distinct records handed over, and what standard error says, a line each."""
        ended = run("show", name, backup, *options, **how)
        lines = [json.loads(line) for line in ended.stdout.splitlines()]
        handed = nodes(lines) if name == "bookmarks" else len(lines)
        if name == "messages":
            handed = len({line["rowid"] for line in lines})
        told = [line.split(": ", 1)[1] for line in ended.stderr.decode().splitlines()]
        return ended.returncode, handed, told, lines

    @staticmethod
    def named(told):
        return sum(int(line.split(" ", 1)[0]) for line in told if line[0].isdigit() and not PARTS.search(line))


class Whole(Source):
    def test_what_is_held_is_handed_over_or_named(self):
        for options in SAMPLES:
            backup = self.sample(*options)
            counts = json.loads(self.succeed("info", backup, "--json"))
            self.assertEqual(counts["problems"], [], options)
            for name in TABLES:
                with self.subTest(sample=" ".join(options), name=name):
                    held = self.held(backup, name)
                    status, handed, told, lines = self.show(name, backup)
                    self.assertEqual((status, handed + self.named(told)), (0, held), told)
                    listed = len(lines) if name != "bookmarks" else \
                        held - self.named(told) - self.folders(lines)
                    self.assertEqual(counts["counts"][name], listed)
                    status, handed, told, _ = self.show(name, backup, "--everything")
                    self.assertEqual((status, handed + self.named(told)), (0, held), told)
                    self.assertFalse([line for line in told if "--everything" in line])

    def folders(self, lines):
        return sum((line["type"] == 1) + self.folders(line["children"]) for line in lines)

    def test_values_of_contacts(self):
        for options in SAMPLES:
            backup = self.sample(*options)
            with self.subTest(" ".join(options)):
                database = self.database(backup, ADDRESS_BOOK)
                held = database.execute("select count(*) from ABMultiValue").fetchone()[0]
                database.close()
                _, _, told, lines = self.show("contacts", backup)
                values = {3, 4, 8, 11, 12, 13}
                handed = sum(row["kind"] in values or (row["kind"] == 6 and row.get("data2") != "3")
                             for line in lines for row in line["rows"])
                named = sum(int(line.split(" ", 1)[0]) for line in told if re.search(r"value", line))
                self.assertEqual(handed + named, held, told)

    def test_photos_and_videos(self):
        endings = {"photos": r"\.(jpe?g|png|heic|gif|tiff?|webp|dng|bmp|heif)$", "videos": r"\.(mov|mp4|m4v|3gp)$"}
        for options in SAMPLES:
            backup = self.sample(*options)
            for name, ending in endings.items():
                held = [path for domain, path, mode, *_ in records_of(backup).values()
                        if domain == "CameraRollDomain" and re.match(r"Media/DCIM/\d+APPLE/[^/]+$", path)
                        and mode & 0x4000 == 0 and re.search(ending, path, re.I)]
                status, handed, told, lines = self.show(name, backup)
                self.assertEqual((status, told), (0, []))
                self.assertEqual(sorted(line["path"] for line in lines), sorted(held))

    def test_encrypted(self):
        plain = self.sample("--ios", "17", "--layout", "modern")
        locked = self.sample("--ios", "17", "--layout", "modern", "--password", PASSWORD)
        for name in TABLES:
            self.assertEqual(self.show(name, locked, "--everything", password=PASSWORD),
                             self.show(name, plain, "--everything"), name)


def page_size(data):
    """What is stored encrypted tells none."""
    size = int.from_bytes(data[16:18], "big")
    return 4096 if data[:6] != b"SQLite" else 65536 if size == 1 else size


def with_page(number, content):
    def damage(data):
        size = page_size(data)
        start = (number if number > 0 else len(data) // size + number) * size
        return data[:start] + content(data[start:start + size]) + data[start + size:]
    return damage


def cut(share):
    return lambda data: data[:int(len(data) * share)]


DAMAGES = {
    "empty": lambda data: b"",
    "something else": lambda data: b"This is no database. " * 300,
    "header gone": lambda data: bytes(100) + data[100:],
    "wrong page size": lambda data: data[:16] + b"\x00\x07" + data[18:],
    **{f"cut at {share} %": cut(share / 100) for share in (10, 30, 50, 70, 90)},
    "cut in a page": lambda data: data[:-100],
    **{f"page {number} zeroed": with_page(number, lambda page: bytes(len(page))) for number in (1, 2, 3, -1, -2)},
    **{f"page {number} overwritten": with_page(number, lambda page: b"\xA5" * len(page)) for number in (1, 2, 4, -1)},
    "a page in the place of another": lambda data: with_page(2, lambda page: data[-page_size(data):])(data),
    "cells overwritten": with_page(3, lambda page: page[:len(page) // 2] + b"\xFF" * (len(page) - len(page) // 2)),
}


class Damaged(Source):
    def readable(self, path, table, condition, total):
        """Rows that a plain select of each row still gives."""
        count = 0
        try:
            database = sqlite3.connect(f"file:{path}?immutable=1", uri=True)
            for rowid in range(1, total + 200):
                try:
                    count += len(database.execute(f"select * from {table} where rowid=? and {condition}",
                                                  (rowid,)).fetchall())
                except sqlite3.DatabaseError:
                    pass
            database.close()
        except sqlite3.DatabaseError:
            return 0
        return count

    def damage(self, sample, name, titles, *options, **how):
        """Damages the first database of a class in each of these ways, and holds what is said of it to what is lost."""
        plain = self.sample(*sample)
        listed = records_of(plain)
        file = next(each[0] for each in TABLES[name] if file_id(*each[0]) in listed)
        held = self.held(plain, name)
        password = how.get("password")
        whole = self.sample(*sample, "--password", password) if password else plain
        backup = self.copy(whole, " ".join(("damaged", name, *sample, *how)))
        target = stored(backup, file_id(*file))
        data = target.read_bytes()
        for title in titles:
            with self.subTest(sample=" ".join(sample), name=name, damage=title, options=options, **how):
                target.write_bytes(DAMAGES[title](data))
                status, handed, told, lines = self.show(name, backup, *options, **how)
                if handed + self.named(told) < held:
                    self.assertEqual(status, 1, told)
                if status == 1:
                    self.assertTrue(any(f"{file[0]} {file[1]}" in line for line in told), told)
                self.assertFalse(any(str(self.folder) in line.replace(str(backup), "") for line in told), told)
                info = run("info", backup, "--json", **how)
                found = json.loads(info.stdout)
                if name != "bookmarks" and "--everything" not in options:
                    self.assertIn(found["counts"][name], (None, len(lines)))
                if status == 1:
                    self.assertEqual((info.returncode, bool(found["problems"])), (1, True), name)

    def test_nothing_is_lost_in_silence(self):
        for name in TABLES:
            self.damage(("--ios", "12", "--layout", "modern", "--messages", "300"), name, DAMAGES)

    def test_nothing_is_lost_in_silence_of_any_system(self):
        """Each class meets every damage on one sample or another."""
        titles = list(DAMAGES)
        sources = [*((sample, {}) for sample in SAMPLES), (SAMPLES[-1], {"password": PASSWORD})]
        share = -(-len(titles) // len(sources))
        for number, (sample, how) in enumerate(sources):
            options = ("--everything",) if number % 2 else ()
            for turn, name in enumerate(TABLES):
                first = (number + turn) % len(sources) * share
                self.damage(sample, name, titles[first:first + share], *options, **how)

    def test_what_can_be_read_is_handed_over(self):
        whole = self.sample("--ios", "12", "--layout", "modern", "--messages", "300")
        for name in ("contacts", "calls", "notes", "calendar", "bookmarks", "voicemail", "recordings", "messages"):
            listed = records_of(whole)
            (file, table, condition), = [each for each in TABLES[name] if file_id(*each[0]) in listed][:1]
            held = self.held(whole, name)
            backup = self.copy(whole, f"partly damaged {name}")
            target = stored(backup, file_id(*file))
            data = target.read_bytes()
            pages = len(data) // page_size(data)
            for number in range(2, pages, max(1, pages // 12)):
                with self.subTest(name=name, page=number):
                    target.write_bytes(with_page(number, lambda page: b"\xA5" * len(page))(data))
                    _, handed, told, _ = self.show(name, backup, "--everything")
                    self.assertGreaterEqual(handed + self.named(told), self.readable(target, table, condition, held), told)
            target.write_bytes(data)

    def test_a_file_that_is_listed_and_gone(self):
        backup = self.copy(self.sample("--ios", "12", "--layout", "modern"), "gone")
        for name, tables in TABLES.items():
            listed = records_of(backup)
            for file, _, _ in tables:
                stored(backup, file_id(*file)).unlink(missing_ok=True)
            file = next(each[0] for each in tables if file_id(*each[0]) in listed)
            with self.subTest(name):
                status, handed, told, _ = self.show(name, backup)
                self.assertEqual((status, handed), (1, 0))
                self.assertTrue(any(f"{file[0]} {file[1]}" in line for line in told), told)

    def change(self, backup, file, script):
        """Runs statements on a database of a backup, which has no log then."""
        database = self.database(backup, file)
        for trigger, in database.execute("select name from sqlite_master where type='trigger'").fetchall():
            database.execute(f"drop trigger {trigger}")
        database.execute("pragma legacy_alter_table=on")
        database.executescript(script)
        database.execute("pragma journal_mode=delete")
        database.close()
        shutil.copy(self.folder / "private" / "copy.db", stored(backup, file_id(*file)))
        log = stored(backup, file_id(file[0], file[1] + "-wal"))
        if log.exists():
            log.write_bytes(b"")

    def test_dates_that_are_none(self):
        columns = [("12", "calls", "ZDATE", "date"), ("6", "calls", "date", "date"), ("12", "notes", "ZCREATIONDATE", "create_date"),
                   ("12", "calendar", "start_date", "start_date"), ("12", "calendar", "end_date", "end_date"),
                   ("12", "voicemail", "date", "date"), ("12", "recordings", "ZDATE", "date")]
        for number, (ios, name, column, key) in enumerate(columns):
            whole = self.sample("--ios", ios, "--layout", "mbdb")
            file, table, _ = next(each for each in TABLES[name] if file_id(*each[0]) in records_of(whole))
            nulls = [line[key] for line in self.show(name, whole)[3]].count(None)
            for values, damaged in ((("null",), 0), (("'soon'", "1e18", "-1e18", "x'00ff'", "9e999"), 5)):
                with self.subTest(ios=ios, name=name, column=column, values=values):
                    backup = self.copy(whole, f"dates {number} {damaged}")
                    shown = {"calendar": "entity_type=2 and birthday_id<=0 and availability=0", "notes": "ZBODY is not null"}
                    self.change(backup, file, ";".join(
                        f"update {table} set {column}={value} where rowid=(select rowid from {table} where "
                        f"{shown.get(name, 1)} limit 1 offset {row})" for row, value in enumerate(values)))
                    status, _, told, lines = self.show(name, backup)
                    found = [line for line in told if "not a date" in line or "not dates" in line]
                    self.assertEqual(status, 1 if damaged else 0, told)
                    self.assertEqual(found, [f"5 dates of {file[0]} {file[1]} are not dates"] if damaged else [])
                    self.assertEqual([line[key] for line in lines].count(None), nulls + len(values))
                    if name in ("calls", "notes", "calendar"):
                        home = self.folder / f"home {number} {damaged}"
                        self.assertIn(run("save", name, backup, "--into", "kept", home=home).returncode, (0, 1))
                        kept = run("show", name, "local:kept", home=home)
                        self.assertEqual((kept.returncode, kept.stderr), (0, b""))
                        dates = [json.loads(line)[key] for line in kept.stdout.splitlines()]
                        self.assertEqual(dates.count(None), nulls + len(values))

    def test_tables_and_columns_that_are_missing(self):
        changes = [
            ("calendar", "alter table CalendarItem rename column birthday_id to other"),
            ("calendar", "alter table CalendarItem rename column summary to other"),
            ("calendar", "drop table Recurrence"), ("calendar", "drop table Location"),
            ("contacts", "drop table ABMultiValueLabel"), ("contacts", "drop table ABMultiValue"),
            ("contacts", "alter table ABPerson rename column Note to other"),
            ("messages", "drop table attachment"), ("messages", "drop table message_attachment_join"),
            ("notes", "alter table ZNOTE rename column ZTITLE to other"), ("notes", "drop table ZNOTEBODY"),
            ("bookmarks", "alter table bookmarks rename column url to other"),
            ("calls", "alter table ZCALLRECORD rename column ZDURATION to other"),
            ("voicemail", "alter table voicemail rename column sender to other"),
            ("calls", "drop table _SqliteDatabaseProperties"),
        ]
        for number, (name, script) in enumerate(changes):
            with self.subTest(name=name, script=script):
                # Of older calls a table of its own tells what their kinds mean.
                ios, layout = ("6", "mbdb") if "Properties" in script else ("12", "modern")
                whole = self.sample("--ios", ios, "--layout", layout)
                backup = self.copy(whole, f"changed {number}")
                before = self.show(name, backup, "--everything")
                file = next(each[0] for each in TABLES[name] if file_id(*each[0]) in records_of(whole))
                self.change(backup, file, script)
                status, handed, told, _ = self.show(name, backup, "--everything")
                self.assertEqual((status, handed), (1, before[1]), told)
                self.assertTrue(any(f"{file[0]} {file[1]}" in line for line in told), told)

    def test_catalogues_that_break_off(self):
        for options in (("--ios", "12", "--layout", "modern"), ("--ios", "9", "--layout", "mbdb")):
            whole = self.sample(*options)
            catalogue = "Manifest.mbdb" if "mbdb" in options else "Manifest.db"
            data = (whole / catalogue).read_bytes()
            held = len(self.lines("files", whole, "--json"))
            for share in (10, 30, 50, 70, 90):
                with self.subTest(catalogue=catalogue, share=share):
                    backup = self.copy(whole, f"{catalogue} {share}")
                    (backup / catalogue).write_bytes(data[:len(data) * share // 100])
                    listed = run("files", backup, "--json")
                    self.assertEqual(listed.returncode, 1)
                    self.assertTrue(listed.stderr)
                    self.assertLessEqual(listed.stdout.count(b"\n"), held)
                    found = run("info", backup, "--json")
                    self.assertEqual((found.returncode, bool(json.loads(found.stdout)["problems"])), (1, True))
                    for command in (["show", "photos", backup], ["extract", backup, "CameraRollDomain", "", "-o",
                                    self.folder / f"out {catalogue} {share}"],
                                    ["export", "photos", backup, "-o", self.folder / f"photos {catalogue} {share}"]):
                        ended = run(*command)
                        self.assertEqual(ended.returncode, 1, command)
                        self.assertTrue(ended.stderr, command)


if __name__ == "__main__":
    main()
