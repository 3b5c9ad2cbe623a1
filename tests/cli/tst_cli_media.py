"""Photos, videos, voicemail, recordings and the whole tree: what is exported, byte by byte, against the sample."""

import collections
import pathlib
import re
import shutil
import sqlite3
import unittest

from command_line import PASSWORD, Case, file_id, main, mbdb_records, modern_records, run, stored, tree

PHOTO, VIDEO = (".jpg", ".png", ".heic"), (".mov",)
MERGED = {"MediaDomain", "RootDomain", "HomeDomain", "SystemPreferencesDomain", "MobileDeviceDomain",
          "WirelessDomain", "DatabaseDomain", "CameraRollDomain", "HealthDomain", "KeychainDomain", "KeyboardDomain",
          "ManagedPreferencesDomain"}


def safe(path):
    """This system takes every name of a device."""
    return path


def virtual(domain, path):
    """Where a file of the backup stands in the tree that people browse."""
    if domain in MERGED:
        return safe(path)
    application = re.fullmatch(r"AppDomain([^-]*)-(.+)", domain)
    folder = f"AppDomain{application[1]}" if application and application[1] else "Applications"
    top = f"{folder}/{application[2]}" if application else domain
    return safe(f"{top}/{path}" if path else top)


def files_only(folder):
    return {path: content for path, content in tree(folder).items() if content is not None}


