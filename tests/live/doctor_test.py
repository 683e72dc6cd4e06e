#!/usr/bin/python3
"""Looks at the domain that with-domain started, at its file server and at what was delegated, and works without its
global catalogue.

    tests/live/with-domain ad -- tests/live/doctor_test.py TWK
"""

import contextlib
import functools
import json
import pathlib
import signal
import socket
import subprocess
import threading

from live_tools import CONF, LIVE, TWK, admin_logon, expect, expect_same, go_through, ldap_values, log_on, run, set_up, twk, twk_command

UNIT = "OU=Delegated,DC=twk,DC=test"
PASSWORD = "Read-0nly-pls"
LOCKOUT_TIME = "28630ebf-41d5-11d1-a9c1-0000f80367c1"
USERS = "bf967aba-0de6-11d0-a285-00aa003049e2"
RESET = "(OA;CIIO;CR;00299570-246d-11d0-a768-00aa006e0529;" + USERS + ";SID)"
PASSWORD_TIME = "(OA;CIIO;WP;bf967a0a-0de6-11d0-a285-00aa003049e2;" + USERS + ";SID)"
ALL = "(A;CI;GA;;;SID)"
# What is delegated in a unit, what is in the lists of its users, and what can be done with those.
DELEGATIONS = {
    "Nothing": ("", "", ()),
    "Creating": (f"(OA;CI;CC;{USERS};;SID)(OA;CIIO;WP;;{USERS};SID)", "", ("ts", "expires")),
    "Resetting": (RESET + PASSWORD_TIME, "", ("reset",)),
    "Removing": (f"(OA;CI;DC;{USERS};;SID)", "", ("delete",)),
    "Deleting": (f"(OA;CIIO;SDWP;;{USERS};SID)", "", ("delete", "ts", "move", "expires")),
    "Denied": (ALL + f"(OD;;DC;{USERS};;SID)", "(D;;SDCRWP;;;SID)", ()),
    "All": (ALL, "", ("delete", "reset", "ts", "move", "expires", "cannot")),
}
RELAY = "127.0.0.5"
SILENT = "127.0.0.9"


def samba(*arguments):
    return run("samba-tool", *arguments, "-s", CONF).stdout


def steps(*arguments, codes=(0,), who=()):
    command = [TWK, "--domain", LIVE["DOMAIN"], "--server", LIVE["SERVER"], *who, "--json", "doctor", *arguments]
    told = run(*command, codes=codes, env={"TWK_LOGON_PASSWORD": PASSWORD} if who else None)
    return {row["step"]: (row["outcome"], row["detail"]) for row in map(json.loads, told.stdout.splitlines())}


@functools.cache
def sid_of_helper():
    return samba("user", "show", "helper", "--attributes", "objectSid").split("objectSid: ")[1].split()[0]


def delegate(dn, sddl):
    samba("dsacl", "set", f"--objectdn={dn}", "--sddl=" + sddl.replace("SID", sid_of_helper()), "-H",
          LIVE["STATE"] + "/domain/private/sam.ldb")


def prepare():
    samba("ou", "create", UNIT)
    samba("user", "create", "helper", PASSWORD)
    samba("user", "create", "inside", PASSWORD, "--userou", "OU=Delegated")
    delegate(f"CN=inside,{UNIT}", f"(OA;;WP;{LOCKOUT_TIME};;SID)")


def look_at_servers():
    twk("template", "add", "Pupil", "--home-dir", r"\\%Server%\Users\%UserName%", "--home-dir-path", r"D:\Pupils\%UserName%",
        "--home-drive", "H:", "--group", "Domain Users", "--primary-group", "Domain Users")
    outcome, detail = steps(codes=(1,))["file server DC1"]
    expect_same(outcome, "warning", "without folder and share")
    expect(r"there is no folder \\DC1\D$\Pupils", "doctor", detail)
    expect("there is no share Users", "doctor", detail)
    pathlib.Path(LIVE["STATE"], "srv/d/Pupils").mkdir()
    twk("share", "add", "DC1", "Users", r"D:\Users")
    expect_same(steps()["file server DC1"][0], "passed", "with folder and share")


def look_at_share_rights():
    """What a server would refuse is said before anything is made, and each remedy that is named helps further. Nobody
    has looked at shares as the superuser before: the server's process then has the lists open for everyone."""
    expect_same(steps()["file servers"][0], "skipped", "without a site")
    twk("site", "add", "School", "--nt-server", "DC1")
    set_up(PASSWORD, "%first%", ("UM", "RunCmd", "No"), ("UM", "MailAccount", "No"))
    twk("table", "set", "share-permissions", text="%UserName%,Full Control\n")
    twk("template", "add", "Own", "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path", r"D:\Users\%UserName%",
        "--home-share", "%UserName%$", "--home-drive", "H:", "--group", "Domain Users", "--primary-group", "Domain Users")
    pathlib.Path("two.csv").write_text("Ann,,Smith\nJo,,Smith\n", encoding="utf-8")
    refuse_shares("does not let this account make shares")
    run("net", "rpc", "rights", "grant", "TWK\\helper", "SeDiskOperatorPrivilege", "-S", LIVE["SERVER"], "-U", admin_logon())
    refuse_shares("stores them for its superuser alone")


