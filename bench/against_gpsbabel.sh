#!/bin/bash
# Times velkoro-cli against gpsbabel on 32,000 waypoints, alternately in one run: OziExplorer to
# OziExplorer, OziExplorer to a text file, and reading a library over itself against gpsbabel's
# filter for duplicates. Exits 1 when a median is above its share of gpsbabel's.
#   bench/against_gpsbabel.sh [folder of the release build, default build/release]
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath "${1:-build/release}")
runs=5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir "$work/home"
cp "$build"/velkoro.res data/*.ins data/*.INS data/Garmin.ini data/glyphs.csv "$work/home/"
printf '[Main]\r\nLang3=0\r\n' >"$work/home/velkoro.ini"
"$build/velkoro-cli" --home "$work/home" text 1 >/dev/null 2>&1 || true # names the tables anew

python3 - "$work/library.wpt" <<'PYTHON'
import random
import sys

random.seed(1)
with open(sys.argv[1], "w", encoding="cp1252", newline="") as out:
    out.write("OziExplorer Waypoint File Version 1.1\r\nWGS 84\r\nReserved 2\r\nReserved 3\r\n")
    for i in range(32000):
        out.write(f"{i + 1},P{i:05},{random.uniform(-80, 80):.6f},{random.uniform(-179, 179):.6f},"
                  f"{37000 + i / 10:.7f},0,1,3,0,65535,a place of number {i},0,0,0,{i % 9000}\r\n")
PYTHON

convert=("$build/velkoro-cli" --home "$work/home" convert)
library=$work/library.wpt

now_us() { echo "${EPOCHREALTIME/./}"; }
median() { printf '%s\n' "$@" | sort -n | sed -n "$(($# / 2 + 1))p"; }

failed=0
# name, greatest share in percent, our command, "--", gpsbabel's command
compare() {
    local name=$1 limit=$2 ours=() theirs=() mine=() others=() start
    shift 2
    while [ "$1" != -- ]; do ours+=("$1") && shift; done
    shift
    theirs=("$@")
    for ((i = 0; i <= runs; ++i)); do # the first run only fills the caches
        start=$(now_us)
        "${ours[@]}" >/dev/null 2>&1
        [ "$i" -gt 0 ] && mine+=($(($(now_us) - start)))
        start=$(now_us)
        "${theirs[@]}" >/dev/null 2>&1
        [ "$i" -gt 0 ] && others+=($(($(now_us) - start)))
    done
    local a b
    a=$(median "${mine[@]}") b=$(median "${others[@]}")
    echo "$name: $((a / 1000)) ms against $((b / 1000)) ms, $((a * 100 / b)) % (aim $limit %)"
    [ $((a * 100)) -le $((b * limit)) ] || failed=1
}

compare "OziExplorer to OziExplorer" 10 "${convert[@]}" "$library" "$work/a.wpt" -- \
    gpsbabel -i ozi -f "$library" -o ozi -F "$work/b.wpt"
compare "OziExplorer to text" 10 "${convert[@]}" --separator tab "$library" "$work/a.txt" -- \
    gpsbabel -i ozi -f "$library" -o garmin_txt -F "$work/b.txt"
compare "a library over itself" 50 "${convert[@]}" "$library" "$library" "$work/a.wpt" -- \
    gpsbabel -i ozi -f "$library" -f "$library" -x duplicate,location,shortname -o ozi \
    -F "$work/b.wpt"
exit "$failed"
