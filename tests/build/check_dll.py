"""check_dll.py READOBJ MACHINE DLL RES EXPORTS IMPORTS: what a system sees of a built DLL before it runs any of it."""
import re
import subprocess
import sys
import unittest
from pathlib import Path

readobj, machine, dll, res, export_list, import_list = sys.argv[1:]
X64 = machine == "x64"


def read(path, *options):
    return subprocess.run([readobj, *options, path], check=True, capture_output=True, text=True).stdout


def values(text, key):
    return re.findall(rf"^ *{key}: (.*)$", text, re.MULTILINE)


def block(text, name):
    """The entries of a bracketed list such as Characteristics, without their values."""
    found = re.findall(rf"^ *{name} \[[^\n]*\n(.*?)^ *\]", text, re.MULTILINE | re.DOTALL)
    return [set(re.findall(r"IMAGE_\w+", entries)) for entries in found]


def listed_imports():
    """The list's functions by library, those of this machine."""
    libraries = {}
    for line in Path(import_list).read_text("utf-8").splitlines():
        words = line.split()
        if not words or line.startswith("#"):
            continue
        if not line.startswith(" "):
            names = libraries[words[0]] = set()
        elif len(words) == 2 or words[2] == machine:
            names.add(words[0])
    return libraries


def resources(path):
    """Of a DLL or of what the resource compiler made: dump of the bytes by (type, name, language)."""
    found, key = {}, {}
    for line in read(path, "--coff-resources").splitlines():
        if numbered := re.match(r" *(?:Resource )?(type|name|language)\b.*?(\d+)\)?(?: \[)?$", line, re.IGNORECASE):
            key[numbered[1].lower()] = numbered[2]
        elif re.match(r" *Data:? \($", line):
            data = found[key["type"], key["name"], key["language"]] = []
        elif dumped := re.match(r" *[0-9A-F]{4,}: ([0-9A-F ]+?)  ?\|", line):
            data.append(dumped[1])
    return found


class Dll(unittest.TestCase):
    def test_headers(self):
        text = read(dll, "--file-headers")
        of_file, of_image = block(text, "Characteristics")
        flag = "IMAGE_DLL_CHARACTERISTICS_"
        keys = ("Format", "TimeDateStamp", "Subsystem", "MajorSubsystemVersion", "MinorSubsystemVersion")
        found = [values(text, key) for key in keys]
        self.assertEqual(found, [["COFF-x86-64" if X64 else "COFF-i386"], ["1970-01-01 00:00:00 (0x0)"],
                                 ["IMAGE_SUBSYSTEM_WINDOWS_GUI (0x2)"], ["5"], ["2" if X64 else "0"]])
        self.assertIn("IMAGE_FILE_DLL", of_file)
        self.assertNotIn("IMAGE_FILE_RELOCS_STRIPPED", of_file)
        self.assertLessEqual({flag + "DYNAMIC_BASE", flag + "NX_COMPAT"}, of_image)
        self.assertEqual(flag + "HIGH_ENTROPY_VA" in of_image, X64)
        self.assertNotIn("0x0", values(text, "AddressOfEntryPoint"))

    def test_sections(self):
        text = read(dll, "--sections")
        for name, flags in zip(values(text, "Name"), block(text, "Characteristics"), strict=True):
            self.assertFalse({"IMAGE_SCN_MEM_WRITE", "IMAGE_SCN_MEM_EXECUTE"} <= flags, name)
        # Sheets of one process share nothing that changes: the instance handle and a few words at most.
        sizes = {name.split()[0]: int(size, 16) for name, size in zip(values(text, "Name"), values(text, "VirtualSize"))}
        self.assertLessEqual(sizes.get(".data", 0), 64)
        # Tables of functions and texts hold addresses: without these the image could lie nowhere else.
        kind = "DIR64" if X64 else "HIGHLOW"
        self.assertGreater(values(read(dll, "--coff-basereloc"), "Type").count(kind), 100)

    def test_exports(self):
        wanted = re.findall(r"^ +(\w+)", Path(export_list).read_text("utf-8"), re.MULTILINE)
        exports = values(read(dll, "--coff-exports"), "Name")
        self.assertEqual(sorted(name for name in exports if name), sorted(wanted))
        self.assertEqual(len(wanted), 16)

    def test_imports(self):
        found = {}
        for line in read(dll, "--coff-imports").splitlines():
            key, _, value = line.strip().partition(": ")
            self.assertNotIn("DelayImport", key)
            if key == "Name":
                names = found[value] = set()
            elif key == "Symbol":
                names.add(value.split(" ")[0])
        self.assertEqual(found, listed_imports())

    def test_resources(self):
        compiled = resources(res)
        self.assertEqual(resources(dll), compiled)
        # Bitmaps, dialogs, texts, the version and the manifest that a library's own pages use.
        self.assertEqual({kind for kind, _, _ in compiled}, {"2", "5", "6", "16", "24"})
        self.assertIn(("24", "2"), {key[:2] for key in compiled})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
