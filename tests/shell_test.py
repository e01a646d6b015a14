#!/usr/bin/env python3
"""Tests of what the workbench brings for the shell: shell_test.py PROGRAM [MANUAL_PAGE]."""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import console

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
PAGE = pathlib.Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else None
COMPLETION = console.ROOT / "tools/vqtype/completion/vqtype"
ENVIRONMENT = {**console.ENVIRONMENT, "PATH": f"{PROGRAM.parent}:{os.environ['PATH']}"}


def run(*arguments, **environment):
    """What the program prints; a failure is one of the test."""
    return subprocess.run([PROGRAM, *arguments], check=True, capture_output=True, encoding="utf-8",
                          env={**ENVIRONMENT, **environment}).stdout


def commands(*group):
    """The words that call each command, and its option lines and argument lines by the help."""
    for name in run("--complete", *group, "").splitlines()[1:]:
        words = [*group, name]
        text = run(*words, "--help")
        if text.startswith(f"Usage: vqtype {' '.join(words)} COMMAND "):
            yield from commands(*words)
            continue
        usage = re.search(rf"^Usage: vqtype {' '.join(words)} .*\[OPTION\]\.\.\.(.*)", text)[1]
        yield words, re.findall(r"[A-Z]+", usage), re.findall(r"^  (?:-\w, )?(--[\w-]+)(?: ([A-Z=]+))?", text, re.M)


def has_store():
    done = subprocess.run([PROGRAM, "store", "stats", "/"], capture_output=True, encoding="utf-8", env=ENVIRONMENT)
    return "without the store" not in done.stderr


class Protocol(unittest.TestCase):
    def test_every_place_of_every_command_is_known(self):
        for words, arguments, options in commands():
            given = words[:]
            for argument in arguments:
                place = run("--complete", *given, "").splitlines()[0]
                self.assertRegex(place, "^[A-Z]+$", (words, argument))
                given.append("long" if place == "TYPE" else "1")
            offered = run("--complete", *given, "--").splitlines()[1:]
            self.assertEqual(sorted(option for option, _ in options), sorted(offered), words)
            for option, place in options:
                if place:
                    self.assertEqual(place, run("--complete", *given, option, "").splitlines()[0])
                    self.assertEqual(place, run("--complete", *given, option + "=").splitlines()[0])

    def test_what_is_offered_is_taken(self):
        offers = [["encode", "VqString", "a", "--code-set"], ["encode", "VqString", "a", "--language"], ["show"],
                  ["compare", "long", "1", "2", "--flags"], ["compare", "long", "1", "2", "--order"],
                  ["estimate", "long", "1", "--op"], ["scan", "VqDate", "x", "--order"], ["encode", "VqBoolean"],
                  ["encode", "VqNull_int"], ["print", "VqDate", "2005-03-07", "--format"]]
        for words in offers:
            choices = run("--complete", *words, "").splitlines()[1:]
            self.assertTrue(choices, words)
            for choice in choices:
                with self.subTest(words=words, choice=choice):
                    run(*words, choice)

    def test_columns_of_a_store_are_offered(self):
        has_store() or self.skipTest("this vqtype was built without the store")
        with tempfile.TemporaryDirectory() as folder:
            store = os.path.join(folder, "towns.db")
            run("store", "create", store, "--schema", "name:VqString, people:long, founded:VqDate")
            run("store", "stats", store)
            before = sorted(os.listdir(folder))
            cases = [(["query", store, ""], ["name", "people", "founded", "order by", "limit"]),
                     (["query", store, "people > 5 and F"], ["people > 5 and founded"]),
                     (["query", store, "name = x o"], ["name = x order by", "name = x offset"]),
                     (["query", store, "order by n"], ["order by name"]),
                     (["query", store, "order by name "], ["order by name " + word for word in ("asc", "desc", "limit", "offset")]),
                     (["index", store, "name, p"], ["name, people"]),
                     (["load", store, "f.csv", "--scan", "n"], ["name="]),
                     (["load", store, "f.csv", "--scan=founded=%"], ["--scan=founded=%a %e.%b %Y"]),
                     (["load", "-", "f.csv", "--scan", ""], []), (["index", folder, ""], [])]
            for words, expected in cases:
                self.assertEqual(expected, run("--complete", "store", *words).splitlines()[1:], words)
            self.assertEqual(before, sorted(os.listdir(folder)))
            os.remove(store + "-lock")
            self.assertEqual("COLUMNS\n", run("--complete", "store", "index", store, ""))
            self.assertEqual(["towns.db"], os.listdir(folder))

    def test_nothing_makes_it_fail(self):
        for words in ([], ["\xff"], ["encode", "--", "--", "--"], ["encode", "=", "--="], ["types", "--json=", ""],
                      ["estimate", "--low", "--low", "--low=", "-"], ["-", "-"], ["store", "store", "--"], ["compare", "illegal", "", "", "", ""]):
            self.assertTrue(run("--complete", *words).endswith("\n"))
        closed = subprocess.run(["bash", "-c", "vqtype --complete '' >&-"], env=ENVIRONMENT, capture_output=True)
        self.assertEqual((0, b""), (closed.returncode, closed.stderr))


