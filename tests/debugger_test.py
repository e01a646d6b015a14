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

CMAKE, SOURCES, BUILD, PROGRAM, TYPES = sys.argv[1], *map(pathlib.Path, sys.argv[2:])
PRINTERS = 'share/vqtm/gdb/vqtm_printers.py'
NATVIS = str(SOURCES / 'tools/debugger/vqtm.natvis')
VALUES_FILE = (SOURCES / 'tests/debugger/values.cpp').read_text(encoding='utf-8')

DECLARED = re.compile(r'^ +[\w:<>, ]+?[ *&]+(\w+)(?:[({;\[]| =).*//= (.*)$', re.MULTILINE)
EXPRESSED = re.compile(r'^ +//= (.*?): (.*)$', re.MULTILINE)
PRINTED = dict(DECLARED.findall(VALUES_FILE) + EXPRESSED.findall(VALUES_FILE)) | {'large': f'"{"x" * 200}"... (Windows-1252, neutral)'}

# Commands, what to print, and what is shown then.
STEPS = [
    (['set print elements 3'], 'city', '"Łód"... (ISO 8859-2, polish)'),
    ([], 'taker', '"abc" (Windows-1252, neutral)'),
    (['set print elements 1'], 'exchange', '2 values of VqString = {"0" (Windows-1252, neutral)...}'),
    (['set print elements 0'], 'large', f'"{"x" * 5000}" (Windows-1252, neutral)'),
    (["set var *(char*)&'VqLanguageContext::defaults_' = 7"], 'native', '"cafщ" (native, neutral)'),
    (['set target-charset ASCII'], 'city', r'"\u0141\u00F3d\u017A" (ISO 8859-2, polish)'),
    ([], 'unicode', r'"\u0141x\U0001F600\xD800" (Unicode, polish)'),
    (['set target-charset auto'], '/d typeId', '12'),
]

# Classes with data that are no values: what works on values, or plain records of which a debugger shows all there is.
NOT_VALUES = {'MemFile', 'VqStringIterator', 'VqConfig', 'VqClock', 'VqKeyTable', 'bdate', 'btime', 'vq::MarchYear',
              'vq::SingleByteText', 'vq::Utf8Text'}
NULLABLES = [f'VqNull_{name}' for name in 'char uchar short ushort int unsigned long ulong float double VqInt64'.split()]
VALUES = """VqString VqIString VqCaseIString VqChar VqInt64 VqDate VqTime VqDateTime d_Date d_Time d_Timestamp d_Interval VqBlob
            VqBoolean VqSeal VqObjId VqDBOId VqClassId VqRef VqLocalRef VqIdxBounds VqTypeMgr VqTypeDescriptor VqTypeConvertData
            VqTypeId""".split()
SAFE = f'add-auto-load-safe-path {BUILD}'
# No function of the program can be called: what is shown comes from memory alone.
STOP = ('set breakpoint pending on', 'break Ready', 'run', 'set may-call-functions off', 'up')


def gdb(*commands, program=PROGRAM, environment=(), **ask):
    """What tests/debugger/inside_gdb.py answers in GDB after the commands, and all that GDB said."""
    arguments = ['gdb', '-nx', '-batch', '-iex', 'set debuginfod enabled off', '-iex', 'set disable-randomization off']
    for command in (*commands, f'source {SOURCES}/tests/debugger/inside_gdb.py'):
        arguments += ['-iex' if command.startswith('add-auto-load') else '-ex', command]
    known = {name: value for name, value in os.environ.items() if not name.startswith(('LC_', 'LANG'))}
    known |= {'LC_ALL': 'C.UTF-8', 'VQTM_ASK': json.dumps(ask), **dict(environment)}
    done = subprocess.run([*arguments, str(program)], env=known, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=300)
    output = done.stdout.decode('utf-8', 'replace')
    if re.search(r'ptrace: Operation not permitted|Cannot trace|fork: Operation', output):
        raise unittest.SkipTest('==== SKIPPED: this machine does not let GDB run programs ====\n' + output)
    if not (answer := re.search(r'^ANSWER (.*)$', output, re.MULTILINE)):
        raise AssertionError(output)
    return json.loads(answer[1]) | {'output': output}


