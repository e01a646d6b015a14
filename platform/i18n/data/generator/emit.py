"""Tables as C++ text, and what they take in memory."""


class Pool:
    """Pages of 256 values, each kept once."""

    def __init__(self):
        self.pages = []
        self.notes = []
        self.numbers = {}

    def add(self, page, note):
        key = tuple(page)
        if key not in self.numbers:
            self.numbers[key] = len(self.pages)
            self.pages.append(key)
            self.notes.append(note)
        return self.numbers[key]

    def index_of(self, values, note):
        """Adds 65536 values page by page; returns the page number of each 256."""
        return [self.add(values[at:at + 256], f'{note} {at:04X}') for at in range(0, 0x10000, 256)]


class File:
    """One generated file: its text, and the bytes of constant data in it."""

    def __init__(self, name, sources):
        self.name = name
        self.bytes = 0
        self.lines = [f'// Written by generate.py from {sources}; do not edit.', '']

    def add(self, *lines):
        self.lines += lines

    def numbers(self, values, digits, per_line, indent='    ', label=lambda at: ''):
        """Hexadecimal values, so many a line, each line with the label of its first."""
        for at in range(0, len(values), per_line):
            row = ', '.join(f'0x{value:0{digits}X}' for value in values[at:at + per_line])
            self.add(f'{indent}{row},{label(at)}')

    def array(self, declaration, values, digits, per_line, label=lambda at: ''):
        self.add(f'constexpr {declaration} = {{')
        self.numbers(values, digits, per_line, label=label)
        self.add('};', '')
        self.bytes += len(values) * digits // 2

    def pages(self, name, pool, digits):
        kind = {2: 'std::uint8_t', 4: 'std::uint16_t'}[digits]
        self.add(f'constexpr {kind} {name}[{len(pool.pages)}][256] = {{')
        for number, (page, note) in enumerate(zip(pool.pages, pool.notes)):
            self.add(f'    {{  // page {number}: {note}')
            self.numbers(page, digits, 16, '        ', lambda at: f'  // {at:02X}')
            self.add('    },')
            self.bytes += 256 * digits // 2
        self.add('};', '')

    def text(self):
        return '\n'.join(self.lines).rstrip('\n') + '\n'
