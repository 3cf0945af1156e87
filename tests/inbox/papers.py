"""Sources for an inbox, and what must have become of them: statements that know their account and their pages."""

from __future__ import annotations

import random
import re
import sys
from collections import Counter
from pathlib import Path

import fitz
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen.canvas import Canvas

SOURCES = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "samples"))
from make_statements import FONTS, Customer, Statement  # noqa: E402

SETUP = SOURCES / "samples/example.fxs"  # a file a statement, named statement_ACCOUNT.pdf
for font in ("Sans", "Sans-Bold", "Serif-Bold"):
    pdfmetrics.registerFont(TTFont(font, FONTS / f"DejaVu{font}.ttf"))


def make_source(path: Path, first_account: int, documents: int, dice: random.Random) -> Counter[str]:
    """Writes statements of accounts from `first_account` on; returns the pages of each."""
    canvas = Canvas(str(path), pageCompression=1, invariant=1)
    pages: Counter[str] = Counter()
    for account in range(first_account, first_account + documents):
        customer = Customer(account, f"Person {account}", "1 Weir Road", "Larkfield", f"p{account}@example.com",
                            dice.randint(1, 2))
        Statement(canvas, customer).draw()
        pages[str(account)] = customer.pages
    canvas.save()
    return pages


def pages_by_account(outputs: list[Path]) -> Counter[str]:
    """The pages that outputs hold, by the account that their first page tells; a page that is there twice, or in
    another's file, changes a count or a number."""
    pages: Counter[str] = Counter()
    for path in outputs:
        with fitz.open(path) as document:
            texts = [page.get_text() for page in document]
        account = re.search(r"Account:\s+(\d+)", texts[0])
        numbers = [re.search(r"Page (\d+) of (\d+)", text) for text in texts]
        if account is None or [int(n[1]) for n in numbers if n] != list(range(1, len(texts) + 1)):
            raise AssertionError(f"{path}: is not one whole statement")
        pages[account[1]] += len(texts)
    return pages
