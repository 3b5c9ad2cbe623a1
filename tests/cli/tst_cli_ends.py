"""How a command ends when it is stopped, when nobody reads it, when the disk is full, and what it leaves behind."""

import os
import pty
import shutil
import signal
import subprocess
import termios

from command_line import PASSWORD, PROGRAM, Case, main, run, tree

MANY = ["--messages", "4000", "--files", "3000"]
DATA_COMMANDS = (["list", "--root", "PARENT"], ["info", "BACKUP", "--json"], ["files", "BACKUP", "--json"],
                 ["files", "BACKUP"], ["show", "chats", "BACKUP"], ["show", "messages", "BACKUP"])


def start(*arguments):
    """Runs the program beside the test."""
    return subprocess.Popen([PROGRAM, *map(str, arguments)], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            bufsize=0, stderr=subprocess.PIPE, env={**os.environ, "QUILLBARROW_PASSWORD": PASSWORD})


def times(folder):
    return {path: os.stat(os.path.join(folder, path)).st_mtime_ns for path in tree(folder)}


class Ends(Case):
    def end(self, process):
        """Waits for the end and gives status and complaint."""
        complaint = process.stderr.read().decode()
        process.stdout.close()
        process.stderr.close()
        return process.wait(timeout=120), complaint

    def commands(self, backup):
        for command in DATA_COMMANDS:
            yield [{"BACKUP": backup, "PARENT": backup.parent}.get(part, part) for part in command]

    def test_full_disk(self):
        backup = self.sample("--ios", "9")
        for command in self.commands(backup):
            with self.subTest(" ".join(map(str, command))), open("/dev/full", "wb") as full:
                ended = run(*command, stdout=full)
                self.assertEqual(ended.returncode, 1)
                self.assertRegex(ended.stderr.decode(), r"\Aquillbarrow-cli: [^\n]*No space left on device\n\Z")

    def test_full_disk_as_the_target(self):
        backup = self.sample("--ios", "9")
        self.refuse(1, "export", "messages", backup, "--format", "text", "-o", "/dev/full/x")
        self.refuse(1, "sample", "/dev/full/x")

    def test_closed_output(self):
        backup = self.sample("--ios", "9")
        before = tree(backup)
        for command in self.commands(backup):
            ended = run(*command, stdout=None, preexec_fn=lambda: os.close(1))
            self.assertEqual(ended.returncode, 1, command)
            self.assertEqual(ended.stderr.count(b"\n"), 1)
        self.assertEqual(tree(backup), before)

    def test_reader_that_goes_away(self):
        backup = self.sample(*MANY, "--password", PASSWORD)
        for command in (["files", backup, "--json"], ["show", "messages", backup]):
            process = start(*command)
            self.assertEqual(process.stdout.read(1), b"{")
            process.stdout.close()
            status, complaint = self.end(process)
            self.assertEqual(status, 1)
            self.assertRegex(complaint, r"\Aquillbarrow-cli: [^\n]*Broken pipe\n\Z")
            self.assertFalse((backup / "Manifest-decrypted.db").exists())

    def test_stop_while_printing(self):
        backup = self.sample(*MANY, "--password", PASSWORD)
        before = tree(backup)
        for number in (signal.SIGINT, signal.SIGTERM):
            process = start("show", "messages", backup)
            # Nobody reads on, so the program waits for room in the pipe when the signal comes.
            self.assertEqual(process.stdout.read(1), b"{")
            process.send_signal(number)
            status, complaint = self.end(process)
            self.assertEqual((status, complaint), (1, "quillbarrow-cli: cancelled\n"))
        self.assertEqual(tree(backup), before)

    def test_stop_while_asking_for_the_password(self):
        backup = self.sample("--ios", "9", "--password", PASSWORD)
        pid, terminal = pty.fork()
        if pid == 0:
            os.environ.pop("QUILLBARROW_PASSWORD", None)
            os.execv(PROGRAM, ["quillbarrow-cli", "files", str(backup)])
        shown = b""
        while b":" not in shown:
            shown += os.read(terminal, 1024)
        os.write(terminal, b"\x03")
        while b"cancelled" not in shown:
            shown += os.read(terminal, 1024)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), 1)
        self.assertTrue(termios.tcgetattr(terminal)[3] & termios.ECHO)
        os.close(terminal)

    def test_stop_while_extracting(self):
        backup = self.sample(*MANY, "--password", PASSWORD)
        target = self.folder / "stopped"
        process = start("extract", backup, "HomeDomain", "", "-o", target)
        while process.poll() is None and not (target.exists() and any(path.is_file() for path in target.rglob("*"))):
            pass
        process.send_signal(signal.SIGINT)
        status, complaint = self.end(process)
        self.assertEqual((status, complaint), (1, "quillbarrow-cli: cancelled\n"))
        whole = self.folder / "whole"
        run("extract", backup, "HomeDomain", "", "-o", whole, password=PASSWORD)
        everything = tree(whole)
        for path, content in tree(target).items():
            self.assertEqual(content, everything[path], path)
        self.assertFalse((backup / "Manifest-decrypted.db").exists())

    def test_two_at_once_on_one_encrypted_backup(self):
        backup = self.sample(*MANY, "--password", PASSWORD)
        before = tree(backup)
        alone = self.succeed("files", backup, "--json", password=PASSWORD)
        processes = [start("files", backup, "--json") for _ in range(2)]
        # Both hold the backup open now, each waiting for somebody to read it.
        firsts = [process.stdout.read(1) for process in processes]
        for process, first in zip(processes, firsts):
            output, complaint = process.communicate()
            self.assertEqual((process.returncode, complaint), (0, b""))
            self.assertEqual((first + output).decode(), alone)
        self.assertEqual(tree(backup), before)

    def test_somebody_elses_catalogue_stays(self):
        backup = self.folder / "foreign"
        shutil.copytree(self.sample("--ios", "12", "--password", PASSWORD), backup)
        (backup / "Manifest-decrypted.db").write_bytes(b"what another program has put there")
        before = tree(backup)
        self.assertTrue(self.lines("files", backup, "--json", password=PASSWORD))
        self.assertEqual(tree(backup), before)

    def test_everything_it_keeps_is_its_owners_alone(self):
        home, out = self.folder / "private", self.folder / "private-out"
        backup = self.sample("--ios", "17", "--password", PASSWORD)
        self.succeed("save", "all", backup, "--into", "phone", password=PASSWORD, home=home)
        self.succeed("export", "messages", backup, "--format", "db", "-o", out, password=PASSWORD, home=home)
        self.succeed("export", "photos", backup, "-o", out, password=PASSWORD, home=home)
        for path in (*(home / "Application Data" / "Quillbarrow").rglob("*"), *out.rglob("*")):
            self.assertFalse(path.stat().st_mode & 0o077, path)
        self.assertTrue(list(home.rglob("exports.db")))

    def test_reading_changes_nothing(self):
        for arguments in (["--ios", "9", "--layout", "mbdb"], ["--ios", "17"], ["--ios", "17", "--password", PASSWORD]):
            backup = self.sample(*arguments)
            before = tree(backup), times(backup)
            out, home = self.folder / "out", self.folder / "home"
            for command in (*self.commands(backup), ["extract", backup, "HomeDomain", "", "-o", out],
                            ["export", "messages", backup, "--format", "html", "-o", out]):
                # A file of the encrypted sample stays locked, whatever is done.
                expected = {0, 1} if command[0] == "extract" and "--password" in arguments else {0}
                self.assertIn(run(*command, password=PASSWORD, home=home).returncode, expected, command)
                shutil.rmtree(out, ignore_errors=True)
            self.assertEqual((tree(backup), times(backup)), before)
            self.assertEqual(list(home.rglob("itunes_cache/*")), [], "no plain copy stays behind")


if __name__ == "__main__":
    main()
