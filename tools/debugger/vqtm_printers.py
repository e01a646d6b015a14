"""GDB pretty printers for the values of the type library.

    (gdb) print name
    $1 = "Łódź" (ISO 8859-2, polish)
    (gdb) print born
    $2 = 2005-03-07
    (gdb) print/r born
    $3 = {year = 2005, month = 3 '\\003', day = 7 '\\a'}

GDB loads them by itself with the shared library (see loader.py.in). Where it cannot, as in a program that is linked statically,

    (gdb) source PREFIX/share/vqtm/gdb/vqtm_printers.py

does it. They need the types' debug information. A program that g++ compiled with -g has it, and the library need not; clang++ leaves
classes to the library unless it is told -fstandalone-debug.

A printer reads memory and nothing else: it calls no function of the program, so that core files show the same as a process does.
Whatever a value holds, it prints something: a value that was never constructed shows its bytes' meaning, and what cannot be read is
called unreadable. A text is cut after as many characters as `set print elements` says, as GDB cuts its own.
"""
import decimal
import re
import struct

import gdb
import gdb.printing
import gdb.types

NULL = '{NULL}'
UNREADABLE = 'unreadable'
UNKNOWN = 'without debug information'

# --- What numbers stand for: type identifiers, code sets, languages

ROWS = ('char short long double float VqWord VqDWord int unsigned enum VqByte VqString VqDate VqTime BlockId VqObjId VqClassId VqRef '
        'VqBlob VqDateTime VqIString VqCaseIString d_Date d_Time d_Timestamp d_Interval VqInt64 VqBoolean VqNull_char VqNull_uchar '
        'VqNull_short VqNull_ushort VqNull_int VqNull_unsigned VqNull_long VqNull_ulong VqNull_float VqNull_double VqNull_VqInt64 '
        'VqSeal illegal').split()
FIRST_CURRENT_ROW = ROWS.index('VqNull_char')
# What a scalar's row is in memory, where that is not the type of its name.
MEMORY_TYPES = {'long': 'int', 'VqWord': 'unsigned short', 'VqDWord': 'unsigned int', 'enum': 'int', 'VqByte': 'unsigned char',
                'BlockId': 'unsigned int'}

# Name and Python's codec. A code of a 2-byte set is a byte, or lead and trail byte.
CODE_SETS = {
    1: ('Windows-1252', 'cp1252'),
    2: ('ISO 8859-1', 'latin_1'),
    3: ('IBM 850', 'cp850'),
    4: ('IBM 437', 'cp437'),
    5: ('Mac OS Roman', 'mac_roman'),
    6: ('ISO 8859-2', 'iso8859_2'),
    7: ('ISO 8859-5', 'iso8859_5'),
    8: ('ISO 8859-7', 'iso8859_7'),
    9: ('KOI8-R', 'koi8_r'),
    10: ('ISO 8859-9', 'iso8859_9'),
    11: ('ISO 8859-15', 'iso8859_15'),
    12: ('Windows-1250', 'cp1250'),
    13: ('Windows-1251', 'cp1251'),
    14: ('Windows-1253', 'cp1253'),
    225: ('Shift_JIS', 'cp932'),
    226: ('GBK', 'gbk'),
    227: ('Big5', 'cp950'),
    228: ('Unified Hangul', 'cp949'),
    253: ('Unicode', None),
}
EUROS = {(226, 0x80), (227, 0xA3E1)}  # which the codecs lack
# Codes to which only the codecs give something: single bytes of Shift_JIS, and the rows of Big5 that makers filled differently.
NO_CHARACTERS = {(225, code) for code in (0x80, 0xA0, 0xFD, 0xFE, 0xFF)} | {(227, code) for code in range(0xC6A1, 0xC8FF)}
FIRST_WIDE_CODE_SET = 225
UNICODE = 253
NULL_MARK = 254
NEVER = 255  # code set and language of the character outside a string

LANGUAGES = ('neutral', 'english', 'german', 'french', 'spanish', 'italian', 'portuguese', 'dutch', 'swedish', 'finnish', 'danish',
             'norwegian', 'icelandic', 'polish', 'czech', 'slovak', 'hungarian', 'turkish', 'russian', 'greek', 'japanese',
             'chinese simplified', 'chinese traditional', 'korean')


def code_set_name(code_set):
    if code_set == 0:
        return 'native'
    return CODE_SETS[code_set][0] if code_set in CODE_SETS else f'code set {code_set}'


def language_name(language):
    return LANGUAGES[language] if language < len(LANGUAGES) else f'language {language}'


