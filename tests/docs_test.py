#!/usr/bin/env python3
"""Holds the reference manual to what is true: docs_test.py [COMPILER]

Doxygen has nothing to warn about; what it does not warn about, headers it passes over and enumerators, is documented too; every link
in the manual and in the Markdown pages leads somewhere; and the code in the headers' comments compiles.
"""
import html
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ("inc", "platform/base/inc", "platform/i18n/inc")
HEADERS = sorted(header for folder in FOLDERS for header in (ROOT / folder).glob("*.h"))
PAGES = [*ROOT.glob("*.md"), *(ROOT / "docs").rglob("*.md"), ROOT / "platform/i18n/data/README.md"]
COMPILER = []


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.manual = pathlib.Path(cls.folder.name)
        settings = (ROOT / "docs/Doxyfile").read_text(encoding="utf-8")
        settings += f"OUTPUT_DIRECTORY = {cls.manual}\nGENERATE_XML = YES\nXML_PROGRAMLISTING = NO\n"
        cls.doxygen = subprocess.run(["doxygen", "-"], input=settings, cwd=ROOT, capture_output=True, encoding="utf-8")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def xml(self, pattern):
        for file in (self.manual / "xml").glob(pattern):
            yield from ElementTree.parse(file).getroot().iter("compounddef")

    def test_there_is_nothing_to_warn_about(self):
        self.assertEqual((self.doxygen.returncode, self.doxygen.stderr), (0, ""))

    def test_every_header_has_a_page(self):
        documented = {compound.find("location").get("file") for compound in self.xml("*_8h.xml")
                      if "".join(compound.find("briefdescription").itertext()).strip()}
        self.assertEqual({str(header.relative_to(ROOT)) for header in HEADERS}, documented)

    def test_every_enumerator_is_explained(self):
        values = {value.find("name").text: value for compound in self.xml("*.xml") for value in compound.iter("enumvalue")
                  if value.get("prot") == "public"}
        self.assertGreater(len(values), 60)
        missing = {name for name, value in values.items()
                   if not "".join([*value.find("briefdescription").itertext(), *value.find("detaileddescription").itertext()]).strip()}
        self.assertEqual(missing - set("Sunday Monday Tuesday Wednesday Thursday Friday Saturday".split()), set())

    def test_members_of_a_named_group_have_texts_of_their_own(self):
        # One without a text would silently be given the group's first.
        for section in (section for compound in self.xml("*.xml") for section in compound.iter("sectiondef")):
            texts = ["".join([*member.find("briefdescription").itertext(), *member.find("detaileddescription").itertext()]).strip()
                     for member in section.iter("memberdef")]
            if section.find("header") is not None:
                self.assertNotIn(texts[0], texts[1:], section.find("header").text)

    def test_every_link_leads_somewhere(self):
        pages = {page.name: page.read_text(encoding="utf-8") for page in self.manual.glob("*.html")}
        targets = {name: set(re.findall(r'\b(?:id|name)="([^"]+)"', text)) for name, text in pages.items()}
        broken = set()
        for name, text in pages.items():
            for link in map(html.unescape, re.findall(r'<a [^>]*href="([^"]+)"', text)):
                page, _, anchor = link.partition("#")
                page = page or name
                # Doxygen's own: the menu's scripts, and the heading of nested classes where all of them are private.
                if "://" in link or page.startswith("javascript:") or anchor == "nested-classes":
                    continue
                if not (self.manual / page).exists() or (anchor and page in targets and anchor not in targets[page]):
                    broken.add(f"{name}: {link}")
        self.assertFalse(broken)


class Pages(unittest.TestCase):
    @staticmethod
    def anchors(text):
        """The anchors by which the headings are known where Markdown is shown as it is."""
        for heading in re.findall(r"^#+ (.*)$", text, re.MULTILINE):
            yield re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")

    def test_every_link_leads_somewhere(self):
        for page in PAGES:
            text = re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
            for link in re.findall(r"\]\(([^)\s]+)\)", text):
                path, _, anchor = link.partition("#")
                if "://" in link:
                    continue
                with self.subTest(page=str(page.relative_to(ROOT)), link=link):
                    target = page.parent / path if path else page
                    self.assertTrue(target.exists())
                    self.assertTrue(not anchor or anchor in self.anchors(target.read_text(encoding="utf-8")))


class Examples(unittest.TestCase):
    # What the code in comments takes as given.
    GIVEN = """
        #include <algorithm>
        #include <cstring>
        #include <iostream>
        #include <map>
        #include <unordered_set>
        #include <vector>
        #include "vqtm.h"
        using std::memcpy;
        extern "C" void* dlsym(void* library, const char* name);
        int Order(const VqDate&, const VqDate&);
        void* library, *booleans;
        unsigned char record[64], disk[64];
        unsigned long recordSize = sizeof record, n = 3;
        VqDate a, b;
        VqTypeMgr manager(5);
        std::vector<VqSeal> seals;
        """

    @staticmethod
    def blocks(header):
        """The blocks of code in a header's comments: in each line a statement or an expression, and text behind it."""
        block = []
        for line in [*header.read_text(encoding="utf-8").split("\n"), ""]:
            indented = re.match(r" *///     (.*)$", line)
            if indented:
                block.append(re.split("  +", indented[1])[0].replace(" ...", ";"))
                continue
            if block and all(re.search(r"^\w.*(;$|\w\(.*\))", code) for code in block):
                yield [code.rstrip(";") + ";" for code in block]
            block = []

    def test_code_in_comments_compiles(self):
        if not COMPILER:
            self.skipTest("no compiler given")
        source, found = self.GIVEN, 0
        for header in HEADERS:
            for number, code in enumerate(self.blocks(header)):
                found += 1
                source += f'#line 1 "{header.name}, block {number + 1}"\nauto example{found} = [] {{\n' + "\n".join(code) + "\n};\n"
        self.assertGreater(found, 10)
        includes = [f"-I{ROOT / folder}" for folder in FOLDERS]
        run = subprocess.run([*COMPILER, "-std=c++20", "-fsigned-char", "-w", "-fsyntax-only", *includes, "-x", "c++", "-"],
                             input=source, capture_output=True, encoding="utf-8")
        self.assertEqual(run.returncode, 0, run.stderr)


def main():
    COMPILER.extend(sys.argv[1:])
    if shutil.which("doxygen") is None:
        print("==== SKIPPED: the reference manual is not tested, for Doxygen is missing ====")
        return 77
    if " " in str(ROOT):
        print(f"==== SKIPPED: the reference manual is not tested, for Doxygen follows no links where the path has a blank: {ROOT} ====")
        return 77
    unittest.main(argv=sys.argv[:1])


if __name__ == "__main__":
    sys.exit(main())
