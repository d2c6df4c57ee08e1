#!/usr/bin/env python3
"""Draws the waypoint glyphs ui/icons/g_<name>.svg, one for each glyph name of data/glyphs.csv, and
names them in ui/resources.qrc.

    tools/make_glyphs.py            writes the files
    tools/make_glyphs.py --check    writes nothing, exits 1 when a file is missing or differs

A glyph is a badge on a 20 x 20 grid with a white rim, and a drawing in white on it: a disc for
nature and marks, a rounded square for buildings and services, as on road signs. Buoys and plain
shapes have no badge but their own form. A name that ends in its colour is the drawing of the name
ahead of it in that colour.

A drawing is a list of parts, separated by ";". The first word says how a part is drawn:
    s, t, k   line of 1.6, 1.2, 2.8, in white
    f, h      area in white; in the badge's colour (a hole in white)
    x, y, c   line of 1.2, 1.6, 3.8, in the badge's colour
    ring, thin_ring, dot, hole    circle "x y radius": line of 1.6, of 1.2, area in white, in the
              badge's colour
    form, form2    the form of a glyph without badge, in its first and second colour
A "~" in a path is a wave of four arcs. A yellow or white badge has black in the place of white,
and what is white has a black rim.
"""
import csv
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

COLOURS = {
    "blue": "#1257a6", "black": "#33393f", "green": "#1d6b3a", "red": "#b3261e",
    "brown": "#7a4a1e", "orange": "#b85c00", "violet": "#6a3a9a", "yellow": "#f2c200",
    "magenta": "#a3126f", "white": "#fff",
}
BADGES = {
    "disc": '<circle cx="10" cy="10" r="8.6"/>',
    "square": '<rect x="1.6" y="1.6" width="16.8" height="16.8" rx="4"/>',
}
WIDTHS = {"t": "1.2", "k": "2.8", "thin_ring": "1.2", "x": "1.2", "c": "3.8"}

WAVE = "c.9-.9 1.8-.9 2.7 0s1.8.9 2.7 0 1.8-.9 2.7 0 1.8.9 2.7 0"

