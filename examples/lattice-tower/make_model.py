#!/usr/bin/env python3
"""Writes fem_solving.txt of the lattice tower into the current folder.

Units: N, mm, MPa. x points downwind, z upwards; the origin lies at foot level on the tower's axis.
"""

# Geometry -------------------------------------------------------------------------------------
PANELS = 8
PANEL_HEIGHT = 3000.0
BASE_HALF_WIDTH = 2400.0  # leg axis to tower axis at the feet
TOP_HALF_WIDTH = 1200.0   # the same at the deck
DECK_X = (-2400.0, -1200.0, 0.0, 1200.0, 2400.0)  # lines of the beams along y
DECK_Y = (-2400.0, -1800.0, -1200.0, -600.0, 0.0, 600.0, 1200.0, 1800.0, 2400.0)  # along x

# Material -------------------------------------------------------------------------------------
E = 206000.0
MU = 0.3
DENSITY = 7.85e-9  # t/mm3; not used by the solution

# Sections -------------------------------------------------------------------------------------
T, L, TUBE = 0, 1, 2  # BeamSecType

# Tubes: name, outer diameter, wall thickness
TUBES = (
    ("lower leg", 114.3, 6.3),
    ("upper leg", 88.9, 5.0),
    ("horizontal", 76.1, 4.0),
    ("diagonal", 60.3, 3.2),
)
LOWER_LEG, UPPER_LEG, HORIZONTAL, DIAGONAL = range(4)
LOWER_LEG_PANELS = 4

# T and L sections: name, Hw, Tw, Bf, Tf
T_SECTIONS = (
    ("main girder", 240.0, 8.0, 120.0, 12.0),
    ("secondary girder", 200.0, 8.0, 100.0, 10.0),
)
MAIN_GIRDER, SECONDARY_GIRDER = range(2)
L_SECTIONS = (
    ("stiffener", 92.0, 8.0, 65.0, 8.0),
    ("edge angle", 140.0, 10.0, 90.0, 10.0),
)
STIFFENER, EDGE_ANGLE = range(2)
DECK_DEPTH = 252.0  # the flanges of all deck beams lie flush with those of the main girders

# Loads ----------------------------------------------------------------------------------------
DECK_PRESSURE = 0.005             # N/mm2, that is 5 kN/m2
EQUIPMENT_WEIGHT = 40000.0        # in equal parts on EQUIPMENT_POINTS
EQUIPMENT_POINTS = ((0.0, -600.0), (0.0, 600.0))
WIND_PER_LEVEL_NODE = 3000.0      # on each windward leg at every level between foot and deck
WIND_PER_DECK_NODE = 8000.0       # on each windward leg top
WEIGHT_PER_LEVEL_NODE = 1200.0    # own weight, on each leg at every level between foot and deck
WEIGHT_PER_DECK_NODE = 4000.0     # own weight of deck and upper half panel, on each leg top


class Model:
    def __init__(self):
        self.nodes = []
        self.node_at = {}
        self.beams = []
        self.restraints = []
        self.forces = {}  # node: [Fx, Fy, Fz]
        self.line_loads = []

    def add_node(self, x, y, z):
        point = (round(x, 3) + 0.0, round(y, 3) + 0.0, round(z, 3) + 0.0)
        if point not in self.node_at:
            self.node_at[point] = len(self.nodes)
            self.nodes.append(point)
        return self.node_at[point]

    def add_beam(self, i, j, orientation, kind, section, offset=0.0, mirrored=False):
        self.beams.append((i, j, orientation, kind, section, offset, mirrored))
        return len(self.beams) - 1

    def add_tube(self, i, j, section):
        a, b = self.nodes[i], self.nodes[j]
        steep = abs(b[2] - a[2]) > 0.95 * sum((q - p) ** 2 for p, q in zip(a, b)) ** 0.5
        self.add_beam(i, j, (1, 0, 0) if steep else (0, 0, 1), TUBE, section)

    def add_force(self, node, fx, fy, fz):
        total = self.forces.setdefault(node, [0.0, 0.0, 0.0])
        for d, value in enumerate((fx, fy, fz)):
            total[d] += value


