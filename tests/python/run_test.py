"""Runs through the Python package have the numbers, the texts and the refusals of the batch program."""

import csv
import json
import signal
import subprocess
import sys
import threading
import time
import unittest

import nivora
import numpy
from support import SIMULATION, WithBasin, batch, bits


class OpenTest(WithBasin):
    def test_simulations_are_those_of_the_batch_program(self):
        told = json.loads(batch("simulations", self.file, "--json").stdout)
        found = nivora.open(self.file).simulations
        self.assertEqual(list(found), [row["Name"] for row in told])
        for row in told:
            simulation = found[row["Name"]]
            self.assertEqual(simulation["start"], row["StartDate"])
            self.assertEqual(simulation["end"], row["EndDate"])
            self.assertEqual(numpy.float32(simulation["initial_runoff"]), numpy.float32(row["InitialRunoff"]))
            self.assertEqual(simulation["comments"], row["Comments"])

    def test_a_basin_tells_name_units_and_zones(self):
        basin = nivora.open(str(self.file))
        self.assertEqual(basin.units, "Metric")
        self.assertEqual([zone["id"] for zone in basin.zones], ["A", "B", "C", "D", "E"])
        self.assertTrue(all(zone["area"] > 0 for zone in basin.zones))

    def test_a_missing_file_is_told_as_the_batch_program_tells_it(self):
        missing = self.folder / "nothing.mdb"
        with self.assertRaises(nivora.StoreError) as raised:
            nivora.open(missing)
        self.assertIn(str(raised.exception), batch("simulations", missing).stderr)

    def test_a_foreign_file_is_refused_and_left(self):
        foreign = self.folder / "foreign.mdb"
        foreign.write_text("no basin")
        with self.assertRaises(nivora.StoreError):
            nivora.open(foreign)
        self.assertEqual(foreign.read_text(), "no basin")


class DailyTest(WithBasin):
    def test_variables_are_those_of_the_file(self):
        table = self.folder / "daily.csv"
        self.assertEqual(batch("export", self.file, "PhysicalData", "--csv", table).returncode, 0)
        with table.open(encoding="utf-8", newline="") as file:
            rows = list(csv.DictReader(file))
        daily = nivora.open(self.file).daily
        self.assertEqual(list(daily), [name for name in rows[0] if name not in ("Zone", "Date")])
        told_days = {row["Date"] for row in rows}
        for name in daily:
            frame = daily[name]
            self.assertEqual(list(frame.columns), ["A", "B", "C", "D", "E"])
            days = [str(day)[:10] for day in frame.index]
            at = {day: place for place, day in enumerate(days)}
            told = numpy.full(frame.shape, numpy.nan, dtype=numpy.float32)
            for row in rows:
                told[at[row["Date"]], int(row["Zone"]) - 1] = row[name] or "nan"
            self.assertTrue(numpy.array_equal(bits(frame.values.astype(numpy.float32)), bits(told)), name)
            self.assertEqual((days[0], days[-1]), (min(told_days), max(told_days)))
        self.assertFalse(daily["Precip"].isna().all(axis=None))

    def test_units_and_names(self):
        daily = nivora.open(self.file).daily
        self.assertEqual(daily["Precip"].attrs["units"], "cm")
        self.assertEqual(daily["Runoff"].attrs["units"], "m³/s")
        with self.assertRaisesRegex(KeyError, "'Rain'.*Precip"):
            daily["Rain"]

    def test_a_basin_without_a_record_has_no_days(self):
        empty = self.folder / "empty.mdb"
        self.assertEqual(batch("template", empty).returncode, 0)
        self.assertEqual(len(nivora.open(empty).daily["Precip"]), 0)


