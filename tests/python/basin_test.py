"""Basins that the Python package makes, fills, evaluates and draws are those of the batch program."""

import csv
import json
import os
import struct
import subprocess
import sys
import unittest

import nivora
import numpy
import pandas
from support import SIMULATION, WithBasin, batch, bits

TINY = {
    "definition": 1,
    "basin": {"name": "Alder", "units": "Metric", "referenceElevation": 1450, "latitude": 46.5},
    "zones": [{"area": 40.5, "elevation": 1450}, {"area": 62, "elevation": 1880}],
    "simulations": [{"name": "wy1998", "start": "1997-10-01", "end": "1997-10-02", "units": "Metric"}],
}


class NewTest(WithBasin):
    def test_a_definition_makes_the_basin_of_the_batch_program(self):
        told = batch("definition", self.file).stdout
        basin = nivora.open(self.file)
        self.assertEqual(basin.definition, json.loads(told))
        made = nivora.new(self.folder / "made.mdb", basin.definition)
        self.assertEqual(batch("definition", made.path).stdout, told)
        self.assertEqual(list(made.simulations), list(basin.simulations))

    def test_a_definition_may_be_a_text_or_a_file(self):
        file = self.folder / "tiny.json"
        file.write_text(json.dumps(TINY), encoding="utf-8")
        for number, definition in enumerate((json.dumps(TINY), file, str(file))):
            made = nivora.new(self.folder / f"{number}.mdb", definition)
            self.assertEqual([zone["elevation"] for zone in made.zones], [1450, 1880])

    def test_a_bad_definition_is_told_whole_and_leaves_no_file(self):
        wrong = {**TINY, "zones": [], "colour": "green"}
        with self.assertRaises(nivora.TableError) as raised:
            nivora.new(self.folder / "wrong.mdb", wrong)
        self.assertIn("colour", str(raised.exception))
        self.assertIn("zones", str(raised.exception))
        self.assertFalse((self.folder / "wrong.mdb").exists())

    def test_a_file_that_is_there_stays(self):
        before = self.file.read_bytes()
        with self.assertRaisesRegex(nivora.FileError, "exists already"):
            nivora.new(self.file, TINY)
        self.assertEqual(self.file.read_bytes(), before)


