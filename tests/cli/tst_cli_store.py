"""Messages in local databases and from every kind of source, read back with Python's SQLite and the sqlite3 shell."""

import contextlib
import csv
import io
import json
import shutil
import sqlite3
import subprocess

from command_line import PASSWORD, Case, file_id, main, run, stored, tree

GENERATIONS = ("5", "6", "9", "12", "17")
TABLES = ("message", "chat", "handle", "attachment", "chat_message_join", "chat_handle_join", "message_attachment_join")
COUNTED = ["messages", "contacts", "calendar", "notes", "calls", "bookmarks"]


def without_rowids(message):
    """A printed message without what a database numbers by itself."""
    kept = {key: value for key, value in message.items() if key not in ("rowid", "chat")}
    kept["attachments"] = sorted(
        (attachment["guid"], attachment["transfer_name"], attachment["mime_type"], attachment["total_bytes"],
         attachment["present"]) for attachment in message["attachments"])
    if message["chat"] is None:
        kept["chat_name"] = kept["title"] = "Unknown"  # a store keeps it in a conversation of that name
    return kept


def in_order(messages):
    return sorted(map(without_rowids, messages), key=lambda message: json.dumps(message, sort_keys=True))


class StoreCase(Case):
    """Every test has a home folder, and so local databases, of its own."""

    def setUp(self):
        self.home = self.folder / self.id().rsplit(".", 1)[-1]
        self.home.mkdir()

    def ours(self, *arguments, **options):
        return self.succeed(*arguments, home=self.home, **options)

    def our_lines(self, *arguments, **options):
        return self.lines(*arguments, home=self.home, **options)

    def database(self, name):
        return next(path for path in self.home.rglob("local_databases/*") if path.name == name)

    def query(self, path, sql):
        connection = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
        try:
            return connection.execute(sql).fetchall()
        finally:
            connection.close()

    def counts(self, store):
        return {table: self.query(store, f"select count(*) from {table}")[0][0] for table in TABLES}

    def expect_sound(self, store):
        for check in ("pragma integrity_check", "pragma foreign_key_check"):
            said = subprocess.run(["sqlite3", str(store), check], capture_output=True, check=True).stdout.decode()
            self.assertIn(said.strip(), ("ok", ""))

    def save(self, source, name, **options):
        [line] = self.our_lines("save", "messages", source, "--into", name, **options)
        self.assertEqual(list(line), ["class", "handled", "added", "merged"])
        self.assertEqual(line["class"], "messages")
        self.assertEqual(line["handled"], line["added"] + line["merged"])
        return line

    def loose(self):
        """An sms.db that somebody took out of a backup, with its attachments beside it."""
        folder = self.folder / "loose"
        if not folder.exists():
            backup = self.sample("--ios", "12")
            run("extract", backup, "MediaDomain", "Library/SMS/Attachments", "-o", folder)
            shutil.copy(stored(backup, file_id("HomeDomain", "Library/SMS/sms.db")), folder / "sms.db")
        return folder / "sms.db"

    def messages_folder(self):
        return self.sample("--macos")

    def sources(self):
        for ios in GENERATIONS:
            yield f"iOS {ios}", self.sample("--ios", ios)
        yield "macOS", self.messages_folder()
        yield "chat.db", self.messages_folder() / "chat.db"
        yield "sms.db", self.loose()


