"""Languages and how their alphabets differ.

A collation class is a number from 1 to 127 and a Tailoring. Languages of one class share their order, and so their
tables. To give a language an order of its own, add a class and name it in the language's row.
"""
from dataclasses import dataclass, field, replace

EXTENSIONS = 3  # places behind the plain letter


@dataclass(frozen=True)
class Tailoring:
    """What a class says about letters; everything else is the same in all classes.

    A place is (letter index, extension) or (letter index, extension, mark). A is index 3, Z is 28; 0 to 2 and 29 to 31
    are free. Extension 0 to 3 makes letters of their own that sort behind the plain one. A letter with a mark is no letter of its
    own: it differs from the one that has the place by its accent.

    alphabet      base letters: character -> place.
    own           marked letters that have another place than the plain one: (base, mark) -> place; marks by the
                  names of the combining characters without "COMBINING" and "ACCENT".
    pairs         letters that sort as two: character -> (first, second, how they differ from the two letters written
                  out: by 'accent' or by 'case').
    contractions  letters that are written with several, in lower case: text -> place, or for a letter that is doubled by
                  doubling its first character, the text of the single one.
    small         lower-case letters of capitals, where the language pairs them in another way.
    plain         orders are plain numbers: letters have no case and accent, only ranks.
    """

    alphabet: dict
    own: dict = field(default_factory=dict)
    pairs: dict = field(default_factory=dict)
    contractions: dict = field(default_factory=dict)
    small: dict = field(default_factory=dict)
    plain: bool = False

    def derived(self, **entries):
        """A class that differs from this one in the given entries; None as an entry's value removes it."""
        merge = lambda old, new: {k: v for k, v in {**old, **new}.items() if v is not None}
        return replace(self, **{name: merge(getattr(self, name), new) for name, new in entries.items()})

    def with_places(self, places):
        """Gives keys their places: a character is a base letter, (base, mark) a marked one, any longer text a contraction."""
        kind = lambda key: 'own' if isinstance(key, tuple) else 'alphabet' if len(key) == 1 else 'contractions'
        entries = {name: {key: place for key, place in places.items() if kind(key) == name}
                   for name in ('alphabet', 'own', 'contractions')}
        return self.derived(**entries, pairs={key: None for key in entries['alphabet']})

    def behind(self, base, *letters, last=False):
        """Puts letters of their own behind `base`: directly, or last behind the letters that are there.

        A letter is a key, or a list of keys that differ by accent. Those that were there move; they share the last place
        that is left to them, with a mark.
        """
        at = self.alphabet[base][0]
        old = sorted((place[1], key) for places in (self.alphabet, self.own) for key, place in places.items()
                     if place[0] == at and place[1] > 0)
        old = [key for _, key in old]
        left = EXTENSIONS - len(letters)
        new_from = min(len(old), left) + 1 if last else 1
        old_from = 1 if last else len(letters) + 1
        places = {}
        for i, key in enumerate(old):
            places[key] = (at, old_from + i) if i < left else (at, old_from + left - 1 if left else 0, mark_of(key))
        for i, keys in enumerate(letters):
            places.update(group(at, new_from + i, keys))
        return self.with_places(places)

    def at_end(self, *letters):
        """Puts letters of their own behind Z; lists as above."""
        places = {}
        for i, keys in enumerate(letters):
            places.update(group(index('z') + 1 + i, 0, keys))
        return self.with_places(places)

    def as_marked(self, **bases):
        """Makes letters marked forms of others: base=[key, ...]."""
        return self.with_places({key: (*self.alphabet[base], mark_of(key)) for base, keys in bases.items() for key in keys})

    def in_front(self, letters):
        """Puts the letters of another script in front of A: a list of keys, or lists of keys that differ by accent.

        The places are then counted through. Of the letters behind those of A to Z, marked ones and then those of the lowest
        codes keep places of their own as far as there is room; the others become marked forms.
        """
        at_place = lambda i: divmod(i, EXTENSIONS + 1)
        latin = {**self.alphabet, **self.own}
        marked_first = lambda key: (isinstance(key, str), key)
        spare = 4 * 32 - len(letters) - 26
        roomless = sorted((key for key, (_, extension) in latin.items() if extension), key=marked_first)[spare:]
        places = {}
        for i, keys in enumerate(letters):
            places.update(group(*at_place(i), keys))
        at = len(letters)
        for key in sorted(latin, key=latin.get):
            if key in roomless:
                base = chr(latin[key][0] + 62).lower()
                places[key] = (*places[base], mark_of(key))
            else:
                places[key] = at_place(at)
                at += 1
        return self.with_places(places)


