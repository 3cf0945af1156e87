#!/usr/bin/python3
"""make_scan.py SOURCE TARGET PAGES: the first PAGES pages of a PDF as a scanner would give them."""

import sys

import fitz

source, target, pages = fitz.open(sys.argv[1]), sys.argv[2], int(sys.argv[3])
scan = fitz.open()
for page in source.pages(0, pages):
    picture = page.get_pixmap(dpi=200, colorspace=fitz.csGRAY)
    sheet = scan.new_page(width=page.rect.width, height=page.rect.height)
    sheet.insert_image(sheet.rect, stream=picture.tobytes("png"))
scan.save(target)
