"""show and export of conversations of iOS 5, held against the samples' own databases read with Python's SQLite."""

import collections
import csv
import datetime
import hashlib
import io
import pathlib
import plistlib
import shutil
import sqlite3
import tempfile

from command_line import APPLE_EPOCH, PASSWORD, Case, file_id, main, run, stored, tree

SMS_DB = file_id("HomeDomain", "Library/SMS/sms.db")
FIRST_IMESSAGE = 1_000_000_001


def seconds(instant):
    return int(datetime.datetime.fromisoformat(instant.replace("Z", "+00:00")).timestamp())


def texts(blob):
    """The strings of a property list that is an array of them, or an archive of one."""
    value = plistlib.loads(blob)
    if isinstance(value, list):
        return value
    objects = value["$objects"]
    return [objects[item.data] for item in objects[value["$top"]["root"].data]["NS.objects"]]


class OldDb:
    """What the rows of an old database mean."""

    def __init__(self, backup):
        self.backup = backup
        self.database = sqlite3.connect(f"file:{stored(backup, SMS_DB)}?immutable=1", uri=True)
        self.database.row_factory = sqlite3.Row
        self.groups = {row["ROWID"]: row for row in self.rows("select * from msg_group where newest_message in "
                                                              "(select ROWID from message)")}
        self.members = collections.defaultdict(list)
        for row in self.rows("select * from group_member"):
            self.members[row["group_id"]].append(row["address"])
        self.chats = {row["chat_identifier"]: row for row in self.rows("select * from madrid_chat")}

    def rows(self, sql, *values):
        return [dict(row) for row in self.database.execute(sql, values)]

    def present(self, path):
        return any(stored(self.backup, file_id(domain, path)).exists() for domain in ("HomeDomain", "MediaDomain"))

    def messages(self):
        """Row id -> what the listing has to say of it."""
        return {row["ROWID"]: (self.i_message if row["is_madrid"] else self.text_message)(row)
                for row in self.rows("select * from message")}

    def text_message(self, row):
        members = self.members[row["group_id"]] if row["group_id"] in self.groups else []
        text, attachments = row["text"] or "", []
        for part in self.rows("select * from msg_pieces where message_id=? order by ROWID", row["ROWID"]):
            if part["content_type"].startswith("application/"):
                continue
            if part["content_type"] == "text/plain":
                text = f"{text}\n{part['data'].decode()}".strip()
                continue
            path = (f"Library/SMS/Parts/{row['group_id'] % 256:02x}/{row['ROWID'] % 16:02d}/"
                    f"{row['ROWID']}-{part['part_id']}.{part['content_loc'].rpartition('.')[2]}")
            attachments.append((part["content_loc"], part["content_type"],
                                part["data"] is not None or self.present(path)))
        is_from_me = int(row["flags"] == 3)
        sender = members[0] if len(members) == 1 else None if is_from_me else row["address"]
        return {"chat": row["group_id"] if members else None, "text": text, "service": "SMS", "is_from_me": is_from_me,
                "date": row["date"], "sender": sender, "attachments": attachments}

    def i_message(self, row):
        chat = self.chats[row["madrid_roomname"] or row["madrid_handle"]]
        people = texts(chat["participants"])
        is_from_me = int(row["madrid_date_delivered"] > 0)
        attachments = []
        for guid in texts(row["madrid_attachmentInfo"]) if row["madrid_attachmentInfo"] else []:
            file, = self.rows("select * from madrid_attachment where attachment_guid=?", guid)
            path = file["filename"].removeprefix("/var/mobile/")
            attachments.append((path.rpartition("/")[2], file["mime_type"], self.present(path)))
        sender = people[0] if len(people) == 1 else None if is_from_me else row["madrid_handle"]
        return {"chat": chat["ROWID"] + FIRST_IMESSAGE - 1, "text": row["text"], "service": "iMessage",
                "is_from_me": is_from_me, "date": row["date"] + APPLE_EPOCH, "sender": sender,
                "attachments": attachments}


