"""What Python reads is what the program reads, of every sample and every byte."""

import io
import subprocess

import pytest
from conftest import SAMPLES

import intake
from intake import _json


@pytest.mark.parametrize("name, file", SAMPLES)
def test_every_sample_is_dumped_as_the_program_does(name, file, tmp_path, program):
    dataset = tmp_path / name[:-4].upper()
    done = intake.import_file(file, dataset)
    # A set of symbols, a font and a text do not say what they are.
    told = [] if done.kind == "Info Datafile" else ["--kind", done.kind]
    wanted = subprocess.run([program, "dump", dataset, *told], capture_output=True, check=True)
    output = io.BytesIO()
    intake.dump(dataset, output, done.kind)
    assert output.getvalue() == wanted.stdout


@pytest.mark.parametrize(
    "value, printed",
    [
        (0.0, "0.0"), (-0.0, "-0.0"), (1e5, "1e+05"), (123456.0, "123456.0"), (1e-3, "0.001"),
        (-1.5e-4, "-0.00015"), (5e-324, "5e-324"), (1.5e300, "1.5e+300"), (1e-4, "1e-04"),
        (2.0**70, "1180591620717411303424.0"), (-12e5, "-1200000.0"), (float("nan"), '"NaN"'),
        (float("-inf"), '"-Infinity"'), (0.1 + 0.2, "0.30000000000000004"),
    ],
)  # fmt: skip
def test_reals_are_printed_as_the_program_does(value, printed):
    assert _json.real(value) == printed
