"""Kills `twk user move` at the writes, new folders, removals and renames that it makes. No file may be missing on both
servers and no share that leads to data gone; the same command run again must end the work, and leave what a move that was
not disturbed leaves.

    killed_move_test.py PATH-OF-TWK [SECONDS]

Takes points of the whole move in an even order until the seconds are over.
"""

import collections
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

TWK = sys.argv[1]
SECONDS = float(sys.argv[2]) if len(sys.argv) > 2 else 60
LEAST = 30
CALLS = ("write", "pwrite64", "copy_file_range", "mkdir", "unlink", "rmdir", "rename", "renameat2")
PLACES = ("D/Users", "D/Profiles")
MOVE = ("user", "move", "jo.smith", "--site", "Branch", "--template", "Staff", "--data", "move", "--no-prompt",
        "--add-to-groups")
# The leak checker cannot work in a program that is traced.
ENVIRONMENT = dict(os.environ, ASAN_OPTIONS="detect_leaks=0")


def twk(lab, *arguments):
    return [TWK, "--lab", lab, "--yes", *arguments]


def run(lab, *arguments):
    done = subprocess.run(twk(lab, *arguments), capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"{arguments}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def traced(lab, *options):
    """The move under strace; returns what that reports about its calls."""
    told = f"{lab}.strace"
    done = subprocess.run(["strace", "-f", "-qq", "-o", told, "-e", f"trace={','.join(CALLS)}", *options, *twk(lab, *MOVE)],
                          capture_output=True, text=True, env=ENVIRONMENT)
    with open(told, encoding="utf-8", errors="replace") as file:
        return done, file.read()


def make_lab(lab):
    """Jo with own shares for home and profile on FS1."""
    run(lab, "lab", "init", lab, "--sample", "--users", "3")
    for place in PLACES:
        os.makedirs(f"{lab}/servers/FS2/{place}")
    run(lab, "template", "edit", "Staff", "--home-dir", r"\\%Server%\%UserName%$", "--home-share", "%UserName%$",
        "--profile-path", r"\\%Server%\%UserName%.prf$", "--profile-share", "%UserName%.prf$")
    run(lab, "user", "create", "--template", "Staff", "--site", "Head Office", "--ou",
        "OU=New Starters,DC=twk,DC=test", "Jo", "Smith")
    run(lab, "site", "add", "Branch", "--nt-server", "FS2")
    for folder, share in (("Users", "Jo.Smith$"), ("Profiles", "Jo.Smith.prf$")):
        if share not in run(lab, "share", "list", "FS1"):
            run(lab, "share", "add", "FS1", share, rf"D:\{folder}\Jo.Smith")
    home = f"{lab}/servers/FS1/D/Users/Jo.Smith"
    for number, size in enumerate((0, 1, 5000, 200_000, 70_000, 3, 4, 5)):
        os.makedirs(f"{home}/{number % 3}/deep", exist_ok=True)
        with open(f"{home}/{number % 3}/deep/{number}", "wb") as file:
            file.write(os.urandom(size))
    with open(f"{lab}/servers/FS1/D/Profiles/Jo.Smith/NTUser.dat", "wb") as file:
        file.write(os.urandom(9000))


def contents(lab, server):
    """Every file and folder of a server's homes and profiles, with its bytes."""
    found = {}
    for place in PLACES:
        top = f"{lab}/servers/{server}/{place}"
        for folder, _, names in os.walk(top):
            if folder != top:
                found[f"{place}/{os.path.relpath(folder, top)}/"] = None
            for name in names:
                path = os.path.join(folder, name)
                with open(path, "rb") as file:
                    found[f"{place}/{os.path.relpath(path, top)}"] = file.read()
    return found


def state(lab):
    """All that a move is about: both servers, their shares, the account, the files of the database directory."""
    return {
        "FS1": contents(lab, "FS1"), "FS2": contents(lab, "FS2"),
        "shares": run(lab, "share", "list", "FS1") + run(lab, "share", "list", "FS2"),
        "account": run(lab, "--json", "user", "show", "jo.smith"),
        "database": sorted(os.listdir(f"{lab}/db")),
    }


def files_of(found):
    return {name: bytes_ for name, bytes_ in found.items() if bytes_ is not None}


def points(text):
    """(call, which one of it), in an order that soon has been everywhere."""
    counts = collections.Counter(re.findall(r"^\d+ +(\w+)\(", text, re.MULTILINE))
    every = [(call, number) for call in CALLS for number in range(1, counts[call] + 1)]
    step = next(step for step in (37, 41, 43, 47) if len(every) % step)
    return [every[index * step % len(every)] for index in range(len(every))]


def kill_at(folder, call, number, wanted, before):
    lab = f"{folder}/lab"
    shutil.copytree(f"{folder}/master", lab)
    done, _ = traced(lab, "-e", f"inject={call}:signal=KILL:when={number}")
    where = f"killed at {call} {number}"
    assert done.returncode != 0, f"{where}: it was not killed"
    files = files_of(before["FS1"])
    for server in ("FS1", "FS2"):
        held = files_of(contents(lab, server))
        if all(held.get(name) == bytes_ for name, bytes_ in files.items()):
            break
    else:
        raise SystemExit(f"{where}: neither server has all files")
    run(lab, *MOVE)
    after = state(lab)
    for what, value in wanted.items():
        if after[what] != value:
            raise SystemExit(f"{where}, and run again: {what} is\n{after[what]}\nnot\n{value}")
    shutil.rmtree(lab)


def main():
    with tempfile.TemporaryDirectory() as folder:
        make_lab(f"{folder}/master")
        before = state(f"{folder}/master")
        shutil.copytree(f"{folder}/master", f"{folder}/whole")
        done, told = traced(f"{folder}/whole")
        if done.returncode != 0:
            raise SystemExit(f"an undisturbed move: exit code {done.returncode}\n{done.stdout}{done.stderr}")
        wanted = state(f"{folder}/whole")
        assert files_of(wanted["FS2"]) == files_of(before["FS1"]) and not wanted["FS1"], "an undisturbed move"
        end = time.monotonic() + SECONDS
        every = points(told)
        killed = 0
        for call, number in every:
            if time.monotonic() > end:
                break
            kill_at(folder, call, number, wanted, before)
            killed += 1
        print(f"killed at {killed} of {len(every)} points")
        assert killed >= min(LEAST, len(every)), "too slow to have shown much"


main()
