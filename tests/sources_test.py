#!/usr/bin/env python3
"""sources_test.py CMAKE SOURCES BUILD: the archive of the sources that CPack makes has what is under version control, and builds."""
import pathlib
import sys
import tarfile
import unittest

from consumers import TemporaryFolder, files, run, version_of

CMAKE, SOURCES, BUILD = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
VERSION = version_of(SOURCES)
NAME = f"vqtm-{VERSION}-source"


def tracked():
    """The files under version control that are there, or None outside of it."""
    if not (SOURCES / ".git").exists():
        return None
    names = run("git", "-c", "safe.directory=*", "-C", SOURCES, "ls-files", "-z").split("\0")
    return {name for name in names if name and (SOURCES / name).exists()}


class SourceArchive(TemporaryFolder):
    def pack(self, configuration, name):
        """Unpacks the archive of the sources, and returns the one folder in it."""
        folder = self.folder / name
        run("cpack", "--config", configuration, "-B", folder / "stage", "-D", f"CPACK_OUTPUT_FILE_PREFIX={folder}")
        with tarfile.open(folder / f"{NAME}.tar.gz") as archive:
            archive.extractall(folder / "unpacked")
        self.assertEqual([path.name for path in (folder / "unpacked").iterdir()], [NAME])
        return folder / "unpacked" / NAME

    @unittest.skipUnless(tracked(), "this is no tree under version control")
    def test_archive_is_what_is_tracked_and_makes_itself_again(self):
        sources = self.pack(BUILD / "CPackSourceConfig.cmake", "first")
        self.assertEqual(files(sources), tracked())
        self.assertEqual((sources / "dev").stat().st_mode & 0o111, 0o111)
        run(CMAKE, "--preset", "native", cwd=sources)
        (sources / "dist").mkdir()
        (sources / "dist/old.tar.gz").write_text("old")
        again = self.pack(sources / "build/native/CPackSourceConfig.cmake", "again")
        self.assertEqual(files(again), tracked())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
