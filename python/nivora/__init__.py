"""Snowmelt runoff of mountain basins: basin files and runs of the model.

    import nivora

    basin = nivora.open("alder.mdb")
    print(basin.simulations)
    run = basin.run("wy1998", kind="year-round")
    run.flow.plot()          # pandas Series of the computed discharge
    run.results["SCA"]       # xarray Dataset, zone by date

Numbers are those of the batch program, to the bit. pandas and xarray are loaded when a result first needs them.
"""

import os as _os
from collections.abc import Mapping as _Mapping

from . import _core
from ._core import FileError, StoreError

__version__ = _core.version
__all__ = ["Basin", "Daily", "FileError", "Run", "RunError", "StoreError", "open"]

_KINDS = {"melt-season": False, "year-round": True}
_POLICIES = {"continue": False, "refuse": True}
_USUAL_WAIT = 10.0


class RunError(Exception):
    """A run that was refused, or that did not reach its end.

    Its text is what the model said last; `messages` has all of it as (title, text, answer), and `run` the `Run` as far
    as it came.
    """

    def __init__(self, run):
        self.run = run
        self.messages = run.messages
        told = [f"{title}: {text}" for title, text, answer in run.messages if answer != "Yes"]
        super().__init__(told[-1] if told else "The run did not reach its end.")


def _choice(name, value, known):
    try:
        return known[value]
    except (KeyError, TypeError):
        offered = " or ".join(repr(word) for word in known)
        raise ValueError(f"{name} is {value!r}; it has to be {offered}") from None


def _dates(days):
    """The dates of an array of day counts."""
    import numpy

    return (numpy.datetime64(_core.day_zero, "D") + days).astype("datetime64[ns]")


def _letters(zones):
    return [chr(ord("A") + zone - 1) for zone in zones]


def open(path):
    """Opens a basin file. The file is read anew by each call and is never kept open.

    Raises StoreError with what is wrong with the file.
    """
    return Basin(path)


class Basin:
    """A basin file."""

    def __init__(self, path):
        self.path = _os.path.abspath(_os.fspath(path))
        self._describe()

    def _describe(self):
        return _core.basin_description(self.path, _USUAL_WAIT)

    def __repr__(self):
        return f"<nivora.Basin {self.path!r}>"

    @property
    def name(self):
        """The basin's name."""
        return self._describe()["name"]

    @property
    def units(self):
        """The units of the basin's definition: "Metric" or "English"."""
        return self._describe()["units"]

    @property
    def zones(self):
        """The zones as dicts: id ("A", "B", ...), area (km² or mi²), elevation (m or ft)."""
        return self._describe()["zones"]

    @property
    def simulations(self):
        """The simulations as a dict from name to a dict of start and end (ISO dates), initial_runoff (m³/s or
        ft³/s) and comments, in the order of the grid."""
        rows = self._describe()["simulations"]
        return {row["name"]: {key: value for key, value in row.items() if key != "name"} for row in rows}

    @property
    def daily(self):
        """The daily variables, such as `basin.daily["Precip"]`."""
        return Daily(self.path)

    def run(
        self,
        simulation,
        *,
        kind="melt-season",
        forecast=None,
        no_snow=False,
        lag_shares=(),
        questions="continue",
        wait=_USUAL_WAIT,
    ):
        """Runs a simulation and stores its results table in the basin file.

        kind        "melt-season" or "year-round"
        forecast    days between updates by the measured discharge, 1 to 9; None for a simulation
        no_snow     whether unmelted winter precipitation is carried into the melt season, without snow cover; only
                    for "year-round"
        lag_shares  shares of a day's input that run off on that day, the day after ...; up to 6, the sum is 1
        questions   how the model's questions are answered: "continue" with OK or Yes, "refuse" with Cancel or No
        wait        seconds to wait for another program that works on the basin

        Raises RunError for a run that is refused or incomplete, StoreError for a basin that can't be read.
        """
        year_round = _choice("kind", kind, _KINDS)
        if no_snow and not year_round:
            raise ValueError("no_snow is only for kind='year-round'")
        run = Run(
            _core.run(
                self.path,
                simulation,
                year_round=year_round,
                forecast=None if forecast is None else str(forecast),
                no_snow=bool(no_snow),
                lag_shares=[str(share) for share in lag_shares],
                refuse=_choice("questions", questions, _POLICIES),
                wait=wait,
            )
        )
        if not run.completed or run.refused:
            raise RunError(run)
        return run


