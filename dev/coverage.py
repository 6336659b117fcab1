#!/usr/bin/env python3
"""Prints how many branches of some sources the tests took: coverage.py BUILD LEAST NAME=PATTERN...

Reads the counts below BUILD with gcov. A room is all sources whose path begins as PATTERN, a regular expression; the exit
code is 1 when one of them is below LEAST percent. A room whose name ends in "?" is only told. Instances of a template count
together, as they stand in the source; where types make them differ, the one that was taken most counts.

What nobody wrote and what only an exception takes is left out:
- the two ways out of a call, on and into the handler, that the compiler makes at each call;
- pairs at the end of a line that were never reached although each of its calls was: they stand in a handler and ask which
  temporaries are to be taken down;
- the question of a handler (`catch`) whether an exception is of its type;
- the flag for a returned object at the first and last line of a function, and members that the compiler writes itself
  (`= default`, the line of a structure)."""
import json
import os
import re
import subprocess
import sys


BY_COMPILER = re.compile(r"= default;|\bcatch \(|^\s*(struct|class)\b")


def conditions(branches):
    """The counts of the branches that a line has in its source."""
    counts, reached, i = [], True, 0
    while i < len(branches):
        pair = branches[i : i + 2]
        if len(pair) == 2 and (pair[0]["throw"] or pair[1]["throw"]):
            reached = reached and pair[0]["count"] + pair[1]["count"] > 0
            i += 2
        else:
            if not pair[0]["throw"]:
                counts.append(pair[0]["count"])
            i += 1
    throws = any(branch["throw"] for branch in branches)
    while throws and reached and len(counts) >= 2 and counts[-1] == counts[-2] == 0:
        del counts[-2:]
    return counts


def add(sums, place, branches):
    """Adds counts to those of the same place; an instance with another number of branches is another place."""
    known = sums.setdefault((*place, len(branches)), [dict(branch, count=0) for branch in branches])
    for one, more in zip(known, branches):
        one["count"] += more["count"]


def read_counts(build, wanted):
    """Branches of each line, and how often each line was reached."""
    branches, lines, edges = {}, {}, set()
    root = os.getcwd() + "/"
    counts = sorted(os.path.join(folder, name) for folder, _, names in os.walk(build) for name in names if name.endswith(".gcda"))
    for count in counts:
        told = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", count],
                              capture_output=True, text=True, check=True).stdout
        for unit in map(json.loads, filter(None, told.split("\n"))):
            for file in unit["files"]:
                path = os.path.normpath(os.path.join(unit["current_working_directory"], file["file"])).removeprefix(root)
                if not wanted.match(path):
                    continue
                for function in file["functions"]:
                    if function["start_line"] != function["end_line"] and "{lambda" not in function["demangled_name"]:
                        edges |= {(path, function["start_line"]), (path, function["end_line"])}
                # One function, or one instance of a template, stands in several units; only one of them is linked.
                for line in file["lines"]:
                    place = path, line["line_number"]
                    lines[place] = lines.get(place, 0) + line["count"]
                    if line["branches"]:
                        add(branches, (*place, line.get("function_name", "")), line["branches"])
    by_shape = {}
    for (path, line, _, _), found in branches.items():
        own = [{"count": count} for count in conditions(found)]
        if own and (path, line) not in edges:
            add(by_shape, (path, line), own)
    by_line = {}
    for (path, line, _), found in by_shape.items():
        counts = [branch["count"] for branch in found]
        by_line[path, line] = max(by_line.get((path, line), counts), counts, key=lambda c: sum(n > 0 for n in c) / len(c))
    return by_line, lines


def written(path, number, texts={}):
    """Whether a line of a source was written by a person, branches and all."""
    if path not in texts:
        texts[path] = open(path, encoding="utf-8").read().split("\n")
    return not BY_COMPILER.search(texts[path][number - 1])


def main(build, least, rooms):
    wanted = re.compile("|".join(f"(?:{pattern})" for _, pattern in rooms))
    branches, lines = read_counts(build, wanted)
    good = True
    for name, pattern in rooms:
        files = {}
        for (path, line), counts in sorted(branches.items()):
            if re.match(pattern, path) and written(path, line):
                row = files.setdefault(path, [0, 0, []])
                row[0] += sum(count > 0 for count in counts)
                row[1] += len(counts)
                if 0 in counts:
                    row[2].append(line)
        taken, total = (sum(row[i] for row in files.values()) for i in (0, 1))
        share = 100 * taken / total if total else 0
        inside = [count for (path, _), count in lines.items() if re.match(pattern, path)]
        print(f"{name}: {share:.1f} % of {total} branches, {100 * sum(c > 0 for c in inside) / max(1, len(inside)):.1f} % of lines")
        for path, (some, all_of, missing) in sorted(files.items()):
            where = ", not all in line " + " ".join(map(str, sorted(set(missing)))) if missing else ""
            print(f"  {path}: {some} of {all_of}{where}")
        good = good and (share >= least or name.endswith("?"))
    return good


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    sys.exit(0 if main(sys.argv[1], float(sys.argv[2]), [room.split("=", 1) for room in sys.argv[3:]]) else 1)
