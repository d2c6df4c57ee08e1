#!/usr/bin/env python3
"""Makes the table files of data/ from the CSV sources in data/source/.

    tools/make_tables.py            writes the files
    tools/make_tables.py --check    writes nothing, exits 1 when a file differs from its source

The tables are Windows-1252 with CRLF line ends, as people edit them on any system; glyphs.csv is
read by the program only and is UTF-8.
"""
import collections
import csv
import pathlib
import sys

DATA = pathlib.Path(__file__).resolve().parent.parent / "data"


def rows(name):
    with open(DATA / "source" / name, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def table(lines):
    """Lines as the bytes of a table file."""
    return "".join(line + "\r\n" for line in lines).encode("cp1252")


def symbols(level, name_column):
    """Lines "number:HEX name", number in two digits as the program appends them."""
    listed = [r for r in rows("garmin_symbols.csv") if r["level"] == level and r["table_number"]]
    listed.sort(key=lambda r: int(r["table_number"]))
    return table(
        f"{int(r['table_number']):02d}:{r['receiver_hex']} {r[name_column]}" for r in listed)


# A buoy has seven colours in the table; orange stands out from water and from paper.
OWN_COLOUR = {"buoy": "orange"}


def glyphs():
    """The glyph of each symbol. It bears the name of its drawing; in another colour than the one
    that most symbols of the drawing have, the first of them when several are equally frequent, the
    colour's name follows: "flag", "flag_blue"."""
    lines = ["level;number;glyph;family;colour"]
    listed = [r for r in rows("garmin_symbols.csv") if r["table_number"]]
    listed.sort(key=lambda r: (int(r["level"]), int(r["table_number"])))
    counted = collections.defaultdict(collections.Counter)
    for r in listed:
        counted[r["glyph"]][r["colour"]] += 1
    for r in listed:
        name, colour = r["glyph"], r["colour"]
        if colour != (OWN_COLOUR.get(name) or counted[name].most_common(1)[0][0]):
            name += "_" + colour.replace("/", "_")
        lines.append(";".join((r["level"], r["table_number"], name, r["glyph_family"], colour)))
    return "".join(line + "\n" for line in lines).encode("utf-8")


def datums():
    """Line 1: the datum of each fixed position format; "#" lines: user grids; then the datums.

    WGS 84 stays the last row: the last row is the one first selected, and the only row with all
    values zero is taken for WGS 84.
    """
    grids = rows("grid_datums.csv")
    fixed = sorted((g for g in grids if g["kind"] == "fixed"), key=lambda g: int(g["coord_fmt"]))
    lines = [",".join(g["datum_row"] for g in fixed)]
    for g in grids:
        if g["kind"] == "user":
            lines.append("#" + ",".join((g["list_name"], g["datum_row"], g["central_meridian"],
                                         g["origin_latitude"], g["scale"], g["false_easting"],
                                         g["false_northing"])))
    listed = rows("datums.csv")
    listed.sort(key=lambda d: d["name"] == "WGS 84")  # stable: the rest keeps its order
    for d in listed:
        lines.append(",".join((d["name"], d["da"], d["df_field"], d["dx"], d["dy"], d["dz"])))
    return table(lines)


def products():
    """One entry a line; no blank line, as the first one ends the table."""
    return table(p["ini_line"] for p in rows("garmin_products.csv"))


def main():
    files = {
        "SYMBOL_2.INS": symbols("2", "name_en"),
        "SYMBOL_3.INS": symbols("3", "name_en"),
        "de/SYMBOL_2.INS": symbols("2", "name_de"),
        "de/SYMBOL_3.INS": symbols("3", "name_de"),
        "glyphs.csv": glyphs(),
        "Datum.ins": datums(),
        "Garmin.ini": products(),
    }
    stale = []
    for name, content in files.items():
        path = DATA / name
        if path.exists() and path.read_bytes() == content:
            continue
        stale.append(name)
        if "--check" not in sys.argv[1:]:
            path.parent.mkdir(exist_ok=True)
            path.write_bytes(content)
    for name in stale:
        print("differs:" if "--check" in sys.argv[1:] else "written:", name)
    return 1 if stale and "--check" in sys.argv[1:] else 0


if __name__ == "__main__":
    sys.exit(main())
