#!/usr/bin/env python3
"""The shape of the sources. Usage: source_test.py CHECK SOURCE-DIRECTORY

layers  an #include between directories goes along an arrow that is written here, and the arrows make no circle
macros  how many words the library's own dialect has, and that none has two meanings
width   a table's row stays on the screen
share   how much of the code is tests; tables and texts are no code
"""
import collections
import os
import re
import subprocess
import sys

FAMILIES = {"accounts", "diagnostics", "lan", "management", "radio", "sas", "security", "time", "voice", "wan"}
# Where one family's rules are another's subject.
BETWEEN_FAMILIES = {("wan", "management")}

# Every directory's own ones below it. "src" is what the host may know of the library's inside: its tables and records.
BELOW = {
    "src/frame": {"platform"},
    "src/lists": {"src/frame", "platform"},
    "src/transaction": {"src/frame", "src/lists", "platform"},
    **{f"src/{family}": {"src/frame", "src/lists", "src/transaction", "platform"}
       | {f"src/{other}" for one, other in BETWEEN_FAMILIES if one == family} for family in FAMILIES},
    "src/batch": {"src/frame", "src/lists", "src/transaction", "platform"} | {f"src/{family}" for family in FAMILIES},
    "platform": set(),
    "platform/host": {"platform"},
    "model": {"src", "platform"},
    "device": {"src/frame", "platform", "platform/host"},
    "request": {"model", "device", "src/frame", "platform", "platform/host"},
    "agent": {"request", "model", "device", "src/frame", "platform", "platform/host"},
    "tools": {"agent", "request", "model", "device", "src/frame", "platform", "platform/host"},
    "examples": set(),
}
ANYTHING = {"tests", "fuzz", "bench"}  # nobody includes them

MACROS = 30
COLUMNS = 130
TEST_SHARE = 0.30


def files(*suffixes):
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], capture_output=True, text=True)
    if listed.returncode == 0:
        names = listed.stdout.splitlines()
    else:  # an archive of the sources
        names = [os.path.relpath(os.path.join(top, name)) for top, _, inside in os.walk(".")
                 for name in inside if not top.startswith(("./build", "./."))]
    return sorted(name for name in names if name.endswith(suffixes) and os.path.isfile(name))


def text(name):
    with open(name, encoding="utf-8") as file:
        return file.read()


def directory(name):
    parts = name.split("/")
    if parts[0] == "src" and len(parts) > 2 or parts[:2] == ["platform", "host"]:
        return "/".join(parts[:2])
    return parts[0]


def circle(arrows):
    """Directories in a circle, or nothing."""
    done, path = set(), []

    def visit(node):
        if node in path:
            return path[path.index(node):] + [node]
        if node in done:
            return None
        path.append(node)
        found = next(filter(None, map(visit, sorted(arrows.get(node, ())))), None)
        path.pop()
        done.add(node)
        return found

    return next(filter(None, map(visit, sorted(arrows))), None)


def layers():
    arrows = collections.defaultdict(set)
    for name in files(".c", ".cc", ".cpp", ".h", ".hpp", ".def", ".in"):
        here = directory(name)
        for included in re.findall(r'^\s*#\s*include "([^"]+)"', text(name), re.M):
            candidates = [included, os.path.normpath(os.path.join(os.path.dirname(name), included)), f"tests/{included}",
                          f"tools/{included}"]
            there = next((directory(path) for path in candidates if os.path.isfile(path)), None)
            if there is None:
                yield f"{name}: {included} is nowhere"
            elif there != here:
                arrows[here].add(there)
                below = BELOW.get(here, set())
                if here not in ANYTHING and there not in below and there.split("/")[0] not in below - {"platform"}:
                    yield f"{name}: {here} does not include {there}: {included}"
    if not arrows:
        yield "no #include was found"
    if found := circle(arrows):
        yield "a circle: " + " -> ".join(found)


def macros():
    # Guards are no words; a word that a table's reader defines anew for each reading has one meaning in each.
    meanings = collections.defaultdict(set)
    count = 0
    for name in files(".cpp", ".hpp", ".h", ".def"):
        if name.startswith("src/"):
            for word, body in re.findall(r"^\s*#\s*define\s+(\w+)((?:.*\\\n)*.*)", text(name), re.M):
                count += 1
                meanings[word].add(name)
    if count > MACROS:
        yield f"{count} #define in src, at most {MACROS}"
    for word, places in sorted(meanings.items()):
        if len(places) > 1:
            yield f"{word} is defined in {', '.join(sorted(places))}"


def width():
    for name in files(".cpp", ".hpp", ".h", ".def"):
        if name.startswith("src/"):
            for number, line in enumerate(text(name).splitlines(), 1):
                if len(line) > COLUMNS:
                    yield f"{name}:{number}: {len(line)} columns, at most {COLUMNS}"


def code_lines(name):
    """Without blank lines and comments."""
    whole = text(name)
    if name.endswith((".py", ".sh")):
        whole = re.sub(r'^\s*"""(.|\n)*?"""', "", whole, flags=re.M)
        return sum(1 for line in whole.splitlines() if line.strip() and not line.strip().startswith("#"))
    strings_or_comments = re.compile(r'R"(\w*)\((?:.|\n)*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|//[^\n]*|/\*(?:.|\n)*?\*/')
    whole = strings_or_comments.sub(lambda found: "" if found[0].startswith("/") else found[0], whole)
    return sum(1 for line in whole.splitlines() if line.strip())


def share():
    lines = collections.Counter()
    for name in files(".c", ".cc", ".cpp", ".h", ".hpp", ".sh", ".py"):
        lines["tests" if name.startswith(("tests/", "fuzz/")) else "code"] += code_lines(name)
    part = lines["tests"] / lines.total()
    print(f"{lines['tests']} of {lines.total()} lines are tests: {part:.1%}")
    if part > TEST_SHARE:
        yield f"more than {TEST_SHARE:.0%}"


os.chdir(sys.argv[2])
complaints = list({"layers": layers, "macros": macros, "width": width, "share": share}[sys.argv[1]]())
print("\n".join(complaints))
sys.exit(bool(complaints))
