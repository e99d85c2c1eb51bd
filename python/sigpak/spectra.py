# SPDX-License-Identifier: MIT
"""Averaged spectra in real units (Welch's method), of whole signals and of streams."""

from __future__ import annotations

import os
from ctypes import c_int32
from dataclasses import dataclass
from importlib import import_module
from typing import Any, Union

import numpy as np

from ._arguments import Array, ArrayLike, in_precision, samples, window_number
from ._library import Precision
from ._lines import Line, find_lines
from ._noise import independent_segments, median_of_noise
from ._stream import Stream
from .enums import Average, SpectrumFlag, Window
from .errors import Error
from .vec import Vec
from .windows import window as make_window
from .windows import window_name

__all__ = ["Line", "RunningSpectrum", "Spectrum", "spectrum"]

WindowLike = Union[Window, int, str, ArrayLike]

_QUANTITIES = ("peak", "rms", "power", "asd", "psd")
_DENSITIES = ("asd", "psd")
_PADDINGS = {1: 0, 2: SpectrumFlag.PAD2, 4: SpectrumFlag.PAD4, 8: SpectrumFlag.PAD8}
_MODES = {"mean": Average.MEAN, "maximum": Average.MAXIMUM, "minimum": Average.MINIMUM, "last": Average.REPLACE}


@dataclass(frozen=True)
class Spectrum:
    """A spectrum in one quantity.

    Attributes
    ----------
    f, values : ndarray
        Frequencies and what stands there. Of complex signals the negative frequencies come first.
    quantity, sample_unit, average : str
        What the values are, the unit of the samples, and what was kept of the segments.
    window, window_name : ndarray, str
        The window, and its name if it has one.
    rate, enbw, hop, segments, padding
        The sample rate, the noise bandwidth in Hz, samples from segment to segment, how many were averaged, and how
        many values there are to one point of a segment.
    """

    f: Array
    values: Array
    quantity: str
    sample_unit: str
    average: str
    window: Array
    window_name: str
    rate: float
    enbw: float
    hop: int
    segments: int
    padding: int

    @property
    def unit(self) -> str:
        """The unit of the values."""
        unit = self.sample_unit
        base = f"({unit})" if set(unit) & set("/^ *") else unit  # m/s^2 becomes (m/s^2)^2
        squared = f"{base}^2" if unit else ""
        return {
            "peak": unit,
            "rms": f"{unit} rms".strip(),
            "power": squared,
            "asd": f"{unit or 1}/sqrt(Hz)",
            "psd": f"{squared or 1}/Hz",
        }[self.quantity]

    @property
    def noise_floor(self) -> float:
        """The level at which noise shows: the median of the values, which lines do not move, corrected to the mean."""
        part = median_of_noise(self.window, self.hop, self.segments, self.average)
        return float(np.median(self.values) / (part if self.quantity in ("power", "psd") else np.sqrt(part)))

    def band_rms(self, low: float = -np.inf, high: float = np.inf) -> float:
        """The rms value of what lies in a band, of averages that are means: the root of the density's integral.

        Parameters
        ----------
        low, high : float, optional
            The ends of the band in Hz. What a band cuts off from a value counts in parts, so that the squares of bands
            that adjoin add up.

        Examples
        --------
        >>> from sigpak import cosine
        >>> x = cosine(8000, 440.0, rate=8000.0) + cosine(8000, 50.0, rate=8000.0)
        >>> spectrum(x, 8000.0).band_rms(400, 500).__round__(6)
        0.707107
        """
        power = self.values if self.quantity in ("power", "psd") else self.values ** 2
        half = self.rate / (2 * self.window.size * self.padding)
        left, right, weight = self.f - half, self.f + half, np.ones(self.f.size)
        if self.f[0] == 0:  # outer values have half the width, and the power of one frequency where others have two
            outer = (self.f == 0) | (self.f + half / 2 > self.rate / 2)
            left, right = np.maximum(left, 0.0), np.minimum(right, self.rate / 2)
            weight[outer] = 2.0
            if self.quantity == "peak":
                weight[~outer] = 0.5
        width = np.maximum(np.minimum(right, high) - np.maximum(left, low), 0.0)
        square = float(np.dot(power * weight, width))
        return float(np.sqrt(square if self.quantity in _DENSITIES else square / self.enbw))

    @property
    def lines(self) -> list[Line]:
        """The lines above the noise, the strongest first.

        A line is listed when the noise around it would reach it in fewer than 1 of 1000 spectra, when the spectrum
        falls on both sides of it, and when no stronger one explains it by the leakage of the window. Frequency and
        value are those of the parabola through the logarithms of the highest point and its neighbours.
        """
        powers = self.values if self.quantity in ("power", "psd") else self.values ** 2
        found = find_lines(self.f, powers, self.window, self.hop, self.segments, self.average, self.padding)
        if self.quantity in ("power", "psd"):
            return found
        return [Line(line.frequency, line.value**0.5, line.snr_db) for line in found]

    def to_csv(self, path: str | os.PathLike[str]) -> None:
        """Writes frequency and value line by line, beneath lines with # that tell what they are.

        The program reads it, to draw it or to merge it with others, when the window is one of the catalogue and the
        padding 4.
        """
        told = {
            "unit": self.sample_unit,
            "quantity": self.quantity,
            "level": "no",
            "full scale": "no",
            "two-sided": "yes" if self.f[0] < 0 else "no",
            "time unit": "s",
            "rate": repr(self.rate),
            "window": self.window_name,
            "enbw": repr(self.enbw),
            "segment": self.window.size,
            "overlap": self.window.size - self.hop,
            "average": self.average,
            "segments": self.segments,
            "degrees of freedom": 2 * independent_segments(self.window, self.hop, self.segments),
        }
        with open(path, "w", encoding="utf-8", newline="\n") as out:
            out.write("# sigpak spectrum\n")
            out.writelines(f"# {key}: {value}\n" for key, value in told.items())
            out.write(f"frequency [Hz],{self.quantity}{f' [{self.unit}]' if self.unit else ''}\n")
            out.writelines(f"{f!r},{v!r}\n" for f, v in zip(self.f.tolist(), self.values.tolist()))

    def plot(self, ax: Any = None, *, db: bool = True) -> Any:
        """Draws the spectrum with matplotlib, which must be there.

        Parameters
        ----------
        ax : Axes, optional
            Where to draw.
        db : bool, optional
            As levels relative to the unit.
        """
        if ax is None:
            pyplot = import_module("matplotlib.pyplot")
            ax = pyplot.figure().add_subplot()
        factor = 10.0 if self.quantity in ("power", "psd") else 20.0
        floor = np.finfo(self.values.dtype).tiny
        ax.plot(self.f, factor * np.log10(np.maximum(self.values, floor)) if db else self.values)
        ax.set_xlabel("frequency in Hz")
        reference = self.unit if self.unit.startswith("1/") else f"1 {self.unit}".strip()
        ax.set_ylabel(f"level in dB re {reference}" if db else self.unit)
        return ax


