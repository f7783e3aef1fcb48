#!/usr/bin/env python3
"""check_layers.py [--figures]: who includes whom in src/. A folder knows only those before it in FLOORS, and no two units know
each other, by whatever way round. Run by ./dev lint and ./dev test; prints each offence and ends with 1 when there is one.
With --figures also the units and arrows of each folder."""

import pathlib
import re
import sys
from collections import defaultdict

SOURCES = pathlib.Path(__file__).resolve().parent.parent / "src"
# From the ground up.
FLOORS = (
    "resources", "common", "settings", "settings/dialog", "imaging",
    "editor/annotations", "editor/painting", "editor/document", "editor/commands", "editor/recovery", "editor/session",
    "editor/canvas", "editor/labels", "editor/window",
    "capture/scroll", "capture", "capture/overlay",
    "output/places", "output/picture", "output/files", "output/ways", "output/print", "output",
    "upload/answers", "upload/http", "upload/proxy", "upload",
    "main_window",
    "host/program", "host/commands", "host/entry",
)
# Sources that are one unit under several names.
ONE_UNIT = ("uEditor", "uSaver", "uMainEditor")
INCLUDE = re.compile(r'^#include "([\w/]+)\.h"', re.M)


def unit_of(path):
    folder, name = path.rsplit("/", 1)
    for one in ONE_UNIT:
        if name.startswith(one + "_"):
            name = one
    return f"{folder}/{name}"


def circles(arrows):
    """Groups of units that reach each other (Tarjan's strongly connected components of more than one)."""
    order, low, stack, held, found = {}, {}, [], set(), []

    def visit(unit):
        order[unit] = low[unit] = len(order)
        stack.append(unit)
        held.add(unit)
        for other in sorted(arrows[unit]):
            if other not in order:
                visit(other)
                low[unit] = min(low[unit], low[other])
            elif other in held:
                low[unit] = min(low[unit], order[other])
        if low[unit] == order[unit]:
            group = set()
            while unit not in group:
                group.add(stack.pop())
            held.difference_update(group)
            if len(group) > 1:
                found.append(tuple(sorted(group)))

    for unit in sorted(arrows):
        if unit not in order:
            visit(unit)
    return found


def main():
    sys.setrecursionlimit(10000)
    arrows, folders, failed = defaultdict(set), defaultdict(set), False
    for file in sorted(SOURCES.rglob("*")):
        if file.suffix not in (".cpp", ".h"):
            continue
        path = file.relative_to(SOURCES).with_suffix("").as_posix()
        folder = path.rsplit("/", 1)[0]
        if folder not in FLOORS:
            print(f"src/{path}: a folder that has no floor")
            failed = True
            continue
        for other in INCLUDE.findall(file.read_text(encoding="utf-8")):
            if not (SOURCES / f"{other}.h").exists():
                continue
            arrows[unit_of(path)].add(unit_of(other))
            there = other.rsplit("/", 1)[0]
            if there != folder:
                folders[folder].add(there)
            if there in FLOORS and FLOORS.index(there) > FLOORS.index(folder):
                print(f"src/{file.relative_to(SOURCES)}: includes {other}.h, which stands above it")
                failed = True
    for unit in list(arrows):
        arrows[unit].discard(unit)
    for circle in circles(arrows):
        print("units that know each other: " + ", ".join(circle))
        failed = True
    if "--figures" in sys.argv:
        for floor in FLOORS:
            units = sum(1 for unit in arrows if unit.rsplit("/", 1)[0] == floor)
            print(f"{floor:20} {units:3} units, knows {', '.join(sorted(folders[floor], key=FLOORS.index)) or 'nobody'}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
