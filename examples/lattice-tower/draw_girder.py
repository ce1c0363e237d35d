#!/usr/bin/env python3
"""Draws girder.svg: the detail models of half of the deck's secondary girder along y, by stress.

Reads Korvex_AverageStrs.txt in the current folder. The beams run from the deck's edge, y = -2400, to
its middle; the other half is the same.
"""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True

from read_details import mid_length, read_details
from svg import INK, Drawing

BEAMS = (296, 297, 298, 299)
UNDERSIDE = 42.0  # of the girder above the deck's nodes
BAND = 5.0        # MPa per colour
COLOURS = ("#313695", "#4575b4", "#74add1", "#abd9e9", "#e0f3f8", "#ffffbf", "#fee090", "#fdae61",
           "#f46d43", "#d73027")
FAINT = "#9aa0a6"
SCALE = 0.43
WIDTH, HEIGHT = 1160, 330


def view(point):
    """Seen from -x and from above: y to the right, z upwards, x to the back."""
    x, y, z = point
    return 50 + SCALE * (y + 2400.0 + 0.45 * x), 215 - SCALE * (z - 24000.0 - UNDERSIDE + 0.5 * x)


def stress_of(corners):
    """The larger of the faces' means over the corners."""
    return max(sum(corner[face][6] for corner in corners) / 4 for face in (0, 1))


def colour_of(stress):
    return COLOURS[min(int(stress / BAND), len(COLOURS) - 1)]


def draw_beam(drawing, detail):
    """Returns the largest element stress."""
    pieces = [(max(detail.nodes[n][0] for n in nodes), [detail.nodes[n] for n in nodes],
               stress_of(corners)) for nodes, corners in detail.shells]
    for _, points, stress in sorted(pieces, key=lambda piece: -piece[0]):  # from the back
        drawing.polygon([view(p) for p in points], colour_of(stress), INK, 0.35)
    return max(stress for _, _, stress in pieces)


def draw_labels(drawing, detail):
    """Mid-length stress along the beam, mean of the faces: flange at the web, and the web's foot."""
    edges = mid_length(detail)
    y = sum(end[1] for end in detail.ends) / 2
    for edge, offset in ((edges[3][0], -34), (edges[0][0], 22)):
        px, py = view((0.0, y, detail.ends[0][2] + edge.place[2]))
        drawing.text(px, py + offset, "%.1f" % (sum(edge.along) / 2), size=13, weight="bold")
    drawing.text(view((0.0, y, 0.0))[0], 285, "beam %d" % detail.beam, size=12)


def draw_stations(drawing):
    for y, words in ((-2400.0, "edge angle"), (-1800.0, ""), (-1200.0, "main girder"),
                     (-600.0, "20 kN"), (0.0, "middle")):
        x, low = view((0.0, y, 24000.0 + UNDERSIDE))
        drawing.line([(x, low + 4), (x, 292)], FAINT, 1.0, "3 3")
        drawing.text(x, 308, words, size=12)


def draw_scale(drawing, largest):
    bands = min(int(largest / BAND) + 1, len(COLOURS))
    for band in range(bands):
        x = WIDTH - 50 - 34 * (bands - band)
        drawing.polygon([(x, 30), (x + 34, 30), (x + 34, 44), (x, 44)], COLOURS[band], INK)
        drawing.text(x, 58, "%g" % (BAND * band), size=12)
    drawing.text(WIDTH - 50, 58, "%g" % (BAND * bands), size=12)
    drawing.text(WIDTH - 50, 76, "largest %.1f" % largest, size=12, anchor="end")


def main():
    drawing = Drawing(WIDTH, HEIGHT)
    draw_stations(drawing)
    largest = 0.0
    for detail in read_details(BEAMS):
        largest = max(largest, draw_beam(drawing, detail))
        draw_labels(drawing, detail)
    drawing.text(50, 28, "Detail models of a secondary girder, von Mises stress, MPa", size=16,
                 anchor="start", weight="bold")
    drawing.text(50, 48, "Colours: mean of an element, the larger of its faces. Numbers: stress along "
                 "the girder at mid-length, flange and foot", size=12, anchor="start")
    draw_scale(drawing, largest)
    drawing.write("girder.svg")


if __name__ == "__main__":
    main()
