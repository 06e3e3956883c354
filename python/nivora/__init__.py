"""Snowmelt runoff of mountain basins: basin files, runs of the model, and studies.

    import nivora

    basin = nivora.open("alder.mdb")
    print(basin.simulations)
    run = basin.run("wy1998", kind="year-round")
    run.flow.plot()          # pandas Series of the computed discharge
    run.results["SCA"]       # xarray Dataset, zone by date
    basin.plot(14, zone="A") # a picture, which shows itself in a notebook

    study = nivora.Study(basin, "wy1998", free=["Degree Day Factors:multiply:0.7..1.4:All"])
    found = study.calibrate()
    found.save_as("wy1998-fitted")

Numbers are those of the batch program, to the bit. pandas and xarray are loaded when a result first needs them.
Studies on many machines are in `nivora.cluster`.
"""

from . import _core
from ._basin import Basin, Evaluation, Fields, Picture, Run, RunError, new, open
from ._core import FileError, RefusedError, StoreError, TableError
from ._programs import sample_basin
from ._study import Calibration, Response, ResponseStudy, Sample, Study

__version__ = _core.version
__all__ = [
    "Basin",
    "Calibration",
    "Evaluation",
    "Fields",
    "FileError",
    "Picture",
    "RefusedError",
    "Response",
    "ResponseStudy",
    "Run",
    "RunError",
    "Sample",
    "StoreError",
    "Study",
    "TableError",
    "new",
    "open",
    "sample_basin",
]
