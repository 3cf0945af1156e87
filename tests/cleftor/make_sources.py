"""Makes the PDFs that the split library is tested with: make_sources.py FOLDER."""

import os
import sys

import pikepdf
from pikepdf import Array, Dictionary, Name, Pdf, Stream, String

folder = sys.argv[1]


def path(name):
    return os.path.join(folder, name)


def noise(count, seed):
    """Bytes that no compression makes smaller."""
    state, out = seed * 2654435761 % 2**32 or 1, bytearray()
    for _ in range(count):
        state = (state * 1664525 + 1013904223) % 2**32
        out.append(state >> 24)
    return bytes(out)


def helvetica(pdf):
    return pdf.make_indirect(
        Dictionary(Type=Name.Font, Subtype=Name.Type1, BaseFont=Name.Helvetica))


def image(pdf, size, seed):
    stream = Stream(pdf, noise(size * size, seed))
    stream.stream_dict = Dictionary(
        Type=Name.XObject, Subtype=Name.Image, Width=size, Height=size,
        ColorSpace=Name.DeviceGray, BitsPerComponent=8)
    return pdf.make_indirect(stream)


def text(pdf, words):
    return Stream(pdf, f"BT /F1 12 Tf 72 700 Td ({words}) Tj ET\n".encode())


def add_page(pdf, content, **entries):
    page = Dictionary(Type=Name.Page, MediaBox=[0, 0, 612, 792], Contents=content)
    for key, value in entries.items():
        page[Name("/" + key)] = value
    pdf.pages.append(pikepdf.Page(pdf.make_indirect(page)))
    return pdf.pages[-1].obj


def plain(count, **entries):
    """A document of numbered pages with one shared font."""
    pdf = Pdf.new()
    resources = pdf.make_indirect(Dictionary(Font=Dictionary(F1=helvetica(pdf))))
    for number in range(1, count + 1):
        add_page(pdf, text(pdf, f"Page number {number}"), Resources=resources, **entries)
    return pdf


def add_annotation(page, annotation):
    if Name.Annots not in page:
        page.Annots = Array()
    page.Annots.append(annotation)


def widget(pdf, page, rect, **entries):
    appearance = Stream(pdf, b"/Tx BMC BT /Helv 10 Tf 2 4 Td (shown) Tj ET EMC\n")
    appearance.stream_dict = Dictionary(
        Type=Name.XObject, Subtype=Name.Form, BBox=[0, 0, 100, 20],
        Resources=Dictionary(Font=Dictionary(Helv=helvetica(pdf))))
    annotation = pdf.make_indirect(Dictionary(
        Type=Name.Annot, Subtype=Name.Widget, Rect=rect, P=page, F=4,
        AP=Dictionary(N=pdf.make_indirect(appearance)), **entries))
    add_annotation(page, annotation)
    return annotation


def link(pdf, page, **entries):
    annotation = pdf.make_indirect(Dictionary(
        Type=Name.Annot, Subtype=Name.Link, Rect=[72, 600, 200, 620], P=page, **entries))
    add_annotation(page, annotation)
    return annotation


def add_links(pdf, pages):
    """On page 4: forward, backward, by name, out of the range, elsewhere, chained."""
    def to(number):
        return Array([pages[number - 1], Name.Fit])
    link(pdf, pages[3], Dest=to(6))
    link(pdf, pages[5], A=Dictionary(S=Name.GoTo, D=to(4)))
    link(pdf, pages[3], Dest=String("chapter5"))
    link(pdf, pages[3], Dest=to(12))
    link(pdf, pages[3], A=pdf.make_indirect(Dictionary(S=Name.GoTo, D=String("chapter11"))))
    link(pdf, pages[3], A=Dictionary(S=Name.URI, URI=String("https://example.org/")))
    link(pdf, pages[3], A=Dictionary(
        S=Name.GoTo, D=to(1), Next=Dictionary(S=Name.GoTo, D=to(5))))
    names = Array()
    for number in (1, 11, 5):
        names.append(String(f"chapter{number}"))
        names.append(Dictionary(D=to(number)))
    leaf = pdf.make_indirect(Dictionary(
        Names=names, Limits=[String("chapter1"), String("chapter5")]))
    pdf.Root.Names = Dictionary(Dests=Dictionary(Kids=[leaf]))


