#!/usr/bin/env python3
"""Measures what the grids' own formulas add to a position, against PROJ (cs2cs) with the same datum row.

    tools/grid_accuracy.py build/release/velkoro-cli build/release

The arguments are the command and a program folder with Datum.ini. Every grid is sampled at random over its area:
forward    the larger of the east and the north difference, less the half metre that whole metres round away
back       distance on the ground of the place of a text in whole metres
both       distance on the ground after a position went into a text and back, the rounding of the text included
Printed are the largest values in metres.
"""
import math
import random
import subprocess
import sys

POINTS = 20000
SEMI = 180 / 2**31
FIRST_USER_GRID = 11
BRITISH = "+proj=tmerc +lat_0=49 +lon_0=-2 +x_0=400000 +y_0=-100000 "
LAMBERT = {1: (48.59852285, 50.39591163, 49.5, 600000, 1200000), 2: (45.898918964419, 47.696014502038, 46.8, 600000, 2200000),
           3: (43.19929127, 44.99609381, 44.1, 600000, 3200000), 4: (41.56038784, 42.76766347, 42.165, 234, 4185861)}
WEST = (-180, 180)
# format, name in the table, box: south, north, west, east
FIXED = [
    (3, "UTM, usual zones", (-79.9, 55.9, *WEST)),
    (3, "UTM, Norway and Svalbard 56-64 N", (56, 63.99, 3.01, 12)),
    (3, "UTM, Svalbard from 72 N", (72, 83.9, 0, 42)),
    (5, "Gauß-Krüger", (47, 55.2, 5.8, 15.1)),
    (6, "Swiss", (45.7, 47.9, 5.8, 10.6)),
    (7, "Lambert", (42.3, 51.2, -5, 8.3)),
    (7, "Lambert, Corsica", (41.3, 43.1, 8.5, 9.7)),
    (8, "British, 4.5 W to 1 E", (50, 60.9, -4.5, 1)),
    (8, "British, west coast to 7.6 W", (50, 60.9, -7.6, -4.5)),
    (9, "Irish", (51.4, 55.5, -10.6, -5.4)),
    (10, "New Zealand Map Grid", (-47.3, -34.3, 166.4, 178.6)),
]
USER = {
    "(A) BMN M28": (46.7, 47.8, 9.5, 11.85), "(A) BMN M31": (46.4, 48.8, 11.8, 14.85), "(A) BMN M34": (46.4, 49, 14.8, 17.2),
    "(I) Gauss-Boaga 1": (38.8, 46.5, 6.6, 12), "(I) Gauss-Boaga 2": (36.6, 47.1, 12, 18.6),
    "(S) RT90 2.5 gon V": (55.2, 69.1, 11, 24.2), "(S) SWEREF99 TM": (55.2, 69.1, 11, 24.2),
    "(FIN) KKJ YKJ": (59.7, 70.1, 20.5, 31.6), "(FIN) ETRS-TM35FIN": (59.7, 70.1, 20.5, 31.6),
    "(N) EUREF89 NTM 10": (58, 63, 10, 11), "(N) NGO 1948 III": (58.8, 62.6, 9.5, 11.9), "(DK) DKTM 1": (54.8, 57.1, 8, 10),
    "(P) Datum 73": (36.9, 42.2, -9.6, -6.2), "(P) Lisboa Militar": (36.9, 42.2, -9.6, -6.2), "(P) PT-TM06": (36.9, 42.2, -9.6, -6.2),
    "(PL) PUWG 1992": (49, 54.9, 14.1, 24.2), "(PL) PUWG 2000/18": (49.3, 54.9, 16.5, 19.5),
    "(NZ) NZTM2000": (-47.3, -34.3, 166.4, 178.6), "(L) Luxembourg": (49.4, 50.2, 5.7, 6.6),
    "(IRL) ITM": (51.4, 55.5, -10.6, -5.4), "(HR) HTRS96/TM": (42.4, 46.6, 13.5, 19.5), "(SLO) D48/GK": (45.4, 46.9, 13.4, 16.6),
    "(GR) GGRS87": (34.8, 41.8, 19.6, 28.3), "(LT) LKS94": (53.9, 56.5, 20.9, 26.9), "(LV) LKS92": (55.6, 58.1, 20.9, 28.3),
    "(IL) New Israel TM": (29.5, 33.4, 34.2, 35.9), "(TW) TWD97 TM2": (21.9, 25.4, 119.9, 122.1),
}


def run(command, lines):
    done = subprocess.run(command, input="\n".join(lines) + "\n", capture_output=True, text=True, check=True)
    return done.stdout.splitlines()


