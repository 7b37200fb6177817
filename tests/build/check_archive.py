"""check_archive.py: the archive of tools/pack.py holds every file that it should, byte for byte, and depends on nothing
but the files' contents."""
import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
MACHINES = ("x86", "x64", "arm64")
IMAGES = ("QM610rDRV1.dll", "QM610rDRV1.pdb", "kestrel-try.exe", "kestrel-try.pdb")


def pack(root, folder):
    packed = subprocess.run([sys.executable, "-B", root / "tools/pack.py", folder], check=True, capture_output=True, text=True)
    return Path(packed.stdout.rstrip("\n"))


class Archive(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def test_contents_match_sources_and_sums(self):
        archive = zipfile.ZipFile(pack(ROOT, self.folder))
        top = Path(archive.filename).stem
        self.assertRegex(top, r"^QM610rDRV1-\d+(\.\d+){3}$")
        files = {name.removeprefix(top + "/"): archive.read(name) for name in archive.namelist()}
        sums = dict(reversed(line.split("  ")) for line in files.pop("SHA256SUMS").decode().splitlines())
        self.assertEqual(sums, {name: hashlib.sha256(data).hexdigest() for name, data in files.items()})
        for machine in MACHINES:
            for name in IMAGES:
                built = ROOT / "build/windows" / machine / name
                self.assertEqual(files.pop(f"{machine}/{name}"), built.read_bytes(), built)
        self.assertEqual(files.pop("answers.json"), (ROOT / "tests/try/golden/answers.json").read_bytes())
        self.assertLessEqual({"README.md", "CHANGELOG.md", "docs/on-windows.md"}, set(files))
        for name, data in files.items():
            self.assertEqual(data, (ROOT / name).read_bytes())

    def test_same_files_elsewhere_give_same_bytes(self):
        copy = self.folder / "a longer folder"
        built = [f"build/windows/{machine}/{name}" for machine in MACHINES for name in IMAGES]
        for name in ("README.md", "CHANGELOG.md", "tools/pack.py", "resources/version.rc", "tests/try/golden/answers.json", *built):
            target = copy / name
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(ROOT / name, target)
            target.chmod(0o600)
            os.utime(target, (1, 1))
        shutil.copytree(ROOT / "docs", copy / "docs", copy_function=shutil.copyfile)
        first, second = pack(ROOT, self.folder / "first"), pack(copy, self.folder / "second")
        self.assertEqual(first.name, second.name)
        self.assertEqual(first.read_bytes(), second.read_bytes())


if __name__ == "__main__":
    unittest.main()
