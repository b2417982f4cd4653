"""What arrays may be: views without a copy, and clear words for what the library cannot take."""

import numpy
import pytest
import zimcc

RANDOM = numpy.random.default_rng(11)
IMAGE = RANDOM.integers(0, 256, (40, 64, 3), numpy.uint8)
WIDE = RANDOM.integers(0, 65536, (40, 64, 3), numpy.uint16)
GRAY = IMAGE[..., 0].copy()
SEPIA = [0.393, 0.769, 0.189, 0, 0.349, 0.686, 0.168, 0, 0.272, 0.534, 0.131, 0]


@pytest.mark.parametrize("image", [IMAGE, WIDE], ids=["uint8", "uint16"])
@pytest.mark.parametrize(
    "view",
    [
        lambda image: image[5:30, 7:44],
        lambda image: image[::-1],
        lambda image: image[30:5:-3, 7:8],
        lambda image: numpy.broadcast_to(image[3], image.shape),
        lambda image: image[9:10],
        lambda image: image[::-1][:1],
    ],
)
def test_views_give_what_their_copies_give(image, view):
    source = view(image)
    expected = zimcc.convert(numpy.ascontiguousarray(source), "RGBToHLS")
    canvas = numpy.zeros((100, 100, 3), image.dtype)
    out = canvas[60:10:-1, 20:][: source.shape[0], : source.shape[1]]
    assert (zimcc.convert(source, "RGBToHLS") == expected).all()
    assert zimcc.convert(source, "RGBToHLS", out=out) is out
    assert (out == expected).all()
    out[...] = 0
    assert not canvas.any()


def test_in_place_on_part_of_an_image():
    image = IMAGE.copy()
    part = image[4:20, 10:30]
    assert zimcc.zimiColorTwist32f_8u_C3IR(part, SEPIA) is part
    expected = IMAGE.copy()
    expected[4:20, 10:30] = zimcc.zimiColorTwist32f_8u_C3R(IMAGE[4:20, 10:30], SEPIA)
    assert (image == expected).all()


def test_planes_of_one_array_and_of_several():
    planes = IMAGE.transpose(2, 0, 1).copy()
    together = zimcc.zimiRGBToYCbCr_8u_P3R(planes)
    assert isinstance(together, tuple)
    for a, b in zip(together, zimcc.zimiRGBToYCbCr_8u_P3R(list(planes[:, ::-1]))):
        assert (a == b[::-1]).all()
    out = numpy.zeros_like(planes)
    assert zimcc.zimiRGBToYCbCr_8u_P3R(planes, out=out) is out
    assert (out == together).all()


def test_alpha_of_a_new_result_is_that_of_the_image():
    image = numpy.dstack([IMAGE, GRAY])
    result = zimcc.convert(image, "RGBToHLS")
    assert (result[..., 3] == GRAY).all()
    assert (result[..., :3] == zimcc.convert(IMAGE, "RGBToHLS")).all()
    out = numpy.full_like(image, 9)
    zimcc.zimiRGBToHLS_8u_AC4R(image, out=out)
    assert (out[..., 3] == 9).all()


def test_bitmap_from_any_bit_on():
    bits = zimcc.zimiReduceBits_8u1u_C1R(GRAY, "none", threshold=99)
    assert (numpy.unpackbits(bits, axis=1) == (GRAY > 99)).all()
    moved = zimcc.zimiReduceBits_8u1u_C1R(GRAY, "none", threshold=99, dstBitOffset=5)
    assert moved.shape == (40, 9)
    assert (numpy.unpackbits(moved, axis=1)[:, 5:69] == (GRAY > 99)).all()


def test_part_of_a_mosaic():
    whole = zimcc.zimiCFAToRGB_8u_C1C3R(GRAY, "GBRG")
    assert (zimcc.zimiCFAToRGB_8u_C1C3R(GRAY, 2, roi=(5, 3, 20, 11)) == whole[3:14, 5:25]).all()


def test_own_values_of_the_operation():
    assert (zimcc.zimiColorToGray_8u_C3C1R(IMAGE) == zimcc.zimiRGBToGray_8u_C3C1R(IMAGE)).all()
    gold = zimcc.zimiColorToGray_8u_C3C1R(IMAGE, coeffs=numpy.array([1, 0, 0]))
    assert (gold == IMAGE[..., 0]).all()


def gray(*arguments, **named):
    return lambda: zimcc.zimiRGBToGray_8u_C3C1R(*arguments, **named)


