"""Builds the wheel: the declarations out of the headers, and the shared libraries.

The libraries are those in the folder that the environment variable NUV_LIBRARY_DIR names; without it
CMake builds them from the sources around this folder, which a source distribution has in `sources`.
"""

from __future__ import annotations

import os
import shutil
import subprocess
import sys
from pathlib import Path
from typing import Any

from setuptools import setup
from setuptools.command.build_py import build_py
from setuptools.command.sdist import sdist
from setuptools.dist import Distribution
from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent
SOURCES = HERE / "sources" if (HERE / "sources").exists() else HERE.parent
#: What CMake reads to build the libraries.
SOURCE_NAMES = ("CMakeLists.txt", "LICENSE", "Nuv", "abi", "cmake", "docs/schemas")
LIBRARIES = ("NuvLinearProgramming", "NuvModel")

sys.path.insert(0, str(HERE))
import interface  # noqa: E402


def built_libraries() -> Path:
    """The folder of the libraries, which CMake may have to build first."""
    given = os.environ.get("NUV_LIBRARY_DIR")
    if given:
        return Path(given)
    build, prefix = HERE / "build/libraries", HERE / "build/prefix"
    subprocess.run(
        ["cmake", "-S", str(SOURCES), "-B", str(build), "-D", "CMAKE_BUILD_TYPE=Release",
         "-D", "BUILD_SHARED_LIBS=ON", "-D", "NUV_BUILD_MODEL=ON", "-D", "NUV_BUILD_TESTS=OFF",
         "-D", "NUV_BUILD_TOOLS=OFF", "-D", "NUV_BUILD_BENCHMARKS=OFF", "-D", "NUV_INSTALL=ON",
         "-D", f"CMAKE_INSTALL_PREFIX={prefix}", "-D", "CMAKE_INSTALL_LIBDIR=lib"], check=True)
    subprocess.run(["cmake", "--build", str(build), "--parallel", str(os.cpu_count() or 1)],
                   check=True)
    subprocess.run(["cmake", "--install", str(build)], check=True)
    return prefix / "lib"


class BuildWithLibraries(build_py):  # type: ignore[misc]
    """The package, what is made for it, and the libraries under the names that the loader knows."""

    def run(self) -> None:
        super().run()
        package = Path(self.build_lib) / "nuv"
        interface.write(SOURCES, package / "_interface.py")
        folder = built_libraries()
        (package / "lib").mkdir(exist_ok=True)
        for name in LIBRARIES:
            for file in sorted(folder.glob(f"lib{name}.so.*")):
                # The soname, lib....so.0.1, is a link to the file with the whole version.
                if file.is_symlink():
                    shutil.copyfile(file, package / "lib" / file.name)


class SourcesWithLibraries(sdist):  # type: ignore[misc]
    """The package, and the sources of the libraries."""

    def make_release_tree(self, base_dir: str, files: list[str]) -> None:
        super().make_release_tree(base_dir, files)
        for name in (*SOURCE_NAMES, "interface.py"):
            here = HERE if name == "interface.py" else SOURCES
            there = Path(base_dir) / ("." if name == "interface.py" else "sources") / name
            there.parent.mkdir(parents=True, exist_ok=True)
            if (here / name).is_dir():
                shutil.copytree(here / name, there)
            else:
                shutil.copyfile(here / name, there)


class PlatformWheel(bdist_wheel):  # type: ignore[misc]
    """Any Python 3, on this platform: nothing in it is compiled against an interpreter."""

    def get_tag(self) -> tuple[str, str, str]:
        return "py3", "none", super().get_tag()[2]


class PlatformDistribution(Distribution):  # type: ignore[misc]
    """Has libraries of one platform."""

    def has_ext_modules(self) -> bool:
        return True


options: dict[str, Any] = {"build_py": BuildWithLibraries, "bdist_wheel": PlatformWheel,
                           "sdist": SourcesWithLibraries}
setup(cmdclass=options, distclass=PlatformDistribution)
