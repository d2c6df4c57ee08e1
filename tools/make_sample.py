#!/usr/bin/env python3
"""Makes the sample library: data/Waypoints/sample.wp and data/Track/sample.t.

    tools/make_sample.py            writes the files
    tools/make_sample.py --check    writes nothing, exits 1 when a file differs from its source

The waypoints stand on real geography, all else is invented. The files are written byte by byte as
the formats say, not by the program's own writer, so that they also test the reader. The random
seed is fixed and only random() is used, whose numbers are the same in every version of Python.
"""
import csv
import datetime
import math
import pathlib
import random
import struct
import sys

DATA = pathlib.Path(__file__).resolve().parent.parent / "data"
EPOCH = datetime.datetime(1989, 12, 31)
TITLE = "Schwarzwald, Hochtouren 2025"
UNKNOWN_ALT = -32768
LAT_M = 111195.0  # metres of a degree of latitude


def rows(name):
    with open(DATA / "source" / name, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file, delimiter=";"))


def i16(value):
    return struct.pack("<h", value)


def i32(value):
    return struct.pack("<i", value)


def lstr(text):
    data = text.encode("cp1252")
    return i16(len(data)) + data


def fstr(text, size):
    data = text.encode("cp1252")
    assert len(data) <= size, text
    return data.ljust(size)


def pos(lat, lon):
    return i32(round(lat * 2**31 / 180)) + i32(round(lon * 2**31 / 180))


def seconds(when):
    return int((when - EPOCH).total_seconds())


def waypoint_file():
    waypoints = rows("sample_waypoints.csv")
    names = [w["name"] for w in waypoints]
    assert len(set(names)) == len(names) and all(0 < len(n) <= 6 for n in names)
    ref = waypoints[0]
    out = [fstr("VELkoro waypoints", 17), i16(204), lstr("WGS 84"), lstr("hddd°mm.mmm'"),
           lstr("+1 L3 L10"), i16(0), lstr(ref["name"]),
           pos(float(ref["lat"]), float(ref["lon"])), i32(50000), lstr(TITLE)]
    for w in waypoints:
        out += [b"W", lstr(w["name"]), lstr(w["comment"]),
                pos(float(w["lat"]), float(w["lon"])),
                i32(seconds(datetime.datetime.fromisoformat(w["date"]))), i16(int(w["prox"])),
                i16(int(w["symbol"]) + 256 * int(w["mode"])),
                i16(int(w["alt"]) if w["alt"] else UNKNOWN_ALT)]
    routes = {}
    for r in rows("sample_routes.csv"):
        assert r["waypoint"] in names, r
        routes.setdefault(r["route"], []).append(r)
    for name, points in routes.items():
        out += [b"R", fstr(name, 16), lstr("".join(p["waypoint"] + "$" for p in points)),
                i16(int(points[0]["colour"]))]
        for column in ("speed", "correction", "instruction"):
            out.append(lstr("".join(p[column] + "$" for p in points)))
    return b"".join(out)


def metres(a, b):
    """Distance of two points (lat, lon, ...) of a hike, on the flat."""
    return math.hypot((b[0] - a[0]) * LAT_M,
                      (b[1] - a[1]) * LAT_M * math.cos(math.radians(a[0])))


def smooth_noise(count, width, rng):
    """A smooth random line about 0 with a spread of about 1: a moving mean taken three times."""
    line = [rng.random() - 0.5 for _ in range(count + 6 * width)]
    for _ in range(3):
        total = sum(line[:2 * width])
        mean = []
        for i in range(len(line) - 2 * width):
            mean.append(total / (2 * width))
            total += line[i + 2 * width] - line[i]
        line = mean
    spread = math.sqrt(sum(v * v for v in line) / len(line))
    return [v / spread for v in line[:count]]


