# SPDX-License-Identifier: MIT
"""Digital signal processing on sampled vectors: spectra, filters, resampling, correlation, splines, statistics.

Functions take arrays and give new arrays; `Vec` works on an array in place, by the names of the C functions. float32
and complex64 are computed in single precision, everything else in double. Refusals are `Error`s that tell the reason.
There are no locks: any number of threads may call at the same time, each with signals and objects of its own.
"""

from . import correlation, cross, enums, files, filters, functions, resampling, signals, spectra, splines, windows
from ._c import PACKAGE_VERSION as __version__
from ._library import DOUBLE as _DOUBLE
from ._library import SINGLE as _SINGLE
from .correlation import *
from .cross import *
from .enums import *
from .errors import Error, OutOfMemory
from .files import *
from .filters import *
from .functions import *
from .resampling import *
from .signals import *
from .spectra import *
from .splines import *
from .vec import Vec
from .windows import *

roots = functions.proots


def free_internal() -> None:
    """Releases the tables that the library keeps for transforms, windows and filters; they are made anew when needed.

    No other thread may be in the library meanwhile.
    """
    _DOUBLE.dsp_free_internal()
    _SINGLE.dsp_free_internal()


__all__ = ["Error", "OutOfMemory", "Vec", "free_internal", "roots"]
__all__ += correlation.__all__
__all__ += cross.__all__
__all__ += enums.__all__
__all__ += files.__all__
__all__ += filters.__all__
__all__ += functions.__all__
__all__ += resampling.__all__
__all__ += signals.__all__
__all__ += spectra.__all__
__all__ += splines.__all__
__all__ += windows.__all__
