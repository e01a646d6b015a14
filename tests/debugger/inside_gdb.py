"""Runs inside GDB: shows expressions by the pretty printers, and by the Natvis file as Visual Studio would read it.

The test says what to show in the file $VQTM_ASK (JSON), and finds the answers in $VQTM_ANSWER.
"""
import json
import os
import random
import re
import sys
import xml.etree.ElementTree

import gdb

NAMESPACE = '{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}'
WORDS = {'char', 'char16_t', 'short', 'int', 'long', 'unsigned', 'VqString'}  # what casts are made of


def printed(expression):
    try:
        return re.sub(r'^\$\d+ = ', '', gdb.execute(f'print {expression}', to_string=True)).rstrip('\n')
    except gdb.error as error:
        return f'error: {error}'


def printed_after(commands, expression):
    for command in commands:
        gdb.execute(command, to_string=True)
    return printed(expression)


def bases(type_):
    """The type without qualifiers and what it is derived from, the nearest first."""
    type_ = type_.strip_typedefs().unqualified()
    if type_.code != gdb.TYPE_CODE_STRUCT:
        return []
    return [type_] + [base for field in type_.fields() if field.is_base_class for base in bases(field.type)]


def plain_name(type_):
    return re.sub(r'<.*', '', type_.name or '')


def field_names(type_):
    return {field.name for base in bases(type_) for field in base.fields() if not field.is_base_class}


def has_data(type_):
    own = (field for base in bases(type_) for field in base.fields() if not field.is_base_class and not field.artificial)
    return any(hasattr(field, 'bitpos') for field in own)  # a static member has no place in the object


# --- Natvis

class Natvis:
    def __init__(self, path):
        root = xml.etree.ElementTree.parse(path).getroot()
        self.types = {re.sub(r'<.*', '', view.get('Name')): view for view in root.iter(NAMESPACE + 'Type')}

    def view_of(self, type_):
        return next((self.types[plain_name(base)] for base in bases(type_) if plain_name(base) in self.types), None)

    def shown(self, value):
        """The text of the first view whose condition holds."""
        for text in self.view_of(value.type).findall(NAMESPACE + 'DisplayString'):
            if self.holds(text, value):
                return re.sub(r'\{\{|\}\}|\{([^{}]*)\}', lambda match: self.part(match, value), text.text)
        raise ValueError(f'no view of this {value.type}')

    def part(self, match, value):
        if match[1] is None:
            return match[0][0]
        expression, kind = split_format(match[1])
        result = evaluated(expression, value)
        if kind in ('s', 'sb'):
            text = result.string('cp1252')
            return text if kind == 'sb' else f'"{text}"'
        if kind == 'su':
            return '"' + result.string('utf-16') + '"'
        if kind == 'c':
            return f"'{chr(int(result) & 0xFFFF)}'"
        if kind == 'x':
            return f'{int(result):#06x}'
        if kind is not None:
            raise ValueError(f'unknown format {kind}')
        target = result.type.strip_typedefs()
        return self.shown(result) if target.code == gdb.TYPE_CODE_STRUCT else result.format_string(raw=True)

    def holds(self, element, value):
        condition = element.get('Condition')
        return condition is None or bool(evaluated(condition, value))

    def expanded(self, element, value):
        """Evaluates all that the view shows when it is opened."""
        for child in element:
            if not self.holds(child, value):
                continue
            if child.tag == NAMESPACE + 'Synthetic':
                self.expanded(child.find(NAMESPACE + 'Expand'), value)
            elif child.tag == NAMESPACE + 'ArrayItems':
                int(evaluated(child.find(NAMESPACE + 'Size').text, value))
                evaluated(split_format(child.find(NAMESPACE + 'ValuePointer').text)[0], value).type.target()
            else:
                evaluated(split_format(child.text)[0], value)

    def opened(self, value):
        view = self.view_of(value.type)
        if view is None:
            raise ValueError(f'no view of {value.type}')
        for string_view in view.findall(NAMESPACE + 'StringView'):
            if self.holds(string_view, value):
                evaluated(split_format(string_view.text)[0], value)
        for expand in view.findall(NAMESPACE + 'Expand'):
            self.expanded(expand, value)


def split_format(expression):
    match = re.fullmatch(r'(.*),(\w+)', expression, re.DOTALL)
    return (match[1], match[2]) if match else (expression, None)


def evaluated(expression, value):
    """Names in the expression are the value's own fields."""
    names = field_names(value.type)

    def resolved(match):
        if match[0] in names:
            return '$self.' + match[0]
        if match[0] in WORDS:
            return match[0]
        raise ValueError(f'{value.type} has no {match[0]}')
    gdb.set_convenience_variable('self', value)
    return gdb.parse_and_eval(re.sub(r'(?<![\w.>$])[A-Za-z_]\w*', resolved, expression))


