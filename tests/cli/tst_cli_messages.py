"""show and export of conversations, held against the samples' own databases read with Python's SQLite."""

import csv
import datetime
import html.parser
import io
import json
import re
import shutil
import sqlite3
import subprocess
import urllib.parse
import zoneinfo

from command_line import APPLE_EPOCH, PASSWORD, Case, file_id, main, mbdb_records, modern_records, run, stored, tree

CHAT_KEYS = ["rowid", "guid", "chat_identifier", "name", "display_name", "service_name", "style", "last", "handles",
             "message_count"]
HANDLE_KEYS = ["rowid", "id", "country", "service", "name"]
MESSAGE_KEYS = ["rowid", "guid", "chat", "chat_name", "title", "sender", "text", "subject", "service", "is_from_me",
                "date", "date_read", "date_delivered", "item_type", "attachments"]
ATTACHMENT_KEYS = ["rowid", "guid", "filename", "transfer_name", "mime_type", "total_bytes", "present"]
GENERATIONS = ("6", "9", "12", "17")
ZONE = zoneinfo.ZoneInfo("Europe/Berlin")
SMS_DB = file_id("HomeDomain", "Library/SMS/sms.db")


def instant(stored_date):
    """A date column of a message as JSON shows it."""
    if not stored_date:
        return None
    seconds = stored_date // 10**9 if stored_date > 10**15 else stored_date
    when = datetime.datetime.fromtimestamp(seconds + APPLE_EPOCH, datetime.timezone.utc)
    return when.strftime("%Y-%m-%dT%H:%M:%SZ")


class SmsDb:
    """The rows that a listing has to show."""

    def __init__(self, backup):
        self.database = sqlite3.connect(f"file:{stored(backup, SMS_DB)}?immutable=1", uri=True)
        self.database.row_factory = sqlite3.Row
        columns = {row["name"] for row in self.database.execute("pragma table_info(message)")}
        self.item_type = "m.item_type" if "item_type" in columns else "0"

    def rows(self, sql):
        return [dict(row) for row in self.database.execute(sql)]

    def messages(self):
        """(chat, message row) -> the message's row, of every message that is listed."""
        rows = self.rows(f"select j.chat_id as chat_id, m.*, m.rowid as id from chat_message_join j "
                         f"join message m on m.rowid = j.message_id join chat c on c.rowid = j.chat_id "
                         f"where {self.item_type} = 0")
        return {(row["chat_id"], row["id"]): row for row in rows}

    def attachments(self):
        """The attachments' rows by the message they came with."""
        found = {}
        for row in self.rows("select ma.message_id as message, a.*, a.rowid as id from message_attachment_join ma "
                             "join attachment a on a.rowid = ma.attachment_id order by a.rowid"):
            found.setdefault(row["message"], []).append(row)
        return found


