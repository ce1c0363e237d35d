#!/usr/bin/env python3
"""Draws trough.svg from the model and the results, all in the current folder.

Reads fem_solving.txt, Node_Dis.txt and "Shell element average node stress.txt". The script knows
the file layouts only as far as this example needs them.
"""

import os
import re
import sys
from math import cos, radians, sin

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True

from model_rows import read_nodes, read_rows
from svg import INK, Drawing

EXAGGERATION = 300
TURN, LIFT = 32, 30           # view of the deformed trough, degrees
BAND = 0.3                    # MPa per colour
COLOURS = ("#313695", "#4575b4", "#74add1", "#abd9e9", "#ffffbf", "#fee090", "#fdae61", "#f46d43",
           "#d73027")
FAINT, DEFORMED, WATER = "#9aa0a6", "#c62828", "#d9ecf9"
FIRST_RING, RING = 30, 23     # the first node of the ring at x = 0, and the nodes of a ring
MIDSPAN = 18                  # the ring at mid-span
QUADS, END_WALL_TRIANGLES = 792, 72
WIDTH, HEIGHT = 1160, 1010


def read_model():
    rows = read_rows()
    nodes = read_nodes(rows)
    shells = [tuple(int(v) for v in row.split(":")[1].split("[")[0].split(","))
              for key in ("NELEM_S_4ND", "NELEM_S_3ND") for row in rows(key)]
    return nodes, shells


def read_displacements():
    with open("Node_Dis.txt", encoding="ascii") as file:
        return [tuple(float(v) for v in row.split(":")[1].split()[:3])
                for row in file.read().splitlines()[1:]]


