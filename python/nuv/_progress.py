"""Progress for people: a bar of tqdm's where that is installed, else lines on standard error."""

from __future__ import annotations

import math
import sys
from contextlib import contextmanager
from typing import Any, Callable, Iterator, Optional, Union

from ._solve import Progress

Callback = Callable[[Progress], Optional[bool]]

#: Seconds between two looks at a solve.
_INTERVAL = 0.1


@contextmanager
def follow(progress: Union[bool, Callback, None]) -> Iterator[Optional[Callback]]:
    """The function to be called in a solve; True shows where the solve stands until it ends."""
    if not isinstance(progress, bool):
        if progress is not None and not callable(progress):
            raise TypeError(f"progress: a function or True is needed, not {progress!r}")
        yield progress
        return
    if not progress:
        yield None
        return
    shown = _Shown()
    try:
        yield shown
    finally:
        shown.close()


class _Shown:
    """Called with each pivot, shows few of them."""

    def __init__(self) -> None:
        self._next = 0.0
        self._last: Optional[Progress] = None
        self._bar: Any = None
        try:
            from tqdm.auto import tqdm
        except ImportError:
            return
        self._bar = tqdm(unit=" pivots", mininterval=0.0)

    def __call__(self, told: Progress) -> None:
        self._last = told
        if told.seconds >= self._next:
            self._next = told.seconds + _INTERVAL
            self._show(told)

    def _show(self, told: Progress) -> None:
        stands = {} if math.isnan(told.objective) else {
            "objective" if told.feasible else "violation": f"{told.objective:g}"}
        if self._bar is None:
            more = "".join(f", {what} {number}" for what, number in stands.items())
            print(f"{told.seconds:8.1f} s  {told.stage}, {told.pivots} pivots{more}",
                  file=sys.stderr)
            return
        self._bar.set_description(told.stage, refresh=False)
        self._bar.set_postfix(stands, refresh=False)
        self._bar.n = told.pivots
        self._bar.refresh()

    def close(self) -> None:
        if self._last is not None:
            self._show(self._last)
        if self._bar is not None:
            self._bar.close()
