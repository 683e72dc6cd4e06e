#!/usr/bin/env python3
"""Measures whole commands of `twk` on labs of three sizes: processor seconds, largest memory, and growth, the cost of one
user at the largest size by that at the smallest. Above 1.3 something grows faster than the users do.

    commands.py TWK [--former TWK] [--users N] [--runs R]

With --former another build of the program runs the same commands in between, at the largest size. The limits beside the
figures are an empty program, `cp` of the lab's directory and a search through its bytes.
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
OU = "OU=New Starters,DC=twk,DC=test"


def run(arguments, runs, allowed=(0, 1)):
    """The least processor seconds of several runs, and the largest memory in MB."""
    seconds, memory = [], 0
    for _ in range(runs):
        with subprocess.Popen(arguments, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE) as process:
            complaint = process.stderr.read()
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode not in allowed:
            sys.exit(f"{' '.join(map(str, arguments))}: exit code {process.returncode}\n{complaint.decode()}")
        seconds.append(usage.ru_utime + usage.ru_stime)
        memory = max(memory, usage.ru_maxrss / 1024)
    return min(seconds), memory


class Size:
    """A lab of so many users, with as many lines to import and of a log."""

    def __init__(self, twk, folder, users):
        self.users = users
        self.lab = folder / f"lab-{users}"
        self.fresh = folder / f"fresh-{users}"
        subprocess.run([twk, "lab", "init", self.lab, "--sample", "--users", str(users), "--ous", str(max(1, users // 100)),
                        "--groups", "50"], check=True, stdout=subprocess.DEVNULL)
        self.lines = folder / f"lines-{users}.csv"
        with open(self.lines, "w") as lines:
            lines.writelines(f"Ada{i},,Byron{i}\n" for i in range(users))
        with open(self.lab / "db" / "Log.txt", "a") as log:
            log.writelines(f"NT User Account Created {i}\r\n" for i in range(users * 20))
        # Nothing large is held here: a process begins with the memory figure of the one that starts it.
        with subprocess.Popen([twk, "--lab", self.lab, "user", "list"], stdout=subprocess.PIPE, text=True) as listed:
            for number, line in enumerate(listed.stdout):
                if number == users // 2:
                    self.user = line.split()[0]
        self.made = 0

    def commands(self, twk):
        place = ["--template", "Staff", "--site", "Head Office", "--ou", OU]
        self.made += 1
        on_lab = [twk, "--lab", self.lab]
        return {
            "--version": [twk, "--version"],
            "settings get": on_lab + ["settings", "get", "Setup", "Domain"],
            "site list": on_lab + ["site", "list"],
            "template list": on_lab + ["template", "list"],
            "log show --tail 3": on_lab + ["log", "show", "--tail", "3"],
            "lab info": on_lab + ["lab", "info"],
            "group list": on_lab + ["group", "list"],
            "user find zzqq": on_lab + ["user", "find", "zzqq"],
            "user show": on_lab + ["user", "show", self.user],
            "user create": on_lab + ["user", "create"] + place + ["Bench", f"Maker{self.made}"],
            "user list": on_lab + ["user", "list"],
            "import --preview": on_lab + ["user", "import", "--preview", self.lines] + place,
        }


def measure(twk, size, runs):
    figures = {}
    for name in size.commands(twk):
        command = size.commands(twk)[name]
        figures[name] = run(command, 1 if "create" in name or "preview" in name else runs, (0, 1, 2))
    return figures


def measure_making(twk, size):
    shutil.rmtree(size.fresh, ignore_errors=True)
    figure = run([twk, "lab", "init", size.fresh, "--users", str(size.users), "--ous", str(max(1, size.users // 100)),
                  "--groups", "50"], 1)
    shutil.rmtree(size.fresh)
    return figure


def print_limits(size):
    ldif = size.lab / "domain.ldif"
    empty = run(["/bin/true"], 5)[0]
    copied = run(["cp", ldif, size.fresh], 3)[0]
    size.fresh.unlink()
    searched = run(["grep", "-c", "-F", "no such text", ldif], 3)[0]
    print(f"limits: empty program {empty * 1000:.0f} ms, cp of {ldif.stat().st_size / 1e6:.0f} MB {copied:.2f} s, "
          f"a search through it {searched:.2f} s")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("twk")
    parser.add_argument("--former")
    parser.add_argument("--users", type=int, default=100_000, help="of the largest lab")
    parser.add_argument("--runs", type=int, default=3)
    options = parser.parse_args()
    os.environ.pop("TWK_LAB", None)
    with tempfile.TemporaryDirectory() as folder:
        sizes = [Size(options.twk, pathlib.Path(folder), options.users * size // SIZES[-1]) for size in SIZES]
        figures = [measure(options.twk, size, options.runs) for size in sizes]
        for figure, size in zip(figures, sizes):
            figure["lab init"] = measure_making(options.twk, size)
        former = {}
        if options.former:
            former = measure(options.former, sizes[-1], 1) | {"lab init": measure_making(options.former, sizes[-1])}
        print_limits(sizes[-1])
        heads = "".join(f"{size.users:>10,}" for size in sizes)
        print(f"{'processor seconds':24}{heads}{'memory':>9}{'growth':>8}" + (f"{'former':>9}{'times':>7}" if former else ""))
        steep = []
        for name, (largest, memory) in figures[-1].items():
            costs = [figure[name][0] for figure in figures]
            growth = largest / max(costs[0], 0.001) / SIZES[-1]
            line = f"{name:24}" + "".join(f"{cost:10.3f}" for cost in costs) + f"{memory:6.0f} MB{growth:8.2f}"
            if name in former:
                line += f"{former[name][0]:9.2f}{former[name][0] / max(largest, 0.001):7.1f}"
            print(line)
            if growth > GROWTH:
                steep.append(name)
        if steep:
            sys.exit("grows faster than the users: " + ", ".join(steep))


main()
