#!/usr/bin/env python3
"""Tests of the workbench: cli_test.py [EMULATOR] PROGRAM, or with VQTYPE and VQTYPE_EMULATOR in the environment.

Everything that the workbench prints is compared with the sessions in golden/cli, which are the same on every target.
`cli_test.py --update PROGRAM` writes them anew; read the difference before it is committed.
"""
import json
import os
import pathlib
import random
import signal
import subprocess
import tempfile
import unittest

import console

SESSIONS = console.ROOT / "tests/golden/cli"
PROGRAM = []
ORDERS = ("little", "big")

INTEGERS = {
    "short": (-32768, 32767), "VqWord": (0, 65535), "int": (-2**31, 2**31 - 1), "long": (-2**31, 2**31 - 1),
    "enum": (-2**31, 2**31 - 1), "unsigned": (0, 2**32 - 1), "VqDWord": (0, 2**32 - 1), "VqNull_short": (-32768, 32767),
    "VqNull_ushort": (0, 65535), "VqNull_int": (-2**31, 2**31 - 1), "VqNull_unsigned": (0, 2**32 - 1),
    "VqNull_long": (-2**31, 2**31 - 1), "VqNull_ulong": (0, 2**32 - 1),
}
FLOATS = ["0", "-0", "1.5", "-2.25", "0.1", "3.14159", "1e-30", "inf", "-inf"]
TEXTS = ["", "a", "Zürich", "a,b", "[x,y]", " blanks ", "'\"\\", "x" * 300]
VALUES = {
    **{name: [str(low), "0", "1", "258", str(high)] for name, (low, high) in INTEGERS.items()},
    **{name: ["A", " ", ",", "0x00", "0x1f", "0x7f", "0xe9", "0xff"] for name in ("char", "VqByte", "VqNull_char", "VqNull_uchar")},
    **{name: FLOATS for name in ("float", "double", "VqNull_float", "VqNull_double")},
    **{name: ["-9223372036854775808", "-1", "0", "4294967298", "9223372036854775807"] for name in ("VqInt64", "VqNull_VqInt64")},
    "VqDate": ["0000-01-01", "1600-02-29", "2005-03-07", "9999-12-31"],
    "VqTime": ["00:00:00", "12:05:09", "23:59:59"],
    "VqDateTime": ["0000-01-01T00:00:00", "2005-03-07T12:05:09", "9999-12-31T23:59:59"],
    "BlockId": ["#0", "#7", "#4294967295"],
    "d_Date": ["-0044-03-15", "2005-03-07", "9999-12-31"],
    "d_Time": ["00:00:00.00+00:00", "12:05:09.25+01:00", "23:59:59.99-05:30"],
    "d_Timestamp": ["1999-12-31T23:59:59.99+00:00", "2005-03-07T12:05:09.25+01:00"],
    "d_Interval": ["0", "-93784.5", "0.1", "86400"],
    "VqObjId": ["(1-42#7)", "(0-1#0)", "(65535-4294967295#4294967295)"],
    "VqClassId": ["(0v0)", "(12v3)", "(65535v3)"],
    "VqRef": ["(3:1-42#7, 12)", "(65535:0-1#0, 0)"],
    "VqBlob": ["", "00", "00FF2A", "AB" * 300],
    "VqBoolean": ["TRUE", "FALSE"],
    "VqSeal": ["0", "8590131204", "281474976710655"],
    **{name: TEXTS for name in ("VqString", "VqIString", "VqCaseIString")},
}
# Values that other texts than the workbench's do not keep.
ODD_VALUES = {
    "VqDate": ["-0044-03-15", "0000-00-00", "2005-02-30", "-32768--128-127", "32767--05-100"],
    "VqTime": ["24:00:00", "-128:-01:127", "00:100:-10"],
    "VqDateTime": ["0000-00-00T00:00:00", "-0005--05-100T-128:00:-01", "-32768--128--128T00:00:00", "2005-02-30T24:60:60"],
    "d_Time": ["-01:127:00.+127+01:-30"],
    "VqBoolean": ["0x02", "0x7f", "0xfe"],
}


