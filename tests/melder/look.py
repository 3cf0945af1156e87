"""Tells what two independent readers see in a file, one fact a line: look.py FILE"""
import sys

import fitz
import pikepdf

path = sys.argv[1]
fitz.TOOLS.mupdf_display_errors(False)
with fitz.open(path) as doc:
    for page in doc:
        print("label", page.get_label() or "-")
        print("shape", page.rotation, round(page.rect.width), round(page.rect.height))
        print("text", " / ".join(page.get_text().split("\n")).strip(" /"))
    for level, title, target in doc.get_toc():
        print("bookmark", level, title, target)
    print("title", doc.metadata["title"])

with pikepdf.open(path) as pdf:
    root = pdf.Root
    print("file", "locked" if pdf.is_encrypted else "open", pdf.pdf_version, *map(str, pdf.get_warnings()))
    index = {page.objgen: page.index + 1 for page in pdf.pages}
    names = pikepdf.NameTree(root.Names.Dests) if "/Dests" in root.get("/Names", {}) else {}

    def target_of(goal):
        if isinstance(goal, pikepdf.Name):
            goal = root.Dests.get(goal)
        if isinstance(goal, pikepdf.String):
            goal = names[str(goal)] if str(goal) in names else None
        return index.get(goal[0].objgen, "elsewhere") if goal is not None else "nowhere"

    def font_of(field):
        name = str(field.get("/DA", "")).split(" ")[0]
        return root.AcroForm.DR.Font.get(name, {}).get("/BaseFont", "/lost") if name else ""

    for page in pdf.pages:
        for note in page.get("/Annots", []):
            if note.get("/Subtype") == "/Widget":
                print("field", page.index + 1, note.get("/T"), note.get("/V"), font_of(note))
            if note.get("/Subtype") == "/Link":
                print("link", page.index + 1, "to", target_of(note.get("/Dest", note.get("/A", {}).get("/D"))))
    print("fields", *(field.get("/T") for field in root.get("/AcroForm", {}).get("/Fields", [])))
    for name in sorted(names.keys()):
        print("destination", name, target_of(names[name]))
    if "/OCProperties" in root:
        hidden = {group.objgen for group in root.OCProperties.D.get("/OFF", [])}
        listed = {group.objgen for group in root.OCProperties.D.get("/Order", [])}
        for group in root.OCProperties.OCGs:
            print("layer", group.Name, "hidden" if group.objgen in hidden else "shown",
                  "listed" if group.objgen in listed else "unlisted")
