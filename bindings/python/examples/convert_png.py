#!/usr/bin/env python3
"""Converts a picture by any operation that makes pixels of pixels, and writes the result as a picture.

usage: convert_png.py IN OUT OPERATION [SETTING=VALUE ...]

    convert_png.py photo.png hls.png RGBToHLS
    convert_png.py photo.png sepia.png ColorTwist32f twist=.393,.769,.189,0,.349,.686,.168,0,.272,.534,.131,0
    convert_png.py photo.png dots.png ReduceBits levels=2 dither=stucki
"""

import sys

import numpy
import zimcc
from PIL import Image


def setting(text):
    """A name and its value: a word, a number, or numbers between commas."""
    name, _, value = text.partition("=")
    try:
        numbers = [float(number) for number in value.split(",")]
    except ValueError:
        return name, value
    return name, numbers[0] if len(numbers) == 1 else numbers


def main(words):
    if len(words) < 3:
        sys.exit(__doc__)
    path_in, path_out, operation, *settings = words
    image = numpy.asarray(Image.open(path_in).convert("RGB"))
    try:
        result = zimcc.convert(image, operation, **dict(map(setting, settings)))
    except (TypeError, ValueError) as error:
        sys.exit(f"{operation}: {error}")
    if isinstance(result, tuple):
        sys.exit(f"{operation} makes {len(result)} planes; add layout=C3 if it has such a form")
    Image.fromarray(result).save(path_out)
    print(f"{path_out}: {result.shape} {result.dtype}, by {zimcc.version()}")


if __name__ == "__main__":
    main(sys.argv[1:])
