"""Collation orders: which of the ranges in src/orderlayout.h each character gets, and where in it."""
import itertools
import re
from dataclasses import dataclass
from fractions import Fraction

# The symbols below 140 have fixed codes: those with an English name, and neighbours in the codes between.
SYMBOLS = {
    32: 0x5F, 33: 0x2017, 34: 0xAF, 35: 0xAD, 36: 0x2D, 37: 0x2C, 38: 0x3B, 39: 0x3A, 40: 0x21, 41: 0xA1, 42: 0x3F,
    43: 0x203D, 44: 0x2F, 45: 0x2044, 46: 0x2E, 47: 0x2026, 48: 0x2219, 49: 0xB7, 50: 0xB8, 51: 0x2DB, 52: 0x27,
    53: 0x2018, 54: 0x2019, 55: 0x22, 56: 0x201C, 57: 0x201D, 58: 0xAB, 59: 0xBB, 60: 0x28, 61: 0x207D, 62: 0x29,
    63: 0x207E, 64: 0x5B, 65: 0x5D, 66: 0x7B, 67: 0x7D, 68: 0xA7, 69: 0xB6, 70: 0xA9, 71: 0xAE, 72: 0x2122, 73: 0x40,
    74: 0xA4, 75: 0xA2, 76: 0x24, 77: 0xA3, 78: 0xA5, 79: 0x2A, 80: 0x5C, 81: 0x26, 82: 0x23, 83: 0x25, 84: 0x2030,
    85: 0x2B, 86: 0x2212, 87: 0xB1, 88: 0xB4, 89: 0x60, 90: 0x2D8, 91: 0x5E, 92: 0x2C7, 93: 0x2DA, 94: 0xA8, 95: 0x2DD,
    96: 0x7E, 97: 0x2D9, 98: 0xF7, 99: 0xD7, 100: 0x221A, 101: 0x3C, 102: 0x2264, 103: 0x3D, 104: 0x2265, 105: 0x3E,
    106: 0xAC, 107: 0x7C, 108: 0xA6, 109: 0xB0, 110: 0xB5,
    # Other symbols of the 1-byte sets.
    111: 0x2010, 112: 0x2013, 113: 0x2014, 114: 0x2015, 115: 0x201A, 116: 0x201E, 117: 0x2039, 118: 0x203A, 119: 0x2020,
    120: 0x2021, 121: 0x2022, 122: 0x20AC, 123: 0x20A7, 124: 0x2116, 125: 0x2C6, 126: 0x2DC, 127: 0x221E, 128: 0x2248,
    129: 0x2261, 130: 0x2260, 131: 0x2202, 132: 0x2206, 133: 0x220F, 134: 0x2211, 135: 0x222B, 136: 0x25CA,
    137: 0x2310, 138: 0x2320, 139: 0xBF,
}
FIRST_FREE_SYMBOL = 140

# Spaces below the general ones. Carriage return gives way to the mark of undefined codes.
SPACES = {0x09: 9, 0x0A: 10, 0x0B: 11, 0x0C: 12, 0x0D: 14, 0x85: 15, 0x20: 32, 0xA0: 33}

ACCENTS = {
    'CEDILLA': 1, 'ACUTE': 2, 'GRAVE': 3, 'CIRCUMFLEX': 4, 'TILDE': 5, 'DIAERESIS': 6, 'RING ABOVE': 7, 'STROKE': 8,
    'CARON': 9, 'MACRON': 10, 'BREVE': 11, 'DOT ABOVE': 12, 'OGONEK': 13, 'DOUBLE ACUTE': 14,
}
FREE_ACCENTS = range(15, 32)
# Marks that do not stand between a letter and a mark above it, like those below.
MARKS_APART = ('CEDILLA', 'OGONEK', 'HORN', 'YPOGEGRAMMENI')

UPPER_CASE, LOWER_CASE, VARIANT, UPPER_VARIANT = 0, 1, 2, 3


def read_layout(header):
    with open(header, encoding='ascii') as text:
        return {name: int(value, 0) for name, value in
                re.findall(r'constexpr unsigned short (\w+) = (\w+);', text.read())}


@dataclass(frozen=True)
class Form:
    """A letter taken apart. `kind` is 'paired', 'single' or 'variant' (a lower-case form that only looks different)."""

    base: str
    marks: tuple
    kind: str
    case: int


