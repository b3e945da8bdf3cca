"""Every alarm of this folder, heard on a planted fault.

Usage: alarms_test.py COMPILER NM READELF
"""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import check_includes
import check_links
import check_manual
import check_named_tests
import check_objects
import check_words
import check_workflow
import sources

TABLE = """# Map

## Who may include whom

| folder | includes |
|---|---|
| `low` | nothing of ours |
| `high` | `low` |
| `tests` | anything |

## More
"""
CALM = {"low/A.h": "", "low/A.cpp": '#include "low/A.h"\n', "high/B.cpp": '#include "low/A.h"\n',
        "tests/T.cpp": '#include "low/A.h"\n#include <string>\n'}


class NamedTests(unittest.TestCase):
    def faults(self, cell):
        return check_named_tests.faults(f"| a | b | {cell} |\n", {"A.One", "A.Two", "B.Three"})

    def test_tests_that_are_there_are_no_fault(self):
        self.assertEqual(self.faults("`A.One`, `.T*`, `B.*`"), [])

    def test_a_test_that_is_not_there_is_heard(self):
        self.assertEqual(len(self.faults("`A.One`, `.Three`")), 1)
        self.assertEqual(len(self.faults("`C.*`")), 1)

    def test_a_document_that_names_no_test_is_heard(self):
        self.assertEqual(self.faults("none"), ["names no test"])


class Links(unittest.TestCase):
    FILES = ("README.md", "docs/README.md", "docs/a.md", "docs/pictures/a b.png", "host/Main.cpp")

    def faults(self, text, **documents):
        index = "[a](a.md)\n"
        return check_links.faults({"docs/README.md": index, "docs/a.md": text, **documents}, self.FILES)

    def test_links_that_lead_somewhere_are_no_fault(self):
        text = ("# Two Words\n## Two Words\n[up](../README.md) ![a](<pictures/a%20b.png>) [it](#two-words-1)\n"
                "[r]: ../host/Main.cpp\n[out](https://example.invalid/x) [folder](../host) `[no](link)`\n"
                "```\n[no](link)\n```\n")
        self.assertEqual(len(check_links.links_of(text)), 6)
        self.assertEqual(self.faults(text), [])

    def test_a_link_to_a_file_that_is_not_there_is_heard(self):
        for link in ("[a](b.md)", "![a](../a.md)", "[a]: host/Main.cpp", '[a](../README "title")',
                     "`code` [a](b.md)", '<img alt="a" src="b.png">'):
            self.assertEqual(len(self.faults(link + "\n")), 1, link)

    def test_a_link_to_a_heading_that_is_not_there_is_heard(self):
        for link in ("[a](#none)", "[a](README.md#none)", "[a](../host/Main.cpp#none)", "[a](#in-code)"):
            self.assertEqual(len(self.faults(f"```\n# In code\n```\n# A\n{link}\n")), 1, link)

    def test_a_document_that_the_index_does_not_name_is_heard(self):
        found = self.faults("", **{"docs/b.md": ""})
        self.assertEqual(found, ["docs/README.md: does not name docs/b.md"])


class Manual(unittest.TestCase):
    HEADER = "TAVREL_API int32_t F(int32_t a,\n    char* b) TAVREL_NOEXCEPT;\ntypedef int32_t (*C)(void* c);\n"

    def faults(self, *lines, example="main"):
        shown = "".join(f'.B "{line}"\n' for line in lines)
        manual = f".SH SYNOPSIS\n.B \"#include\"\n{shown}.SH NEXT\n.EX\nmain\n.EE\n"
        return check_manual.faults(manual, self.HEADER, example + "\n")

    def test_the_same_declarations_are_no_fault(self):
        self.assertEqual(self.faults("typedef int32_t (*C)(void* c);", "int32_t F(int32_t a,", "    char* b);"), [])

    def test_a_declaration_that_differs_or_lacks_is_heard(self):
        self.assertEqual(len(self.faults("int32_t F(int32_t a, char* b);")), 1)
        self.assertEqual(len(self.faults("typedef int32_t (*C)(void* c);", "int32_t F(char* a, char* b);")), 2)

    def test_another_example_is_heard(self):
        self.assertEqual(len(self.faults("typedef int32_t (*C)(void* c); int32_t F(int32_t a, char* b);",
                                         example="mine")), 1)


