"""The types that an object file's debugging information describes, as objdump prints it (DWARF 5)."""
import dataclasses
import math
import re
import subprocess

ENTRY = re.compile(r"\s*<([0-9a-f]+)><([0-9a-f]+)>: Abbrev Number: (\d+)(?: \(DW_TAG_(\w+)\))?")
FORM = r"(?:\((?:indirect (?:line )?string, offset|indexed string): (?:0x)?[0-9a-f]+\): )?"
ATTRIBUTE = re.compile(rf"\s*<[0-9a-f]+>\s+DW_AT_(\w+)\s*: ?{FORM}(.*?)\s*$")
FILE = re.compile(rf"\s+(\d+)\s+(?:(\d+)\s+)?{FORM}(\S.*?)\s*$")
SCOPES = {"namespace", "class_type", "structure_type", "union_type"}
# The compilers' names for the same types.
PLAIN = {"long int": "long", "long unsigned int": "unsigned long", "short int": "short", "short unsigned int": "unsigned short"}


@dataclasses.dataclass
class Entry:
    """One entry: what it is (`class_type`), what is said of it, what is inside it, and what it is inside of."""
    tag: str
    attributes: dict = dataclasses.field(default_factory=dict)
    children: list = dataclasses.field(default_factory=list)
    scope: "Entry" = None

    @property
    def name(self):
        return self.attributes.get("name")

    def number(self, attribute, default=None):
        """A constant, or the operand of an expression that is one."""
        text = self.attributes.get(attribute)
        if text is None:
            return default
        operation = re.search(r"DW_OP_(?:constu|plus_uconst): (\d+)|DW_OP_lit(\d+)", text)
        return int(operation[1] or operation[2]) if operation else int(text.split()[0], 0)


class Types:
    def __init__(self, objdump, object_file):
        dump = lambda what: subprocess.run([objdump, f"--dwarf={what}", object_file], check=True, capture_output=True, text=True).stdout
        self.entries, self.files = {}, file_table(dump("rawline"))
        self._read(dump("info"))

    def _read(self, text):
        self.pointer_size = int(re.search(r"Pointer Size:\s+(\d+)", text)[1])
        open_entries, entry = [], None
        for line in text.splitlines():
            if found := ENTRY.match(line):
                depth, place, _, tag = int(found[1], 16), found[2], found[3], found[4]
                if tag is None:
                    continue
                del open_entries[depth:]
                entry = self.entries[place] = Entry(tag, scope=open_entries[-1] if open_entries else None)
                if open_entries:
                    open_entries[-1].children.append(entry)
                open_entries.append(entry)
            elif entry and (found := ATTRIBUTE.match(line)):
                entry.attributes[found[1]] = found[2]

    def referred(self, entry, attribute="type"):
        """The entry that an attribute of another points to."""
        place = entry.attributes.get(attribute)
        return self.entries[place.strip("<>").removeprefix("0x")] if place else None

    def declaration_of(self, entry):
        """The declaration inside a class that an entry outside of it completes, else the entry itself."""
        completes = next((attribute for attribute in entry.attributes if attribute.endswith("ification")), None)
        return self.referred(entry, completes) if completes else entry

    def declared_in(self, entry):
        """The path of the file that declares the entry."""
        return self.files.get(entry.number("decl_file"))

    def qualified_name(self, entry):
        """The entry's name with those of its scopes; null where it, or one of them, has none or is a function."""
        declaration = self.declaration_of(entry)
        if declaration.name is None or declaration.scope is None:
            return None
        if declaration.scope.tag == "compile_unit":
            return declaration.name
        outer = self.qualified_name(declaration.scope) if declaration.scope.tag in SCOPES else None
        return f"{outer}::{declaration.name}" if outer else None

    def type_text(self, entry, attribute="type"):
        """The type of a member, parameter or pointer as one would write it, roughly: a function pointer is "function*"."""
        kind = self.referred(entry, attribute)
        if kind is None:
            return "void"
        if kind.tag in ("pointer_type", "reference_type"):
            return self.type_text(kind) + ("*" if kind.tag == "pointer_type" else "&")
        if kind.tag == "const_type":
            inner = self.type_text(kind)
            return f"{inner} const" if inner.endswith("*") else f"const {inner}"
        if kind.tag == "volatile_type":
            return f"volatile {self.type_text(kind)}"
        if kind.tag == "array_type":
            return self.type_text(kind) + "".join(f"[{extent(bound)}]" for bound in kind.children)
        if kind.tag == "subroutine_type":
            return "function"
        return PLAIN.get(kind.name) or self.qualified_name(kind) or kind.tag

    def size_of(self, entry):
        """The bytes of what a member holds; null for a type of unknown size."""
        kind = self.referred(entry)
        if kind.tag == "array_type":
            return self.size_of(kind) * math.prod(extent(bound) for bound in kind.children)
        if "byte_size" in kind.attributes:
            return kind.number("byte_size")
        if kind.tag in ("typedef", "const_type", "volatile_type"):
            return self.size_of(kind)
        return self.pointer_size if kind.tag in ("pointer_type", "reference_type") else None


def extent(bound):
    return bound.number("count") if "count" in bound.attributes else bound.number("upper_bound") + 1


def file_table(text):
    """The paths behind the numbers of the line table."""
    folders, files, current = {}, {}, None
    for line in text.splitlines():
        if "Directory Table" in line or "File Name Table" in line:
            current = folders if "Directory" in line else files
        elif current is not None and (found := FILE.match(line)):
            current[int(found[1])] = found[3] if found[2] is None else f"{folders[int(found[2])]}/{found[3]}"
    return files
