"""Handles of rows; made by ``Model.add`` and ``Model.add_rows``."""

from __future__ import annotations

from fractions import Fraction
from typing import TYPE_CHECKING, Any

import numpy as np
import numpy.typing as npt

if TYPE_CHECKING:
    from ._model import Model


class Row:
    """A row of a model.

    >>> import nuv
    >>> model = nuv.Model()
    >>> row = model.add(model.variable("x") + 1 >= 4, "need")
    >>> model.minimize(2 * model["x"])
    >>> model.solve().status, row.name, row.dual, row.activity
    ('optimal', 'need', 2.0, 3.0)
    """

    __slots__ = ("model", "key")

    def __init__(self, model: Model, key: int) -> None:
        self.model = model
        #: Stays when others are removed.
        self.key = key

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Row) and (self.model, self.key) == (other.model, other.key)

    def __hash__(self) -> int:
        return hash((id(self.model), self.key, "row"))

    @property
    def index(self) -> int:
        """Its number."""
        return int(self.model._rows.now(self.key))

    @property
    def name(self) -> str:
        return self.model._row_name(self.index)

    @property
    def dual(self) -> float:
        """In the model's last solution; the others are of it as well."""
        return float(self.model.solution.dual(self))

    @property
    def exact_dual(self) -> Fraction:
        found: Fraction = self.model.solution.exact_dual(self)
        return found

    @property
    def slack(self) -> float:
        return float(self.model.solution.slack(self))

    @property
    def activity(self) -> float:
        return float(self.model.solution.activity(self))

    def __repr__(self) -> str:
        return f"<row {self.name}>"


class RowArray:
    """Rows in the shape of the constraints that they were made of.

    >>> import nuv
    >>> model = nuv.Model()
    >>> rows = model.add(model.variables("x", (2, 3)) <= [1, 2, 3], "limit")
    >>> rows.shape, rows[1, 2]
    ((2, 3), <row limit_1_2>)
    """

    __slots__ = ("model", "key")

    def __init__(self, model: Model, key: npt.NDArray[np.int64]) -> None:
        self.model = model
        #: Keys stay when others are removed.
        self.key = key

    @property
    def index(self) -> npt.NDArray[np.int64]:
        """Their numbers."""
        found: npt.NDArray[np.int64] = self.model._rows.now(self.key)
        return found

    @property
    def shape(self) -> tuple[int, ...]:
        return self.key.shape

    def __repr__(self) -> str:
        return f"<rows, shape {self.shape}>"

    def __len__(self) -> int:
        return len(self.key)

    def __getitem__(self, key: Any) -> Any:
        picked = self.key[key]
        return RowArray(self.model, picked) if isinstance(picked, np.ndarray) else \
            Row(self.model, int(picked))

    @property
    def dual(self) -> npt.NDArray[np.float64]:
        found: npt.NDArray[np.float64] = self.model.solution.dual(self)
        return found

    @property
    def slack(self) -> npt.NDArray[np.float64]:
        found: npt.NDArray[np.float64] = self.model.solution.slack(self)
        return found

    @property
    def activity(self) -> npt.NDArray[np.float64]:
        found: npt.NDArray[np.float64] = self.model.solution.activity(self)
        return found