def half_width(z):
    height = PANELS * PANEL_HEIGHT
    return BASE_HALF_WIDTH + (TOP_HALF_WIDTH - BASE_HALF_WIDTH) * z / height


def ring(w):
    """The corners of a square of half width w, counter-clockwise from -x, -y."""
    return ((-w, -w), (w, -w), (w, w), (-w, w))


def add_panel(model, k):
    """The legs, diagonals and upper horizontals of panel k; its lower corners exist already."""
    z0, z1 = k * PANEL_HEIGHT, (k + 1) * PANEL_HEIGHT
    w0, w1 = half_width(z0), half_width(z1)
    lower = [model.add_node(x, y, z0) for x, y in ring(w0)]
    zc = z0 + PANEL_HEIGHT * w0 / (w0 + w1)  # where the two diagonals of a face cross
    wc = half_width(zc)
    crossings = [model.add_node(x, y, zc) for x, y in ((0, -wc), (wc, 0), (0, wc), (-wc, 0))]
    last = k == PANELS - 1
    if last:
        add_deck_nodes(model)
    upper = [model.add_node(x, y, z1) for x, y in ring(w1)]

    for i, j in zip(lower, upper):
        model.add_tube(i, j, LOWER_LEG if k < LOWER_LEG_PANELS else UPPER_LEG)
    for face, crossing in enumerate(crossings):
        a, b = face, (face + 1) % 4
        for i, j in ((lower[a], crossing), (crossing, upper[b]),
                     (lower[b], crossing), (crossing, upper[a])):
            model.add_tube(i, j, DIAGONAL)
    if last:
        return  # the main girders tie the leg tops together

    middles = [model.add_node(x, y, z1) for x, y in ((0, -w1), (w1, 0), (0, w1), (-w1, 0))]
    for face, middle in enumerate(middles):
        model.add_tube(upper[face], middle, HORIZONTAL)
        model.add_tube(middle, upper[(face + 1) % 4], HORIZONTAL)
    for face in range(4):  # plan bracing from middle to middle
        model.add_tube(middles[face], middles[(face + 1) % 4], DIAGONAL)


def deck_node(model, x, y):
    return model.add_node(x, y, PANELS * PANEL_HEIGHT)


def add_deck_nodes(model):
    for y in DECK_Y:
        for x in DECK_X:
            deck_node(model, x, y)


def deck_beam_kind(distance, girder_line, edge_line):
    """Type, section and offset of the deck beam at this distance from the tower's axis."""
    if distance == girder_line:
        kind, section = T, MAIN_GIRDER
    elif distance == 0.0:
        kind, section = T, SECONDARY_GIRDER
    elif distance == edge_line:
        kind, section = L, EDGE_ANGLE
    else:
        kind, section = L, STIFFENER
    _, Hw, _, _, Tf = (T_SECTIONS if kind == T else L_SECTIONS)[section]
    return kind, section, DECK_DEPTH - Hw - Tf


def add_deck(model):
    """Webs stand upright: local z is global z. The flange of an L section points inwards.

    Local y is global y for a beam along x, and global -x for a beam along y.
    """
    up = (0, 0, 1)
    for y in DECK_Y:
        kind, section, offset = deck_beam_kind(abs(y), TOP_HALF_WIDTH, DECK_Y[-1])
        width = 600.0 if abs(y) < DECK_Y[-1] else 300.0  # of the strip that the beam carries
        for xa, xb in zip(DECK_X, DECK_X[1:]):
            beam = model.add_beam(deck_node(model, xa, y), deck_node(model, xb, y), up,
                                  kind, section, offset, kind == L and y > 0)
            model.line_loads.append((beam, -DECK_PRESSURE * width))
    for x in DECK_X:
        kind, section, offset = deck_beam_kind(abs(x), TOP_HALF_WIDTH, DECK_X[-1])
        for ya, yb in zip(DECK_Y, DECK_Y[1:]):
            model.add_beam(deck_node(model, x, ya), deck_node(model, x, yb), up,
                           kind, section, offset, kind == L and x < 0)


