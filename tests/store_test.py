#!/usr/bin/env python3
"""The store's promises, kept by whole processes: store_test.py PROGRAM.

Loads and index builds are killed at random moments, disks fill up, bits flip, headers change; after each the store has what
was reported, or says what is wrong. The random numbers are the same in every run; VQTM_SEED sets others.
"""
import csv
import io
import json
import os
import pathlib
import pty
import random
import re
import resource
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

import console

sys.dont_write_bytecode = True
sys.path.insert(0, str(console.ROOT / "examples"))
import make_places

PROGRAM = []
SEED = int(os.environ.get("VQTM_SEED", "1"))
SCHEMA = "name:VqString(language=de), population:VqInt64, founded:VqDate, area:double, remark:VqString"
BATCH = 100
HEADER, *ROWS = make_places.places(60000, SEED, make_places.words(True))


def values_of(text):
    """A CSV text's rows, without the header line; numbers as numbers."""
    rows = list(csv.reader(io.StringIO(text, newline="")))[1:]
    return [(name, int(population), founded, float(area), remark) for name, population, founded, area, remark in rows]


VALUES = values_of(HEADER + "".join(ROWS))


class StoreTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vqtype store ")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.random = random.Random(SEED)

    def run_store(self, *arguments, stdin="", **options):
        """Status, output, errors; never a death by a signal."""
        done = subprocess.run([*PROGRAM, "store", *map(str, arguments)], input=stdin.encode("utf-8"), capture_output=True,
                              env=console.ENVIRONMENT, timeout=120, **options)
        output, errors = done.stdout.decode("utf-8", "replace"), done.stderr.decode("utf-8", "replace")
        self.assertIn(done.returncode, (0, 2), (arguments, output[-1000:], errors[-1000:]))
        return done.returncode, output, errors

    def succeed(self, *arguments, stdin="", **options):
        status, output, errors = self.run_store(*arguments, stdin=stdin, **options)
        self.assertEqual((0, ""), (status, errors), arguments)
        return output

    def refuse(self, reason, *arguments):
        status, output, errors = self.run_store(*arguments)
        self.assertEqual((2, ""), (status, output), arguments)
        self.assertRegex(errors, reason)

    def create(self, name="places.db", rows=(), index=None, schema=SCHEMA, folder=None):
        store = (folder or self.folder) / name
        self.succeed("create", store, "--schema", schema)
        if rows:
            self.load(store, rows)
        if index:
            self.succeed("index", store, index)
        return store

    def load(self, store, rows):
        return self.succeed("load", store, "-", stdin=HEADER + "".join(rows))

    def start_load(self, store, rows, *arguments, **options):
        source = self.folder / "rows.csv"
        source.write_text(HEADER + "".join(rows), encoding="utf-8", newline="")
        return subprocess.Popen([*PROGRAM, "store", "load", store, source, "--batch", str(BATCH), "--batches", *arguments],
                                stdout=subprocess.PIPE, text=True, env=console.ENVIRONMENT, **options)

    def check_holds(self, store, expected):
        """The store is sound, and has these rows in their order."""
        self.assertRegex(self.succeed("check", store), rf"sound: {len(expected)} record")
        self.assertTrue(values_of(self.succeed("dump", store)) == expected, "the records are not those that were loaded")


def committed(lines):
    """How many rows the last of the reports says."""
    found = [re.match(r"committed (\d+) rows, to line \d+$", line) for line in lines]
    return max((int(match[1]) for match in found if match), default=0)