def index(letter):
    return ord(letter.upper()) - 62


def mark_of(key):
    """The name of the accent that tells a letter apart which shares another's place."""
    return f'{key[0].upper()} {key[1]}' if isinstance(key, tuple) else f'LETTER {key}'


def group(at, extension, keys):
    """Places of a key, or of keys that are one letter: the first plain, the others by accent, whose name a mark on the same base
    keeps."""
    keys = keys if isinstance(keys, list) else [keys]
    base = keys[0][0]
    named = lambda key: key[1] if isinstance(key, tuple) and key[0] == base else mark_of(key)
    return {key: (at, extension, named(key)) if i else (at, extension) for i, key in enumerate(keys)}


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

# Nordic letters: d with its strokes is a d, ü a y.
NORDIC = NEUTRAL.as_marked(d=['ð'], y=[('u', 'DIAERESIS'), ('u', 'DOUBLE ACUTE')])
THORN_AS_TH = {'þ': ('t', 'h', 'case')}

SPANISH = NEUTRAL.behind('n', ('n', 'TILDE'))

SWEDISH = NORDIC.at_end(
    ('a', 'RING ABOVE'),
    [('a', 'DIAERESIS'), 'æ', ('e', 'OGONEK')],
    [('o', 'DIAERESIS'), ('o', 'STROKE'), ('o', 'DOUBLE ACUTE'), 'œ', ('o', 'CIRCUMFLEX')],
).derived(alphabet={'þ': None}, pairs=THORN_AS_TH)

FINNISH = NEUTRAL.as_marked(d=['ð'], n=['ŋ'], y=[('u', 'DIAERESIS')], z=['ʒ']).at_end(
    ('a', 'RING ABOVE'),
    [('a', 'DIAERESIS'), 'æ'],
    [('o', 'DIAERESIS'), ('o', 'STROKE')],
)

DANISH = NORDIC.at_end(
    ['æ', ('a', 'DIAERESIS')],
    [('o', 'STROKE'), ('o', 'DIAERESIS'), ('o', 'DOUBLE ACUTE')],
    [('a', 'RING ABOVE'), 'aa'],
).derived(alphabet={'þ': None}, pairs=THORN_AS_TH)

NORWEGIAN = NORDIC.at_end(
    ['æ', ('a', 'DIAERESIS'), ('e', 'OGONEK')],
    [('o', 'STROKE'), ('o', 'DIAERESIS'), ('o', 'DOUBLE ACUTE'), 'œ'],
    [('a', 'RING ABOVE'), 'aa'],
).derived(alphabet={'þ': None}, pairs=THORN_AS_TH)

ICELANDIC = NEUTRAL
for vowel in 'aeiouy':
    ICELANDIC = ICELANDIC.behind(vowel, (vowel, 'ACUTE'), last=True)
ICELANDIC = ICELANDIC.at_end('þ', ['æ', ('a', 'DIAERESIS')], [('o', 'DIAERESIS'), ('o', 'STROKE')]).with_places(
    {('a', 'RING ABOVE'): (index('z') + 3, 1)})

POLISH = NEUTRAL.behind('a', ('a', 'OGONEK')).behind('c', ('c', 'ACUTE')).behind('e', ('e', 'OGONEK')) \
    .behind('l', ('l', 'STROKE')).behind('n', ('n', 'ACUTE')).behind('o', ('o', 'ACUTE')).behind('s', ('s', 'ACUTE')) \
    .behind('z', ('z', 'ACUTE'), ('z', 'DOT ABOVE'))

CZECH = NEUTRAL.behind('c', ('c', 'CARON')).behind('h', 'ch').behind('r', ('r', 'CARON')).behind('s', ('s', 'CARON')) \
    .behind('z', ('z', 'CARON'))

