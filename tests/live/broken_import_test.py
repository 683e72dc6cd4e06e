#!/usr/bin/python3
"""Imports that are rehearsed, killed, cut off from their server and taken back, in the domain that with-domain started.
What became of them is looked at with others' tools alone.

    tests/live/with-domain ad -- tests/live/broken_import_test.py TWK [POINTS [LINES]]
"""

import base64
import collections
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time

from live_tools import CONF, LIVE, admin_logon, expect, expect_same, failures, go_through, ldap_values, run, set_up, twk, twk_command

POINTS = int(sys.argv[2]) if len(sys.argv) > 2 else 2
LINES = int(sys.argv[3]) if len(sys.argv) > 3 else 6
OU = "OU=New Starters,DC=twk,DC=test"
PLACE = ["--template", "Staff", "--site", "Head Office", "--ou", OU]
# Calls that carry requests to servers; the one that is made most is the one to be killed at.
SENDING = ("write", "writev", "sendto", "sendmsg")


def prepare():
    set_up("Welcome-2-Work", "9%first%.9%last%", ("Setup", "AltSetupID", "8%first%.8%last%%n%"),
           ("UM", "CreateShares", "Yes"), ("UM", "SetPermissions", "Yes"))
    twk("site", "add", "Head Office", "--nt-server", "DC1")
    twk("ou", "create", "New Starters")
    for group in ("Newcomers", "Choir"):
        run("samba-tool", "group", "add", group, "-s", CONF)
    twk("template", "add", "Staff", "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path", r"D:\Users\%UserName%",
        "--home-share", "%UserName%$", "--group", "Newcomers", "--group", "Domain Users", "--primary-group", "Domain Users")
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    twk("table", "set", "share-permissions", text="%UserName%,Full Control\n")


def lines_file(name, lines):
    path = pathlib.Path(name).absolute()
    path.write_text("".join(line + "\n" for line in lines), encoding="utf-8")
    return str(path)


def numbered(first):
    """A file of LINES people, and the names of their accounts."""
    people = [f"{first}{number},,Miller{number}" for number in range(LINES)]
    return lines_file(first + ".csv", people), {line.replace(",,", ".") for line in people}


def newest(what):
    """The newest file of that kind that an import wrote; none when there is none."""
    found = sorted(pathlib.Path.cwd().rglob(f"Import {what} - *"), key=lambda path: (path.stat().st_mtime_ns, path.name))
    return found[-1] if found else None


def accounts(first):
    """Names of the accounts of one file, and of all that hang together with it by mistake."""
    found = ldap_values(f"(&(objectClass=user)(sAMAccountName={first}*))", "sAMAccountName")
    return collections.Counter(name.decode() for name in found)


def check_whole(first, names, told):
    """Every person once, with group, home, share and access lists."""
    expect_same(accounts(first), collections.Counter(names), f"{told}: accounts")
    members = {name.decode() for name in
               ldap_values(f"(&(sAMAccountName={first}*)(memberOf=CN=Newcomers,CN=Users,DC=twk,DC=test))", "sAMAccountName")}
    expect_same(members, names, f"{told}: members of the group")
    shares = run("rpcclient", "-U", admin_logon(), LIVE["SERVER"], "-c",
                 ";".join(f'netsharegetinfo "{name}$" 502' for name in sorted(names))).stdout
    lists = re.split(r"FILENAME:", run("smbclient", "-U", admin_logon(), f"//{LIVE['SERVER']}/D$", "-c",
                                       f"showacls; cd Users; ls {first}*").stdout)
    acl_of = {entry.split("\n")[0].strip(): entry for entry in lists[1:]}
    sids = dict(sid_of(first))
    for name in sorted(names & sids.keys()):
        expect(f"\\Users\\{name}", f"{told}: share of {name}", shares)
        entry = acl_of.get(name, "no folder")
        expect(sids[name], f"{told}: access list of the home of {name}", entry)
    expect_same(acl_of.keys(), names, f"{told}: homes")


def sid_of(first):
    """Name and security identifier of the accounts of one file."""
    done = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-o", "ldif-wrap=no", "-H", f"ldap://{LIVE['SERVER']}", "-b",
               "DC=twk,DC=test", f"(sAMAccountName={first}*)", "sAMAccountName", "objectSid")
    for block in done.stdout.split("\n\n"):
        name, sid = re.search(r"^sAMAccountName: (.*)$", block, re.M), re.search(r"^objectSid:: (.*)$", block, re.M)
        if name and sid:
            yield name[1], readable_sid(sid[1])


def readable_sid(text):
    raw = base64.b64decode(text)
    parts = [int.from_bytes(raw[at:at + 4], "little") for at in range(8, len(raw), 4)]
    return "-".join(map(str, ["S", raw[0], int.from_bytes(raw[2:8], "big"), *parts]))


def rows_of(told):
    rows = [json.loads(line) for line in told.splitlines() if line.startswith("{")]
    return [(row["line"], row["user"], row["light"]) for row in rows if "line" in row and "light" in row]


def rehearse():
    """A dry run and the run after it, with names that are taken, that clash in the file, and that cannot be."""
    run("samba-tool", "user", "create", "Al.Taken", "Welcome-2-Work", "-s", CONF)
    file = lines_file("rehearsed.csv", ["Al,,Taken", "Bo,,Twice", "Bo,,Twice", "Cy,,Fine", "Only", "D/y,,S[lash", "Éva,,Ődön", ",,", "Bo,,Twice"])
    before = ldap_values("(objectClass=*)", "distinguishedName")
    rehearsed = rows_of(twk("--json", "user", "import", file, *PLACE, "--dry-run", codes=(0, 1, 2)).stdout)
    expect_same(ldap_values("(objectClass=*)", "distinguishedName"), before, "objects after the dry run")
    done = rows_of(twk("--json", "user", "import", file, *PLACE, codes=(0, 1, 2)).stdout)
    expect_same(rehearsed, done, "dry run and run")
    expect_same(len(done) >= 8, True, f"rows of the run {done}")


