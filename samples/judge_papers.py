#!/usr/bin/python3
"""Judges the first proposal for each pile of papers that make_papers.py makes: a table by kind.

    samples/judge_papers.py PROGRAM FOLDER --seeds 1 2 3
"""

import argparse
import collections
import csv
import io
import json
import subprocess
import sys
from pathlib import Path

SAMPLES = Path(__file__).resolve().parent


def essence(text):
    return "".join(letter for letter in text if letter.isalnum())


def run(program, *arguments):
    return subprocess.run([program, *arguments], capture_output=True, text=True, check=False)


def judged(program, pdf, truth):
    """(ranges right, names right, sure, what was said)"""
    setup = pdf.with_suffix(".fxs")
    setup.unlink(missing_ok=True)  # of another run
    said = run(program, f"--suggest={setup}", "--unsure", f"-f{pdf}")
    if not setup.exists():
        return False, False, False, said.stdout or said.stderr
    plan = run(program, f"-u{setup}", "--plan=csv", f"-f{pdf}").stdout
    rows = list(csv.DictReader(io.StringIO(plan)))
    ranges = [[int(row["Start Page"]), int(row["End Page"])] for row in rows]
    names = [Path(row["Output File"]).stem for row in rows]
    right = ranges == truth["ranges"]
    named = right and len(set(names)) == len(names) and all(
        not good or essence(name) in map(essence, good) for name, good in zip(names, truth["names"]))
    return right, named, said.returncode == 0, said.stdout


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("folder", type=Path)
    parser.add_argument("--seeds", type=int, nargs="+", default=[1])
    parser.add_argument("--only", default="")
    parser.add_argument("--tell", action="store_true", help="what was said where it is wrong")
    wanted = parser.parse_args()
    table = collections.defaultdict(lambda: [0, 0, 0, 0])
    for seed in wanted.seeds:
        folder = wanted.folder / str(seed)
        subprocess.run([sys.executable, str(SAMPLES / "make_papers.py"), str(folder), "--seed", str(seed), "--only",
                        wanted.only], check=True)
        for file, truth in json.loads((folder / "truth.json").read_text()).items():
            right, named, sure, said = judged(wanted.program, folder / file, truth)
            for column, is_so in enumerate([right, named, sure, sure and not named]):
                table[truth["kind"]][column] += is_so
            if wanted.tell and not named:
                print(f"seed {seed}: {file}: {'names' if right else 'ranges'}: {said}")
    count = len(wanted.seeds)
    print(f"{'kind':45} ranges  names   sure  wrong though sure   of {count}")
    for kind, row in table.items():
        print(f"{kind:45}" + "".join(f"{number:7}" for number in row))
    kinds = len(table)
    total = [sum(row[column] for row in table.values()) for column in range(4)]
    print(f"{kinds} kinds, {kinds * count} piles: " + ", ".join(
        f"{what} {number * 100 / (kinds * count):.1f} %" for what, number in
        zip(["ranges", "names", "sure", "wrong though sure"], total)))


if __name__ == "__main__":
    main()
