"""The 2-byte code sets, from Python's own codecs: a code is a byte below 256, else lead and trail byte in one unit."""
from .codesets import NO_CHARACTER


def from_codec(codec):
    """Code to unit, for the codes that are one character of the first plane."""
    units = {}
    for code in range(0x10000):
        text = (bytes([code]) if code < 256 else code.to_bytes(2, 'big')).decode(codec, 'replace')
        if len(text) == 1 and ord(text) < 0x10000 and ord(text) != NO_CHARACTER:
            units[code] = ord(text)
    return units


def shift_jis():
    """Without the single bytes that the codec keeps as private units and as a control: other converters refuse them."""
    units = from_codec('cp932')
    return {code: unit for code, unit in units.items() if code not in (0x80, 0xA0, 0xFD, 0xFE, 0xFF)}


def gbk():
    return from_codec('gbk') | {0x80: 0x20AC}


def big5():
    """With the euro sign; the rows C6A1 to C8FE, where makers put different characters, as private units in sequence."""
    user_rows = [code for code in range(0xC6A1, 0xC8FF) if 0x40 <= code & 0xFF <= 0x7E or 0xA1 <= code & 0xFF <= 0xFE]
    return from_codec('cp950') | {0xA3E1: 0x20AC} | {code: 0xF6B1 + i for i, code in enumerate(user_rows)}


def unified_hangul():
    return from_codec('cp949')


# code, name, units by code, codes that another code of the same character is preferred to
WIDE_SETS = [
    (225, 'Shift_JIS', shift_jis, range(0xED40, 0xEF00)),
    (226, 'GBK', gbk, ()),
    (227, 'Big5', big5, (0xA2CC, 0xA2CE)),
    (228, 'Unified Hangul', unified_hangul, ()),
]


class WideSet:
    """One set: its codes as Unicode units, and back."""

    def __init__(self, code, name, units, seconds):
        self.code, self.name = code, name
        self.units = units()
        self.codes = {}
        for at in sorted(self.units, key=lambda at: (at in seconds, at)):
            self.codes.setdefault(self.units[at], at)


def wide_sets():
    return [WideSet(*row) for row in WIDE_SETS]


def rows(mapping):
    """A mapping by the key's high byte: (start in the values, first, last low byte) of each; the values, 0 where nothing is."""
    index, values = [], []
    for high in range(256):
        lows = [low for low in range(256) if mapping.get(high << 8 | low)]
        first, last = (lows[0], lows[-1]) if lows else (1, 0)
        index.append((len(values), first, last))
        values += [mapping.get(high << 8 | low, 0) for low in range(first, last + 1)]
    return index, values
