#!/usr/bin/env python3
"""exports_test.py [--update] TARGET OBJDUMP LIBRARY...: the shared libraries export the names in docs/abi, no more and no less.

A name that is missing breaks programs that are there; a new one becomes a promise, so that it is to be made on purpose. With
--update the lists are written anew: what the libraries export on TARGET (native, linux32 or win32), and what they said before of
the other targets.
"""
import collections
import pathlib
import re
import subprocess
import sys
import unittest

from sharedlibrary import SharedLibrary

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "docs/abi"
TARGETS = ("native", "linux32", "win32")
FOREIGN = re.compile(r"_Z(GV)?Z?N?K?St|_ZT[IVS]N?St|_ZN?K?9__gnu_cxx|__mingw|_?pthread_|__gxx|_Unwind|__cxa")
HEADING = re.compile(r"\[(?:C|C\+\+) names: (.+)\]")


def list_of(library):
    return FOLDER / f"{library.name}.exports"


def read_list(file):
    """The targets of each name."""
    names, targets = {}, ()
    for line in file.read_text(encoding="utf-8").splitlines() if file.exists() else []:
        if heading := HEADING.fullmatch(line):
            targets = heading[1].split()
        elif line and not line.startswith("#"):
            names[line.split()[0]] = {*targets}
    return names


def demangled(names, objdump):
    filter_program = re.sub(r"objdump$", "c++filt", objdump)
    text = subprocess.run([filter_program, "-n"], input="\n".join(names), check=True, capture_output=True, text=True).stdout
    return dict(zip(names, text.splitlines()))


def heading_of(name, targets):
    """C names come first, and of each kind what is everywhere."""
    language = "C++" if name.startswith("_Z") else "C"
    return language == "C++", -len(targets), f"[{language} names: {' '.join(target for target in TARGETS if target in targets)}]"


def write_list(file, names, objdump):
    readable = demangled(sorted(names), objdump)
    sections = collections.defaultdict(list)
    for name, targets in names.items():
        sections[heading_of(name, targets)].append(name)
    lines = [f"# The names that {file.stem} exports, and on which targets. Written by ./dev abi --update; README.md tells more."]
    for section, members in sorted(sections.items()):
        members.sort(key=lambda name: (readable[name], name))
        lines += ["", section[2]]
        lines += [name if readable[name] == name else f"{name}  {readable[name]}" for name in members]
    file.write_text("\n".join(lines) + "\n", encoding="utf-8", newline="\n")


def update(target, libraries):
    for library in libraries:
        names = read_list(list_of(library))
        for name in {*names, *library.exported()}:
            targets = names.setdefault(name, set())
            targets.discard(target)
            targets.update({target} if name in library.exported() else ())
        write_list(list_of(library), {name: targets for name, targets in names.items() if targets}, library.objdump)


class Exports(unittest.TestCase):
    maxDiff = None

    def test_are_those_on_the_list(self):
        for library in LIBRARIES:
            listed = {name for name, targets in read_list(list_of(library)).items() if TARGET in targets}
            exported = set(library.exported())
            with self.subTest(library.name):
                self.assertGreater(len(listed), 5, f"{list_of(library)} says nothing of {TARGET}")
                self.assertEqual(sorted(listed - exported), [], f"{library.name} no longer exports these on {TARGET}")
                self.assertEqual(sorted(exported - listed), [], f"{library.name} exports what its list lacks for {TARGET}")

    def test_are_none_of_the_compilers_runtime(self):
        for library in LIBRARIES:
            self.assertEqual([name for name in library.exported() if FOREIGN.match(name)], [], library.name)


if __name__ == "__main__":
    arguments = [argument for argument in sys.argv[1:] if argument != "--update"]
    TARGET, LIBRARIES = arguments[0], [SharedLibrary(arguments[1], path) for path in arguments[2:]]
    if "--update" in sys.argv:
        update(TARGET, LIBRARIES)
    else:
        unittest.main(argv=sys.argv[:1], verbosity=2)
