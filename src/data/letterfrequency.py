#!/usr/bin/env python3
"""Writes letterfrequency.inc: how often letters begin words, and follow each other in them.

usage: letterfrequency.py [--check]

Reads word lists of several languages (LISTS, Debian's packages in brackets), each of which counts the same, whatever its length.
--check writes nothing and fails when the file is not what would be written; it ends with status 77 where a list is missing or is of
another version than those that the file names.
"""
import collections
import pathlib
import re
import sys
import unicodedata
import zlib

HERE = pathlib.Path(__file__).resolve().parent
WRITTEN = HERE / 'letterfrequency.inc'
DICTIONARIES = pathlib.Path('/usr/share/dict')

# language code, name, file, encoding, letters behind Z, every how many words are taken
LISTS = [
    (1, 'English', 'american-english', 'utf-8', '', 1),  # wamerican
    (2, 'German', 'ngerman', 'utf-8', '', 1),            # wngerman
    (3, 'French', 'french', 'utf-8', '', 1),             # wfrench
    (4, 'Spanish', 'spanish', 'utf-8', '', 1),           # wspanish
    (8, 'Swedish', 'swedish', 'latin-1', 'åäö', 1),      # wswedish
    (10, 'Danish', 'danish', 'utf-8', 'æøå', 1),         # wdanish
    (13, 'Polish', 'polish', 'utf-8', '', 16),           # wpolish
]
WRITTEN_AS = {'ß': 'ss', 'æ': 'ae', 'œ': 'oe', 'ø': 'o', 'ł': 'l', 'ð': 'd', 'þ': 'th'}

# What stands before: nothing or no letter, a letter, one behind Z, a digit. Behind these, the beginning of a text in each of the
# languages above.
NO_LETTER, BEHIND, DIGIT = 0, 27, 28
END = 0  # what follows: the end, the letters, one behind Z
COLUMNS = 28
WHOLE = 65536
LEAST = 8  # of WHOLE: nothing is impossible
END_BEHIND_DIGIT = 0.75  # of what is no digit, space or symbol


def symbols(word, behind):
    for char in word.lower():
        if char in behind:
            yield BEHIND
            continue
        for base in unicodedata.normalize('NFD', WRITTEN_AS.get(char, char)):
            if not unicodedata.combining(base):
                yield ord(base) - ord('a') + 1 if 'a' <= base <= 'z' else NO_LETTER


def count(words, behind):
    """{(what stands before, what follows): how often per word}. Inside a word nothing is counted behind what is no letter: most of
    it is the English 's."""
    counts = collections.Counter()
    for word in words:
        before = NO_LETTER
        for symbol in symbols(word, behind):
            if symbol != NO_LETTER and before is not None:
                counts[before, symbol] += 1
            before = symbol or None
        if before is not None:
            counts[before, END] += 1
    return {pair: number / len(words) for pair, number in counts.items()}


def row(weights):
    """Where the share of each column begins, in parts of WHOLE."""
    room = WHOLE - LEAST * COLUMNS
    total = sum(weights) or 1
    begins, sum_before = [], 0
    for column, weight in enumerate(weights):
        begins.append(LEAST * column + round(room * sum_before / total))
        sum_before += weight
    return begins


def rows(languages):
    mixed = collections.Counter()
    for counts in languages:
        mixed.update(counts)
    of = lambda counts, before: [counts.get((before, column), 0) for column in range(COLUMNS)]
    followers = [of(mixed, before) for before in range(DIGIT)]
    letters = followers[NO_LETTER][1:]
    digit = [END_BEHIND_DIGIT, *((1 - END_BEHIND_DIGIT) * weight / sum(letters) for weight in letters)]
    return [row(weights) for weights in [*followers, digit, *(of(counts, NO_LETTER) for counts in languages)]]


def text(sources, table):
    names = ['nothing, or no letter', *map(chr, range(ord('a'), ord('z') + 1)), 'a letter behind z', 'a digit', *(
        f'nothing, {name}' for _, name, *_ in LISTS)]
    languages = ', '.join(str(code) for code, *_ in LISTS)
    lines = ['// Written by letterfrequency.py from these word lists; do not edit.', *(f'//     {line}' for line in sources), '',
             '// The languages that have rows of their own for the start of a text.',
             f'constexpr unsigned char startLanguages[] = {{{languages}}};', '',
             f'// By what stands before: where the shares of the end, a to z, and a letter behind z begin, of {WHOLE}.',
             f'constexpr std::uint16_t letterRows[{len(table)}][{COLUMNS}] = {{']
    for name, begins in zip(names, table):
        lines += [f'    // {name}', '    {' + ', '.join(map(str, begins)) + '},']
    return '\n'.join([*lines, '};']) + '\n'


def read():
    """The lists' words, and a line for each that tells its version; None and the reason where one is missing."""
    found, sources = [], []
    for _, _, file, encoding, behind, step in LISTS:
        path = DICTIONARIES / file
        if not path.exists():
            return None, f'{path} is missing'
        content = path.read_bytes()
        sources.append(f'{file}, CRC-32 {zlib.crc32(content):08X}')
        found.append((content.decode(encoding).split('\n')[:-1][::step], behind))
    return found, sources


def main():
    check = '--check' in sys.argv[1:]
    lists, sources = read()
    if lists is None:
        print(f'==== SKIPPED: {sources} ====', file=sys.stderr)
        return 77
    before = WRITTEN.read_text(encoding='utf-8').replace('\r\n', '\n') if WRITTEN.exists() else ''
    if check and re.findall(r'^//     (.*)', before, re.MULTILINE) != sources:
        print('==== SKIPPED: the word lists are of other versions ====', file=sys.stderr)
        return 77
    after = text(sources, rows([count(words, behind) for words, behind in lists]))
    if check:
        if before != after:
            print('letterfrequency.inc is not what letterfrequency.py writes', file=sys.stderr)
        return int(before != after)
    WRITTEN.write_text(after, encoding='utf-8', newline='\n')
    return 0


if __name__ == '__main__':
    sys.exit(main())