def add_supports_and_forces(model):
    for level in range(PANELS + 1):
        z = level * PANEL_HEIGHT
        for x, y in ring(half_width(z)):
            node = model.add_node(x, y, z)
            if level == 0:
                model.restraints.append(node)
                continue
            top = level == PANELS
            wind = WIND_PER_DECK_NODE if top else WIND_PER_LEVEL_NODE
            weight = WEIGHT_PER_DECK_NODE if top else WEIGHT_PER_LEVEL_NODE
            model.add_force(node, wind if x < 0 else 0.0, 0.0, -weight)
    for x, y in EQUIPMENT_POINTS:
        model.add_force(deck_node(model, x, y), 0.0, 0.0, -EQUIPMENT_WEIGHT / len(EQUIPMENT_POINTS))


def build():
    model = Model()
    for x, y in ring(BASE_HALF_WIDTH):
        model.add_node(x, y, 0.0)
    for k in range(PANELS):
        add_panel(model, k)
    add_deck(model)
    add_supports_and_forces(model)
    return model


def join(values):
    return ",".join("%.10g" % value for value in values)


def section_lines(sections):
    for row, (name, *sizes) in enumerate(sections):
        yield "#%d %s" % (row, name)
        for key, value in zip(("Hw", "Tw", "Bf", "Tf"), sizes):
            yield "%s=%.10g" % (key, value)


def model_lines(model):
    yield "### Toln_Korvex release=3.0 ###"
    yield "Number of materials:NMT=1"
    yield from ("#0:", "E=%.10g" % E, "Mu=%.10g" % MU, "Density=%.10g" % DENSITY)
    yield "Number of shell thicknesses:NTK=0"
    yield "Number of T_beam sections:NTBS=%d" % len(T_SECTIONS)
    yield from section_lines(T_SECTIONS)
    yield "Number of L_beam sections:NLBS=%d" % len(L_SECTIONS)
    yield from section_lines(L_SECTIONS)
    yield "Number of C_beam sections:NCBS=%d" % len(TUBES)
    for row, (name, diameter, wall) in enumerate(TUBES):
        yield from ("#%d %s" % (row, name), "R=%.10g" % ((diameter - wall) / 2), "T=%.10g" % wall)
    yield "Number of nodal points:NPOIN=%d" % len(model.nodes)
    for row, point in enumerate(model.nodes):
        yield "%d:%s" % (row, join(point))
    yield "Number of four-nodes shell elements:NELEM_S_4ND=0"
    yield "Number of three-nodes shell elements:NELEM_S_3ND=0"
    yield "Number of beam elements:NELEM_B=%d" % len(model.beams)
    for row, (i, j, orientation, kind, section, offset, mirrored) in enumerate(model.beams):
        yield ("%d:%d,%d<%s>[0,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%.10g,BeamSecMirrored=%d]"
               % (row, i, j, join(orientation), kind, section, offset, mirrored))
    yield "Number of restricted nodal points:NRN=%d" % len(model.restraints)
    for node in model.restraints:
        yield "%d: 1 1 1 1 1 1" % node
    yield "Number of forces:NFOR=%d" % len(model.forces)
    for node, force in model.forces.items():
        yield "%d<%s,0,0,0>" % (node, join(force))
    yield "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0"
    yield "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0"
    yield "Number of distributed loads on beam elements:NDL_B=%d" % len(model.line_loads)
    for beam, q in model.line_loads:
        yield "%d:%s" % (beam, join((q, q)))


def main():
    with open("fem_solving.txt", "w", encoding="ascii", newline="\n") as file:
        for line in model_lines(build()):
            file.write(line + "\n")


if __name__ == "__main__":
    main()
