"""Exports models with kvx, reads the files with VTK, and compares every number bit for bit.

  read_vtu.py KVX DUMP EXAMPLES FOLDER

KVX: the program. DUMP: kvx_dump_results. EXAMPLES: the folder of the examples. FOLDER is emptied
and used. Exit status 77: VTK is not there (package python3-vtk9).

The numbers of a case file's envelopes are compared with the extremes of its cases' files, which
have been compared with the dump before.
"""
import math
import os
import shutil
import struct
import subprocess
import sys
import xml.etree.ElementTree

try:
    from vtkmodules.vtkCommonCore import vtkStringOutputWindow, vtkOutputWindow
    from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
except ImportError:
    print("skipped: VTK for Python (python3-vtk9) is not installed")
    sys.exit(77)

CELL_OFFSETS = "offsets"  # VTK's own array of them begins with a 0


def bytes_of(array):
    return memoryview(array).tobytes()


def component_names(array):
    names = [array.GetComponentName(k) for k in range(array.GetNumberOfComponents())]
    return ",".join(names) if any(names) else "-"


def type_of(array):
    # A 64-bit integer is "l" or "q", which depends on the system.
    kind = memoryview(array).format
    return "q" if kind in "lq" else kind


def read_vtu(path):
    """{(where, name): (type, components, bytes)} of the file."""
    messages = vtkStringOutputWindow()
    vtkOutputWindow.SetInstance(messages)
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    reader.Update()
    grid = reader.GetOutput()
    assert not messages.GetOutput(), messages.GetOutput()
    arrays = {}
    for where, data in (("point", grid.GetPointData()), ("cell", grid.GetCellData())):
        for k in range(data.GetNumberOfArrays()):
            array = data.GetArray(k)
            key = (where, array.GetName())
            assert key not in arrays, f"{path}: {key} stands there twice"
            arrays[key] = (type_of(array), component_names(array), bytes_of(array))
    points = grid.GetPoints().GetData()
    assert points.GetNumberOfComponents() == 3
    arrays["mesh", "points"] = (type_of(points), "-", bytes_of(points))
    cells = grid.GetCells()
    arrays["mesh", "connectivity"] = ("q", "-", bytes_of(cells.GetConnectivityArray()))
    arrays["mesh", CELL_OFFSETS] = ("q", "-", bytes_of(cells.GetOffsetsArray())[8:])
    arrays["mesh", "types"] = ("B", "-", bytes_of(grid.GetCellTypesArray()))
    return arrays


def read_dump(path):
    arrays = {}
    with open(path, "rb") as stream:
        for line in stream:
            where, name, kind, components, count = line.decode().split()
            size = 1 if kind == "B" else 8
            arrays[where, name] = (kind, components, stream.read(size * int(count)))
    return arrays


def compare(path, expected):
    """Returns how many numbers were compared."""
    found = read_vtu(path)
    assert sorted(found) == sorted(expected), (
        f"{path}: arrays {sorted(set(found) ^ set(expected))} are on one side alone")
    numbers = 0
    for key, (kind, components, numbers_expected) in expected.items():
        assert found[key][:2] == (kind, components), f"{path}: {key} is {found[key][:2]}"
        have = found[key][2]
        if have != numbers_expected:
            size = 1 if kind == "B" else 8
            same = min(len(have), len(numbers_expected))
            first = next((k for k in range(same) if have[k] != numbers_expected[k]), same) // size
            raise AssertionError(
                f"{path}: {key}: {len(have) // size} numbers for {len(numbers_expected) // size}; "
                f"the first that differs is number {first}")
        numbers += len(have) // (1 if kind == "B" else 8)
    return numbers


def run(*arguments, status=0):
    done = subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    assert done.returncode == status, f"{arguments}: {done.returncode}\n{done.stdout}{done.stderr}"
    return done.stdout


class Dump:
    """The expected arrays of a model's files. They may be large: one is in memory at a time."""

    def __init__(self, program, model):
        self.names = {(shared, details): f"{model}.{shared}.{details}.dump"
                      for details in (False, True) for shared in (False, True)}
        run(program, model, *self.names.values())

    def read(self, shared, details):
        return read_dump(self.names[shared, details])

    def remove(self):
        for name in self.names.values():
            os.remove(name)


def without(arrays, name):
    return {key: value for key, value in arrays.items() if key[1] != name}


def compare_model(kvx, program, folder, status=0):
    """All forms of the export of the model in the folder."""
    dump = Dump(program, os.path.join(folder, "fem_solving.txt"))
    details = os.path.join(folder, "model-details.vtu")
    numbers = 0
    for shared in (False, True):
        options = ["--shared"] if shared else []
        expected = dump.read(shared, False)
        run(kvx, "export", folder, "--vtu", *options, status=status)
        assert not os.path.exists(details)
        numbers += compare(os.path.join(folder, "model.vtu"),
                           without(expected, "detail_von_mises"))
        run(kvx, "export", folder, "--vtu", "--details", *options, status=status)
        numbers += compare(os.path.join(folder, "model.vtu"), expected)
        has_beams = ("cell", "detail_von_mises") in expected
        assert os.path.exists(details) == has_beams
        if has_beams:
            numbers += compare(details, dump.read(shared, True))
            os.remove(details)
    dump.remove()
    print(f"{folder}: {numbers} numbers are the same, bit for bit")


def doubles(arrays, name):
    return [x for (x,) in struct.iter_unpack("<d", arrays["point", name][2])]


def integers(arrays, name):
    return [x for (x,) in struct.iter_unpack("<q", arrays["point", name][2])]


