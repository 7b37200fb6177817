"""check_image.py READOBJ PDBUTIL MACHINE SOURCES IMAGE: what a system sees of a built DLL or program before it runs any
of it, and what a debugger sees of its symbols."""
import re
import struct
import subprocess
import sys
import unittest
from pathlib import Path

readobj, pdbutil, machine, sources, image_file = sys.argv[1:]
SOURCES = Path(sources)
WIDE = machine != "x86"
FORMAT, OLDEST_SYSTEM = {
    "x86": ("COFF-i386", ["5", "0"]),
    "x64": ("COFF-x86-64", ["5", "2"]),
    "arm64": ("COFF-ARM64", ["6", "2"]),
}[machine]


def read(path, *options):
    return subprocess.run([readobj, *options, path], check=True, capture_output=True, text=True).stdout


def values(text, key):
    return re.findall(rf"^ *{key}: (.*)$", text, re.MULTILINE)


def block(text, name):
    """The entries of a bracketed list such as Characteristics, without their values."""
    found = re.findall(rf"^ *{name} \[[^\n]*\n(.*?)^ *\]", text, re.MULTILINE | re.DOTALL)
    return [set(re.findall(r"IMAGE_\w+", entries)) for entries in found]


def listed_imports(import_list):
    """The list's functions by library, those of this machine."""
    libraries = {}
    for line in (SOURCES / import_list).read_text("utf-8").splitlines():
        if line == "[found at run time]":
            break
        words = line.split()
        if not words or line.startswith("#"):
            continue
        if not line.startswith(" "):
            names = libraries[words[0]] = set()
        elif len(words) == 2 or (words[2] == "x64") == WIDE:
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


class Image:
    """The sections of an image; addresses count from its base."""

    def __init__(self, path):
        text = read(path, "--sections", "--section-data")
        rows = zip(values(text, "Name"), values(text, "VirtualAddress"), values(text, "VirtualSize"),
                   block(text, "Characteristics"), re.findall(r"SectionData \(\n(.*?)^ *\)", text, re.MULTILINE | re.DOTALL),
                   strict=True)
        self.sections = []
        for name, address, size, flags, dump in rows:
            data = bytes.fromhex("".join(re.findall(r"^ *[0-9A-F]+: ([0-9A-F ]+?)  ?\|", dump, re.MULTILINE)))
            self.sections.append((name.split()[0], int(address, 16), int(size, 16), flags, data))
        self.base = int(number(read(path, "--file-headers"), "ImageBase"), 16)

    def flags_at(self, address):
        return next(flags for _, start, size, flags, _ in self.sections if start <= address < start + size)

    def word_at(self, address):
        start, data = next((start, data) for _, start, size, _, data in self.sections if start <= address < start + size)
        return int.from_bytes(data[address - start:][:8 if WIDE else 4], "little")

    def references(self, address):
        """How many instructions load from an address (ARM64: from its place in a page)."""
        _, start, _, _, code = self.sections[0]
        if machine == "arm64":
            words = struct.unpack(f"<{len(code) // 4}I", code)
            return sum(word & 0xFFC00000 == 0xF9400000 and (word >> 10 & 0xFFF) * 8 == address & 0xFFF for word in words)
        if machine == "x86":
            return code.count(struct.pack("<I", self.base + address))
        places = range(len(code) - 4)
        return sum(struct.unpack_from("<i", code, i)[0] + start + i + 4 == address for i in places)


def number(text, key):
    """The one value of a key, without the name that stands before a number in parentheses."""
    value, = values(text, key)
    return value