class RunTest(WithBasin):
    def compare(self, options, **choices):
        """Runs the same simulation in both ways and compares all fields of all rows and the statistics by bits."""
        copy = self.copy()
        told = batch("run", copy, "--simulation", SIMULATION, *options, "--json")
        self.assertEqual(told.returncode, 0, told.stderr)
        table = self.folder / "results.csv"
        self.assertEqual(batch("export", copy, "SimResults", "--csv", table).returncode, 0)
        with table.open(encoding="utf-8", newline="") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual(len(rows), 5 * 365)

        run = nivora.open(self.file).run(SIMULATION, **choices)
        results = run.results
        self.assertEqual(list(results.data_vars), [name for name in rows[0] if name not in ("Zone", "Date")])
        zones = [row["Zone"] for row in rows]
        self.assertEqual(sorted(set(zones)), ["1", "2", "3", "4", "5"])
        for name, field in results.data_vars.items():
            told_values = numpy.array([row[name] or "nan" for row in rows]).astype(field.dtype)
            self.assertTrue(numpy.array_equal(bits(field.values.ravel()), bits(told_values)), name)
        self.assertEqual(
            [str(day)[:10] for day in results["date"].values], [row["Date"] for row in rows if row["Zone"] == "1"]
        )

        first = [row["DailyQ"] for row in rows if row["Zone"] == "1"]
        self.assertTrue(numpy.array_equal(bits(run.flow.values), bits(numpy.array(first, dtype=float))))

        statistics = json.loads(told.stdout)
        for name, value in run.statistics.items():
            self.assertEqual(numpy.float32(value), numpy.float32(statistics[name]), name)
        self.assertEqual(run.title, statistics["RunTitle"])
        self.assertEqual(run.messages, [(m["title"], m["text"], m["answer"]) for m in statistics["messages"]])
        return run

    def test_year_round(self):
        run = self.compare(["--kind", "year-round"], kind="year-round")
        self.assertGreater(run.statistics["CoefficientR2"], 0.5)

    def test_melt_season_is_the_usual_kind(self):
        self.compare([])

    def test_forecast(self):
        run = self.compare(["--kind", "year-round", "--forecast", "7"], kind="year-round", forecast=7)
        self.assertEqual(run.title, "Year round Forecast")

    def test_no_snow(self):
        self.compare(["--kind", "year-round", "--no-snow"], kind="year-round", no_snow=True)

    def test_lag_shares(self):
        self.compare(["--lag-shares", "0.5,0.3,0.2"], lag_shares=["0.5", "0.3", "0.2"])

    def test_the_file_holds_the_results(self):
        run = nivora.open(self.file).run(SIMULATION, kind="year-round")
        table = self.folder / "results.csv"
        batch("export", self.file, "SimResults", "--csv", table)
        with table.open(encoding="utf-8", newline="") as file:
            first = [float(row["DailyQ"]) for row in csv.DictReader(file) if row["Zone"] == "1"]
        self.assertEqual(list(run.flow), first)

    def test_results_have_zones_dates_and_units(self):
        run = nivora.open(self.file).run(SIMULATION, kind="year-round")
        self.assertEqual(dict(run.results.sizes), {"zone": 5, "date": 365})
        self.assertEqual(list(run.results["zone"].values), ["A", "B", "C", "D", "E"])
        self.assertEqual(run.results["Precip"].attrs["units"], "cm")
        self.assertEqual(run.results.attrs["simulation"], SIMULATION)
        self.assertEqual(run.results.attrs["run"], "Year round Simulation")
        self.assertEqual(run.flow.attrs["units"], "m³/s")
        self.assertEqual(str(run.flow.index[0])[:10], "1997-10-01")
        self.assertEqual(str(run.flow.index[-1])[:10], "1998-09-30")

    def test_a_run_stays_when_the_basin_is_run_again(self):
        basin = nivora.open(self.file)
        first = basin.run(SIMULATION, kind="year-round")
        second = basin.run("ellervane-1996", kind="year-round")
        self.assertEqual(str(first.flow.index[0])[:4], "1997")
        self.assertEqual(str(second.flow.index[0])[:4], "1996")


