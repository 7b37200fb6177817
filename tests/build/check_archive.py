"""check_archive.py: the archive of tools/pack.py holds every file that it should, byte for byte."""
import hashlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
BUILT = [f"{machine}/{name}" for machine in ("x86", "x64", "arm64")
         for name in ("QM610rDRV1.dll", "QM610rDRV1.pdb", "kestrel-try.exe", "kestrel-try.pdb")]


def pack(root, folder):
    """The packed files by their names in the archive."""
    packed = subprocess.run([sys.executable, "-B", root / "tools/pack.py", folder], check=True, capture_output=True, text=True)
    archive = zipfile.ZipFile(packed.stdout.rstrip("\n"))
    top = Path(archive.filename).stem
    return {name.removeprefix(top + "/"): archive.read(name) for name in archive.namelist()}


def source(name):
    """The file of the source tree that the archive holds under a name."""
    return {"answers.json": "tests/try/golden/answers.json"}.get(name, f"build/windows/{name}" if name in BUILT else name)


class Archive(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def test_contents_match_sources_and_sums(self):
        files = pack(ROOT, self.folder)
        sums = dict(reversed(line.split("  ")) for line in files.pop("SHA256SUMS").decode().splitlines())
        self.assertEqual(sums, {name: hashlib.sha256(data).hexdigest() for name, data in files.items()})
        self.assertLessEqual({"README.md", "CHANGELOG.md", "docs/on-windows.md", "answers.json", *BUILT}, set(files))
        for name, data in files.items():
            self.assertEqual(data, (ROOT / source(name)).read_bytes(), name)


if __name__ == "__main__":
    unittest.main()
