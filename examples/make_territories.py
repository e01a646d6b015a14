#!/usr/bin/env python3
"""Writes territories.csv: names and figures of the world's territories, from the Unicode CLDR (Debian's unicode-cldr-core)
and the time zone database (tzdata).

    make_territories.py            writes territories.csv beside this script
    make_territories.py --check    exits with 1 when the file is not what this script writes, with 77 without the data

A row a territory, by code: its names in four languages, population, gross domestic product in US dollars by purchasing
power, literacy in per cent, and the universal time at which the year 2026 first began in one of its time zones. Fields
without data are empty: groups of territories (the European Union, the eurozone, outlying Oceania, the United Nations) have
neither figures nor zones; a few territories (Ascension Island, the Canary Islands, Kosovo) have no zone under their code.
"""
import argparse
import collections
import csv
import datetime
import io
import pathlib
import sys
import xml.etree.ElementTree as xml
import zoneinfo

CLDR = pathlib.Path("/usr/share/unicode/cldr/common")
ZONES = pathlib.Path("/usr/share/zoneinfo/zone.tab")
YEAR = 2026
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


def zones_of_territories():
    zones = collections.defaultdict(list)
    for line in ZONES.read_text(encoding="utf-8").splitlines():
        if not line.startswith("#"):
            code, _, zone = line.split("\t")[:3]
            zones[code].append(zone)
    return zones


def new_year(zones):
    """The universal time at which YEAR began in the first of the zones that it reached."""
    midnights = (datetime.datetime(YEAR, 1, 1, tzinfo=zoneinfo.ZoneInfo(zone)) for zone in zones)
    return min(midnights).astimezone(datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%S")


def territories():
    named = {language: names(language) for language in LANGUAGES}
    known = figures()
    zones = zones_of_territories()
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(["code", *LANGUAGES.values(), *FIGURES.values(), "newyear"])
    for code in sorted(code for code in named["en"] if code.isalpha() and code not in PLACEHOLDERS):
        writer.writerow([code, *(named[language].get(code, "") for language in LANGUAGES),
                         *(known.get(code, {}).get(figure, "") for figure in FIGURES),
                         new_year(zones[code]) if code in zones else ""])
    return text.getvalue()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true", help="compare instead of writing")
    check = parser.parse_args().check
    for path, package in (CLDR, "unicode-cldr-core"), (ZONES, "tzdata"):
        if not path.exists():
            print(f"SKIPPED: {path} is missing; install the package {package}", file=sys.stderr)
            return SKIPPED
    text = territories()
    if not check:
        OUTPUT.write_text(text, encoding="utf-8", newline="\n")
    elif OUTPUT.read_bytes().decode("utf-8").replace("\r\n", "\n") != text:
        print(f"{OUTPUT} is not what {sys.argv[0]} writes from {CLDR} and {ZONES}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
