"""Basin files, runs and climate evaluations."""

import json as _json
import os as _os
from collections.abc import Mapping as _Mapping
from collections.abc import MutableMapping as _MutableMapping

from . import _core, _programs

_KINDS = {"melt-season": False, "year-round": True}
_POLICIES = {"continue": False, "refuse": True}
_DECIMALS = {"point": False, "comma": True}
_SEPARATORS = {None: "", "comma": ",", "semicolon": ";", "tab": "\t"}
USUAL_WAIT = 10.0


class RunError(Exception):
    """A run or a climate evaluation that was refused, or that did not reach its end.

    Its text is what the model said last; `messages` has all of it as (title, text, answer), and `run` the `Run` or
    `Evaluation` as far as it came.
    """

    def __init__(self, run):
        self.run = run
        self.messages = run.messages
        told = [f"{title}: {text}" for title, text, answer in run.messages if answer != "Yes"]
        super().__init__(told[-1] if told else "The run did not reach its end.")


def choice(name, value, known):
    try:
        return known[value]
    except (KeyError, TypeError):
        offered = " or ".join(repr(word) for word in known)
        raise ValueError(f"{name} is {value!r}; it has to be {offered}") from None


def dates_of(days):
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


def new(path, definition):
    """Makes a basin file of a definition and opens it.

    definition  a dict, the text of a JSON object, or the path of a JSON file, as `nivora-batch definition` prints it

    Raises FileError if there is such a file already, TableError with all that is wrong with the definition.
    """
    if isinstance(definition, _Mapping):
        text = _json.dumps(definition)
    elif isinstance(definition, str) and definition.lstrip().startswith("{"):
        text = definition
    else:
        with _builtin_open(definition, encoding="utf-8") as file:
            text = file.read()
    _core.new_basin(_os.path.abspath(_os.fspath(path)), text)
    return Basin(path)


def _builtin_open(path, **how):
    import builtins

    return builtins.open(_os.fspath(path), **how)