def run(*arguments, stdin=b""):
    """Status, output, errors."""
    done = subprocess.run([*PROGRAM, *arguments], input=stdin, capture_output=True, cwd=console.ROOT,
                          env=console.ENVIRONMENT, timeout=120)
    return done.returncode, done.stdout, done.stderr.decode("utf-8")


def succeed(test, *arguments, stdin=b""):
    status, output, errors = run(*arguments, stdin=stdin)
    test.assertEqual((0, ""), (status, errors), arguments)
    return output.decode("utf-8")


def rows_of(test):
    rows = json.loads(succeed(test, "types", "--json"))
    test.assertEqual(list(range(41)), [row["id"] for row in rows])
    return rows


def is_able(row):
    """The row can be encoded and decoded."""
    return {"create", "store", "load", "size", "print", "scan"} <= set(row["does"])


def is_refusal(status, errors):
    """A failure that says what is wrong, and no crash."""
    return status == 2 and errors.startswith("vqtype") and "assertion" not in errors


class Sessions(unittest.TestCase):
    def test_output_is_golden(self):
        for path in sorted(SESSIONS.glob("*.session")):
            console.check(self, PROGRAM, path.name, path.read_text(encoding="utf-8"))


class Types(unittest.TestCase):
    def test_what_is_not_able_is_refused(self):
        for row in rows_of(self):
            if not is_able(row):
                for command, argument in ("encode", "0"), ("decode", "00"), ("print", "0"), ("scan", "0"):
                    status, _, errors = run(command, row["name"], argument)
                    self.assertTrue(is_refusal(status, errors) and "cannot be " in errors, errors)


class RoundTrip(unittest.TestCase):
    def test_decode_reads_what_encode_writes(self):
        for row in filter(is_able, rows_of(self)):
            values = VALUES[row["name"]] + ODD_VALUES.get(row["name"], []) + ["{NULL}"] * row["null"]
            forms = []
            for order in ORDERS:
                with self.subTest(row["name"], order=order):
                    plain = succeed(self, "encode", row["name"], "--plain", "--order", order, "--", *values)
                    text = succeed(self, "decode", row["name"], "--plain", "--order", order, plain)
                    self.assertEqual(values, text[:-1].split("\n"))
                    forms.append(sorted(plain.split()))
            self.assertEqual(forms[0], forms[1], f"{row['name']}: the orders differ in more than sequence")

    def test_blobs_may_be_longer_than_a_string(self):
        pairs = "5A00" * (5000 if len(PROGRAM) > 1 else 20000)  # Windows has short command lines
        plain = succeed(self, "encode", "VqBlob", "--plain", pairs)
        self.assertEqual(pairs + "\n", succeed(self, "decode", "VqBlob", "--plain", "-", stdin=plain.encode()))

    def test_two_byte_strings_carry_every_character(self):
        text = "Łódź, Αθήνα, 東京, 😀"
        plain = succeed(self, "encode", "VqString", text, "--code-set", "253", "--language", "polish", "--plain")
        self.assertEqual(text + "\n", succeed(self, "decode", "VqString", plain, "--plain"))
        self.assertIn(b"253", run("decode", "VqString", plain)[1])


class Texts(unittest.TestCase):
    def test_what_no_string_can_hold_is_refused(self):
        cases = [("short", ["7"], "%999999d"), ("short", ["7"], "%.999999d"), ("double", ["7"], "%.999999lf"),
                 ("VqDate", ["--array", *["2005-03-07"] * 2500], "%A" * 5), ("VqDate", ["2005-03-07"], "%A" * 12000),
                 ("VqString", ["x" * 9000], "%s" * 8), ("VqBlob", ["00" * 9000], "%X" * 4),
                 ("VqNull_long", ["--array", *["1"] * 5000], "%020d")]
        for name, arguments, text in cases:
            with self.subTest(name, format=text[:20]):
                status, output, errors = run("print", name, "--format", text, *arguments)
                self.assertTrue(is_refusal(status, errors) and errors.count("\n") == 1, errors)
                self.assertEqual(b"", output)
        status, output, errors = run("decode", "VqIString", "-", stdin=b"00 ff ff" + b" 61" * 65535)
        self.assertTrue(is_refusal(status, errors) and output == b"", errors)
        self.assertEqual(65532, len(succeed(self, "print", "short", "7", "--format", "%65530d|")))

    def test_layouts_end_where_the_table_says(self):
        for row in rows_of(self):
            with self.subTest(row["name"]):
                lines = succeed(self, "show", row["name"]).splitlines()
                if row["bytes"]:
                    self.assertEqual(str(row["bytes"]), lines[4].split()[-1])
                    self.assertEqual(len(lines[4].split()), lines[5].count("+"))
                self.assertTrue(lines[0].startswith(f"{row['name']}, type {row['id']}: "))


