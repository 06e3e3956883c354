#!/usr/bin/env python3
"""Studies on one and on two workers of a cluster on this machine, in turns.

    PYTHONPATH=build/nivora/python /usr/bin/python3 bench/cluster_bench.py [TURNS]

A basin of 16 zones and 365 days is made; 20,000 evaluations of it are sampled and calibrated. Each worker is a process
with one thread. Prints the least and the median seconds, and how many times faster two workers are.
"""

import pathlib
import statistics
import sys
import tempfile
import time

import nivora
import nivora.cluster
import numpy
import pandas
from distributed import Client, LocalCluster

EVALUATIONS = 20_000
FREE = [
    "Degree Day Factors:multiply:0.7..1.4:All",
    "Critical Temperature:add:-1..1:All",
    "Runoff Coefficient (Snow):multiply:0.8..1.1:All",
]


def sixteen_zones(folder):
    """A year of weather that differs from zone to zone."""
    days = pandas.date_range("2001-10-01", periods=365)
    letters = [chr(ord("A") + zone) for zone in range(16)]
    basin = nivora.new(
        pathlib.Path(folder) / "sixteen.mdb",
        {
            "definition": 1,
            "basin": {"name": "Sixteen", "units": "Metric", "referenceElevation": 1500, "latitude": 46.5},
            "zones": [{"area": 20 + zone, "elevation": 900 + 120 * zone} for zone in range(16)],
            "simulations": [
                {"name": "wy2002", "start": "2001-10-01", "end": "2002-09-30", "units": "Metric", "initialRunoff": 5.0}
            ],
        },
    )
    chance = numpy.random.default_rng(7)
    season = -numpy.cos(2 * numpy.pi * (numpy.arange(365) - 105) / 365)
    height = numpy.arange(16) / 16
    fields = {
        "Tavg": 8 + 10 * season[:, None] - 10 * height + chance.normal(0, 2, (365, 16)),
        "Precip": numpy.where(chance.random((365, 16)) < 0.3, chance.random((365, 16)) * 2, 0.0),
        "SCA": numpy.clip(0.5 + height - 0.9 * season[:, None], 0, 1),
        "Runoff": numpy.repeat((12 + 8 * season + chance.random(365))[:, None], 16, axis=1),
    }
    for name, values in fields.items():
        basin.daily[name] = pandas.DataFrame(values, days, letters)
    constants = {"LapseRate": 0.65, "Tcrit": 1.0, "An": 0.45, "Cs": 0.8, "Cr": 0.7, "Lag": 12.0}
    parameters = basin.parameters("wy2002")
    known = {name.lower(): name for name in parameters}
    for name, value in {**constants, "RCA": 1, "Xcoeff": 0.95, "Ycoeff": 0.03, "LR": 0.65, "LagTime": 12.0}.items():
        if name.lower() in known:
            parameters[known[name.lower()]] = pandas.DataFrame(value, days, letters)
    return basin


def timed(work):
    begin = time.perf_counter()
    work()
    return time.perf_counter() - begin


def main():
    turns = int(sys.argv[1]) if len(sys.argv) > 1 else 7
    with tempfile.TemporaryDirectory() as folder:
        basin = sixteen_zones(folder)
        study = nivora.Study(basin, "wy2002", free=FREE)
        clients = {
            workers: Client(LocalCluster(n_workers=workers, threads_per_worker=1, dashboard_address=None))
            for workers in (1, 2)
        }
        tasks = {
            "sample": lambda client, seed: nivora.cluster.sample(study, client, EVALUATIONS, seed=seed),
            "calibrate": lambda client, seed: nivora.cluster.calibrate(study, client, EVALUATIONS, seed=seed),
        }
        here = {
            "sample": lambda seed: study.sample(EVALUATIONS, seed=seed, threads=1),
            "calibrate": lambda seed: study.calibrate(EVALUATIONS, seed=seed, threads=1),
        }
        print(f"{EVALUATIONS} evaluations, 16 zones, 365 days, {turns} turns; seconds, least and median")
        for name, task in tasks.items():
            seconds = {0: [], 1: [], 2: []}
            for seed in range(turns + 1):
                for workers in seconds:
                    if workers == 0:
                        took = timed(lambda: here[name](seed))
                    else:
                        took = timed(lambda: task(clients[workers], seed))
                    if seed > 0:
                        seconds[workers].append(took)
            for workers, took in seconds.items():
                what = "no cluster, one thread" if workers == 0 else f"{workers} workers"
                print(f"{name:10} {what:24} {min(took):8.3f} {statistics.median(took):8.3f}")
            print(
                f"{name:10} {'two against one':24} {min(seconds[1]) / min(seconds[2]):8.2f} "
                f"{statistics.median(seconds[1]) / statistics.median(seconds[2]):8.2f}"
            )
        for client in clients.values():
            client.close()
            client.cluster.close()


if __name__ == "__main__":
    main()
