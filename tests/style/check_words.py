"""Looks for what the sources of the library must not say, and what no file of the project may.

Usage: check_words.py CHECKOUT
"""
import re
import sys

import sources

# In the code of the library, comments and literals left out: (pattern, rule, the files that may).
CODE_RULES = (
    (re.compile(r"\bcatch\b"), "exceptions are caught in one place", ("system/Guard.h",)),
    (re.compile(r"\bstd::(basic_)?w?regex\b|<regex>"), "std::regex leaves unique symbols behind", ()),
    (re.compile(r"\bmake_shared\b|\bshared_ptr\b"), "std::make_shared leaves unique symbols behind", ()),
    (re.compile(r"\b__builtin_prefetch\b|\b_mm_prefetch\b"), "what is fetched ahead may lie outside an array: ask through numbers",
     ("system/Prefetch.h",)),
    (re.compile(r"\bthread_local\b"), "a thread's storage would need destruction", ()),
    (re.compile(r"<(locale|iostream|sstream|fstream|iomanip|ctype\.h|cctype|clocale|locale\.h)>"),
     "what this header offers asks the locale", ()),
)

# In every text.
TEXT_RULES = (
    (re.compile(r"\boriginal[ \n]+(interface|layout|library|reader|system|program|agent|version)", re.IGNORECASE),
     "the project speaks of itself alone"),
    (re.compile(r"\bspec(ification)?s?\b", re.IGNORECASE), "the rule is stated, not a document that has it"),
    (re.compile(r"(?<![\w.])/(work|root)/\w"), "paths of one machine are nobody else's"),
    (re.compile(r"[ \t]+$", re.MULTILINE), "no blanks at the end of a line"),
)

# A test that a busy machine makes fail is no test: work is counted.
CLOCK = re.compile(r"\b(steady_clock|system_clock|high_resolution_clock|clock_gettime|getrusage|gettimeofday"
                   r"|clock_t|CLOCKS_PER_SEC)\b|\bclock\(\)")

COMMENT = re.compile(r"^(\s*)(?://|#) ?(\s*)(\S.*)$")
LONG = 70


def is_text_of_ours(path):
    """Not the sample library, which speaks of music, nor inputs of fuzz targets."""
    return not path.startswith(("samples/home/", "fuzz/corpus/"))


def line_of(text, place):
    return text.count("\n", 0, place) + 1


def torn_comments(path, text):
    """Lines of one or two words within a paragraph, between a long line and one that goes on."""
    lines = [COMMENT.match(line) for line in text.split("\n")]
    for number in range(1, len(lines) - 1):
        before, line, after = lines[number - 1:number + 2]
        if not (before and line and after) or len({part.group(1) for part in (before, line, after)}) > 1:
            continue
        torn = (len(before.group()) >= LONG and len(line.group(3).split()) <= 2
                and re.search(r"[\w,]$", line.group(3)) and re.match(r"[a-z]", after.group(3))
                and re.search(r"[\w,]$", before.group(3)))
        if torn:
            yield f"{path}:{number + 1}: a comment torn by a reflow: {line.group(3)}"


def faults(texts):
    found = []
    for path, text in texts.items():
        code = sources.without_comments_and_literals(text) if sources.is_code(path) else ""
        if sources.is_shipped(path):
            for pattern, rule, allowed in CODE_RULES:
                if path not in allowed:
                    found += [f"{path}:{line_of(code, match.start())}: {match.group()}: {rule}"
                              for match in pattern.finditer(code)]
        if path.startswith("tests/"):
            found += [f"{path}:{line_of(code, match.start())}: {match.group()}: no test decides by a clock"
                      for match in CLOCK.finditer(code)]
        for pattern, rule in TEXT_RULES:
            found += [f"{path}:{line_of(text, match.start())}: {match.group()!r}: {rule}"
                      for match in pattern.finditer(text)]
        if sources.is_code(path) or path.endswith((".txt", ".cmake")):
            found += torn_comments(path, text)
    return found


def main():
    texts = sources.read_all(sys.argv[1], is_text_of_ours)
    found = faults(texts)
    print("\n".join(found) or f"{len(texts)} files say nothing that they must not")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
