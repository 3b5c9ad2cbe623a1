"""extract: what lands where, byte by byte, against the files as the samples store them."""

import json
import os
import pathlib
import shutil
import sqlite3

from command_line import PASSWORD, Case, file_id, main, mbdb_records, modern_records, run, stored, tree

FOLDER, LINK = 0x4000, 0xA000


def kind(record):
    return record[2] & 0xF000


def landing(path):
    """What a name becomes: this system takes every name of a device."""
    return path


def readable(records, backup):
    """The plain files of a sample whose content is there: (domain, where it lands) -> content."""
    return {(record[0], landing(record[1])): stored(backup, record_id).read_bytes() for record_id, record in records.items()
            if kind(record) not in (FOLDER, LINK) and stored(backup, record_id).exists()}


class Extract(Case):
    def setUp(self):
        self.target = self.folder / self.id()

    def extract(self, backup, domain, *paths, status=0, password=None):
        ended = run("extract", backup, domain, *paths, "-o", self.target, password=password)
        self.assertEqual((ended.returncode, ended.stdout), (status, b""), ended.stderr.decode())
        return ended.stderr.decode()

    def test_whole_domains_of_every_kind_of_backup(self):
        plain = self.sample("--ios", "17")
        expected = readable(modern_records(plain), plain)
        for arguments in ([], ["--password", PASSWORD], ["--layout", "mbdb"],
                          ["--layout", "mbdb", "--password", PASSWORD]):
            backup = self.sample("--ios", "17", *arguments)
            domains = {domain for domain, _ in expected}
            before = tree(backup)
            for domain in sorted(domains):
                with self.subTest(domain, arguments=arguments):
                    self.target = self.folder / "whole" / "_".join(arguments) / domain
                    ended = run("extract", backup, domain, "", "-o", self.target, password=PASSWORD)
                    lost = [record for record_id, record in modern_records(plain).items() if record[0] == domain
                            and kind(record) == 0x8000 and not stored(plain, record_id).exists()]
                    found = {path: content for path, content in tree(self.target).items() if content is not None}
                    self.assertEqual(set(found), {path for place, path in expected if place == domain})
                    locked = ended.stderr.decode().count("copied as stored")
                    self.assertEqual(ended.returncode, 1 if lost or locked else 0, ended.stderr.decode())
                    differing = [path for path, content in found.items() if content != expected[domain, path]]
                    self.assertEqual(len(differing), locked, differing)
            self.assertEqual(tree(backup), before)

    def test_files_have_the_time_of_the_device(self):
        backup = self.sample("--ios", "9", "--layout", "mbdb")
        self.extract(backup, "HomeDomain", "Library/SMS/sms.db")
        modified = mbdb_records(backup)[file_id("HomeDomain", "Library/SMS/sms.db")][4]
        self.assertEqual(int((self.target / "sms.db").stat().st_mtime), modified)

    def test_each_path_lands_under_its_own_last_name(self):
        backup = self.sample("--ios", "9")
        self.extract(backup, "HomeDomain", "Library/SMS", "Library/SMS/sms.db")
        content = stored(backup, file_id("HomeDomain", "Library/SMS/sms.db")).read_bytes()
        self.assertEqual((self.target / "SMS" / "sms.db").read_bytes(), content)
        self.assertEqual((self.target / "sms.db").read_bytes(), content)
        self.assertFalse((self.target / "Library").exists())

    def test_second_run_leaves_what_is_whole_and_replaces_the_rest(self):
        backup = self.sample("--ios", "9")
        self.extract(backup, "HomeDomain", "Library/SMS/sms.db")
        file = self.target / "sms.db"
        content, first = file.read_bytes(), file.stat()
        self.extract(backup, "HomeDomain", "Library/SMS/sms.db")
        self.assertEqual(file.stat().st_ino, first.st_ino)
        file.write_bytes(b"cut off")
        complaint = self.extract(backup, "HomeDomain", "Library/SMS/sms.db")
        self.assertIn(" 1 file extracted, 0 were there already, 1 replaced\n", complaint)
        self.assertEqual(file.read_bytes(), content)
        self.assertEqual(sorted(tree(self.target)), ["sms.db"])

    def test_same_name_twice_in_one_run(self):
        backup = self.sample("--ios", "17")
        files = readable(modern_records(backup), backup)
        same = [path for _, path in files if path.endswith("/IMG_0001.JPG")][:2]
        self.extract(backup, "MediaDomain", *same)
        self.assertEqual(tree(self.target),
                         {"IMG_0001.JPG": files["MediaDomain", same[0]],
                          "IMG_0001(1).JPG": files["MediaDomain", same[1]]})

    def test_path_that_names_nothing_fails_and_the_rest_goes_on(self):
        complaint = self.extract(self.sample("--ios", "9"), "HomeDomain", "nothing/here", "[odd, name]",
                                 "Library/SMS/sms.db", status=1)
        self.assertEqual(complaint.count(": failed: "), 2)
        self.assertIn(" 1 file extracted, 0 were there already, 2 failed", complaint.splitlines()[-1])
        self.assertIn("[odd, name]", complaint)
        self.assertEqual(sorted(tree(self.target)), ["sms.db"])

    def test_rows_that_want_to_leave_the_target(self):
        backup = self.folder / "hostile"
        shutil.copytree(self.sample("--ios", "12"), backup)
        database = sqlite3.connect(backup / "Manifest.db")
        blob = database.execute("select file from Files where relativePath = 'Library/SMS/sms.db'").fetchone()[0]
        content = stored(backup, file_id("HomeDomain", "Library/SMS/sms.db"))
        hostile = ["../escaped", "a/../../escaped", "/tmp/quillbarrow-escaped", "C:/escaped", "a\0b", "sub/NUL", ".", ".."]
        for path in [*hostile, "harmless"]:
            record_id = file_id("Trap", path)
            database.execute("insert into Files values (?, 'Trap', ?, 1, ?)", (record_id, path, blob))
            (backup / record_id[:2]).mkdir(exist_ok=True)
            os.link(content, backup / record_id[:2] / record_id)
        database.commit()
        database.close()
        ended = run("extract", backup, "Trap", "", "-o", self.target / "deep" / "target")
        self.assertEqual(ended.returncode, 1)
        found = {path for path, bytes_ in tree(self.target).items() if bytes_ is not None}
        self.assertEqual({path for path in found if path.startswith("deep/target/")}, found)
        self.assertIn("deep/target/harmless", found)
        self.assertFalse(pathlib.Path("/tmp/quillbarrow-escaped").exists())
        self.assertGreaterEqual(ended.stderr.decode().count("\n"), len(hostile) - 1)

    def test_targets_that_cannot_be_written(self):
        backup = self.sample("--ios", "9")
        in_the_way = self.folder / "in the way"
        in_the_way.write_text("a file")
        for target in (in_the_way, in_the_way / "below", "/proc/no/folder", backup / "inside"):
            with self.subTest(target=str(target)):
                self.refuse(1, "extract", backup, "HomeDomain", "Library", "-o", target)
        self.assertEqual(in_the_way.read_text(), "a file")

    def test_files_that_were_cut_off(self):
        for options in (["--ios", "12"], ["--ios", "9", "--layout", "mbdb"], ["--ios", "12", "--password", PASSWORD]):
            with self.subTest(options):
                backup = self.folder / "_".join(["cut", *options])
                shutil.copytree(self.sample(*options), backup)
                photos = map(json.loads, self.succeed("show", "photos", backup, password=PASSWORD).splitlines())
                domain, path = next((row["domain"], row["path"]) for row in photos if row["size"] > 2000)
                content = stored(backup, file_id(domain, path))
                os.truncate(content, content.stat().st_size // 2 // 16 * 16)
                ended = run("export", "photos", backup, "-o", self.target / backup.name, password=PASSWORD)
                complaint = ended.stderr.decode()
                self.assertEqual(ended.returncode, 1, complaint)
                self.assertIn(f"{domain} {path}: ", complaint)

    def test_files_whose_stored_content_is_damaged(self):
        backup = self.folder / "damaged"
        shutil.copytree(self.sample("--ios", "12", "--password", PASSWORD), backup)
        rows = [json.loads(line) for line in
                self.succeed("files", backup, "--json", "--domain", "HomeDomain", password=PASSWORD).splitlines()]
        whole = [row for row in rows if not row["directory"] and stored(backup, row["id"]).exists()]
        cut = stored(backup, file_id("HomeDomain", "Library/SMS/sms.db"))
        cut.write_bytes(cut.read_bytes()[:-5])
        complaint = self.extract(backup, "HomeDomain", "", status=1, password=PASSWORD)
        self.assertIn("sms.db", complaint)
        self.assertFalse((self.target / "Library/SMS/sms.db").exists())
        files = [path for path, content in tree(self.target).items() if content is not None]
        self.assertEqual(len(files), len(whole) - 1)


if __name__ == "__main__":
    main()
