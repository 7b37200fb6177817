"""pack.py FOLDER: packs the Windows files of all machines, their symbols, kestrel-try, the recorded answers, the
documents and SHA-256 sums into one archive in FOLDER, and prints its path. The same files give the same bytes: entries
are sorted and have no time, owner or mode of this machine."""
import hashlib
import re
import sys
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
MACHINES = ("x86", "x64", "arm64")
IMAGES = ("QM610rDRV1.dll", "QM610rDRV1.pdb", "kestrel-try.exe", "kestrel-try.pdb")


def contents():
    """The archive's files: path in the archive -> bytes."""
    files = {f"{machine}/{name}": ROOT / "build/windows" / machine / name for machine in MACHINES for name in IMAGES}
    files["answers.json"] = ROOT / "tests/try/golden/answers.json"
    for document in ("README.md", "CHANGELOG.md", *(path.relative_to(ROOT).as_posix() for path in ROOT.glob("docs/**/*"))):
        if (ROOT / document).is_file():
            files[document] = ROOT / document
    found = {name: path.read_bytes() for name, path in files.items()}
    sums = "".join(f"{hashlib.sha256(found[name]).hexdigest()}  {name}\n" for name in sorted(found))
    return {**found, "SHA256SUMS": sums.encode()}


def pack(folder):
    version, = re.findall(r"FILEVERSION ([\d, ]+)", (ROOT / "resources/version.rc").read_text("utf-8"))
    name = f"QM610rDRV1-{version.replace(', ', '.')}"
    folder.mkdir(parents=True, exist_ok=True)
    archive = folder / f"{name}.zip"
    partial = folder / f"{name}.zip.partial"
    with zipfile.ZipFile(partial, "w") as out:
        for path, data in sorted(contents().items()):
            entry = zipfile.ZipInfo(f"{name}/{path}", (1980, 1, 1, 0, 0, 0))
            entry.create_system = 0  # DOS: without owner and mode
            entry.compress_type = zipfile.ZIP_DEFLATED
            out.writestr(entry, data)
    partial.replace(archive)
    return archive


if __name__ == "__main__":
    print(pack(Path(sys.argv[1])))