def window_samples(window: WindowLike, segment: int) -> Array:
    """A window by its name, or the samples of the caller's own."""
    if isinstance(window, (str, int)):
        return make_window(window, segment)
    return samples(window).copy()


def noise_bandwidth(window: Array) -> float:
    """In bins, mean(w^2) / mean(w)^2."""
    return float(np.mean(np.square(window)) / np.mean(window) ** 2)


class Averager(Stream):
    """Segments of a stream, and what is averaged of them: what spectra of one and of two signals share."""

    def __init__(self, rate: float, window: WindowLike, segment: int, overlap: float, centre: bool, flags: int) -> None:
        if not 0 <= overlap < 1:
            raise Error("spectrum", "overlap", repr(overlap), "a part of the segment below 1 is needed")
        if not 0 < rate < np.inf:
            raise Error("spectrum", "rate", repr(rate), "a finite rate above 0 is needed")
        if segment < 1:
            raise Error("spectrum", "segment", repr(segment), "1 point or more is needed")
        self.rate, self._shape = rate, window_samples(window, segment)
        self.hop = max(1, self._shape.size - int(overlap * self._shape.size))
        self._flags = flags | (SpectrumFlag.CENTRE if centre else 0)
        self._count = c_int32(0)

    @property
    def segments(self) -> int:
        """How many segments have been averaged."""
        return self._count.value

    def _begin(self, c: Precision) -> None:
        self._window = self._constant(c, self._shape)
        self._average, self._history = Vec.empty(0, dtype=c.real), Vec.empty(0, dtype=c.real)

    def _take(self, a: ArrayLike, b: ArrayLike | None = None) -> None:
        first = self._block(a, 1 / self.rate)
        second = None if b is None else Vec._lent(in_precision(first._c, b), 1 / self.rate, False)
        self._average.h_dft(first, second, self._history, self._window, self._flags, self.hop, self._count)

    def _bins(self) -> Array:
        """The average; without a complete segment there is none."""
        if self._c is None or not self.segments:
            needed = f"{self._shape.size} samples make the first segment"
            raise Error("spectrum", "", "no complete segment", needed)
        return self._average.array

    @property
    def enbw(self) -> float:
        """The noise bandwidth of the window in Hz."""
        return noise_bandwidth(self._shape) * self.rate / self._shape.size


