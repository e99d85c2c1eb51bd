# SPDX-License-Identifier: MIT
"""Splines, straight lines and surfaces through given points."""

from __future__ import annotations

from typing import Any

import numpy as np

from ._arguments import Array, ArrayLike, alike, choice, in_precision
from .enums import Interp, SplineEnds
from .errors import Error
from .vec import Vec

__all__ = ["Spline", "Surface", "interp"]

_OUTSIDE = {"extrapolate": 0, "hold": int(Interp.HOLD), "wrap": int(Interp.WRAP)}
_DERIVATIVES = (Interp.VALUE, Interp.SLOPE, Interp.CURVATURE)
_PAIRS = 256


def _outside(outside: str) -> int:
    if outside not in _OUTSIDE:
        raise Error("interp", "outside", repr(outside), f"one of {', '.join(_OUTSIDE)} is needed")
    return _OUTSIDE[outside]


def interp(at: ArrayLike, x: ArrayLike, y: ArrayLike, *, outside: str = "extrapolate") -> Array:
    """Straight lines through the points (x, y), at any places.

    Parameters
    ----------
    at : array_like
        The places, in any order.
    x, y : array_like
        The points; x rises.
    outside : {"extrapolate", "hold", "wrap"}, optional
        What holds outside of the points: the first and last line go on, the end values, or all again.

    Examples
    --------
    >>> interp([0.5, 3.0], [0.0, 1.0, 2.0], [0.0, 10.0, 0.0])
    array([  5., -10.])
    """
    places, knots, values = (Vec._lent(part, 1.0, False) for part in alike(at, x, y))
    return values.interp(knots, places, _outside(outside))._taken()


class Spline:
    """The cubic spline through the points (x, y). See `Vec.cspline`.

    Parameters
    ----------
    x : array_like or None
        Rising; None for 0, delta, 2 delta, ...
    y : array_like
        Real values.
    ends : SplineEnds or str, optional
        "not-a-knot", "natural", "clamped", "periodic", or "monotone", which never overshoots.
    slopes : (float, float), optional
        At both ends, for "clamped".
    delta : float, optional
        The spacing of the points without x.
    outside : {"extrapolate", "hold", "wrap"}, optional
        What holds outside of the points.

    Examples
    --------
    >>> cube = Spline([0.0, 1.0, 2.0, 4.0], [0.0, 1.0, 8.0, 64.0])
    >>> cube([3.0]), cube([3.0], derivative=1), cube.integral([4.0])
    (array([27.]), array([27.]), array([64.]))
    """

    def __init__(
        self,
        x: ArrayLike | None,
        y: ArrayLike,
        ends: SplineEnds | str = "not-a-knot",
        *,
        slopes: tuple[float, float] = (0.0, 0.0),
        delta: float = 1.0,
        outside: str = "extrapolate",
    ) -> None:
        self._outside = _outside(outside)
        parts = alike(y) if x is None else alike(y, x)
        self._x = None if x is None else Vec._lent(parts[1].copy(), 1.0, False)
        values = Vec._lent(parts[0], delta, False)
        self._pairs = values.cspline(self._x, choice(SplineEnds, ends), *slopes)

    def __call__(self, at: ArrayLike, derivative: int = 0) -> Array:
        """The value, or the first or second derivative, at any places."""
        if derivative not in (0, 1, 2):
            raise Error("Spline", "derivative", repr(derivative), "0, 1 or 2 is needed")
        return self._evaluated(at, int(_DERIVATIVES[derivative]))

    def integral(self, at: ArrayLike) -> Array:
        """The integral from the first point to any places."""
        return self._evaluated(at, int(Interp.INTEGRAL))

    @property
    def slopes(self) -> Array:
        """The slope at every point."""
        return self._pairs.array.imag.copy()

    def _evaluated(self, at: ArrayLike, what: int) -> Array:
        places = Vec._lent(in_precision(self._pairs._c, at), 1.0, False)
        return self._pairs.interp(self._x, places, what | self._outside)._taken()


class Surface:
    """The spline through a table over a grid. See `Vec.cspline_2d`.

    Parameters
    ----------
    x, y : array_like
        Where the columns and the rows of the table lie; both rise.
    z : array_like
        The table, len(y) rows of len(x).
    ends : SplineEnds or str, optional
        "not-a-knot", "natural" or "periodic", along both axes.
    outside : {"extrapolate", "hold", "wrap"}, optional
        What holds outside of the grid.
    """

    def __init__(
        self,
        x: ArrayLike,
        y: ArrayLike,
        z: Any,
        ends: SplineEnds | str = "not-a-knot",
        *,
        outside: str = "extrapolate",
    ) -> None:
        table = np.asarray(z)
        parts = alike(x, y, table.ravel())
        if table.shape != (parts[1].size, parts[0].size):
            needed = (parts[1].size, parts[0].size)
            raise Error("Surface", "z", f"of shape {table.shape}", f"rows by columns {needed} are needed")
        self._x, self._y, self._z = (Vec._lent(part.copy(), 1.0, False) for part in parts)
        self._flags = choice(SplineEnds, ends) | _outside(outside)

    def __call__(self, x: ArrayLike, y: ArrayLike, *, pairs: bool = False) -> Array:
        """The values over the grid of all x and y, len(y) rows of len(x); or, of pairs, at every (x, y)."""
        columns, rows = (Vec._lent(in_precision(self._z._c, part), 1.0, False) for part in (x, y))
        flags = self._flags | (_PAIRS if pairs else 0)
        values = self._z.cspline_2d(columns, rows, self._x, self._y, flags)._taken()
        return values if pairs else values.reshape(rows.points, columns.points)
