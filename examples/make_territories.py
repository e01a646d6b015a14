#!/usr/bin/env python3
"""Writes territories.csv: names and figures of the world's territories, from the Unicode CLDR (Debian's unicode-cldr-core).

    make_territories.py            writes territories.csv beside this script
    make_territories.py --check    exits with 1 when the file is not what this script writes, with 77 without the data

A row a territory, by code: its names in four languages, population, gross domestic product in US dollars by purchasing
power, and literacy in per cent. Groups of territories have names but no figures of their own: those fields are empty.
"""
import argparse
import csv
import io
import pathlib
import sys
import xml.etree.ElementTree as xml

CLDR = pathlib.Path("/usr/share/unicode/cldr/common")
LANGUAGES = {"en": "english", "de": "german", "fr": "french", "sv": "swedish"}
FIGURES = {"population": "population", "gdp": "gdp", "literacyPercent": "literacy"}
PLACEHOLDERS = {"XA", "XB", "ZZ"}  # pseudo-locales, and the unknown territory
OUTPUT = pathlib.Path(__file__).resolve().parent / "territories.csv"
SKIPPED = 77


def names(language):
    entries = xml.parse(CLDR / f"main/{language}.xml").iterfind("localeDisplayNames/territories/territory")
    return {entry.get("type"): entry.text for entry in entries if not entry.get("alt")}


def figures():
    entries = xml.parse(CLDR / "supplemental/supplementalData.xml").iterfind("territoryInfo/territory")
    return {entry.get("type"): entry.attrib for entry in entries}


def territories():
    named = {language: names(language) for language in LANGUAGES}
    known = figures()
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(["code", *LANGUAGES.values(), *FIGURES.values()])
    for code in sorted(code for code in named["en"] if code.isalpha() and code not in PLACEHOLDERS):
        writer.writerow([code, *(named[language].get(code, "") for language in LANGUAGES),
                         *(known.get(code, {}).get(figure, "") for figure in FIGURES)])
    return text.getvalue()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true", help="compare instead of writing")
    check = parser.parse_args().check
    if not CLDR.is_dir():
        print(f"SKIPPED: {CLDR} is missing; install the package unicode-cldr-core", file=sys.stderr)
        return SKIPPED
    text = territories()
    if not check:
        OUTPUT.write_text(text, encoding="utf-8", newline="\n")
    elif OUTPUT.read_bytes().decode("utf-8").replace("\r\n", "\n") != text:
        print(f"{OUTPUT} is not what {sys.argv[0]} writes from {CLDR}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
