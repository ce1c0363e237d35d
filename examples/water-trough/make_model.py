#!/usr/bin/env python3
"""Writes fem_solving.txt of the water trough into the current folder.

Units: N, m, Pa. x points along the trough, y across it, z upwards from the bottom plate's mid-plane.
"""

# Geometry, of the mid-planes ------------------------------------------------------------------
SPAN = 10.8
BOTTOM_HALF_WIDTH = 0.6
TOP_HALF_WIDTH = 1.0
DEPTH = 1.2
RIM_WIDTH = 0.35       # outwards from the top of a wall
THICKNESS = 0.16       # of all plates

# Mesh -----------------------------------------------------------------------------------------
SPAN_ELEMENTS = 36
BOTTOM_ELEMENTS = 6
WALL_ELEMENTS = 6
RIM_ELEMENTS = 2

# Material: reinforced concrete, uncracked -------------------------------------------------------
E = 33e9
MU = 0.2
DENSITY = 2500.0       # kg/m3; not used by the solution

# Loads ----------------------------------------------------------------------------------------
WATER_WEIGHT = 9810.0      # N/m3; the trough is filled up to the mid-plane of its rims
CONCRETE_WEIGHT = 25000.0  # N/m3


def half_width(level):
    """Of the trough's inside at a node level of the walls."""
    return BOTTOM_HALF_WIDTH + (TOP_HALF_WIDTH - BOTTOM_HALF_WIDTH) * level / WALL_ELEMENTS