# name: badge, drawing
GLYPHS = {
    "anchor": ("disc",
        "s M10 7.2v7.6M7.8 9.2h4.4M5.5 11.3c.3 2.4 2 3.5 4.5 3.5s4.2-1.1 4.5-3.5; ring 10 6 1.2"),
    "anchor_no": ("disc",
        "s M10 7.2v7.6M7.8 9.2h4.4M5.5 11.3c.3 2.4 2 3.5 4.5 3.5s4.2-1.1 4.5-3.5; ring 10 6 1.2; "
        "c M4.6 4.6l10.8 10.8; s M4.6 4.6l10.8 10.8"),
    "atv": ("square",
        "dot 6.6 12.2 3; dot 13.4 12.2 3; hole 6.6 12.2 1.1; hole 13.4 12.2 1.1; s M5 8.2h3.2l1.6"
        " 1.4h2.6l1.6-1.8h1.6M12.6 9l-.8-3.6h2"),
    "badge": ("square",
        "s M10 4.6l4.8 1.6v4c0 2.6-1.9 4.3-4.8 5.4-2.9-1.1-4.8-2.8-4.8-5.4v-4z; f M10 7l.9 1.9 2 "
        ".3-1.5 1.4.4 2.1-1.8-1-1.8 1 .4-2.1-1.5-1.4 2-.3z"),
    "ball": ("square",
        "ring 10 10 4.9; f M10 7.6l2.4 1.7-.9 2.8h-3l-.9-2.8z; t M10 7.6V5.2M12.4 9.3l2.2-.8M11.5"
        " 12.1l1.4 1.9M8.5 12.1L7.1 14M7.6 9.3l-2.2-.8"),
    "barrier": ("square",
        "f M4 6.8h12v3.8H4z; s M6.4 11v4M13.6 11v4; x M6.2 10.4l2-3.4M9.2 10.4l2-3.4M12.2 "
        "10.4l2-3.4"),
    "bed": ("square",
        "s M4.8 6v9M4.8 12.6h10.4V15M15.2 12.6v-1a2 2 0 0 0-2-2H9.4v3; dot 7.1 10 1.3"),
    "bell": ("disc",
        "f M10 5c2.4 0 3.4 1.8 3.4 4 0 2.2.7 3 1.5 3.8H5.1c.8-.8 1.5-1.6 1.5-3.8 0-2.2 1-4 "
        "3.4-4z; dot 10 14.3 1.3; dot 10 5 1"),
    "bicycle": ("square",
        "t M6.3 12.2L8.6 8.2h4.2l1 4M9.8 12.2L8 6.8M12.8 8.2l-3 4H6.3M12.4 6h1.8M7 6.6h2; "
        "thin_ring 6.3 12.2 2.3; thin_ring 13.7 12.2 2.3"),
    "bird": ("disc",
        "f M7.4 4.8a2.3 2.3 0 0 1 2.3 2.3c0 1 .3 1.6 1.1 1.8 1.8.4 3 0 4.6-1.2.2 3.4-1.6 6.5-5.2 "
        "6.5-2.8 0-4.6-1.7-4.6-4 0-.9.3-1.6.7-2.2l-2.5-.4 1.5-.9a2.3 2.3 0 0 1 2.1-1.9z; hole 7.2"
        " 7 .7"),
    "block": ("", "form M10 1.8l7 3.6v9.2l-7 3.6-7-3.6V5.4z; s M3.6 5.8L10 9l6.4-3.2M10 9v8"),
    "boat": ("square",
        "s M4.8 12.6h10.4l-1.6 2.4H6.4z; f M9.2 4.4v6.8H5.4zM10.6 4.4l4.2 6.8h-4.2z"),
    "book": ("square",
        "s M10 6.8c-1.6-1.2-3.4-1.4-5.2-1v7.8c1.8-.4 3.6-.2 5.2 1 1.6-1.2 3.4-1.4 "
        "5.2-1V5.8c-1.8-.4-3.6-.2-5.2 1zM10 6.8v7.8"),
    "bowling": ("square",
        "f M7.4 4.4c1 0 1.5.8 1.4 1.8-.1 1.2 1 2.6 1 4.7 0 1.7-.6 3.1-1 4.2H6c-.4-1.1-1-2.5-1-4.2"
        " 0-2.1 1.1-3.5 1-4.7-.1-1 .4-1.8 1.4-1.8z; x M6 7.2h2.8; dot 13 12.4 2.7; hole 13.6 11.4"
        " .7"),
    "box_closed": ("square", "s M5.5 8.8h9v5h-9zM5 6.5h10v2.3H5zM10 8.8v2.4"),
    "box_open": ("square", "s M5.5 9.8h9v4.8h-9zM5.5 9.8L4.6 7.6l8.8-3.2 .9 2.2z"),
    "bridge": ("square",
        "f M3.8 6.6h12.4v2.8c-1 0-1.8.8-2 2v2.8h-1.6a2.6 2.6 0 0 0-5.2 "
        "0H5.8v-2.8c-.2-1.2-1-2-2-2z"),
    "building": ("square",
        "f M6 4.6h8V15h1.4v1H4.6v-1H6z; h M8 6.6h1.3v1.6H8zM10.7 6.6H12v1.6h-1.3zM8 "
        "9.6h1.3v1.6H8zM10.7 9.6H12v1.6h-1.3zM9.2 12.8h1.6V15H9.2z"),
    "buoy": ("",
        "form M7.2 2.2h5.6l2.4 10.4h3.4c-.8 3.2-4.2 5.2-8.6 5.2S2.2 15.8 1.4 12.6h3.4z; t M5.6 "
        "12.6h8.8"),
    "buoy2": ("",
        "form2 M5.8 8.4h8.4l1 4.2h3.4c-.8 3.2-4.2 5.2-8.6 5.2S2.2 15.8 1.4 12.6h3.4z; form M7.3 "
        "1.8h5.4l1.4 5.8H5.9z; t M5.6 12.6h8.8"),
    "bus": ("square",
        "f M6.2 4.6h7.6c.7 0 1.2.5 1.2 1.2v8h-1v1.4h-2v-1.4H8v1.4H6v-1.4H5v-8c0-.7.5-1.2 "
        "1.2-1.2z; h M6.4 6.6h7.2v3.2H6.4z; hole 7 11.8 .8; hole 13 11.8 .8"),
    "car": ("square", "s M5 13v-2.6l1.4-3.2h7.2l1.4 3.2V13zM5 10.4h10M6.8 13v1M13.2 13v1"),
    "caravan": ("square",
        "f M4 6h8.4a2.8 2.8 0 0 1 2.8 2.8v3.4h1.4v1.6H4z; h M6 7.8h6.6v2.4H6z; hole 8.4 13.6 2.2;"
        " dot 8.4 13.6 1.4"),
    "cards": ("square",
        "f M4.6 5.6h7v9.8h-7zM12.8 5l2.8.9-2 8.3-.8-.2z; h M8.1 7.4l2 3.1-2 3.1-2-3.1z"),
    "cart": ("square", "s M4.4 5.4h1.8l1.8 6.2h6l1.4-4.4H7; dot 8.6 14.4 1.2; dot 13.4 14.4 1.2"),
    "church": ("square", "s M10 4.5v4M8.5 6h3M6 14.5v-4L10 8.2l4 2.3v4z"),
    "circle": ("", "form M10 2.2a7.8 7.8 0 0 1 0 15.6 7.8 7.8 0 0 1 0-15.6z"),
    "circle_x": ("disc", "s M6.9 6.9l6.2 6.2M13.1 6.9l-6.2 6.2"),
    "city_ring": ("disc", "ring 10 10 4.2"),
    "city_star": ("disc",
        "f M10 3.4l2 4.3 4.7.6-3.5 3.2.9 4.7-4.1-2.3-4.1 2.3.9-4.7-3.5-3.2 4.7-.6z"),
    "columns": ("square", "f M4 8.2L10 4.4l6 3.8z; s M6.2 9.8v3M10 9.8v3M13.8 9.8v3M4.8 15h10.4"),
    "crosshair": ("disc", "ring 10 10 3.2; s M10 4.4v3.4M10 12.2v3.4M4.4 10h3.4M12.2 10h3.4"),
    "crossing": ("square", "s M7.8 4.8v3h-3M12.2 4.8v3h3M7.8 15.2v-3h-3M12.2 15.2v-3h3"),
    "cup": ("square",
        "f M4.8 6.6h8v4.6a3 3 0 0 1-3 3h-2a3 3 0 0 1-3-3z; s M12.8 7.8h.8a1.7 1.7 0 0 1 0 3.4h-.8"),
    "dam": ("square",
        "f M10.4 4.8H13l2.8 10.4h-5.4z; s M4.4 8.4c.8-.8 1.6-.8 2.4 0s1.4.6 2 .2M4.4 12c.8-.8 "
        "1.6-.8 2.4 0s1.4.6 2 .2"),
    "deer": ("disc",
        "f M8 9.8h4l-.8 3.8c-.2 1.6-2.2 1.6-2.4 0z; s M8.6 9.6C6.6 9 5.6 7.4 5.6 5.4M11.4 "
        "9.6c2-.6 3-2.2 3-4.2M6.2 7.8l2.2-1.8V4.6M13.8 7.8L11.6 6V4.6"),
    "depth_step": ("square", "s M4.6 9.6h3.6v2.8h3.4v2.8h3.8M4.6 5.8~"),
    "derrick": ("square",
        "s M10 5L6 15M10 5l4 10M4.8 15.2h10.4; t M8.3 9.6h3.4M8 10.2l4.8 4.4M12 10.2l-4.8 4.4; "
        "dot 10 5 1.4"),
    "diamond": ("", "form M10 1.4l8.6 8.6-8.6 8.6L1.4 10z"),
    "dive_flag": ("square", "k M4.2 4.2l11.6 11.6"),
    "dot": ("disc", "dot 10 10 2.8"),
    "drop": ("disc", "s M10 5c2.2 2.7 3.3 4.3 3.3 5.8a3.3 3.3 0 0 1-6.6 0C6.7 9.3 7.8 7.7 10 5z"),
    "drops": ("disc",
        "f M8.2 4.4c1.8 2.2 2.7 3.6 2.7 4.9a2.7 2.7 0 0 1-5.4 0c0-1.3.9-2.7 2.7-4.9zM12.8 9.6c1.3"
        " 1.6 1.9 2.6 1.9 3.5a1.9 1.9 0 0 1-3.8 0c0-.9.6-1.9 1.9-3.5z; dot 8.4 14.6 1.2"),
    "dumbbell": ("square", "s M7.2 10h5.6; k M7 7v6M13 7v6; s M4.4 8.6v2.8M15.6 8.6v2.8"),
    "envelope": ("square", "s M4.6 6.2h10.8v7.6H4.6zM5 6.6l5 4.2 5-4.2"),
    "exclamation": ("disc", "k M10 5.6v4.6; dot 10 14 1.5"),
    "exit_arrow": ("square", "s M5.8 15V5M6.2 14.2l7.8-7.8M9.4 6h4.8v4.8"),
    "film": ("square",
        "f M4.2 8.6h7.6v6H4.2zM12.6 11.4l3.2-2.2v5l-3.2-2z; dot 6 6.4 1.7; dot 10.2 6.4 1.7"),
    "fish": ("disc",
        "f M4 10c2.4-3.7 6.4-4 8.8-1.2l2.8-2.3v7l-2.8-2.3C10.4 14 6.4 13.7 4 10z; hole 7.3 9.4 .8"),
    "flag": ("disc", "s M7.3 15V5.2h6l-1.5 2.3 1.5 2.3h-6"),
    "footprints": ("disc",
        "f M7.2 4.8c1.2 0 1.8 1.2 1.8 2.6 0 1-.4 1.8-.6 2.6H6c-.2-.8-.6-1.6-.6-2.6 0-1.4.6-2.6 "
        "1.8-2.6zM12.8 7c1.2 0 1.8 1.2 1.8 2.6 0 1-.4 1.8-.6 2.6h-2.4c-.2-.8-.6-1.6-.6-2.6 "
        "0-1.4.6-2.6 1.8-2.6z; dot 7.2 11.7 1.2; dot 12.8 13.9 1.2"),
    "fork_knife": ("square",
        "s M7.3 5.2v3.3a1.3 1.3 0 0 1-2.6 0V5.2M6 5.2v9.6M13.7 14.8V5.2c-1.8.8-2.4 2.8-2.4 "
        "5.2h2.4"),
    "fort": ("square",
        "f M4.6 15.2V5.4h2.4v2h1.8v-2h2.4v2H13v-2h2.4v9.8z; h M8.6 15.2v-2.8a1.4 1.4 0 0 1 2.8 "
        "0v2.8z"),
    "fuel_pump": ("square",
        "s M6.2 14.2V6.2h4.6v8M5.5 14.2h6M10.8 9h1.6v3.6a1 1 0 0 0 2 0V8l-1.5-1.7M6.2 9h4.6"),
    "glass": ("square", "f M4.8 5h10.4L10 11z; s M10 10.4v4.4M7.4 15h5.2"),
    "glider": ("square",
        "f M3.4 7.4L9 6.6c0-1.6.3-2.6 1-2.6s1 1 1 2.6l5.6.8v1.8L11 9.4l-.3 4.4 "
        "2.3.4v1.4H7v-1.4l2.3-.4L9 9.4l-5.6-.2z"),
    "golf_flag": ("square",
        "s M8 14.6V5; f M8 4.4l6.4 2.6L8 9.6z; s M5.2 14.2c1.4 1 4.2 1 5.6 0; dot 13.4 13.6 1.4"),
    "grave": ("square",
        "f M6 14.4V8.6a4 4 0 0 1 8 0v5.8h1.4V16H4.6v-1.6z; y M10 6.8v5.4M7.8 8.8h4.4"),
    "hammers": ("square", "s M5.6 15l7-8M14.4 15l-7-8; k M11.8 5.6l2.8 2.4M8.2 5.6L5.4 8"),
    "helicopter": ("square",
        "s M4.4 5.4h10.4M9.6 5.4v2M15.6 8.4v3M6 15h7M8 13v1.6M11.2 13v1.6; f M4.4 11.2C4.6 8.6 "
        "6.6 7 9.2 7c2.2 0 3.2 1 3.8 2.4l2.8.2v1.6l-3 .4c-.6 1.2-1.4 1.8-2.6 1.8H6.6c-1.4 "
        "0-2.2-.9-2.2-2.2z; h M5.9 10.6c.3-1.1.9-1.8 1.9-2.2v2.2z"),
    "hide": ("square", "f M5.8 5.6h8.4L16 15.2H4z; h M6.6 8.4h6.8v2H6.6z"),
    "high_seat": ("square",
        "f M4.8 6.8L10 4l5.2 2.8h-1.4v4.2H6.2V6.8z; h M7.8 7.2h4.4v1.8H7.8z; s M7 11l-1 4.6M13 "
        "11l1 4.6M6.8 13.4h6.4"),
    "hook": ("disc", "ring 12.4 5.8 1.1; s M12.4 7v4.4a3.3 3.3 0 0 1-6.6 0V8.8l2.2 2"),
    "horn": ("disc", "f M4.4 8.4H7l5-3.4v10l-5-3.4H4.4z; s M14 7.8c1.1 1.3 1.1 3.1 0 4.4"),
    "house": ("square", "s M5.5 10.3L10 6.2l4.5 4.1M6.8 9.5v4.3h6.4V9.5"),
    "hut": ("square", "s M4.2 9.8L10 4.6l5.8 5.2M6.2 10.4h7.6M6.2 12.9h7.6M6.2 15.4h7.6"),
    "hydrant": ("square",
        "f M7 14V8.6a3 3 0 0 1 6 0V14h1v1.6H6V14z; s M5.4 10.4h9.2; dot 10 5.2 1.2; hole 10 10.4 "
        "1.3"),
    "label": ("square", "f M9.6 5h5.4v5.4l-5.2 5.2-5.4-5.4z; hole 12.5 7.5 1.2"),
    "leaf": ("disc",
        "f M15 5c.6 6.2-2 9.4-6.2 9-1 0-1.8-.2-2.6-.6C5.2 8.6 8.6 5.2 15 5z; s M4.8 15.2l2.4-2.4;"
        " x M7 13l4.6-4.6"),
    "letter_i": ("square", "s M8.6 9h1.6v5.4M8.2 14.6h4; dot 9.9 5.8 1.3"),
    "letter_p": ("square", "s M8 14.5v-9h2.6a2.5 2.5 0 0 1 0 5H8"),
    "light": ("disc",
        "f M8.4 9h3.2l1.4 6.4H7z; dot 10 6.4 1.7; s M6.6 5.8l-1.8-.9M6.6 7.4l-1.8.9M13.4 "
        "5.8l1.8-.9M13.4 7.4l1.8.9"),
    "mask": ("square",
        "f M4.8 5c3.4.9 7 .9 10.4 0v4.8c0 3-2.1 5-5.2 5.8-3.1-.8-5.2-2.8-5.2-5.8z; hole 7.7 8.6 "
        "1.1; hole 12.3 8.6 1.1; x M7.4 11.4c1.4 1.7 3.8 1.7 5.2 0"),
    "mast": ("disc",
        "s M10 7.6v7.4M7.4 15h5.2M6.9 5a4.2 4.2 0 0 0 0 5.2M13.1 5a4.2 4.2 0 0 1 0 5.2; dot 10 "
        "7.6 1.5"),
    "medical_cross": ("square", "s M10 6v8M6 10h8"),
    "milestone": ("disc", "f M10 4l2 1.8 1.4 7.8h1.6v1.6H5v-1.6h1.6L8 5.8z; x M9.3 8.8l.9-.6v4.2"),
    "money": ("square", "s M4.4 6.6h11.2v6.8H4.4z; dot 10 10 1.7; dot 6.6 10 .7; dot 13.4 10 .7"),
    "mountain": ("disc", "s M4.5 14l3.7-6.2 2.2 3.4 1.5-2.2 3.6 5z"),
    "no_entry": ("disc", "f M4.8 8.4h10.4v3.2H4.8z"),
    "oval": ("", "form M10 4.6c5 0 8.6 2.4 8.6 5.4s-3.6 5.4-8.6 5.4S1.4 13 1.4 10 5 4.6 10 4.6z"),
    "parachute": ("square",
        "f M4.2 9.4a5.8 5.8 0 0 1 11.6 0c-1.2-.9-2.6-.9-3.8 0-1.2-.9-2.8-.9-4 0-1.2-.9-2.6-.9-3.8"
        " 0z; t M4.8 9.4l5.2 5 5.2-5M8.2 9.4l1.8 5 1.8-5; dot 10 14.6 1.3"),
    "parasol": ("square", "f M4.6 11.2a5.3 5.3 0 0 1 9.6-4.5z; s M9.6 9.2l2.6 5.6M5 15.2h10"),
    "paw": ("disc",
        "dot 5.9 9.4 1.4; dot 8.4 6.6 1.5; dot 11.6 6.6 1.5; dot 14.1 9.4 1.4; f M10 9.4c2 0 3.8 "
        "2.2 3.8 3.9 0 1.2-.9 1.7-1.9 1.5-1.3-.3-2.5-.3-3.8 0-1 .2-1.9-.3-1.9-1.5 0-1.7 1.8-3.9 "
        "3.8-3.9z"),
    "person_water": ("disc",
        "dot 10 5.8 1.8; s M5.6 6.8l2.6 2.8h3.6l2.6-2.8; t M10 9.6v1.4; s M4.9 13.4c.9-.9 1.7-.9 "
        "2.6 0s1.7.9 2.6 0 1.7-.9 2.6 0 1.6.9 2.4 0"),
    "phone": ("square",
        "f M6 4.7l2.3-.5 1.4 3.4L8 9c.7 1.3 1.7 2.3 3 3l1.4-1.7 3.4 1.4-.5 2.3c-.2.9-1 1.4-1.8 "
        "1.3C8.8 14.7 5.3 11.2 4.7 6.5c-.1-.8.4-1.6 1.3-1.8z"),
    "picnic": ("square", "s M5.8 6.8h8.4M8.2 6.8L6 14.6M11.8 6.8l2.2 7.8M4.4 10.6h11.2"),
    "pier": ("square", "s M4.4 7.4h10M6 7.4V12M9.4 7.4V12M12.8 7.4V12M4.6 14.4~"),
    "pin": ("disc", "dot 10 7.2 2.9; s M10 9v6.2"),
    "pizza": ("square",
        "s M4.6 6.6c3.5-1.7 7.3-1.7 10.8 0L10 15.4z; dot 8.4 8.6 1; dot 11.6 8.6 1; dot 10 11.4 1"),
    "plane": ("square",
        "f M10 3.8c.8 0 1.2.9 1.2 1.8v2.6l4.8 3v1.6l-4.8-1.5v2.4l1.7 1.3v1.1L10 "
        "15.5l-2.9.6V15l1.7-1.3v-2.4L4 12.8v-1.6l4.8-3V5.6c0-.9.4-1.8 1.2-1.8z"),
    "radio_hex": ("", "form M5.7 2.4h8.6l4.4 7.6-4.4 7.6H5.7L1.3 10z; dot 10 10 2.8"),
    "radio_rings": ("disc",
        "dot 10 10 1.5; s M7.7 7.7a3.3 3.3 0 0 0 0 4.6M12.3 7.7a3.3 3.3 0 0 1 0 4.6M5.6 5.8a6 6 0"
        " 0 0 0 8.4M14.4 5.8a6 6 0 0 1 0 8.4"),
    "rectangle": ("", "form M1.6 5.4h16.8v9.2H1.6z"),
    "reef": ("disc",
        "s M10 15V6M10 11.6L6.6 9.4V6.6M10 9.8l3.4-2V5.2M13.4 7.8l1.4 1.4M6.6 9.4L5 8.4M6.4 "
        "15h7.2"),
    "restroom": ("square",
        "dot 6.8 5.6 1.5; dot 13.2 5.6 1.5; f M4.8 7.8h4v4h-.8v3.6H5.6v-3.6h-.8zM13.2 7.4l2.7 "
        "5h-1.3v3h-2.8v-3h-1.3z"),
    "ruin": ("square",
        "f M4.6 15.2V5.4H7v2h1.8v-2l2.2.6-.6 2.2 1.8 1-.4 2 2 .8 1.6 1.4v1.8z; h M6.4 "
        "9.6h1.8v2.4H6.4z"),
    "runway": ("square",
        "f M7 4.2h6l2.6 11.6H4.4z; h M9.3 5.6h1.4v2H9.3zM9.2 9h1.6v2.2H9.2zM9.1 12.8h1.8v2.2H9.1z"),
    "scales": ("square",
        "s M10 4.8v10M7.2 15h5.6M5.6 6.6h8.8; t M3.9 11l1.8-4 1.8 4M12.5 11l1.8-4 1.8 4; f M3.4 "
        "10.6h4.6c-.3 2.2-4.3 2.2-4.6 0zM12 10.6h4.6c-.3 2.2-4.3 2.2-4.6 0z"),
    "school": ("square",
        "f M3.4 8.4L10 5l6.6 3.4L10 11.8z; s M6.4 11v2.4c2 1.7 5.2 1.7 7.2 0V11M16 9v4"),
    "seaplane": ("square",
        "f M10 3.8c.6 0 .9.7.9 1.3V7l4.3 2.3v1.4L10.9 9.8v1.5l1.3.9v.9L10 "
        "12.5l-2.2.6v-.9l1.3-.9V9.8l-4.3.9V9.3L9.1 7V5.1c0-.6.3-1.3.9-1.3z; s M4.6 15.2~"),
    "shower": ("square",
        "s M5.4 15.2V6.8a2.2 2.2 0 0 1 4.4 0v1M6.8 9h6.4; dot 8 12 1; dot 11.8 12 1; dot 9.9 14.6"
        " 1; dot 13.7 14.6 1"),
    "signpost": ("disc", "s M9.3 15V5M5.8 6.2h6.7l1.5 1.4-1.5 1.4H5.8z"),
    "skate": ("square",
        "f M5.8 4.8h4v3.2l3.8 1.2c1 .3 1.6 1.2 1.6 2.6H5.8z; s M5 14.8h9.2c.7 0 1.2-.4 "
        "1.4-1.2M7.6 12v2.6M12.4 12v2.6"),
    "skier": ("square",
        "dot 12.8 5.4 1.5; s M11 7.4L8 9.8l3 2-1.2 2.2M11 7.6l2.6 2.4M4.6 12l10.2 3.6; t M13.6 "
        "10l-2-.2"),
    "skull": ("disc",
        "f M10 4.2a4.9 4.9 0 0 1 4.9 4.9c0 1.8-.9 3-2.2 "
        "3.7v2.4H7.3v-2.4c-1.3-.7-2.2-1.9-2.2-3.7A4.9 4.9 0 0 1 10 4.2z; hole 8 9.2 1.3; hole 12 "
        "9.2 1.3; x M9 13.4v1.6M11 13.4v1.6; h M10 10.6l.8 1.4H9.2z"),
    "square": ("", "form M3 3h14v14H3z"),
    "stadium": ("square",
        "s M10 6c3.2 0 5.6 1.7 5.6 4s-2.4 4-5.6 4-5.6-1.7-5.6-4S6.8 6 10 6z; f M7.2 "
        "8.8h5.6v2.4H7.2z"),
    "stump": ("disc",
        "f M5.8 7.8v3.6c0 1.4-.8 2.2-1.8 2.8h12c-1-.6-1.8-1.4-1.8-2.8V7.8c0-3-8.4-3-8.4 0z; h M10"
        " 6.7c1.7 0 2.8.5 2.8 1.2S11.7 9.1 10 9.1 7.2 8.6 7.2 7.9s1.1-1.2 2.8-1.2z"),
    "swimmer": ("square", "dot 13.6 8.4 1.6; s M5.6 10.8l4.2-3.8-2.2-1.4M9.8 7l2 3.6M4.6 13.8~"),
    "tap": ("square",
        "f M4.2 7.6h7.2a4 4 0 0 1 4 4v.8h-2.8v-.6c0-.8-.5-1.2-1.2-1.2H4.2z; s M8.6 7.6V5M6.4 "
        "4.8h4.4; dot 14 14.8 1.2"),
    "tent": ("square", "s M10 5.8L4.8 14h10.4zM10 9.8L8.2 14M10 9.8l1.8 4.2"),
    "tree": ("disc", "s M10 4.8L6.8 9h1.6l-2.4 3.6h8L11.6 9h1.6zM10 12.6v2.4"),
    "triangle": ("", "form M10 2.2l8.2 14.6H1.8z"),
    "truck": ("square",
        "f M4 6.2h7.2v6.8H4zM12 8.4h2.2l1.8 2.2V13h-4z; hole 7 13.2 2.1; hole 13 13.2 2.1; dot 7 "
        "13.2 1.4; dot 13 13.2 1.4"),
    "tunnel": ("square",
        "f M4.2 15.4v-5a5.8 5.8 0 0 1 11.6 0v5z; h M6.8 15.4V11a3.2 3.2 0 0 1 6.4 0v4.4z; s M10 "
        "11.6v.6M10 14.4v.6"),
    "viewpoint": ("disc",
        "dot 10 12.6 1.9; s M4.4 12.8h2M5.8 8.6l1.5 1.5M10 6v2.4M14.2 8.6l-1.5 1.5M15.6 12.8h-2"),
    "wave": ("disc", "s M4.6 7.2~M4.6 10.2~M4.6 13.2~"),
    "wheel": ("square",
        "ring 10 8.8 4.2; dot 10 8.8 1.5; s M10 8.8l-2.8 6.6M10 8.8l2.8 6.6; dot 4.8 8.8 1.2; dot"
        " 15.2 8.8 1.2; dot 7.4 4.3 1.2; dot 12.6 4.3 1.2"),
    "wreck": ("disc",
        "f M4 7.4l11.4 2.8c-.6 2-2 2.6-3.6 2.2L6.6 11.2C4.9 10.8 4 9.6 4 7.4z; s M9.4 8l2-3.8M4.9"
        " 14.4c.9-.9 1.7-.9 2.6 0s1.7.9 2.6 0 1.7-.9 2.6 0 1.6.9 2.4 0"),
    "wrench": ("square",
        "f M14 4.8a3.7 3.7 0 0 0-4.8 4.6l-4.5 4.5a1.2 1.2 0 0 0 0 1.7 1.2 1.2 0 0 0 1.7 "
        "0l4.5-4.5a3.7 3.7 0 0 0 4.6-4.8l-2.2 2.2-1.7-.3-.3-1.7z"),
    "zone": ("disc", "f M4.6 8l5-3.6 5.8 2.4-1 6.6L7 15z; y M5.6 12.8l6-8.4M9.4 15l5.4-7.6"),
}
def pictures():
    """Drawing and colour of each glyph name of the table; "upper/lower" for two colours."""
    found = {}
    with open(ROOT / "data" / "glyphs.csv", encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file, delimiter=";"):
            name, colour = row["glyph"], row["colour"]
            found[name] = (name.removesuffix("_" + colour.replace("/", "_")), colour)
    return found