@unittest.skipUnless(shutil.which("bash"), "no bash here")
class Bash(unittest.TestCase):
    CASES = [
        ("vqtype so", ["sort"]),
        ("vqtype so| long", ["sort"]),
        ("~/bin\\ two/vqtype so", ["sort"]),
        ("FOO=1; vqtype sort long >Łó", ["Łódź.txt"]),
        ("vqtype sort VqString < Łó", ["Łódź.txt"]),
        ("vqtype sort VqString 2>>Łó", ["Łódź.txt"]),
        ("vqtype sort VqString &>Łó", ["Łódź.txt"]),
        ("vqtype print VqDate<x 2>&1 >'two words' 2005-03-07 --form", ["--format"]),
        ("vqtype sort long c:", ["d"]),
        ("vqtype sort long nothing", []),
        ("vqtype --vers", ["--version"]),
        ("vqtype encode vqdatet", ["VqDateTime"]),
        ("vqtype encode VqNull_short {", ["\\{NULL\\}"]),
        ("vqtype encode VqNull_short '{N", ["{NULL}"]),
        ('vqtype encode VqNull_short "{N', ["{NULL}"]),
        ("vqtype encode VqString a --language chinese\\ s", ["chinese\\ simplified"]),
        ("vqtype encode VqString a --language 'chinese s", ["chinese simplified"]),
        ("vqtype encode VqString a --language=chinese\\ s", ["chinese\\ simplified"]),
        ("vqtype encode VqString a --language='chinese s", ["chinese simplified"]),
        ("vqtype encode VqString a --code-set=kO", ["KOI8-R"]),
        ("vqtype compare long 1 2 --order=m", ["memory"]),
        ("vqtype compare long 1 2 --flags exact,r", ["exact,report"]),
        ('vqtype compare long 1 2 --flags "\\`\\$a\\b,rep', ["\\`\\$a\\\\b,report"]),
        ("vqtype estimate long --op '<", ["<", "<="]),
        ("vqtype print VqDate 2005-03-07 --format ", ["%a\\ %e.%b\\ %Y"]),
        ("vqtype sort long 'two words/s", ["two words/sp ace.txt", "two words/sub"]),
        ("vqtype sort long two\\ words/sp", ["two words/sp ace.txt"]),
        ("vqtype sort long Ł", ["Łódź.txt"]),
        ("vqtype sort long it\\'", ["it's $5"]),
        ("vqtype demo ~/Łó", ["~/Łódź.txt"]),
        ("vqtype encode $(touch evil) `touch evil` \"$(touch evil)", []),
        ("vqtype bogus ", []),
        ("vqtype store qu", ["query"]),
        ("vqtype store query Łó", ["Łódź.txt"]),
        ("vqtype store create new.db --schema 'name:vqint", ["name:VqInt64"]),
        ("vqtype store create new.db --schema \"a:long, name:VqString(language=gr", ["a:long, name:VqString(language=greek"]),
    ]

    # The shell's options are none that it is easy with, and stay as they are. A bar in the line is the cursor.
    SCRIPT = r"""set -ef; shopt -s failglob; source "$1"
        read -r _ _ complete program < <(complete -p vqtype); [[ $program == vqtype ]]
        line=${line##*; } before=${line%%|*} COMPREPLY=(old)
        COMP_LINE=${line/|} COMP_POINT=${#before}
        $complete "${line%% *}"; [[ $- == *f* ]]; printf "%s\n" "${COMPREPLY[@]}" """

    def complete(self, line, folder):
        done = subprocess.run(["bash", "--norc", "-c", self.SCRIPT, "-", COMPLETION], cwd=folder, check=True,
                              env={**ENVIRONMENT, "HOME": str(folder), "line": line}, capture_output=True, encoding="utf-8")
        self.assertEqual("", done.stderr, line)
        return sorted(filter(None, done.stdout.splitlines()))

    def folder(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        path = pathlib.Path(folder.name)
        (path / "two words" / "sub").mkdir(parents=True)
        for name in "two words/sp ace.txt", "Łódź.txt", "it's $5", "c:d":
            (path / name).touch()
        (path / "bin two").symlink_to(PROGRAM.parent)
        return path

    def test_words_come_as_they_are_typed(self):
        folder = self.folder()
        for line, expected in self.CASES:
            with self.subTest(line):
                self.assertEqual(sorted(expected), self.complete(line, folder))
        self.assertFalse((folder / "evil").exists(), "what is being typed was run")

    def test_readline_puts_them_in_place(self):
        """A terminal of its own: what is typed, tabs included, and the command that comes of it."""
        folder = self.folder()
        cases = [("vqtype enc\tvqdatet\t--ord\tl\t", "encode VqDateTime --order little"),
                 ("vqtype encode VqString a --language=chinese\\ s\t", "encode VqString a --language=chinese simplified"),
                 ("vqtype encode VqString a --language 'chinese s\t", "encode VqString a --language chinese simplified"),
                 ("vqtype sort long it\\'\t", "sort long it's $5"), ("vqtype sort long it\t", "sort long it's $5"),
                 ("vqtype sort long two\\ words/sp\t", "sort long two words/sp ace.txt"),
                 ("vqtype encode VqNull_int {\t", "encode VqNull_int {NULL}"),
                 ("vqtype sort long >Ł\t c:\t", "sort long c:d"),
                 ("vqtype compare long 1 2 --flags exact,rep\t,p\t", "compare long 1 2 --flags exact,report,pattern")]
        # What runs is a function; what completes is the program.
        setup = (f'source {COMPLETION}\nvqtype() {{ [[ $1 == --complete ]] && command vqtype "$@" && return\n'
                 'local IFS=" "; printf "%s\\n" "<$*>" >>typed; }\n')
        typed = "".join(line + "\n" for line, _ in cases)
        (folder / "setup").write_text(setup)
        shutil.which("script") or self.skipTest("no script(1) here")
        subprocess.run(["script", "-qec", "bash --norc --noprofile --init-file setup -i", "/dev/null"], cwd=folder,
                       input=f"bind 'set bell-style none'; source ./setup\n{typed}exit\n", encoding="utf-8", timeout=60,
                       env={**ENVIRONMENT, "TERM": "dumb", "HISTFILE": "/dev/null", "INPUTRC": "/dev/null"},
                       capture_output=True)
        lines = (folder / "typed").read_text(encoding="utf-8").splitlines()
        self.assertEqual([f"<{expected}>" for _, expected in cases], lines)


@unittest.skipUnless(PAGE and PAGE.exists(), "no manual page was made: help2man is missing")
class ManualPage(unittest.TestCase):
    def rendered(self):
        if not shutil.which("groff"):
            self.skipTest("no groff here")
        done = subprocess.run(["groff", "-man", "-ww", "-k", "-Tutf8", "-rLL=100n", "-P-c", PAGE], capture_output=True,
                              env=ENVIRONMENT, encoding="utf-8", check=True)
        self.assertEqual("", done.stderr)
        return re.sub(".\b", "", done.stdout)

    def test_it_holds_all_commands_with_options_and_examples(self):
        text = re.sub(r"[\s\u2010-]+", " ", self.rendered())
        examples = 0
        for words, arguments, options in commands():
            self.assertRegex(text, rf" vqtype {' '.join(words)} [\w ]*\[OPTION\]\.\.\.")
            for option, _ in options:
                self.assertIn(" " + re.sub("-+", " ", option).strip(), text)
            for example in re.findall(r"^  (\$ .*)$", run(*words, "--help"), re.M):
                self.assertIn(re.sub(r"[\s-]+", " ", example), text)
                examples += 1
        self.assertGreater(examples, 9)
        for section in "NAME", "SYNOPSIS", "OPTIONS", "COMMANDS", "EXIT STATUS", "ENVIRONMENT", "FILES":
            self.assertIn(f" {section} ", text)

    def test_examples_work(self):
        page = PAGE.read_text(encoding="utf-8")
        is_known = has_store()
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "names.txt").write_text("Zürich\nÅbo\n", encoding="utf-8")
            pathlib.Path(folder, "places.csv").write_text(
                "founded,name,people\n28.10.1237,Berlin,3769495\n,Sölden,3100\n", encoding="utf-8")
            for example in re.findall(r"CW\$ vqtype (.*)\\fR", page):
                example = re.sub(r"\\(?:\(aq|[-&])", lambda part: {"\\(aq": "'", "\\-": "-"}.get(part[0], ""), example)
                if is_known or not example.startswith("store "):
                    subprocess.run(["bash", "-c", "set -o pipefail; vqtype " + example], env=ENVIRONMENT, cwd=folder,
                                   check=True, stdout=subprocess.DEVNULL)

    def test_its_date_is_the_source_s(self):
        rule = (console.ROOT / "tools/vqtype/CMakeLists.txt").read_text(encoding="utf-8")
        arguments = re.findall(r"--(?:locale|help-option)=\S+|--no-info", rule)
        pages = {subprocess.run(["help2man", *arguments, "--version-string=1", PROGRAM], check=True, capture_output=True,
                                env={**ENVIRONMENT, "SOURCE_DATE_EPOCH": str(date)}).stdout for date in (10**9, 10**9 + 9)}
        self.assertEqual(1, len(pages))
        self.assertIn(b"September 2001", pages.pop())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
