"""Sources on whose every page stands what it is, and what can be read back from files that were split off them."""

import io
import re
from dataclasses import dataclass

import pikepdf
from reportlab.lib.pagesizes import A4
from reportlab.pdfgen import canvas

# What reading a PDF raises that is damaged somewhere; a wrong type in its place is a RuntimeError.
UNREADABLE = (pikepdf.PdfError, OSError, RuntimeError)
MARK = re.compile(rb"\(Mark: ([^)]*)\)")


@dataclass(frozen=True)
class Document:
    name: str  # the customer's, and so the output's
    address: str
    first: int  # page of the source, from 1
    marks: tuple  # one for each page, unlike any other page's; they begin with the source's tag

    @property
    def source(self):
        return self.marks[0].split(".")[0]

    def within(self, pages):
        return all(self.first + number in pages for number in range(len(self.marks)))


@dataclass(frozen=True)
class Source:
    path: object
    documents: tuple


def make_source(path, tag, count, random, domain="example.org", doubles=3):
    """`count` documents of one to four pages; some customers have two. Equal names meet in all sources."""
    names = [f"C{number:03}" for number in range(count - doubles)]
    names += random.sample(names, doubles)
    random.shuffle(names)
    documents, first = [], 1
    for name in names:
        pages = random.randint(1, 4)
        marks = tuple(f"{tag}.{first + number}.{name}" for number in range(pages))
        documents.append(Document(name, f"{name.lower()}@{domain}", first, marks))
        first += pages
    write_pages(path, tag, documents)
    return Source(path, tuple(documents))


def write_pages(path, tag, documents):
    page = canvas.Canvas(str(path), pagesize=A4, invariant=1)
    for document in documents:
        for number, mark in enumerate(document.marks):
            lines = [f"Source {tag}, page {document.first + number}", f"Customer {document.name}",
                     f"E-mail: {document.address}", f"Mark: {mark}"]
            if number == 0:
                lines.insert(0, f"Account: {document.name}")
            for row, line in enumerate(lines):
                page.drawString(60, 780 - 20 * row, line)
            page.showPage()
    page.save()


def read_marks(content):
    """The marks of a PDF's pages, None for a page without one. Bytes or a path; raises what is UNREADABLE."""
    with pikepdf.open(io.BytesIO(content) if isinstance(content, bytes) else content) as pdf:
        found = []
        for page in pdf.pages:
            page.contents_coalesce()
            mark = MARK.search(page.Contents.read_bytes()) if "/Contents" in page else None
            found.append(mark[1].decode() if mark else None)
    return found


class Register:
    """All documents that there were in a round, to find them again by their pages."""

    def __init__(self, sources):
        self.known = {document.marks[0]: document for source in sources for document in source.documents}

    def documents(self, marks):
        """The whole documents that these pages are; None when a page is missing, foreign or out of its place."""
        found = []
        while marks:
            document = self.known.get(marks[0])
            if not document or tuple(marks[:len(document.marks)]) != document.marks:
                return None
            found.append(document)
            marks = marks[len(document.marks):]
        return found
