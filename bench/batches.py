#!/usr/bin/env python3
"""Measures what `twk` does for many users at once: the processor time of one user in labs of n, 4n and 16n, each command on
all users of a fresh copy, growth, and the cost beside that of `users disable` in the largest lab.

    batches.py TWK [--users N] [--runs R] [ONLY...]

Above 1.3 something grows faster than the users do, and the program complains.
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

SIZES = (1, 4, 16)
GROWTH = 1.3
MOVED_TO = "OU=New Starters,DC=twk,DC=test"


class Lab:
    """A lab of so many users, with the files that name them."""

    def __init__(self, twk, folder, users):
        self.twk = twk
        self.users = users
        self.whole = folder / f"lab-{users}"
        self.copy = folder / f"copy-{users}"
        subprocess.run([twk, "lab", "init", self.whole, "--sample", "--users", str(users), "--ous", str(max(1, users // 100)),
                        "--groups", "20"], check=True, stdout=subprocess.DEVNULL)
        listed = subprocess.run([twk, "--lab", self.whole, "user", "list"], check=True, stdout=subprocess.PIPE, text=True).stdout
        names = [line.split()[0] for line in listed.splitlines()[1:]]
        self.names = [name for name in names if name not in ("Administrator", "Guest", "krbtgt")]
        self.listed = folder / f"users-{users}.txt"
        self.listed.write_text("".join(f"{name}\n" for name in self.names))
        self.new_names = folder / f"names-{users}.csv"
        self.new_names.write_text("User,Logon,Last name,Full name\n" +
                                  "".join(f"{name},n{i}.bench,Bench,N {i} Bench\n" for i, name in enumerate(self.names)))

    def commands(self):
        selected = ["--from-file", self.listed]
        return {
            "users disable": ["users", "disable"] + selected,
            "users unlock": ["users", "unlock"] + selected,
            "users password-expires": ["users", "password-expires"] + selected,
            "users set-attribute": ["users", "set-attribute", "department", "Bench"] + selected,
            "users groups --add": ["users", "groups", "--add", "Staff"] + selected,
            "users move-ou": ["users", "move-ou", MOVED_TO] + selected,
            "users rename": ["users", "rename", "--from-file", self.new_names],
            "users delete": ["--yes", "users", "delete", "--account", "--no-prompting"] + selected,
            "users disable --dry-run": ["users", "disable", "--dry-run"] + selected,
            "users find-locked": ["users", "find-locked"],
            "users find-expired": ["users", "find-expired"],
            "users find-inactive": ["users", "find-inactive", "--days", "90"],
            "users find-password-expiring": ["users", "find-password-expiring"],
            "users find-never-logged-on": ["users", "find-never-logged-on"],
            "user list --columns": ["user", "list", "--columns", "name,mail,department"],
        }

    def measure(self, command, runs):
        """The least processor seconds on fresh copies, and the exit code."""
        seconds = []
        for _ in range(runs):
            shutil.rmtree(self.copy, ignore_errors=True)
            shutil.copytree(self.whole, self.copy)
            with subprocess.Popen([self.twk, "--lab", self.copy] + command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.PIPE) as process:
                complaint = process.stderr.read()
                _, status, usage = os.wait4(process.pid, 0)
                process.returncode = os.waitstatus_to_exitcode(status)
            if process.returncode not in (0, 1):
                sys.exit(f"{' '.join(map(str, command))}: exit code {process.returncode}\n{complaint.decode()}")
            seconds.append(usage.ru_utime + usage.ru_stime)
        return min(seconds)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("twk")
    parser.add_argument("only", nargs="*", help="commands; all if none is given")
    parser.add_argument("--users", type=int, default=8000, help="of the largest lab")
    parser.add_argument("--runs", type=int, default=2)
    options = parser.parse_args()
    os.environ.pop("TWK_LAB", None)
    with tempfile.TemporaryDirectory() as folder:
        labs = [Lab(options.twk, pathlib.Path(folder), options.users * size // SIZES[-1]) for size in SIZES]
        print(f"{'microseconds a user':30}" + "".join(f"{lab.users:>10,}" for lab in labs) + f"{'growth':>8}{'beside':>8}")
        steep = []
        measure = None
        for name in labs[-1].commands():
            if options.only and name not in options.only:
                continue
            costs = [1e6 * lab.measure(lab.commands()[name], options.runs) / lab.users for lab in labs]
            measure = measure or costs[-1]
            growth = costs[-1] / costs[0]
            print(f"{name:30}" + "".join(f"{cost:10.1f}" for cost in costs) + f"{growth:8.2f}{costs[-1] / measure:8.2f}", flush=True)
            if growth > GROWTH:
                steep.append(name)
        if steep:
            sys.exit("grows faster than the users: " + ", ".join(steep))


main()
