#!/usr/bin/python3
"""Makes piles of papers of many kinds, one PDF a kind, and truth.json with their ranges and names.

The same seed gives the same bytes.

    samples/make_papers.py FOLDER [--seed N] [--only KIND]
"""

import argparse
import json
import re
from pathlib import Path

from papers.kinds import KINDS
from papers.papers import Writer
from papers.sheet import register_fonts


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=Path)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", default="", help="kinds whose name holds this")
    wanted = parser.parse_args()
    wanted.folder.mkdir(parents=True, exist_ok=True)
    register_fonts()
    truth = {}
    for kind in KINDS:
        if wanted.only in kind.name:
            file = re.sub(r"\W+", "-", kind.name) + ".pdf"
            truth[file] = Writer(kind, wanted.seed, wanted.folder / file).write()
    (wanted.folder / "truth.json").write_text(json.dumps(truth, ensure_ascii=False, indent=1))


if __name__ == "__main__":
    main()
