#!/usr/bin/env python3
"""Draws panel.svg from the model and the results, all in the current folder.

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

EXAGGERATION = 60
TURN, LIFT = 28, -38          # view of the deformed panel, degrees; from below
DEPTH = {0: 416.0, 1: 160.0}  # of the beams below the plate, by BeamSecType
BEAM_FILL = {0: "#8fb7dd", 1: "#f2c48d"}
BAND = 10.0                   # MPa per colour
COLOURS = ("#313695", "#4575b4", "#74add1", "#abd9e9", "#ffffbf", "#fee090", "#fdae61", "#f46d43",
           "#d73027")
FAINT, LOAD = "#9aa0a6", "#1257a8"
WIDTH, HEIGHT = 1160, 1130


def read_model():
    rows = read_rows()
    nodes = read_nodes(rows)
    quads = [tuple(int(v) for v in row.split(":")[1].split("[")[0].split(","))
             for row in rows("NELEM_S_4ND")]
    beams = []
    for row in rows("NELEM_B"):
        i, j = row.split(":")[1].split("<")[0].split(",")
        beams.append((int(i), int(j), int(re.search(r"BeamSecType=(\d+)", row)[1])))
    forces = [int(row.split("<")[0]) for row in rows("NFOR")]
    return nodes, quads, beams, forces


def read_displacements():
    with open("Node_Dis.txt", encoding="ascii") as file:
        return [tuple(float(v) for v in row.split(":")[1].split())
                for row in file.read().splitlines()[1:]]


def read_equivalent_stresses():
    """Per element, the larger of the faces' means over the corners."""
    elements = []
    with open("Shell element average node stress.txt", encoding="ascii") as file:
        for line in file:
            if "element" in line:
                elements.append([])
            elif re.match(r" *\d+:", line):
                elements[-1].append(float(line.split()[-1]))
    return [max(sum(e[0::2]), sum(e[1::2])) / (len(e) // 2) for e in elements]


def project(point):
    """Parallel projection: right and up on the page, and the distance from the viewer."""
    x, y, z = point
    t, l = radians(TURN), radians(LIFT)
    right, back = cos(t) * x + sin(t) * y, cos(t) * y - sin(t) * x
    return right, sin(l) * back + cos(l) * z, cos(l) * back - sin(l) * z


def view(point):
    right, up, _ = project(point)
    return 150 + 0.105 * right, 285 - 0.105 * up


def plan(x, y):
    return 90 + 0.105 * x, 1055 - 0.105 * y


def moved(node, displacement, drop):
    """A point `drop` below a node, carried along rigidly."""
    x, y, z = node
    ux, uy, uz, rx, ry, _ = (EXAGGERATION * d for d in displacement)
    return x + ux - ry * drop, y + uy + rx * drop, z - drop + uz


def draw_deformed(drawing, nodes, quads, beams, displacements):
    top = [moved(n, d, 0.0) for n, d in zip(nodes, displacements)]
    pieces = [([top[n] for n in quad], "#eceff1", "#b0b6bc") for quad in quads]
    for i, j, kind in beams:
        low = [moved(nodes[n], displacements[n], DEPTH[kind]) for n in (j, i)]
        pieces.append(([top[i], top[j]] + low, BEAM_FILL[kind], "none"))
    pieces.sort(key=lambda piece: -sum(project(p)[2] for p in piece[0]))
    for points, fill, stroke in pieces:
        drawing.polygon([view(p) for p in points], fill, fill if stroke == "none" else stroke, 0.5)
    # the lower edges, over the webs
    for i, j, kind in beams:
        low = [view(moved(nodes[n], displacements[n], DEPTH[kind])) for n in (i, j)]
        drawing.line(low, "#1f5f9e" if kind == 0 else "#b5651d", 1.6 if kind == 0 else 1.0)
    length, width = nodes[-1][:2]
    outline = [(0, 0, 0), (length, 0, 0), (length, width, 0), (0, width, 0), (0, 0, 0)]
    drawing.line([view(p) for p in outline], INK, 1.2, "6 4")
    largest = max(-d[2] for d in displacements)
    drawing.text(40, 32, "Seen from below, displacements × %d (largest %.1f mm down)"
                 % (EXAGGERATION, largest), size=16, anchor="start", weight="bold")
    for row, (fill, edge, words) in enumerate((
            ("#8fb7dd", "#1f5f9e", "frame T 400×10 / 160×16"),
            ("#f2c48d", "#b5651d", "stiffener L 144×9 / 36×16"),
            ("#eceff1", "#b0b6bc", "plate 10"))):
        y = 470 + 22 * row
        drawing.polygon([(40, y - 10), (66, y - 10), (66, y + 2), (40, y + 2)], fill, edge, 1)
        drawing.text(74, y, words, anchor="start")
    drawing.line([(40, 532), (66, 532)], INK, 1.2, "6 4")
    drawing.text(74, 536, "undeformed outline", anchor="start")


def draw_plan(drawing, nodes, quads, beams, forces, stresses):
    for quad, stress in zip(quads, stresses):
        colour = COLOURS[min(int(stress / BAND), len(COLOURS) - 1)]
        drawing.polygon([plan(*nodes[n][:2]) for n in quad], colour, colour)
    length, width = nodes[-1][:2]
    for i, j, kind in beams:
        drawing.line([plan(*nodes[n][:2]) for n in (i, j)], INK, 2.2 if kind == 0 else 0.9,
                     "" if kind == 0 else "7 4")
    drawing.line([plan(*p) for p in ((0, 0), (length, 0), (length, width), (0, width), (0, 0))],
                 INK, 1.2)
    for n in forces:
        x, y = plan(*nodes[n][:2])
        drawing.items.append('<circle cx="%.1f" cy="%.1f" r="5" fill="white" stroke="%s" '
                             'stroke-width="2.2"/>' % (x, y, LOAD))
    number = {(x, y): row for row, (x, y, _) in enumerate(nodes)}
    for point in ((1200.0, 1800.0), (1200.0, 2100.0), (2400.0, 2100.0), (3600.0, 3000.0)):
        x, y = plan(*point)
        drawing.items.append('<circle cx="%.1f" cy="%.1f" r="3" fill="%s"/>' % (x, y, INK))
        drawing.items.append('<rect x="%.1f" y="%.1f" width="27" height="15" fill="white" '
                             'fill-opacity="0.85"/>' % (x + 5, y - 18))
        drawing.text(x + 7, y - 6, str(number[point]), size=12, anchor="start", weight="bold")
    left, low = plan(0, 0)
    right, high = plan(length, width)
    drawing.text(40, high - 28, "Von Mises stress of the plate, MPa: mean of an element, "
                 "the larger of its faces", size=16, anchor="start", weight="bold")
    drawing.dimension(left, low + 24, plan(2400, 0)[0], low + 24, "2400")
    drawing.dimension(left, low + 52, right, low + 52, "7200")
    drawing.dimension(left - 20, low, left - 20, plan(0, 600)[1], "600")
    drawing.dimension(left - 46, low, left - 46, high, "4200")
    x = right + 40
    for band, colour in enumerate(COLOURS):
        y = low - 24 * (band + 1)
        drawing.polygon([(x, y), (x + 26, y), (x + 26, y + 24), (x, y + 24)], colour, INK)
        drawing.text(x + 34, y + 28, "%g" % (BAND * band), anchor="start")
    drawing.text(x + 34, low - 24 * len(COLOURS) + 4, "%.0f, the largest" % max(stresses),
                 anchor="start")
    y = high + 14
    drawing.line([(x, y), (x + 30, y)], INK, 2.2)
    drawing.text(x + 38, y + 4, "frame", anchor="start")
    drawing.line([(x, y + 24), (x + 30, y + 24)], INK, 0.9, "7 4")
    drawing.text(x + 38, y + 28, "stiffener", anchor="start")
    drawing.items.append('<circle cx="%.1f" cy="%.1f" r="5" fill="white" stroke="%s" '
                         'stroke-width="2.2"/>' % (x + 15, y + 48, LOAD))
    drawing.text(x + 38, y + 52, "tyre, 15 kN", LOAD, anchor="start")
    drawing.text(x, y + 80, "Pressure 25 kN/m²", LOAD, anchor="start")
    drawing.text(x, y + 98, "on the whole deck", LOAD, anchor="start")
    drawing.text(x, y + 124, "Numbers: nodes", anchor="start")
    drawing.arrow(x + 4, y + 190, x + 50, y + 190, INK)
    drawing.arrow(x + 4, y + 190, x + 4, y + 144, INK)
    drawing.text(x + 60, y + 194, "x")
    drawing.text(x + 16, y + 152, "y")


def main():
    nodes, quads, beams, forces = read_model()
    drawing = Drawing(WIDTH, HEIGHT)
    draw_deformed(drawing, nodes, quads, beams, read_displacements())
    draw_plan(drawing, nodes, quads, beams, forces, read_equivalent_stresses())
    drawing.write("panel.svg")


if __name__ == "__main__":
    main()
