"""What linprog comes back with: scipy's names and shapes, without scipy."""

from __future__ import annotations

from dataclasses import dataclass
from fractions import Fraction
from typing import Any, Callable, NamedTuple, Optional

from ._arrays import Doubles
from ._record import Record


class Marginals(dict[str, Any]):
    """``residual`` and ``marginals`` of rows or bounds; None both where there is no optimum.

    >>> import nuv
    >>> rows = nuv.linprog([-1], [[2], [1]], [4, 3]).ineqlin
    >>> rows.residual.tolist(), rows.marginals.tolist()
    ([0.0, 1.0], [-0.5, 0.0])
    """

    def __init__(self, residual: Optional[Doubles] = None,
                 marginals: Optional[Doubles] = None) -> None:
        super().__init__(residual=residual, marginals=marginals)

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self["residual"], self["marginals"])

    def __getattr__(self, name: str) -> Any:
        try:
            return self[name]
        except KeyError:
            raise AttributeError(name) from None


class Exact(NamedTuple):
    """An optimum in fractions. Marginals are what the objective gains per unit of a side or bound.

    >>> import nuv
    >>> nuv.linprog([-1], [[3]], [4]).exact.ineqlin
    [Fraction(-1, 3)]
    """

    fun: Fraction
    x: list[Fraction]
    ineqlin: list[Fraction]
    eqlin: list[Fraction]
    lower: list[Fraction]
    upper: list[Fraction]


@dataclass(frozen=True)
class ConflictMember:
    """One of the sides and bounds that exclude each other.

    Lower bounds of zero stay in force without being members.

    >>> import nuv
    >>> nuv.linprog([1], [[1]], [-1]).conflict
    [ConflictMember(of='A_ub', index=0, side='upper')]
    """

    #: ``"A_ub"``, ``"A_eq"`` or ``"bounds"``.
    of: str
    index: int
    #: ``"lower"`` or ``"upper"``.
    side: str


class LinprogResult(dict[str, Any]):
    """A dictionary whose entries are attributes too, as scipy's OptimizeResult is.

    Besides scipy's: ``proved``; ``proof``, a line; ``conflict``, sides and bounds that exclude each
    other where the problem is infeasible; and, made when first asked for, ``exact``, the optimum in
    fractions or None, ``unique``, whether it is the only optimum or None without a proved one, and
    ``certificate``, the proof in VIPR format or None.

    >>> import nuv
    >>> found = nuv.linprog([-1, -1], [[1, 1]], [3])
    >>> found.unique, found["fun"] == found.fun
    (False, True)
    """

    _LATER = ("exact", "unique", "certificate")
    _record: Optional[Record] = None
    _make_exact: Optional[Callable[[], Optional[Exact]]] = None
    _make_unique: Optional[Callable[[], Optional[bool]]] = None

    @classmethod
    def _without_point(cls, status: int, message: str, nit: int, proved: bool, proof: str,
                       conflict: list[ConflictMember]) -> LinprogResult:
        return cls(x=None, fun=None, slack=None, con=None, status=status, success=False,
                   message=message, nit=nit, crossover_nit=0, ineqlin=Marginals(),
                   eqlin=Marginals(), lower=Marginals(), upper=Marginals(), proved=proved,
                   proof=proof, conflict=conflict)

    def _with_record(self, record: Record,
                     exact: Optional[Callable[[], Optional[Exact]]] = None,
                     unique: Optional[Callable[[], Optional[bool]]] = None) -> LinprogResult:
        object.__setattr__(self, "_record", record)
        object.__setattr__(self, "_make_exact", exact)
        object.__setattr__(self, "_make_unique", unique)
        return self

    def __missing__(self, name: str) -> Any:
        if name not in self._LATER:
            raise KeyError(name)
        if name in ("exact", "unique"):
            make = self._make_exact if name == "exact" else self._make_unique
            made: Any = make() if make is not None else None
        else:
            made = self._record.text("Certificate") if self._record is not None else None
        self[name] = made
        return made

    def __getattr__(self, name: str) -> Any:
        try:
            return self[name]
        except KeyError:
            raise AttributeError(name) from None

    def __setattr__(self, name: str, value: Any) -> None:
        self[name] = value

    def __dir__(self) -> list[str]:
        return sorted({*super().__dir__(), *self, *self._LATER})

    def __reduce__(self) -> tuple[Any, ...]:
        for name in self._LATER:
            self[name]
        return type(self), (dict(self),)

    def __repr__(self) -> str:
        shown = ["message", "success", "status", "fun", "x", "slack", "con", "nit", "proof"]
        if self["conflict"]:
            shown.append("conflict")
        width = max(map(len, shown))
        return "\n".join(f"{name:>{width}}: {self[name]!r}" for name in shown)