class RunningSpectrum(Averager):
    """The averaged spectrum of a stream: `result` covers all complete segments so far.

    Parameters
    ----------
    rate : float
        Samples per second.
    window : Window, str or array_like, optional
        A name of the catalogue, or the window itself.
    segment : int, optional
        Points of a segment; a window of the caller's own has its own.
    overlap : float, optional
        The part of a segment that the next one takes again.
    quantity : {"rms", "peak", "power", "asd", "psd"}, optional
        Of lines the rms value, the amplitude, the power; of noise the amplitude or power density.
    unit : str, optional
        The unit of the samples.
    average : {"mean", "maximum", "minimum", "last"}, optional
        What is kept of the segments.
    centre : bool, optional
        Whether the mean is taken out of every segment.
    padding : {1, 2, 4, 8}, optional
        Values to one point of a segment: 4 and 8 show the lines between the bins.

    Examples
    --------
    >>> from sigpak import cosine
    >>> running = RunningSpectrum(1000.0, "flattop", 500, unit="V")
    >>> for block in np.split(3 * cosine(5000, 100.0, rate=1000.0), 10):
    ...     running.add(block)
    >>> s = running.result
    >>> print(s.segments, s.unit, s.lines[0])
    19 V rms Line(frequency=100.0, value=2.12132, snr_db=...)
    """

    def __init__(
        self,
        rate: float = 1.0,
        window: WindowLike = "hann",
        segment: int = 8192,
        *,
        overlap: float = 0.5,
        quantity: str = "rms",
        unit: str = "",
        average: str = "mean",
        centre: bool = True,
        padding: int = 1,
    ) -> None:
        for name, value, allowed in (
            ("quantity", quantity, _QUANTITIES),
            ("average", average, tuple(_MODES)),
            ("padding", padding, tuple(_PADDINGS)),
        ):
            if value not in allowed:
                raise Error("spectrum", name, repr(value), f"one of {', '.join(map(str, allowed))} is needed")
        flags = _MODES[average] | SpectrumFlag.SQUARE | _PADDINGS[padding]
        flags |= SpectrumFlag.DENSITY if quantity in _DENSITIES else 0
        super().__init__(rate, window, segment, overlap, centre, int(flags))
        self.quantity, self.unit, self.average, self.padding = quantity, unit, average, padding
        self._window_name = window_name(window_number(window)) if isinstance(window, (str, int)) else ""
        self._is_complex = False

    def add(self, block: ArrayLike) -> None:
        """Takes the next block, of any length."""
        taken = samples(block)
        self._take(taken)
        self._is_complex = taken.dtype.kind == "c"

    @property
    def result(self) -> Spectrum:
        """The spectrum of all complete segments so far."""
        values, n = self._bins().copy(), self._shape.size * self.padding
        f = np.arange(values.size) * (self.rate / n)
        if self._is_complex:
            f, values = np.fft.fftshift(np.fft.fftfreq(n, 1 / self.rate)), np.fft.fftshift(values)
        elif self.quantity == "peak":
            values[1 : (n + 1) // 2] *= 2
        if self.quantity not in ("power", "psd"):
            values = np.sqrt(values)
        return Spectrum(
            f,
            values,
            self.quantity,
            self.unit,
            self.average,
            self._shape,
            self._window_name,
            self.rate,
            self.enbw,
            self.hop,
            self.segments,
            self.padding,
        )


def spectrum(
    x: ArrayLike, rate: float = 1.0, window: WindowLike = "hann", segment: int = 8192, **options: Any
) -> Spectrum:
    """The averaged spectrum of a signal.

    Parameters
    ----------
    x : array_like
        Real samples give frequencies from 0, complex ones from -rate / 2.
    rate : float, optional
        Samples per second.
    window : Window, str or array_like, optional
        A name of the catalogue, or the window itself.
    segment : int, optional
        Points of a segment, at most those of x.
    **options
        As `RunningSpectrum` takes them: overlap, quantity, unit, average, centre, padding.

    Examples
    --------
    >>> from sigpak import cosine
    >>> s = spectrum(cosine(8000, 440.0, rate=8000.0), 8000.0, segment=800, quantity="peak", unit="V")
    >>> s.lines[0].frequency.__round__(6), round(float(s.values.max()), 6), s.unit
    (440.0, 1.0, 'V')
    """
    taken = samples(x)
    running = RunningSpectrum(rate, window, max(1, min(segment, taken.size)), **options)
    running.add(taken)
    return running.result
