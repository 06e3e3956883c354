"""Studies on a cluster are those of one machine, whatever happens to workers and scheduler."""

import contextlib
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time
import unittest

import nivora
import nivora.cluster
import numpy
from distributed import Client
from support import SIMULATION, WithBasin, batch

FREE = ["Degree Day Factors:multiply:0.7..1.4:All", "Critical Temperature:add:-1..1:All"]


def environment(**more):
    return {**os.environ, **more}


class Cluster:
    """A scheduler and workers as processes of their own, on the loopback address."""

    def __init__(self, folder):
        self._folder = pathlib.Path(folder)
        self._processes = []

    def _start(self, module, *arguments, **more):
        process = subprocess.Popen(
            [sys.executable, "-m", module, *map(str, arguments)],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=self._folder, env=environment(**more),
        )  # fmt: skip
        self._processes.append(process)
        return process

    def start_scheduler(self):
        file = self._folder / f"scheduler-{time.monotonic_ns()}.json"
        self.scheduler = self._start(
            "distributed.cli.dask_scheduler", "--host", "127.0.0.1", "--port", 0, "--no-dashboard",
            "--dashboard-address", "127.0.0.1:0", "--scheduler-file", file,
        )  # fmt: skip
        end = time.monotonic() + 30
        while not file.exists() and time.monotonic() < end:
            time.sleep(0.02)
        for _ in range(100):
            with contextlib.suppress(ValueError, FileNotFoundError):
                self.address = json.loads(file.read_text())["address"]
                return
            time.sleep(0.02)
        raise AssertionError("the scheduler did not start")

    def start_worker(self, **more):
        return self._start(
            "distributed.cli.dask_worker", self.address, "--host", "127.0.0.1", "--no-dashboard",
            "--dashboard-address", "127.0.0.1:0", "--nthreads", 1, "--no-nanny", "--local-directory", self._folder,
            "--death-timeout", 60, **more,
        )  # fmt: skip

    def stop(self):
        for process in self._processes:
            process.kill()
            process.wait()


class WithCluster(WithBasin):
    def setUp(self):
        super().setUp()
        self.cluster = Cluster(self.folder)
        self.addCleanup(self.cluster.stop)
        self.cluster.start_scheduler()
        chunk = nivora.cluster.CHUNK_SECONDS
        self.addCleanup(setattr, nivora.cluster, "CHUNK_SECONDS", chunk)

    def client(self):
        client = Client(self.cluster.address, timeout=10)
        self.addCleanup(self.close, client)
        return client

    @staticmethod
    def close(client):
        with contextlib.suppress(TimeoutError):  # of a scheduler that was stopped
            client.close(5)

    def study(self, **choices):
        return nivora.Study(self.file, SIMULATION, free=FREE, **choices)


class EqualTest(WithCluster):
    def test_results_are_those_of_one_machine(self):
        for _ in range(2):
            self.cluster.start_worker()
        client = self.client()
        client.wait_for_workers(2, timeout=30)
        study = self.study()

        with self.subTest("sample"):
            nivora.cluster.CHUNK_SECONDS = 0.02
            told = []
            folder = self.folder / "sample"
            there = nivora.cluster.sample(
                study, client, 5000, seed=4, keep=["KGE>0.8"], folder=folder,
                progress=lambda *counts: told.append(counts),
            )  # fmt: skip
            here = study.sample(5000, seed=4, keep=["KGE>0.8"])
            self.assertTrue(there.runs.equals(here.runs))
            self.assertTrue(there.bands().equals(here.bands()))
            self.assertEqual((told[0], told[-1]), ((0, 5000), (5000, 5000)))
            self.assertGreater(len(told), 3)
            there.to_csv(self.folder / "there.csv")
            done = batch("gather", *sorted(folder.iterdir()), "--out", self.folder / "gathered.csv")
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual((self.folder / "there.csv").read_bytes(), (self.folder / "gathered.csv").read_bytes())

        with self.subTest("response"):
            choices = {"winter_end": "1998-03-31", "temperature": range(5), "precipitation": [0.8, 1, 1.2]}
            there = nivora.cluster.response(nivora.ResponseStudy(self.file, SIMULATION, **choices), client)
            there.to_csv(self.folder / "there.csv")
            nivora.open(self.file).response(SIMULATION, **choices).to_csv(self.folder / "here.csv")
            self.assertEqual((self.folder / "there.csv").read_bytes(), (self.folder / "here.csv").read_bytes())

        for objectives, evaluations, lanes in ((["KGE"], 3001, 3), (["KGE", "MAE"], 300, 1)):
            with self.subTest("calibration", objectives=objectives):
                study = self.study(objectives=objectives)
                folder = self.folder / "-".join(objectives)
                there = nivora.cluster.calibrate(study, client, evaluations, seed=2, folder=folder)
                here = study.calibrate(evaluations, seed=2)
                self.assertTrue(there.sets.equals(here.sets))
                self.assertEqual(there.evaluations, here.evaluations)
                self.assertEqual(len(list(folder.iterdir())), lanes)
                # A lane that is missing is walked again, the others are taken from their files.
                (folder / "lane-00.json").unlink()
                told = []
                again = nivora.cluster.calibrate(
                    study, client, evaluations, seed=2, folder=folder, progress=lambda *counts: told.append(counts)
                )
                self.assertTrue(again.sets.equals(here.sets))
                self.assertEqual(told, [(evaluations if lanes > 1 else here.evaluations, evaluations)])

    def test_a_file_that_changes_after_the_study_was_made(self):
        self.cluster.start_worker()
        client = self.client()
        study = self.study()
        here = study.sample(40)
        content = self.file.read_bytes()
        basin = nivora.open(self.file)
        basin.daily["Precip"] = basin.daily["Precip"] * 2
        with self.assertRaisesRegex(nivora.RefusedError, "The basin file changed after the study was made"):
            nivora.cluster.sample(study, client, 40)
        # The same study of the file as it was is not taken for the one that was refused.
        self.file.write_bytes(content)
        self.assertTrue(nivora.cluster.sample(self.study(), client, 40).runs.equals(here.runs))
        # What the cluster has got is the study as it was made, as it is here.
        basin.daily["Precip"] = basin.daily["Precip"] * 2
        self.assertTrue(nivora.cluster.sample(study, client, 40).runs.equals(here.runs))
        self.assertFalse(nivora.cluster.sample(self.study(), client, 40).runs.equals(here.runs))


