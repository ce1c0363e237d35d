#!/usr/bin/env python3
"""Computes the mid-span values of the water trough by finite strips, without the program.

The cross-section is cut into strips that run from end to end (Cheung 1976). Along the span every
displacement is a Fourier series, so each harmonic is a small system of equations of its own:
ux = U cos(a x); uy, uz, rx = V, W, R sin(a x); a = n pi / SPAN. Across a strip the membrane
displacements are linear and the deflection is cubic. The ends are diaphragms, rigid in their plane
and free out of it; the water's push on the end walls is added by beam theory in the README.
"""

from math import hypot, pi, sin

from make_model import (BOTTOM_HALF_WIDTH, CONCRETE_WEIGHT, DEPTH, E, MU, RIM_WIDTH, SPAN,
                        THICKNESS, TOP_HALF_WIDTH, WATER_WEIGHT)

HARMONICS = range(1, 60, 2)
STRIPS = {"rim": 12, "wall": 40, "bottom": 40}
GAUSS = ((-0.7745966692414834, 5 / 9), (0.0, 8 / 9), (0.7745966692414834, 5 / 9))
MEMBRANE = E * THICKNESS / (1 - MU ** 2)
PLATE = E * THICKNESS ** 3 / 12 / (1 - MU ** 2)
DOFS, STRIP_DOFS = 4, 8  # per nodal line: U, V, W, R


def nodal_lines():
    """(y, z) from the rim at +y to the rim at -y, and for each strip whether water stands on it."""
    half = [(TOP_HALF_WIDTH + RIM_WIDTH, DEPTH), (TOP_HALF_WIDTH, DEPTH), (BOTTOM_HALF_WIDTH, 0.0)]
    corners = half + [(-y, z) for y, z in reversed(half)]
    lines, wet = [corners[0]], []
    for (y0, z0), (y1, z1), plate in zip(corners, corners[1:],
                                         ("rim", "wall", "bottom", "wall", "rim")):
        for k in range(1, STRIPS[plate] + 1):
            f = k / STRIPS[plate]
            lines.append((y0 + f * (y1 - y0), z0 + f * (z1 - z0)))
            wet.append(plate != "rim")
    return lines, wet


def plate_rows(a, b, t):
    """Curvatures -w,xx; -w,ss; -2 w,xs from w0, r0, w1, r1 at s = t b, and the functions of w."""
    N = (1 - 3 * t ** 2 + 2 * t ** 3, b * (t - 2 * t ** 2 + t ** 3),
         3 * t ** 2 - 2 * t ** 3, b * (t ** 3 - t ** 2))
    N1 = ((6 * t ** 2 - 6 * t) / b, 1 - 4 * t + 3 * t ** 2,
          (6 * t - 6 * t ** 2) / b, 3 * t ** 2 - 2 * t)
    N2 = ((12 * t - 6) / b ** 2, (6 * t - 4) / b, (6 - 12 * t) / b ** 2, (6 * t - 2) / b)
    return [a * a * v for v in N], [-v for v in N2], [-2 * a * v for v in N1], N


def membrane_rows(a, b, t):
    """Strains exx, ess, gxs from u0, v0, u1, v1 at s = t b."""
    return ((-a * (1 - t), 0.0, -a * t, 0.0), (0.0, -1 / b, 0.0, 1 / b),
            (-1 / b, a * (1 - t), 1 / b, a * t))


def strain_rows(a, b, c, s, t):
    """Membrane and plate strains from the strip's dofs; c, s: direction cosines of its width."""
    def spread(rows, functions):
        out = []
        for row in rows:
            full = [0.0] * STRIP_DOFS
            for value, terms in zip(row, functions):
                for dof, factor in terms:
                    full[dof] += value * factor
            out.append(full)
        return out

    membrane = [term for k in (0, 4) for term in ([(k, 1.0)], [(k + 1, c), (k + 2, s)])]
    plate = [term for k in (0, 4) for term in ([(k + 1, -s), (k + 2, c)], [(k + 3, 1.0)])]
    kx, ks, kxs, N = plate_rows(a, b, t)
    return (spread(membrane_rows(a, b, t), membrane), spread((kx, ks, kxs), plate),
            spread((N,), plate)[0])


