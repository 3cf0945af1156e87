#!/usr/bin/python3
"""Makes statements.pdf: the account statements of twelve customers in one file.

The same bytes come out of every run: dates and identifiers are fixed, the bookings come from a
generator of their own, and the font's subset depends on nothing but the text.

    samples/make_statements.py [TARGET]
"""

import sys
from dataclasses import dataclass
from pathlib import Path

from reportlab import rl_config
from reportlab.lib.colors import HexColor
from reportlab.lib.pagesizes import A4
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen.canvas import Canvas

FONTS = Path("/usr/share/fonts/truetype/dejavu")
WIDTH, HEIGHT = A4
LEFT, RIGHT = 57, WIDTH - 57
LABELS, VALUES = 342, 398  # columns of the facts block; setups that match by position rely on them
ROWS_FIRST, ROWS_NEXT = 22, 38
ROW_HEIGHT = 15.5

INK = HexColor("#1f2933")
QUIET = HexColor("#66727f")
ACCENT = HexColor("#12657a")
BAND = HexColor("#f2f7f8")


@dataclass
class Customer:
    account: int
    name: str
    street: str
    town: str
    email: str
    pages: int


CUSTOMERS = [
    Customer(10472, "Élodie Brûlé", "14 rue des Étangs", "FR-69003 Lyon", "elodie.brule@example.com", 3),
    Customer(10518, "Jürgen Weiß", "Lindenstraße 8", "DE-50674 Köln", "j.weiss@example.org", 1),
    Customer(10533, "Łucja Wiśniewska", "ul. Żurawia 22/5", "PL-00-515 Warszawa", "lucja.w@example.net", 5),
    Customer(10607, "Íñigo Núñez Peña", "Calle Mayor 117", "ES-28013 Madrid", "inigo.nunez@example.com", 2),
    Customer(10664, "Siobhán O'Connor", "3 Quay Street", "Galway H91 K2X4", "siobhan@example.org", 4),
    Customer(10729, "Åse Bjørnstad", "Fjellveien 61", "NO-5019 Bergen", "ase.bjornstad@example.net", 3),
    Customer(10781, "Anaïs Lefèvre-Dubois", "27 quai Nord", "BE-4000 Liège", "anais@example.com", 5),
    Customer(10850, "Tomáš Dvořák", "Křižíkova 44", "CZ-186 00 Praha 8", "tomas.dvorak@example.org", 2),
    Customer(10916, "Harper & Sons Ltd.", "Unit 6, Mill Lane", "Leeds LS11 5DR", "accounts@example.com", 4),
    Customer(10977, "Çağla Yıldız", "Gül Sokak 19", "TR-34433 İstanbul", "cagla@example.net", 1),
    Customer(11035, "João Gonçalves", "Rua da Prata 208", "PT-1100-420 Lisboa", "joao.g@example.org", 5),
    Customer(11092, "Őrsi Márton", "Szőlő utca 3", "HU-1034 Budapest", "orsi.marton@example.com", 5),
]

SUBJECTS = [
    "Electricity, day rate", "Electricity, night rate", "Water supply", "Waste water", "District heating",
    "Standing charge", "Meter rent", "Service visit", "Grid levy", "Street lighting", "Waste collection",
    "Bottle bank", "Allotment water", "Charging point", "Boiler inspection", "Solar feed-in, credit",
    "Direct debit, thank you", "Payment by card, thank you",
]


class Dice:
    """A small generator whose numbers no library's next version can change."""

    def __init__(self, seed):
        self.state = seed

    def below(self, limit):
        self.state = (self.state * 1103515245 + 12345) % (1 << 31)
        return (self.state >> 8) % limit


@dataclass
class Booking:
    day: str
    reference: str
    subject: str
    cents: int


def bookings_of(customer):
    dice = Dice(customer.account)
    rows = ROWS_FIRST - 6
    if customer.pages > 1:
        rows = ROWS_FIRST + ROWS_NEXT * (customer.pages - 2) + 12 + dice.below(15)
    made = []
    for index in range(rows):
        day_of_year = index * 90 // rows
        month, day = day_of_year // 30 + 1, day_of_year % 28 + 1
        subject = SUBJECTS[dice.below(len(SUBJECTS))]
        cents = 150 + dice.below(18000)
        if "credit" in subject or "thank you" in subject:
            cents = -cents * 2
        made.append(Booking(f"{day:02}.{month:02}.2026", f"R{dice.below(900000) + 100000}", subject, cents))
    made.sort(key=lambda booking: (booking.day[3:5], booking.day[:2]))
    return made


def money(cents):
    return f"{'-' if cents < 0 else ''}{abs(cents) // 100:,}.{abs(cents) % 100:02}"