class OldMessages(Case):
    def backups(self):
        yield self.sample("--ios", "5", "--layout", "mbdb")
        yield self.sample("--ios", "5", "--messages", "700", "--seed", "3")

    def test_every_message(self):
        for backup in self.backups():
            expected = OldDb(backup).messages()
            lines = self.lines("show", "messages", backup)
            chats = [row["chat"] or 0 for row in lines]  # those of no conversation come first
            self.assertEqual(chats, sorted(chats))
            found = {row["rowid"]: row for row in lines}
            self.assertEqual(set(found), set(expected))
            self.assertEqual(self.lines("info", backup, "--json")[0]["counts"]["messages"], len(expected))
            seen = set()
            for rowid, row in found.items():
                with self.subTest(message=rowid):
                    attachments = [(file["filename"].rpartition("/")[2], file["mime_type"], file["present"])
                                   for file in row["attachments"]]
                    shown = {key: row[key] for key in ("chat", "text", "service", "is_from_me", "sender")}
                    shown |= {"date": seconds(row["date"]), "attachments": attachments}
                    self.assertEqual(shown, expected[rowid])
                    seen |= {(row["service"], *attachment[1:]) for attachment in attachments}
            for case in (("SMS", "image/jpeg", True), ("SMS", "image/png", True), ("SMS", "image/jpeg", False),
                         ("iMessage", "image/jpeg", True), ("iMessage", "image/jpeg", False)):
                self.assertIn(case, seen)

    def test_guids_are_each_their_own_and_stay(self):
        backup = self.sample("--ios", "5", "--layout", "mbdb")
        first = self.lines("show", "messages", backup)
        guids = [row["guid"] for row in first] + [file["guid"] for row in first for file in row["attachments"]]
        self.assertEqual(len(guids), len(set(guids)))
        self.assertEqual(self.lines("show", "messages", backup), first)

    def test_chats(self):
        for backup in self.backups():
            database = OldDb(backup)
            expected = {rowid: sorted(database.members[rowid]) for rowid in database.groups}
            expected |= {row["ROWID"] + FIRST_IMESSAGE - 1: sorted(texts(row["participants"]))
                         for row in database.chats.values()}
            messages = database.messages().values()
            found = self.lines("show", "chats", backup)
            self.assertEqual({chat["rowid"]: sorted(handle["id"] for handle in chat["handles"]) for chat in found},
                             expected)
            self.assertEqual(len({chat["guid"] for chat in found}), len(found))
            for chat in found:
                with self.subTest(chat=chat["rowid"]):
                    own = [message for message in messages if message["chat"] == chat["rowid"]]
                    self.assertEqual(chat["message_count"], len(own))
                    self.assertEqual(seconds(chat["last"]), max(message["date"] for message in own))
                    group = len(chat["handles"]) > 1
                    service = "iMessage" if chat["rowid"] >= FIRST_IMESSAGE else "SMS"
                    self.assertEqual((chat["style"], chat["service_name"]), (43 if group else 45, service))
                    self.assertEqual(chat["guid"], f"{service};{'+' if group else '-'};{chat['chat_identifier']}")
                    shown = self.lines("show", "messages", backup, "--chat", chat["rowid"])
                    self.assertEqual(len(shown), len(own))
            self.assertIn("Ada Brückner (+14155550132)", [chat["name"] for chat in found])

    def test_encrypted_backups_show_the_same(self):
        plain = self.sample("--ios", "5", "--layout", "mbdb")
        locked = self.sample("--ios", "5", "--layout", "mbdb", "--password", PASSWORD)
        self.assertEqual(self.succeed("show", "messages", locked, password=PASSWORD),
                         self.succeed("show", "messages", plain))

    def test_exports(self):
        backup = self.sample("--ios", "5", "--layout", "mbdb")
        shown = self.lines("show", "messages", backup)
        before = tree(backup)
        for form in ("text", "csv", "html"):
            self.assertEqual(self.succeed("export", "messages", backup, "--format", form, "-o", self.folder / form), "")
        self.assertEqual(tree(backup), before)
        rows = list(csv.DictReader(io.StringIO((self.folder / "csv").read_bytes().decode().replace("\r", ""))))
        self.assertEqual(len(rows), len(shown))
        self.assertIn("this one stands in no conversation", (self.folder / "text").read_text(encoding="utf-8"))
        exported = {hashlib.sha1(content).digest() for path, content in tree(self.folder / "html").items() if content}
        database = OldDb(backup)
        inline = [row["data"] for row in database.rows("select data from msg_pieces where content_type='image/png'")]
        self.assertTrue(inline)
        for data in inline:
            self.assertIn(hashlib.sha1(data).digest(), exported)
        pages = "".join(page.read_text(encoding="utf-8") for page in (self.folder / "html").rglob("*.html"))
        self.assertIn("a text beside the picture – ünïcode", pages)
        self.assertNotIn("smil", pages)

    def test_nothing_is_left_of_what_was_taken_out_of_the_database(self):
        backup = self.sample("--ios", "5", "--layout", "mbdb")
        home = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        self.succeed("show", "messages", backup, home=home)
        self.assertEqual([path for path, content in tree(home).items() if content and "Parts" in path], [])

    def test_broken_lists_hide_no_message(self):
        backup = self.folder / "with broken lists"
        shutil.copytree(self.sample("--ios", "5", "--layout", "mbdb"), backup)
        database = sqlite3.connect(stored(backup, SMS_DB))
        database.execute("update madrid_chat set participants=substr(participants, 1, 20)")
        database.execute("update message set madrid_attachmentInfo=x'00' where madrid_attachmentInfo is not null")
        rows, = database.execute("select count(*) from message").fetchone()
        database.commit()
        database.close()
        ended = run("show", "messages", backup)
        self.assertEqual((ended.returncode, len(ended.stdout.splitlines())), (1, rows))
        self.assertIn("HomeDomain Library/SMS/sms.db", ended.stderr.decode())


if __name__ == "__main__":
    main()
