#!/usr/bin/env python3
"""The detail models of beams, read from Korvex_AverageStrs.txt in the current folder.

    read_details.py BEAM ...

prints the stresses at mid-length of each of the given beams: for both edges of each plate of the
profile the stress along the beam on face A, on face B and their mean, and the von Mises stress of
both faces. Faces, numbering and file: docs/detail-models.md. The file may be large: it is read line
by line, and beams that are not wanted are skipped.
"""

import sys
from collections import namedtuple
from math import dist, sqrt

FILE = "Korvex_AverageStrs.txt"

# beam: its number; ends: two points; nodes: points; displacements: six per node;
# shells: (four node numbers, [(face A, face B) per corner]); a face: SX SY SZ TXY TXZ TYZ SE.
Detail = namedtuple("Detail", "beam ends nodes displacements shells")

# An edge of a plate at mid-length. point: of the profile; place: from the beam's axis, global axes;
# along: stress along the beam on faces A and B; equivalent: von Mises stress of both.
Edge = namedtuple("Edge", "point place along equivalent")


def next_line(file):
    line = next(file, None)
    if line is None:
        raise ValueError("the file ends too early")
    return line


def read_count(file, key):
    name, _, count = next_line(file).rstrip().partition("=")
    if name != key:
        raise ValueError("%s= expected, not %s" % (key, name))
    return int(count)


def read_numbers(file, lines):
    return [tuple(map(float, next_line(file).split(","))) for _ in range(lines)]


def skip(file, lines):
    for _ in range(lines):
        next_line(file)


def read_shell(file):
    nodes = tuple(map(int, next_line(file).split(",")))
    faces = read_numbers(file, 8)
    return nodes, list(zip(faces[0::2], faces[1::2]))


def skip_structure(file):
    """Everything before the first beam."""
    skip(file, 2 * read_count(file, "NPOIN"))
    skip(file, 9 * read_count(file, "NELEM_S_4ND"))
    skip(file, 7 * read_count(file, "NELEM_S_3ND"))


def read_details(wanted, name=FILE):
    """Gives the wanted beams' Details in the order of the file, one at a time."""
    wanted = set(wanted)
    with open(name, encoding="ascii") as file:
        skip_structure(file)
        for _ in range(read_count(file, "NELEM_B")):
            if not wanted:
                return
            beam = read_count(file, "BEI")
            ends = [tuple(map(float, next_line(file)[4:-2].split(","))) for _ in range(2)]
            nodes = read_count(file, "NPOIN")
            if beam not in wanted:
                skip(file, 2 * nodes)
                skip(file, 9 * read_count(file, "NELEM"))
                continue
            wanted.remove(beam)
            points, displacements = read_numbers(file, nodes), read_numbers(file, nodes)
            shells = [read_shell(file) for _ in range(read_count(file, "NELEM"))]
            yield Detail(beam, ends, points, displacements, shells)
    if wanted:
        raise ValueError("no such beam: %s" % ", ".join(map(str, sorted(wanted))))


def profile_size(detail):
    """The numbers of points and of plates of the profile, and of steps along the beam."""
    first = detail.shells[0][0]
    points = first[1] - first[0]
    steps = (len(detail.nodes) - 2) // points - 1
    return points, len(detail.shells) // steps, steps


def along_beam(ends, face):
    """The normal stress across a cut square to the beam."""
    x, y, z = ((b - a) / dist(*ends) for a, b in zip(*ends))
    sx, sy, sz, txy, txz, tyz = face[:6]
    return x * x * sx + y * y * sy + z * z * sz + 2 * (x * y * txy + x * z * txz + y * z * tyz)


def equivalent(face):
    sx, sy, sz, txy, txz, tyz = face[:6]
    return sqrt(((sx - sy) ** 2 + (sy - sz) ** 2 + (sz - sx) ** 2) / 2
                + 3 * (txy ** 2 + txz ** 2 + tyz ** 2))


def mean(*faces):
    return tuple(sum(values) / len(faces) for values in zip(*faces))


def mid_length(detail):
    """The two Edges of each plate at mid-length.

    An even number of steps has a station there; otherwise the mean of the stations beside it is
    taken. Corners 0 and 3 of a shell lie at its first station, 1 and 2 at its second.
    """
    points, plates, steps = profile_size(detail)
    middle = detail.shells[steps // 2 * plates:][:plates]
    edges = []
    for nodes, corners in middle:
        pair = []
        for here, beyond in ((0, 1), (3, 2)):
            faces = corners[here]
            if steps % 2 == 1:
                faces = [mean(*f) for f in zip(corners[here], corners[beyond])]
            point = (nodes[here] - 1) % points
            place = tuple(p - a for p, a in zip(detail.nodes[1 + point], detail.ends[0]))
            pair.append(Edge(point, place, tuple(along_beam(detail.ends, f) for f in faces),
                             tuple(equivalent(f) for f in faces)))
        edges.append(pair)
    return edges


def print_detail(detail):
    print("beam %d, (%g,%g,%g) to (%g,%g,%g), steps: %d"
          % (detail.beam, *detail.ends[0], *detail.ends[1], profile_size(detail)[2]))
    print("plate point      x        y        z from axis     A        B     mean  von Mises A, B")
    for plate, pair in enumerate(mid_length(detail)):
        for edge in pair:
            a, b = edge.along
            print("%5d %5d %8.4g %8.4g %8.4g %13.5g %8.5g %8.5g %8.5g %8.5g"
                  % (plate, edge.point, *edge.place, a, b, (a + b) / 2, *edge.equivalent))


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    if not all(word.isascii() and word.isdigit() for word in sys.argv[1:]):
        sys.exit("read_details.py: beams are given by number, from 0, not as %s"
                 % " ".join(sys.argv[1:]))
    try:
        for detail in read_details(map(int, sys.argv[1:])):
            print_detail(detail)
    except (OSError, ValueError) as error:
        sys.exit("read_details.py: %s: %s" % (FILE, getattr(error, "strerror", None) or error))


if __name__ == "__main__":
    main()