class Statement:
    def __init__(self, canvas, customer):
        self.canvas = canvas
        self.customer = customer
        self.balance = 0

    def text(self, x, from_top, text, size=9, font="Sans", colour=INK, align="left"):
        self.canvas.setFont(font, size)
        self.canvas.setFillColor(colour)
        draw = {"left": self.canvas.drawString, "right": self.canvas.drawRightString}[align]
        draw(x, HEIGHT - from_top, text)

    def rule(self, from_top, colour=ACCENT, width=0.6):
        self.canvas.setStrokeColor(colour)
        self.canvas.setLineWidth(width)
        self.canvas.line(LEFT, HEIGHT - from_top, RIGHT, HEIGHT - from_top)

    def letterhead(self):
        canvas = self.canvas
        canvas.setFillColor(ACCENT)
        canvas.rect(0, HEIGHT - 14, WIDTH, 14, stroke=0, fill=1)
        for step in range(3):
            canvas.setFillColor(ACCENT)
            canvas.rect(LEFT + step * 9, HEIGHT - 62, 6, 12 + step * 7, stroke=0, fill=1)
        self.text(LEFT + 36, 52, "Larkfield Municipal Utilities", 15, "Serif-Bold", ACCENT)
        self.text(LEFT + 36, 64, "Power, water and heat for the Lark valley", 7.5, colour=QUIET)
        self.text(RIGHT, 64, "1 Weir Road, Larkfield LK1 4AA", 7.5, colour=QUIET, align="right")

    def footer(self, page):
        self.rule(HEIGHT - 58, QUIET, 0.4)
        self.text(LEFT, HEIGHT - 46, "Questions? Write to help@example.com or call 0555 0100.", 7.5, colour=QUIET)
        self.text(RIGHT, HEIGHT - 46, f"Page {page} of {self.customer.pages}", 7.5, colour=QUIET, align="right")

    def first_head(self):
        customer = self.customer
        self.text(LEFT, 104, "Larkfield Municipal Utilities, 1 Weir Road, Larkfield LK1 4AA", 6, colour=QUIET)
        for line, text in enumerate([customer.name, customer.street, customer.town]):
            self.text(LEFT, 125 + line * 14, text, 10.5)
        facts = [
            ("Account:", str(customer.account), "Sans-Bold"),
            ("Customer:", customer.name, "Sans"),
            ("E-mail:", customer.email, "Sans"),
            ("Period:", "1 January to 31 March 2026", "Sans"),
            ("Issued:", "7 April 2026", "Sans"),
        ]
        self.canvas.setFillColor(BAND)
        self.canvas.rect(LABELS - 10, HEIGHT - 184, RIGHT - LABELS + 16, 82, stroke=0, fill=1)
        for line, (label, value, font) in enumerate(facts):
            self.text(LABELS, 118 + line * 14, label, 9)
            self.text(VALUES, 118 + line * 14, value, 9, font)
        self.text(LEFT, 226, "Statement of account", 17, "Serif-Bold")
        greeting = "Below are the bookings of the past quarter. A minus stands for a credit in your favour."
        self.text(LEFT, 246, greeting, 8.5)
        return 276

    def next_head(self):
        self.text(LEFT, 96, "Statement of account, continued", 11, "Serif-Bold")
        self.text(RIGHT, 96, self.customer.name, 8.5, colour=QUIET, align="right")
        return 122

    def table_head(self, top):
        self.canvas.setFillColor(ACCENT)
        self.canvas.rect(LEFT - 6, HEIGHT - top - 5, RIGHT - LEFT + 12, 18, stroke=0, fill=1)
        white = HexColor("#ffffff")
        for x, title in [(LEFT, "Date"), (LEFT + 72, "Reference"), (LEFT + 146, "Subject")]:
            self.text(x, top, title, 8, "Sans-Bold", white)
        for x, title in [(RIGHT - 92, "Amount"), (RIGHT, "Balance")]:
            self.text(x, top, title, 8, "Sans-Bold", white, "right")
        return top + 19

    def table(self, top, rows):
        top = self.table_head(top)
        for index, booking in enumerate(rows):
            if index % 2:
                self.canvas.setFillColor(BAND)
                self.canvas.rect(LEFT - 6, HEIGHT - top - 4.5, RIGHT - LEFT + 12, ROW_HEIGHT, stroke=0, fill=1)
            self.balance += booking.cents
            self.text(LEFT, top, booking.day, 8)
            self.text(LEFT + 72, top, booking.reference, 8)
            self.text(LEFT + 146, top, booking.subject, 8)
            self.text(RIGHT - 92, top, money(booking.cents), 8, align="right")
            self.text(RIGHT, top, money(self.balance), 8, align="right")
            top += ROW_HEIGHT
        return top

    def closing(self, top):
        self.rule(top - 8)
        self.text(LEFT + 146, top + 8, "Total", 10, "Sans-Bold")
        self.text(RIGHT, top + 8, "EUR " + money(self.balance), 10, "Sans-Bold", align="right")
        request = ("Please pay the total within 14 days and state your reference." if self.balance > 0 else
                   "The credit will be set off against your next statement.")
        self.text(LEFT, top + 34, request, 8.5)

    def draw(self):
        canvas, customer = self.canvas, self.customer
        rows = bookings_of(customer)
        for page in range(1, customer.pages + 1):
            self.letterhead()
            self.footer(page)
            if page == 1:
                self.bookmark(customer.name, 0)
            top = self.first_head() if page == 1 else self.next_head()
            room = ROWS_FIRST if page == 1 else ROWS_NEXT
            taken, rows = rows[:room], rows[room:]
            top = self.table(top, taken)
            if page == customer.pages:
                if customer.pages > 1:
                    self.bookmark("Total", 1)
                self.closing(top + 6)
            canvas.showPage()

    def bookmark(self, title, level):
        key = f"{self.customer.account}-{level}"
        self.canvas.bookmarkPage(key)
        self.canvas.addOutlineEntry(title, key, level, closed=True)


def main():
    target = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).with_name("statements.pdf")
    for name in ("Sans", "Sans-Bold", "Serif-Bold"):
        pdfmetrics.registerFont(TTFont(name, FONTS / f"DejaVu{name}.ttf"))
    rl_config.useA85 = 0
    canvas = Canvas(str(target), pagesize=A4, invariant=1, pageCompression=1)
    canvas.setTitle("Statements of account, first quarter 2026")
    canvas.setAuthor("Larkfield Municipal Utilities")
    for customer in CUSTOMERS:
        Statement(canvas, customer).draw()
    canvas.showOutline()
    canvas.save()


if __name__ == "__main__":
    main()
