#!/usr/bin/env python3
"""host_test.py [EMULATOR...] PROGRAM LIBRARY: what the host in C, examples/host.c, says of the library that it loads at run time."""
import os
import pathlib
import subprocess
import sys
import unittest

COMMAND, LIBRARY = sys.argv[1:-1], pathlib.Path(sys.argv[-1])
OTHER_BASE = os.environ.get("VQTM_OTHER_BASE")
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


def run(*arguments, **environment):
    return subprocess.run([*COMMAND, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          env={**os.environ, **environment})


class Host(unittest.TestCase):
    def check(self, result):
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stdout, rf"\A{EXPECTED}\Z")

    def test_finds_the_library_by_its_usual_name(self):
        self.check(run())

    def test_takes_the_library_from_a_path(self):
        self.check(run(LIBRARY))

    def test_tells_what_does_not_load(self):
        missing = LIBRARY.with_name("missing library")
        result = run(missing)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn(f"host: {missing} does not load: ", result.stderr)

    def test_tells_which_entry_a_library_lacks(self):
        result = run(LIBRARY.with_name(LIBRARY.name.replace("vq95FtmB", "vq95FBSB")))
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("host: the library has no ___VqTypemgrContext", result.stderr)

    @unittest.skipUnless(OTHER_BASE, "this system loads nothing before a program")
    def test_tells_that_the_base_library_does_not_fit(self):
        result = run(LD_PRELOAD=OTHER_BASE, ASAN_OPTIONS="verify_asan_link_order=0")
        self.assertEqual(result.returncode, 1)
        self.assertIn("verdict:  the base library has another minor version\n", result.stdout)
        self.assertEqual(result.stderr, "host: the base library has another minor version\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
