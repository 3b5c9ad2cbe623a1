"""What a program leaves on the disk that is ended at any moment, by a request or by a kill: after the next start of
either program, nothing of an encrypted backup lies about in plain form."""

import os
import pathlib
import shutil
import signal
import sqlite3
import subprocess

from command_line import PASSWORD, PROGRAM, Case, main, run, stored, tree

WINDOW = os.environ["QUILLBARROW_WINDOW"]
KILL_POINT = os.environ["KILL_POINT"]
SIGNALS = (signal.SIGKILL, signal.SIGTERM)


class Place:
    """A home and a temporary folder of their own, where a run can be ended at its n-th change of a file."""

    def __init__(self, folder, backup):
        self.folder, self.backup = folder, backup
        self.home, self.temporary, self.target = folder / "home", folder / "tmp", folder / "target"
        programs = folder / "bin"
        for each in (self.home, self.temporary, programs):
            each.mkdir(parents=True)
        desktop = programs / "xdg-open"
        desktop.write_text(f"#!/bin/sh\ncp \"$1\" '{folder}/opened.tmp' && mv '{folder}/opened.tmp' '{folder}/opened'\n")
        desktop.chmod(0o755)
        self.environment = {**os.environ, "HOME": str(self.home), "TMPDIR": str(self.temporary),
                            "PATH": f"{programs}:{os.environ['PATH']}",
                            "QUILLBARROW_PASSWORD": PASSWORD,
                            "QT_QPA_PLATFORM": "offscreen", "QTWEBENGINE_DISABLE_SANDBOX": "1",
                            "ASAN_OPTIONS": "verify_asan_link_order=0"}

    def run(self, command, number=0, number_of_signal=0):
        """Runs to the end, or to the n-th change; gives the exit status and how many changes there were."""
        count = self.folder / "count"
        count.unlink(missing_ok=True)
        folders = "\n".join(map(str, (self.home, self.temporary, self.target, self.backup)))
        ended = subprocess.run(list(map(str, command)), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, timeout=120,
                               env={**self.environment, "LD_PRELOAD": KILL_POINT, "KILL_POINT_FOLDERS": folders,
                                    "KILL_POINT_PROGRAM": pathlib.Path(command[0]).name,
                                    "KILL_POINT_NUMBER": str(number), "KILL_POINT_SIGNAL": str(number_of_signal),
                                    "KILL_POINT_COUNT": str(count)})
        return ended, int(count.read_text()) if count.exists() else 0

    def listed(self):
        """The uids of the backups that the window lists."""
        uids = []
        for path in self.home.rglob("cache_list.db"):
            database = sqlite3.connect(path)
            if database.execute("select 1 from sqlite_master where name='cache_list'").fetchone():
                uids += [uid for (uid,) in database.execute("select uid from cache_list")]
            database.close()
        return uids

    def holders(self, secrets, exempt=()):
        """The files, other than what was exported, that hold one of the secrets."""
        found = []
        for root in (self.home, self.temporary, self.backup):
            for path in root.rglob("*"):
                if path.is_symlink() or not path.is_file() or any(part in exempt for part in path.parts):
                    continue
                content = path.read_bytes()
                found += [str(path) for secret in secrets if secret in content]
        return found

    def left_behind(self):
        """What lies in the temporary folder, but for the empty folder that the interface library makes there."""
        return [path for path in self.temporary.iterdir()
                if not (path.name.startswith("runtime-") and not any(path.iterdir()))]

    def parts(self):
        return list(self.target.rglob(".*.part"))


