"""Makes the manual and checks it: each command and option has a line of help and is in the documentation, which names no
option that there is not, man(1) shows the pages without a warning, and the example of each command runs.

    manual_test.py PATH-OF-TWK
"""

import glob
import json
import os
import re
import subprocess
import sys
import tempfile

TWK = sys.argv[1]
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..")


def faults_of_documentation(rows, text):
    known = {"--help", "--version"}
    for row in rows:
        name = row.get("option", row["command"])
        if not row["help"]:
            yield f"twk {row['command']} {name}: no line of help"
        if name.startswith("--"):
            known.add(name)
        if name and not name.startswith("--") and "option" in row:
            continue  # an argument is in the line of its command
        if not re.search(re.escape(name) + r"(?![\w-])", text) and f"`{name.split()[-1]}`" not in text:
            yield f"docs/command-line.md does not name {name} (twk {row['command']})"
    for name in sorted(set(re.findall(r"(?<![\w-])--[a-z][a-z0-9-]*", text)) - known):
        yield f"docs/command-line.md names {name}, which no command has"


def faults_of_pages(folder):
    subprocess.run([sys.executable, f"{ROOT}/packaging/manual.py", TWK, f"{ROOT}/docs", folder], check=True)
    for page in glob.glob(f"{folder}/man?/*"):
        with open(page, encoding="utf-8") as text:
            if text.read().startswith(".so "):
                continue
        for tool in (["groff", "-k", "-man", "-t", "-ww", "-Tutf8", "-z", page],
                     ["mandoc", "-Tlint", "-W", "warning", page]):
            told = subprocess.run(tool, capture_output=True, text=True, check=False)
            for line in (told.stdout + told.stderr).splitlines():
                yield f"{os.path.basename(page)}: {line}"


def faults_of_examples(rows, folder):
    """Each command has an example, and all of them run, one after the other, in a sample lab."""
    examples = {row["words"]: row["example"] for row in rows if "words" in row}
    for row in rows:
        if row.get("commands") == "" and row["command"] not in examples:
            yield f"twk {row['command']}: no example"
    lab = f"{folder}/lab"
    environment = {"PATH": os.path.dirname(os.path.abspath(TWK)) + ":/usr/bin:/bin", "HOME": folder, "TWK_LAB": lab, "LANG": "C.UTF-8"}
    subprocess.run([TWK, "lab", "init", lab, "--sample"], check=True, stdout=subprocess.DEVNULL)
    for words, lines in examples.items():
        done = subprocess.run(["bash", "-eo", "pipefail", "-c", lines], cwd=folder, env=environment, capture_output=True, text=True,
                              stdin=subprocess.DEVNULL, check=False)
        if done.returncode != 0:
            yield f"{lines}\nends with {done.returncode}: {done.stdout[-500:]}{done.stderr[-500:]}"
        helped = subprocess.run([TWK, *words.split(), "--help"], capture_output=True, text=True, check=True).stdout
        if lines.splitlines()[-1] not in helped or "Exit code: 0 GREEN" not in helped:
            yield f"twk {words} --help lacks its example or the exit codes"


def main():
    listed = subprocess.run([TWK, "__manual"], capture_output=True, text=True, check=True).stdout
    listed = list(map(json.loads, listed.splitlines()))
    rows = [row for row in listed if "command" in row]
    with open(f"{ROOT}/docs/command-line.md", encoding="utf-8") as file:
        text = file.read()
    faults = list(faults_of_documentation(rows, text))
    options = set(re.findall(r"--[a-z0-9-]+", text))
    for page in glob.glob(f"{ROOT}/docs/guide/*.md") + [f"{ROOT}/README.md"]:
        with open(page, encoding="utf-8") as file:
            for name in set(re.findall(r"twk [^\n`]*?(--[a-z][a-z0-9-]*)", file.read())) - options:
                faults.append(f"{os.path.basename(page)} names {name}, which is not documented")
    with tempfile.TemporaryDirectory() as folder:
        faults += faults_of_pages(folder)
        faults += faults_of_examples(listed, folder)
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


main()
