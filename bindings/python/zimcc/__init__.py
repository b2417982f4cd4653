"""Colour conversion of images in NumPy arrays, exact to the last bit, by libzimcc.

    import zimcc
    hls = zimcc.convert(image, "RGBToHLS")             # the export found by type and channels of the image
    hls = zimcc.zimiRGBToHLS_8u_C3R(image)             # the same by its exact name
    y, cb, cr = zimcc.convert(image, "RGBToYCbCr420", layout="P3")
    zimcc.convert(image, "GammaFwd", out=image)        # in place

Every export of the library is a function of this module, with a docstring: help(zimcc.zimiGammaFwd_32f_C3R). Names are
found by zimcc.exports("zimi*YCbCr*"). Images are arrays of shape (height, width) or (height, width, channels); what is
planar is a sequence of arrays, and comes back as a tuple. Views are not copied.
"""

from zimcc._built import VERSION as __version__
from zimcc._convert import convert, exports, find
from zimcc._description import catalogue as _catalogue
from zimcc._exports import function_of as _function_of
from zimcc._library import num_threads, set_num_threads, version
from zimcc._results import NoOperationWarning, OddSizeWarning, ZimccError, ZimccWarning

__all__ = [
    "NoOperationWarning",
    "OddSizeWarning",
    "ZimccError",
    "ZimccWarning",
    "__version__",
    "convert",
    "describe",
    "exports",
    "find",
    "num_threads",
    "set_num_threads",
    "version",
]


def describe(name):
    """What the catalogue tells of an export: layouts, planes, further arguments, sizes."""
    return _function_of(name).description


def __getattr__(name):
    if not name.startswith("zimi"):
        raise AttributeError(f"module 'zimcc' has no attribute {name!r}")
    return _function_of(name)


def __dir__():
    return sorted([*globals(), *_catalogue()])
