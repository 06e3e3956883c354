import os
from collections.abc import Callable, Iterable
from typing import Any

from . import Calibration, Response, ResponseStudy, Sample, Study

CHUNK_SECONDS: float

class WorkerError(RuntimeError): ...
class SchedulerLostError(ConnectionError): ...

def sample(
    study: Study,
    client: Any,
    runs: int = ...,
    *,
    seed: int = ...,
    sensitivity: bool = ...,
    keep: Iterable[str] = ...,
    folder: str | os.PathLike[str] | None = ...,
    progress: Callable[[int, int], object] | None = ...,
) -> Sample: ...
def response(
    study: ResponseStudy,
    client: Any,
    *,
    folder: str | os.PathLike[str] | None = ...,
    progress: Callable[[int, int], object] | None = ...,
) -> Response: ...
def calibrate(
    study: Study,
    client: Any,
    evaluations: int = ...,
    *,
    seed: int = ...,
    folder: str | os.PathLike[str] | None = ...,
    progress: Callable[[int, int], object] | None = ...,
) -> Calibration: ...
