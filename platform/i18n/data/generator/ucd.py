"""The Unicode Character Database, first plane, as far as the tables need it."""
import re
from functools import cache, cached_property

SPACE, DIGIT, UPPER, LOWER, LETTER, CONTROL, PUNCT, FOREIGN = (1 << i for i in range(8))


class Char:
    """One line of UnicodeData.txt."""

    def __init__(self, fields):
        self.code = int(fields[0], 16)
        self.name = fields[1]
        self.category = fields[2]
        mapping = fields[5].split()
        self.tag = mapping.pop(0).strip('<>') if mapping[:1] and mapping[0][0] == '<' else ''
        self.parts = [int(part, 16) for part in mapping]
        self.digit = int(fields[7]) if fields[7] else None
        self.numeric = fields[8]
        self.upper = int(fields[12] or '0', 16)
        self.lower = int(fields[13] or '0', 16)


class Database:
    """All characters below U+10000, by code."""

    def __init__(self, folder):
        self.folder = folder
        self.chars = {}
        self.ranges = []  # (first, last, name) of the characters that are listed by their ends only
        with open(f'{folder}/UnicodeData.txt', encoding='ascii') as lines:
            self._read(lines)

    def _read(self, lines):
        for line in lines:
            char = Char(line.rstrip('\n').split(';'))
            if char.code > 0xFFFF:
                return
            self.chars[char.code] = char
            if char.name.endswith(', First>'):
                self.ranges.append([char.code, 0, char.name[1:-8]])
            elif char.name.endswith(', Last>'):
                self.ranges[-1][1] = char.code
                first = self.chars[self.ranges[-1][0]]
                for code in range(first.code + 1, char.code):
                    self.chars[code] = first

    def property_set(self, file, value):
        """The codes below U+10000 that `file` gives `value`."""
        codes = set()
        with open(f'{self.folder}/{file}', encoding='utf-8') as lines:
            for line in lines:
                if m := re.match(rf'([0-9A-F]+)(?:\.\.([0-9A-F]+))?\s*;\s*{value}\s', line):
                    last = min(int(m[2] or m[1], 16), 0xFFFF)
                    codes.update(range(int(m[1], 16), last + 1))
        return codes

    @cached_property
    def white_space(self):
        return self.property_set('PropList.txt', 'White_Space')

    @cached_property
    def shared_scripts(self):
        """Characters that belong to no script of their own."""
        return self.property_set('Scripts.txt', 'Common') | self.property_set('Scripts.txt', 'Inherited')

    @cached_property
    def by_name(self):
        return {char.name: char for char in self.chars.values()}

    def __contains__(self, code):
        return code in self.chars

    def __getitem__(self, code):
        return self.chars[code]

    def __iter__(self):
        return iter(self.codes)

    @cached_property
    def codes(self):
        return sorted(self.chars)

    def title(self, code):
        """What a comment calls the code."""
        if code not in self.chars:
            return 'no character'
        for first, last, name in self.ranges:
            if first <= code <= last:
                return name.upper()
        if self.chars[code].category == 'Cc':
            return f'control {code:02X}'
        return self.chars[code].name

    @cache
    def decompose(self, code):
        """The full canonical decomposition, without those that only name another character."""
        if code not in self.chars:
            return [code]
        char = self.chars[code]
        if char.tag or len(char.parts) < 2:
            return [code]
        return self.decompose(char.parts[0]) + char.parts[1:]

    def upper(self, code):
        return self.chars[code].upper or code if code in self.chars else code

    def lower(self, code):
        return self.chars[code].lower or code if code in self.chars else code

    def small_partner(self, code):
        """The lower-case letter of a pair for its upper-case one; any other code for itself."""
        lower = self.lower(code)
        return lower if lower in self.chars and self.upper(lower) == code else code

    def paired(self, code):
        """True when the code and its other case lead to each other."""
        return self.small_partner(code) != code or self.upper(code) != code == self.lower(self.upper(code))

    def properties(self, code):
        """The property bits; FOREIGN marks letters that a script of their own counts as such."""
        if code not in self.chars:
            return 0
        category = self.chars[code].category
        bits = {'Nd': DIGIT, 'Lu': UPPER, 'Ll': LOWER, 'Cc': CONTROL}.get(category, 0)
        bits |= {'L': LETTER, 'P': PUNCT, 'S': PUNCT}.get(category[0], 0)
        bits |= SPACE if code == 0 or code in self.white_space else 0
        if category[0] == 'L' and code not in self.shared_scripts:
            bits |= FOREIGN
        return bits