class Workflow(unittest.TestCase):
    def heard(self, *steps):
        return len(check_workflow.faults({".github/workflows/a.yml": "".join(f"      - run: {s}\n" for s in steps)}))

    def test_the_two_scripts_are_no_fault(self):
        self.assertEqual(self.heard("scripts/test", "scripts/soak"), 0)

    def test_other_steps_and_a_script_that_nothing_runs_are_heard(self):
        self.assertEqual(self.heard("scripts/test", "scripts/soak", "make"), 1)
        self.assertEqual(self.heard("scripts/test", "scripts/soak", "|"), 1)
        self.assertEqual(self.heard("scripts/test"), 1)
        self.assertEqual(len(check_workflow.faults({})), 2)


class Includes(unittest.TestCase):
    def faults(self, document=TABLE, **planted):
        files = {name.replace("__", "/").replace("_", "."): text for name, text in planted.items()}
        return check_includes.faults(document, {**CALM, **files})

    def test_what_the_table_says_is_no_fault(self):
        self.assertEqual(self.faults(), [])

    def test_an_arrow_that_points_back_is_heard(self):
        found = self.faults(low__C_cpp='#include "high/D.h"\n', high__D_h="")
        self.assertEqual(len(found), 2)
        self.assertIn("does not let low include high", found[0])
        self.assertEqual(found[1], "folders make a circle: high -> low -> high")

    def test_a_name_that_no_include_needs_is_heard(self):
        found = self.faults(document=TABLE.replace("| `low` | nothing of ours", "| `low` | `tests`"))
        self.assertTrue(any("lets low include tests, but no file does" in fault for fault in found), found)

    def test_a_circle_in_the_table_is_heard(self):
        circle = TABLE.replace("| `low` | nothing of ours", "| `low` | `high`")
        found = self.faults(document=circle, low__C_cpp='#include "high/D.h"\n', high__D_h="")
        self.assertTrue(any("the table makes a circle" in fault for fault in found), found)

    def test_a_circle_of_files_is_heard(self):
        found = self.faults(low__X_h="", low__X_cpp='#include "low/Y.h"\n', low__Y_h="",
                            low__Y_cpp='#include "low/X.h"\n')
        self.assertEqual(found, ["files make a circle: low/X -> low/Y -> low/X"])

    def test_a_circle_of_folders_within_a_folder_is_heard(self):
        found = self.faults(low__a__X_h="", low__b__Y_h="", low__a__V_cpp='#include "low/b/Y.h"\n',
                            low__b__W_cpp='#include "low/a/X.h"\n')
        self.assertEqual(found, ["folders make a circle: low/a -> low/b -> low/a"])

    def test_a_header_of_one_unit_alone_is_part_of_it(self):
        unit = {"low/X.h": "", "low/X.cpp": '#include "low/X.h"\n#include "low/XParts.h"\n',
                "low/X.avx2.cpp": '#include "low/XParts.h"\n', "low/XParts.h": '#include "low/X.h"\n'}
        self.assertEqual(check_includes.faults(TABLE, {**CALM, **unit}), [])
        unit["low/Y.cpp"] = '#include "low/XParts.h"\n'
        self.assertEqual(len(check_includes.faults(TABLE, {**CALM, **unit})), 1)

    def test_a_folder_without_a_row_is_heard(self):
        found = self.faults(new__N_cpp='#include "low/A.h"\n')
        self.assertTrue(any("no row for new" in fault for fault in found), found)

    def test_an_include_of_nothing_is_heard(self):
        found = self.faults(low__C_cpp='#include "low/Gone.h"\n')
        self.assertEqual(len(found), 1)

    def test_a_document_without_the_table_is_heard(self):
        self.assertEqual(len(self.faults(document="# Map\n")), 1)

    def test_a_folder_within_a_folder_may_have_a_row_of_its_own(self):
        table = TABLE.replace("| `tests`", "| `high/top` | `high`, `low` |\n| `tests`")
        texts = {"high/E.h": "", "high/top/F.cpp": '#include "high/E.h"\n#include "low/A.h"\n'}
        self.assertEqual(check_includes.faults(table, {**CALM, **texts}), [])
        texts["high/G.cpp"] = '#include "high/top/H.h"\n'
        texts["high/top/H.h"] = ""
        found = check_includes.faults(table, {**CALM, **texts})
        self.assertTrue(any("does not let high include high/top" in fault for fault in found), found)


