"""The command line of kxscenes.cluster."""

from __future__ import annotations

import argparse
import logging
import sys
from pathlib import Path

from .._native import Error, version
from . import Summary, run
from ._records import Record
from ._run import PART_SIZE

NOTES = """\
What comes after -- goes to the program: kxscenes.cluster -r out.jsonl tapes/ -- --method timestamp,video
Each input gets one line in the results file, with its path, size, modification time, options, status (done,
partial, failed), scenes, messages and the time it took. A run that is started again does what is missing or has
changed.

Exit codes: 0 all done, 1 an input has failed or the run could not go on, 2 wrong command line, 3 an input ends
early, 130 stopped by Ctrl-C. Start it again for what is missing.
"""


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(
        prog="python3 -m kxscenes.cluster",
        usage="%(prog)s -r FILE [OPTIONS] INPUT... [-- OPTIONS OF KXSCENES]",
        description="Finds the scenes of many files, on this machine or on a Dask cluster.",
        epilog=NOTES,
        formatter_class=argparse.RawDescriptionHelpFormatter,
    )
    parser.add_argument(
        "inputs", metavar="INPUT", nargs="*", help='files, folders, and patterns such as "t/**/*.dv"'
    )
    parser.add_argument(
        "--inputs-from", metavar="FILE", help="read inputs from this file, one a line; - for stdin"
    )
    parser.add_argument(
        "-r", "--results", metavar="FILE", required=True, help="JSON Lines file to append results to"
    )
    parser.add_argument(
        "--lists",
        metavar="SUFFIX[,...]",
        default="",
        help="write lists beside each input: csv,edl for tape.dv.csv ...",
    )
    parser.add_argument(
        "--scheduler",
        metavar="ADDRESS",
        help="a Dask scheduler (tcp://host:8786), or its scheduler file (.json); this machine unless told",
    )
    parser.add_argument(
        "--part-size",
        metavar="BYTES",
        type=int,
        default=PART_SIZE,
        help="measure films that are larger in parts of this size; 0: none (default: %(default)s)",
    )
    parser.add_argument(
        "--retries", metavar="N", type=int, default=2, help="tries after a crash (default: %(default)s)"
    )
    parser.add_argument("--failed-again", action="store_true", help="do those again that have failed before")
    parser.add_argument(
        "--patience",
        metavar="SECONDS",
        type=float,
        default=60.0,
        help="how long to wait for the scheduler, also when it is lost (default: %(default)g)",
    )
    parser.add_argument(
        "--program", metavar="NAME", default="kxscenes", help="the program's name or path on workers"
    )
    parser.add_argument("-q", "--quiet", action="store_true", help="print errors only")
    parser.add_argument("--version", action="version", version=version)
    return parser


def _lines_of(name: str) -> list[str]:
    text = sys.stdin.read() if name == "-" else Path(name).read_text("utf-8", "surrogateescape")
    return text.splitlines()


class _Console:
    def __init__(self, quiet: bool) -> None:
        self._shows_progress = sys.stderr.isatty() and not quiet

    def say(self, text: str) -> None:
        print(
            ("\r\x1b[K" if self._shows_progress else "") + f"kxscenes.cluster: {text}",
            file=sys.stderr,
            flush=True,
        )

    def progress(self, summary: Summary, record: Record) -> None:
        if record["status"] == "failed":
            self.say(f"failed: {record['input']}: {' '.join(record['messages'][-1:])}")
        if self._shows_progress:
            ended = summary.done + summary.partial + summary.failed
            print(f"\r\x1b[K{ended}/{summary.inputs} inputs", end="", file=sys.stderr, flush=True)


def main(arguments: list[str]) -> int:
    own, given = arguments, []
    if "--" in arguments:
        own, given = arguments[: arguments.index("--")], arguments[arguments.index("--") + 1 :]
    parser = _parser()
    chosen = parser.parse_args(own)
    logging.getLogger("distributed").setLevel(logging.CRITICAL)
    console = _Console(chosen.quiet)
    try:
        inputs = chosen.inputs + (_lines_of(chosen.inputs_from) if chosen.inputs_from else [])
        if not inputs:
            parser.error("INPUT is required")
        summary = run(
            inputs,
            chosen.results,
            options=given,
            lists=[suffix for suffix in chosen.lists.split(",") if suffix],
            scheduler=chosen.scheduler,
            part_size=chosen.part_size,
            retries=chosen.retries,
            failed_again=chosen.failed_again,
            patience=chosen.patience,
            program=chosen.program,
            progress=console.progress,
        )
    except (Error, OSError) as error:
        console.say(f"error: {error}")
        return 1
    except KeyboardInterrupt:
        console.say("stopped; what is done is in the results")
        return 130
    if not chosen.quiet:
        console.say(
            f"{summary.inputs} inputs: {summary.done} done, {summary.partial} partial, {summary.failed} failed"
            f" ({summary.earlier} of them before); {summary.scenes} scenes found"
        )
    return 1 if summary.failed else 3 if summary.partial else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