READ_ONLY = numpy.zeros((40, 64), numpy.uint8)
READ_ONLY.flags.writeable = False
SHARED = RANDOM.integers(0, 256, (40, 64, 4), numpy.uint8)
ODD = numpy.ndarray((8, 5, 3), numpy.uint16, bytes(8 * 31), strides=(31, 6, 2))
Y, C = numpy.zeros((8, 8), numpy.uint8), numpy.zeros((4, 4, 2), numpy.uint8)
UNLIKE = [numpy.zeros((8, 8), numpy.uint8), numpy.zeros((4, 4), numpy.uint8), numpy.zeros((4, 5), numpy.uint8)[:, :4]]
REFUSED = [
    (TypeError, "image has to be uint8 .*not float64", gray(IMAGE / 255)),
    (TypeError, "image has to be uint16 .*not >u2", lambda: zimcc.zimiRGBToHLS_16u_C3R(WIDE.astype(">u2"))),
    (ValueError, r"shape \(height, width, 3\)", gray(GRAY)),
    (ValueError, r"shape \(40, 64, 3\)", gray(SHARED)),
    (ValueError, "side by side", gray(IMAGE[:, ::-1])),
    (ValueError, "side by side", gray(SHARED[..., :3])),
    (ValueError, "side by side", gray(IMAGE[..., ::-1])),
    (ValueError, "no multiple of its samples' 2 bytes", lambda: zimcc.zimiRGBToHLS_16u_C3R(ODD)),
    (ValueError, "in bands", gray(numpy.broadcast_to(IMAGE[:1], (2**31, 64, 3)))),
    (ValueError, r"out has to be of shape \(40, 64\)", gray(IMAGE, out=GRAY[:, 1:])),
    (ValueError, "out is read-only", gray(IMAGE, out=READ_ONLY)),
    (TypeError, "out has to be a NumPy array, not list", gray(IMAGE, out=[[0]])),
    (ValueError, "shares memory", lambda: zimcc.zimiRGBToHLS_8u_AC4R(SHARED[1:], out=SHARED[:-1])),
    (TypeError, "unexpected keyword argument 'levels'", gray(IMAGE, levels=2)),
    (TypeError, "'twist'", lambda: zimcc.zimiColorTwist32f_8u_C3R(IMAGE)),
    (ValueError, "twist has 12 numbers, not 3", lambda: zimcc.zimiColorTwist32f_8u_C3R(IMAGE, [1, 2, 3])),
    (ValueError, "grid is one of BGGR, RGGB", lambda: zimcc.zimiCFAToRGB_8u_C1C3R(GRAY, "RGB")),
    (ValueError, "does not lie inside", lambda: zimcc.zimiCFAToRGB_8u_C1C3R(GRAY, "RGGB", roi=(60, 0, 5, 1))),
    (
        ValueError,
        "aval is a number from 0 to 255",
        lambda: zimcc.convert((Y, C), "YCbCr420ToRGB", layout="C4", aval=256),
    ),
    (TypeError, "", lambda: zimcc.zimiReduceBits_8u_C1R(GRAY, "stucki", levels=2.5)),
    (ValueError, "layout is 1", lambda: zimcc.zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R((Y, C), layout=4)),
    (
        ValueError,
        "same distance",
        lambda: zimcc.zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R((Y, C), out=UNLIKE),
    ),
    (ValueError, "2 arrays", lambda: zimcc.zimiYCbCr420ToRGB_8u_P2C3R((Y, C, C))),
    (TypeError, "3 arrays", lambda: zimcc.zimiYCbCrToRGB_8u_P3R(Y)),
    (ValueError, r"image\[1\] \(Cb, Cr\)", lambda: zimcc.zimiYCbCr420ToRGB_8u_P2C3R((Y, C[1:]))),
    (ValueError, "one distance", lambda: zimcc.zimiYCbCrToRGB_8u_P3R((Y, Y, Y[::-1]))),
    (ValueError, "without gaps", lambda: zimcc.zimiYUV422ToRGB_8u_P3C3((Y[::2], *([Y[4:, :4]] * 2)))),
]


@pytest.mark.parametrize("kind, words, call", REFUSED, ids=[words[:30] for _, words, _ in REFUSED])
def test_refused_before_the_call(kind, words, call):
    with pytest.raises(kind, match=words) as caught:
        call()
    assert not isinstance(caught.value, zimcc.ZimccError)


@pytest.mark.parametrize(
    "result, call",
    [
        ("zimResultBadSize", gray(IMAGE[:0])),
        ("zimResultBadSize", lambda: zimcc.zimiDemosaicAHD_8u_C1C3R(GRAY[:4], "RGGB")),
        ("zimResultBadStep", lambda: zimcc.zimiGammaFwd_8u_C3R(IMAGE[::-1])),
        ("zimResultBadRange", lambda: zimcc.zimiGammaFwd_32f_C3R(IMAGE.astype(numpy.float32), vMin=1)),
        ("zimResultBadLevels", lambda: zimcc.zimiReduceBits_8u_C1R(GRAY, "none", levels=1)),
        ("zimResultBadNoise", lambda: zimcc.zimiReduceBits_8u_C1R(GRAY, "bayer", noise=101)),
        ("zimResultBadDither", lambda: zimcc.zimiReduceBits_8u1u_C1R(GRAY, "bayer")),
        ("zimResultBadArgument", lambda: zimcc.zimiCFAToRGB_8u_C1C3R(GRAY, 4)),
    ],
)
def test_errors_of_the_library(result, call):
    with pytest.raises(zimcc.ZimccError) as caught:
        call()
    assert caught.value.result == result and caught.value.code < 0


def test_warnings_of_the_library():
    with pytest.warns(zimcc.OddSizeWarning, match="zimiRGBToYUV420_8u_C3P3R") as caught:
        y, u, v = zimcc.convert(IMAGE[:39, :63], "RGBToYUV420")
    assert caught[0].filename == __file__
    assert y.shape == (39, 63) and u.shape == v.shape == (20, 32)
    assert not y[38].any() and not u[19].any()
    with pytest.warns(zimcc.NoOperationWarning):
        zimcc.convert(numpy.full((4, 4), -1, numpy.float32), "ToneMapMean")
