#!/usr/bin/env python3
"""Holds the README and the guides to what is true: readme_test.py [--update] [EMULATOR] PROGRAM.

Every ```console block is run, those of a document one after the other in one folder, and its output compared (--update
writes it anew); every ```cpp or ```c block must stand in an example that is built and run by the tests; every link and
every folder and header that is named must exist.
"""
import re
import unittest

import console

README = "README.md"
TEXTS = {name: (console.ROOT / name).read_text(encoding="utf-8") for name in (README, "docs/store.md")}
PROGRAM = []


def blocks(text, kind):
    for match in re.finditer(rf"^```{kind}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        yield text[:match.start()].count("\n") + 2, match.group(1)


class Documents(unittest.TestCase):
    def test_commands_print_what_is_shown(self):
        for name, text in TEXTS.items():
            with console.working_folder() as folder:
                for line, block in blocks(text, "console"):
                    console.check(self, PROGRAM, name, block, line, folder)

    def test_the_tour_is_the_readmes(self):
        shown = {step.command: step.expected.rstrip("\n") for _, block in blocks(TEXTS[README], "console") for step in console.parse(block)}
        with console.working_folder() as folder:
            tour = console.parse(console.run([], f"examples/tour '{PROGRAM[-1]}' made", folder))
        self.assertTrue(tour)
        for step in tour:
            with self.subTest(step.command):
                self.assertEqual(shown[step.command], step.expected.rstrip("\n"))

    def test_code_is_taken_from_examples(self):
        for language in ("cpp", "c"):
            examples = [path.read_text(encoding="utf-8") for path in (console.ROOT / "examples").glob(f"*.{language}")]
            for line, text in blocks(TEXTS[README], language):
                self.assertTrue(any(text in example for example in examples), f"README.md:{line}: in no example")

    def test_what_is_named_is_there(self):
        for name, text in TEXTS.items():
            named = re.findall(r"\]\(([^)#:]+)\)", text)
            if name == README:
                named += re.findall(r"^\| `([^`]+)` \|", text.split("## The headers")[1], re.MULTILINE)
            self.assertTrue(named)
            for path in named:
                with self.subTest(name, path=path):
                    self.assertTrue(((console.ROOT / name).parent / path).exists())

    def test_every_public_header_is_listed(self):
        for folder in ("inc", "platform/base/inc", "platform/i18n/inc"):
            for header in (console.ROOT / folder).glob("*.h"):
                self.assertTrue(f"`{folder}/{header.name}`" in TEXTS[README], f"{header.name} is not listed")


def update():
    for name, text in TEXTS.items():
        with console.working_folder() as folder:
            renewed = re.sub(r"(?ms)(?<=^```console\n)(.*?)(?=^```$)", lambda block: console.rerun(PROGRAM, block[1], folder), text)
        (console.ROOT / name).write_text(renewed, encoding="utf-8")


if __name__ == "__main__":
    console.main(PROGRAM, update)
