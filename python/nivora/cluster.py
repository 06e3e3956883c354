"""Studies on many machines, through the client of a `dask.distributed` cluster.

    from dask.distributed import Client, LocalCluster
    import nivora, nivora.cluster

    study = nivora.Study("alder.mdb", "wy1998", free=[...])
    with Client(LocalCluster(n_workers=4, threads_per_worker=1)) as client:
        sample = nivora.cluster.sample(study, client, runs=100_000, folder="sample")

What comes back is, to the bit, what one machine computes. The basin travels to a worker once. The work is cut into
chunks by their measured cost; the chunk of a worker that is lost is computed again by another one. With a folder each
chunk is written there as it comes, and the same call goes on from there after this program, or the scheduler, was
stopped.
"""

import contextlib
import hashlib as _hashlib
import json as _json
import os as _os
import pathlib as _pathlib
import re as _re
import threading
import time as _time
import weakref

from . import _core
from . import _programs
from ._study import _MOST_RUNS, Response, Sample, SamplePlan, _seed, _texts, _write, whole_number

#: A chunk is meant to take this long on a worker: long against the milliseconds that a task costs, and short enough
#: that little is lost with a worker.
CHUNK_SECONDS = 2.0
_FIRST_CHUNK = 256
_MOST_GROWTH = 16
_LEAST_SECONDS = 0.03
_ASK_AGAIN = 0.5
_WAIT_FOR_WORKERS = 60.0
_CHUNKS_A_THREAD = 2
_SHARES_A_THREAD = 1.5
_PART = _re.compile(r"(\d+)-(\d+)\.csv")


def sample(study, client, runs=10_000, *, seed=1, sensitivity=False, keep=(), folder=None, progress=None):
    """`Study.sample` on a cluster: a `Sample`.

    client    a dask.distributed Client
    folder    where the chunks are kept; the same call with it goes on from there. Its files are parts that
              `nivora-batch gather` puts together
    progress  called with the number of runs that are done and the number of all
    """
    plan = SamplePlan(study, runs, seed, sensitivity)
    rules = [_core.keep_rule(text) for text in _texts("keep", keep)]
    lines = _Spread(client, plan, plan.runs, folder, progress).lines()
    return Sample(plan, lines, rules)


def response(study, client, *, folder=None, progress=None):
    """`ResponseStudy.evaluate` on a cluster: a `Response`.

    study  a ResponseStudy

    `client`, `folder` and `progress` are those of `sample`.
    """
    return Response(study, _Spread(client, study, len(study), folder, progress).lines())


def calibrate(study, client, evaluations=5000, *, seed=1, folder=None, progress=None):
    """`Study.calibrate` on a cluster: a `Calibration`.

    Each lane of the search is an island that one worker walks: one for each thousand evaluations, at most 16. Several
    objectives are one lane, which uses all threads of its worker. `client` and `folder` are those of `sample`;
    `progress` counts evaluations as their lanes come.
    """
    evaluations, seed = whole_number("evaluations", evaluations, 1, _MOST_RUNS), _seed(seed)
    _programs.use_search_module()
    with _told_loss():
        _check_versions(client)
        lanes = _Lanes(client, study, evaluations, seed, folder, progress).costs()
    return study._search(evaluations, seed, lanes)


class WorkerError(RuntimeError):
    """There is no worker, or one that can't take part: its version of this package is another, or it has none."""


class SchedulerLostError(ConnectionError):
    """The scheduler went away during a study."""


def _version():
    return _core.version


def _check_versions(client):
    """Refuses workers by name whose numbers might not be the same."""
    from distributed import TimeoutError as DaskTimeout

    try:
        client.wait_for_workers(1, timeout=_WAIT_FOR_WORKERS)
    except (TimeoutError, DaskTimeout):
        raise WorkerError("The cluster has no worker. Start workers, then call again.") from None
    known = _checked.setdefault(client, set())
    new = sorted(set(client.nthreads()) - known)
    if not new:
        return
    answers = client.run(_version, workers=new, on_error="return")
    for worker, answer in sorted(answers.items()):
        _check_version(worker, answer)
    known.update(answers)


