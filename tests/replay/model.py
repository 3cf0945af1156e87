"""The rules of a split once more, in another language and from another hand: what a run over a source must
come to. It is slow, holds everything in memory and knows nothing of PDFs; it is here to disagree.

Settings are texts by their keys, as a setup file holds them.
"""

import re
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent
SPLIT_METHODS = (HERE / "methods.txt").read_text().splitlines()
METHODS, BOOKMARKS = SPLIT_METHODS[:7], SPLIT_METHODS[7:]
NAMES = (HERE / "names.txt").read_text().splitlines()
UNIQUE, UNTIL, UNTIL_AT, ONE_PAGE = (1, 3), 4, 5, 6
AT_POSITION = (2, 3, 5)
REST_OF_LINE = (7, 8)


def leading_number(text):
    found = re.match(r"\s*([+-]?\d+)", text)
    return int(found[1]) if found else 0


@dataclass
class Range:
    first: int  # pages from 0, inclusive
    last: int
    text: str
    line: str = ""
    again: bool = False  # repeats the range before it


# ---- matching and planning ----------------------------------------------------------------------


class Axis:
    def __init__(self, text):
        self.low = self.high = self.other = leading_number(text)
        if "-" in text[1:]:
            self.high = leading_number(text[text.index("-", 1) + 1:])
        if "|" in text[1:]:
            self.other = leading_number(text[text.index("|", 1) + 1:])

    def holds(self, value):
        return self.low <= value <= self.high or value == self.other


def stands_at(h_axis, v_axis, word):
    if v_axis.holds(word.v) and h_axis.holds(word.h):
        return True
    of_length = lambda axis: axis.low < 0 and -axis.low == len(word.text)
    if word.v == v_axis.low and (of_length(h_axis) or h_axis.low == 0):
        return True
    return word.h == h_axis.low and (of_length(v_axis) or v_axis.low == 0)


class Ring:
    """The last words, as many as the pattern has."""

    def __init__(self, pattern, same):
        self.pattern, self.same = pattern, same
        self.size = len(pattern.split())
        self.words = []

    def push(self, text):
        self.words = (self.words + [text])[-self.size:] if self.size > 1 else []

    def matches(self):
        return self.size > 1 and self.same(" ".join(self.words), self.pattern)


