#!/usr/bin/python3
"""Runs the commands for many users against the domain that with-domain started, and looks at the accounts with others'
tools.

    tests/live/with-domain ad|nt -- tests/live/accounts_test.py TWK
"""

import json
import subprocess
import threading
import time

from live_tools import (CONF, IS_AD, LIVE, admin_logon, expect_same as expect, go_through, ldap_values, log_on, run, twk,
                        twk_command)

UNIT = "OU=Many Users,DC=twk,DC=test"
FIRST = "Welcome-2-Work"
SECOND = "Other-Words-77"
BATCH = 200


def users(*arguments, text=None, codes=(0,)):
    """A run of `twk users`: the outcome of each user by name, and the counts."""
    done = twk("--json", "users", *arguments, text=text, codes=codes)
    rows = [json.loads(line) for line in done.stdout.splitlines()]
    return {row["user"]: row.get("light") for row in rows if "user" in row}, rows[-1] if rows else {}, done.stderr


def admin():
    return ("-S", LIVE["SERVER"], "-U", admin_logon())


def make(name):
    if IS_AD:
        run("samba-tool", "user", "create", name, FIRST, "--userou", "OU=Many Users", "-s", CONF)
    else:
        run("net", "rpc", "user", "add", name, FIRST, *admin())


def flags(name):
    """The letters that pdbedit shows for an account: D disabled, L locked, X the password does not expire."""
    shown = run("pdbedit", "-v", "-u", name, "-s", CONF).stdout
    line = next(line for line in shown.splitlines() if line.startswith("Account Flags"))
    return set(line.split("[")[1].split("]")[0].replace(" ", "")) - {"U"}


def may_log_on(name, password, wanted, what):
    expect(log_on(name, password).returncode == 0, wanted, f"logon of {name} {what}")


def attribute(name, wanted):
    return ldap_values(f"(sAMAccountName={name})", wanted)


def lock(name):
    for _ in range(4):
        log_on(name, "no such password")


def prepare():
    if IS_AD:
        run("samba-tool", "ou", "delete", UNIT, "--force-subtree-delete", "-s", CONF, codes=None)
        run("samba-tool", "group", "delete", "Many", "-s", CONF, codes=None)
        run("samba-tool", "ou", "create", UNIT, "-s", CONF)
        run("samba-tool", "computer", "create", "PC7", "--computerou", "OU=Many Users", "-s", CONF, codes=None)
        run("samba-tool", "domain", "passwordsettings", "set", "--account-lockout-threshold=3", "-s", CONF)
        run("samba-tool", "group", "add", "Many", "-s", CONF)
    else:
        run("pdbedit", "-P", "bad lockout attempt", "-C", "3", "-s", CONF)
        run("net", "rpc", "group", "delete", "Many", *admin(), codes=None)
        run("net", "rpc", "group", "add", "Many", *admin(), codes=None)
    for name in ("mu1", "mu2", "mu3", "mu4"):
        if not IS_AD:
            run("net", "rpc", "user", "delete", name, *admin(), codes=None)
        make(name)


def join(name):
    if IS_AD:
        run("samba-tool", "group", "addmembers", "Many", name, "-s", CONF)
    else:
        twk("user", "groups", name, "--add", "Many")


def switch_accounts():
    join("mu1")
    join("mu2")
    told, counts, _ = users("disable", "mu3", "--group", "Many", "nobody-there", codes=(1,))
    expect(told, {"mu1": "GREEN", "mu2": "GREEN", "mu3": "GREEN"}, "users disable")
    expect(counts["unknown"], 1, "unknown names")
    for name in ("mu1", "mu2", "mu3"):
        expect("D" in flags(name), True, f"{name} is disabled")
        may_log_on(name, FIRST, False, "while disabled")
    if IS_AD:
        told, _, _ = users("enable", "--ou", UNIT)
        expect("PC7" in told, False, "a computer is not a user of its unit")
        expect(len(told), 4, "users right in the unit")
    else:
        users("enable", "mu1", "mu2", "mu3")
    may_log_on("mu1", FIRST, True, "once enabled")


