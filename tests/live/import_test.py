#!/usr/bin/python3
"""Imports fifty users with every stage on into the domain that with-domain started, and looks at them with others' tools.

    tests/live/with-domain ad|nt -- tests/live/import_test.py TWK
"""

import base64
import csv
import json
import pathlib
import sys

from live_tools import CONF, IS_AD, LIVE, admin_logon, expect, failures, go_through, log_on, run, set_up, twk

FIRST = "Welcome-2-Work"
SAMPLES = pathlib.Path(__file__).resolve().parents[2] / "samples" / "new-starters.csv"


def plain(ldif):
    """Values that stand in base64 as text."""
    lines = []
    for line in ldif.replace("\n ", "").splitlines():
        name, colons, value = line.partition(":: ")
        lines.append(f"{name}: {base64.b64decode(value).decode('utf-8', 'replace')}" if colons else line)
    return "\n".join(lines)


def prepare():
    set_up(FIRST, "9%first%.9%last%", ("Setup", "IncNumber", "1"), ("Setup", "AltSetupID", "8%first%.8%last%%n%"),
           ("Preferences", "FullName", "2"), ("Preferences", "Custom_FN", "%First% %Last%"), ("UM", "CreateShares", "Yes"),
           ("UM", "SetPermissions", "Yes"), ("UM", "RunCmd", "Yes"), ("UM", "MailAccount", "Yes" if IS_AD else "No"),
           ("Setup", "BatchFileCreate", "/bin/true"))
    server = "DC1" if IS_AD else LIVE["SERVER"]
    mail = ["--exchange55", "--exchange-server", LIVE["EXCHANGE"], "--exchange-org", "Tarnwick", "--exchange-site",
            "Head Office"]
    twk("site", "add", "Head Office", "--nt-server", server, *(mail if IS_AD else []))
    if IS_AD:
        twk("ou", "create", "New Starters")
        run("samba-tool", "group", "add", "Newcomers", "-s", CONF)
        twk("table", "set", "w2k", text="p,userPrincipalName,%first%.%last%@%Domain%\np,department,%IMPORT4%\n")
        twk("table", "set", "mail", text="TARGET-ADDRESS,%UserName%@a.test\nCONTAINER,Recipients\n")
    else:
        # A Samba controller of this kind takes no member whose name has a capital letter into another group, as all
        # names of an import have one.
        run("net", "rpc", "group", "add", "Newcomers", "-S", LIVE["SERVER"], "-U", admin_logon())
        run("net", "rpc", "user", "add", "plain", "-S", LIVE["SERVER"], "-U", admin_logon())
        twk("user", "groups", "plain", "--add", "Newcomers", "--add", "Helpers")
        expect("Helpers", "groups of plain", twk("user", "groups", "plain").stdout)
        twk("ts", "set", "plain", r"profile=\\OLDPDC\P\plain")
        expect(r"\\OLDPDC\P\plain", "terminal-server settings of plain", twk("ts", "show", "plain").stdout)
        expect("Newcomers", "groups of plain",
               run("net", "rpc", "user", "info", "plain", "-S", LIVE["SERVER"], "-U", admin_logon()).stdout)
    for name, hours in (("Staff", []), ("Nobody", ["--logon-hours", "0" * 42])):
        twk("template", "add", name, "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path", r"D:\Users\%UserName%",
            "--home-share", "%UserName%$", "--home-drive", "H:", "--logon-script", "logon.cmd",
            *(["--group", "Newcomers"] if IS_AD else []), "--group", "Domain Users", "--primary-group", "Domain Users", "--variable", "WTS=ENABLED", *hours)
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    twk("table", "set", "share-permissions", text="%UserName%,Full Control\n")
    twk("table", "set", "wts", text="\\\\%server%\\ts\\%UserName%\n")


def create(*arguments, codes=(0,)):
    """A command that makes users."""
    place = ["--ou", "OU=New Starters,DC=twk,DC=test"] if IS_AD else []
    return twk("--json", "user", *arguments, "--site", "Head Office", *place, codes=codes)


def lights(text):
    """Account names of the rows that an import prints, by light."""
    rows = [json.loads(line) for line in text.splitlines() if line.startswith("{")]
    rows = [row for row in rows if "line" in row]
    return {light: [row["user"] for row in rows if row.get("light") == light] for light in ("GREEN", "YELLOW", "RED")}


def look_at_directory(user, first, last, department):
    if not IS_AD:
        shown = run("pdbedit", "-v", "-u", user, "-s", LIVE["STATE"] + "/smb.conf").stdout
        for what in (f"{first} {last}", f"\\{user}$", "H:", "logon.cmd"):
            expect(what, f"pdbedit of {user}", shown)
        return
    shown = plain(run("samba-tool", "user", "show", user, "-s", CONF).stdout)
    for what in (f"displayName: {first} {last}", f"homeDirectory: \\\\DC1\\{user}$", "homeDrive: H:",
                 "scriptPath: logon.cmd", "userAccountControl: 512", f"department: {department}",
                 "memberOf: CN=Newcomers,", "userParameters:"):
        expect(what, f"samba-tool user show {user}", shown)
    ticket = {"KRB5CCNAME": LIVE["SUPERUSER_TICKET"]}
    mail = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-H", f"ldap://{LIVE['EXCHANGE']}", "-b", "o=Tarnwick",
               f"(uid={user})", env=ticket).stdout
    expect(f"mail: {user}@a.test", f"mailbox of {user}", plain(mail))