class RefusedTest(WithBasin):
    def test_an_unknown_simulation_is_told_with_the_known_ones(self):
        before = self.file.read_bytes()
        with self.assertRaises(nivora.RunError) as raised:
            nivora.open(self.file).run("wy2050")
        told = batch("run", self.file, "--simulation", "wy2050").stderr
        self.assertEqual(f"{raised.exception} [OK]".lower(), told.strip().lower())
        self.assertIn("'ellervane-1996'", str(raised.exception))
        self.assertEqual(self.file.read_bytes(), before)

    def test_an_invalid_forecast_is_told(self):
        before = self.file.read_bytes()
        with self.assertRaisesRegex(nivora.RunError, "must be 1-9"):
            nivora.open(self.file).run(SIMULATION, forecast=12)
        self.assertEqual(self.file.read_bytes(), before)

    def test_lag_shares_have_to_sum_up_to_1(self):
        before = self.file.read_bytes()
        with self.assertRaises(nivora.RunError):
            nivora.open(self.file).run(SIMULATION, lag_shares=[0.5, 0.2])
        self.assertEqual(self.file.read_bytes(), before)

    def test_choices_that_are_none(self):
        basin = nivora.open(self.file)
        with self.assertRaisesRegex(ValueError, "'melt-season' or 'year-round'"):
            basin.run(SIMULATION, kind="yearly")
        with self.assertRaisesRegex(ValueError, "'continue' or 'refuse'"):
            basin.run(SIMULATION, questions="ask")
        with self.assertRaisesRegex(ValueError, "year-round"):
            basin.run(SIMULATION, no_snow=True)

    def test_questions_are_answered_by_the_policy(self):
        file = self.without_latitude()
        basin = nivora.open(file)
        before = file.read_bytes()
        with self.assertRaisesRegex(nivora.RunError, "^Missing latitude: ") as raised:
            basin.run("wy1998", questions="refuse")
        self.assertEqual([answer for _, _, answer in raised.exception.messages], ["No"])
        self.assertEqual(file.read_bytes(), before)

        run = basin.run("wy1998")
        self.assertEqual([(title, answer) for title, _, answer in run.messages], [("Missing latitude", "Yes")])
        self.assertNotEqual(file.read_bytes(), before)


class LoadTest(WithBasin):
    def test_pandas_and_xarray_are_loaded_at_first_use(self):
        script = (
            "import sys, nivora\n"
            "run = nivora.open(sys.argv[1]).run('ellervane-1996')\n"
            "assert 'pandas' not in sys.modules and 'xarray' not in sys.modules\n"
            "run.flow\n"
            "assert 'pandas' in sys.modules and 'xarray' not in sys.modules\n"
            "run.results\n"
            "assert 'xarray' in sys.modules\n"
        )
        done = subprocess.run(
            [sys.executable, "-c", script, self.file], capture_output=True, text=True, check=False
        )
        self.assertEqual(done.returncode, 0, done.stderr)

    def hold(self):
        """Another process that holds the basin: locks of a file count between processes only."""
        holder = subprocess.Popen(
            [
                sys.executable,
                "-c",
                "import sqlite3, sys\n"
                "held = sqlite3.connect(sys.argv[1], isolation_level=None)\n"
                "held.execute('BEGIN EXCLUSIVE')\n"
                "print('held', flush=True)\n"
                "sys.stdin.read()\n",
                self.file,
            ],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
        )
        self.addCleanup(holder.stdout.close)
        self.addCleanup(holder.wait)
        self.addCleanup(holder.stdin.close)
        self.assertEqual(holder.stdout.readline(), b"held\n")
        return holder

    def test_other_threads_go_on_while_a_call_waits(self):
        basin = nivora.open(self.file)
        self.hold()
        refusals = []

        def call():
            try:
                basin.run(SIMULATION, wait=1.2)
            except nivora.StoreError as error:
                refusals.append(error)

        waiting = threading.Thread(target=call)
        waiting.start()
        steps = 0
        while waiting.is_alive():
            time.sleep(0.005)
            steps += 1
        self.assertEqual(len(refusals), 1)
        self.assertIn("did not finish within 1 seconds", str(refusals[0]))
        self.assertGreater(steps, 20)

    def test_a_call_goes_on_when_the_other_program_has_finished(self):
        basin = nivora.open(self.file)
        holder = self.hold()
        threading.Timer(0.5, holder.stdin.close).start()
        self.assertTrue(basin.run(SIMULATION, wait=30).completed)

    def test_ctrl_c_ends_the_waiting(self):
        script = (
            "import nivora, sys\n"
            "basin = nivora.Basin.__new__(nivora.Basin)\n"
            "basin.path = sys.argv[1]\n"
            "print('begun', flush=True)\n"
            "try:\n"
            "    basin.run('ellervane-1996', wait=60)\n"
            "except KeyboardInterrupt:\n"
            "    print('ended')\n"
        )
        self.hold()
        process = subprocess.Popen([sys.executable, "-c", script, self.file], stdout=subprocess.PIPE, text=True)
        self.addCleanup(process.kill)
        self.assertEqual(process.stdout.readline(), "begun\n")
        time.sleep(0.5)
        process.send_signal(signal.SIGINT)
        out, _ = process.communicate(timeout=20)
        self.assertEqual(out, "ended\n")


if __name__ == "__main__":
    unittest.main()