SLOVAK = CZECH.behind('a', ('a', 'DIAERESIS')).behind('o', ('o', 'CIRCUMFLEX'))

# The fourth character of ddzs lies beyond what is looked at: it sorts as dz dz s.
HUNGARIAN = NEUTRAL.behind('c', 'cs').behind('d', 'dz', 'dzs').behind('g', 'gy').behind('l', 'ly').behind('n', 'ny') \
    .behind('o', [('o', 'DIAERESIS'), ('o', 'DOUBLE ACUTE')]).behind('s', 'sz').behind('t', 'ty') \
    .behind('u', [('u', 'DIAERESIS'), ('u', 'DOUBLE ACUTE')]).behind('z', 'zs') \
    .derived(contractions={digraph[0] + digraph: digraph for digraph in ('cs', 'dz', 'gy', 'ly', 'ny', 'sz', 'ty', 'zs')})

# Dotless ı has the plain place, so that i and what carries marks on it stand behind.
TURKISH = NEUTRAL.behind('c', ('c', 'CEDILLA')).behind('g', ('g', 'BREVE')).behind('o', ('o', 'DIAERESIS')) \
    .behind('s', ('s', 'CEDILLA')).behind('u', ('u', 'DIAERESIS')) \
    .derived(alphabet={'ı': (index('i'), 0), 'i': (index('i'), 1)}, small={'I': 'ı', 'İ': 'i'})

# Letters of the alphabets that are written today, in the common order of the script; a letter behind another in one word differs
# from it by accent. The last word of each row has the base letter only; its marked forms go with it.
CYRILLIC = """а ә ӕ б в гґ ғ ӻ ҕ ӷ д ђ ҙ е є ж җ з ѕ ӡ и ҋ і й- ј к қ ӄ ҡ ҟ ҝ л ӆ љ м ӎ н ӊ ң ӈ ҥ њ о ө п ҧ р ҏ с ҫ т ҭ ћ у ү ұ ф х ӽ ӿ ҳ һ
    ц ҵ ч ҷ ӌ ҹ ҽ ҿ џ ш щ ъ ы ь ҍ ѣ э ю я ѧ ѫ ѳ ѵ ҩ ӏ"""
GREEK = 'α β γ δ ε ϝ ͷ ϛ ζ ͱ η θ ι ϳ κ ϗ λ μ ν ξ ο π ϻ ϟ ϙ ρ ϼ σ ͼ ͻ ͽ τ υ φ χ ψ ω ϡ ͳ ϸ ϣ ϥ ϧ ϩ ϫ ϭ ϯ'


def script(text):
    """The letters of a script as lists of keys; й, which stands here as й-, is и with a breve."""
    return [[('и', 'BREVE')] if word == 'й-' else list(word) for word in text.split()]


RUSSIAN = NEUTRAL.in_front(script(CYRILLIC))
GREEK_FIRST = NEUTRAL.in_front(script(GREEK))

CLASSES = {
    1: NEUTRAL, 2: SPANISH, 3: SWEDISH, 4: FINNISH, 5: DANISH, 6: NORWEGIAN, 7: ICELANDIC, 8: POLISH, 9: CZECH, 10: SLOVAK,
    11: HUNGARIAN, 12: TURKISH, 13: RUSSIAN, 14: GREEK_FIRST, 20: replace(NEUTRAL, plain=True),
}

# name, collation class; the row's number is the language's code.
LANGUAGES = [
    ('neutral', 1),
    ('english', 1),
    ('german', 1),
    ('french', 1),
    ('spanish', 2),
    ('italian', 1),
    ('portuguese', 1),
    ('dutch', 1),
    ('swedish', 3),
    ('finnish', 4),
    ('danish', 5),
    ('norwegian', 6),
    ('icelandic', 7),
    ('polish', 8),
    ('czech', 9),
    ('slovak', 10),
    ('hungarian', 11),
    ('turkish', 12),
    ('russian', 13),
    ('greek', 14),
    ('japanese', 20),
    ('chinese simplified', 20),
    ('chinese traditional', 20),
    ('korean', 20),
]
