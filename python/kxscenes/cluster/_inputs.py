"""Which files a run is about."""

from __future__ import annotations

import glob
import os
from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any, Optional, Union

from .. import _native

PathLike = Union[str, "os.PathLike[str]"]


@dataclass(frozen=True)
class Input:
    """A file as it was when the run looked at it; a later one of its name is another."""

    path: str
    size: Optional[int] = None
    mtime_ns: Optional[int] = None
    fault: str = ""
    """Why it can't be read."""

    def record(self) -> dict[str, Any]:
        return {"input": self.path, "size": self.size, "mtime_ns": self.mtime_ns}


def look_at(path: str) -> Input:
    try:
        status = os.stat(path)
    except OSError as error:
        return Input(path, fault=str(error.strerror))
    return Input(path, status.st_size, status.st_mtime_ns)


def expand(inputs: PathLike | Iterable[PathLike]) -> dict[str, str]:
    """Absolute paths, each once, with what is wrong with them: of what is in folders and fits patterns."""
    given = [inputs] if isinstance(inputs, (str, os.PathLike)) else inputs
    found: dict[str, str] = {}
    for each in given:
        path = os.path.abspath(each)
        names = [path]
        if glob.has_magic(path) and not os.path.lexists(path):
            names = sorted(glob.glob(path, recursive=True))
            if not names:
                found[path] = "no file has such a name"
        files = _native.expand_inputs([os.fsencode(name) for name in names])
        found |= {os.fsdecode(file): fault for file, fault in files}
    return found
