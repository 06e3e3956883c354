"""NetCDF files of the batch program: what xarray reads has the bits of the basin and the names of the Python package."""

import csv
import resource
import subprocess
import unittest

import netCDF4
import nivora
import numpy
import pandas
import xarray
from support import PROGRAMS, SIMULATION, WithBasin, batch, bits

TINY = {
    "definition": 1,
    "basin": {"name": "Älder", "units": "English", "referenceElevation": 4700, "latitude": 46.5},
    "zones": [{"area": 15.6, "elevation": 4757}, {"area": 24, "elevation": None}],
    "simulations": [{"name": "wy1998", "start": "1997-10-01", "end": "1997-10-03", "units": "English"}],
}


class NetcdfTest(WithBasin):
    def export(self, basin, table, *options, file=None):
        file = file or self.folder / "table.nc"
        done = batch("export", basin, table, "--netcdf", file, *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        return file

    def test_results_are_those_of_the_run(self):
        run = nivora.open(self.file).run(SIMULATION, kind="year-round", forecast=7)
        file = self.export(
            self.file, "SimResults", "--simulation", SIMULATION.upper(), "--kind", "year-round", "--forecast"
        )
        with xarray.open_dataset(file) as found:
            told = run.results
            self.assertEqual(set(found.data_vars), set(told.data_vars))
            for name in told.data_vars:
                self.assertEqual(found[name].dims, ("zone", "date"))
                self.assertEqual(found[name].dtype, told[name].dtype, name)
                self.assertTrue(numpy.array_equal(bits(found[name].values), bits(told[name].values)), name)
            self.assertTrue((found["date"] == told["date"]).all())
            self.assertEqual(list(found["zone"].values), list(told["zone"].values))
            for name in ("simulation", "run", "version"):
                self.assertEqual(found.attrs[name], told.attrs[name])
            self.assertEqual(found.attrs["Conventions"], "CF-1.8")
            self.assertEqual(float(found["elevation"].sel(zone="B")), 1880.0)

    def test_daily_variables_have_the_bits_of_the_basin(self):
        daily = nivora.open(self.file).daily
        with xarray.open_dataset(self.export(self.file, "physicaldata")) as found:
            self.assertEqual(set(found.data_vars), set(daily))
            for name, frame in daily.items():
                wanted = frame.to_numpy().T.astype(numpy.float32)
                self.assertTrue(numpy.array_equal(bits(found[name].values), bits(wanted)), name)
            self.assertEqual(found["Precip"].attrs["units"], "cm")
            self.assertEqual(found["Precip"].attrs["standard_name"], "lwe_thickness_of_precipitation_amount")
            self.assertEqual(found["Runoff"].attrs["units"], "m3 s-1")
            self.assertNotIn("units", found["NetRadiation"].attrs)

    def test_parameters_know_their_simulation(self):
        with xarray.open_dataset(self.export(self.file, SIMULATION)) as found:
            self.assertEqual(found.attrs["simulation"], SIMULATION)
            self.assertNotIn("run", found.attrs)
            self.assertEqual(found["LapseRate"].attrs["units"], "degC/(100 m)")
            self.assertEqual(found["LagTime"].attrs["units"], "h")
            self.assertEqual(found["LagTime"].dtype, numpy.float32)

    def test_missing_values_days_and_zones(self):
        basin = nivora.new(self.folder / "tiny.mdb", TINY)
        days = pandas.DatetimeIndex(["1997-10-01", "1997-10-03"])
        basin.daily["Tavg"] = pandas.DataFrame({"A": [50.5, numpy.nan]}, index=days)
        basin.daily["SCA"] = pandas.DataFrame({"B": [0.25]}, index=days[:1])
        with netCDF4.Dataset(self.export(basin.path, "PhysicalData")) as found:
            self.assertEqual(found.title, "Älder: PhysicalData")
            self.assertEqual([str(day) for day in found["date"][:]], ["35704", "35705", "35706"])
            self.assertEqual(found["date"].units, "days since 1899-12-30")
            values = found["Tavg"][:]
            self.assertTrue(numpy.isnan(found["Tavg"]._FillValue))
            self.assertEqual(values[0, 0], 50.5)
            self.assertTrue(numpy.isnan(numpy.ma.filled(values, numpy.nan)).sum() == 5)
            self.assertEqual(found["Tavg"].units, "degF")
            self.assertEqual(found["area"].units, "mi2")
            self.assertTrue(numpy.isnan(numpy.ma.filled(found["elevation"][:], numpy.nan)[1]))
        with xarray.open_dataset(self.export(basin.path, "wy1998")) as empty:
            self.assertEqual(dict(empty.sizes), {"zone": 2, "date": 0})

    def test_the_same_table_gives_the_same_bytes(self):
        first = self.export(self.file, "PhysicalData").read_bytes()
        self.assertEqual(self.export(self.file, "PhysicalData", file=self.folder / "b.nc").read_bytes(), first)

    def test_all_units_are_known_to_the_library_of_units(self):
        """The texts, as CF wants them: numbers, names and signs that UDUNITS reads."""
        known = {
            "1", "cm", "inch", "m", "ft", "km2", "mi2", "m3 s-1", "ft3 s-1", "degC", "degF", "degC day", "degF day",
            "degC/(100 m)", "degF/(1000 ft)", "cm/(degC day)", "inch/(degF day)", "h", "days since 1899-12-30",
        }  # fmt: skip
        nivora.open(self.file).run(SIMULATION)
        for table in ("SimResults", "PhysicalData", SIMULATION):
            with netCDF4.Dataset(self.export(self.file, table)) as found:
                for name, variable in found.variables.items():
                    if hasattr(variable, "units"):
                        self.assertIn(variable.units, known, name)

    def test_what_is_no_daily_table_is_refused(self):
        for table, text in (("ZoneDescription", "no zones and days"), ("NoTable", "NoTable")):
            done = batch("export", self.file, table, "--netcdf", self.folder / "none.nc")
            self.assertEqual(done.returncode, 1)
            self.assertIn(text, done.stderr)
        done = batch("export", self.file, "PhysicalData", "--netcdf", self.folder / "none.nc", "--simulation", "none")
        self.assertEqual((done.returncode, "no simulation 'none'" in done.stderr), (1, True))
        self.assertFalse((self.folder / "none.nc").exists())
        for options in ((), ("--netcdf", "a", "--csv", "b"), ("--csv", "a", "--kind", "year-round")):
            self.assertEqual(batch("export", self.file, "PhysicalData", *options).returncode, 2, options)

    def test_hostile_names_and_places(self):
        strange = self.folder / "a 'b' \"c\" é\n.nc"
        self.export(self.file, "PhysicalData", file=strange)
        self.assertEqual(strange.read_bytes()[:4], b"\x89HDF")
        before = self.file.read_bytes()
        for place in (self.file, self.folder, self.folder / "none" / "a.nc"):
            done = batch("export", self.file, "PhysicalData", "--netcdf", place)
            self.assertEqual(done.returncode, 1, place)
            self.assertTrue(done.stderr.startswith("Export failed: "), done.stderr)
        self.assertEqual(self.file.read_bytes(), before)

    def test_a_full_disk_leaves_the_former_file(self):
        file = self.export(self.file, "PhysicalData")
        before = file.read_bytes()
        done = subprocess.run(
            [PROGRAMS / "nivora-batch", "export", self.file, "PhysicalData", "--netcdf", file],
            capture_output=True, text=True, check=False, restore_signals=False,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100_000, 100_000)),
        )  # fmt: skip
        self.assertEqual(done.returncode, 1)
        self.assertIn("Export failed", done.stderr)
        self.assertEqual(file.read_bytes(), before)
        self.assertEqual({each.name for each in self.folder.iterdir()}, {"basin.mdb", "table.nc"})

    def test_csv_is_as_before(self):
        table = self.folder / "table.csv"
        self.assertEqual(batch("export", self.file, "PhysicalData", "--csv", table).returncode, 0)
        with table.open(encoding="utf-8", newline="") as rows:
            self.assertEqual(next(csv.reader(rows))[:2], ["Zone", "Date"])


if __name__ == "__main__":
    unittest.main()
