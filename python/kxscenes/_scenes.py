"""Scenes, and the video that they are in."""

from __future__ import annotations

from collections.abc import Iterable
from dataclasses import dataclass
from datetime import datetime
from fractions import Fraction


@dataclass(frozen=True)
class Scene:
    """Where a scene begins."""

    index: int
    """Number of the scene, from 1."""
    frame: int
    """Frame of the file, from 0; frames that were dropped while recording count."""
    time: Fraction
    """Seconds since the first frame, exact."""
    timecode: str = ""
    """HH:MM:SS:FF since the first frame, or HH:MM:SS;FF at drop-frame rates."""
    recorded: datetime | None = None
    """Date and time of the recording, where DV frames carry both."""
    method: str = "manual"
    """What found it: "video", "timestamp", "interval", "manual", or several joined by "+"."""
    tape_timecode: str = ""
    """HH:MM:SS:FF, or HH:MM:SS;FF with drop-frame, as its DV frame has it."""
    aspect: str = ""
    """Of a DV frame: "4:3", "16:9", "16:9 letterbox" and the like."""
    audio: str = ""
    """Of a DV frame: "48000 Hz 16 bits 2 channels"."""


@dataclass(frozen=True)
class Video:
    """What lists need to know of a video. What is left out follows from the rest or is unknown."""

    path: str
    rate: Fraction
    """Frames per second; the nominal rate where it varies."""
    frame_count: int
    time_base: Fraction | None = None
    """Seconds of a unit of time: a frame's length unless given."""
    duration: Fraction | None = None
    """Seconds, to the end of the last frame: as rate and frame count have it unless given."""
    width: int = 0
    height: int = 0
    pixel_aspect: Fraction = Fraction(1)
    rotation: int = 0
    """Degrees clockwise that stand the pictures upright."""
    delay: Fraction = Fraction(0)
    """Seconds from the start of the file to its first frame."""
    audio: tuple[int, int] | None = None
    """Channels and samples per second of the first audio stream."""
    start_timecode: tuple[int, bool, int] | None = None
    """Timecode of the first frame: frames since 00:00:00:00, whether drop-frame, and frames of a second."""
    partial: str = ""
    """Why this ends before the input does; empty: it does not."""

    def __post_init__(self) -> None:
        if self.rate <= 0:
            raise ValueError(f"rate is {self.rate}, which is not above 0")
        # A frozen dataclass sets its own fields this way.
        for name in ("rate", "pixel_aspect", "delay"):
            object.__setattr__(self, name, Fraction(getattr(self, name)))
        if self.time_base is None:
            object.__setattr__(self, "time_base", 1 / self.rate)
        if self.duration is None:
            object.__setattr__(self, "duration", self.frame_count / self.rate)


class SceneList(list[Scene]):
    """Scenes, and the video that they were found in."""

    def __init__(self, scenes: Iterable[Scene], video: Video) -> None:
        super().__init__(scenes)
        self.video = video
