"""Keeps what scripts and older files rely on: the keys of --json and the exit codes of compatibility/keys.txt, and that a lab
with its database, as each release wrote it (compatibility/RELEASE/), opens and shows what it showed then.

    compatibility_test.py PATH-OF-TWK

A command may get more keys; one that loses a key, or ends with another exit code, breaks scripts: that takes a new major version.
"""

import json
import os
import re
import shlex
import shutil
import sys
import tempfile

from lab_tools import make_lab, twk

HERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../compatibility")


def faults_of_keys(folder):
    lab = f"{folder}/lab"
    make_lab(lab)
    with open(f"{folder}/two.csv", "w", encoding="utf-8") as lines:
        lines.write("Ann,,Lee\nBo,,Day\n")
    with open(f"{HERE}/keys.txt", encoding="utf-8") as table:
        rows = [[part.strip() for part in row.split("|")] for row in table if row.strip() and not row.startswith("#")]
    for command, code, keys in rows:
        ran = twk(lab, "--json", *shlex.split(command.replace("two.csv", f"{folder}/two.csv")), codes=())
        if ran.returncode != int(code):
            yield f"{command}: exit code {ran.returncode}, not {code}\n{ran.stderr[-500:]}"
        found = {key for line in ran.stdout.splitlines() for key in json.loads(line)}
        if missing := set(keys.split()) - found:
            yield f"{command}: no {' '.join(sorted(missing))} in {ran.stdout[:500]}"


def faults_of_release(folder, release):
    lab = f"{folder}/{release}"
    shutil.copytree(f"{HERE}/{release}/lab", lab)
    with open(f"{HERE}/{release}/folders.txt", encoding="utf-8") as folders:  # those without a file, which git does not keep
        for line in folders:
            os.makedirs(f"{lab}/{line.rstrip()}", exist_ok=True)
    with open(f"{HERE}/{release}/shown.txt", encoding="utf-8") as file:
        for part in re.split(r"^\$ ", file.read(), flags=re.MULTILINE)[1:]:
            command, _, wanted = part.partition("\n")
            shown = twk(lab, *shlex.split(command)).stdout.replace(lab, "LAB")
            if shown != wanted:
                yield f"{release}: {command} shows\n{shown}and not\n{wanted}"


def main():
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        faults += faults_of_keys(folder)
        for release in sorted(os.listdir(HERE)):
            if os.path.isdir(f"{HERE}/{release}"):
                faults += faults_of_release(folder, release)
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


main()