class Basin:
    """A basin file."""

    def __init__(self, path):
        self.path = _os.path.abspath(_os.fspath(path))
        self._last = None
        self._describe()

    def _describe(self):
        return _core.basin_description(self.path, USUAL_WAIT)

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
    def definition(self):
        """All but the daily values, parameters, monthly averages and results, as a dict that `nivora.new` takes."""
        return _json.loads(_core.definition(self.path, USUAL_WAIT))

    @property
    def daily(self):
        """The daily variables, such as `basin.daily["Precip"]`, to read and to write."""
        return Fields(self.path, _core.physical_table, _core.daily_variables)

    def parameters(self, simulation):
        """The daily parameters of a simulation, such as `basin.parameters("wy1998")["AN"]`, to read and to write."""
        names = self.simulations
        stored = next((name for name in names if name.lower() == str(simulation).lower()), None)
        if stored is None:
            raise KeyError(f"there is no simulation {simulation!r}; there are {', '.join(map(repr, names))}")
        return Fields(self.path, stored, _core.daily_parameters)

    def load(
        self,
        table,
        source,
        *,
        field=None,
        columns=None,
        zone=None,
        units=None,
        missing=(),
        dates=None,
        decimal="point",
        separator=None,
        any_order=False,
        dry_run=False,
        wait=USUAL_WAIT,
    ):
        """Loads a table from a CSV file or a DataFrame, wholly or not at all: new days are added, values of others
        change, and what the source does not have stays.

        table      "PhysicalData", "BasinAverages", or a simulation's name for its parameters
        source     the path of a CSV file, or a DataFrame whose columns are those of such a file
        field      the source has this field in a column for each zone, beside Date (or Month)
        columns    dict from field (with `field`: from zone) to the column to read; all columns by their own names
                   if None
        zone       the zone of all rows of a source without a column Zone
        units      the unit of the only field, or a dict from field to unit; the basin's own if None
        missing    texts that stand for a missing value beside an empty cell
        dates      how days are written, such as "DD.MM.YYYY"; ISO dates if None
        decimal    "point" or "comma"
        separator  "comma", "semicolon" or "tab"; found out if None
        any_order  whether the days of a zone may stand in any order
        dry_run    True: only says what a load would do

        Returns a dict of the numbers of rows: added, changed, equal. Raises TableError with all that is refused.
        """
        given = {}
        if hasattr(source, "to_csv"):
            given["text"] = source.to_csv(index=False, date_format="%Y-%m-%d", na_rep="")
        else:
            given["file"] = _os.path.abspath(_os.fspath(source))
        if isinstance(units, str):
            units = {"": units}
        done = _core.load(
            self.path,
            table,
            field=field or "",
            columns=[(str(key), str(name)) for key, name in (columns or {}).items()],
            zone=zone or "",
            units=[(str(key), str(unit)) for key, unit in (units or {}).items()],
            missing=[str(text) for text in missing],
            dates=dates or "",
            decimal_comma=choice("decimal", decimal, _DECIMALS),
            separator=choice("separator", separator, _SEPARATORS),
            any_order=bool(any_order),
            keep=not dry_run,
            wait=wait,
            **given,
        )
        _raise_refused_rows(done, lambda line: f"line {line}")
        return {key: done[key] for key in ("added", "changed", "equal")}

    def run(
        self,
        simulation,
        *,
        kind="melt-season",
        forecast=None,
        no_snow=False,
        lag_shares=(),
        questions="continue",
        wait=USUAL_WAIT,
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
        year_round = choice("kind", kind, _KINDS)
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
                refuse=choice("questions", questions, _POLICIES),
                wait=wait,
            )
        )
        if not run.completed or run.refused:
            raise RunError(run)
        self._last = {"simulation": run.simulation, "kind": kind, "forecast": forecast, "no_snow": no_snow}
        return run

    def climate(
        self, simulation, scenario, *, last_step=6, report=None, questions="continue", wait=USUAL_WAIT
    ):
        """Evaluates a scenario in the six steps and stores the results table in the basin file.

        last_step  1 to 6: the steps up to and with this one
        report     the file of the report of step 5; none is written if None

        `questions` and `wait` are those of `run`. Raises RunError for an evaluation that is refused or incomplete.
        """
        if last_step not in range(1, 7):
            raise ValueError(f"last_step is {last_step!r}; it has to be 1 to 6")
        evaluation = Evaluation(
            _core.climate(
                self.path,
                simulation,
                scenario,
                report="" if report is None else _os.path.abspath(_os.fspath(report)),
                last_step=last_step,
                refuse=choice("questions", questions, _POLICIES),
                wait=wait,
            )
        )
        if not evaluation.done:
            raise RunError(evaluation)
        self._last = {"simulation": evaluation.simulation, "step": last_step, "scenario": evaluation.scenario}
        return evaluation

    def response(
        self, simulation, *, winter_end, temperature, precipitation, threads=None, progress=None, wait=USUAL_WAIT
    ):
        """Evaluates every pair of a temperature and a precipitation change, in memory: a `Response`. The basin is
        not changed.

        winter_end     last day of the winter, a date or "YYYY-MM-DD"
        temperature    degrees to add on every day in all zones, °C or °F
        precipitation  factors of the precipitation of every day in all zones
        threads        how many evaluations run at a time; all cores if None
        progress       called with the number of evaluations that are done and the number of all
        """
        from ._study import ResponseStudy

        study = ResponseStudy(
            self,
            simulation,
            winter_end=winter_end,
            temperature=temperature,
            precipitation=precipitation,
            wait=wait,
        )
        return study.evaluate(threads=threads, progress=progress)

    def plot(
        self,
        number,
        *,
        zone=None,
        simulation=None,
        kind=None,
        forecast=None,
        no_snow=False,
        step=None,
        scenario=None,
        size=(1600, 900),
        dpi=96,
    ):
        """Draws a plot as the program does: a `Picture`. The basin is not changed, except that plot 21 keeps its
        curves in the results.

        number      1 to 23, as `nivora-batch plot --list` numbers them
        zone        the letter of a zone, or "all"; all zones if None, or zone A where one is shown at a time
        simulation  if None: that of the last run or evaluation through this object, otherwise the only one
        kind, forecast, no_snow, step, scenario
                    what the results in the file are of; known after a run or an evaluation through this object
        size        width and height in pixels
        dpi         pixels that make an inch

        Raises RefusedError where the plot can't be made, FileError without the batch program.
        """
        last = self._last or {}
        if simulation is None:
            simulation = last.get("simulation") or self._only_simulation()
        shown = {"kind": kind, "forecast": forecast, "no_snow": no_snow, "step": step, "scenario": scenario}
        if not any(shown.values()) and last.get("simulation") == simulation:
            shown = last
        arguments = [self.path, "--simulation", simulation, "--plot", str(number)]
        arguments += ["--size", f"{size[0]}x{size[1]}", "--dpi", str(dpi)]
        for option in ("zone",):
            if zone is not None:
                arguments += [f"--{option}", str(zone)]
        for option in ("kind", "forecast", "step", "scenario"):
            if shown.get(option):
                arguments += [f"--{option}", str(shown[option])]
        if shown.get("no_snow"):
            arguments.append("--no-snow")
        return Picture(_programs.picture(arguments))

    def _only_simulation(self):
        names = list(self.simulations)
        if len(names) != 1:
            raise ValueError(f"simulation is not given; there are {', '.join(map(repr, names)) or 'none'}")
        return names[0]


def _raise_refused_rows(done, place):
    if not done["refused"]:
        return
    told = [f"{place(line)}: {reason}" for line, reason in done["refusals"]]
    others = done["refused"] - len(told)
    if others > 0:
        told.append(f"and {others} others")
    raise _core.TableError(f"{done['refused']} rows are refused, nothing was loaded:\n" + "\n".join(told))


class Picture(bytes):
    """The bytes of a PNG file; a notebook shows the picture."""

    def _repr_png_(self):
        return bytes(self)

    def save(self, path):
        """Writes the file."""
        with _builtin_open(path, mode="wb") as file:
            file.write(self)


