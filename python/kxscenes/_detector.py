"""Scenes of frames that a program has already."""

from __future__ import annotations

from collections import deque
from datetime import timedelta
from fractions import Fraction
from typing import Any, Union

import numpy as np
from numpy.typing import NDArray

from . import _native
from ._figures import Figures
from ._runs import METHODS, given
from ._scenes import Scene

Time = Union[int, float, Fraction, timedelta]
LOOK_BACK = 3
LARGEST_DENOMINATOR = 1001


def exact_rate(rate: int | float | Fraction) -> Fraction:
    """29.97 means 30000/1001, and so on; whole rates and fractions what they say."""
    if not isinstance(rate, float):
        return Fraction(rate)
    whole = round(rate)
    film = Fraction(whole * 1000, 1001)
    return film if whole != rate and abs(film - rate) < 0.005 else Fraction(rate).limit_denominator(LARGEST_DENOMINATOR)


class Detector:
    """Finds scenes in the frames that are pushed, one after another; of the frames nothing is kept.

    rate: frames per second. method, interval and the parameters are those of `scenes`, an area as text in per cent. bits: how many count in
    frames of 16-bit samples (10 for 10-bit video in the lower part of each). figures: keep them for `figures()`.

    Calls on one detector take turns; several share nothing and work side by side, since the interpreter's lock is
    free while a frame is looked at.
    """

    def __init__(
        self,
        *,
        rate: int | float | Fraction,
        method: str = "video",
        interval: int = 0,
        bits: int = 0,
        figures: bool = False,
        **parameters: int | str | None,
    ) -> None:
        self.rate = exact_rate(rate)
        self._bits = bits
        self._method = method
        self._interval = interval
        self._keeps_figures = figures
        self._parameters = given(**parameters)
        self._recent: deque[tuple[int, Time | None]] = deque(maxlen=LOOK_BACK)
        self._found = 0
        self._native = _native.Detector(self._number(), interval, self.rate, figures, self._parameters)

    def _number(self) -> int:
        if self._method not in METHODS:
            raise ValueError(f"{self._method!r} is not a method: {', '.join(METHODS)}")
        if (self._interval > 0) != (self._method == "interval"):
            raise ValueError('interval is above 0 with the method "interval", and only with it')
        return METHODS.index(self._method)

    def push(self, frame: NDArray[Any], time: Time | None = None) -> list[Scene]:
        """Looks at the next frame; gives the scenes that it settles, of "video" up to two frames later.

        frame: height x width luma (uint8 or uint16), or height x width x 3 (uint8; the order of the colours makes
            no difference). Rows may have any distance, also a negative one; pixels with gaps between them cost a
            copy. Any rows and columns that fill no block of 8 x 8 pixels are left out. The size stays
            the same until `restart`.
        time: in seconds, for the scene that begins here; frame number by rate unless given.
        """
        return self._after(self._native.push(np.asarray(frame), self._bits), time)

    def push_dv(self, frame: Any, time: Time | None = None) -> list[Scene]:
        """The same for a whole DV frame, as bytes or anything alike; it is not decoded."""
        return self._after(self._native.push_dv(frame), time)

    def _after(self, found: list[tuple[Any, ...]], time: Time | None) -> list[Scene]:
        self._recent.append((self._native.frame_count() - 1, time))
        return [self._scene(*each) for each in found] if found else []

    def _scene(self, frame: int, recorded: Any, method: int) -> Scene:
        self._found += 1
        given_time = dict(self._recent).get(frame)
        if isinstance(given_time, timedelta):
            given_time = given_time.total_seconds()
        time = Fraction(frame) / self.rate if given_time is None else Fraction(given_time)
        timecode = _native.timecode(max(round(time * self.rate), 0), self.rate)
        return Scene(self._found, frame, time, timecode, recorded, METHODS[method])

    def mark(self) -> None:
        """The next frame becomes a scene. Under "video" the scene bears the number two before it."""
        self._native.mark()

    def change(self, *, method: str | None = None, interval: int | None = None, **parameters: int | str | None) -> None:
        """Changes settings: the parameters of "video" from the next run on, all else from the next frame."""
        before = self._method, self._interval
        self._method = method or self._method
        self._interval = interval if interval is not None else self._interval if method in (None, "interval") else 0
        try:
            self._native.change(self._number(), self._interval, given(**parameters))
        except Exception:
            self._method, self._interval = before
            raise
        self._parameters |= given(**parameters)

    def end(self) -> None:
        """Ends the run: all its figures are final."""
        self._native.end()

    def restart(self) -> None:
        """Begins another run, whose frames count from 0 and may have another size."""
        self._native.restart()
        self._recent.clear()
        self._found = 0

    @property
    def frame_count(self) -> int:
        """Frames pushed in this run."""
        return self._native.frame_count()

    def figures(self) -> Figures:
        """What was measured in this run; of the latest two frames only after `end`."""
        if not self._keeps_figures:
            raise RuntimeError("figures are kept when asked for: Detector(figures=True)")
        return Figures(
            self._native.figures(),
            input="",
            time_base=1 / self.rate,
            rate=self.rate,
            parameters=_native.parameters(self._parameters),
        )
