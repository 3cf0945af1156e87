"""The last step: publishes, makes one report, one account and one list of mails of those of all sources, and mails."""

from __future__ import annotations

import csv
import io
import json
import os
import stat
from collections.abc import Iterator
from pathlib import Path
from typing import Any

from folivex_attempts import disk
from folivex_attempts.record import Record
from folivex_attempts.splitting import plain

from .account import FATES, account_of, count
from .attempt import OUT
from .job import PLAN, Job, JobProblem, Source, write_whole
from .mailing import send_lists
from .publishing import State, moves_of, outcomes_of, publish_all, state_of

COLUMNS = ("source", "first page", "last page", "text", "output", "address")
WORDS = {"inFiles": "in files", "replaced": "replaced", "handedOn": "handed on", "leftOver": "in no range",
         "stopped": "stopped", "failed": "failed"}


def merge(job: Job) -> bool:
    """True when every source is published, and every mail sent that nobody has to confirm."""
    with job.locked():
        publish_all(job)
        entries = [entry_of(job, source) for source in job.sources]
        write_whole(job.out / f"farm-{job.id}.csv", report(job))
        write_whole(job.out / f"farm-{job.id}.json", json.dumps({"job": job.id, "sources": entries}, indent=1))
        lists = write_mail_list(job)
        mails, all_sent = send_lists(job, lists)
        write_whole(job.out / f"farm-{job.id}.txt", summary(job, entries, mails))
    return all_sent and all(entry["state"] == State.DONE.value for entry in entries)


def entry_of(job: Job, source: Source) -> dict[str, Any]:
    state, reason = state_of(job, source)
    if state is State.OPEN and job.names().get("clashes"):
        reason = "stopped, since names of outputs are not free"
    if state is State.READY:
        reason = "an output of it has no free name"
    entry: dict[str, Any] = {"path": source.path, "state": state.value, "reason": plain(reason)}
    plan = job.outcome(source, PLAN)
    if pages := plan.get("pages"):
        entry["total"] = pages["total"]
    if state is State.DONE:
        fates, problem = account_of(plan, outcomes_of(job, source))
        missing = [final for _, _, final in moves_of(job, source) if not os.path.lexists(job.out / final)]
        entry["pages"] = {fate: {"count": count(ranges), "ranges": ranges} for fate, ranges in fates.items()}
        entry["files"] = len(moves_of(job, source))
        entry["reason"] = problem or (f"{missing[0]} was taken away since" if missing else "")
    return entry


def rows_of(job: Job, source: Source) -> Iterator[tuple[Any, ...]]:
    finals = {(task, name): final for task, name, final in moves_of(job, source)}
    for task in job.part_names():
        for file in job.outcome(source, task)["files"]:
            yield (source.path, file["firstPage"], file["lastPage"], file["matchedText"],
                   str(job.out / finals[task, file["name"]]), file.get("address", ""))


def no_formula(cell: Any) -> Any:
    return f"'{cell}" if isinstance(cell, str) and cell[:1] in ("=", "+", "-", "@", "\t", "\r") else cell


def report(job: Job) -> str:
    text = io.StringIO()
    writer = csv.writer(text)
    writer.writerow(COLUMNS)
    for source in job.sources:
        if state_of(job, source)[0] is State.DONE:
            writer.writerows([no_formula(cell) for cell in row] for row in rows_of(job, source))
    return text.getvalue()


def summary(job: Job, entries: list[dict[str, Any]], mails: list[str]) -> str:
    done = [entry for entry in entries if entry["state"] == State.DONE.value]
    lines = [f"{len(entries)} sources: {len(done)} published, {len(entries) - len(done)} not"]
    totals = {fate: sum(entry["pages"][fate]["count"] for entry in done) for fate in FATES}
    fates = ", ".join(f"{number} {WORDS[fate]}" for fate, number in totals.items() if number)
    lines.append(f"{sum(entry['total'] for entry in done)} pages of what is published: {fates or 'none'}; "
                 f"{sum(entry['files'] for entry in done)} files")
    lines += [f"not free: {clash}" for clash in job.names().get("clashes", [])]
    unknown = [entry for entry in entries if entry not in done]
    if unknown:
        lines.append(f"{sum(entry.get('total', 0) for entry in unknown)} pages of what is not, as far as it could be "
                     "planned:")
    lines += [f"  {entry['path']}: {entry['reason']}" for entry in unknown]
    lines += [f"look at {entry['path']}: {entry['reason']}" for entry in done if entry["reason"]]
    lines += mails
    return "\n".join(plain(line) for line in lines) + "\n"


def mail_rows(job: Job, source: Source) -> Iterator[dict[str, Any]]:
    """Rows of the records beside the lists that its attempts saved, with the names that the files have now."""
    finals = {(task, name): final for task, name, final in moves_of(job, source)}
    for task in job.part_names():
        name = job.outcome(source, task).get("mailList")
        if not name:
            continue
        beside = job.place(source) / task / "complete" / OUT / f"{name}.sent"
        for line in beside.read_text(encoding="utf-8").splitlines():
            row = json.loads(line)
            if "row" in row:
                staged = os.path.relpath(row["file"], OUT)  # the program names it from its working folder on
                if (task, staged) not in finals:
                    raise JobProblem(f"{beside}: {row['file']}: is not among the outputs")
                yield {**row, "file": str(job.out / finals[task, staged])}


def write_mail_list(job: Job) -> list[Path]:
    """One list with the mails of all sources that are in no earlier list of the job. A list that is out is a person's:
    it is never written again, even when it is gone. Returns all of them."""
    record = Record(job.folder / ".lists")
    number = record.count("list") + 1
    if record.last["step"] != "listing":
        listed = {source for entry in record.steps if entry["step"] == "list" for source in entry["sources"]}
        new = [source.number for source in job.sources
               if state_of(job, source)[0] is State.DONE and source.number not in listed]
        if any(outcome.get("mailList") for number in new for outcome in outcomes_of(job, job.sources[number - 1])):
            record.add("listing", sources=new)
    if record.last["step"] == "listing":
        path = list_path(job, number)
        if not path.exists():
            sources = [job.sources[number - 1] for number in record.last["sources"]]
            save_list(path, [row for source in sources for row in mail_rows(job, source)])
        record.add("list", sources=record.last["sources"])
    return [list_path(job, number) for number in range(1, record.count("list") + 1)]


def list_path(job: Job, number: int) -> Path:
    return job.out / f"farm-{job.id}_emails{'' if number == 1 else f'-{number}'}.lst"


def save_list(path: Path, rows: list[dict[str, Any]]) -> None:
    """The record first: a list without one is sent without a look at whether the files are still the same."""
    journal = [json.dumps({"folivex": "mails of a list", "source": "", "bytes": "", "settings": ""})]
    journal += [json.dumps({**row, "row": number}) for number, row in enumerate(rows)]
    lines = [f"{row['address']}|{row['file']}|{row.get('first', 0)}|{row.get('last', 0)}" for row in rows]
    for target, text in ((path.with_name(f"{path.name}.sent"), journal), (path, ["\ufeffUNICODEV4", *lines])):
        write_whole(target, "".join(f"{line}\n" for line in text))
        os.chmod(target, stat.S_IRUSR | stat.S_IWUSR)
        disk.sync(target)
