"""Arrays as the library sees them: addresses of first samples, and steps in bytes from row to row.

A view passes without a copy as long as the pixels of a row lie side by side: sub-rectangles, images upside down, one
row repeated. Whatever would make the library touch memory outside of an array is refused here.
"""

import numpy

# The library computes offsets of rows in 32 bits.
_MOST_BYTES = 2**31 - 1


def planes_of(side, image, who, writeable=False):
    """The arrays of a side, one for each plane."""
    count = len(side.planes)
    if count == 1:
        arrays = [image]
    elif isinstance(image, (tuple, list)) or (isinstance(image, numpy.ndarray) and image.ndim == 3):
        arrays = list(image)
    else:
        raise TypeError(f"{who} has to be {count} arrays ({side}), not {type(image).__name__}")
    if len(arrays) != count:
        raise ValueError(f"{who} has to be {count} arrays ({side}), not {len(arrays)}")
    for index, array in enumerate(arrays):
        if not isinstance(array, numpy.ndarray):
            if writeable:
                raise TypeError(f"{name_of(side, who, index)} has to be a NumPy array, not {type(array).__name__}")
            arrays[index] = numpy.asarray(array)
        elif writeable and not array.flags.writeable:
            raise ValueError(f"{name_of(side, who, index)} is read-only")
    return arrays


def name_of(side, who, index):
    """The words for one plane in a message."""
    if len(side.planes) == 1:
        return who
    contents = side.contents(index)
    return f"{who}[{index}]" + (f" ({contents})" if contents else "")


def extent_of(side, arrays, who):
    """Height and width of an image, which its first plane tells."""
    wanted = 2 if side.planes[0].samples == 1 else 3
    shape = arrays[0].shape
    if len(shape) != wanted:
        form = "(height, width)" if wanted == 2 else f"(height, width, {side.planes[0].samples})"
        raise ValueError(f"{name_of(side, who, 0)} has to be of shape {form} ({side}), not {shape}")
    return shape[:2]


def bitmap_shape(height, width, bit_offset):
    """Shape of an array for rows of bits that start at a bit of their first byte."""
    return height, ((bit_offset & 7) + width + 7) // 8


def mismatch(side, arrays, who, height, width):
    """What is wrong with type and shape of a side, as an exception; None if nothing is."""
    for index, (plane, array) in enumerate(zip(side.planes, arrays)):
        if array.dtype != side.dtype:
            return TypeError(f"{name_of(side, who, index)} has to be {side.dtype.name} ({side}), not {array.dtype}")
        least, most = plane.shape(height, width, room=False), plane.shape(height, width)
        fits = array.ndim == len(most) and all(low <= n <= high for low, n, high in zip(least, array.shape, most))
        if not fits or (side.steps == "none" and array.shape != least):
            wanted = least if side.steps == "none" else most
            return ValueError(f"{name_of(side, who, index)} has to be of shape {wanted} ({side}), not {array.shape}")
    return None


def step_of(array, who):
    """The distance between rows in bytes, once it is clear that the library may use it."""
    rows, groups = array.shape[:2]
    item = array.itemsize
    pixel = item * (array.shape[2] if array.ndim == 3 else 1)
    if not array.size:
        return groups * pixel
    if (groups > 1 and array.strides[1] != pixel) or (array.ndim == 3 and array.strides[2] != item):
        raise ValueError(
            f"{who} has strides {array.strides}: the samples of a row have to lie side by side "
            "(numpy.ascontiguousarray makes a copy in which they do)"
        )
    step = array.strides[0] if rows > 1 else groups * pixel
    if step % item:
        raise ValueError(f"{who} has rows {step} bytes apart, which is no multiple of its samples' {item} bytes")
    if abs(step) * rows > _MOST_BYTES or groups * pixel > _MOST_BYTES or rows > _MOST_BYTES:
        raise ValueError(f"{who} spans more than {_MOST_BYTES} bytes: convert it in bands of rows")
    return step


def steps_of(side, arrays, who):
    """The steps of all planes."""
    steps = [step_of(array, name_of(side, who, index)) for index, array in enumerate(arrays)]
    if side.steps == "one" and side.pointer_array and len(set(steps)) > 1:
        raise ValueError(f"{who} has planes with rows {steps} bytes apart, but takes one distance for all of them")
    if side.steps == "none" and not all(array.flags.c_contiguous for array in arrays):
        raise ValueError(f"{who} has to be without gaps between rows (numpy.ascontiguousarray makes such a copy)")
    return steps


def allocate(side, height, width):
    """Arrays of zeros for a result."""
    room = side.steps != "none"
    return [numpy.zeros(plane.shape(height, width, room), side.dtype) for plane in side.planes]


def refuse_overlap(sources, destinations, who):
    """What is written must not be read any more."""
    for source in sources:
        for destination in destinations:
            if numpy.may_share_memory(source, destination) and numpy.shares_memory(source, destination):
                raise ValueError(f"{who} shares memory with the image that is converted")
