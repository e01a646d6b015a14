#!/usr/bin/env python3
"""Completes conversions.txt: writes what every row makes of each text that stands there, and of the texts of its values.

With --check it writes nothing and ends with status 1 where the table is not complete and exact.

The rules are written here a second time, in the terms of the types rather than in those of the library.
"""
import math
import pathlib
import re
import struct
import sys
import textwrap
from decimal import Decimal
from fractions import Fraction

TABLE = pathlib.Path(__file__).resolve().parent / 'conversions.txt'

# --- Texts: code set, language, characters; None stands for null


class Text:
    def __init__(self, shown):
        code_set, language, characters = re.fullmatch(r'(?:(\d+):(\d+):)?"(.*)"', shown).groups()
        self.code_set, self.language = int(code_set or 1), int(language or 0)
        self.characters = re.sub(r'\\u(....)|\\x(..)', lambda code: chr(int(code[1] or code[2], 16)), characters)

    def stored(self):
        """The characters as they are stored with the high byte first."""
        return self.characters.encode('utf-16-be') if self.code_set >= 225 else self.characters.encode('latin-1')

    def single(self):
        """The characters as bytes, one each, read as Latin-1. Those of 2 bytes are mapped to Windows-1252."""
        if self.code_set < 225:
            return self.characters
        return ''.join(c.encode('cp1252', 'replace').decode('latin-1') for c in self.characters)


# --- Numbers


def wrapped(number, bits):
    """The signed number that is left of its low bits."""
    number &= (1 << bits) - 1
    return number - (1 << bits) if number >> (bits - 1) else number


def whole(text):
    """As strtol reads a text whose base is its own, with a long of 32 bits."""
    found = re.match(r'[ \t-\r]*([+-]?)(0[xX][0-9a-fA-F]+|0[0-7]*|[1-9][0-9]*)', text)
    if not found:
        return 0
    digits = found[2]
    number = int(digits, 16 if digits[:2] in ('0x', '0X') else 8 if digits[0] == '0' else 10)
    return max(-number, -2**31) if found[1] == '-' else min(number, 2**31 - 1)


FLOATING = r'(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?'
HEXADECIMAL = r'0x(?:[0-9a-f]+\.?[0-9a-f]*|\.[0-9a-f]+)(?:p[+-]?[0-9]+)?'


def floating(text):
    """As atof reads."""
    found = re.match(rf'[ \t-\r]*([+-]?)(?:({HEXADECIMAL})|({FLOATING}|inf|nan))', text, re.IGNORECASE)
    magnitude = 0.0 if not found else float.fromhex(found[2]) if found[2] else float(found[3])
    return -magnitude if found and found[1] == '-' else magnitude


def as_float(number):
    """The four bytes of the nearest float."""
    try:
        return struct.pack('>f', number)
    except OverflowError:
        return struct.pack('>f', math.copysign(math.inf, number))


def integer_from(form):
    return lambda text: struct.pack(form, wrapped(whole(text), 8 * struct.calcsize(form)))


# --- Days


def quotient(a, b):
    return math.trunc(Fraction(a, b))


def gregorian(number):
    """The date of a Julian day, with products and sums of 32 bits."""
    def bits(n):
        return wrapped(n, 32)
    l = bits(number + 68569)
    n = quotient(bits(4 * l), 146097)
    l = bits(l - quotient(bits(146097 * n + 3), 4))
    i = quotient(bits(4000 * bits(l + 1)), 1461001)
    l = bits(l - quotient(bits(1461 * i), 4) + 31)
    j = quotient(bits(80 * l), 2447)
    month = quotient(j, 11)
    return 100 * (n - 49) + i + month, j + 2 - 12 * month, l - quotient(bits(2447 * j), 80)


def julian(number):
    """The same for the standard types, whose calendar changes in 1582."""
    if number > 2299160:
        alpha = math.trunc((number - Fraction(186721625, 100)) / Fraction(3652425, 100))
        number += 1 + alpha - quotient(alpha, 4)
    b = number + 1524
    c = math.trunc((b - Fraction(1221, 10)) / Fraction(36525, 100))
    rest = b - math.trunc(Fraction(36525, 100) * c)
    e = math.trunc(rest / Fraction(306001, 10000))
    month = e - 1 if e < 14 else e - 13
    return c - 4716 + (month < 3), month, rest - math.trunc(Fraction(306001, 10000) * e)


def clock(seconds):
    hour, rest = quotient(seconds, 3600), math.fmod(seconds, 3600)
    return hour, math.trunc(rest / 60), int(math.fmod(rest, 60))


def as_bytes(*fields):
    return struct.pack(f'{len(fields)}b', *(wrapped(field, 8) for field in fields))


def as_date(year, month, day):
    return struct.pack('>h', wrapped(year, 16)) + as_bytes(month, day)


def date_time_from(text):
    number = '(-?[0-9]+)?'
    found = re.match(f'{number}(?:(-){number}(?:-{number}(?:T{number}(?::{number}(?::{number})?)?)?)?)?', text)
    if not found[2]:
        return as_date(*gregorian(whole(text))) + bytes(3)
    fields = [int(field or 0) for field in (found[1], *found.groups()[2:])]
    fields = [field if wrapped(field, 32) == field else 0 for field in fields]
    return as_date(*fields[:3]) + as_bytes(*fields[3:])