def element(kind, data, colour, ink):
    """One part of a drawing; what it does not say itself it has from the group around it."""
    areas = {"f": ink, "h": colour, "dot": ink, "hole": colour}
    style = ""
    if kind in areas:
        style = f' fill="{areas[kind]}" stroke="none"'
    elif kind in ("x", "y", "c"):
        style = f' stroke="{colour}"'
    if kind in WIDTHS:
        style += f' stroke-width="{WIDTHS[kind]}"'
    if kind in ("ring", "thin_ring", "dot", "hole"):
        x, y, radius = data.split()
        return f'<circle cx="{x}" cy="{y}" r="{radius}"{style}/>'
    return f'<path d="{data.replace("~", WAVE)}"{style}/>'


def glyph(name, colour_name):
    """The SVG text of a drawing in a colour."""
    badge, drawing = GLYPHS[name]
    colour, *second = (COLOURS[c] for c in colour_name.split("/"))
    white = "white" in colour_name
    ink = COLOURS["black"] if white or colour_name == "yellow" else "#fff"
    rim, rim_width = (COLOURS["black"], "1") if white else ("#fff", "1.8")
    ground, lines = BADGES.get(badge, ""), ""
    for text in drawing.split(";"):
        kind, data = text.strip().split(" ", 1)
        if kind == "form":
            ground += f'<path d="{data}"/>'
        elif kind == "form2":
            ground += f'<path d="{data}" fill="{second[0]}"/>'
        else:
            lines += element(kind, data, colour, ink)
    round_line = 'stroke-linecap="round" stroke-linejoin="round"'
    svg = ('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 20">'
           f'<g fill="{colour}" stroke="{rim}" stroke-width="{rim_width}" stroke-linejoin="round">'
           f'{ground}</g>')
    if lines:
        svg += f'<g fill="none" stroke="{ink}" stroke-width="1.6" {round_line}>{lines}</g>'
    return svg + "</svg>\n"


