"""Functions that call the library's exports on NumPy arrays."""

import ctypes
import functools
import inspect
import operator

import numpy

from zimcc import _arrays
from zimcc._description import Required, catalogue, docstring
from zimcc._library import Region, Size, library
from zimcc._results import settle

_C_TYPES = {
    "8u": ctypes.c_uint8,
    "8s": ctypes.c_int8,
    "16u": ctypes.c_uint16,
    "16s": ctypes.c_int16,
    "32s": ctypes.c_int32,
    "32f": ctypes.c_float,
    "64f": ctypes.c_double,
}

# Slices other than the first reach for rows above their own, of which an array knows nothing.
_SLICES_WITHIN = {"top": 1, "whole": 21}
# Here the second plane of the result moves on by the step of the third, and the other way round.
_EXCHANGES_STEPS = "zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R"


def number(argument, value):
    """A number as the library takes it: words become numbers, and what does not fit is refused."""
    if argument.words and isinstance(value, str):
        words = [word.lower() for word in argument.words]
        if value.lower() not in words:
            raise ValueError(f"{argument.name} is one of {', '.join(argument.words)}, not {value!r}")
        return words.index(value.lower())
    if argument.name == "layout":
        value = _SLICES_WITHIN.get(value, value)
        if value not in _SLICES_WITHIN.values():
            raise ValueError(f"layout is 1 (the top slice) or 21 (the whole image), not {value!r}")
    if argument.dtype.kind == "f":
        return float(value)
    value = operator.index(value) if not isinstance(value, float) or not value.is_integer() else int(value)
    limits = numpy.iinfo(argument.dtype)
    if not limits.min <= value <= limits.max:
        raise ValueError(f"{argument.name} is a number from {limits.min} to {limits.max}, not {value}")
    return value


def numbers(argument, values):
    """Numbers as the library takes them, or None for its own."""
    if values is None and argument.may_be_null:
        return None
    array = numpy.ascontiguousarray(values, argument.dtype)
    if array.size != len(argument.example):
        raise ValueError(f"{argument.name} has {len(argument.example)} numbers, not {array.size}")
    return array


def _side_types(side):
    if side.pointer_array:
        steps = {"none": [], "one": [ctypes.c_int32], "perPlane": [ctypes.c_void_p]}[side.steps]
        return [ctypes.c_void_p, *steps]
    each = [ctypes.c_void_p] if side.steps == "none" else [ctypes.c_void_p, ctypes.c_int32]
    return each * len(side.planes)


def _side_arguments(side, arrays, steps):
    pointers = [array.ctypes.data for array in arrays]
    if not side.pointer_array:
        if side.steps == "none":
            return pointers
        return [argument for plane in zip(pointers, steps) for argument in plane]
    arguments = [(ctypes.c_void_p * len(pointers))(*pointers)]
    if side.steps == "one":
        arguments.append(steps[0])
    elif side.steps == "perPlane":
        arguments.append((ctypes.c_int32 * len(steps))(*steps))
    return arguments


def _prototype(export):
    """The library's function, with the types of its arguments."""
    function = getattr(library, export.name)
    types = []
    if export.takes_region:
        types += [ctypes.c_void_p, Region, Size, ctypes.c_int32]
    elif not export.in_place:
        types += _side_types(export.source)
    types += _side_types(export.destination)

    def further(ahead_of_size):
        return [
            ctypes.c_void_p if argument.array else _C_TYPES[argument.type]
            for argument in export.further
            if argument.ahead_of_size == ahead_of_size
        ]

    types += further(True)
    if not export.takes_region:
        types.append(Size)
    types += further(False)
    if export.scratch:
        types += [ctypes.c_void_p, ctypes.c_int32]
    function.argtypes = types
    function.restype = ctypes.c_int32
    return function


def _region(roi, height, width):
    """A region inside of the image."""
    if roi is None:
        return Region(0, 0, width, height)
    x, y, columns, rows = (operator.index(number) for number in roi)
    if x < 0 or y < 0 or columns < 1 or rows < 1 or x + columns > width or y + rows > height:
        raise ValueError(f"roi {roi} does not lie inside of the image of {width} x {height} (x, y, width, height)")
    return Region(x, y, columns, rows)