class LossTest(WithCluster):
    def test_workers_that_are_killed_cost_their_chunks_alone(self):
        nivora.cluster.CHUNK_SECONDS = 0.05
        workers = [self.cluster.start_worker() for _ in range(2)]
        client = self.client()
        client.wait_for_workers(2, timeout=30)
        study = self.study()
        events = []

        def tell(done, whole):
            if done > 3000 and not events:
                events.append(done)
                workers[0].kill()
            elif done > 20_000 and len(events) == 1:
                # The last worker goes, with the only copy of the study that a worker has; another one comes.
                events.append(done)
                workers[1].kill()
                self.cluster.start_worker()

        there = nivora.cluster.sample(study, client, 60_000, progress=tell)
        self.assertEqual(len(events), 2)
        self.assertLess(events[1], 60_000)
        self.assertTrue(there.runs.equals(study.sample(60_000).runs))

    def test_a_study_goes_on_after_its_scheduler_was_stopped(self):
        nivora.cluster.CHUNK_SECONDS = 0.05
        self.cluster.start_worker()
        client = self.client()
        study = self.study()
        folder = self.folder / "parts"

        def stop(done, whole):
            if done > 5000:
                self.cluster.scheduler.kill()

        with self.assertRaisesRegex(nivora.cluster.SchedulerLostError, "goes on from there"):
            nivora.cluster.sample(study, client, 60_000, folder=folder, progress=stop)
        self.close(client)
        kept = {file.name: file.stat().st_mtime_ns for file in folder.iterdir()}
        self.assertTrue(kept)

        self.cluster.start_scheduler()
        self.cluster.start_worker()
        told = []
        there = nivora.cluster.sample(
            study, self.client(), 60_000, folder=folder, progress=lambda *counts: told.append(counts[0])
        )
        self.assertGreater(told[0], 5000)
        for name, time_of_writing in kept.items():
            self.assertEqual((folder / name).stat().st_mtime_ns, time_of_writing)
        self.assertTrue(there.runs.equals(study.sample(60_000).runs))


