"""What a worker does: runs the program kxscenes on a file.

The program is a process of its own: what goes wrong with a file, a crash too, ends that process and not the
worker, and no memory stays behind.
"""

from __future__ import annotations

import json
import os
import shutil
import socket
import subprocess
import tempfile
import time
import zlib
from collections.abc import Callable, Sequence
from dataclasses import dataclass, replace
from pathlib import Path
from typing import Any

from .._native import default_parameters

MOST_MESSAGES = 100
# What the program's exit codes say; others are of runs that were stopped or have crashed.
STATUS = {0: "done", 1: "failed", 2: "refused", 3: "partial"}
# What a film in parts takes when they are joined; parameters it takes for each part, too.
JOINED_OPTIONS = ("--min-scene", "--short-scenes", "-o", "--output")
AREA = "--area"
_running: set[subprocess.Popen[bytes]] = set()


class Interrupted(RuntimeError):
    """The program has ended without a result: it is worth another try."""


@dataclass(frozen=True)
class Job:
    """One input, and what is to be done with it."""

    path: str
    size: int
    program: str
    folder: str
    """That relative paths start from."""
    options: tuple[str, ...]
    lists: tuple[str, ...]
    """Suffixes of lists beside the input."""


def _pattern(path: str) -> str:
    return path.replace("{", "{{").replace("}", "}}")


def _run_program(job: Job, *arguments: str) -> tuple[str, list[str]]:
    """The status that the exit code stands for, and the messages."""
    program = shutil.which(job.program)
    if program is None:
        raise FileNotFoundError(f"there is no program {job.program}")
    command = [program, "--no-config", *arguments]
    # It must not outlive its worker: by then another one may be at the file.
    if shutil.which("setpriv"):
        command = ["setpriv", "--pdeathsig", "KILL", *command]
    nothing = subprocess.DEVNULL
    with subprocess.Popen(
        command, cwd=job.folder, stdin=nothing, stdout=nothing, stderr=subprocess.PIPE
    ) as process:
        _running.add(process)
        try:
            told = process.communicate()[1]
        finally:
            _running.discard(process)
    lines = [line.removeprefix("kxscenes: ") for line in os.fsdecode(told).splitlines()]
    if len(lines) > MOST_MESSAGES:
        lines[MOST_MESSAGES:] = [f"{len(lines) - MOST_MESSAGES} messages more"]
    if process.returncode not in STATUS:
        raise Interrupted(f"kxscenes ended with {process.returncode}: {' '.join(lines[-1:])}")
    return STATUS[process.returncode], lines


def of_parts(options: Sequence[str]) -> list[tuple[str, str]] | None:
    """The options as pairs of name and value, if all of them go with a file that is measured in parts."""
    words = [word for option in options for word in (option.split("=", 1) if option[:2] == "--" else [option])]
    pairs = list(zip(words[::2], words[1::2]))
    names = {*JOINED_OPTIONS, AREA, *("--" + name.replace("_", "-") for name in default_parameters())}
    good = len(words) % 2 == 0 and all(
        name in names or (name, value) == ("--method", "video") for name, value in pairs
    )
    return pairs if good else None


def stop_programs() -> None:
    """Those of this process; none of them gets a result."""
    for process in list(_running):
        process.kill()


def _work(job: Job, work: Callable[[Path], dict[str, Any]]) -> dict[str, Any]:
    """What a record tells besides the input. The status "refused" is the command's and "unfit" that of this
    machine; of both the last message tells why."""
    begin = time.monotonic()
    answer: dict[str, Any] = {"host": socket.gethostname()}
    try:
        if os.stat(job.path).st_size != job.size:
            raise OSError(f"{job.path}: has another size")
        with tempfile.TemporaryDirectory(prefix="kxscenes-") as folder:
            answer |= work(Path(folder))
    except OSError as error:
        answer |= {"status": "unfit", "messages": [str(error)]}
    return answer | {"seconds": round(time.monotonic() - begin, 3)}


def _list_scenes(job: Job, folder: Path, *source: str) -> dict[str, Any]:
    found = folder / "scenes.json"
    outputs = [str(found), *(f"{job.path}.{suffix}" for suffix in job.lists)]
    lists = [word for path in outputs for word in ("-o", _pattern(path))]
    status, told = _run_program(job, *job.options, *lists, *source)
    answer: dict[str, Any] = {
        "status": status,
        "messages": [line.replace(str(found), "this record") for line in told],
    }
    if found.exists():
        video = json.loads(found.read_bytes())
        answer |= {"scenes": video.pop("scenes"), "video": video}
    return answer


def find_scenes(job: Job) -> dict[str, Any]:
    """In a whole file."""
    return _work(job, lambda folder: _list_scenes(job, folder, job.path))


def measure_part(job: Job, part: str) -> dict[str, Any]:
    """The figures of a part ("3/16"), in place of scenes."""

    def measure(folder: Path) -> dict[str, Any]:
        table = folder / "part.csv"
        parameters = [
            word for pair in of_parts(job.options) or () for word in pair if pair[0] not in JOINED_OPTIONS
        ]
        status, told = _run_program(job, *parameters, "--part", part, "--stats", _pattern(str(table)), job.path)
        figures = {"figures": zlib.compress(table.read_bytes(), 1)} if table.exists() else {}
        messages = [line for line in told if str(table) not in line]
        return {"status": status, "messages": messages, **figures}

    return _work(job, measure)


def join_parts(job: Job, parts: list[dict[str, Any]]) -> dict[str, Any]:
    """The scenes of a file whose parts are measured; where one is not, of the file as a whole."""

    def join(folder: Path) -> dict[str, Any]:
        tables = [folder / f"{number}.csv" for number in range(len(parts))]
        for table, part in zip(tables, parts):
            table.write_bytes(zlib.decompress(part["figures"]))
        words = [word for pair in of_parts(job.options) or () for word in pair if pair[0] != AREA]
        decided = replace(job, options=tuple(words))  # the tables know their area
        return _list_scenes(decided, folder, "--from-stats", *map(str, tables))

    for part in parts:
        if part["status"] == "unfit":
            return part
    if all("figures" in part for part in parts):
        answer = _work(job, join)
        if answer["status"] in ("done", "partial"):
            told = [line for each in (*parts, answer) for line in each["messages"]]
            return answer | {
                "status": max((each["status"] for each in (*parts, answer)), key=["done", "partial"].index),
                "messages": list(dict.fromkeys(told)),
                "parts": len(parts),
                "seconds": round(sum(each["seconds"] for each in (*parts, answer)), 3),
            }
    return find_scenes(job)