def natvis_text(natvis, expression):
    try:
        value = gdb.parse_and_eval(expression)
        if value.type.code == gdb.TYPE_CODE_REF:
            value = value.referenced_value()
        natvis.opened(value)
        return natvis.shown(value)
    except (gdb.error, ValueError) as error:
        return f'error: {error}'


# --- Values that are none

def garbage(size):
    """Bytes of all kinds, with addresses that can be read and that cannot at every place where one may be."""
    yield from (bytes([byte]) * size for byte in (0x00, 0x01, 0x5A, 0x7F, 0x80, 0xFF))
    stack = int(gdb.parse_and_eval('(unsigned long)$sp'))
    numbers = random.Random(5)
    for address in (stack, stack + 4093, 0x7FFFFFFFFFFF, 8):
        for _ in range(8):
            content = bytearray(numbers.randbytes(size))
            at = 8 * numbers.randrange(max(1, size // 8))
            content[at:at + 8] = address.to_bytes(8, 'little')[:max(0, size - at)]
            yield bytes(content[:size])


def faults_with_garbage(names):
    for name in names:
        type_ = gdb.lookup_type(name)
        for content in garbage(type_.sizeof):
            visualizer = gdb.default_visualizer(gdb.Value(content, type_))
            try:
                visualizer.to_string()
                if hasattr(visualizer, 'children'):
                    for _, _ in zip(range(300), visualizer.children()):
                        pass
            except Exception as error:  # whatever it is, a user would see it
                yield f'{name} of {content.hex()}: {error!r}'


# --- Classes of the headers

def views(names):
    """Of each class that debug information knows: whether it has data, a printer, and a Natvis view."""
    known = {}
    for name in names:
        try:
            type_ = gdb.lookup_type(name)
        except gdb.error:
            continue
        printer = gdb.default_visualizer(gdb.Value(bytes(type_.sizeof), type_)) if type_.sizeof else None
        known[name] = {'data': has_data(type_), 'printer': printer is not None, 'natvis': natvis.view_of(type_) is not None}
    return known


# --- What the printers know by themselves

def faults_in_tables(sources):
    """Compares the numbers and names with those of the headers, and the characters with what the code sets are generated from."""
    sys.dont_write_bytecode = True
    sys.path[:0] = [f'{sources}/tools/debugger', f'{sources}/platform/i18n/data']
    import vqtm_printers
    from generator import codesets, languages, widesets
    rows = [field.name.removeprefix('VqTypeId_') for field in gdb.lookup_type('VqTypeId').fields()]
    if rows != vqtm_printers.ROWS:
        yield f'rows: {rows}'
    names = tuple(language[0] for language in languages.LANGUAGES)
    if names != vqtm_printers.LANGUAGES:
        yield f'languages: {names}'
    sets = {row[0]: row[1] for row in codesets.BYTE_SETS + widesets.WIDE_SETS} | {codesets.UNICODE: 'Unicode'}
    if sets != {code: row[0] for code, row in vqtm_printers.CODE_SETS.items()}:
        yield f'code sets: {sets}'
    for byte_set in codesets.byte_sets():
        yield from faults_in_set(vqtm_printers, byte_set, {code: unit for code, unit in enumerate(byte_set.units) if unit != 0xFFFD})
    for wide_set in widesets.wide_sets():
        yield from faults_in_set(vqtm_printers, wide_set, wide_set.units)


def faults_in_set(printers, code_set, units):
    """A code that stands for a control, or for a character of nobody's, may be shown as a code."""
    for code in range(0x10000 if code_set.code >= printers.FIRST_WIDE_CODE_SET else 0x100):
        char, unit = printers.character(code, code_set.code), units.get(code)
        if (char is None or ord(char) != unit) and not (char is None and (unit in (None, code) or 0xE000 <= unit < 0xF900)):
            yield f'{code_set.name} {code:#x}: {char!r}, not {unit}'


with open(os.environ['VQTM_ASK'], encoding='utf-8') as file:
    ask = json.load(file)
natvis = Natvis(ask['natvis'])
answer = {
    'printed': {expression: printed(expression) for expression in ask.get('print', [])},
    'steps': [printed_after(*step) for step in ask.get('steps', [])],
    'natvis': {expression: natvis_text(natvis, expression) for expression in ask.get('view', [])},
    'garbage': list(faults_with_garbage(ask.get('garbage', []))),
    'tables': list(faults_in_tables(ask['tables'])) if 'tables' in ask else [],
    'classes': views(ask.get('classes', [])),
}
with open(os.environ['VQTM_ANSWER'], 'w', encoding='utf-8') as file:
    json.dump(answer, file)
