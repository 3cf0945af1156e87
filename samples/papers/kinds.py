"""The kinds of papers. Where a value stands is a function of its own; the rest is data."""

from dataclasses import dataclass
from typing import Callable, Optional


def beside(writer, paper, page):
    writer.fact(writer.label)
    writer.pile.text(writer.facts_left + 90, writer.facts_top, paper.number)


def close(writer, paper, page):
    writer.fact(f"{writer.label} {paper.number}")


def glued(writer, paper, page):
    writer.fact(writer.label + paper.number)


def in_head_line(writer, paper, page):
    writer.pile.text(57, 90, f"{writer.label} {paper.number}  {writer.tongue.date}: {writer.issued}", 8)


def below(writer, paper, page):
    for column, (head, value) in enumerate([(writer.tongue.date, writer.issued), (writer.label, paper.number),
                                            (writer.tongue.total, paper.total)]):
        writer.pile.text(80 + column * 150, 205, head, 8, "Bold")
        writer.pile.text(80 + column * 150, 219, value, 9)


def moved(writer, paper, page):
    top = 160 + 13 * len(paper.address)
    writer.pile.text(57, top, f"{writer.label} {paper.number}")


def running_text(writer, paper, page):
    words = writer.tongue.prose.split()
    writer.pile.text(57, 272, " ".join([words[3], writer.label, paper.number, *words[4:8]]), writer.size)


def flush_right(writer, paper, page):
    writer.fact(writer.label)
    writer.pile.text(530, writer.facts_top, paper.number, align="right")


def dotted(writer, paper, page):
    writer.pile.text(writer.facts_left - 60, writer.facts_top, f"{writer.label} ........ {paper.number}")


def bare(writer, paper, page):
    writer.pile.text(writer.facts_left + 60, 75, paper.number, 11, "Bold")


def bare_right(writer, paper, page):
    writer.pile.text(538, 95, paper.number, 11, "Bold", align="right")


def person_only(writer, paper, page):
    writer.fact(f"{writer.person_label} {paper.person}")


def holder(writer, paper, page):
    writer.pile.text(writer.pile.width / 2, 260, paper.person, 22, "Serif", align="centre")


def hashed(writer, paper, page):
    writer.pile.text(57, 100, f"{writer.label} #{paper.number} {writer.tongue.date} {writer.issued}")


def starred(writer, paper, page):
    writer.pile.text(380, 56, f"*{paper.number}*", 9, "Mono")


def in_running_head(writer, paper, page):
    writer.pile.text(57, 84, f"{writer.title}, {paper.number}, {writer.tongue.date} {writer.issued}", 8)


def in_address(writer, paper, page):
    writer.pile.text(57, 115, paper.person, 10)
    writer.pile.text(57, 128, f"{writer.dice.between(1, 99)} {writer.dice.pick(writer.tongue.last)}", 10)


def above_address(writer, paper, page):
    writer.pile.text(57, 100, f"{paper.number} / {writer.issued}", 7)


def in_prose_too(writer, paper, page, top):
    words = writer.tongue.prose.split()
    writer.pile.text(57, top, " ".join([words[2], writer.label, *words[5:9]]))


def in_prose_later(writer, paper, page, top):
    if page > 1:
        in_prose_too(writer, paper, page, top)


def summary(writer, paper, page, top):
    if page == paper.pages:
        writer.pile.text(57, top, f"{writer.label} {paper.number}", 8)
        writer.pile.text(57, top + 14, f"{writer.person_label} {paper.person}", 8)


def mailed(writer, paper, page, top):
    if page == 1:
        writer.pile.text(57, 268, f"E-mail: {paper.number.lower()}@example.com", 8)


@dataclass(frozen=True)
class Kind:
    name: str
    tongue: str = "en"
    pages: tuple = (1, 5)
    place: Callable = beside
    every: Optional[bool] = False  # the value stands on every page; None: on none
    names: tuple = ("number",)  # what of a paper may be its name; none: anything
    number: str = "any"
    rising: bool = False
    colon: str = ":"
    marks: str = ""
    title: bool = True
    letterhead: bool = True
    address: bool = True
    person: bool = False
    dated: bool = True
    table: bool = True
    separator: str = ""
    bookmarks: str = ""
    blank_back: bool = False
    cover: bool = False
    wide: bool = False
    same_persons: bool = False
    jitter: int = 0  # points by which each text is off its place, as text recognition leaves it
    few: bool = False  # papers
    late_numbers: bool = False  # page numbers from the second page on
    extra: Optional[Callable] = None


BARE = dict(title=False, address=False, dated=False)