class Keys(unittest.TestCase):
    # Values that memory tells apart in another way than keys on disk do.
    PARTED = {"VqRef", "d_Time", "d_Timestamp"}

    def test_sorted_values_compare_and_hash_as_they_stand(self):
        for row in filter(is_able, rows_of(self)):
            name = row["name"]
            values = [value for value in VALUES[name] if "\n" not in value] + ["{NULL}"] * row["null"]
            status, output, errors = run("sort", name, "-", "--unique", *["--code-set=1"] * (name == "VqString"),
                                         stdin="".join(f"{value}\n" for value in values).encode())
            self.assertEqual((0, ""), (status, errors), name)
            ordered = output.decode("utf-8")[:-1].split("\n")
            self.assertEqual(row["null"], ordered[0] == "{NULL}", ordered)
            for a, b in zip(ordered, ordered[1:]):
                with self.subTest(name, a=a, b=b):
                    results = {form["form"]: form["result"] for form in json.loads(
                        succeed(self, "compare", name, "--json", "--", a, b))["forms"]}
                    forms = ["little"] if name in self.PARTED or name.endswith("Id") else list(results)
                    self.assertTrue(all(results[form] < 0 for form in forms), results)
            for code in json.loads(succeed(self, "hash", name, "--json", "--", *values)):
                self.assertEqual(code["memory"], code["little"], (name, code))


class HostileBytes(unittest.TestCase):
    def test_no_prefix_is_taken_for_the_whole(self):
        cases = [("VqString", ["ab", "c"], {8, 15}), ("double", ["1"], {8}), ("VqNull_long", ["1", "{NULL}"], {5, 10}),
                 ("VqBlob", ["0000", "", "{NULL}"], {18}), ("VqDateTime", ["{NULL}", "2005-03-07T12:05:09"], {7, 14})]
        for name, values, ends in cases:
            whole = succeed(self, "encode", name, "--plain", *values).split()
            for length in set(range(len(whole))) - ends:
                with self.subTest(name, length=length):
                    status, output, errors = run("decode", name, " ".join(whole[:length]))
                    self.assertTrue(is_refusal(status, errors), errors)
                    self.assertEqual(b"", output)

    def test_changed_bytes_are_read_or_refused(self):
        chance = random.Random(1)
        for name, values in ("VqString", ["ab", "{NULL}", "cde"]), ("VqBlob", ["0102", "{NULL}", "", "03"]):
            whole = bytes.fromhex(succeed(self, "encode", name, "--plain", *values))
            for _ in range(40):
                changed = bytearray(whole)
                for _ in range(chance.randint(1, 3)):
                    changed[chance.randrange(len(changed))] = chance.choice((0, 1, 2, 127, 128, 253, 254, 255))
                with self.subTest(changed.hex()):
                    status, _, errors = run("decode", name, changed.hex())
                    self.assertTrue(status == 0 and errors == "" or is_refusal(status, errors), (status, errors))


