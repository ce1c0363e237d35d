"""Writes sign-gantry.inp into the current folder, see README.md."""

HEIGHT, SPAN = 6000, 10000          # of the columns, of the beam, mm
COLUMN_PARTS, BEAM_PARTS = 8, 20    # elements of each
LEFT, RIGHT, DEPTH, SIZE = 3000, 7000, 2000, 500  # of the sign below the beam, of its shells

nodes, elements = [], {}  # nodes: coordinates; elements: lines by set


def node(x, z):
    if (x, z) not in nodes:
        nodes.append((x, z))
    return nodes.index((x, z)) + 1


def add(name, *numbers):
    number = 1 + sum(len(lines) for lines in elements.values())
    elements.setdefault(name, []).append((number,) + numbers)


for x in (0, SPAN):
    step = HEIGHT // COLUMN_PARTS
    for k in range(COLUMN_PARTS):
        add("COLUMNS", node(x, k * step), node(x, (k + 1) * step))
for k in range(BEAM_PARTS):
    step = SPAN // BEAM_PARTS
    add("BEAM", node(k * step, HEIGHT), node((k + 1) * step, HEIGHT))
for x in range(LEFT, RIGHT, SIZE):
    for z in range(HEIGHT - DEPTH, HEIGHT, SIZE):
        # Counter-clockwise as seen from the front, y < 0: the normal points to the viewer.
        add("SIGN", node(x, z), node(x + SIZE, z), node(x + SIZE, z + SIZE), node(x, z + SIZE))
for x in range(LEFT, RIGHT + 1, 2 * SIZE):
    for z in range(HEIGHT, HEIGHT - DEPTH, -SIZE):
        add("RIBS", node(x, z), node(x, z - SIZE))

TYPES = {"COLUMNS": "B31", "BEAM": "B31", "SIGN": "S4", "RIBS": "B31"}

with open("sign-gantry.inp", "w", encoding="ascii", newline="\n") as file:
    file.write("*HEADING\nSign gantry over a road. N, mm, t.\n*NODE, NSET=ALL\n")
    for k, (x, z) in enumerate(nodes):
        file.write("%d, %g., 0., %g.\n" % (k + 1, x, z))
    for name, lines in elements.items():
        file.write("*ELEMENT, TYPE=%s, ELSET=%s\n" % (TYPES[name], name))
        for line in lines:
            file.write(", ".join(map(str, line)) + "\n")
    file.write("""*MATERIAL, NAME=STEEL
*ELASTIC
206000., 0.3
*DENSITY
7.85E-9
*MATERIAL, NAME=ALUMINIUM
*ELASTIC
70000., 0.33
*DENSITY
2.7E-9
** outer radius, wall; n1 is any direction across the tube
*BEAM SECTION, ELSET=COLUMNS, MATERIAL=STEEL, SECTION=PIPE
161.95, 10.
0., 1., 0.
*BEAM SECTION, ELSET=BEAM, MATERIAL=STEEL, SECTION=PIPE
136.5, 8.
0., 1., 0.
** flat bars: 8 along n1, 120 along n2 = t x n1, which is the wind's direction
*BEAM SECTION, ELSET=RIBS, MATERIAL=ALUMINIUM, SECTION=RECT
8., 120.
1., 0., 0.
*SHELL SECTION, ELSET=SIGN, MATERIAL=ALUMINIUM
4.
*NSET, NSET=FEET
%d, %d
*BOUNDARY
FEET, 1, 6
*STEP
Wind from the front: on the sign and on the columns
*STATIC
*DLOAD
SIGN, P, -1.2E-3
COLUMNS, PY, 0.3
*NODE FILE
U
*END STEP
*STEP
Weight
*STATIC
*DLOAD, OP=NEW
COLUMNS, GRAV, 9810., 0., 0., -1.
BEAM, GRAV, 9810., 0., 0., -1.
RIBS, GRAV, 9810., 0., 0., -1.
SIGN, GRAV, 9810., 0., 0., -1.
*END STEP
""" % (node(0, 0), node(SPAN, 0)))
