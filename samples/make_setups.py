#!/usr/bin/python3
"""Makes the sample setups (*.fxs): one way each of splitting statements.pdf.

    samples/make_setups.py [FOLDER]
"""

import sys
from pathlib import Path

# The keys in the order that the file format fixes, with the value that each setup starts from.
# OFFSETFIRST stands twice; that is part of the format.
FIELDS = [
    ("USECURRENT", "0"),
    # Beside the source is the one output folder that exists on every system.
    ("SPLITTOSOURCE", "1"),
    ("ROTATED", "0"),
    ("CREATELIST", "0"),
    ("KEEPBOOKMARKS", "1"),
    ("USESOURCEFILENAME", "0"),
    ("USESOURCEFILENAMEPOST", "0"),
    # A second run replaces the outputs of the first in place of adding "_part002" beside them.
    ("ALWAYSOVERWRITE", "1"),
    ("ALWAYSAPPEND", "0"),
    ("IGNORECASE", "0"),
    ("OCRFIRST", "0"),
    ("ADDBWORDS", ""),
    ("FILENAME", ""),
    ("EXTRACT", "Next word as filename"),
    ("TAKENWORDSFORFILENAME", "999"),
    ("UNTILHHPOSLESSTHAN", "9999"),
    ("FIRSTCHAROFWORD", ""),
    ("ANYCHAROFWORD", ""),
    ("STARTFROMPAGE", "1"),
    ("STARTENDPAGE", "0"),
    ("OFFSETFIRST", "0"),
    ("PAGEEXTRACT", "From match to next match"),
    ("FINDSTRING", "Account:"),
    ("PREFIXFILENAME", "statement_"),
    ("POSTFIXFILENAME", ""),
    ("OUTPUTDIR", ""),
    ("EXTRACTUNTIL", ""),
    ("EXTRACTFILENAME", ""),
    ("MATCHPOSH", ""),
    ("MATCHPOSV", ""),
    ("UNTILMATCHPOSH", "0"),
    ("UNTILMATCHPOSV", "0"),
    ("STRIPEND", "0"),
    ("OFFSETFIRST", "0"),
    ("REPORTOPTIONSTXT", "1"),
    ("REPORTOPTIONSCSV", "1"),
    ("REPORTOPTIONSCURRENT", "1"),
    ("REPORTOPTIONSOUTPUTFOLDER", ""),
    ("REPORTUSEFILELIST", ""),
    ("REPORTREMOVECHARS", ""),
    ("HORIZWORDSPACING", "1.020000"),
    ("PDFPASSWORD", ""),
    ("CONFIGUSEEXTERNAL", "0"),
    ("CONFIGEXTERNALCOMMAND", ""),
    ("CONFIGEXTERNALPARAMS", ""),
    ("EMAILSMTP", ""),
    ("EMAILFROM", ""),
    ("EMAILINVOICECC", ""),
    ("EMAILFROMNAME", ""),
    ("EMAILSUBJECT", ""),
    ("EMAILLOGIN", ""),
    ("EMAILPASSWORD", ""),
    ("EMAILLOGFILE", ""),
    ("EMAILMSG", ""),
    ("EMAILHTML", "0"),
    ("EMAILENABLE", "0"),
    ("EMAILCONFIRM", "1"),
    ("EMAILTEST", "1"),
    ("EMAILPAUSE", "0"),
    ("EMAILMATCHVERT", "0"),
    ("EMAILMATCHVERTTO", "99999"),
    ("EMAILMATCHHORIZFROM", "0"),
    ("EMAILMATCHHORIZTO", "99999"),
    ("USEOUTLOOK", "0"),
    ("USEOUTLOOKAUTO", "0"),
    ("EMAILHORIZAFTERTEXT", ""),
    ("EMAILHORIZBEFORETEXT", ""),
    ("OTHERSETTINGSREMOVEFILES", "0"),
    ("OTHERSETTINGSREMOVETEXT", ""),
]

SETUPS = {
    "example.fxs": {},
    # The page with the address alone, as for a covering letter.
    "first-pages.fxs": {"PAGEEXTRACT": "Matched page only", "PREFIXFILENAME": "cover_"},
    # No word is looked for: whatever stands where the account number stands starts a document.
    "by-position.fxs": {
        "PAGEEXTRACT": "From match to next match using position h,v",
        "EXTRACT": "h,v match as filename",
        "FINDSTRING": "",
        "MATCHPOSH": "397-399",
        "MATCHPOSV": "117-119",
    },
    # Named after the customer: the rest of the line behind "Customer:".
    "by-name.fxs": {
        "EXTRACT": "USE 'use as filename name after text' - take rest of line",
        "EXTRACTFILENAME": "Customer:",
        "ADDBWORDS": "_",
    },
    "by-bookmark.fxs": {"PAGEEXTRACT": "Bookmarks Root Level", "EXTRACT": "Use bookmark as filename"},
}

# The text layer of the program's files turns the LF of each CR LF into CR LF once more.
LINE_END = "\r\r\n"


def setup(changes):
    unknown = changes.keys() - dict(FIELDS)
    if unknown:
        raise KeyError(f"no such key: {unknown}")
    lines = ["UNICODEV4"] + [f"{key};{changes.get(key, value)} " for key, value in FIELDS]
    return ("\ufeff" + "".join(line + LINE_END for line in lines)).encode("utf-8")


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent
    for name, changes in SETUPS.items():
        (folder / name).write_bytes(setup(changes))


if __name__ == "__main__":
    main()
