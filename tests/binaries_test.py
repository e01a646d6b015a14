#!/usr/bin/env python3
"""binaries_test.py OBJDUMP LIBRARY...: the shared libraries need only the system and each other, and are known by their names.

A DLL that needed the compiler's runtime would start on no other machine.
"""
import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tools/abi"))
from sharedlibrary import SharedLibrary

LIBRARIES = [SharedLibrary(sys.argv[1], path) for path in sys.argv[2:]]
SYSTEM = re.compile(r"(kernel32|msvcrt|advapi32)\.dll$|lib(stdc\+\+|m|c|gcc_s)\.so|ld-linux", re.IGNORECASE)
OWN = {True: "{}.dll", False: "lib{}.so.9"}


class Binaries(unittest.TestCase):
    def test_need_only_the_system_and_each_other(self):
        for library in LIBRARIES:
            own = {OWN[library.is_dll].format(other.name) for other in LIBRARIES}
            foreign = [name for name in library.needed() if not SYSTEM.search(name) and name not in own]
            self.assertEqual(foreign, [], library.name)

    def test_are_needed_by_the_names_that_programs_load(self):
        self.assertEqual({library.name for library in LIBRARIES}, {"vq95FBSB", "vq95FINB", "vq95FtmB"})
        for library in LIBRARIES:
            self.assertEqual(library.own_name(), OWN[library.is_dll].format(library.name))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