class Sort(unittest.TestCase):
    def sort(self, stdin, *arguments):
        status, output, errors = run("sort", *arguments, "-", stdin=stdin)
        self.assertEqual((0, ""), (status, errors))
        return output

    def test_lines_keep_their_bytes(self):
        cases = [
            ("numbers, not texts", b"10\n9\n-1\n", ["long"], b"-1\n9\n10\n"),
            ("no end at the end", b"b\na", ["VqString"], b"a\nb\n"),
            ("CRLF stays, and is no part of the value", b"2\r\n1\r\n", ["short"], b"1\r\n2\r\n"),
            ("the last line gets the others' end", b"2\r\n1", ["short"], b"1\r\n2\r\n"),
            ("a byte order mark stays in front", b"\xef\xbb\xbfb\na\n", ["VqString"], b"\xef\xbb\xbfa\nb\n"),
            ("an empty file", b"", ["long"], b""),
            ("stable", b"1.0\n0\n1\n1.00\n", ["double"], b"0\n1.0\n1\n1.00\n"),
            ("stable in reverse", b"1.0\n0\n1\n1.00\n", ["double", "--reverse"], b"1.0\n1\n1.00\n0\n"),
            ("the first of equals", b"1.0\n0\n1\n1.00\n", ["double", "--unique"], b"0\n1.0\n"),
            ("nulls first", b"5\n{NULL}\n-5\n", ["VqNull_int"], b"{NULL}\n-5\n5\n"),
            ("nulls last", b"{NULL}\n5\n-5\n", ["VqNull_int", "--null-last"], b"-5\n5\n{NULL}\n"),
            ("not a number", b"nan\n2\nnan\n1\n", ["double"], b"1\n2\nnan\nnan\n"),
            ("equal strings keep their sequence", b"Abc\nabd\nabc\n", ["VqString", "--ignore-case"], b"Abc\nabc\nabd\n"),
            ("also in reverse", b"Abc\nabd\nabc\n", ["VqString", "--ignore-case", "--reverse"], b"abd\nAbc\nabc\n"),
            ("one of each", "á\na\nb\n{NULL}\n{NULL}\n".encode(), ["VqString", "--ignore-accents", "--unique"],
             "{NULL}\ná\nb\n".encode()),
            ("characters of four bytes", "😀\na\n".encode(), ["VqString"], "a\n😀\n".encode()),
            ("no line is a pattern", b"b\n*\na\n", ["VqString", "--unique"], b"*\na\nb\n"),
        ]
        for name, stdin, arguments, expected in cases:
            with self.subTest(name):
                self.assertEqual(expected, self.sort(stdin, *arguments))

    def test_names_of_files_are_unicode(self):
        with tempfile.TemporaryDirectory() as folder:
            name = f"{folder}/Łódź 東京.txt"
            with open(name, "w", encoding="utf-8") as file:
                file.write("Łódź\nKraków\n")
            self.assertEqual("Kraków\nŁódź\n", succeed(self, "sort", "VqString", name))
            self.assertIn("Łódź 東京.txt:1: ", run("sort", "long", name)[2])

    def test_many_lines(self):
        numbers = [random.Random(2).randint(-2**31, 2**31 - 1) for _ in range(50000)]
        output = self.sort("".join(f"{number}\n" for number in numbers).encode(), "long")
        self.assertEqual(sorted(numbers), [int(line) for line in output.split()])


class Streams(unittest.TestCase):
    def test_pipes_carry_neither_colour_nor_carriage_returns(self):
        for arguments in (["--help"], ["types"], ["encode", "long", "1"], ["show", "VqDate"], ["demo"]):
            status, output, _ = run(*arguments)
            self.assertEqual(0, status)
            self.assertNotRegex(output, rb"[\x1b\r]", arguments)

    @unittest.skipUnless(os.path.exists("/dev/full"), "no /dev/full here")
    def test_a_full_disk_is_a_failure(self):
        if len(PROGRAM) > 1:
            self.skipTest("the emulator has its own files")
        with open("/dev/full", "wb") as full:
            for argument in ("types", "--help"):
                done = subprocess.run([*PROGRAM, argument], stdout=full, stderr=subprocess.PIPE, env=console.ENVIRONMENT)
                self.assertTrue(is_refusal(done.returncode, done.stderr.decode()), done.stderr)
            self.assertEqual(2, subprocess.run([*PROGRAM, "bogus"], stderr=full, env=console.ENVIRONMENT).returncode)

    def test_a_closed_pipe_is_told_once_or_ends_the_program(self):
        if len(PROGRAM) > 1:
            self.skipTest("the emulator has its own pipes")
        for ignored, status, lines in (signal.SIG_IGN, 2, 1), (signal.SIG_DFL, -signal.SIGPIPE, 0):
            reader, writer = os.pipe()
            os.close(reader)
            done = subprocess.run([*PROGRAM, "types", "--json"], stdout=writer, stderr=subprocess.PIPE, restore_signals=False,
                                  preexec_fn=lambda action=ignored: signal.signal(signal.SIGPIPE, action))
            os.close(writer)
            self.assertEqual((status, lines), (done.returncode, done.stderr.count(b"\n")), done.stderr)
        done = subprocess.run(["bash", "-c", '"$@" types >&-', "-", *PROGRAM], capture_output=True)
        self.assertEqual((2, 1), (done.returncode, done.stderr.count(b"\n")), done.stderr)


