#!/usr/bin/env python3
"""The binary interface as it is and as docs/abi has it, one part of it for one TARGET (native, linux32, win32).

    abi.py compare|update exports TARGET OBJDUMP LIBRARY...
    abi.py compare|update layouts TARGET OBJDUMP GNU|Clang COMPILER FLAG...
    abi.py compare|update descriptions TARGET CMAKE FOLDER [-DNAME=VALUE...]

`compare` prints what differs and fails then, `update` writes docs/abi anew. `./dev abi` runs them for all targets.
"""
import sys

sys.dont_write_bytecode = True  # the modules are beside this file, among the sources

import descriptions
import exports
import layouts

PARTS = {"exports": exports, "layouts": layouts, "descriptions": descriptions}


def main(action, part, target, *arguments):
    if action == "update":
        return PARTS[part].update(target, *arguments)
    faults = [*PARTS[part].faults(target, *arguments)]
    print(*faults, f"{part} on {target}: {len(faults)} differences from docs/abi", sep="\n")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) < 5 or sys.argv[1] not in ("compare", "update") or sys.argv[2] not in PARTS:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
