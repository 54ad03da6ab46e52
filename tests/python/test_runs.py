"""Runs of files: the package gives what the program prints."""

import contextlib
import os
import pickle
import signal
import subprocess
import sys
import threading
from datetime import datetime, timedelta
from fractions import Fraction

import pytest
from conftest import ROOT, kxscenes_program

import kxscenes


def printed(*arguments):
    code, out, err = kxscenes_program(*arguments)
    assert code == 0, err
    return [line.split(",") for line in out.splitlines()[1:]]


def as_printed(scenes):
    return [[str(s.index), str(s.frame), s.timecode, f"{float(s.time):.3f}"] for s in scenes]


@pytest.mark.parametrize(
    "options, settings",
    [
        ([], {}),
        (["--method", "timestamp"], {"method": "timestamp"}),
        (["--method", "interval", "--interval", "40"], {"method": "interval", "interval": 40}),
        (["--method", "manual", "--mark", "7,90"], {"method": "manual", "marks": [90, 7]}),
        (["--start", "20", "--end", "3.2s"], {"start": 20, "end": 3.2}),
        (["--start", "1.5s", "--duration", "50"], {"start": timedelta(seconds=1.5), "duration": 50}),
        (["--end", "00:00:02:10"], {"end": "00:00:02:10"}),
        (["--cut-threshold", "40", "--votes", "4"], {"cut_threshold": 40, "votes": 4}),
        (["--min-scene", "50"], {"min_scene": 50, "threads": 1}),
        (["--min-scene", "2s", "--short-scenes", "merge-last"], {"min_scene": "2s", "short_scenes": "merge-last"}),
        (["--area", "0,0,100%,10%"], {"area": (0, 0, "100%", "10%")}),
        (["--decode", "fast"], {"decode": "fast"}),
    ],
)
def test_scenes_are_those_of_the_program(options, settings, tape, film):
    for path in (tape, film):
        if settings.get("method") == "timestamp" and path == film:
            continue
        options_of_file = ["--method", "video", *options] if "--method" not in options else options
        assert as_printed(kxscenes.detect(path, **settings)) == printed(*options_of_file, path)


def test_flashes_fades_and_dissolves_are_those_of_the_program(tmp_path):
    film = tmp_path / "film.mkv"
    picture = "mandelbrot=s=160x120:r=25:maxiter=50,trim=end_frame=1,loop=-1:1,setpts=N/25/TB"
    graph = (
        f"{picture},trim=end_frame=100,drawbox=t=fill:c=white:enable='eq(n,40)',fade=out:75:20[a];"
        "testsrc=s=160x120:r=25,trim=end_frame=80[b];[a][b]concat"
    )
    run = [ROOT / "tests/make-material.sh", "-f", "lavfi", "-i", graph, "-c:v", "ffv1", film]
    subprocess.run(run, check=True)
    plain = [s.frame for s in kxscenes.detect(film)]
    for options, settings in (
        (["--flashes", "drop"], {"flashes": "drop"}),
        (["--fades", "start"], {"fades": "start"}),
        (["--fades", "end", "--dissolves"], {"fades": "end", "dissolves": True}),
    ):
        scenes = kxscenes.detect(film, **settings)
        assert as_printed(scenes) == [row[:4] for row in printed("--method", "video", *options, film)]
        assert [s.frame for s in scenes] != plain


def test_several_methods_and_what_the_tape_says(tape):
    scenes = kxscenes.detect(str(tape), ["video", "timestamp"])
    assert [s.frame for s in scenes] == [0, 60, 130, 175]
    assert scenes[0].method == scenes[2].method == "video+timestamp"
    assert scenes[1].method == "video"
    assert scenes[2].recorded == datetime(2004, 7, 18, 9, 15, 20)
    assert scenes[1].time == Fraction(60, 25)
    both = kxscenes.detect(tape, cut_at=["scenes", "recordings"])
    assert [s.method for s in both] == ["video+recording", "video", "video+recording", "video"]
    assert [s.frame for s in kxscenes.detect(tape, cut_at="recordings")] == [0, 130]
    video = scenes.video
    assert (video.frame_count, video.rate, video.duration) == (230, 25, Fraction(230, 25))
    assert (video.width, video.height) == (720, 576)
    again = pickle.loads(pickle.dumps(scenes))
    assert again == scenes and again.video == video


