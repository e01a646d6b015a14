#!/usr/bin/env python3
"""binaries_test.py OBJDUMP LIBRARY...: the shared libraries need only the system and each other, and export only names of their own.

A DLL that needed the compiler's runtime would start on no other machine; one export mark forgotten makes MinGW export everything.
"""
import pathlib
import re
import subprocess
import sys
import unittest

OBJDUMP, LIBRARIES = sys.argv[1], [pathlib.Path(path) for path in sys.argv[2:]]
SYSTEM = re.compile(r"(kernel32|msvcrt|advapi32)\.dll$|lib(stdc\+\+|m|c|gcc_s)\.so|ld-linux", re.IGNORECASE)
OWN = re.compile(r"(lib)?vq95F(tmB|BSB|INB)\.(dll|so)")
FOREIGN = re.compile(r"_Z(GV)?Z?N?K?St|_ZT[IVS]N?St|_ZN?K?9__gnu_cxx|__mingw|_?pthread_|__gxx|_Unwind|__cxa")


def dump(library, *options):
    return subprocess.run([OBJDUMP, *options, library], check=True, capture_output=True, text=True).stdout


def needed(library):
    return re.findall(r"^\s*(?:DLL Name: |NEEDED\s+)(\S+)", dump(library, "-p"), re.MULTILINE)


def exported(library):
    if library.suffix == ".dll":
        table = dump(library, "-p").partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
        return re.findall(r"^\s*\[\s*\d+\].*?(\S+)$", table, re.MULTILINE)
    defined = (line for line in dump(library, "-T").splitlines() if "*UND*" not in line and re.match(r"[0-9a-f]{8}", line))
    return [line.split()[-1] for line in defined]


class Binaries(unittest.TestCase):
    def test_need_only_the_system_and_each_other(self):
        for library in LIBRARIES:
            foreign = [name for name in needed(library) if not SYSTEM.search(name) and not OWN.fullmatch(name.removesuffix(".9"))]
            self.assertEqual(foreign, [], library.name)

    def test_export_only_their_own_names(self):
        for library in LIBRARIES:
            names = exported(library)
            self.assertGreater(len(names), 5, library.name)
            self.assertEqual([name for name in names if FOREIGN.match(name)], [], library.name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
