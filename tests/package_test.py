#!/usr/bin/env python3
"""package_test.py CMAKE SOURCES BUILD: other projects can use the libraries in each way that is offered.

The build is installed below a folder with a blank in its name, then moved. Programs that call all three libraries are built against it
by find_package and by pkg-config, shared and static, and against the sources by add_subdirectory.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

CMAKE, SOURCES, BUILD = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])

PROGRAM = """
#include <vqbase.h>
#include <vqlanguagecontext.h>
#include <vqstring.h>
int main() {
    unsigned char disk[4];
    long value = 42;
    LongStore(disk, &value, 2, 1);
    const VqString text("text");
    return disk[3] == 42 && VqLanguageContext::QueryCodeSet(1) != nullptr && text.Len() == 4 ? 0 : 1;
}
"""

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(consumer CXX)
@FIND@
foreach(kind IN ITEMS typelib @STATIC@)
  add_executable(with_${kind} main.cpp)
  target_link_libraries(with_${kind} PRIVATE vq::${kind})
endforeach()
"""


def run(*command, **options):
    result = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if result.returncode:
        raise AssertionError(f"{' '.join(map(str, command))}\n{result.stdout}")
    return result.stdout


class Consumers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="vqtm package "))
        run(CMAKE, "--install", BUILD, "--prefix", cls.folder / "first")
        cls.prefix = (cls.folder / "first").rename(cls.folder / "moved")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def build(self, name, find, static, *options):
        source = self.folder / name
        source.mkdir()
        (source / "main.cpp").write_text(PROGRAM)
        (source / "CMakeLists.txt").write_text(PROJECT.replace("@FIND@", find).replace("@STATIC@", static))
        run(CMAKE, "-G", "Ninja", "-S", source, "-B", source / "build", *options)
        run(CMAKE, "--build", source / "build", "-j2")
        return source / "build"

    def test_find_package(self):
        built = self.build("by package", "find_package(vqtm 9.5 REQUIRED)", "typelib_static", f"-DCMAKE_PREFIX_PATH={self.prefix}")
        run(built / "with_typelib")
        run(built / "with_typelib_static")

    def test_add_subdirectory(self):
        add = f'add_subdirectory("{SOURCES}" vqtm)'
        built = self.build("by folder", add, "", "-DCMAKE_CXX_FLAGS=-O0")
        run(built / "with_typelib")
        self.assertFalse(list(built.rglob("vqtm_tests*")), "tests are built inside another project")

    @unittest.skipUnless(shutil.which("pkg-config"), "pkg-config is missing")
    def test_pkg_config(self):
        source = self.folder / "main.cpp"
        source.write_text(PROGRAM)
        libraries = next(self.prefix.rglob("vqtm.pc")).parent
        environment = {**os.environ, "PKG_CONFIG_PATH": str(libraries)}
        for name, ask, link in (("shared", "", ""), ("static", "--static", "-static")):
            command = f'eval g++ -std=c++20 {link} main.cpp -o {name} $(pkg-config {ask} --cflags --libs vqtm)'
            run("sh", "-c", command, cwd=self.folder, env=environment)
            run(self.folder / name, env={**environment, "LD_LIBRARY_PATH": str(libraries.parent)})

    def test_only_the_product_is_installed(self):
        names = {path.name for path in self.prefix.rglob("*") if path.is_file()}
        self.assertFalse([name for name in names if "test" in name or "gtest" in name or "replay" in name])
        self.assertTrue({"vqtm.pc", "vqtmConfig.cmake", "vqbase.h", "vqstring.h"} <= names, sorted(names))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
