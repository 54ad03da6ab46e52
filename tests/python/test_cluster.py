"""Runs over many files: what is done, what is left, and what happens when parts of the cluster go."""

import json
import os
import select
import shutil
import signal
import subprocess
import sys
import threading

import pytest
from conftest import kxscenes_program

import kxscenes
from kxscenes import cluster
from kxscenes.cluster.__main__ import main

PROGRAM = os.environ["KXSCENES_PROGRAM"]
pytestmark = pytest.mark.filterwarnings("ignore:make_current:DeprecationWarning")


def records(results):
    return [json.loads(line) for line in results.read_text().splitlines()]


def by_name(results):
    found = {os.path.basename(record["input"]): record for record in records(results)}
    assert len(found) == len(records(results)), "an input twice"
    return found


@pytest.fixture
def tapes(tape, tmp_path):
    """Two tapes, one that ends early, and a file that is no video."""
    folder = tmp_path / "tapes"
    (folder / "more").mkdir(parents=True)
    for name in ("a.dv", "more/b{1}.dv"):
        shutil.copy(tape, folder / name)
    (folder / "short.dv").write_bytes(tape.read_bytes()[:-1000])
    (folder / "text.mp4").write_text("no video")
    return folder


@pytest.fixture
def stand_in(tmp_path):
    """The program, but for files that have something beside them. Through the pipe "gate" it tells its parent's
    process number and its own, and then it waits for its end; to "crash" it adds a line and dies."""
    script = tmp_path / "stand-in"
    script.write_text(
        "#!/bin/sh\nfor file; do :; done\n"
        '[ ! -p "$file.gate" ] || { echo $PPID $$ >"$file.gate"; exec tail -f /dev/null; }\n'
        '[ ! -e "$file.crash" ] || { echo >>"$file.crash"; kill -SEGV $$; }\n'
        f'exec {PROGRAM} "$@"\n'
    )
    script.chmod(0o755)
    return str(script)


def test_every_input_gets_a_record(tapes, tmp_path):
    results = tmp_path / "results.jsonl"
    told = []
    summary = cluster.run(
        [tapes, tapes / "*.dv", tapes / "missing.dv"],
        results,
        options=["--method", "timestamp,video"],
        lists=["csv"],
        program=PROGRAM,
        progress=lambda summary, record: told.append(record["input"]),
    )
    assert (summary.inputs, summary.done, summary.partial, summary.failed, summary.earlier) == (5, 2, 1, 2, 0)
    found = by_name(results)
    assert sorted(told) == sorted(record["input"] for record in found.values())
    good = found["b{1}.dv"]
    path = tapes / "more/b{1}.dv"
    assert good["input"] == str(path) and good["size"] == path.stat().st_size
    assert good["mtime_ns"] == path.stat().st_mtime_ns and good["options"] == ["--method", "timestamp,video"]
    assert good["seconds"] > 0 and good["messages"] == []
    assert [scene["start"]["frame"] for scene in good["scenes"]] == [0, 60, 130, 175]
    kxscenes_program("--method", "timestamp,video", "-o", tmp_path / "list.csv", path)
    assert (tapes / "more/b{1}.dv.csv").read_text() == (tmp_path / "list.csv").read_text()
    assert found["short.dv"]["status"] == "partial" and "ends at byte" in found["short.dv"]["messages"][0]
    assert found["text.mp4"]["status"] == found["missing.dv"]["status"] == "failed"
    assert found["missing.dv"]["messages"] == ["error: No such file or directory"]