def _signature(export):
    parameter = inspect.Parameter
    empty = parameter.empty
    parameters = [parameter("image", parameter.POSITIONAL_ONLY)]
    # What must be given comes first.
    for argument in sorted(export.further, key=lambda a: a.default is not Required):
        default = empty if argument.default is Required else argument.default
        parameters.append(parameter(argument.name, parameter.POSITIONAL_OR_KEYWORD, default=default))
    if export.takes_region:
        parameters.append(parameter("roi", parameter.KEYWORD_ONLY, default=None))
    if not export.in_place:
        parameters.append(parameter("out", parameter.KEYWORD_ONLY, default=None))
    return inspect.Signature(parameters)


def _allocate(export, sources, height, width, values):
    side = export.destination
    if side.bitmap:
        return [numpy.zeros(_arrays.bitmap_shape(height, width, values["dstBitOffset"]), side.dtype)]
    arrays = _arrays.allocate(side, height, width)
    # A fourth sample that is left alone is that of the image.
    source = export.source
    if side.layout == source.layout == "AC4" and side.dtype == source.dtype:
        arrays[0][..., 3] = sources[0][..., 3]
    return arrays


def _checked_out(export, out, height, width, values):
    side = export.destination
    arrays = _arrays.planes_of(side, out, "out", writeable=True)
    if side.bitmap:
        wanted = _arrays.bitmap_shape(height, width, values["dstBitOffset"])
        if arrays[0].dtype != side.dtype or arrays[0].shape != wanted:
            raise ValueError(f"out has to be of shape {wanted} and {side.dtype.name}, not {arrays[0].shape}")
        return arrays
    wrong = _arrays.mismatch(side, arrays, "out", height, width)
    if wrong:
        raise wrong
    return arrays


def _call(export, signature, function, /, *positional, **named):
    given = signature.bind(*positional, **named)
    given.apply_defaults()
    values = {}
    for argument in export.further:
        convert = numbers if argument.array else number
        values[argument.name] = convert(argument, given.arguments[argument.name])

    source = export.source
    sources = _arrays.planes_of(source, given.arguments["image"], "image", writeable=export.in_place)
    height, width = _arrays.extent_of(source, sources, "image")
    wrong = _arrays.mismatch(source, sources, "image", height, width)
    if wrong:
        raise wrong
    source_steps = _arrays.steps_of(source, sources, "image")

    arguments = []
    size = Size(width, height)
    if export.takes_region:
        region = _region(given.arguments["roi"], height, width)
        arguments += [sources[0].ctypes.data, region, size, source_steps[0]]
        height, width = region.height, region.width
    elif not export.in_place:
        arguments += _side_arguments(source, sources, source_steps)

    if export.in_place:
        arguments += _side_arguments(source, sources, source_steps)
        result = given.arguments["image"]
    else:
        destination = export.destination
        out = given.arguments["out"]
        if out is None:
            destinations = _allocate(export, sources, height, width, values)
            result = destinations[0] if len(destinations) == 1 else tuple(destinations)
        else:
            destinations = _checked_out(export, out, height, width, values)
            _arrays.refuse_overlap(sources, destinations, "out")
            result = out
        steps = _arrays.steps_of(destination, destinations, "out")
        if export.name == _EXCHANGES_STEPS and steps[1] != steps[2]:
            raise ValueError("out[1] and out[2] have to have the same distance between rows")
        arguments += _side_arguments(destination, destinations, steps)

    def further(ahead_of_size):
        for argument in export.further:
            if argument.ahead_of_size == ahead_of_size:
                value = values[argument.name]
                yield value.ctypes.data if argument.array and value is not None else value

    arguments += further(True)
    if not export.takes_region:
        arguments.append(size)
    arguments += further(False)
    if export.scratch:
        scratch = numpy.empty((export.scratch["rows"], width + export.scratch["margin"]), source.dtype)
        arguments += [scratch.ctypes.data, scratch.strides[0]]
    settle(export.name, function(*arguments))
    return result


@functools.lru_cache(maxsize=None)
def function_of(name):
    """The Python function for an export; AttributeError if there is none."""
    export = catalogue().get(name)
    if export is None:
        raise AttributeError(f"the library has no export {name!r}")
    signature = _signature(export)
    prototype = _prototype(export)

    def function(*positional, **named):
        return _call(export, signature, prototype, *positional, **named)

    function.__name__ = function.__qualname__ = name
    function.__module__ = "zimcc"
    function.__doc__ = docstring(export)
    function.__signature__ = signature
    function.description = export
    return function
