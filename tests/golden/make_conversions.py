#!/usr/bin/env python3
"""Writes conversions.txt: what values of every row become as texts, and what every row makes of those texts and of others.

usage: make_conversions.py [--check]

The rules are written here a second time, in the terms of the types rather than in those of the library. --check writes nothing
and fails when the file is not what would be written.
"""
import math
import pathlib
import re
import struct
import sys
import textwrap
from decimal import Decimal
from fractions import Fraction

WRITTEN = pathlib.Path(__file__).resolve().parent / 'conversions.txt'

# --- Texts: code set, language, bytes with the high byte first; None stands for null


class Text:
    def __init__(self, characters, code_set=1, language=0):
        self.characters, self.code_set, self.language = characters, code_set, language

    def stored(self):
        """The characters as they are stored with the high byte first."""
        return self.characters.encode('utf-16-be') if self.code_set >= 225 else self.characters.encode('latin-1')

    def single(self):
        """The characters as bytes, one each, read as Latin-1. Those of 2 bytes are mapped to Windows-1252."""
        if self.code_set < 225:
            return self.characters
        return ''.join(c.encode('cp1252', 'replace').decode('latin-1') for c in self.characters)

    def __str__(self):
        def shown(c):
            if ' ' <= c <= '~' and c != '\\':
                return c
            return f'\\u{ord(c):04x}' if self.code_set >= 225 else f'\\x{ord(c):02x}'
        kind = '' if (self.code_set, self.language) == (1, 0) else f'{self.code_set}:{self.language}:'
        return f'{kind}"{"".join(map(shown, self.characters))}"'


def wide(characters):
    return Text(characters, 253)


def show(text):
    return 'null' if text is None else str(text)


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
    base = 16 if digits[:2] in ('0x', '0X') else 8 if digits[0] == '0' else 10
    number = int(digits, base)
    return max(-number, -2**31) if found[1] == '-' else min(number, 2**31 - 1)


FLOATING = r'(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?'


def floating(text):
    """As atof reads."""
    found = re.match(r'[ \t-\r]*([+-]?)(?:(0x(?:[0-9a-f]+\.?[0-9a-f]*|\.[0-9a-f]+)(?:p[+-]?[0-9]+)?)|(' + FLOATING + '|inf|nan))', text,
                     re.IGNORECASE)
    if not found:
        return 0.0
    magnitude = float.fromhex(found[2]) if found[2] else float(found[3])
    return -magnitude if found[1] == '-' else magnitude


def as_float(number):
    """The four bytes of the nearest float."""
    try:
        return struct.pack('>f', number)
    except OverflowError:
        return struct.pack('>f', math.copysign(math.inf, number))


def shortest(seconds):
    """The shortest text of a float: in digits, or with an exponent where that is shorter."""
    if math.isinf(seconds) or math.isnan(seconds):
        return str(seconds)
    exponential = next(text for text in (f'{seconds:.{digits}e}' for digits in range(9)) if as_float(float(text)) == as_float(seconds))
    exact = Decimal(seconds) if abs(seconds) >= 2**24 else Decimal(exponential)
    fixed = f'{exact.to_integral() if exact == exact.to_integral() else exact:f}'
    return fixed if len(fixed) <= len(exponential) else exponential


# --- Days


def quotient(a, b):
    return math.trunc(Fraction(a, b))


def day_number(year, month, day):
    """The Julian day of a date of the Gregorian calendar."""
    a = quotient(month - 14, 12)
    return (quotient(1461 * (year + 4800 + a), 4) + day - 32075 + quotient(367 * (month - 2 - 12 * a), 12)
            - quotient(3 * quotient(year + 4900 + a, 100), 4))


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
    hour = quotient(seconds, 3600)
    minute = quotient(seconds - 3600 * hour, 60)
    return hour, minute, seconds - 3600 * hour - 60 * minute


def as_date(year, month, day):
    return struct.pack('>hbb', wrapped(year, 16), wrapped(month, 8), wrapped(day, 8))


def as_bytes(*fields):
    return struct.pack(f'{len(fields)}b', *(wrapped(field, 8) for field in fields))


# --- Fields of dates and times


def field(number, digits):
    return f'{"-" if number < 0 else ""}{abs(number):0{digits}d}'


def date_text(year, month, day):
    return f'{field(year, 4)}-{field(month, 2)}-{field(day, 2)}'


def clock_text(hour, minute, second):
    return ':'.join(field(number, 2) for number in (hour, minute, second))


