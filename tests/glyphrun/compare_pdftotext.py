#!/usr/bin/python3
"""Compares words and lines of real PDFs with those of `pdftotext -bbox-layout`.

Run by hand; not part of the tests, since two programs may both be right and still differ.

    compare_pdftotext.py LIBRARY PDF... [--pages N] [--show N]

For each file it tells how many words each side found, the share of words that agree (equal text,
and our position inside their box give or take 3 points), and the share of their lines whose agreeing
words all have one v here. --show prints that many words of each side that found no partner.
"""

import argparse
import collections
import ctypes
import html.parser
import os
import subprocess
import tempfile
import unicodedata

SLACK = 3.0


class Layout(html.parser.HTMLParser):
    """Collects the pages of pdftotext's output as lists of lines of (text, box)."""

    def __init__(self):
        super().__init__()
        self.pages = []
        self.box = None
        self.text = ""

    def handle_starttag(self, tag, attrs):
        if tag == "page":
            self.pages.append([])
        elif tag == "line":
            self.pages[-1].append([])
        elif tag == "word":
            values = dict(attrs)
            self.box = tuple(float(values[k]) for k in ("xmin", "ymin", "xmax", "ymax"))
            self.text = ""

    def handle_data(self, data):
        if self.box is not None:
            self.text += data

    def handle_endtag(self, tag):
        if tag == "word" and self.box is not None:
            self.pages[-1][-1].append((normal(self.text), self.box))
            self.box = None


def normal(text):
    """Ligatures spelled out and accents composed; bidi marks and the like left out."""
    spelled = "".join(
        unicodedata.normalize("NFKC", c)
        if 0xFB00 <= ord(c) <= 0xFDFF or 0xFE70 <= ord(c) <= 0xFEFC else c
        for c in text)
    kept = "".join(c for c in spelled if unicodedata.category(c) != "Cf" or c in "\u200c\u200d\u00ad")
    return unicodedata.normalize("NFC", kept)


def their_pages(path, last):
    with tempfile.NamedTemporaryFile(suffix=".html") as out:
        subprocess.run(["pdftotext", "-bbox-layout", "-cropbox", "-l", str(last), path, out.name],
                       check=False, stderr=subprocess.DEVNULL)
        data = out.read().decode("utf-8", "replace")
    layout = Layout()
    layout.feed(data)
    return layout.pages


class Library:
    def __init__(self, path):
        self.lib = ctypes.CDLL(os.path.abspath(path))
        for name in ("getWordStr", "GlyphrunLastErrorText"):
            getattr(self.lib, name).restype = ctypes.c_void_p

    @staticmethod
    def wide(text):
        return ctypes.create_string_buffer((text + "\0").encode("utf-16-le"))

    @staticmethod
    def text_at(address):
        units = bytearray()
        at = address
        while True:
            unit = ctypes.string_at(at, 2)
            if unit == b"\0\0":
                return units.decode("utf-16-le", "replace")
            units += unit
            at += 2

    def pages(self, path, last):
        lib = self.lib
        name = self.wide(path)
        lib.PdfTextDumpOpenFile(name, self.wide(""))
        count = min(lib.GetPageCount2(), last)
        for page in range(1, count + 1):
            lib.PdfTextDumpFilePages(page, page)
            words = []
            for i in range(lib.getNumWords()):
                lib.wordToGet(i)
                words.append((normal(self.text_at(lib.getWordStr())), lib.getWordX(), lib.getWordY()))
            yield words
        lib.PdfTextDumpCloseFile()


def inside(box, h, v):
    return box[0] - SLACK <= h <= box[2] + SLACK and box[1] - SLACK <= v <= box[3] + SLACK


def compare_page(theirs, ours, lost, extra):
    """Returns (agreeing words, lines with agreeing words, of these with one v)."""
    by_text = collections.defaultdict(list)
    for word in ours:
        by_text[word[0]].append(word)
    agreeing = lines = level = 0
    for line in theirs:
        vs = []
        for text, box in line:
            # It leaves right-to-left words as they stand on the page.
            hit = next((w for t in (text, text[::-1]) for w in by_text[t] if inside(box, w[1], w[2])),
                       None)
            if hit is None:
                lost.append((text, box))
                continue
            by_text[hit[0]].remove(hit)
            agreeing += 1
            vs.append(hit[2])
        if len(vs) > 1:
            lines += 1
            level += len(set(vs)) == 1
    for rest in by_text.values():
        extra.extend(rest)
    return agreeing, lines, level


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("library")
    parser.add_argument("pdf", nargs="+")
    parser.add_argument("--pages", type=int, default=60)
    parser.add_argument("--show", type=int, default=0)
    args = parser.parse_args()
    library = Library(args.library)
    print(f"{'file':44} {'pages':>5} {'theirs':>7} {'ours':>7} {'words':>7} {'lines':>7}")
    for path in args.pdf:
        theirs = their_pages(path, args.pages)
        lost, extra = [], []
        total = count = agreeing = lines = level = pages = 0
        for page, ours in zip(theirs, library.pages(path, args.pages)):
            result = compare_page(page, ours, lost, extra)
            agreeing += result[0]
            lines += result[1]
            level += result[2]
            total += sum(len(line) for line in page)
            count += len(ours)
            pages += 1
        share = 200 * agreeing / (total + count) if total + count else 100
        straight = 100 * level / lines if lines else 100
        print(f"{os.path.basename(path)[:44]:44} {pages:5} {total:7} {count:7} {share:6.2f}% {straight:6.2f}%")
        for text, box in lost[:args.show]:
            print(f"    theirs only: {text!r} {box}")
        for word in extra[:args.show]:
            print(f"    ours only:   {word}")


if __name__ == "__main__":
    main()