def char_size(code_set):
    return 1 if code_set < FIRST_WIDE_CODE_SET else 2


def native_code_set():
    """As the process has it now, in the first byte of the defaults, which need no debug information; else as it is at start."""
    try:
        code_set = int(gdb.parse_and_eval("*(unsigned char*)&'VqLanguageContext::defaults_'"))
    except (gdb.error, RuntimeError):
        return 1
    return code_set if code_set in CODE_SETS else 1


def effective_code_set(code_set):
    """The set whose characters a text has; one that nobody knows is taken for the native set, or for Unicode."""
    if code_set in CODE_SETS:
        return code_set
    return native_code_set() if char_size(code_set) == 1 else UNICODE


# --- Memory

def bytes_at(address, count):
    """The bytes from the address on, as far as they can be read: pages end anywhere within a value that is none."""
    inferior, found = gdb.selected_inferior(), bytearray()
    while len(found) < count:
        at = address + len(found)
        try:
            found += inferior.read_memory(at, min(count - len(found), 4096 - at % 4096)).tobytes()
        except (gdb.error, RuntimeError, OverflowError):
            break
    return bytes(found)


def address_of(pointer):
    return int(pointer) & ((1 << 8 * pointer.type.sizeof) - 1)


def unreadable(value):
    """Why a value cannot be shown: a class without fields is known by name alone."""
    return UNREADABLE if gdb.types.get_basic_type(value.type).fields() else UNKNOWN


def most_elements():
    """What `set print elements` says; None for no limit."""
    return gdb.parameter('print elements') or None


def byte_order():
    return 'big' if 'big endian' in gdb.execute('show endian', to_string=True) else 'little'


# --- Characters

class Escapes:
    """Characters as they can stand between quotes in GDB's output."""
    LETTERS = {'\a': '\\a', '\b': '\\b', '\t': '\\t', '\n': '\\n', '\v': '\\v', '\f': '\\f', '\r': '\\r', '\033': '\\033', '\\': '\\\\'}

    def __init__(self, quote):
        self.quote = quote
        target = gdb.target_charset()
        host = gdb.host_charset() if hasattr(gdb, 'host_charset') else target
        self.charset = target if target == host else 'ascii'

    def of(self, char):
        if char == self.quote:
            return '\\' + char
        if char in self.LETTERS:
            return self.LETTERS[char]
        if ord(char) < 0x20 or ord(char) == 0x7F:
            return f'\\{ord(char):03o}'
        if char.isprintable() and self.has(char):
            return char
        return f'\\u{ord(char):04X}' if ord(char) < 0x10000 else f'\\U{ord(char):08X}'

    def has(self, char):
        try:
            char.encode(self.charset)
        except (UnicodeError, LookupError):
            return char.isascii()
        return True

    @staticmethod
    def of_no_character(code, size):
        return f'\\{code:03o}' if size == 1 else f'\\x{code:04X}'


def character(code, code_set):
    """The character of a code in a set of the table, or None."""
    codec = CODE_SETS[code_set][1]
    if codec is None:
        return None if 0xD800 <= code < 0xE000 else chr(code)
    if (code_set, code) in EUROS:
        return '\u20AC'
    if (code_set, code) in NO_CHARACTERS:
        return None
    try:
        char = code.to_bytes(1 if code < 256 else 2, 'big').decode(codec)
    except UnicodeError:
        return None
    return char if len(char) == 1 else None


def characters(codes, code_set, escapes):
    """The codes of a text as they are printed, one by one."""
    size, code_set = char_size(code_set), effective_code_set(code_set)
    at = 0
    while at < len(codes):
        code = codes[at]
        if code_set == UNICODE and code & 0xFC00 == 0xD800 and at + 1 < len(codes) and codes[at + 1] & 0xFC00 == 0xDC00:
            at += 1
            char = chr(0x10000 + ((code & 0x3FF) << 10 | codes[at] & 0x3FF))
        else:
            char = character(code, code_set)
        yield escapes.of(char) if char is not None else escapes.of_no_character(code, size)
        at += 1


def quoted_text(address, most, code_set):
    """The text up to its zero character, of at most so many bytes, in quotes; None where not even the first can be read."""
    size, limit = char_size(code_set), most_elements()
    wanted = most - most % size if limit is None else min(most - most % size, (limit + 1) * size)
    content = text_bytes(address, wanted, size)
    if content is None:
        return None
    order = byte_order()
    codes = [int.from_bytes(content[at:at + size], order) for at in range(0, len(content), size)]
    cut = limit is not None and len(codes) > limit
    shown = ''.join(characters(codes[:limit], code_set, Escapes('"')))
    return f'"{shown}"' + ('...' if cut else '')