class Scan:
    """Walks the words of the pages and closes ranges, in the order in which they are met."""

    def __init__(self, settings, save, clean):
        self.s, self.save_range, self.clean = settings, save, clean
        self.method = METHODS.index(settings["PAGEEXTRACT"]) if settings["PAGEEXTRACT"] in METHODS else 0
        self.naming = NAMES.index(settings["EXTRACT"]) if settings["EXTRACT"] in NAMES else 0
        fold = (lambda t: re.sub("[A-Z]", lambda m: m[0].lower(), t)) if settings["IGNORECASE"] == "1" else (lambda t: t)
        self.same = lambda a, b: fold(a) == fold(b)
        self.find = settings["FINDSTRING"]
        number = re.match(r"\[WORD(.*)", self.find)
        self.word_number = leading_number(number[1]) if number else None
        self.search = Ring("" if number else self.find, self.same)
        self.until = Ring(settings["EXTRACTUNTIL"], self.same)
        self.after = Ring(settings["EXTRACTFILENAME"], lambda a, b: a == b)
        self.start_axes = Axis(settings["MATCHPOSH"]), Axis(settings["MATCHPOSV"])
        self.until_axes = Axis(settings["UNTILMATCHPOSH"]), Axis(settings["UNTILMATCHPOSV"])
        self.pending = None
        self.range_text = self.matched = ""
        self.previous = None  # (start, text as planned, text as shown)
        self.match_pending = self.after_pending = self.awaiting = self.start_seen = False
        self.forget_texts()

    def forget_texts(self):
        """What every save begins anew."""
        self.seek_after, self.after_first = False, True
        self.collected, self.on_line, self.next_line, self.line_v, self.taken = "", False, False, None, 0

    # -- pages and words

    def run(self, source, first, end):
        for index in range(first, end):
            self.begin_page()
            words = source.pages[index].words()
            if self.s["ROTATED"] == "1":
                for word in words:
                    word.h, word.v = word.v, word.h
            find = self.find
            if self.word_number is not None:
                find = words[self.word_number - 1].text if 0 < self.word_number <= len(words) else None
            for place, word in enumerate(words):
                ready = self.word_number is None or place >= self.word_number - 1
                self.take(index, word, find if ready else None)
        if self.pending is not None:
            self.close_at_end(max(end - 1, self.pending), len(source.pages))

    def begin_page(self):
        self.taken = 0
        self.next_line = self.on_line and self.naming == 8
        self.on_line = False
        if self.next_line:
            self.line_v = None
            self.collected += "_"

    def take(self, page, word, find):
        for ring in (self.search, self.until, self.after):
            ring.push(word.text)
        if self.match_pending:
            self.pending = page
            if not self.after_pending:
                self.range_text = self.matched if self.naming in (0, 4) else word.text
                self.seek_after = self.seek_after or self.naming in (6, 7, 8)
                if self.naming in REST_OF_LINE:
                    self.on_line, self.line_v, self.taken = True, word.v, 0
        if self.after_pending and self.after_first:
            self.after_first = False
            self.range_text = word.text
            self.collected, self.on_line, self.line_v, self.taken = "", True, word.v, 0
        self.collect(word)
        self.match_pending = False
        self.after_pending = self.seek_after and self.is_after_text(word)
        if not self.take_start(page, word, find):
            self.take_until(page, word)

    def is_after_text(self, word):
        text = self.s["EXTRACTFILENAME"]
        return text != "" and (word.text == text or self.after.matches())

    def collect(self, word):
        if self.on_line:
            if word.v == self.line_v:
                self.add(word)
            else:
                self.taken = 0
        elif self.next_line:
            if self.line_v is None:
                self.line_v = word.v
            if word.v == self.line_v:
                self.add(word)
            else:
                self.next_line = False

    def add(self, word):
        limit = int(self.s["TAKENWORDSFORFILENAME"])
        self.taken += 1
        if self.taken > limit:
            return
        prefix, stop = self.s["FIRSTCHAROFWORD"], int(self.s["UNTILHHPOSLESSTHAN"])
        if (prefix and word.text.startswith(prefix)) or (stop and word.h >= stop):
            self.taken = limit + 1
            return
        if self.collected and (self.collected[-1] == ":" or not re.match(r"[^\w\s]|_", self.collected[-1])):
            self.collected += self.s["ADDBWORDS"]
        self.collected += word.text

    # -- matches

    def take_start(self, page, word, find):
        if (self.method == UNTIL and self.awaiting) or self.start_seen or find is None:
            return False
        by_word = find == "" or self.same(word.text, find)
        if not by_word and not self.search.matches():
            return False
        if self.method in AT_POSITION and not stands_at(*self.start_axes, word):
            return False
        self.start_at(page, word, word.text if by_word else " ".join(self.search.words))
        self.awaiting = self.method in (UNTIL, UNTIL_AT)
        self.start_seen = self.method == UNTIL_AT
        return True

    def take_until(self, page, word):
        text = self.s["EXTRACTUNTIL"]
        if not self.awaiting or text == "" or not (self.same(word.text, text) or self.until.matches()):
            return
        if self.method == UNTIL:
            if self.pending is not None:
                self.save(self.pending, max(self.pending, page))
                self.pending = None
            self.awaiting = False
        elif stands_at(*self.until_axes, word):
            by_word = self.same(word.text, text)
            self.start_at(page, word, word.text if by_word else " ".join(self.until.words))

    def start_at(self, page, word, matched):
        if self.pending is not None:
            end = self.pending if self.method == ONE_PAGE else max(self.pending, page - 1)
            if self.method in UNIQUE:
                if not self.save_unique(end):
                    self.pending = None
            else:
                self.save(self.pending, end)
                self.pending = None
        self.matched = matched
        if self.method in AT_POSITION:
            self.collected = word.text
        if self.naming in (6, 7, 8) and self.is_after_text(word):
            self.after_pending = True
        self.match_pending = True

    # -- ranges

    def close_at_end(self, last, page_count):
        if self.find == "" and self.range_text == "":
            self.range_text = self.matched
        method = 0 if page_count == 1 and self.method == 1 else self.method
        if method in UNIQUE:
            self.save_unique(last)
        else:
            self.save(self.pending, self.pending if method == ONE_PAGE else last)

    def save(self, first, last, text=None, again=False):
        saved = Range(first, last, self.range_text if text is None else text, self.collected, again)
        self.save_range(saved)
        self.range_text = saved.text
        self.forget_texts()

    def save_unique(self, end):
        self.collected = self.clean(self.collected)
        again = False
        if self.previous:
            _, planned, shown = self.previous
            again = (self.range_text == planned and self.naming not in REST_OF_LINE) or \
                shown in (self.range_text, self.collected)
        start = self.previous[0] if again else self.pending
        text = self.range_text
        if again and text != self.previous[1]:
            text = self.previous[2]
        self.save(start, end, text, again)
        self.previous = (start, text, self.range_text)
        return again


