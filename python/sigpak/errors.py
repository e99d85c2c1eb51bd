# SPDX-License-Identifier: MIT
"""Why the library refused a call: it answers with -1 alone, the reason is found here."""

from __future__ import annotations

from typing import Any, Protocol

from ._c import REAL_ONLY, REFUSALS


class Error(ValueError):
    """A refused call.

    Parameters
    ----------
    operation : str
        The name of the operation.
    argument : str
        The argument that was refused; empty for the signal itself.
    value : str
        What it was.
    reason : str
        What is needed instead.
    """

    def __init__(self, operation: str, argument: str, value: str, reason: str) -> None:
        self.operation, self.argument, self.value, self.reason = operation, argument, value, reason
        shown = f"{argument} = {value}" if argument else value
        super().__init__(": ".join(filter(None, (operation, "; ".join(filter(None, (shown, reason)))))))

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.operation, self.argument, self.value, self.reason)


class OutOfMemory(Error, MemoryError):
    """A result that found no memory."""


class Shaped(Protocol):
    """What the reasons ask a record about."""

    @property
    def points(self) -> int:
        ...

    @property
    def is_complex(self) -> bool:
        ...

    @property
    def is_lost(self) -> bool:
        ...


_NOT_PROVIDED = {"dspi_erf", "dspi_erfc", "dspi_gamma", "dspi_lgamma"}
_POWERS_OF_TWO = {"dspi_fft": "dft", "dspi_rfft": "rdft", "dspi_bitrev": "", "dspi_bitrev_scale": ""}
_EQUAL_POINTS = {
    *("dspb_mul", "dspb_conj_mul", "dspb_div", "dspb_avg_add", "dspb_min", "dspb_max", "dspb_ritoc", "dspb_inter"),
    "dspbs_dot",
}


def _points(count: int) -> str:
    return "1 point" if count == 1 else f"{count} points"


def _is_power_of_two(count: int) -> bool:
    return count > 0 and count & (count - 1) == 0


def _for_the_signal(symbol: str, signal: Shaped) -> tuple[str, str] | None:
    """What the signal is, and what is needed instead."""
    if symbol in _NOT_PROVIDED:
        return "", "the library does not provide it"
    if symbol in REAL_ONLY and signal.is_complex:
        return "complex samples", "real ones are needed"
    if symbol in _POWERS_OF_TWO and not _is_power_of_two(signal.points):
        other = _POWERS_OF_TWO[symbol]
        return _points(signal.points), "a power of two is needed" + (f", {other} takes any length" if other else "")
    if symbol == "dspi_irfft":  # which leaves the whole spectrum behind
        points = signal.points // 2 + 1 if signal.points else 0
        return _points(points), "one more than a power of two is needed, irdft takes any number"
    return None


def refusal(name: str, symbol: str, signal: Shaped, arguments: dict[str, Any]) -> Error:
    """The error of a call that returned -1.

    Parameters
    ----------
    name, symbol : str
        The operation in Python and in C.
    signal : Vec
        The record that it was called with.
    arguments : dict
        The other arguments by their names.
    """
    if signal.is_lost:
        return OutOfMemory(name, "", _points(signal.points), "no memory for them")
    known = _for_the_signal(symbol, signal)
    if known:
        return Error(name, "", *known)
    second = arguments.get("b", arguments.get("im"))
    if symbol in _EQUAL_POINTS and second is not None and second.points != signal.points:
        return Error(name, "", f"{signal.points} and {_points(second.points)}", "as many are needed in both")
    if symbol not in REFUSALS:
        return OutOfMemory(name, "", _points(signal.points), "no memory for the result")
    return _as_the_header_says(name, symbol, signal, arguments)


def _as_the_header_says(name: str, symbol: str, signal: Shaped, arguments: dict[str, Any]) -> Error:
    """All arguments that may be refused, with what the header asks of them."""
    kind = "complex" if signal.is_complex else "real"
    given = [f"{_points(signal.points)}, {kind}"] + [f"{key} = {_shown(value)}" for key, value in arguments.items()]
    needed = [f"{key}: {text}" if key else text for key, text in REFUSALS[symbol].items()]
    return Error(name, "", ", ".join(given), ". ".join(needed))


def _shown(value: Any) -> str:
    return _points(value.points) if hasattr(value, "points") else repr(value)
