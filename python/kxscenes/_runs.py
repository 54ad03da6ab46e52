"""Scenes of files."""

from __future__ import annotations

import os
import warnings
from collections.abc import Callable, Iterable, Iterator
from datetime import timedelta
from fractions import Fraction
from typing import Any, Union

from . import _native
from ._scenes import Scene, SceneList, Video

Point = Union[int, float, Fraction, timedelta, str]
Area = Union[str, tuple[int, int, int, int]]
Progress = Callable[[int, Union[float, None]], object]
METHODS = ("timestamp", "video", "interval", "manual")
SHORT_SCENES = ("merge", "merge-last")
CUTS = ("scenes", "recordings", "record-flag", "record-stop", "timecode", "aspect", "audio", "lines")


class InputWarning(UserWarning):
    """Something in an input is not as it should be: damage, frames left out, an end too early."""


def point_text(point: Point | None) -> str | None:
    """A point of a file as the program reads it."""
    if point is None or isinstance(point, str):
        return point
    if isinstance(point, bool) or not isinstance(point, (int, float, Fraction, timedelta)):
        raise TypeError(f"{point!r} is no frame number, seconds or text")
    if isinstance(point, int):
        return str(point)
    seconds = point.total_seconds() if isinstance(point, timedelta) else point
    return f"{float(seconds):.9f}s"


def words_of(choice: str | Iterable[str], known: tuple[str, ...], kind: str) -> list[str]:
    words = choice.replace("+", ",").split(",") if isinstance(choice, str) else list(choice)
    for word in words:
        if word not in known:
            raise ValueError(f"{word!r} is not a {kind}: {', '.join(known)}")
    if not words or len(set(words)) != len(words):
        raise ValueError(f"each {kind} is named once, and one at least")
    return words


def area_text(area: Area | None) -> str | None:
    """A part of the picture as the program reads it."""
    return area if area is None or isinstance(area, str) else ",".join(str(number) for number in area)


def given(**parameters: int | str | None) -> dict[str, int | str]:
    """Those of the parameters that are not left to their defaults."""
    return {name: value for name, value in parameters.items() if value is not None}


def comparison(
    cut_threshold: int | None,
    dark_level: int | None,
    clamp: int | None,
    votes: int | None,
    longest_scene: int | None,
    area: Area | None,
) -> dict[str, int | str]:
    """The parameters of the picture comparison that are given, by their names."""
    return given(
        cut_threshold=cut_threshold,
        dark_level=dark_level,
        clamp=clamp,
        votes=votes,
        longest_scene=longest_scene,
        area=area_text(area),
    )


class SceneIterator(Iterator[Scene]):
    """Scenes as they are found, while a thread of its own reads the file. For one thread at a time.

    Closing it, or leaving its `with` block, ends the reading.
    """

    def __init__(self, run: _native.Run, progress: Progress | None) -> None:
        self._run: _native.Run | None = run
        self._progress = progress
        self._video: Video | None = None

    @property
    def video(self) -> Video:
        """The video that was read; once the last scene is there."""
        if self._video is None:
            raise RuntimeError("the end of the video has not been reached")
        return self._video

    def __next__(self) -> Scene:
        if self._run is None:
            raise StopIteration
        try:
            scene = self._run.next(self._progress)
        except BaseException:
            self.close()
            raise
        self._warn()
        if scene is not None:
            return Scene(*scene)
        self._end(self._run)
        self.close()
        raise StopIteration

    def _end(self, run: _native.Run) -> None:
        self._video = Video(**run.video())

    def _warn(self) -> None:
        if self._run is not None:
            for text in self._run.take_warnings():
                warnings.warn(text, InputWarning, stacklevel=3)

    def close(self) -> None:
        """Ends the reading."""
        try:
            self._warn()
        finally:
            self._run = None

    def __enter__(self) -> SceneIterator:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


def length_of(min_scene: Point | None, short_scenes: str) -> tuple[str | None, str]:
    """The least length of a scene, and what becomes of a shorter one, as the program reads them."""
    if short_scenes not in SHORT_SCENES:
        raise ValueError(f"{short_scenes!r} is nothing to do with short scenes: {', '.join(SHORT_SCENES)}")
    if min_scene is None and short_scenes != SHORT_SCENES[0]:
        raise ValueError("short_scenes needs min_scene")
    text = point_text(min_scene)
    if text is not None and text.startswith("-"):
        raise ValueError("min_scene is below 0")
    return text, short_scenes


