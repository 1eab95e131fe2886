"""Where the columns or rows of a model stand, some of which have been removed."""

from __future__ import annotations

from typing import Any, Optional

import numpy as np
import numpy.typing as npt

Indices = npt.NDArray[np.int64]


class Places:
    """The place of each key: its number among all columns, or rows, that there have been.

    What a model hands out is known by its key. Nothing changes a Places; a model takes another one.
    """

    __slots__ = ("_now",)

    def __init__(self, now: Optional[Indices] = None) -> None:
        #: The place by key, -1 for what has been removed; None where each key is its place.
        self._now = now

    def now(self, keys: Any) -> Any:
        """The places of an array of keys, or of one."""
        if self._now is None:
            return keys
        found = self._now[keys]
        if np.any(found < 0):
            raise LookupError("what is asked for has been removed from its model")
        return found if isinstance(found, np.ndarray) else int(found)

    def key(self, place: int) -> int:
        """The key of what stands at a place."""
        return place if self._now is None else int(np.flatnonzero(self._now == place)[0])

    def added(self, first: int, count: int) -> tuple[Places, Indices]:
        """After `count` more have come, from the place `first` on, and their keys."""
        places = np.arange(first, first + count)
        if self._now is None:
            return self, places
        return Places(np.concatenate((self._now, places))), places - first + self._now.size

    def removed(self, places: Any, count: int) -> Places:
        """After some of `count` have gone; those behind them have moved up."""
        gone = np.zeros(count, bool)
        gone[places] = True
        moved = np.where(gone, -1, np.arange(count) - np.cumsum(gone))
        if self._now is None:
            return Places(moved)
        return Places(np.where(self._now < 0, -1, moved[self._now]))

    def by_key(self, array: npt.NDArray[Any]) -> npt.NDArray[Any]:
        """An array by places as one by keys, NaN for what has been removed."""
        if self._now is None:
            return array
        return np.where(self._now < 0, np.nan, np.append(array, np.nan)[self._now])

    def __reduce__(self) -> tuple[Any, ...]:
        return Places, (self._now,)
