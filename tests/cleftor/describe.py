"""Tells what a PDF shows and does, one fact a line: describe.py FILE

What a reader sees comes from MuPDF; the tree of form fields is read object by object.
"""

import sys

import fitz
import pikepdf


def destination(document, link):
    if link.uri.startswith("#"):
        return str(document.resolve_link(link.uri)[0] + 1)
    return link.uri or "nowhere"


def describe_page(document, number, say):
    page = document.load_page(number - 1)
    say(f"page {number} text {' '.join(page.get_text().split())}".rstrip())
    say(f"page {number} label {page.get_label()}")
    say(f"page {number} rotation {page.rotation} box {[round(v) for v in page.cropbox]}")
    link = page.first_link
    while link:
        say(f"page {number} link {destination(document, link)}")
        link = link.next
    for kind, content in [(a.type[1], a.info["content"]) for a in page.annots()]:
        say(f"page {number} annotation {kind} {content}".rstrip())


def describe_fields(pdf, fields, prefix, value, say):
    for field in fields:
        name = prefix + [str(field.T)] if "/T" in field else prefix
        shown = field.get("/V", value)
        kids = field.get("/Kids", [])
        if any("/T" in kid for kid in kids):
            describe_fields(pdf, kids, name, shown, say)
            continue
        pages = [page.index + 1 for page in pdf.pages for annotation in page.get("/Annots", [])
                 for one in (kids or [field]) if annotation.objgen == one.objgen]
        astray = sum(kid.Parent.objgen != field.objgen for kid in kids)
        if isinstance(shown, pikepdf.Dictionary):
            shown = "a signature"
        say(f"field {'.'.join(name)} = {shown} on {pages}" + " astray" * astray)


def describe(name, say):
    document = fitz.open(name)
    say(f"pages {document.page_count}")
    say(f"title {document.metadata['title']} author {document.metadata['author']}")
    for level, title, page in document.get_toc():
        say(f"bookmark {level} {title} -> {page if page > 0 else 'nowhere'}")
    for layer in document.get_ocgs().values():
        say(f"layer {layer['name']} {'on' if layer['on'] else 'off'}")
    for number in range(1, document.page_count + 1):
        describe_page(document, number, say)
    with pikepdf.open(name) as pdf:
        form = pdf.Root.get("/AcroForm")
        if form is not None:
            describe_fields(pdf, form.Fields, [], None, say)
            say(f"calculated {[str(field.T) for field in form.get('/CO', [])]}")
            say(f"form {sorted(form.keys())}")


describe(sys.argv[1], print)
