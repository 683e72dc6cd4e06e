#!/usr/bin/python3
"""Imports that are rehearsed, killed, cut off from their server and taken back, in the domain that with-domain started.
What became of them is looked at with others' tools alone.

    tests/live/with-domain ad -- tests/live/broken_import_test.py TWK [POINTS [LINES]]
"""

import base64
import collections
import csv
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

from live_tools import CONF, LIVE, TWK, admin_logon, expect, expect_same, failures, go_through, ldap_entries, ldap_values, log_on, run, set_up, twk, twk_command
from many_names import ROWS, SCRIPTS, many_names

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
    rows = [json.loads(line) for line in told.split("\n") if line.startswith("{")]
    return [(row["line"], row["user"], row["light"]) for row in rows if "line" in row and "light" in row]


def same_rows(what, file, *more, template="Plain", codes=(0, 1, 2)):
    """What a dry run says of each line is what the run makes of it; nothing is made before. The rows of the run."""
    place = ["--template", template, *PLACE[2:], *more]
    before = ldap_values("(objectClass=*)", "distinguishedName")
    rehearsed = rows_of(twk("--json", "user", "import", file, *place, "--dry-run", codes=codes).stdout)
    expect_same(ldap_values("(objectClass=*)", "distinguishedName"), before, f"{what}: objects after the dry run")
    done = rows_of(twk("--json", "user", "import", file, *place, codes=codes).stdout)
    differing = [(foreseen, made) for foreseen, made in zip(rehearsed, done) if foreseen != made]
    expect_same((len(rehearsed), differing), (len(done), []), f"{what}: dry run and run")
    return done


def lights_of(rows):
    return [light for _, _, light in rows]


def look_at_accounts(what, names, rows):
    """The server has the account of each line that made one, with both names letter by letter, but for the capital that
    they begin with. Half of an account may be left of a line that is RED."""
    entries = ldap_entries("(objectClass=user)", "sAMAccountName", "name", "givenName", "sn", "userAccountControl", base=OU)
    found = {entry["sAMAccountName"][0].decode(): {kind: values[0].decode() for kind, values in entry.items()} for entry in entries}
    for (first, last), (number, user, light) in zip(names, rows):
        if light == "RED":
            continue
        entry = found.get(user, {})
        stored = entry.get("givenName", ""), entry.get("sn", "")
        wanted = first.strip(" "), last.strip(" ")
        expect_same([(text.casefold(), text[1:]) for text in stored], [(text.casefold(), text[1:]) for text in wanted],
                    f"{what}, line {number}: names of {user}")
        expect_same((entry.get("name"), entry.get("userAccountControl")), (user, "512"), f"{what}, line {number}: {user}")


def look_at_homes(users):
    """On the disk of the server and in its own list of shares."""
    on_disk = set(os.listdir(LIVE["STATE"] + "/srv/d/Users"))
    shares = run("net", "conf", "listshares", f"--configfile={CONF}").stdout.split("\n")
    expect_same(([user for user in users if user not in on_disk], [user for user in users if user + "$" not in shares]), ([], []),
                f"homes and shares, {shares}")


def rows_in_a_copy(file):
    """What an import makes of each line in a lab that is a copy of the domain."""
    twk("lab", "import", "--live", "copy")
    in_copy = [TWK, "--lab", "copy", "--db", str(pathlib.Path(os.environ["XDG_DATA_HOME"], "tarnwick/db"))]
    run(*in_copy, "settings", "import", "-", text=twk("settings", "export").stdout)
    return rows_of(run(*in_copy, "--json", "user", "import", file, "--template", "Plain", *PLACE[2:], codes=(0, 1, 2)).stdout)


