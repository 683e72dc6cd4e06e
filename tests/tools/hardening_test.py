#!/usr/bin/python3
"""Reads from both programs and their module how they were built: what makes a fault hard to use has to be in them, and no
copy of a variable of Qt, which Qt itself does not look at.

    hardening_test.py PATH-OF-TWK
"""

import re
import subprocess
import sys


def missing_in(program):
    def read(*options):
        return subprocess.run(["readelf", "--wide", *options, program], check=True, capture_output=True, text=True).stdout

    header, segments, dynamic, symbols, relocations = (
        read(option) for option in ("--file-header", "--segments", "--dynamic", "--dyn-syms", "--relocs"))
    wanted = {
        "position-independent": re.search(r"Type:\s+DYN", header) and ("INTERP" in segments or program.endswith(".so")),
        "relocations read-only, all bound at the start": "GNU_RELRO" in segments and re.search(r"BIND_NOW|Flags:.* NOW", dynamic),
        "no executable stack": re.search(r"GNU_STACK.* RW ", segments),
        "stack protector": "__stack_chk_fail" in symbols,
        # The module, compiled alike, makes no call that could be checked.
        "checked calls of the C library": program.endswith(".so") or re.search(r"__(mem|str|snprintf|vsnprintf|read|fread|printf|fprintf)\w*_chk", symbols),
        "checked containers": "__glibcxx_assert_fail" in symbols,
        "no run path": not re.search(r"RPATH|RUNPATH", dynamic),
        "no copy of Qt's variables": not re.search(r"R_\w+_COPY\b.*@Qt_", relocations),
    }
    return [what for what, there in wanted.items() if not there]


twk = sys.argv[1]
tarnwick = re.sub("twk$", "tarnwick", twk)
module = re.sub("bin/twk$", "lib/tarnwick/real_domains.so", twk)
faults = [f"{program} lacks: {'; '.join(missing)}" for program in (twk, tarnwick, module) if (missing := missing_in(program))]
if faults:
    sys.exit("\n".join(faults))
