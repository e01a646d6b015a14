#!/usr/bin/env python3
"""abi_test.py [--update] TARGET CMAKE BUILD [-DNAME=VALUE...]: functions and types of the shared libraries are those of docs/abi.

More than names and layouts: what functions return, and what becomes of the types that they name. The libraries are built in BUILD
with debugging information and compared, by abidiff, with what abidw wrote of them for TARGET (native or linux32). With --update that is written
anew.
"""
import lzma
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

SKIPPED = 77
TREE = pathlib.Path(__file__).resolve().parent.parent
HEADERS = [TREE / folder for folder in ("inc", "platform/base/inc", "platform/i18n/inc")]
LIBRARIES = ("vq95FBSB", "vq95FINB", "vq95FtmB")
ABIDW = ["abidw", "--drop-private-types", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-elf-needed"]
ONLY_LIBRARIES = [f"-DVQTM_{what}=OFF" for what in ("BUILD_TESTS", "BUILD_TOOLS", "BUILD_EXAMPLES", "INSTALL")]


def baseline_of(library):
    return TREE / f"docs/abi/{TARGET}/{library}.abi.xz"


def quietly(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stdout}")


def build(cmake, definitions):
    quietly(cmake, "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g",
            *ONLY_LIBRARIES, *definitions)
    quietly(cmake, "--build", BUILD, "-j", str(os.cpu_count()), "--target", *LIBRARIES)


def describe(library):
    """What abidw tells of the library that was built."""
    description = BUILD / f"{library}.abi"
    headers = [word for folder in HEADERS for word in ("--headers-dir", folder)]
    quietly(*ABIDW, *headers, "--out-file", description, BUILD / f"lib/lib{library}.so")
    return description


class Abi(unittest.TestCase):
    def test_is_that_of_the_baseline(self):
        for library in LIBRARIES:
            with self.subTest(library):
                before = BUILD / f"{library}.before.abi"
                before.write_bytes(lzma.decompress(baseline_of(library).read_bytes()))
                done = subprocess.run(["abidiff", "--no-show-locs", before, describe(library)], capture_output=True, text=True)
                self.assertEqual(done.returncode, 0, f"{library} on {TARGET}:\n{done.stdout}{done.stderr}")


if __name__ == "__main__":
    arguments = [argument for argument in sys.argv[1:] if argument != "--update"]
    TARGET, BUILD = arguments[0], pathlib.Path(arguments[2])
    if not shutil.which("abidiff"):
        print("SKIPPED: abidiff is missing (abigail-tools), so that the libraries' types are not compared with docs/abi")
        sys.exit(SKIPPED)
    build(arguments[1], arguments[3:])
    if "--update" in sys.argv:
        for library in LIBRARIES:
            baseline_of(library).parent.mkdir(exist_ok=True)
            baseline_of(library).write_bytes(lzma.compress(describe(library).read_bytes(), preset=9 | lzma.PRESET_EXTREME))
    else:
        unittest.main(argv=sys.argv[:1], verbosity=2)
