"""usage: coverage.py EXPORT.json EXPORT.lcov FOLDER...

What llvm-cov has counted, as a file that gcovr adds: the lines and branches of the sources in the
folders. A branch is one outcome of one condition, as it stands in the source; what several
instances of a template have taken is added up, and conditions that the compiler decides are none.
Run where the build is, of which the exports' file names are relative.
"""
import collections
import json
import os
import re
import sys


def lines_and_conditions(lcov):
    """By file: the count of each line, and how many conditions each line has in all instances."""
    lines = collections.defaultdict(dict)
    conditions = collections.defaultdict(collections.Counter)
    for row in open(lcov, encoding="utf-8"):
        kind, _, rest = row.rstrip("\n").partition(":")
        if kind == "SF":
            file = rest
        elif kind == "DA":
            line, count = rest.split(",")[:2]
            lines[file][int(line)] = int(count)
        elif kind == "BRDA":
            line, _, outcome, _ = rest.split(",")
            conditions[file][int(line)] += int(outcome) % 2
    return lines, conditions


def branches(rows, conditions):
    """By line: the counts of the outcomes of its conditions, each condition at its place."""
    by_line = collections.defaultdict(list)
    for row in rows:
        by_line[row[0]].append(row)
    found = {}
    for line, there in by_line.items():
        places = collections.defaultdict(list)
        for row in there:
            places[tuple(row[:4])].append((row[4], row[5]))
        # They have no count, and stand among the rows as others that nothing came by do.
        decided = len(there) - conditions[line]
        for place in sorted(places, key=lambda p: sum(map(sum, places[p]))):
            while decided > 0 and (0, 0) in places[place]:
                places[place].remove((0, 0))
                decided -= 1
        found[line] = [sum(counts) for place in sorted(places) if places[place]
                       for counts in zip(*places[place])]
    return found


def excluded(path):
    """The lines that no test can reach, as gcovr's marks with a reason behind them say."""
    left_out = set()
    is_out = False
    with open(path, encoding="utf-8") as source:
        for number, text in enumerate(source, 1):
            is_out = (is_out or re.search(r"GCOVR_EXCL_START: \S", text) is not None) and \
                "GCOVR_EXCL_STOP" not in text
            if is_out or re.search(r"GCOVR_EXCL_LINE: \S", text):
                left_out.add(number)
    return left_out


def main():
    with open(sys.argv[1], encoding="utf-8") as export:
        files = json.load(export)["data"][0]["files"]
    lines, conditions = lines_and_conditions(sys.argv[2])
    root = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
    counted = []
    for file in files:
        name = file["filename"]
        path = os.path.relpath(os.path.realpath(name), root)
        if not path.startswith(tuple(os.path.join(folder, "") for folder in sys.argv[3:])):
            continue
        taken = branches(file["branches"], conditions[name])
        left_out = excluded(os.path.join(root, path))
        counted.append({"file": path, "functions": [], "lines": [
            {"line_number": line, "count": count, "gcovr/noncode": line in left_out,
             "gcovr/excluded": False,
             "branches": [{"count": n, "fallthrough": False, "throw": False}
                          for n in taken.get(line, [])]}
            for line, count in sorted(lines[name].items())]})
    json.dump({"gcovr/format_version": "0.3", "files": counted}, sys.stdout)


main()
