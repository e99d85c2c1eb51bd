# SPDX-License-Identifier: MIT
"""Change of the sample rate, of whole signals and of streams."""

from __future__ import annotations

from math import gcd

import numpy as np

from ._arguments import PRECISIONS, Array, ArrayLike, int32, samples
from ._library import DOUBLE, Precision
from ._stream import Stream
from .vec import Vec

__all__ = ["Resampler", "VariableResampler", "decimate", "resample", "resample_at", "resampling_taps"]

_PHASES = 64


def resampling_taps(up: int, down: int, passband: float = 0.9, attenuation: float = 120.0) -> Array:
    """A low-pass for a change of the rate by up / down: nothing aliases. See `Vec.c_rsmp`.

    Parameters
    ----------
    up, down : int
        The ratio of the new rate to the old one.
    passband : float, optional
        What is kept, as a part of the lower of the two Nyquist frequencies.
    attenuation : float, optional
        dB, 20 to 200: of images and aliases, and of the ripple of the pass band.
    """
    return Vec.empty(0).c_rsmp(up, down, passband, attenuation).array


def _taps(up: int, down: int, passband: float, attenuation: float) -> ArrayLike:
    """The filter of a reduced ratio; the same rate needs none."""
    return [1.0] if up == down else resampling_taps(up, down, passband, attenuation)


def _reduced(up: int, down: int) -> tuple[int, int]:
    common = max(gcd(int32(up), int32(down)), 1)
    return up // common, down // common


def resample(x: ArrayLike, up: int, down: int, *, passband: float = 0.9, attenuation: float = 120.0) -> Array:
    """The signal at up / down times its rate: len(x) * up / down points, rounded up, at k * down / up of x.

    Parameters
    ----------
    x : array_like
        Real or complex; what lies before and behind it counts as 0.
    up, down : int
        1 to 2^24.
    passband, attenuation : float, optional
        As in `resampling_taps`.

    Examples
    --------
    >>> from sigpak import cosine
    >>> y = resample(cosine(400, 0.05), 3, 2)
    >>> bool(abs(y[200:400] - cosine(600, 0.05 * 2 / 3)[200:400]).max() < 1e-6)
    True
    """
    up, down = _reduced(up, down)
    taken = samples(x)
    taps = Stream._constant(PRECISIONS[taken.dtype], _taps(up, down, passband, attenuation))
    return Vec._lent(taken, 1.0, False).rsmp(taps, up, down)._taken()


def decimate(x: ArrayLike, factor: int, *, passband: float = 0.9, attenuation: float = 120.0) -> Array:
    """Every factor-th point behind a low-pass, without delay: `resample` by 1 / factor."""
    return resample(x, 1, factor, passband=passband, attenuation=attenuation)


class _RateChange(Stream):
    """What a filter and a state make of a stream."""

    _given: tuple[ArrayLike, float]
    _symbol: str

    def _begin(self, c: Precision) -> None:
        self._taps = self._constant(c, *self._given)
        self._state = Vec.empty(0, dtype=c.real)

    def __call__(self, block: ArrayLike) -> Array:
        """What the samples so far suffice for."""
        signal = self._block(block)
        return self._resampled(signal, signal._at)

    def finish(self) -> Array:
        """The rest: the stream has ended, and another may begin."""
        if self._c is None:
            return np.empty(0)
        rest = self._resampled(self._state, None)
        self._c = None
        return rest

    def _resampled(self, signal: Vec, block: int | None) -> Array:
        out = signal._fresh()
        if self._run(signal._c, block, out._at):
            raise signal._refused(type(self).__name__, self._symbol, **self._arguments())
        signal._settle(self._state)
        return out._taken()

    def _run(self, c: Precision, block: int | None, out: int) -> int:
        raise NotImplementedError

    def _arguments(self) -> dict[str, float]:
        raise NotImplementedError


class Resampler(_RateChange):
    """A change of the rate by up / down for a stream.

    Parameters
    ----------
    up, down : int
        The ratio of the new rate to the old one.
    passband, attenuation : float, optional
        As in `resampling_taps`.
    taps : array_like, optional
        A filter of the caller's instead, for the rate up.

    Examples
    --------
    >>> twice = Resampler(2, 1)
    >>> sum(len(part) for part in (twice([0.0] * 700), twice([0.0] * 300), twice.finish()))
    2000
    """

    _symbol = "dspd_rsmp"

    def __init__(
        self,
        up: int,
        down: int,
        *,
        passband: float = 0.9,
        attenuation: float = 120.0,
        taps: ArrayLike | None = None,
    ) -> None:
        self.up, self.down = _reduced(up, down)
        if taps is None:
            taps = _taps(self.up, self.down, passband, attenuation)
        else:
            self.up, self.down = int32(up), int32(down)
        self._given = samples(taps).copy(), 1.0

    def _run(self, c: Precision, block: int | None, out: int) -> int:
        return c.dspd_rsmp(block, out, self._taps._at, self.up, self.down, self._state._at)

    def _arguments(self) -> dict[str, float]:
        return {"up": self.up, "down": self.down}


class VariableResampler(_RateChange):
    """A change of the rate by any factor, which may change from block to block.

    Parameters
    ----------
    step : float
        How many samples of the input lie between two of the output. It may be set at any time.
    passband, attenuation : float, optional
        As in `resampling_taps`.
    """

    _symbol = "dspd_rsmp2"

    def __init__(self, step: float, *, passband: float = 0.9, attenuation: float = 120.0) -> None:
        self.step = step
        self._given = _phases(passband, attenuation)

    def _run(self, c: Precision, block: int | None, out: int) -> int:
        return c.dspd_rsmp2(block, out, self._taps._at, None, float(self.step), self._state._at)

    def _arguments(self) -> dict[str, float]:
        return {"step": self.step}


def _phases(passband: float, attenuation: float) -> tuple[Array, float]:
    """A filter that is interpolated between its phases, and the spacing of its taps."""
    v = Vec.empty(0).c_rsmp(_PHASES, 1, passband, attenuation)
    return v.array, v.delta


def resample_at(x: ArrayLike, times: ArrayLike, *, passband: float = 0.9, attenuation: float = 120.0) -> Array:
    """The values of a band-limited signal at any times, in samples from its first. See `Vec.rsmp2`.

    Parameters
    ----------
    x : array_like
        Real or complex; what lies before and behind it counts as 0.
    times : array_like
        In any order, no sparser than the samples where x reaches the Nyquist frequency.
    passband, attenuation : float, optional
        As in `resampling_taps`.
    """
    taken = samples(x)
    taps = Stream._constant(PRECISIONS[taken.dtype], *_phases(passband, attenuation))
    at = Vec._lent(samples(np.asarray(times, DOUBLE.real)), 1.0, False)
    return Vec._lent(taken, 1.0, False).rsmp2(taps, at)._taken()
