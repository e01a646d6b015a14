"""Languages and how their alphabets differ.

A collation class is a number from 1 to 127 and a Tailoring. Languages of one class share their order, and so their
tables. To give a language an order of its own, add a class and name it in the language's row.
"""
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Tailoring:
    """What a class says about letters; everything else is the same in all classes.

    alphabet   base letters: character -> (letter index, extension). A is index 3, Z is 28; 0 to 2 and 29 to 31 are free.
               Extension 0 to 3 makes letters of their own that sort behind the plain one.
    own        marked letters that are letters of their own: (base, mark) -> (letter index, extension); marks by the
               names of the combining characters without "COMBINING" and "ACCENT".
    pairs      letters that sort as two: character -> (first, second, how they differ from the two letters written
               out: by 'accent' or by 'case').
    """

    alphabet: dict
    own: dict = field(default_factory=dict)
    pairs: dict = field(default_factory=dict)

    def derived(self, alphabet=None, own=None, pairs=None):
        """A class that differs from this one in the given entries; None as an entry's value removes it."""
        merge = lambda old, new: {k: v for k, v in {**old, **(new or {})}.items() if v is not None}
        return Tailoring(merge(self.alphabet, alphabet), merge(self.own, own), merge(self.pairs, pairs))


def index(letter):
    return ord(letter.upper()) - 62


# Letters without a canonical decomposition, behind the letter that they are nearest to in sound or shape.
LATIN_EXTENSIONS = {
    'a': 'ɑɐɒ', 'd': 'ðꝺ', 'e': 'əɛǝ', 'f': 'ꝼ', 'g': 'ɣƣɡ', 'h': 'ƕɥ', 'i': 'ıɩɪ', 'j': 'ȷ', 'k': 'ʞ', 'm': 'ɯ', 'n': 'ŋ',
    'o': ' ɔȣ', 'q': 'ĸ', 'r': 'ʀꞃ', 's': 'ʃꞅ', 't': 'þʇꞇ', 'u': ' ʊʉ', 'v': 'ʌ', 'w': 'ƿ', 'y': 'ȝ', 'z': 'ʒ',
}

NEUTRAL = Tailoring(
    alphabet={
        **{chr(c): (index(chr(c)), 0) for c in range(ord('a'), ord('z') + 1)},
        **{char: (index(base), i + 1)
           for base, chars in LATIN_EXTENSIONS.items() for i, char in enumerate(chars) if char != ' '},
    },
    # The horn makes letters of their own, which carry tone marks besides.
    own={('o', 'HORN'): (index('o'), 1), ('u', 'HORN'): (index('u'), 1)},
    pairs={
        'æ': ('a', 'e', 'accent'),
        'œ': ('o', 'e', 'accent'),
        'ß': ('s', 's', 'case'),
        'ẞ': ('S', 'S', 'case'),
        **{pair: (pair_of[0], pair_of[1], 'case') for pair, pair_of in {
            'ꜳ': 'aa', 'ꜵ': 'ao', 'ꜷ': 'au', 'ꜹ': 'av', 'ꜽ': 'ay', 'ꝏ': 'oo', 'ꜩ': 'tz', 'ꝡ': 'vy'}.items()},
    },
)

CLASSES = {1: NEUTRAL}

# name, collation class; the row's number is the language's code.
LANGUAGES = [
    ('neutral', 1),
    ('english', 1),
    ('german', 1),
    ('french', 1),
    ('spanish', 1),
    ('italian', 1),
    ('portuguese', 1),
    ('dutch', 1),
    ('swedish', 1),
    ('finnish', 1),
    ('danish', 1),
    ('norwegian', 1),
    ('icelandic', 1),
    ('polish', 1),
    ('czech', 1),
    ('slovak', 1),
    ('hungarian', 1),
    ('turkish', 1),
    ('russian', 1),
    ('greek', 1),
    ('japanese', 1),
    ('chinese simplified', 1),
    ('chinese traditional', 1),
    ('korean', 1),
]
