"""Case mappings to several characters, and the properties that a mapping asks its neighbours for."""
import re


def full_mappings(db):
    """(upper, lower): unit to units, the unconditional ones of SpecialCasing.txt that are longer than one unit."""
    upper, lower = {}, {}
    with open(f'{db.folder}/SpecialCasing.txt', encoding='utf-8') as lines:
        for line in lines:
            fields = [field.strip() for field in line.split('#')[0].split(';')]
            if len(fields) != 5:  # with a condition there are six
                continue
            for mapping, field in (lower, fields[1]), (upper, fields[3]):
                units = tuple(int(unit, 16) for unit in field.split())
                if len(units) > 1:
                    mapping[int(fields[0], 16)] = units
    return upper, lower


def combining_marks(db):
    """Marks that do not stand above: a dot above behind them still belongs to the letter before them."""
    with open(f'{db.folder}/UnicodeData.txt', encoding='ascii') as lines:
        fields = [line.split(';', 4) for line in lines]
    return {int(code, 16) for code, _, _, place, _ in fields if place not in ('0', '230') and int(code, 16) < 0x10000}


def contexts(db):
    return [('casedUnits', db.property_set('DerivedCoreProperties.txt', 'Cased')),
            ('ignorableUnits', db.property_set('DerivedCoreProperties.txt', 'Case_Ignorable')),
            ('markUnits', combining_marks(db))]


def ranges(units):
    """(first, last) of each run of units."""
    found = []
    for unit in sorted(units):
        if found and found[-1][1] == unit - 1:
            found[-1][1] = unit
        else:
            found.append([unit, unit])
    return found