# --- Standard dates and times

NUMBER = r'\+?-?[0-9]+'
DATE = f'({NUMBER})-({NUMBER})-({NUMBER})'
CLOCK = f'({NUMBER})(?::({NUMBER})(?::({NUMBER})(?:(\\.)([+-][0-9]+|[0-9]*))?)?)?'
NO_DATE, NO_ZONED = (0, 1, 1), (0,) * 6


class Unreadable(Exception):
    pass


def fitting(text, bits):
    number = int(text)
    if wrapped(number, bits) != number:
        raise Unreadable
    return number


def or_none(read, none):
    def made(text):
        try:
            return read(text)
        except Unreadable:
            return none
    return made


def read_fields(found):
    return fitting(found[1], 16), fitting(found[2], 8), fitting(found[3], 8)


def read_date(text):
    """The fields and what stands behind them."""
    if re.fullmatch(NUMBER, text) and wrapped(int(text), 32) == int(text):
        return julian(int(text)), ''
    found = re.match(DATE, text)
    if not found:
        raise Unreadable
    return read_fields(found), text[found.end():]


def read_clock(text, hour_may_be_alone):
    found = re.match(CLOCK, text)
    if not found or not (found[2] or hour_may_be_alone) or (found[4] and not found[5]):
        raise Unreadable
    rest = text[found.end():]
    zone = re.match(r'([+-])([0-9]+)(?::([+-]?)([0-9]+))?', rest)
    if (rest[:1] == ':' and not found[3]) or (not zone and rest[:1] in ('+', '-')) or (zone and rest[zone.end():] == ':'):
        raise Unreadable  # what a sign or a colon announces is missing
    hour, minute, second = (fitting(number, 8) if number else 0 for number in found.groups()[:3])
    digits = found[5] or '0'
    hundredths = fitting(digits, 8) if digits[0] in '+-' else int((digits + '0')[:2])
    if not zone:
        return 0, 0, hour, minute, second, hundredths
    tz_minute = fitting((zone[3] or zone[1]) + (zone[4] or '0'), 8)
    return fitting(zone[1] + zone[2], 8), tz_minute, hour, minute, second, hundredths


def read_behind_date(text):
    return read_clock(text[1:], True) if text[:1] in ('T', ' ') else NO_ZONED


def read_time(text):
    date = re.match(DATE, text)
    if date and or_none(read_fields, None)(date):
        return read_behind_date(text[date.end():])
    if re.fullmatch(rf'\+?-?{FLOATING}', text) and abs(float(text)) < 2**31 and (float(text) != 0 or Decimal(text) == 0):
        hundredths = math.floor(abs(Decimal(text)) * 100) % 100
        return (0, 0, *clock(math.trunc(float(text))), -hundredths if float(text) < 0 else hundredths)
    return read_clock(text, False)


def timestamp_from(text):
    date, rest = read_date(text)
    return as_date(*date) + as_bytes(*read_behind_date(rest))


def read_seconds(text):
    text = text.lstrip(' ')
    found = re.match(rf'\+?(-?(?:{FLOATING}|inf|nan))', text, re.IGNORECASE)
    if not found or text[found.end():found.end() + 1] == '-':
        return 0.0
    if text[found.end():found.end() + 1] != ':':
        return float(found[1])
    parts = re.match(r'\+?(-?[0-9.]+):\+?(-?[0-9]*\.?[0-9]*)(?::\+?(-?[0-9]*\.?[0-9]*))?', text).groups()
    total = sum(abs(float(part or 0)) * unit for part, unit in zip(parts, (3600, 60, 1)))
    return -total if any(float(part or 0) < 0 for part in parts) else total


# --- Identifiers


def identifier_from(form, letters, null=None):
    """Numbers by letter, each told by the characters about it. The null print string reads as null."""
    def made(text):
        if text.startswith('{NULL}'):
            return null or bytes(struct.calcsize(form))
        numbers = dict.fromkeys('DHLBCV', 0)
        for found in re.finditer('[0-9]+', text):
            before = re.sub(r'[ \t-\r0-9]', '', text[:found.start()])[-1:]
            after = text[found.end():found.end() + 1]
            letter = {'#': 'B', 'v': 'V'}.get(before) or {':': 'D', '-': 'H', '#': 'L', 'v': 'C'}.get(after) or {',': 'C'}.get(before)
            number = int(found[0]) % 2**64
            if letter:
                numbers[letter] = number % 2**32
            elif not before + after:
                numbers.update(L=number % 2**32, H=number >> 32)
        return struct.pack(form, *(numbers[letter] % (2**32 if letter in 'BL' else 2**16) for letter in letters))
    return made


# --- 64-bit integers and seals