def add_form(pdf, pages):
    """One field on pages 4, 6 and 9, one below another, a signed one, one on a later page only."""
    account = pdf.make_indirect(Dictionary(
        FT=Name.Tx, T=String("account"), V=String("4711"), DA=String("/Helv 10 Tf 0 g")))
    account.Kids = Array([
        widget(pdf, pages[number - 1], [300, 700, 400, 720], Parent=account)
        for number in (4, 6, 9)])
    person = pdf.make_indirect(Dictionary(T=String("person")))
    person.Kids = Array([
        widget(pdf, pages[4], [300, 600, 400, 620], Parent=person, FT=Name.Tx, T=String("name"),
               V=String("Ada"), DA=String("/Helv 10 Tf 0 g")),
        widget(pdf, pages[10], [300, 600, 400, 620], Parent=person, FT=Name.Tx, T=String("town"),
               V=String("Basel"), DA=String("/Helv 10 Tf 0 g"))])
    signature = widget(
        pdf, pages[3], [300, 500, 400, 520], FT=Name.Sig, T=String("signature"),
        V=pdf.make_indirect(Dictionary(
            Type=Name.Sig, Filter=Name("/Adobe.PPKLite"), Contents=String(b"\0" * 64),
            ByteRange=[0, 10, 20, 10])))
    late = widget(pdf, pages[11], [300, 400, 400, 420], FT=Name.Tx, T=String("late"),
                  V=String("x"), DA=String("/Helv 10 Tf 0 g"))
    reset = Dictionary(S=Name.ResetForm, Fields=[account, late])
    widget(pdf, pages[4], [300, 300, 400, 320], A=reset)
    pdf.Root.AcroForm = pdf.make_indirect(Dictionary(
        Fields=[account, person, signature, late], SigFlags=3, CO=[late, account],
        DA=String("/Helv 10 Tf 0 g"),
        DR=Dictionary(Font=Dictionary(Helv=helvetica(pdf))), XFA=String("<xdp/>")))


def add_outline(pdf, pages):
    with pdf.open_outline() as outline:
        first = pikepdf.OutlineItem("Part one", 0)
        first.children.append(pikepdf.OutlineItem("On four", 3))
        section = pikepdf.OutlineItem("On five", 4)
        section.children.append(pikepdf.OutlineItem("Below five", 4))
        first.children.append(section)
        first.children.append(pikepdf.OutlineItem("On nine", 8))
        outline.root.extend([first, pikepdf.OutlineItem("Part two", 9)])


def add_layers(pdf, pages):
    def layer(name):
        return pdf.make_indirect(Dictionary(Type=Name.OCG, Name=String(name)))
    hidden, shown, other = layer("hidden"), layer("shown"), layer("other")
    resources = Dictionary(
        Font=pages[4].Resources.Font, Properties=Dictionary(H=hidden, S=shown))
    pages[4].Resources = pdf.make_indirect(resources)
    pages[4].Contents = Stream(
        pdf, b"BT /F1 12 Tf 72 700 Td (Page number 5) Tj ET\n"
        b"/OC /H BDC BT /F1 12 Tf 72 600 Td (unseen) Tj ET EMC\n"
        b"/OC /S BDC BT /F1 12 Tf 72 500 Td (seen) Tj ET EMC\n")
    pdf.Root.OCProperties = Dictionary(
        OCGs=[hidden, other, shown],
        D=Dictionary(Order=[String("all"), other, [hidden], shown], OFF=[hidden, other],
                     ON=[shown], RBGroups=[[hidden, other]],
                     AS=[Dictionary(Event=Name.View, Category=[Name.View], OCGs=[other, shown])]))


def everything():
    pdf = plain(12)
    pages = [page.obj for page in pdf.pages]
    pdf.Root.PageLabels = Dictionary(Nums=[
        0, Dictionary(S=Name.r), 4, Dictionary(S=Name.D, P=String("A-"), St=7)])
    add_links(pdf, pages)
    add_form(pdf, pages)
    add_outline(pdf, pages)
    add_layers(pdf, pages)
    pages[5].CropBox = Array([10, 10, 500, 700])
    pages[5].Rotate = 90
    note = pdf.make_indirect(Dictionary(
        Type=Name.Annot, Subtype=Name.Text, Rect=[10, 10, 30, 30], Contents=String("a note"),
        P=pages[4]))
    note.Popup = pdf.make_indirect(Dictionary(
        Type=Name.Annot, Subtype=Name.Popup, Rect=[10, 10, 90, 90], Parent=note))
    pages[4].Annots.append(note)
    pages[4].Annots.append(note.Popup)
    pages[4].Annots.append(pdf.make_indirect(Dictionary(
        Type=Name.Annot, Subtype=Name.Text, Rect=[40, 10, 60, 30], Contents=String("an answer"),
        IRT=note, RT=Name.R)))
    with pdf.open_metadata() as metadata:
        metadata["dc:title"] = "Everything"
    pdf.docinfo[Name.Title] = String("Everything")
    pdf.docinfo[Name.Author] = String("Frieda M\u00fcller")
    pdf.Root.Lang = String("de-CH")
    pdf.Root.PageMode = Name.UseOutlines
    pdf.Root.OutputIntents = Array([Dictionary(
        Type=Name.OutputIntent, S=Name.GTS_PDFA1, OutputConditionIdentifier=String("sRGB"))])
    pdf.save(path("everything.pdf"))


