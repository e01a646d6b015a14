"""The names that the shared libraries export, and the lists of them in docs/abi.

A name that is missing breaks programs that are there; a new one becomes a promise, so that it is to be made on purpose. The lists
are of all targets: an update writes what the libraries export on one, and keeps what was said of the others.
"""
import collections
import pathlib
import re
import subprocess

from sharedlibrary import SharedLibrary

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "docs/abi"
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


def update(target, objdump, *paths):
    for path in paths:
        library = SharedLibrary(objdump, path)
        names, exported = read_list(list_of(library)), {*library.exported()}
        for name in {*names} | exported:
            targets = names.setdefault(name, set())
            targets.discard(target)
            targets.update({target} if name in exported else ())
        write_list(list_of(library), {name: targets for name, targets in names.items() if targets}, objdump)


def faults(target, objdump, *paths):
    """What a library exports and its list lacks, the other way round, and what nobody should export."""
    for path in paths:
        library = SharedLibrary(objdump, path)
        listed = {name for name, targets in read_list(list_of(library)).items() if target in targets}
        exported = {*library.exported()}
        yield from (f"{library.name} does not export {name}" for name in sorted(listed - exported))
        yield from (f"{library.name} exports {name}, which is not on its list" for name in sorted(exported - listed))
        yield from (f"{library.name} exports the compiler's {name}" for name in sorted(exported) if FOREIGN.match(name))
