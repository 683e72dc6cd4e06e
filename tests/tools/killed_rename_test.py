"""Kills `twk user rename` at each change that it makes: the same command must end the work, with every file, the shares
and their access lists as after a renaming that nobody disturbed.

    killed_rename_test.py PATH-OF-TWK [POINTS]
"""

import hashlib
import json
import os
import shutil
import subprocess
import sys
import tempfile

from kill_points import changes_of, run_until, spread

TWK = sys.argv[1]
POINTS = int(sys.argv[2]) if len(sys.argv) > 2 else 50
# Two logons: another name, with profile and home on shares of their own and of all; and a change of case alone.
ORDERS = {
    "native": ("jo.smith", "--logon", "Ann", "--full-name", "Ann West", "--upn", "ann", "--rename-dirs"),
    "nt": ("Jo.Smith", "--logon", "JO.SMITH", "--full-name", "JO SMITH", "--rename-dirs"),
}
NEW_NAME = {"native": "Ann West", "nt": "JO.SMITH"}


def twk(lab, *arguments):
    return [TWK, "--lab", lab, "--json", "--yes", *arguments]


def run(lab, *arguments, text=None, codes=(0,)):
    done = subprocess.run(twk(lab, *arguments), input=text, capture_output=True, text=True)
    if codes and done.returncode not in codes:
        raise SystemExit(f"{arguments}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return done


def make_lab(lab, kind):
    run(lab, "lab", "init", lab, "--sample", "--users", "2", "--kind", kind)
    place = ("--ou", "OU=New Starters,DC=twk,DC=test") if kind == "native" else ()
    run(lab, "user", "create", "--template", "Staff", "--site", "Head Office", *place, "Jo", "Smith")
    run(lab, "table", "set", "share-permissions", text="%UserName%,Change\n")
    for share, folder in (("Jo.Smith$", "Users"), ("Jo.Smith.prof$", "Profiles")):
        os.makedirs(f"{lab}/servers/FS1/D/{folder}/Jo.Smith/deep", exist_ok=True)
        run(lab, "share", "add", "FS1", share, f"D:\\{folder}\\Jo.Smith", "--table", "Jo.Smith", "--remark", "100% Jo's")
        with open(f"{lab}/servers/FS1/D/{folder}/Jo.Smith/deep/{share}", "wb") as file:
            file.write(os.urandom(5000))
    run(lab, "acl", "set", r"\\FS1\D$\Users\Jo.Smith", "--account", "Jo.Smith", "--access", "Change", "--replace")
    run(lab, "user", "set", "Jo.Smith", r"home=\\FS1\Jo.Smith$", r"profile=\\FS1\Jo.Smith.prof$\deep")


def files(lab):
    """Every file on the server's drive, by its contents."""
    found = {}
    for folder, _, names in os.walk(f"{lab}/servers/FS1/D"):
        for name in names:
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                found[hashlib.sha256(file.read()).hexdigest()] = os.path.relpath(path, lab)
    return found


def state(lab, kind):
    """All that a renaming is about."""
    user = json.loads(run(lab, "user", "show", NEW_NAME[kind]).stdout)
    shares = sorted(run(lab, "share", "list", "FS1").stdout.splitlines())
    shown = [run(lab, "share", "show", "FS1", json.loads(share)["name"], codes=None).stdout for share in shares]
    acl = run(lab, "acl", "show", "\\\\FS1\\D$\\Users\\" + NEW_NAME[kind]).stdout
    records = [name for name in os.listdir(f"{lab}/db") if name.startswith("Rename-")]
    return user, shares, shown, acl, files(lab), records


def check(folder, kind):
    order = ("user", "rename", *ORDERS[kind])
    master, whole, lab = (f"{folder}/{kind}-{name}" for name in ("master", "whole", "lab"))
    make_lab(master, kind)
    shutil.copytree(master, whole)
    changes = changes_of(twk(whole, *order), whole)
    wanted = state(whole, kind)
    assert not wanted[-1] and wanted[-2].keys() == files(master).keys(), wanted
    chosen = spread(changes, POINTS // len(ORDERS))
    for change in chosen:
        shutil.copytree(master, lab)
        assert run_until(twk(lab, *order), change), f"{change} came not"
        assert files(lab).keys() == files(master).keys(), f"{kind}, {change}: a file is lost"
        again = run(lab, *order, codes=None)
        # A program that was killed as it said that it was done has left nothing to do.
        found = state(lab, kind)
        for part, wanted_part in zip(found, wanted):
            assert part == wanted_part, f"{kind}, {change}:\n{again.stdout}{again.stderr}\n{part}\nwanted\n{wanted_part}"
        shutil.rmtree(lab)
    return len(chosen), len(changes)


def main():
    with tempfile.TemporaryDirectory() as folder:
        for kind in ORDERS:
            print("%s: killed at %d of %d changes" % (kind, *check(folder, kind)))


main()
