#!/usr/bin/env python3
"""Draws gantry.svg from the imported model in the current folder."""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True

from sketch import BEAM, LOAD, Sketch

HEIGHT, SPAN, LEFT, RIGHT, DEPTH = 6000, 10000, 3000, 7000, 2000


def main():
    sketch = Sketch(1020, 600, 0.072, (120, 540), 20, 16)
    sketch.draw_beams(3.0)
    sketch.draw_shells({"SIGN": "#cfe3d4"}, 0.85)
    for x in (0, SPAN):
        sketch.support((x, 0, 0), 9)
        for z in range(0, HEIGHT + 1, 1000):
            sketch.load((x, -700, z), (x, 0, z))
    for x in range(LEFT, RIGHT + 1, 1000):
        for z in range(HEIGHT - DEPTH, HEIGHT + 1, 1000):
            sketch.load((x, -1100, z), (x, 0, z))
    sketch.label((RIGHT, -1100, HEIGHT - DEPTH / 2), "wind 1.2 kN/m²", 6, 12, LOAD, "start")
    sketch.label((SPAN, -700, HEIGHT / 2), "0.3 kN/m", -10, 22, LOAD, "start")
    sketch.label((SPAN, 0, 4500), "tube 323.9 × 10", 12, 0, BEAM, "start")
    sketch.label((1500, 0, HEIGHT), "tube 273 × 8", -20, -14, BEAM)
    sketch.label((SPAN / 2, 0, HEIGHT), "sign: aluminium 4, ribs 120 × 8", 0, -22)
    sketch.measure((0, -1500, 0), (SPAN, -1500, 0), "10000", 10, 22)
    sketch.measure((SPAN + 1900, 0, 0), (SPAN + 1900, 0, HEIGHT), "6000", 30, 4)
    sketch.measure((LEFT, 0, 3600), (RIGHT, 0, 3600), "4000", 20, 22)
    sketch.measure((2500, 0, HEIGHT - DEPTH), (2500, 0, HEIGHT), "2000", -26, 4)
    sketch.axes((-1300, 0, 3000), 700)
    sketch.drawing.write("gantry.svg")


if __name__ == "__main__":
    main()