class Kills(StoreTest):
    def test_reported_batches_survive_kills_of_loads(self):
        """Each load goes on behind what the one before it left."""
        store = self.create(index="name,population")
        there = 0
        for kill in range(50):
            process = self.start_load(store, ROWS[there:])
            lines = [process.stdout.readline() for batch in range(self.random.randrange(10))]
            time.sleep(self.random.uniform(0, 0.005))
            process.kill()
            reported = committed(lines + process.stdout.readlines())
            process.wait()
            process.stdout.close()
            self.assertRegex(self.succeed("check", store), "sound")
            rows = values_of(self.succeed("dump", store))
            left = len(rows) - there
            with self.subTest(kill=kill, reported=reported, left=left):
                self.assertTrue(reported <= left <= reported + BATCH and left % BATCH == 0)
                self.assertTrue(rows == VALUES[:len(rows)])
            there = len(rows)
        self.assertGreater(there, 10 * BATCH)
        self.load(store, ROWS[there:there + 1000])
        self.check_holds(store, VALUES[:there + 1000])

    def test_killed_index_builds_leave_the_index_as_it_was(self):
        store = self.create(rows=ROWS[:20000], index="name")
        before = self.succeed("query", store, "name like 'See*' order by name", "--csv")
        start = time.monotonic()
        self.succeed("index", store, "--rebuild")
        duration = time.monotonic() - start
        for arguments in [("--rebuild",)] * 8 + [("area,founded",)] * 8:
            process = subprocess.Popen([*PROGRAM, "store", "index", store, *arguments], env=console.ENVIRONMENT,
                                       stdout=subprocess.DEVNULL)
            time.sleep(self.random.uniform(0, duration))
            process.kill()
            process.wait()
            self.assertIn("sound", self.succeed("check", store))
            self.assertEqual(before, self.succeed("query", store, "name like 'See*' order by name", "--csv"))


    def test_rejected_rows_are_kept_up_to_the_last_report(self):
        store, rejected = self.create(), self.folder / "rejected.csv"
        bad = ["too few\n" if number % 7 == 0 else row for number, row in enumerate(ROWS[:20000])]
        process = self.start_load(store, bad, "--reject", rejected, stderr=subprocess.DEVNULL)
        lines = [process.stdout.readline() for _ in range(5)]
        process.kill()
        lines += process.stdout.readlines()
        process.wait()
        process.stdout.close()
        last = int(re.search(r"line (\d+)$", lines[-1].strip())[1])
        self.assertGreaterEqual(rejected.read_text().count("too few\n"), sum(row == "too few\n" for row in bad[:last - 1]))


class Readers(StoreTest):
    def test_queries_during_a_load_see_whole_batches(self):
        store = self.create(index="population")
        process = self.start_load(store, ROWS[:100 * BATCH])
        seen = set()
        while process.poll() is None:
            rows = values_of(self.succeed("query", store, "population >= 0", "--csv"))
            self.assertEqual(0, len(rows) % BATCH)
            self.assertTrue(sorted(rows) == sorted(VALUES[:len(rows)]))
            seen.add(len(rows))
        process.stdout.close()
        self.assertEqual(0, process.returncode)
        self.assertGreater(len(seen), 3)
        self.check_holds(store, VALUES[:100 * BATCH])

    def test_what_others_make_meanwhile_counts(self):
        """A load waits for its input while an index is made, and another load adds texts that no key holds whole."""
        store = self.create(rows=ROWS[:10])
        long = [f"{'long ' * 60}{number},{number},,0.5,\n" for number in range(5)]
        process = subprocess.Popen([*PROGRAM, "store", "load", store, "-", "--batch", "10", "--batches"],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=console.ENVIRONMENT)
        process.stdin.write((HEADER + "".join(ROWS[10:25])).encode("utf-8"))
        process.stdin.flush()
        self.assertEqual(b"committed 10 rows, to line 12\n", process.stdout.readline())
        self.succeed("index", store, "name,founded")
        self.load(store, long)
        process.communicate("".join(ROWS[25:40] + long).encode("utf-8"), timeout=60)
        self.assertEqual(0, process.returncode)
        expected = values_of(HEADER + "".join(ROWS[:20] + long + ROWS[20:40] + long))
        self.check_holds(store, expected)
        answer = values_of(self.succeed("query", store, "name like 'long *' and name like '*4'", "--csv"))
        self.assertEqual([4, 4], [row[1] for row in answer])


class Room(StoreTest):
    # Rows of 60 KB: few of them fill a disk.
    LONG = [f"name {number},{number},,0.5,{'x' * 30000}\n" for number in range(1800)]

    def fill(self, store, reason, **options):
        """Loads until there is no room; returns how many rows are in, which are those that were reported."""
        process = self.start_load(store, self.LONG, stderr=subprocess.PIPE, **options)
        output, errors = process.communicate(timeout=120)
        self.assertEqual(2, process.returncode, errors)
        self.assertRegex(errors, reason)
        count = committed(output.splitlines())
        self.assertGreater(count, 100)
        self.check_holds(store, values_of(HEADER + "".join(self.LONG[:count])))
        return count

    def finish(self, store, count):
        """With room again the load goes on, far beyond the 64 MiB that the map begins with."""
        self.load(store, self.LONG[count:])
        self.assertGreater(store.stat().st_size, 100 << 20)
        self.check_holds(store, values_of(HEADER + "".join(self.LONG)))

    def test_a_full_disk_loses_nothing_that_was_committed(self):
        disk = self.folder / "disk"
        disk.mkdir()
        if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=40m", "vqtype", disk], capture_output=True).returncode:
            self.skipTest("SKIPPED: a small disk cannot be mounted here")
        self.addCleanup(subprocess.run, ["umount", "-l", disk])
        store = self.create(folder=disk, index="name")
        count = self.fill(store, "the disk is full")
        subprocess.run(["mount", "-o", "remount,size=300m", disk], check=True)
        self.finish(store, count)

    def test_a_file_that_may_not_grow_loses_nothing_that_was_committed(self):
        store = self.create(index="name")

        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (30 << 20, 30 << 20))

        self.finish(store, self.fill(store, "size of files is limited", preexec_fn=limit))


