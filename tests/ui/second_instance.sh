#!/bin/bash
# Starts the program twice on a screen of its own and answers the question of the second one: its
# file reaches the first one, and it ends. Nothing of the user's own is touched.
#   tests/ui/second_instance.sh PROGRAM TEXT_TABLE DATA_FOLDER
set -uo pipefail

program=$1 texts=$2 data=$3
for tool in Xvfb xdotool; do
    command -v "$tool" >/dev/null || { echo "needs $tool" >&2; exit 1; }
done

folder=$(mktemp -d)
pids=()
finish() {
    local pid
    for pid in "${pids[@]}"; do
        kill "$pid" 2>/dev/null
        wait "$pid" 2>/dev/null
    done
    rm -rf "$folder"
}
trap finish EXIT

fail() {
    echo "FAILED: $*" >&2
    cat "$folder"/*.log >&2
    exit 1
}

# Waits up to 20 s until a command succeeds.
wait_until() {
    local n
    for ((n = 0; n < 200; ++n)); do
        "$@" && return 0
        sleep 0.1
    done
    return 1
}

mkdir -m 700 "$folder/run"
cp "$texts" "$data"/{*.ins,*.INS,Garmin.ini,glyphs.csv} "$folder"
printf '[Main]\r\nLang3=0\r\n' >"$folder/velkoro.ini"
export HOME=$folder XDG_RUNTIME_DIR=$folder/run VELKORO_HOME=$folder QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY
# The toolkit and the display leave memory to the end of the process.
export ASAN_OPTIONS=detect_leaks=0

Xvfb -displayfd 1 -screen 0 1280x800x24 -nolisten tcp >"$folder/display" 2>"$folder/xvfb.log" &
pids+=($!)
wait_until test -s "$folder/display" || fail "no display"
DISPLAY=:$(cat "$folder/display")
export DISPLAY

start() { # name, arguments; sets `started`
    "$program" "${@:2}" >"$folder/$1.log" 2>&1 &
    started=$!
    pids+=("$started")
}
window_of() { xdotool search --all --onlyvisible --pid "$1" --name "$2" 2>/dev/null | tail -n 1; }
has_window() { [ -n "$(window_of "$1" "$2")" ]; }
press() { # process, title, key
    local w
    w=$(window_of "$1" "$2")
    xdotool windowfocus --sync "$w" key "$3"
}
ended() { ! kill -0 "$1" 2>/dev/null; }

start first
first=$started
wait_until has_window "$first" '^VELkoro$' || fail "the first one shows no window"

start second "$data/Waypoints/sample.wp"
wait_until has_window "$started" . || fail "the second one asks nothing"
has_window "$first" 'sample.wp' && fail "the file came before the answer"
press "$started" . Return # No, the preset answer
wait_until ended "$started" || fail "the second one has not ended"
wait "$started" || fail "the second one ended with $?"
wait_until has_window "$first" '^sample.wp - VELkoro$' || fail "the file has not reached the first one"

start third
wait_until has_window "$started" . || fail "the third one asks nothing"
press "$started" . Return
wait_until ended "$started" || fail "the third one has not ended"
has_window "$first" '^sample.wp - VELkoro$' || fail "an empty command line changed the first one"

start fourth
wait_until has_window "$started" . || fail "the fourth one asks nothing"
press "$started" . alt+y
wait_until has_window "$started" '^VELkoro2$' || fail "Yes opens no second program"
ended "$first" && fail "the first one is gone"
press "$started" '^VELkoro2$' ctrl+q
wait_until ended "$started" || fail "the second program does not end"
press "$first" 'VELkoro$' ctrl+q
wait_until ended "$first" || fail "the first program does not end"
echo "Two programs and their link: as told."