def _check_version(worker, answer):
    if isinstance(answer, BaseException):
        missing = _re.search(r"No module named '([\w.]+)'", str(answer))
        if missing:
            raise WorkerError(f"The worker {worker} has no package {missing[1]!r}. Install it there.")
        raise WorkerError(f"The worker {worker} can't use the package: {answer}")
    if answer != _core.version:
        raise WorkerError(f"The worker {worker} has version {answer} of nivora, this program has {_core.version}.")


class _OtherVersion(Exception):
    """A worker that came late has another version."""


#: The study that this worker has read last, by its name.
_read = {}
_reading = threading.Lock()
#: The workers of a client whose version was looked at. Each task looks again, for what comes later at their addresses.
_checked = weakref.WeakKeyDictionary()
#: What was sent to the cluster of a client, by name: its workers keep it as long as the client lives.
_sent = weakref.WeakKeyDictionary()


def _received(content):
    """The pickled study, as the workers hand it on to each other: a worker that can't read it must not stumble over
    it before its version is known."""
    return content


def _study_here(content, name, version):
    """The study on a worker, which reads it once."""
    import pickle

    if version != _core.version:
        raise _OtherVersion(_core.version)
    with _reading:
        if name not in _read:
            _read.clear()
            _read[name] = pickle.loads(content)
        return _read[name]


def _chunk(content, name, version, plan, first, behind):
    """The lines of a chunk, and the seconds that it took.

    plan  the arguments of a SamplePlan of the study; None for a study that has lines itself
    """
    work = _study_here(content, name, version)
    begin = _time.perf_counter()
    if plan is not None:
        work = SamplePlan(work, *plan)
    lines = work.lines(first, behind, threads=1).encode()  # bytes travel as they are, a text is packed
    return lines, _time.perf_counter() - begin


def _lane(content, name, version, lane, evaluations, seed, threads):
    """The costs of a lane's evaluations, a row for each of them."""
    study = _study_here(content, name, version)
    _programs.use_search_module()
    return study._handle.lane_costs(lane, evaluations=evaluations, seed=seed, threads=threads, progress=None)


@contextlib.contextmanager
def _told_loss():
    """What a lost scheduler does to calls of its client, in one error that says how to go on."""
    from concurrent.futures import CancelledError

    from distributed.comm import CommClosedError

    try:
        yield
    except (CancelledError, CommClosedError):
        raise SchedulerLostError(
            "The connection to the scheduler is lost. What was computed is in the folder of the call, if it had one: "
            "the same call with a new client goes on from there."
        ) from None


class _Sent:
    """A study on the cluster, and the tasks that use it.

    The scheduler keeps the pickled study, so that it can be sent again where all workers that had it were lost; workers
    hand it on to each other.
    """

    def __init__(self, client, study):
        import pickle

        self._client = client
        identity = repr((type(study).__name__, study._arguments, study._handle.digest, _core.version))
        self._name = f"nivora-study-{_hashlib.sha256(identity.encode()).hexdigest()}"
        known = _sent.setdefault(client, {})
        if self._name not in known or known[self._name].status not in ("pending", "finished"):
            known.clear()
            known[self._name] = client.submit(_received, pickle.dumps(study), key=self._name, pure=False)
        self._content = known[self._name]
        self._tasks = {}
        self._threads = 1
        self._asked = -_ASK_AGAIN

    def submit(self, function, *arguments):
        task = self._client.submit(function, self._content, self._name, _core.version, *arguments, pure=False)
        self._tasks[task.key] = task
        return task

    def result(self, task):
        try:
            return task.result()
        except _core.RefusedError:
            _sent.get(self._client, {}).clear()  # a file that changed meanwhile is read anew by the next call
            raise
        except _OtherVersion as error:
            for worker, answer in sorted(self._client.run(_version, on_error="return").items()):
                _check_version(worker, answer)
            raise WorkerError(
                f"A worker that is gone had version {error} of nivora, this program has {_core.version}."
            ) from None

    def done_with(self, task):
        self._tasks.pop(task.key, None)
        task.release()

    def cancel(self):
        tasks = list(self._tasks.values())
        self._tasks.clear()
        if self._client.status == "running":
            with contextlib.suppress(OSError):  # the scheduler may go at any time
                self._client.cancel(tasks, force=True)

    def threads(self):
        """The threads of all workers, which come and go; asked now and then."""
        now = _time.monotonic()
        if now - self._asked > _ASK_AGAIN:
            self._asked = now
            self._threads = max(1, sum(self._client.nthreads().values()))
        return self._threads


