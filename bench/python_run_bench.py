#!/usr/bin/env python3
"""A run through the Python package beside the same run in C++, in turns, and the import of the package.

    cmake --build --preset release --target named_run_bench
    PYTHONPATH=build/nivora/python /usr/bin/python3 bench/python_run_bench.py [TURNS]

Both open the basin, run it and store its table on the disk, in copies of the bundled sample. Python also makes the
Series of the discharge in a second figure. Prints the least and the median milliseconds.
"""

import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
SIMULATION = "ellervane-1997-98"


def seconds(work):
    begin = time.perf_counter()
    work()
    return time.perf_counter() - begin


def tell(what, values, floor=None):
    line = f"{what:34} {min(values) * 1000:9.3f} {statistics.median(values) * 1000:9.3f}"
    if floor:
        line += f"   {min(values) / min(floor):6.3f} {statistics.median(values) / statistics.median(floor):6.3f}"
    print(line)


def main():
    turns = int(sys.argv[1]) if len(sys.argv) > 1 else 200
    imports = [
        seconds(lambda: subprocess.run([sys.executable, "-c", code], check=True))
        for _ in range(10)
        for code in ("import nivora", "")
    ]
    import nivora

    with tempfile.TemporaryDirectory() as folder:
        files = [pathlib.Path(folder) / name for name in ("python.mdb", "c++.mdb")]
        for file in files:
            shutil.copy(ROOT / "build/nivora/samples/ellervane.mdb", file)
        basin = nivora.open(files[0])
        partner = subprocess.Popen(
            [ROOT / "build/release/bench/named_run_bench", files[1], SIMULATION],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
        )  # fmt: skip

        def other():
            partner.stdin.write("run\n")
            partner.stdin.flush()
            return float(partner.stdout.readline())

        taken = {"C++": [], "Python": [], "Python with flow": []}
        basin.run(SIMULATION, kind="year-round").flow
        for _ in range(turns):
            taken["C++"].append(other())
            taken["Python"].append(seconds(lambda: basin.run(SIMULATION, kind="year-round")))
            taken["Python with flow"].append(seconds(lambda: basin.run(SIMULATION, kind="year-round").flow))
        partner.communicate()
    print(f"{'ms':34} {'least':>9} {'median':>9}   against C++")
    for what, values in taken.items():
        tell(f"run, {what}", values, taken["C++"] if what != "C++" else None)
    tell("python3 -c 'import nivora'", imports[0::2])
    tell("python3 -c ''", imports[1::2])


if __name__ == "__main__":
    main()
