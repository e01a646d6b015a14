#!/usr/bin/env python3
"""package_test.py CMAKE SOURCES BUILD: other projects can use the libraries in each way that is offered.

The build is installed below a folder with a blank in its name, then moved. The examples, and programs that call all three libraries,
are built against it by find_package and by pkg-config, shared and static, and against the sources by add_subdirectory.
"""
import os
import pathlib
import re
import shutil
import sys
import unittest

from consumers import TemporaryFolder, build_and_run_examples, build_and_run_programs, example_tests, files, run, version_of, with_libraries

CMAKE, SOURCES, BUILD = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
VERSION = version_of(SOURCES)

C_PROGRAM = """
#include <library.h>
#include <stdio.h>
int main(void) {
    const char* description;
    _GetVqTypeMgrInfo(0, 0, &description, 0, 0);
    puts(description);
    return 0;
}
"""


class Consumers(TemporaryFolder):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        first = cls.folder / "first"
        run(CMAKE, "--install", BUILD, "--prefix", first, "--component", "Runtime")
        cls.runtime = files(first)
        cls.demo = run(first / "bin/vqtype", "demo")
        run(CMAKE, "--install", BUILD, "--prefix", first)
        cls.prefix = first.rename(cls.folder / "moved")
        named = re.findall(r"[=`]PREFIX/([\w/-]+/pkgconfig)`", (SOURCES / "README.md").read_text())
        cls.pkgconfig = next(folder for folder in map(cls.prefix.joinpath, named) if folder.exists())
        cls.libraries = cls.pkgconfig.parent
        cls.examples = cls.prefix / "share/vqtm/examples"

    def test_find_package_refuses_other_versions_and_works_with_unsigned_characters(self):
        refuse = "foreach(v 9.6 8)\n find_package(vqtm ${v} QUIET)\n if(vqtm_FOUND)\n message(FATAL_ERROR ${v})\n endif()\nendforeach()\n"
        build_and_run_programs(CMAKE, self.folder / "by package", refuse + "find_package(vqtm 9.5 REQUIRED)", "typelib typelib_static",
                               f"-DCMAKE_PREFIX_PATH={self.prefix}", "-DCMAKE_CXX_FLAGS=-funsigned-char -Wall -Wextra -Werror")

    def test_examples_by_find_package(self):
        ran = build_and_run_examples(CMAKE, self.examples, self.folder / "examples", f"-DCMAKE_PREFIX_PATH={self.prefix}")
        self.assertEqual(ran, example_tests(SOURCES / "examples"))

    def test_add_subdirectory(self):
        """A program is compiled against all libraries. Only the base library, which is soon built, is linked."""
        add = f'add_subdirectory("{SOURCES}" vqtm EXCLUDE_FROM_ALL)\nadd_library(compiled OBJECT main.cpp)\n'
        add += 'target_link_libraries(compiled PRIVATE vq::typelib)'
        build_and_run_programs(CMAKE, self.folder / "by folder", add, "base base_static", "-DCMAKE_CXX_FLAGS=-O0")
        names = {path.name for path in (self.folder / "by folder").rglob("*")}
        self.assertFalse([name for name in names if name.startswith(("vqtm_tests", "vqtype"))], "only libraries are built inside another project")

    def compile(self, compiler, source, name, ask="", link=""):
        """By pkg-config, as a shell would; the result is a program in the folder."""
        environment = {**os.environ, "PKG_CONFIG_PATH": str(self.pkgconfig)}
        command = f'eval {compiler} {link} \'"{source}"\' -o {name} $(pkg-config {ask} --cflags --libs vqtm)'
        run("sh", "-c", command, cwd=self.folder, env=environment)
        return self.folder / name

    @unittest.skipUnless(shutil.which("pkg-config"), "pkg-config is missing")
    def test_examples_by_pkg_config(self):
        for source in self.examples.glob("*.cpp"):
            run(self.compile("g++ -std=c++20", source, f"shared_{source.stem}"), self.examples, env=with_libraries(self.libraries))
            run(self.compile("g++ -std=c++20", source, f"static_{source.stem}", "--static", "-static"), self.examples)
        for source in self.examples.glob("*.c"):
            run(self.compile("gcc -std=c99", source, source.stem), env=with_libraries(self.libraries))

    @unittest.skipUnless(shutil.which("pkg-config"), "pkg-config is missing")
    def test_c_programs_link_the_entry_points(self):
        source = self.folder / "entry.c"
        source.write_text(C_PROGRAM)
        shared = self.compile("gcc -std=c99 -Wall -Wextra -Wpedantic -Werror", source, "shared_entry")
        self.assertIn(VERSION, run(shared, env=with_libraries(self.libraries)))
        self.assertIn(VERSION, run(self.compile("gcc -std=c99", source, "static_entry", "--static", "-static")))

    def test_hosts_load_the_library_by_its_path_alone(self):
        run("gcc", "-std=c99", self.examples / "host.c", "-I", self.prefix / "include/vqtm", "-o", self.folder / "host", "-ldl")
        self.assertIn(VERSION, run(self.folder / "host", self.libraries / "libvq95FtmB.so.9"))

    def test_the_runtime_alone_runs_the_workbench(self):
        self.assertIn("Indonesia", self.demo)
        foreign = {name for name in self.runtime if name.endswith((".h", ".a", ".so", ".cmake", ".pc"))}
        self.assertFalse(foreign)

    def test_only_the_product_is_installed(self):
        names = {path.name for path in self.prefix.rglob("*") if path.is_file()}
        self.assertFalse([name for name in names if "test" in name or "gtest" in name or "replay" in name])
        self.assertTrue({"vqtm.pc", "vqtmConfig.cmake", "vqbase.h", "vqstring.h"} <= names, sorted(names))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
