"""Asks bash, zsh and fish what they complete, each with what is installed for it, and man for its page.

Usage: check_shells.py TAVREL INSTALL_SCRIPT
"""
import os
import pathlib
import plistlib
import pty
import re
import shlex
import subprocess
import sys
import tempfile
import threading

COMMANDS = {"covers", "playlists", "ringtones", "search", "songs", "stats", "help", "completion"}

# A command line whose last word is completed; what must be among the answers, and what must not.
CASES = [
    ("tavrel ", COMMANDS, {"artwork", "--json", "note.txt"}),
    ("tavrel so", {"songs"}, {"search"}),
    ("tavrel --json --color never st", {"stats"}, {"songs"}),
    ("tavrel -l songs pl", {"playlists"}, set()),
    ("tavrel ringtones ", {"add"}, {"songs"}),
    ("tavrel help so", {"songs"}, {"stats"}),
    ("tavrel completion ", {"bash", "zsh", "fish"}, {"note.txt"}),
    ("tavrel --ver", {"--version", "--verbose"}, {"--json"}),
    ("tavrel songs --re", {"--reverse"}, {"--count"}),
    ("tavrel songs Everything --for", {"--format"}, set()),
    ("tavrel artwork --per", {"--per-song"}, set()),
    ("tavrel ringtones add --", {"--force", "--json"}, {"--all"}),
    ("tavrel --color ", {"auto", "always", "never"}, COMMANDS),
    ("tavrel --color=al", {"always"}, {"auto"}),
    ("tavrel stats --top ", {"all"}, COMMANDS),
    ("tavrel songs --format ", {"table", "json", "jsonl", "csv", "tsv"}, {"note.txt"}),
    ("tavrel stats --by al", {"album", "albumArtist"}, {"artist"}),
    ("tavrel songs --sort ra", {"rating", "ratingComputed"}, {"all"}),
    ("tavrel songs --fields na", {"name"}, {"artist"}),
    ("tavrel songs --fields name,a", {"name,artist", "name,all"}, {"name,name"}),
    ("tavrel -l library.xml songs ", {"Road trip", "It's late", "plain"}, COMMANDS),
    ("tavrel -l library.xml songs Ro", {"Road trip"}, {"plain"}),
    ("tavrel --library=library.xml songs --reverse pl", {"plain"}, {"Road trip"}),
    ("tavrel songs ", set(), {"plain"}),
    ("tavrel --library no", {"note.txt"}, COMMANDS),
    ("tavrel page -o ", {"note.txt"}, {"FILE.html"}),
    ("tavrel -l library.xml covers ", {"note.txt", "Road trip"}, COMMANDS),
    ("tavrel ringtones add no", {"note.txt"}, set()),
]


def make_folder(folder):
    pathlib.Path(folder, "note.txt").write_text("")
    lists = [{"Name": name, "Playlist Items": []} for name in ("Road trip", "It's late", "plain")]
    library = {"Tracks": {"1": {"Track ID": 1}}, "Playlists": lists}
    pathlib.Path(folder, "library.xml").write_bytes(plistlib.dumps(library))


def split_as_bash(line):
    """The words that bash sees, and the one that is completed last."""
    words = re.findall(r"=|(?:[^\s=\\]|\\.)+", line)
    return words + [""] if line.endswith(" ") else words


def bash_answers(lines, script, folder):
    # Completing files is what readline does itself, when it is asked to.
    program = f"source {shlex.quote(str(script))}\ncompopt() {{ asked+=\" $*\"; }}\n"
    for line in lines:
        words = split_as_bash(line)
        program += f"COMP_WORDS=({' '.join(shlex.quote(word) for word in words)}) COMP_CWORD={len(words) - 1}\n"
        program += """asked= COMPREPLY=(); _tavrel tavrel
[[ $asked != *default* ]] || COMPREPLY+=($(compgen -f -- "${COMP_WORDS[COMP_CWORD]}"))
printf '%s\\n' "${COMPREPLY[@]}" @end
"""
    return answers_of(["bash", "--norc", "-u", "-c", program], folder)


def fish_answers(lines, script, folder):
    program = f"source {shlex.quote(str(script))}\n"
    for line in lines:
        program += f"complete -C {shlex.quote(line)} | string split -f 1 \\t; echo @end\n"
    answers = answers_of(["fish", "--no-config", "-c", program], folder)
    # fish answers with the whole word.
    return [{answer.partition("=")[2] if answer.startswith("--") and "=" in answer else answer for answer in one}
            for one in answers]