def text_bytes(address, wanted, size):
    """The bytes before the first zero character. Reads no page behind that."""
    content, zero = b'', bytes(size)
    while len(content) < wanted:
        piece = bytes_at(address + len(content), min(wanted - len(content), 256))
        piece = piece[:len(piece) - len(piece) % size]
        if not piece:
            return content or None
        for at in range(0, len(piece), size):
            if piece[at:at + size] == zero:
                return content + piece[:at]
        content += piece
    return content


# --- Strings

def labelled(text, code_set, language):
    return f'{text} ({code_set_name(code_set)}, {language_name(language)})'


def string_text(value):
    address, size = address_of(value['buffer_']), int(value['size_'])
    code_set, language = int(value['codeSet_']), int(value['language_'])
    is_null = language == NULL_MARK or (code_set == NULL_MARK and language == 0)
    if address == 0:
        return NULL if is_null else labelled('""', code_set, language)
    text = quoted_text(address, size, code_set) or f'{UNREADABLE} text at {address:#x}'
    return labelled(f'{NULL} {text}' if is_null else text, code_set, language)


ISTRING_FLAGS = {0x20: 'accents', 0x80: 'raw'}
LONGEST_ISTRING = 65535


def istring_text(value):
    address, flags = address_of(value['text_']), int(value['flags_'])
    if address == 0:
        text = 'null text'
    else:
        text = quoted_text(address, LONGEST_ISTRING, 1) or f'{UNREADABLE} text at {address:#x}'
    names = [name for bit, name in ISTRING_FLAGS.items() if flags & bit]
    others = flags & ~sum(ISTRING_FLAGS)
    if others:
        names.append(f'flags {others:#04x}')
    return f'{text} ({", ".join(names)})' if names else text


def char_text(value):
    code_set, language, offset = int(value['codeSet_']), int(value['language_']), int(value['offset_'])
    if address_of(value['string_']) == 0:
        if code_set == NEVER and language == NEVER:
            return 'no character'
        return labelled(quoted_char(int(value['code_']), code_set), code_set, language)
    string, size = value['string_'].dereference(), char_size(code_set)
    last = int(string['size_']) - size
    if not 0 <= offset <= last or size != char_size(int(string['codeSet_'])):
        return f'no character any more at byte {offset}'
    content = bytes_at(address_of(string['buffer_']) + offset, size)
    if len(content) < size:
        return UNREADABLE
    text = quoted_char(int.from_bytes(content, byte_order()), code_set)
    return labelled(f'{text} at {offset // size}', code_set, language)


def quoted_char(code, code_set):
    return "'" + ''.join(characters([code], code_set, Escapes("'"))) + "'"


# --- Numbers and truth

def int64_text(value):
    return str(int(value['high']) << 32 | int(value['low']))


def seal_text(value):
    return str(int(value['high']) << 32 | int(value['middle']) << 16 | int(value['low']))


def boolean_text(value):
    byte = int(value['value'])
    return {0: 'FALSE', 1: 'TRUE', 255: NULL}.get(byte, f'byte {byte}')


def nullable_text(value):
    return NULL if int(value['isNull']) != 0 else value['value']


def type_id_text(value):
    number = int(value)
    return f'VqTypeId_{ROWS[number]} ({number})' if 0 <= number < len(ROWS) else f'no type ({number})'


# --- Dates and times: the texts without loss

def field(number, digits=2):
    return ('-' if number < 0 else '') + f'{abs(number):0{digits}d}'


def fields(value, *names):
    return [int(value[name]) for name in names]


def date_or_none(value):
    """None for the null date. A field that stands for any value is an asterisk."""
    numbers = fields(value, 'year', 'month', 'day')
    if numbers == [-32768, -128, -128]:
        return None
    return '-'.join('*' if number == -1 else field(number, digits) for number, digits in zip(numbers, (4, 2, 2)))


def time_or_none(value):
    numbers = fields(value, 'hour', 'minute', 'second')
    return None if numbers == [-128] * 3 else ':'.join(map(field, numbers))


def date_text(value):
    return date_or_none(value) or NULL


def time_text(value):
    return time_or_none(value) or NULL


def date_time_text(value):
    date, time = date_or_none(value['date']), time_or_none(value['time'])
    return f'{date or NULL}T{time or NULL}' if date or time else NULL


