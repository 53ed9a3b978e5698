#!/usr/bin/env python3
"""Draws the frames of an animation: animation.py search|erase RSVG_CONVERT FOLDER

Writes FOLDER/search0001.png to search0030.png, or the same of erase. Every position is a function of the frame's
place on a circle of 30, so frame 30 leads into frame 1 like any other into the next.
"""
import math
import subprocess
import sys

FRAMES = 30
# Shown at 0.7 of it: both are multiples of ten, so that no edge falls between two pixels of the screen.
WIDTH, HEIGHT = 120, 30

DEFS = """<defs>
<linearGradient id="velvet" x1="0" y1="0" x2="0" y2="1">
<stop offset="0" stop-color="#6f5adc"/><stop offset="1" stop-color="#35257a"/></linearGradient>
<linearGradient id="glass" x1="0" y1="0" x2="0" y2="1">
<stop offset="0" stop-color="#fff"/><stop offset="1" stop-color="#d9e4ff"/></linearGradient>
</defs>"""


def mix(first, second, share):
    """The colour between two #rrggbb."""
    pairs = zip(bytes.fromhex(first[1:]), bytes.fromhex(second[1:]))
    return "#%02x%02x%02x" % tuple(round(a + (b - a) * share) for a, b in pairs)


def line(x, right, y, width, colour, opacity=1.0):
    """A stroke with round ends that fills x to right; nothing where it would be shorter than it is thick."""
    if right - x < width:
        return ""
    return (f'<path d="M{x + width / 2:.2f} {y}H{right - width / 2:.2f}" stroke="{colour}" stroke-width="{width:.2f}" '
            f'stroke-opacity="{opacity:.3f}" stroke-linecap="round"/>')


def dot(x, y, radius, colour, opacity):
    return f'<circle cx="{x:.2f}" cy="{y:.2f}" r="{radius:.2f}" fill="{colour}" fill-opacity="{opacity:.3f}"/>'


# Beginning, height and length of the lines that the glass goes over.
TRACES = ((3, 6, 22), (31, 6, 14), (51, 6, 26), (83, 6, 16), (105, 6, 12),
          (3, 14, 12), (21, 14, 24), (51, 14, 14), (71, 14, 22), (99, 14, 18),
          (3, 22, 18), (27, 22, 16), (49, 22, 24), (79, 22, 14), (99, 22, 14))


def search(turn):
    """A glass goes along the traces and back; what lies under it grows and lights up."""
    x, y = 58 - 44 * math.cos(turn), 13
    row = "".join(line(left, left + length, height, 4.5, "#cdc8e2") for left, height, length in TRACES)
    found = "".join(line(left, left + length, height, 4.5, "#f0692a") for left, height, length in TRACES)
    return (f'<clipPath id="lens"><circle cx="{x:.2f}" cy="{y}" r="10"/></clipPath>{row}'
            f'<path d="M{x + 8.5:.2f} 21.5l4.5 4.5" stroke="#be3700" stroke-width="4.5" stroke-linecap="round"/>'
            f'<circle cx="{x:.2f}" cy="{y}" r="10" fill="url(#glass)"/>'
            f'<g clip-path="url(#lens)"><g transform="translate({x:.2f} {y}) scale(1.3) translate({-x:.2f} {-y})">'
            f'{found}</g></g>'
            f'<circle cx="{x:.2f}" cy="{y}" r="10.5" fill="none" stroke="url(#velvet)" stroke-width="3"/>')


BLADE = 62  # where the lines meet their end
PITCH = 48  # from the beginning of a line to that of the next in its row; the way of one loop
# Offset in the row, height and length of the lines.
LINES = ((0, 8, 20), (26, 8, 14), (10, 15, 14), (32, 15, 20), (18, 22, 20), (44, 22, 12))
# The dust of a line: after what way behind the blade it is born, its way to the side, size and reach.
DUST = ((0, -1.5, 2.4, 40), (4, 2.0, 2.0, 50), (8, 0.0, 1.7, 34), (12, -3.0, 1.9, 46), (15, 2.6, 1.4, 38))


def erase(turn):
    """Lines run against a blade, and what comes out behind it is dust that the air takes."""
    way = PITCH * turn / (2 * math.pi)
    lines, dust = "", ""
    for offset, y, length in LINES:
        for lap in range(-1, 4):
            head = offset + way + lap * PITCH - PITCH
            tail = head - length
            if tail < BLADE and head > 0:
                opacity = min(1.0, max(0.0, (head - 4) / 22))
                lines += line(tail, head, y, 4.5, mix("#b9b2d6", "#6a54d6", min(1.0, max(0.0, head / BLADE))), opacity)
            for born, aside, size, reach in DUST:
                gone = (head - BLADE - born) / reach
                if born < length and 0 < gone < 1:
                    # Dust slows down in the air.
                    x = BLADE + 5 + 50 * (reach / 50) * (1 - (1 - gone) ** 2)
                    dust += dot(x, y + aside * gone * 2, size * (1 - 0.6 * gone),
                                mix("#f0692a", "#ffa066", gone), 1 - gone ** 2)
    return (f'<clipPath id="before"><rect width="{BLADE}" height="{HEIGHT}"/></clipPath>'
            f'<g fill="none" clip-path="url(#before)">{lines}</g>{dust}'
            f'<rect x="{BLADE - 1}" y="1" width="6" height="28" rx="3" fill="url(#velvet)"/>')


def main():
    name, rsvg_convert, folder = sys.argv[1:]
    draw = {"search": search, "erase": erase}[name]
    for frame in range(FRAMES):
        picture = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
                   f'viewBox="0 0 {WIDTH} {HEIGHT}">{DEFS}{draw(2 * math.pi * frame / FRAMES)}</svg>')
        subprocess.run([rsvg_convert, "--output", f"{folder}/{name}{frame + 1:04}.png"],
                       input=picture.encode(), check=True)


main()
