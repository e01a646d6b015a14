"""What a shared library says of itself, ELF or DLL, read with the objdump of its target."""
import pathlib
import re
import subprocess


class SharedLibrary:
    def __init__(self, objdump, path):
        self.objdump, self.path = objdump, pathlib.Path(path)
        self.is_dll = self.path.suffix == ".dll"
        self.name = self.path.name.removeprefix("lib").partition(".")[0]

    def needed(self):
        """The file names of the libraries that it needs."""
        return re.findall(r"^\s*(?:DLL Name: |NEEDED\s+)(\S+)", self._dump("-p"), re.MULTILINE)

    def own_name(self):
        """The name under which others need it: the SONAME, or the name in a DLL's export table."""
        pattern = r"^Name\s+[0-9a-f]+ (\S+)$" if self.is_dll else r"^\s*SONAME\s+(\S+)$"
        return re.search(pattern, self._dump("-p"), re.MULTILINE)[1]

    def exported(self):
        """The names that it offers to others, as the linker sees them."""
        if self.is_dll:
            table = self._dump("-p").partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
            return re.findall(r"^\s*\[\s*\d+\].*?(\S+)$", table, re.MULTILINE)
        defined = (line for line in self._dump("-T").splitlines() if "*UND*" not in line and re.match(r"[0-9a-f]{8}", line))
        return [line.split()[-1] for line in defined]

    def _dump(self, *options):
        return subprocess.run([self.objdump, *options, self.path], check=True, capture_output=True, text=True).stdout
