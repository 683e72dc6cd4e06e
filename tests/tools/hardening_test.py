#!/usr/bin/python3
"""Reads from a binary how it was built: what makes a fault hard to use has to be in it.

    hardening_test.py PATH-OF-TWK
"""

import re
import subprocess
import sys


def read(*options):
    return subprocess.run(["readelf", "--wide", *options, sys.argv[1]], check=True, capture_output=True, text=True).stdout


header, segments, dynamic, symbols = (read(option) for option in ("--file-header", "--segments", "--dynamic", "--dyn-syms"))
WANTED = {
    "position-independent": re.search(r"Type:\s+DYN", header) and "INTERP" in segments,
    "relocations read-only, all bound at the start": "GNU_RELRO" in segments and re.search(r"BIND_NOW|Flags:.* NOW", dynamic),
    "no executable stack": re.search(r"GNU_STACK.* RW ", segments),
    "stack protector": "__stack_chk_fail" in symbols,
    "checked calls of the C library": re.search(r"__(mem|str|snprintf|vsnprintf|read|fread|printf|fprintf)\w*_chk", symbols),
    "checked containers": "__glibcxx_assert_fail" in symbols,
    "no run path": not re.search(r"RPATH|RUNPATH", dynamic),
}
missing = [what for what, there in WANTED.items() if not there]
if missing:
    sys.exit("The binary lacks: " + "; ".join(missing))
