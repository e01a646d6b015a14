"""What the tests of installed and packaged trees share: running commands, and building programs against such a tree."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

LIBRARIES = ("vq95FBSB", "vq95FINB", "vq95FtmB")

# Calls what is there of the three libraries.
PROGRAM = """
#if __has_include(<vqtm.h>)
#include <vqtm.h>
bool Works() {
    const VqString text("\\xe9t\\xe9");
    const VqDate null = VqDate(-32768, -128, -128);
    return VqLanguageContext::QueryCodeSet(1) != nullptr && text.Len() == 3 && null.month < 0;
}
#else
#include <vqbase.h>
bool Works() { return true; }
#endif
int main() {
    unsigned char disk[4];
    long value = 42;
    LongStore(disk, &value, 2, 1);
    return disk[3] == 42 && Works() ? 0 : 1;
}
"""

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(consumer CXX)
@FIND@
foreach(library IN ITEMS @LIBRARIES@)
  add_executable(with_${library} main.cpp)
  target_link_libraries(with_${library} PRIVATE vq::${library})
endforeach()
"""


def run(*command, **options):
    """Returns what the command printed; a failure shows it."""
    result = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, **options)
    if result.returncode:
        raise AssertionError(f"{' '.join(map(str, command))}\n{result.stdout}")
    return result.stdout


def version_of(sources):
    return re.search(r"^  VERSION (.*)", (sources / "CMakeLists.txt").read_text(), re.MULTILINE)[1]


def headers_of(sources):
    return {path.name for folder in ("inc", "platform/base/inc", "platform/i18n/inc") for path in (sources / folder).glob("*.h")}


def files(root):
    """All files and links below a folder, relative to it."""
    return {path.relative_to(root).as_posix() for path in root.rglob("*") if path.is_symlink() or not path.is_dir()}


def with_libraries(folder):
    return {**os.environ, "LD_LIBRARY_PATH": str(folder)}


def build(cmake, source, folder, *options):
    run(cmake, "-G", "Ninja", "-S", source, "-B", folder, *options)
    run(cmake, "--build", folder, "-j2")
    return folder


def build_and_run_programs(cmake, source, find, libraries, *options, emulator=(), suffix=""):
    """A project that finds the libraries so, and links the same program with each of these."""
    source.mkdir()
    (source / "main.cpp").write_text(PROGRAM)
    (source / "CMakeLists.txt").write_text(PROJECT.replace("@FIND@", find).replace("@LIBRARIES@", libraries))
    build(cmake, source, source / "build", *options)
    for library in libraries.split():
        run(*emulator, source / "build" / f"with_{library}{suffix}")


def build_and_run_examples(cmake, source, folder, *options, **environment):
    """Builds the example project and runs its tests; returns the names of those that ran."""
    build(cmake, source, folder, *options)
    printed = run(pathlib.Path(cmake).with_name("ctest"), "--test-dir", folder, "--output-on-failure", **environment)
    return {line.split()[3] for line in printed.splitlines() if line.endswith("sec") and "Passed" in line}


def example_tests(source):
    """What there is to run among the examples: each source is a program."""
    return {f"example_{path.stem}" for path in source.iterdir() if path.suffix in (".c", ".cpp")}


class TemporaryFolder(unittest.TestCase):
    """A folder for the whole class, with a blank in its name."""

    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="vqtm package "))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
