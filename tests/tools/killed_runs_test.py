"""Kills `twk user rename` and `twk user move` at changes that they make, found and hit with strace: one server must still
have every file, and the same command must end the work, with files, shares, access lists and account as after a run that
nobody disturbed.

    killed_runs_test.py PATH-OF-TWK [POINTS]
"""

import hashlib
import json
import os
import shutil
import sys
import tempfile

import lab_tools
from kill_points import changes_of, is_killed_at
from lab_tools import CREATE, TWK

POINTS = int(sys.argv[2]) if len(sys.argv) > 2 else 40
SERVERS = ("FS1", "FS2")
# What is killed: the kind of domain, the words, the name of the folders after it, and the share of the points. One renaming
# gives another name, one another case alone.
STORIES = (
    ("native", ("rename", "jo.smith", "--logon", "Ann", "--full-name", "Ann West", "--upn", "ann", "--rename-dirs"),
     "Ann West", 0.3),
    ("nt", ("rename", "Jo.Smith", "--logon", "JO.SMITH", "--full-name", "JO SMITH", "--rename-dirs"), "JO.SMITH", 0.3),
    ("native", ("move", "jo.smith", "--site", "Branch", "--template", "Staff", "--data", "move", "--no-prompt",
                "--add-to-groups"), "Jo.Smith", 0.4),
)


def twk(lab, *arguments):
    return [TWK, "--lab", lab, "--json", "--yes", *arguments]


def run(lab, *arguments, **options):
    return lab_tools.twk(lab, "--json", *arguments, **options)


def make_lab(lab, kind, command):
    """Jo with own shares for home and profile on FS1; for a renaming with lists and remarks of their own."""
    lab_tools.make_lab(lab, "--users", "2", "--kind", kind)
    run(lab, "template", "edit", "Staff", "--home-dir", r"\\%Server%\%UserName%$", "--home-share", "%UserName%$",
        "--profile-path", r"\\%Server%\%UserName%.prf$", "--profile-share", "%UserName%.prf$")
    run(lab, "user", "create", *(CREATE if kind == "native" else CREATE[:4]), "Jo", "Smith")
    run(lab, "site", "add", "Branch", "--nt-server", "FS2")
    for folder in ("Users", "Profiles"):
        os.makedirs(f"{lab}/servers/FS2/D/{folder}")
        os.makedirs(f"{lab}/servers/FS1/D/{folder}/Jo.Smith/deep")
        for size in (0, 1, 5000, 200_000):
            with open(f"{lab}/servers/FS1/D/{folder}/Jo.Smith/deep/{size}", "wb") as file:
                file.write(os.urandom(size))
    if command == "move":
        return
    run(lab, "table", "set", "share-permissions", text="%UserName%,Change\n")
    for share, folder in (("Jo.Smith$", "Users"), ("Jo.Smith.prf$", "Profiles")):
        run(lab, "share", "delete", "FS1", share)
        run(lab, "share", "add", "FS1", share, f"D:\\{folder}\\Jo.Smith", "--table", "Jo.Smith", "--remark", "100% Jo's")
    run(lab, "acl", "set", r"\\FS1\D$\Users\Jo.Smith", "--account", "Jo.Smith", "--access", "Change", "--replace")
    run(lab, "user", "set", "Jo.Smith", r"profile=\\FS1\Jo.Smith.prf$\deep")


def files(lab, server):
    """What a server's drive holds: each file's name by its contents, and the folders."""
    found = {}
    for folder, _, names in os.walk(f"{lab}/servers/{server}/D"):
        found[os.path.relpath(folder, lab)] = None
        for name in names:
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                found[hashlib.sha256(file.read()).hexdigest()] = os.path.relpath(path, lab)
    return found


def contents(lab, server):
    return {contents for contents, name in files(lab, server).items() if name}


def state(lab, command, name):
    """All that such a run is about. Of a renaming's record a temporary file may be left."""
    found = {"account": json.loads(run(lab, "user", "show", name).stdout),
             "database": sorted(file for file in os.listdir(f"{lab}/db")
                                if command == "move" or not file.endswith(".tmp"))}
    for server in SERVERS:
        shares = sorted(run(lab, "share", "list", server).stdout.splitlines())
        found["files of " + server] = files(lab, server)
        found["shares of " + server] = [run(lab, "share", "show", server, json.loads(share)["name"]).stdout for share in shares]
        found["list on " + server] = run(lab, "acl", "show", rf"\\{server}\D$\Users\{name}", codes=None).stdout
    return found


def check(folder, kind, words, name, points):
    order = ("user", *words)
    master, whole, lab = (f"{folder}/{part}" for part in ("master", "whole", "lab"))
    make_lab(master, kind, words[0])
    shutil.copytree(master, whole)
    changes = changes_of(twk(whole, *order), whole)
    wanted, before = state(whole, words[0], name), contents(master, "FS1")
    end = "FS2" if words[0] == "move" else "FS1"
    assert contents(whole, end) == before and f"{end}/D/Users/{name}" in str(wanted), wanted
    chosen = [changes[number * len(changes) // points] for number in range(points)] if len(changes) > points else changes
    for change in chosen:
        shutil.copytree(master, lab)
        assert is_killed_at(change, twk(lab, *order)), f"{change} came not"
        assert any(contents(lab, server) >= before for server in SERVERS), f"{words}, {change}: no server has all files"
        # A program that was killed as it said that it was done may have left nothing to do.
        again = run(lab, *order, codes=None)
        for what, found in state(lab, words[0], name).items():
            told = f"{words}, {change}:\n{again.stdout}{again.stderr}\n{what} is\n{found}\nnot\n{wanted[what]}"
            assert found == wanted[what], told
        shutil.rmtree(lab)
    print(f"{' '.join(words[:2])} ({kind}): killed at {len(chosen)} of {len(changes)} changes")


def check_many(folder):
    """The users of a file, whose folders stay: a record for all. Lines that were done say that nobody has the old name."""
    master, whole, lab = (f"{folder}/{part}" for part in ("master", "whole", "lab"))
    lab_tools.make_lab(master, "--users", "2")
    for first in ("Jo", "Al"):
        run(master, "user", "create", *CREATE, first, "Smith")
    with open(f"{folder}/names.csv", "w", encoding="utf-8") as file:
        file.write("User,Logon,Last name,Full name\nJo.Smith,Jo.West,West,Jo West\nAl.Smith,Al.West,West,Al West\n")
    order = ("users", "rename", "--from-file", f"{folder}/names.csv")

    def seen(lab):
        return [run(lab, "user", "show", name).stdout for name in ("Jo.West", "Al.West")], sorted(os.listdir(f"{lab}/db"))

    shutil.copytree(master, whole)
    changes = changes_of(twk(whole, *order), whole)
    wanted = seen(whole)
    for change in changes:
        shutil.copytree(master, lab)
        assert is_killed_at(change, twk(lab, *order)), f"{change} came not"
        again = run(lab, *order, codes=None)
        assert seen(lab) == wanted, f"{change}:\n{again.stdout}{again.stderr}\n{seen(lab)}\nnot\n{wanted}"
        shutil.rmtree(lab)
    print(f"users rename: killed at {len(changes)} changes")


def main():
    with tempfile.TemporaryDirectory() as folder:
        check_many(folder)
    for kind, words, name, part in STORIES:
        with tempfile.TemporaryDirectory() as folder:
            check(folder, kind, words, name, round(POINTS * part))


main()
