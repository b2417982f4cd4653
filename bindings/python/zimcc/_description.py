"""The exports as the library's catalogue describes them (exports.json, written when the package is built)."""

import dataclasses
import functools
import importlib.resources
import json
import typing

import numpy

DTYPES = {
    "1u": numpy.dtype(numpy.uint8),
    "8u": numpy.dtype(numpy.uint8),
    "8s": numpy.dtype(numpy.int8),
    "16u": numpy.dtype(numpy.uint16),
    "16s": numpy.dtype(numpy.int16),
    "32s": numpy.dtype(numpy.int32),
    "32f": numpy.dtype(numpy.float32),
    "64f": numpy.dtype(numpy.float64),
}


@dataclasses.dataclass(frozen=True)
class Plane:
    """Rows of groups of samples; each group serves `across` pixels of a row, each row `down` rows of the image."""

    samples: int
    used_samples: int
    across: int
    down: int
    whole_groups_only: bool  # an incomplete last group has no samples

    def shape(self, height, width, room=True):
        """The array's shape. With room for incomplete groups, or without where they have no samples."""
        spare = 0 if self.whole_groups_only and not room else 1
        rows = (height + spare * (self.down - 1)) // self.down
        groups = (width + spare * (self.across - 1)) // self.across
        return (rows, groups) if self.samples == 1 else (rows, groups, self.samples)


@dataclasses.dataclass(frozen=True)
class Side:
    """Source or destination."""

    type: str
    layout: str
    colours: str
    channels: tuple
    planes: tuple
    pointer_array: bool
    steps: str  # "none", "one" or "perPlane"

    dtype = property(lambda self: DTYPES[self.type])
    bitmap = property(lambda self: self.type == "1u")

    def __str__(self):
        words = [self.colours] if self.colours else []
        return " ".join([*words, self.layout, "bits" if self.bitmap else self.dtype.name])

    def contents(self, index):
        """The channels that a plane holds, as far as names tell: "Cb, Cr"."""
        plane = self.planes[index]
        if len(self.planes) == 1:
            names = self.channels if plane.samples >= 3 else ()
        elif len(self.planes) == 2:
            names = self.channels[:1] if index == 0 else self.channels[1:]
        else:
            names = self.channels[index : index + 1]
        return ", ".join(names)


class Required:
    """Stands for a default where there is none."""


@dataclasses.dataclass(frozen=True)
class Argument:
    """An argument other than images and size."""

    name: str
    type: str
    array: bool
    may_be_null: bool
    example: tuple
    words: tuple
    ahead_of_size: bool
    default: typing.Any

    dtype = property(lambda self: DTYPES[self.type])


@dataclasses.dataclass(frozen=True)
class Export:
    """One operation on images, by the name of its function in the library."""

    name: str
    operation: str
    variant: str
    family: str
    in_place: bool
    takes_region: bool
    source: Side
    destination: Side
    further: tuple
    least: tuple
    multiple: tuple
    whole: tuple
    scratch: typing.Optional[dict]


def _plane(json_plane, layout):
    if layout == "C2":  # pairs of pixels, but two samples for each pixel
        return Plane(2, 2, 1, 1, False)
    return Plane(
        json_plane["samples"],
        json_plane["usedSamples"],
        json_plane["pixelsAcross"],
        json_plane["pixelsDown"],
        json_plane["wholeGroupsOnly"],
    )


def _side(json_side):
    layout = json_side["layout"]
    return Side(
        json_side["type"],
        layout,
        json_side["colours"],
        tuple(json_side["channels"]),
        tuple(_plane(plane, layout) for plane in json_side["planes"]),
        json_side["pointerArray"],
        json_side["steps"],
    )


def _argument(json_argument):
    return Argument(
        json_argument["name"],
        json_argument["type"],
        json_argument["array"],
        json_argument["mayBeNull"],
        tuple(json_argument["example"]),
        tuple(json_argument["words"]),
        json_argument["aheadOfSize"],
        json_argument.get("default", Required),
    )


def _export(json_export):
    return Export(
        json_export["name"],
        json_export["operation"],
        json_export["variant"],
        json_export["family"],
        json_export["inPlace"],
        json_export["takesRegion"],
        _side(json_export["source"]),
        _side(json_export["destination"]),
        tuple(_argument(argument) for argument in json_export["further"]),
        tuple(json_export["least"]),
        tuple(json_export["multiple"]),
        tuple(json_export["whole"]),
        json_export.get("scratch"),
    )


@functools.lru_cache(maxsize=None)
def catalogue():
    """All exports by their names."""
    text = importlib.resources.files(__package__).joinpath("exports.json").read_text(encoding="utf-8")
    return {json_export["name"]: _export(json_export) for json_export in json.loads(text)}


# ---- Docstrings ----------------------------------------------------------------------------------------------------


def _shape_in_words(side, plane):
    def share(extent, pixels):
        if pixels == 1:
            return extent
        spare = "" if side.steps == "none" and plane.whole_groups_only else f" + {pixels - 1}"
        return f"({extent}{spare}) // {pixels}" if spare else f"{extent} // {pixels}"

    channels = "" if plane.samples == 1 else f", {plane.samples}"
    return f"({share('height', plane.down)}, {share('width', plane.across)}{channels})"


def _side_in_words(side):
    if side.bitmap:
        return ["uint8, bits from the highest on: (height, bytes)"]
    lines = []
    for index, plane in enumerate(side.planes):
        contents = side.contents(index)
        if plane.used_samples < plane.samples:
            contents += (", " if contents else "") + "fourth left alone"
        lines.append(f"{side.dtype.name} {_shape_in_words(side, plane)}{contents and ': ' + contents}")
    return lines if len(lines) == 1 else [f"{len(lines)} arrays", *("  " + line for line in lines)]


def _argument_in_words(argument):
    if argument.words:
        meaning = "one of " + ", ".join(f'"{word}"' for word in argument.words)
    elif argument.array:
        meaning = f"{len(argument.example)} numbers ({argument.dtype.name})"
    else:
        meaning = f"a number ({argument.dtype.name})"
    if argument.may_be_null:
        meaning += ", or None for the operation's own"
    return [meaning]


def docstring(export):
    """What help() shows."""
    between = "in place" if export.in_place else f"to {export.destination}"
    lines = [f"{export.source} {between} ({export.family}).", ""]

    def add(name, words):
        lines.append(f"{name}: {words[0]}")
        lines.extend(" " * 4 + word for word in words[1:])

    add("image", _side_in_words(export.source))
    for argument in export.further:
        add(argument.name, _argument_in_words(argument))
    if not export.in_place:
        add("out", _side_in_words(export.destination))
        lines.append("    allocated if not given; what the operation leaves alone is then 0")
    if export.takes_region:
        add("roi", ["(x, y, width, height) of the part to be converted, or None for the whole image"])
    lines.append("")
    least = " x ".join(str(max(extent, 1)) for extent in export.least)
    lines.append(f"Width x height from {least}" if min(export.least) else "Any size")
    if export.multiple != (1, 1):
        lines[-1] += ", in multiples of {} x {}".format(*export.multiple)
    if export.whole != (1, 1):
        lines[-1] += "; others than multiples of {} x {} give an OddSizeWarning".format(*export.whole)
    lines[-1] += "."
    return "\n".join(lines)
