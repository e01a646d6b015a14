#!/usr/bin/env python3
"""debugger_test.py CMAKE SOURCES BUILD PROGRAM TYPES: what debuggers show of values.

PROGRAM is tests/debugger/values.cpp, compiled with -g; the libraries have no debug information. TYPES is an object file whose debug
information has all types of the public headers.
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from xml.etree import ElementTree

CMAKE, SOURCES, BUILD, PROGRAM, TYPES = sys.argv[1], *map(pathlib.Path, sys.argv[2:])
PRINTERS = 'share/vqtm/gdb/vqtm_printers.py'

# What GDB prints.
PRINTED = {
    # Strings
    'city': '"Łódź" (ISO 8859-2, polish)',
    'native': '"café" (native, neutral)',
    'empty': '"" (Windows-1252, neutral)',
    'emptied': '"" (Windows-1252, neutral)',
    'nullString': '{NULL}',
    'namedNull': '{NULL} "abc" (Windows-1252, language 254)',
    'moved': '"" (Windows-1252, neutral)',
    'taker': '"abc" (Windows-1252, neutral)',
    'escaped': r'"\"a\\\n\001\201" (Windows-1252, english)',
    'unknownSet': '"€" (code set 200, language 99)',
    'unicode': r'"Łx😀\xD800" (Unicode, polish)',
    'japanese': r'"日本aｱ\xFFFF" (Shift_JIS, japanese)',
    'chinese': '"中€" (GBK, chinese simplified)',
    'traditional': '"中€" (Big5, chinese traditional)',
    'korean': '"가" (Unified Hangul, korean)',
    'large': f'"{"x" * 200}"... (Windows-1252, neutral)',
    'reference': '"Łódź" (ISO 8859-2, polish)',
    '*pointer': '"Łódź" (ISO 8859-2, polish)',
    '*nobody': 'error: Cannot access memory at address 0x0',
    'texts': 'std::vector of length 2, capacity 2 = {"one" (Windows-1252, neutral), {NULL}}',
    'byNumber': 'std::map with 1 element = {[7] = "seven" (Windows-1252, neutral)}',
    'simple': '"Groß"',
    'base': '"Groß"',
    'nullSimple': 'null text',
    'emptySimple': '""',
    'flagged': '"Ab" (accents, raw, flags 0x01)',
    'freeChar': "'é' (Windows-1252, french)",
    'quote': r"'\'' (Windows-1252, neutral)",
    'place': "'ó' at 1 (ISO 8859-2, polish)",
    'widePlace': "'本' at 1 (Shift_JIS, japanese)",
    'outside': 'no character',
    'gone': 'no character any more at byte 5',
    # Numbers and truth
    'int64': '-9223372036854775808',
    'minusOne': '-1',
    'truth': 'TRUE',
    'falsehood': 'FALSE',
    'nullTruth': '{NULL}',
    'oddTruth': 'byte 200',
    'truths': '{TRUE, {NULL}}',
    'seal': '281470681612284',
    'nullChar': '{NULL}',
    'someChar': "97 'a'",
    'someUchar': r"200 '\310'",
    'someShort': '-5',
    'someUshort': '65535',
    'nullInt': '{NULL}',
    'someInt': '-2147483647',
    'someUnsigned': '4294967295',
    'someLong': '7',
    'someUlong': '8',
    'someFloat': '1.5',
    'nullDouble': '{NULL}',
    'someDouble': '-0.25',
    'nullInt64': '{NULL}',
    'someInt64': '-9',
    # Dates and times
    'date': '2005-03-07',
    'nullDate': '{NULL}',
    'anyMonth': '2005-*-07',
    'anyYear': '*-*-*',
    'ancient': '-0044-03-15',
    'time': '00:05:09',
    'nullTime': '{NULL}',
    'negativeTime': '-01:05:00',
    'dateTime': '2005-03-07T00:05:09',
    'nullDateTime': '{NULL}',
    'halfNull': '2005-03-07T{NULL}',
    'stdDate': '-0044-03-15',
    'stdTime': '13:05:09.25+01:00',
    'westTime': '09:-30:00.00-03:30',
    'oddTime': '00:-30:00.00-00:30',
    'mixedZone': '-03:30:00.00-03:+30',
    'timestamp': '-0044-03-15T13:05:09.25+01:00',
    'interval': '-93784.5',
    'tenth': '0.1',
    'hugeInterval': '1e+10',
    'dayInterval': '16777216',
    'infinite': 'inf',
    # Bytes
    'blob': '2 bytes: 07 ff',
    'oneByte': '1 byte: 61',
    'emptyBlob': '0 bytes',
    'nullBlob': '{NULL}',
    'longBlob': f'40 bytes: {"00 " * 15}00...',
    'bounds': 'from 2 bytes: 00 01 to 1 byte: ff',
    'openBounds': 'from the first key to the last key',
    # Identifiers and references
    'objId': '(1-42#7)',
    'nullObjId': '{NULL}',
    'blockOnly': '{NULL} (0-0#7)',
    'dbObjId': '(3:1-42#7)',
    'nullDbObjId': '{NULL}',
    'classId': '(12v3)',
    'nullClassId': '{NULL}',
    'ref': '(3:1-42#7,12v3)',
    'nullRef': '{NULL}',
    'unresolved': '{NULL} (65535:0-0#0,0v0)',
    'localRef': '(1-42#7,12v3)',
    'nullLocalRef': '{NULL}',
    # Managers and what they make
    'manager': 'current table, level 5',
    'legacyManager': 'legacy table, level 3',
    'typeId': 'VqTypeId_VqDate (12)',
    'noType': 'no type (57)',
    'row': 'VqDate, 4 bytes in memory, fixed size on disk',
    '*manager.table_[11]': 'VqString, 16 bytes in memory, varying size on disk',
    '*exchange': '2 values of VqString = {"1" (Windows-1252, neutral), {NULL}}',
    '*scalars': '2 values of long, not owned = {5, -6}',
    '*released': 'released',
    # What never was a value, and what points nowhere
    '*(VqString*)rawString.storage': 'unreadable text at 0x5a5a5a5a5a5a5a5a (code set 90, language 90)',
    '*(VqIString*)rawIString.storage': 'unreadable text at 0x5a5a5a5a5a5a5a5a (flags 0x5a)',
    '*(VqBlob*)rawBlob.storage': 'unreadable',
    'blobNowhere': 'unreadable',
    '*(VqTypeMgr*)rawManager.storage': 'unreadable',
    '*wild': '3 values of VqString, not owned = {unreadable}',
    'wildBounds': 'from 2 bytes: 00 01 to 1 byte: unreadable at 0x10',
}

# What Visual Studio shows where that differs.
VIEWED = PRINTED | {
    'city': '"£ód¼"',  # in the machine's code page, here Windows-1252
    'native': '"café"',
    'empty': '""',
    'emptied': '""',
    'namedNull': '{NULL}',
    'moved': '""',
    'taker': '"abc"',
    'escaped': None,
    'unknownSet': '"€"',
    'unicode': None,
    'japanese': 'text in code set 225',
    'chinese': 'text in code set 226',
    'traditional': 'text in code set 227',
    'korean': 'text in code set 228',
    'large': f'"{"x" * 5000}"',
    'reference': '"£ód¼"',
    '*pointer': '"£ód¼"',
    '*nobody': None,
    'texts': None,
    'byNumber': None,
    'flagged': '"Ab"',
    'freeChar': "'\uFFE9'",  # a char
    'quote': "'''",
    'place': 'character 1 of "£ód¼"',
    'widePlace': 'character 1 of text in code set 225',
    'gone': 'character 5 of "a"',
    'truths': None,
    'anyMonth': 'year 2005, month -1, day 7',
    'anyYear': 'year -1, month -1, day -1',
    'ancient': 'year -44, month 3, day 15',
    'negativeTime': 'hour -1, minute 5, second 0',
    'stdDate': 'year -44, month 3, day 15',
    'stdTime': '13:05:09.25, zone 1:0',
    'westTime': 'hour 9, minute -30, second 0, hundredths 0, zone -3:-30',
    'oddTime': 'hour 0, minute -30, second 0, hundredths 0, zone 0:-30',
    'mixedZone': 'hour -3, minute 30, second 0, hundredths 0, zone -3:30',
    'timestamp': 'year -44, month 3, day 15T13:05:09.25, zone 1:0',
    'tenth': '0.100000001',
    'hugeInterval': '1e+10',
    'blob': '2 bytes',
    'oneByte': '1 byte',
    'longBlob': '40 bytes',
    'bounds': 'from a key of 2 bytes to one of 1',
    'openBounds': 'all keys',
    'typeId': None,
    'noType': None,
    '*exchange': '2 strings',
    '*scalars': '2 values of type 2',
    '*(VqString*)rawString.storage': None,
    '*(VqIString*)rawIString.storage': None,
    '*(VqBlob*)rawBlob.storage': None,
    'blobNowhere': None,
    '*(VqTypeMgr*)rawManager.storage': None,
    '*wild': '3 strings',
    'wildBounds': 'from a key of 2 bytes to one of 1',
}
VIEWED = {expression: text for expression, text in VIEWED.items() if text is not None}

# Classes with data that are no values: what works on values, or plain records of which a debugger shows all there is.
NOT_VALUES = {'MemFile', 'VqStringIterator', 'VqConfig', 'VqClock', 'VqKeyTable', 'bdate', 'btime', 'vq::MarchYear',
              'vq::SingleByteText', 'vq::Utf8Text'}
# Templates are known by what is made of them.
INSTANCES = {'VqNullable': ['VqNull_char', 'VqNull_uchar', 'VqNull_short', 'VqNull_ushort', 'VqNull_int', 'VqNull_unsigned',
                            'VqNull_long', 'VqNull_ulong', 'VqNull_float', 'VqNull_double', 'VqNull_VqInt64']}
VALUES = """VqString VqIString VqCaseIString VqChar VqInt64 VqDate VqTime VqDateTime d_Date d_Time d_Timestamp d_Interval VqBlob
            VqBlob::Record VqBoolean VqSeal VqObjId VqDBOId VqClassId VqRef VqLocalRef VqIdxBounds VqTypeMgr VqTypeDescriptor
            VqTypeConvertData VqTypeId""".split() + INSTANCES['VqNullable']


def gdb(*commands, program=PROGRAM, ask=None, environment=()):
    """Runs GDB over the commands; with a question, the answer of tests/debugger/inside_gdb.py."""
    with tempfile.TemporaryDirectory() as folder:
        paths = {name: str(pathlib.Path(folder) / name) for name in ('VQTM_ASK', 'VQTM_ANSWER')}
        if ask is not None:
            ask = ask | {'natvis': str(SOURCES / 'tools/debugger/vqtm.natvis')}
            pathlib.Path(paths['VQTM_ASK']).write_text(json.dumps(ask), encoding='utf-8')
            commands += (f'source {SOURCES}/tests/debugger/inside_gdb.py',)
        arguments = ['gdb', '-nx', '-batch', '-iex', 'set debuginfod enabled off', '-iex', 'set disable-randomization off']
        for command in commands:
            arguments += ['-iex' if command.startswith(('add-auto-load', 'set auto-load')) else '-ex', command]
        known = {name: value for name, value in os.environ.items() if not name.startswith(('LC_', 'LANG'))}
        result = subprocess.run([*arguments, str(program)], env={**known, 'LC_ALL': 'C.UTF-8', **paths, **dict(environment)}, cwd=folder,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300)
        output = result.stdout.decode('utf-8', 'replace')
        if re.search(r'ptrace: Operation not permitted|Cannot trace|fork: Operation', output):
            raise unittest.SkipTest('==== SKIPPED: this machine does not let GDB run programs ====\n' + output)
        if ask is None:
            return output
        answer = pathlib.Path(paths['VQTM_ANSWER'])
        if not answer.exists():
            raise AssertionError(output)
        return json.loads(answer.read_text(encoding='utf-8')) | {'output': output}


def differences(shown, expected):
    """What is shown otherwise than expected, beside what is."""
    return {expression: (shown[expression], text) for expression, text in expected.items() if shown[expression] != text}


SAFE = f'add-auto-load-safe-path {BUILD}'
# No function of the program can be called: what is shown comes from memory alone.
STOP = ('set breakpoint pending on', 'break Ready', 'run', 'set may-call-functions off', 'up')


class Printers(unittest.TestCase):
    maxDiff = None

    def test_values(self):
        """In a process, and in the memory that it leaves behind."""
        with tempfile.TemporaryDirectory() as folder:
            core = pathlib.Path(folder) / 'core'
            answer = gdb(SAFE, *STOP, f'generate-core-file {core}', ask={'print': list(PRINTED), 'garbage': VALUES})
            self.assertEqual(differences(answer['printed'], PRINTED), {}, answer['output'])
            self.assertEqual(answer['garbage'], [])
            self.assertNotIn('Python Exception', answer['output'])
            dead = gdb(SAFE, f'core-file {core}', 'frame function Ready', 'up', ask={'print': list(PRINTED)})
            self.assertEqual(differences(dead['printed'], PRINTED), {}, dead['output'])

    def test_settings(self):
        steps = [
            # commands, what to print, what is shown then
            (['set print elements 3'], 'city', '"Łód"... (ISO 8859-2, polish)'),
            ([], 'taker', '"abc" (Windows-1252, neutral)'),
            ([], '*exchange', '2 values of VqString = {"1" (Windows-1252, neutral), {NULL}}'),
            (['set print elements 1'], '*exchange', '2 values of VqString = {"1" (Windows-1252, neutral)...}'),
            (['set print elements 0'], 'large', f'"{"x" * 5000}" (Windows-1252, neutral)'),
            (['set print elements 200', "set var *(char*)&'VqLanguageContext::defaults_' = 7"], 'native', '"cafщ" (native, neutral)'),
            (['set target-charset ASCII'], 'city', r'"\u0141\u00F3d\u017A" (ISO 8859-2, polish)'),
            (['set target-charset ISO-8859-1'], 'unicode', r'"\u0141x\U0001F600\xD800" (Unicode, polish)'),
            (['set target-charset auto'], '/d typeId', '12'),
        ]
        answer = gdb(SAFE, *STOP, ask={'steps': [step[:2] for step in steps]})
        self.assertEqual(answer['steps'], [text for *_, text in steps], answer['output'])

    def test_the_c_locale_gets_escapes(self):
        answer = gdb(SAFE, *STOP, ask={'print': ['city']}, environment={'LC_ALL': 'C'})
        self.assertEqual(answer['printed'], {'city': r'"\u0141\u00F3d\u017A" (ISO 8859-2, polish)'}, answer['output'])


class Loading(unittest.TestCase):
    """GDB finds the printers wherever the library is."""

    @classmethod
    def setUpClass(cls):
        # The whole path, as GDB has it.
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix='vqtm-debugger-')).resolve()
        cls.prefix = cls.folder / 'prefix'
        cls.install(cls.prefix)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    @staticmethod
    def install(prefix, **environment):
        subprocess.run([CMAKE, '--install', str(BUILD), '--component', 'Development', '--prefix', str(prefix)], check=True,
                       env={**os.environ, **environment}, stdout=subprocess.DEVNULL)
        subprocess.run([CMAKE, '--install', str(BUILD), '--component', 'Runtime', '--prefix', str(prefix)], check=True,
                       env={**os.environ, **environment}, stdout=subprocess.DEVNULL)

    @staticmethod
    def loaders(folder):
        return sorted(str(path.relative_to(folder)) for path in folder.rglob('*-gdb.py'))

    def printed(self, *commands, prefix):
        library = next(prefix.rglob('libvq95FtmB.so.*.*.*[0-9]'))
        answer = gdb(*commands, *STOP, ask={'print': ['date']}, environment={'LD_LIBRARY_PATH': str(library.parent)})
        return answer['printed']['date']

    def test_private_prefix(self):
        self.assertEqual(self.printed(f'add-auto-load-safe-path {self.prefix}', prefix=self.prefix), '2005-03-07')
        self.assertIn('{', self.printed(prefix=self.prefix), 'nothing is loaded that GDB was not allowed to')

    def test_moved_prefix(self):
        moved = self.folder / 'moved' / 'here'
        shutil.copytree(self.prefix, moved, symlinks=True)
        self.assertEqual(self.printed(f'add-auto-load-safe-path {moved}', prefix=moved), '2005-03-07')

    def test_folder_of_scripts(self):
        """As in /usr, whose folder GDB knows by itself: nothing is beside the library."""
        prefix = self.folder / 'scripts'
        self.install(prefix)
        for loader in prefix.glob('lib*/**/*-gdb.py'):
            loader.unlink()
        scripts = prefix / 'share/gdb/auto-load'
        self.assertEqual(len(self.loaders(prefix)), 1)
        shown = self.printed(f'add-auto-load-safe-path {scripts}', f'add-auto-load-scripts-directory {scripts}', prefix=prefix)
        self.assertEqual(shown, '2005-03-07')

    def test_system_prefix(self):
        """What is staged for /usr has the loader where GDB looks, and none where the linker's cache would find it."""
        for prefix in ('/usr', '/usr/local'):
            stage = self.folder / f'stage{prefix.replace("/", "-")}'
            self.install(prefix, DESTDIR=str(stage))
            (loader,) = self.loaders(stage)
            (library,) = [path for path in stage.rglob('libvq95FtmB.so.*') if path.is_file() and not path.is_symlink()
                          and path.suffix != '.py']
            self.assertEqual(loader, f'{prefix[1:]}/share/gdb/auto-load/{library.relative_to(stage)}-gdb.py')

    def test_sourced(self):
        shown = self.printed(f'source {self.prefix / PRINTERS}', prefix=self.prefix)
        self.assertEqual(shown, '2005-03-07')
        self.assertFalse(list(self.prefix.rglob('__pycache__')), 'GDB writes into the prefix')


