"""Studies: many runs of a basin in memory, which leave the file as it is."""

import datetime as _datetime
import operator as _operator
import os as _os
import tempfile as _tempfile

from . import _core, _programs
from ._basin import USUAL_WAIT, Basin, dates_of

_MOST_CHANGES = 200
_CHUNK = 20_000
_MOST_RUNS = 100_000_000
_MOST_SEED = 2**32 - 1


def whole_number(name, number, least, most):
    """A whole number within its bounds, also one of numpy."""
    try:
        value = _operator.index(number)
    except TypeError:
        value = None
    if value is None or not least <= value <= most:
        raise ValueError(f"{name} is {number!r}; it has to be a whole number from {least} to {most}")
    return value


def _threads(threads):
    return _core.usual_threads() if threads is None else whole_number("threads", threads, 1, _core.most_threads)


def _seed(seed):
    return whole_number("seed", seed, 0, _MOST_SEED)


def _counted(progress, whole, before=0):
    """The progress of a call of the libraries as that of the whole work."""
    return None if progress is None else lambda done: progress(before + done, whole)


def _period(period):
    """A period as the text FIRST..LAST."""
    if period is None or isinstance(period, str):
        return period
    first, last = period
    return f"{_day(first)}..{_day(last)}"


def _day(day):
    """A day as an ISO date."""
    text = day if isinstance(day, str) else f"{day:%Y-%m-%d}"
    try:
        return _datetime.date.fromisoformat(text).isoformat()
    except ValueError:
        raise ValueError(f"{day!r} is not a date such as 1996-03-31") from None


def _path(basin):
    return basin.path if isinstance(basin, Basin) else _os.path.abspath(_os.fspath(basin))


def _table(text, index):
    """The lines of a study as a frame."""
    import io

    import pandas

    return pandas.read_csv(io.StringIO(text), index_col=index, float_precision="round_trip", keep_default_na=True)


def _write(path, pieces):
    """Writes a file whole, or not at all."""
    path = _os.path.abspath(_os.fspath(path))
    folder, name = _os.path.split(path)
    handle, part = _tempfile.mkstemp(prefix=f".{name}.", dir=folder)
    try:
        with _os.fdopen(handle, "w", encoding="utf-8", newline="") as file:
            for piece in pieces:
                file.write(piece)
            file.flush()
            _os.fsync(file.fileno())
        usual = 0o666 & ~_mask()
        _os.chmod(part, usual)
        _os.replace(part, path)
    except BaseException:
        _os.unlink(part)
        raise


def _mask():
    mask = _os.umask(0)
    _os.umask(mask)
    return mask


class _Travelling:
    """What can be sent to another machine: with the bytes of its basin files, which are read there at once.

    A class has `_arguments`, of which `_build(arguments)` makes `_handle`, and `_files` names their paths.
    """

    def __getstate__(self):
        files = {path: _core.basin_bytes(path, USUAL_WAIT) for path in set(self._files())}
        return {
            "version": _core.version,
            "arguments": self._arguments,
            "files": files,
            "digest": self._handle.digest,
        }

    def __setstate__(self, state):
        import socket

        if state["version"] != _core.version:
            raise _core.RefusedError(
                f"{socket.gethostname()} has version {_core.version} of nivora, the study is of {state['version']}."
            )
        self._arguments = state["arguments"]
        with _tempfile.TemporaryDirectory(prefix="nivora-") as folder:
            places = {}
            for number, (path, content) in enumerate(state["files"].items()):
                places[path] = _os.path.join(folder, f"{number}.mdb")
                with open(places[path], "wb") as file:
                    file.write(content)
            self._handle = self._build(self._arguments, lambda path: places[path])
        if self._handle.digest != state["digest"]:
            raise _core.RefusedError(
                "The basin file changed after the study was made. Make the study again, which reads the file anew."
            )