def rehearse():
    """A dry run and the run after it, and a run in a copy of the domain: names of all kinds, shares and folders that are taken, a group that is gone, and what the
    domain requires of passwords."""
    run("samba-tool", "user", "create", "Al.Taken", "Welcome-2-Work", "-s", CONF)
    run("samba-tool", "computer", "create", "WS1", "-s", CONF)
    run("samba-tool", "contact", "create", "Contact Person", "--ou", "OU=New Starters", "-s", CONF)
    common = ("--group", "Domain Users", "--primary-group", "Domain Users")
    twk("template", "add", "Plain", *common, "--group", "Newcomers")
    lines = list(many_names())
    file = lines_file("rehearsed.csv", lines)
    in_copy = lights_of(rows_in_a_copy(file))
    rows = same_rows("names", file)
    lights = lights_of(rows)
    expect_same(in_copy, lights, "lights in a copy of the domain and here")
    expect_same((len(lights) >= 300, lights.count("GREEN") > 200, lights.count("RED") > 60), (True, True, True), f"rows {lights}")
    look_at_accounts("names", [(line.split(",") + ["", "", ""])[:3:2] for line in lines], rows)
    # A Kerberos server of Samba knows no names with characters beyond U+FFFF.
    for _, user, _ in [row for row in rows[:len(SCRIPTS)] if row[2] == "GREEN" and max(row[1]) <= "\uffff"][::6]:
        log_on(user, "Welcome-2-Work", (0,))

    with open("rows.csv", "w", encoding="utf-8", newline="") as sheet:
        csv.writer(sheet).writerows([("First", "Last", "Account"), *((*row, f"Row{number}") for number, row in enumerate(ROWS))])
    look_at_accounts("rows", ROWS, same_rows("rows", "rows.csv", "--csv", "--id", "Account"))

    twk("share", "add", "DC1", "Shared.Name$", r"D:\Profiles")
    pathlib.Path(LIVE["STATE"], "srv/d/Users/Here.Before").mkdir()
    shares = lines_file("shares.csv", ["Shared,,Name", "Here,,Before", "A|b,,Pipe", "Ж,,Share", "𠮷田,,家族", "(x),,$(id)", "A&b,,`id`", "e\u0301,,ß",
                                       "שלום,,ไทย", "100,,~"])
    rows = same_rows("shares", shares, template="Staff")
    expect_same("YELLOW" in lights_of(rows), True, "a share that is taken")
    look_at_homes([user for _, user, light in rows if light == "GREEN"])

    run("samba-tool", "group", "add", "Doomed", "-s", CONF)
    twk("template", "add", "Doomed", *common, "--group", "Doomed")
    run("samba-tool", "group", "delete", "Doomed", "-s", CONF)
    expect_same(lights_of(same_rows("group", lines_file("gone.csv", ["Gone,,Group"]), template="Doomed")), ["YELLOW"], "a group that is gone")

    for number, password in enumerate(("Sh-1", "nothing but small letters", "Enough-of-1-kind", "пароль-длинный-9")):
        twk("settings", "set", "Setup", "Password", text=password)
        rows = same_rows(password, lines_file("policy.csv", [f"Policy{number},,Smith"]))
        expect_same(lights_of(rows), ["YELLOW" if number < 2 else "GREEN"], f"the password {password}")
    twk("settings", "set", "Setup", "Password", text="Welcome-2-Work")

    run("samba-tool", "domain", "passwordsettings", "pso", "create", "Long", "1", "--min-pwd-length=20", "--min-pwd-age=0", "-s", CONF)
    run("samba-tool", "domain", "passwordsettings", "pso", "apply", "Long", "Al.Taken", "-s", CONF)
    for name in ("Al.Taken", "Policy3.Smith"):
        foretold, done = (twk("--yes", "user", "reset-password", name, "--password-stdin", *how, text="Enough-of-1-kind", codes=None).returncode
                          for how in (("--dry-run",), ()))
        expect_same((foretold, done), (2, 2) if name == "Al.Taken" else (0, 0), f"the rules of {name}")
    run("samba-tool", "domain", "passwordsettings", "pso", "delete", "Long", "-s", CONF)
    expect("(0 errors)", "the server's own check", run("samba-tool", "dbcheck", "-s", CONF, codes=None).stdout)


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
