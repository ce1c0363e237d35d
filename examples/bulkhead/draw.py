#!/usr/bin/env python3
"""Draws bulkhead.svg from the imported model in the current folder, seen from the water."""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True

from sketch import BEAM, LOAD, Sketch

WIDTH, HEIGHT, SPACING = 4800, 3000, 600


def main():
    sketch = Sketch(980, 630, 0.13, (200, 560), 24, 18)
    sketch.draw_shells({"PSHELL 1": "#cfd8dc"})
    # Dashed: they stand behind the plate.
    sketch.draw_beams(2.4, BEAM, "7 4")
    for j in range(0, HEIGHT, 500):
        length = 900 * (HEIGHT - j) / HEIGHT
        for x in (0, WIDTH / 2, WIDTH):
            sketch.load((x, -length, j), (x, 0, j))
    for x in (0, WIDTH / 2, WIDTH):
        sketch.drawing.line([sketch.page(x, -900, 0), sketch.page(x, 0, HEIGHT)], LOAD, 1)
    for x in range(SPACING, WIDTH, SPACING):
        sketch.load((x, 0, HEIGHT + 450), (x, 0, HEIGHT))
        sketch.support((x, 0, 0), 6)
    for x in (0, WIDTH):
        sketch.support((x, 0, 0), 6)
    sketch.label((WIDTH / 2, 0, HEIGHT + 450), "40 kN on each stiffener", 0, -14, LOAD)
    sketch.label((0, -900, 0), "water, 30.2 kN/m² at the bottom", -105, 20, LOAD)
    sketch.label((WIDTH, 0, HEIGHT / 2), "seven stiffeners,", 14, -130, BEAM, "start")
    sketch.label((WIDTH, 0, HEIGHT / 2), "on the dry side", 14, -114, BEAM, "start")
    sketch.measure((0, -1500, 0), (WIDTH, -1500, 0), "4800", 20, 20)
    sketch.measure((WIDTH + 1250, 0, 0), (WIDTH + 1250, 0, HEIGHT), "3000", 28, 4)
    sketch.measure((SPACING, 0, HEIGHT + 120), (2 * SPACING, 0, HEIGHT + 120), "600", -4, -6)
    sketch.axes((-900, 0, 1200), 400)
    sketch.drawing.write("bulkhead.svg")


if __name__ == "__main__":
    main()