class Saving(StoreCase):
    def test_each_message_once_and_none_the_second_time(self):
        for name, source in self.sources():
            with self.subTest(name):
                before = tree(source) if source.is_dir() else source.read_bytes()
                shown = self.our_lines("show", "messages", source)
                first = self.save(source, name)
                store = self.database(name) / "messages.db"
                self.assertEqual(first["handled"], len({row["rowid"] for row in shown}))
                counts = self.counts(store)
                self.assertEqual(counts["message"], first["added"])
                self.assertGreater(counts["attachment"], 0)
                again = self.save(source, name)
                self.assertEqual((again["handled"], again["added"]), (first["handled"], 0))
                self.assertEqual(self.counts(store), counts)
                self.expect_sound(store)
                self.assertEqual(tree(source) if source.is_dir() else source.read_bytes(), before)

    def test_what_was_saved_is_what_is_shown(self):
        for name, source in self.sources():
            with self.subTest(name):
                self.save(source, name)
                saved = self.our_lines("show", "messages", f"local:{name}")
                guids = {row["guid"] for row in saved}
                expected = [row for row in self.our_lines("show", "messages", source) if row["guid"] in guids]
                self.assertEqual(in_order(saved), in_order(expected))
                self.assertTrue(any(a["present"] for row in saved for a in row["attachments"]))
                chats = self.our_lines("show", "chats", f"local:{name}")
                self.assertEqual([chat["rowid"] for chat in chats], sorted({row["chat"] for row in saved}))
                for chat in chats:
                    self.assertEqual(chat["last"], max(row["date"] for row in saved if row["chat"] == chat["rowid"]))

    def test_two_backups_of_one_device_are_gathered(self):
        for ios in ("12", "17", "12"):
            self.save(self.sample("--ios", ios), "both")
        store = self.database("both") / "messages.db"
        hashes = self.query(store, "select logic_hash from message")
        self.assertEqual(len(set(hashes)), len(hashes))
        self.expect_sound(store)

    def test_changed_messages(self):
        self.save(self.sample("--ios", "12"), "changed")
        store = self.database("changed") / "messages.db"
        backup = self.home / "later"
        shutil.copytree(self.sample("--ios", "12"), backup)
        with contextlib.closing(sqlite3.connect(stored(backup, file_id("HomeDomain", "Library/SMS/sms.db")))) as database:
            database.execute("pragma journal_mode = delete")
            chosen = [row[0] for row in database.execute(
                "select m.rowid from message m join chat_message_join on message_id = m.rowid where text > '' and "
                "item_type = 0 group by m.rowid order by m.rowid limit 3")]
            former = {row[0] for row in database.execute(
                f"select text from message where rowid in ({','.join(map(str, chosen))})")}
            for rowid in chosen:
                database.execute("update message set text = 'edited ' || rowid where rowid = ?", (rowid,))
            database.commit()
        edited = "select count(*) from message where text like 'edited %'"
        for arguments, told, expected in ((), "3 messages are there already with other content", 0), \
                (("--update",), "3 messages got the content of a newer version", 3), (("--update",), "", 3):
            with self.subTest(arguments, told=told):
                ended = run("save", "messages", backup, "--into", "changed", *arguments, home=self.home)
                self.assertEqual(ended.returncode, 0, ended.stderr)
                self.assertEqual(json.loads(ended.stdout)["added"], 0)
                self.assertIn(told, ended.stderr.decode())
                self.assertEqual(self.query(store, edited), [(expected,)])
        self.assertEqual({row[0] for row in self.query(store, "select text from message_history")}, former)
        self.expect_sound(store)

    def test_encrypted(self):
        plain = self.save(self.sample("--ios", "17"), "plain")
        locked = self.save(self.sample("--ios", "17", "--password", PASSWORD), "locked", password=PASSWORD)
        self.assertEqual(plain, locked)

    def test_all(self):
        backup = self.sample("--ios", "12")
        saved = self.our_lines("save", "all", backup, "--into", "all")
        self.assertEqual([line["class"] for line in saved], COUNTED)
        [listed] = json.loads(self.ours("databases", "--json"))
        self.assertEqual(list(listed["counts"]), COUNTED)
        for line in saved[1:]:
            self.assertEqual(listed["counts"][line["class"]], line["added"])
        self.assertEqual(listed["counts"]["messages"], len(self.our_lines("show", "messages", "local:all")))
        copied = self.our_lines("save", "all", "local:all", "--into", "copy")
        self.assertEqual([(line["class"], line["added"]) for line in copied],
                         [(line["class"], line["added"]) for line in saved])
        [alone] = self.our_lines("save", "all", self.messages_folder(), "--into", "mac")
        self.assertEqual(alone["class"], "messages")

    def test_all_goes_on_after_a_class_that_cannot_be_read(self):
        backup = self.folder / "with broken messages"
        shutil.copytree(self.sample("--ios", "12"), backup)
        stored(backup, file_id("HomeDomain", "Library/SMS/sms.db")).write_bytes(b"no database" * 500)
        ended = run("save", "all", backup, "--into", "rest", home=self.home)
        self.assertEqual(ended.returncode, 1)
        self.assertEqual([json.loads(line)["class"] for line in ended.stdout.splitlines()], COUNTED[1:])
        self.assertEqual(ended.stderr.count(b"HomeDomain Library/SMS/sms.db"), 1)

    def test_a_database_without_messages_holds_none(self):
        self.ours("save", "contacts", self.sample(), "--into", "people")
        self.assertEqual(self.ours("show", "messages", "local:people"), "")
        self.assertEqual(self.ours("show", "chats", "deleted:people"), "")
        self.assertEqual(json.loads(self.ours("databases", "--json"))[0]["counts"]["messages"], 0)

    def test_older_layout(self):
        self.save(self.sample("--ios", "12"), "old")
        folder = self.database("old")
        before = self.our_lines("show", "messages", "local:old")
        (folder / "messages.db").rename(folder / "mms.db")
        broken = folder.parent / "broken"
        broken.mkdir()
        (broken / "mms.db").write_bytes(b"no database" * 500)
        self.assertEqual(self.ours("show", "messages", "local:old"), "")
        ended = run("databases", "--json", "--update", home=self.home)
        self.assertEqual((ended.returncode, ended.stderr.count(b"\n")), (1, 1))
        self.assertIn(str(broken / "mms.db"), ended.stderr.decode())
        counts = {listed["name"]: listed["counts"]["messages"] for listed in json.loads(ended.stdout)}
        self.assertEqual(counts, {"broken": 0, "old": len(before)})
        self.assertEqual(in_order(self.our_lines("show", "messages", "local:old")), in_order(before))
        self.assertTrue((broken / "mms.db").exists())

    def test_refused(self):
        backup = self.sample()
        nonsense = self.folder / "nonsense.db"
        nonsense.write_bytes(b"no database" * 500)
        for situation, status, arguments in (
                ("climbing name", 2, ["save", "messages", backup, "--into", "../x"]),
                ("class that is not kept", 2, ["save", "photos", backup, "--into", "x"]),
                ("no database", 1, ["save", "messages", nonsense, "--into", "x"]),
                ("not there", 1, ["save", "messages", self.folder / "none", "--into", "x"]),
                ("no such local database", 1, ["show", "messages", "local:none"]),
                ("climbing source", 2, ["show", "messages", "deleted:../x"]),
                ("purge of another class", 2, ["purge", "contacts", "--from", "x"])):
            with self.subTest(situation):
                self.refuse(status, *arguments, home=self.home)
        self.assertEqual(list(self.home.rglob("local_databases/*")), [])
        self.assertIn(str(nonsense), self.refuse(1, "show", "chats", nonsense, home=self.home))