class Printers(unittest.TestCase):
    maxDiff = None

    def test_values(self):
        """In a process, and in the memory that it leaves behind."""
        self.assertEqual(len(PRINTED), VALUES_FILE.count('//= ') + 1, 'lines that nobody understands')
        with tempfile.TemporaryDirectory() as folder:
            core = pathlib.Path(folder) / 'core'
            answer = gdb(SAFE, *STOP, f'generate-core-file {core}', print=[*PRINTED], types=[*PRINTED],
                         garbage=VALUES + ['VqBlob::Record'] + NULLABLES)
            self.assertEqual(answer['print'], PRINTED, answer['output'])
            self.assertEqual(answer['garbage'], [])
            self.assertNotIn('Python Exception', answer['output'])
            tried = set(re.findall(r'\w+', ' '.join(answer['types'])))
            self.assertEqual(set(VALUES) - tried, set(), 'nobody looks at what is printed of these')
            dead = gdb(SAFE, f'core-file {core}', 'frame function Ready', 'up', print=[*PRINTED])
            self.assertEqual(dead['print'], PRINTED, dead['output'])

    def test_settings(self):
        answer = gdb(SAFE, *STOP, steps=[step[:2] for step in STEPS])
        self.assertEqual(answer['steps'], [text for *_, text in STEPS], answer['output'])
        answer = gdb(SAFE, *STOP, print=['city'], environment={'LC_ALL': 'C'})
        self.assertEqual(answer['print'], {'city': r'"\u0141\u00F3d\u017A" (ISO 8859-2, polish)'}, answer['output'])

    def test_tables_are_those_of_the_library(self):
        self.assertEqual(gdb(program=TYPES, tables=str(SOURCES))['tables'], [])


class Loading(unittest.TestCase):
    """GDB finds the printers wherever the library is."""

    @classmethod
    def setUpClass(cls):
        # The whole path, as GDB has it.
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix='vqtm-debugger-')).resolve()
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.prefix = cls.folder / 'prefix'
        cls.install(cls.prefix)

    @staticmethod
    def install(prefix, **environment):
        for component in ('Development', 'Runtime'):
            subprocess.run([CMAKE, '--install', str(BUILD), '--component', component, '--prefix', str(prefix)], check=True,
                           env={**os.environ, **environment}, stdout=subprocess.DEVNULL)

    @staticmethod
    def loaders(folder):
        return [str(path.relative_to(folder)) for path in folder.rglob('*-gdb.py')]

    def printed(self, *commands, prefix):
        library = next(prefix.rglob('libvq95FtmB.so.*.*.*[0-9]'))
        return gdb(*commands, *STOP, print=['date'], environment={'LD_LIBRARY_PATH': str(library.parent)})['print']['date']

    def test_private_prefix(self):
        self.assertEqual(self.printed(f'add-auto-load-safe-path {self.prefix}', prefix=self.prefix), '2005-03-07')
        self.assertIn('{', self.printed(prefix=self.prefix), 'nothing is loaded that GDB was not allowed to')
        self.assertTrue((self.prefix / 'share/vqtm/vqtm.natvis').is_file())

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
            library = next(stage.rglob('libvq95FtmB.so.*.*.*[0-9]')).relative_to(stage)
            self.assertEqual(self.loaders(stage), [f'{prefix[1:]}/share/gdb/auto-load/{library}-gdb.py'])

    def test_sourced(self):
        self.assertEqual(self.printed(f'source {self.prefix / PRINTERS}', prefix=self.prefix), '2005-03-07')
        self.assertFalse(list(self.prefix.rglob('__pycache__')), 'GDB writes into the prefix')


class Completeness(unittest.TestCase):
    def test_every_class_with_data_has_a_view(self):
        names = {*VALUES, *NULLABLES, 'VqBlob::Record'}
        for header in [*SOURCES.glob('inc/*.h'), *SOURCES.glob('platform/*/inc/*.h')]:
            found = re.findall(r'^(?:class|struct)\s+(?:VQ\w+\s+)?(\w+)\s*(?:final\s*)?[:{]', header.read_text(encoding='utf-8'), re.MULTILINE)
            names |= {prefix + name for name in found for prefix in ('', 'vq::')}
        classes = gdb(f'source {BUILD / PRINTERS}', program=TYPES, classes=[sorted(names), NATVIS])['classes']
        without = {name for name, has in classes.items() if has['data'] and not (has['printer'] and has['natvis'])}
        self.assertEqual(without, NOT_VALUES)
        self.assertTrue(classes['VqTypeId']['printer'])

    def test_natvis_names_types_and_members_that_exist(self):
        self.assertEqual(gdb(program=TYPES, natvis=[NATVIS, {'VqNullable': 'VqNull_int'}])['natvis'], [])


if __name__ == '__main__':
    if shutil.which('gdb') is None:
        print('==== SKIPPED: gdb is missing, so that nobody looked at what it shows (apt-get install gdb) ====')
        sys.exit(77)
    unittest.main(argv=sys.argv[:1], verbosity=2)