class WriteTest(WithBasin):
    def setUp(self):
        super().setUp()
        self.basin = nivora.new(self.folder / "tiny.mdb", TINY)
        self.days = pandas.DatetimeIndex(["1997-10-01", "1997-10-02"])

    def stored(self, table="PhysicalData"):
        file = self.folder / "stored.csv"
        self.assertEqual(batch("export", self.basin.path, table, "--csv", file).returncode, 0)
        with file.open(encoding="utf-8", newline="") as rows:
            return list(csv.DictReader(rows))

    def test_values_reach_the_file_to_the_bit(self):
        frame = pandas.DataFrame({"A": [0.1, numpy.nan], "B": [1.0 / 3.0, 16777217.0]}, index=self.days)
        self.basin.daily["Precip"] = frame
        told = {(row["Zone"], row["Date"]): row["Precip"] for row in self.stored()}
        self.assertEqual(told["1", "1997-10-02"], "")
        self.assertEqual(
            [struct.pack("f", float(told[key])) for key in (("1", "1997-10-01"), ("2", "1997-10-01"))],
            [struct.pack("f", 0.1), struct.pack("f", 1.0 / 3.0)],
        )
        read = self.basin.daily["Precip"]
        wanted = frame.to_numpy().astype(numpy.float32).astype(float)
        self.assertTrue(numpy.array_equal(bits(read.to_numpy()), bits(wanted)))

    def test_what_is_read_is_written_without_a_change(self):
        copy = self.copy()
        before = {name: frame.to_numpy() for name, frame in nivora.open(copy).daily.items()}
        basin = nivora.open(copy)
        for name in basin.daily:
            basin.daily[name] = basin.daily[name]
        for name, values in before.items():
            self.assertTrue(numpy.array_equal(bits(basin.daily[name].to_numpy()), bits(values)), name)
        self.assertEqual(
            nivora.open(copy).run(SIMULATION).statistics, nivora.open(self.file).run(SIMULATION).statistics
        )

    def test_other_days_zones_and_fields_stay(self):
        self.basin.daily["Tavg"] = pandas.DataFrame({"A": [1.0, 2.0], "B": [3.0, 4.0]}, index=self.days)
        self.basin.daily["Precip"] = pandas.DataFrame({"B": [5.0]}, index=self.days[1:])
        self.assertEqual(self.basin.daily["Tavg"].to_numpy().tolist(), [[1.0, 3.0], [2.0, 4.0]])
        precip = self.basin.daily["Precip"]
        self.assertEqual(precip["B"].iloc[1], 5.0)
        self.assertTrue(precip["A"].isna().all())

    def test_parameters_are_written_too(self):
        fields = self.basin.parameters("WY1998")
        fields["An"] = pandas.DataFrame({"A": [0.45, 0.5], "B": [0.4, 0.55]}, index=self.days)
        self.assertEqual([row["An"] for row in self.stored("wy1998")], ["0.45", "0.4", "0.5", "0.55"])
        with self.assertRaisesRegex(KeyError, "'wy1999'.*'wy1998'"):
            self.basin.parameters("wy1999")

    def test_refused_values_are_told_with_their_days_and_nothing_is_stored(self):
        before = self.stored()
        frame = pandas.DataFrame({"A": [1.0, numpy.inf], "B": [1.0, 1e300]}, index=self.days)
        with self.assertRaisesRegex(nivora.TableError, "1997-10-02"):
            self.basin.daily["Precip"] = frame
        self.assertEqual(self.stored(), before)

    def test_frames_that_can_not_be_meant(self):
        good = pandas.DataFrame({"A": [1.0, 2.0]}, index=self.days)
        daily = self.basin.daily
        for wrong, text in (
            (good["A"], "DataFrame with a column"),
            ([1, 2], "DataFrame"),
            (good.reset_index(drop=True), "DatetimeIndex"),
            (good.set_axis(self.days + pandas.Timedelta("6h")), "whole days"),
            (good.rename(columns={"A": "Z"}), "Z"),
            (good.iloc[[0, 0]], ""),
        ):
            with self.assertRaisesRegex(ValueError, text):
                daily["Precip"] = wrong
        good.attrs["units"] = "mm"
        with self.assertRaisesRegex(ValueError, "'mm'.*'cm'"):
            daily["Precip"] = good
        with self.assertRaises(KeyError):
            daily["Rain"] = good
        with self.assertRaises(TypeError):
            del daily["Precip"]

    def test_load_takes_files_and_frames_with_units(self):
        file = self.folder / "rain.csv"
        file.write_text("Date;P1;P2\n01.10.1997;5;7,5\n02.10.1997;NA;2\n", encoding="utf-8")
        choices = {
            "field": "Precip",
            "columns": {"A": "P1", "B": "P2"},
            "units": "mm",
            "dates": "DD.MM.YYYY",
            "decimal": "comma",
            "missing": ["NA"],
        }
        counts = {"added": 4, "changed": 0, "equal": 0}
        self.assertEqual(self.basin.load("PhysicalData", file, **choices, dry_run=True), counts)
        self.assertEqual(self.stored(), [])
        self.assertEqual(self.basin.load("PhysicalData", file, **choices), counts)
        self.assertEqual([row["Precip"] for row in self.stored()], ["0.5", "0.75", "", "0.2"])
        frame = pandas.DataFrame({"Zone": [1], "Date": ["1997-10-01"], "Precip": [0.5], "Tavg": [-2.5]})
        self.assertEqual(self.basin.load("PhysicalData", frame), {"added": 0, "changed": 1, "equal": 0})
        self.assertEqual(self.basin.daily["Tavg"]["A"].iloc[0], -2.5)

    def test_all_refused_lines_of_a_file_are_told(self):
        file = self.folder / "rain.csv"
        file.write_text("Date,A\n1997-10-01,x\n1997-02-30,1\n", encoding="utf-8")
        with self.assertRaises(nivora.TableError) as raised:
            self.basin.load("PhysicalData", file, field="Precip")
        self.assertIn("line 2", str(raised.exception))
        self.assertIn("line 3", str(raised.exception))
        with self.assertRaisesRegex(nivora.TableError, "NoTable"):
            self.basin.load("NoTable", file, field="Precip")
        with self.assertRaises(nivora.FileError):
            self.basin.load("PhysicalData", self.folder / "none.csv", field="Precip")


