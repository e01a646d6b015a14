#!/usr/bin/env python3
"""Writes a CSV file of invented places, for stores of any size: make_places.py ROWS [SEED] > FILE.csv

    name        one word, or several with blanks, hyphens, commas and quotation marks between; never null, often twice
    population  a whole number from 1 to some 30 millions, most of them small
    founded     a date from 0800-01-01 to 2020-12-28; null for one place in twenty
    area        square kilometres with two decimals
    remark      a text with commas, quotation marks or a line break; null for nine places in ten

The same rows and seed give the same file. The words are those of Debian's wngerman where that is installed, else they are
put together from syllables; `--syllables` does that anyway. A null is an empty field.
"""
import argparse
import pathlib
import random
import sys

WORDS = pathlib.Path("/usr/share/dict/ngerman")
SYLLABLES = ("acht bach berg brück burg dorf ess feld gäu groß haus höh kirch klein kön lauch moos müh neu ober öd pfaff quell rieß "
             "röth see stadt straß tal über unter vogt wald wasser weiß zell zürn").split()
MOST_DIGITS = 7.5  # the decimal logarithm of the largest population
REMARKS = (
    lambda word, other: f'"{word}, near {other}"',
    lambda word, other: f'"called ""{word}"" by some"',
    lambda word, other: f'"{word}\n{other}"',
    lambda word, other: f"{word} {other}",
    lambda word, other: '""',
)


def words(from_syllables):
    if WORDS.exists() and not from_syllables:
        return WORDS.read_text(encoding="utf-8").split()
    return [(first + second + third).capitalize() for first in SYLLABLES for second in SYLLABLES for third in SYLLABLES]


def places(count, seed, texts):
    """The lines of the file. Only random() is asked: its numbers are the same in every version of Python."""
    number = random.Random(seed).random

    def word():
        return texts[int(number() * len(texts))]

    def name():
        kind = number()
        if kind < 0.4:
            return word()
        if kind < 0.8:
            return f"{word()} {word()}"
        if kind < 0.9:
            return f"{word()}-{word()}"
        if kind < 0.95:
            return f'"{word()}, {word()}"'
        return f'"{word()} ""{word()}"""'

    def founded():
        if number() < 0.05:
            return ""
        return f"{800 + int(number() * 1221):04}-{1 + int(number() * 12):02}-{1 + int(number() * 28):02}"

    def remark():
        if number() < 0.9:
            return ""
        return REMARKS[int(number() * len(REMARKS))](word(), word())

    yield "name,population,founded,area,remark\n"
    for _ in range(count):
        yield f"{name()},{int(10 ** (number() * MOST_DIGITS))},{founded()},{number() * 10000:.2f},{remark()}\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("rows", type=int)
    parser.add_argument("seed", type=int, nargs="?", default=1)
    parser.add_argument("--syllables", action="store_true", help="do not look for a word list")
    options = parser.parse_args()
    sys.stdout.reconfigure(encoding="utf-8", newline="\n")
    sys.stdout.writelines(places(options.rows, options.seed, words(options.syllables)))


if __name__ == "__main__":
    main()