KINDS = [
    Kind("statement, first page", marks="x of y", person=True, names=("number", "person")),
    Kind("statement, German, every page", "de", every=True, marks="x of y"),
    Kind("statement, Turkish, every page", "tr", place=close, every=True, marks="x of y above"),
    Kind("statement, Hebrew", "he", marks="x of y", person=True, names=("number", "person")),
    Kind("statement, Hebrew, every page, close", "he", place=close, every=True),
    Kind("statement, a cover before", cover=True, person=True, names=("number", "person")),
    Kind("invoice, French, colon apart", "fr", place=close, colon=" :", marks="x of y"),
    Kind("invoice, Spanish, value below", "es", place=below, colon=""),
    Kind("invoice, Italian, below, every page", "it", place=below, colon="", every=True),
    Kind("invoice, Polish, rising numbers", "pl", place=close, rising=True, marks="x of y"),
    Kind("invoice, value flush right", "en", place=flush_right, number="short"),
    Kind("invoice, flush right, every page", "it", place=flush_right, number="short", every=True),
    Kind("invoice, dotted", "es", place=dotted),
    Kind("invoice, label and value one word", "de", place=glued),
    Kind("invoice, total repeated in a summary", extra=summary, marks="x of y"),
    Kind("invoice, landscape", "fr", wide=True, every=True),
    Kind("invoice, line of labels above", "de", place=in_head_line, every=True),
    Kind("policy, label moved by address", "en", place=moved, marks="dashed"),
    Kind("policy, label moved, Polish", "pl", place=moved),
    Kind("letter, label in running text", "en", place=running_text, table=False, colon=""),
    Kind("letter, label again in prose later", "de", place=close, table=False, extra=in_prose_later),
    Kind("letter, label in prose everywhere", "fr", place=close, table=False, extra=in_prose_too, pages=(2, 4)),
    Kind("letter, persons only", "es", place=person_only, names=("person",), table=False, address=False),
    Kind("letter, persons twice", "it", person=True, same_persons=True, table=False),
    Kind("payslip, one page", "pl", pages=(1,), place=close, every=True),
    Kind("payslip, two sides", "de", pages=(2,)),
    Kind("payslip, blank backs", "tr", pages=(1, 3), blank_back=True),
    Kind("payslip, one page, running numbers", "it", pages=(1,), marks="running"),
    Kind("certificate, number alone", "en", pages=(1,), place=bare, table=False, every=True, address=False),
    Kind("certificate, number alone on all pages", "fr", pages=(1, 3), place=bare, every=True, table=False, **BARE),
    Kind("certificate, number alone flush right", "tr", pages=(1, 4), place=bare_right, every=True, number="short"),
    Kind("certificate, centred name", "es", pages=(1,), place=holder, names=("person",), table=False, address=False),
    Kind("report, page x of y alone", "en", every=None, marks="x of y", names=(), **BARE),
    Kind("report, page x of y above", "pl", every=None, marks="x of y above", names=(), **BARE),
    Kind("report, dashed page numbers", "de", every=None, marks="dashed", names=(), table=False, **BARE),
    Kind("report, plain page numbers", "fr", every=None, marks="number", names=(), table=False, **BARE),
    Kind("report, x/y and a label", "es", place=close, every=True, marks="x/y"),
    Kind("report, title of first pages", "it", every=None, address=False, dated=False, names=()),
    Kind("report, bookmarks", "en", every=None, bookmarks="person", names=("person",), table=False, **BARE),
    Kind("report, bookmarks in two levels", "de", every=None, bookmarks="levels", names=("person",), pages=(2, 5), **BARE),
    Kind("scan, separator sheets", "en", every=None, separator="plain", names=(), letterhead=False, **BARE),
    Kind("scan, numbered separator sheets", "de", every=None, separator="numbered", letterhead=False, **BARE),
    Kind("order, hash before the number", "en", place=hashed, colon=""),
    Kind("order, starred number at the head", "pl", place=starred, every=True),
    Kind("order, number in a running head", "it", place=in_running_head, every=True),
    Kind("order, numbers of several words", "fr", place=close, number="grouped", marks="x of y"),
    Kind("order, page numbers from the second on", "de", marks="number", late_numbers=True),
    Kind("order, three papers", "es", few=True, marks="x of y"),
    Kind("order, three papers, no page numbers", "tr", few=True, person=True, names=("number", "person")),
    Kind("letter, name in the address only", "fr", place=in_address, names=("person",), table=False, address=False),
    Kind("letter, number above the address", "de", place=above_address, table=False),
    Kind("recognised, label of first pages", "en", jitter=1, marks="x of y"),
    Kind("recognised, label of all pages", "es", place=close, every=True, jitter=1),
    Kind("recognised, number alone on all pages", "it", place=bare, every=True, jitter=1, **BARE),
    Kind("recognised, no page numbers", "pl", place=close, jitter=1, table=False),
    Kind("statement with mail addresses", "en", pages=(1, 4), extra=mailed, marks="number"),
]
