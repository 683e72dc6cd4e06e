#!/usr/bin/python3
"""Copies the domain that with-domain started into a lab, compares it with what others' tools tell, and rehearses in it.

    tests/live/with-domain ad -- tests/live/copy_test.py TWK
"""

import base64
import json
import pathlib
import stat
import sys
import tempfile

from live_tools import CONF, LIVE, TWK, at_home, expect, expect_same, failures, run, twk

UNIT = "OU=Copied\\, too,DC=twk,DC=test"
PASSWORD = "Welcome-2-Work"
PHOTO = b"\xff\xd8a picture that nobody asked for"


def ldap_values(filter_text, attribute):
    """Values of an attribute, as text, of all entries of the domain that fit."""
    done = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-o", "ldif-wrap=no", "-E", "pr=1000/noprompt", "-H",
               f"ldap://{LIVE['SERVER']}", "-b", "DC=twk,DC=test", filter_text, attribute)
    found = []
    for line in done.stdout.splitlines():
        kind, _, value = line.partition(": ")
        if kind == attribute:
            found.append(value)
        elif kind == attribute + ":":
            found.append(base64.b64decode(value).decode(errors="replace"))
    return found


def prepare():
    run("samba-tool", "ou", "delete", UNIT, "--force-subtree-delete", "-s", CONF, codes=None)
    run("samba-tool", "group", "delete", "Copied Group", "-s", CONF, codes=None)
    run("samba-tool", "ou", "create", UNIT, "-s", CONF)
    for name in ("cp.free", "cp.bound", "zo\u00eb.cp"):
        run("samba-tool", "user", "create", name, PASSWORD, "--userou", "OU=Copied\\, too", "-s", CONF)
    run("samba-tool", "computer", "create", "PC9", "-s", CONF, codes=None)
    run("samba-tool", "group", "add", "Copied Group", "-s", CONF)
    run("samba-tool", "group", "addmembers", "Copied Group", "cp.free,zo\u00eb.cp", "-s", CONF)
    twk("user", "set", "cp.bound", "cantChange=yes", "expires=2031-04-05", "description=bound, \u00fcber alles")
    twk("user", "set", "cp.free", "home=\\\\FS7\\Users\\cp.free", "disabled=yes")
    photo = base64.b64encode(PHOTO).decode()
    photo = f"dn: CN=cp.free,{UNIT}\nchangetype: modify\nreplace: jpegPhoto\njpegPhoto:: {photo}\n"
    run("ldapmodify", "-Q", "-N", "-Y", "GSSAPI", "-H", f"ldap://{LIVE['SERVER']}", text=photo)


def in_copy(lab, *arguments, **options):
    return run(TWK, "--lab", lab, "--json", *arguments, **options)


def same_as_the_domain(lab, told):
    users = ldap_values("(&(objectCategory=person)(objectClass=user))", "sAMAccountName")
    groups = ldap_values("(objectClass=group)", "sAMAccountName")
    expect_same((told["users"], told["groups"]), (len(users), len(groups)), "users and groups of the copy")
    listed = [json.loads(line) for line in in_copy(lab, "user", "list").stdout.splitlines()]
    expect_same(len(listed), len(users), f"users that the copy lists ({listed[:2]})")
    for name in ("cp.free", "cp.bound", "zo\u00eb.cp"):
        real = json.loads(twk("--json", "user", "show", name).stdout)
        expect_same(json.loads(in_copy(lab, "user", "show", name).stdout), real, f"{name} in the copy")
    bound = json.loads(in_copy(lab, "user", "show", "cp.bound").stdout)
    expect_same((bound["cannotChangePassword"], bound["description"]), (True, "bound, \u00fcber alles"), "cp.bound")
    members = in_copy(lab, "group", "members", "Copied Group").stdout
    for name in ("cp.free", "zo\u00eb.cp"):
        expect(name, "the members of the copied group", members)


def nothing_secret(lab):
    path = pathlib.Path(lab, "domain.ldif")
    text = path.read_text(encoding="utf-8")
    for name in ("unicodePwd", "supplementalCredentials", "ntPwdHistory", "jpegPhoto", "nTSecurityDescriptor", "PC9"):
        expect_same(name.lower() in text.lower(), False, f"{name} in the copy")
    expect_same(stat.S_IMODE(path.stat().st_mode), 0o600, "mode of the copy")


def refused_folders(lab):
    before = sorted(str(path) for path in pathlib.Path(lab).rglob("*"))
    done = twk("lab", "import", "--live", lab, codes=None)
    expect_same(done.returncode == 0, False, "a second copy into the same folder")
    expect("is not an empty folder", "the words for it", done.stderr)
    expect_same(sorted(str(path) for path in pathlib.Path(lab).rglob("*")), before, "what the refused copy left")


def rehearse(lab):
    for setting in (("Setup", "SetupID", "%first%"), ("UM", "CreateShares", "No"), ("UM", "SetPermissions", "No"),
                    ("UM", "CreateDirs", "No"), ("UM", "RunCmd", "No"), ("UM", "MailAccount", "No")):
        in_copy(lab, "settings", "set", *setting)
    in_copy(lab, "settings", "set", "Setup", "Password", text=PASSWORD)
    in_copy(lab, "site", "add", "Head Office", "--nt-server", "DC1")
    in_copy(lab, "template", "add", "Staff", "--group", "Copied Group", "--group", "Domain Users", "--primary-group",
            "Domain Users")
    in_copy(lab, "user", "create", "Rehearsed", "Only", "--template", "Staff", "--site", "Head Office", "--ou", UNIT)
    expect("Rehearsed", "the members after the rehearsal", in_copy(lab, "group", "members", "Copied Group").stdout)
    in_copy(lab, "--yes", "user", "delete", "cp.free", "--account", "--no-prompting")
    expect_same(sorted(ldap_values("(memberOf=CN=Copied Group,CN=Users,DC=twk,DC=test)", "sAMAccountName")),
                ["cp.free", "zo\u00eb.cp"], "the real group after the rehearsal")


def main():
    with tempfile.TemporaryDirectory() as home:
        at_home(home)
        prepare()
        lab = home + "/copy"
        told = json.loads(twk("--json", "lab", "import", "--live", lab).stdout)
        same_as_the_domain(lab, told)
        nothing_secret(lab)
        refused_folders(lab)
        rehearse(lab)
    if failures:
        sys.exit("\n".join(failures) + f"\n{len(failures)} failures")
    print(f"The copy of {told['users']} users is theirs.")


main()