class _Parts:
    """The chunks of a study that are there: as files of a folder, or in memory."""

    def __init__(self, work, whole, folder):
        self._work = work
        self._whole = whole
        self._folder = None if folder is None else _pathlib.Path(folder)
        self._found = {}
        if self._folder is not None:
            self._folder.mkdir(parents=True, exist_ok=True)
            self._read()

    def _read(self):
        for file in sorted(self._folder.iterdir()):
            name = _PART.fullmatch(file.name)
            if not name:
                continue
            first, behind = int(name[1]), int(name[2])
            with open(file, encoding="utf-8", newline="") as part:
                text = part.read()
            if not 0 <= first < behind <= self._whole or not text.startswith(self._work.head(first, behind)):
                raise _core.RefusedError(
                    f"The file {file} is a part of another study. Name another folder, or the options and the basin "
                    "with which it was begun."
                )
            lines = text[len(self._work.head(first, behind)) :]
            if lines.count("\n") != behind - first or not lines.endswith("\n"):
                raise _core.RefusedError(f"The file {file} is damaged. Delete it: its runs are computed again.")
            self._found[first, behind] = lines
        end = 0
        for first, behind in sorted(self._found):
            if first < end:
                raise _core.RefusedError(f"Parts in {self._folder} overlap at run {first}. Delete one of them.")
            end = behind

    def add(self, first, behind, lines):
        if self._folder is not None:
            _write(self._folder / f"{first:09d}-{behind:09d}.csv", (self._work.head(first, behind), lines))
        self._found[first, behind] = lines

    def done(self):
        return sum(behind - first for first, behind in self._found)

    def gaps(self):
        """What is not there yet, in order."""
        at = 0
        for first, behind in sorted(self._found):
            if first > at:
                yield at, first
            at = behind
        if at < self._whole:
            yield at, self._whole

    def lines(self):
        return "".join(self._found[span] for span in sorted(self._found))


class _Sizes:
    """How long chunks should be, by what the last ones took."""

    def __init__(self):
        self._size = _FIRST_CHUNK
        self._least = 1

    def next(self, left, threads):
        """The pieces of the next chunk: near the end so few that all threads have some, but not so few that the
        calls cost more than the work."""
        shared = int(left / (_SHARES_A_THREAD * threads)) + 1
        return min(self._size, max(self._least, shared))

    def learn(self, pieces, seconds):
        """After a chunk of so many pieces."""
        rate = pieces / max(seconds, 1.0e-6)
        self._size = max(1, min(int(rate * CHUNK_SECONDS), max(pieces, self._size) * _MOST_GROWTH))
        self._least = max(1, min(int(rate * _LEAST_SECONDS), self._size))


