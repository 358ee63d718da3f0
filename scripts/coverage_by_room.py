"""Reads what `llvm-cov export --summary-only` prints; prints the share of lines and of branches that
were run, by folder."""

import collections
import json
import os
import pathlib
import sys

PROJECT = str(pathlib.Path(__file__).resolve().parents[1])
rooms = collections.defaultdict(collections.Counter)
for file in json.load(sys.stdin)["data"][0]["files"]:
    path = os.path.relpath(file["filename"], PROJECT)
    if path.startswith(("src/", "include/")):
        for room in os.path.dirname(path), "the whole":
            for what in "lines", "branches":
                rooms[room][what] += file["summary"][what]["count"]
                rooms[room]["covered " + what] += file["summary"][what]["covered"]
print("| folder | lines | run | branches | run |\n|---|---|---|---|---|")
for room, sums in sorted(rooms.items()):
    print(f"| {room} |", " | ".join(
        f"{sums[what]} | {100 * sums['covered ' + what] / max(sums[what], 1):.1f} %"
        for what in ("lines", "branches")), "|")