class Fields(_MutableMapping):
    """The fields of a daily table of a basin by name.

    A field is a pandas DataFrame of float64 with a row for each day of the record and a column for each zone ("A",
    "B", ...), NaN for a missing value; the unit is in `attrs`.

    `fields[name] = frame` stores the values of a frame of this form, in the basin's unit: days that the table lacks
    are added, others change, NaN is a missing value, and days and zones that the frame does not have stay as they
    are. It is stored wholly or not at all.
    """

    def __init__(self, path, table, names):
        self._path = path
        self._table = table
        self._names = names

    def __iter__(self):
        return iter(self._names)

    def __len__(self):
        return len(self._names)

    def _known(self, name):
        if name not in self._names:
            raise KeyError(f"there is no field {name!r}; there are {', '.join(self._names)}")

    def __getitem__(self, name):
        self._known(name)
        import numpy
        import pandas

        daily = _core.daily_values(self._path, self._table, name, USUAL_WAIT)
        zones, days = daily["values"].shape
        dates = dates_of(daily["first"] + numpy.arange(days))
        frame = pandas.DataFrame(
            daily["values"].T, index=pandas.DatetimeIndex(dates, name="date"), columns=_letters(range(1, zones + 1))
        )
        frame.attrs["units"] = daily["unit"]
        return frame

    def __setitem__(self, name, frame):
        self._known(name)
        import pandas

        if isinstance(frame, pandas.Series):
            raise ValueError("the values have to be a DataFrame with a column for each zone, such as frame[['A']]")
        if not isinstance(frame, pandas.DataFrame):
            raise ValueError("the values have to be a DataFrame with a row for each day and a column for each zone")
        if not isinstance(frame.index, pandas.DatetimeIndex):
            raise ValueError("the index of the frame has to be a DatetimeIndex")
        if frame.index.hasnans or not (frame.index == frame.index.normalize()).all():
            raise ValueError("the index of the frame has to be whole days")
        wanted = frame.attrs.get("units")
        stored = _core.daily_values(self._path, self._table, name, USUAL_WAIT)["unit"]
        if wanted and wanted != stored:
            raise ValueError(f"the frame is in {wanted!r}, the basin keeps {name} in {stored!r}")
        done = _core.load(
            self._path,
            self._table,
            text=frame.to_csv(index_label="Date", date_format="%Y-%m-%d", na_rep=""),
            field=name,
            any_order=True,
            wait=USUAL_WAIT,
        )
        first_row = 2
        _raise_refused_rows(done, lambda line: str(frame.index[line - first_row])[:10])

    def __delitem__(self, name):
        raise TypeError("a field of a basin can't be deleted")


class Run:
    """The results of one run. They stay as they are when the basin is run again.

    statistics  the six statistics and FinalQ, a dict by the names that `nivora-batch run --json` prints; None for one
                that was not computed
    messages    what the model said and asked, as (title, text, answer)
    notes       notes on a run that reached its end
    completed, refused, simulation, title
                how far it came, and what it is of
    """

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
            dates = pandas.DatetimeIndex(dates_of(columns["Date"][first]), name="date")
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
            units = _core.result_units(self._units)
            for name, values in columns.items():
                if name in ("Zone", "Date"):
                    continue
                grid = numpy.full((len(zones), len(days)), numpy.nan, dtype=values.dtype)
                grid[zone_at, day_at] = values
                unit = units[name]
                variables[name] = (("zone", "date"), grid, {"units": unit} if unit else {})
            self._results = xarray.Dataset(
                variables,
                coords={"zone": _letters(zones), "date": dates_of(days)},
                attrs={"simulation": self.simulation, "run": self.title, "version": _core.version},
            )
        return self._results


class Evaluation:
    """What a climate evaluation left.

    notes       texts, such as where a rule of step 5 may mislead: read them before the numbers
    messages    what the model said and asked, as (title, text, answer)
    done, simulation, scenario, volume_unit
                how far it came, and what it is of
    """

    def __init__(self, done):
        self._steps = done["steps"]
        self._summary = done["summary"]
        self.done = done["done"]
        self.simulation = done["simulation"]
        self.scenario = done["scenario"]
        self.volume_unit = done["volume_unit"]
        #: What the model said and asked, as (title, text, answer).
        self.messages = done["messages"]
        #: Notes, such as where a rule of step 5 may mislead.
        self.notes = done["notes"]

    def __repr__(self):
        return f"<nivora.Evaluation of {self.scenario!r} for {self.simulation!r}>"

    @property
    def steps(self):
        """The statistics as a pandas DataFrame: a row for each of them, a column for each step that has any (1, 2, 3
        and 6), NaN where a step has none."""
        import pandas

        return pandas.DataFrame(self._steps, dtype=float)

    @property
    def summary(self):
        """The seasonal summary of runoff as a pandas DataFrame, in `volume_unit`: rows Measured, Computed and
        ClimateAffected, columns Winter, Summer and Year, NaN where it is not known."""
        import pandas

        frame = pandas.DataFrame(self._summary, dtype=float).T
        frame.attrs["units"] = self.volume_unit
        return frame