def refuse_shares(reason):
    who = ("--user", "helper")
    expect(reason, "doctor", steps(codes=(1,), who=who)["file server DC1"][1])
    place = ("--template", "Own", "--site", "School")
    for order in (("create", "Ann", "Smith", "--ou", UNIT), ("import", "two.csv", "--skip-prompts", "--ou", UNIT),
                  ("move", "inside", "--data", "nothing")):
        for rehearsed in ((), ("--dry-run",)):
            told = run(TWK, "--domain", LIVE["DOMAIN"], "--server", LIVE["SERVER"], *who, "user", *order, *place, *rehearsed,
                       codes=(2,), env={"TWK_LOGON_PASSWORD": PASSWORD})
            expect(reason, f"{order[0]} {rehearsed}", told.stdout + told.stderr)
    expect_same([path.name for path in pathlib.Path(LIVE["STATE"], "srv/d/Users").iterdir()], [], "folders of refused users")
    expect_same(ldap_values("(homeDirectory=*)", "cn"), [], "users who were moved")
    expect_same(ldap_values("(sAMAccountName=Ann*)", "cn"), [], "accounts of refused users")


def look_at_rights():
    expect_same(steps("--ou", UNIT)["rights"][0], "passed", "an administrator's rights")
    who = ("--user", "helper")
    expect_same(steps(codes=(1,), who=who)["rights"][0], "warning", "a helper's rights")
    outcome, detail = steps("--ou", UNIT, who=who)["rights"]
    expect_same(outcome, "passed", "what was delegated")
    expect("may unlock a user there, but not enable and disable", "rights", detail)
    expect("there is no OU=Nowhere", "rights", steps("--ou", "OU=Nowhere,DC=twk,DC=test", codes=(2,))["rights"][1])


def as_helper(*order):
    done = run(TWK, "--domain", LIVE["DOMAIN"], "--server", LIVE["SERVER"], "--user", "helper", "--yes", *order, codes=None,
               env={"TWK_LOGON_PASSWORD": PASSWORD})
    return done.returncode, done.stdout + done.stderr


def add(ldif):
    run("ldapadd", "-Q", "-N", "-Y", "GSSAPI", "-H", f"ldap://{LIVE['SERVER']}", text=ldif)


def foresee_rights():
    """A rehearsal refuses what the directory will not let the helper do; what was delegated is enough for its command."""
    twk("template", "add", "Plain", "--group", "Domain Users", "--primary-group", "Domain Users")
    samba("group", "add", "Choir")
    for order in (("user", "create", "Ann", "Smith", "--template", "Plain", "--site", "School", "--ou", UNIT),
                  ("user", "set", "inside", "description=Clerk"), ("users", "disable", "inside"),
                  ("users", "set-attribute", "title", "Clerk", "inside"), ("user", "groups", "inside", "--add", "Choir"),
                  ("user", "rename", "inside", "--logon", "other"), ("user", "move-ou", "inside", "CN=Users,DC=twk,DC=test"),
                  ("ou", "create", "Below", "--under", UNIT), ("group", "add-member", "Choir", "inside")):
        foreseen, done = as_helper(*order, "--dry-run"), as_helper(*order)
        expect_same((foreseen[0], done[0] != 0), (done[0], True), f"rehearsal and run of {order}: {foreseen} {done}")
        expect("too few rights", f"rehearsal of {order}", foreseen[1])
    samba("domain", "passwordsettings", "set", "--account-lockout-threshold=3")
    for _ in range(4):
        log_on("inside", "no such password")
    expect_same(ldap_values("(&(cn=inside)(lockoutTime>=1))", "cn"), [b"inside"], "who is locked")
    expect_same([as_helper("users", "unlock", "inside", *how)[0] for how in (("--dry-run",), ())], [0, 0], "unlock")
    expect_same(ldap_values("(lockoutTime>=1)", "cn"), [], "who is locked after that")


def refused(*order):
    """Those among the users of the order for whom the helper has too few rights."""
    told = as_helper("--json", *order)[1]
    rows = [json.loads(line) for line in told.splitlines() if line.startswith("{")]
    return {row["user"] for row in rows if row.get("light") == "RED" and "too few rights" in str(row)}


