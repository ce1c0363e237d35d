#!/usr/bin/env python3
"""Draws tower.svg from fem_solving.txt and Node_Dis.txt, all in the current folder.

Elevation and oblique view carry the deformed shape on top of the undeformed one; the plan shows the
deck's beams by section. The script knows the file layout only as far as this example needs it.
"""

import os
import re
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True

from model_rows import read_nodes, read_rows

EXAGGERATION = 60
UNDEFORMED, DEFORMED, INK, LOAD = "#9aa0a6", "#c62828", "#202124", "#1257a8"
DECK_STYLES = {  # (BeamSecType, BeamSecIndex): colour, line width, name
    (0, 0): ("#1b5e20", 6, "main girder T 240×8 / 120×12"),
    (0, 1): ("#6a1b9a", 4.5, "secondary girder T 200×8 / 100×10"),
    (1, 0): ("#00838f", 2, "stiffener L 92×8 / 65×8"),
    (1, 1): ("#e65100", 3, "edge angle L 140×10 / 90×10"),
}
DECK_LEVEL = 24000.0
WIDTH, HEIGHT = 1160, 870


def read_model():
    rows = read_rows()
    nodes = read_nodes(rows)
    beams = []
    for row in rows("NELEM_B"):
        i, j = row.split(":")[1].split("<")[0].split(",")
        kind = re.search(r"BeamSecType=(\d+),BeamSecIndex=(\d+)", row)
        beams.append((int(i), int(j), (int(kind[1]), int(kind[2]))))
    return nodes, beams


def read_displacements():
    with open("Node_Dis.txt", encoding="ascii") as file:
        return [tuple(float(v) for v in row.split(":")[1].split()[:3])
                for row in file.read().splitlines()[1:]]


def elevation(point):
    """Seen along +y: x to the right."""
    x, _, z = point
    return 285 + 0.0285 * x, 800 - 0.0265 * z


def oblique(point):
    x, y, z = point
    across, away = 0.92 * x + 0.39 * y, 0.92 * y - 0.39 * x
    return 640 + 0.0265 * across, 800 - 0.0265 * (0.97 * z + 0.24 * away)


def plan(point):
    x, y, _ = point
    return 960 + 0.058 * x, 260 - 0.058 * y


class Drawing:
    def __init__(self):
        self.items = []

    def path(self, segments, colour, width, dash=""):
        d = "".join("M%.1f %.1fL%.1f %.1f" % (*a, *b) for a, b in segments)
        extra = ' stroke-dasharray="%s"' % dash if dash else ""
        self.items.append('<path d="%s" fill="none" stroke="%s" stroke-width="%g" '
                          'stroke-linecap="round"%s/>' % (d, colour, width, extra))

    def text(self, x, y, words, colour=INK, size=13, anchor="middle", weight="normal", turn=0):
        extra = ' transform="rotate(%g %.1f %.1f)"' % (turn, x, y) if turn else ""
        self.items.append('<text x="%.1f" y="%.1f" fill="%s" font-size="%g" text-anchor="%s" '
                          'font-weight="%s"%s>%s</text>'
                          % (x, y, colour, size, anchor, weight, extra, words))

    def arrow(self, x0, y0, x1, y1, colour, width=1.6, head=8):
        """From the first to the second point, with its head at the second."""
        length = ((x1 - x0) ** 2 + (y1 - y0) ** 2) ** 0.5
        ux, uy = (x1 - x0) / length, (y1 - y0) / length
        bx, by = x1 - head * ux, y1 - head * uy
        self.path([((x0, y0), (bx, by))], colour, width)
        h = 0.4 * head
        self.items.append('<path d="M%.1f %.1fL%.1f %.1fL%.1f %.1fZ" fill="%s"/>'
                          % (x1, y1, bx - h * uy, by + h * ux, bx + h * uy, by - h * ux, colour))

    def dimension(self, x0, y0, x1, y1, words):
        """A level or upright dimension line with its label at the middle."""
        mx, my = (x0 + x1) / 2, (y0 + y1) / 2
        self.arrow(mx, my, x0, y0, INK, 0.9, 7)
        self.arrow(mx, my, x1, y1, INK, 0.9, 7)
        if y0 == y1:
            self.text(mx, my - 5, words)
        else:
            self.text(mx - 5, my, words, turn=-90)

    def dot(self, x, y):
        self.items.append('<circle cx="%.1f" cy="%.1f" r="5.5" fill="%s" '
                          'stroke="white" stroke-width="1.5"/>' % (x, y, INK))

    def write(self):
        with open("tower.svg", "w", encoding="utf-8", newline="\n") as file:
            file.write('<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" '
                       'viewBox="0 0 %d %d" font-family="DejaVu Sans, Arial, sans-serif">\n'
                       '<rect width="%d" height="%d" fill="white"/>\n' % ((WIDTH, HEIGHT) * 3))
            file.write("\n".join(self.items))
            file.write("\n</svg>\n")


