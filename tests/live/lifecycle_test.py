#!/usr/bin/python3
"""Renames, moves, resets and deletes accounts with their folders in the domain that with-domain started, and looks at what
is there with others' tools.

    tests/live/with-domain ad|nt -- tests/live/lifecycle_test.py TWK
"""

import pathlib
import sys

from live_tools import CONF, IS_AD, LIVE, expect, failures, go_through, run, set_up, twk

FIRST = "Welcome-2-Work"
SECOND = "Other-Words-77"
DRIVE = pathlib.Path(LIVE["STATE"]) / "srv/d"


def prepare():
    set_up(FIRST, "%first%", ("UM", "CreateShares", "Yes"), ("UM", "SetPermissions", "Yes"), ("UM", "RunCmd", "No"),
           ("UM", "MailAccount", "No"))
    twk("site", "add", "Head Office", "--nt-server", "DC1" if IS_AD else LIVE["SERVER"])
    if IS_AD:
        twk("ou", "create", "Movers")
    twk("template", "add", "Staff", "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path", r"D:\Users\%UserName%",
        "--home-share", "%UserName%$", "--home-drive", "H:", "--group", "Domain Users", "--primary-group", "Domain Users")
    twk("template", "add", "Away", "--home-dir", r"\\%Server%\%UserName%.away$", "--home-dir-path", r"D:\Profiles\%UserName%",
        "--home-share", "%UserName%.away$", "--group", "Domain Users", "--primary-group", "Domain Users")
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    twk("table", "set", "share-permissions", text="%UserName%,Full Control\nEveryone,Full Control\n")


def create(name):
    place = ["--ou", "OU=Movers,DC=twk,DC=test"] if IS_AD else []
    twk("user", "create", name, "Smith", "--template", "Staff", "--site", "Head Office", *place)
    home = DRIVE / "Users" / name.capitalize()
    if not home.is_dir():
        sys.exit(f"no home at {home}: {sorted(path.name for path in (DRIVE / 'Users').iterdir())}")
    (home / "letter.txt").write_text("kept")
    return home


def shown(name):
    """What another tool says about an account; nothing when there is none."""
    tool = ("samba-tool", "user", "show", name) if IS_AD else ("pdbedit", "-v", "-u", name)
    return run(*tool, "-s", CONF, codes=None).stdout


def rename_and_delete():
    twk("settings", "set", "Setup", "Password", text=SECOND)
    home = create("Rena")
    twk("--yes", "user", "reset-password", "Rena")
    expect("pwdLastSet: 0" if IS_AD else "Password must change: 0", "Rena has to change the password", shown("Rena"))

    twk("--yes", "user", "delete", "Rena", "--account", "--data", "--no-prompting", "--dry-run")
    if not home.is_dir() or not shown("Rena"):
        failures.append("a rehearsal deleted something")
    if IS_AD:
        foreseen = twk("user", "rename", "Rena", "--logon", "Guest", "--dry-run", codes=(2,))
        expect("in use", "the rehearsed name of another", foreseen.stdout + foreseen.stderr)
    twk("--yes", "user", "rename", "Rena", "--full-name", "Nora Smith", "--logon", "Nora", "--rename-dirs")
    # A folder has the common name of its user, or where there is none the account's.
    renamed = DRIVE / "Users" / ("Nora Smith" if IS_AD else "Nora")
    if not (renamed / "letter.txt").is_file():
        failures.append("the home was not renamed with its file")
    expect("CN=Nora Smith," if IS_AD else "Full Name:            Nora Smith", "the renamed account", shown("Nora"))
    twk("--yes", "user", "delete", "Nora", "--account", "--shares", "--data", "--no-prompting")
    if shown("Nora") or renamed.exists():
        failures.append("Nora, or her home, is still there")

    gone = create("Dora")
    twk("--yes", "user", "delete", "Dora", "--account", "--data", "--take-ownership", "--no-prompting")
    if shown("Dora") or gone.exists():
        failures.append(f"Dora is still there: {gone.exists()}\n{shown('Dora')}")


def move():
    """To another place of the same server, from one share to another."""
    home = create("Mona")
    twk("--yes", "user", "move", "Mona", "--site", "Head Office", "--template", "Away", "--data", "move", "--no-prompt",
        "--dry-run")
    if not (home / "letter.txt").is_file() or (DRIVE / "Profiles/Mona").exists():
        failures.append("a rehearsal moved something")
    # The second one finds all where it is to be.
    for _ in range(2):
        twk("--yes", "user", "move", "Mona", "--site", "Head Office", "--template", "Away", "--data", "move", "--no-prompt")
    if home.exists() or not (DRIVE / "Profiles/Mona/letter.txt").is_file():
        failures.append("the home was not moved with its file")
    expect("\\Mona.away$", "the account that was moved", shown("Mona"))


def delete_profiles():
    """Of Mona's, which holds her letter, and on a workstation."""
    server = "DC1" if IS_AD else LIVE["SERVER"]
    twk("user", "set", "Mona", rf"profile=\\{server}\Mona.away$\Desk")
    desk = DRIVE / "Profiles/Mona/Desk"
    local = pathlib.Path("/Documents and Settings/Mona")
    for folder in (desk, local):
        folder.mkdir(parents=True)
        (folder / "NTUSER.DAT").write_text("settings")
    twk("--yes", "profile", "delete", "Mona")
    twk("--yes", "profile", "delete", "Mona", "--workstation", server, "--kind", "w2k")
    if desk.exists() or local.exists() or not (DRIVE / "Profiles/Mona/letter.txt").is_file():
        failures.append(f"profiles: {desk.exists()} {local.exists()}")


go_through(prepare, rename_and_delete, move, delete_profiles)
