#!/usr/bin/env python3
"""zip_test.py CMAKE SOURCES BUILD EMULATOR: the zip for Windows that CPack makes of the build is whole, its workbench runs, and the
examples build against it and run."""
import pathlib
import sys
import unittest
import zipfile

from consumers import TemporaryFolder, build_and_run_examples, example_tests, files, run, version_of

CMAKE, SOURCES, BUILD, EMULATOR = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3]), sys.argv[4]
VERSION = version_of(SOURCES)
NAME = f"vqtm-{VERSION}-win32"
LIBRARIES = ("vq95FBSB", "vq95FINB", "vq95FtmB")

NEEDED = {
    "bin/vqtype.exe",
    "lib/pkgconfig/vqtm.pc",
    "lib/cmake/vqtm/vqtmConfig.cmake",
    "include/vqtm/vqtm.h",
    "share/doc/vqtm/LICENSE",
    "share/doc/vqtm/README.md",
    "share/vqtm/vqtm.natvis",
    "share/vqtm/examples/territories.csv",
    "share/vqtm/examples/CMakeLists.txt",
    *(f"bin/{name}.dll" for name in LIBRARIES),
    *(f"lib/lib{name}.{suffix}" for name in LIBRARIES for suffix in ("dll.a", "a")),
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
        contents = files(self.prefix)
        self.assertFalse(NEEDED - contents)
        programs = {name for name in contents if name.startswith("bin/")}
        self.assertEqual(programs, {name for name in NEEDED if name.startswith("bin/")})

    def test_the_workbench_runs(self):
        self.assertIn("Indonesia", run(EMULATOR, self.prefix / "bin/vqtype.exe", "demo"))

    def test_examples(self):
        ran = build_and_run_examples(CMAKE, self.prefix / "share/vqtm/examples", self.folder / "examples",
                                     f"-Dvqtm_DIR={self.prefix / 'lib/cmake/vqtm'}",
                                     f"-DCMAKE_TOOLCHAIN_FILE={SOURCES / 'cmake/win32.cmake'}")
        self.assertEqual(ran, example_tests(SOURCES / "examples"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
