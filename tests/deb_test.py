#!/usr/bin/env python3
"""deb_test.py CMAKE SOURCES BUILD: the Debian packages that CPack makes of the build are whole, and work where they are unpacked."""
import pathlib
import re
import shutil
import sys
import unittest

from consumers import LIBRARIES, TemporaryFolder, build_and_run_examples, example_tests, files, headers_of, run, version_of, with_libraries

CMAKE, SOURCES, BUILD = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
VERSION = version_of(SOURCES)
MULTIARCH = "x86_64-linux-gnu"
DOCUMENTS = ("copyright", "changelog.gz", "changelog.Debian.gz")

RUNTIME = {
    "usr/bin/vqtype",
    "usr/share/bash-completion/completions/vqtype",
    "usr/share/lintian/overrides/vqtm",
    "usr/share/man/man1/vqtype.1.gz",
    "usr/share/vqtm/examples/territories.csv",
    *(f"usr/share/doc/vqtm/{name}" for name in DOCUMENTS),
    *(f"usr/lib/{MULTIARCH}/lib{name}.so.{version}" for name in LIBRARIES for version in (VERSION, VERSION.split(".")[0])),
}
# Beside the headers, the examples and the documents.
DEVELOPMENT = {
    f"usr/share/gdb/auto-load/usr/lib/{MULTIARCH}/libvq95FtmB.so.{VERSION}-gdb.py",
    "usr/share/lintian/overrides/libvqtm-dev",
    "usr/share/vqtm/gdb/vqtm_printers.py",
    "usr/share/vqtm/vqtm.natvis",
    f"usr/lib/{MULTIARCH}/pkgconfig/vqtm.pc",
    *(f"usr/lib/{MULTIARCH}/cmake/vqtm/vqtm{name}.cmake" for name in ("Config", "ConfigVersion", "Targets", "Targets-release")),
    *(f"usr/share/doc/libvqtm-dev/{name}" for name in DOCUMENTS),
    *(f"usr/lib/{MULTIARCH}/lib{name}.{suffix}" for name in LIBRARIES for suffix in ("a", "so")),
}
MANY = re.compile(r"usr/include/vqtm/\w+\.h|usr/share/vqtm/examples/[\w.]+|usr/share/doc/libvqtm-dev/([A-Z]+|docs/[\w/]+)\.md")


def control(package):
    return dict(line.split(": ", 1) for line in run("dpkg-deb", "-f", package).splitlines() if re.match(r"\S+: ", line))


@unittest.skipUnless(shutil.which("dpkg-shlibdeps") and shutil.which("dpkg-deb"), "dpkg-dev is missing")
class DebianPackages(TemporaryFolder):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        made = cls.folder / "made"
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder / "stage", "-D", f"CPACK_OUTPUT_FILE_PREFIX={made}")
        cls.packages = {path.name.split("_")[0]: path for path in made.iterdir()}
        cls.contents = {}
        for name, package in cls.packages.items():
            run("dpkg-deb", "-x", package, cls.folder / name)
            run("dpkg-deb", "-x", package, cls.folder / "system")
            cls.contents[name] = files(cls.folder / name)
        cls.system = cls.folder / "system"
        cls.libraries = cls.system / "usr/lib" / MULTIARCH

    def test_names_and_dependences(self):
        names = {f"{name}_{VERSION}-1_amd64.deb" for name in ("vqtm", "libvqtm-dev")}
        self.assertEqual({path.name for path in self.packages.values()}, names)
        runtime, development = control(self.packages["vqtm"]), control(self.packages["libvqtm-dev"])
        self.assertEqual(set(re.findall(r"([^\s,]+) \(>=", runtime["Depends"])),
                         {"libc6", "libcsv3", "libdeflate0", "libgcc-s1", "liblmdb0", "libstdc++6"})
        self.assertEqual(development["Depends"], f"vqtm (= {VERSION}-1)")
        for fields in runtime, development:
            self.assertEqual((fields["Version"], fields["Architecture"]), (f"{VERSION}-1", "amd64"))
            self.assertRegex(fields["Maintainer"], r".+ <\S+@\S+>")
            self.assertLess(len(fields["Description"]), 80)
        run("dpkg-deb", "-e", self.packages["vqtm"], self.folder / "control")
        major = VERSION.split(".")[0]
        self.assertEqual(set((self.folder / "control/shlibs").read_text().splitlines()),
                         {f"lib{name} {major} vqtm (>= {VERSION}-1)" for name in LIBRARIES})
        self.assertEqual((self.folder / "control/triggers").read_text(), "activate-noawait ldconfig\n")

    def test_the_changelog_is_of_this_version(self):
        first = (SOURCES / "packaging/debian/changelog").read_text().splitlines()[0]
        self.assertEqual(first.split(";")[0], f"vqtm ({VERSION}-1) unstable")

    def test_contents(self):
        self.assertEqual(self.contents["vqtm"], RUNTIME)
        rest = self.contents["libvqtm-dev"] - DEVELOPMENT
        self.assertFalse(DEVELOPMENT - self.contents["libvqtm-dev"])
        self.assertFalse({name for name in rest if not MANY.fullmatch(name)})
        self.assertEqual({name.rpartition("/")[2] for name in rest if name.startswith("usr/include/")}, headers_of(SOURCES))

    def test_binaries_know_nothing_of_their_builder(self):
        for path in (self.system / "usr/bin/vqtype", *(self.libraries / f"lib{name}.so.{VERSION}" for name in LIBRARIES)):
            self.assertNotRegex(run("readelf", "-d", path), "RUNPATH|RPATH", path.name)
            self.assertNotIn(".symtab", run("readelf", "-SW", path), path.name)
            for folder in SOURCES, BUILD:
                self.assertNotIn(bytes(folder), path.read_bytes(), path.name)

    def test_the_workbench_runs(self):
        program = self.system / "usr/bin/vqtype"
        self.assertIn(VERSION, run(program, "--version", env=with_libraries(self.libraries)))
        self.assertIn("Indonesia", run(program, "demo", env=with_libraries(self.libraries)))

    def test_examples_where_lib_is_a_link_to_usr_lib(self):
        (self.system / "lib").symlink_to("usr/lib")
        package = self.system / "lib" / MULTIARCH / "cmake/vqtm"
        ran = build_and_run_examples(CMAKE, self.system / "usr/share/vqtm/examples", self.folder / "examples", f"-Dvqtm_DIR={package}",
                                     env=with_libraries(self.libraries))
        self.assertEqual(ran, example_tests(SOURCES / "examples"))

    @unittest.skipUnless(shutil.which("lintian"), "lintian is missing")
    def test_lintian_finds_no_fault(self):
        self.assertEqual(run("lintian", "--allow-root", "--fail-on", "none", *self.packages.values()), "")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
