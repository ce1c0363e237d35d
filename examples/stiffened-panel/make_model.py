#!/usr/bin/env python3
"""Writes fem_solving.txt of the stiffened deck panel into the current folder.

Units: N, mm, MPa. x points forward, y to port, z upwards. The plate's mid-plane is z = 0.
"""

# Geometry -------------------------------------------------------------------------------------
FRAME_SPACING = 2400.0
FRAME_SPACES = 3              # a frame stands between two spaces, a bulkhead at either end
STIFFENER_SPACING = 600.0
FIELDS = 7                    # a stiffener stands between two fields, a bulkhead at either side
PLATE_THICKNESS = 10.0

# Mesh -----------------------------------------------------------------------------------------
ELEMENTS_PER_FRAME_SPACE = 8
FIELD_DIVISION = (0.0, 50.0, 150.0, 300.0, 450.0, 550.0)  # across a field, finer at its edges

# Material -------------------------------------------------------------------------------------
E = 206000.0
MU = 0.3
DENSITY = 7.85e-9  # t/mm3; not used by the solution

# Sections: name, Hw, Tw, Bf, Tf ---------------------------------------------------------------
T, L = 0, 1  # BeamSecType
FRAME = ("transverse frame", 400.0, 10.0, 160.0, 16.0)
STIFFENER = ("stiffener, in place of a bulb", 144.0, 9.0, 36.0, 16.0)

# Loads ----------------------------------------------------------------------------------------
DECK_PRESSURE = 0.025          # N/mm2, that is 25 kN/m2, downwards
AXLE_LOAD = 60000.0            # of a fork-lift truck, in equal parts on four tyres
AXLE_X = 3600.0
TYRE_Y = (1350.0, 1650.0, 2550.0, 2850.0)

LENGTH = FRAME_SPACING * FRAME_SPACES
WIDTH = STIFFENER_SPACING * FIELDS


class Model:
    def __init__(self):
        steps = FRAME_SPACES * ELEMENTS_PER_FRAME_SPACE
        self.x = [i * LENGTH / steps for i in range(steps + 1)]
        self.y = [f * STIFFENER_SPACING + d for f in range(FIELDS) for d in FIELD_DIVISION]
        self.y.append(WIDTH)
        # Row by row along x: that direction has fewer nodes.
        self.nodes = [(x, y, 0.0) for y in self.y for x in self.x]
        self.quads = []
        self.beams = []        # i, j, kind, mirrored
        self.restraints = []   # node, six flags
        self.forces = []       # node, Fz

    def node(self, i, j):
        """The node at x[i], y[j]."""
        return j * len(self.x) + i

    def node_at(self, x, y):
        return self.node(self.x.index(x), self.y.index(y))


def add_plate(model):
    """Nodes counter-clockwise from above: the normal points upwards."""
    for j in range(len(model.y) - 1):
        for i in range(len(model.x) - 1):
            model.quads.append((model.node(i, j), model.node(i + 1, j),
                                model.node(i + 1, j + 1), model.node(i, j + 1)))


def add_beams(model):
    """The sections hang below the plate: local z is global -z, and BeamSecOz half a thickness.

    Local y of a stiffener is global -y. Its flange is to point to the panel's middle.
    """
    for field in range(1, FIELDS):
        y = field * STIFFENER_SPACING
        j = model.y.index(y)
        for i in range(len(model.x) - 1):
            model.beams.append((model.node(i, j), model.node(i + 1, j), L, y < WIDTH / 2))
    for space in range(1, FRAME_SPACES):
        i = model.x.index(space * FRAME_SPACING)
        for j in range(len(model.y) - 1):
            model.beams.append((model.node(i, j), model.node(i, j + 1), T, False))


def add_supports(model):
    """Ends: deck and stiffeners continue behind the bulkhead alike, a plane of symmetry.

    Sides: upright support. The middle of either end is held in y.
    """
    ends = (0.0, LENGTH)
    middle = WIDTH / 2
    for y in model.y:
        for x in model.x:
            if x in ends:
                flags = (1, int(y == middle), 1, 1, 1, 1)
            elif y in (0.0, WIDTH):
                flags = (0, 0, 1, 0, 0, 0)
            else:
                continue
            model.restraints.append((model.node_at(x, y), flags))


def build():
    model = Model()
    add_plate(model)
    add_beams(model)
    add_supports(model)
    for y in TYRE_Y:
        model.forces.append((model.node_at(AXLE_X, y), -AXLE_LOAD / len(TYRE_Y)))
    return model


def join(values):
    return ",".join("%.10g" % value for value in values)


def section_lines(section):
    name, *sizes = section
    yield name
    for key, value in zip(("Hw", "Tw", "Bf", "Tf"), sizes):
        yield "%s=%.10g" % (key, value)


def model_lines(model):
    yield "### Toln_Korvex release=3.0 ###"
    yield "Number of materials:NMT=1"
    yield from ("#0:", "E=%.10g" % E, "Mu=%.10g" % MU, "Density=%.10g" % DENSITY)
    yield "Number of shell thicknesses:NTK=1"
    yield from ("#0:", "TK=%.10g" % PLATE_THICKNESS)
    yield "Number of T_beam sections:NTBS=1"
    yield from section_lines(FRAME)
    yield "Number of L_beam sections:NLBS=1"
    yield from section_lines(STIFFENER)
    yield "Number of C_beam sections:NCBS=0"
    yield "Number of nodal points:NPOIN=%d" % len(model.nodes)
    for row, point in enumerate(model.nodes):
        yield "%d:%s" % (row, join(point))
    yield "Number of four-nodes shell elements:NELEM_S_4ND=%d" % len(model.quads)
    for row, corners in enumerate(model.quads):
        yield "%d:%s[0,0]" % (row, join(corners))
    yield "Number of three-nodes shell elements:NELEM_S_3ND=0"
    yield "Number of beam elements:NELEM_B=%d" % len(model.beams)
    for row, (i, j, kind, mirrored) in enumerate(model.beams):
        yield ("%d:%d,%d<0,0,-1>[0,BeamSecType=%d,BeamSecIndex=0,BeamSecOz=%.10g,"
               "BeamSecMirrored=%d]" % (row, i, j, kind, PLATE_THICKNESS / 2, mirrored))
    yield "Number of restricted nodal points:NRN=%d" % len(model.restraints)
    for node, flags in model.restraints:
        yield "%d: %d %d %d %d %d %d" % ((node,) + flags)
    yield "Number of forces:NFOR=%d" % len(model.forces)
    for node, fz in model.forces:
        yield "%d<0,0,%.10g,0,0,0>" % (node, fz)
    yield "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d" % len(model.quads)
    for row in range(len(model.quads)):
        yield "%d:%s" % (row, join((-DECK_PRESSURE,) * 3))
    yield "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0"
    yield "Number of distributed loads on beam elements:NDL_B=0"


def main():
    with open("fem_solving.txt", "w", encoding="ascii", newline="\n") as file:
        for line in model_lines(build()):
            file.write(line + "\n")


if __name__ == "__main__":
    main()