def profile():
    """The cross-section's (y, z) from the rim at +y down, across the bottom, and up at -y."""
    rim = [(TOP_HALF_WIDTH + RIM_WIDTH * (1 - k / RIM_ELEMENTS), DEPTH) for k in range(RIM_ELEMENTS)]
    wall = [(half_width(k), DEPTH * k / WALL_ELEMENTS) for k in range(WALL_ELEMENTS, 0, -1)]
    bottom = [(BOTTOM_HALF_WIDTH * (1 - 2 * k / BOTTOM_ELEMENTS), 0.0)
              for k in range(BOTTOM_ELEMENTS // 2)]
    half = rim + wall + bottom
    return half + [(0.0, 0.0)] + [(-y, z) for y, z in reversed(half)]


WALL_TOP = RIM_ELEMENTS                      # place in the profile, at +y
CORNER = WALL_TOP + WALL_ELEMENTS            # bottom corner at +y
OTHER_CORNER = CORNER + BOTTOM_ELEMENTS
OTHER_WALL_TOP = OTHER_CORNER + WALL_ELEMENTS
MIDDLE = CORNER + BOTTOM_ELEMENTS // 2


class Model:
    def __init__(self):
        self.nodes = []
        self.rings = []            # per cross-section, the nodes along the profile
        self.quads = []
        self.triangles = []
        self.quad_loads = []       # element, pressures at its nodes 1, 2, 3
        self.triangle_loads = []
        self.restraints = []       # node, six flags
        self.weight = {}           # node: N

    def add_node(self, x, y, z):
        self.nodes.append((round(x, 6), round(y, 6), round(z, 6)))
        return len(self.nodes) - 1

    def add_ring(self, x):
        self.rings.append([self.add_node(x, y, z) for y, z in profile()])

    def add_weight(self, corners, area):
        for node in corners:
            share = CONCRETE_WEIGHT * THICKNESS * area / len(corners)
            self.weight[node] = self.weight.get(node, 0.0) + share

    def water_pressures(self, corners):
        return tuple(WATER_WEIGHT * (DEPTH - self.nodes[n][2]) for n in corners[:3])


def end_wall_nodes(model, x):
    """The inner nodes of an end wall, level by level, five on each."""
    return {(level, c): model.add_node(x, half_width(level) * (1 - 2 * c / BOTTOM_ELEMENTS),
                                       DEPTH * level / WALL_ELEMENTS)
            for level in range(1, WALL_ELEMENTS + 1) for c in range(1, BOTTOM_ELEMENTS)}


def add_trough(model):
    """Rectangles. All normals point outwards, away from the water; those of the rims downwards."""
    for a, b in zip(model.rings, model.rings[1:]):
        for s in range(len(a) - 1):
            corners = (a[s], b[s], b[s + 1], a[s + 1])
            (x0, y0, z0), (_, y1, z1) = model.nodes[a[s]], model.nodes[a[s + 1]]
            area = (model.nodes[b[s]][0] - x0) * ((y1 - y0) ** 2 + (z1 - z0) ** 2) ** 0.5
            model.add_weight(corners, area)
            if WALL_TOP <= s < OTHER_WALL_TOP:
                model.quad_loads.append((len(model.quads), model.water_pressures(corners)))
            model.quads.append(corners)


def add_end_wall(model, ring, inner, outwards):
    """Triangles, mirrored about the middle. outwards: -1 or 1, the normal's direction along x."""
    def node(level, c):
        if level == 0:
            return ring[CORNER + c]
        if c == 0:
            return ring[CORNER - level]
        if c == BOTTOM_ELEMENTS:
            return ring[OTHER_CORNER + level]
        return inner[level, c]

    for level in range(WALL_ELEMENTS):
        for c in range(BOTTOM_ELEMENTS):
            p, q = node(level, c), node(level, c + 1)
            r, s = node(level + 1, c + 1), node(level + 1, c)
            # p, q, r, s: clockwise as seen against x
            halves = ((p, q, r), (p, r, s)) if 2 * c < BOTTOM_ELEMENTS else ((p, q, s), (q, r, s))
            for corners in halves:
                (_, y0, z0), (_, y1, z1), (_, y2, z2) = (model.nodes[n] for n in corners)
                area = abs((y1 - y0) * (z2 - z0) - (y2 - y0) * (z1 - z0)) / 2
                if outwards > 0:
                    corners = (corners[0], corners[2], corners[1])
                model.add_weight(corners, area)
                model.triangle_loads.append((len(model.triangles), model.water_pressures(corners)))
                model.triangles.append(corners)


def add_supports(model):
    """Bearings at the four bottom corners; the middle of the bottom guides, at x = 0 in x too."""
    for ring, ux in ((model.rings[0], 1), (model.rings[-1], 0)):
        model.restraints.append((ring[CORNER], (0, 0, 1, 0, 0, 0)))
        model.restraints.append((ring[MIDDLE], (ux, 1, 0, 0, 0, 0)))
        model.restraints.append((ring[OTHER_CORNER], (0, 0, 1, 0, 0, 0)))


def build():
    model = Model()
    first = end_wall_nodes(model, 0.0)
    for k in range(SPAN_ELEMENTS + 1):
        model.add_ring(SPAN * k / SPAN_ELEMENTS)
    last = end_wall_nodes(model, SPAN)
    add_trough(model)
    add_end_wall(model, model.rings[0], first, -1)
    add_end_wall(model, model.rings[-1], last, 1)
    add_supports(model)
    return model


def join(values):
    return ",".join("%.10g" % value for value in values)


def model_lines(model):
    yield "### Toln_Korvex release=3.0 ###"
    yield "Number of materials:NMT=1"
    yield from ("#0:", "E=%.10g" % E, "Mu=%.10g" % MU, "Density=%.10g" % DENSITY)
    yield "Number of shell thicknesses:NTK=1"
    yield from ("#0:", "TK=%.10g" % THICKNESS)
    yield "Number of T_beam sections:NTBS=0"
    yield "Number of L_beam sections:NLBS=0"
    yield "Number of C_beam sections:NCBS=0"
    yield "Number of nodal points:NPOIN=%d" % len(model.nodes)
    for row, point in enumerate(model.nodes):
        yield "%d:%s" % (row, join(point))
    for kind, key, elements in (("four", "4ND", model.quads), ("three", "3ND", model.triangles)):
        yield "Number of %s-nodes shell elements:NELEM_S_%s=%d" % (kind, key, len(elements))
        for row, corners in enumerate(elements):
            yield "%d:%s[0,0]" % (row, join(corners))
    yield "Number of beam elements:NELEM_B=0"
    yield "Number of restricted nodal points:NRN=%d" % len(model.restraints)
    for node, flags in model.restraints:
        yield "%d: %d %d %d %d %d %d" % ((node,) + flags)
    yield "Number of forces:NFOR=%d" % len(model.weight)
    for node in sorted(model.weight):
        yield "%d<0,0,%.10g,0,0,0>" % (node, -model.weight[node])
    for kind, key, loads in (("four", "4ND", model.quad_loads),
                             ("three", "3ND", model.triangle_loads)):
        yield ("Number of distributed loads on %s-nodes shell elements:NDL_S_%s=%d"
               % (kind, key, len(loads)))
        for element, pressures in loads:
            yield "%d:%s" % (element, join(pressures))
    yield "Number of distributed loads on beam elements:NDL_B=0"


def main():
    with open("fem_solving.txt", "w", encoding="ascii", newline="\n") as file:
        for line in model_lines(build()):
            file.write(line + "\n")


if __name__ == "__main__":
    main()
