"""What the picture comparison measures, and scenes decided from it without the pictures."""

from __future__ import annotations

import os
from fractions import Fraction
from typing import Any

import numpy as np
from numpy.typing import NDArray

from . import _native
from ._runs import Area, Point, Progress, SceneIterator, comparison, given, length_of, new_run
from ._scenes import Scene, SceneList, Video


class Figures(np.ndarray[Any, Any]):
    """A row a frame, with the fields of the program's --stats table.

    frame (from 0), difference and level (0 to 255), filled (what the difference was taken for; -1: as it is),
    dark and cut (bool), sample (row number), time (in units of `time_base`), byte (offset in the file; -1:
    unknown). Parts of it keep the attributes, but scenes can be decided from whole runs only.
    """

    input: str
    """The file that was measured."""
    time_base: Fraction
    rate: Fraction
    """Frames per second."""
    parameters: dict[str, int]
    """That `dark` and `cut` were judged by."""

    _ATTRIBUTES = ("input", "time_base", "rate", "parameters")

    def __new__(
        cls, rows: NDArray[Any], *, input: str, time_base: Fraction, rate: Fraction, parameters: dict[str, int]
    ) -> Figures:
        figures = np.asarray(rows).view(cls)
        figures.input, figures.time_base, figures.rate = input, time_base, rate
        figures.parameters = parameters
        return figures

    def __array_finalize__(self, source: Any) -> None:
        for name in self._ATTRIBUTES:
            if hasattr(source, name):
                setattr(self, name, getattr(source, name))

    def __reduce__(self) -> Any:
        reduced: Any = super().__reduce__()
        rebuild, arguments, state = reduced
        return rebuild, arguments, (state, dict(self.__dict__))

    def __setstate__(self, state: Any) -> None:
        super().__setstate__(state[0])
        self.__dict__.update(state[1])

    def save(self, path: str | os.PathLike[str]) -> None:
        """Writes the table that the program's --stats writes. Raises Error when it can't."""
        _native.save_figures(self, os.fspath(path))


def read_figures(path: str | os.PathLike[str]) -> Figures:
    """The table of an earlier run. Raises Error, with the line, where it is none."""
    return Figures(**_native.read_figures(os.fspath(path)))


class _FigureIterator(SceneIterator):
    figures: NDArray[Any]
    parameters: dict[str, int]

    def _end(self, run: _native.Run) -> None:
        super()._end(run)
        self.figures = run.figures()
        self.parameters = run.parameters()


def figures(
    path: str | os.PathLike[str],
    *,
    start: Point | None = None,
    end: Point | None = None,
    duration: Point | None = None,
    cut_threshold: int | None = None,
    dark_level: int | None = None,
    clamp: int | None = None,
    votes: int | None = None,
    longest_scene: int | None = None,
    area: Area | None = None,
    decode: str = "exact",
    threads: int = 0,
    progress: Progress | None = None,
) -> Figures:
    """What the picture comparison measures in a file; arguments and errors as `scenes` has them."""
    parameters = comparison(cut_threshold, dark_level, clamp, votes, longest_scene, area)
    run = new_run(
        path,
        methods=["video"],
        start=start,
        end=end,
        duration=duration,
        parameters=parameters,
        figures=True,
        decode=decode,
        threads=threads,
    )
    found = _FigureIterator(run, progress)
    for _ in found:
        pass
    video = found.video
    assert video.time_base is not None
    return Figures(
        found.figures,
        input=video.path,
        time_base=video.time_base,
        rate=video.rate,
        parameters=found.parameters,
    )


def decide(
    figures: Figures,
    *,
    min_scene: Point | None = None,
    short_scenes: str = "merge",
    cut_threshold: int | None = None,
    dark_level: int | None = None,
    clamp: int | None = None,
    votes: int | None = None,
    longest_scene: int | None = None,
) -> SceneList:
    """The scenes that the method "video" finds in these figures; what is not given is as they were judged.

    An area and a clamp act inside the difference, and stay those that they were measured with: Error for another
    clamp, and for rows that are not those of one whole run.
    """
    if not isinstance(figures, Figures):
        raise TypeError("figures are what kxscenes.figures or kxscenes.read_figures gives")
    parameters = given(
        cut_threshold=cut_threshold, dark_level=dark_level, clamp=clamp, votes=votes, longest_scene=longest_scene
    )
    found, video = _native.decide(figures, parameters, *length_of(min_scene, short_scenes))
    return SceneList([Scene(*scene) for scene in found], Video(**video))
