"""The plain form: which export it finds, and what it says where it finds none."""

import numpy
import pytest
import zimcc

GRAY = numpy.zeros((8, 8), numpy.uint8)
RGB = numpy.zeros((8, 8, 3), numpy.uint8)
RGBA = numpy.zeros((8, 8, 4), numpy.uint8)
PAIRS = numpy.zeros((8, 8, 2), numpy.uint8)
PLANES = [GRAY] * 3
SHARED = [GRAY, GRAY[:4, :4], GRAY[:4, :4]]
TWO = [GRAY, PAIRS[:4, :4]]


@pytest.mark.parametrize(
    "name, image, operation, further",
    [
        ("zimiRGBToHLS_8u_C3R", RGB, "RGBToHLS", {}),
        ("zimiRGBToHLS_8u_C3R", RGB[:3], "RGBToHLS", {}),
        ("zimiRGBToHLS_32f_AC4R", RGBA.astype(numpy.float32), "RGBToHLS", {}),
        ("zimiRGBToGray_16s_C3C1R", RGB.astype(numpy.int16), "RGBToGray", {}),
        ("zimiRGBToYCbCr_8u_C3R", RGB, "RGBToYCbCr", {}),
        ("zimiRGBToYCbCr_8u_C3R", RGB[:3], "RGBToYCbCr", {}),
        ("zimiRGBToYCbCr_8u_C3P3R", RGB, "RGBToYCbCr", {"layout": "P3"}),
        ("zimiRGBToYCbCr_8u_P3R", PLANES, "RGBToYCbCr", {}),
        ("zimiRGBToYUV420_8u_C3P3R", RGB, "RGBToYUV420", {}),
        ("zimiRGBToYCbCr420_8u_C3P2R", RGB, "RGBToYCbCr420", {"layout": "P2"}),
        ("zimiRGBToYCbCr420_8u_C3P3R", RGB, "RGBToYCbCr420", {"out": SHARED}),
        ("zimiYCbCr420ToRGB_8u_P3C3R", SHARED, "YCbCr420ToRGB", {}),
        ("zimiYCbCr420ToRGB_8u_P2C3R", TWO, "YCbCr420ToRGB", {}),
        ("zimiYCbCr420ToRGB_8u_P2C4R", TWO, "YCbCr420ToRGB", {"layout": "C4"}),
        ("zimiYCbCr422ToRGB_8u_C2C3R", PAIRS, "YCbCr422ToRGB", {}),
        ("zimiBGRToYCbCr420_709CSC_8u_C3P2R", RGB, "BGRToYCbCr420", {"variant": "709CSC", "layout": "P2"}),
        ("zimiBGRToLab_8u_C3R", RGB, "BGRToLab", {}),
        ("zimiBGRToLab_8u16u_C3R", RGB, "BGRToLab", {"dtype": numpy.uint16}),
        ("zimiBGR565ToBGR_16u8u_C3R", GRAY.astype(numpy.uint16), "BGR565ToBGR", {}),
        ("zimiGammaFwd_8u_C3R", RGB, "GammaFwd", {}),
        ("zimiGammaFwd_8u_C3IR", RGB, "GammaFwd", {"out": RGB}),
        ("zimiColorTwist_32f_AC4R", RGBA.astype(numpy.float32), "ColorTwist", {}),
        ("zimiColorTwist_32f_C4R", RGBA.astype(numpy.float32), "ColorTwist", {"layout": "C4"}),
        ("zimiReduceBits_8u_C1R", GRAY, "ReduceBits", {}),
        ("zimiReduceBits_8u1u_C1R", GRAY, "ReduceBits", {"dtype": bool}),
        ("zimiCFAToRGB_8u_C1C3R", GRAY, "CFAToRGB", {}),
    ],
)
def test_finds_by_the_image(name, image, operation, further):
    assert zimcc.find(image, operation, **further) == name


@pytest.mark.parametrize(
    "words, image, operation, further",
    [
        ("near are .*RGBToHLS", RGB, "RGBToHSL", {}),
        (r"nothing takes the image, float64 \(8, 8, 3\)(.|\n)*zimiRGBToHLS_8u_C3R", RGB * 1.0, "RGBToHLS", {}),
        ("several forms(.|\n)*C3P2R(.|\n)*C3P3R", RGB, "RGBToYCbCr420", {}),
        ("no variant is named '601'", RGB, "RGBToHLS", {"variant": "601"}),
        ("nothing makes P4", RGB, "RGBToHLS", {"layout": "P4"}),
        ("nothing makes uint16", RGB, "RGBToHLS", {"dtype": numpy.uint16}),
        ("nothing works in place", RGB, "RGBToHLS", {"out": RGB}),
        (r"nothing makes out, uint8 \(8, 8\)", RGB, "RGBToHLS", {"out": GRAY}),
    ],
)
def test_says_what_there_is(words, image, operation, further):
    with pytest.raises(ValueError, match=words):
        zimcc.find(image, operation, **further)


def test_every_export_is_found_by_its_own_image():
    """Save the forms without steps, which do what others do."""
    missed = []
    for name in zimcc.exports():
        export = zimcc.describe(name)
        shapes = [plane.shape(16, 16) for plane in export.source.planes]
        image = [numpy.zeros(shape, export.source.dtype) for shape in shapes]
        image = image[0] if len(image) == 1 else image
        dtype = bool if export.destination.bitmap else export.destination.dtype
        wanted = {"variant": export.variant, "layout": export.destination.layout, "dtype": dtype}
        found = zimcc.find(image, export.operation, out=image if export.in_place else None, **wanted)
        if found != name:
            missed.append(name)
    assert all("none" in (zimcc.describe(name).source.steps, zimcc.describe(name).destination.steps) for name in missed)


def test_settings_and_out():
    random = numpy.random.default_rng(3).integers(0, 256, (8, 8), numpy.uint8)
    out = numpy.zeros_like(random)
    assert zimcc.convert(random, "ReduceBits", levels=2, dither="Floyd-Steinberg", out=out) is out
    assert set(numpy.unique(out)) == {0, 255}
