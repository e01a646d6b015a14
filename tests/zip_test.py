#!/usr/bin/env python3
"""zip_test.py CMAKE SOURCES BUILD EMULATOR: the zip for Windows that CPack makes of the build is whole, its workbench runs, and the
examples build against it and run."""
import pathlib
import sys
import unittest
import zipfile

from consumers import LIBRARIES, TemporaryFolder, build_and_run_examples, build_and_run_programs, example_tests, files, headers_of, run, version_of

CMAKE, SOURCES, BUILD, EMULATOR = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3]), sys.argv[4]
VERSION = version_of(SOURCES)
NAME = f"vqtm-{VERSION}-win32"

EXAMPLES = {path.name for path in (SOURCES / "examples").iterdir() if path.suffix in (".c", ".cpp", ".csv", ".txt")}
PAGES = {"LICENSE", *(path.relative_to(SOURCES).as_posix() for path in (*SOURCES.glob("*.md"), *(SOURCES / "docs").rglob("*.md")))}

CONTENTS = {
    "bin/vqtype.exe",
    "lib/pkgconfig/vqtm.pc",
    "share/vqtm/vqtm.natvis",
    *(f"bin/{name}.dll" for name in LIBRARIES),
    *(f"lib/lib{name}.{suffix}" for name in LIBRARIES for suffix in ("dll.a", "a")),
    *(f"lib/cmake/vqtm/vqtm{name}.cmake" for name in ("Config", "ConfigVersion", "Targets", "Targets-release")),
    *(f"include/vqtm/{name}" for name in headers_of(SOURCES)),
    *(f"share/vqtm/examples/{name}" for name in EXAMPLES),
    *(f"share/doc/vqtm/{name}" for name in PAGES),
}


class Zip(TemporaryFolder):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder / "stage", "-D", f"CPACK_OUTPUT_FILE_PREFIX={cls.folder}")
        with zipfile.ZipFile(cls.folder / f"{NAME}.zip") as archive:
            archive.extractall(cls.folder / "unpacked")
        cls.prefix = cls.folder / "unpacked" / NAME

    def test_contents(self):
        self.assertEqual([path.name for path in self.prefix.parent.iterdir()], [NAME])
        self.assertEqual(files(self.prefix), CONTENTS)

    def test_the_workbench_runs(self):
        self.assertIn("Indonesia", run(EMULATOR, self.prefix / "bin/vqtype.exe", "demo"))

    def test_examples_and_a_static_program(self):
        found = f"-Dvqtm_DIR={self.prefix / 'lib/cmake/vqtm'}", f"-DCMAKE_TOOLCHAIN_FILE={SOURCES / 'cmake/win32.cmake'}"
        ran = build_and_run_examples(CMAKE, self.prefix / "share/vqtm/examples", self.folder / "examples", *found)
        self.assertEqual(ran, example_tests(SOURCES / "examples"))
        build_and_run_programs(CMAKE, self.folder / "static", "find_package(vqtm REQUIRED)\nadd_link_options(-static)", "typelib_static", *found,
                               emulator=[EMULATOR], suffix=".exe")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
