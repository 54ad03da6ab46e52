"""Finds the scenes of many files on many machines: a task a file, on Dask.

    from kxscenes import cluster
    cluster.run("captures/", "scenes.jsonl", scheduler="tcp://head:8786")

Each file's result is a line of the results file as soon as it is there; a run that is started again does what
is missing. `python3 -m kxscenes.cluster --help` tells of the same as a command. Needs Dask's `distributed`.
"""

try:
    import distributed as _distributed  # noqa: F401
except ImportError as error:
    raise ImportError(
        "kxscenes.cluster needs Dask's scheduler: install python3-distributed (Debian) or distributed (pip)"
    ) from error

from ._records import read_results
from ._run import Summary, run

__all__ = ["Summary", "read_results", "run"]
