#!/usr/bin/env python3
"""Prints how many branches of some sources the tests took: coverage.py PROFILE LEAST NAME=PATTERN... -- PROGRAM...

A room is all sources whose path begins as PATTERN, a regular expression; the exit code is 1 when one of them is below LEAST
percent. PROFILE is what the programs counted, merged by llvm-profdata.

A branch is what the source says, as clang records it: each condition of an if, a loop or a ?:, and each operand of && and ||,
has two, that it holds and that it does not; so has each case of a switch. Instances of a template count together. What the
compiler adds of its own (handlers, temporaries that are taken down) is none. Left out, because nobody wrote them: conditions whose
value the compiler knows (if constexpr), constexpr functions that only the compiler runs, and the way past all cases of a
switch without a default (-Wswitch sees to it that each value of an enumeration has its case)."""
import json
import os
import re
import subprocess
import sys

# Tests, headers of the system, and what other programs write.
OTHERS = r"^/usr/|/tests/|/fuzz/|/moc_|\.moc$"
FOLDED = re.compile(r"Branch \((\d+):(\d+)\): \[Folded - Ignored\]")


def tool(name, *arguments):
    return subprocess.run([name, *arguments], capture_output=True, text=True, check=True).stdout


def in_project(path):
    return os.path.relpath(path)


def folded_places(text):
    """Paths, lines and columns of the conditions whose value the compiler knows."""
    places, path = set(), None
    for line in text.split("\n"):
        if line.startswith("/") and line.endswith(":"):
            path = in_project(line[:-1])
        for number, column in FOLDED.findall(line):
            places.add((path, int(number), int(column)))
    return places


def text_of(path, texts={}):
    if path not in texts:
        texts[path] = open(path, encoding="utf-8").read().split("\n")
    return texts[path]


def runs_in_compiler(function, path, line, symbols):
    """Whether a function that no program has is one for the compiler: constexpr stands in front of its body."""
    if function["name"].split(":")[-1] in symbols:
        return False
    text = text_of(path)
    head = text[line - 1]
    while not re.search(r"[;}]\s*$", text[line - 2]) and line > 1:
        line -= 1
        head = text[line - 1] + " " + head
    return re.search(r"\b(constexpr|consteval|static_assert)\b", head) is not None


def passes_all_cases(path, line, column):
    return text_of(path)[line - 1][: column - 1].endswith("switch (")


def read_branches(profile, programs, wanted):
    """For each place of a condition: how often it held and how often not."""
    sources = ["-instr-profile=" + profile, "-ignore-filename-regex=" + OTHERS, programs[0]]
    sources += [f"-object={program}" for program in programs[1:]]
    functions = json.loads(tool("llvm-cov", "export", *sources))["data"][0]["functions"]
    folded = folded_places(tool("llvm-cov", "show", "-show-branches=count", *sources))
    symbols = {line.split()[-1] for program in programs for line in tool("nm", program).split("\n") if line}
    branches = {}
    for function in functions:
        for first, column, last, end, held, failed, file, *_ in function["branches"]:
            path = in_project(function["filenames"][file])
            if not wanted.match(path):
                continue
            if runs_in_compiler(function, path, function["regions"][0][0], symbols):
                continue
            if passes_all_cases(path, first, column):
                continue
            counts = branches.setdefault((path, first, column, last, end), [0, 0])
            counts[0] += held
            counts[1] += failed
    return {place: counts for place, counts in branches.items() if any(counts) or place[:3] not in folded}


def words(line, column, counts):
    missing = "never" if not any(counts) else "never true" if counts[0] == 0 else "never false"
    return f"{line}:{column} {missing}"


def main(profile, least, rooms, programs):
    wanted = re.compile("|".join(f"(?:{pattern})" for _, pattern in rooms))
    branches = read_branches(profile, programs, wanted)
    good = True
    for name, pattern in rooms:
        files = {}
        for (path, line, column, _, _), counts in sorted(branches.items()):
            if re.match(pattern, path):
                row = files.setdefault(path, [0, 0, []])
                row[0] += sum(count > 0 for count in counts)
                row[1] += 2
                if 0 in counts:
                    row[2].append(words(line, column, counts))
        taken, total = (sum(row[i] for row in files.values()) for i in (0, 1))
        share = 100 * taken / total if total else 0
        print(f"{name}: {share:.1f} % ({taken} of {total} branches)")
        for path, (some, all_of, missing) in sorted(files.items()):
            print(f"  {path}: {some} of {all_of}" + "".join(f"\n    {each}" for each in missing))
        good = good and share >= least
    return good


if __name__ == "__main__":
    if len(sys.argv) < 6 or "--" not in sys.argv:
        sys.exit(__doc__)
    behind = sys.argv.index("--")
    named = [room.split("=", 1) for room in sys.argv[3:behind]]
    sys.exit(0 if main(sys.argv[1], float(sys.argv[2]), named, sys.argv[behind + 1 :]) else 1)
