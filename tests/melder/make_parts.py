"""Makes the PDF files that the append tests work on: make_parts.py FOLDER"""
import sys

import pikepdf
from pikepdf import Array, Dictionary, Name, String
from reportlab.lib.pagesizes import A4
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen import canvas

folder = sys.argv[1] + "/"
pdfmetrics.registerFont(TTFont("DejaVu", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"))


def pages(name, texts, font="Helvetica"):
    c = canvas.Canvas(folder + name, pagesize=A4, invariant=1)
    for text in texts:
        c.setFont(font, 12)
        c.drawString(72, 700, text)
        c.showPage()
    c.save()


def resave(source, name, **how):
    with pikepdf.open(folder + source) as pdf:
        pdf.save(folder + name, **how)


def linked():
    c = canvas.Canvas(folder + "linked.pdf", pagesize=A4, invariant=1)
    for i in range(3):
        c.setFont("Helvetica", 12)
        c.drawString(72, 700, f"linked {i + 1}")
        c.bookmarkPage(f"place{i}")
        c.addOutlineEntry(f"Chapter {i + 1}", f"place{i}", 0 if i < 2 else 1, closed=i == 1)
        c.linkRect("", f"place{2 - i}", Rect=(72, 600, 200, 620))
        c.showPage()
    c.save()
    with pikepdf.open(folder + "linked.pdf", allow_overwriting_input=True) as pdf:
        root = pdf.Root
        goals = [Array([page.obj, Name.XYZ, 0, 700, 0]) for page in pdf.pages]
        root.Names = Dictionary(Dests=Dictionary(Names=Array(
            [item for i, goal in enumerate(goals) for item in (String(f"place{i}"), goal)])))
        root.Dests = Dictionary({"/old style": goals[1]})
        pdf.pages[0].Annots[0].Dest = String("place2")
        pdf.pages[1].Annots[0].Dest = Name("/old style")
        back = pdf.pages[2].Annots[0]
        del back["/Dest"]
        back.A = Dictionary(S=Name.GoTo, D=String("place0"))
        astray = Dictionary(
            Type=Name.Annot, Subtype=Name.Link, Rect=Array([72, 400, 200, 420]), Dest=String("elsewhere"))
        pdf.pages[2].Annots.append(pdf.make_indirect(astray))
        forward = Dictionary(
            Type=Name.Annot, Subtype=Name.Link, Rect=Array([72, 500, 200, 520]), Border=Array([0, 0, 0]),
            A=Dictionary(S=Name.GoTo, D=Array([pdf.pages[2].obj, Name.Fit])))
        pdf.pages[0].Annots.append(pdf.make_indirect(forward))
        root.PageLabels = Dictionary(Nums=Array([0, Dictionary(S=Name.r), 2, Dictionary(S=Name.D, P=String("A-"))]))
        pdf.save()


def form(name, value):
    c = canvas.Canvas(folder + name, pagesize=A4, invariant=1)
    c.drawString(72, 700, f"form {value}")
    c.acroForm.textfield(name="Total", value=value, x=72, y=600, width=200, height=20, fontName="Helvetica")
    c.acroForm.checkbox(name="Paid", checked=True, x=72, y=560)
    c.showPage()
    c.save()


def turned():
    pages("turned.pdf", ["turned 1", "turned 2"])
    with pikepdf.open(folder + "turned.pdf", allow_overwriting_input=True) as pdf:
        tree = pdf.Root.Pages
        tree.Rotate = 90
        tree.CropBox = Array([10, 20, 400, 800])
        tree.MediaBox = Array([0, 0, 500, 842])
        for page in pdf.pages:
            for key in ("/Rotate", "/MediaBox"):
                if key in page:
                    del page[key]
        pdf.pages[1].CropBox = Array([0, 0, 300, 300])
        pdf.save()


def layers():
    pages("layers.pdf", ["layers 1"])
    with pikepdf.open(folder + "layers.pdf", allow_overwriting_input=True) as pdf:
        groups = [pdf.make_indirect(Dictionary(Type=Name.OCG, Name=String(n))) for n in ("Seen", "Unseen")]
        page = pdf.pages[0]
        page.Resources.Properties = Dictionary(L0=groups[0], L1=groups[1])
        font = list(page.Resources.Font.keys())[0]
        more = "".join(
            f"/OC /L{i} BDC BT {font} 12 Tf 72 {500 - 20 * i} Td (layer {n}) Tj ET EMC\n"
            for i, n in enumerate(("seen", "unseen")))
        page.contents_add(pdf.make_stream(more.encode()))
        pdf.Root.OCProperties = Dictionary(
            OCGs=Array(groups), D=Dictionary(Order=Array(groups), OFF=Array([groups[1]])))
        pdf.save()


def flat():
    """Many pages below one node that gives them their size, their fonts and their direction."""
    pages("flat.pdf", [f"flat {i + 1}" for i in range(200)])
    with pikepdf.open(folder + "flat.pdf", allow_overwriting_input=True) as pdf:
        tree = pdf.Root.Pages
        tree.MediaBox = Array([0, 0, 300, 842])
        tree.Rotate = 180
        tree.Resources = pdf.pages[0].Resources
        for page in pdf.pages:
            for key in ("/MediaBox", "/Rotate", "/Resources"):
                if key in page:
                    del page[key]
        pdf.save()


pages("plain.pdf", ["plain 1", "plain 2", "plain 3"])
pages("one.pdf", ["one"], font="DejaVu")
pages("one-other.pdf", ["two"], font="DejaVu")
resave("plain.pdf", "packed.pdf", object_stream_mode=pikepdf.ObjectStreamMode.generate)
resave("plain.pdf", "linear.pdf", linearize=True)
resave("plain.pdf", "open-locked.pdf", encryption=pikepdf.Encryption(user="", owner="owner", R=6))
resave("plain.pdf", "locked.pdf", encryption=pikepdf.Encryption(user="u", owner="o", R=6))
linked()
form("form.pdf", "12.50")
form("form-other.pdf", "99.00")
turned()
layers()
flat()