class Common:
    """What holds for every image."""

    def test_headers(self):
        text = read(image_file, "--file-headers")
        of_file, of_image = block(text, "Characteristics")
        keys = ("Format", "Subsystem", "MajorSubsystemVersion", "MinorSubsystemVersion")
        self.assertEqual([number(text, key) for key in keys],
                         [FORMAT, self.SUBSYSTEM, *OLDEST_SYSTEM])
        self.assertEqual("IMAGE_FILE_DLL" in of_file, self.IS_DLL)
        self.assertNotIn("IMAGE_FILE_RELOCS_STRIPPED", of_file)
        wanted = {"DYNAMIC_BASE", "NX_COMPAT", "GUARD_CF", "HIGH_ENTROPY_VA" if WIDE else "NO_SEH"}
        wanted |= set() if self.IS_DLL else {"TERMINAL_SERVER_AWARE"}
        self.assertEqual(of_image, {"IMAGE_DLL_CHARACTERISTICS_" + flag for flag in wanted})
        self.assertNotEqual(number(text, "AddressOfEntryPoint"), "0x0")

    def test_sections(self):
        for name, _, _, flags, _ in Image(image_file).sections:
            self.assertFalse({"IMAGE_SCN_MEM_WRITE", "IMAGE_SCN_MEM_EXECUTE"} <= flags, name)
            self.assertNotIn("IMAGE_SCN_MEM_SHARED", flags, name)
        # Sheets of one process share nothing that changes: the instance handle, the security cookie and a few words at most.
        sizes = {name: size for name, _, size, _, _ in Image(image_file).sections}
        self.assertLessEqual(sizes.get(".data", 0), 64)
        # Tables of functions and texts hold addresses: without these the image could lie nowhere else.
        kind = "DIR64" if WIDE else "HIGHLOW"
        self.assertGreater(values(read(image_file, "--coff-basereloc"), "Type").count(kind), self.FEWEST)
        if WIDE:
            self.assertGreater(read(image_file, "--unwind").count("RuntimeFunction {"), self.FEWEST)

    def test_stack_protector(self):
        image, config = Image(image_file), read(image_file, "--coff-load-config")
        cookie = int(number(config, "SecurityCookie"), 16) - image.base
        self.assertIn("IMAGE_SCN_MEM_WRITE", image.flags_at(cookie))
        # A loader fills a cookie that has the documented value only.
        self.assertEqual(image.word_at(cookie), 0x2B992DDFA232 if WIDE else 0xBB40E64E)
        self.assertGreater(image.references(cookie), self.FEWEST // 2)

    def test_control_flow_guard(self):
        image, config = Image(image_file), read(image_file, "--coff-load-config")
        pointer = number(config, "GuardCFCheckDispatch" if machine == "x64" else "GuardCFCheckFunction")
        pointer = int(pointer, 16) - image.base
        self.assertNotIn("IMAGE_SCN_MEM_WRITE", image.flags_at(pointer))
        self.assertGreater(image.references(pointer), 10)
        self.assertEqual(number(config, "GuardFlags"), "0x500")  # instrumented, has a table of functions
        found, = re.findall(r"GuardFidTable \[\n(.*?)^\]", config, re.MULTILINE | re.DOTALL)
        targets = [int(line, 16) - image.base for line in found.split()]
        self.assertEqual(len(targets), int(number(config, "GuardCFFunctionCount")))
        self.assertEqual(targets, sorted(set(targets)))
        for target in targets:
            self.assertIn("IMAGE_SCN_MEM_EXECUTE", image.flags_at(target))
        called = values(read(image_file, "--coff-exports"), "RVA") + values(read(image_file, "--file-headers"), "AddressOfEntryPoint")
        self.assertLessEqual({int(address, 16) for address in called} - {0}, set(targets))

    def test_rest_of_load_configuration(self):
        headers, config = read(image_file, "--file-headers"), read(image_file, "--coff-load-config")
        size = int(number(config, "Size"), 16)
        # Windows XP wants 64 as the directory's size.
        self.assertEqual(int(number(headers, "LoadConfigTableSize"), 16), size if WIDE else 64)
        self.assertEqual(size, 176 if WIDE else 112)
        self.assertEqual(number(config, "DependentLoadFlags"), "0x800")  # LOAD_LIBRARY_SEARCH_SYSTEM32
        self.assertEqual([number(config, key) for key in ("SEHandlerTable", "SEHandlerCount")], ["0x0", "0"])

    def test_symbols(self):
        directory = read(image_file, "--coff-debug-directory")
        kinds = ["CodeView (0x2)", "ExtendedDLLCharacteristics (0x14)", "Repro (0x10)"]
        self.assertEqual(values(directory, "Type"), kinds if machine == "x64" else kinds[::2])
        self.assertEqual("IMAGE_DLL_CHARACTERISTICS_EX_CET_COMPAT" in directory, machine == "x64")
        symbols = Path(image_file).with_suffix(".pdb")
        self.assertEqual(number(directory, "PDBFileName"), symbols.name)

        listed = subprocess.run([pdbutil, "dump", "--summary", "--publics", symbols], check=True, capture_output=True,
                                text=True).stdout
        identifier = bytes.fromhex(number(directory, "PDBGUID").strip("()"))
        parts = [format(part, "X").zfill(width) for part, width in zip(struct.unpack("<IHH", identifier[:8]), (8, 4, 4))]
        parts += [identifier[8:10].hex().upper(), identifier[10:].hex().upper()]
        self.assertEqual(number(listed, "GUID"), "{" + "-".join(parts) + "}")
        self.assertEqual(number(listed, "Age"), number(directory, "PDBAge"))
        places = {name.lstrip("_").split("@")[0]: int(address) + 4096
                  for name, address in re.findall(r"`(\w+@?\d*)`\n.*addr = 0001:(\d+)", listed)}
        exports = read(image_file, "--coff-exports")
        for name, address in zip(values(exports, "Name"), values(exports, "RVA"), strict=True):
            if name:
                self.assertEqual(places.get(name), int(address, 16), name)
        self.assertIn(self.SOURCE.encode(), symbols.read_bytes())
        for file in (image_file, symbols):
            self.assertNotIn(str(SOURCES).encode(), Path(file).read_bytes())

    def imports(self):
        found = {}
        for line in read(image_file, "--coff-imports").splitlines():
            key, _, value = line.strip().partition(": ")
            self.assertNotIn("DelayImport", key)
            if key == "Name":
                self.assertNotIn(value, found)
                names = found[value] = set()
            elif key == "Symbol":
                names.add(value.split(" ")[0])
        return found


class Dll(Common, unittest.TestCase):
    IS_DLL, SUBSYSTEM = True, "IMAGE_SUBSYSTEM_WINDOWS_GUI (0x2)"
    SOURCE = r"C:\kestrel\driver\module_entry.cpp"
    FEWEST = 100  # relocations, and functions with unwind data

    def test_exports(self):
        wanted = re.findall(r"^ +(\w+)", (SOURCES / "resources/QM610rDRV1.def").read_text("utf-8"), re.MULTILINE)
        exports = values(read(image_file, "--coff-exports"), "Name")
        self.assertEqual(sorted(name for name in exports if name), sorted(wanted))
        self.assertEqual(len(wanted), 16)

    def test_imports(self):
        self.assertEqual(self.imports(), listed_imports("windows/imports.txt"))

    def test_resources(self):
        compiled = resources(Path(image_file).with_suffix(".res"))
        self.assertEqual(resources(image_file), compiled)
        # Bitmaps, dialogs, texts, the version and the manifest that a library's own pages use.
        self.assertEqual({kind for kind, _, _ in compiled}, {"2", "5", "6", "16", "24"})
        self.assertIn(("24", "2"), {key[:2] for key in compiled})


class Program(Common, unittest.TestCase):
    IS_DLL, SUBSYSTEM = False, "IMAGE_SUBSYSTEM_WINDOWS_CUI (0x3)"
    SOURCE = r"C:\kestrel\try\program.cpp"
    FEWEST = 30

    def test_imports(self):
        found, shared, own = self.imports(), listed_imports("windows/imports.txt"), listed_imports("try/imports.txt")
        for library, names in found.items():
            self.assertLessEqual(names, shared.get(library, set()) | own.get(library, set()))
        for library, names in own.items():
            self.assertLessEqual(names, found[library])


def load_tests(loader, _, __):
    return loader.loadTestsFromTestCase(Dll if image_file.endswith(".dll") else Program)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
