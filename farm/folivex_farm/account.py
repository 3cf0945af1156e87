"""What became of each page of a source, of all its parts together, and whether that adds up."""

from __future__ import annotations

from typing import Any

Ranges = list[list[int]]  # [first, last], pages from 1, both included
FATES = ("inFiles", "replaced", "handedOn", "leftOver", "stopped", "failed")


def union(ranges: Ranges) -> Ranges:
    """Sorted; neighbours are one range."""
    joined: Ranges = []
    for first, last in sorted(ranges):
        if joined and first <= joined[-1][1] + 1:
            joined[-1][1] = max(joined[-1][1], last)
        else:
            joined.append([first, last])
    return joined


def without(ranges: Ranges, others: Ranges) -> Ranges:
    """The pages of `ranges` that are in none of `others`; both as union() makes them."""
    left: Ranges = []
    at = 0
    for first, last in ranges:
        while at < len(others) and others[at][1] < first:
            at += 1
        next_at = at
        while next_at < len(others) and others[next_at][0] <= last:
            if first < others[next_at][0]:
                left.append([first, others[next_at][0] - 1])
            first = others[next_at][1] + 1
            next_at += 1
        if first <= last:
            left.append([first, last])
    return left


def count(ranges: Ranges) -> int:
    return sum(last - first + 1 for first, last in ranges)


def fates_of(parts: list[dict[str, Any]]) -> dict[str, Ranges]:
    """Of each page the first of FATES that a part tells of it, left over last: each part tells that of the same
    pages, whoever has them."""
    told: Ranges = []
    fates: dict[str, Ranges] = {}
    for fate in (*(fate for fate in FATES if fate != "leftOver"), "leftOver"):
        ranges = union([part for pages in parts for part in pages.get(fate, {}).get("ranges", [])])
        fates[fate] = without(ranges, told)
        told = union(told + ranges)
    return fates


def account_of(plan: dict[str, Any], outcomes: list[dict[str, Any]]) -> tuple[dict[str, Ranges], str]:
    """The fates of the pages, and what does not add up in them; empty when all does."""
    total = plan["pages"]["total"]
    parts = [outcome["pages"] for outcome in outcomes if outcome["pages"]]
    fates = fates_of(parts)
    told = union([pages for ranges in fates.values() for pages in ranges])
    everything = [[1, total]] if total else []
    if any(pages["total"] != total for pages in parts):
        return fates, f"the plan has {total} pages, and the outputs were made of another number"
    if missing := without(everything, told):
        return fates, f"nobody tells what became of the pages {in_words(missing)}"
    if told != everything:
        return fates, f"there are pages behind the last one, {total}"
    left_over = [pages["leftOver"]["ranges"] for pages in parts]
    if any(ranges != left_over[0] for ranges in left_over) or count(fates["leftOver"]) != count(union(left_over[0])):
        return fates, "its parts do not agree about the pages in no range"
    in_outputs = union([[file["firstPage"], file["lastPage"]] for outcome in outcomes for file in outcome["files"]])
    if without(in_outputs, fates["inFiles"]) or without(union(plan["pages"]["inFiles"]["ranges"]), fates["inFiles"]):
        return fates, "the pages in files are not those that were planned"
    return fates, ""


def in_words(ranges: Ranges) -> str:
    return ", ".join(str(first) if first == last else f"{first}-{last}" for first, last in ranges[:20])
