import os
from collections.abc import Iterable, Iterator, Mapping
from typing import Any, Literal

import pandas
import xarray

__version__: str

class StoreError(RuntimeError): ...
class FileError(RuntimeError): ...

class RunError(Exception):
    run: Run
    messages: list[tuple[str, str, str]]
    def __init__(self, run: Run) -> None: ...

def open(path: str | os.PathLike[str]) -> Basin: ...

class Basin:
    path: str
    def __init__(self, path: str | os.PathLike[str]) -> None: ...
    @property
    def name(self) -> str: ...
    @property
    def units(self) -> str: ...
    @property
    def zones(self) -> list[dict[str, Any]]: ...
    @property
    def simulations(self) -> dict[str, dict[str, Any]]: ...
    @property
    def daily(self) -> Daily: ...
    def run(
        self,
        simulation: str,
        *,
        kind: Literal["melt-season", "year-round"] = ...,
        forecast: int | None = ...,
        no_snow: bool = ...,
        lag_shares: Iterable[float | str] = ...,
        questions: Literal["continue", "refuse"] = ...,
        wait: float = ...,
    ) -> Run: ...

class Daily(Mapping[str, pandas.DataFrame]):
    def __init__(self, path: str) -> None: ...
    def __getitem__(self, name: str) -> pandas.DataFrame: ...
    def __iter__(self) -> Iterator[str]: ...
    def __len__(self) -> int: ...

class Run:
    completed: bool
    refused: bool
    simulation: str
    title: str
    statistics: dict[str, float | None]
    messages: list[tuple[str, str, str]]
    notes: list[str]
    def __init__(self, done: dict[str, Any]) -> None: ...
    @property
    def flow(self) -> pandas.Series: ...
    @property
    def results(self) -> xarray.Dataset: ...