class Study(_Travelling):
    """Runs of a simulation with other numbers, compared with the measured discharge.

    basin       a Basin or the path of its file
    simulation  its name
    free        what may change, as texts VARIABLE:ACTION:LOW..HIGH:ZONES, and :FIRST..LAST behind it for some days.
                Variables are Tavg, Tmax, Tmin, Precip, SCA, Tcrit, LagTime, LapseRate, An, Cs, Cr, RCA, Xcoeff, Ycoeff
                or their names in the scenario grid, such as "Recession Coefficient x". Actions are set, add, multiply.
                Zones are All, or letters with commas
    objectives  the measures that a calibration makes best; several give a front of compromises
    fit         the days that are compared, as "FIRST..LAST" or a pair of dates; the whole simulation if None
    check       days that are only reported
    with_       further (basin, simulation) pairs whose days count as well
    check_with  further pairs that are only reported
    no_snow     runs in No Snow mode

    The file is read once, here. A study can be pickled, and then has the basin with it. Raises RefusedError with what
    is wrong, StoreError for a basin that can't be read.
    """

    def __init__(
        self,
        basin,
        simulation,
        *,
        free,
        objectives=("KGE",),
        fit=None,
        check=None,
        with_=(),
        check_with=(),
        no_snow=False,
        wait=USUAL_WAIT,
    ):
        self._arguments = {
            "source": (_path(basin), str(simulation)),
            "with_": [(_path(other), str(name)) for other, name in with_],
            "check_with": [(_path(other), str(name)) for other, name in check_with],
            "free": _texts("free", free),
            "objectives": _texts("objectives", objectives),
            "fit": _period(fit),
            "check": _period(check),
            "no_snow": bool(no_snow),
            "wait": wait,
        }
        self._handle = self._build(self._arguments, lambda path: path)

    @staticmethod
    def _build(arguments, place):
        given = dict(arguments)
        path, simulation = given.pop("source")
        for name in ("with_", "check_with"):
            given[name] = [(place(other), known) for other, known in given[name]]
        return _core.Study((place(path), simulation), **given)

    def _files(self):
        yield self._arguments["source"][0]
        for name in ("with_", "check_with"):
            yield from (path for path, _ in self._arguments[name])

    def __repr__(self):
        return f"<nivora.Study of {', '.join(map(repr, self.simulations))}, {len(self.ranges)} ranges>"

    @property
    def ranges(self):
        """The texts of what may change."""
        return self._handle.ranges

    @property
    def objectives(self):
        """The names of the measures that a calibration makes best."""
        return self._handle.objectives

    @property
    def simulations(self):
        """The names of the simulations."""
        return self._handle.simulations

    def _all_measures(self):
        """The same study with all measures, which a sample reports."""
        return self._handle.with_reported(_core.objectives)

    def evaluate(self, numbers):
        """Runs the model with a number for each range: (flow, fit, check).

        flow is a pandas Series of the computed discharge (m³/s or ft³/s), or a list of them for several simulations,
        None where the run stopped; fit and check are dicts of all measures on those days, None where there is none.
        """
        import pandas

        handle = self._all_measures()
        done = handle.evaluate([float(number) for number in numbers])
        flows = [
            None if flow is None else pandas.Series(flow, pandas.DatetimeIndex(dates_of(days), name="date"), name=name)
            for name, (days, flow) in zip(self.simulations, done["flows"], strict=True)
        ]
        fit, check = (dict(zip(handle.objectives, done[days], strict=True)) for days in ("fit", "check"))
        return (flows if len(flows) > 1 else flows[0]), fit, check

    def calibrate(self, evaluations=5000, *, seed=1, threads=None, progress=None):
        """Searches the numbers that make the objectives best: a `Calibration`.

        evaluations  the most runs of the model
        seed         begins the chance numbers; the same seed gives the same result, with any number of threads
        threads      all cores if None
        progress     called with the number of runs that are done and the number of all
        """
        return self._search(evaluations, seed, None, threads, progress)

    def _search(self, evaluations, seed, lanes, threads=None, progress=None):
        _programs.use_search_module()
        evaluations = whole_number("evaluations", evaluations, 1, _MOST_RUNS)
        found = self._handle.search(
            evaluations=evaluations,
            seed=_seed(seed),
            threads=_threads(threads),
            lanes=lanes,
            progress=_counted(progress, evaluations),
        )
        return Calibration(self, found)

    def sample(self, runs=10_000, *, seed=1, sensitivity=False, keep=(), threads=None, progress=None):
        """Runs the model many times over the ranges: a `Sample`.

        runs         their number; with sensitivity as many whole groups as it holds. They stay in memory, some 250 bytes
                     each
        sensitivity  whether the runs are chosen so that they give sensitivity indices
        keep         rules such as "KGE>0.7" that a kept run reaches; without a rule all are kept that have a discharge

        `seed`, `threads` and `progress` are those of `calibrate`.
        """
        plan = SamplePlan(self, runs, seed, sensitivity)
        rules = [_core.keep_rule(text) for text in _texts("keep", keep)]
        lines = []
        for first in range(0, plan.runs, _CHUNK):
            behind = min(first + _CHUNK, plan.runs)
            lines.append(plan.lines(first, behind, threads, _counted(progress, plan.runs, first)))
        return Sample(plan, "".join(lines), rules)


