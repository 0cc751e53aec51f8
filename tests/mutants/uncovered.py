"""usage: uncovered.py COVERAGE.json: the lines and branches that nothing came by"""
import json
import sys

for file in sorted(json.load(open(sys.argv[1], encoding="utf-8"))["files"],
                   key=lambda f: f["file"]):
    source = open(file["file"], encoding="utf-8").read().splitlines()
    for line in file["lines"]:
        number = line["line_number"]
        if line.get("gcovr/noncode"):
            continue
        branches = [b for b in line["branches"] if not b.get("throw")]
        left = sum(b["count"] == 0 for b in branches)
        if line["count"] == 0 or left:
            what = "line" if line["count"] == 0 else f"{left} of {len(branches)}"
            print(f"{file['file']}:{number}: {what}: {source[number - 1].strip()}")
