"""Which build of the library is loaded, and from where."""

import os
import pathlib
import subprocess
import sys

import numpy
import pytest
import zimcc

FOLDER = pathlib.Path(os.environ["ZIMCC_TOOL"]).parent.parent / "lib"
NO_AVX2 = {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2"}


def target(**environment):
    """The target of the build that another process loads, or the end of what it complains."""
    code = "import zimcc; print(zimcc.version().target)"
    process = subprocess.run(
        [sys.executable, "-c", code], env={**os.environ, **environment}, capture_output=True, text=True, check=False
    )
    return process.stdout.strip() or process.stderr.strip().splitlines()[-1]


def tool_target(**environment):
    said = subprocess.run(
        [os.environ["ZIMCC_TOOL"], "version"],
        env={**os.environ, **environment},
        capture_output=True,
        text=True,
        check=True,
    )
    return dict(line.split(maxsplit=1) for line in said.stdout.splitlines() if line)["target"].strip()


def test_the_loader_s_choice_of_builds():
    assert target() == tool_target() == zimcc.version().target
    assert target(**NO_AVX2) == tool_target(**NO_AVX2) == "mx"


def test_asked_for():
    assert target(ZIMCC_LIBRARY=str(FOLDER)) == zimcc.version().target
    assert target(ZIMCC_LIBRARY=str(FOLDER), **NO_AVX2) == "mx"
    assert target(ZIMCC_LIBRARY=str(FOLDER / "libzimcc.so.7")) == "mx"
    assert "absent" in target(ZIMCC_LIBRARY="/absent/libzimcc.so.7")


def test_threads():
    before = zimcc.num_threads()
    zimcc.set_num_threads(3)
    assert zimcc.num_threads() == 3
    zimcc.set_num_threads(0)
    assert zimcc.num_threads() == before


def test_example(tmp_path):
    image = pytest.importorskip("PIL.Image")
    root = pathlib.Path(__file__).parents[3]
    example = [sys.executable, str(root / "bindings/python/examples/convert_png.py"), str(root / "examples/photo.png")]
    picture = tmp_path / "hls.png"
    subprocess.run([*example, str(picture), "RGBToHLS"], stdout=subprocess.DEVNULL, check=True)
    photo = numpy.asarray(image.open(root / "examples/photo.png").convert("RGB"))
    assert (numpy.asarray(image.open(picture)) == zimcc.convert(photo, "RGBToHLS")).all()
    wrong = subprocess.run([*example, str(picture), "RGBToHSL"], capture_output=True, text=True, check=False)
    assert wrong.returncode and "near are" in wrong.stderr
