"""Builds and installs the busdecode Python module from this repository:

    pip install --no-build-isolation ./python

The module is built by the repository's CMake project (option BUSDECODE_PYTHON)
with the pybind11, compiler and CMake of the system, so nothing is fetched.
Extra CMake arguments may be given in the CMAKE_ARGS environment variable.
"""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import sysconfig

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent.parent


def project_version():
    text = (ROOT / "CMakeLists.txt").read_text()
    return re.search(r"project\(busdecode VERSION ([0-9.]+)", text).group(1)


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        build_dir = pathlib.Path(self.build_temp).resolve() / "cmake"
        module_dir = build_dir / "module"
        generator = ["-G", "Ninja"] if shutil.which("ninja") else []
        subprocess.run(
            ["cmake", "-S", str(ROOT), "-B", str(build_dir), *generator,
             "-DCMAKE_BUILD_TYPE=Release", "-DBUSDECODE_PYTHON=ON", "-DBUSDECODE_TOOLS=OFF",
             "-DBUSDECODE_TESTS=OFF", f"-DPython3_EXECUTABLE={sys.executable}",
             f"-DBUSDECODE_PYTHON_OUTPUT_DIR={module_dir}", *shlex.split(os.environ.get("CMAKE_ARGS", ""))],
            check=True)
        subprocess.run(["cmake", "--build", str(build_dir), "--target", "busdecode_python",
                        "--parallel", str(os.cpu_count() or 1)], check=True)
        built = module_dir / ("busdecode" + sysconfig.get_config_var("EXT_SUFFIX"))
        target = pathlib.Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(built, target)


setup(
    name="busdecode",
    version=project_version(),
    description="Protocol decoders for captured bus and link payloads",
    ext_modules=[Extension("busdecode", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    python_requires=">=3.8",
    zip_safe=False,
)