def change_passwords():
    users("password-never-expires", "mu1", "mu2")
    expect("X" in flags("mu1"), True, "mu1's password does not expire")
    users("password-expires", "mu1")
    expect("X" in flags("mu1"), False, "mu1's password expires")
    expect("X" in flags("mu2"), True, "mu2's password still does not expire")
    users("reset-password", "mu1", "--password-stdin", text=SECOND + "\n")
    if IS_AD:
        # An NT4-style Samba lets an administrator set any password.
        users("reset-password", "mu2", "--password-stdin", text="x\n", codes=(2,))
        expect(attribute("mu1", "pwdLastSet"), [b"0"], "mu1 must change the password")
    may_log_on("mu1", FIRST, False, "with the old password")


def unlock_accounts():
    lock("mu3")
    if IS_AD:
        expect(attribute("mu3", "lockoutTime") not in ([], [b"0"]), True, "mu3 is locked")
    else:
        expect("L" in flags("mu3"), True, "mu3 is locked")
    told, _, errors = users("find-locked")
    expect("mu3" in told or any("mu3" in name for name in told), True, f"find-locked reports mu3 ({errors})")
    may_log_on("mu3", FIRST, False, "while locked")
    users("unlock", "mu3")
    may_log_on("mu3", FIRST, True, "once unlocked")


def find_expired():
    twk("user", "set", "mu2", "expires=31/12/2020")
    done = twk("--json", "users", "find-expired", "--before", "2021-01-01")
    expect([json.loads(line)["user"] for line in done.stdout.splitlines()], ["mu2"], "find-expired")


def make_many(names):
    """Accounts without a password, which are disabled, all at once."""
    ldif = "".join(f"dn: CN={name},{UNIT}\nobjectClass: user\nsAMAccountName: {name}\n\n" for name in names)
    run("ldapadd", "-Q", "-N", "-Y", "GSSAPI", "-H", f"ldap://{LIVE['SERVER']}", text=ldif)


def lasting_passwords():
    """Names of the accounts whose password does not expire (bit 0x10000)."""
    return {name.decode() for name in ldap_values("(userAccountControl:1.2.840.113556.1.4.803:=65536)", "sAMAccountName", UNIT)}


def lose_the_server(names):
    """The controller restarts in the middle of a batch: the rest continues, and each row reports its outcome."""
    process = subprocess.Popen(
        twk_command("--json", "users", "password-never-expires", "--from-file", "-"), stdin=subprocess.PIPE,
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    process.stdin.write("\n".join(names) + "\n")
    process.stdin.close()
    rows = []
    restart = None
    for line in process.stdout:
        rows.append(json.loads(line))
        if len(rows) == 40:
            run(LIVE["CONTROL"], "stop")
            restart = threading.Thread(target=lambda: (time.sleep(1), run(LIVE["CONTROL"], "start")))
            restart.start()
    restart.join()
    code = process.wait(timeout=120)
    told = {row["user"]: row["light"] for row in rows if "user" in row}
    expect(len(told), len(names), "users reported")
    done = [name for name, light in told.items() if light == "GREEN"]
    expect(len(done) >= len(names) - 1, True, f"the rest went on ({len(done)} done, {process.stderr.read()})")
    expect(code, 0 if len(done) == len(names) else 1, "exit code")
    lasting = lasting_passwords()
    wrong = [name for name in names if (name in lasting) != (told.get(name) == "GREEN")]
    expect(wrong, [], "rows that do not tell what is in the directory")


def run_over_many():
    many = [f"batch{i}" for i in range(BATCH)]
    make_many(many)
    lose_the_server(many)


def delete_accounts():
    if IS_AD:
        users("delete", "--ou", UNIT, "--account", "--no-prompting")
        expect(run("samba-tool", "ou", "listobjects", UNIT, "-s", CONF).stdout.split(), ["CN=PC7,OU=Many", "Users"],
               "what a deletion by unit leaves")
    else:
        users("delete", "mu1", "mu2", "mu3", "mu4", "--account", "--no-prompting")
        expect(run("pdbedit", "-u", "mu1", "-s", CONF, codes=None).returncode != 0, True, "mu1 is gone")


go_through(prepare, switch_accounts, change_passwords, unlock_accounts, find_expired, *([run_over_many] if IS_AD else []),
           delete_accounts, superuser=False)