def test_films_in_parts_give_the_same(film, tapes, tmp_path):
    path = tapes / "film.mkv"
    shutil.copy(film, path)
    options = ["--votes=2", "--min-scene", "30", "-o", str(tmp_path / "{name}.edl")]
    parts, whole = [tmp_path / f"{name}.jsonl" for name in ("parts", "whole")]
    cluster.run(path, whole, options=options, lists=["csv"], program=PROGRAM, part_size=0)
    of_whole = [(path.parent / "film.mkv.csv").read_bytes(), (tmp_path / "film.edl").read_bytes()]
    size = path.stat().st_size // 4 + 1
    cluster.run(tapes, parts, options=options, lists=["csv"], program=PROGRAM, part_size=size)
    assert of_whole == [(path.parent / "film.mkv.csv").read_bytes(), (tmp_path / "film.edl").read_bytes()]
    (one,), found = records(whole), by_name(parts)
    joined = found.pop("film.mkv")
    assert joined["parts"] == 4 and joined["status"] == "done"
    assert (joined["scenes"], joined["video"]) == (one["scenes"], one["video"])
    assert not any("parts" in record for record in found.values())
    # What can't be measured in parts runs as a whole.
    unknown = (tapes / "a.dv").rename(tapes / "a.unknown")
    for path, options, scenes in [(path, ["--method=interval", "--interval=9"], 12), (unknown, [], 4)]:
        half = path.stat().st_size // 2 + 1
        cluster.run(path, parts, options=options, program=PROGRAM, part_size=half)
        last = records(parts)[-1]
        assert last["input"] == str(path) and len(last["scenes"]) == scenes and "parts" not in last


def test_another_run_does_what_is_missing(tapes, tmp_path):
    results = tmp_path / "results.jsonl"

    def done_by(program=PROGRAM, **settings):
        done = []
        summary = cluster.run(
            tapes, results, program=program, progress=lambda _, record: done.append(record), **settings
        )
        assert summary.done + summary.partial + summary.failed == summary.inputs == 4
        return sorted(os.path.basename(record["input"]) for record in done)

    assert len(done_by()) == 4
    assert done_by(program="not there") == []
    whole = results.read_bytes()
    last = os.path.basename(records(results)[-1]["input"])
    results.write_bytes(whole[:-10])
    assert done_by() == [last]
    assert by_name(results).keys() == {"a.dv", "b{1}.dv", "short.dv", "text.mp4"}
    os.utime(tapes / "a.dv", ns=(0, 0))
    assert done_by() == ["a.dv"]
    assert done_by(failed_again=True) == ["text.mp4"]
    assert len(done_by(options=["--votes", "4"])) == 4
    assert done_by(program="not there") == []
    results.write_bytes(b"no record\n" + whole)
    with pytest.raises(kxscenes.Error, match="results.jsonl:1: is no record"):
        done_by()


def test_a_crash_costs_one_file(tapes, tmp_path, stand_in):
    (tapes / "a.dv.crash").touch()
    results = tmp_path / "results.jsonl"
    summary = cluster.run(sorted(tapes.glob("*.dv")), results, program=stand_in, retries=1)
    assert (summary.done, summary.partial, summary.failed) == (0, 1, 1)
    assert by_name(results)["a.dv"]["messages"] == ["error: kxscenes ended with -11: "]
    assert (tapes / "a.dv.crash").read_text() == "\n\n"


def test_what_stops_a_run(tapes, tmp_path):
    results = tmp_path / "results.jsonl"
    for settings, error in [
        ({"options": ["--method", "colour"]}, "no such method: colour"),
        ({"options": ["--format=csv"]}, "--format"),
        ({"program": "not there"}, "there is no program not there"),
        ({"scheduler": "tcp://127.0.0.1:1", "patience": 0}, "no scheduler"),
        ({"scheduler": str(tmp_path / "none.json"), "patience": 0}, "no scheduler"),
    ]:
        with pytest.raises(kxscenes.Error, match=error):
            cluster.run(tapes, results, **{"program": PROGRAM, **settings})
    assert records(results) == []
    with cluster._records.Results(results, {}), pytest.raises(kxscenes.Error, match="another run"):
        cluster.run(tapes, results)


def test_command_line(tapes, tmp_path, capsys):
    results = tmp_path / "results.jsonl"
    names = tmp_path / "names"
    names.write_text(f"{tapes}/a.dv\n{tapes}/short.dv\n")
    for arguments, code, text in [
        (
            ["-r", results, "--inputs-from", names, "--", "--votes", "4"],
            3,
            "2 inputs: 1 done, 1 partial, 0 failed",
        ),
        (["-r", results, tapes, "--", "--votes", "4"], 1, "failed: " + str(tapes / "text.mp4")),
    ]:
        assert main(["--program", PROGRAM, *map(str, arguments)]) == code
        assert text in capsys.readouterr().err
    assert len(by_name(results)) == 4
    with pytest.raises(SystemExit, match="2"):
        main(["-r", str(results)])


