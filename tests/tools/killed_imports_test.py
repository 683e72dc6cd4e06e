"""Kills `twk user import` at changes that it makes. What has no account must be in the remaining lines, and nothing else
but the line in hand; with --resume the import must end as its dry run says, and as one that nobody disturbed.

    killed_imports_test.py PATH-OF-TWK [POINTS [LINES]]
"""

import glob
import json
import os
import shutil
import sys
import tempfile

from kill_points import changes_of, is_killed_at
from lab_tools import CREATE, OU, TWK, exported, make_lab, twk

POINTS = int(sys.argv[2]) if len(sys.argv) > 2 else 12
LINES = int(sys.argv[3]) if len(sys.argv) > 3 else 25
# What is another one in each run.
OWN = {"objectSid", "objectGUID", "whenCreated", "whenChanged", "pwdLastSet", "uSNCreated", "uSNChanged",
       "supplementalCredentials"}


def state(lab):
    """All that the import is about."""
    found = {dn: {name: values for name, values in entry.items() if name not in OWN}
             for dn, entry in exported(lab).items() if dn.endswith(OU) or "member" in entry}
    for entry in found.values():
        entry.get("member", []).sort()
    shares = json.loads("[" + ",".join(twk(lab, "--json", "share", "list", "FS1").stdout.splitlines()) + "]")
    folders = {folder: sorted(os.listdir(f"{lab}/servers/FS1/D/{folder}")) for folder in ("Users", "Profiles")}
    rights = [twk(lab, "acl", "show", rf"\\FS1\D$\Users\{name}").stdout for name in folders["Users"]]
    return {**found, "shares": sorted(share["name"] for share in shares), "folders": folders, "rights": rights}


def accounts(lab):
    return {dn.split(",")[0][3:] for dn in exported(lab) if dn.endswith("," + OU)}


def main():
    lines = [f"Ann{number},,Miller{number}" for number in range(LINES)]
    with tempfile.TemporaryDirectory() as folder:
        master, whole, lab, file = (f"{folder}/{part}" for part in ("master", "whole", "lab", "lines.csv"))
        make_lab(master, "--users", "2")
        twk(master, "template", "edit", "Staff", "--home-share", "%UserName%$")
        with open(file, "w", encoding="utf-8") as out:
            out.writelines(line + "\n" for line in lines)
        shutil.copytree(master, whole)
        names = {line.replace(",,", ".") for line in lines}
        already = accounts(master)
        order = ("user", "import", file, *CREATE)
        changes = changes_of([TWK, "--lab", whole, "--yes", *order], whole)
        wanted = state(whole)
        assert accounts(whole) - already == names, accounts(whole)
        for number in range(POINTS):
            change = changes[(2 * number + 1) * len(changes) // (2 * POINTS)]
            shutil.copytree(master, lab)
            assert is_killed_at(change, [TWK, "--lab", lab, "--yes", *order]), f"{change} came not"
            told = f"killed at {change}"
            records = glob.glob(f"{lab}/db/Import Record - *.jsonl")
            if records:
                check_remaining(lab, names, already, told)
                resumed = resume(lab, records[0], told)
            else:
                resumed = twk(lab, *order, codes=None)
            found = state(lab)
            for what, right in wanted.items():
                assert found.get(what) == right, (f"{told}\n{resumed.stdout}\n{resumed.stderr}\n{what} is\n{found.get(what)}"
                                                  f"\nnot\n{right}")
            assert found.keys() == wanted.keys(), f"{told}: there are also {found.keys() - wanted.keys()}"
            shutil.rmtree(lab)
        check_mailbox(master, lab, order)
    print(f"import of {LINES} lines: killed at {POINTS} of {len(changes)} changes")


def check_mailbox(master, lab, order):
    """A mailbox that was made, but of which no record could tell, is not left when the import is taken back."""
    def has_mailbox():
        return "EX55" in twk(lab, "mailbox", "find", "--site", "Head Office", "Ann0.Miller0", codes=None).stdout

    shutil.copytree(master, lab)
    change = changes_of([TWK, "--lab", lab, "--yes", *order], lab, r'\"made\":\"mailbox\"')[0]
    shutil.rmtree(lab)
    shutil.copytree(master, lab)
    assert is_killed_at(change, [TWK, "--lab", lab, "--yes", *order]), f"{change} came not"
    assert has_mailbox(), "the import was killed too early"
    twk(lab, "user", "import", "--undo", glob.glob(f"{lab}/db/Import Record - *.jsonl")[0])
    assert not has_mailbox(), "the mailbox is left"
    shutil.rmtree(lab)


def rows(done):
    """The last row of each line: account and light, of the broken one the account."""
    found = [json.loads(line) for line in done.stdout.splitlines()]
    broken = {row["line"] for row in found if "taken back" in row.get("message", "").lower()}
    return {row["line"]: (row["user"], "" if row["line"] in broken else row["light"])
            for row in found if "user" in row and "light" in row}


def resume(lab, record, told):
    """After a rehearsal, which writes nothing and foretells each line."""
    order = ("--json", "user", "import", "--resume", record)
    before = exported(lab)
    foretold = twk(lab, *order, "--dry-run", codes=None)
    assert exported(lab) == before, f"{told}: the dry run changed something"
    resumed = twk(lab, *order, codes=None)
    assert rows(foretold) == rows(resumed), f"{told}: foretold {rows(foretold)}, but {resumed.stdout}{resumed.stderr}"
    return resumed


def check_remaining(lab, names, already, told):
    with open(glob.glob(f"{lab}/db/Import Remaining - *.csv")[0], encoding="utf-8") as file:
        remaining = {line.replace(",,", ".") for line in file.read().splitlines() if line}
    made = accounts(lab) - already
    assert made | remaining == names, f"{told}: {names - made - remaining} are lost"
    assert len(made & remaining) <= 1, f"{told}: {made & remaining} are in both"


main()
