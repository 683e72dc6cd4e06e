#!/usr/bin/python3
"""Copies the domain that with-domain started into a lab, compares it with what others' tools tell, and rehearses in it.

    tests/live/with-domain ad -- tests/live/copy_test.py TWK
"""

import base64
import json
import pathlib
import stat

from live_tools import CONF, LIVE, TWK, expect, expect_same, go_through, ldap_values, run, twk

UNIT = "OU=Copied\\, too,DC=twk,DC=test"
PASSWORD = "Welcome-2-Work"
LAB = "copy"
PHOTO = b"\xff\xd8a picture that nobody asked for"


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


def in_copy(*arguments, **options):
    return run(TWK, "--lab", LAB, "--json", *arguments, **options)


def same_as_the_domain():
    told = json.loads(twk("--json", "lab", "import", "--live", LAB).stdout)
    users = ldap_values("(&(objectCategory=person)(objectClass=user))", "sAMAccountName")
    groups = ldap_values("(objectClass=group)", "sAMAccountName")
    expect_same((told["users"], told["groups"]), (len(users), len(groups)), "users and groups of the copy")
    listed = [json.loads(line) for line in in_copy("user", "list").stdout.splitlines()]
    expect_same(len(listed), len(users), f"users that the copy lists ({listed[:2]})")
    for name in ("cp.free", "cp.bound", "zo\u00eb.cp"):
        real = json.loads(twk("--json", "user", "show", name).stdout)
        expect_same(json.loads(in_copy("user", "show", name).stdout), real, f"{name} in the copy")
    bound = json.loads(in_copy("user", "show", "cp.bound").stdout)
    expect_same((bound["cannotChangePassword"], bound["description"]), (True, "bound, \u00fcber alles"), "cp.bound")
    members = in_copy("group", "members", "Copied Group").stdout
    for name in ("cp.free", "zo\u00eb.cp"):
        expect(name, "the members of the copied group", members)


def nothing_secret():
    path = pathlib.Path(LAB, "domain.ldif")
    text = path.read_text(encoding="utf-8")
    for name in ("unicodePwd", "supplementalCredentials", "dBCSPwd", "ntPwdHistory", "jpegPhoto", "nTSecurityDescriptor", "PC9"):
        expect_same(name.lower() in text.lower(), False, f"{name} in the copy")
    expect_same(stat.S_IMODE(path.stat().st_mode), 0o600, "mode of the copy")


def settings_of_the_domain():
    text = pathlib.Path(LAB, "lab.conf").read_text(encoding="utf-8")
    for line in ("netbios = TWK", "controller = DC1", "password.minimum_length = 7", "password.maximum_age = 42",
                 "lockout.duration = 30", "lockout.window = 30"):
        expect(line, "lab.conf of the copy", text)


def refused_folders():
    before = sorted(str(path) for path in pathlib.Path(LAB).rglob("*"))
    done = twk("lab", "import", "--live", LAB, codes=None)
    expect_same(done.returncode == 0, False, "a second copy into the same folder")
    expect("is not an empty folder", "the words for it", done.stderr)
    expect_same(sorted(str(path) for path in pathlib.Path(LAB).rglob("*")), before, "what the refused copy left")


def rehearse():
    for setting in (("Setup", "SetupID", "%first%"), ("UM", "CreateShares", "No"), ("UM", "SetPermissions", "No"),
                    ("UM", "CreateDirs", "No"), ("UM", "RunCmd", "No"), ("UM", "MailAccount", "No")):
        in_copy("settings", "set", *setting)
    in_copy("settings", "set", "Setup", "Password", text=PASSWORD)
    in_copy("site", "add", "Head Office", "--nt-server", "DC1")
    in_copy("template", "add", "Staff", "--group", "Copied Group", "--group", "Domain Users", "--primary-group",
            "Domain Users")
    in_copy("user", "create", "Rehearsed", "Only", "--template", "Staff", "--site", "Head Office", "--ou", UNIT)
    expect("Rehearsed", "the members after the rehearsal", in_copy("group", "members", "Copied Group").stdout)
    in_copy("--yes", "user", "delete", "cp.free", "--account", "--no-prompting")
    expect_same(sorted(ldap_values("(memberOf=CN=Copied Group,CN=Users,DC=twk,DC=test)", "sAMAccountName")),
                [b"cp.free", "zo\u00eb.cp".encode()], "the real group after the rehearsal")


go_through(prepare, same_as_the_domain, nothing_secret, settings_of_the_domain, refused_folders, rehearse)
