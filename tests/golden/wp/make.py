#!/usr/bin/env python3
"""Writes the waypoint files of this folder, field by field from the tables of docs/native_files.md.

Deliberately shares nothing with the program's own writer. Run it in any folder; with --check it
compares instead of writing.
"""
import pathlib
import struct
import sys

HERE = pathlib.Path(__file__).parent


def i16(v):
    return struct.pack("<h", v)


def i32(v):
    return struct.pack("<i", v)


def lstr(text):
    b = text.encode("cp1252")
    return i16(len(b)) + b


def fstr(text, n):
    b = text.encode("cp1252")
    assert len(b) <= n, text
    return b + b" " * (n - len(b))


def pos(lat, lon):
    return i32(lat) + i32(lon)


def deg(d):
    return round(d * 2**31 / 180)


ZUG = (deg(47.4211), deg(10.9853))
FELD = (deg(47.8739), deg(8.0044))
CAPE = (deg(-34.3568), deg(18.4740))
EQUATOR = (0, 0)


def head(version, *, posform=2, datum=0, zone="+1 L3 L10", sort=1, ref=("ZUG", ZUG), scale=25000,
         title="Golden list", captions=("hddd°mm.mmm'", "WGS 84")):
    b = fstr("VELkoro waypoints", 17) + i16(version)
    if version >= 203:
        b += lstr(captions[1]) + lstr(captions[0])
    else:
        b += i16(posform) + i16(datum)
    if version >= 111:
        b += lstr(zone) + i16(sort)
    b += (lstr(ref[0]) if version >= 204 else fstr(ref[0], 6)) + pos(*ref[1])
    return b + i32(scale) + lstr(title)


def wp(version, name, comment, where, date=800000000, prox=0, symbol=0, mode=0, alt=-32768):
    b = b"W" + (lstr(name) if version >= 204 else fstr(name, 6))
    b += lstr(comment) if version >= 111 else fstr(comment, 16)
    b += pos(*where) + i32(date) + i16(prox)
    if version >= 111:
        b += bytes([symbol, mode])
    if version >= 203:
        b += i16(alt)
    return b


def route(version, name, wps, colour=0, speed="", korr="", anw=""):
    b = b"R" + fstr(name, 16)
    if version >= 200:
        return b + lstr(wps) + i16(colour) + lstr(speed) + lstr(korr) + lstr(anw)
    if version >= 103:
        return b + lstr(wps + "#" + speed + "%" + korr) + i16(colour)
    return b + lstr(wps)


def section(tag, version):
    return tag + i16(version)


def body(v):
    """The same four waypoints and two routes in any layout."""
    return (wp(v, "ZUG", "Summit, 2962 m", ZUG, 700000001, 15, 18, 1, 2962)
            + wp(v, "FELD", "Hütte Ä ß", FELD, 700000002, -20, 255, 2, 1493)
            + wp(v, "CAPE", "@AB1 lighthouse", CAPE, 700000003, 999, 0, 0, 0)
            + wp(v, "NULL", "", EQUATOR, 0, 0, 0, 0, -32768)
            + route(v, "North to south", "ZUG$FELD$@AB1CAPE$", 3, "$12.5$800$", "$0$-1.5$", "go$$stop$")
            + route(v, "", "NULL$ZUG$", 0))


FILES = {}
for v in (102, 103, 110, 111, 113, 114, 199, 200, 202, 203, 204):
    FILES[f"v{v}.wp"] = head(v) + body(v)

FILES["empty.wp"] = head(204)
FILES["empty_title.wp"] = head(204, title="")
FILES["no_reference.wp"] = head(203, ref=("??????", EQUATOR)) + wp(203, "A", "", ZUG)

# The datum index of old files passes up to three corrections.
for v, index in ((113, 3), (113, 4), (113, 8), (113, 9), (150, 9), (113, 7), (200, 9)):
    FILES[f"datum_{v}_{index}.wp"] = head(v, datum=index)

# The old form of a route with a separator missing.
OLD = head(150) + wp(150, "A", "", ZUG) + wp(150, "B", "", FELD)
FILES["route_no_percent.wp"] = OLD + b"R" + fstr("r", 16) + lstr("A$B$#5$") + i16(2)
FILES["route_no_hash.wp"] = OLD + b"R" + fstr("r", 16) + lstr("A$B$%7$") + i16(2)
FILES["route_bare.wp"] = OLD + b"R" + fstr("r", 16) + lstr("A$B$") + i16(2)

# Sections: the layouts change at the tag.
FILES["append_204_to_203.wp"] = (head(203) + wp(203, "OLD", "old layout", ZUG) + section(b"A", 204)
                                 + wp(204, "LONGNAME12", "new layout", FELD, alt=7)
                                 + route(204, "both", "OLD$LONGNAME12$", 1))
FILES["append_twice.wp"] = (head(110) + wp(110, "ONE", "1", ZUG) + section(b"A", 150)
                            + wp(150, "TWO", "2", FELD) + section(b"A", 204)
                            + wp(204, "THREE", "3", CAPE))
FILES["reconcile.wp"] = (head(204) + wp(204, "A", "old", ZUG, alt=1) + wp(204, "B", "stays", FELD)
                         + section(b"U", 204) + wp(204, "A", "newer", ZUG, 900000000, alt=2)
                         + wp(204, "C", "no match, dropped", CAPE))
FILES["section_empty.wp"] = head(204) + wp(204, "A", "", ZUG) + section(b"A", 204)
FILES["section_newer.wp"] = head(204) + wp(204, "A", "", ZUG) + section(b"A", 205)

# Refused and damaged files.
FILES["bad_magic.wp"] = b"VELkoro waypointz" + FILES["v204.wp"][17:]
FILES["newer_205.wp"] = fstr("VELkoro waypoints", 17) + i16(205) + FILES["v204.wp"][19:]
FILES["unknown_tag.wp"] = head(204) + wp(204, "A", "", ZUG) + b"X" + wp(204, "B", "", FELD)
FILES["cut_in_record.wp"] = head(204) + wp(204, "A", "", ZUG) + wp(204, "B", "", FELD)[:-1]
FILES["negative_length.wp"] = head(204) + wp(204, "A", "", ZUG) + b"W" + i16(-1) + b"junk" * 20
FILES["length_past_end.wp"] = head(204) + wp(204, "A", "", ZUG) + b"W" + i16(32767) + b"junk"
FILES["negative_title.wp"] = head(204)[:-13] + i16(-32768)
FILES["head_cut.wp"] = head(204)[:40]
FILES["version_cut.wp"] = b"VELkoro waypoints\xcc"
FILES["doubles_in_one_file.wp"] = (head(204) + wp(204, "A", "first", ZUG) + wp(204, "B", "same place", ZUG))
FILES["missing_point.wp"] = head(204) + wp(204, "A", "", ZUG) + route(204, "r", "A$GONE$A$", 1, "1$2$3$")
FILES["prox_and_symbols.wp"] = head(204) + wp(204, "A", "", ZUG, prox=-32768, symbol=200, mode=255, alt=32767)


def main():
    check = "--check" in sys.argv
    wrong = 0
    for name, data in FILES.items():
        path = HERE / name
        if not check:
            path.write_bytes(data)
        elif not path.exists() or path.read_bytes() != data:
            print("differs:", name)
            wrong = 1
    return wrong


if __name__ == "__main__":
    sys.exit(main())
