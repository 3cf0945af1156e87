"""Tells what a PDF shows and does, one fact a line that begins with its kind: describe.py FILE

Two readers that share no code with ours: what stands on the pages comes from MuPDF, what hangs together is read
object by object.
"""
import re
import sys
from xml.etree import ElementTree

import fitz
import pikepdf

CLAIMS = {"archive": "{http://www.aiim.org/pdfa/ns/id/}", "access": "{http://www.aiim.org/pdfua/ns/id/}",
          "print": "{http://www.npes.org/pdfvt/ns/id/}", "invoice": "{urn:factur-x:"}

fitz.TOOLS.mupdf_display_errors(False)
with fitz.open(sys.argv[1]) as document:
    print("pages", document.page_count)
    for key in ("title", "author"):
        print(key, *document.metadata[key].split())
    print("bookmarks", len(document.get_toc()))
    for level, title, page in document.get_toc():
        print("bookmark", level, title, page if page > 0 else "nowhere")
    for number, page in enumerate(document, 1):
        print("text", number, *page.get_text().split())
        print("label", number, page.get_label() or "-")
        print("shape", number, page.rotation, *map(round, page.cropbox))
        for note in page.annots():
            print("annotation", number, note.type[1], *note.info["content"].split())

pdf = pikepdf.open(sys.argv[1])
root = pdf.Root
form = root.get("/AcroForm", {})
pages = {page.objgen: page.index + 1 for page in pdf.pages}
notes = [(page.index + 1, note) for page in pdf.pages for note in page.get("/Annots", [])]
names = pikepdf.NameTree(root.Names.Dests) if "/Dests" in root.get("/Names", {}) else {}


def page_of(goal):
    if isinstance(goal, pikepdf.Name):
        goal = root.Dests.get(goal)
    if isinstance(goal, pikepdf.String):
        goal = names[str(goal)] if str(goal) in names else None
    if isinstance(goal, pikepdf.Dictionary):
        goal = goal.D
    if goal is None:
        return "nowhere"
    return goal[0] + 1 if isinstance(goal[0], int) else pages.get(goal[0].objgen, "elsewhere")


def font_of(field):
    name = str(field.get("/DA", "")).split(" ")[0]
    return ["in", form.DR.Font.get(name, {}).get("/BaseFont", "none")] if name else []


def tell_fields(fields, prefix=(), value=None):
    for field in fields:
        name = [*prefix, str(field.T)] if "/T" in field else prefix
        shown = field.get("/V", value)
        kids = list(field.get("/Kids", []))
        if any("/T" in kid for kid in kids):
            tell_fields(kids, name, shown)
            continue
        widgets = {one.objgen for one in kids or [field]}
        print("field", ".".join(name), "=", "a signature" if isinstance(shown, pikepdf.Dictionary) else shown,
              "on", *(number for number, note in notes if note.objgen in widgets),
              *("astray" for kid in kids if kid.Parent.objgen != field.objgen), *font_of(field))


def words_of(stream, mark):
    """What the content that has this mark shows, of pages as the tests write them."""
    marked = re.search(rb"<</MCID %d>> BDC(.*?)EMC" % mark, stream.read_bytes(), re.DOTALL)
    return b" ".join(re.findall(rb"\((.*?)\)", marked[1])).decode() if marked else "nothing"


def leads_back(parents, owner, key, mark, element):
    """Whether the key of a page, stream or annotation leads to the element again."""
    found = parents[int(owner[key])] if int(owner.get(key, -1)) in parents else None
    if mark is not None:
        found = found[mark] if found is not None and mark < len(found) else None
    return found is not None and found.objgen == element.objgen


def tell_content(parents, item, page, element):
    if isinstance(item, int):
        item = {"/MCID": item}
    page = item.get("/Pg", page)
    if page is None:
        return "nowhere"
    if "/Obj" in item:
        told, back = str(item["/Obj"].Subtype)[1:], leads_back(parents, item["/Obj"], "/StructParent", None, element)
    else:
        owner = item.get("/Stm", page)
        told = words_of(item.get("/Stm", page.get("/Contents")), int(item["/MCID"]))
        back = leads_back(parents, owner, "/StructParents", int(item["/MCID"]), element)
    return f"{pages.get(page.objgen, 'elsewhere')}:{told}" + ("" if back else " astray")


def kids_of(owner):
    kids = owner.get("/K")
    return [] if kids is None else kids if isinstance(kids, pikepdf.Array) else [kids]


def is_element(kid):
    return not isinstance(kid, int) and "/S" in kid


def tell_elements(parents, above, depth, page=None):
    for kid in filter(is_element, kids_of(above)):
        here = kid.get("/Pg", page)
        print("element", depth, str(kid.S)[1:],
              *(f"{key[1:]}={kid[key]}" for key in ("/ID", "/T", "/Alt", "/ActualText") if key in kid),
              *(["attributes"] if "/A" in kid else []),
              *(tell_content(parents, item, here, kid) for item in kids_of(kid) if not is_element(item)),
              *([] if kid.P.objgen == above.objgen else ["astray"]))
        tell_elements(parents, kid, depth + 1, here)


print("file", "locked" if pdf.is_encrypted else "open", pdf.pdf_version, *map(str, pdf.get_warnings()))
print("catalog", *sorted(root.keys()))
print("language", root.get("/Lang"))
print("tagged", root.get("/MarkInfo", {}).get("/Marked", False))
if "/StructTreeRoot" in root:
    tree = root.StructTreeRoot
    tell_elements(pikepdf.NumberTree(tree.ParentTree), tree, 1)
    print("roles", *sorted(tree.get("/RoleMap", {}).keys()))
    print("names", *(f"{name}={str(element.S)[1:]}" for name, element in pikepdf.NameTree(tree.IDTree).items())
          if "/IDTree" in tree else [])
print("intents", *(intent.S for intent in root.get("/OutputIntents", [])))
if "/Metadata" in root:
    print("metadata", root.Metadata.read_bytes().decode())
    said = [pair for element in ElementTree.fromstring(root.Metadata.read_bytes()).iter()
            for pair in [(element.tag, element.text), *element.items()]]
    print("claims", *sorted(f"{kind}-{name[len(space):]}={value}" for name, value in said
                            for kind, space in CLAIMS.items() if name.startswith(space)))
for number, note in notes:
    action = note.get("/A", {})
    if note.get("/Subtype") == "/Link":
        print("link", number, "to", action.get("/URI", page_of(note.get("/Dest", action.get("/D")))))
for name in sorted(names.keys()):
    print("destination", name, page_of(names[name]))
tell_fields(form.get("/Fields", []))
print("form", *sorted(form.keys()))
print("calculated", *(field.T for field in form.get("/CO", [])))
layers = root.get("/OCProperties", {})
for group in layers.get("/OCGs", []):
    hidden, listed = (f" {group.objgen[0]} 0 R".encode() in layers.D.get(key, pikepdf.Array()).unparse()
                      for key in ("/OFF", "/Order"))
    print("layer", group.Name, "hidden" if hidden else "shown", "listed" if listed else "unlisted")
