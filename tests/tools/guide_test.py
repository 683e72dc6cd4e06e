#!/usr/bin/python3
"""Runs the commands of the guide as they stand, each page in a folder of its own, and compares what they print.

    guide_test.py PATH-OF-TWK
    tests/live/with-domain ad -- guide_test.py PATH-OF-TWK

In a domain that with-domain started it runs the boxes for a real domain, whose names are replaced by those of that domain.
"""

import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile

TWK = os.path.abspath(sys.argv[1])
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..")
END = "---- end of a command ----"


REAL = "TWK_LIVE_DOMAIN" in os.environ
NAMES = {"corp.test": "twk.test", "DC=corp": "DC=twk", "FS1": "dc1"} if REAL else {}


def commands_of(page):
    """Pairs of a command and the lines that it shall print."""
    with open(page, encoding="utf-8") as file:
        text = file.read()
        for name, real in NAMES.items():
            text = text.replace(name, real)
        for box in re.findall(rf"```console{' real' if REAL else ''}\n(.*?)```", text, re.DOTALL):
            for part in re.split(r"^\$ ", box, flags=re.MULTILINE)[1:]:
                command, _, printed = part.partition("\n")
                yield command, printed


def pattern_of(printed):
    """A line with nothing but an ellipsis stands for any lines, one within a line for any text."""
    lines = []
    for line in printed.splitlines():
        lines.append(r"(?:.*\n)*?" if line == "…" else ".*".join(map(re.escape, line.split("…"))) + r" *\n")
    return re.compile("".join(lines) + r"\Z")


def faults_of(page):
    pairs = list(commands_of(page))
    with tempfile.TemporaryDirectory() as folder:
        for sample in glob.glob(f"{ROOT}/samples/*"):
            shutil.copy(sample, folder)
        script = "".join(f"{command}\necho '{END}'\n" for command, _ in pairs)
        environment = {"PATH": os.path.dirname(TWK) + ":/usr/bin:/bin", "HOME": folder, "LANG": "C.UTF-8"}
        if REAL:
            environment |= {name: os.environ.get(name, "") for name in ("KRB5_CONFIG", "KRB5CCNAME", "ASAN_OPTIONS", "LSAN_OPTIONS")}
            settings = ["twk", "settings", "set", "Live", "Server", os.environ["TWK_LIVE_SERVER"]]
            subprocess.run(settings, env=environment, check=True)
        ran = subprocess.run(["bash", "-c", script], cwd=folder, env=environment, capture_output=True, text=True,
                             stdin=subprocess.DEVNULL, check=False)
    outputs = ran.stdout.split(END + "\n")
    for (command, printed), output in zip(pairs, outputs):
        if not pattern_of(printed).match(output):
            yield f"{os.path.basename(page)}: {command}\nshould print\n{printed}but prints\n{output}{ran.stderr[-2000:]}"


def main():
    if REAL:
        subprocess.run(["samba-tool", "ou", "create", "OU=Staff", "-s", os.environ["TWK_LIVE_STATE"] + "/domain/etc/smb.conf"],
                       stdout=subprocess.DEVNULL, check=True)
    pages = sorted(glob.glob(f"{ROOT}/docs/guide/*.md"))
    faults = [fault for page in pages for fault in faults_of(page)]
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


main()
