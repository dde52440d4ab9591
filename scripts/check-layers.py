#!/usr/bin/env python3
"""Holds the includes between folders to layers.txt.

Fails on an include that layers.txt does not allow, on an allowed one that no file uses, on folders that include each
other in a circle, and on an include that is not written from the repository's root.

usage: scripts/check-layers.py [ROOT]   (the repository that holds this script unless told)
"""

import os
import re
import sys
from collections import defaultdict
from pathlib import Path

SOURCES = (".h", ".cpp", ".mm")
INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s+"([^"]+)"')
ANY = "*"


def read_layers(path):
    """Folder -> the folders that it may include, in the order of the file."""
    layers = {}
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        line = line.split("#")[0].strip()
        if not line:
            continue
        folder, colon, allowed = line.partition(":")
        if not colon or folder in layers:
            sys.exit(f"{path.name}:{number}: a folder, a colon and its folders are expected, each folder once")
        layers[folder] = allowed.split()
    return layers


def source_files(root):
    """Paths relative to the root, without those in build folders."""
    for folder, subfolders, names in os.walk(root):
        subfolders[:] = sorted(name for name in subfolders if not is_skipped(Path(folder, name)))
        for name in sorted(names):
            if name.endswith(SOURCES):
                yield Path(folder, name).relative_to(root).as_posix()


def is_skipped(folder):
    return folder.name.startswith(".") or folder.name == "build" or (folder / "CMakeCache.txt").exists()


def folder_of(file, layers):
    """The deepest folder of the layers that holds the file, or None."""
    for parent in Path(file).parents:
        if parent.as_posix() in layers:
            return parent.as_posix()
    return None


def includes_of(root, file):
    """Line number and target of each include in quotes."""
    with open(root / file, encoding="utf-8") as lines:
        for number, line in enumerate(lines, 1):
            if match := INCLUDE.match(line):
                yield number, match.group(1)


def read_arrows(root, layers, errors):
    """(from, to) -> the places in which the first folder includes the second."""
    arrows = defaultdict(list)
    for file in source_files(root):
        folder = folder_of(file, layers)
        if folder is None:
            errors.append(f"{file}: layers.txt lists no folder of this file")
        elif layers[folder] != [ANY]:
            for number, target in includes_of(root, file):
                add_arrow(root, layers, arrows, errors, folder, f"{file}:{number}", target)
    return arrows


def add_arrow(root, layers, arrows, errors, folder, place, target):
    if target.endswith(".moc"):  # generated
        return
    if not (root / target).is_file():
        errors.append(f'{place}: "{target}" is not written from the root of the repository')
        return
    included = folder_of(target, layers)
    if included is not None and included != folder:
        arrows[folder, included].append(f'{place}: includes "{target}"')


def check_allowed(layers, arrows, errors):
    for (folder, included), places in arrows.items():
        if included not in layers[folder]:
            errors += [f"{place}, but {folder} may not include {included}" for place in places]


def check_used(layers, arrows, errors):
    for folder, allowed in layers.items():
        for included in allowed:
            if included != ANY and (folder, included) not in arrows:
                errors.append(f"layers.txt: {folder} may include {included}, but does not")


def check_circles(arrows, errors):
    """Takes away, again and again, what includes none of the rest and what none of the rest includes."""
    left = {folder for arrow in arrows for folder in arrow}
    while ends := {folder for folder in left if not any((folder, other) in arrows for other in left)}:
        left -= ends
    while starts := {folder for folder in left if not any((other, folder) in arrows for other in left)}:
        left -= starts
    if left:
        errors.append(f"Folders include each other in a circle: {' '.join(sorted(left))}")


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent)
    layers = read_layers(root / "layers.txt")
    errors = []
    arrows = read_arrows(root, layers, errors)
    check_allowed(layers, arrows, errors)
    check_used(layers, arrows, errors)
    check_circles(arrows, errors)
    if errors:
        sys.exit("\n".join(errors))
    print(f"Layers: {len(arrows)} pairs of folders, as layers.txt allows")


main()