class ClimateTest(WithBasin):
    def setUp(self):
        super().setUp()
        done = batch(
            "scenario", self.file, "--simulation", SIMULATION, "--name", "warm", "--winter-end", "1998-03-31",
            "--edit", "1:1997-10-01:1998-09-30:0:2:0",
        )  # fmt: skip
        self.assertEqual(done.returncode, 0, done.stderr)

    def test_an_evaluation_is_that_of_the_batch_program(self):
        copy = self.copy()
        report = self.folder / "told.out"
        told = batch("climate", copy, "--simulation", SIMULATION, "--scenario", "warm", "--report", report, "--json")
        self.assertEqual(told.returncode, 0, told.stderr)
        told = json.loads(told.stdout)
        written = self.folder / "written.out"
        found = nivora.open(self.file).climate(SIMULATION, "WARM", report=written)
        for step, statistics in told["steps"].items():
            for name, value in statistics.items():
                self.assertEqual(numpy.float32(found.steps[int(step)][name]), numpy.float32(value), (step, name))
        self.assertEqual([str(step) for step in found.steps], list(told["steps"]))
        for row, cells in told["summary"].items():
            for season, value in cells.items():
                self.assertEqual(
                    bits(numpy.float32([found.summary.loc[row, season]])),
                    bits(numpy.float32(["nan" if value is None else value])),
                )
        self.assertEqual(found.notes, [note["text"] for note in told["notes"]])
        self.assertEqual(found.summary.attrs["units"], "10^6 m³")
        # The reports have the time of their making in them.
        self.assertEqual(len(written.read_text("latin-1").splitlines()), len(report.read_text("latin-1").splitlines()))
        tables = []
        for file in (self.file, copy):
            table = self.folder / "results.csv"
            self.assertEqual(batch("export", file, "SimResults", "--csv", table).returncode, 0)
            tables.append(table.read_bytes())
        self.assertEqual(tables[0], tables[1])

    def test_steps_up_to_one(self):
        found = nivora.open(self.file).climate(SIMULATION, "warm", last_step=2)
        self.assertEqual(list(found.steps), [1, 2])
        self.assertFalse(list(self.folder.glob("*.out")))
        with self.assertRaisesRegex(ValueError, "1 to 6"):
            nivora.open(self.file).climate(SIMULATION, "warm", last_step=7)

    def test_an_unknown_scenario_is_told_with_the_known_ones(self):
        before = self.file.read_bytes()
        with self.assertRaisesRegex(nivora.RunError, "No such scenario: .*'cold'.*'warm'"):
            nivora.open(self.file).climate(SIMULATION, "cold")
        self.assertEqual(self.file.read_bytes(), before)


class PlotTest(WithBasin):
    def test_a_plot_is_the_picture_of_the_batch_program(self):
        basin = nivora.open(self.file)
        basin.run(SIMULATION, kind="year-round", forecast=7)
        told = self.folder / "told.png"
        # The date and time of the drawing stand on it, so that both have to be made within one second.
        for _ in range(5):
            done = batch(
                "plot", self.file, "--simulation", SIMULATION, "--plot", 14, "--zone", "B", "--kind", "year-round",
                "--forecast", 7, "--size", "800x600", "--out", told,
            )  # fmt: skip
            self.assertEqual(done.returncode, 0, done.stderr)
            picture = basin.plot(14, zone="B", size=(800, 600))
            if told.read_bytes() == picture:
                break
        self.assertEqual(told.read_bytes(), picture)
        self.assertEqual(picture[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(struct.unpack(">II", picture[16:24]), (800, 600))
        self.assertEqual(picture._repr_png_(), bytes(picture))
        picture.save(self.folder / "saved.png")
        self.assertEqual((self.folder / "saved.png").read_bytes(), bytes(picture))

    def test_what_can_not_be_drawn_is_told(self):
        basin = nivora.open(self.file)
        with self.assertRaisesRegex(ValueError, "'ellervane-1996'"):
            basin.plot(1)
        with self.assertRaises(nivora.RefusedError):
            basin.plot(18, simulation=SIMULATION)
        with self.assertRaises(nivora.RefusedError):
            basin.plot(99, simulation=SIMULATION)

    def test_the_batch_program_has_to_be_of_the_same_version(self):
        folder = self.folder / "programs"
        (folder / "python").mkdir(parents=True)
        package = os.path.dirname(nivora.__file__)
        os.symlink(package, folder / "python" / "nivora")
        script = (
            "import sys; sys.path.insert(0, sys.argv[1]); import nivora, nivora._programs as p\n"
            "p._folders = lambda: iter([p.pathlib.Path(sys.argv[2])])\n"
            "nivora.open(sys.argv[3]).plot(1, simulation='ellervane-1996')\n"
        )
        for content, text in ((None, "was not found"), ("#!/bin/sh\necho Nivora 0.9\n", "'0.9'")):
            if content:
                (folder / "nivora-batch").write_text(content, encoding="utf-8")
                (folder / "nivora-batch").chmod(0o755)
            done = subprocess.run(
                [sys.executable, "-c", script, folder / "python", folder, self.file],
                capture_output=True, text=True, check=False,
            )  # fmt: skip
            self.assertIn("FileError", done.stderr)
            self.assertIn(text, done.stderr)


if __name__ == "__main__":
    unittest.main()
