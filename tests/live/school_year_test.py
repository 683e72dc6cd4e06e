#!/usr/bin/python3
"""A school year in ten commands, each rehearsed before, in the domain that with-domain started; what a rehearsal leaves
and what a run did is looked at with the server's own tools.

    tests/live/with-domain ad -- tests/live/school_year_test.py TWK [PUPILS]
"""

import json
import os
import pathlib
import re
import sys
import time

from live_tools import CONF, LIVE, admin_logon, expect, expect_same, failures, go_through, ldap_values, log_on, run, set_up, twk

PUPILS = int(sys.argv[2]) if len(sys.argv) > 2 else 24
LATE = 4
FIRST = "Welcome-2-Work"
DRIVE = pathlib.Path(LIVE["STATE"]) / "srv/d"
DOMAIN = "DC=twk,DC=test"
YEARS = {number: f"OU=Year {number},OU=Pupils,{DOMAIN}" for number in (7, 8)}
LEAVERS = f"OU=Leavers,OU=Pupils,{DOMAIN}"
FIRST_NAMES = ("Łukasz", "Zoë", "Ann", "François", "Ólafur", "Siân", "Žofie", "Bo")
LAST_NAMES = ("Müller", "Çelik", "Lee", "da Silva", "Ångström", "Nuñez", "Day", "Groß", "Smith", "Kovač", "Byrne")
IMPORT = ("user", "import", "pupils.csv", "--csv", "--plain-letters", "--key", "employeeNumber=%IMPORT:Number%", "--template",
          "Pupil", "--site", "School", "--ou", YEARS[7], "--skip-prompts")
commands = 0


def pupil(number):
    return f"{FIRST_NAMES[number % 8]},{LAST_NAMES[number // 8 % 11]},{number + 1}"


def write(name, *lines):
    pathlib.Path(name).write_text("\n".join(lines) + "\n", encoding="utf-8")
    return name


def names(base, filter_text="(objectCategory=person)"):
    return sorted(value.decode() for value in ldap_values(filter_text, "sAMAccountName", base))


def members(group):
    return sorted(run("samba-tool", "group", "listmembers", group, "-s", CONF).stdout.splitlines())


def homes():
    return sorted(path.name for path in (DRIVE / "Users").iterdir())


def state():
    """What a rehearsal must leave: each object of the directory at its change number, and the folders with their lists."""
    changes = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-o", "ldif-wrap=no", "-E", "pr=1000/noprompt", "-H",
                  f"ldap://{LIVE['SERVER']}", "-b", DOMAIN, "(|(objectCategory=person)(objectCategory=group)(objectClass=organizationalUnit))",
                  "uSNChanged").stdout
    lists = [(str(path), os.getxattr(path, "security.NTACL")) for path in sorted(DRIVE.rglob("*")) if path.is_dir()]
    return [line for line in changes.splitlines() if not line.startswith("#")], lists, sorted(os.listdir("."))


def command(*arguments, codes=(0,)):
    """One command of the year, after its rehearsal; what the run printed."""
    global commands
    commands += 1
    before = state()
    begun = time.monotonic()
    rehearsal = [json.loads(line) for line in twk("--json", *arguments, "--dry-run", codes=codes).stdout.splitlines()]
    rehearsed = time.monotonic()
    expect_same(state(), before, f"{arguments} --dry-run: the domain and its server")
    expect_same(any("step" in row for row in rehearsal), True, f"{arguments} --dry-run: steps in {rehearsal[:3]}")
    ran = time.monotonic()
    done = [json.loads(line) for line in twk("--json", "--yes", *arguments, codes=codes).stdout.splitlines()]
    ended = time.monotonic()
    counts = [[row[key] for key in ("light", "done", "created", "failed", "refused", "known", "unknown") if key in row]
              for row in (rehearsal[-1], done[-1])]
    expect_same(counts[0], counts[1], f"{arguments}: counts of the rehearsal and of the run")
    print(f"{rehearsed - begun:7.2f} s rehearsed {ended - ran:7.2f} s  {' '.join(arguments)[:70]}", flush=True)
    return done


def prepare():
    set_up(FIRST, "%first%.%last%", ("Setup", "IncNumber", "1"), ("Setup", "AltSetupID", "%first%.%last%%nn%"),
           ("Preferences", "FullName", "2"), ("Preferences", "Custom_FN", "%First% %Last%"),
           ("UM", "CreateShares", "No"), ("UM", "SetPermissions", "Yes"), ("UM", "RunCmd", "No"), ("UM", "MailAccount", "No"))
    twk("site", "add", "School", "--nt-server", "DC1")
    twk("share", "add", "DC1", "Users", r"D:\Users")
    twk("template", "add", "Pupil", "--home-dir", r"\\%Server%\Users\%UserName%", "--home-dir-path", r"D:\Users\%UserName%",
        "--home-drive", "H:", "--group", "Domain Users", "--primary-group", "Domain Users")
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    write("pupils.csv", "First name,Last name,Number", *map(pupil, range(PUPILS)))