def find_extremes(columns, sign):
    """The first case with the largest (sign 1) or smallest (-1) finite value, item by item."""
    best, cases = [], []
    for values in zip(*(column for _, column in columns)):
        row = -1
        for k, value in enumerate(values):
            if math.isfinite(value) and (row < 0 or sign * value > sign * values[row]):
                row = k
        cases.append(columns[row][0] if row >= 0 else -1)
        best.append(values[row] if row >= 0 else math.nan)
    return best, cases


def same_doubles(a, b):
    return struct.pack(f"<{len(a)}d", *a) == struct.pack(f"<{len(b)}d", *b)


def check_extremes(envelope, name, columns):
    for sign, side in ((1, "largest"), (-1, "smallest")):
        values, cases = find_extremes(columns, sign)
        assert same_doubles(doubles(envelope, f"{name}_{side}"), values), (name, side)
        assert integers(envelope, f"{name}_{side}_case") == cases, (name, side)


def compare_envelope(path, cases, suffix):
    """cases: {row: arrays} of its cases."""
    envelope = read_vtu(path)
    rows = sorted(cases)
    of = lambda name: [(row, doubles(cases[row], name)) for row in rows]
    check_extremes(envelope, "displacement", of("displacement"))
    sizes = [(row, [math.sqrt(x * x + y * y + z * z)
                    for x, y, z in zip(u[0::3], u[1::3], u[2::3])])
             for row, u in of("displacement")]
    check_extremes(envelope, "displacement_size", sizes)
    governing = find_extremes(sizes, 1)[1]
    moved = dict(of("displacement"))
    expected = [moved[row][3 * k + axis] for k, row in enumerate(governing) for axis in range(3)]
    assert same_doubles(doubles(envelope, "displacement_of_largest_size"), expected)
    upper, lower = of("von_mises_upper" + suffix), of("von_mises_lower" + suffix)
    check_extremes(envelope, "von_mises_upper" + suffix, upper)
    check_extremes(envelope, "von_mises_lower" + suffix, lower)
    both = [(row, [a if math.isnan(a) or a >= b else b for a, b in zip(one, other)])
            for (row, one), (_, other) in zip(upper, lower)]
    check_extremes(envelope, "von_mises_both" + suffix, both)
    some_case = cases[rows[0]]
    for key in envelope:
        if key[0] != "point" or key[1] == "node_id":
            assert envelope[key] == some_case[key], key
    print(f"{path}: the extremes of {len(rows)} cases")


def list_collection(path):
    """[(time, name, file)]"""
    root = xml.etree.ElementTree.parse(path).getroot()
    assert root.attrib["type"] == "Collection"
    return [(float(each.attrib["timestep"]), each.attrib["name"], each.attrib["file"])
            for each in root.iter("DataSet")]


def compare_cases(kvx, program, folder):
    names = ["base", "weight", "heel", "pallet", "harbour", "sea"]
    results = os.path.join(folder, "results")
    # Envelopes of five and of three of the cases.
    with open(os.path.join(folder, "cases.toml"), "a") as stream:
        stream.write('\n[envelope.all]\nof = ["base", "weight", "heel", "pallet", "sea"]\n'
                     '[envelope.three]\nof = ["pallet", "base", "heel"]\n')
    run(kvx, "cases", os.path.join(folder, "cases.toml"))
    for shared in (False, True):
        options = ["--shared"] if shared else []
        run(kvx, "export", os.path.join(folder, "cases.toml"), "--vtu", "--details", *options)
        for suffix, name in (("", "model.vtu"), ("-details", "model-details.vtu")):
            assert list_collection(os.path.join(results, f"cases{suffix}.pvd")) == [
                (float(row), case, f"{case}/{name}") for row, case in enumerate(names)]
        cases = {}
        for row, case in enumerate(names):
            path = os.path.join(results, case, "model.vtu")
            if case in ("heel", "pallet", "sea"):
                dump = Dump(program, os.path.join(results, case, "fem_solving.txt"))
                numbers = compare(path, dump.read(shared, False))
                numbers += compare(os.path.join(results, case, "model-details.vtu"),
                                   dump.read(shared, True))
                dump.remove()
                print(f"{path}: {numbers} numbers are the same, bit for bit")
            cases[row] = without(read_vtu(path), "detail_von_mises")
        suffix = "_node_mean" if shared else ""
        for envelope, of in (("all", (0, 1, 2, 3, 5)), ("three", (0, 2, 3))):
            compare_envelope(os.path.join(results, f"envelope-{envelope}", "envelope.vtu"),
                             {row: cases[row] for row in of}, suffix)


def make_huge(source, folder):
    """Loads so large that von Mises stresses are infinite: squares of stresses overflow."""
    os.makedirs(folder)
    with open(os.path.join(source, "fem_solving.txt")) as stream:
        text = stream.read()
    assert text.count(",-15000,") > 0
    with open(os.path.join(folder, "fem_solving.txt"), "w") as stream:
        stream.write(text.replace(",-15000,", ",-1.5e170,"))


def main():
    kvx, program, examples, folder = sys.argv[1:]
    shutil.rmtree(folder, ignore_errors=True)
    for example in ("stiffened-panel", "lattice-tower", "water-trough"):
        shutil.copytree(os.path.join(examples, example), os.path.join(folder, example))
        compare_model(kvx, program, os.path.join(folder, example))
    huge = os.path.join(folder, "huge")
    make_huge(os.path.join(examples, "stiffened-panel"), huge)
    compare_model(kvx, program, huge, status=1)
    assert math.inf in doubles(read_vtu(os.path.join(huge, "model.vtu")), "von_mises_upper_node_mean")
    compare_cases(kvx, program, os.path.join(folder, "stiffened-panel"))
    shutil.rmtree(folder)


main()
