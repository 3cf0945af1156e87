#!/usr/bin/python3
"""make_sheet.py TARGET ROWS: a workbook of the kind that TARGET's ending names.

ROWS is JSON: a list of rows of cells. A cell is text, a number, null, or an object: {"number": 7,
"format": "000"}, {"date": "2026-03-04", "format": "dd.mm.yyyy"}, {"formula": "=NEW()", "cached":
"x"}, {"number": 7, "at": "XFD9"} (.xlsx only). Behind the sheet stands a second one, and that is the
one last looked at.
"""

import datetime
import json
import sys
import zipfile

target, rows = sys.argv[1], json.loads(sys.argv[2])
DECOY = "second sheet"


def cells():
    """Row and column from 0, value, number format, cached text of a formula."""
    for r, row in enumerate(rows):
        for c, cell in enumerate(row):
            if isinstance(cell, dict):
                if "at" in cell:
                    from openpyxl.utils.cell import coordinate_to_tuple
                    r, c = (place - 1 for place in coordinate_to_tuple(cell["at"]))
                value = cell.get("number", cell.get("formula"))
                if "date" in cell:
                    value = datetime.date.fromisoformat(cell["date"])
                yield r, c, value, cell.get("format"), cell.get("cached")
            elif cell is not None:
                yield r, c, cell, None, None


def make_xlsx():
    import openpyxl
    book = openpyxl.Workbook()
    sheet = book.active
    kept = {}
    for r, c, value, form, cached in cells():
        cell = sheet.cell(row=r + 1, column=c + 1, value=value)
        if isinstance(value, str) and cached is None:
            cell.data_type = "s"
        if form:
            cell.number_format = form
        if cached is not None:
            kept[cell.coordinate] = cached
    book.create_sheet("second")["A1"] = DECOY
    book.active = 1
    sheet.sheet_view.tabSelected = False
    book.save(target)
    if kept:
        keep_values(kept)


def keep_values(kept):
    """openpyxl writes formulas without the values that a spreadsheet program keeps beside them."""
    with zipfile.ZipFile(target) as made:
        parts = {name: made.read(name) for name in made.namelist()}
    name = "xl/worksheets/sheet1.xml"
    text = parts[name].decode()
    for place, cached in kept.items():
        start = text.index(f'<c r="{place}"')
        end = text.index("</c>", start)
        cell = text[start:end].replace("<c ", '<c t="str" ').replace("<v></v>", "").replace("<v />", "")
        text = text[:start] + cell + f"<v>{cached}</v>" + text[end:]
    parts[name] = text.encode()
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as remade:
        for part, content in parts.items():
            remade.writestr(part, content)


def make_xls():
    import xlwt
    book = xlwt.Workbook(encoding="utf-8")
    sheet = book.add_sheet("first")
    for r, c, value, form, _ in cells():
        sheet.write(r, c, value, xlwt.easyxf(num_format_str=form) if form else xlwt.Style.default_style)
    book.add_sheet("second").write(0, 0, DECOY)
    book.set_active_sheet(1)
    book.save(target)


def make_ods():
    from odf.opendocument import OpenDocumentSpreadsheet
    from odf.table import Table, TableCell, TableRow
    from odf.text import P
    book = OpenDocumentSpreadsheet()
    for name, content in (("first", rows), ("second", [[DECOY]])):
        table = Table(name=name)
        book.spreadsheet.addElement(table)
        for row in content:
            line = TableRow()
            table.addElement(line)
            for value in row or [None]:
                if isinstance(value, str):
                    cell = TableCell(valuetype="string")
                    line.addElement(cell)
                    for text in value.split("\n"):
                        cell.addElement(P(text=text))
                else:
                    line.addElement(TableCell() if value is None else TableCell(valuetype="float", value=value))
    book.save(target)


{"xlsx": make_xlsx, "xls": make_xls, "ods": make_ods}[target.rsplit(".", 1)[1]]()
