import datetime
import os
import pathlib
from collections.abc import Callable, Iterable, Iterator, Mapping, MutableMapping, Sequence
from typing import Any, Literal

import pandas
import xarray

__version__: str

_Path = str | os.PathLike[str]
_Day = str | datetime.date
_Period = str | tuple[_Day, _Day]
_Progress = Callable[[int, int], object]
_Questions = Literal["continue", "refuse"]
_Kind = Literal["melt-season", "year-round"]
_Message = tuple[str, str, str]

class StoreError(RuntimeError): ...
class FileError(RuntimeError): ...
class RefusedError(ValueError): ...
class TableError(ValueError): ...

class RunError(Exception):
    run: Run | Evaluation
    messages: list[_Message]
    def __init__(self, run: Run | Evaluation) -> None: ...

def open(path: _Path) -> Basin: ...
def sample_basin() -> pathlib.Path: ...
def new(path: _Path, definition: Mapping[str, Any] | _Path) -> Basin: ...

class Basin:
    path: str
    def __init__(self, path: _Path) -> None: ...
    @property
    def name(self) -> str: ...
    @property
    def units(self) -> str: ...
    @property
    def zones(self) -> list[dict[str, Any]]: ...
    @property
    def simulations(self) -> dict[str, dict[str, Any]]: ...
    @property
    def definition(self) -> dict[str, Any]: ...
    @property
    def daily(self) -> Fields: ...
    def parameters(self, simulation: str) -> Fields: ...
    def load(
        self,
        table: str,
        source: _Path | pandas.DataFrame,
        *,
        field: str | None = ...,
        columns: Mapping[str, str] | None = ...,
        zone: str | None = ...,
        units: str | Mapping[str, str] | None = ...,
        missing: Iterable[str] = ...,
        dates: str | None = ...,
        decimal: Literal["point", "comma"] = ...,
        separator: Literal["comma", "semicolon", "tab"] | None = ...,
        any_order: bool = ...,
        dry_run: bool = ...,
        wait: float = ...,
    ) -> dict[str, int]: ...
    def run(
        self,
        simulation: str,
        *,
        kind: _Kind = ...,
        forecast: int | None = ...,
        no_snow: bool = ...,
        lag_shares: Iterable[float | str] = ...,
        questions: _Questions = ...,
        wait: float = ...,
    ) -> Run: ...
    def climate(
        self,
        simulation: str,
        scenario: str,
        *,
        last_step: int = ...,
        report: _Path | None = ...,
        questions: _Questions = ...,
        wait: float = ...,
    ) -> Evaluation: ...
    def response(
        self,
        simulation: str,
        *,
        winter_end: _Day,
        temperature: Iterable[float],
        precipitation: Iterable[float],
        threads: int | None = ...,
        progress: _Progress | None = ...,
        wait: float = ...,
    ) -> Response: ...
    def plot(
        self,
        number: int,
        *,
        zone: str | None = ...,
        simulation: str | None = ...,
        kind: _Kind | None = ...,
        forecast: int | None = ...,
        no_snow: bool = ...,
        step: int | None = ...,
        scenario: str | None = ...,
        size: tuple[int, int] = ...,
        dpi: float = ...,
    ) -> Picture: ...

class Picture(bytes):
    def save(self, path: _Path) -> None: ...

class Fields(MutableMapping[str, pandas.DataFrame]):
    def __init__(self, path: str, table: str, names: Sequence[str]) -> None: ...
    def __getitem__(self, name: str) -> pandas.DataFrame: ...
    def __setitem__(self, name: str, frame: pandas.DataFrame) -> None: ...
    def __delitem__(self, name: str) -> None: ...
    def __iter__(self) -> Iterator[str]: ...
    def __len__(self) -> int: ...

class Run:
    completed: bool
    refused: bool
    simulation: str
    title: str
    statistics: dict[str, float | None]
    messages: list[_Message]
    notes: list[str]
    def __init__(self, done: dict[str, Any]) -> None: ...
    @property
    def flow(self) -> pandas.Series: ...
    @property
    def results(self) -> xarray.Dataset: ...

class Evaluation:
    done: bool
    simulation: str
    scenario: str
    volume_unit: str
    messages: list[_Message]
    notes: list[str]
    def __init__(self, done: dict[str, Any]) -> None: ...
    @property
    def steps(self) -> pandas.DataFrame: ...
    @property
    def summary(self) -> pandas.DataFrame: ...

class Study:
    def __init__(
        self,
        basin: Basin | _Path,
        simulation: str,
        *,
        free: Iterable[str],
        objectives: Iterable[str] = ...,
        fit: _Period | None = ...,
        check: _Period | None = ...,
        with_: Iterable[tuple[Basin | _Path, str]] = ...,
        check_with: Iterable[tuple[Basin | _Path, str]] = ...,
        no_snow: bool = ...,
        wait: float = ...,
    ) -> None: ...
    @property
    def ranges(self) -> list[str]: ...
    @property
    def objectives(self) -> list[str]: ...
    @property
    def simulations(self) -> list[str]: ...
    def evaluate(
        self, numbers: Iterable[float]
    ) -> tuple[
        pandas.Series | None | list[pandas.Series | None], dict[str, float | None], dict[str, float | None]
    ]: ...
    def calibrate(
        self,
        evaluations: int = ...,
        *,
        seed: int = ...,
        threads: int | None = ...,
        progress: _Progress | None = ...,
    ) -> Calibration: ...
    def sample(
        self,
        runs: int = ...,
        *,
        seed: int = ...,
        sensitivity: bool = ...,
        keep: Iterable[str] = ...,
        threads: int | None = ...,
        progress: _Progress | None = ...,
    ) -> Sample: ...

class Sample:
    def __init__(self, plan: Any, lines: str, rules: Sequence[tuple[str, bool, float]] = ...) -> None: ...
    @property
    def runs(self) -> pandas.DataFrame: ...
    @property
    def kept(self) -> pandas.DataFrame: ...
    def bands(
        self, *, threads: int | None = ..., progress: _Progress | None = ...
    ) -> pandas.DataFrame | dict[str, pandas.DataFrame]: ...
    @property
    def sensitivity(self) -> pandas.DataFrame: ...
    def to_csv(self, path: _Path) -> None: ...

class Calibration:
    evaluations: int
    failed: int
    def __init__(self, study: Study, found: dict[str, Any]) -> None: ...
    @property
    def sets(self) -> pandas.DataFrame: ...
    @property
    def unchanged(self) -> pandas.Series: ...
    @property
    def best(self) -> pandas.Series: ...
    def numbers(self, place: int = ...) -> list[float]: ...
    def save_as(self, name: str, place: int = ..., *, wait: float = ...) -> None: ...

class ResponseStudy:
    def __init__(
        self,
        basin: Basin | _Path,
        simulation: str,
        *,
        winter_end: _Day,
        temperature: Iterable[float],
        precipitation: Iterable[float],
        wait: float = ...,
    ) -> None: ...
    def __len__(self) -> int: ...
    def head(self, first: int = ..., behind: int | None = ...) -> str: ...
    def lines(
        self, first: int, behind: int, threads: int | None = ..., progress: Callable[[int], object] | None = ...
    ) -> str: ...
    def evaluate(self, *, threads: int | None = ..., progress: _Progress | None = ...) -> Response: ...

class Response:
    def __init__(self, study: ResponseStudy, lines: str) -> None: ...
    @property
    def units(self) -> dict[str, str]: ...
    @property
    def table(self) -> pandas.DataFrame: ...
    def surface(self, figure: str) -> xarray.DataArray: ...
    def to_csv(self, path: _Path) -> None: ...
