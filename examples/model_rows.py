"""The rows of fem_solving.txt in the current folder, section by section, for the drawings."""

import re


def read_rows():
    """A function that gives the rows of the section with a key, such as "NPOIN"."""
    with open("fem_solving.txt", encoding="ascii") as file:
        lines = file.read().splitlines()
    start = {}
    for number, line in enumerate(lines):
        match = re.match(r"Number of .*:(\w+)=(\d+)$", line)
        if match:
            start[match[1]] = (number + 1, int(match[2]))

    def rows(key):
        first, count = start[key]
        return lines[first:first + count]

    return rows


def read_nodes(rows):
    return [tuple(float(v) for v in row.split(":")[1].split(",")) for row in rows("NPOIN")]