def draw_shapes(drawing, nodes, moved, beams, view):
    drawing.path([(view(nodes[i]), view(nodes[j])) for i, j, _ in beams], UNDEFORMED, 1.1)
    drawing.path([(view(moved[i]), view(moved[j])) for i, j, _ in beams], DEFORMED, 1.0)


def draw_supports(drawing, view, feet):
    for foot in feet:
        x, y = view(foot)
        drawing.path([((x - 11, y), (x + 11, y))], INK, 2)
        drawing.path([((x + s, y), (x + s - 6, y + 7)) for s in (-6, 0, 6, 12)], INK, 0.9)


def draw_elevation(drawing, nodes, moved, beams):
    draw_shapes(drawing, nodes, moved, beams, elevation)
    feet = nodes[:4]
    draw_supports(drawing, elevation, feet[:2])
    for z in range(3000, 24001, 3000):
        x, y = elevation((-2400 + z / 20, 0, z))
        top = z == 24000
        drawing.arrow(x - (70 if top else 42), y, x - 4, y, LOAD)
    x, y = elevation((-1200, 0, 24000))
    drawing.text(x - 74, y + 4, "8 kN", LOAD, anchor="end")
    drawing.text(x - 74, y + 19, "per node", LOAD, anchor="end")
    x, y = elevation((-1800, 0, 12000))
    drawing.text(x - 46, y - 2, "3 kN", LOAD, anchor="end")
    drawing.text(x - 46, y + 13, "per node", LOAD, anchor="end")
    drawing.text(x - 46, y + 30, "(each level)", LOAD, anchor="end")

    left, y = elevation((-2400, 0, 24000))
    right, _ = elevation((2400, 0, 24000))
    drawing.path([((left, y - 34), (right, y - 34))], LOAD, 1.2)
    for k in range(9):
        x = left + (right - left) * k / 8
        drawing.arrow(x, y - 34, x, y - 12, LOAD, 1.1, 6)
    drawing.text(left - 8, y - 30, "5 kN/m²", LOAD, anchor="end")
    middle = (left + right) / 2
    drawing.arrow(middle, y - 66, middle, y - 12, LOAD, 2.6, 11)
    drawing.text(middle + 10, y - 50, "equipment 40 kN", LOAD, anchor="start")

    foot_left, foot_y = elevation((-2400, 0, 0))
    foot_right, _ = elevation((2400, 0, 0))
    drawing.dimension(foot_left, foot_y + 38, foot_right, foot_y + 38, "4800")
    drawing.dimension(foot_right + 62, foot_y, foot_right + 62, y, "8 × 3000 = 24000")
    drawing.path([((foot_right + 16, foot_y), (foot_right + 68, foot_y)),
                  ((right + 46, y), (foot_right + 68, y))], INK, 0.6)
    drawing.text(foot_left - 16, foot_y + 4, "0, 3", size=12, anchor="end")
    drawing.text(foot_right + 18, foot_y + 16, "1, 2", size=12, anchor="start")
    drawing.text(285, 30, "Elevation", size=16, weight="bold")


def draw_oblique(drawing, nodes, moved, beams):
    draw_shapes(drawing, nodes, moved, beams, oblique)
    draw_supports(drawing, oblique, nodes[:4])
    for number in range(4):
        x, y = oblique(nodes[number])
        right = number in (1, 2)
        drawing.text(x + (16 if right else -16), y + 4, str(number), size=12,
                     anchor="start" if right else "end")
    drawing.text(640, 30, "Oblique view", size=16, weight="bold")