class Kills(Case):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.backup = cls.sample("--ios", "17", "--messages", "60", "--files", "20", "--password", PASSWORD)
        cls.before = tree(cls.backup)
        cls.secrets = [*cls.sentence(), cls.picture()]

    @classmethod
    def sentence(cls):
        """A text that stands in the messages, as databases and pages may hold it."""
        plain = cls.sample("--ios", "17", "--messages", "60", "--files", "20")
        database = sqlite3.connect(f"file:{stored(plain, cls.messages_id())}?mode=ro", uri=True)
        texts = [text for (text,) in database.execute("select text from message") if text and text.isascii()]
        database.close()
        text = max((text for text in texts if len(text) < 200), key=len)[:60]
        assert len(text) > 20, text
        return text.encode(), text.encode("utf-16-le")

    @staticmethod
    def messages_id():
        return "3d0d7e5fb2ce288813306e4d4636395e047a3d28"

    @classmethod
    def picture(cls):
        folder = cls.folder / "pictures"
        assert run("export", "photos", cls.backup, "-o", folder, password=PASSWORD).returncode == 0
        content = max((path.read_bytes() for path in folder.rglob("*.JPG")), key=len)
        return content[len(content) // 2:][:64]

    def place(self, name):
        return Place(self.folder / name, self.backup)

    def check_backup(self, place):
        self.assertEqual(tree(place.backup), self.before)

    def start_next(self, place):
        ended = subprocess.run([PROGRAM, "databases"], env=place.environment, capture_output=True)
        self.assertEqual((ended.returncode, ended.stderr), (0, b""))

    def test_the_search_finds_what_is_there(self):
        place = self.place("search")
        for number, secret in enumerate(self.secrets):
            (place.temporary / str(number)).write_bytes(b"x" * 1000 + secret + b"x")
        self.assertEqual(len(place.holders(self.secrets)), len(self.secrets))

    def command_line(self, command, moments):
        place = self.place("cli-" + "-".join(command))
        arguments = [PROGRAM, *({"BACKUP": place.backup, "TARGET": place.target}.get(part, part) for part in command)]
        whole, changes = place.run(arguments)
        self.assertIn(whole.returncode, (0, 1), whole.stderr)
        self.assertGreater(changes, 2 * moments)
        self.assertEqual(place.holders(self.secrets), [])
        for moment in range(moments):
            number = 1 + changes * (2 * moment + 1) // (2 * moments)
            for how in SIGNALS:
                with self.subTest(command, number=number, how=how.name):
                    shutil.rmtree(place.target, ignore_errors=True)
                    ended, _ = place.run(arguments, number, int(how))
                    # A signal that comes when all is done does nothing any more.
                    self.assertIn(ended.returncode, (-how,) if how == signal.SIGKILL else (0, 1), ended.stderr)
                    if how == signal.SIGTERM:
                        self.assertEqual(place.parts(), [])
                        self.assertEqual(place.left_behind(), [])
                        self.check_backup(place)
                    self.start_next(place)
                    self.assertEqual(place.holders(self.secrets), [])
                    self.assertEqual(place.left_behind(), [])
                    self.check_backup(place)
                    if "TARGET" in command and how == signal.SIGKILL:
                        again, _ = place.run(arguments)
                        self.assertEqual(again.returncode, whole.returncode)
                        self.assertEqual(place.parts(), [])

    def test_open(self):
        self.command_line(["info", "BACKUP", "--json"], 4)

    def test_view(self):
        self.command_line(["show", "messages", "BACKUP"], 3)

    def test_export(self):
        self.command_line(["export", "messages", "BACKUP", "--format", "html", "-o", "TARGET"], 3)
        self.command_line(["export", "photos", "BACKUP", "-o", "TARGET"], 2)

    def test_print(self):
        self.command_line(["export", "messages", "BACKUP", "--format", "pdf", "-o", "TARGET"], 2)

    def test_window(self):
        moments = 10
        place = self.place("window")
        whole, changes = place.run([WINDOW, "use", place.backup, place.target])
        self.assertEqual((whole.returncode, whole.stdout), (0, b"done\n"), whole.stderr)
        self.assertTrue((place.folder / "opened").read_bytes().startswith(b"\xFF\xD8"))
        self.unlist(place)
        for moment in range(moments):
            number = 1 + changes * (2 * moment + 1) // (2 * moments)
            for how in SIGNALS:
                with self.subTest(number=number, how=how.name):
                    place = self.place(f"window-{number}-{how.name}")
                    ended, _ = place.run([WINDOW, "use", place.backup, place.target], number, int(how))
                    # How often the window writes depends on its timing, so the last moment may be too late.
                    if (ended.returncode, ended.stdout) != (0, b"done\n"):
                        self.assertIn(ended.returncode, (-how, 128 + how), ended.stderr)
                    if how == signal.SIGTERM:
                        self.check_backup(place)
                        self.assertEqual(self.private_folders(place), [])
                    self.start_next(place)
                    self.check_backup(place)
                    self.assertEqual(place.holders(self.secrets, exempt=place.listed()), [])
                    self.assertEqual(self.private_folders(place), [])
                    if place.listed():
                        self.unlist(place)

    @staticmethod
    def private_folders(place):
        return list(place.temporary.glob("quillbarrow*"))

    def unlist(self, place):
        """Plain copies are kept as long as the backup is listed, and no longer."""
        self.assertEqual(place.holders(self.secrets, exempt=place.listed()), [])
        ended, _ = place.run([WINDOW, "unlist"])
        self.assertEqual((ended.returncode, ended.stdout), (0, b"done\n"), ended.stderr)
        self.assertEqual(place.listed(), [])
        self.assertEqual(place.holders(self.secrets), [])
        self.check_backup(place)


if __name__ == "__main__":
    main()