class Show(Case):
    def backups(self):
        for ios in GENERATIONS:
            yield ios, self.sample("--ios", ios)
        yield "9, older layout", self.sample("--ios", "9", "--layout", "mbdb")

    def test_every_message_once_for_each_of_its_conversations(self):
        for ios, backup in self.backups():
            with self.subTest(ios=ios):
                expected = SmsDb(backup).messages()
                found = self.lines("show", "messages", backup)
                self.assertEqual(len(found), len(expected))
                self.assertEqual({(row["chat"], row["rowid"]) for row in found}, set(expected))
                self.assertEqual([row["chat"] for row in found], sorted(row["chat"] for row in found))

    def test_every_row_is_shown_or_named(self):
        for ios, backup in self.backups():
            with self.subTest(ios=ios):
                rows = {row["id"] for row in SmsDb(backup).rows("select rowid as id from message")}
                ended = run("show", "messages", backup)
                self.assertEqual(ended.returncode, 0, ended.stderr)
                shown = {json.loads(line)["rowid"] for line in ended.stdout.splitlines()}
                named = [line.split()[1] for line in ended.stderr.decode().splitlines() if "--everything" in line]
                self.assertEqual(len(shown) + sum(map(int, named)), len(rows))
                everything = self.lines("show", "messages", backup, "--everything")
                self.assertEqual({row["rowid"] for row in everything}, rows)
                for row in everything:
                    self.assertTrue(row["item_type"] == 0 or row["text"])
                    if row["chat"] is None:
                        self.assertEqual((row["chat_name"], row["title"]), ("", "unknown"))

    def test_fields(self):
        for ios, backup in self.backups():
            database = SmsDb(backup)
            expected, attachments = database.messages(), database.attachments()
            handles = {row["id_"]: row["id"] for row in database.rows("select rowid as id_, id from handle")}
            for row in self.lines("show", "messages", backup):
                with self.subTest(ios=ios, message=row["rowid"]):
                    stored_row = expected[row["chat"], row["rowid"]]
                    self.assertEqual(list(row), MESSAGE_KEYS)
                    for key in ("guid", "service", "is_from_me"):
                        self.assertEqual(row[key], stored_row[key])
                    self.assertEqual(row["subject"], stored_row["subject"] or "")
                    for key in ("date", "date_read", "date_delivered"):
                        self.assertEqual(row[key], instant(stored_row[key]))
                    self.assertEqual(row["sender"], handles.get(stored_row["handle_id"]))
                    self.assertEqual(row["item_type"], 0)
                    self.check_text(row, stored_row)
                    self.check_attachments(row["attachments"], attachments.get(row["rowid"], []))

    def check_text(self, row, stored_row):
        if stored_row["text"]:
            self.assertEqual(row["text"], stored_row["text"])
        elif stored_row["attributedBody"]:
            # The text stands in the archive as UTF-8, in one piece; a damaged archive gives none.
            archive = stored_row["attributedBody"]
            whole = archive.startswith(b"\x04\x0bstreamtyped") and archive.endswith(b"\x86")
            self.assertEqual(bool(row["text"]), whole)
            self.assertIn(row["text"].encode(), archive)

    def check_attachments(self, found, expected):
        self.assertEqual([attachment["rowid"] for attachment in found], [row["id"] for row in expected])
        for attachment, row in zip(found, expected):
            self.assertEqual(list(attachment), ATTACHMENT_KEYS)
            for key in ("guid", "filename", "mime_type"):
                self.assertEqual(attachment[key], row[key] or "")
            self.assertEqual(attachment["total_bytes"], row.get("total_bytes") or 0)

    def test_attachments_are_present_when_their_content_is(self):
        backup = self.sample("--ios", "17")
        seen = set()
        for message in self.lines("show", "messages", backup):
            for attachment in message["attachments"]:
                if re.search("[<>]", attachment["filename"]):
                    continue  # such characters are dropped before the file is looked up
                path = attachment["filename"].replace("~/", "").replace("/var/mobile/", "")
                there = any(stored(backup, file_id(domain, path)).exists() for domain in ("HomeDomain", "MediaDomain"))
                self.assertEqual(attachment["present"], there, attachment)
                seen.add(there)
        self.assertEqual(seen, {True, False})

    def test_chats(self):
        for ios, backup in self.backups():
            with self.subTest(ios=ios):
                database = SmsDb(backup)
                expected = {row["id"]: row for row in database.rows("select *, rowid as id from chat")}
                found = self.lines("show", "chats", backup)
                self.assertEqual([chat["rowid"] for chat in found], sorted(expected))
                listed = [chat for chat, _ in database.messages()]
                for chat in found:
                    self.assertEqual(list(chat), CHAT_KEYS)
                    row = expected[chat["rowid"]]
                    for key in ("guid", "chat_identifier", "service_name", "style"):
                        self.assertEqual(chat[key], row[key])
                    self.assertEqual(chat["display_name"], row.get("display_name") or "")
                    self.assertEqual(chat["message_count"], listed.count(chat["rowid"]))
                    for handle in chat["handles"]:
                        self.assertEqual(list(handle), HANDLE_KEYS)

    def test_one_conversation(self):
        backup = self.sample("--ios", "9")
        everything = self.lines("show", "messages", backup)
        for chat in self.lines("show", "chats", backup):
            found = self.lines("show", "messages", backup, "--chat", chat["rowid"])
            self.assertEqual(found, [row for row in everything if row["chat"] == chat["rowid"]])
        self.assertIn("4711", self.refuse(1, "show", "messages", backup, "--chat", "4711"))

    def test_encrypted_backups_show_the_same(self):
        for ios in ("9", "17"):
            for layout in ("modern", "mbdb"):
                plain = self.sample("--ios", ios, "--layout", layout)
                locked = self.sample("--ios", ios, "--layout", layout, "--password", PASSWORD)
                self.assertEqual(self.succeed("show", "messages", locked, password=PASSWORD),
                                 self.succeed("show", "messages", plain))

    def test_message_databases_that_cannot_be_read(self):
        for name, content in (("empty", b""), ("no database", b"SQLite is elsewhere" * 300), ("gone", None)):
            with self.subTest(name):
                backup = self.folder / f"with {name} sms.db"
                shutil.copytree(self.sample("--ios", "12"), backup)
                stored(backup, SMS_DB).unlink()
                if content is not None:
                    stored(backup, SMS_DB).write_bytes(content)
                self.refuse(1, "show", "messages", backup)
                self.refuse(1, "export", "messages", backup, "--format", "text", "-o", self.folder / "none.txt")
                self.assertFalse((self.folder / "none.txt").exists())
                told = run("info", backup, "--json")
                self.assertEqual((told.returncode, told.stderr.count(b"\n")), (1, 1))
                found = json.loads(told.stdout)
                self.assertIsNone(found["counts"]["messages"])
                self.assertEqual([found["problems"][0]], [told.stderr.decode().split(": ", 1)[1].strip()])

    def test_rows_that_others_name_are_missed(self):
        whole = self.sample("--ios", "12")
        rowids = {line["rowid"] for line in self.lines("show", "messages", whole, "--everything")}
        cases = {"chat": ("conversation that is missing",
                          "select count(*) from message where rowid in (select message_id from chat_message_join) and "
                          "rowid not in (select message_id from chat_message_join j join chat c on c.rowid=j.chat_id)"),
                 "attachment": ("not described",
                                "select count(*) from message_attachment_join where attachment_id=1")}
        for table, (told, count) in cases.items():
            with self.subTest(table):
                backup = self.folder / f"without a {table}"
                shutil.copytree(whole, backup)
                database = sqlite3.connect(stored(backup, SMS_DB))
                database.execute(f"update {table} set rowid=999 where rowid=1")
                names, = database.execute(count).fetchone()
                database.commit()
                database.close()
                ended = run("show", "messages", backup, "--everything")
                self.assertEqual(ended.returncode, 1)
                self.assertRegex(ended.stderr.decode(), rf": {names} .*HomeDomain Library/SMS/sms.db.*{told}")
                self.assertEqual({json.loads(line)["rowid"] for line in ended.stdout.splitlines()}, rowids)
        problems = json.loads(run("info", self.folder / "without a chat", "--json").stdout)["problems"]
        self.assertRegex(" ".join(problems), "conversation that is missing")

    def test_attachments_whose_content_is_gone(self):
        for options in (("--ios", "12"), ("--ios", "5", "--layout", "mbdb")):
            backup = self.folder / f"{options[1]} without pictures"
            shutil.copytree(self.sample(*options), backup)
            listed = modern_records(backup) if options[1] == "12" else mbdb_records(backup)
            gone = [record for record, (_, path, mode, *_) in listed.items()
                    if path.startswith(("Library/SMS/Attachments/", "Media/Library/SMS/")) and mode & 0x8000
                    and stored(backup, record).exists()]
            self.assertGreater(len(gone), 3)
            for record in gone:
                stored(backup, record).unlink()
            names = None
            for number, arguments in enumerate((("show", "messages", backup), ("info", backup),
                                                ("export", "messages", backup, "--format", "text", "-o", self.folder / "a.txt"),
                                                ("export", "messages", backup, "--format", "csv", "-o", self.folder / "a.csv"),
                                                ("export", "messages", backup, "--format", "html", "-o", self.folder / "a"))):
                with self.subTest(ios=options[1], command=arguments[0], number=number):
                    ended = run(*arguments)
                    told = re.findall(r": (\d+) attachments are listed by the backup, which has lost", ended.stderr.decode())
                    self.assertEqual((ended.returncode, len(told)), (1, 1), ended.stderr)
                    names = names or told
                    self.assertEqual(told, names)

    def test_database_that_breaks_off_shows_what_it_has_and_fails(self):
        backup = self.folder / "broken in the middle"
        shutil.copytree(self.sample("--ios", "12", "--messages", "3000"), backup)
        file = stored(backup, SMS_DB)
        content = file.read_bytes()
        middle = len(content) // 2
        file.write_bytes(content[:middle] + bytes(len(content) // 4) + content[middle + len(content) // 4:])
        ended = run("show", "messages", backup)
        self.assertEqual(ended.returncode, 1)
        self.assertIn("HomeDomain Library/SMS/sms.db", ended.stderr.decode())
        for line in ended.stdout.decode().splitlines():
            json.loads(line)


class Export(Case):
    def export(self, target, *arguments, **options):
        self.assertEqual(self.succeed("export", "messages", *arguments, "-o", target, **options), "")
        return target

    def table(self, backup, *arguments):
        file = self.export(self.folder / "out" / "messages.csv", backup, "--format", "csv", *arguments)
        # A carriage return alone ends no line in this format, but does for the reader used here.
        content = file.read_bytes().decode().replace("\r", "")
        return list(csv.DictReader(io.StringIO(content, newline="")))

    def test_csv_has_every_message(self):
        for ios in GENERATIONS:
            backup = self.sample("--ios", ios)
            shown = self.lines("show", "messages", backup)
            rows = self.table(backup)
            self.assertEqual(list(rows[0]), ["date", "send", "person", "number", "content"])
            as_local = lambda iso: datetime.datetime.fromisoformat(iso.replace("Z", "+00:00")).astimezone(ZONE)
            self.assertEqual(sorted((row["date"], int(row["send"])) for row in rows),
                             sorted((as_local(row["date"]).strftime("%Y-%m-%d %H:%M:%S"), row["is_from_me"])
                                    for row in shown))

    def test_dates_are_local_and_both_ends_count(self):
        backup = self.sample("--ios", "12")
        dates = sorted(row["date"] for row in self.table(backup))
        middle, late = dates[len(dates) // 3], dates[2 * len(dates) // 3]
        as_argument = lambda date: date.replace(" ", "T")
        for situation, arguments, expected in (
                ("seconds", ["--from", as_argument(middle), "--to", as_argument(late)],
                 [date for date in dates if middle <= date <= late]),
                ("one second", ["--from", as_argument(middle), "--to", as_argument(middle)],
                 [date for date in dates if date == middle]),
                ("one day", ["--from", middle[:10], "--to", middle[:10]],
                 [date for date in dates if date[:10] == middle[:10]]),
                ("open end", ["--from", middle[:10]], [date for date in dates if date[:10] >= middle[:10]]),
                ("open begin", ["--to", middle[:10]], [date for date in dates if date[:10] <= middle[:10]])):
            with self.subTest(situation):
                self.assertTrue(expected)
                self.assertEqual(sorted(row["date"] for row in self.table(backup, *arguments)), expected)

    def test_some_conversations(self):
        backup = self.sample("--ios", "12")
        chats = self.lines("show", "chats", backup)
        shown = self.lines("show", "messages", backup)
        chosen = [chats[1]["rowid"], chats[3]["rowid"]]
        arguments = [part for rowid in [*chosen, chosen[0]] for part in ("--chat", rowid)]
        self.assertEqual(len(self.table(backup, *arguments)), sum(row["chat"] in chosen for row in shown))
        self.refuse(1, "export", "messages", backup, "--format", "csv", "-o", self.folder / "x.csv", "--chat", "4711")

    def test_html_is_a_folder_of_pages_that_stand_alone(self):
        backup = self.sample("--ios", "17", "--password", PASSWORD)
        folder = self.export(self.folder / "pages", backup, "--format", "html", password=PASSWORD)
        pages = sorted(folder.glob("*.html"))
        self.assertTrue(pages)
        for page in pages:
            for link in Links.of(page.read_text(encoding="utf-8")):
                with self.subTest(page=page.name, link=link):
                    self.assertFalse(link.startswith(("http:", "https:", "/", "file:")))
                    self.assertTrue(link == "#" or (folder / link).is_file())

    def test_pdf_is_a_document_for_each_conversation(self):
        backup = self.sample("--ios", "17", "--password", PASSWORD)
        documents = self.export(self.folder / "as documents", backup, "--format", "pdf", password=PASSWORD)
        pages = self.export(self.folder / "as pages", backup, "--format", "html", password=PASSWORD)
        self.assertEqual({path.name for path in documents.iterdir()},
                         {f"{page.stem}.pdf" for page in pages.glob("*.html")})
        read = subprocess.run(["pdftotext", documents / "Ada Brückner (+14155550132).pdf", "-"],
                              check=True, capture_output=True)
        self.assertIn("Shall we meet at the bridge at seven?", read.stdout.decode())

    def test_the_same_twice(self):
        backup = self.sample("--ios", "12")

        def pages(name):
            # Thumbnails and cards are named after the private copies that they were made from.
            found = tree(self.export(self.folder / name, backup, "--format", "html"))
            return {path: re.sub(rb"[0-9a-f]{32}\.(thumb|card)", b"", content) for path, content in found.items()
                    if path.endswith(".html")}

        self.assertEqual(pages("once"), pages("twice"))

    def test_targets_that_cannot_be_written(self):
        backup = self.sample("--ios", "9")
        a_file = self.folder / "a file"
        a_file.write_text("mine")
        for form, target in (("text", self.folder), ("csv", self.folder), ("html", a_file), ("pdf", a_file),
                             ("text", a_file / "below"), ("html", "/proc/none/here")):
            with self.subTest(form, target=str(target)):
                self.refuse(1, "export", "messages", backup, "--format", form, "-o", target)
        self.assertEqual(a_file.read_text(), "mine")


class Links(html.parser.HTMLParser):
    """The addresses that a page points to, decoded."""

    def __init__(self):
        super().__init__()
        self.found = []

    def handle_starttag(self, tag, attributes):
        self.found += [value for name, value in attributes if name in ("src", "href") and value is not None]

    @classmethod
    def of(cls, page):
        parser = cls()
        parser.feed(page)
        return [urllib.parse.unquote(link) for link in parser.found]


if __name__ == "__main__":
    main()
