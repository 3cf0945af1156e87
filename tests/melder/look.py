"""Tells what two independent readers see in a file, one fact a line: look.py FILE"""
import sys

import fitz
import pikepdf

path = sys.argv[1]
fitz.TOOLS.mupdf_display_errors(False)
with fitz.open(path) as doc:
    print("pages", len(doc))
    for page in doc:
        text = " / ".join(page.get_text().split("\n")).strip(" /")
        print("page", page.number + 1, "label", page.get_label() or "-", "turned", page.rotation,
              "size", round(page.rect.width), round(page.rect.height), "text", text)
    for level, title, target in doc.get_toc():
        print("bookmark", level, title, target)
    print("title", doc.metadata["title"])

with pikepdf.open(path) as pdf:
    print("pikepdf pages", len(pdf.pages), "warnings", len(pdf.get_warnings()))
    print("encrypted", pdf.is_encrypted)
    if "/AcroForm" in pdf.Root:
        print("top fields", *(str(f.get("/T")) for f in pdf.Root.AcroForm.Fields))
    index = {page.objgen: page.index + 1 for page in pdf.pages}
    names = pikepdf.NameTree(pdf.Root.Names.Dests) if "/Names" in pdf.Root and "/Dests" in pdf.Root.Names else {}

    def target_of(goal):
        if isinstance(goal, pikepdf.Name):
            goal = pdf.Root.Dests.get(goal)
        if isinstance(goal, pikepdf.String):
            goal = names[str(goal)] if str(goal) in names else None
        return index.get(goal[0].objgen, "elsewhere") if goal is not None else "nowhere"

    def full_name(field):
        parts = []
        while field is not None:
            parts.insert(0, str(field.get("/T", "")))
            field = field.get("/Parent")
        return ".".join(part for part in parts if part)

    for page in pdf.pages:
        for note in page.get("/Annots", []):
            if note.get("/Subtype") == "/Widget":
                print("field", page.index + 1, full_name(note), note.get("/V"))
            if note.get("/Subtype") == "/Link":
                print("link", page.index + 1, "to", target_of(note.get("/Dest", note.get("/A", {}).get("/D"))))
    for name in sorted(names.keys()):
        print("destination", name, target_of(names[name]))
    if "/OCProperties" in pdf.Root:
        hidden = {group.objgen for group in pdf.Root.OCProperties.D.get("/OFF", [])}
        for group in pdf.Root.OCProperties.OCGs:
            print("layer", group.Name, "hidden" if group.objgen in hidden else "shown")
