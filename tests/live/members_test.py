#!/usr/bin/python3
"""Deletes accounts whose folders lie on member servers of the domain that with-domain started, and
looks at what is there with others' tools and on the disks.

    tests/live/with-domain members -- tests/live/members_test.py TWK
"""

import os
import pathlib
import sys
import tempfile
import time

from live_tools import LIVE, TWK, at_home, expect, expect_same, failures, run

STATE = pathlib.Path(LIVE["STATE"])
DISKS = {server: STATE / server / "srv/d" for server in ("fs1", "fs2")}
TO_BRANCH = ("--site", "Branch", "--template", "Staff", "--data", "move", "--no-prompt")
EVERYTHING = ("--account", "--data", "--shares", "--no-prompting")
FILES = 150


def twk_command(*arguments):
    return [TWK, "--domain", LIVE["DOMAIN"], "--yes", *arguments]


def twk(*arguments, **options):
    return run(*twk_command(*arguments), **options)


def on(server, *command):
    return run(LIVE["CONTROL"], "on", server, *command).stdout


def conf(server):
    return f"--configfile={STATE}/{server}/smb.conf"


def prepare():
    for key, name, value in (
            ("Setup", "UserFormat", "5"), ("Setup", "SetupID", "%first%"), ("Preferences", "ForcePasswdChange", "No"),
            ("UM", "CreateShares", "Yes"), ("UM", "SetPermissions", "Yes"), ("UM", "RunCmd", "No"),
            ("UM", "MailAccount", "No")):
        twk("settings", "set", key, name, value)
    twk("settings", "set", "Setup", "Password", text="Welcome-2-Work")
    twk("ou", "create", "Movers")
    for site, server in (("Head Office", "FS1"), ("Branch", "FS2")):
        twk("site", "add", site, "--nt-server", server)
        for name in ("Users", "Profiles"):
            twk("share", "add", server, name, rf"D:\{name}")
    twk("template", "add", "Staff", "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path", r"D:\Users\%UserName%",
        "--home-share", "%UserName%$", "--home-drive", "H:", "--profile-path", r"\\%Server%\Profiles\%UserName%",
        "--profile-dir-path", r"D:\Profiles\%UserName%", "--group", "Domain Users", "--primary-group", "Domain Users")
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    twk("table", "set", "share-permissions", text="%UserName%,Change\nAuthenticated Users,Full Control\n")
    for name in ("Ann", "Jo", "Mona"):
        twk("user", "create", name, "Smith", "--template", "Staff", "--site", "Head Office",
            "--ou", "OU=Movers,DC=hq,DC=north,DC=example")
        for number in range(FILES if name == "Mona" else 2):
            folder = DISKS["fs1"] / "Users" / name / f"{number % 3}"
            folder.mkdir(exist_ok=True)
            (folder / f"{number}.txt").write_text(f"{name} {number}" * 2000)


def account(name, *attributes):
    """What the directory tells of accounts, of all but Jo when no name is given."""
    who = f"(sAMAccountName={name})" if name else "(&(objectCategory=person)(!(sAMAccountName=Jo)))"
    told = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-H", "ldap://" + LIVE["SERVER"], "-b",
               "DC=hq,DC=north,DC=example", who, *(attributes or ("homeDirectory", "profilePath", "memberOf"))).stdout
    return "".join(line for line in told.splitlines(True) if not line.startswith("# refldap") and line.strip())


def world():
    """Folders and files with their lists, shares with theirs, and the accounts of others."""
    found = {"accounts": account("")}
    for server, disk in DISKS.items():
        found[server] = on(server, "net", conf(server), "conf", "list") + on(server, "sharesec", conf(server), "--view-all")
        for path in disk.rglob("*"):
            found[str(path)] = [os.getxattr(path, name) for name in os.listxattr(path) if name == "security.NTACL"]
            if path.is_file():
                found[str(path)].append(path.read_bytes())
    return found


HERS = (r"home=\\FS1\Jo$", r"profile=\\FS1\Profiles\Jo")
# Homes and profiles of Jo that are not hers to lose, and what the refusal names.
NOT_HERS = [
    (r"home=\\FS1\D$", " share"),
    (r"home=\\FS1\C$", " share"),
    (r"home=\\FS1\Users", "Ann"),
    (r"home=\\fs1.hq.north.example\Users\Ann", "Ann"),
    (r"home=\\FS1\C$\Users\Ann", "Ann"),
    (r"home=\\FS1\Ann$\0", "Ann"),
    (r"profile=\\FS1\Profiles", "Ann"),
    (r"profile=\\FS1\Profiles\Ann", "Ann"),
]


def attack():
    for given, named in NOT_HERS:
        twk("user", "set", "Jo", *HERS, given)
        before = world()
        for command in (("user", "delete", "Jo", *EVERYTHING), ("user", "move", "Jo", *TO_BRANCH)):
            ends = [twk(*command, *more, codes=(1, 2)) for more in (("--dry-run",), ())]
            for what, end in zip(("rehearsal", "run"), ends):
                expect(named, f"{given}: {command[1]}, {what}", end.stdout + end.stderr)
            expect_same(ends[0].returncode, ends[1].returncode, f"{given}: {command[1]}, rehearsal and run")
        after = world()
        changed = sorted(what for what in before.keys() | after.keys() if before.get(what) != after.get(what))
        expect_same(changed, [], f"{given}: what changed")
    twk("user", "set", "Jo", *HERS)


def delete():
    twk("user", "delete", "Jo", *EVERYTHING)
    expect_same((account("Jo"), (DISKS["fs1"] / "Users/Jo").exists()), ("", False), "what is left of Jo")


def main():
    prepare()
    for step in (attack, delete):
        start = time.monotonic()
        step()
        print(f"{step.__name__}: {time.monotonic() - start:.1f} s")
    if failures:
        sys.exit("\n\n".join(failures))


with tempfile.TemporaryDirectory() as folder:
    at_home(folder)
    os.chdir(folder)
    main()
