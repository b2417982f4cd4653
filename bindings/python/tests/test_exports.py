"""Every export once, on random images, against the tool, which passes its arguments by other means."""

import os
import subprocess
import warnings

import numpy
import pytest
import zimcc

TOOL = os.environ["ZIMCC_TOOL"]


def random_planes(side, height, width, random):
    room = side.steps != "none"
    for plane in side.planes:
        shape = plane.shape(height, width, room)
        if side.dtype.kind == "f":
            yield random.random(shape, side.dtype)
        else:
            limits = numpy.iinfo(side.dtype)
            yield random.integers(limits.min, limits.max, shape, side.dtype, endpoint=True)


def setting(argument):
    if argument.name == "aval":
        return 77
    return argument.example if argument.array else argument.example[0]


def size(export):
    """Height and width: odd where that is allowed, save where the tool's files have whole pairs."""
    pairs = "C2" in (export.source.layout, export.destination.layout)
    return (15, 23) if export.multiple == (1, 1) and not pairs else (16, 24)


@pytest.mark.parametrize("name", zimcc.exports())
def test_agrees_with_the_tool(name, tmp_path):
    export = zimcc.describe(name)
    random = numpy.random.default_rng(7)
    height, width = size(export)
    planes = list(random_planes(export.source, height, width, random))
    settings = {argument.name: setting(argument) for argument in export.further}
    words = [f"{key}={str(value).strip('()').replace(' ', '')}" for key, value in settings.items()]
    if export.takes_region:
        settings["roi"] = (3, 2, 7, 9)
        words.append("roi=3,2,7,9")

    (tmp_path / "in.yuv").write_bytes(b"".join(plane.tobytes() for plane in planes))
    files = [str(tmp_path / "in.yuv"), str(tmp_path / "out.yuv")]
    subprocess.run([TOOL, "run", name, *files, f"size={width}x{height}", *words], check=True)

    before = [plane.copy() for plane in planes]
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", zimcc.OddSizeWarning)
        result = getattr(zimcc, name)(planes[0] if len(planes) == 1 else planes, **settings)
    if not export.in_place:
        assert all((plane == old).all() for plane, old in zip(planes, before))
    result = result if isinstance(result, (tuple, list)) else (result,)
    if export.destination.layout == export.source.layout == "AC4" and not export.in_place:
        assert (result[0][..., 3] == planes[0][..., 3]).all() or export.source.type != export.destination.type
        result[0][..., 3] = 0
    assert b"".join(plane.tobytes() for plane in result) == (tmp_path / "out.yuv").read_bytes()


def test_names_and_docstrings():
    assert len(zimcc.exports()) == 493
    assert set(zimcc.exports()) <= set(dir(zimcc))
    text = zimcc.zimiRGBToYCbCr420_8u_C3P3R.__doc__
    for words in ("(height, width, 3): R, G, B", "((height + 1) // 2, (width + 1) // 2): Cb", "OddSizeWarning"):
        assert words in text
    with pytest.raises(AttributeError, match="zimiNothing"):
        zimcc.zimiNothing