class RefusedTest(WithCluster):
    def other_version(self):
        """A folder with a package of another version."""
        folder = self.folder / "other"
        shutil.copytree(pathlib.Path(nivora.__file__).parent, folder / "nivora")
        with open(folder / "nivora" / "__init__.py", "a", encoding="utf-8") as file:
            file.write('\n_core.version = "0.9"\n')
        return {"PYTHONPATH": str(folder)}

    def test_a_worker_of_another_version_is_refused_by_name(self):
        self.cluster.start_worker(**self.other_version())
        client = self.client()
        client.wait_for_workers(1, timeout=30)
        with self.assertRaisesRegex(nivora.cluster.WorkerError, r"tcp://127\.0\.0\.1:\d+ has version 0\.9"):
            nivora.cluster.sample(self.study(), client, 100)

    def test_a_worker_of_another_version_that_comes_late_is_refused_by_name(self):
        nivora.cluster.CHUNK_SECONDS = 0.05
        self.cluster.start_worker()
        client = self.client()
        client.wait_for_workers(1, timeout=30)
        other = self.other_version()
        late = []

        def tell(done, whole):
            if not late:
                late.append(self.cluster.start_worker(**other))
                client.wait_for_workers(2, timeout=30)

        with self.assertRaisesRegex(nivora.cluster.WorkerError, r"has version 0\.9"):
            nivora.cluster.sample(self.study(), client, 400_000, progress=tell)

    def test_a_worker_without_the_package_is_refused_by_name(self):
        self.cluster.start_worker(PYTHONPATH=str(self.folder))
        client = self.client()
        client.wait_for_workers(1, timeout=30)
        with self.assertRaisesRegex(nivora.cluster.WorkerError, "has no package 'nivora'"):
            nivora.cluster.calibrate(self.study(), client, 100)

    def test_a_cluster_without_workers_is_told(self):
        wait = nivora.cluster._WAIT_FOR_WORKERS
        self.addCleanup(setattr, nivora.cluster, "_WAIT_FOR_WORKERS", wait)
        nivora.cluster._WAIT_FOR_WORKERS = 0.2
        with self.assertRaisesRegex(nivora.cluster.WorkerError, "has no worker"):
            nivora.cluster.sample(self.study(), self.client(), 100)


class PartsTest(WithBasin):
    """What a folder may hold needs no cluster to be refused."""

    def parts(self, **choices):
        plan = nivora._study.SamplePlan(nivora.Study(self.file, SIMULATION, free=FREE), 40, **choices)
        return plan, nivora.cluster._Parts(plan, plan.runs, self.folder / "parts")

    def test_gaps_are_found_whatever_the_cuts_were(self):
        plan, parts = self.parts(seed=1, sensitivity=False)
        for first, behind in ((30, 35), (0, 10), (12, 20)):
            parts.add(first, behind, plan.lines(first, behind))
        self.assertEqual(list(parts.gaps()), [(10, 12), (20, 30), (35, 40)])
        again = nivora.cluster._Parts(plan, plan.runs, self.folder / "parts")
        self.assertEqual((list(again.gaps()), again.done()), ([(10, 12), (20, 30), (35, 40)], 23))
        self.assertEqual(again.lines(), plan.lines(0, 10) + plan.lines(12, 20) + plan.lines(30, 35))

    def test_parts_of_another_study_are_refused(self):
        plan, parts = self.parts(seed=1, sensitivity=False)
        parts.add(0, 10, plan.lines(0, 10))
        with self.assertRaisesRegex(nivora.RefusedError, "another study"):
            self.parts(seed=2, sensitivity=False)

    def test_damaged_and_doubled_parts_are_refused(self):
        plan, parts = self.parts(seed=1, sensitivity=False)
        parts.add(0, 10, plan.lines(0, 10))
        parts.add(5, 12, plan.lines(5, 12))
        with self.assertRaisesRegex(nivora.RefusedError, "overlap at run 5"):
            self.parts(seed=1, sensitivity=False)
        file = self.folder / "parts" / "000000005-000000012.csv"
        file.write_text(file.read_text(encoding="utf-8")[:-9], encoding="utf-8")
        with self.assertRaisesRegex(nivora.RefusedError, "damaged"):
            self.parts(seed=1, sensitivity=False)

    def test_lanes_of_another_search_and_damaged_ones_are_refused(self):
        study = nivora.Study(self.file, SIMULATION, free=FREE)
        folder = self.folder / "lanes"
        lanes = nivora.cluster._Lanes(None, study, 2000, 1, folder, None)
        lanes._add(1, numpy.array([[0.1], [1.0 / 3.0]]))
        again = nivora.cluster._Lanes(None, study, 2000, 1, folder, None)
        self.assertEqual({lane: costs.tolist() for lane, costs in again._found.items()}, {1: [[0.1], [1.0 / 3.0]]})
        with self.assertRaisesRegex(nivora.RefusedError, "another search"):
            nivora.cluster._Lanes(None, study, 2000, 2, folder, None)
        file = folder / "lane-01.json"
        for damaged in ("{", "[]", file.read_text(encoding="utf-8").replace("[0.1]", "[0.1, 2]")):
            file.write_text(damaged, encoding="utf-8")
            with self.assertRaisesRegex(nivora.RefusedError, "damaged"):
                nivora.cluster._Lanes(None, study, 2000, 1, folder, None)


if __name__ == "__main__":
    unittest.main()
