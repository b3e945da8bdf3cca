"""The tables of records and functions are those of the C header, and the versions its version."""
import ctypes
import os
import re
import sys
import unittest

import sample

from tavrel import _functions, _shared_library

HEADER = (sample.CHECKOUT / "include/tavrel/tavrel.h").read_text(encoding="utf-8")
CODE = re.sub(r"/\*.*?\*/", "", HEADER, flags=re.DOTALL)

TYPES = {
    "void": None,
    "int32_t": ctypes.c_int32,
    "char*": ctypes.c_char_p,
    "void*": ctypes.c_void_p,
    "uint8_t*": ctypes.POINTER(ctypes.c_uint8),
    "PlaylistRecord*": _functions.PlaylistRecord,
    "ArtworkHandle*": _functions.ArtworkHandle,
    "SongInfo*": ctypes.POINTER(_functions.SongInfo),
    "ArtworkInfo*": ctypes.POINTER(_functions.ArtworkInfo),
    "SearchSongCallback": _functions.SearchSongCallback,
    "PropertyVisitor": _functions.PropertyVisitor,
    "FindSongsCallback": _functions.FindSongsCallback,
}


def type_and_name(declaration):
    """("char*", "name") of "const char* name"; the name may be missing."""
    kind, name = re.fullmatch(r"\s*(?:const )?(\w+\s*\**)\s*(\w*)\s*", declaration).groups()
    return TYPES[kind.replace(" ", "")], name


def arguments_of(text):
    return [] if text.strip() == "void" else [type_and_name(part)[0] for part in text.split(",")]


def functions_of_the_header():
    found = re.findall(r"TAVREL_API\s+([^()]+?)(\w+)\(([^()]*)\)\s*TAVREL_NOEXCEPT;", CODE)
    return {name: (type_and_name(result)[0], arguments_of(arguments)) for result, name, arguments in found}


def callbacks_of_the_header():
    found = re.findall(r"typedef ([^()]+)\(\*(\w+)\)\(([^()]*)\);", CODE)
    return {name: (type_and_name(result)[0], arguments_of(arguments)) for result, name, arguments in found}


def fields_of_the_header(record):
    body = re.search(r"typedef struct %s \{(.*?)\} %s;" % (record, record), CODE, re.DOTALL).group(1)
    return [type_and_name(declaration)[::-1] for declaration in body.split(";") if declaration.strip()]


class Header(unittest.TestCase):
    maxDiff = None

    def test_every_function_is_bound_with_its_types(self):
        functions = functions_of_the_header()
        self.assertEqual(len(functions), HEADER.count("\nTAVREL_API"))
        self.assertEqual(functions, _functions.FUNCTIONS)

    def test_every_name_for_hosts_that_is_exported_is_bound(self):
        exports = sample.CHECKOUT / "agent/exports"
        core = (exports / "interface.txt").read_text().split("# Their implementations")[0]
        text = core + (exports / "additions.txt").read_text()
        names = {line for line in text.split("\n") if line and not line.startswith("#")}
        self.assertEqual(names, set(_functions.FUNCTIONS))

    def test_every_callback_has_its_types(self):
        callbacks = callbacks_of_the_header()
        self.assertEqual(len(callbacks), 3)
        for name, (result, arguments) in callbacks.items():
            ours = getattr(_functions, name)
            self.assertEqual((ours._restype_, list(ours._argtypes_)), (result, arguments), name)

    def test_every_record_has_its_fields(self):
        for record, size in (("SongInfo", 96), ("ArtworkInfo", 32)):
            ours = getattr(_functions, record)
            self.assertEqual(ours._fields_, fields_of_the_header(record))
            if ctypes.sizeof(ctypes.c_void_p) == 8:
                self.assertEqual(ctypes.sizeof(ours), size)

    def test_the_package_has_the_version_of_the_library(self):
        self.assertEqual(_functions.VERSION, re.search(r'#define TAVREL_VERSION "(.*)"', HEADER).group(1))

    def test_the_name_that_is_looked_for_is_the_librarys(self):
        name = _shared_library.FILE_NAME
        self.assertTrue(os.path.basename(sample.LIBRARY).startswith(name + ".") or sys.platform == "darwin", name)
        self.assertIn(f"`{name}`", (sample.PACKAGE / "README.md").read_text(encoding="utf-8"))

    def test_the_licence_is_that_of_the_project(self):
        self.assertEqual((sample.PACKAGE / "LICENSE").read_text(), (sample.CHECKOUT / "LICENSE").read_text())


if __name__ == "__main__":
    unittest.main()