def resources(names):
    """ui/resources.qrc with the glyphs of these names in the place of those it lists."""
    lines = (ROOT / "ui" / "resources.qrc").read_text(encoding="utf-8").splitlines(keepends=True)
    listed = [line for line in lines if "<file>icons/g_" in line]
    at = lines.index(listed[0])
    kept = [line for line in lines if line not in listed]
    return "".join(kept[:at] + [f"    <file>icons/g_{n}.svg</file>\n" for n in sorted(names)]
                   + kept[at:]).encode("utf-8")


def main():
    wanted = pictures()
    drawn = {drawing for drawing, _ in wanted.values()}
    if drawn != set(GLYPHS):
        sys.exit("drawings and table differ: " + " ".join(sorted(drawn ^ set(GLYPHS))))
    icons = ROOT / "ui" / "icons"
    files = {icons / f"g_{name}.svg": glyph(*picture).encode("ascii")
             for name, picture in wanted.items()}
    files[ROOT / "ui" / "resources.qrc"] = resources(wanted)
    unused = sorted(path.name for path in icons.glob("g_*.svg") if path not in files)
    if unused:
        sys.exit("of no symbol: " + " ".join(unused))
    stale = []
    for path, content in files.items():
        if path.is_file() and path.read_bytes() == content:
            continue
        stale.append(path.name)
        if "--check" not in sys.argv[1:]:
            path.write_bytes(content)
    if stale and "--check" in sys.argv[1:]:
        sys.exit("not as drawn: " + " ".join(sorted(stale)))


if __name__ == "__main__":
    main()