def summer_holidays():
    command("plan", "run", write("start.twk", "# units and groups of the school", "ou create Pupils", f'ou create "{YEARS[7]}"',
                                 f'ou create "{YEARS[8]}"', f'ou create "{LEAVERS}"', 'group create "Year 7"', 'group create "Year 8"'))
    for unit in (*YEARS.values(), LEAVERS):
        expect(unit, "samba-tool ou list", "\n".join(f"{line},{DOMAIN}" for line in
                                                     run("samba-tool", "ou", "list", "-s", CONF).stdout.splitlines()))


def september():
    """The list of all, and again when it has grown."""
    told = command(*IMPORT)[-1]
    expect_same((told["created"], told["refused"]), (PUPILS, 0), "created, refused")
    with open("pupils.csv", "a", encoding="utf-8") as file:
        file.writelines(pupil(number) + "\n" for number in range(PUPILS, PUPILS + LATE))
    told = command(*IMPORT)[-1]
    expect_same((told["created"], told["known"]), (LATE, PUPILS), "created, known")
    accounts = names(YEARS[7])
    expect_same(len(accounts), PUPILS + LATE, "accounts")
    expect_same([name for name in accounts if not name.isascii()], [], "account names that are not plain")
    expect_same(sorted(int(value) for value in ldap_values("(employeeNumber=*)", "employeeNumber", YEARS[7])),
                list(range(1, PUPILS + LATE + 1)), "numbers")
    expect_same(len(homes()), PUPILS + LATE, "homes")
    expect("Lukasz.Mueller", "accounts", "\n".join(accounts))
    acl = run("smbcacls", "-U", admin_logon(), f"//{LIVE['SERVER']}/D$", "Users/Lukasz.Mueller").stdout
    expect("Lukasz.Mueller:ALLOWED/CI/RWXD", "the list of a home", acl)
    log_on("Lukasz.Mueller", FIRST, (0,))
    shown = run("smbclient", "-U", rf"TWK\Lukasz.Mueller%{FIRST}", f"//{LIVE['SERVER']}/Users", "-c", r"cd Lukasz.Mueller; mkdir Mine; ls")
    expect("Mine", "what a pupil put at home", shown.stdout)


def a_class_gets_its_group():
    command("users", "groups", "--add", "Year 7", "--ou", YEARS[7])
    expect_same(members("Year 7"), names(YEARS[7]), "members of Year 7")


def a_name_changes():
    command("users", "rename", "--from-file", write("married.csv", "User,Logon,Full name,Last name", "Zoe.Mueller,Zoe.Winter,Zoe Winter,Winter"),
            "--rename-dirs")
    expect_same(ldap_values("(sAMAccountName=Zoe.Winter)", "homeDirectory"), [rb"\\DC1\Users\Zoe Winter"], "the home of Zoe Winter")
    expect_same(("Zoe Winter" in homes(), "Zoe.Mueller" in homes()), (True, False), "the folder of Zoe Winter")
    expect_same("Zoe.Winter" in members("Year 7"), True, "Zoe Winter in her group")
    log_on("Zoe.Winter", FIRST, (0,))


def move_up():
    """Too early, taken back, and again; one stays."""
    plan = write("summer.twk", "# the move up", f'users groups --add "Year 8" --remove "Year 7" --ou "{YEARS[7]}" --except Ann.Mueller',
                 f'users move-ou "{YEARS[8]}" --ou "{YEARS[7]}" --except Ann.Mueller')
    everybody = names(YEARS[7])
    record = command("plan", "run", plan)[-1]["planRecord"]
    moved = [name for name in everybody if name != "Ann.Mueller"]
    expect_same((names(YEARS[8]), members("Year 8"), members("Year 7")), (moved, moved, ["Ann.Mueller"]), "after the move up")
    command("plan", "undo", record)
    expect_same((names(YEARS[7]), members("Year 7"), members("Year 8")), (everybody, everybody, []), "after it was taken back")
    time.sleep(1)  # records of plans are named by the second
    command("plan", "run", plan)
    expect_same((names(YEARS[8]), members("Year 8"), names(YEARS[7])), (moved, moved, ["Ann.Mueller"]), "after the second move up")


def leavers():
    """A quarter leaves: closed and out of the way by one plan, in autumn gone with their data."""
    before, folders = names(YEARS[8]), homes()
    leaving = before[: len(before) // 4]
    write("leavers.txt", *leaving)
    command("plan", "run", write("leavers.twk", "users disable --from-file leavers.txt", 'users groups --remove "Year 8" --from-file leavers.txt',
                                 f'users move-ou "{LEAVERS}" --from-file leavers.txt'))
    closed = names(LEAVERS, "(&(objectCategory=person)(userAccountControl:1.2.840.113556.1.4.803:=2))")
    staying = [name for name in before if name not in leaving]
    expect_same((closed, members("Year 8"), names(YEARS[8])), (leaving, staying, staying), "leavers, and who stays")
    log_on(leaving[0], FIRST, (1,))
    command("users", "delete", "--ou", LEAVERS, "--account", "--data", "--no-prompting")
    expect_same((names(LEAVERS), len(homes())), ([], len(folders) - len(leaving)), "what is left of the leavers")
    expect_same(len(names(f"OU=Pupils,{DOMAIN}")), PUPILS + LATE - len(leaving), "accounts in the end")


def within_ten():
    expect_same(commands <= 10, True, f"{commands} commands")


go_through(prepare, summer_holidays, september, a_class_gets_its_group, a_name_changes, move_up, leavers, within_ten)
