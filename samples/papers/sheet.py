"""Pages of text: what is drawn, and how."""

from pathlib import Path

from reportlab import rl_config
from reportlab.lib.pagesizes import A4, landscape
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen.canvas import Canvas

FONTS = Path("/usr/share/fonts/truetype/dejavu")
FACES = {
    "Sans": "DejaVuSans.ttf",
    "Bold": "DejaVuSans-Bold.ttf",
    "Serif": "DejaVuSerif.ttf",
    "Mono": "DejaVuSansMono.ttf",
    "Condensed": "DejaVuSansCondensed.ttf",
}


def register_fonts():
    rl_config.useA85 = 0
    for name, file in FACES.items():
        pdfmetrics.registerFont(TTFont(name, FONTS / file))


def visual(text):
    """A text with right-to-left words as writers draw it: letter by letter from the left."""
    is_hebrew = [any("\u0590" <= letter <= "\u05ff" for letter in word) for word in text.split(" ")]
    words = [word[::-1] if hebrew else word for word, hebrew in zip(text.split(" "), is_hebrew)]
    return " ".join(reversed(words)) if any(is_hebrew) else text


class Pile:
    """The file that all papers go into."""

    def __init__(self, path, wide=False, right_to_left=False, face="Sans", shift=(0, 0), jitter=None):
        self.width, self.height = landscape(A4) if wide else A4
        self.canvas = Canvas(str(path), pagesize=(self.width, self.height), invariant=1, pageCompression=1)
        self.right_to_left = right_to_left
        self.face = face
        self.shift = shift
        self.jitter = jitter or (lambda: 0)
        self.page = 0

    def text(self, x, top, text, size=9, face=None, align="left"):
        """`x` from the edge where lines begin, `top` from the page's top."""
        canvas = self.canvas
        canvas.setFont(face or self.face, size)
        x, y = x + self.shift[0] + self.jitter(), self.height - top - self.shift[1] + self.jitter()
        if self.right_to_left:
            text, x = visual(text), self.width - x
            align = {"left": "right", "right": "left"}.get(align, align)
        draw = {"left": canvas.drawString, "right": canvas.drawRightString, "centre": canvas.drawCentredString}
        draw[align](x, y, text)

    def length(self, text, size=9, face=None):
        return pdfmetrics.stringWidth(text, face or self.face, size)

    def bookmark(self, title, level=0):
        key = f"{self.page}-{level}-{title}"
        self.canvas.bookmarkPage(key)
        self.canvas.addOutlineEntry(title, key, level, closed=True)

    def turn(self):
        self.canvas.showPage()
        self.page += 1

    def save(self):
        self.canvas.save()