def look_at_server(user):
    server = LIVE["SERVER"]
    info = run("rpcclient", "-U", admin_logon(), server, "-c", f'netsharegetinfo "{user}$" 502').stdout
    expect(f"\\Users\\{user}", f"share of {user}", info)
    expect("ACCESS ALLOWED", f"list of the share of {user}", info)
    acl = run("smbcacls", "-U", admin_logon(), f"//{server}/D$", f"Users/{user}").stdout
    for what in (f"{user}:ALLOWED/CI/RWXD", f"{user}:ALLOWED/OI|IO/RWXD", "Administrators:ALLOWED/CI/FULL",
                 "Administrators:ALLOWED/OI|IO/FULL"):
        expect(what, f"access list of {user}", acl)
    expect(f"{user}\n", f"owner of {user}", next(line + "\n" for line in acl.splitlines() if "OWNER" in line))


def look_at_logon(user):
    log_on(user, FIRST, (0,), user + "$")
    domain = "TWK" if IS_AD else "OLDNT"
    home = f"//{LIVE['SERVER']}/{user}$"
    expect("Mine", f"what {user} put at home",
           run("smbclient", "-U", f"{domain}\\{user}%{FIRST}", home, "-c", "mkdir Mine; ls").stdout)
    twk("user", "set", user, "disabled=yes")
    log_on(user, FIRST, (1,), user + "$")
    twk("user", "set", user, "disabled=no")
    log_on(user, FIRST, (0,), user + "$")


def look_at_hours():
    """Who may log on at no hour is refused, with the right password."""
    create("create", "--template", "Nobody", "Never", "There")
    refused = log_on("Never.There", FIRST, (1,), "Never.There$")
    words = (refused.stdout + refused.stderr).lower()
    if "policy" not in words and "revoked" not in words and "hours" not in words:
        failures.append(f"Never.There is refused for another reason: {words}")


def create_with_bad_rows():
    """A country code of eight letters, a principal name in use and what only the server may change stay out,
    and each is reported."""
    run("samba-tool", "user", "create", "principal.owner", FIRST, "-s", CONF)
    twk("table", "set", "w2k", text="p,company,Acme\np,c,Atlantis\np,isDeleted,TRUE\np,userPrincipalName,principal.owner@%Domain%\np,title,Clerk\n")
    create("create", "--template", "Staff", "Bad", "Rows", codes=(1,))
    shown = run("samba-tool", "user", "show", "Bad.Rows", "-s", CONF).stdout
    for what in ("company: Acme", "title: Clerk", "userAccountControl: 512", "memberOf: CN=Newcomers,"):
        expect(what, "samba-tool user show Bad.Rows", shown)
    if "Atlantis" in shown or "userPrincipalName" in shown:
        failures.append(f"a bad row was written:\n{shown}")
    log = twk("log", "show", "--tail", "60").stdout
    for what in ("Setting company, Acme", "Error setting c, Atlantis", "Error setting isDeleted, TRUE", "UPN not set", "Setting title, Clerk"):
        expect(what, "the log", log)
    log_on("Bad.Rows", FIRST, (0,))


def create_without_password():
    """Such an account is disabled, which is reported."""
    twk("settings", "set", "Setup", "Password", text="\n")
    create("create", "--template", "Staff", "Pass", "Less", codes=(1,))
    expect("userAccountControl: 546", "the account", run("samba-tool", "user", "show", "Pass.Less", "-s", CONF).stdout)
    expect("The account is disabled: it has no password", "the log", twk("log", "show", "--tail", "40").stdout)


def import_fifty():
    lines = SAMPLES.read_text(encoding="utf-8").splitlines()[:50]
    source = pathlib.Path("fifty.csv")
    source.write_text("\n".join(lines) + "\n", encoding="utf-8")
    told = create("import", str(source), "--template", "Staff", "--skip-prompts", codes=(0, 1)).stdout
    made = lights(told)
    if len(made["GREEN"]) + len(made["YELLOW"]) + len(made["RED"]) != 50 or len(made["GREEN"]) < 44:
        sys.exit(f"the import reported:\n{told}\n{twk('log', 'show', '--tail', '40').stdout}")
    rows = {}
    for row in csv.reader(lines):
        if len(row) > 3:
            rows.setdefault(f"{row[0]}.{row[2]}", row)
    for user in made["GREEN"]:
        look_at_server(user)
    looked = [user for user in made["GREEN"] if user in rows]
    for user in looked:
        look_at_directory(user, rows[user][0], rows[user][2], rows[user][3])
    if len(looked) < 30:
        failures.append(f"only {len(looked)} accounts could be looked at")
    look_at_logon(made["GREEN"][0])


go_through(prepare, import_fifty, look_at_hours, *([create_with_bad_rows, create_without_password] if IS_AD else []))