class _Spread:
    """The pieces of a study, cut into chunks that the workers compute."""

    def __init__(self, client, work, whole, folder, progress):
        self._client = client
        self._work = work
        self._whole = whole
        self._progress = progress
        self._parts = _Parts(work, whole, folder)

    def lines(self):
        if self._parts.done() < self._whole:
            with _told_loss():
                _check_versions(self._client)
                self._compute()
        return self._parts.lines()

    def _tell(self):
        if self._progress is not None:
            self._progress(self._parts.done(), self._whole)

    def _compute(self):
        from distributed import as_completed

        plan = self._work.arguments if isinstance(self._work, SamplePlan) else None
        sent = _Sent(self._client, self._work if plan is None else self._work.study)
        sizes = _Sizes()
        gaps = list(self._parts.gaps())[::-1]
        spans = {}
        self._tell()

        def submit_next(threads):
            first, behind = gaps.pop()
            left = behind - first + sum(end - begin for begin, end in gaps)
            end = min(first + sizes.next(left, threads), behind)
            if end < behind:
                gaps.append((end, behind))
            task = sent.submit(_chunk, plan, first, end)
            spans[task.key] = (first, end)
            return task

        try:
            threads = sent.threads()
            running = as_completed([submit_next(threads) for _ in range(threads) if gaps])
            for task in running:
                first, behind = spans.pop(task.key)
                lines, seconds = sent.result(task)
                sent.done_with(task)
                sizes.learn(behind - first, seconds)
                self._parts.add(first, behind, lines.decode())
                self._tell()
                threads = sent.threads()
                while gaps and len(spans) < _CHUNKS_A_THREAD * threads:
                    running.add(submit_next(threads))
        finally:
            sent.cancel()


class _Lanes:
    """The lanes of a search."""

    def __init__(self, client, study, evaluations, seed, folder, progress):
        self._client = client
        self._study = study
        self._evaluations = evaluations
        self._seed = seed
        self._progress = progress
        self._count = study._handle.lanes(evaluations)
        self._folder = None if folder is None else _pathlib.Path(folder)
        self._title = {
            "program": f"Nivora {_core.version}",
            "study": study._handle.digest,
            "arguments": {
                key: value for key, value in study._arguments.items() if key in ("free", "objectives", "fit", "no_snow")
            },
            "evaluations": evaluations,
            "seed": seed,
        }
        self._found = {}
        if self._folder is not None:
            self._folder.mkdir(parents=True, exist_ok=True)
            self._read()

    def _file(self, lane):
        return self._folder / f"lane-{lane:02d}.json"

    def _read(self):
        import numpy

        for lane in range(self._count):
            if not self._file(lane).is_file():
                continue
            try:
                stored = _json.loads(self._file(lane).read_text(encoding="utf-8"))
                title, costs = stored["title"], stored["costs"]
                costs = numpy.array(costs, dtype=float).reshape(len(costs), len(self._study.objectives))
            except (ValueError, KeyError, TypeError):
                raise _core.RefusedError(f"The file {self._file(lane)} is damaged. Delete it.") from None
            if title != _json.loads(_json.dumps(self._title)):
                raise _core.RefusedError(
                    f"The file {self._file(lane)} belongs to another search. Name another folder, or the options and "
                    "the basin with which it was begun."
                )
            self._found[lane] = costs

    def _add(self, lane, costs):
        if self._folder is not None:
            # Python writes floats with the digits that give their bits back.
            _write(self._file(lane), (_json.dumps({"title": self._title, "costs": costs.tolist()}),))
        self._found[lane] = costs

    def costs(self):
        from distributed import as_completed

        wanted = [lane for lane in range(self._count) if lane not in self._found]
        if wanted:
            sent = _Sent(self._client, self._study)
            threads = max(self._client.nthreads().values()) if self._count == 1 else 1
            try:
                tasks = {
                    sent.submit(_lane, lane, self._evaluations, self._seed, threads): lane for lane in wanted
                }
                for task in as_completed(list(tasks)):
                    self._add(tasks[task], sent.result(task))
                    sent.done_with(task)
                    if self._progress is not None:
                        self._progress(sum(map(len, self._found.values())), self._evaluations)
            finally:
                sent.cancel()
        return [self._found[lane] for lane in range(self._count)]
