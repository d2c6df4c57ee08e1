#!/usr/bin/env python3
"""Writes the track files of this folder, field by field from the tables of docs/native_files.md.

Deliberately shares nothing with the program's own writer. With --check it compares instead of
writing.
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


def deg(d):
    return round(d * 2**31 / 180)


def head(version, title="Golden track"):
    return b"VELkoro track" + i16(version) + lstr(title)


def point(version, lat, lon, time, flags, comment="", alt=-32768):
    """Layout of the version; flags as stored: 2 x class + segment start."""
    b = b"T" if version >= 203 else b""
    b += i32(deg(lat)) + i32(deg(lon)) + i32(time) + bytes([flags])
    if version >= 200:
        b += lstr(comment)
    if version >= 203:
        b += i16(alt)
    return b


def run(version, n, start=0):
    """A walk uphill with a break after every fourth point."""
    b = b""
    for k in range(start, start + n):
        b += point(version, 47.42 + k * 0.0013, 10.98 - k * 0.0017, 1000000000 + 60 * k,
                   (1 if k % 4 == 0 else 0) + 2 * (k % 3), f"point {k} ä" if k % 2 else "", 700 + 11 * k)
    return b


A203 = b"A" + i16(203)
FILES = {}
for v in (100, 199, 200, 202, 203):
    FILES[f"v{v}.t"] = head(v) + run(v, 9)

FILES["empty.t"] = head(203)
FILES["empty_title.t"] = head(203, "") + run(203, 1)
FILES["class_zero_first.t"] = head(203) + point(203, 1, 2, 5, 0) + point(203, 1, 2.1, 6, 0)
FILES["time_unknown.t"] = head(203) + point(203, 1, 2, 2147483647, 1) + point(203, 1, 2, 0, 0)
FILES["time_unknown_old.t"] = head(150) + point(150, 1, 2, 2147483647, 3)
FILES["poles.t"] = head(203) + point(203, 90, 180 - 1e-7, 5, 15) + point(203, -90, -180, 6, 14)

# Sections.
FILES["append.t"] = head(203) + run(203, 3) + A203 + run(203, 3, 5)
FILES["append_202_then_203.t"] = head(202) + run(202, 5) + A203 + run(203, 5, 5)
FILES["append_199_then_203.t"] = head(199) + run(199, 5) + A203 + run(203, 5, 5)
FILES["append_only.t"] = head(200) + A203 + run(203, 2)
FILES["append_without_points.t"] = head(202) + run(202, 2) + A203
FILES["append_empty_then_points.t"] = head(202) + run(202, 2) + A203 + A203 + run(203, 2)
FILES["append_newer.t"] = head(203) + run(203, 2) + b"A" + i16(204) + run(203, 2)
FILES["append_untagged.t"] = head(203) + run(203, 2) + b"A" + i16(202) + run(202, 3)

# Points with comments in a file whose head promises points without.
FILES["comments_in_199.t"] = head(199) + run(199, 4) + run(200, 6, 4)
FILES["comments_in_100.t"] = head(100) + run(100, 1) + run(200, 8, 1)
FILES["comments_then_section.t"] = head(199) + run(199, 3) + run(200, 4, 3) + A203 + run(203, 2, 7)
FILES["comments_cut.t"] = (head(199) + run(199, 4) + run(200, 6, 4))[:-4]
FILES["comments_from_start.t"] = head(199) + run(200, 6)
# The start of the first such point's comment looks like an old point, what follows like none: the
# limit comes down twice.
GOOD = point(199, 3, 4, 77, 0)
FILES["comments_limit_twice.t"] = (head(199) + run(199, 3) + point(199, 47, 11, 5, 0)
                                   + i16(24) + GOOD[2:] + b"\xff" * 13 + run(200, 3, 4))

# Refused and damaged files.
BAD_LAT = i32(2**30 + 1) + i32(0) + i32(1) + b"\0"
FILES["bad_magic.t"] = b"VELkoro trakk" + FILES["v203.t"][13:]
FILES["newer_204.t"] = b"VELkoro track" + i16(204) + FILES["v203.t"][15:]
FILES["unknown_tag.t"] = head(203) + run(203, 2) + b"X" + run(203, 2)
FILES["bad_flags.t"] = head(203) + run(203, 2) + point(203, 1, 2, 5, 16) + run(203, 2)
FILES["bad_time.t"] = head(203) + run(203, 2) + point(203, 1, 2, -1, 1) + run(203, 2)
FILES["bad_lat.t"] = head(203) + run(203, 2) + b"T" + BAD_LAT + lstr("") + i16(0) + run(203, 2)
FILES["lowest_lat.t"] = head(203) + run(203, 1) + b"T" + i32(-2**31) + i32(0) + i32(1) + b"\0" + lstr("") + i16(0)
FILES["bad_length.t"] = head(203) + run(203, 2) + point(203, 1, 2, 5, 1)[:14] + i16(-1) + b"junk" * 9
FILES["length_past_end.t"] = head(203) + run(203, 2) + point(203, 1, 2, 5, 1)[:14] + i16(32767) + b"junk"
FILES["bad_point_202.t"] = head(202) + run(202, 3) + point(202, 1, 2, -5, 1) + run(202, 3)
FILES["bad_point_199.t"] = head(199) + run(199, 6) + b"\xff" * 13 + run(199, 3)
FILES["bad_second_point_199.t"] = head(199) + run(199, 1) + b"\xff" * 13
FILES["cut_in_point.t"] = FILES["v203.t"][:-1]
FILES["cut_in_old_point.t"] = FILES["v199.t"][:-1]
FILES["cut_in_section_mark.t"] = FILES["v203.t"] + b"A\xcb"
FILES["head_cut.t"] = FILES["v203.t"][:20]
FILES["version_cut.t"] = b"VELkoro track\xcb"
FILES["negative_title.t"] = b"VELkoro track" + i16(203) + i16(-5) + b"junk" * 9


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