def test_the_package_itself_needs_no_dask():
    code = (
        "import sys, kxscenes\nassert 'distributed' not in sys.modules\nsys.modules['distributed'] = None\n"
        "try:\n    import kxscenes.cluster\nexcept ImportError as error:\n    print(error)\n"
    )
    assert (
        "install python3-distributed"
        in subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True).stdout
    )


def close_gate(file):
    path = file.with_name(file.name + ".gate")
    os.mkfifo(path)
    return path


def processes_at(gate):
    """The worker and the program that wait there; nobody waits there again."""
    worker, program = map(int, gate.read_text().split())
    gate.unlink()
    return worker, os.pidfd_open(program)


def wait_for_end(process):
    """So that nothing is left of what a killed worker did."""
    assert select.select([process], [], [])[0] == [process]
    os.close(process)


@pytest.mark.parametrize("end", [signal.SIGINT, signal.SIGKILL])
def test_a_run_that_was_ended_leaves_whole_lines(end, tapes, tmp_path, stand_in):
    gate = close_gate(tapes / "short.dv")
    results = tmp_path / "results.jsonl"
    command = [sys.executable, "-m", "kxscenes.cluster", "--program", stand_in, "-r", results, tapes]
    with subprocess.Popen(command, stderr=subprocess.DEVNULL) as client:
        worker, program = processes_at(gate)
        assert worker == client.pid
        client.send_signal(end)
    assert client.returncode == (130 if end == signal.SIGINT else -signal.SIGKILL)
    wait_for_end(program)
    earlier = len(records(results))
    summary = cluster.run(tapes, results, program=PROGRAM)
    assert len(by_name(results)) == 4 and summary.earlier == earlier


class Dask:
    """A scheduler and workers, each a process."""

    def __init__(self, folder):
        self.file = folder / "scheduler.json"
        self._processes = []

    def start(self, kind, *arguments):
        place = ["--scheduler-file", self.file, "--host", "127.0.0.1", "--no-dashboard", *arguments]
        module = f"distributed.cli.dask_{kind}"
        process = subprocess.Popen([sys.executable, "-m", module, *map(str, place)], stderr=subprocess.DEVNULL)
        self._processes.append(process)
        return process

    def start_scheduler(self):
        return self.start("scheduler", "--port", 0)

    def start_worker(self):
        return self.start("worker", "--nthreads", 1, "--no-nanny")

    def stop(self):
        for process in self._processes:
            process.kill()
            process.wait()


@pytest.fixture
def dask(tmp_path):
    processes = Dask(tmp_path)
    yield processes
    processes.stop()


def test_workers_and_the_scheduler_may_go(tape, tmp_path, dask, stand_in):
    folder = tmp_path / "tapes"
    folder.mkdir()
    for number in range(8):
        (folder / f"{number}.dv").symlink_to(tape)
    gates = [close_gate(folder / f"{number}.dv") for number in (2, 5)]
    scheduler = dask.start_scheduler()
    workers = {worker.pid: worker for worker in (dask.start_worker(), dask.start_worker())}
    results = tmp_path / "results.jsonl"
    summaries = []
    run = threading.Thread(
        target=lambda: summaries.append(
            cluster.run(folder, results, program=stand_in, scheduler=str(dask.file))
        )
    )
    run.start()
    (first, its_program), (second, other_program) = map(processes_at, gates)
    assert {first, second} == workers.keys()
    workers[first].kill()
    wait_for_end(its_program)
    dask.file.unlink()
    scheduler.kill()
    dask.start_scheduler()
    dask.start_worker()
    run.join()
    assert summaries[0].done == len(by_name(results)) == 8
    workers[second].kill()
    wait_for_end(other_program)
