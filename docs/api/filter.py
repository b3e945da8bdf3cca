"""Shows the public header to doxygen: filter.py HEADER

The header is written to be read as it is. Here its comments become doxygen's: what stands above a declaration or
behind a field describes it, "name:" a parameter, "Result:" what is returned, "Cost:" a paragraph of its own; a
heading of dashes opens a group.
"""
import re
import sys

COMMENT = re.compile(r"^(?P<before>[^\n/]*)/\*(?P<text>.*?)\*/", re.MULTILINE | re.DOTALL)
HEADING = re.compile(r"^ ---- (?P<title>.*?) -+(?P<text>.*)$", re.DOTALL)
LABEL = re.compile(r"^(?P<stars> \*)? (?P<name>[A-Za-z]\w*): +(?=\S)")
QUOTED = re.compile(r'("[^"\n]*")')
TABLE = re.compile(r"(?<=\n \*\n)((?: \* {3,}\S.*\n)+)")
NUMBERED = re.compile(r"^(?P<stars> \*) +(?P<value>-?\d)  (?=\S)")
COMMANDS = {"Result": "@return ", "Cost": "@par Cost\n * "}


def escaped(text):
    """What would be a command or a tag is none; between quotes nothing is."""
    parts = QUOTED.split(text)
    return "".join(part if part.startswith('"') else re.sub(r"([&<>#@\\%])", r"\\\1", part) for part in parts)


def described(text, names):
    """The text of a comment, tables as they stand; `names` are those of the parameters of what it describes."""
    parts = TABLE.split(text)
    parts[::2] = [paragraphs(part, names) for part in parts[::2]]
    parts[1::2] = ["@verbatim\n" + re.sub(r"^ \* ", "", part, flags=re.MULTILINE) + "@endverbatim\n"
                   for part in parts[1::2]]
    return "".join(parts)


def paragraphs(text, names):
    lines, labelled = [], False
    for line in escaped(text).split("\n"):
        label = LABEL.match(line)
        if label and (label["name"] in COMMANDS or label["name"] in names):
            command = COMMANDS.get(label["name"], f"@param {label['name']} ")
            line = f"{label['stars'] or ''} {command}{line[label.end():]}"
            line = re.sub(r"^( \* @return )(-?\d)  ", r"\1\n * - `\2` ", line)
            labelled = label["stars"] is not None
        elif labelled and re.match(r" \* \S", line):  # set back to the margin: a new paragraph
            lines.append(" *")
            labelled = False
        lines.append(NUMBERED.sub(r"\g<stars> - `\g<value>` ", line))
    return "\n".join(lines)


def names_behind(header, place):
    """Of the parameters of the declaration that begins at `place`."""
    declaration = re.match(r"\s*((?:TAVREL_API|typedef)[^;{]*)", header[place:])
    return set(re.findall(r"(\w+)\s*[,)]", declaration[1])) if declaration else set()


def shown(header):
    opened = False

    def replace(match):
        nonlocal opened
        before, text = match["before"], match["text"]
        heading = HEADING.match(text)
        if heading:
            close, opened = ("/** @} */ " if opened else ""), True
            slug = re.sub(r"\W+", "_", heading["title"].lower()).strip("_")
            body = described(heading["text"].rstrip(), set())
            return f"{close}/** @defgroup {slug} {heading['title']}{body}\n * @{{ */"
        if before.strip().startswith(("#", "}")):
            return match.group()
        if before.strip():
            return f"{before}/**<{described(text, set())}*/"
        if not opened and "Tavrel:" in text:
            return f"/** @file tavrel.h\n * The whole interface. */ /** @mainpage Tavrel\n *{described(text, set())}*/"
        return f"/**{described(text, names_behind(header, match.end()))}*/"

    result = COMMENT.sub(replace, header)
    end = result.rfind("#if defined(__cplusplus)")
    return result[:end] + ("/** @} */\n" if opened else "") + result[end:]


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as file:
        sys.stdout.write(shown(file.read()))
