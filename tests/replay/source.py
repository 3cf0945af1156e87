"""Sources as small texts: pages with positioned words, made into a PDF or read as lists of words.

    page                 begins a page
    60,80 Account: 1001  a run of text whose baseline begins 60 points from the left, 80 from the top
    bookmark 0 Title     an entry of the outline that leads to this page; 0 is the top level

Lines that begin with "#" and empty lines mean nothing. Each page should begin with a word of its own,
so that a listing shows where it went.
"""

import io
from dataclasses import dataclass, field

import pikepdf

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


def content_of(page):
    lines = [b"BT"]
    for h, v, text in page.runs:
        font, codes = (b"/F1", text.encode()) if text.isascii() else (b"/F2", text.encode("utf-16-be"))
        lines.append(b"%s %d Tf 1 0 0 1 %d %d Tm <%s> Tj" % (font, SIZE, h, HEIGHT - v, codes.hex().encode()))
    return b"\n".join(lines + [b"ET"])


UNICODE_MAP = b"""/CIDInit/ProcSet findresource begin 12 dict begin begincmap
/CMapName/Units def/CMapType 2 def
1 begincodespacerange<0000><ffff>endcodespacerange
1 beginbfrange<0000><ffff><0000>endbfrange
endcmap end end"""


def fonts(made):
    """Plain ASCII is drawn in a built-in font, any other text in one whose character codes are UTF-16 units."""
    built_in = b"<</Type/Font/Subtype/Type1/BaseFont/Courier/Encoding/WinAnsiEncoding>>"
    units = b"""<</Type/Font/Subtype/Type0/BaseFont/Plain/Encoding/Identity-H/DescendantFonts[<</Type/Font
        /Subtype/CIDFontType2/BaseFont/Plain/DW 600/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>
        /FontDescriptor<</Type/FontDescriptor/FontName/Plain/Flags 4/FontBBox[0 -200 600 800]/ItalicAngle 0
        /Ascent 800/Descent -200/CapHeight 700/StemV 80>>>>]>>"""
    second = made.make_indirect(pikepdf.Object.parse(units))
    second.ToUnicode = made.make_stream(UNICODE_MAP)
    return pikepdf.Dictionary(F1=made.make_indirect(pikepdf.Object.parse(built_in)), F2=second)


def pdf(source):
    made = pikepdf.new()
    resources = made.make_indirect(pikepdf.Dictionary(Font=fonts(made)))
    for page in source.pages:
        made.add_blank_page(page_size=(WIDTH, HEIGHT))
        made.pages[-1].Contents = made.make_stream(content_of(page))
        made.pages[-1].Resources = resources
    with made.open_outline() as outline:
        levels = [outline.root]
        for entry in source.bookmarks:
            item = pikepdf.OutlineItem(entry.title, entry.page, "Fit")
            levels[entry.level:] = [levels[entry.level], item.children]
            levels[entry.level].append(item)
    file = io.BytesIO()
    made.save(file, static_id=True)
    return file.getvalue()