def answers_of(command, folder):
    done = subprocess.run(command, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if done.stderr or done.returncode:
        sys.exit(f"{command[0]} ends with {done.returncode} and says {done.stderr.decode()}")
    answers, one = [], set()
    for line in done.stdout.decode().splitlines():
        if line == "@end":
            answers.append(one)
            one = set()
        elif line:
            one.add(line.rstrip("/ "))
    return answers


# A key that completes with every match at once, tells what the line has become, and clears it.
ZSH = """PROMPT=; autoload -Uz compinit; compinit -u -D
insert-all() { compstate[insert]=all; }
show() { comppostfuncs=(insert-all); zle complete-word; print -rN -u $ANSWERS -- "$BUFFER"; BUFFER=; }
zle -N show; bindkey '^T' show
print -rN -u $ANSWERS ready
"""


def zsh_answers(lines, script, folder):
    """zsh completes for a person only: it gets a terminal, and the answers come through a pipe."""
    master, slave = pty.openpty()
    reader, writer = os.pipe()
    environment = dict(os.environ, ANSWERS=str(writer), TERM="dumb", ZDOTDIR=folder)
    pathlib.Path(folder, ".zshrc").write_text(f"fpath=({shlex.quote(str(script.parent))} $fpath)\n{ZSH}")
    shell = subprocess.Popen(["zsh", "-d", "-i"], stdin=slave, stdout=slave, stderr=slave, cwd=folder,
                             env=environment, pass_fds=[writer], start_new_session=True)
    os.close(slave)
    os.close(writer)
    screen = bytearray()
    threading.Thread(target=drain, args=(master, screen), daemon=True).start()
    with os.fdopen(reader, "rb") as answers:
        parts = parts_of(answers)
        if next(parts, None) != "ready":
            sys.exit(f"zsh does not start: {screen.decode(errors='replace')}")
        found = []
        for line in lines:
            os.write(master, line.encode() + b"\x14")
            whole = next(parts, None)
            if whole is None:
                sys.exit(f"zsh ends at {line}: {screen.decode(errors='replace')}")
            start = line[:max(line.rfind(" "), line.rfind("=")) + 1]
            found.append({word.rstrip("/,") for word in shlex.split(whole[len(start):])})
    shell.kill()
    shell.wait()
    return found


def drain(descriptor, screen):
    try:
        while piece := os.read(descriptor, 4096):
            screen.extend(piece)
    except OSError:
        pass  # the shell has gone


def parts_of(stream):
    part = b""
    while byte := stream.read(1):
        if byte == b"\0":
            yield part.decode()
            part = b""
        else:
            part += byte


def check_shell(name, answers_to, script, folder, cases):
    if not script.exists():
        return [f"{name}: nothing is installed at {script}"]
    failures = []
    answers = answers_to([line for line, _, _ in cases], script, folder)
    if len(answers) != len(cases):
        return [f"{name}: {len(answers)} answers"]
    for (line, wanted, unwanted), answer in zip(cases, answers):
        if not wanted <= answer or answer & unwanted:
            failures.append(f"{name}: {line!r} gives {sorted(answer)}")
    return failures


def check_page(page):
    """man and groff read the page without a complaint, and it has every command."""
    if not page.exists():
        return [f"nothing is installed at {page}"]
    failures = []
    if re.search(r"^\.S[HS].*\n\.PP", page.read_text(encoding="utf-8"), re.MULTILINE):
        failures.append("the page has a paragraph break below a heading")
    environment = dict(os.environ, LC_ALL="C.UTF-8", MANROFFSEQ="", MANWIDTH="80", MAN_KEEP_FORMATTING="")
    for command in (["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-P", "cat"],
                    ["groff", "-ww", "-man", "-Tutf8", "-k"]):
        done = subprocess.run([*command, str(page)], env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              check=False)
        if done.returncode or done.stderr:
            failures.append(f"{command[0]} ends with {done.returncode} and says {done.stderr.decode()}")
        text = re.sub(r"\x1b\[[0-9;]*m|.\x08", "", done.stdout.decode())
        for part in [f"tavrel {command}" for command in COMMANDS] + ["--library PATH", "EXIT CODES", "EXAMPLES"]:
            if part not in text:
                failures.append(f"{command[0]} shows no {part!r}")
    return failures


def main():
    tavrel, install = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    os.environ["PATH"] = f"{tavrel.parent}:{os.environ['PATH']}"
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        os.environ["HOME"] = folder
        make_folder(folder)
        prefix = pathlib.Path(folder, "installed")
        subprocess.run(["cmake", f"-DCMAKE_INSTALL_PREFIX={prefix}", "-P", str(install)], check=True,
                       stdout=subprocess.DEVNULL)
        share = prefix / "share"
        for name, answers, script in (("bash", bash_answers, "bash-completion/completions/tavrel"),
                                      ("zsh", zsh_answers, "zsh/site-functions/_tavrel"),
                                      ("fish", fish_answers, "fish/vendor_completions.d/tavrel.fish")):
            failures += check_shell(name, answers, share / script, folder, CASES)
        failures += check_page(share / "man/man1/tavrel.1")
    print("\n".join(failures))
    return 1 if failures else 0


sys.exit(main())
