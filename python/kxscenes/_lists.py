"""Scene lists for editors and other programs."""

from __future__ import annotations

import os
from collections.abc import Iterable
from fractions import Fraction

from . import _native
from ._scenes import Scene, SceneList, Video


def formats() -> list[str]:
    """The names of the formats."""
    return _native.formats()


def _row(scene: Scene, base: Fraction) -> _native.SceneRow:
    recorded = scene.recorded
    return (
        scene.frame,
        round(Fraction(scene.time) / base),
        scene.method,
        scene.tape_timecode,
        recorded.date().isoformat() if recorded else "",
        recorded.time().isoformat() if recorded else "",
        scene.aspect,
        scene.audio,
    )


def _bytes(scenes: Iterable[Scene], format: str, video: Video | None) -> bytes:
    if video is None:
        if not isinstance(scenes, SceneList):
            raise TypeError("of scenes that are no SceneList the video must be given")
        video = scenes.video
    base = video.time_base
    assert base is not None and video.duration is not None
    rows = [_row(scene, base) for scene in scenes]
    return _native.list_text(format, video, rows, round(video.duration / base))


def to_text(scenes: Iterable[Scene], format: str, video: Video | None = None) -> str:
    """The list as text: `format` is one of `formats()`.

    Any scenes will do, in order; of those that are no SceneList `video` tells the rest. Raises ValueError for
    scenes that are not in order or not in the video, Error for what the format can't hold.
    """
    return _bytes(scenes, format, video).decode("utf-8", "replace")


def write(
    scenes: Iterable[Scene],
    path: str | os.PathLike[str],
    format: str | None = None,
    video: Video | None = None,
) -> None:
    """Writes the list, as `to_text` has it; the suffix tells the format unless it is given.

    The file appears when it is whole, and replaces one of that name. Raises Error when it can't be written.
    """
    name = os.fspath(path)
    _native.write_file(name, _bytes(scenes, format or _native.format_of(name), video))