def zoned_text(tz_hour, tz_minute, hour, minute, second, hundredths):
    west = tz_hour < 0 or tz_hour == 0 > tz_minute
    zone = ('-' if west else '+') + field(abs(tz_hour), 2) + ':'
    zone += ('+' if tz_minute > 0 else '') + field(-tz_minute if tz_minute < 0 else tz_minute, 2) if west else field(tz_minute, 2)
    return clock_text(hour, minute, second) + ('.+' if hundredths > 99 else '.') + field(hundredths, 2) + zone


class Unreadable(Exception):
    pass


def fitting(text, bits):
    number = int(text)
    if wrapped(number, bits) != number:
        raise Unreadable
    return number


NUMBER = r'\+?-?[0-9]+'
DATE = f'({NUMBER})-({NUMBER})-({NUMBER})'


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
    found = re.match(f'({NUMBER})(?::({NUMBER})(?::({NUMBER})(?:(\\.)([+-][0-9]+|[0-9]*))?)?)?', text)
    if not found or not (found[2] or hour_may_be_alone):
        raise Unreadable
    hour, minute, second = (fitting(number, 8) if number else 0 for number in found.groups()[:3])
    hundredths = 0
    if found[4]:
        if not found[5]:
            raise Unreadable
        hundredths = fitting(found[5], 8) if found[5][0] in '+-' else int((found[5] + '0')[:2])
    zone = re.match(r'([+-])([0-9]+)(?::([+-]?)([0-9]+))?', text[found.end():])
    tz_hour = tz_minute = 0
    if zone:
        sign = -1 if zone[1] == '-' else 1
        tz_hour = fitting(sign * int(zone[2]), 8)
        if zone[4]:
            tz_minute = fitting((-1 if zone[3] == '-' else 1 if zone[3] else sign) * int(zone[4]), 8)
    elif text[found.end():found.end() + 1] in ('+', '-'):
        raise Unreadable
    return tz_hour, tz_minute, hour, minute, second, hundredths


def read_behind_date(text):
    return read_clock(text[1:], True) if text[:1] in ('T', ' ') else (0,) * 6


def read_time(text):
    date = re.match(DATE, text)
    if date:
        try:
            read_fields(date)
        except Unreadable:
            pass
        else:
            return read_behind_date(text[date.end():])
    if re.fullmatch(rf'\+?-?{FLOATING}', text) and abs(float(text)) < 2**31 and (float(text) != 0 or Decimal(text) == 0):
        hundredths = math.floor(abs(Decimal(text)) * 100) % 100
        return (0, 0, *clock(math.trunc(float(text))), -hundredths if float(text) < 0 else hundredths)
    return read_clock(text, False)


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


def or_none(read, none):
    def made(text):
        try:
            return read(text)
        except Unreadable:
            return none
    return made


# --- Identifiers


def read_numbers(text):
    """The numbers by letter; each is told by the characters about it."""
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
    return {letter: number % 2**16 if letter in 'DHCV' else number for letter, number in numbers.items()}


def as_object(block, low, high):
    return struct.pack('>IIH', block, low, high)


def as_reference(block, low, high, database, class_number):
    return as_object(block, low, high) + struct.pack('>HH', database, class_number)


def object_from(text):
    n = read_numbers(text)
    return as_object(n['B'], n['L'], n['H'])


def class_from(text):
    n = read_numbers(text)
    return struct.pack('>HH', n['C'], n['V'])


def reference_from(text):
    n = read_numbers(text)
    return as_reference(n['B'], n['L'], n['H'], n['D'], n['C'])


def unless_null(read, null):
    """The null print string reads as null."""
    return lambda text: null if text.startswith('{NULL}') else read(text)


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


def as_int64(number):
    return struct.pack('>II', number % 2**32, (number >> 32) % 2**32)  # the low half first


# --- Stored strings


def as_string(text):
    if text is None:
        return bytes.fromhex('000400fe00ff')
    stored = text.stored()
    return struct.pack('>HBB', len(stored) + 4, text.code_set, text.language) + stored + b'\x00\xff'


def in_native_set(text):
    if text is None:
        return ''
    codecs = {7: 'iso8859-5'}
    if text.code_set in codecs:
        return text.stored().decode(codecs[text.code_set]).encode('cp1252', 'replace').decode('latin-1')
    return text.single()


def as_legacy(text):
    stored = in_native_set(text).encode('latin-1') + b'\0'
    return struct.pack('>H', len(stored)) + stored