def clinging():
    """Six pages, each with a large picture of its own and every kind of tie to all the others."""
    pdf = Pdf.new()
    pages = []
    for number in range(1, 7):
        page = add_page(
            pdf, Stream(pdf, b"q 300 0 0 300 72 72 cm /Im Do Q\n"),
            Resources=Dictionary(XObject=Dictionary(Im=image(pdf, 200, number))))
        page.StructParents = number - 1
        pages.append(page)
    elements = [pdf.make_indirect(Dictionary(Type=Name.StructElem, S=Name.P, Pg=page))
                for page in pages]
    tree = pdf.make_indirect(Dictionary(Type=Name.StructTreeRoot, K=Array(elements)))
    for element in elements:
        element.P = tree
    pdf.Root.StructTreeRoot = tree
    pdf.Root.MarkInfo = Dictionary(Marked=True)
    beads = [pdf.make_indirect(Dictionary(P=page, R=[0, 0, 9, 9])) for page in pages]
    for i, bead in enumerate(beads):
        bead.N, bead.V = beads[(i + 1) % 6], beads[i - 1]
        pages[i].B = Array([bead])
    pdf.Root.Threads = Array([pdf.make_indirect(Dictionary(Type=Name.Thread, F=beads[0]))])
    field = pdf.make_indirect(Dictionary(FT=Name.Tx, T=String("all"), V=String("v")))
    field.Kids = Array([widget(pdf, page, [9, 9, 99, 29], Parent=field) for page in pages])
    pdf.Root.AcroForm = Dictionary(Fields=[field])
    notes = []
    for page in pages:
        note = pdf.make_indirect(Dictionary(
            Type=Name.Annot, Subtype=Name.Text, Rect=[0, 0, 9, 9], P=page, Contents=String("n")))
        page.Annots.append(note)
        notes.append(note)
    for i, note in enumerate(notes):
        note.IRT = notes[i - 1]
    for i, page in enumerate(pages):
        after = pages[(i + 1) % 6]
        link(pdf, page, Dest=[after, Name.Fit])
        link(pdf, page, A=Dictionary(S=Name.Thread, D=beads[0]))
        link(pdf, page, A=Dictionary(S=Name.Hide, T=[notes[i - 1]]))
        link(pdf, page, A=Dictionary(S=Name.GoTo, D=[after, Name.Fit], SD=[elements[i - 1]]))
        page.AA = Dictionary(O=Dictionary(S=Name.GoTo, D=[after, Name.Fit]))
        page.PieceInfo = Dictionary(Tool=Dictionary(
            LastModified=String("D:20200101"), Private=Dictionary(Next=after, Up=page.Parent)))
    pdf.attachments["all.bin"] = pikepdf.AttachedFileSpec(
        pdf, noise(200_000, 99), filename="all.bin")
    pdf.save(path("clinging.pdf"))


def older():
    """Names of the older kind, and a page named by its index."""
    pdf = plain(6)
    pages = [page.obj for page in pdf.pages]
    pdf.Root.Dests = Dictionary(first=[pages[0], Name.Fit], fourth=Dictionary(D=[pages[3], Name.Fit]))
    link(pdf, pages[2], Dest=Name.first)
    link(pdf, pages[2], Dest=Name.fourth)
    link(pdf, pages[2], A=Dictionary(S=Name.GoTo, D=[1, Name.Fit]))
    pdf.save(path("older.pdf"))


def form_stream(pdf, content, **entries):
    stream = Stream(pdf, content)
    stream.stream_dict = Dictionary(
        Type=Name.XObject, Subtype=Name.Form, BBox=[0, 0, 612, 792], **entries)
    return pdf.make_indirect(stream)


