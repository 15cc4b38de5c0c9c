#!/usr/bin/env python3
"""What a program that is already compiled takes for granted of the C interface: prototypes, data, enumerators, and the layout
of the records with 32-bit and 64-bit words. Compared with interface.txt beside this file.

Usage: interface_test.py C-COMPILER SOURCE-DIRECTORY [--write]     --write: the description is that of the headers from now on
"""
import difflib
import os
import re
import subprocess
import sys
import tempfile

compiler, source = sys.argv[1:3]
include = os.path.join(source, "include")
description = os.path.join(os.path.dirname(os.path.abspath(__file__)), "interface.txt")
scratch = tempfile.TemporaryDirectory()


def compiled(*arguments, text):
    return subprocess.run([compiler, "-std=gnu11", f"-I{include}", *arguments, "-"], input=text, check=True,
                          capture_output=True, text=True).stdout


def numbers(names, headers, word):
    """The expressions' values where words have so many bits."""
    # Doubles are aligned as on the devices, not as in the oldest 32-bit interface of this processor.
    how = ["-m32", "-malign-double"] if word == 32 else ["-m64"]
    listed = ", ".join(f"(int)({name})" for name in names)
    assembly = compiled("-xc", *how, "-S", "-o", "-", text=f"{headers}\nconst int kova_numbers[] = {{{listed}}};\n")
    values = assembly[assembly.index("kova_numbers:"):]
    found = re.findall(r"\.(long|zero)\s+(-?\d+)", values)
    flat = [value for kind, text in found for value in ([int(text)] if kind == "long" else [0] * (int(text) // 4))]
    return flat[:len(names)]


preprocessed = compiled("-xc", "-E", text="#include <kova.h>\n")
own, of_ours = [], False  # the text of our own headers
for line in preprocessed.splitlines():
    if mark := re.match(r'# \d+ "([^"]*)"', line):
        of_ours = mark[1].startswith(include)
    elif of_ours and not line.startswith("#"):
        own.append(line)
own = "\n".join(own)
headers = re.sub(r"^#.*$", "", preprocessed, flags=re.M)

lines = []  # in an order that does not depend on where it is declared
for declared in re.findall(r"^typedef [^{};]*;|^extern [^(){};]*;", own, re.M):
    lines.append(" ".join(declared.split()))

prototypes = os.path.join(scratch.name, "prototypes")
compiled("-xc", "-fsyntax-only", "-aux-info", prototypes, text="#include <kova.h>\n")
with open(prototypes, encoding="utf-8") as file:
    for line in file:
        if found := re.match(r"/\* " + re.escape(include) + r"[^ ]* \*/ extern (.*;)", line):
            lines.append(found[1])

lines.sort(key=lambda line: re.search(r"(\w+)\W*(?:\(.*\))?\W*;$", line)[1])

questions = {}  # as it is told -> the expression
for body in re.findall(r"\benum\s*\w*\s*\{([^}]*)\}", own):
    for name in re.findall(r"(?:^|,)\s*(\w+)", body):
        questions[name] = name
for body, record in re.findall(r"\bstruct\s*\w*\s*\{([^}]*)\}\s*(\w+);", own):
    questions[f"sizeof({record})"] = f"sizeof({record})"
    for members in filter(str.strip, body.split(";")):
        for member in members.split(","):
            name = re.search(r"(\w+)\s*(?:\[[^\]]*\]\s*)*$", member.strip())[1]
            questions[f"{record}.{name}"] = f"__builtin_offsetof({record}, {name})"
values = {word: numbers(questions.values(), headers, word) for word in (32, 64)}
for number, told in enumerate(questions):
    both = sorted({values[32][number], values[64][number]})
    lines.append(f"{told} = {' or '.join(map(str, both))}")  # the smaller one with 32-bit words

if len(lines) < 1000 or "sizeof(PendingValue) = 8 or 16" not in lines:
    sys.exit("the headers could not be read")
now = [line + "\n" for line in lines]
if "--write" in sys.argv:
    with open(description, "w", encoding="utf-8") as file:
        file.writelines(now)
else:
    with open(description, encoding="utf-8") as file:
        changes = list(difflib.unified_diff(file.readlines(), now, "interface.txt", "headers", n=0))
    sys.stdout.writelines(changes)
    sys.exit(bool(changes))