def path_between(before, a, b, after, rng):
    """Points about 4 m apart from a to b, as a footpath would go: a spline through the points
    with bends of its own that fade out at both ends. Points are (lat, lon, alt)."""
    length = metres(a, b)
    count = max(8, round(length / 4))
    bends = smooth_noise(count, max(3, count // 12), rng)
    wiggle = smooth_noise(count, 4, rng)
    ground = smooth_noise(count, max(3, count // 8), rng)
    east = (b[1] - a[1]) * math.cos(math.radians(a[0]))
    north = b[0] - a[0]
    norm = math.hypot(east, north)
    across = (east / norm / LAT_M, -north / norm / LAT_M / math.cos(math.radians(a[0])))
    out = []
    for i in range(count):
        t = i / count
        p = []
        for k in range(2):
            m0 = (b[k] - before[k]) / 2 * min(1.0, length / max(1.0, metres(before, a)))
            m1 = (after[k] - a[k]) / 2 * min(1.0, length / max(1.0, metres(b, after)))
            p.append((2 * t**3 - 3 * t**2 + 1) * a[k] + (t**3 - 2 * t**2 + t) * m0 +
                     (-2 * t**3 + 3 * t**2) * b[k] + (t**3 - t**2) * m1)
        fade = math.sin(math.pi * t)
        aside = fade * (bends[i] * min(18.0, length / 30) + wiggle[i] * 1.5)
        ease = 0.7 * t + 0.3 * (3 * t**2 - 2 * t**3)
        alt = a[2] + (b[2] - a[2]) * ease + fade * ground[i] * min(5.0, length / 150)
        out.append((p[0] + across[0] * aside, p[1] + across[1] * aside, alt))
    return out


def walking_speed(slope):
    """Speed in km/h on a slope, by Tobler's hiking function, held between 2 and 6."""
    return min(6.0, max(2.0, 5.4 * math.exp(-3.5 * abs(slope + 0.05))))


def track_file():
    rng = random.Random(20250614)
    days = []
    for r in rows("sample_track.csv"):
        if r["day"]:
            days.append([])
        days[-1].append(r)
    out = [fstr("VELkoro track", 13), i16(203), lstr(TITLE)]

    def add(point, when, flags, comment=""):
        out.extend([b"T", pos(point[0], point[1]), i32(seconds(when)), bytes([flags]),
                    lstr(comment), i16(round(point[2]))])

    for day in days:
        when = datetime.datetime.fromisoformat(day[0]["day"] + " " + day[0]["start_utc"])
        via = [(float(r["lat"]), float(r["lon"]), float(r["alt"])) for r in day]
        flags = 2 * int(day[0]["colour"]) + 1  # class above bit 0; bit 0: new segment
        add(via[0], when, flags, day[0]["comment"])
        last, walked_s, step_m = via[0], 0.0, 20.0
        for k in range(len(day) - 1):
            before = via[max(0, k - 1)]
            after = via[min(len(via) - 1, k + 2)]
            path = path_between(before, via[k], via[k + 1], after, rng) + [via[k + 1]]
            here, here_m = path[0], 0.0
            for i, p in enumerate(path[1:]):
                d = metres(here, p)
                mood = 1 + 0.12 * math.sin(i / 90 + k)
                speed = walking_speed((p[2] - here[2]) / max(d, 1.0)) * mood
                speed = min(5.2, max(2.3, speed))
                walked_s += d / speed * 3.6
                here_m += metres(here, p)
                here = p
                end = i == len(path) - 2
                if here_m >= step_m or end:
                    when += datetime.timedelta(seconds=max(2, math.ceil(walked_s)))
                    walked_s = 0.0
                    # Points at the corners carry the comment of the place.
                    add(p, when, 0, day[k + 1]["comment"] if end else "")
                    here_m, step_m = 0.0, 9.0 + 11.0 * rng.random()
                    last = p
            pause_s = 60 * int(day[k + 1]["pause_min"])
            if not pause_s:
                continue
            if day[k + 1]["cut"]:  # the receiver is off during a long rest: a new segment
                when += datetime.timedelta(seconds=pause_s)
                add((last[0] + 3e-5, last[1] - 2e-5, last[2] + 1), when, 1)
                continue
            while pause_s > 0:  # a short rest: the fix wanders by a few metres
                gap = 45 + int(60 * rng.random())
                if pause_s - gap < 30:
                    gap = pause_s
                pause_s -= gap
                when += datetime.timedelta(seconds=gap)
                add((last[0] + (rng.random() - 0.5) * 4e-5, last[1] + (rng.random() - 0.5) * 6e-5,
                     last[2] + rng.random() - 0.5), when, 0)
    return b"".join(out)


def main():
    check = "--check" in sys.argv[1:]
    stale = 0
    for name, content in (("Waypoints/sample.wp", waypoint_file()),
                          ("Track/sample.t", track_file())):
        path = DATA / name
        if path.exists() and path.read_bytes() == content:
            continue
        stale += 1
        print("differs:" if check else "written:", name)
        if not check:
            path.parent.mkdir(exist_ok=True)
            path.write_bytes(content)
    return 1 if stale and check else 0


if __name__ == "__main__":
    sys.exit(main())