def test_errors_have_the_programs_texts(tmp_path, tape):
    missing = tmp_path / "none.mp4"
    text = tmp_path / "text.mp4"
    text.write_text("no video")
    for path, method in [(missing, "video"), (text, "video"), (tape, "video")]:
        start = {"start": "5000"} if path == tape else {}
        with pytest.raises(kxscenes.Error) as caught:
            kxscenes.detect(path, method, **start)
        code, _, err = kxscenes_program("--method", method, *(["--start", "5000"] if start else []), path)
        assert code == 1
        assert err.splitlines()[-1] == f"kxscenes: error: {caught.value}"
    for wrong in (
        {"method": "colour"},
        {"method": "interval"},
        {"interval": 5},
        {"marks": [0]},
        {"end": 5, "duration": 5},
        {"cut_threshold": 256},
        {"min_scene": -1},
    ):
        with pytest.raises(ValueError):
            kxscenes.scenes(tape, **wrong)
    with pytest.raises(kxscenes.Error, match="HH:MM:SS"):
        kxscenes.scenes(tape, start="later")


def test_damage_is_warned_of(tape, tmp_path):
    damaged = tmp_path / "damaged.dv"
    damaged.write_bytes(tape.read_bytes()[:-1000])
    with pytest.warns(kxscenes.InputWarning) as told:
        found = kxscenes.detect(damaged)
    _, out, err = kxscenes_program("--method", "video", damaged)
    assert [str(each.message) for each in told] == [
        line.split("warning: ", 1)[1] for line in err.splitlines() if "warning: " in line
    ]
    assert as_printed(found) == [line.split(",") for line in out.splitlines()[1:]]
    assert found.video.partial


@pytest.fixture
def stalled(tape, tmp_path):
    """A pipe that has delivered 100 frames, and stays open."""
    path = tmp_path / "pipe.dv"
    os.mkfifo(path)
    done = threading.Event()

    def write():
        with contextlib.suppress(BrokenPipeError), open(path, "wb") as pipe:
            pipe.write(tape.read_bytes()[: 100 * 144000])
            pipe.flush()
            done.wait()

    writer = threading.Thread(target=write)
    writer.start()
    yield path
    done.set()
    writer.join()


def test_scenes_come_while_the_file_is_read_and_the_lock_is_free(stalled):
    # Without the lock set free, the writing thread could not go on.
    with kxscenes.scenes(stalled) as found:
        assert next(found).frame == 0
        assert next(found).frame == 60
        with pytest.raises(RuntimeError):
            found.video
    assert list(found) == []


def test_progress_is_told_and_may_end_the_run(tape):
    told = []
    kxscenes.detect(tape, progress=lambda frames, fraction: told.append((frames, fraction)))
    assert told[-1] == (230, 1) and told == sorted(told)

    def refuse(frames, fraction):
        raise KeyError("enough")

    with pytest.raises(KeyError, match="enough"):
        kxscenes.detect(tape, progress=refuse)


def test_ctrl_c_ends_a_run(stalled):
    code = (
        "import kxscenes, sys\n"
        "for scene in kxscenes.scenes(sys.argv[1]):\n"
        "    print(scene.frame, flush=True)\n"
    )
    with subprocess.Popen([sys.executable, "-c", code, stalled], stdout=subprocess.PIPE, stderr=subprocess.PIPE) as child:
        assert child.stdout.readline() == b"0\n"
        assert child.stdout.readline() == b"60\n"
        child.send_signal(signal.SIGINT)
        assert child.stderr.read().rstrip().endswith(b"KeyboardInterrupt")


def test_runs_go_on_in_threads(tape, film):
    results = {}

    def work(number):
        results[number] = [s.frame for s in kxscenes.detect(tape if number % 2 else film)]

    threads = [threading.Thread(target=work, args=(n,)) for n in range(6)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert [results[n] for n in range(6)] == [[0, 25, 70], [0, 60, 130, 175]] * 3
