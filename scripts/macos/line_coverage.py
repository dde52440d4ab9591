#!/usr/bin/env python3
"""Fails if the tests run less than a share of any file's lines. Reads what `llvm-cov export --summary-only` prints.

usage: line_coverage.py PERCENT <SUMMARY
"""

import json
import sys
from pathlib import Path


def main() -> int:
    required = float(sys.argv[1])
    files = json.load(sys.stdin)["data"][0]["files"]
    # A file without lines of its own has nothing to run.
    shares = {Path(each["filename"]).name: each["summary"]["lines"] for each in files}
    shares = {name: lines for name, lines in shares.items() if lines["count"] > 0}
    too_few = [name for name, lines in shares.items() if lines["percent"] < required]
    for name, lines in sorted(shares.items()):
        print(f"{name}: {lines['covered']} of {lines['count']} lines")
    if not shares:
        print("No lines were counted.", file=sys.stderr)
        return 1
    for name in too_few:
        print(f"The tests run too few lines of {name}.", file=sys.stderr)
    return 1 if too_few else 0


if __name__ == "__main__":
    sys.exit(main())
