"""Sources as small texts: pages with positioned words, made into a PDF or read as lists of words.

    page                 begins a page
    60,80 Account: 1001  a run of text whose baseline begins 60 points from the left, 80 from the top
    bookmark 0 Title     an entry of the outline that leads to this page; 0 is the top level

Lines that begin with "#" and empty lines mean nothing. Each page should begin with a word of its own,
so that a listing shows where it went.
"""

from dataclasses import dataclass, field

SIZE = 10
ADVANCE = 6  # points a character: every character of the font is 0.6 of the size wide
WIDTH, HEIGHT = 595, 842


@dataclass
class Word:
    text: str
    h: int
    v: int


@dataclass
class Page:
    runs: list = field(default_factory=list)  # (h, v, text)

    def words(self):
        """In reading order."""
        found = []
        for h, v, text in self.runs:
            at = 0
            for part in text.split(" "):
                if part:
                    found.append(Word(part, h + ADVANCE * at, v))
                at += len(part) + 1
        return sorted(found, key=lambda word: (word.v, word.h))

    def text(self):
        return " ".join(word.text for word in self.words())


@dataclass
class Bookmark:
    level: int
    title: str
    page: int  # from 0


@dataclass
class Source:
    pages: list = field(default_factory=list)
    bookmarks: list = field(default_factory=list)


def parse(text):
    source = Source()
    for line in text.splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        if line == "page":
            source.pages.append(Page())
            continue
        first, rest = line.split(" ", 1)
        if first == "bookmark":
            level, title = rest.split(" ", 1)
            source.bookmarks.append(Bookmark(int(level), title, len(source.pages) - 1))
        else:
            h, v = (int(number) for number in first.split(","))
            source.pages[-1].runs.append((h, v, rest))
    return source


def units(text):
    return text.encode("utf-16-be").hex().encode()


def content_of(page):
    lines = [b"BT"]
    for h, v, text in page.runs:
        plain = text.isascii()
        codes = text.encode().hex().encode() if plain else units(text)
        font = b"/F1" if plain else b"/F2"
        lines.append(b"%s %d Tf 1 0 0 1 %d %d Tm <%s> Tj" % (font, SIZE, h, HEIGHT - v, codes))
    return b"\n".join(lines + [b"ET"])


def stream(data):
    return b"<</Length %d>>\nstream\n%s\nendstream" % (len(data), data)


def unicode_map():
    """Character codes are UTF-16 units."""
    ranges = []
    for begin in (0, 100, 200):
        blocks = range(begin, min(begin + 100, 256))
        ranges.append(b"%d beginbfrange" % len(blocks))
        ranges += [b"<%02x00><%02xff><%02x00>" % (block, block, block) for block in blocks]
        ranges.append(b"endbfrange")
    return stream(b"/CIDInit/ProcSet findresource begin 12 dict begin begincmap\n/CMapName/Units def"
                  b"/CMapType 2 def\n1 begincodespacerange<0000><ffff>endcodespacerange\n"
                  + b"\n".join(ranges) + b"\nendcmap end end")


FONTS = [
    b"<</Type/Font/Subtype/Type1/BaseFont/Courier/Encoding/WinAnsiEncoding>>",
    b"<</Type/Font/Subtype/Type0/BaseFont/Plain/Encoding/Identity-H/DescendantFonts[5 0 R]/ToUnicode 6 0 R>>",
    b"<</Type/Font/Subtype/CIDFontType2/BaseFont/Plain/DW 600/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)"
    b"/Supplement 0>>/FontDescriptor<</Type/FontDescriptor/FontName/Plain/Flags 4/FontBBox[0 -200 600 800]"
    b"/ItalicAngle 0/Ascent 800/Descent -200/CapHeight 700/StemV 80>>>>",
    unicode_map(),
]
FIRST_PAGE = 7


def outline_objects(bookmarks, number_of):
    """The outline's own object and one an entry; `number_of` gives the object of an entry, -1 being the outline."""
    parents, open_entries = [], []
    for index, entry in enumerate(bookmarks):
        open_entries = open_entries[:entry.level]
        parents.append(open_entries[-1] if open_entries else -1)
        open_entries.append(index)
    objects = []
    for index in range(-1, len(bookmarks)):
        body = b""
        children = [i for i, parent in enumerate(parents) if parent == index]
        if children:
            body += b"/First %d 0 R/Last %d 0 R" % (number_of(children[0]), number_of(children[-1]))
        if index >= 0:
            entry = bookmarks[index]
            siblings = [i for i, parent in enumerate(parents) if parent == parents[index]]
            place = siblings.index(index)
            if place > 0:
                body += b"/Prev %d 0 R" % number_of(siblings[place - 1])
            if place + 1 < len(siblings):
                body += b"/Next %d 0 R" % number_of(siblings[place + 1])
            body += b"/Title<feff%s>/Parent %d 0 R/Dest[%d 0 R/Fit]" % (
                units(entry.title), number_of(parents[index]), FIRST_PAGE + 2 * entry.page)
        objects.append(b"<<" + body + b">>")
    return objects


def pdf(source):
    first_entry = FIRST_PAGE + 2 * len(source.pages)
    outlines = b"/Outlines %d 0 R" % first_entry if source.bookmarks else b""
    kids = b" ".join(b"%d 0 R" % (FIRST_PAGE + 2 * i) for i in range(len(source.pages)))
    objects = [b"<</Type/Catalog/Pages 2 0 R" + outlines + b">>",
               b"<</Type/Pages/Count %d/Kids[%s]>>" % (len(source.pages), kids), *FONTS]
    for i, page in enumerate(source.pages):
        objects.append(b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 %d %d]/Resources<</Font<</F1 3 0 R/F2 4 0 R>>>>"
                       b"/Contents %d 0 R>>" % (WIDTH, HEIGHT, FIRST_PAGE + 2 * i + 1))
        objects.append(stream(content_of(page)))
    if source.bookmarks:
        objects += outline_objects(source.bookmarks, lambda index: first_entry + 1 + index)
    text, offsets = b"%PDF-1.7\n", []
    for number, body in enumerate(objects, 1):
        offsets.append(len(text))
        text += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    table = b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    return text + b"xref\n0 %d\n0000000000 65535 f \n%strailer\n<</Size %d/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % (
        len(objects) + 1, table, len(objects) + 1, len(text))