def add_rigidity(K, rows, rigidity):
    """K += rigidity of an isotropic plate for the strains `rows`, three of them."""
    e, f, g = rows
    for i in range(STRIP_DOFS):
        for j in range(STRIP_DOFS):
            K[i][j] += rigidity * (e[i] * e[j] + f[i] * f[j] + MU * (e[i] * f[j] + f[i] * e[j])
                                   + (1 - MU) / 2 * g[i] * g[j])


def solve_banded(K, f, width):
    """The solution of K x = f in place of f; K is symmetric with `width` entries on and right of the
    diagonal, stored as full rows."""
    n = len(f)
    for i in range(n):
        for r in range(i + 1, min(n, i + width)):
            factor = K[r][i] / K[i][i]
            if factor:
                for c in range(i, min(n, i + width)):
                    K[r][c] -= factor * K[i][c]
                f[r] -= factor * f[i]
    for i in reversed(range(n)):
        f[i] = (f[i] - sum(K[i][c] * f[c] for c in range(i + 1, min(n, i + width)))) / K[i][i]
    return f


def strips(lines):
    for k, ((y0, z0), (y1, z1)) in enumerate(zip(lines, lines[1:])):
        b = hypot(y1 - y0, z1 - z0)
        yield k, b, (y1 - y0) / b, (z1 - z0) / b


def solve_harmonic(n, lines, wet):
    a = n * pi / SPAN
    size = DOFS * len(lines)
    K = [[0.0] * size for _ in range(size)]
    f = [0.0] * size
    for k, b, c, s in strips(lines):
        Ke = [[0.0] * STRIP_DOFS for _ in range(STRIP_DOFS)]
        for point, weight in GAUSS:
            t = (1 + point) / 2
            membrane, plate, w = strain_rows(a, b, c, s, t)
            scale = weight * b / 2 * SPAN / 2
            add_rigidity(Ke, membrane, scale * MEMBRANE)
            add_rigidity(Ke, plate, scale * PLATE)
            pressure = 0.0
            if wet[k]:
                z = lines[k][1] + t * (lines[k + 1][1] - lines[k][1])
                pressure = WATER_WEIGHT * (DEPTH - z)
            series = scale * 4 / (n * pi)
            for i in range(STRIP_DOFS):
                f[DOFS * k + i] += series * pressure * w[i]
            for i, share in ((2, 1 - t), (6, t)):
                f[DOFS * k + i] -= series * CONCRETE_WEIGHT * THICKNESS * share
        for i in range(STRIP_DOFS):
            for j in range(STRIP_DOFS):
                K[DOFS * k + i][DOFS * k + j] += Ke[i][j]
    return a, solve_banded(K, f, STRIP_DOFS)


def main():
    lines, wet = nodal_lines()
    count = len(lines)
    deflection = [[0.0, 0.0] for _ in lines]   # uy, uz at mid-span
    stress = [[0.0, 0.0] for _ in wet]         # membrane SX at the strip's two edges
    moment = [[0.0, 0.0] for _ in wet]         # transverse moment per length, the same
    for n in HARMONICS:
        a, d = solve_harmonic(n, lines, wet)
        sign = sin(n * pi / 2)
        for k in range(count):
            deflection[k][0] += sign * d[DOFS * k + 1]
            deflection[k][1] += sign * d[DOFS * k + 2]
        for k, b, c, s in strips(lines):
            part = d[DOFS * k:DOFS * k + STRIP_DOFS]
            for edge in (0, 1):
                rows = strain_rows(a, b, c, s, float(edge))
                e, f = (sum(p * q for p, q in zip(row, part)) for row in rows[0][:2])
                kx, ks = (sum(p * q for p, q in zip(row, part)) for row in rows[1][:2])
                stress[k][edge] += sign * MEMBRANE / THICKNESS * (e + MU * f)
                moment[k][edge] += sign * PLATE * (ks + MU * kx)
    wall_top = STRIPS["rim"]
    corner = wall_top + STRIPS["wall"]
    middle = corner + STRIPS["bottom"] // 2
    for name, k in (("rim's outer edge", 0), ("wall top", wall_top), ("bottom corner", corner),
                    ("bottom middle", middle)):
        print("%-17s uy %7.4f mm  uz %7.4f mm  SX %7.4f MPa  transverse moment %8.1f Nm/m"
              % (name, 1e3 * deflection[k][0], 1e3 * deflection[k][1], 1e-6 * stress[k][0],
                 moment[k][0]))


if __name__ == "__main__":
    main()
