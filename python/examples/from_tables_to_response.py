# ---
# jupyter:
#   jupytext:
#     text_representation:
#       format_name: percent
# ---
"""From two tables and a definition to a calibrated basin and its response to another climate.

A notebook as a script: editors that know `# %%` show it in cells, `jupytext --to ipynb` makes a notebook of it. It works
in the folder in which it is started, on the bundled sample, and leaves its files there.
"""

# %% [markdown]
# ## Two tables
#
# A station with temperature, precipitation (mm) and the discharge of the river, and a table of the snow covered area in
# percent, with a column for each zone. Here they are made of the bundled sample; yours come from elsewhere.

# %%
import pathlib
import shutil

import nivora
import pandas


def make_tables(sample):
    """Writes station.csv and snow.csv."""
    shutil.copy(sample, "sample.mdb")
    daily = nivora.open("sample.mdb").daily
    year = slice("1997-10-01", "1998-09-30")
    station = pandas.DataFrame(
        {
            "T": daily["Tavg"]["A"][year].round(1),
            "P": (10 * daily["Precip"]["A"][year]).round(1),
            "Q": daily["Runoff"]["A"][year].round(3),
        }
    )
    station.to_csv("station.csv")
    snow = (100 * daily["SCA"][year]).round(0)
    snow.columns = [f"zone {letter}" for letter in snow.columns]
    snow.to_csv("snow.csv")


make_tables(nivora.sample_basin())
print(pathlib.Path("station.csv").read_text()[:80])
print(pathlib.Path("snow.csv").read_text()[:90])

# %% [markdown]
# ## The basin
#
# Five zones, from the lowest to the highest, and a simulation of one water year. Temperature and precipitation are those
# of one station for the whole basin, at the reference elevation.

# %%
definition = {
    "definition": 1,
    "basin": {"name": "Alder", "units": "Metric", "referenceElevation": 2250, "latitude": 46.5},
    "zones": [
        {"area": 38.6, "elevation": 1450},
        {"area": 71.3, "elevation": 1880},
        {"area": 84.9, "elevation": 2290},
        {"area": 62.7, "elevation": 2710},
        {"area": 24.1, "elevation": 3150},
    ],
    "simulations": [
        {
            "name": "wy1998",
            "start": "1997-10-01",
            "end": "1998-09-30",
            "units": "Metric",
            "temperature": "Basinwide",
            "precipitation": "Basinwide",
            "initialRunoff": 2.851,
            "precipitationThreshold": 6,
        }
    ],
}
basin = nivora.new("alder.mdb", definition)

# %%
station = {"Date": "date", "Tavg": "T", "Precip": "P", "Runoff": "Q"}
print(basin.load("PhysicalData", "station.csv", zone="A", columns=station, units={"Precip": "mm"}))
zones = {zone["id"]: f"zone {zone['id']}" for zone in basin.zones}
print(
    basin.load("PhysicalData", "snow.csv", field="SCA", columns={**zones, "Date": "date"}, units="%")
)

# %% [markdown]
# The record can be looked at, and changed, as frames: a row for each day, a column for each zone.

# %%
precipitation = basin.daily["Precip"]
print(precipitation.attrs["units"])
print(precipitation["A"].groupby(precipitation.index.month).sum().round(1))

# %% [markdown]
# ## Parameters
#
# First guesses, the same on all days in all zones; only rain on ripe snow (`RCA` 1) begins with the melt season.

# %%
days = pandas.date_range("1997-10-01", "1998-09-30")
letters = [zone["id"] for zone in basin.zones]
first_guess = {
    "LapseRate": 0.65,
    "Tcrit": 1.0,
    "An": 0.30,
    "Cs": 0.70,
    "Cr": 0.70,
    "LagTime": 12.0,
    "RCA": 0,
    "Xcoeff": 1.0,
    "Ycoeff": 0.04,
}
parameters = basin.parameters("wy1998")
for name, value in first_guess.items():
    parameters[name] = pandas.DataFrame(value, index=days, columns=letters)
parameters["RCA"] = pandas.DataFrame(1, index=days[days >= "1998-04-01"], columns=letters)

# %% [markdown]
# ## A run
#
# It stores its results in the basin, so that the desktop program shows them.

# %%
guess = basin.run("wy1998", kind="year-round")
print({name: round(value, 3) for name, value in guess.statistics.items()})
print(guess.flow.idxmax(), guess.flow.max())
basin.plot(1)

# %% [markdown]
# ## Calibration
#
# What may change, and how far. The melt season is fitted; the winter before it is only looked at.

# %%
study = nivora.Study(
    basin,
    "wy1998",
    free=[
        "Degree Day Factors:multiply:0.7..2:All",
        "Critical Temperature:add:-2..2:All",
        "Runoff Coefficient (Snow):multiply:0.8..1.4:All",
    ],
    objectives=["NSE"],
    fit="1998-04-01..1998-09-30",
    check="1997-10-01..1998-03-31",
)
found = study.calibrate(5000)
print(pandas.DataFrame({"unchanged": found.unchanged, "found": found.best}).round(4))
found.save_as("wy1998-fitted")

# %%
fitted = basin.run("wy1998-fitted", kind="year-round")
print({name: round(value, 3) for name, value in fitted.statistics.items()})
basin.plot(1)

# %% [markdown]
# ## How sure is that?
#
# Many runs over the ranges: those that are nearly as good as the best one span a band.

# %%
sample = study.sample(3000, keep=[f"NSE>{found.best['NSE fit'] - 0.02:.4f}"])
bands = sample.bands()
print(f"{len(sample.kept)} of {len(sample.runs)} runs kept")
inside = bands["Measured"].between(bands["Q05"], bands["Q95"])
print(f"{inside.mean():.0%} of the days within the band")

# %% [markdown]
# ## Another climate
#
# Every pair of a temperature and a precipitation change, each evaluated in six steps.

# %%
response = basin.response(
    "wy1998-fitted",
    winter_end="1998-03-31",
    temperature=[0, 1, 2, 3],
    precipitation=[0.8, 0.9, 1.0, 1.1, 1.2],
)
year = response.surface("Year change")
print(year.to_pandas().round(1))
print(response.surface("Median day change").to_pandas())
response.to_csv("response.csv")

# %% [markdown]
# `year.plot.contourf()` draws the surface, where matplotlib is installed; `nivora-batch response --picture` draws one for
# each figure.
