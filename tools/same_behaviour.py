#!/usr/bin/env python3
"""Says whether two builds of `twk` behave alike: runs the commands of same_behaviour.txt over a lab of each kind with
both, and compares everything that can be seen: output, exit code, log and import summary of each command, then directory,
access lists and every file that is left.

    same_behaviour.py BEFORE AFTER [--keep FOLDER]

BEFORE and AFTER are programs, or folders of an earlier --keep (its "before" or "after"). Exit code 0 when they are the same.
The native lab is gone through once more with --json.
"""

import argparse
import collections
import concurrent.futures
import difflib
import hashlib
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile

# What differs from run to run of one and the same program, and what stands for it. LDIF is unfolded first.
RULES = [(re.compile(pattern, re.MULTILINE), replacement) for pattern, replacement in (
    (r"\d\d/\d\d/\d{4} \d\d:\d\d:\d\d", "<time>"),                    # blocks of Log.txt and Import.err
    (r"Import Summary - \d{12}", "Import Summary - <time>"),
    (r"^(when(?:Created|Changed)): \d{14}\.0Z$", r"\1: <time>"),
    (r"^pwdLastSet: 13[4-9]\d{15}$", "pwdLastSet: <time>"),
    (r"^(objectGUID|supplementalCredentials|msExchMailboxGuid):: \S+$", r"\1:: <random>"),
    (r"^# end [0-9A-F]{8}$", "# end <checksum>"),                     # covers the lines above
)]
COMMANDS = pathlib.Path(__file__).with_suffix(".txt")
MOST_LINES = 40  # of the difference of one file
LIMIT = 120      # seconds of a command

KINDS = {"native": {"kind": "native", "domain": "twk.test", "dc": "DC=twk,DC=test",
                    "ou": "OU=New Starters,DC=twk,DC=test", "at": '--ou "OU=New Starters,DC=twk,DC=test"', "nb": "TWK"},
         "nt": {"kind": "nt", "domain": "OLDNT", "dc": "DC=OLDNT", "ou": "CN=Users,DC=OLDNT", "at": "", "nb": "OLDNT"}}
KINDS["mixed"] = dict(KINDS["native"], kind="mixed")


def normal(text, work):
    text = text.replace(work, "<work>")
    for pattern, replacement in RULES:
        text = pattern.sub(replacement, text)
    return text


def content(data, work):
    """A file's text, made independent of the run; of other files the hash."""
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        text = data.decode("cp1252", "replace")
    if any(character < " " and character not in "\t\r\n" for character in text):
        return f"{len(data)} bytes, SHA-256 {hashlib.sha256(data).hexdigest()}\n"
    if re.search(r"^(dn|changetype): ", text, re.MULTILINE):
        text = text.replace("\n ", "")
    return normal(text, work)


def script(kind):
    """The commands of a kind, each as its text and its standard input."""
    words = dict(KINDS[kind])
    words["staff"] = f'--template Staff --site "Head Office" {words["at"]}'
    meant = {"all", "nt"} if kind == "nt" else {"all", "ad", kind}
    section = "all"
    for line in COMMANDS.read_text(encoding="utf-8").splitlines():
        if line.startswith("["):
            section = line.strip("[]")
        elif section in meant and line and not line.startswith("#"):
            line = re.sub(r"\{(\w+)\}", lambda found: words[found[1]], line)
            command, given, lines = re.match(r"(.*?)(?: <<(<|1252)(.*))?$", line).groups()
            text = "\n".join(lines.strip().split("|")) + "\n" if lines and lines.strip() else ""
            yield command, text.encode("cp1252" if given == "1252" else "utf-8", "replace")


