"""A run over many inputs: tasks for what is missing, and their results."""

# Dask tells few of its types.
# mypy: disable-error-code="no-untyped-call,no-any-return"

from __future__ import annotations

import asyncio
import concurrent.futures
import contextlib
import hashlib
import itertools
import json
import os
import time
from collections.abc import Callable, Iterable, Iterator, Sequence
from dataclasses import dataclass
from typing import Any, Optional

import distributed

from .. import _native
from .._native import Error
from ._inputs import Input, PathLike, expand, look_at
from ._records import Record, Results
from ._tasks import Interrupted, Job, find_scenes, join_parts, measure_part, of_parts, stop_programs

# Files that wait for each slot: enough to go on while results travel, and few enough that the scheduler's
# memory does not grow with the number of inputs.
TASKS_A_SLOT = 4
LEAST_TASKS = 64
# Above so many bytes a film is measured in parts.
PART_SIZE = 4_000_000_000
# The program measures no DV in parts; of these names nothing else is expected.
RAW_DV = (".dv", ".dif", ".dvsd")
# How long one attempt to reach the scheduler takes, and what lies between two, in seconds.
ATTEMPT = 5.0
PAUSE = 0.2
# The program's options that come between a run and its results.
OWN_OPTIONS = ("--format", "--from-stats", "--part", "--help", "-h", "--version", "--config", "--no-config")


@dataclass
class Summary:
    """How the inputs ended, by this run or before it."""

    inputs: int = 0
    earlier: int = 0
    """Those that earlier runs have done."""
    done: int = 0
    partial: int = 0
    failed: int = 0
    scenes: int = 0
    """That this run has found."""

    def count(self, status: str) -> None:
        setattr(self, status, getattr(self, status) + 1)


Progress = Callable[[Summary, Record], object]


class _SchedulerLost(Exception):
    pass


@contextlib.contextmanager
def _noticing_loss() -> Iterator[None]:
    try:
        yield
    except (asyncio.CancelledError, concurrent.futures.CancelledError, OSError, asyncio.TimeoutError) as error:
        raise _SchedulerLost(str(error)) from error


def _address_of(scheduler: str) -> str:
    if not scheduler.endswith(".json"):
        return scheduler
    with open(scheduler, encoding="utf-8") as file:
        return str(json.load(file)["address"])


def _connect(scheduler: str, patience: float) -> distributed.Client:
    deadline = time.monotonic() + patience
    while True:
        try:
            left = max(PAUSE, deadline - time.monotonic())
            return distributed.Client(_address_of(scheduler), timeout=min(ATTEMPT, left), set_as_default=False)
        except (OSError, asyncio.TimeoutError, ValueError, KeyError) as error:
            if time.monotonic() >= deadline:
                raise Error(f"{scheduler}: no scheduler can be reached: {error}") from None
        time.sleep(PAUSE)


@contextlib.contextmanager
def _client_of(scheduler: str | None, patience: float) -> Iterator[distributed.Client]:
    with contextlib.ExitStack() as stack:
        if scheduler is None:
            slots = _native.usable_cores()
            cluster = distributed.LocalCluster(
                n_workers=1, threads_per_worker=slots, processes=False, dashboard_address=None
            )
            stack.enter_context(cluster)
            stack.push(lambda failure, *_: stop_programs() if failure else None)
            client = distributed.Client(cluster, set_as_default=False)
        else:
            client = _connect(scheduler, patience)
        yield stack.enter_context(client)


