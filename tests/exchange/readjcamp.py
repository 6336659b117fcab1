#!/usr/bin/env python3
"""Reads a JCAMP-DX 4.24 file by the rules of the published format and prints its curve as JSON.

Stands by itself: it knows nothing of the program whose files it reads. Whatever the format does not allow ends it with
exit status 1 and one line that says what.
"""
import json
import re
import sys

REQUIRED = ["TITLE", "JCAMP-DX", "DATA TYPE", "ORIGIN", "OWNER", "XUNITS", "YUNITS", "XFACTOR", "YFACTOR", "FIRSTX",
            "LASTX", "NPOINTS", "FIRSTY", "END"]
XUNITS = {"1/CM", "MICROMETERS", "NANOMETERS", "SECONDS"}
YUNITS = {"TRANSMITTANCE", "REFLECTANCE", "ABSORBANCE", "KUBELKA-MUNK", "ARBITRARY UNITS"}


class Wrong(Exception):
    pass


def check(holds, words):
    if not holds:
        raise Wrong(words)


def labelled_records(text):
    """(label, value) pairs in their order; the value of a table has its lines."""
    records = []
    for number, line in enumerate(text.split("\r\n"), 1):
        check("\n" not in line and "\r" not in line, "line %d does not end in CR LF" % number)
        check(len(line) <= 80, "line %d has more than 80 characters" % number)
        line = line.split("$$")[0].rstrip()
        if line.startswith("##"):
            label, equals, value = line[2:].partition("=")
            check(equals, "line %d has a label without =" % number)
            records.append([label.strip(), value.strip()])
        elif line:
            check(records, "text in front of the first label")
            records[-1][1] += "\n" + line
    return records


def number(text, label):
    check(re.fullmatch(r"[+-]?(\d+\.?\d*|\.\d+)([Ee][+-]?\d+)?", text), "%s is no number: %r" % (label, text))
    return float(text)


def same(a, b, tolerance):
    return abs(a - b) <= tolerance


def ordinate_table(lines, head, count):
    """XYDATA=(X++(Y..Y)): each line begins with its abscissa, whole ordinates follow."""
    xs, ys = [], []
    step = (head["LASTX"] - head["FIRSTX"]) / (count - 1)
    for line in lines:
        cells = line.split()
        check(len(cells) >= 2, "a line without ordinates: %r" % line)
        here = number(cells[0], "abscissa") * head["XFACTOR"]
        due = head["FIRSTX"] + step * len(ys)
        check(same(here, due, abs(step) * 1e-6), "a line begins at %r, not at %r" % (here, due))
        for cell in cells[1:]:
            if cell == "?":
                ys.append(None)
                continue
            check(re.fullmatch(r"[+-]?\d+", cell), "an ordinate that is not whole: %r" % cell)
            check(abs(int(cell)) < 2 ** 31, "an ordinate beyond 32 bits: %r" % cell)
            ys.append(int(cell) * head["YFACTOR"])
    xs = [head["FIRSTX"] + step * i for i in range(len(ys))]
    return xs, ys


def pair_table(lines, head):
    """XYPOINTS=(XY..XY): pairs with a comma inside, one or more a line."""
    xs, ys = [], []
    for line in lines:
        for pair in re.split(r";|\s{2,}", line):
            cells = [cell.strip() for cell in pair.split(",")]
            check(len(cells) == 2, "no pair: %r" % pair)
            xs.append(number(cells[0], "abscissa") * head["XFACTOR"])
            ys.append(None if cells[1] == "?" else number(cells[1], "ordinate") * head["YFACTOR"])
    return xs, ys


def read(path):
    with open(path, "rb") as file:
        raw = file.read()
    check(all(byte in (10, 13) or 32 <= byte < 127 for byte in raw), "not plain ASCII")
    records = labelled_records(raw.decode("ascii"))
    labels = [label for label, _ in records]
    check(labels[:3] == ["TITLE", "JCAMP-DX", "DATA TYPE"], "does not begin with title, version and type")
    check(labels[-1] == "END", "does not end with END")
    check(len(set(labels)) == len(labels), "a label stands twice")
    for label in REQUIRED:
        check(label in labels, "%s is missing" % label)
    text = dict(records)
    check(text["JCAMP-DX"] == "4.24", "another version")
    check(all(text[label] for label in REQUIRED[:-1]), "an empty label")
    check(text["XUNITS"] in XUNITS, "unknown XUNITS")
    check(text["YUNITS"] in YUNITS, "unknown YUNITS")
    head = {label: number(text[label], label) for label in
            ["XFACTOR", "YFACTOR", "FIRSTX", "LASTX", "NPOINTS", "FIRSTY", "MAXX", "MINX", "MAXY", "MINY", "DELTAX"]
            if label in text}
    tables = [label for label in ("XYDATA", "XYPOINTS") if label in text]
    check(len(tables) == 1 and labels[-2] == tables[0], "not one table in front of END")
    form, *lines = text[tables[0]].split("\n")
    if tables[0] == "XYDATA":
        check(form == "(X++(Y..Y))", "unknown form of XYDATA")
        xs, ys = ordinate_table(lines, head, int(head["NPOINTS"]))
        if "DELTAX" in head:
            check(same(head["DELTAX"], xs[1] - xs[0], 1e-6), "DELTAX is not the distance of the points")
    else:
        check(form == "(XY..XY)", "unknown form of XYPOINTS")
        xs, ys = pair_table(lines, head)
    known = [y for y in ys if y is not None]
    check(len(ys) == head["NPOINTS"], "states %d points and has %d" % (head["NPOINTS"], len(ys)))
    near = 2 * head["YFACTOR"] if tables[0] == "XYDATA" else 1e-12
    check(same(xs[0], head["FIRSTX"], 1e-9) and same(xs[-1], head["LASTX"], 1e-9), "ends elsewhere")
    check(ys[0] is None or same(ys[0], head["FIRSTY"], near), "FIRSTY is another value")
    check(same(max(xs), head["MAXX"], 1e-9) and same(min(xs), head["MINX"], 1e-9), "MAXX or MINX")
    check(same(max(known), head["MAXY"], near) and same(min(known), head["MINY"], near), "MAXY or MINY")
    return {"title": text["TITLE"], "xunits": text["XUNITS"], "yunits": text["YUNITS"], "x": xs, "y": ys}


if __name__ == "__main__":
    try:
        print(json.dumps(read(sys.argv[1])))
    except Wrong as wrong:
        print(wrong, file=sys.stderr)
        sys.exit(1)