def bookmark_ranges(source, method):
    level = (None, 0, 1)[BOOKMARKS.index(method)]
    starts = {}
    for entry in source.bookmarks:
        if level in (None, entry.level):
            starts.setdefault(entry.page, entry.title)
    pages = sorted(starts)
    return [Range(page, after - 1, starts[page]) for page, after in zip(pages, pages[1:] + [len(source.pages)])]


# ---- naming ---------------------------------------------------------------------------------------


class Namer:
    def __init__(self, settings, source, title, folder, lines):
        self.s, self.source, self.title, self.folder = settings, source, title, folder
        self.naming = NAMES.index(settings["EXTRACT"]) if settings["EXTRACT"] in NAMES else 0
        if settings["PAGEEXTRACT"] in BOOKMARKS and self.naming in (6, 7, 8):
            self.naming = 10  # a bookmark has no line of its own
        self.number, self.lines = 0, list(lines)

    def cleaned(self, text):
        return "".join(c for c in text if (c.isprintable() or "\x80" <= c <= "\xff") and c not in '<>:?*"/\\|'
                       and c not in self.s["REPORTREMOVECHARS"])

    def filtered(self, text):
        rule = self.s["ANYCHAROFWORD"]
        if not rule:
            return text
        if rule.startswith("[char>"):
            return text[:leading_number(rule[6:])]
        end = text.find(rule) if rule in text else len(text)
        if rule == "[num]" or rule.startswith("[num>char"):
            start = leading_number(rule[9:]) if rule != "[num]" else 0
            digit = re.compile("[0-9]").search(text, start)
            end = min(end, digit.start() if digit else len(text))
        return text[:end]

    def clean_line(self, text):
        return self.filtered(self.cleaned(text))

    def clean_match(self, text):
        for piece in self.s["OTHERSETTINGSREMOVETEXT"].split("|"):
            text = text.replace(piece, "") if piece else text
        return self.filtered(self.cleaned(text))

    def word_at(self, page, place):
        h, v = (Axis(part) for part in (place.split(",") + [""])[:2])
        for word in self.source.pages[page].words():
            if h.low <= word.h <= h.high and v.low <= word.v <= v.high:
                return self.cleaned(word.text)
        return ""

    def expanded(self, text, r, match):
        start = int(self.s["OFFSETFIRST"]) + r.first + 1
        for token, value in [("FILETITLE", self.title), ("EXTRACTTEXT", match), ("EXTRACTTEXTDIR", match),
                             ("PAGESTART", f"{start:06}"), ("PAGEEND", f"{r.last + 1:06}"),
                             ("PAGESTARTNOMASK", str(start)), ("PAGEENDNOMASK", str(r.last + 1)),
                             ("PAGES", f"{r.last - r.first + 1:06}"), ("TOTALPAGES", f"{len(self.source.pages):06}")]:
            text = text.replace(f"[{token}]", value)
        return re.sub(r"\[POS([^\]]*)\]", lambda found: self.word_at(r.first, found[1]), text)

    def path(self, r):
        match = self.clean_match(r.line if self.naming in REST_OF_LINE else r.text)
        prefix, postfix = self.s["PREFIXFILENAME"], self.s["POSTFIXFILENAME"]
        if self.s["USESOURCEFILENAME"] == "1":
            prefix = self.title
        if self.s["USESOURCEFILENAMEPOST"] == "1":
            postfix = self.title
        typed = prefix == self.expanded(prefix, r, match)
        prefix, postfix = self.expanded(prefix, r, match), self.expanded(postfix, r, match)
        cut = int(self.s["STRIPEND"])
        if cut > 0:
            match = match[:max(len(match) - cut, 0)]
        name = prefix + self.body(r, match) + postfix
        if name.startswith(".") and not (prefix and typed):
            name = "_" + name  # nobody would see it
        return f"{self.folder}/{name if name.strip() else 'unnamed'}.pdf"

    def body(self, r, match):
        if self.naming == 2:
            return str(r.first + 1)
        if self.naming == 3:
            return f"{r.first + 1}-{r.last + 1}"
        if self.naming == 5:
            self.number += 1
            return f"{self.number:06}"
        if self.naming in REST_OF_LINE:
            return self.clean_line(r.line)
        if self.naming == 9:
            return self.cleaned(self.lines.pop(0) if self.lines else "NOT FOUND!!!")
        return match


# ---- writing and reporting ------------------------------------------------------------------------


def spans(pages):
    pages = set(pages)
    ends = zip(sorted(p for p in pages if p - 1 not in pages), sorted(p for p in pages if p + 1 not in pages))
    texts = [str(a) if a == b else f"{a}-{b}" for a, b in ends]
    return ", ".join(texts[:8]) + (f" and {len(texts) - 8} more" if len(texts) > 8 else "")