class _Run:
    """Keeps as many tasks with the scheduler as it can work on, and writes what comes back."""

    def __init__(
        self,
        results: Results,
        job_of: Callable[[Input], Job],
        retries: int,
        part_size: int,
        summary: Summary,
        progress: Progress | None,
    ) -> None:
        self._results = results
        self._job_of = job_of
        self._retries = retries
        self._part_size = part_size
        self._summary = summary
        self._progress = progress
        self._waiting: Iterator[Input] = iter(())
        self._running: dict[str, Input] = {}  # by the key of its task

    def _end(self, records: dict[str, Record]) -> None:
        """They have their lines, and are not begun again, before anybody is told."""
        self._results.append(list(records.values()))
        for key, record in records.items():
            self._running.pop(key, None)
            self._summary.count(record["status"])
            self._summary.scenes += len(record.get("scenes", ()))
        for record in records.values():
            if self._progress is not None:
                self._progress(self._summary, record)

    def _submit(self, client: distributed.Client, input: Input) -> distributed.Future:
        job = self._job_of(input)
        text = repr((job, input.mtime_ns)).encode("utf-8", "surrogateescape")
        key = f"kxscenes-{hashlib.blake2b(text, digest_size=16).hexdigest()}"
        self._running[key] = input
        count = self._parts_of(job)
        with _noticing_loss():
            if count == 1:
                return client.submit(find_scenes, job, key=key, retries=self._retries)
            parts = [
                client.submit(measure_part, job, part, key=f"{key}-{part}", retries=self._retries)
                for part in (f"{number}/{count}" for number in range(1, count + 1))
            ]
            return client.submit(join_parts, job, parts, key=key, retries=self._retries)

    def _parts_of(self, job: Job) -> int:
        if self._part_size == 0 or job.path.lower().endswith(RAW_DV) or of_parts(job.options) is None:
            return 1
        return max(1, -(-job.size // self._part_size))

    def _top_up(self, client: distributed.Client) -> Iterator[distributed.Future]:
        with _noticing_loss():
            most = max(LEAST_TASKS, TASKS_A_SLOT * sum(client.nthreads().values()))
        while len(self._running) < most:
            input = next(self._waiting, None)
            if input is None:
                return
            if input.fault:
                self._end({input.path: _failed(input, input.fault)})
            else:
                yield self._submit(client, input)

    def _do(self, client: distributed.Client) -> None:
        finished = distributed.as_completed(loop=client.loop)
        while True:
            finished.update(list(self._top_up(client)))
            if not self._running:
                return
            with _noticing_loss():
                answers = dict(_answers(client, finished.next_batch()))
            self._end({key: self._record_of(key, answer) for key, answer in answers.items()})

    def do(self, inputs: Iterator[Input], scheduler: str | None, patience: float) -> None:
        """Until all of them have records. What runs when the scheduler is lost begins again with the next."""
        self._waiting = inputs
        while True:
            with _client_of(scheduler, patience) as client:
                try:
                    return self._do(client)
                except _SchedulerLost as lost:
                    if scheduler is None:
                        raise Error(f"the cluster in this process has ended: {lost}") from lost
            self._waiting = itertools.chain(self._running.values(), self._waiting)
            self._running = {}

    def _record_of(self, key: str, answer: Any) -> Record:
        input = self._running[key]
        if isinstance(answer, (Interrupted, distributed.scheduler.KilledWorker)):
            return _failed(input, str(answer))
        if isinstance(answer, BaseException):
            raise Error(f"workers cannot do their work: {answer!r}") from answer
        told = " ".join(answer["messages"][-1:]).removeprefix("error: ")
        if answer["status"] == "refused":
            raise Error(told)
        if answer["status"] == "unfit":
            if look_at(input.path) == input:
                raise Error(f"the worker on {answer['host']} cannot do its work: {told}")
            return _failed(input, "has changed since the run looked at it")
        return input.record() | answer


def _failed(input: Input, message: str) -> Record:
    return input.record() | {"status": "failed", "messages": [f"error: {message}"]}


def _answers(client: distributed.Client, batch: list[distributed.Future]) -> Iterator[tuple[str, Any]]:
    """What tasks have returned, or raised when they were tried for the last time."""
    good = [future for future in batch if future.status == "finished"]
    yield from zip((future.key for future in good), client.gather(good))
    for future in batch:
        if future.status == "error":
            yield future.key, future.exception()
        elif future.status != "finished":
            raise concurrent.futures.CancelledError(future.key)


def run(
    inputs: PathLike | Iterable[PathLike],
    results: PathLike,
    *,
    options: Sequence[str] = (),
    lists: Sequence[str] = (),
    scheduler: Optional[str] = None,
    part_size: int = PART_SIZE,
    retries: int = 2,
    failed_again: bool = False,
    patience: float = 60.0,
    program: str = "kxscenes",
    progress: Optional[Progress] = None,
) -> Summary:
    """Finds the scenes of all inputs, and appends a record of each to the results file as soon as it is there.

    inputs: files, folders (for the video files in them) and patterns such as "tapes/**/*.dv", one or several.
        Workers find them under the same paths.
    results: a JSON Lines file. Inputs that it has already, unchanged and with the same options and lists, are
        left out. One run at a time writes to it.
    options: of the program, as on its command line: ["--method", "timestamp,video"]. Relative paths in them
        start from the current folder.
    lists: suffixes ("csv", "edl", ...) of lists that are written beside each input: tape.dv.csv.
    scheduler: address of a Dask scheduler, or its scheduler file (.json); without one, all processors that this
        process may use serve.
    part_size: films of more bytes are measured in parts of this size, a task each, with the same
        result; 0: none. DV is not, nor is any where options want more than lists of the method "video".
    retries: how often a file is tried again after the program has crashed or was stopped.
    failed_again: does those again that have failed before.
    patience: seconds in which the scheduler must be there, at the beginning and when it was lost.
    program: its name or path on the workers.
    progress: called after each record with the counts so far and the record.

    Raises Error where the run can't go on (options that the program refuses, no scheduler, a worker without the
    program or the files, results that can't be written). Another run then does the rest.
    """
    for option in options:
        if option.split("=")[0] in OWN_OPTIONS:
            raise Error(f"{option} is not for many inputs")
    settings = {"options": list(options), "lists": list(lists)}
    folder = os.getcwd()
    summary = Summary()

    def job_of(input: Input) -> Job:
        assert input.size is not None
        return Job(input.path, input.size, program, folder, tuple(options), tuple(lists))

    def missing(found: dict[str, str], written: Results) -> Iterator[Input]:
        for path, fault in found.items():
            input = Input(path, fault=fault) if fault else look_at(path)
            status = written.status_of(input)
            if status is None or (status == "failed" and failed_again):
                yield input
            else:
                summary.earlier += 1
                summary.count(status)

    with Results(results, settings) as written:
        found = expand(inputs)
        summary.inputs = len(found)
        work = _Run(written, job_of, retries, part_size, summary, progress)
        rest = missing(found, written)
        for first in rest:  # where there is any
            work.do(itertools.chain([first], rest), scheduler, patience)
    return summary
