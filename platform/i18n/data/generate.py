#!/usr/bin/env python3
"""Writes the tables of the internationalisation library.

usage: generate.py [--check] [--report]

Reads the Unicode Character Database (Debian's package unicode-data) and the code sets of Python's codecs, and writes the
.inc files in generated/. --check writes nothing and fails when a file is not what would be written; it ends with
status 77 where the database is not installed or is of another version. --report says what the tables take and where letters found no room.
"""
import argparse
import re
import struct
import sys
import zlib
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
WRITTEN = HERE / 'generated'
sys.path.insert(0, str(HERE))

from generator import casing, codesets, collation, emit, languages, ucd, widesets  # noqa: E402

DATABASE = Path('/usr/share/unicode')
LAYOUT = HERE.parent / 'src' / 'orderlayout.h'
UNICODE_VERSION = '15.0.0'
UCD_SOURCE = f'the Unicode Character Database {UNICODE_VERSION}'
CODEC_SOURCE = "Python's codecs and " + UCD_SOURCE


class Generator:
    def __init__(self):
        self.db = ucd.Database(DATABASE)
        self.layout = collation.read_layout(LAYOUT)
        self.sets = codesets.byte_sets()
        self.wide_sets = widesets.wide_sets()
        self.classes = {}
        for number, tailoring in sorted(languages.CLASSES.items()):
            self.classes[number] = collation.Collation(self.db, self.layout, tailoring, self.classes.get(1))

    def files(self):
        return [self.byte_characters(), self.byte_units(), self.unicode_characters(),
                self.unicode_orders(), self.languages(), *map(self.wide_set, self.wide_sets), self.casing()]

    @staticmethod
    def identifier(byte_set):
        return re.sub(r'[\W_]', '', byte_set.name.title())

    # ---- 1-byte sets

    def byte_characters(self):
        file = emit.File('bytecharacters.inc', CODEC_SOURCE)
        file.add('// Unicode unit, upper case, lower case, properties.', '')
        for byte_set in self.sets:
            file.add(f'// {byte_set.name}', f'constexpr ByteCharacter characters{self.identifier(byte_set)}[256] = {{')
            file.add(*(self.byte_character(byte_set, byte) for byte in range(256)))
            file.add('};', '')
            file.bytes += 256 * 6
        return file

    def byte_character(self, byte_set, byte):
        unit = byte_set.units[byte]
        known = unit != codesets.NO_CHARACTER
        upper, lower = byte_set.case(byte, self.db.upper), byte_set.case(byte, self.db.lower)
        properties = self.db.properties(unit) if known else 0
        title = self.db.title(unit) if known else 'no character'
        return f'    {{0x{unit:04X}, 0x{upper:02X}, 0x{lower:02X}, 0x{properties:02X}}},  // {byte:02X} {title}'

    def byte_units(self):
        file = emit.File('byteunits.inc', CODEC_SOURCE)
        pool, rows = emit.Pool(), []
        for byte_set in self.sets:
            codes = [byte_set.codes.get(unit, 0) for unit in range(0x10000)]
            rows.append((byte_set, pool.index_of(codes, f'{byte_set.name}, units from')))
        file.add('// Unicode unit to code, by page of 256 units; 0 where the set lacks the unit.', '')
        file.pages('codePages', pool, 2)
        for byte_set, index in rows:
            file.array(f'std::uint8_t codePagesOf{self.identifier(byte_set)}[256]', index, 2, 16,
                       lambda at: f'  // {at:02X}00')
        file.add('constexpr ByteSetData byteSetData[] = {')
        for byte_set in self.sets:
            name = self.identifier(byte_set)
            file.add(f'    {{{byte_set.code}, "{byte_set.name}", characters{name}, codePagesOf{name}}},')
        file.add('};')
        return file

    def byte_code_orders(self, byte_set, order, byte):
        unit = byte_set.units[byte]
        return order.of(unit) if unit != codesets.NO_CHARACTER else (self.layout['UndefinedOrder'],)

    # ---- 2-byte sets

    def wide_set(self, wide_set):
        name = self.identifier(wide_set)
        file = emit.File(f'wide{name.lower()}.inc', "Python's codecs")
        for title, rows_name, values_name, mapping in [
                ('Unicode unit by code', 'codeRows', 'units', wide_set.units),
                ('Code by Unicode unit', 'unitRows', 'codes', wide_set.codes)]:
            index, values = widesets.rows(mapping)
            file.add(f'// {wide_set.name}. {title}; 0: none.', f'constexpr WideRow {rows_name}{name}[256] = {{')
            for at in range(0, 256, 8):
                row = ', '.join(f'{{0x{start:04X}, 0x{first:02X}, 0x{last:02X}}}' for start, first, last in index[at:at + 8])
                file.add(f'    {row},  // {at:02X}00')
            file.add('};', '')
            file.bytes += 4 * 256
            file.array(f'std::uint16_t {values_name}{name}[{len(values)}]', values, 4, 16)
        return file

    # ---- Unicode

    def unicode_characters(self):
        file = emit.File('unicodecharacters.inc', UCD_SOURCE)
        units = range(0x10000)
        tables = [
            ('property', 2, 'Properties.', [self.db.properties(unit) for unit in units]),
            ('upper', 4, 'What to add for the upper case, modulo 65536.',
             [self.db.upper(unit) - unit & 0xFFFF for unit in units]),
            ('lower', 4, 'What to add for the lower case, modulo 65536.',
             [self.db.lower(unit) - unit & 0xFFFF for unit in units]),
        ]
        for name, digits, comment, values in tables:
            pool = emit.Pool()
            index = pool.index_of(values, 'from')
            file.add(f'// {comment}')
            file.array(f'std::uint8_t {name}Index[256]', index, 2, 16, lambda at: f'  // {at:02X}00')
            file.pages(f'{name}Pages', pool, digits)
        return file

    def unicode_orders(self):
        file = emit.File('unicodeorders.inc', UCD_SOURCE)
        pool = emit.Pool()
        indices = {number: pool.index_of([self.wide_order(order, unit) for unit in range(0x10000)],
                                         f'class {number}, from') for number, order in self.classes.items()}
        file.add('// First orders by unit; WidePairOrder and RuleOrder mark what is looked up elsewhere.', '')
        file.pages('orderPages', pool, 4)
        for number, order in self.classes.items():
            file.array(f'std::uint8_t orderIndex{number}[256]', indices[number], 2, 16, lambda at: f'  // {at:02X}00')
            pairs = [unit for unit in range(0x10000) if self.wide_order(order, unit) == self.layout['WidePairOrder']]
            file.add(f'constexpr OrderPair orderPairs{number}[] = {{')
            for unit in pairs:
                one, two = order.of(unit)
                file.add(f'    {{0x{unit:04X}, {{0x{one:04X}, 0x{two:04X}}}}},  // {self.db.title(unit)}')
            file.add('};', '')
            file.bytes += 6 * len(pairs)
            self.contractions(file, number, order)
        file.add('constexpr WideOrders wideOrders[] = {')
        file.add(*(f'    {{orderIndex{number}, orderPairs{number}, std::size(orderPairs{number}), '
                   + (f'contractions{number}, std::size(contractions{number})' if order.contractions else 'nullptr, 0')
                   + '},' for number, order in self.classes.items()), '};', '')
        file.add("// The CRC-32 of all orders of all languages in all sets.",
                 f'constexpr std::uint32_t orderVersion = 0x{self.version():08X};')
        return file

    @staticmethod
    def contractions(file, number, order):
        if not order.contractions:
            return
        file.add(f'constexpr Contraction contractions{number}[] = {{')
        for text, orders in order.contractions.items():
            one, two = (*orders, 0)[:2]
            file.add(f'    {{"{text}", {{0x{one:04X}, 0x{two:04X}}}}},')
        file.add('};', '')
        file.bytes += 8 * len(order.contractions)

    def wide_order(self, order, unit):
        at = self.layout
        blocks = ('ExtensionA', 'Unified', 'Compatibility', 'Hangul', 'Surrogate', 'Private')
        if unit in self.db and any(at[block + 'First'] <= unit < at[block + 'End'] for block in blocks):
            return at['RuleOrder']
        orders = order.of(unit)
        return orders[0] if len(orders) == 1 else at['WidePairOrder']

    def version(self):
        """For each language, the sets by code and their codes upwards: both orders, the second 0 where there is one. Then
        the contractions of Unicode by their three codes, the third 0 where there are two."""
        of_class = {}
        for number, order in self.classes.items():
            orders = [self.byte_code_orders(byte_set, order, byte) for byte_set in self.sets for byte in range(256)]
            orders += [order.of(wide_set.units[code]) if code in wide_set.units else (self.layout['UndefinedOrder'],)
                       for wide_set in self.wide_sets for code in range(0x10000)]
            orders += [order.of(unit) for unit in range(0x10000)]
            orders += [pair for _, pair in sorted(order.spellings())]
            of_class[number] = b''.join(struct.pack('<HH', *(*pair, 0)[:2]) for pair in orders)
        crc = 0
        for _, number in languages.LANGUAGES:
            crc = zlib.crc32(of_class[number], crc)
        return crc

    # ---- casing

    def casing(self):
        file = emit.File('casing.inc', UCD_SOURCE)
        upper, lower = casing.full_mappings(self.db)
        for name, mapping in ('upper', upper), ('lower', lower):
            file.add(f'constexpr LongCase {name}Long[] = {{')
            for unit, units in sorted(mapping.items()):
                listed = ', '.join(f'0x{part:04X}' for part in (*units, 0, 0)[:3])
                file.add(f'    {{0x{unit:04X}, {{{listed}}}}},  // {self.db.title(unit)}')
            file.add('};', '')
            file.bytes += 8 * len(mapping)
        for name, units in casing.contexts(self.db):
            ranges = casing.ranges(units)
            file.add(f'constexpr UnitRange {name}[] = {{')
            for at in range(0, len(ranges), 8):
                row = ', '.join(f'{{0x{first:04X}, 0x{last:04X}}}' for first, last in ranges[at:at + 8])
                file.add(f'    {row},')
            file.add('};', '')
            file.bytes += 4 * len(ranges)
        return file

    # ---- languages

    def languages(self):
        file = emit.File('languages.inc', 'generator/languages.py')
        file.add('// Class bytes, in the order of the tables of each set.')
        file.add(f'constexpr std::uint8_t collationClasses[] = {{{", ".join(map(str, self.classes))}}};', '')
        file.add('// Name, place of its class in the tables.', 'constexpr Language languages[] = {')
        places = list(self.classes)
        for number, (name, collation_class) in enumerate(languages.LANGUAGES):
            file.add(f'    {{"{name}", {places.index(collation_class)}}},  // {number}')
        file.add('};')
        file.bytes += 8 * len(languages.LANGUAGES)
        return file


