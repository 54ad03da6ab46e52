"""Frames that are pushed give the scenes and figures of the same frames in a file."""

import subprocess
import threading
from dataclasses import replace
from datetime import datetime
from fractions import Fraction

import numpy as np
import pytest

import kxscenes

WIDTH, HEIGHT = 320, 240


@pytest.fixture(scope="module")
def pictures(film):
    """The film's decoded luma, as kxscenes sees it."""
    raw = ["-map", "0:v", "-f", "rawvideo", "-pix_fmt", "yuv420p", "-"]
    planes = subprocess.run(["ffmpeg", "-v", "error", "-i", film, *raw], check=True, capture_output=True)
    frames = np.frombuffer(planes.stdout, np.uint8).reshape(-1, HEIGHT * 3 // 2, WIDTH)
    return frames[:, :HEIGHT]


def wide_rows(picture):
    rows = np.full((HEIGHT, WIDTH + 37), 255, np.uint8)
    rows[:, :WIDTH] = picture
    return rows[:, :WIDTH]


def bottom_up(picture):
    return np.ascontiguousarray(picture[::-1])[::-1]


def every_second_byte(picture):
    return np.repeat(picture, 2, axis=1)[:, ::2]


@pytest.mark.parametrize("view", [np.asarray, wide_rows, bottom_up, every_second_byte])
def test_luma_gives_what_the_file_gives(view, film, pictures):
    expected = kxscenes.figures(film)
    detector = kxscenes.Detector(rate=29.97, figures=True)
    scenes = [scene for picture in pictures for scene in detector.push(view(picture))]
    detector.end()
    figures = detector.figures()
    for field in ("frame", "difference", "level", "filled", "dark", "cut"):
        assert np.array_equal(figures[field], expected[field]), field
    assert scenes == list(kxscenes.detect(film))
    assert kxscenes.decide(figures, cut_threshold=60) == kxscenes.decide(expected, cut_threshold=60)


def test_deep_and_coloured_pictures(pictures):
    def frames_of(detector, made):
        return [scene.frame for picture in pictures for scene in detector.push(made(picture))]

    assert frames_of(kxscenes.Detector(rate=30, bits=10), lambda p: p.astype(np.uint16) << 2) == [0, 25, 70]
    assert frames_of(kxscenes.Detector(rate=30), lambda p: np.stack([p] * 3, axis=2)) == [0, 25, 70]
    rgba = kxscenes.Detector(rate=30)
    assert frames_of(rgba, lambda p: np.stack([p] * 4, axis=2)[..., :3]) == [0, 25, 70]


def test_dv_frames(tape):
    frames = np.frombuffer(tape.read_bytes(), np.uint8).reshape(-1, 144000)
    for method in ("video", "timestamp"):
        detector = kxscenes.Detector(rate=25, method=method)
        scenes = [scene for frame in frames for scene in detector.push_dv(frame)]
        # Of the tape pushed frames tell the recording time alone.
        of_file = [replace(each, tape_timecode="", aspect="", audio="") for each in kxscenes.detect(tape, method)]
        assert scenes == of_file
    assert scenes[-1].recorded == datetime(2004, 7, 18, 9, 15, 20)


def test_marks_times_and_restarts(pictures):
    detector = kxscenes.Detector(rate=Fraction(25), method="manual")
    assert [s.frame for s in detector.push(pictures[0], time=Fraction(7, 2))] == [0]
    detector.mark()
    (scene,) = detector.push(pictures[1], time=4.48)
    assert (scene.index, scene.frame, scene.time, scene.timecode) == (2, 1, Fraction(4.48), "00:00:04:12")
    with pytest.raises(ValueError):
        detector.push(pictures[2][:100])
    assert detector.frame_count == 2
    detector.change(method="interval", interval=2)
    assert [s.frame for s in detector.push(pictures[2])] == [2]
    with pytest.raises(ValueError):
        detector.change(method="colour")
    detector.end()
    with pytest.raises(kxscenes.Error):
        detector.push(pictures[3])
    detector.restart()
    assert detector.push(pictures[2][:100])[0].index == 1


def test_wrong_frames_and_settings(pictures):
    for wrong in ({"rate": 0}, {"rate": 25, "method": "x"}, {"rate": 25, "votes": 5}, {"rate": 25, "interval": 3}):
        with pytest.raises(ValueError):
            kxscenes.Detector(**wrong)
    detector = kxscenes.Detector(rate=25)
    for frame in (pictures[0].astype(float), pictures[0][0], np.zeros((8, 8, 4), np.uint8), np.zeros((8, 8), np.uint16)):
        with pytest.raises(ValueError):
            detector.push(frame)
    with pytest.raises(RuntimeError):
        detector.figures()
    assert detector.frame_count == 0


def test_detectors_work_side_by_side(pictures):
    found = {}

    def work(number):
        detector = kxscenes.Detector(rate=30)
        found[number] = [scene.frame for picture in pictures for scene in detector.push(picture)]

    threads = [threading.Thread(target=work, args=(number,)) for number in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == {number: [0, 25, 70] for number in range(8)}