def read_equivalent_stresses():
    """Per element, the means over the corners on the upper and the lower face, MPa."""
    elements = []
    with open("Shell element average node stress.txt", encoding="ascii") as file:
        for line in file:
            if "element" in line:
                elements.append([])
            elif re.match(r" *\d+:", line):
                elements[-1].append(1e-6 * float(line.split()[-1]))
    return [(sum(e[0::2]) / (len(e) // 2), sum(e[1::2]) / (len(e) // 2)) for e in elements]


def project(point):
    """Parallel projection: right and up on the page, and the distance from the viewer."""
    x, y, z = point
    t, l = radians(TURN), radians(LIFT)
    right, back = cos(t) * x + sin(t) * y, cos(t) * y - sin(t) * x
    return right, sin(l) * back + cos(l) * z, cos(l) * back - sin(l) * z


def view(point):
    right, up, _ = project(point)
    return 110 + 93 * right, 690 - 93 * up


def section(y, z):
    return 300 + 150 * y, 270 - 150 * z


def draw_section(drawing, nodes, displacements):
    ring = range(FIRST_RING + MIDSPAN * RING, FIRST_RING + (MIDSPAN + 1) * RING)
    points = [nodes[n][1:] for n in ring]
    inside = [p for p in points if abs(p[0]) <= 1.0]
    drawing.polygon([section(*p) for p in inside], WATER)
    drawing.line([section(*p) for p in points], FAINT, 0.16 * 150)
    drawing.line([section(*p) for p in points], INK, 0.8)
    shifted = [section(y + EXAGGERATION * displacements[n][1], z + EXAGGERATION * displacements[n][2])
               for n, (y, z) in zip(ring, points)]
    drawing.line(shifted, DEFORMED, 2)
    drawing.text(40, 32, "Cross-section at mid-span, m", size=16, anchor="start", weight="bold")
    for place, dx, dy in ((0, 18, 5), (2, 18, -18), (8, -16, -16), (11, 0, -16)):
        n = ring[place]
        x, y = section(*points[place])
        drawing.items.append('<circle cx="%.1f" cy="%.1f" r="3" fill="%s"/>' % (x, y, INK))
        drawing.text(x + dx, y + dy, str(n), size=12, weight="bold")
    x0, y0 = section(-1.0, 1.2)
    drawing.dimension(x0, y0 - 22, section(1.0, 0)[0], y0 - 22, "2.0")
    drawing.dimension(section(-1.35, 0)[0], y0 - 22, x0, y0 - 22, "0.35")
    drawing.dimension(section(-1.35, 0)[0] - 38, section(0, 0)[1], section(-1.35, 0)[0] - 38, y0,
                      "1.2")
    drawing.dimension(section(-0.6, 0)[0], 392, section(0.6, 0)[0], 392, "1.2")
    drawing.text(section(0, 0)[0], section(0, 0.75)[1], "water")
    x = 600
    for row, (colour, width, words) in enumerate((
            (FAINT, 12, "concrete, 0.16 thick"), (INK, 0.8, "mid-planes"),
            (DEFORMED, 2, "displacements × %d" % EXAGGERATION))):
        drawing.line([(x, 100 + 26 * row), (x + 36, 100 + 26 * row)], colour, width)
        drawing.text(x + 48, 105 + 26 * row, words, anchor="start")
    drawing.text(x, 190, "Numbers: nodes at mid-span.", anchor="start")
    drawing.text(x, 210, "Supports: the four bottom corners carry upwards; the", anchor="start")
    drawing.text(x, 228, "middles of the bottom edges guide in y, one also in x.", anchor="start")
    drawing.arrow(x + 4, 330, x + 50, 330, INK)
    drawing.arrow(x + 4, 330, x + 4, 284, INK)
    drawing.text(x + 60, 334, "y")
    drawing.text(x + 16, 292, "z")


def layer(row):
    """The order in which the plates cover each other, by the element's row among all shells."""
    if row >= QUADS:
        return 0 if row < QUADS + END_WALL_TRIANGLES else 6
    place = row % (RING - 1)
    for plate, end in ((3, 2), (2, 8), (1, 14), (4, 20)):  # rim, wall, bottom, other wall
        if place < end:
            return plate
    return 5


def draw_deformed(drawing, nodes, shells, displacements, stresses):
    moved = [tuple(p + EXAGGERATION * u for p, u in zip(node, d))
             for node, d in zip(nodes, displacements)]
    largest = 0.0
    pieces = []
    for row, (corners, faces) in enumerate(zip(shells, stresses)):
        points = [moved[n] for n in corners]
        flat = [view(p) for p in points]
        (ax, ay), (bx, by), (cx, cy) = flat[0], flat[1], flat[-1]
        upper = (bx - ax) * (cy - ay) - (by - ay) * (cx - ax) < 0  # e3 points to the viewer
        stress = faces[0] if upper else faces[1]
        largest = max(largest, *faces)
        colour = COLOURS[min(int(stress / BAND), len(COLOURS) - 1)]
        depth = sum(project(p)[2] for p in points) / len(points)
        pieces.append((layer(row), -depth, flat, colour))
    for _, _, flat, colour in sorted(pieces):
        drawing.polygon(flat, colour, "#5f6368", 0.35)
    last = FIRST_RING + 36 * RING
    drawing.line([view(moved[n]) for n in range(last + 2, last + 21)], INK, 1.4)
    for place in (0, 2, 8, 14, 20, 22):
        drawing.line([view(nodes[FIRST_RING + place]), view(nodes[last + place])], INK, 0.9, "6 4")
    for first in (FIRST_RING, last):
        drawing.line([view(nodes[n]) for n in range(first, first + RING)], INK, 0.9, "6 4")
    drawing.text(40, 440, "Von Mises stress of the face that is seen, MPa, mean of an element; "
                 "displacements × %d" % EXAGGERATION, size=16, anchor="start", weight="bold")
    drawing.line([(40, 462), (76, 462)], INK, 0.9, "6 4")
    drawing.text(84, 466, "undeformed folds and end sections", anchor="start")
    x, low = 1000, 740
    for band, colour in enumerate(COLOURS):
        y = low - 22 * (band + 1)
        drawing.polygon([(x, y), (x + 26, y), (x + 26, y + 22), (x, y + 22)], colour, INK)
        drawing.text(x + 34, y + 26, "%.1f" % (BAND * band), anchor="start")
    drawing.text(x + 34, low - 22 * len(COLOURS) + 4, "%.2f, largest" % largest,
                 anchor="start")


def main():
    nodes, shells = read_model()
    displacements = read_displacements()
    drawing = Drawing(WIDTH, HEIGHT, "round")
    draw_section(drawing, nodes, displacements)
    draw_deformed(drawing, nodes, shells, displacements, read_equivalent_stresses())
    drawing.write("trough.svg")


if __name__ == "__main__":
    main()
