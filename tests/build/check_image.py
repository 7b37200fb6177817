"""check_image.py READOBJ MACHINE SOURCES IMAGE: what a system sees of a built DLL or program before it runs any of
it: machine, subsystem, imports, exports, resources and hardening."""
import re
import struct
import subprocess
import sys
import unittest
from pathlib import Path

readobj, machine, sources, image_file = sys.argv[1:]
SOURCES = Path(sources)
WIDE = machine != "x86"
EXECUTABLE, WRITABLE = 0x20000000, 0x80000000  # flags of sections
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
    """The list's functions for this machine, by library."""
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


class Image:
    """The sections of an image by name; addresses count from its base."""

    def __init__(self, path):
        data = Path(path).read_bytes()
        header = int.from_bytes(data[0x3C:0x40], "little")
        count, optional_size = struct.unpack_from("<H12xH", data, header + 6)
        self.base, = struct.unpack_from("<Q" if WIDE else "<I", data, header + (48 if WIDE else 52))
        self.sections = {}
        for i in range(count):
            name, size, address, raw_size, start, flags = struct.unpack_from("<8s4I12xI", data, header + 24 + optional_size + 40 * i)
            self.sections[name.rstrip(b"\0").decode()] = address, size, flags, data[start:start + raw_size]

    def section_at(self, address):
        return next(section for section in self.sections.values() if section[0] <= address < section[0] + section[1])

    def count_loads(self, address):
        """How many instructions load from an address (ARM64: from its place in a page)."""
        start, _, _, code = self.sections[".text"]
        if machine == "arm64":
            words = struct.unpack(f"<{len(code) // 4}I", code)
            return sum(word & 0xFFC00000 == 0xF9400000 and (word >> 10 & 0xFFF) * 8 == address & 0xFFF for word in words)
        if machine == "x86":
            return code.count(struct.pack("<I", self.base + address))
        return sum(struct.unpack_from("<i", code, i)[0] + start + i + 4 == address for i in range(len(code) - 4))


def number(text, key):
    """The one value of a key."""
    value, = values(text, key)
    return value


def address(text, key):
    return int(number(text, key), 16) - Image(image_file).base


class Common:
    """What holds for every image."""

    def test_headers(self):
        text = read(image_file, "--file-headers")
        of_file, of_image = block(text, "Characteristics")
        keys = ("Format", "Subsystem", "MajorSubsystemVersion", "MinorSubsystemVersion")
        self.assertEqual([number(text, key) for key in keys],
                         [FORMAT, self.SUBSYSTEM, *OLDEST_SYSTEM])
        self.assertEqual("IMAGE_FILE_DLL" in of_file, self.IS_DLL)
        wanted = {"DYNAMIC_BASE", "NX_COMPAT", "GUARD_CF", "HIGH_ENTROPY_VA" if WIDE else "NO_SEH"}
        wanted |= set() if self.IS_DLL else {"TERMINAL_SERVER_AWARE"}
        self.assertEqual(of_image, {"IMAGE_DLL_CHARACTERISTICS_" + flag for flag in wanted})

    def test_sections(self):
        for name, (_, _, flags, _) in Image(image_file).sections.items():
            self.assertNotEqual(flags & (WRITABLE | EXECUTABLE), WRITABLE | EXECUTABLE, name)
        # Sheets of one process share nothing that changes: the instance handle, the security cookie and a few words at most.
        self.assertLessEqual(Image(image_file).sections.get(".data", (0, 0))[1], 64)
        # Tables of functions and texts hold addresses: without relocations the image could not be moved.
        kind = "DIR64" if WIDE else "HIGHLOW"
        self.assertGreater(values(read(image_file, "--coff-basereloc"), "Type").count(kind), self.FEWEST)

    def test_stack_protector(self):
        image, cookie = Image(image_file), address(read(image_file, "--coff-load-config"), "SecurityCookie")
        start, _, _, data = image.section_at(cookie)
        # A loader fills a cookie that has the documented value only.
        documented = struct.pack("<Q", 0x2B992DDFA232) if WIDE else struct.pack("<I", 0xBB40E64E)
        self.assertTrue(data[cookie - start:].startswith(documented))
        self.assertGreater(image.count_loads(cookie), self.FEWEST // 2)

    def test_control_flow_guard(self):
        image, config = Image(image_file), read(image_file, "--coff-load-config")
        pointer = address(config, "GuardCFCheckDispatch" if machine == "x64" else "GuardCFCheckFunction")
        self.assertFalse(image.section_at(pointer)[2] & WRITABLE)
        self.assertGreater(image.count_loads(pointer), 10)
        self.assertEqual(number(config, "GuardFlags"), "0x500")  # instrumented, has a table of functions
        table, = re.findall(r"GuardFidTable \[\n(.*?)^\]", config, re.MULTILINE | re.DOTALL)
        targets = {int(line, 16) - image.base for line in table.split()}
        called = values(read(image_file, "--coff-exports"), "RVA") + values(read(image_file, "--file-headers"), "AddressOfEntryPoint")
        self.assertLessEqual({int(target, 16) for target in called} - {0}, targets)

    def test_rest_of_load_configuration(self):
        headers, config = read(image_file, "--file-headers"), read(image_file, "--coff-load-config")
        size = int(number(config, "Size"), 16)
        # Windows XP wants 64 as the directory's size.
        self.assertEqual(int(number(headers, "LoadConfigTableSize"), 16), size if WIDE else 64)
        self.assertEqual(size, 176 if WIDE else 112)
        self.assertEqual(number(config, "DependentLoadFlags"), "0x800")  # LOAD_LIBRARY_SEARCH_SYSTEM32

    def imports(self):
        found = {}
        for line in read(image_file, "--coff-imports").splitlines():
            key, _, value = line.strip().partition(": ")
            if key == "Name":
                names = found[value] = set()
            elif key == "Symbol":
                names.add(value.split(" ")[0])
        return found


class Dll(Common, unittest.TestCase):
    IS_DLL, SUBSYSTEM = True, "IMAGE_SUBSYSTEM_WINDOWS_GUI (0x2)"
    FEWEST = 100  # relocations

    def test_exports(self):
        wanted = re.findall(r"^ +(\w+)", (SOURCES / "resources/QM610rDRV1.def").read_text("utf-8"), re.MULTILINE)
        exports = values(read(image_file, "--coff-exports"), "Name")
        self.assertEqual(sorted(name for name in exports if name), sorted(wanted))

    def test_imports(self):
        self.assertEqual(self.imports(), listed_imports("windows/imports.txt"))

    def test_resources(self):
        listed = read(image_file, "--coff-resources")
        compiled = read(Path(image_file).with_suffix(".res"), "--coff-resources")
        self.assertEqual(int(number(listed, "Total Number of Resources")), compiled.count("Resource type"))
        self.assertRegex(listed, r"\(ID 24\)[^()]*\(ID 2\)")


class Program(Common, unittest.TestCase):
    IS_DLL, SUBSYSTEM = False, "IMAGE_SUBSYSTEM_WINDOWS_CUI (0x3)"
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
