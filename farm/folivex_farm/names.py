"""The plans of all sources together: names that two of them would take are found before anything is written."""

from __future__ import annotations

import os
from collections import Counter
from typing import Any

from .job import PLAN, Job, Source
from .publishing import State, moves_of, state_of

MOST_TOLD = 20


def titled(title: str, name: str) -> str:
    folder, last = os.path.split(name)
    return os.path.join(folder, f"{title}_{last}")


def left_out(job: Job, sources: list[Source]) -> dict[str, str]:
    """Why sources are not to be split, by their number."""
    reasons: dict[str, str] = {}
    first_of: dict[str, Source] = {}
    before = job.published_by_others()
    for source in job.sources:
        plan = job.outcome(source, PLAN)
        digest = plan["identity"]["sha256"] if "identity" in plan else ""
        twin = first_of.setdefault(digest, source) if digest else source
        if source not in sources:
            continue
        if not plan:
            reasons[str(source.number)] = "notPlanned: no attempt to plan it came to an end"
        elif plan["reason"]:
            reasons[str(source.number)] = plan["reason"]
        elif twin != source:
            reasons[str(source.number)] = f"sameFile: it is, byte for byte, {twin.path}"
        elif job.work_on(digest) in before:
            reasons[str(source.number)] = f"sameFile: another job published it, with this setup, in {job.out}"
        elif not plan["files"]:
            reasons[str(source.number)] = "noMatch: no document was found in it"
    return reasons


def settle_names(job: Job) -> list[str]:
    """Says which name each planned output gets. Returns the clashes that stop the job."""
    with job.locked():
        open_ones = [source for source in job.sources if state_of(job, source)[0] is not State.DONE]
        reserved = {final for source in job.sources for _, _, final in moves_of(job, source)}
        open_ones = [source for source in open_ones if not moves_of(job, source)]
        out = left_out(job, open_ones)
        planned = {source: dict.fromkeys(file["name"] for file in job.outcome(source, PLAN)["files"]
                                         if file["fate"] != "givenUp")
                   for source in open_ones if str(source.number) not in out}
        finals = {source: {name: name for name in names} for source, names in planned.items()}

        def clashing() -> set[str]:
            takers = Counter(final for names in finals.values() for final in names.values())
            return {final for final, takes in takers.items()
                    if takes > 1 or final in reserved or os.path.lexists(job.out / final)}

        clashes = clashing()
        if clashes and job.clash == "title":
            finals = {source: {name: titled(job.title(source), name) if name in clashes else name for name in names}
                      for source, names in planned.items()}
            clashes = clashing()
        told = told_clashes(job, finals, clashes)
        renamed: dict[str, Any] = {str(source.number): {name: final for name, final in names.items() if name != final}
                                   for source, names in finals.items()}
        job.keep_names({"leftOut": out, "renamed": renamed, "clashes": told})
        return told


def told_clashes(job: Job, finals: dict[Source, dict[str, str]], clashes: set[str]) -> list[str]:
    told = []
    for clash in sorted(clashes)[:MOST_TOLD]:
        takers = [source.path for source, names in finals.items() if clash in names.values()]
        is_there = [f"{job.out / clash}, which is there"] if os.path.lexists(job.out / clash) else []
        told.append(f"{clash}: {' and '.join([*takers, *is_there])}")
    if len(clashes) > MOST_TOLD:
        told.append(f"and {len(clashes) - MOST_TOLD} more")
    return told
