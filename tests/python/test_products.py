"""Figures, deciding again, and lists: files are those of the program, byte for byte."""

import pickle
from fractions import Fraction

import numpy as np
import pytest
from conftest import kxscenes_program

import kxscenes
from kxscenes import Scene, Video


def made(path, *arguments):
    """The bytes of a file that the program writes."""
    code, _, err = kxscenes_program(*arguments)
    assert code == 0, err
    return path.read_bytes()


def test_figures_are_the_table_of_stats(film, tmp_path):
    stats = tmp_path / "stats.csv"
    expected = made(stats, "--method", "video", "--cut-threshold", "20", "--stats", stats, film)
    figures = kxscenes.figures(film, cut_threshold=20)
    figures.save(tmp_path / "saved.csv")
    assert (tmp_path / "saved.csv").read_bytes() == expected
    assert figures.dtype.names == ("frame", "difference", "level", "filled", "dark", "cut", "sample", "time", "byte")
    assert list(figures["frame"]) == list(range(100))
    assert list(figures["frame"][figures["cut"]]) == [0, 25, 70]
    again = kxscenes.read_figures(stats)
    copy = pickle.loads(pickle.dumps(again))
    for other in (again, copy):
        assert np.array_equal(other, figures)
        assert (other.input, other.rate, other.time_base) == (figures.input, figures.rate, figures.time_base)
        assert other.parameters == figures.parameters


def test_deciding_again_is_from_stats(film, tmp_path):
    stats = tmp_path / "stats.csv"
    figures = kxscenes.figures(film)
    figures.save(stats)
    for options in ({}, {"cut_threshold": 60}, {"votes": 1, "cut_threshold": 0}, {"min_scene": 40}):
        words = [word for name, value in options.items() for word in (f"--{name.replace('_', '-')}", str(value))]
        _, out, _ = kxscenes_program("--from-stats", stats, *words)
        scenes = kxscenes.decide(figures, **options)
        assert [str(s.frame) for s in scenes] == [line.split(",")[1] for line in out.splitlines()[1:]]
    assert scenes.video.frame_count == 100
    with pytest.raises(kxscenes.Error, match="another clamp"):
        kxscenes.decide(figures, clamp=9)
    with pytest.raises(kxscenes.Error, match="row 0 of the figures: sample"):
        kxscenes.decide(figures[1:])
    wrong = figures.copy()
    wrong["difference"][50] = 256
    with pytest.raises(kxscenes.Error, match="row 50 of the figures: difference"):
        kxscenes.decide(wrong)
    with pytest.raises(TypeError):
        kxscenes.decide(np.asarray(figures))


@pytest.mark.parametrize("format", kxscenes.formats())
def test_lists_are_those_of_the_program(format, film, tape, tmp_path):
    for path in (film, tape):
        listed = tmp_path / f"list.{format}"
        expected = made(listed, "--method", "video", "--format", format, "-o", listed, path)
        scenes = kxscenes.detect(path)
        kxscenes.write(scenes, tmp_path / "written", format)
        assert (tmp_path / "written").read_bytes() == expected
        assert kxscenes.to_text(list(scenes), format, scenes.video).encode() == expected


def test_lists_of_any_scenes(tmp_path):
    video = Video(path="film.mp4", rate=Fraction(24), frame_count=240)
    scenes = [Scene(1, 0, Fraction(0)), Scene(2, 100, Fraction(100, 24))]
    kxscenes.write(scenes, tmp_path / "cuts.CSV", video=video)
    rows = (tmp_path / "cuts.CSV").read_text().splitlines()
    assert [row.split(",")[:2] for row in rows[1:]] == [["1", "1"], ["2", "101"]]
    assert rows[2].startswith("2,101,00:00:04.167,4.167,240,00:00:10.000,10.000,140")
    with pytest.raises(TypeError):
        kxscenes.to_text(scenes, "csv")
    for wrong in (scenes[::-1], [Scene(1, 240, Fraction(10))], [scenes[0], scenes[0]]):
        with pytest.raises(ValueError, match="does not lie between"):
            kxscenes.to_text(wrong, "csv", video)
    with pytest.raises(ValueError, match="avi"):
        kxscenes.to_text(scenes, "avi", video)
    with pytest.raises(ValueError):
        kxscenes.write(scenes, tmp_path / "cuts.what", video=video)
    with pytest.raises(kxscenes.Error, match="cuts.CSV"):
        kxscenes.write(scenes, tmp_path / "cuts.CSV" / "no-folder.csv", video=video)
