#!/usr/bin/env python3
"""Draws girder.svg from the imported model in the current folder.

The upper flange is left out over the first two bays, so that diaphragms and stiffeners are seen.
"""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True

from sketch import Sketch

LENGTH, HALF, HEIGHT = 12000, 1000, 1000
OPEN = 6000  # the upper flange is drawn from here on


def main():
    sketch = Sketch(1080, 500, 0.068, (170, 375), 28, 24)
    upper = sketch.groups["upper flange"]
    upper["shells4"] = [e for e in upper["shells4"]
                        if min(sketch.nodes[n][0] for n in sketch.shells[e]) >= OPEN]
    sketch.draw_shells({"lower flange": "#cfd8dc", "webs": "#b0c4de", "diaphragms": "#ffe0b2"}, 0.6)
    sketch.draw_beams(2.0)
    sketch.draw_shells({"upper flange": "#dce8f2"}, 0.75)
    for x in (0, LENGTH):
        for y in range(-HALF, HALF + 1, 250):
            sketch.support((x, y, 0))
    for x in range(0, LENGTH + 1, 1500):
        for y in (-HALF, 0, HALF):
            sketch.load((x, y, HEIGHT + 650), (x, y, HEIGHT))
    sketch.label((LENGTH / 2, HALF, HEIGHT + 800), "20 kN/m²", -70, -18, "#1565c0")
    sketch.measure((0, -1800, 0), (LENGTH, -1800, 0), "12000", 14, 22)
    sketch.measure((-700, -HALF, 0), (-700, HALF, 0), "2000", -26, 10)
    sketch.measure((12500, -HALF, 0), (12500, -HALF, HEIGHT), "1000", 28, 4)
    sketch.label((0, -HALF, 0), "fixed bearing", -50, 24, "#1b5e20")
    sketch.label((LENGTH, -HALF, 0), "free bearing", 70, 40, "#1b5e20")
    sketch.label((3000, 0, HEIGHT), "stiffeners", -140, -66, "#c62828")
    sketch.axes((1200, -4200, 0), 900)
    sketch.drawing.write("girder.svg")


if __name__ == "__main__":
    main()
