"""Wrong usage, things that are not there, and passwords: the exit status and the one line."""

import json
import os
import plistlib
import pty
import shutil

from command_line import PASSWORD, Case, main, run

WRONG_USAGE = {
    "nothing at all": [],
    "unknown command": ["frobnicate"],
    "unknown option": ["list", "--frobnicate"],
    "backup is missing": ["info"],
    "one argument too many": ["info", "a", "b"],
    "extract without a target": ["extract", "BACKUP", "HomeDomain", "Library"],
    "extract without a path": ["extract", "BACKUP", "HomeDomain", "-o", "x"],
    "unknown class to show": ["show", "dreams", "BACKUP"],
    "conversation that is no number": ["show", "messages", "BACKUP", "--chat", "one"],
    "conversation of the conversations": ["show", "chats", "BACKUP", "--chat", "1"],
    "chats are for show alone": ["export", "chats", "BACKUP", "--format", "text", "-o", "x"],
    "no format": ["export", "messages", "BACKUP", "-o", "x"],
    "format of another class": ["export", "messages", "BACKUP", "--format", "vcard", "-o", "x"],
    "format for what is copied": ["export", "photos", "BACKUP", "--format", "html", "-o", "x"],
    "no target": ["export", "messages", "BACKUP", "--format", "text"],
    "empty target": ["export", "messages", "BACKUP", "--format", "text", "-o", ""],
    "day that does not exist": ["export", "messages", "BACKUP", "--format", "text", "-o", "x", "--from", "2012-02-30"],
    "date without zeros": ["export", "messages", "BACKUP", "--format", "text", "-o", "x", "--from", "2012-2-3"],
    "time without seconds": ["export", "messages", "BACKUP", "--format", "text", "-o", "x", "--to", "2012-02-03T10:00"],
    "hour 24": ["export", "messages", "BACKUP", "--format", "text", "-o", "x", "--to", "2012-02-03T24:00:00"],
    "span that ends before it begins": ["export", "messages", "BACKUP", "--format", "text", "-o", "x",
                                        "--from", "2012-02-03", "--to", "2012-02-02"],
    "unknown layout": ["sample", "x", "--layout", "flat"],
    "unknown system": ["sample", "x", "--ios", "8"],
    "negative number": ["sample", "x", "--messages=-1"],
}

COMMANDS_ON_A_BACKUP = {
    "info": ["info"],
    "files": ["files"],
    "extract": ["extract", "", "HomeDomain", "Library", "-o", "out"],
    "show chats": ["show", "chats"],
    "show messages": ["show", "messages"],
    "export messages": ["export", "messages", "", "--format", "text", "-o", "out/x.txt"],
}


def on(backup, command):
    """A command of the table above with its backup put in."""
    return [backup if part == "" else part for part in command] if "" in command else [*command, backup]


class Usage(Case):
    def test_wrong_usage(self):
        for situation, arguments in WRONG_USAGE.items():
            with self.subTest(situation):
                self.refuse(2, *arguments, cwd=self.folder)
        self.assertEqual(sorted(self.folder.glob("x*")), [])

    def test_help_and_version_are_no_failure(self):
        for arguments in (["--help"], ["--version"], ["export", "--help"]):
            ended = run(*arguments)
            self.assertEqual((ended.returncode, ended.stderr), (0, b""))
            self.assertTrue(ended.stdout)

    def test_no_such_backup(self):
        a_file = self.folder / "a file"
        a_file.write_text("x")
        not_a_backup = self.folder / "not a backup"
        not_a_backup.mkdir(exist_ok=True)
        (not_a_backup / "Manifest.plist").write_text("x")
        for name, command in COMMANDS_ON_A_BACKUP.items():
            for backup in (self.folder / "missing", a_file, not_a_backup):
                with self.subTest(name, backup=backup.name):
                    complaint = self.refuse(1, *on(backup, command), cwd=self.folder)
                    self.assertIn(str(backup), complaint)
        self.refuse(1, "list", "--root", self.folder / "missing")

    def test_names_of_a_backup_cannot_speak_to_the_terminal(self):
        self.assertNotIn("\033", self.refuse(1, "info", "/nowhere/\033[2J\nsecond line"))