class WindowsCommandLine(unittest.TestCase):
    """Command lines as Windows has them: one text in UTF-16, which the program itself parts into arguments."""

    def launch(self, rest, *where, stdin=b""):
        launcher = pathlib.Path(PROGRAM[-1]).with_name("vqtm_launch.exe")
        if len(PROGRAM) == 1 or not launcher.exists():
            self.skipTest("only where vqtype.exe is run by an emulator")
        with tempfile.NamedTemporaryFile(suffix=".txt") as file:
            program = "Z:" + PROGRAM[-1].replace("/", "\\")
            file.write(f'"{program}" {rest}'.encode("utf-16-le", "surrogatepass"))
            file.flush()
            done = subprocess.run([*PROGRAM[:-1], launcher, file.name, *where], input=stdin, capture_output=True, cwd=console.ROOT,
                                  env=console.ENVIRONMENT, timeout=120)
        self.assertNotEqual(100, done.returncode, "the console's code page was changed")
        return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8")

    def test_arguments_keep_their_characters(self):
        cases = [("Łódź", "Łódź"), ("😀", "😀"), ('"two  words"', "two  words"), ('""', ""), ("a\\b\\\\", "a\\b\\\\"),
                 ('"c\\\\"', "c\\"), ('d\\"e', 'd"e'), ('f" g"h', "f gh"), ("'i'", "'i'"), ("*.txt", "*.txt"), ("%PATH%", "%PATH%"),
                 ("漢字", "漢字"), ("\u2028", "\u2028")]
        status, output, errors = self.launch("convert VqString VqString --plain --code-set 253 -- " +
                                             " ".join(written for written, _ in cases))
        self.assertEqual((0, ""), (status, errors))
        self.assertEqual([text for _, text in cases], output[:-1].split("\n"))

    def test_a_console_shows_every_character(self):
        status, output, errors = self.launch("print VqString Łódź --code-set 253", "screen")
        self.assertEqual((0, "Łódź", ""), (status, output.rstrip(), errors))

    def test_half_a_character_is_refused(self):
        for half in "\ud800", "\udc00", "\udc00\ud800":
            status, output, errors = self.launch(f"encode VqString --code-set 253 a{half}b")
            self.assertEqual((2, ""), (status, output))
            self.assertRegex(errors, r"^vqtype: argument 5: .*half of a surrogate pair stands alone.*\n$")

    def test_names_of_files_and_pipes_are_unicode(self):
        with tempfile.TemporaryDirectory() as folder:
            name = f"{folder}/Łódź 😀.txt"
            with open(name, "w", encoding="utf-8") as file:
                file.write("Łódź\n😀\nKraków\n")
            self.assertEqual((0, "Kraków\nŁódź\n😀\n", ""), self.launch(f'sort VqString "{name}"'))
        status, output, errors = self.launch(f'sort VqString "{name}"')
        self.assertEqual((2, ""), (status, output))
        self.assertIn("Łódź 😀.txt: cannot be opened", errors)
        status, _, errors = self.launch("sort long -", stdin="Łódź\n".encode())
        self.assertEqual((2, True), (status, errors.startswith('vqtype sort: standard input:1: "Łódź" is no long')))


def update():
    for path in sorted(SESSIONS.glob("*.session")):
        path.write_text(console.rerun(PROGRAM, path.read_text(encoding="utf-8")), encoding="utf-8")


if __name__ == "__main__":
    console.main(PROGRAM, update)
