"""How the types of the public headers are laid out, and the table of that in docs/abi.

What the compiler makes of the headers is read from the debugging information of a file that includes them all, private fields as
well as public ones, so that no type can be left out. The table is of all targets: an update writes the column of one.
"""
import pathlib
import subprocess
import tempfile

from dwarf import Types

TREE = pathlib.Path(__file__).resolve().parents[2]
TABLE = TREE / "docs/abi/layouts.txt"
TARGETS = ("native", "linux32", "win32")
HEADERS = sorted(header for folder in ("inc", "platform/base/inc", "platform/i18n/inc") for header in (TREE / folder).glob("*.h"))
PUBLIC = {str(header) for header in HEADERS}
TYPES = ("class_type", "structure_type", "union_type", "enumeration_type")
# What makes a compiler describe types that the file does not use.
COMPLETE = {"Clang": ["-fstandalone-debug"], "GNU": ["-femit-class-debug-always"]}
HEAD = """\
# How the types of the public headers are laid out. Written by ./dev abi --update; README.md tells more.
#
# A type:              size/alignment in bytes
# a field, a base:     offset+size in bytes
# a virtual function:  its place in the table of virtual functions
# an enumerator:       its number
# -                    not on this target
"""


class Compiler:
    """Compiles the headers, and reads what became of them."""

    def __init__(self, objdump, kind, command, folder):
        self.objdump, self.command, self.folder = objdump, [*command, *COMPLETE[kind]], pathlib.Path(folder)

    def types(self, *more):
        source, result = self.folder / "headers.cpp", self.folder / "headers.o"
        lines = [f'#include "{header}"' for header in HEADERS] + [*more]
        source.write_text("\n".join(lines) + "\n", encoding="utf-8")
        includes = [f"-I{folder}" for folder in {header.parent for header in HEADERS}]
        subprocess.run([*self.command, *includes, "-g", "-gdwarf-5", "-fno-eliminate-unused-debug-types", "-fno-access-control",
                        "-c", source, "-o", result], check=True, cwd=self.folder)
        return Types(self.objdump, result)

    def alignments(self, names):
        """The alignment of each of these types, which debugging information leaves out."""
        probes = ", ".join(f"probe_{number} = alignof({name})" for number, name in enumerate(names))
        types = self.types(f"enum VqAlignmentProbe {{ {probes} }} probe;")
        probe = next(entry for entry in types.entries.values() if entry.name == "VqAlignmentProbe")
        values = {value.name: value.number("const_value") for value in probe.children}
        return {name: values[f"probe_{number}"] for number, name in enumerate(names)}


def public_types(types):
    """The types that public headers define and that hold something, by name."""
    declared = [entry for entry in types.entries.values() if types.declared_in(entry) in PUBLIC]
    instances = {id(types.referred(entry)): entry.name for entry in declared
                 if entry.tag == "typedef" and entry.scope.tag == "compile_unit"}
    found = {}
    for entry in declared:
        if entry.tag in TYPES and "byte_size" in entry.attributes and holds_something(types, entry):
            name = types.qualified_name(entry)
            if name and "<" in name:
                name = instances.get(id(entry), name)
            if name:
                found[name] = entry
    return found


def holds_something(types, entry):
    """False for sets of static functions, and for function objects."""
    return any(child.tag == "enumerator" or child.tag == "member" and "external" not in child.attributes or
               child.tag == "inheritance" and holds_something(types, types.referred(child)) or
               "vtable_elem_location" in child.attributes for child in entry.children)


def parameters(types, function):
    return ", ".join(types.type_text(child) for child in function.children
                     if child.tag == "formal_parameter" and "artificial" not in child.attributes)


def row_of(types, child):
    """What stands in the table for a part of a type, and its figures; null where it has no place in memory."""
    assert not {"bit_size", "data_bit_offset"} & {*child.attributes}, f"{child.name}: there is no way to write bit fields yet"
    place = f"{child.number('data_member_location')}+{types.size_of(child)}" if "data_member_location" in child.attributes else None
    if child.tag == "enumerator":
        return child.name, str(child.number("const_value"))
    if "vtable_elem_location" in child.attributes:
        return f"virtual {child.name}({parameters(types, child)})", str(child.number("vtable_elem_location"))
    if child.tag == "inheritance" and holds_something(types, types.referred(child)):
        return f"base {types.type_text(child)}", place
    if child.tag == "member" and place:
        return "table of virtual functions" if child.name.startswith("_vptr") else f"{types.type_text(child)} {child.name}", place
    return None


def layouts(objdump, kind, *command):
    """The figures of every row on this target: by type, then by row; the type's own row is the first."""
    with tempfile.TemporaryDirectory() as folder:
        compiler = Compiler(objdump, kind, command, folder)
        types = compiler.types()
        found = public_types(types)
        alignments = compiler.alignments([*found])
    return {name: {name: f"{entry.number('byte_size')}/{alignments[name]}",
                   **dict(row for child in entry.children if (row := row_of(types, child)))}
            for name, entry in found.items()}


def read_table():
    """The figures of every target: by type, then by row."""
    table = {}
    for line in TABLE.read_text(encoding="utf-8").splitlines() if TABLE.exists() else []:
        if not line or line.startswith("#"):
            continue
        *figures, text = line.split(maxsplit=len(TARGETS))
        if figures == [*TARGETS]:
            continue
        if "/" in "".join(figures):
            name = text
        table.setdefault(name, {})[text] = {target: figure for target, figure in zip(TARGETS, figures) if figure != "-"}
    return table


def write_table(table):
    row = lambda figures, text: "".join(f"{figure:>9}" for figure in figures) + text
    lines = [HEAD, row(TARGETS, "  type")]
    for name in sorted(table, key=lambda name: (name.lower(), name)):
        lines.append("")
        for text, figures in table[name].items():
            lines.append(row((figures.get(target, "-") for target in TARGETS), ("  " if text == name else "      ") + text))
    TABLE.write_text("\n".join(lines) + "\n", encoding="utf-8", newline="\n")


def update(target, *compiler):
    before, found, after = read_table(), layouts(*compiler), {}
    for name in {*before, *found}:
        old, new = before.get(name, {}), found.get(name, {})
        rows = {text: {**old.get(text, {}), target: new.get(text)} for text in [*new, *old]}
        rows = {text: {column: figure for column, figure in figures.items() if figure} for text, figures in rows.items()}
        after[name] = {text: figures for text, figures in rows.items() if figures}
    write_table({name: rows for name, rows in after.items() if rows})


def faults(target, *compiler):
    """Rows that only the headers or only the table have, and those that differ; the targets of 32 bits do not among each other."""
    found, table = layouts(*compiler), read_table()
    for name in sorted({*found, *table}):
        there = found.get(name, {})
        listed = {text: figures[target] for text, figures in table.get(name, {}).items() if target in figures}
        yield from (f"{name}: {text} is {there.get(text, 'missing')}, in the table {listed.get(text, 'missing')}"
                    for text in {**listed, **there} if there.get(text) != listed.get(text))
    yield from (f"{name}: {text} is not the same on both targets of 32 bits" for name, rows in table.items()
                for text, figures in rows.items() if figures.get("linux32") != figures.get("win32"))
