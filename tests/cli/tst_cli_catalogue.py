"""list, info and files, held against what Python's own readers find in the same backups."""

import datetime
import json
import plistlib
import shutil
import sqlite3

from command_line import PASSWORD, Case, file_id, main, mbdb_records, modern_records, run, stored

BACKUP_KEYS = ["path", "display_name", "device_id", "device_name", "product_type", "product_version", "serial_number",
               "backup_date", "encrypted", "layout"]
FILE_KEYS = ["id", "domain", "path", "target", "mode", "size", "modified", "protection_class", "directory",
             "virtual_path"]
COUNTED = {"messages", "contacts", "calls", "notes", "calendar", "bookmarks", "voicemail", "recordings", "photos",
           "videos"}


def instant(unix_seconds):
    when = datetime.datetime.fromtimestamp(unix_seconds, datetime.timezone.utc)
    return when.strftime("%Y-%m-%dT%H:%M:%SZ") if unix_seconds else None


def expected_file(record_id, record):
    domain, path, mode, size, modified, protection_class, target = record
    return {"id": record_id, "domain": domain, "path": path, "target": target, "mode": mode, "size": size,
            "modified": instant(modified), "protection_class": protection_class, "directory": mode & 0xF000 == 0x4000}


class ListAndInfo(Case):
    def test_fields_are_those_of_the_property_list(self):
        for layout in ("modern", "mbdb"):
            for password in ([], ["--password", PASSWORD]):
                backup = self.sample("--layout", layout, "--ios", "9", *password)
                manifest = plistlib.loads((backup / "Manifest.plist").read_bytes())
                lockdown = manifest["Lockdown"]
                found = json.loads(self.succeed("info", backup, "--json"))
                self.assertEqual(list(found), BACKUP_KEYS + ["counts", "problems"])
                self.assertEqual(
                    [found[key] for key in BACKUP_KEYS if key not in ("display_name", "backup_date")],
                    [str(backup), lockdown["UniqueDeviceID"], lockdown["DeviceName"], lockdown["ProductType"],
                     lockdown["ProductVersion"], lockdown["SerialNumber"], bool(password), layout])
                self.assertEqual(found["display_name"], f"{lockdown['DeviceName']}-{backup.name}")
                status = backup / "Status.plist"
                self.assertEqual(found["backup_date"], instant(int(status.stat().st_mtime)))

    def test_counts(self):
        backup = self.sample("--ios", "17")
        messages = len(self.lines("show", "messages", backup))
        counts = json.loads(self.succeed("info", backup, "--json"))["counts"]
        self.assertEqual(set(counts), COUNTED)
        self.assertEqual(counts["messages"], messages)
        locked = self.sample("--ios", "17", "--password", PASSWORD)
        self.assertEqual(json.loads(self.succeed("info", locked, "--json", password=PASSWORD))["counts"], counts)

    def test_list_looks_at_the_direct_sub_folders(self):
        self.sample("--ios", "9")
        root = self.folder / "samples"
        (root / "not a backup").mkdir(exist_ok=True)
        (root / "broken").mkdir(exist_ok=True)
        for name in ("Manifest.plist", "Manifest.db"):
            (root / "broken" / name).write_text("no property list")
        shutil.rmtree(root / "no description", ignore_errors=True)
        shutil.copytree(self.sample("--ios", "9"), root / "no description")
        (root / "no description" / "Info.plist").write_text("no property list")
        ended = run("list", "--root", root, "--root", self.folder, "--json")
        self.assertEqual(ended.returncode, 1)
        complaints = ended.stderr.decode().splitlines()
        self.assertEqual(len(complaints), 2, complaints)
        found = {backup["path"]: backup for backup in json.loads(ended.stdout)}
        self.assertEqual(set(found), {str(path.parent) for path in root.glob("*/Manifest.plist")})
        for path, backup in found.items():
            keys = ["path"] if path == str(root / "broken") else BACKUP_KEYS
            self.assertEqual(list(backup), keys + ["problems"])
            damaged = path.rpartition("/")[2] in ("broken", "no description")
            self.assertEqual(len(backup["problems"]), damaged, backup)
            self.assertTrue(all(problem in complaint for problem in backup["problems"]
                                for complaint in complaints if path in complaint), complaints)
        for name in ("broken", "no description"):
            shutil.rmtree(root / name)
        self.assertEqual(json.loads(self.succeed("list", "--root", self.folder, "--json")), [])

    def test_list_without_a_root_looks_in_the_usual_place(self):
        home = self.folder / "home"
        usual = home / "Apple" / "MobileSync" / "Backup"
        shutil.copytree(self.sample("--ios", "9"), usual / "a backup")
        found = json.loads(self.succeed("list", "--json", home=home))
        self.assertEqual([backup["path"] for backup in found], [str(usual / "a backup")])

    def test_people_get_a_table(self):
        backup = self.sample("--ios", "9")
        self.assertIn(str(backup), self.succeed("list", "--root", backup.parent))
        self.assertIn("Encrypted", self.succeed("info", self.sample("--ios", "9", "--password", PASSWORD)))
        self.assertIn("Library/SMS/sms.db\n", self.succeed("files", backup, "--domain", "HomeDomain"))


