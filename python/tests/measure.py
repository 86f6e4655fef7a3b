"""Processor time of import_file against the program's, of an interchange file of about 20 MB.

    python3 measure.py [ROUNDS]

Prints the smallest of so many rounds (9) of each, and their ratio; fails above 1.05."""

import os
import resource
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).parent), str(Path(__file__).parents[1])]
from conftest import PROGRAM, write_large  # noqa: E402

import intake  # noqa: E402

MOST = 1.05


def of_program(file, dataset):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run([PROGRAM, "import", "--quiet", file, dataset], check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def of_python(file, dataset):
    before = time.process_time()
    intake.import_file(file, dataset)
    return time.process_time() - before


def main(rounds):
    with tempfile.TemporaryDirectory() as folder:
        file = write_large(Path(folder) / "large.e00", 20e6)
        times = {of_program: [], of_python: []}
        for each in range(rounds):
            for measure, found in times.items():
                dataset = os.path.join(folder, f"{measure.__name__}{each}".upper())
                found.append(measure(file, dataset))
        program, python = min(times[of_program]), min(times[of_python])
        size = os.path.getsize(file) / 1e6
        print(f"{size:.1f} MB: program {program:.3f} s, import_file {python:.3f} s of processor "
              f"time, ratio {python / program:.3f}")  # fmt: skip
        return python / program <= MOST


if __name__ == "__main__":
    sys.exit(0 if main(int((sys.argv[1:] or ["9"])[0])) else 1)
