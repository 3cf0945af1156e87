"""Makes the PDF files that the append tests work on: make_parts.py FOLDER"""
import sys

import pikepdf
from pikepdf import Array, Dictionary, Name, String
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen import canvas

folder = sys.argv[1] + "/"
pdfmetrics.registerFont(TTFont("DejaVu", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"))


def canvas_of(name):
    return canvas.Canvas(folder + name, pagesize=(595, 842), invariant=1)


def change(name, how):
    with pikepdf.open(folder + name, allow_overwriting_input=True) as pdf:
        how(pdf)
        pdf.save()


def pages(name, texts, font="Helvetica"):
    c = canvas_of(name)
    for text in texts:
        c.setFont(font, 12)
        c.drawString(72, 700, text)
        c.showPage()
    c.save()


def resave(name, **how):
    with pikepdf.open(folder + "plain.pdf") as pdf:
        pdf.save(folder + name, **how)


def linked(pdf):
    """Links of every kind, back and ahead, named and not, and one that leads astray."""
    root = pdf.Root
    goals = [Array([page.obj, Name.XYZ, 0, 700, 0]) for page in pdf.pages]
    root.Names = Dictionary(Dests=Dictionary(Names=Array(
        [item for i, goal in enumerate(goals) for item in (String(f"place{i}"), goal)])))
    pdf.docinfo.Title = "linked"
    root.Dests = Dictionary({"/old style": goals[1]})
    root.PageLabels = Dictionary(Nums=Array([0, Dictionary(S=Name.r), 2, Dictionary(S=Name.D, P=String("A-"))]))
    for page, goal in ((0, {"Dest": String("place2")}), (0, {"A": Dictionary(S=Name.GoTo, D=goals[2])}),
                       (1, {"Dest": Name("/old style")}), (2, {"A": Dictionary(S=Name.GoTo, D=String("place0"))}),
                       (2, {"Dest": String("elsewhere")})):
        link = Dictionary(Type=Name.Annot, Subtype=Name.Link, Rect=Array([72, 400, 200, 420]), **goal)
        page = pdf.pages[page].obj
        page.Annots = Array([*page.get("/Annots", []), pdf.make_indirect(link)])
    with pdf.open_outline() as outline:
        chapters = [pikepdf.OutlineItem(f"Chapter {i + 1}", i) for i in range(3)]
        chapters[1].children.append(chapters.pop())
        outline.root.extend(chapters)


def form(name, value, box):
    c = canvas_of(name)
    c.acroForm.textfield(name="Total", value=value, x=72, y=600, width=200, height=20, fontName="Helvetica")
    c.acroForm.checkbox(name=box, checked=True, x=72, y=560)
    c.showPage()
    c.save()


def inherits(**entries):
    """The pages take from the tree what it states."""
    def how(pdf):
        entries["Resources"] = pdf.pages[0].Resources
        for key, value in entries.items():
            pdf.Root.Pages["/" + key] = value
            for page in pdf.pages:
                if "/" + key in page.obj:
                    del page.obj["/" + key]
        if "CropBox" in entries:
            pdf.pages[1].CropBox = Array([0, 0, 300, 300])
    return how


def layers(pdf):
    groups = [pdf.make_indirect(Dictionary(Type=Name.OCG, Name=String(n))) for n in ("Seen", "Unseen")]
    page = pdf.pages[0]
    page.Resources.Properties = Dictionary(L0=groups[0], L1=groups[1])
    page.contents_add("".join(f"/OC /L{i} BDC BT /F1 12 Tf 72 {500 - 20 * i} Td (layer {n}) Tj ET EMC\n"
                              for i, n in enumerate(("seen", "unseen"))).encode())
    pdf.Root.OCProperties = Dictionary(OCGs=Array(groups), D=Dictionary(Order=Array(groups), OFF=Array([groups[1]])))


pages("plain.pdf", ["plain 1", "plain 2", "plain 3"])
pages("one.pdf", ["one"], "DejaVu")
pages("one-other.pdf", ["two"], "DejaVu")
resave("packed.pdf", object_stream_mode=pikepdf.ObjectStreamMode.generate)
resave("linear.pdf", linearize=True)
resave("open-locked.pdf", encryption=pikepdf.Encryption(user="", owner="owner", R=6))
resave("locked.pdf", encryption=pikepdf.Encryption(user="u", owner="o", R=6))
pages("linked.pdf", ["linked 1", "linked 2", "linked 3"])
change("linked.pdf", linked)
form("form.pdf", "12.50", "Paid")
form("form-other.pdf", "99.00", "Late")
change("form-other.pdf", lambda pdf: setattr(pdf.Root.AcroForm.DR.Font.Helv, "BaseFont", Name("/Times-Roman")))
pages("turned.pdf", ["turned 1", "turned 2"])
change("turned.pdf", inherits(Rotate=90, CropBox=Array([10, 20, 400, 800]), MediaBox=Array([0, 0, 500, 842])))
pages("flat.pdf", ["flat 1", "flat 2"])
change("flat.pdf", inherits(Rotate=180, MediaBox=Array([0, 0, 300, 842])))
pages("layers.pdf", ["layers 1"])
change("layers.pdf", layers)
