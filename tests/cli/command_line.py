"""What the process tests of the command line share: running it, samples, and readers of a backup that are not ours."""

import hashlib
import json
import os
import pathlib
import plistlib
import shutil
import sqlite3
import struct
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["QUILLBARROW_CLI"]
PASSWORD = "Pässwort 1"
APPLE_EPOCH = 978307200


def run(*arguments, password=None, home=None, **options):
    """Runs the program without a terminal and gives its end, its output and its one line of complaint."""
    environment = dict(os.environ)
    if password:
        environment["QUILLBARROW_PASSWORD"] = password
    if home:
        environment["HOME"] = str(home)
    options.setdefault("stdin", subprocess.DEVNULL)
    options.setdefault("stdout", subprocess.PIPE)
    options.setdefault("timeout", 300)
    return subprocess.run([PROGRAM, *map(str, arguments)], stderr=subprocess.PIPE, env=environment, **options)


def file_id(domain, path):
    return hashlib.sha1(f"{domain}-{path}".encode()).hexdigest()


def tree(folder):
    """Every file below a folder with its content, and every folder with None."""
    folder = pathlib.Path(folder)
    return {str(path.relative_to(folder)): None if path.is_dir() else path.read_bytes() for path in folder.rglob("*")}


def stored(backup, record_id):
    """Where the content of a file lies, in either layout."""
    backup = pathlib.Path(backup)
    flat = (backup / "Manifest.mbdb").exists()
    return backup / record_id if flat else backup / record_id[:2] / record_id


def modern_records(backup):
    """The rows of a plain Manifest.db: id -> (domain, path, mode, size, modified, class, target)."""
    records = {}
    database = sqlite3.connect(f"file:{backup}/Manifest.db?mode=ro", uri=True)
    for record_id, domain, path, blob in database.execute("select fileID, domain, relativePath, file from Files"):
        if not domain:
            continue
        archive = plistlib.loads(blob)
        objects = archive["$objects"]
        root = objects[archive["$top"]["root"].data]
        target = root.get("Target")
        target = objects[target.data] if isinstance(target, plistlib.UID) else target or ""
        records[record_id] = (domain, path, root["Mode"], root["Size"], root["LastModified"],
                              root["ProtectionClass"], target)
    database.close()
    return records


def mbdb_records(backup):
    """The same of a Manifest.mbdb."""
    data = (pathlib.Path(backup) / "Manifest.mbdb").read_bytes()
    position = 6
    records = {}

    def text():
        nonlocal position
        length = struct.unpack_from(">H", data, position)[0]
        position += 2
        if length == 0xFFFF:
            return b""
        position += length
        return data[position - length:position]

    while position < len(data):
        domain, path, target, _, _ = (text() for _ in range(5))
        mode, _, _, _, modified, _, _, size, protection_class, count = struct.unpack_from(">HQIIIIIQBB", data, position)
        position += 40
        for _ in range(2 * count):
            text()
        if domain:
            records[file_id(domain.decode(), path.decode())] = (domain.decode(), path.decode(), mode, size, modified,
                                                               protection_class, target.decode())
    return records


class Case(unittest.TestCase):
    """A folder of its own, and samples that are made once a run."""

    samples = {}

    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillbarrow-cli-"))

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder, ignore_errors=True)

    @classmethod
    def sample(cls, *arguments):
        """The folder of a sample that nobody may change. Its name says how it was made."""
        name = "_".join(arguments).replace("-", "").replace(" ", "") or "plain"
        folder = cls.folder / "samples" / name
        if not folder.exists():
            made = run("sample", folder, *arguments)
            assert made.returncode == 0, made.stderr.decode()
        return folder

    def succeed(self, *arguments, **options):
        """Runs and gives the output as text."""
        ended = run(*arguments, **options)
        self.assertEqual(ended.returncode, 0, ended.stderr.decode())
        return ended.stdout.decode()

    def lines(self, *arguments, **options):
        """The JSON objects of an output with one a line."""
        return [json.loads(line) for line in self.succeed(*arguments, **options).splitlines()]

    def refuse(self, status, *arguments, **options):
        """Runs, and holds the failure to its promise: the status, no data, one line that says why."""
        ended = run(*arguments, **options)
        complaint = ended.stderr.decode()
        self.assertEqual((ended.returncode, ended.stdout), (status, b""), complaint)
        self.assertRegex(complaint, r"\Aquillbarrow-cli: [^\n]+\n\Z")
        return complaint


def main():
    unittest.main(verbosity=1)
