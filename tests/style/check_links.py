"""Whether every link of the documents leads somewhere: to a file or a folder of the checkout, and to a heading
where it names one; and whether the index of docs/ names every document of its folder.

Usage: check_links.py CHECKOUT

What leads out of the checkout (https:, mailto:) is not followed: no test needs a network.
"""
import posixpath
import re
import sys
from urllib.parse import unquote

import sources

INDEX = "docs/README.md"

FENCE = re.compile(r"^(```|~~~).*?^\1[^\n]*$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"(`+)(?!`).*?(?<!`)\1(?!`)", re.DOTALL)
# The target of [text](target "title"), of ![picture](target), of [name]: target, and of HTML's own.
LINK = re.compile(r"\]\(\s*<?([^()\s<>]+(?:\([^()\s]*\)[^()\s<>]*)?)>?(?:\s+\"[^\"]*\")?\s*\)"
                  r"|^\s{0,3}\[[^\]]+\]:\s*<?([^\s>]+)"
                  r"|<(?:a|img|source)\s[^>]*?(?:href|src|srcset)=\"([^\"\s]+)", re.MULTILINE)
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*#*$", re.MULTILINE)
ANCHOR = re.compile(r"<a\s[^>]*?(?:id|name)=\"([^\"]+)\"")
OUTSIDE = re.compile(r"^[a-z][a-z0-9+.-]*:", re.IGNORECASE)


def links_of(document):
    """Targets of links, as they are written; what stands in code is none."""
    text = CODE.sub("", FENCE.sub("", document))
    return [next(filter(None, match.groups())) for match in LINK.finditer(text)]


def anchors_of(document):
    """The names by which headings are reached: lower case, words joined by hyphens, equal ones numbered."""
    anchors, seen = set(ANCHOR.findall(document)), {}
    for heading in HEADING.findall(FENCE.sub("", document)):
        text = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "")
        name = re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")
        count = seen.get(name, 0)
        seen[name] = count + 1
        anchors.add(f"{name}-{count}" if count else name)
    return anchors


def fault_of(path, link, documents, places):
    """What is wrong with one link of the document at `path`; nothing when it leads somewhere."""
    if OUTSIDE.match(link):
        return None
    target, _, anchor = link.partition("#")
    place = posixpath.normpath(posixpath.join(posixpath.dirname(path), unquote(target))) if target else path
    if place not in places:
        return f"{path}: {link}: there is no such file"
    if anchor and unquote(anchor) not in anchors_of(documents.get(place, "")):
        return f"{path}: {link}: there is no such heading"
    return None


def faults(documents, files):
    """Of {path: text} of the documents, among the paths of all files."""
    places = {"."} | set(files)
    for path in files:
        while path := posixpath.dirname(path):
            places.add(path)
    found = [fault_of(path, link, documents, places) for path, text in documents.items() for link in links_of(text)]
    folder = posixpath.dirname(INDEX)
    named = {posixpath.normpath(posixpath.join(folder, link)) for link in links_of(documents.get(INDEX, ""))}
    found += [f"{INDEX}: does not name {path}" for path in sorted(documents)
              if posixpath.dirname(path) == folder and path != INDEX and path not in named]
    return [fault for fault in found if fault]


def main():
    root = sys.argv[1]
    documents = sources.read_all(root, lambda path: path.endswith(".md"))
    found = faults(documents, sources.tracked(root))
    count = sum(len(links_of(text)) for text in documents.values())
    if not count:
        found.append("there are no links")
    print("\n".join(found) or f"{count} links of {len(documents)} documents lead somewhere")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
