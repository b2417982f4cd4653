"""What becomes of the library's result codes."""

import sys
import warnings


class ZimccError(ValueError):
    """The library has refused a call; nothing was written. `code` and `result` tell the result by number and name."""

    def __init__(self, export, code, result, meaning):
        super().__init__(f"{export}: {meaning} ({result})")
        self.code = code
        self.result = result


class ZimccWarning(UserWarning):
    """The library has done what it could."""


class OddSizeWarning(ZimccWarning):
    """Width or height is no multiple of the sub-sampling: the rest of a group of pixels may have been left alone."""


class NoOperationWarning(ZimccWarning):
    """Nothing was converted: the maximum or mean of the image is negative."""


_ERRORS = {
    -5: ("zimResultBadArgument", "an argument has none of its values"),
    -6: ("zimResultBadSize", "the size is below the least, or no multiple of what is needed"),
    -8: ("zimResultNullPointer", "an image is missing"),
    -14: ("zimResultBadStep", "rows must follow one another upward in memory, so no image flipped upside down"),
    -49: ("zimResultBadRange", "vMax has to be above vMin"),
    -54: ("zimResultBadLevels", "the number of levels is out of range"),
    -55: ("zimResultBadNoise", "the noise is no percentage from 0 to 100"),
    -224: ("zimResultBadDither", "this kind of dither is not supported"),
}
_NO_MEMORY = -9
_WARNINGS = {1: NoOperationWarning, 35: OddSizeWarning}


def _level_of_caller():
    """How far up, seen from the caller of this, the code lies that called the package."""
    level, frame = 1, sys._getframe(1)
    while frame.f_back is not None and frame.f_globals["__name__"].startswith("zimcc."):
        level, frame = level + 1, frame.f_back
    return level


def settle(export, code):
    """Raises an exception for an error, gives a warning for a warning."""
    if code == 0:
        return
    if code in _WARNINGS:
        kind = _WARNINGS[code]
        warnings.warn(f"{export}: {kind.__doc__}", kind, stacklevel=_level_of_caller())
    elif code == _NO_MEMORY:
        raise MemoryError(f"{export}: no memory for its work")
    else:
        raise ZimccError(export, code, *_ERRORS.get(code, (str(code), "unknown result")))
