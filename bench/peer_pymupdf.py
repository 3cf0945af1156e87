#!/usr/bin/python3
"""The whole job as a script on PyMuPDF does it: find, name, split, report.

    peer_pymupdf.py FILE FOLDER [--fast]

A new document begins on each page with the word "Account:" and is named after the word behind it.
Outputs are saved as the library's manual advises for small files (garbage collected, compressed); with
--fast as quickly as it can.
"""

import csv
import sys
from pathlib import Path

import fitz


def account_of(page):
    words = page.get_text("words")
    for index, word in enumerate(words[:-1]):
        if word[4] == "Account:":
            return words[index + 1][4]
    return None


def main():
    source, folder = fitz.open(sys.argv[1]), Path(sys.argv[2])
    fast = "--fast" in sys.argv[3:]
    with open(folder / "report.csv", "w", newline="", encoding="utf-8") as file:
        report = csv.writer(file)
        report.writerow(["Start Page", "End Page", "Matched", "Output File"])
        account, start, files = None, 0, 0

        def close(end):
            target = folder / f"statement_{account}.pdf"
            part = fitz.open()
            part.insert_pdf(source, from_page=start, to_page=end)
            if fast:
                part.save(target)
            else:
                part.ez_save(target)
            part.close()
            report.writerow([start + 1, end + 1, account, target])

        for index in range(source.page_count):
            found = account_of(source[index])
            if found is None:
                continue
            if account is not None:
                close(index - 1)
                files += 1
            account, start = found, index
        if account is not None:
            close(source.page_count - 1)
            files += 1
    print(f"{files} files")


if __name__ == "__main__":
    main()
