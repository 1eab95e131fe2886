"""Handles of rows; made by ``Model.add`` and ``Model.add_rows``."""

from __future__ import annotations

from fractions import Fraction
from typing import TYPE_CHECKING, Any

import numpy as np
import numpy.typing as npt

if TYPE_CHECKING:
    from ._model import Model


class Row:
    """A row of a model."""

    __slots__ = ("model", "index")

    def __init__(self, model: Model, index: int) -> None:
        self.model = model
        self.index = index

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Row) and (self.model, self.index) == (other.model, other.index)

    def __hash__(self) -> int:
        return hash((id(self.model), self.index, "row"))

    @property
    def name(self) -> str:
        return self.model._row_name(self.index)

    @property
    def dual(self) -> float:
        """In the model's last solution; the others are of it as well."""
        return float(self.model.solution.dual(self))

    @property
    def exact_dual(self) -> Fraction:
        return self.model.solution.exact_dual(self)

    @property
    def slack(self) -> float:
        return float(self.model.solution.slack(self))

    @property
    def activity(self) -> float:
        return float(self.model.solution.activity(self))

    def __repr__(self) -> str:
        return f"<row {self.name}>"


class RowArray:
    """Rows in the shape of the constraints that they were made of."""

    __slots__ = ("model", "index")

    def __init__(self, model: Model, index: npt.NDArray[np.int64]) -> None:
        self.model = model
        self.index = index

    @property
    def shape(self) -> tuple[int, ...]:
        return self.index.shape

    def __len__(self) -> int:
        return len(self.index)

    def __getitem__(self, key: Any) -> Any:
        picked = self.index[key]
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
