"""Builds the package's native part with CMake; pyproject.toml has the rest.

KXSCENES_BUILD names a build folder to use, which is configured already or is to be; else one of pip's own serves.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent


class CMakeBuild(build_ext):
    def build_extension(self, extension):
        folder = pathlib.Path(os.environ.get("KXSCENES_BUILD", self.build_temp)).resolve()
        if not (folder / "CMakeCache.txt").exists():
            python = f"-DPython_EXECUTABLE={sys.executable}"
            subprocess.run(["cmake", "--preset", "python", "-B", folder, python], cwd=ROOT, check=True)
        subprocess.run(["cmake", "--build", folder, "--target", "python_native"], check=True)
        target = pathlib.Path(self.get_ext_fullpath(extension.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(folder / "python" / "kxscenes" / target.name, target)
        # Under the names that the native part asks for.
        for library in ("libKxSceneDetect2.so.0", "libkxscenes.so.0"):
            shutil.copy(folder / "bin" / library, target.parent)


version = re.search(r"VERSION (\d+\.\d+\.\d+) LANGUAGES", (ROOT / "CMakeLists.txt").read_text()).group(1)
setup(version=version, ext_modules=[Extension("kxscenes._native", [])], cmdclass={"build_ext": CMakeBuild})