def read_int64(text):
    if not text:
        return 0
    found = re.fullmatch(r'([+-]?)(0[xX][0-9a-zA-Z]*|0[0-9]*|(?!0)[0-9]*)', text)
    base = 10 if not found or found[2][:1] != '0' else 16 if found[2][1:2] in ('x', 'X') else 8
    digits = found and (found[2][2:] if base == 16 else found[2])
    try:
        return (-1 if found[1] == '-' else 1) * int(digits or '0', base)
    except (TypeError, ValueError):
        return -1


def int64_from(text):
    number = read_int64(text)
    return struct.pack('>II', number % 2**32, (number >> 32) % 2**32)  # the low half first


# --- Stored strings


def string_from(text):
    if text is None:
        return bytes.fromhex('000400fe00ff')
    stored = text.stored()
    return struct.pack('>HBB', len(stored) + 4, text.code_set, text.language) + stored + b'\x00\xff'


def legacy_from(text):
    stored = text.single().encode('latin-1') if text else b''
    if text and text.code_set == 7:
        stored = stored.decode('iso8859-5').encode('cp1252', 'replace')
    return struct.pack('>H', len(stored) + 1) + stored + b'\0'


def istring_from(text):
    characters = text.single().encode('latin-1') if text else b''
    return struct.pack('>BH', 0, len(characters)) + characters


# --- Columns: the making of a value of single bytes; the null value, None where a null makes what an empty text does

COLUMNS = {
    'char': (integer_from('>b'), None),
    'short': (integer_from('>h'), None),
    'long': (integer_from('>i'), None),
    'float': (lambda text: as_float(floating(text)), None),
    'double': (lambda text: struct.pack('>d', floating(text)), None),
    'VqDate': (lambda text: as_date(*gregorian(whole(text))), bytes.fromhex('80008080')),
    'VqTime': (lambda text: as_bytes(*clock(whole(text))), bytes.fromhex('808080')),
    'VqDateTime': (date_time_from, bytes.fromhex('80008080808080')),
    'd_Date': (or_none(lambda text: as_date(*read_date(text)[0]), as_date(*NO_DATE)), None),
    'd_Time': (or_none(lambda text: as_bytes(*read_time(text)), bytes(6)), None),
    'd_Timestamp': (or_none(timestamp_from, as_date(*NO_DATE) + bytes(6)), None),
    'd_Interval': (lambda text: as_float(read_seconds(text)), None),
    'VqObjId': (identifier_from('>IIH', 'BLH'), bytes(10)),
    'VqClassId': (identifier_from('>HH', 'CV', b'\xff' * 4), b'\xff' * 4),
    'VqRef': (identifier_from('>IIHHH', 'BLHDC'), bytes(14)),
    'VqInt64': (int64_from, None),
    'VqSeal': (lambda text: (read_int64(text) % 2**48).to_bytes(6, 'big'), None),
    'VqBoolean': (lambda text: b'\1' if text[:1] == '1' else b'\0', b'\xff'),
    'VqBlob': (lambda text: bytes.fromhex('0000000400000000'), bytes.fromhex('00000004ffffffff')),
}
NULLABLES = {'VqNull_char': 'char', 'VqNull_short': 'short', 'VqNull_int': 'long', 'VqNull_float': 'float', 'VqNull_double': 'double',
             'VqNull_VqInt64': 'VqInt64'}
TEXT_COLUMNS = {'VqString': string_from, 'legacy-VqString': legacy_from, 'VqIString': istring_from}


def made_in(column, text):
    """The bytes of a value that is made of a text or of null."""
    if column in TEXT_COLUMNS:
        return TEXT_COLUMNS[column](text)
    if column in NULLABLES:
        plain = COLUMNS[NULLABLES[column]][0]
        return b'\0' + plain(text.single()) if text else b'\1' + bytes(len(plain('')))
    make, null = COLUMNS[column]
    return make(text.single()) if text else make('') if null is None else null


def completed(lines):
    kept = [line for line in lines if line.strip() and line[0] != ' ']
    columns = [line.split()[1] for line in kept if line.startswith('column ')]
    texts = [line.split(' ', 1)[1] for line in kept if line.startswith('text ')]
    texts += [line.split(' ', 3)[3] for line in kept if line.startswith('value ')]
    kind = lambda line: ' '.join(line.split()[:2]) if line.startswith('value ') else line.split()[0]
    before = ''
    for line in (line for line in kept if not line.startswith('text ')):
        if kind(line) != before and before:
            yield ''
        before = kind(line)
        yield line
    for shown in dict.fromkeys(texts):
        text = None if shown == 'null' else Text(shown)
        yield from ('', f'text {shown}')
        made = ' '.join(f'{column}={made_in(column, text).hex()}' for column in columns)
        yield from textwrap.wrap(made, 128, initial_indent='    ', subsequent_indent='    ', break_long_words=False,
                                 break_on_hyphens=False)


if __name__ == '__main__':
    current = TABLE.read_text(encoding='utf-8')
    table = '\n'.join(completed(current.splitlines())) + '\n'
    if '--check' not in sys.argv[1:]:
        TABLE.write_text(table, encoding='utf-8', newline='\n')
    elif table != current:
        sys.exit(f'{TABLE.name} is not what {pathlib.Path(__file__).name} makes of it: run the script and read the difference')
