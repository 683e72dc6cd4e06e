#!/usr/bin/python3
"""Asks for reports, nested groups and comparisons in the domain that with-domain started, changes groups, and looks with
the server's own tools.

    tests/live/with-domain ad -- tests/live/reports_test.py TWK
"""

import json
import time

from live_tools import CONF, expect, expect_same, go_through, ldap_values, log_on, run, twk

FIRST = "Welcome-2-Work"
UNIT = "OU=Reports,DC=twk,DC=test"
NAMES = ("r1", "r2", "r3", "r4")


def rows(*arguments, codes=(0,)):
    return [json.loads(line) for line in twk("--json", *arguments, codes=codes).stdout.splitlines()]


def samba(*arguments, codes=(0,)):
    return run("samba-tool", *arguments, "-s", CONF, codes=codes).stdout


def found(*arguments, key="user"):
    """Which of our users a report names."""
    return [row[key] for row in rows(*arguments) if row[key] in NAMES]


def prepare():
    samba("domain", "passwordsettings", "set", "--account-lockout-threshold=3", "--max-pwd-age=42")
    samba("ou", "create", UNIT)
    for name in NAMES:
        samba("user", "create", name, FIRST, "--userou", "OU=Reports")
    for group in ("rall", "rdrivers", "rnight", "rempty"):
        samba("group", "add", group)
    samba("group", "addmembers", "rall", "rdrivers")
    samba("group", "addmembers", "rdrivers", "rnight")
    samba("group", "addmembers", "rnight", "r1")
    samba("user", "setexpiry", "r2", "--days=10")
    for _ in range(4):
        log_on("r1", "no such password")
    log_on("r3", FIRST, codes=(0,))


def report():
    locked = [row for row in rows("users", "find-locked") if row["user"] == "r1"]
    expect_same([row["lockedSince"] is not None for row in locked], [True], "find-locked")
    expect_same(found("users", "find-expired", "--within", "30d"), ["r2"], "find-expired --within")
    expect_same(found("users", "find-expired"), [], "find-expired")
    expect_same(found("users", "find-never-logged-on"), ["r1", "r2", "r4"], "find-never-logged-on")
    expect_same(found("users", "find-password-expiring", "--within", "43d"), list(NAMES), "find-password-expiring")
    expect_same(found("users", "find-password-expiring"), [], "passwords within two weeks")
    expect_same(found("users", "find-inactive", "--days", "1"), [], "find-inactive --days 1")
    time.sleep(1)  # A time of logon counts by the second.
    expect_same(found("users", "find-inactive", "--days", "0"), ["r1", "r2", "r4", "r3"], "find-inactive --days 0")
    samba("user", "unlock", "r1")
    expect_same(found("users", "find-locked"), [], "find-locked after samba-tool unlocked")


def read_attributes():
    text = samba("user", "show", "r1")
    shown = rows("user", "show", "r1", "--all")[0]
    for name in ("objectSid", "objectGUID"):
        expect(f"{name}: {shown[name]}", "samba-tool user show", text)
    expect_same(shown["userAccountControl"], "normal account (512)", "flags")
    listed = rows("user", "list", "--ou", UNIT, "--columns", "name,ou,locked,msDS-KeyVersionNumber")
    expect_same([(row["name"], row["ou"], row["locked"]) for row in listed],
                [(name, UNIT, False) for name in NAMES], "user list --columns")


def follow_groups():
    expect_same([(row["name"], row["depth"]) for row in rows("group", "tree", "rall")],
                [("rall", 0), ("rdrivers", 1), ("rnight", 2)], "group tree")
    expect_same([(row["name"], row["via"]) for row in rows("group", "members", "rall", "--nested")], [("r1", "rnight")],
                "nested members")
    effective = [(row["name"], row["via"]) for row in rows("user", "groups", "r1", "--effective")]
    for wanted in (("rall", "rdrivers"), ("rnight", ""), ("Domain Users", ""), ("Users", "Domain Users")):
        expect_same(wanted in effective, True, f"effective group {wanted} in {effective}")
    empty = [row["name"] for row in rows("group", "find-empty")]
    expect_same([name in empty for name in ("rempty", "rall", "Domain Users")], [True, False, False], "find-empty")


def change_groups():
    rows("group", "rename", "rdrivers", "R Vans", "--dry-run")
    expect_same(ldap_values("(sAMAccountName=rdrivers)", "cn"), [b"rdrivers"], "after a rehearsal")
    rows("group", "rename", "rdrivers", "R Vans")
    expect_same(ldap_values("(sAMAccountName=R Vans)", "cn"), [b"R Vans"], "the new name")
    expect_same(rows("group", "rename", "R Vans", "rnight", codes=(2,))[0]["light"], "RED", "a name in use")
    rows("group", "set", "rall", "--scope", "universal", "--kind", "distribution")
    expect_same(ldap_values("(sAMAccountName=rall)", "groupType"), [b"8"], "scope and kind")
    expect_same(rows("group", "set", "rempty", "--scope", "local", codes=(2,))[0]["light"], "RED", "global to local")


def copy_and_compare():
    different = {(row["what"], row["first"], row["second"]) for row in rows("user", "diff", "r4", "r1")}
    expect_same(("group", "", "rnight") in different, True, f"user diff: {different}")
    samba("user", "move", "r1", "CN=Users,DC=twk,DC=test")
    steps = [row["step"] for row in rows("user", "copy", "r4", "--like", "r1", "--dry-run")]
    expect_same(len(steps), 2, f"steps: {steps}")
    done = rows("user", "copy", "r4", "--like", "r1")[0]
    expect_same((done["joined"], done["dn"]), (["rnight"], "CN=r4,CN=Users,DC=twk,DC=test"), "user copy")
    expect_same(sorted(samba("group", "listmembers", "rnight").split()), ["r1", "r4"], "members after a copy")
    expect_same(rows("user", "diff", "r4", "r1"), [], "a copy and its pattern")


go_through(prepare, report, read_attributes, follow_groups, change_groups, copy_and_compare)
