"""Studies of the Python package have the numbers, the files and the refusals of the batch program."""

import copy
import datetime
import json
import os
import pickle
import re
import signal
import subprocess
import sys
import textwrap
import threading
import time
import unittest

import nivora
import numpy
import pandas
from support import SIMULATION, WithBasin, batch, bits

FREE = ["Degree Day Factors:multiply:0.7..1.4:All", "Critical Temperature:add:-1..1:All"]
FREE_OPTIONS = [option for text in FREE for option in ("--free", text)]
FIT = "1998-04-01..1998-09-30"
CHECK = "1997-10-01..1998-03-31"


class WithStudy(WithBasin):
    def study(self, **choices):
        return nivora.Study(self.file, SIMULATION, free=FREE, **choices)

    def told(self, command, *options):
        done = batch(command, self.file, "--simulation", SIMULATION, *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done


class SampleTest(WithStudy):
    def test_the_file_is_that_of_the_batch_program(self):
        told, written = self.folder / "told.csv", self.folder / "written.csv"
        for options, choices in (
            ((), {}),
            (("--sensitivity", "--seed", 3), {"sensitivity": True, "seed": 3}),
        ):
            self.told("sample", *FREE_OPTIONS, "--fit", FIT, "--runs", 1001, "--out", told, *options)
            self.study(fit=FIT).sample(1001, threads=2, **choices).to_csv(written)
            self.assertEqual(written.read_bytes(), told.read_bytes())

    def test_kept_runs_and_bands_are_those_of_the_batch_program(self):
        out, bands = self.folder / "runs.csv", self.folder / "bands.csv"
        done = self.told(
            "sample", *FREE_OPTIONS, "--runs", 500, "--keep", "KGE>0.8", "--keep", "RMSE<3", "--out", out,
            "--bands", bands,
        )  # fmt: skip
        sample = self.study().sample(500, keep=["KGE>0.8", "RMSE<3"])
        self.assertIn(f" {len(sample.kept)} kept", done.stdout)
        self.assertTrue(0 < len(sample.kept) < 500)
        self.assertTrue((sample.kept["KGE"] > 0.8).all())
        told = pandas.read_csv(bands, index_col="Date", parse_dates=True, float_precision="round_trip")
        found = sample.bands()
        self.assertEqual(list(found.columns), list(told.columns))
        self.assertTrue(numpy.array_equal(bits(found.to_numpy()), bits(told.to_numpy(dtype=float))))
        self.assertTrue((found.index == told.index).all())

    def test_the_frame_has_ranges_and_measures(self):
        sample = self.study().sample(20)
        self.assertEqual(list(sample.runs.columns[:2]), FREE)
        self.assertIn("NSE of logs", sample.runs.columns)
        self.assertEqual(list(sample.runs.index), list(range(20)))
        self.assertTrue(sample.runs[FREE[0]].between(0.7, 1.4).all())
        flow, fit, check = self.study().evaluate(sample.runs.iloc[7][FREE])
        self.assertEqual({name: sample.runs.loc[7, name] for name in fit}, fit)
        self.assertEqual(set(check.values()), {None})
        self.assertEqual(len(flow), 365)

    def test_sensitivity_is_that_of_the_batch_program(self):
        out = self.folder / "runs.csv"
        told = self.told("sample", *FREE_OPTIONS, "--runs", 400, "--sensitivity", "--out", out).stdout
        found = self.study().sample(400, sensitivity=True).sensitivity
        for measure, kind, title in (("KGE", "first", "First-order"), ("RMSE", "total", "Total")):
            line = next(
                line for line in told.split(title)[1].splitlines() if line.startswith(measure)
            ).split()
            self.assertEqual([f"{value:.3f}" for value in found[measure, kind]], line[1:])
        with self.assertRaisesRegex(ValueError, "sensitivity=True"):
            self.study().sample(10).sensitivity  # noqa: B018
        with self.assertRaisesRegex(ValueError, "at least 8"):
            self.study().sample(7, sensitivity=True)


class CalibrationTest(WithStudy):
    def compare(self, objectives, evaluations):
        out = self.folder / "fit.json"
        chosen = [option for name in objectives for option in ("--objective", name)]
        self.told(
            "calibrate", *FREE_OPTIONS, *chosen, "--fit", FIT, "--check", CHECK, "--evaluations", evaluations,
            "--out", out,
        )  # fmt: skip
        told = json.loads(out.read_text(encoding="utf-8"))
        found = self.study(objectives=objectives, fit=FIT, check=CHECK).calibrate(evaluations)
        self.assertEqual(found.evaluations, told["evaluations"])
        self.assertEqual(len(found.sets), len(told["sets"]))
        for place, one in enumerate(told["sets"]):
            self.assertEqual(found.numbers(place), [number["number"] for number in one["numbers"]])
            row = found.sets.iloc[place]
            for name in objectives:
                self.assertEqual(row[f"{name} fit"], one["fit"][name])
                self.assertEqual(row[f"{name} check"], one["check"][name])
        self.assertEqual(found.unchanged["KGE fit"], told["unchanged"]["fit"]["KGE"])
        return found

    def test_one_objective(self):
        found = self.compare(["KGE"], 2500)
        self.assertGreater(found.best["KGE fit"], found.unchanged["KGE fit"])

    def test_a_front(self):
        self.assertGreater(len(self.compare(["KGE", "MAE"], 400).sets), 2)

    def test_a_set_is_stored_as_a_simulation_that_has_its_measure(self):
        found = self.study().calibrate(500)
        found.save_as("fitted")
        self.assertIn("fitted", nivora.open(self.file).simulations)
        fitted = nivora.Study(self.file, "fitted", free=["An:multiply:1..1:All"])
        self.assertEqual(fitted.evaluate([1.0])[1]["KGE"], found.best["KGE fit"])
        before = self.file.read_bytes()
        with self.assertRaisesRegex(nivora.RefusedError, "fitted"):
            found.save_as("fitted")
        rain = nivora.Study(self.file, SIMULATION, free=["Precipitation:multiply:0.9..1.1:All"]).calibrate(50)
        with self.assertRaisesRegex(nivora.RefusedError, "belongs to the basin"):
            rain.save_as("rain")
        self.assertEqual(self.file.read_bytes(), before)


class RefusedTest(WithStudy):
    def test_wrong_choices_are_told_in_the_words_of_the_batch_program(self):
        for choices, options in (
            ({"free": ["An:multiply:0.5"]}, ["--free", "An:multiply:0.5"]),
            ({"free": FREE, "objectives": ["XYZ"]}, [*FREE_OPTIONS, "--objective", "XYZ"]),
            ({"free": FREE, "fit": "2003-01-01..2003-02-01"}, [*FREE_OPTIONS, "--fit", "2003-01-01..2003-02-01"]),
        ):
            with self.assertRaises(nivora.RefusedError) as raised:
                nivora.Study(self.file, SIMULATION, **choices)
            told = batch("calibrate", self.file, "--simulation", SIMULATION, *options).stderr
            self.assertEqual(f"{raised.exception} [OK]\n", told)

    def test_choices_that_are_none(self):
        with self.assertRaisesRegex(ValueError, "list of texts"):
            nivora.Study(self.file, SIMULATION, free=FREE[0])
        with self.assertRaisesRegex(ValueError, "a period such as"):
            self.study(fit="last winter")
        with self.assertRaisesRegex(nivora.RefusedError, "no simulation 'wy2050'"):
            nivora.Study(self.file, "wy2050", free=FREE)
        with self.assertRaises(nivora.StoreError):
            nivora.Study(self.folder / "none.mdb", SIMULATION, free=FREE)
        study = self.study(fit=(datetime.date(1998, 4, 1), datetime.date(1998, 9, 30)))
        for runs in (0, -1, 1.5, "5", 10**9):
            with self.assertRaisesRegex(ValueError, "^runs is .*a whole number from 1 to 100000000"):
                study.sample(runs)
        for name, wrong in (("seed", -1), ("seed", 2**32), ("threads", 0), ("threads", 1025), ("threads", 1.5)):
            for call in (study.sample, study.calibrate):
                with self.assertRaisesRegex(ValueError, f"^{name} is {wrong}"):
                    call(5, **{name: wrong})
        with self.assertRaisesRegex(ValueError, "^evaluations is 0"):
            study.calibrate(0)
        self.assertEqual(len(study.sample(numpy.int64(5), seed=numpy.uint8(3), threads=numpy.int32(2)).runs), 5)
        with self.assertRaisesRegex(ValueError, "such as KGE>0.7"):
            study.sample(5, keep=["KGE"])
        with self.assertRaisesRegex(ValueError, "2 ranges, but 1"):
            study.evaluate([1.0])
        with self.assertRaisesRegex(ValueError, "no bands"):
            study.sample(5, keep=["KGE>2"]).bands()


class ResponseTest(WithStudy):
    def response(self, **choices):
        return nivora.open(self.file).response(
            SIMULATION,
            **{"winter_end": "1998-03-31", "temperature": [0, 1.5, 3], "precipitation": [0.9, 1, 1.1], **choices},
        )

    def test_the_file_is_that_of_the_batch_program(self):
        told, written = self.folder / "told.csv", self.folder / "written.csv"
        self.told(
            "response", "--winter-end", "1998-03-31", "--temperature", "0,1.5,3", "--precipitation", "0.9,1,1.1",
            "--out", told,
        )  # fmt: skip
        self.response(threads=2).to_csv(written)
        self.assertEqual(written.read_bytes(), told.read_bytes())

    def test_a_surface_is_temperature_by_precipitation(self):
        response = self.response(winter_end=datetime.date(1998, 3, 31))
        surface = response.surface("Year change")
        self.assertEqual(surface.dims, ("temperature", "precipitation"))
        self.assertEqual(surface.attrs["units"], "10^6 m³")
        row = response.table.query("Temperature == 1.5 and Precipitation == 1.1").iloc[0]
        self.assertEqual(float(surface.sel(temperature=1.5).isel(precipitation=2)), row["Year change"])
        self.assertEqual(response.surface("Median day change").attrs["units"], "days")
        self.assertEqual(response.surface("Highest change").attrs["units"], "m³/s")
        with self.assertRaisesRegex(ValueError, "Median day change"):
            response.surface("Median day")
        with self.assertRaisesRegex(KeyError, "Winter"):
            response.surface("Spring")

    def test_wrong_changes(self):
        for choices, text in (
            ({"temperature": []}, "0 values"),
            ({"temperature": [1, 1.0]}, "twice"),
            ({"temperature": [float("nan")]}, "not a number"),
            ({"precipitation": [-0.5]}, "below 0"),
            ({"temperature": range(201)}, "1 to 200"),
            ({"winter_end": "31.3.1998"}, "1996-03-31"),
            ({"winter_end": "2001-01-01"}, "Invalid dates"),
        ):
            with self.assertRaisesRegex(ValueError, text):
                self.response(**choices)


class HelpTest(WithStudy):
    def test_the_variables_that_help_names_are_taken(self):
        told = re.search(r"Variables are (.*?)\s+or their names", nivora.Study.__doc__, re.DOTALL)
        fields = re.split(r",\s*", told[1])
        self.assertEqual(len(fields), 14)
        for field in fields:
            try:
                nivora.Study(self.file, SIMULATION, free=[f"{field}:multiply:0.9..1.1:All"])
            except nivora.RefusedError as error:
                self.assertIn(field, ("Tmax", "Tmin"), error)  # the simulation has average temperatures
                self.assertNotIn("is not a variable", str(error))

    def test_help_names_what_a_run_has(self):
        run = nivora.open(self.file).run(SIMULATION)
        for name in vars(run):
            if not name.startswith("_"):
                self.assertRegex(nivora.Run.__doc__, rf"\b{name}\b")


class TravelTest(WithStudy):
    def test_a_pickled_study_needs_no_file(self):
        study = self.study(check=CHECK)
        content = pickle.dumps(study)
        here = study.sample(30).runs
        self.file.unlink()
        there = pickle.loads(content)
        self.assertTrue(there.sample(30).runs.equals(here))

    def test_results_can_be_pickled_and_copied(self):
        study = self.study()
        sample, found = study.sample(30, keep=["KGE>0"]), study.calibrate(60)
        response = nivora.ResponseStudy(
            self.file, SIMULATION, winter_end="1998-03-31", temperature=[1], precipitation=[1]
        ).evaluate()
        for again in (pickle.loads(pickle.dumps((sample, found, response))), copy.deepcopy((sample, found, response))):
            self.assertTrue(again[0].kept.equals(sample.kept))
            self.assertTrue(again[0].bands().equals(sample.bands()))
            self.assertTrue(again[1].sets.equals(found.sets))
            self.assertTrue(again[2].table.equals(response.table))

    def test_a_basin_that_changed_meanwhile_is_refused(self):
        study = self.study()
        basin = nivora.open(self.file)
        basin.daily["Tavg"] = basin.daily["Tavg"] + 1.0
        with self.assertRaisesRegex(nivora.RefusedError, "changed after the study was made"):
            pickle.loads(pickle.dumps(study))

    def test_another_version_is_refused(self):
        state = self.study().__getstate__()
        state["version"] = "0.9"
        study = nivora.Study.__new__(nivora.Study)
        with self.assertRaisesRegex(nivora.RefusedError, "0.9"):
            study.__setstate__(state)


class LongCallTest(WithStudy):
    def test_ctrl_c_ends_a_long_call(self):
        script = textwrap.dedent(
            f"""
            import nivora, sys
            study = nivora.Study(sys.argv[1], {SIMULATION!r}, free={FREE!r})
            begun = []
            def tell(done, whole):
                if not begun:
                    begun.append(print("begun", flush=True))
            try:
                study.sample(50_000_000, progress=tell)
            except KeyboardInterrupt:
                print("ended", study.sample(3).runs.shape)
            """
        )
        process = subprocess.Popen(
            [sys.executable, "-c", script, self.file], stdout=subprocess.PIPE, text=True, start_new_session=True
        )
        try:
            self.assertEqual(process.stdout.readline(), "begun\n")
            begin = time.monotonic()
            os.kill(process.pid, signal.SIGINT)
            out, _ = process.communicate(timeout=30)
            self.assertEqual(out, "ended (3, 10)\n")
            self.assertLess(time.monotonic() - begin, 20)
        finally:
            process.kill()
            process.wait()

    def test_other_threads_go_on_meanwhile(self):
        study = self.study()
        done = threading.Event()
        steps = 0

        def call():
            study.sample(15_000, threads=1)
            done.set()

        working = threading.Thread(target=call)
        working.start()
        while not done.is_set():
            time.sleep(0.002)
            steps += 1
        working.join()
        self.assertGreater(steps, 5)

    def test_an_error_of_the_progress_ends_the_call(self):
        def wrong(done, whole):
            raise LookupError("enough")

        with self.assertRaisesRegex(LookupError, "enough"):
            self.study().sample(400_000, progress=wrong)

    def test_progress_reaches_the_end(self):
        told = []
        self.study().sample(30_000, progress=lambda *counts: told.append(counts))
        self.assertEqual(told[-1], (30_000, 30_000))
        self.assertEqual(told, sorted(told))


if __name__ == "__main__":
    unittest.main()
