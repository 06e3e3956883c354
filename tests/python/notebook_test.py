"""The example notebook runs from its first to its last cell, and what it leaves makes sense."""

import json
import os
import pathlib
import runpy
import unittest

import nivora
import numpy
from support import PROGRAMS, WithBasin, batch

EXAMPLE = PROGRAMS / "python" / "examples" / "from_tables_to_response.py"


class NotebookTest(WithBasin):
    def setUp(self):
        super().setUp()
        self.addCleanup(os.chdir, pathlib.Path.cwd())
        os.chdir(self.folder)

    def test_from_tables_to_a_response(self):
        cells = runpy.run_path(str(EXAMPLE))

        guess, fitted, found = cells["guess"], cells["fitted"], cells["found"]
        self.assertGreater(found.best["NSE fit"], found.unchanged["NSE fit"] + 0.05)
        self.assertGreater(found.best["NSE fit"], 0.85)
        self.assertGreater(fitted.statistics["CoefficientR2"], guess.statistics["CoefficientR2"])
        self.assertGreater(fitted.statistics["CoefficientR2"], 0.8)

        # The tables came into the basin with their units.
        read = nivora.open("alder.mdb").daily
        told = nivora.open("sample.mdb").daily
        year = slice("1997-10-01", "1998-09-30")
        for field, tolerance in (("Tavg", 1e-6), ("Precip", 0.0051), ("Runoff", 6e-4)):
            difference = (read[field]["A"] - told[field]["A"][year]).abs().max()
            self.assertLess(difference, tolerance, field)
        self.assertLess((read["SCA"] - told["SCA"][year]).abs().max().max(), 0.0051)
        self.assertTrue(read["Precip"]["B"].isna().all())

        # Warmer is earlier, wetter is more.
        year_change = cells["year"]
        self.assertTrue((year_change.diff("precipitation") > 0).all())
        self.assertLess(cells["response"].surface("Median day change").sel(temperature=3, precipitation=1.0), 0)
        self.assertGreater(len(cells["sample"].kept), 10)

        # The batch program finds the calibrated simulation, with the same figures.
        done = batch("run", "alder.mdb", "--simulation", "wy1998-fitted", "--kind", "year-round", "--json")
        self.assertEqual(done.returncode, 0, done.stderr)
        told = json.loads(done.stdout)["CoefficientR2"]
        self.assertEqual(numpy.float32(told), numpy.float32(fitted.statistics["CoefficientR2"]))


if __name__ == "__main__":
    unittest.main()