def new_run(path: str | os.PathLike[str], decode: str, **settings: Any) -> _native.Run:
    if decode not in ("exact", "fast"):
        raise ValueError(f'decode is "exact" or "fast", not {decode!r}')
    for name in ("start", "end", "duration"):
        settings[name] = point_text(settings.get(name))
    settings["min_scene"], settings["short_scenes"] = length_of(
        settings.get("min_scene"), settings.get("short_scenes", "merge")
    )
    if settings["end"] is not None and settings["duration"] is not None:
        raise ValueError("end and duration exclude each other")
    return _native.Run(path=os.fspath(path), fast=decode == "fast", **settings)


def scenes(
    path: str | os.PathLike[str],
    method: str | Iterable[str] = "video",
    *,
    cut_at: str | Iterable[str] = "scenes",
    interval: int = 0,
    marks: Iterable[int] = (),
    start: Point | None = None,
    end: Point | None = None,
    duration: Point | None = None,
    min_scene: Point | None = None,
    short_scenes: str = "merge",
    cut_threshold: int | None = None,
    dark_level: int | None = None,
    clamp: int | None = None,
    votes: int | None = None,
    longest_scene: int | None = None,
    area: Area | None = None,
    flashes: str = "keep",
    fades: str = "off",
    dissolves: bool = False,
    decode: str = "exact",
    threads: int = 0,
    progress: Progress | None = None,
) -> SceneIterator:
    """Yields the scenes of a file, each as soon as it is settled.

    method: "video" (picture changes), "timestamp" (jumps of the recording time that DV frames carry),
        "interval" (every `interval`-th frame), "manual" (`marks` only); several as a list, or joined by ",".
    cut_at: where scenes begin: "scenes" (where the method finds them), and where a DV tape tells something new:
        "recordings", "record-flag", "record-stop", "timecode", "aspect", "audio", "lines". Without "scenes" no
        method is used.
    marks: frames of the file, from 0, at which a scene begins whatever the method finds.
    start, end, duration: the part of the file to look at: a frame number (int), seconds (float, Fraction,
        timedelta), or text as the program takes it ("2.5s", "00:01:00.000", "00:01:00:00").
    min_scene: a length like `duration`; scenes that are shorter become part of the one before.
    short_scenes: "merge-last" makes only the last scene a part of the one before if it is shorter. (What the
        program's "drop" leaves is told by ends, which a `Scene` has not.)
    cut_threshold, dark_level, clamp, votes, longest_scene: of "video", as `default_parameters()` has them
        unless given.
    area: the part of the picture that "video" compares: left, top, width and height in pixels, or text as the
        program takes it ("0,0,100%,85%").
    flashes: "drop" makes no scenes of cuts at flashes.
    fades: "start", "middle" or "end": where one scene begins in each fade through black or white.
    dissolves: finds these, too. Scenes of such kinds have the method "fade" and "dissolve".
    decode: "exact", or "fast" with the decoder's shortcuts.
    threads: that decoding may take; 0: as many as usable cores.
    progress: called now and then with the frames that have passed and the fraction of the file (None where
        that is unknown), on the thread that takes the scenes; what it raises ends the run.

    Raises Error, with the program's text, when the file can't be read; ValueError for settings that make no
    sense. Warns with InputWarning of damage. Ctrl-C ends it. The interpreter's lock is free while it waits.
    """
    cuts = words_of(cut_at, CUTS, "place to cut at")
    words = words_of(method, METHODS, "method") if "scenes" in cuts else []
    if (interval > 0) != ("interval" in words):
        raise ValueError('interval is above 0 with the method "interval", and only with it')
    frames = sorted(set(marks))
    if frames and not words:
        raise ValueError('marks need "scenes" in cut_at')
    if frames and frames[0] < 1:
        raise ValueError("marks are frames from 1 on: a scene begins at frame 0 anyway")
    if flashes not in ("keep", "drop") or fades not in ("off", "start", "middle", "end"):
        raise ValueError('flashes are "keep" or "drop", fades "off", "start", "middle" or "end"')
    if (flashes == "drop" or fades != "off" or dissolves) and "video" not in words:
        raise ValueError('flashes, fades and dissolves go with the method "video"')
    parameters = comparison(cut_threshold, dark_level, clamp, votes, longest_scene, area)
    run = new_run(
        path,
        methods=words,
        cuts=[word for word in cuts if word != "scenes"],
        interval=interval,
        marks=frames,
        start=start,
        end=end,
        duration=duration,
        min_scene=min_scene,
        short_scenes=short_scenes,
        parameters=parameters,
        drop_flashes=flashes == "drop",
        fades=fades,
        dissolves=dissolves,
        decode=decode,
        threads=threads,
    )
    return SceneIterator(run, progress)


def detect(path: str | os.PathLike[str], method: str | Iterable[str] = "video", **settings: Any) -> SceneList:
    """The scenes of a file, all at once; its `video` tells of the file.

    Settings, errors and warnings are those of `scenes`.
    """
    found = scenes(path, method, **settings)
    every = list(found)
    return SceneList(every, found.video)