def draw_plan(drawing, nodes, beams):
    deck = [b for b in beams if nodes[b[0]][2] == nodes[b[1]][2] == DECK_LEVEL]
    for style in ((1, 0), (1, 1), (0, 1), (0, 0)):
        colour, width, _ = DECK_STYLES[style]
        drawing.path([(plan(nodes[i]), plan(nodes[j])) for i, j, s in deck if s == style],
                     colour, width)
    for number, (x, y, z) in enumerate(nodes):
        if z != DECK_LEVEL:
            continue
        px, py = plan((x, y, z))
        if abs(x) == 1200 and abs(y) == 1200:
            drawing.dot(px, py)
        if (abs(x), abs(y)) in ((1200, 1200), (0, 0), (0, 600), (2400, 2400)):
            drawing.items.append('<rect x="%.1f" y="%.1f" width="27" height="15" fill="white" '
                                 'fill-opacity="0.85"/>' % (px + 6, py - 19))
            drawing.text(px + 8, py - 7, str(number), size=12, anchor="start", weight="bold")
        if (abs(x), abs(y)) == (0, 600):
            drawing.items.append('<circle cx="%.1f" cy="%.1f" r="6" fill="none" stroke="%s" '
                                 'stroke-width="2.4"/>' % (px, py, LOAD))
    left, low = plan((-2400, -2400, 0))
    right, _ = plan((2400, -2400, 0))
    inner_left, _ = plan((-1200, 0, 0))
    inner_right, _ = plan((1200, 0, 0))
    drawing.dimension(inner_left, low + 32, inner_right, low + 32, "2400")
    drawing.dimension(left, low + 58, right, low + 58, "4800")
    drawing.path([((x, low + 8), (x, low + 38)) for x in (inner_left, inner_right)], INK, 0.6)
    drawing.path([((x, low + 8), (x, low + 64)) for x in (left, right)], INK, 0.6)
    drawing.arrow(left - 42, 260, left - 8, 260, LOAD)
    drawing.text(left - 26, 250, "wind", LOAD)
    drawing.text(960, 30, "Deck plan", size=16, weight="bold")
    return low


def draw_legend(drawing, top, largest):
    y = top
    for style in ((0, 0), (0, 1), (1, 0), (1, 1)):
        colour, width, name = DECK_STYLES[style]
        drawing.path([((815, y), (850, y))], colour, width)
        drawing.text(860, y + 4, name, anchor="start")
        y += 22
    drawing.dot(832, y)
    drawing.text(860, y + 4, "leg top", anchor="start")
    y += 22
    drawing.items.append('<circle cx="832" cy="%.1f" r="6" fill="none" stroke="%s" '
                         'stroke-width="2.4"/>' % (y, LOAD))
    drawing.text(860, y + 4, "equipment, 20 kN each", anchor="start")
    y += 40
    drawing.path([((815, y), (850, y))], UNDEFORMED, 1.6)
    drawing.text(860, y + 4, "undeformed", anchor="start")
    y += 22
    drawing.path([((815, y), (850, y))], DEFORMED, 1.6)
    drawing.text(860, y + 4, "displacements × %d (largest ux %.1f mm)" % (EXAGGERATION, largest),
                 anchor="start")
    y += 40
    x = 830
    drawing.arrow(x, y + 46, x + 44, y + 46, INK)
    drawing.arrow(x, y + 46, x, y + 2, INK)
    drawing.text(x + 52, y + 50, "x", anchor="start")
    drawing.text(x - 10, y + 8, "z", anchor="end")
    drawing.text(x + 90, y + 18, "Dimensions in mm; numbers", anchor="start")
    drawing.text(x + 90, y + 36, "at nodes are those of the", anchor="start")
    drawing.text(x + 90, y + 54, "model file. Own weight, at the", anchor="start")
    drawing.text(x + 90, y + 72, "leg nodes, is not drawn.", anchor="start")
    drawing.text(x - 4, y + 64, "elevation", size=11, anchor="start")


def main():
    nodes, beams = read_model()
    displacements = read_displacements()
    moved = [tuple(p + EXAGGERATION * u for p, u in zip(point, d))
             for point, d in zip(nodes, displacements)]
    drawing = Drawing()
    draw_elevation(drawing, nodes, moved, beams)
    draw_oblique(drawing, nodes, moved, beams)
    low = draw_plan(drawing, nodes, beams)
    draw_legend(drawing, low + 100, max(abs(d[0]) for d in displacements))
    drawing.write()


if __name__ == "__main__":
    main()
