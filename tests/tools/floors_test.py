#!/usr/bin/env python3
"""Holds the sources to their floors, src/layers.txt: an include goes down, and no two files need each other.

    floors_test.py SRC [LAYERS]

Complaints name file and line. A header and its source count as one for circles. Every folder must be on a floor, and the
logic must not see the worlds behind the seam.
"""
import re
import sys
from pathlib import Path

WORLDS = ("lab", "live", "local", "ads")
LOGIC = ("session", "format", "directory", "stores", "resources", "mail", "groups", "creation", "lifecycle", "batch", "windows")


def read_floors(path):
    lines = [line.split() for line in path.read_text().splitlines() if line.split() and not line.startswith("#")]
    return {folder: number for number, folders in enumerate(lines) for folder in folders}


def includes(src):
    for path in sorted(p for p in src.rglob("*") if p.suffix in (".hpp", ".cpp")):
        for number, line in enumerate(path.read_text().splitlines(), 1):
            if found := re.match(r'\s*#\s*include\s*"([^"]+)"', line):
                yield path.relative_to(src), number, Path(found[1])


def circle(graph):
    """The units of one circle, none when there is none."""
    done, path = set(), []

    def walk(unit):
        if unit in path:
            return path[path.index(unit):] + [unit]
        if unit in done:
            return None
        path.append(unit)
        found = next(filter(None, map(walk, sorted(graph.get(unit, ())))), None)
        path.pop()
        done.add(unit)
        return found

    return next(filter(None, map(walk, sorted(graph))), None)


def main():
    sys.setrecursionlimit(5000)
    src = Path(sys.argv[1])
    floors = read_floors(Path(sys.argv[2]) if len(sys.argv) > 2 else src / "layers.txt")
    complaints, graph = [], {}
    for file, line, target in includes(src):
        here, there = str(file.parent), str(target.parent)
        complaint = None
        if here not in floors or there not in floors:
            complaint = f"{here if here not in floors else there} is on no floor"
        elif here != there and floors[there] >= floors[here]:
            complaint = "goes up" if floors[there] > floors[here] else "goes to the same floor"
        elif here.split("/")[0] in LOGIC and there.split("/")[0] in WORLDS:
            complaint = "is of a world behind the seam"
        if complaint:
            complaints.append(f"{src / file}:{line}: \"{target}\" {complaint}")
        if file.with_suffix("") != target.with_suffix(""):
            graph.setdefault(str(file.with_suffix("")), set()).add(str(target.with_suffix("")))
    if units := circle(graph):
        complaints.append("a circle: " + " needs ".join(units))
    print("\n".join(complaints) or "every include goes down")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
