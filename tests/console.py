"""Console sessions as text: commands behind "$ ", their output below, "[status N]" where a command fails.

    $ vqtype encode short 70000
    vqtype encode: VALUE 1: "70000" is no short: expected a whole number from -32768 to 32767
    [status 2]

The commands run in bash, where `vqtype` is the program under test. Errors and output appear as they do on a terminal.
"""
import contextlib
import dataclasses
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8", "WINEDEBUG": "-all"}
PREAMBLE = 'vqtype() { "${program[@]}" "$@"; }; set -o pipefail\n'


@dataclasses.dataclass
class Step:
    line: int
    command: str
    expected: str


def program_from(arguments):
    """The program's command line: the arguments, else VQTYPE_EMULATOR and VQTYPE from the environment."""
    if not arguments:
        arguments = os.environ.get("VQTYPE_EMULATOR", "").split() + [os.environ["VQTYPE"]]
    return [str(pathlib.Path(part).resolve()) if os.sep in part else part for part in arguments]


def main(program, update):
    """Runs the calling script's tests of the program that the arguments name, or `update` where they hold --update."""
    rest = [argument for argument in sys.argv[1:] if argument != "--update"]
    program[:] = program_from(rest)
    if len(rest) + 1 < len(sys.argv):
        update()
    else:
        unittest.main(argv=sys.argv[:1], verbosity=2)


def parse(text, first_line=1):
    steps = []
    for number, line in enumerate(text.splitlines(), first_line):
        if line.startswith("$ "):
            steps.append(Step(number, line[2:], ""))
        elif steps:
            steps[-1].expected += line + "\n"
    return steps


@contextlib.contextmanager
def working_folder():
    """A folder in which commands can leave files, and find those of the tree by the same names."""
    with tempfile.TemporaryDirectory(prefix="vqtype") as name:
        folder = pathlib.Path(name)
        for entry in ROOT.iterdir():
            (folder / entry.name).symlink_to(entry)
        yield folder


def run(program, command, folder=ROOT):
    quoted = " ".join("'" + part.replace("'", "'\\''") + "'" for part in program)
    done = subprocess.run(["bash", "-c", f"program=({quoted}); {PREAMBLE}{command}"], cwd=folder, env=ENVIRONMENT,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
    output = done.stdout.decode("utf-8").replace("\r\n", "\n")
    if output and not output.endswith("\n"):
        output += "\n"
    return output + (f"[status {done.returncode}]\n" if done.returncode else "")


def check(test, program, name, text, first_line=1, folder=ROOT):
    steps = parse(text, first_line)
    test.assertTrue(steps, f"{name} has no commands")
    for step in steps:
        with test.subTest(f"{name}:{step.line}: {step.command}"):
            test.assertEqual(step.expected.rstrip("\n"), run(program, step.command, folder).rstrip("\n"))


def rerun(program, text, folder=ROOT):
    """The text with the output of every command as it is now."""
    return "".join(f"$ {step.command}\n{run(program, step.command, folder)}" for step in parse(text))