def std_date_text(value):
    year, month, day = fields(value, 'year', 'month', 'day')
    return f'{field(year, 4)}-{field(month)}-{field(day)}'


def std_time_text(value):
    hour, minute, second, hundredths = fields(value, 'hour', 'minute', 'second', 'hundredths')
    fraction = ('+' if hundredths > 99 else '') + field(hundredths)
    return f'{field(hour)}:{field(minute)}:{field(second)}.{fraction}{zone_text(*fields(value, "tz_hour", "tz_minute"))}'


def zone_text(hour, minute):
    """The sign is that of both; a minute of the other direction has a sign of its own."""
    west = hour < 0 or (hour == 0 and minute < 0)
    own = '+' if west and minute > 0 else ''
    return f'{"-" if west else "+"}{field(abs(hour))}:{own}{field(-minute if west and minute < 0 else minute)}'


def timestamp_text(value):
    return f'{std_date_text(value["date"])}T{std_time_text(value["time"])}'


def interval_text(value):
    return shortest_float(float(value['seconds']))


def shortest_float(number):
    """As few digits as give the same float back, and the shorter of the two notations."""
    if number != number or number in (float('inf'), float('-inf')):
        return f'{number}'
    digits = next(text for text in (f'{number:.{n}e}' for n in range(9)) if same_float(float(text), number))
    mantissa, exponent = digits.split('e')
    scientific = (mantissa.rstrip('0').rstrip('.') if '.' in mantissa else mantissa) + 'e' + exponent
    fixed = f'{decimal.Decimal(number if number == int(number) else digits):f}'
    if number == 0:
        return '-0' if fixed.startswith('-') else '0'
    return fixed if len(fixed) <= len(scientific) else scientific


def same_float(a, b):
    try:
        return struct.pack('<f', a) == struct.pack('<f', b)
    except OverflowError:
        return False


# --- Bytes

MOST_BYTES = 16


def counted(count, what):
    return f'{count} {what}' if count == 1 else f'{count} {what}s'


def bytes_text(address, length):
    if length < 0:
        return f'{UNREADABLE} ({length} bytes)'
    if length == 0:
        return '0 bytes'
    shown = bytes_at(address, min(length, MOST_BYTES)) if address != 0 else b''
    if not shown:
        return f'{counted(length, "byte")}: {UNREADABLE} at {address:#x}'
    return f'{counted(length, "byte")}: {shown.hex(" ")}' + ('...' if len(shown) < length else '')


def blob_text(value):
    return NULL if address_of(value['record_']) == 0 else record_text(value['record_'].dereference())


def record_text(value):
    return bytes_text(address_of(value['data']), int(value['length']))


def bounds_text(value):
    def end(name, without):
        address = address_of(value[name])
        return without if address == 0 else bytes_text(address, int(value[name + 'Length']))
    return f'from {end("lowKey", "the first key")} to {end("highKey", "the last key")}'


# --- Identifiers and references; a null one that carries something along shows it

def object_numbers(value):
    return '{2}-{1}#{0}'.format(*fields(value, 'block', 'low', 'high'))


def with_null(text, is_null, empty):
    if not is_null:
        return text
    return NULL if text == empty else f'{NULL} {text}'


def is_null_object(value):
    return fields(value, 'low', 'high') == [0, 0]


def class_numbers(value):
    return '{}v{}'.format(*fields(value, 'classNumber', 'version'))


def object_id_text(value):
    return with_null(f'({object_numbers(value)})', is_null_object(value), '(0-0#0)')


def database_object_text(value):
    text = f'({int(value["database"])}:{object_numbers(value["id"])})'
    return with_null(text, is_null_object(value['id']), '(0:0-0#0)')


def class_id_text(value):
    text = f'({class_numbers(value)})'
    return NULL if text == '(65535v65535)' else text


def reference_text(value):
    text = f'({int(value["database"])}:{object_numbers(value["id"])},{class_numbers(value["classId"])})'
    return with_null(text, is_null_object(value['id']), '(0:0-0#0,0v0)')


def local_reference_text(value):
    text = f'({object_numbers(value["id"])},{class_numbers(value["classId"])})'
    return with_null(text, is_null_object(value['id']), '(0-0#0,0v0)')


# --- Managers, rows and conversion records

def name_at(pointer):
    """A name of the descriptor table, or None where none can be read."""
    found = text_bytes(address_of(pointer), 64, 1)
    return found.decode('ascii', 'replace') if found and found.isascii() and len(found) < 64 else None


