"""What the tests of the program from outside have in common. The first argument is the program."""

import base64
import subprocess
import sys

TWK = sys.argv[1]
OU = "OU=New Starters,DC=twk,DC=test"
# Where a new user of the sample lab goes.
CREATE = ("--template", "Staff", "--site", "Head Office", "--ou", OU)


def twk(lab, *arguments, text=None, codes=(0,), **options):
    """Runs a command on a lab; input and output are text, or bytes where the input is."""
    done = subprocess.run([TWK, "--lab", lab, "--yes", *arguments], input=text, capture_output=True,
                          text=not isinstance(text, bytes), check=False, **options)
    if codes and done.returncode not in codes:
        sys.exit(f"{arguments[:6]} ended with {done.returncode}\n{done.stdout[-2000:]}\n{done.stderr[-2000:]}")
    return done


def make_lab(lab, *options):
    twk(lab, "lab", "init", lab, "--sample", *options)


def entries(ldif):
    """Distinguished name -> attribute -> its values in bytes."""
    found = {}
    for block in ldif.replace("\r\n", "\n").replace("\n ", "").split("\n\n"):
        entry = {}
        for line in block.splitlines():
            name, separator, value = line.partition(":")
            if separator and not name.startswith("#"):
                raw = base64.b64decode(value[1:]) if value.startswith(":") else value[1:].encode()
                entry.setdefault(name, []).append(raw)
        if "dn" in entry:
            found[entry["dn"][0].decode()] = entry
    return found


def exported(lab):
    return entries(twk(lab, "lab", "export").stdout)


def check(what, got, wanted):
    if got != wanted:
        sys.exit(f"{what}: {got!r}\nis not {wanted!r}")