class Lab:
    """A folder in which the commands of one lab run, and the folder of their record."""

    def __init__(self, program, work, record, json):
        self.program, self.work, self.record, self.json = program, work, record, json
        self.codes, self.logged = [], 0
        self.environment = {"PATH": "/usr/bin:/bin", "HOME": f"{work}/home", "LC_ALL": "C.UTF-8", "NO_COLOR": "1",
                            "TZ": "CET-1CEST,M3.5.0,M10.5.0/3", "TWK_LAB": f"{work}/lab", "KRB5_CONFIG": "/dev/null",
                            "KRB5CCNAME": "FILE:/nonexistent/ticket"}
        record.mkdir(parents=True)

    def run(self, arguments, given=b""):
        """Exit code, standard output and standard error."""
        try:
            done = subprocess.run(["twk", *self.json, *arguments], executable=self.program, cwd=self.work,
                                  env=self.environment, input=given, capture_output=True, timeout=LIMIT, check=False)
        except subprocess.TimeoutExpired:
            sys.exit(f"{self.program} {shlex.join(arguments)}: no end after {LIMIT} seconds")
        return done.returncode, done.stdout, done.stderr

    def new_log(self):
        """What a command added to the log."""
        path = self.work / "lab/db/Log.txt"
        data = path.read_bytes() if path.exists() else b""
        start = self.logged if len(data) >= self.logged else 0
        self.logged = len(data)
        return data[start:]

    def summaries(self):
        """Those of an import. They leave the folder, as the name of the next depends on the second in which it begins."""
        for path in sorted(self.work.glob("lab/db/Import Summary*")):
            yield path.name, path.read_bytes()
            path.unlink()

    def do(self, command, given):
        arguments = shlex.split(command)
        code, out, err = self.run(arguments, given)
        self.codes.append(code)
        parts = [("standard input", given), ("standard output", out), ("standard error", err),
                 ("log", self.new_log()), *self.summaries()]
        text = f"twk {command}\nexit code {code}\n"
        text += "".join(f"--- {name}\n{content(data, str(self.work))}\n" for name, data in parts if data)
        words = [word for word in arguments if re.fullmatch(r"[a-z][a-z-]*", word)][:2]
        path = self.record / f"{len(self.codes):03} {' '.join(words)}.txt"
        path.write_text(normal(text, str(self.work)), encoding="utf-8")

    def put(self, name, data):
        """A file whose time is the same in each run."""
        path = self.work / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
        os.utime(path, (1_600_000_000, 1_600_000_000))

    def step(self, command, given):
        word, _, rest = command.partition(" ")
        if word == "put":
            self.put(rest, given)
        elif word == "mkdir":
            (self.work / rest).mkdir(parents=True)
        elif word == "old":
            self.put(rest, struct.pack("<h50s12s", -1, b"Everyone".ljust(50), b"Full Control"))
        else:
            self.do(command, given)

    def access_lists(self):
        for path in sorted(self.work.glob("lab/servers/*/[A-Z]/**/*")):
            server, drive, *names = path.relative_to(self.work / "lab/servers").parts
            place = "\\".join(["", "", server, f"{drive}$", *names])
            code, out, err = self.run(["acl", "show", place])
            yield f"{place}: {code}\n{(out + err).decode(errors='replace')}\n"

    def close(self):
        """Records what is left."""
        end, work = self.record / "end", str(self.work)
        for path in files_of(self.work).values():
            copy = end / normal(str(path.relative_to(self.work)), work)
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.with_name(copy.name + ".txt").write_text(content(path.read_bytes(), work), encoding="utf-8")
        tree = (f"{path.stat().st_mode:o} {path.relative_to(self.work)}\n" for path in sorted(self.work.rglob("*")))
        (end / "tree.txt").write_text("".join(tree), encoding="utf-8")
        (end / "directory.ldif").write_text(content(self.run(["lab", "export"])[1], work), encoding="utf-8")
        if not self.json:
            (end / "access lists.txt").write_text(normal("".join(self.access_lists()), work), encoding="utf-8")


def record_lab(program, work, folder, kind, json):
    work.mkdir(parents=True)
    lab = Lab(program, work, folder, json)
    for command, given in script(kind):
        lab.step(command, given)
    lab.close()
    return lab.codes


def record(program, work, folder):
    """All labs with one program, two at a time."""
    shutil.rmtree(work, ignore_errors=True)
    runs = [(kind, kind, []) for kind in KINDS] + [("native, JSON", "native", ["--json"])]
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        started = [pool.submit(record_lab, program, work / name, folder / name, kind, json)
                   for name, kind, json in runs]
        codes = collections.Counter(code for run in started for code in run.result())
    (folder / "exit codes.txt").write_text("".join(f"{code}: {codes[code]}\n" for code in sorted(codes)), encoding="utf-8")


def files_of(folder):
    return {str(path.relative_to(folder)): path for path in sorted(folder.rglob("*")) if path.is_file()}


def difference(name, before, after):
    lines = [path.read_text(encoding="utf-8").splitlines() if path else [] for path in (before, after)]
    found = list(difflib.unified_diff(*lines, f"before/{name}" if before else "(no such file)",
                                      f"after/{name}" if after else "(no such file)", lineterm="", n=2))
    left = len(found) - MOST_LINES
    return found[:MOST_LINES] + ([f"… and {left} more lines"] if left > 0 else [])


def compare(before, after):
    """Prints what differs; true when nothing does."""
    one, other = files_of(before), files_of(after)
    differing = 0
    for name in sorted(one.keys() | other.keys()):
        lines = difference(name, one.get(name), other.get(name))
        differing += bool(lines)
        if lines:
            print("\n".join(lines), end="\n\n")
    codes = (before / "exit codes.txt").read_text(encoding="utf-8").split("\n")[:-1]
    commands = sum(int(line.split(": ")[1]) for line in codes)
    if differing:
        print(f"{differing} of {len(one.keys() | other.keys())} files differ.")
    else:
        print(f"the same: {commands} commands, {len(one)} files (exit codes {', '.join(codes)})")
    return not differing


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("before", type=pathlib.Path)
    parser.add_argument("after", type=pathlib.Path)
    parser.add_argument("--keep", type=pathlib.Path, metavar="FOLDER", help="a new folder for both records")
    options = parser.parse_args()
    if options.keep and options.keep.exists():
        parser.error(f"{options.keep} exists already")
    with tempfile.TemporaryDirectory(prefix="same_behaviour.") as temporary:
        kept = options.keep or pathlib.Path(temporary) / "kept"
        records = []
        for name, given in (("before", options.before), ("after", options.after)):
            records.append(given if given.is_dir() else kept / name)
            if not given.is_dir():
                record(given.resolve(), pathlib.Path(temporary) / "work", kept / name)
        return 0 if compare(*records) else 1


if __name__ == "__main__":
    sys.exit(main())