class Passwords(Case):
    def setUp(self):
        self.locked = {layout: self.sample("--layout", layout, "--password", PASSWORD) for layout in ("modern", "mbdb")}

    def test_none_and_wrong(self):
        for layout, backup in self.locked.items():
            for name, command in COMMANDS_ON_A_BACKUP.items():
                with self.subTest(name, layout=layout):
                    if name != "info":
                        self.refuse(3, *on(backup, command), cwd=self.folder)
                    self.refuse(3, *on(backup, command), password="wrong", cwd=self.folder)

    def test_info_needs_none(self):
        for backup in self.locked.values():
            self.assertIn('"counts":null', self.succeed("info", backup, "--json"))

    def test_file_goes_before_the_environment_and_loses_one_line_end(self):
        for content, status in ((PASSWORD, 0), (PASSWORD + "\n", 0), (PASSWORD + "\r\n", 0), (PASSWORD + "\n\n", 3),
                                (" " + PASSWORD, 3), ("", 3)):
            file = self.folder / "password"
            file.write_text(content, encoding="utf-8", newline="")
            ended = run("info", self.locked["modern"], "--password-file", file, password="ignored")
            self.assertEqual(ended.returncode, status, content)
        self.refuse(1, "info", self.locked["modern"], "--password-file", self.folder / "none", password=PASSWORD)

    def test_asked_for_on_a_terminal_without_echo(self):
        for typed, status in ((PASSWORD, 0), ("wrong", 3)):
            pid, terminal = pty.fork()
            if pid == 0:
                os.execv(os.environ["QUILLBARROW_CLI"],
                         ["quillbarrow-cli", "files", str(self.locked["mbdb"]), "--domain", "none"])
            shown = b""
            while b":" not in shown:
                shown += os.read(terminal, 1024)
            os.write(terminal, typed.encode() + b"\n")
            try:
                while chunk := os.read(terminal, 1024):
                    shown += chunk
            except OSError:  # the terminal's other end is closed
                pass
            os.close(terminal)
            self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), status, shown)
            self.assertNotIn(typed.encode(), shown)

    def test_wrong_password_damaged_keybag_and_unreadable_file_are_told_apart(self):
        backup = self.folder / "damaged"
        shutil.copytree(self.locked["modern"], backup)
        wrong = self.refuse(3, "info", backup, password="wrong")
        whole = plistlib.loads((backup / "Manifest.plist").read_bytes())
        keys = whole["BackupKeyBag"].split(b"WPKY\0\0\0\x28", 1)
        short_key = keys[0] + b"WPKY\0\0\0\x08" + keys[1][:8] + keys[1][40:]
        for keybag in (b"", whole["BackupKeyBag"][:-7], whole["BackupKeyBag"].replace(b"SALT", b"TLAS"), short_key):
            (backup / "Manifest.plist").write_bytes(plistlib.dumps({**whole, "BackupKeyBag": keybag}))
            damaged = self.refuse(1, "info", backup, password=PASSWORD)
            self.assertRegex(damaged, "(?i)keybag")
            locked = run("info", backup, "--json")
            self.assertEqual(locked.returncode, 1)
            self.assertRegex("".join(json.loads(locked.stdout)["problems"]), "(?i)keybag")
        (backup / "Manifest.plist").write_bytes(plistlib.dumps(whole))
        (backup / "Manifest.db").write_bytes(b"")
        unreadable = self.refuse(1, "info", backup, password=PASSWORD)
        self.assertIn("Manifest.db", unreadable)
        (backup / "Manifest.plist").write_bytes(b"bplist00 no more")
        no_list = self.refuse(1, "info", backup, password=PASSWORD)
        self.assertIn("Manifest.plist", no_list)
        self.assertEqual(len({wrong, damaged, unreadable, no_list}), 4)

    def test_the_password_is_in_no_log(self):
        home = self.folder / "home"
        home.mkdir()
        for password in (PASSWORD, "an odd wrong one"):
            run("info", self.locked["modern"], password=password, home=home)
        for written in (path for path in home.rglob("*") if path.is_file()):
            text = written.read_text(encoding="utf-8", errors="replace")
            self.assertNotIn(PASSWORD, text)
            self.assertNotIn("an odd wrong one", text)


if __name__ == "__main__":
    main()
