"""What is written never replaces or joins what is read, and is not written through links."""

import json
import os
import pathlib
import shutil
import subprocess

from command_line import PROGRAM, Case, file_id, main, run, stored, tree

FILES = {"messages": ("text", "csv"), "contacts": ("vcard", "csv", "text", "html"), "calls": ("text", "csv"),
         "calendar": ("ical", "csv"), "bookmarks": ("html",)}
FOLDERS = {"messages": ("html", "db", "pdf"), "notes": ("html",), "photos": (None,), "files": (None,)}


class Targets(Case):
    def export(self, kind, form, source, target, **options):
        return run("export", kind, source, *(["--format", form] if form else []), "-o", target, **options)

    def refused(self, source, guarded, kind, form, target, **options):
        before = tree(guarded)
        ended = self.export(kind, form, source, target, **options)
        self.assertEqual(ended.returncode, 1, ended.stderr.decode())
        self.assertTrue(ended.stderr)
        self.assertEqual(tree(guarded), before)

    def test_targets_in_a_backup(self):
        backup = self.folder / "backup"
        shutil.copytree(self.sample("--ios", "17"), backup)
        alias = self.folder / "alias"
        alias.symlink_to(backup)
        for kind, formats in FILES.items():
            for form in formats:
                for target in (backup / "Manifest.db", backup / "new", backup / "deep" / "new", alias / "Manifest.db"):
                    with self.subTest(kind=kind, form=form, target=target.name):
                        self.refused(backup, backup, kind, form, target)
        for kind, formats in FOLDERS.items():
            for form in formats:
                for target in (backup, backup / "new", alias):
                    with self.subTest(kind=kind, form=form, target=target.name):
                        self.refused(alias, backup, kind, form, target)

    def test_targets_over_a_loose_database(self):
        loose = self.folder / "loose"
        loose.mkdir()
        shutil.copy(stored(self.sample("--ios", "17"), file_id("HomeDomain", "Library/SMS/sms.db")), loose / "sms.db")
        (loose / "Attachments").mkdir()
        (self.folder / "link.txt").symlink_to(loose / "sms.db")
        for target in (loose / "sms.db", loose / "sms.db-wal", loose / "sms.db-shm", loose / "Attachments" / "x",
                       self.folder / "link.txt"):
            with self.subTest(target=target.name):
                self.refused(loose / "sms.db", loose, "messages", "text", target)
        (loose / "sms.db").rename(loose / "messages.db")
        self.refused(loose / "messages.db", loose, "messages", "db", loose)
        self.assertEqual(self.export("messages", "text", loose / "messages.db", loose / "out.txt").returncode, 0)

    def test_targets_over_cards_and_local_databases(self):
        backup, home = self.sample("--ios", "17"), self.folder / "home"
        cards = self.folder / "cards"
        cards.mkdir()
        self.assertEqual(self.export("contacts", "vcard", backup, cards / "a.vcf").returncode, 0)
        self.refused(cards / "a.vcf", cards, "contacts", "vcard", cards / "a.vcf")
        self.refused(cards / "a.vcf", cards, "contacts", "csv", self.folder / "cards" / ".." / "cards" / "a.vcf")
        self.assertEqual(run("save", "all", backup, "--into", "mine", home=home).returncode, 0)
        place = pathlib.Path(json.loads(self.succeed("databases", "--json", home=home))[0]["path"])
        for kind, form, target in (("messages", "text", place / "messages.db"), ("messages", "db", place),
                                   ("contacts", "csv", place / "new.csv"), ("notes", "html", place)):
            with self.subTest(kind=kind, form=form):
                self.refused("local:mine", place, kind, form, target, home=home)
                self.refused(backup, place, kind, form, target, home=home)

    def test_links_in_the_target_are_not_written_through(self):
        backup, elsewhere = self.sample("--ios", "6"), self.folder / "elsewhere"
        elsewhere.mkdir()
        (elsewhere / "precious").write_text("precious")
        pages = self.folder / "pages"
        pages.mkdir()
        (pages / "files").symlink_to(elsewhere)
        self.assertEqual(self.export("messages", "html", backup, pages).returncode, 1)
        contacts = self.folder / "contacts"
        contacts.mkdir()
        (contacts / "photos").symlink_to(elsewhere)
        self.assertEqual(self.export("contacts", "html", backup, contacts / "page.html").returncode, 1)
        database = self.folder / "database"
        database.mkdir()
        (database / "messages.db").symlink_to(elsewhere / "precious")
        self.assertEqual(self.export("messages", "db", backup, database).returncode, 1)
        notes = self.folder / "notes"
        self.assertEqual(self.export("notes", "html", backup, notes).returncode, 0)
        page = sorted(notes.iterdir())[0]
        content = page.read_bytes()
        page.unlink()
        page.symlink_to(elsewhere / "precious")
        self.assertEqual(self.export("notes", "html", backup, notes).returncode, 0)
        self.assertFalse(page.is_symlink())
        self.assertEqual(page.read_bytes(), content)
        self.assertEqual(tree(elsewhere), {"precious": b"precious"})

    def test_arguments_that_are_no_text(self):
        backup = os.fsencode(self.sample("--ios", "9"))
        place = self.folder / "no text"
        place.mkdir()
        for arguments in ([b"export", b"messages", backup, b"--format", b"text", b"-o", b"a\xff"],
                          [b"extract", backup, b"HomeDomain", b"Library/SMS/sms.db", b"-o", b"\xc3("],
                          [b"info", backup + b"\xfe"]):
            ended = subprocess.run([os.fsencode(PROGRAM), *arguments], cwd=place, capture_output=True, timeout=60)
            self.assertEqual((ended.returncode, ended.stdout), (2, b""))
            self.assertEqual(ended.stderr.count(b"\n"), 1)
        self.assertEqual(tree(place), {})


if __name__ == "__main__":
    main()
