"""Finds libzimcc and loads the build of it that is best for this processor."""

import ctypes
import os
import pathlib
import re
import subprocess

from zimcc._built import LIBRARY_FOLDER

_NAME = "libzimcc.so.7"
_CORE = "libzimcore.so.7"
_LOADER = "/lib64/ld-linux-x86-64.so.2"


class Size(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int32), ("height", ctypes.c_int32)]


class Region(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int32) for name in ("x", "y", "width", "height")]


class Version(ctypes.Structure):
    """What the loaded library says of itself."""

    _fields_ = [
        ("major", ctypes.c_int32),
        ("minor", ctypes.c_int32),
        ("build_major", ctypes.c_int32),
        ("build_minor", ctypes.c_int32),
        ("_target", ctypes.c_char * 4),
        ("_file_name", ctypes.c_char_p),
        ("_text", ctypes.c_char_p),
        ("_build_date", ctypes.c_char_p),
    ]

    target = property(lambda self: self._target.decode())
    text = property(lambda self: self._text.decode())

    def __repr__(self):
        return f"<zimcc {self.text}, built for {self.target}>"


def _levels():
    """The processor levels with builds of their own that the dynamic loader searches here, the best first."""
    try:
        said = subprocess.run([_LOADER, "--help"], capture_output=True, text=True, check=False).stdout
    except OSError:  # another C library
        return []
    return re.findall(r"^\s+(x86-64-v\d) \(supported, searched\)", said, re.MULTILINE)


def _load_from(folder):
    """Does in a folder what the loader does in the folders that it searches by itself."""
    for level in _levels():
        best = folder / "glibc-hwcaps" / level / _NAME
        if best.exists():
            return ctypes.CDLL(str(best))
    return ctypes.CDLL(str(folder / _NAME))


def _load():
    asked = os.environ.get("ZIMCC_LIBRARY")
    if asked:
        path = pathlib.Path(asked)
        return _load_from(path) if path.is_dir() else ctypes.CDLL(str(path))
    built_with = pathlib.Path(__file__).parent / LIBRARY_FOLDER
    if LIBRARY_FOLDER and (built_with / _NAME).exists():
        return _load_from(built_with)
    try:
        return ctypes.CDLL(_NAME)
    except OSError as error:
        raise ImportError(
            f"{_NAME} cannot be loaded: install it, or set ZIMCC_LIBRARY to its file or folder ({error})"
        ) from error


library = _load()
# Already loaded with the library, and found again by its name.
_core = ctypes.CDLL(_CORE)

library.zimccGetLibVersion.restype = ctypes.POINTER(Version)


def version():
    """The version record of the loaded library; its target is "mx", "v3" or "v4"."""
    return library.zimccGetLibVersion().contents


def num_threads():
    """The number of threads that an operation may use for one image."""
    return _core.ownGetNumThreads()


def set_num_threads(count):
    """Sets the number of threads for one image; below 1 the OpenMP runtime decides."""
    _core.zimSetNumThreads(ctypes.c_int(count))