def most_sent(order):
    """The call that an import makes most to send something, and how often."""
    with tempfile.NamedTemporaryFile("r", errors="replace") as trace:
        run("strace", "-f", "-qq", "-o", trace.name, "-e", "trace=" + ",".join(SENDING), *order, codes=(0, 1))
        calls = collections.Counter(re.findall(r"^\d+ +(\w+)\(", trace.read(), re.M))
    return calls.most_common(1)[0]


def kill():
    file, names = numbered("Whole")
    call, count = most_sent(twk_command("--yes", "user", "import", file, *PLACE))
    check_whole("Whole", names, "undisturbed")
    for point in range(POINTS):
        when = (2 * point + 1) * count // (2 * POINTS)
        first = f"Point{point}x"
        file, names = numbered(first)
        # The files of an earlier import are none of this one's.
        before = newest("Record")
        order = twk_command("--yes", "user", "import", file, *PLACE)
        killed = run("strace", "-f", "-o", "/dev/null", "-e", f"trace={call}", "-e", f"inject={call}:signal=KILL:when={when}",
                     *order, codes=None)
        told = f"killed at {call} {when} of {count}"
        if killed.returncode == 0:
            failures.append(f"{told}: it came to its end")
        record = newest("Record")
        if record == before:
            twk("--yes", "user", "import", file, *PLACE, codes=(0, 1))
        else:
            check_remaining(first, names, told)
            resume(record, told)
        check_whole(first, names, told)
    print(f"import of {LINES} lines: killed at {POINTS} of {count} calls of {call}")


def check_remaining(first, names, told):
    remaining = {line.replace(",,", ".") for line in newest("Remaining").read_text(encoding="utf-8").splitlines() if line}
    made = set(accounts(first))
    expect_same(made | remaining, names, f"{told}: accounts and remaining lines")
    expect_same(len(made & remaining) <= 1, True, f"{told}: {made & remaining} are in both")


def resume(record, told):
    done = twk("--yes", "user", "import", "--resume", str(record), codes=None)
    if done.returncode not in (0, 1):
        failures.append(f"{told}: --resume ended with {done.returncode}\n{done.stdout}\n{done.stderr}")


def lose_the_server():
    """It ends in the middle of a run, and is started again."""
    file, names = numbered("Lost")
    before = newest("Record")
    with subprocess.Popen(twk_command("--yes", "user", "import", file, *PLACE), stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True) as running:
        wait_for(lambda: newest("Record") != before and '"ended"' in newest("Record").read_text(encoding="utf-8"))
        run(LIVE["CONTROL"], "stop")
        try:
            told, _ = running.communicate(timeout=120)
        except subprocess.TimeoutExpired:
            running.kill()
            failures.append("an import hangs without its server")
            told, _ = running.communicate()
    run(LIVE["CONTROL"], "start")
    check_remaining("Lost", names, f"server lost\n{told}")
    resume(newest("Record"), "server lost")
    check_whole("Lost", names, f"server lost\n{told}")


def wait_for(happens):
    for _ in range(600):
        if happens():
            return
        time.sleep(0.05)
    sys.exit("the import did not begin")


def undo():
    """What people did to the accounts meanwhile stays theirs."""
    file, names = numbered("Undone")
    twk("--yes", "user", "import", file, *PLACE, codes=(0, 1))
    check_whole("Undone", names, "before the undo")
    record = str(newest("Record"))
    renamed, filled, choral = (f"Undone{number}.Miller{number}" for number in range(3))
    run("samba-tool", "user", "rename", renamed, "--samaccountname=renamed", "--force-new-cn=Renamed Person", "-s", CONF)
    run("smbclient", "-U", admin_logon(), f"//{LIVE['SERVER']}/D$", "-c", f"cd Users/{filled}; mkdir Mine")
    run("samba-tool", "group", "addmembers", "Choir", choral, "-s", CONF)
    before = accounts("Undone")
    twk("--yes", "user", "import", "--undo", record, "--dry-run", codes=(0, 1))
    expect_same(accounts("Undone"), before, "accounts after the dry run of an undo")
    told = twk("--yes", "user", "import", "--undo", record, codes=(0, 1))
    expect_same(accounts("Undone"), collections.Counter(), "accounts after an undo")
    expect_same(ldap_values("(sAMAccountName=renamed)", "sAMAccountName"), [], "the renamed account after an undo")
    left = run("smbclient", "-U", admin_logon(), f"//{LIVE['SERVER']}/D$", "-c", "cd Users; ls Undone*", codes=None).stdout
    expect_same(set(re.findall(r"Undone\d+\.Miller\d+", left)), {filled}, f"homes after an undo\n{told.stdout}{told.stderr}")
    expect(filled, "what an undo tells", told.stdout + told.stderr)
    shares = run("rpcclient", "-U", admin_logon(), LIVE["SERVER"], "-c", "netshareenumall").stdout
    expect_same(set(re.findall(r"Undone\d+\.Miller\d+\$", shares)), set(), "shares after an undo")


go_through(prepare, rehearse, kill, lose_the_server, undo)