def foresee_by_lists():
    """So does one of what only the access lists say: who deletes accounts, moves them away, gives them new passwords.
    None of these has a principal name, which a server may refuse to clear."""
    target = "OU=Target,DC=twk,DC=test"
    orders = {"delete": ("users", "delete", "--account"), "reset": ("users", "reset-password"), "move": ("users", "move-ou", target),
              "ts": ("users", "set-attribute", "WTSAllowLogonTerminalServer", "no"), "expires": ("user", "set", "expires=2031-01-01"),
              "cannot": ("user", "set", "cantChange=yes")}
    for unit, (here, below, _) in {"Target": (f"(OA;CI;CC;{USERS};;SID)", "", ()), **DELEGATIONS}.items():
        dn = f"OU={unit},DC=twk,DC=test"
        users = [f"CN={unit}.{order},{dn}" for order in orders] if unit != "Target" else []
        add(f"dn: {dn}\nobjectClass: organizationalUnit\n")
        if here:
            delegate(dn, here)
        add("\n".join(f"dn: {user}\nobjectClass: user\nsAMAccountName: {user[3:].partition(',')[0]}\nuserAccountControl: 544\n"
                      for user in users))
        for user in users if below else ():
            delegate(user, below)
    for order, words in orders.items():
        for units in ([unit] for unit in ("Creating", "All")) if words[0] == "user" else (list(DELEGATIONS),):
            names = [f"{unit}.{order}" for unit in units]
            whole = (*words[:2], *names, *words[2:]) if words[0] == "user" else (*words, *names)
            wanted = {f"{unit}.{order}" for unit in units if order not in DELEGATIONS[unit][2]}
            expect_same((refused(*whole, "--dry-run"), refused(*whole)), (wanted, wanted), f"who is refused by {whole}")
    for unit, may in (("Nothing", ""), ("Resetting", "give a new password to"), ("Removing", "delete")):
        told = steps("--ou", f"OU={unit},DC=twk,DC=test", who=("--user", "helper"), codes=(0, 1))["rights"][1]
        expect(f"; may {may} a user there, but not" if may else "too few rights to create users", f"rights in {unit}", told)


def ask_a_silent_server():
    """It takes connections and never answers; Ctrl-C ends the wait for it."""
    pathlib.Path("/etc/hosts").open("a", encoding="utf-8").write(f"{SILENT} mute\n")
    twk("site", "add", "Far", "--nt-server", "MUTE")
    create = ("user", "create", "--template", "Pupil", "--site", "Far", "--ou", UNIT, "Una", "Heard")
    for command, code, words in ((("--json", "doctor"), 1, '"detail":"stopped"'),
                                 (create, 2, "Stopped while waiting for an answer of MUTE")):
        with (socket.create_server((SILENT, 445)) as silent,
              subprocess.Popen(twk_command(*command), stdout=subprocess.PIPE, encoding="utf-8") as asking):
            asked = silent.accept()[0]
            asking.send_signal(signal.SIGINT)
            told = asking.communicate(timeout=20)[0]
            asked.close()
        expect_same(asking.returncode, code, f"exit code of a stopped {command}")
        expect(words, "what was stopped", told.splitlines()[-1])
    twk("--yes", "site", "delete", "Far")


def pass_on(source, target):
    with contextlib.suppress(OSError):
        while data := source.recv(65536):
            target.sendall(data)
        target.shutdown(socket.SHUT_WR)


def relay(port):
    listener = socket.create_server((RELAY, port))
    while True:
        client = listener.accept()[0]
        server = socket.create_connection(("127.0.0.1", port))
        for one, other in ((client, server), (server, client)):
            threading.Thread(target=pass_on, args=(one, other), daemon=True).start()


def work_without_catalogue():
    """The controller answers on the ports of the directory and of its files alone."""
    hosts = pathlib.Path("/etc/hosts")
    hosts.write_text(hosts.read_text(encoding="utf-8").replace("127.0.0.1 dc1", f"{RELAY} dc1"), encoding="utf-8")
    for port in (389, 445):
        threading.Thread(target=relay, args=(port,), daemon=True).start()
    outcome, detail = steps(codes=(1,))["catalogue"]
    expect_same(outcome, "warning", "a closed catalogue")
    expect("on port 3268", "catalogue", detail)
    told = twk("ou", "create", "Below", "--under", UNIT).stderr
    expect_same(told.count("does not answer on port 3268"), 1, f"how often a closed catalogue is told: {told}")
    expect("OU=Below,OU=Delegated", "the units", samba("ou", "list"))


go_through(prepare, look_at_share_rights, look_at_servers, look_at_rights, foresee_rights, foresee_by_lists, ask_a_silent_server, work_without_catalogue)