class Removing(StoreCase):
    def setUp(self):
        super().setUp()
        self.save(self.sample("--ios", "17"), "store")
        self.before = self.our_lines("show", "messages", "local:store")
        self.rowids = sorted({row["rowid"] for row in self.before})

    def ids(self, rowids):
        return [part for rowid in rowids for part in ("--id", rowid)]

    def test_removed_messages_can_be_put_back(self):
        chosen = self.rowids[::3]
        self.assertEqual(self.ours("remove", "messages", "--from", "store", *self.ids(chosen)), "")
        left = self.our_lines("show", "messages", "local:store")
        self.assertEqual(left, [row for row in self.before if row["rowid"] not in chosen])
        removed = self.our_lines("show", "messages", "deleted:store")
        self.assertEqual(in_order(removed), in_order(row for row in self.before if row["rowid"] in chosen))
        self.ours("undelete", "messages", "--from", "store", *self.ids({row["rowid"] for row in removed}))
        self.assertEqual(in_order(self.our_lines("show", "messages", "local:store")), in_order(self.before))
        self.assertEqual(self.ours("show", "messages", "deleted:store"), "")
        for file in ("messages.db", "recycle.db"):
            self.expect_sound(self.database("store") / file)

    def test_one_option_takes_several_identities(self):
        several = ("--id", *self.rowids[:3], "--id", self.rowids[3])
        self.refuse(2, "remove", "messages", "--from", "store", "--id", home=self.home)
        self.ours("remove", "messages", *several, "--from", "store")
        left = self.our_lines("show", "messages", "local:store")
        self.assertEqual(left, [row for row in self.before if row["rowid"] not in self.rowids[:4]])
        removed = sorted({row["rowid"] for row in self.our_lines("show", "messages", "deleted:store")})
        self.ours("undelete", "messages", "--from", "store", "--id", *removed)
        self.assertEqual(in_order(self.our_lines("show", "messages", "local:store")), in_order(self.before))

    def test_unknown_ones_remove_nothing(self):
        for identity in ("99999999", "x", "-1", ""):
            with self.subTest(identity):
                self.refuse(1, "remove", "messages", "--from", "store", "--id", self.rowids[0], "--id", identity,
                            home=self.home)
        self.refuse(1, "undelete", "messages", "--from", "store", "--id", self.rowids[0], home=self.home)
        self.assertEqual(self.our_lines("show", "messages", "local:store"), self.before)

    def test_purged_ones_are_gone(self):
        folder = self.database("store")
        files = set(tree(folder / "Attachments"))
        self.ours("remove", "messages", "--from", "store", *self.ids(self.rowids))
        self.assertEqual(self.ours("show", "chats", "local:store"), "")
        self.assertEqual(set(tree(folder / "Attachments")), files)
        self.ours("purge", "messages", "--from", "store")
        self.assertEqual(self.ours("show", "messages", "deleted:store"), "")
        self.assertEqual([path for path in (folder / "Attachments").rglob("*") if path.is_file()], [])