def obstacle():
    """Why the tables cannot be made here, or None."""
    if not (DATABASE / 'UnicodeData.txt').exists():
        return f'{DATABASE}/UnicodeData.txt is not installed (Debian: unicode-data)'
    with open(DATABASE / 'PropList.txt', encoding='utf-8') as text:
        title = text.readline().strip('# \n')
    if title != f'PropList-{UNICODE_VERSION}.txt':
        return f'{DATABASE} is {title}, the tables are of {UNICODE_VERSION} (UNICODE_VERSION in this script)'
    return None


def check(files):
    stale = [file.name for file in files
             if not (WRITTEN / file.name).exists()
             or (WRITTEN / file.name).read_text(encoding='utf-8').replace('\r\n', '\n') != file.text()]
    for name in stale:
        print(f'{name} is not what generate.py writes', file=sys.stderr)
    return 1 if stale else 0


def report(generator, files):
    for file in files:
        print(f'{file.name:24} {file.bytes:8} bytes')
    print(f'{"all":24} {sum(file.bytes for file in files):8} bytes')
    for number, order in generator.classes.items():
        print(f'class {number}: {order.free_symbols} symbol orders are free')
        for code, what in order.fallbacks:
            print(f'    {code:04X} {generator.db.title(code)}: {what}')


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    parser.add_argument('--check', action='store_true', help='compare instead of writing')
    parser.add_argument('--report', action='store_true', help='print sizes and letters without room')
    arguments = parser.parse_args()
    if (reason := obstacle()) is not None:
        print(f'==== SKIPPED: {reason} ====', file=sys.stderr)
        return 77
    generator = Generator()
    files = generator.files()
    if arguments.report:
        report(generator, files)
    if arguments.check:
        return check(files)
    for file in files:
        (WRITTEN / file.name).write_text(file.text(), encoding='utf-8', newline='\n')
    return 0


if __name__ == '__main__':
    sys.exit(main())