def as_istring(text):
    characters = text.single().encode('latin-1') if text else b''
    return struct.pack('>BH', 0, len(characters)) + characters


# --- Columns: rows that are made of the same texts in the same way and stored alike; values in them and their texts; the
# bytes of a text's value, and of a null one's

STRINGS = [None, Text(''), Text('a'), Text('0'), Text('1'), Text('1x'), Text('TRUE'), Text('-12'), Text('+7'), Text(' 7'), Text('\t-3 '),
           Text('0x1F'), Text('0X1f'), Text('-0x80000001'), Text('017'), Text('08'), Text('0x'), Text('-'), Text('--5'), Text('1.5'),
           Text('-2.999e2'), Text('.5'), Text('1e3'), Text('1e-400'), Text('1e400'), Text('0x1.8p3'), Text('INF'), Text('2147483648'),
           Text('-2147483649'), Text('4294967295'), Text('18446744073709551615'), Text('99999999999999999999'), Text('9' * 300),
           Text('2005-03-07'), Text('2005-03-07 12:05'), Text('2005-02-30T24:61'), Text('40000-01-01'), Text('12:05'), Text('-0:30'),
           Text('12:05:09.5Z'), Text('7.29'), Text('-7.29'), Text('(7)'), Text('1-42'), Text('12v3'), Text('{NULL}'), Text('{NULL}x'),
           Text('\xe9t\xe9'), Text('5\x80'), Text('x' * 300), Text('abc', 0, 5), Text('\xbb\xde\xd4', 7, 18), Text('3', 7, 18),
           Text('', 2, 3), wide(''), wide('\u0141\xf3d\u017a'), wide('\u20ac5'), wide('1'), wide('-0x10 '), wide('\uff11'),
           wide('12:05:09.25+01:00'), wide('2.5e3'), wide('(3:1-42#7,12v3)'), wide('{NULL}'), wide('4294967296')]

DATES = [(2005, 3, 7), (2000, 1, 1), (2004, 2, 29), (1900, 2, 29), (1582, 10, 15), (1, 1, 1), (0, 0, 0), (-4713, 11, 24), (-1, -1, -1),
         (9999, 12, 31), (32767, 12, 31), (-32768, 1, 1), (2005, 13, 1)]
TIMES = [(0, 0, 0), (12, 5, 9), (23, 59, 59), (25, 0, 1), (127, 127, 127), (-1, -1, -1), (-128, 0, 0)]
ZONED = [(0, 0, 0, 0, 0, 0), (1, 0, 12, 5, 9, 25), (-5, 0, -3, 30, 0, 99), (2, 45, 25, 75, 7, 8), (0, -30, 127, -128, -1, -50),
         (-3, 30, 1, 2, 3, 100), (-128, -128, -128, -128, -128, -128), (127, 127, 127, 127, 127, 127)]
FLOATS = [0.0, -0.0, 1.5, -2.25, 0.1, 1e9, 16777216.0, 2453437.0, 86399.0, 3.4028234663852886e38, -1.401298464324817e-45, math.inf,
          -math.inf, math.nan]
DOUBLES = [0.0, -0.0, 0.1, 1 / 3, -2.5, 97.0, 1e15, -1e15, 1e-5, 123456789.125, 2453436.99, 1e300, 5e-324, 1.7976931348623157e308, math.inf,
           -math.inf, math.nan]
LONGS = [0, 1, -1, 12, 97, 70000, 86399, 2453437, -100000, 2**31 - 1, -2**31]
INT64S = [0, 1, -1, 123, 5000000000, -5000000000, 2**63 - 1, -2**63]
OBJECTS = [(7, 42, 1), (0, 1, 0), (0xFFFFFFFF, 0xFFFFFFFF, 0xFFFF), (5, 0, 0), (3, 0, 256)]
CLASSES = [(12, 3), (0, 0), (0xFFFF, 3), (3, 0xFFFF), (256, 0)]


def number_column(form, values, text, make):
    values = [(struct.pack(form, value), Text(text(value))) for value in values]
    return values, lambda string: struct.pack(form, make(string))


def integers(bits, values):
    form = {8: '>b', 16: '>h', 32: '>i'}[bits]
    return number_column(form, values, str, lambda string: wrapped(whole(string), bits))


def with_null(column, null):
    """The same with a null, and a byte before that tells of it."""
    values, make = column
    return [(b'\1' + null, None)] + [(b'\0' + stored, text) for stored, text in values], lambda string: b'\0' + make(string)


