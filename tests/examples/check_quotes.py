"""Looks whether the code that the documents show stands in examples/, where it is built and run.

Usage: check_quotes.py, in the top folder of the checkout.
"""
import re
import sys
import textwrap
from pathlib import Path

DOCUMENTS = ("README.md", "docs/hosts.md", "bindings/python/README.md", "bindings/node/README.md")
ENDINGS = {"c": ".c", "cpp": ".cpp", "python": ".py", "js": ".js"}
WHOLE_HOSTS_IN = "README.md"

BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def is_quoted(code, source):
    """Whether the lines stand in the source as they are, one after the other, more or less far to the right."""
    lines = textwrap.dedent(code).split("\n")
    of_source = source.split("\n")
    for start in range(len(of_source) - len(lines) + 2):
        part = textwrap.dedent("\n".join(of_source[start:start + len(lines) - 1]) + "\n")
        if part == "\n".join(lines):
            return True
    return False


def faults(documents, examples):
    """documents, examples: {name: text}"""
    found = []
    for name, text in documents.items():
        whole = set()
        for language, code in BLOCK.findall(text):
            if language not in ENDINGS:
                continue
            sources = [source for file, source in examples.items() if file.endswith(ENDINGS[language])]
            if code in sources:
                whole.add(language)
            if not any(is_quoted(code, source) for source in sources):
                found.append(f"{name}: this stands in no example:\n{code}")
        if name == WHOLE_HOSTS_IN:
            found += [f"{name} shows no host in {language}" for language in ENDINGS if language not in whole]
    return found


def main():
    documents = {name: Path(name).read_text(encoding="utf-8") for name in DOCUMENTS}
    examples = {file.name: file.read_text(encoding="utf-8") for file in Path("examples").iterdir()}
    blocks = sum(len(BLOCK.findall(text)) for text in documents.values())
    found = faults(documents, examples)
    print("\n".join(found) or f"{blocks} pieces of code stand in examples/")
    return 1 if found or blocks == 0 else 0


sys.exit(main())