class Damage(StoreTest):
    def test_flipped_bits_are_found_or_do_no_harm(self):
        whole = self.create(rows=ROWS[:400], index="name,population")
        query = "query", "name like 'S*' and population > 100 order by name", "--csv"
        contents = whole.read_bytes()
        store = self.folder / "flipped.db"
        answers = None
        for flip in range(41):
            damaged = bytearray(contents)
            bit = self.random.randrange(len(contents) * 8)
            if answers is not None:
                damaged[bit // 8] ^= 1 << bit % 8
            store.write_bytes(damaged)
            status, output, errors = self.run_store("check", store)
            results = [self.run_store(command, store, *rest) for command, *rest in (query, ("dump",))]
            if answers is None:
                answers = results
            with self.subTest(bit=bit):
                if status == 0:
                    self.assertTrue(answers == results, "check is content, but the answers are others")
                self.assertLessEqual(set(values_of(results[1][1])), set(VALUES[:400]), "a row that was never loaded")


def with_other_digit(value):
    return value[:-1] + str((int(value[-1:]) + 1) % 10).encode()


class Headers(StoreTest):
    """Headers as other libraries and programs could have written them."""

    # A line of the header, its new value, what is said of that, whether the records can be read, whether --rebuild mends it.
    OTHERS = (
        ("order-version", with_other_digit, "sorted by version", True, True),
        ("library-version", lambda value: re.sub(rb"\d", b"9", value), "written by version", True, False),
        ("native-code-set", lambda value: b"0" * len(value), "native code set", False, False),
    )

    def change(self, store, name, edit):
        """Edits a line of all copies of the header in the file, and the checksum behind each. LMDB itself has none."""
        contents = bytearray(store.read_bytes())
        copies = list(re.finditer(rb"format-version=1\n.*?\nschema=[^\n]*\n", contents, re.DOTALL))
        self.assertTrue(copies)
        for copy in copies:
            text = re.sub(rb"(?m)(?<=^" + name.encode() + rb"=).*", lambda match: edit(match[0]), copy[0])
            self.assertEqual(len(text), len(copy[0]))
            contents[copy.start():copy.end()] = text
            contents[copy.end():copy.end() + 4] = zlib.crc32(b"store" + text).to_bytes(4, "little")
        store.write_bytes(contents)

    def test_what_cannot_be_adopted_is_refused(self):
        whole = self.create(rows=ROWS[:300], index="name,population")
        query = "name > 'M' order by name", "--csv"
        answer = self.succeed("query", whole, *query)
        for name, edit, reason, is_readable, is_mended in self.OTHERS:
            with self.subTest(name):
                store = shutil.copy(whole, self.folder / f"{name}.db")
                self.change(store, name, edit)
                for command in ("query", *query), ("load", "/dev/null"), ("index", "area"):
                    self.refuse(reason, command[0], store, *command[1:])
                status, output, errors = self.run_store("check", store)
                self.assertEqual(2, status)
                self.assertRegex(output + errors, reason)
                status, output, errors = self.run_store("dump", store)
                self.assertEqual((is_readable, VALUES[:300] if is_readable else []), (status == 0, values_of(output)))
                if is_mended:
                    self.succeed("index", store, "--rebuild")
                    self.check_holds(store, VALUES[:300])
                    self.assertEqual(answer, self.succeed("query", store, *query))
                else:
                    self.refuse(reason, "index", store, "--rebuild")

    def test_what_can_be_set_is_set(self):
        store = self.create(rows=ROWS[:300], index="name")
        answer = self.succeed("query", store, "name like '?ee*'", "--csv")
        self.assertGreater(len(values_of(answer)), 3)
        self.change(store, "wildcards", lambda value: value.replace(b"U+002A", b"U+0025"))
        self.assertEqual(answer, self.succeed("query", store, "name like '?ee%'", "--csv"))
        self.change(store, "comparison", lambda value: b"0x0030")
        self.assertEqual(answer, self.succeed("query", store, "name like '?EE%'", "--csv"))


class Csv(StoreTest):
    GOOD = ['"Stadt ""am See"", Teil 1",1990-01-31,5\r\n', '"zwei\r\nZeilen",,6\r\n', ",,7\r\n", '"",2000-02-29,8\r\n']
    # Bad rows, and what each is mended to. The last one's quote would swallow more than a field can hold.
    BAD = [("zu wenig,\r\n", "genug,,1\r\n"), ("zu,,1,viel\r\n", "genau,,2\r\n"), ("kein Tag,30.2.1990,3\r\n", "Tag,1990-02-28,3\r\n"),
           ("keine Zahl,,1x\r\n", "Zahl,,4\r\n"), ("nichts,,\r\n", "etwas,,5\r\n"), ("kein \udcff Zeichen,,6\r\n", "Zeichen,,6\r\n"),
           ('"offen,1999-01-01,7\r\n', '"zu",1999-01-01,7\r\n')]
    MANY = "Zeile,1999-01-01,11\r\n" * 60000 + "ohne Ende,,12"

    def test_rejected_rows_never_overwrite_what_is_read(self):
        store, source = self.create(), self.folder / "rows.csv"
        source.write_text(HEADER + "".join(ROWS[:10]), encoding="utf-8", newline="")
        before = source.read_bytes()
        with source.open() as rows:
            done = subprocess.run([*PROGRAM, "store", "load", store, "-", "--reject", source], stdin=rows,
                                  capture_output=True, env=console.ENVIRONMENT, timeout=60)
        self.assertEqual((2, before), (done.returncode, source.read_bytes()))

    def test_rows_that_do_not_fit_cost_only_themselves(self):
        store = self.create(schema="name:VqString(language=de), population:VqInt64, founded:VqDate", index="name")
        source, rejected = self.folder / "rows.csv", self.folder / "rejected.csv"
        header = "Name,FOUNDED,population\r\n"
        text = "\ufeff" + header + "".join(self.GOOD + [bad for bad, _ in self.BAD]) + self.MANY
        source.write_bytes(text.encode("utf-8", "surrogateescape"))
        status, output, errors = self.run_store("load", store, source, "--reject", rejected)
        self.assertEqual(2, status)
        self.assertIn("60005 rows loaded, 7 rejected", output)
        self.assertEqual([str(line) for line in range(7, 14)], re.findall(r"rows\.csv:(\d+): ", errors))
        for told in ("founded", '"30.2.1990"', '"1x"', "quote"):
            self.assertIn(told, errors)

        kept = rejected.read_bytes().decode("utf-8", "surrogateescape")
        self.assertEqual(header + "".join(bad for bad, _ in self.BAD), kept.lstrip("\ufeff"))
        for bad, mended in self.BAD:
            kept = kept.replace(bad, mended)
        self.assertIn("7 rows loaded, 0 rejected", self.succeed("load", store, "-", stdin=kept))
        self.assertIn("sound: 60012 records", self.succeed("check", store))
        for query, count in ("name is null", 1), ("name = ''", 1), ("founded is null", 8), ("name = 'zwei\r\nZeilen'", 1):
            self.assertEqual(count, len(json.loads(self.succeed("query", store, query, "--json"))), query)
        copy = self.create("copy.db", schema="name:VqString(language=de), population:VqInt64, founded:VqDate")
        dump = self.succeed("dump", store)
        self.succeed("load", copy, "-", stdin=dump)
        self.assertTrue(dump == self.succeed("dump", copy))


class Terminals(StoreTest):
    def load_slowly(self, stderr):
        """Loads for more than a second."""
        store = self.create(name=f"slow{len(list(self.folder.iterdir()))}.db")
        process = subprocess.Popen([*PROGRAM, "store", "load", store, "-"], stdin=subprocess.PIPE, stderr=stderr,
                                   stdout=subprocess.DEVNULL, env={**console.ENVIRONMENT, "TERM": "xterm"})
        process.stdin.write(HEADER.encode("utf-8"))
        for part in range(16):
            process.stdin.write("".join(ROWS[part * 1000:(part + 1) * 1000]).encode("utf-8"))
            process.stdin.flush()
            time.sleep(0.1)
        return process

    def test_progress_is_for_terminals(self):
        terminal, stderr = pty.openpty()
        process = self.load_slowly(stderr)
        process.communicate(timeout=60)
        os.close(stderr)
        shown = b""
        while select.select([terminal], [], [], 1)[0]:
            try:
                shown += os.read(terminal, 65536)
            except OSError:
                break
        os.close(terminal)
        self.assertRegex(shown.decode("utf-8"), r"\r.*\d rows")
        self.assertRegex(shown.decode("utf-8"), r"\r *\r$", "the line is not taken away")
        self.assertEqual((None, b""), self.load_slowly(subprocess.PIPE).communicate(timeout=60))


if __name__ == "__main__":
    PROGRAM[:] = console.program_from(sys.argv[1:])
    unittest.main(argv=sys.argv[:1], verbosity=2)
