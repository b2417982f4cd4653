"""The plain form: an operation by its name, the export found by the image."""

import collections
import difflib
import fnmatch
import functools

import numpy

from zimcc import _arrays
from zimcc._description import catalogue
from zimcc._exports import function_of


def exports(pattern="*"):
    """The names of the exports that match a shell pattern, such as "zimi*YCbCr420_8u_*"."""
    return [name for name in catalogue() if fnmatch.fnmatchcase(name, pattern)]


@functools.lru_cache(maxsize=None)
def _by_operation():
    found = collections.defaultdict(list)
    for export in catalogue().values():
        found[export.operation].append(export)
    return found


def _fits(side, image, who):
    """Whether type and shape are those of a side; strides are for the call to judge."""
    try:
        arrays = _arrays.planes_of(side, image, who)
        if side.bitmap:  # the call knows the number of bits
            return arrays[0].ndim == 2 and arrays[0].dtype == side.dtype
        return _arrays.mismatch(side, arrays, who, *_arrays.extent_of(side, arrays, who)) is None
    except (TypeError, ValueError):
        return False


def _seen(image):
    if isinstance(image, (tuple, list)):
        return " and ".join(_seen(array) for array in image)
    array = numpy.asarray(image)
    return f"{array.dtype} {array.shape}"


def _stored(side):
    """The type of the samples; bits count as bool, though eight of them are a uint8."""
    return numpy.dtype(bool) if side.bitmap else side.dtype


def _preference(export, image):
    """The least is best: the image's own type and layout; pixels rather than planes; no fourth colour."""
    source, destination = export.source, export.destination
    return (
        len(source.planes) > 1 and isinstance(image, numpy.ndarray),
        _stored(destination) != source.dtype,
        destination.layout != source.layout,
        destination.layout not in ("C1", "C3"),
        source.layout == "C4",
        destination.steps == "none" or source.steps == "none",
    )


def _in_short(export):
    return f"{export.name} ({export.source} {'in place' if export.in_place else f'to {export.destination}'})"


def find(image, operation, *, variant="", layout=None, dtype=None, out=None):
    """The name of the export that convert() takes."""
    candidates = _by_operation().get(operation)
    if not candidates:
        near = difflib.get_close_matches(operation, _by_operation(), n=3)
        raise ValueError(f"no operation is named {operation!r}" + (f"; near are {', '.join(near)}" if near else ""))

    def keep(wanted, complaint):
        kept = [export for export in candidates if wanted(export)]
        if not kept:
            raise ValueError(f"{complaint}; {operation} has\n  " + "\n  ".join(map(_in_short, candidates)))
        return kept

    candidates = keep(lambda e: e.variant == variant, f"no variant is named {variant!r}")
    candidates = keep(lambda e: _fits(e.source, image, "image"), f"nothing takes the image, {_seen(image)}")
    in_place = out is not None and out is image
    candidates = keep(lambda e: e.in_place == in_place, f"nothing works {'' if in_place else 'other than '}in place")
    if layout is not None:
        candidates = keep(lambda e: e.destination.layout == layout, f"nothing makes {layout}")
    if dtype is not None:
        candidates = keep(lambda e: _stored(e.destination) == dtype, f"nothing makes {numpy.dtype(dtype)}")
    if out is not None and not in_place:
        candidates = keep(lambda e: _fits(e.destination, out, "out"), f"nothing makes out, {_seen(out)}")
    best = min(_preference(export, image) for export in candidates)
    candidates = [export for export in candidates if _preference(export, image) == best]
    if len(candidates) > 1:
        choices = "\n  ".join(map(_in_short, candidates))
        raise ValueError(f"{operation} makes several forms of this image; name its layout or dtype:\n  {choices}")
    return candidates[0].name


def convert(image, operation, *, variant="", layout=None, dtype=None, out=None, **settings):
    """Converts an image by an operation such as "RGBToHLS", and returns the result.

    image: an array of shape (height, width) or (height, width, channels), or a sequence of such arrays where the
        operation reads planes. Its type and channels tell which of the operation's exports is called. It is not copied.
    variant: "709CSC", "709HDTV", "Rev", "Filter" or "Interlace", where a name has one
    layout, dtype: of the result ("C3", "P2", numpy.uint16, or bool for bits), where the operation makes several; at
        first the image's own
    out: arrays for the result, in place of new ones; the image itself for an operation in place
    settings: the operation's further arguments (twist=..., levels=8), which zimcc.describe() tells
    """
    name = find(image, operation, variant=variant, layout=layout, dtype=dtype, out=out)
    if out is not None and not catalogue()[name].in_place:
        settings["out"] = out
    return function_of(name)(image, **settings)
