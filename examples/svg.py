"""An SVG drawing on white: the few shapes that the examples' drawings are made of.

Coordinates are those of the page, y downwards, in pixels.
"""

from math import hypot

INK = "#202124"


class Drawing:
    def __init__(self, width, height, join=""):
        self.width, self.height = width, height
        self.join = ' stroke-linejoin="%s"' % join if join else ""  # of all polygons
        self.items = []

    def polygon(self, points, fill, stroke="none", width=0.4):
        d = "M" + "L".join("%.1f %.1f" % p for p in points) + "Z"
        self.items.append('<path d="%s" fill="%s" stroke="%s" stroke-width="%g"%s/>'
                          % (d, fill, stroke, width, self.join))

    def line(self, points, colour, width, dash=""):
        d = "M" + "L".join("%.1f %.1f" % p for p in points)
        extra = ' stroke-dasharray="%s"' % dash if dash else ""
        self.items.append('<path d="%s" fill="none" stroke="%s" stroke-width="%g"%s/>'
                          % (d, colour, width, extra))

    def text(self, x, y, words, colour=INK, size=13, anchor="middle", weight="normal", turn=0):
        extra = ' transform="rotate(%g %.1f %.1f)"' % (turn, x, y) if turn else ""
        self.items.append('<text x="%.1f" y="%.1f" fill="%s" font-size="%g" text-anchor="%s" '
                          'font-weight="%s"%s>%s</text>'
                          % (x, y, colour, size, anchor, weight, extra, words))

    def arrow(self, x0, y0, x1, y1, colour, width=1.0, head=7):
        length = hypot(x1 - x0, y1 - y0)
        ux, uy = (x1 - x0) / length, (y1 - y0) / length
        bx, by, h = x1 - head * ux, y1 - head * uy, 0.4 * head
        self.line([(x0, y0), (bx, by)], colour, width)
        self.polygon([(x1, y1), (bx - h * uy, by + h * ux), (bx + h * uy, by - h * ux)], colour)

    def dimension(self, x0, y0, x1, y1, words):
        mx, my = (x0 + x1) / 2, (y0 + y1) / 2
        self.arrow(mx, my, x0, y0, INK)
        self.arrow(mx, my, x1, y1, INK)
        if y0 == y1:
            self.text(mx, my - 5, words)
        else:
            self.text(mx - 6, my, words, turn=-90)

    def write(self, name):
        with open(name, "w", encoding="utf-8", newline="\n") as file:
            file.write('<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" '
                       'viewBox="0 0 %d %d" font-family="DejaVu Sans, Arial, sans-serif">\n'
                       '<rect width="%d" height="%d" fill="white"/>\n'
                       % ((self.width, self.height) * 3))
            file.write("\n".join(self.items))
            file.write("\n</svg>\n")