def general(number):
    return '%.15g' % number


def date_time_from(string):
    number = '(-?[0-9]+)?'
    found = re.match(f'{number}(?:(-){number}(?:-{number}(?:T{number}(?::{number}(?::{number})?)?)?)?)?', string)
    if not found[2]:
        return as_date(*gregorian(whole(string))) + as_bytes(0, 0, 0)
    fields = [int(text or 0) for text in (found[1], *found.groups()[2:])]
    fields = [number if wrapped(number, 32) == number else 0 for number in fields]
    return as_date(*fields[:3]) + as_bytes(*fields[3:])


def stored_boolean(string):
    return b'\1' if string[:1] == '1' else b'\0'


CHARS, SHORTS = [0, 1, 97, -1, 127, -128, -56], [0, 1, -1, 100, 4464, -5536, 32767, -32768]
CHAR, SHORT, LONG = integers(8, CHARS), integers(16, SHORTS), integers(32, LONGS)
FLOAT = ([(as_float(value), Text(general(struct.unpack('>f', as_float(value))[0]))) for value in FLOATS],
         lambda string: as_float(floating(string)))
DOUBLE = number_column('>d', DOUBLES, general, floating)
INT64 = ([(as_int64(value), Text(str(value))) for value in INT64S], lambda string: as_int64(read_int64(string)))
BLOB_NULL, BLOB_EMPTY = bytes.fromhex('00000004ffffffff'), bytes.fromhex('0000000400000000')
NO_DATE, NO_ZONED = (0, 1, 1), (0,) * 6

# name of the first row; the others; values and the making of a value of single bytes; the null value, None where there is none
COLUMNS = [
    ('char', 'VqByte', CHAR, None),
    ('short', 'VqWord', SHORT, None),
    ('long', 'VqDWord int unsigned enum BlockId', LONG, None),
    ('float', '', FLOAT, None),
    ('double', '', DOUBLE, None),
    ('VqDate', '',
     ([(as_date(*date), Text(str(day_number(*date)))) for date in DATES], lambda string: as_date(*gregorian(whole(string)))),
     bytes.fromhex('80008080')),
    ('VqTime', '',
     ([(as_bytes(*time), Text(str(time[0] * 3600 + time[1] * 60 + time[2]))) for time in TIMES],
      lambda string: as_bytes(*clock(whole(string)))),
     bytes.fromhex('808080')),
    ('VqDateTime', '',
     ([(as_date(*date) + as_bytes(*time), Text(date_text(*date) + 'T' + clock_text(*time)))
       for date, time in zip(DATES, TIMES + TIMES)], date_time_from),
     bytes.fromhex('80008080808080')),
    ('d_Date', '',
     ([(as_date(*date), Text(date_text(*date))) for date in DATES],
      lambda string: as_date(*or_none(lambda text: read_date(text)[0], NO_DATE)(string))),
     None),
    ('d_Time', '',
     ([(as_bytes(*time), Text(zoned_text(*time))) for time in ZONED], lambda string: as_bytes(*or_none(read_time, NO_ZONED)(string))),
     None),
    ('d_Timestamp', '',
     ([(as_date(*date) + as_bytes(*time), Text(date_text(*date) + 'T' + zoned_text(*time))) for date, time in zip(DATES, ZONED)],
      or_none(lambda text: (lambda date, rest: as_date(*date) + as_bytes(*read_behind_date(rest)))(*read_date(text)),
              as_date(*NO_DATE) + as_bytes(*NO_ZONED))),
     None),
    ('d_Interval', '',
     ([(as_float(value), Text(shortest(struct.unpack('>f', as_float(value))[0]))) for value in FLOATS],
      lambda string: as_float(read_seconds(string))),
     None),
    ('VqObjId', '',
     ([(as_object(b, l, h), Text(f'({h}-{l}#{b})') if l or h else None) for b, l, h in OBJECTS], unless_null(object_from, bytes(10))),
     bytes(10)),
    ('VqClassId', '',
     ([(struct.pack('>HH', c, v), Text(f'({c}v{v})')) for c, v in CLASSES], unless_null(class_from, b'\xff' * 4)),
     b'\xff' * 4),
    ('VqRef', '',
     ([(as_reference(b, l, h, d, c), Text(f'({d}:{h}-{l}#{b},{c}v0)') if l or h else None)
       for (b, l, h), d, (c, _) in zip(OBJECTS, (3, 0, 65535, 1, 2), CLASSES)], unless_null(reference_from, bytes(14))),
     bytes(14)),
    ('VqInt64', '', INT64, None),
    ('VqSeal', '',
     ([(number.to_bytes(6, 'big'), Text(str(number))) for number in (0, 1, 65536, 0x000200030004, 2**48 - 1)],
      lambda string: (read_int64(string) % 2**48).to_bytes(6, 'big')),
     None),
    ('VqBoolean', '',
     ([(b'\0', Text('0')), (b'\1', Text('1')), (b'\x02', Text('0')), (b'\xc8', Text('0'))], stored_boolean),
     b'\xff'),
    ('VqBlob', '',
     ([(BLOB_EMPTY, Text('')), (bytes.fromhex('000000070000000361007a'), Text(''))], lambda string: BLOB_EMPTY),
     BLOB_NULL),
    ('VqNull_char', 'VqNull_uchar', with_null(CHAR, bytes(1)), b'\1' + bytes(1)),
    ('VqNull_short', 'VqNull_ushort', with_null(SHORT, bytes(2)), b'\1' + bytes(2)),
    ('VqNull_int', 'VqNull_unsigned VqNull_long VqNull_ulong', with_null(LONG, bytes(4)), b'\1' + bytes(4)),
    ('VqNull_float', '', with_null(FLOAT, bytes(4)), b'\1' + bytes(4)),
    ('VqNull_double', '', with_null(DOUBLE, bytes(8)), b'\1' + bytes(8)),
    ('VqNull_VqInt64', '', with_null(INT64, bytes(8)), b'\1' + bytes(8)),
]
ISTRINGS = ['', 'a', '12', '\xe9t\xe9', '5\x80', '{NULL}', 'x' * 300]
# The columns whose values are texts: their values, and the bytes of a text or of null.
TEXT_COLUMNS = [
    ('VqString', '', [(as_string(text), text) for text in STRINGS] + [(bytes.fromhex('0004fe0000ff'), None)], as_string),
    ('legacy-VqString', '', [(as_legacy(Text(text)), Text(text)) for text in ISTRINGS], as_legacy),
    ('VqIString', 'VqCaseIString',
     [(as_istring(Text(text)), Text(text)) for text in ISTRINGS] + [(bytes.fromhex('2000016e'), Text('n'))], as_istring),
]


