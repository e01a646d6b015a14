#!/usr/bin/env python3
"""host_test.py [EMULATOR...] PROGRAM LIBRARY: what the host in C, examples/host.c, says of the library that it loads at run time."""
import pathlib
import subprocess
import sys
import unittest

COMMAND, LIBRARY = sys.argv[1:-1], sys.argv[-1]
EXPECTED = r"""product:  Quillbase Typemanager
version:  9\.5\.23\.262\.0
module:   vq95FtmsB
built:    Jun 28 2005 01:17:27, number 1361
compiler: (g|clang)\+\+ \d+\.\d+\.\d+ / 32
in short: Quillbase Typemanager 9\.5\.23\.262\.0\x20
options:  0
verdict:  the libraries go together
unloaded
"""


def run(*arguments):
    return subprocess.run([*COMMAND, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True)


class Host(unittest.TestCase):
    def check(self, result):
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stdout, rf"\A{EXPECTED}\Z")

    def test_finds_the_library_by_its_usual_name(self):
        self.check(run())

    def test_takes_the_library_from_a_path(self):
        self.check(run(LIBRARY))

    def test_tells_what_does_not_load(self):
        missing = str(pathlib.Path(LIBRARY).with_name("missing"))
        result = run(missing)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertRegex(result.stderr, r"host: \S+missing does not load: \S")

    def test_tells_which_entry_a_library_lacks(self):
        other = LIBRARY.replace("vq95FtmB", "vq95FBSB")
        result = run(other)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("host: the library has no ___VqTypemgrContext", result.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
