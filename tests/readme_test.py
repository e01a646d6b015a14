#!/usr/bin/env python3
"""Holds the README to what is true: readme_test.py [--update] [EMULATOR] PROGRAM.

Every ```console block is run and its output compared (--update writes it anew); every ```cpp or ```c block must stand in an
example that is built and run by the tests; every link and every folder and header that is named must exist.
"""
import re
import unittest

import console

PATH = console.ROOT / "README.md"
README = PATH.read_text(encoding="utf-8")
PROGRAM = []


def blocks(kind):
    for match in re.finditer(rf"^```{kind}\n(.*?)^```$", README, re.MULTILINE | re.DOTALL):
        yield README[:match.start()].count("\n") + 2, match.group(1)


class Readme(unittest.TestCase):
    def test_commands_print_what_is_shown(self):
        for line, text in blocks("console"):
            console.check(self, PROGRAM, "README.md", text, line)

    def test_code_is_taken_from_examples(self):
        for language in ("cpp", "c"):
            examples = [path.read_text(encoding="utf-8") for path in (console.ROOT / "examples").glob(f"*.{language}")]
            for line, text in blocks(language):
                self.assertTrue(any(text in example for example in examples), f"README.md:{line}: in no example")

    def test_what_is_named_is_there(self):
        named = re.findall(r"\]\(([^)#:]+)\)", README) + re.findall(r"^\| `([^`]+)` \|", README.split("## The headers")[1], re.MULTILINE)
        self.assertTrue(named)
        for path in named:
            with self.subTest(path):
                self.assertTrue((console.ROOT / path).exists())

    def test_every_public_header_is_listed(self):
        for folder in ("inc", "platform/base/inc", "platform/i18n/inc"):
            for header in (console.ROOT / folder).glob("*.h"):
                self.assertTrue(f"`{folder}/{header.name}`" in README, f"{header.name} is not listed")


def update():
    PATH.write_text(re.sub(r"(?ms)(?<=^```console\n)(.*?)(?=^```$)", lambda block: console.rerun(PROGRAM, block[1]), README),
                    encoding="utf-8")


if __name__ == "__main__":
    console.main(PROGRAM, update)