class Collation:
    """The orders of one collation class: `orders` maps each code below 65536 to a tuple of one or two.

    Symbols have the codes that they have in `neutral`, so that classes differ in letters only and share the other pages.
    """

    def __init__(self, database, layout, tailoring, neutral=None):
        self.db, self.layout, self.tailoring = database, layout, tailoring
        self.neutral_symbols = neutral.symbol_codes if neutral else {}
        self.fallbacks = []  # letters that took an accent index of another name, or found no place among the letters
        self.orders = {code: (layout['UndefinedOrder'],) for code in range(0x10000)}
        self.placed = set()
        for place in (self._spaces, self._digits, self._by_rule, self._letters, self._pairs, self._symbols):
            place()
        self.contractions = dict(sorted(((text, self._contraction(text)) for text in tailoring.contractions),
                                        key=lambda item: (-len(item[0]), item)))
        if tailoring.plain:
            self._rank_letters()

    def of(self, code):
        return self.orders[code]

    def _place(self, code, *orders):
        self.orders[code] = orders
        self.placed.add(code)

    # ---- everything but letters

    def _spaces(self):
        self._place(0, 0)
        following = max(SPACES.values()) + 1
        for code in sorted(self.db.white_space):
            if code in SPACES:
                self._place(code, SPACES[code])
            else:
                self._place(code, following)
                following += 1
        assert following <= self.layout['SymbolBase']

    def _digits(self):
        base = self.layout['DigitBase']
        for code in self.db:
            char = self.db[code]
            if (slot := self._digit_slot(char)) is not None:
                self._place(code, base + 10 * int(char.numeric) + 2 * slot)
        for value in range(10):
            for slot, code in enumerate(self._fractions(value)):
                self._place(code, base + 10 * value + 2 * slot + 1)

    @staticmethod
    def _digit_slot(char):
        """0 to 4: plain, superscript, subscript, full width, circled; None for what is no such digit."""
        if '0' <= chr(char.code) <= '9':
            return 0
        if char.tag == 'circle' and re.match('CIRCLED (DIGIT|NUMBER)', char.name) and int(char.numeric) <= 20:
            return 4
        return {'super': 1, 'sub': 2, 'wide': 3}.get(char.tag) if char.digit is not None else None

    def _fractions(self, digit):
        """The fractions that begin with the digit, by value; only five fit, the commonest are taken."""
        rank = [2, 4, 3, 8, 5, 6, 7, 9]
        found = [self.db[code] for code in self.db
                 if self.db[code].tag == 'fraction' and self.db[code].parts[0] == ord('0') + digit]
        found = [char for char in found if len(char.parts) == 3]
        found.sort(key=lambda char: rank.index(char.parts[2] - ord('0')))
        return [char.code for char in sorted(found[:5], key=lambda char: Fraction(char.numeric))]

    def _by_rule(self):
        at = self.layout
        for block in ('ExtensionA', 'Unified', 'Compatibility', 'Surrogate'):
            first = at[block + 'First']
            for code in range(first, at[block + 'End']):
                if code in self.db:
                    self._place(code, code - first + at[block + 'Order'])
        for code in range(at['HangulFirst'], at['HangulEnd']):
            syllable, final = divmod(code - at['HangulFirst'], at['HangulFinals'])
            second = (at['HangulFinalOrder'] + final,) if final else ()
            self._place(code, at['HangulOrder'] + syllable, *second)
        for code in range(at['PrivateFirst'], at['PrivateEnd']):
            block, place = divmod(code - at['PrivateFirst'], 256)
            self._place(code, at['PrivateOrder'] + block, at['PrivateTrailOrder'] + place)
        self._place(at['LastUnit'], at['LastOrder'])

    def _symbols(self):
        base = self.layout['SymbolBase']
        for symbol, code in SYMBOLS.items():
            self._place(code, base + symbol)
        for code in range(1, 32):
            if code not in self.placed:
                self._place(code, base + code)
        rest = [code for code in self.db if code not in self.placed]
        self.symbol_codes = {code: self.neutral_symbols[code] for code in rest if code in self.neutral_symbols}
        taken = set(self.symbol_codes.values())
        end = max(self.neutral_symbols.values(), default=FIRST_FREE_SYMBOL - 1) + 1
        free = [*range(end, self.layout['DigitBase'] - base), *range(FIRST_FREE_SYMBOL, end)]
        free = [symbol for symbol in free if symbol not in taken]
        newcomers = [code for code in rest if code not in self.neutral_symbols]
        assert len(newcomers) <= len(free), 'too many symbols'
        self.symbol_codes.update(zip(newcomers, free))
        for code, symbol in self.symbol_codes.items():
            self._place(code, base + symbol)
        self.free_symbols = len(free) - len(newcomers)

    # ---- letters

    def _letters(self):
        groups = {}
        for code in self.db:
            if code in self.placed or code in SYMBOLS.values() or not self._may_be_letter(code):
                continue
            if form := self._form(code):
                letter, marks = self._settle(form)
                groups.setdefault(letter, []).append((code, marks, form))
        for letter in sorted(groups):
            self._place_group(letter, groups[letter])

    def _may_be_letter(self, code):
        """Title-case letters are capitals with an adscript, or pairs, which are not placed here."""
        category = self.db[code].category
        return category in ('Lu', 'Ll', 'Lm', 'Lo') or category == 'Lt' and len(self.db.decompose(code)) > 1

    def _small(self, code):
        return ord(self.tailoring.small.get(chr(code)) or chr(self.db.small_partner(code)))

    def _form(self, code):
        """The letter's form, or None for one that no base letter of this class leads to."""
        small = self._small(code)
        case = UPPER_CASE if self.db[code].category in ('Lu', 'Lt') else LOWER_CASE
        if chr(code) in self.tailoring.pairs or chr(small) in self.tailoring.pairs:
            return None
        base, marks, variant = self._take_apart(small)
        if base not in self.tailoring.alphabet:
            return None
        kind = 'variant' if variant else 'paired' if self.db.paired(code) or not marks else 'single'
        return Form(base, marks, kind, case)

    def _take_apart(self, code):
        """(base, marks, whether a variant) of a letter, by decomposition first, then by name."""
        first, *marks = self.db.decompose(code)
        marks = [self._mark(mark) for mark in marks]
        if marks:
            base, inner, variant = self._take_apart(first)
            return base, (*inner, *marks), variant
        char = self.db[code]
        if chr(code) in self.tailoring.alphabet:
            return chr(code), (), False
        if self._small(code) != code:
            return self._take_apart(self._small(code))
        usual = chr(self.db.lower(self.db.upper(code)))
        if usual in self.tailoring.alphabet and self.db.upper(code) != code:
            return usual, (), True
        if len(char.parts) == 1 and char.tag in ('super', 'sub', 'compat', 'wide'):
            base, inner, variant = self._take_apart(char.parts[0])
            wide = char.tag == 'wide'
            return base, inner + ('FULLWIDTH',) * wide, variant or not wide
        if m := re.fullmatch(r'(LATIN (?:SMALL|CAPITAL) LETTER .+?) (?:WITH|PRECEDED BY) (.+)', char.name):
            if m[1] in self.db.by_name:
                base, inner, variant = self._take_apart(self.db.by_name[m[1]].code)
                base = chr(self._small(ord(base)))
                return base, inner + tuple(m[2].split(' AND ')), variant
        if m := re.fullmatch(r'LATIN LETTER SMALL CAPITAL ([A-Z])', char.name):
            return m[1].lower(), (), True
        return chr(code), (), False

    def _mark(self, code):
        return self.db[code].name.removeprefix('COMBINING ').replace(' ACCENT', '')

    def _settle(self, form):
        """The letter of the class that the form belongs to, and the marks that are then left."""
        for i, mark in enumerate(form.marks):
            if (form.base, mark) in self.tailoring.own:
                index, extension, *own = self.tailoring.own[form.base, mark]
                return (index, extension), (*own, *form.marks[:i], *form.marks[i + 1:])
            if 'BELOW' not in mark and mark not in MARKS_APART:
                break
        index, extension, *own = self.tailoring.alphabet[form.base]
        return (index, extension), (*own, *form.marks)

    def _place_group(self, letter, members):
        """Gives each member of one letter its case and accent.

        Both cases of a pair have the same accent. Combinations of marks take the indices from 15 up; when those are
        used up, indices whose names this letter does not use. Variants take the other two lower cases.
        """
        accents = self._accents(letter, members)
        used = set()
        for code, marks, form in members:
            if form.kind != 'variant' and marks in accents:
                used.add((form.case, accents[marks]))
                self._place(code, self._letter_order(letter, form.case, accents[marks]))
        for code, marks, form in members:
            if code in self.placed:
                continue
            if form.case == UPPER_CASE or form.kind == 'paired':
                self.fallbacks.append((code, 'symbol'))
                continue
            wanted = [accents.get(marks, FREE_ACCENTS[0]), *FREE_ACCENTS]
            slots = [(case, accent) for accent in wanted for case in (VARIANT, UPPER_VARIANT)]
            slot = next((slot for slot in slots if slot not in used), None)
            if slot is None:
                self.fallbacks.append((code, 'symbol'))
                continue
            used.add(slot)
            self._place(code, self._letter_order(letter, *slot))

    def _accents(self, letter, members):
        """Marks -> accent index for all members but the rare ones that will be variants."""
        keep = lambda marks, form: form.kind == 'paired' or not marks or marks[0] in ACCENTS and len(marks) == 1
        wanted = [(code, marks) for code, marks, form in members if form.kind != 'variant' and keep(marks, form)]
        accents = {(): 0}
        accents.update({marks: ACCENTS[marks[0]] for _, marks in wanted if len(marks) == 1 and marks[0] in ACCENTS})
        if any(self.tailoring.alphabet.get(second) == letter and how == 'accent'
               for _, second, how in self.tailoring.pairs.values()):
            accents['LIGATURE'] = FREE_ACCENTS[0]
        # Living languages first: tone letters, other decomposable ones, full width, then letters that only names lead to.
        named = lambda item: len(self.db.decompose(item[0])) == 1 and item[1] != ('FULLWIDTH',)
        rank = lambda item: (named(item), not 0x1EA0 <= item[0] < 0x1F00, item[0])
        unused = [index for index in (14, 1, 7, 8, 13, 9, 11, 10, 12, 5, 6, 4, 3, 2) if index not in accents.values()]
        free = [index for index in FREE_ACCENTS if index not in accents.values()] + unused
        for code, marks in sorted(wanted, key=rank):
            if marks not in accents and free:
                accents[marks] = free.pop(0)
                if accents[marks] < FREE_ACCENTS[0]:
                    self.fallbacks.append((code, f'accent {accents[marks]}'))
        self.ligature = {**getattr(self, 'ligature', {}), letter: accents.get('LIGATURE')}
        return accents

    def _letter_order(self, letter, case, accent):
        index, extension = letter
        return self.layout['LetterBase'] | case << 12 | accent << 7 | index << 2 | extension

    # ---- letters that sort as two

    def _pairs(self):
        for code in self.db:
            if code in self.placed or self.db[code].category[0] != 'L':
                continue
            if (pair := self._pair(code)) is not None:
                self._place(code, *pair)

    def _pair(self, code):
        """The two orders of a letter that sorts as two: given by the class, marked, or a ligature of compatibility."""
        first, *marks = self.db.decompose(code)
        small = self.db.small_partner(first)
        upper = self.db[code].category == 'Lu'
        if entry := self.tailoring.pairs.get(chr(first)) or self.tailoring.pairs.get(chr(small)):
            one, two, how = entry
            if upper:
                one, two = one.upper(), two.upper()
            return self._marked(one, marks), self._differing(self.orders[ord(two)][0], how, upper)
        parts = self.db[code].parts
        if self.db[code].tag != 'compat' or len(parts) != 2:
            return None
        one, two = (self.orders[part] for part in parts)
        # The first part may be a symbol, whose order is not known yet; the second must be a letter.
        if not all(part in self.placed for part in parts) or len(one) + len(two) > 2 or not two[0] & 0x4000:
            return None
        return one[0], self._differing(two[0], 'case', upper)

    def _marked(self, letter, marks):
        """The order of the letter with the marks of the whole, which fall on its first half."""
        text = [ord(letter), *marks]
        whole = [code for code in self.db if len(marks) and self.db.decompose(code) == text]
        return self.orders[whole[0] if whole else ord(letter)][0]

    def _differing(self, order, how, upper):
        """The second order: equal at the primary level, but not that of the letter written out."""
        if how == 'accent':
            letter = (order >> 2 & 31, order & 3)
            return order & ~0x0F80 | self.ligature[letter] << 7
        return order & ~0x3000 | (UPPER_VARIANT if upper else VARIANT) << 12

    # ---- letters that are written with several characters

    def _contraction(self, text):
        """The orders of its upper-case form: one, or two for a doubled letter."""
        place = self.tailoring.contractions[text]
        if isinstance(place, str):
            order, = self._contraction(place)
            return order, order | self.layout['ContractionAccent']
        letter, shared = place[:2], len(place) > 2
        return (self._letter_order(letter, UPPER_CASE, 0) | shared * self.layout['ContractionAccent'],)

    def spellings(self):
        """Each contraction in all its case forms with its orders, by the codes of its characters."""
        for text, orders in self.contractions.items():
            for upper in itertools.product((False, True), repeat=len(text)):
                spelling = ''.join(char.upper() if up else char for char, up in zip(text, upper))
                yield spelling, self._spelled(orders, *upper)

    def _spelled(self, orders, *upper):
        """The orders with the case of the spelling: lower before mixed before upper, as case sorts in reverse."""
        first, middle, last = upper[0], upper[-2], upper[-1]
        case = lambda *capitals: sum((not capital) << i for i, capital in enumerate(reversed(capitals))) << 12
        if len(orders) == 2:
            return orders[0] | case(first, first), orders[1] | case(middle, last)
        mixed = len(upper) == 3 and middle != last
        return (orders[0] | case(first, last) | mixed * self.layout['ContractionAccent'],)

    # ---- orders as plain numbers

    def _rank_letters(self):
        """Gives the letters numbers that ascend by letter, accent and case."""
        base = self.layout['LetterBase']
        is_letter = lambda order: base <= order < self.layout['IdeographBase']
        letters = {order for orders in self.orders.values() for order in orders if is_letter(order)}
        by_level = sorted(letters, key=lambda order: (order & 0x407F, order & 0x0F80, -(order & 0x3000)))
        ranks = {order: base + rank for rank, order in enumerate(by_level)}
        self.orders = {code: tuple(ranks.get(order, order) for order in orders) for code, orders in self.orders.items()}
