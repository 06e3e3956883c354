"""Where the programs are that the package works with, and calls of them."""

import functools
import os
import pathlib
import shutil
import subprocess
import tempfile

from . import _core

_BATCH = "nivora-batch"
_SEARCH = "nivora-search.so"


def _folders():
    """Folders of the programs: beside the package in a build or a folder that was unpacked, else on the PATH."""
    package = pathlib.Path(__file__).resolve().parent
    yield package.parents[1]
    on_path = shutil.which(_BATCH)
    if on_path:
        yield pathlib.Path(os.path.realpath(on_path)).parent


def _folder_with(file):
    return next((folder for folder in _folders() if (folder / file).is_file()), None)


@functools.cache
def use_search_module():
    """Tells the libraries where the methods of searches are. Without the file a search says what is missing."""
    folder = _folder_with(_SEARCH)
    if folder is not None:
        _core.set_module_folder(str(folder))


@functools.cache
def batch_program():
    """The batch program of the same version as the package."""
    folder = _folder_with(_BATCH)
    if folder is None:
        raise _core.FileError(
            f"The program {_BATCH} draws the plots, and was not found: neither beside the package nor on the PATH."
        )
    program = folder / _BATCH
    done = subprocess.run([program, "--version"], capture_output=True, text=True, check=False)
    version = done.stdout.strip().removeprefix("Nivora ")
    if version != _core.version:
        raise _core.FileError(f"The program {program} is version {version!r}, the package is {_core.version!r}.")
    return program


def sample_basin():
    """The path of the sample basin that comes with the programs. Copy it before you change it.

    Raises FileError where the programs are not installed.
    """
    name = os.path.join("samples", "ellervane.mdb")
    folder = _folder_with(name)
    if folder is None:
        raise _core.FileError("The sample basin comes with the programs, and these were not found.")
    return folder / name


def picture(arguments):
    """The bytes of a PNG file that the batch program draws. Raises RefusedError with what it says."""
    program = batch_program()
    with tempfile.TemporaryDirectory(prefix="nivora-") as folder:
        file = pathlib.Path(folder) / "plot.png"
        done = subprocess.run(
            [program, "plot", *arguments, "--out", file], capture_output=True, text=True, check=False
        )
        if done.returncode != 0:
            raise _core.RefusedError(done.stderr.strip() or "The plot can't be made.")
        return file.read_bytes()