class Words(unittest.TestCase):
    def heard(self, path, text):
        return len(check_words.faults({path: text}))

    def test_a_stray_catch_is_heard_in_the_library_alone(self):
        text = "void F() {\n  try {\n  } catch (...) {\n  }\n}\n"
        self.assertEqual(self.heard("xml/A.cpp", text), 1)
        self.assertEqual(self.heard("system/Guard.h", text), 0)
        self.assertEqual(self.heard("host/A.cpp", text), 0)
        self.assertEqual(self.heard("xml/A.cpp", '// to catch it\nconst char* a = "catch";\n'), 0)

    def test_what_leaves_unique_symbols_is_heard(self):
        self.assertEqual(self.heard("xml/A.cpp", "std::regex r;\n"), 1)
        self.assertEqual(self.heard("xml/A.cpp", "auto p = std::make_shared<int>(1);\n"), 1)
        self.assertEqual(self.heard("xml/A.cpp", "thread_local int a;\n"), 1)
        self.assertEqual(self.heard("xml/A.cpp", "#include <cctype>\n"), 1)

    def test_a_place_outside_an_array_to_be_fetched_is_heard(self):
        self.assertEqual(self.heard("xml/A.cpp", "__builtin_prefetch(element + 16, 1);\n"), 1)
        self.assertEqual(self.heard("system/Prefetch.h", "__builtin_prefetch(PlaceAt(from, bytes));\n"), 0)

    def test_words_that_no_text_may_say_are_heard(self):
        for words in ("as in the original " + "interface", "the original\n" + "layout", "see the sp" + "ec.",
                      "The Speci" + "fication says", "in /wo" + "rk/main", "two blanks  \nbehind"):
            for path in ("xml/A.cpp", "docs/a.md", "tests/T.cpp", "CHANGELOG.md"):
                self.assertEqual(self.heard(path, words + "\n"), 1, words)
        self.assertEqual(self.heard("docs/a.md", "a special, specific and original text in /usr/lib/work/x\n"), 0)

    def test_a_test_that_asks_a_clock_is_heard(self):
        self.assertEqual(self.heard("tests/unit/T.cpp", "auto a = std::chrono::steady_clock::now();\n"), 1)
        self.assertEqual(self.heard("tests/unit/T.cpp", "long a = std::clock();\n"), 1)
        self.assertEqual(self.heard("bench/B.cpp", "auto a = std::chrono::steady_clock::now();\n"), 0)

    def test_a_torn_comment_is_heard(self):
        long = "// - every character outside the alphabet is skipped, but a character elsewhere makes"
        self.assertEqual(self.heard("xml/A.h", f"{long}\n// the\n// result empty\n"), 1)
        self.assertEqual(self.heard("xml/A.h", f"{long} the\n// result empty.\n// end\n"), 0)

    def test_a_literal_takes_nothing_behind_it_away(self):
        code = sources.without_comments_and_literals(
            'a = R"x(catch)x"; b = \'"\'; c = 1\'000\'000; /* catch\n */ d = "\\"catch"; catch\n')
        self.assertEqual(code.count("catch"), 1)
        self.assertEqual(code.count("\n"), 2)