class Run:
    """One run: files by path as lists of page texts, the lines of the reports, and where every page went."""

    def __init__(self, settings, source, source_path, folder, before, lines=()):
        self.s, self.source, self.source_path = settings, source, source_path
        self.files = dict(before)
        self.overwrite, self.append = settings["ALWAYSOVERWRITE"] == "1", settings["ALWAYSAPPEND"] == "1"
        self.rows, self.waiting, self.written, self.replaced = [], [], [], []
        self.count, self.growth = 0, []
        self.paths = set()
        self.last_path = None
        title = re.sub(r"\.pdf$", "", source_path.rsplit("/", 1)[-1], flags=re.I)
        self.namer = Namer(settings, source, title, folder, lines)
        if settings["PAGEEXTRACT"] in BOOKMARKS:
            for r in bookmark_ranges(source, settings["PAGEEXTRACT"]):
                self.save(r)
        else:
            total = len(source.pages)
            to = int(settings["STARTENDPAGE"])
            end = to if 0 < to < total else total + to if to < 0 < total + to else total
            Scan(settings, self.save, self.namer.clean_line).run(source, max(int(settings["STARTFROMPAGE"]) - 1, 0), end)
        self.settle()
        self.flush()

    def save(self, r):
        """A range that is saved again, longer, is one output with a line for each time."""
        if self.namer.naming in REST_OF_LINE:
            r.text = self.namer.clean_line(r.line)
        if not r.again:
            self.settle()
        self.growth.append(r)

    def settle(self):
        growth, self.growth = self.growth, []
        if not growth:
            return
        r = growth[-1]
        first, last = max(r.first + int(self.s["OFFSETFIRST"]), 0) + 1, r.last + 1
        if first > last:
            return
        path = self.reserve(self.namer.path(r), first, last)
        took_back = self.s["PAGEEXTRACT"] == METHODS[3] or self.namer.naming in REST_OF_LINE
        for step in growth:
            if step is r or (not took_back and step.last + 1 >= first):
                self.rows.append((first, step.last + 1, step.text, path))

    def reserve(self, plain, first, last):
        path = plain
        if not self.overwrite and not self.append:
            number = 2
            while path in self.files:
                path = f"{plain[:-4]}_part{number:03}.pdf"
                number += 1
        if self.overwrite:
            if not self.append:
                self.files.pop(path, None)
            self.waiting.append((path, first, last))
        else:
            self.write(path, first, last)
        return path

    def flush(self):
        for index, (path, first, last) in enumerate(self.waiting):
            if not self.append and any(path == later[0] for later in self.waiting[index + 1:]):
                self.replaced += range(first, last + 1)
            else:
                self.write(path, first, last)

    def write(self, path, first, last):
        pages = [page.text() for page in self.source.pages[first - 1:last]]
        if path != self.last_path or self.append:
            self.count += 1
        self.last_path = path
        self.files[path] = self.files.get(path, []) + pages if self.append else pages
        self.paths.add(path)
        self.written += range(first, last + 1)

    def account(self):
        total = len(self.source.pages)
        written = set(self.written)
        replaced = set(self.replaced) - written
        none = [page for page in range(1, total + 1) if page not in written | replaced]
        line = f"{total} page(s): {len(written)} in {len(self.paths)} file(s)"
        if none:
            line += f", {len(none)} in no range ({spans(none)})"
        if replaced:
            line += f", {len(replaced)} only in files that a later one of the same name replaced ({spans(sorted(replaced))})"
        return line + "."

    def reports(self):
        find, path = self.s["FINDSTRING"], f"{self.source_path:<30}"
        text = ["\t\t\t\tFolivex v4.00 Report\t\t\tDATE TIME", "", f"\tPDF Filename: {path}", f"\tFind: {find}", ""]
        text += [f"Page: {a:<2} - {b:<2}\t{shown:<30}\tOutput file:{file}" for a, b, shown, file in self.rows]
        csv = ["Folivex v4.00 SA Report,,DATE,TIME", "", f"PDF Filename:,{path}", f"Find:,{find}", "",
               "Start Page,End Page,Matched,Output File"]
        csv += [f"{a:<2},{b:<2},{shown:<30},{file}" for a, b, shown, file in self.rows]
        return [on_disk(text + ["", f"\t{self.count} PDF file(s)"]), on_disk(csv + ["", f",{self.count}, PDF file(s)"])]


def on_disk(lines):
    return ("\ufeff" + "".join(line + "\r\r\n" for line in lines)).encode()
