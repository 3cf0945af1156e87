"""Draws a pile of papers of one kind, and tells what is true of it."""

from papers.dice import Dice
from papers.sheet import FACES, Pile
from papers.tongues import TONGUES

LEFT, RIGHT = 57, 538


class Paper:
    """One document: what identifies it, and how many pages it has."""

    def __init__(self, dice, tongue, number, person, pages):
        self.number, self.person, self.pages = number, person, pages
        self.address = [f"{dice.between(1, 99)} {dice.pick(tongue.last)}", dice.digits(5)]
        if dice.below(3) == 0:
            self.address.insert(0, f"c/o {dice.pick(tongue.last)}")
        self.total = f"{dice.between(1, 999)}.{dice.between(10, 99)}"


class Writer:
    def __init__(self, kind, seed, path):
        self.kind = kind
        self.dice = Dice(seed, kind.name)
        self.tongue = TONGUES[kind.tongue]
        dice = self.dice
        shift = (dice.below(12), dice.below(16))
        face = dice.pick([face for face in FACES if face != "Bold"])
        self.pile = Pile(path, kind.wide, self.tongue.right_to_left, face, shift,
                         lambda: dice.between(0, 10 * kind.jitter) / 10)
        self.label = dice.pick(self.tongue.number) + kind.colon
        self.person_label = dice.pick(self.tongue.person) + ":"
        self.title = dice.pick(self.tongue.titles)
        self.firm = f"{dice.pick(self.tongue.last)} & {dice.pick(self.tongue.last)}"
        self.facts_left, self.facts_top = dice.between(300, 350), dice.between(104, 122)
        self.size = dice.between(8, 10)
        self.issued = f"{dice.between(1, 28):02}.{dice.between(1, 12):02}.2026"

    def papers(self):
        dice, kind = self.dice, self.kind
        count = 3 if kind.few else dice.between(9, 24)
        shape = dice.pick(["digits", "prefixed", "parted"]) if kind.number == "any" else kind.number
        make = {
            "digits": lambda: dice.digits(6),
            "short": lambda: dice.digits(dice.between(2, 7)),
            "prefixed": lambda: "RV" + dice.digits(5),
            "grouped": lambda: f"{dice.digits(4)} {dice.digits(4)} {dice.digits(2)}",
            "parted": lambda: f"{dice.digits(3)}-{dice.digits(4)}",
        }[shape]
        numbers = dice.distinct(count, make)
        if kind.rising:
            first = int(dice.digits(6))
            numbers = [str(first + index * 3) for index in range(count)]
        person = lambda: f"{dice.pick(self.tongue.first)} {dice.pick(self.tongue.last)}"
        persons = [person() for _ in range(count)] if kind.same_persons else dice.distinct(count, person)
        if kind.same_persons:
            persons[count // 2] = persons[0]
        return [Paper(dice, self.tongue, number, name, kind.pages[0] if len(kind.pages) == 1 else
                      dice.between(*kind.pages)) for number, name in zip(numbers, persons)]

    def write(self):
        ranges, names = [], []
        if self.kind.cover:
            self.prose(90, 18)
            self.pile.turn()
        for paper in self.papers():
            if self.kind.separator:
                self.separator(paper)
            begin = self.pile.page + 1
            for page in range(1, paper.pages + 1):
                self.sheet(paper, page)
                self.pile.turn()
            if self.kind.blank_back and (self.pile.page - begin + 1) % 2:
                self.pile.canvas.setFont(self.pile.face, 8)
                self.pile.turn()
            ranges.append([begin, self.pile.page])
            names.append([getattr(paper, name) for name in self.kind.names])
        self.pile.save()
        return {"kind": self.kind.name, "pages": self.pile.page, "ranges": ranges, "names": names}

    def separator(self, paper):
        self.pile.text(self.pile.width / 2, 300, "***** " + self.title.upper() + " *****", 20, align="centre")
        if self.kind.separator == "numbered":
            self.pile.text(200, 360, paper.number, 16)
        self.pile.turn()

    def sheet(self, paper, page):
        kind, pile = self.kind, self.pile
        is_first = page == 1
        if kind.bookmarks and is_first:
            pile.bookmark(paper.number if kind.bookmarks == "number" else paper.person)
        if kind.bookmarks == "levels" and page == 2:
            pile.bookmark(self.tongue.total, 1)
        if kind.letterhead:
            pile.text(LEFT, 50, self.firm, 14, "Bold")
            pile.text(RIGHT, 62, "www.example.com", 7, align="right")
        if is_first:
            self.first_head(paper)
        self.marks(paper, page)
        if kind.every is not None and (is_first or kind.every):
            kind.place(self, paper, page)
        top = 300 if is_first else 130
        top = self.table(top, self.dice.between(6, 14)) if kind.table else self.prose(top, self.dice.between(8, 20))
        if kind.extra:
            kind.extra(self, paper, page, top + 20)
        if page == paper.pages and kind.table:
            pile.text(LEFT, top + 12, self.tongue.total, 10, "Bold")
            pile.text(RIGHT, top + 12, paper.total, 10, "Bold", align="right")

    def fact(self, text):
        self.pile.text(self.facts_left, self.facts_top, text)

    def first_head(self, paper):
        kind, pile = self.kind, self.pile
        if kind.title:
            pile.text(LEFT, 240, self.title, 16, "Bold")
        if kind.address:
            for line, text in enumerate([paper.person, *paper.address]):
                pile.text(LEFT, 115 + line * 13, text, 10)
        if kind.dated:
            pile.text(self.facts_left, self.facts_top + 42, self.tongue.date + ":")
            pile.text(self.facts_left + 90, self.facts_top + 42, self.issued)
        if kind.person:
            pile.text(self.facts_left, self.facts_top + 28, self.person_label)
            pile.text(self.facts_left + 90, self.facts_top + 28, paper.person)

    def marks(self, paper, page):
        kind, pile = self.kind, self.pile
        if kind.late_numbers and page == 1:
            return
        if kind.marks == "x of y":
            pile.text(RIGHT, 800, self.tongue.page.format(page, paper.pages), 8, align="right")
        elif kind.marks == "x of y above":
            pile.text(RIGHT, 80, self.tongue.page.format(page, paper.pages), 8, align="right")
        elif kind.marks == "x/y":
            pile.text(RIGHT, 40, f"{page}/{paper.pages}", 8, align="right")
        elif kind.marks == "dashed":
            pile.text(pile.width / 2, 810, f"- {page} -", 8, align="centre")
        elif kind.marks == "number":
            pile.text(pile.width / 2, 806, str(page), 8, align="centre")
        elif kind.marks == "running":
            pile.text(pile.width / 2, 806, str(pile.page + 1), 8, align="centre")

    def prose(self, top, lines):
        words = self.tongue.prose.split()
        self.pile.text(LEFT, top, self.tongue.greeting)
        for line in range(lines):
            text = " ".join(self.dice.pick(words) for _ in range(9))
            self.pile.text(LEFT, top + 20 + line * 14, text, self.size)
        return top + 20 + lines * 14

    def table(self, top, rows):
        words = self.tongue.prose.split()
        for x, head in [(LEFT, self.tongue.date), (LEFT + 90, words[0].title()), (RIGHT - 60, self.tongue.total)]:
            self.pile.text(x, top, head, 8, "Bold")
        for row in range(rows):
            y = top + 16 + row * 14
            self.pile.text(LEFT, y, f"{self.dice.between(1, 28):02}.{self.dice.between(1, 12):02}.2026", 8)
            self.pile.text(LEFT + 90, y, " ".join(self.dice.pick(words) for _ in range(self.dice.between(2, 5))), 8)
            self.pile.text(RIGHT, y, f"{self.dice.between(1, 900)}.{self.dice.between(10, 99)}", 8, align="right")
        return top + 16 + rows * 14
