"""Whether CHANGELOG.md has the form of Keep a Changelog: versions with their days, the newest first, changes under
the six headings in their order; and whether the newest version is the header's and that of the Debian packages.

Usage: check_changelog.py CHECKOUT
"""
import re
import sys
from datetime import date
from email.utils import parsedate_to_datetime
from pathlib import Path

KINDS = ["Added", "Changed", "Deprecated", "Removed", "Fixed", "Security"]
UNRELEASED = "[Unreleased]"
RELEASE = re.compile(r"\[(\d+)\.(\d+)\.(\d+)\] - (\d{4}-\d{2}-\d{2})")


def releases_of(changelog):
    """(heading, text) of each."""
    parts = re.split(r"^## (.*)\n", changelog, flags=re.MULTILINE)[1:]
    return list(zip(parts[::2], parts[1::2]))


def faults_of_kinds(heading, text):
    kinds = re.findall(r"^### (.*)$", text, re.MULTILINE)
    if any(kind not in KINDS for kind in kinds) or kinds != sorted(set(kinds), key=KINDS.index):
        yield f"{heading}: the headings are {kinds}, and not some of {KINDS} in this order"
    for part in re.split(r"^### .*\n", text, flags=re.MULTILINE)[1:]:
        if not part.strip().startswith("- "):
            yield f"{heading}: a heading has no list: {part.strip()[:60]!r}"


def faults(changelog, version, debian):
    """debian: the newest entry of the packages' changelog, as (version, day)."""
    if not changelog.startswith("# Changelog\n"):
        yield "it does not begin with its title"
    releases = releases_of(changelog)
    for heading, text in releases:
        if heading != UNRELEASED and not RELEASE.fullmatch(heading):
            yield f"{heading}: it is no version with its day"
            return
        yield from faults_of_kinds(heading, text)
    if not releases or releases[0][0] != UNRELEASED:
        yield f"{UNRELEASED} does not come first"
    found = [RELEASE.fullmatch(heading).groups() for heading, _ in releases if heading != UNRELEASED]
    numbers = [(tuple(map(int, one[:3])), date.fromisoformat(one[3])) for one in found]
    if not numbers or numbers != sorted(numbers, reverse=True):
        yield f"the versions do not stand from the newest to the oldest: {found}"
        return
    newest = ".".join(found[0][:3])
    if newest != version:
        yield f"the newest version is {newest}, the header's {version}"
    if debian != (newest, found[0][3]):
        yield f"the newest version is {(newest, found[0][3])}, the Debian packages' {debian}"


def main():
    checkout = Path(sys.argv[1])
    header = (checkout / "include/tavrel/tavrel.h").read_text(encoding="utf-8")
    version = re.search(r'#define TAVREL_VERSION "([0-9.]+)"', header).group(1)
    packages = (checkout / "packaging/debian/changelog").read_text(encoding="utf-8")
    day = parsedate_to_datetime(re.search(r"^ -- .*?  (.*)$", packages, re.MULTILINE).group(1)).date()
    debian = (re.match(r"tavrel \(([0-9.]+)-", packages).group(1), str(day))
    found = list(faults((checkout / "CHANGELOG.md").read_text(encoding="utf-8"), version, debian))
    print("\n".join(f"CHANGELOG.md: {fault}" for fault in found) or "the changelog has its form")
    return 1 if found else 0


sys.exit(main())
