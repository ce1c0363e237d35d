"""Writes bulkhead.bdf and water.inc into the current folder, see README.md.

Fields of 8 characters, as most programs write them.
"""

WIDTH, HEIGHT, SIZE = 4800, 3000, 200  # of the bulkhead and of its elements, mm
SPACING = 600                          # of the stiffeners
THICKNESS = 8.0
HW, TW, BF, TF = 150.0, 8.0, 80.0, 10.0  # web and flange of the stiffeners
WATER = 1025e-12 * 9810                # weight of sea water, N/mm3
DECK = 40000.0                         # N on each node of the upper edge where a stiffener ends

COLUMNS, ROWS = WIDTH // SIZE, HEIGHT // SIZE
STIFFENED = [i for i in range(1, COLUMNS) if i * SIZE % SPACING == 0]


def card(name, *fields):
    """Fields of 8 characters, eight to a line; None is blank."""
    words = ["" if field is None else str(field) for field in fields]
    lines = [words[k:k + 8] for k in range(0, len(words), 8)]
    starts = [name] + [""] * (len(lines) - 1)
    return "".join("".join("%-8s" % word for word in [start] + line).rstrip() + "\n"
                   for start, line in zip(starts, lines))


def real(value):
    """At most 8 characters, as the format's own programs write them: 1.2346-5 for 1.2346e-05."""
    for digits in range(7, 0, -1):
        text = "%.*g" % (digits, value)
        if "e" in text:
            mantissa, exponent = text.split("e")
            text = (mantissa if "." in mantissa else mantissa + ".") + "%+d" % int(exponent)
        elif "." not in text:
            text += "."
        if len(text) <= 8:
            return text
    raise ValueError(value)


def grid(i, j):
    return 1000 * (j + 1) + i + 1


def shell(i, j):
    return 10000 + 100 * j + i


def bar(i, j):
    return 20000 + 100 * j + i


def centroid():
    """Of web and flange, from the web's free edge."""
    web, flange = HW * TW, BF * TF
    return (web * HW / 2 + flange * (HW + TF / 2)) / (web + flange)


def bulk():
    for j in range(ROWS + 1):
        for i in range(COLUMNS + 1):
            yield card("GRID", grid(i, j), None, real(i * SIZE), real(0), real(j * SIZE))
    yield "$ Plate. The normal points away from the water, along +y.\n"
    for j in range(ROWS):
        for i in range(COLUMNS):
            yield card("CQUAD4", shell(i, j), 1, grid(i, j), grid(i, j + 1), grid(i + 1, j + 1),
                       grid(i + 1, j))
    yield card("PSHELL", 1, 1, real(THICKNESS), 1, None, 1)
    yield "$ Stiffeners on the dry side. A bar's axis runs through the centroid of its section.\n"
    offset = real(THICKNESS / 2 + centroid())
    for i in STIFFENED:
        for j in range(ROWS):
            yield card("CBAR", bar(i, j), 2, grid(i, j), grid(i, j + 1), real(0), real(1), real(0),
                       None, None, None, real(0), offset, real(0), real(0), offset, real(0))
    yield card("PBARL", 2, 1, None, "T", None, None, None, None,
               real(BF), real(HW + TF), real(TF), real(TW))
    yield card("MAT1", 1, real(206000), None, real(0.3), real(7.85e-9))
    yield "$ Clamped below; held sideways and in plane at the sides; held sideways above.\n"
    yield card("SPC1", 1, 123456, grid(0, 0), "THRU", grid(COLUMNS, 0))
    for j in range(1, ROWS + 1):
        yield card("SPC1", 1, 12, grid(0, j), grid(COLUMNS, j))
    yield card("SPC1", 1, 2, grid(1, ROWS), "THRU", grid(COLUMNS - 1, ROWS))
    yield "$ Deck load on the stiffeners' ends\n"
    for i in STIFFENED:
        yield card("FORCE", 20, grid(i, ROWS), None, real(DECK), real(0), real(0), real(-1))
    yield card("LOAD", 30, real(1), real(1.0), 10, real(1.35), 20)


def water():
    yield "$ Water to the upper edge: pressure at the corners of each shell.\n"
    for j in range(ROWS):
        below, above = (real(WATER * (HEIGHT - k * SIZE)) for k in (j, j + 1))
        for i in range(COLUMNS):
            yield card("PLOAD4", 10, shell(i, j), below, above, above, below)


with open("bulkhead.bdf", "w", encoding="ascii", newline="\n") as file:
    file.write("""$ Watertight bulkhead with seven stiffeners. N, mm.
SOL 101
CEND
TITLE = WATERTIGHT BULKHEAD
SPC = 1
DISPLACEMENT = ALL
SUBCASE 1
  LABEL = WATER TO THE TOP
  LOAD = 10
SUBCASE 2
  LABEL = DECK LOAD
  LOAD = 20
SUBCASE 3
  LABEL = WATER AND 1.35 DECK LOAD
  LOAD = 30
BEGIN BULK
PARAM   POST    -1
INCLUDE 'water.inc'
""")
    file.writelines(bulk())
    file.write("ENDDATA\n")
with open("water.inc", "w", encoding="ascii", newline="\n") as file:
    file.writelines(water())
