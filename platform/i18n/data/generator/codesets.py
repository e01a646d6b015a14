"""The 1-byte code sets, from Python's own codecs."""

# code, name, codec
BYTE_SETS = [
    (1, 'Windows-1252', 'cp1252'),
    (2, 'ISO 8859-1', 'latin_1'),
    (3, 'IBM 850', 'cp850'),
    (4, 'IBM 437', 'cp437'),
    (5, 'Mac OS Roman', 'mac_roman'),
    (6, 'ISO 8859-2', 'iso8859_2'),
    (7, 'ISO 8859-5', 'iso8859_5'),
    (8, 'ISO 8859-7', 'iso8859_7'),
    (9, 'KOI8-R', 'koi8_r'),
    (10, 'ISO 8859-9', 'iso8859_9'),
    (11, 'ISO 8859-15', 'iso8859_15'),
    (12, 'Windows-1250', 'cp1250'),
    (13, 'Windows-1251', 'cp1251'),
    (14, 'Windows-1253', 'cp1253'),
]

UNICODE = 253
NO_CHARACTER = 0xFFFD


class ByteSet:
    """One set: its codes as Unicode units, and back."""

    def __init__(self, code, name, codec):
        self.code, self.name, self.codec = code, name, codec
        self.units = [self._unit(byte) for byte in range(256)]
        self.codes = {unit: byte for byte, unit in enumerate(self.units) if unit != NO_CHARACTER}

    def _unit(self, byte):
        """An undefined byte from 80 to 9F stands for the control of that number, so that it survives a round trip."""
        unit = bytes([byte]).decode(self.codec, 'replace')
        if unit != chr(NO_CHARACTER):
            return ord(unit)
        return byte if 0x80 <= byte < 0xA0 else NO_CHARACTER

    def case(self, byte, mapping):
        """The code of the other case, where this set has it."""
        unit = self.units[byte]
        return self.codes.get(mapping(unit), byte) if unit != NO_CHARACTER else byte


def byte_sets():
    return [ByteSet(*row) for row in BYTE_SETS]
