"""Mutants of C++ sources: small changes, each of which some test should notice.

A mutant is one replacement in one line. They are found in the text, formatted as the project has it, without
parsing: what does not compile is drawn again. Kinds:

  relation   < to <=, == to !=, && to ||, and the like
  constant   a whole number, by one
  statement  a statement of one line, left out
  arguments  the first two arguments of a call, exchanged
  check      a condition that is taken for false, or for true
"""

import collections
import dataclasses
import os
import re

FOLDERS = ("system", "text", "codecs", "xml", "library", "agent")

RELATIONS = {
    " < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ",
    " == ": " != ", " != ": " == ", " && ": " || ", " || ": " && ",
}  # fmt: skip
RELATION = re.compile("|".join(map(re.escape, RELATIONS)))
CONSTANT = re.compile(r"(?<![\w.\"'])(0[xX][0-9A-Fa-f]+|\d+)(?=[uUlLzZ]*\b)(?![.\w']*[.'])")
STATEMENT = re.compile(r"\s+(?:[\w.>\[\]*():-]+ (?:[-+*/|&^]|<<|>>)?= |[\w.>:-]+\(|\+\+|--|break;|continue;|\*).*;$")
ARGUMENTS = re.compile(r"(?<=\w\()([\w.:]+), ([\w.:]+)(?=[,)])")
# Of two that may stand in any order, as in XOR, the exchange is no change.
COMMUTATIVE = re.compile(r"(?:_mm\d*_(?:xor|and|or|add|cmpeq|adds|avg)_\w+|__builtin_(?:add|mul)_overflow|std::m(?:in|ax))\($")
OTHER_SYSTEMS = ("__APPLE__", "__aarch64__")
OTHER_BLOCKS = ("kForArm64",)  # of `if constexpr`
CHECK = re.compile(r"(?<=\bif \()(?!constexpr)([^;{}]+)(?=\) (?:return|break|continue|\{$|\w))")


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    line: int  # from 1
    kind: str
    before: str  # the line, without its indentation
    after: str
    copy: int = 1  # which of the changes of this name, from 1
    is_compiled: bool = True  # and not for another system

    def name(self):
        """What does not change when lines are added above: the key in lists of survivors."""
        return f"{self.file}: {self.before} -> {self.after or '(nothing)'}"

    def key(self):
        return f"{self.name()} #{self.copy}"


def for_others(text):
    """The numbers of the lines that are compiled for other systems only."""
    numbers, nested, end = set(), [], None
    for number, line in enumerate(text.split("\n"), 1):
        block = re.match(rf"( *)if constexpr \((?:system::)?(?:{'|'.join(OTHER_BLOCKS)})\) {{$", line)
        if block:
            end = block[1] + "}"
        if end:
            numbers.add(number)
        if line == end:
            end = None
        if line.startswith("#if"):
            nested.append(any(f"defined({name})" in line for name in OTHER_SYSTEMS))
        elif line.startswith("#else"):
            nested[-1] = not nested[-1]
        elif line.startswith("#endif"):
            nested.pop()
        if any(nested):
            numbers.add(number)
    return numbers


def code_lines(text):
    """(number, line) of what is code: not comments, directives, declarations of types, assertions."""
    in_comment = in_directive = False
    for number, line in enumerate(text.split("\n"), 1):
        code = re.sub(r'"(?:[^"\\]|\\.)*"', lambda found: '"' + "_" * (len(found[0]) - 2) + '"', line)
        code = code.split("//")[0].rstrip()
        if in_directive or code.lstrip().startswith("#"):
            in_directive = code.endswith("\\")
            continue
        if "/*" in code:
            in_comment = True
        if in_comment:
            in_comment = "*/" not in code
            continue
        declares = code.endswith("= delete;") or re.match(r"\s*(static_assert|using|namespace|template|friend|extern)\b", code)
        if code.strip() and not declares:
            yield number, code


def replacements(code):
    """(kind, line after) for every change of a line of code."""
    for found in RELATION.finditer(code):
        yield "relation", code[: found.start()] + RELATIONS[found[0]] + code[found.end() :]
    for found in CONSTANT.finditer(code):
        yield "constant", code[: found.start()] + str(int(found[1], 0) + 1) + code[found.end() :]
    if STATEMENT.fullmatch(code) and not code.strip().startswith("return"):
        yield "statement", ""
    for found in ARGUMENTS.finditer(code):
        if found[1] != found[2] and not COMMUTATIVE.search(code[: found.start()]):
            yield "arguments", code[: found.start()] + f"{found[2]}, {found[1]}" + code[found.end() :]
    for found in CHECK.finditer(code):
        for truth in ("false", "true"):
            # The condition stays, so that nothing becomes unused.
            condition = f"({found[1]}) && false" if truth == "false" else f"({found[1]}) || true"
            yield "check", code[: found.start()] + condition + code[found.end() :]


def all_mutants(root):
    """Every mutant of the library's sources, in a fixed order."""
    mutants, copies = [], collections.Counter()
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".cpp", ".h"):
                continue
            file = str(path.relative_to(root))
            text = path.read_text()
            lines, others = text.split("\n"), for_others(text)
            for number, code in code_lines(text):
                line = lines[number - 1]
                for kind, after in replacements(code):
                    if '"' in line and after:
                        continue  # a text would have been changed with the code
                    mutant = Mutant(file, number, kind, line.strip(), after.strip())
                    copies[mutant.name()] += 1
                    mutants.append(dataclasses.replace(mutant, copy=copies[mutant.name()], is_compiled=number not in others))
    return mutants


def apply(root, mutant):
    """Writes the mutant into the tree; returns what undoes it, the file's time too."""
    path = root / mutant.file
    time = path.stat().st_mtime_ns
    text = path.read_text()
    lines = text.split("\n")
    old = lines[mutant.line - 1]
    indentation = old[: len(old) - len(old.lstrip())]
    lines[mutant.line - 1] = indentation + (mutant.after or ";")
    path.write_text("\n".join(lines))

    def undo():
        path.write_text(text)
        os.utime(path, ns=(time, time))

    return undo