def _texts(name, texts):
    if isinstance(texts, str):
        raise ValueError(f"{name} has to be a list of texts, not one text")
    return [str(text) for text in texts]


class SamplePlan:
    """The runs of a sample, which can be computed in pieces anywhere."""

    def __init__(self, study, runs, seed, sensitivity):
        self.asked = whole_number("runs", runs, 1, _MOST_RUNS)
        self.seed = _seed(seed)
        self.study = study
        self.handle = study._all_measures()
        self.sensitivity = bool(sensitivity)
        self.runs, group = self.handle.sample_size(self.asked, self.seed, self.sensitivity)
        if self.sensitivity and self.runs // group < 2:
            raise ValueError(f"with sensitivity the runs stand in groups of {group}: at least {2 * group} are needed")

    def __getstate__(self):
        state = dict(self.__dict__)
        del state["handle"]
        return state

    def __setstate__(self, state):
        self.__dict__.update(state)
        self.handle = self.study._all_measures()

    @property
    def arguments(self):
        """What makes this plan of its study anywhere."""
        return self.asked, self.seed, self.sensitivity

    def head(self, first=0, behind=None):
        """The first two lines of the file with these runs."""
        behind = self.runs if behind is None else behind
        return self.handle.sample_head(self.asked, self.seed, self.sensitivity, first, behind)

    def lines(self, first, behind, threads=None, progress=None):
        """The lines of these runs."""
        return self.handle.sample_lines(
            first,
            behind,
            seed=self.seed,
            sensitivity=self.sensitivity,
            threads=_threads(threads),
            progress=progress,
        )