class Files(Case):
    def check(self, backup, records, password=None):
        found = {row["id"]: row for row in self.lines("files", backup, "--json", password=password)}
        self.assertEqual(set(found), set(records))
        for record_id, row in found.items():
            self.assertEqual(list(row), FILE_KEYS)
            virtual_path = row.pop("virtual_path")
            self.assertTrue(virtual_path.endswith(row["path"]), row)
            self.assertEqual(row, expected_file(record_id, records[record_id]))

    def test_every_record_of_both_layouts(self):
        for ios in ("6", "9", "12", "17"):
            with self.subTest(ios=ios):
                modern = self.sample("--ios", ios)
                self.check(modern, modern_records(modern))
                mbdb = self.sample("--ios", ios, "--layout", "mbdb")
                self.check(mbdb, mbdb_records(mbdb))

    def test_encrypted_catalogues_hold_the_same(self):
        for layout in ("modern", "mbdb"):
            plain = self.lines("files", self.sample("--layout", layout), "--json")
            locked = self.lines("files", self.sample("--layout", layout, "--password", PASSWORD), "--json",
                                password=PASSWORD)
            key = {"id", "domain", "path", "target", "mode", "directory", "virtual_path"}
            select = lambda rows: sorted(tuple((k, row[k]) for k in sorted(key)) for row in rows)
            self.assertEqual(select(locked), select(plain))

    def test_domain_and_under(self):
        backup = self.sample()
        records = modern_records(backup).values()
        for domain, under in (("HomeDomain", None), (None, "Library"), ("HomeDomain", "Library/SMS"),
                              ("HomeDomain", "Library/SMS/"), ("HomeDomain", "Library/SM"), ("homedomain", None),
                              ("MediaDomain", "Library/SMS/sms.db")):
            arguments = (["--domain", domain] if domain else []) + (["--under", under] if under else [])
            found = {(row["domain"], row["path"]) for row in self.lines("files", backup, "--json", *arguments)}
            prefix = (under or "").rstrip("/")
            expected = {(record[0], record[1]) for record in records
                        if (not domain or record[0] == domain)
                        and (not prefix or record[1] == prefix or record[1].startswith(prefix + "/"))}
            self.assertEqual(found, expected, arguments)

    def test_names_that_are_hard_to_write(self):
        backup = self.folder / "odd names"
        shutil.copytree(self.sample("--ios", "12"), backup)
        database = sqlite3.connect(backup / "Manifest.db")
        blob = database.execute("select file from Files where flags = 1 limit 1").fetchone()[0]
        names = ['quote " and \\ backslash', "line\nend", "\u2028 and \u0085", "\x01\x7f", "ünïcode 🚲", "a/../b"]
        for name in names:
            database.execute("insert into Files values (?, 'HomeDomain', ?, 1, ?)", (file_id("HomeDomain", name), name, blob))
        database.commit()
        database.close()
        output = self.succeed("files", backup, "--json", "--domain", "HomeDomain")
        found = {row["path"] for row in map(json.loads, output.split("\n")[:-1])}
        self.assertLessEqual(set(names), found)
        # Whatever a reader takes for the end of a line, a record is one.
        self.assertEqual(output.splitlines(), output.split("\n")[:-1])

    def test_catalogues_that_were_cut_off(self):
        # Everything before the cut is listed, and the loss is told once, by the name of the file alone.
        for arguments in ([], ["--layout", "mbdb"], ["--password", PASSWORD]):
            whole = self.sample("--ios", "9", "--files", "400", *arguments)
            name = "Manifest.mbdb" if "mbdb" in arguments else "Manifest.db"
            content = (whole / name).read_bytes()
            records = {row["id"] for row in self.lines("files", whole, "--json", password=PASSWORD)}
            for percent in range(10, 100, 20):
                with self.subTest(arguments=arguments, percent=percent):
                    backup = self.folder / f"cut off {percent}" / name
                    shutil.rmtree(backup.parent, ignore_errors=True)
                    shutil.copytree(whole, backup.parent)
                    backup.write_bytes(content[:len(content) * percent // 100])
                    ended = run("files", backup.parent, "--json", password=PASSWORD)
                    self.assertEqual(ended.returncode, 1)
                    complaints = ended.stderr.decode().splitlines()
                    self.assertLessEqual(len(complaints), 3, complaints)
                    found = {json.loads(line)["id"] for line in ended.stdout.decode().split("\n")[:-1]}
                    self.assertTrue(found <= records)
                    if percent >= 50:
                        self.assertTrue(found)
                        self.assertIn(f" 1 list of files, {name}, is damaged", complaints[0])

    def test_entries_that_lost_their_place(self):
        backup = self.folder / "no place"
        shutil.copytree(self.sample("--ios", "9"), backup)
        whole = len(self.lines("files", backup, "--json"))
        database = sqlite3.connect(backup / "Manifest.db")
        for column, number in (("domain", 3), ("relativePath", 2)):
            database.execute(f"update Files set {column} = null where fileID in (select fileID from Files where flags = 1 "
                             f"and domain = 'CameraRollDomain' limit {number})")
        database.commit()
        database.close()
        ended = run("files", backup, "--json")
        self.assertEqual((ended.returncode, ended.stdout.count(b"\n")), (1, whole - 5), ended.stderr.decode())
        self.assertIn(" 5 entries of Manifest.db", ended.stderr.decode())

    def test_damaged_catalogues(self):
        for name, content in (("empty", b""), ("no database", b"x" * 4096), ("another database", None)):
            with self.subTest(name):
                backup = self.folder / name
                shutil.copytree(self.sample("--ios", "12"), backup)
                (backup / "Manifest.db").unlink()
                if content is None:
                    database = sqlite3.connect(backup / "Manifest.db")
                    database.execute("create table Other (x)")
                    database.commit()
                    database.close()
                else:
                    (backup / "Manifest.db").write_bytes(content)
                self.assertIn("Manifest.db", self.refuse(1, "files", backup))


if __name__ == "__main__":
    main()