class Objects(unittest.TestCase):
    def read(self, text, source="xml/Planted.cpp"):
        with tempfile.TemporaryDirectory() as folder:
            code, built = Path(folder) / "Planted.cpp", Path(folder) / "Planted.o"
            code.write_text(text)
            subprocess.run([COMPILER, "-std=c++20", "-O1", "-fPIC", "-c", str(code), "-o", str(built)], check=True)
            return check_objects.read_objects(NM, READELF, {str(built): source})[0]

    def heard(self, text, rule, source="xml/Planted.cpp"):
        found = check_objects.symbol_faults(self.read(text, source))
        self.assertTrue(any(rule in fault for fault in found), f"{found} does not say: {rule}")

    def test_a_calm_object_is_no_fault(self):
        text = "#include <string>\nstd::string Twice(const std::string& a) { return a + a; }\n"
        self.assertEqual(check_objects.symbol_faults(self.read(text)), [])

    def test_static_construction_is_heard(self):
        text = "int Start();\nint planted = Start();\n"
        self.heard(text, "constructed at load")
        self.heard(text, "runs when the library is loaded")

    def test_a_constructor_function_is_heard_but_for_the_loaders(self):
        text = "void Open();\nnamespace { [[gnu::constructor]] void Load() { Open(); } }\n"
        self.heard(text, "runs when the library is loaded")
        self.assertEqual(check_objects.symbol_faults(self.read(text, check_objects.ENTRY)), [])

    def test_static_destruction_is_heard(self):
        self.heard("struct A { ~A(); };\nconstinit A planted;\n", "destroyed at the end")

    def test_a_function_local_static_is_heard(self):
        self.heard("int Start();\nint Get() {\n  static int once = Start();\n  return once;\n}\n", "on first use")

    def test_a_shared_block_is_heard(self):
        self.heard("#include <memory>\nstd::shared_ptr<int> Get() { return std::make_shared<int>(1); }\n",
                   "std::make_shared")

    def test_what_asks_the_locale_is_heard(self):
        for call in ("toupper(c)", "isspace(c)", "atoi(t)", "strcasecmp(t, t)", 'setlocale(0, t) != nullptr',
                     "strtol(t, nullptr, 10) > 0", "strtod(t, nullptr) > 0", 'sscanf(t, "%d", &c)', "*strerror(c)"):
            self.heard("#include <ctype.h>\n#include <locale.h>\n#include <stdio.h>\n#include <stdlib.h>\n"
                       "#include <string.h>\n#include <strings.h>\n"
                       f"int Planted(int c, const char* t) {{ return t ? {call} : c; }}\n", "depends on the locale")
        self.heard("#include <sstream>\nint F() { std::stringstream s; s << 1; return s.good(); }\n",
                   "depends on the locale")

    def test_memory_that_no_test_can_refuse_is_heard(self):
        text = "#include <stdlib.h>\nvoid* Planted(size_t n) { return malloc(n); }\n"
        self.heard(text, "no test can refuse")
        self.assertEqual(check_objects.symbol_faults(self.read(text, "system/Memory.cpp")), [])

    def test_a_call_against_the_arrows_is_heard(self):
        table = check_includes.table_of(TABLE)
        low = self.read("void Above();\nvoid Below() { Above(); }\n", "low/A.cpp")
        high = self.read("void Below();\nvoid Above() { Below(); }\n", "high/B.cpp")
        found = check_objects.arrow_faults([low, high], table)
        self.assertEqual(len(found), 2)
        self.assertIn("low may not reach high", found[0])
        self.assertEqual(found[1], "files need each other: high/B -> low/A -> high/B")

    def test_files_that_need_each_others_functions_are_heard(self):
        one = self.read("void F();\nvoid G();\nvoid H() { F(); }\n", "low/One.cpp")
        two = self.read("void H();\nvoid F() { H(); }\n", "low/Two.cpp")
        parts = [self.read("void B();\nvoid A() { B(); }\n", "low/Three.cpp"),
                 self.read("void A();\nvoid B() { A(); }\n", "low/Three.avx2.cpp")]
        found = check_objects.arrow_faults([one, two, *parts], check_includes.table_of(TABLE))
        self.assertEqual(found, ["files need each other: low/One -> low/Two -> low/One"])

    def test_the_source_of_an_object_is_found(self):
        for path, source in (("/b/CMakeFiles/objects.dir/xml/A.cpp.o", "xml/A.cpp"),
                             ("/b/system/CMakeFiles/system.dir/A.cpp.o", "system/A.cpp")):
            self.assertEqual(check_objects.source_of(path, "/b"), source)


if __name__ == "__main__":
    COMPILER, NM, READELF = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1])