class Sample:
    """The runs of a sample."""

    def __init__(self, plan, lines, rules=()):
        self._plan = plan
        self._lines = lines
        self._rules = rules
        self._frame = None

    def __repr__(self):
        return f"<nivora.Sample of {self._plan.runs} runs>"

    @property
    def runs(self):
        """A pandas DataFrame with a row for each run: the number of each range under its text, then all measures by
        name, NaN where a run has none."""
        if self._frame is None:
            self._frame = _table(self._plan.head().split("\n", 1)[1] + self._lines, "Run")
        return self._frame

    @property
    def kept(self):
        """The rows of `runs` that reach all rules."""
        frame = self.runs
        measures = frame[list(_core.objectives)]
        chosen = measures.notna().any(axis=1)
        for measure, above, limit in self._rules:
            chosen &= (measures[measure] > limit) if above else (measures[measure] < limit)
        return frame[chosen]

    def bands(self, *, threads=None, progress=None):
        """The spread of the kept runs' discharge: a pandas DataFrame with a row for each day and the columns Measured,
        Q05, Q25, Q50, Q75 and Q95 (m³/s or ft³/s); a dict of them by simulation for several simulations."""
        import pandas

        kept = self.kept.index.tolist()
        if not kept:
            raise ValueError("no run was kept, so that there are no bands")
        names = ["Measured", *(f"Q{share * 100:02.0f}" for share in _core.band_shares)]
        frames = {}
        found = self._plan.handle.bands(
            seed=self._plan.seed,
            sensitivity=self._plan.sensitivity,
            kept=kept,
            threads=_threads(threads),
            progress=_counted(progress, len(kept)),
        )
        for name, (days, measured, quantiles) in zip(self._plan.handle.simulations, found, strict=True):
            index = pandas.DatetimeIndex(dates_of(days), name="date")
            frames[name] = pandas.DataFrame(quantiles, index, names[1:])
            frames[name].insert(0, names[0], measured)
        return frames if len(frames) > 1 else next(iter(frames.values()))

    @property
    def sensitivity(self):
        """How much of each measure's variance comes from each range: a pandas DataFrame with a row for each range of
        some width and the columns (measure, "first") for the range alone and (measure, "total") with all that it does
        together with others; NaN where a measure does not vary."""
        import pandas

        if not self._plan.sensitivity:
            raise ValueError("the sample was made without sensitivity=True")
        ranges = self._plan.handle.wide_ranges
        columns = {}
        for measure in _core.objectives:
            indices = _core.sensitivity(self.runs[measure].tolist(), len(ranges))
            indices = indices or [(float("nan"), float("nan"))] * len(ranges)
            columns[measure, "first"] = [first for first, _ in indices]
            columns[measure, "total"] = [total for _, total in indices]
        return pandas.DataFrame(columns, index=pandas.Index(ranges, name="range"))

    def to_csv(self, path):
        """Writes the file that `nivora-batch sample --out` writes, byte for byte."""
        _write(path, (self._plan.head(), self._lines))


class Calibration:
    """What a search found."""

    def __init__(self, study, found):
        self._study = study
        self._found = found
        self._sets = None
        #: The number of runs of the model, and of those that gave no measure.
        self.evaluations = found["evaluations"]
        self.failed = found["failed"]

    def __repr__(self):
        return f"<nivora.Calibration, {len(self._found['sets'])} sets of {self.evaluations} evaluations>"

    def _row(self, one):
        row = dict(zip(self._study.ranges, one["numbers"], strict=True))
        uses = ("fit", "check") if self._study._handle.has_check_days else ("fit",)
        for use in uses:
            for name, value in zip(self._study.objectives, one[use], strict=True):
                row[f"{name} {use}"] = float("nan") if value is None else value
        return row

    @property
    def sets(self):
        """A pandas DataFrame with a row for each set: the number of each range under its text, then "KGE fit" and so
        on, and "KGE check" where there are days to check. One objective gives one set; several give the front, from
        the best to the worst in the first objective. No rows where no run had the measures."""
        if self._sets is None:
            import pandas

            columns = list(self._row(self._found["unchanged"]))
            self._sets = pandas.DataFrame([self._row(one) for one in self._found["sets"]], columns=columns)
        return self._sets

    @property
    def unchanged(self):
        """The simulation as it is, as a pandas Series like a row of `sets`; NaN for a range that sets values."""
        import pandas

        return pandas.Series(self._row(self._found["unchanged"]))

    @property
    def best(self):
        """The first set as a pandas Series."""
        if not self._found["sets"]:
            raise _core.RefusedError("No numbers of these ranges gave a run with the measures that were asked for.")
        return self.sets.iloc[0]

    def numbers(self, place=0):
        """The numbers of a set, one for each range."""
        return list(self._found["sets"][place]["numbers"])

    def save_as(self, name, place=0, *, wait=USUAL_WAIT):
        """Stores a set as a new simulation of the basin, with parameters of its own. Raises RefusedError, with the
        basin as it was, if the name is taken or a range belongs to the basin and not to a simulation."""
        self._study._handle.store(str(name), self.numbers(place), wait)


def _changes(name, values, least=None):
    import struct

    singles = []
    for value in values:
        single = struct.unpack("f", struct.pack("f", float(value)))[0]
        if single != single or single in (float("inf"), float("-inf")):
            raise ValueError(f"{name}: {value!r} is not a number that can be used")
        if least is not None and single < least:
            raise ValueError(f"{name}: {value!r} is below {least}")
        if single in singles:
            raise ValueError(f"{name}: {value!r} is there twice")
        singles.append(single)
    if not 1 <= len(singles) <= _MOST_CHANGES:
        raise ValueError(f"{name} has {len(singles)} values; there may be 1 to {_MOST_CHANGES}")
    return singles


