"""The generator refuses a wrong schema line with file and line, and makes equal bytes from equal input."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

MODEL = pathlib.Path(sys.argv.pop(1))
GENERATE = MODEL / "generator" / "generate.py"
SCHEMAS = sorted((MODEL / "schema").glob("*.schema"))

GOOD = """enum Colour
    "RED"
    "light green"
enum Choice
    "Text"
    "Inner"
class Inner 0x00000001
    "An inner object."
    Number int32 required 0x00000010 data range=1..5
class Outer 0x00000002 choice=Choice
    "An outer object."
    Flag bool optional 0x00000011 attribute default=true
    Colour Colour required 0x00000012 data
    Text text choice 0x00000013
    Inner Inner choice 0x00000014
"""

# What is replaced in GOOD, by what, the line that must be named, and words of the reason.
REFUSALS = {
    "unknown type": ("Number int32", "Number int33", 9, "unknown type 'int33'"),
    "unknown occurrence": ("int32 required", "int32 often", 9, "'often' is none of"),
    "tag of another form": ("0x00000010", "0x10", 9, "'0x10' is not of the form"),
    "tag used twice": ("0x00000013", "0x00000012", 10, "two members have one tag"),
    "tag differs by class": ("    Text text choice 0x00000013", "    Number int32 optional 0x00000013\n    Text text choice 0x00000015", 14, "tag differs"),
    "unknown option": ("range=1..5", "ranje=1..5", 9, "unknown option 'ranje=1..5'"),
    "empty range": ("range=1..5", "range=5..1", 9, "the range is empty"),
    "range of a text": ("Text text choice 0x00000013", "Text text choice 0x00000013 range=1..2", 14, "limits are for"),
    "default outside of the list": ("0x00000012 data", "0x00000012 data default=BLUE", 13, "'BLUE' is no default"),
    "attribute behind elements": ("0x00000013", "0x00000013 attribute", 14, "attributes stand before"),
    "required bool": ("bool optional", "bool required", 12, "a bool is optional"),
    "refuse-empty of a number": ("range=1..5", "refuse-empty", 9, "refuse-empty is for bool"),
    "must-have-data of a number": ("range=1..5", "must-have-data", 9, "must-have-data is for objects"),
    "member twice": ("Colour Colour required 0x00000012", "Flag Colour required 0x00000012", 13, "is there already"),
    "class twice": ("class Inner 0x00000001", "class Colour 0x00000001", 7, "'Colour' is there already"),
    "enumeration under another name": ("Colour Colour required", "Shade Colour required", 13, "is named after its member"),
    "object under another name": ("Inner Inner choice", "Core Inner choice", 10, "the alternatives are not"),
    "alternatives in another order": ('    "Text"\n    "Inner"', '    "Inner"\n    "Text"', 10, "the alternatives are not"),
    "unknown choice": ("choice=Choice", "choice=Selection", 10, "unknown enumeration 'Selection'"),
    "version without tag": ("choice=Choice", "choice=Choice version=1.0", 10, "version and version-tag go together"),
    "class without purpose": ('    "An inner object."\n', "", 7, "does not say in quotes"),
    "literal twice": ('"light green"', '"RED"', 3, "literal 'RED' stands twice"),
    "literal beyond ASCII": ('"light green"', '"grün"', 3, "one ASCII literal"),
    "member line too short": ("Number int32 required 0x00000010 data range=1..5", "Number int32", 9, "a member is NAME TYPE"),
    "no name": ("Number int32", "9umber int32", 9, "'9umber' is no name"),
    "stray line": ("enum Colour", "    Colour", 1, "stands in no class or enumeration"),
    "unknown word": ("enum Colour", "enumeration Colour", 1, "neither 'class NAME IDENTIFIER'"),
    "open quote": ('"RED"', '"RED', 2, "cannot be split into words"),
    "class inside itself": ("Number int32 required 0x00000010 data range=1..5", "Outer Outer optional 0x00000010", 7, "contains itself"),
    "list of bool": ("Flag bool optional 0x00000011 attribute default=true", "Flag bool list 0x00000011", 12, "there are no lists of bool"),
}


def generate(folder, *schemas):
    return subprocess.run([sys.executable, "-B", GENERATE, "--headers", folder / "h", "--sources", folder / "s", *schemas],
                          capture_output=True, text=True, check=False)


class Generator(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def written(self, text):
        path = self.folder / "some.schema"
        path.write_text(text, encoding="utf-8")
        return path

    def test_accepts_the_good_schema(self):
        result = generate(self.folder, self.written(GOOD))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(sorted(p.name for p in self.folder.glob("[hs]/*")), ["inner.cpp", "inner.h", "outer.cpp", "outer.h"])

    def test_names_enumerators_after_their_literals(self):
        generate(self.folder, self.written(GOOD))
        header = (self.folder / "h" / "outer.h").read_text(encoding="utf-8")
        self.assertIn("light_green = 1,", header)
        self.assertIn("Choice_Inner = 1,", header)

    def test_refuses_with_file_and_line(self):
        for name, (old, new, line, reason) in REFUSALS.items():
            with self.subTest(name):
                self.assertEqual(GOOD.count(old), 1, "the place to change is not one place")
                path = self.written(GOOD.replace(old, new))
                result = generate(self.folder, path)
                self.assertEqual(result.returncode, 1)
                self.assertRegex(result.stderr, "^" + re.escape(f"{path}:{line}: ") + ".*" + re.escape(reason))

    def test_makes_equal_bytes_and_leaves_unchanged_files_alone(self):
        self.assertEqual(generate(self.folder, *SCHEMAS).returncode, 0)
        files = sorted(self.folder.glob("[hs]/*"))
        self.assertEqual(len(files), 104)
        before = [(p.read_bytes(), p.stat().st_mtime_ns) for p in files]
        self.assertEqual(generate(self.folder, *SCHEMAS).returncode, 0)
        self.assertEqual([(p.read_bytes(), p.stat().st_mtime_ns) for p in files], before)


if __name__ == "__main__":
    unittest.main()