class Natvis(unittest.TestCase):
    maxDiff = None

    def test_values(self):
        answer = gdb(SAFE, *STOP, ask={'view': list(VIEWED)})
        self.assertEqual(differences(answer['natvis'], VIEWED), {})

    def test_is_installed_for_visual_studio(self):
        with tempfile.TemporaryDirectory() as folder:
            Loading.install(folder)
            self.assertTrue((pathlib.Path(folder) / 'share/vqtm/vqtm.natvis').is_file())


class Completeness(unittest.TestCase):
    def test_every_class_with_data_has_a_view(self):
        natvis = ElementTree.parse(SOURCES / 'tools/debugger/vqtm.natvis').getroot()
        viewed = {view.get('Name') for view in natvis if 'Name' in view.attrib and '<' not in view.get('Name')}
        names = set(VALUES) | viewed
        for header in [*SOURCES.glob('inc/*.h'), *SOURCES.glob('platform/*/inc/*.h')]:
            text = header.read_text(encoding='utf-8')
            found = re.findall(r'^(?:class|struct)\s+(?:VQ\w+\s+)?(\w+)\s*(?:final\s*)?[:{]', text, re.MULTILINE)
            names |= {prefix + name for name in found for prefix in ('', 'vq::')}
        classes = gdb(f'source {BUILD / PRINTERS}', program=TYPES, ask={'classes': sorted(names)})['classes']
        self.assertEqual((set(VALUES) | viewed) - set(classes), set(), 'there is no such class')
        without = {name for name, has in classes.items() if has['data'] and not (has['printer'] and has['natvis'])}
        self.assertEqual(without, NOT_VALUES)
        self.assertTrue(classes['VqTypeId']['printer'])

    def test_tables_are_those_of_the_library(self):
        self.assertEqual(gdb(program=TYPES, ask={'tables': str(SOURCES)})['tables'], [])

    def test_every_printer_is_tried_on_values(self):
        tried = gdb(SAFE, *STOP, 'python print({gdb.parse_and_eval(e).type.strip_typedefs().unqualified().name for e in '
                    f'{[e for e in PRINTED if "nobody" not in e]!r}}})')
        for name in VALUES:
            if name not in INSTANCES['VqNullable'] and name != 'VqBlob::Record':
                self.assertRegex(tried, rf"'{name}'")


if __name__ == '__main__':
    if shutil.which('gdb') is None:
        print('==== SKIPPED: gdb is missing, so that nobody looked at what it shows (apt-get install gdb) ====')
        sys.exit(77)
    unittest.main(argv=sys.argv[:1], verbosity=2)