def columns():
    """Each column with a making of values from any text or null."""
    def making(make, null):
        # What has no null of its own is what an empty text gives.
        return lambda text: make(text.single()) if text else make('') if null is None else null
    for name, others, (values, make), null in COLUMNS:
        nulls = [(null, None)] if null is not None else []
        yield name, others, values + [value for value in nulls if value not in values], making(make, null)
    yield from TEXT_COLUMNS


HEAD = '''\
# Conversions, by make_conversions.py. Bytes are the disk form with the high byte first, in hexadecimal.
#
# column: the rows whose values are stored, become texts and are made of texts alike
# value:  a value of every row of a column, and its text
# text:   a text, and the values that are made of it, by column; what a row without null makes of null is its default
#
# A text is null or stands between quotation marks; code set and language stand before it where they are not 1 and 0.
'''


def written():
    all_columns = list(columns())
    lines, texts = [], {'null': None}
    for name, others, values, _ in all_columns:
        lines.append(f'column {" ".join([name, *others.split()])}')
    for name, _, values, _ in all_columns:
        lines.append('')
        for stored, text in values:
            lines.append(f'value {name} {stored.hex()} {show(text)}')
            texts.setdefault(show(text), text)
    for shown, text in texts.items():
        lines += ['', f'text {shown}']
        made = ' '.join(f'{name}={make(text).hex()}' for name, _, _, make in all_columns)
        lines += textwrap.wrap(made, 128, initial_indent='    ', subsequent_indent='    ', break_long_words=False, break_on_hyphens=False)
    return HEAD + '\n'.join(['', *lines]) + '\n'


def main():
    text = written()
    if '--check' not in sys.argv[1:]:
        WRITTEN.write_text(text, encoding='utf-8', newline='\n')
    elif not WRITTEN.exists() or WRITTEN.read_bytes().decode('utf-8').replace('\r\n', '\n') != text:
        print(f'{WRITTEN.name} is not what {pathlib.Path(__file__).name} writes', file=sys.stderr)
        return 1
    return 0


if __name__ == '__main__':
    sys.exit(main())
