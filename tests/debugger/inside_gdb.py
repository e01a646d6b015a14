"""Runs inside GDB: answers, in a line of JSON, what tests/debugger_test.py asks in $VQTM_ASK."""
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


def plain_name(name):
    return re.sub(r'<.*', '', name or '')


def has_data(type_):
    fields = (field for base in bases(type_) for field in base.fields() if not field.is_base_class and not field.artificial)
    return any(hasattr(field, 'bitpos') for field in fields)  # a static member has no place in the object


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
    for type_ in map(gdb.lookup_type, names):
        for content in garbage(type_.sizeof):
            visualizer = gdb.default_visualizer(gdb.Value(content, type_))
            try:
                visualizer.to_string()
                list(zip(range(300), getattr(visualizer, 'children', list)()))
            except Exception as error:  # whatever it is, a user would see it
                yield f'{type_} of {content.hex()}: {error!r}'


# --- Classes of the headers

def views_in(natvis):
    return {plain_name(view.get('Name')): view for view in xml.etree.ElementTree.parse(natvis).iter(NAMESPACE + 'Type')}


def classes(names, natvis):
    """Of each class that debug information knows: whether it has data, a printer, and a Natvis view."""
    views, known = views_in(natvis), {}
    for name in names:
        try:
            type_ = gdb.lookup_type(name)
        except gdb.error:
            continue
        printer = gdb.default_visualizer(gdb.Value(bytes(type_.sizeof), type_)) if type_.sizeof else None
        viewed = any(plain_name(base.name) in views for base in bases(type_))
        known[name] = {'data': has_data(type_), 'printer': printer is not None, 'natvis': viewed}
    return known


def expressions_of(view):
    for element in view.iter():
        yield from (element.get('Condition'),) if 'Condition' in element.attrib else ()
        if element.tag == NAMESPACE + 'DisplayString':
            yield from re.findall(r'\{([^{}]*)\}', re.sub(r'\{\{|\}\}', '', element.text))
        elif len(element) == 0:
            yield element.text


def faults_in_natvis(natvis, instances):
    """Types and members that are not there; GDB looks at the types in an operand of sizeof, and evaluates nothing."""
    for name, view in views_in(natvis).items():
        this = gdb.lookup_type(instances.get(name, name)).pointer()
        gdb.set_convenience_variable('this', gdb.Value(0).cast(this))
        for expression in expressions_of(view):
            resolved = re.sub(r'(?<![\w.>$])[A-Za-z_]\w*', lambda word: ('' if word[0] in WORDS else '$this->') + word[0],
                              re.sub(r',\w+$', '', expression))
            try:
                gdb.parse_and_eval(f'sizeof({resolved})')
            except gdb.error as error:
                yield f'{name}: {expression}: {error}'


# --- What the printers know by themselves

def faults_in_tables(sources):
    """Compares numbers and names with those of the headers, and characters with what the code sets are generated from."""
    sys.dont_write_bytecode = True
    sys.path[:0] = [f'{sources}/tools/debugger', f'{sources}/platform/i18n/data']
    import vqtm_printers
    from generator import codesets, languages, widesets
    sets = {row[0]: row[1] for row in codesets.BYTE_SETS + widesets.WIDE_SETS} | {codesets.UNICODE: 'Unicode'}
    for known, true in [
            (vqtm_printers.ROWS, [field.name.removeprefix('VqTypeId_') for field in gdb.lookup_type('VqTypeId').fields()]),
            (vqtm_printers.LANGUAGES, tuple(language[0] for language in languages.LANGUAGES)),
            ({code: row[0] for code, row in vqtm_printers.CODE_SETS.items()}, sets)]:
        if known != true:
            yield f'{known}, not {true}'
    characters = [(one.code, dict(enumerate(one.units))) for one in codesets.byte_sets()]
    characters += [(one.code, one.units) for one in widesets.wide_sets()]
    for code_set, units in characters:
        for code in range(0x10000 if code_set >= vqtm_printers.FIRST_WIDE_CODE_SET else 0x100):
            char, unit = vqtm_printers.character(code, code_set), units.get(code, 0xFFFD)
            # A code that stands for a control, or for a character of nobody's, may be shown as a code.
            if (unit not in (0xFFFD, code) and not 0xE000 <= unit < 0xF900 or char) and char != chr(unit):
                yield f'code set {code_set}, {code:#x}: {char!r}, not {unit:#x}'


ANSWERS = {
    'print': lambda expressions: {expression: printed(expression) for expression in expressions},
    'steps': lambda steps: [printed_after(*step) for step in steps],
    'types': lambda expressions: [plain_name(str(gdb.parse_and_eval(expression).type)) for expression in expressions],
    'garbage': lambda names: list(faults_with_garbage(names)),
    'classes': lambda arguments: classes(*arguments),
    'natvis': lambda arguments: list(faults_in_natvis(*arguments)),
    'tables': lambda sources: list(faults_in_tables(sources)),
}
print('ANSWER', json.dumps({what: ANSWERS[what](argument) for what, argument in json.loads(os.environ['VQTM_ASK']).items()}))