def shared_resources():
    """Pages that share one dictionary and reach what is in it in every way there is."""
    pdf = Pdf.new()
    shared = pdf.make_indirect(Dictionary())
    mask = form_stream(pdf, b"/Masked Do\n", Group=Dictionary(S=Name.Transparency))
    pattern = Stream(pdf, b"/Tiled Do\n")
    pattern.stream_dict = Dictionary(
        PatternType=1, PaintType=1, TilingType=1, BBox=[0, 0, 9, 9], XStep=9, YStep=9)
    glyph = Stream(pdf, b"1000 0 d0 /Drawn Do\n")
    font = Dictionary(
        Type=Name.Font, Subtype=Name.Type3, FontBBox=[0, 0, 1000, 1000],
        FontMatrix=[0.001, 0, 0, 0.001, 0, 0], FirstChar=97, LastChar=97, Widths=[1000],
        Encoding=Dictionary(Differences=[97, Name.a]), CharProcs=Dictionary(a=glyph))
    names = ["Plain", "Inner", "Masked", "Tiled", "Drawn", "Shared", "Noted", "Odd Name", "Never"]
    pictures = {"/" + name: image(pdf, 100, 10 + i) for i, name in enumerate(names)}
    shared.XObject = Dictionary(pictures)
    shared.XObject["/Old"] = form_stream(pdf, b"q /Inner Do Q\n")
    shared.XObject["/User"] = form_stream(pdf, b"q /Shared Do Q\n", Resources=shared)
    shared.ExtGState = Dictionary(GS=Dictionary(SMask=Dictionary(S=Name.Alpha, G=mask)))
    shared.Pattern = Dictionary(P1=pdf.make_indirect(pattern))
    shared.Font = Dictionary(F1=helvetica(pdf), T3=pdf.make_indirect(font))
    contents = [
        b"BT /F1 12 Tf 72 700 Td (only words) Tj ET\n",
        b"q 50 0 0 50 72 72 cm /Plain Do Q\n",
        b"/Old Do\n",
        b"/GS gs 0 0 99 99 re f\n",
        b"/Pattern cs /P1 scn 0 0 99 99 re f\n",
        b"BT /T3 12 Tf 72 700 Td (a) Tj ET\n",
        b"/User Do\n",
        b"BT /F1 12 Tf 72 700 Td (note) Tj ET\n",
        b"q 50 0 0 50 72 72 cm /Odd#20Name Do Q\n",
    ]
    for content in contents:
        add_page(pdf, Stream(pdf, content), Resources=shared)
    pdf.pages[7].obj.Annots = Array([Dictionary(
        Type=Name.Annot, Subtype=Name.Stamp, Rect=[0, 0, 99, 99],
        AP=Dictionary(N=form_stream(pdf, b"/Noted Do\n")))])
    del pdf.pages[3].obj.Resources
    pdf.Root.Pages.Resources = shared
    broken = Stream(pdf, b"not compressed at all /Plain Do")
    page = add_page(pdf, broken, Resources=shared)
    page.Contents.Filter = Name.FlateDecode
    pdf.save(path("shared.pdf"), compress_streams=False,
             stream_decode_level=pikepdf.StreamDecodeLevel.none)


def protected():
    for name, user, revision in (("latin", "gr\u00fc\u00dfe", 3), ("aes", "gr\u00fc\u00dfe", 6),
                                 ("open", "", 6), ("blank", "word ", 6)):
        pdf = plain(4)
        add_page(pdf, text(pdf, "the last page"), Resources=pdf.pages[0].obj.Resources)
        pdf.docinfo[Name.Title] = String("Geheimnis \u00e4")
        pdf.save(path(f"protected-{name}.pdf"), encryption=pikepdf.Encryption(
            owner="owner", user=user, R=revision, aes=revision > 4, metadata=revision > 4))


def damaged():
    pdf = plain(6)
    pdf.save(path("plain.pdf"))
    with open(path("plain.pdf"), "rb") as file:
        data = file.read()
    for name, part in (("empty", b""), ("garbage", noise(5000, 3)),
                       ("headless", b"%PDF-1.4\n%%EOF\n"), ("truncated", data[:len(data) * 2 // 3]),
                       ("noxref", data.replace(b"startxref", b"startxxxx"))):
        with open(path(name + ".pdf"), "wb") as file:
            file.write(part)
    pdf = plain(3)
    pdf.save(path("lying.pdf"), static_id=True)
    with open(path("lying.pdf"), "rb") as file:
        data = file.read()
    with open(path("lying.pdf"), "wb") as file:
        file.write(data.replace(b"/Count 3 ", b"/Count 1400000000 "))
    pdf = plain(3)
    pages = pdf.Root.Pages
    node = pdf.make_indirect(Dictionary(Type=Name.Pages, Count=2, Kids=[pages, pages.Kids[0]]))
    pages.Kids = Array([pages, node, pages.Kids[1], node, pages.Kids[1], Name.Oops, pages.Kids[2]])
    pages.Count = 99
    action = pdf.make_indirect(Dictionary(S=Name.GoTo, D=[pages.Kids[2], Name.Fit]))
    action.Next = action
    link(pdf, pages.Kids[2], A=action)
    pdf.save(path("looping.pdf"))
    pdf = plain(2)
    value = Array()
    for _ in range(400):
        value = Array([value])
    pdf.pages[0].obj.PieceInfo = Dictionary(Deep=value)
    pdf.save(path("deep.pdf"))


def compressed():
    pdf = plain(30)
    pdf.save(path("compressed.pdf"), object_stream_mode=pikepdf.ObjectStreamMode.generate)


everything()
older()
clinging()
shared_resources()
protected()
damaged()
compressed()
