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
from dataclasses import dataclass
from pathlib import Path
from typing import Any

MOST_MESSAGES = 100
# What the program's exit codes say; others are of runs that were stopped or have crashed.
STATUS = {0: "done", 1: "failed", 2: "refused", 3: "partial"}


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
    command = [program, "--no-config", *job.options, *arguments]
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


def stop_programs() -> None:
    """Those of this process; none of them gets a result."""
    for process in list(_running):
        process.kill()


def find_scenes(job: Job) -> dict[str, Any]:
    """What a record tells besides the input. The status "refused" is the command's and "unfit" that of this
    machine; of both the last message tells why."""
    begin = time.monotonic()
    answer: dict[str, Any] = {"host": socket.gethostname()}
    try:
        if os.stat(job.path).st_size != job.size:
            raise OSError(f"{job.path}: has another size")
        with tempfile.TemporaryDirectory(prefix="kxscenes-") as folder:
            found = Path(folder, "scenes.json")
            outputs = [str(found), *(f"{job.path}.{suffix}" for suffix in job.lists)]
            lists = [word for path in outputs for word in ("-o", _pattern(path))]
            answer["status"], told = _run_program(job, *lists, job.path)
            answer["messages"] = [line.replace(str(found), "this record") for line in told]
            answer["seconds"] = round(time.monotonic() - begin, 3)
            if found.exists():
                video = json.loads(found.read_bytes())
                answer |= {"scenes": video.pop("scenes"), "video": video}
    except OSError as error:
        answer |= {"status": "unfit", "messages": [str(error)]}
    return answer