class Exporting(StoreCase):
    def test_database_is_a_source_that_equals_what_was_written(self):
        for name, source in self.sources():
            with self.subTest(name):
                target = self.home / name
                ended = run("export", "messages", source, "--format", "db", "-o", target, home=self.home)
                self.assertEqual((ended.returncode, ended.stdout), (0, b""))
                database = target / "messages.db"
                self.expect_sound(database)
                written = self.our_lines("show", "messages", database)
                guids = {row["guid"] for row in written}
                expected = [row for row in self.our_lines("show", "messages", source) if row["guid"] in guids]
                self.assertEqual(in_order(written), in_order(expected))
                self.assertIn(f"{len(guids)} messages written", ended.stderr.decode())

    def test_some_conversations_as_a_database(self):
        backup = self.sample("--ios", "12")
        chat = self.our_lines("show", "chats", backup)[1]
        self.ours("export", "messages", backup, "--format", "db", "-o", self.home / "one", "--chat", chat["rowid"])
        [written] = self.our_lines("show", "chats", self.home / "one/messages.db")
        self.assertEqual((written["guid"], written["name"]), (chat["guid"], chat["name"]))

    def test_every_format_of_every_source(self):
        self.save(self.sample("--ios", "17"), "store")
        for name, source in [*self.sources(), ("local", "local:store")]:
            shown = self.our_lines("show", "messages", source)
            for form in ("text", "csv", "html"):
                with self.subTest(name, form=form):
                    target = self.home / f"{name}.{form}"
                    self.ours("export", "messages", source, "--format", form, "-o", target)
                    if form == "csv":
                        # A carriage return alone ends no line in this format, but does for the reader used here.
                        content = target.read_bytes().decode().replace("\r", "")
                        self.assertEqual(len(list(csv.reader(io.StringIO(content, newline="")))), 1 + len(shown))
                    elif form == "text":
                        self.assertGreaterEqual(target.read_text(encoding="utf-8").count("Date: "), len(shown))
                    else:
                        self.assertTrue(list(target.glob("*.html")))

    def test_targets_that_cannot_be_written(self):
        backup = self.sample("--ios", "9")
        a_file = self.home / "a file"
        a_file.write_text("mine")
        for target in (a_file, a_file / "below", "/proc/none/here"):
            self.refuse(1, "export", "messages", backup, "--format", "db", "-o", target, home=self.home)
        self.assertEqual(a_file.read_text(), "mine")


if __name__ == "__main__":
    main()