class ResponseStudy(_Travelling):
    """A response of a basin to changes of its climate, before it is evaluated. The arguments are those of
    `Basin.response`."""

    def __init__(self, basin, simulation, *, winter_end, temperature, precipitation, wait=USUAL_WAIT):
        self._arguments = {
            "path": _path(basin),
            "simulation": str(simulation),
            "winter_end": _day(winter_end),
            "temperature": _changes("temperature", temperature),
            "precipitation": _changes("precipitation", precipitation, 0.0),
            "wait": wait,
        }
        self._handle = self._build(self._arguments, lambda path: path)

    @staticmethod
    def _build(arguments, place):
        given = dict(arguments)
        return _core.Response(place(given.pop("path")), **given)

    def _files(self):
        yield self._arguments["path"]

    def __len__(self):
        return len(self._handle)

    def __repr__(self):
        return f"<nivora.ResponseStudy of {self._handle.simulation!r}, {len(self)} pairs>"

    def head(self, first=0, behind=None):
        """The first two lines of the file with these pairs."""
        return self._handle.head(first, len(self) if behind is None else behind)

    def lines(self, first, behind, threads=None, progress=None):
        """The lines of these pairs."""
        return self._handle.lines(first, behind, threads=_threads(threads), progress=progress)

    def evaluate(self, *, threads=None, progress=None):
        """Evaluates all pairs: a `Response`."""
        return Response(self, self.lines(0, len(self), threads, _counted(progress, len(self))))


class Response:
    """What came of each pair of changes."""

    def __init__(self, study, lines):
        self._study = study
        self._lines = lines
        self._frame = None

    def __repr__(self):
        return f"<nivora.Response of {self._study._handle.simulation!r}, {len(self._study)} pairs>"

    @property
    def units(self):
        """The units of volumes, of discharges and of temperature changes."""
        return self._study._handle.units

    @property
    def table(self):
        """A pandas DataFrame with a row for each pair: Temperature, Precipitation, and for each figure its value under
        the changed climate, the present one ("... present") and the difference ("... change", days later for dates);
        dates are ISO texts. "Notes" is how many notes there are on a pair, such as where a rule of step 5 may mislead:
        read them first, by `nivora-batch response --json`. "Problem" says why a pair was not done."""
        if self._frame is None:
            self._frame = _table(self._study.head().split("\n", 1)[1] + self._lines, "Point")
        return self._frame

    def surface(self, figure):
        """A figure of `table` that is a number, such as "Year" or "Median day change", as an xarray DataArray,
        temperature by precipitation; NaN where a pair was not done."""
        import numpy
        import xarray

        if figure not in self.table.columns:
            raise KeyError(f"there is no figure {figure!r}; there are {', '.join(self.table.columns[2:-2])}")
        degrees, factors = (
            numpy.array(self._study._arguments[name]) for name in ("temperature", "precipitation")
        )
        values = self.table[figure].to_numpy()
        if values.dtype == object:
            raise ValueError(f"{figure!r} has dates; take '{figure.removesuffix(' present')} change', in days")
        units = self.units
        quantity = figure.split(" ")[0]
        unit = {"Winter": "volume", "Summer": "volume", "Year": "volume"}.get(quantity)
        unit = "discharge" if figure.split(" change")[0].split(" present")[0] == "Highest" else unit
        return xarray.DataArray(
            values.reshape(len(degrees), len(factors)).astype(float),
            coords={
                "temperature": ("temperature", degrees, {"units": units["temperature"]}),
                "precipitation": ("precipitation", factors),
            },
            dims=("temperature", "precipitation"),
            name=figure,
            attrs={"units": units[unit] if unit else "days"},
        )

    def to_csv(self, path):
        """Writes the file that `nivora-batch response --out` writes, byte for byte."""
        _write(path, (self._study.head(), self._lines))
