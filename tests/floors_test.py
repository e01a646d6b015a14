#!/usr/bin/env python3
"""floors_test.py TREE: no file includes one from a floor above its own, no public header includes a private one, and vqtm.h includes
every public header.

A file's floor is that of the plain name it shares with its class; a helper file names its floor by being listed here.
"""
import pathlib
import re
import sys

FLOORS = [
    "vqtmdefs vqdefs vqslots _vqnulty options linearsearch twowaysearch bytesearch decimaltext",
    "vqchar stringiterator charoperation strcompare order hash9 collationkey wildcard textunit orderunit keyreader comparebytes comparelevels compareready comparetexts equalrun",
    "vqstring stringedit stringsearch textsearch stringtransform stringdisk numbertext vqistring istringweights multibyte utf8kernel strhash",
    "convert vqstd valueslots classslots int64slots booleanslots sealslots stringslots istringslots scalar vqint64 date datetime datetext dateslots storedyear stddate stddatetext stddateslots overlaps blob blobdisk blobtext blobslots boolean seal objid ref idtext idslots vqnull textform textscan cformat",
    "vqtypcmp vqtypevl vqtyphash keyelements equalelements comparearrays hasharrays keybounds keypositions cutkeys stringarray stringkeys istringkeys textshare textrange keybuffer stringbounds istringbounds idkeys keyforms dateelements datekeys stddatekeys valuekeys blobkeys",
    "vqtypes defaultmanager",
    "library",
    "vqtm",
]
# Sources that know a class which their headers only name: a character can be a position in a string, an iterator walks one, an order
# is named in one, the text for null is one, and a conversion record frees its values through a manager.
EXCEPTIONS = {
    ("vqchar.cpp", "vqstring.h"),
    ("stringiterator.cpp", "vqstring.h"),
    ("order.cpp", "vqstring.h"),
    ("_vqnulty.cpp", "vqstring.h"),
    ("convert.cpp", "vqtypes.h"),
}
FLOOR_OF = {name: floor for floor, names in enumerate(FLOORS) for name in names.split()}

# The libraries from the lowest up; each may use the public headers of those before it.
LIBRARIES = {"platform/base": "platform/base", "platform/i18n": "platform/i18n", "typelib": "."}


def included(file):
    return re.findall(r'^\s*#\s*include\s+"([^"]+\.h)"', file.read_text(encoding="utf-8"), re.MULTILINE)


def above(file, name):
    return FLOOR_OF.get(pathlib.Path(name).stem, 0) > FLOOR_OF.get(file.stem, len(FLOORS))


def check(tree):
    below = set()
    for library, folder in LIBRARIES.items():
        public = sorted((tree / folder / "inc").glob("*.h"))
        private = sorted((tree / folder / "src").glob("*.h"))
        sources = sorted((tree / folder / "src").glob("*.cpp"))
        own = {file.name for file in public + private}
        for file in public + private + sources:
            where = file.relative_to(tree)
            if library == "typelib" and file.stem not in FLOOR_OF:
                yield f"{where}: on no floor; list it in tests/floors_test.py"
                continue
            for name in included(file):
                if file in public and name in {header.name for header in private}:
                    yield f"{where}: a public header includes the private {name}"
                elif name not in own and name not in below:
                    yield f"{where}: {name} is none of the headers it may use"
                elif name in own and above(file, name) and (file.name, name) not in EXCEPTIONS:
                    yield f"{where}: includes {name} from a floor above"
        below |= {file.name for file in public}
    for name in sorted(below - {"vqtm.h"} - set(included(tree / "inc/vqtm.h"))):
        yield f"inc/vqtm.h: does not include {name}"


faults = list(check(pathlib.Path(sys.argv[1])))
print("\n".join(faults) or "no include points upward")
sys.exit(bool(faults))
