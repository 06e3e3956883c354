"""What the tests of the Python package share."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

import numpy

PROGRAMS = pathlib.Path(os.environ["NIVORA_PROGRAM_FOLDER"])
SAMPLES = PROGRAMS / "samples"
SIMULATION = "ellervane-1997-98"


def batch(*arguments):
    """Runs nivora-batch."""
    return subprocess.run(
        [PROGRAMS / "nivora-batch", *map(str, arguments)], capture_output=True, text=True, check=False
    )


def bits(values):
    """The bits of floats, with one pattern for all missing values."""
    values = numpy.array(values)
    values[numpy.isnan(values)] = numpy.nan
    return values.view(numpy.uint32 if values.dtype == numpy.float32 else numpy.uint64)


class WithBasin(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.file = self.folder / "basin.mdb"
        shutil.copy(SAMPLES / "ellervane.mdb", self.file)

    def copy(self):
        """A second file with the same basin, for the batch program."""
        copy = self.folder / "copy.mdb"
        shutil.copy(self.file, copy)
        return copy

    def without_latitude(self):
        file = self.folder / "no-latitude.mdb"
        record = SAMPLES / "ellervane-1997-98.NVR"
        done = batch("import", record, file, "--name", "wy1998", "--initial-runoff", "2.851")
        self.assertEqual(done.returncode, 0, done.stderr)
        return file