class Daily(_Mapping):
    """The daily variables of a basin by name, to read. A variable is a pandas DataFrame of float64 with a row for each
    day of the record and a column for each zone ("A", "B", ...), NaN for a missing value; the unit is in `attrs`."""

    def __init__(self, path):
        self._path = path

    def __iter__(self):
        return iter(_core.daily_variables)

    def __len__(self):
        return len(_core.daily_variables)

    def __getitem__(self, name):
        if name not in _core.daily_variables:
            raise KeyError(f"there is no daily variable {name!r}; there are {', '.join(_core.daily_variables)}")
        import numpy
        import pandas

        daily = _core.daily_values(self._path, name, _USUAL_WAIT)
        zones, days = daily["values"].shape
        dates = _dates(daily["first"] + numpy.arange(days))
        frame = pandas.DataFrame(
            daily["values"].T, index=pandas.DatetimeIndex(dates, name="date"), columns=_letters(range(1, zones + 1))
        )
        frame.attrs["units"] = daily["unit"]
        return frame


class Run:
    """The results of one run. They stay as they are when the basin is run again."""

    def __init__(self, done):
        self._columns = done["columns"]
        self._units = done["units"]
        self._discharge_unit = done["discharge_unit"]
        self._flow = None
        self._results = None
        self.completed = done["completed"]
        self.refused = done["refused"]
        self.simulation = done["simulation"]
        self.title = done["title"]
        #: The six statistics and FinalQ by the names that `nivora-batch run --json` prints; None for one that was
        #: not computed.
        self.statistics = done["statistics"]
        #: What the model said and asked, as (title, text, answer).
        self.messages = done["messages"]
        #: Notes on a run that reached its end.
        self.notes = done["notes"]

    def __repr__(self):
        return f"<nivora.Run {self.simulation!r}, {self.title}>"

    def _table(self):
        if self._columns is None:
            raise RunError(self)
        return self._columns

    @property
    def flow(self):
        """The computed discharge as a pandas Series of float64 by day; m³/s or ft³/s, the unit is in `attrs`."""
        if self._flow is None:
            import pandas

            columns = self._table()
            first = columns["Zone"] == 1
            dates = pandas.DatetimeIndex(_dates(columns["Date"][first]), name="date")
            self._flow = pandas.Series(columns["DailyQ"][first], index=dates, name="DailyQ")
            self._flow.attrs["units"] = self._discharge_unit
        return self._flow

    @property
    def results(self):
        """The results table as an xarray Dataset: each field of `SimResults`, zone ("A", "B", ...) by date, with its
        unit as the attribute `units`. A day that a zone lacks is NaN. Fields of the whole basin, such as DailyQ, stand
        in zone A."""
        if self._results is None:
            import numpy
            import xarray

            columns = self._table()
            zones, zone_at = numpy.unique(columns["Zone"], return_inverse=True)
            days, day_at = numpy.unique(columns["Date"], return_inverse=True)
            variables = {}
            for name, values in columns.items():
                if name in ("Zone", "Date"):
                    continue
                grid = numpy.full((len(zones), len(days)), numpy.nan, dtype=values.dtype)
                grid[zone_at, day_at] = values
                unit = self._units[name]
                variables[name] = (("zone", "date"), grid, {"units": unit} if unit else {})
            self._results = xarray.Dataset(
                variables,
                coords={"zone": _letters(zones), "date": _dates(days)},
                attrs={"simulation": self.simulation, "run": self.title, "version": __version__},
            )
        return self._results
