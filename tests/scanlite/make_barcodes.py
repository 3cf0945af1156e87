#!/usr/bin/python3
"""make_barcodes.py TARGET TRUTH [--sheets N] [--step N] [--seed S] [--dpi D ...] [--large-second]: sheets with
one barcode each as a scanner would give them; behind the first a black page of a square metre, when asked for.

Every combination of kind, turn and resolution comes once before one comes again; with --step N each Nth is
taken. A TRUTH line is "page kind turn dpi text h v", h and v in points where the left edge of the symbol with
its quiet zone and its middle are to be found."""

import argparse
import io
import itertools
import math
import random
import string
import subprocess

import fitz
from PIL import Image, ImageChops

A4 = (595, 842)
MM = 72 / 25.4
PIXELS_A_MODULE = 10  # of zint's pictures at scale 5
KINDS = {
    # zint's name, width of a module in mm, text
    "ean": ("EANX", (0.33,), lambda r: with_check_digit("".join([r.choice("123456789")] + r.choices(string.digits, k=11)))),
    "code39": ("CODE39", (0.33,), lambda r: "".join(r.choices(string.ascii_uppercase + string.digits, k=r.randint(6, 10)))),
    "code128": ("CODE128", (0.33,), lambda r: "".join(r.choices(string.ascii_letters + string.digits + "-", k=r.randint(8, 14)))),
    "qr": ("QRCODE", (0.4, 0.5), lambda r: "".join(r.choices(string.ascii_letters + string.digits + "-", k=r.randint(8, 40)))),
    "datamatrix": ("DATAMATRIX", (0.4, 0.5), lambda r: "".join(r.choices(string.ascii_letters + string.digits, k=r.randint(6, 24)))),
}
# Turned on the scanner's glass, tilted there, or turned back by the page's own entry and cropped.
TURNS = ("0", "90", "180", "270", "tilt", "entry")
TILT = 3
CROP = 20


def with_check_digit(digits):
    total = sum(int(d) * (3 if i % 2 else 1) for i, d in enumerate(digits))
    return digits + str(-total % 10)


def symbol(kind, text, module):
    """A picture of a barcode, and its size in points with the quiet zone around it."""
    png = subprocess.run(
        ["zint", "--barcode", KINDS[kind][0], "--data", text, "--scale", "5", "--quietzones",
         "--direct", "--filetype", "PNG"], check=True, capture_output=True).stdout
    picture = fitz.Pixmap(png)
    points = module * MM / PIXELS_A_MODULE
    return png, picture.width * points, picture.height * points


def sheet(rng, kind, text):
    """A page that a printer would print: lines of text and a barcode among them."""
    document = fitz.open()
    page = document.new_page(width=A4[0], height=A4[1])
    png, width, height = symbol(kind, text, rng.choice(KINDS[kind][1]))
    left = rng.uniform(60, A4[0] - 60 - width)
    top = rng.uniform(90, 300)
    for y in itertools.chain(range(60, int(top) - 10, 14), range(int(top + height) + 30, 780, 14)):
        page.insert_text((60, y), " ".join("".join(rng.choices(string.ascii_lowercase, k=rng.randint(2, 9)))
                                           for _ in range(11)), fontsize=10)
    page.insert_image(fitz.Rect(left, top, left + width, top + height), stream=png)
    return document, fitz.Rect(left, top, left + width, top + height)


def scan(rng, page, turn, dpi):
    """The page as a grey picture, with what a scanner adds to it."""
    zoom = dpi / 72
    picture = page.get_pixmap(matrix=fitz.Matrix(zoom, zoom), colorspace=fitz.csGRAY)
    image = Image.frombytes("L", (picture.width, picture.height), picture.samples)
    if turn == "tilt":
        # Drawn larger, so that turning it does not blur what a scanner would see sharply.
        picture = page.get_pixmap(matrix=fitz.Matrix(2 * zoom, 2 * zoom), colorspace=fitz.csGRAY)
        large = Image.frombytes("L", (picture.width, picture.height), picture.samples)
        image = large.rotate(TILT, Image.BICUBIC, fillcolor=255).resize(image.size, Image.BOX)
    else:
        image = image.rotate(90 if turn == "entry" else int(turn), expand=True)
    noise = Image.effect_noise(image.size, rng.uniform(4, 14))
    image = image.point(lambda value: 18 + value * 220 // 255)
    image = ImageChops.add(image, noise, 1, -128)
    jpeg = io.BytesIO()
    image.save(jpeg, "JPEG", quality=rng.randint(45, 80))
    return jpeg.getvalue(), image.width / zoom, image.height / zoom


def seen_place(box, turn):
    """Left edge and middle of what was at `box` before the sheet was turned."""
    if turn == "entry":
        turned = [(x - CROP, y - CROP) for x, y in (box.tl, box.br)]
    elif turn == "tilt":
        angle = math.radians(TILT)
        turned = [((x - A4[0] / 2) * math.cos(angle) + (y - A4[1] / 2) * math.sin(angle) + A4[0] / 2,
                   (y - A4[1] / 2) * math.cos(angle) - (x - A4[0] / 2) * math.sin(angle) + A4[1] / 2)
                  for x, y in (box.tl, box.tr, box.bl, box.br)]
    else:
        turned = [{"0": (x, y), "90": (y, A4[0] - x), "180": (A4[0] - x, A4[1] - y),
                   "270": (A4[1] - y, x)}[turn] for x, y in (box.tl, box.br)]
    ys = [y for _, y in turned]
    return round(min(x for x, _ in turned)), round((min(ys) + max(ys)) / 2)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("target")
    parser.add_argument("truth")
    parser.add_argument("--sheets", type=int, default=270)
    parser.add_argument("--step", type=int, default=1)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--dpi", type=int, nargs="+", default=[200, 300, 150])
    parser.add_argument("--large-second", action="store_true")
    arguments = parser.parse_args()
    rng = random.Random(arguments.seed)
    scans = fitz.open()
    combinations = itertools.islice(itertools.cycle(itertools.product(arguments.dpi, TURNS, KINDS)),
                                    0, None, arguments.step)
    with open(arguments.truth, "w") as truth:
        for number, (dpi, turn, kind) in enumerate(itertools.islice(combinations, arguments.sheets), 1):
            text = KINDS[kind][2](rng)
            printed, box = sheet(rng, kind, text)
            jpeg, width, height = scan(rng, printed[0], turn, dpi)
            seen = scans.new_page(width=width, height=height)
            seen.insert_image(seen.rect, stream=jpeg)
            if turn == "entry":
                seen.set_cropbox(seen.rect + (CROP, CROP, -CROP, -CROP))
                seen.set_rotation(90)
            h, v = seen_place(box, turn)
            truth.write(f"{number} {kind} {turn} {dpi} {text} {h} {v}\n")
    if arguments.large_second:
        large = scans.new_page(1, width=1000 * MM, height=1000 * MM)
        large.draw_rect(large.rect, fill=(0, 0, 0))
    scans.save(arguments.target)


if __name__ == "__main__":
    main()