def manager_text(value):
    names = value['table_'].cast(gdb.lookup_type('char').pointer().pointer().pointer())
    name = name_at((names + FIRST_CURRENT_ROW).dereference().dereference())
    table = {ROWS[FIRST_CURRENT_ROW]: 'current', 'illegal': 'legacy'}.get(name, UNREADABLE)
    return f'{table} table, level {int(value["factoryLevel_"])}'


def row_text(value):
    name = name_at(value['name'])
    if name is None:
        return UNREADABLE
    size = 'fixed' if int(value['fixed']) == 1 else 'varying'
    return f'{name}, {counted(int(value["memoryLength"]), "byte")} in memory, {size} size on disk'


class ConvertDataPrinter:
    """The values of a conversion record are its children."""
    RELEASED = 100

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            number, count = int(self.value['type']), int(self.value['count'])
            if number == self.RELEASED:
                return 'released'
            name = ROWS[number] if number < len(ROWS) else f'type {number}'
            owned = '' if address_of(self.value['manager']) != 0 else ', not owned'
            return f'{counted(count, "value")} of {name}{owned}'
        except (gdb.error, RuntimeError):
            return unreadable(self.value)

    def children(self):
        for index in range(self.count()):
            try:
                element = (self.first() + index).dereference()
                element.fetch_lazy()
            except (gdb.error, RuntimeError):
                yield f'[{index}]', UNREADABLE
                return
            yield f'[{index}]', element

    def count(self):
        try:
            known = int(self.value['type']) < ROWS.index('illegal')
            return int(self.value['count']) if known and address_of(self.value['data']) != 0 else 0
        except (gdb.error, RuntimeError):
            return 0

    def first(self):
        name = ROWS[int(self.value['type'])]
        return self.value['data'].cast(gdb.lookup_type(MEMORY_TYPES.get(name, name)).pointer())

    def display_hint(self):
        return 'array'


# --- Registration

class TextPrinter:
    """A value as one text."""

    def __init__(self, text, value):
        self.text, self.value = text, value

    def to_string(self):
        try:
            return self.text(self.value)
        except (gdb.error, RuntimeError):
            return unreadable(self.value)


def text_printer(text):
    return lambda value: TextPrinter(text, value)


# By the type's name, template arguments left out.
PRINTERS = {
    'VqString': text_printer(string_text),
    'VqIString': text_printer(istring_text),
    'VqCaseIString': text_printer(istring_text),
    'vq::IStringText': text_printer(istring_text),
    'vq::IStringMembers': text_printer(istring_text),
    'VqChar': text_printer(char_text),
    'VqInt64': text_printer(int64_text),
    'VqDate': text_printer(date_text),
    'VqTime': text_printer(time_text),
    'VqDateTime': text_printer(date_time_text),
    'd_Date': text_printer(std_date_text),
    'd_Time': text_printer(std_time_text),
    'd_Timestamp': text_printer(timestamp_text),
    'd_Interval': text_printer(interval_text),
    'VqBlob': text_printer(blob_text),
    'VqBlob::Record': text_printer(record_text),
    'VqBoolean': text_printer(boolean_text),
    'VqSeal': text_printer(seal_text),
    'VqObjId': text_printer(object_id_text),
    'VqDBOId': text_printer(database_object_text),
    'VqClassId': text_printer(class_id_text),
    'VqRef': text_printer(reference_text),
    'VqLocalRef': text_printer(local_reference_text),
    'VqNullable': text_printer(nullable_text),
    'VqIdxBounds': text_printer(bounds_text),
    'VqTypeId': text_printer(type_id_text),
    'VqTypeMgr': text_printer(manager_text),
    'VqTypeDescriptor': text_printer(row_text),
    'VqTypeConvertData': ConvertDataPrinter,
}


def register(objfile):
    """Adds the printers to the library that was loaded, with which they go, or with None to all of GDB."""
    collection = gdb.printing.RegexpCollectionPrettyPrinter('vqtm')
    for name, printer in PRINTERS.items():
        collection.add_printer(name, f'^{re.escape(name)}(<.*>)?$', printer)
    gdb.printing.register_pretty_printer(objfile, collection, replace=True)


if __name__ == '__main__':
    # Sourced: as a module of its own, whose names no other script's can replace.
    import types
    module = types.ModuleType('vqtm_printers')
    with open(__file__, encoding='utf-8') as source:
        exec(compile(source.read(), __file__, 'exec'), module.__dict__)
    module.register(None)
