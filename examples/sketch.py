"""A sketch of an imported model: fem_solving.txt and import.json in the current folder.

The shells are filled in the colours of their groups, farther ones first, the beams are lines over
them. Parallel projection: x to the right and up, y to the left and up, z up.
"""

import json
from math import cos, radians, sin

from model_rows import read_nodes, read_rows
from svg import INK, Drawing

EDGE, BEAM, SUPPORT, LOAD = "#5f6368", "#c62828", "#1b5e20", "#1565c0"


class Sketch:
    def __init__(self, width, height, scale, origin, turn, lift):
        rows = read_rows()
        self.nodes = read_nodes(rows)
        self.shells = [self._numbers(row, "[") for row in rows("NELEM_S_4ND")]
        self.beams = [self._numbers(row, "<") for row in rows("NELEM_B")]
        with open("import.json", encoding="ascii") as file:
            self.groups = {group["name"]: group for group in json.load(file)["groups"]}
        self.drawing = Drawing(width, height, "round")
        self.scale, self.origin = scale, origin
        self.turn, self.lift = radians(turn), radians(lift)

    @staticmethod
    def _numbers(row, end):
        return tuple(int(v) for v in row.split(":")[1].split(end)[0].split(","))

    def place(self, point):
        """The point on the page, and its distance from the viewer."""
        x, y, z = point
        right = cos(self.turn) * x - sin(self.turn) * y
        back = sin(self.turn) * x + cos(self.turn) * y
        up = cos(self.lift) * z + sin(self.lift) * back
        depth = cos(self.lift) * back - sin(self.lift) * z
        return (self.origin[0] + self.scale * right, self.origin[1] - self.scale * up), depth

    def page(self, *point):
        return self.place(point)[0]

    def draw_shells(self, colours, opacity=1.0):
        """colours: of each group of shells."""
        pieces = []
        for name, colour in colours.items():
            for element in self.groups[name]["shells4"]:
                places = [self.place(self.nodes[n]) for n in self.shells[element]]
                depth = sum(depth for _, depth in places) / len(places)
                pieces.append((-depth, [page for page, _ in places], colour))
        items = self.drawing.items
        items.append('<g opacity="%g">' % opacity)
        for _, points, colour in sorted(pieces):
            self.drawing.polygon(points, colour, EDGE, 0.5)
        items.append("</g>")

    def draw_beams(self, width, colour=BEAM, dash=""):
        for ends in self.beams:
            self.drawing.line([self.page(*self.nodes[n]) for n in ends], colour, width, dash)

    def support(self, point, size=5):
        x, y = self.page(*point)
        self.drawing.polygon([(x, y), (x - size, y + 1.6 * size), (x + size, y + 1.6 * size)],
                             SUPPORT)

    def load(self, start, end, head=7):
        self.drawing.arrow(*self.page(*start), *self.page(*end), LOAD, 1.4, head)

    def label(self, point, words, dx=0, dy=0, colour=INK, anchor="middle"):
        x, y = self.page(*point)
        self.drawing.text(x + dx, y + dy, words, colour, anchor=anchor)

    def measure(self, start, end, words, dx=0, dy=16):
        """A line with arrows at both ends, the words beside its middle."""
        (x0, y0), (x1, y1) = self.page(*start), self.page(*end)
        mx, my = (x0 + x1) / 2, (y0 + y1) / 2
        self.drawing.arrow(mx, my, x0, y0, INK)
        self.drawing.arrow(mx, my, x1, y1, INK)
        self.drawing.text(mx + dx, my + dy, words)

    def axes(self, point, length):
        for axis, name in enumerate("xyz"):
            end = list(point)
            end[axis] += length
            self.drawing.arrow(*self.page(*point), *self.page(*end), INK)
            self.label([p + 1.25 * (e - p) for p, e in zip(point, end)], name, dy=4)
