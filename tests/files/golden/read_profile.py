"""Prints a backup file as another reader of INI files sees it: "section|key|value" a line, in UTF-8."""
import configparser
import sys

parser = configparser.ConfigParser(delimiters=("=",), comment_prefixes=(";",), interpolation=None, strict=True)
parser.optionxform = str
with open(sys.argv[1], encoding="cp932", newline="") as file:
    text = file.read()
assert text.count("\n") == text.count("\r\n"), "a line without CR"
parser.read_string(text)
for section in parser.sections():
    for key, value in parser.items(section):
        sys.stdout.buffer.write(f"{section}|{key}|{value}\n".encode())
