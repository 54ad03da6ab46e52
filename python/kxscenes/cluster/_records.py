"""The results of a run: JSON Lines, a record an input."""

from __future__ import annotations

import fcntl
import json
import os
from collections.abc import Callable, Iterator
from typing import Any, BinaryIO

from .._native import Error
from ._inputs import Input

Record = dict[str, Any]


# By far the most of a record, and therefore its end. Within strings quotes are escaped.
SCENES = b',"scenes":'


def _whole_lines(file: BinaryIO, name: str, parse: Callable[[bytes], Record]) -> Iterator[tuple[Record, int]]:
    """Each record and the offset after it. A last line without an end is left out: a run was killed there."""
    offset = 0
    for number, line in enumerate(file, 1):
        if not line.endswith(b"\n"):
            return
        offset += len(line)
        try:
            record = parse(line)
            record["input"], record["status"]
        except (ValueError, KeyError, TypeError):
            raise Error(f"{name}:{number}: is no record of a run") from None
        yield record, offset


def _without_scenes(line: bytes) -> Record:
    head, scenes, _ = line.partition(SCENES)
    return dict(json.loads(head + b"}" if scenes else line))


def _line_of(record: Record) -> bytes:
    scenes = {"scenes": record["scenes"]} if "scenes" in record else {}
    rest = {name: value for name, value in record.items() if name != "scenes"}
    return json.dumps(rest | scenes, separators=(",", ":")).encode() + b"\n"


def read_results(path: str | os.PathLike[str]) -> Iterator[Record]:
    """The records of a results file, in their order; of several of an input the last counts."""
    with open(path, "rb") as file:
        for record, _ in _whole_lines(file, os.fspath(path), json.loads):
            yield record


class Results:
    """The results file of one run at a time; what others with these settings found counts as done."""

    def __init__(self, path: str | os.PathLike[str], settings: Record) -> None:
        self._name = os.fspath(path)
        self._settings = settings
        self._known: dict[str, tuple[int | None, int | None, str]] = {}
        self._end = 0
        try:
            self._file = open(self._name, "a+b", buffering=0)
        except OSError as error:
            raise self._unwritten(error) from None
        try:
            self._take_over()
        except BaseException:
            self._file.close()
            raise

    def _unwritten(self, error: OSError) -> Error:
        return Error(f"{self._name}: the results cannot be written: {error.strerror}")

    def _take_over(self) -> None:
        try:
            fcntl.flock(self._file, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise Error(f"{self._name}: another run is writing to it") from None
        with open(self._name, "rb") as file:
            for record, self._end in _whole_lines(file, self._name, _without_scenes):
                if all(record.get(name) == value for name, value in self._settings.items()):
                    self._known[record["input"]] = record.get("size"), record.get("mtime_ns"), record["status"]
        self._file.truncate(self._end)

    def status_of(self, input: Input) -> str | None:
        """How it ended, if it is still what it was then."""
        size, mtime_ns, status = self._known.get(input.path, (None, None, None))
        return status if (size, mtime_ns) == (input.size, input.mtime_ns) else None

    def append(self, records: list[Record]) -> None:
        """They are on the disk when this returns. Raises Error when they can't be written, and leaves none."""
        text = b"".join(_line_of(each | self._settings) for each in records)
        try:
            rest = memoryview(text)
            while rest:
                rest = rest[self._file.write(rest) :]
            os.fsync(self._file.fileno())
        except OSError as error:
            self._file.truncate(self._end)
            raise self._unwritten(error) from None
        self._end += len(text)

    def __enter__(self) -> Results:
        return self

    def __exit__(self, *_: object) -> None:
        self._file.close()
