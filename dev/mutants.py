#!/usr/bin/env python3
"""Puts the faults of dev/mutants.txt into a copy of the sources, and runs the tests against each of them.

  mutants.py plant TREE                 copies the project without its tests to TREE, with the faults
  mutants.py run FOLDER [NUMBER...]     runs FOLDER/logic_tests and FOLDER/link_tests, one fault switched on at a time

All faults stand in one build, each behind a switch that the environment turns (SPECTRANE_MUTANT=number)."""
import os
import re
import resource
import subprocess
import sys
import time
from collections import namedtuple

Mutant = namedtuple("Mutant", "number path program tests before part after replacement")


def table():
    mutants, head, piece = [], None, []
    for line in open("dev/mutants.txt", encoding="utf-8"):
        line = line.rstrip("\n")
        if not piece and (not line or line.startswith("# ")):
            continue
        if not piece and line.startswith("[src/"):
            head = [cell.strip() for cell in line.strip("[]").split("|")]
            continue
        piece.append(line)
        if " => " not in line:
            continue
        text, replacement = "\n".join(piece).rsplit(" => ", 1)
        before, part, after = re.fullmatch("(.*)«(.*)»(.*)", text, re.DOTALL).groups()
        mutants.append(Mutant(len(mutants) + 1, *head, before, part, after, replacement))
        piece = []
    return mutants


def switched(part, variants):
    """The part with one branch for each variant; a statement becomes an if, an expression a conditional one."""
    if part.endswith(";"):
        for mutant in variants:
            part = f"{{ if (SpectraneMutant({mutant.number})) {{ {mutant.replacement} }} else {{ {part} }} }}"
    else:
        for mutant in variants:
            part = f"(SpectraneMutant({mutant.number}) ? ({mutant.replacement}) : ({part}))"
    return part


def with_faults(path, source, mutants):
    places = {}
    for mutant in mutants:
        piece = mutant.before + mutant.part + mutant.after
        if source.count(piece) != 1:
            sys.exit(f"{path}: stands there {source.count(piece)} times: {piece}")
        start = source.index(piece) + len(mutant.before)
        places.setdefault((start, start + len(mutant.part)), []).append(mutant)
    end_before = len(source) + 1
    for (start, end), variants in sorted(places.items(), reverse=True):
        if end > end_before:
            sys.exit(f"{path}: pieces overlap at {source[start:end]}")
        source = source[:start] + switched(source[start:end], variants) + source[end:]
        end_before = start
    return source


def plant(tree):
    by_path = {}
    for mutant in table():
        by_path.setdefault(mutant.path, []).append(mutant)
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "CMakeLists.txt", "cmake", "src", "dev", "packaging"],
                            capture_output=True, text=True, check=True).stdout.split()
    paths = {path for path in listed if os.path.exists(path)}
    if by_path.keys() - paths:
        sys.exit(f"no such source: {by_path.keys() - paths}")
    for folder, _, names in os.walk(os.path.join(tree, "src")):
        for name in names:
            if os.path.relpath(os.path.join(folder, name), tree) not in paths:
                os.remove(os.path.join(folder, name))
    for path in paths:
        content = open(path, "rb").read()
        if path in by_path:
            content = with_faults(path, content.decode(), by_path[path]).encode()
        # A file that stays the same keeps its time, so that nothing is built anew.
        target = os.path.join(tree, path)
        if not os.path.exists(target) or open(target, "rb").read() != content:
            os.makedirs(os.path.dirname(target), exist_ok=True)
            open(target, "wb").write(content)


def run_tests(folder, mutant_number, program, tests, wall=900, processor=300):
    """Words for how it ended, and the seconds and seconds of processor time it took. It may take so many of each."""
    environment = dict(os.environ, SPECTRANE_MUTANT=str(mutant_number), QT_QPA_PLATFORM="offscreen")
    # Away from the sources: a fault may well write somewhere else.
    place = os.path.abspath(f"{folder}/work")
    os.makedirs(place, exist_ok=True)
    begun, used = time.monotonic(), resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
    try:
        ended = subprocess.run(
            [os.path.abspath(f"{folder}/{program}"), "--gtest_brief=1", "--gtest_fail_fast", f"--gtest_filter={tests}"],
            env=environment, cwd=place, timeout=wall, capture_output=True, errors="replace",
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CPU, (processor, processor)))
    except subprocess.TimeoutExpired:
        return "hangs", 0, 0
    times = time.monotonic() - begun, resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - used
    if re.search(r"^\[==========\] 0 tests", ended.stdout, re.MULTILINE):
        return "no tests", *times
    if ended.returncode == 0:
        return "passes", *times
    if times[1] >= processor - 1:
        return "hangs", *times
    return ("fails" if ended.returncode > 0 else "crashes"), *times


def run(folder, chosen):
    mutants = [m for m in table() if not chosen or m.number in chosen]
    # A suite with parameters has their name before its own, and is left out by a pattern that begins with the suite's.
    for program, pattern in sorted({(m.program, p) for m in mutants for p in m.tests.split("-")[0].split(":")}):
        listed = subprocess.run([f"{folder}/{program}", "--gtest_list_tests", f"--gtest_filter={pattern}"],
                                capture_output=True, errors="replace", check=True)
        if not listed.stdout.strip():
            sys.exit(f"{program}: no test is named {pattern}")
    limits = {}
    for program, tests in sorted({(m.program, m.tests) for m in mutants}):
        end, wall, processor = run_tests(folder, 0, program, tests)
        if end != "passes":
            sys.exit(f"{program} {tests}: {end} without any fault")
        limits[program, tests] = max(120, 10 * wall), int(max(10, 5 * processor))
    ends = {}
    for mutant in mutants:
        end, *_ = run_tests(folder, mutant.number, mutant.program, mutant.tests, *limits[mutant.program, mutant.tests])
        ends.setdefault(end, []).append(mutant)
        if end == "passes":
            shown = " ".join((mutant.before + "«" + mutant.part + "»" + mutant.after).split())
            print(f"SURVIVED {mutant.number} {mutant.path}: {shown} => {mutant.replacement}", flush=True)
    survived = len(ends.get("passes", []))
    caught = len(mutants) - survived
    how = ", ".join(f"{len(found)} {end}" for end, found in sorted(ends.items()) if end != "passes")
    print(f"{len(mutants)} mutants, {caught} caught ({how}), {survived} survived")
    return caught >= 0.95 * len(mutants)


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1] == "plant":
        plant(sys.argv[2])
    elif len(sys.argv) >= 3 and sys.argv[1] == "run":
        sys.exit(0 if run(sys.argv[2], {int(number) for number in sys.argv[3:]}) else 1)
    else:
        sys.exit(__doc__)