class Tool:
    def __init__(self, cli, folder):
        self.cli = [cli, "--home", folder, "coord"]
        table = open(folder + "/Datum.ini", encoding="cp1252").read().splitlines()
        self.grid_datum = table[0].split(",")
        self.grids, self.rows = [], {}
        for line in table[1:]:
            f = line.lstrip("#").split(",")
            if line.startswith("#"):
                self.grids.append((f[0], [float(v) for v in f[2:]]))
                self.grid_datum.append(f[1])
            elif line:
                df = float(f[2])
                self.rows[f[0]] = (float(f[1]), df / 10000 if abs(df) > 0.0002 else df, *map(float, f[3:]))

    def datum(self, fmt):
        da, df, dx, dy, dz = self.rows[self.grid_datum[fmt]]
        return f"+a={6378137 - da!r} +rf={1 / (0.003352810665 - df)!r} +towgs84={dx},{dy},{dz} "

    def projection(self, fmt, zone):
        if fmt == 3:
            south = zone[2:] in tuple("CDEFGHJKLM")
            return f"+proj=utm +zone={int(zone[:2])} " + ("+south " if south else "")
        if fmt == 5:
            return f"+proj=tmerc +lat_0=0 +lon_0={3 * int(zone)} +k=1 +x_0={int(zone) * 1000000 + 500000} +y_0=0 "
        if fmt == 6:
            return "+proj=somerc +lat_0=46.952405555555555 +lon_0=7.439583333333333 +k_0=1 +x_0=600000 +y_0=200000 "
        if fmt == 7:
            p = LAMBERT[int(zone)]
            return f"+proj=lcc +lat_1={p[0]} +lat_2={p[1]} +lat_0={p[2]} +lon_0=2.3372222 +x_0={p[3]} +y_0={p[4]} "
        if fmt == 8:
            return BRITISH + "+k=0.9996 "
        if fmt == 9:
            return "+proj=tmerc +lat_0=53.5 +lon_0=-8 +k=1.000035 +x_0=200000 +y_0=250000 "
        if fmt == 10:
            return "+proj=nzmg +lat_0=-41 +lon_0=173 +x_0=2510000 +y_0=6023150 "
        lon0, lat0, k, east, north = self.grids[fmt - FIRST_USER_GRID][1]
        return f"+proj=tmerc +lat_0={lat0} +lon_0={lon0} +k={k} +x_0={east} +y_0={north} "

    def square(self, fmt, letters):
        if fmt == 8:
            k, j = "STNOHJ".index(letters[0]), "VWXYZQRSTULMNOPFGHJKABCDE".index(letters[1])
            return k % 2 * 500000 + j % 5 * 100000, k // 2 * 500000 + j // 5 * 100000
        j = "VWXYZQRSTULMNOPFGHJKABCDE".index(letters)
        return j % 5 * 100000, j // 5 * 100000

    def measure(self, fmt, box):
        south, north, west, east = box
        datum_name = self.grid_datum[fmt]
        places = [(random.randint(round(south / SEMI), round(north / SEMI)), random.randint(round(west / SEMI), round(east / SEMI) - 1))
                  for _ in range(POINTS)]
        texts = run(self.cli + ["--from", "semi", "--to", str(fmt), "--to-datum", datum_name], [f"|{lon}|{lat}" for lat, lon in places])
        back = run(self.cli + ["--from", str(fmt), "--from-datum", datum_name, "--to", "semi"], texts)
        by_zone, worst = {}, [0.0, 0.0, 0.0]
        for i, text in enumerate(texts):
            if text == "||":
                continue
            zone, e, n = text.split("|")
            e, n = (float(v) * (1000 if "." in v else 1) for v in (e, n))
            if fmt in (8, 9):
                de, dn = self.square(fmt, zone)
                e, n, zone = e + de, n + dn, ""
            elif fmt == 5:
                zone = str(int(e // 1000000))
            by_zone.setdefault(zone, []).append((i, e, n))
            _, lon, lat = back[i].split("|")
            worst[2] = max(worst[2], apart(places[i], (int(lat), int(lon))))
        wgs = "+proj=longlat +datum=WGS84"
        for zone, rows in by_zone.items():
            grid = self.projection(fmt, zone) + self.datum(fmt)
            there = run(["cs2cs", "-f", "%.4f", *wgs.split(), "+to", *grid.split()],
                        [f"{places[i][1] * SEMI:.10f} {places[i][0] * SEMI:.10f} 0" for i, _, _ in rows])
            for (i, e, n), line in zip(rows, there):
                pe, pn = map(float, line.split()[:2])
                worst[0] = max(worst[0], abs(pe - e) - 0.5, abs(pn - n) - 0.5)
            found = run(["cs2cs", "-f", "%.10f", *grid.split(), "+to", *wgs.split()], [f"{e:.3f} {n:.3f} 0" for _, e, n in rows])
            for (i, _, _), line in zip(rows, found):
                lon, lat = map(float, line.split()[:2])
                _, our_lon, our_lat = back[i].split("|")
                worst[1] = max(worst[1], apart((lat / SEMI, lon / SEMI), (int(our_lat), int(our_lon))))
        return worst, sum(map(len, by_zone.values()))


def apart(a, b):
    lat = math.radians(a[0] * SEMI)
    d_lon = (a[1] - b[1] + 2**31) % 2**32 - 2**31
    return math.hypot((a[0] - b[0]) * SEMI * 111319.5, d_lon * SEMI * 111319.5 * math.cos(lat))


def main():
    tool = Tool(sys.argv[1], sys.argv[2])
    random.seed(1)
    jobs = FIXED + [(FIRST_USER_GRID + i, name, USER[name]) for i, (name, _) in enumerate(tool.grids)]
    print(f"{'grid':36} forward   back   both  points")
    for fmt, name, box in jobs:
        (forward, inverse, both), count = tool.measure(fmt, box)
        print(f"{name:36} {forward:7.2f} {inverse:6.2f} {both:6.2f} {count:7}")


main()
