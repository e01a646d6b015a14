"""What abidw tells of the shared libraries, and what it told when docs/abi was written.

More than names and layouts: what functions return, and what becomes of the types that they name. The libraries are built in a
folder of their own, with debugging information.
"""
import lzma
import os
import pathlib
import shutil
import subprocess
import sys

TREE = pathlib.Path(__file__).resolve().parents[2]
HEADERS = [TREE / folder for folder in ("inc", "platform/base/inc", "platform/i18n/inc")]
LIBRARIES = ("vq95FBSB", "vq95FINB", "vq95FtmB")
ABIDW = ["abidw", "--drop-private-types", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-elf-needed"]
ONLY_LIBRARIES = [f"-DVQTM_{what}=OFF" for what in ("BUILD_TESTS", "BUILD_TOOLS", "BUILD_EXAMPLES", "INSTALL")]
SKIPPED = 77


def baseline_of(library, target):
    return TREE / f"docs/abi/{target}/{library}.abi.xz"


def quietly(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stdout}")


def described(cmake, folder, definitions):
    """Builds the libraries; the file that abidw wrote of each."""
    if not shutil.which("abidiff"):
        print("SKIPPED: abidiff is missing (abigail-tools), so that the libraries' types are not compared with docs/abi")
        sys.exit(SKIPPED)
    quietly(cmake, "-S", TREE, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g",
            *ONLY_LIBRARIES, *definitions)
    quietly(cmake, "--build", folder, "-j", str(os.cpu_count()), "--target", *LIBRARIES)
    headers = [word for header in HEADERS for word in ("--headers-dir", header)]
    for library in LIBRARIES:
        file = pathlib.Path(folder) / f"{library}.abi"
        quietly(*ABIDW, *headers, "--out-file", file, file.parent / f"lib/lib{library}.so")
        yield library, file


def update(target, cmake, folder, *definitions):
    for library, file in described(cmake, folder, definitions):
        baseline_of(library, target).parent.mkdir(exist_ok=True)
        description = file.read_bytes().replace(f"{TREE}/".encode(), b"")
        baseline_of(library, target).write_bytes(lzma.compress(description, preset=9 | lzma.PRESET_EXTREME))


def faults(target, cmake, folder, *definitions):
    for library, file in described(cmake, folder, definitions):
        before = file.with_suffix(".before.abi")
        before.write_bytes(lzma.decompress(baseline_of(library, target).read_bytes()))
        done = subprocess.run(["abidiff", "--no-show-locs", before, file], capture_output=True, text=True)
        if done.returncode != 0:
            yield f"{library}:\n{done.stdout}{done.stderr}"
