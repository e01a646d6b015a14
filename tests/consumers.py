"""What the tests of installed and packaged trees share: running commands, and building programs against such a tree."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest


def run(*command, **options):
    """Returns what the command printed; a failure shows it."""
    result = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, **options)
    if result.returncode:
        raise AssertionError(f"{' '.join(map(str, command))}\n{result.stdout}")
    return result.stdout


def version_of(sources):
    return re.search(r"^  VERSION (.*)", (sources / "CMakeLists.txt").read_text(), re.MULTILINE)[1]


def files(root):
    """All files and links below a folder, relative to it."""
    return {path.relative_to(root).as_posix() for path in root.rglob("*") if path.is_symlink() or not path.is_dir()}


def with_libraries(folder):
    return {**os.environ, "LD_LIBRARY_PATH": str(folder)}


def build(cmake, source, folder, *options):
    run(cmake, "-G", "Ninja", "-S", source, "-B", folder, *options)
    run(cmake, "--build", folder, "-j2")
    return folder


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
