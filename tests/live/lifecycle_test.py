#!/usr/bin/python3
"""Renames, moves, resets and deletes accounts with their folders in the domain that with-domain started, and looks at what
is there with others' tools.

    tests/live/with-domain ad -- tests/live/lifecycle_test.py TWK
"""

import os
import pathlib
import sys
import tempfile

from live_tools import CONF, LIVE, at_home, expect, failures, run, twk

FIRST = "Welcome-2-Work"
SECOND = "Other-Words-77"
DRIVE = pathlib.Path(LIVE["STATE"]) / "srv/d"


def prepare():
    for key, name, value in (
            ("Setup", "UserFormat", "5"), ("Setup", "SetupID", "%first%"), ("Preferences", "ForcePasswdChange", "No"),
            ("UM", "CreateShares", "Yes"), ("UM", "SetPermissions", "Yes"), ("UM", "RunCmd", "No"),
            ("UM", "MailAccount", "No")):
        twk("settings", "set", key, name, value)
    twk("settings", "set", "Setup", "Password", text=FIRST)
    twk("site", "add", "Head Office", "--nt-server", "DC1")
    twk("ou", "create", "Movers")
    twk("template", "add", "Staff", "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path", r"D:\Users\%UserName%",
        "--home-share", "%UserName%$", "--home-drive", "H:", "--group", "Domain Users", "--primary-group", "Domain Users")
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    twk("table", "set", "share-permissions", text="%UserName%,Full Control\n")


def create(name):
    twk("user", "create", name, "Smith", "--template", "Staff", "--site", "Head Office", "--ou", "OU=Movers,DC=twk,DC=test")
    home = DRIVE / "Users" / name.capitalize()
    if not home.is_dir():
        sys.exit(f"no home at {home}: {sorted(path.name for path in (DRIVE / 'Users').iterdir())}")
    (home / "letter.txt").write_text("kept")
    return home


def shown(name):
    return run("samba-tool", "user", "show", name, "-s", CONF, codes=None).stdout


def main():
    prepare()
    twk("settings", "set", "Setup", "Password", text=SECOND)
    home = create("Rena")
    twk("--yes", "user", "reset-password", "Rena")
    expect("pwdLastSet: 0", "Rena has to change the password", shown("Rena"))

    twk("--yes", "user", "delete", "Rena", "--account", "--data", "--no-prompting", "--dry-run")
    if not home.is_dir() or not shown("Rena"):
        failures.append("a rehearsal deleted something")
    twk("--yes", "user", "rename", "Rena", "--full-name", "Nora Smith", "--logon", "Nora", "--rename-dirs")
    if not (DRIVE / "Users/Nora Smith/letter.txt").is_file():
        failures.append("the home was not renamed with its file")
    expect("CN=Nora Smith,", "the renamed account", shown("Nora"))
    twk("--yes", "user", "delete", "Nora", "--account", "--shares", "--data", "--no-prompting")
    if shown("Nora") or (DRIVE / "Users/Nora Smith").exists():
        failures.append("Nora, or her home, is still there")

    gone = create("Dora")
    twk("--yes", "user", "delete", "Dora", "--account", "--data", "--take-ownership", "--no-prompting")
    if shown("Dora") or gone.exists():
        failures.append(f"Dora is still there: {gone.exists()}\n{shown('Dora')}")
    if failures:
        sys.exit("\n\n".join(failures))


with tempfile.TemporaryDirectory() as folder:
    at_home(folder)
    os.chdir(folder)
    main()