class Media(Case):
    def setUp(self):
        self.target = self.folder / self.id()
        self.home = self.folder / (self.id() + ".home")
        self.home.mkdir()

    def export(self, kind, backup, status=0, target=None, password=None):
        ended = run("export", kind, backup, "-o", target or self.target, password=password, home=self.home)
        self.assertEqual((ended.returncode, ended.stdout), (status, b""), ended.stderr.decode())
        return ended.stderr.decode()

    def test_whole_backups_against_what_the_sample_holds(self):
        plain = self.sample("--ios", "17")
        records = modern_records(plain)
        expected = {virtual(domain, path): stored(plain, record_id).read_bytes()
                    for record_id, (domain, path, mode, *_) in records.items()
                    if mode & 0xF000 == 0x8000 and stored(plain, record_id).exists()}
        times = {virtual(record[0], record[1]): record[4] for record in records.values()}
        for arguments in ([], ["--layout", "mbdb"], ["--password", PASSWORD]):
            with self.subTest(arguments=arguments):
                backup = self.sample("--ios", "17", *arguments)
                before = tree(backup)
                target = self.target / "_".join(arguments)
                complaint = self.export("files", backup, status=1, target=target, password=PASSWORD)
                self.assertIn("gone.bin", complaint)  # listed, and nowhere in the backup
                found = files_only(target)
                self.assertEqual(set(found), set(expected))
                locked = {virtual(*line.split(": ")[1].split(" ", 1)) for line in complaint.splitlines()
                          if ": copied as stored: " in line}
                differing = {path for path, content in found.items() if content != expected[path]}
                self.assertEqual(differing, locked)
                for path in found:
                    self.assertEqual(int((target / path).stat().st_mtime), times[path], path)
                self.assertFalse([path for path in target.rglob("*") if path.is_symlink()])
                self.assertTrue(tree(backup) == before)
                again = self.export("files", backup, status=1, target=target, password=PASSWORD)
                *same, counts = complaint.splitlines()
                failed = complaint.count(": failed: ")
                self.assertIn(f" {len(expected)} files extracted, 0 were there already, {failed} failed", counts)
                self.assertEqual(again.splitlines()[:-1], same)
                self.assertIn(f" 0 files extracted, {len(expected)} were there already, {failed} failed",
                              again.splitlines()[-1])

    def test_camera_roll(self):
        for ios in ("6", "17"):
            for arguments in ([], ["--password", PASSWORD]):
                backup, plain = self.sample("--ios", ios, *arguments), self.sample("--ios", ios)
                for kind, endings in (("photos", PHOTO), ("videos", VIDEO)):
                    with self.subTest(ios=ios, kind=kind, arguments=arguments):
                        target = self.target / ios / kind / "_".join(arguments)
                        records = modern_records(plain) if (plain / "Manifest.db").exists() else mbdb_records(plain)
                        expected = {pathlib.PurePath(path).name: stored(plain, record_id).read_bytes()
                                    for record_id, (_, path, *_) in records.items()
                                    if path.startswith("Media/DCIM/1") and path.lower().endswith(endings)}
                        self.export(kind, backup, target=target, password=PASSWORD)
                        found = files_only(target)
                        self.assertEqual(set(found), set(expected))
                        self.assertEqual({name for name in found if found[name] != expected[name]}, set())
                        shown = self.lines("show", kind, backup, password=PASSWORD)
                        self.assertEqual({pathlib.PurePath(line["path"]).name for line in shown}, set(expected))
                        self.assertIn(f"0 files extracted, {len(expected)} were there already",
                                      self.export(kind, backup, target=target, password=PASSWORD))

    def test_sounds_are_named_by_date_and_sender(self):
        backup = self.sample("--ios", "17")
        for kind, ending in (("voicemail", "amr"), ("recordings", "m4a")):
            with self.subTest(kind):
                target = self.target / kind
                complaint = self.export(kind, backup, target=target)
                lost = re.findall(r"Can't find 'date:\d{4}-\d\d-\d\d \d\d:\d\d:\d\d", complaint)
                items = self.lines("show", kind, backup)
                self.assertEqual(len(lost), len([item for item in items if item["file"] is None]))
                domain = "HomeDomain" if kind == "voicemail" else "MediaDomain"
                expected = collections.Counter(stored(backup, file_id(domain, item["file"])).read_bytes()
                                               for item in items if item["file"])
                found = files_only(target)
                self.assertTrue(collections.Counter(found.values()) == expected)
                for name in found:
                    self.assertRegex(name, rf"^20\d{{6}}-\d{{6}}(-[^/]+)?\.{ending}$")

    def test_show_files_is_the_catalogue(self):
        backup = self.sample("--ios", "12")
        self.assertEqual(self.succeed("show", "files", backup), self.succeed("files", backup, "--json"))

    def test_what_lies_there_already(self):
        backup = self.folder / "one device"
        shutil.copytree(self.sample("--ios", "12"), backup)
        self.export("photos", backup)
        whole = files_only(self.target)
        cut, gone = sorted(whole)[:2]
        (self.target / cut).write_bytes(whole[cut][:-100])
        (self.target / gone).unlink()
        said = self.export("photos", backup)
        self.assertIn(f"2 files extracted, {len(whole) - 2} were there already", said)
        self.assertTrue(files_only(self.target) == whole)

    def test_nothing_of_others_is_replaced(self):
        backup, other = self.sample("--ios", "12"), self.sample("--ios", "12", "--seed", "7")
        self.target.mkdir()
        (self.target / "IMG_0002.JPG").write_bytes(b"the user's own")
        for source in (backup, other):
            self.export("photos", source)
        found = files_only(self.target)
        self.assertEqual(found["IMG_0002.JPG"][:100], b"the user's own")
        wanted = [*photos_of(backup), *photos_of(other)]
        self.assertEqual(len([content for content in wanted if content not in found.values()]), 0)
        self.assertEqual(len(found), len(wanted) + 1)
        for source in (other, backup, other, backup):
            self.assertIn("0 files extracted", self.export("photos", source))
            shutil.rmtree(self.home)  # with what is known of earlier exports
            self.home.mkdir()
        self.assertEqual(set(files_only(self.target)), set(found))

    def test_recorded_sizes_that_are_not_true(self):
        backup = self.folder / "wrong sizes"
        shutil.copytree(self.sample("--ios", "12"), backup)
        path = stored(backup, file_id("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG"))
        content = path.read_bytes()
        # What is there is copied, and left the second time; that it should have been longer is told each time.
        for status, changed in ((1, content[:-50]), (0, content + b"more than the record says")):
            path.write_bytes(changed)
            target = self.target / str(len(changed))
            for _ in range(2):
                complaint = self.export("photos", backup, status, target)
                self.assertEqual(f"incomplete in the backup: {len(changed)} of {len(content)} bytes" in complaint, status == 1)
            self.assertTrue((target / "IMG_0001.JPG").read_bytes() == changed)
            self.assertIn("0 files extracted", complaint)
            for command in (["show", "photos"], ["info"]):
                told = run(*command, backup)
                self.assertEqual((told.returncode, b"1 file of the backup is incomplete" in told.stderr),
                                 (status, status == 1), command)

    def test_collisions_lose_nothing(self):
        backup = self.folder / "collisions"
        shutil.copytree(self.sample("--ios", "12"), backup)
        database = sqlite3.connect(backup / "Manifest.db")
        blob = database.execute("select file from Files where relativePath = 'Library/SMS/sms.db'").fetchone()[0]
        rows = {("HomeDomain", "Library/same.txt"): b"home", ("RootDomain", "Library/same.txt"): b"root",
                ("MediaDomain", "Library/same.txt"): b"media", ("Trap", "aa:b"): b"file", ("Trap", "aa?b"): b"other",
                ("Trap", "aa_b/inner.txt"): b"below a folder of the file's name", ("Trap", "aa*b/inner.txt"): b"twin"}
        for (domain, relative), content in rows.items():
            record_id = file_id(domain, relative)
            database.execute("insert into Files values (?, ?, ?, 1, ?)", (record_id, domain, relative, blob))
            (backup / record_id[:2]).mkdir(exist_ok=True)
            stored(backup, record_id).write_bytes(content)
        database.commit()
        database.close()
        for _ in range(2):
            self.export("files", backup, status=1)
            found = collections.Counter(files_only(self.target).values())
            self.assertEqual([content for content in rows.values() if found[content] != 1], [])

    def test_one_bad_file_does_not_stop_the_others(self):
        backup = self.folder / "bad padding"
        shutil.copytree(self.sample("--ios", "17", "--password", PASSWORD), backup)
        victim = stored(backup, file_id("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG"))
        victim.write_bytes(victim.read_bytes()[:-5])
        gone = stored(backup, file_id("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0002.JPG"))
        gone.unlink()
        complaint = self.export("photos", backup, status=1, password=PASSWORD)
        self.assertEqual(complaint.count(": failed: "), 2, complaint)
        self.assertIn("IMG_0001.JPG: failed: ", complaint)
        self.assertIn("IMG_0002.JPG: failed: ", complaint)
        shown = run("show", "photos", backup, password=PASSWORD)
        self.assertEqual(shown.returncode, 1)
        self.assertIn(b"1 file is listed by the backup, but its content is missing: CameraRollDomain", shown.stderr)
        self.assertEqual(len(files_only(self.target)), shown.stdout.count(b"\n") - 2)


def photos_of(backup):
    """The contents of the photos of a plain sample."""
    return [stored(backup, record_id).read_bytes() for record_id, (_, path, *_) in modern_records(backup).items()
            if path.startswith("Media/DCIM/1") and path.lower().endswith(PHOTO)]


if __name__ == "__main__":
    main()
