#!/usr/bin/python3
"""Deletes, moves and renames accounts whose folders lie on member servers of the domain that with-domain started, and
looks at what is there with others' tools and on the disks.

    tests/live/with-domain members -- tests/live/members_test.py TWK
"""

import ctypes
import json
import os
import pathlib
import re
import signal
import struct
import subprocess
import time

from live_tools import LIVE, TWK, expect, expect_same, go_through, run, set_up

STATE = pathlib.Path(LIVE["STATE"])
DISKS = {server: STATE / server / "srv/d" for server in ("fs1", "fs2")}
TO_BRANCH = ("--site", "Branch", "--template", "Staff", "--data", "move", "--no-prompt")
EVERYTHING = ("--account", "--data", "--shares", "--no-prompting")
FILES = 150
SHORT = 15  # seconds of a session
MOVERS = "OU=Movers,DC=hq,DC=north,DC=example"
NAMES = ("{}", r"POLAR\{}", r"hq.north.example\{}", "{}@hq.north.example")
CA = ["--ca-file", str(STATE / "dc1/domain/private/tls/ca.pem")]
WAYS = (["--method", "ldaps", *CA], ["--method", "ticket"])


def twk_command(*arguments):
    return [TWK, "--domain", LIVE["DOMAIN"], "--yes", *arguments]


def twk(*arguments, **options):
    return run(*twk_command(*arguments), **options)


def on(server, *command):
    return run(LIVE["CONTROL"], "on", server, *command).stdout


def conf(server):
    return f"--configfile={STATE}/{server}/smb.conf"


def prepare():
    set_up("Welcome-2-Work", "%first%", ("UM", "CreateShares", "Yes"), ("UM", "SetPermissions", "Yes"),
           ("UM", "RunCmd", "No"), ("UM", "MailAccount", "No"))
    twk("ou", "create", "Movers")
    for site, server in (("Head Office", "FS1"), ("Branch", "FS2")):
        twk("site", "add", site, "--nt-server", server)
        for name in ("Users", "Profiles"):
            twk("share", "add", server, name, rf"D:\{name}")
    twk("template", "add", "Staff", "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path", r"D:\Users\%UserName%",
        "--home-share", "%UserName%$", "--home-drive", "H:", "--profile-path", r"\\%Server%\Profiles\%UserName%",
        "--profile-dir-path", r"D:\Profiles\%UserName%", "--group", "Domain Users", "--primary-group", "Domain Users")
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    twk("table", "set", "share-permissions", text="%UserName%,Change\nAuthenticated Users,Full Control\n")
    for name in ("Ann", "Jo", "Mona"):
        twk("user", "create", name, "Smith", "--template", "Staff", "--site", "Head Office",
            "--ou", MOVERS)
        for number in range(FILES if name == "Mona" else 2):
            folder = DISKS["fs1"] / "Users" / name / f"{number % 3}"
            folder.mkdir(exist_ok=True)
            (folder / f"{number}.txt").write_text(f"{name} {number}" * 2000)


def log_on():
    """The name in every spelling is one of the domain on every road, whatever workgroup the workstation is in."""
    for name in NAMES:
        log_on_as(WAYS[1], name)


def log_on_as(way, name):
    place = [TWK, "--domain", LIVE["DOMAIN"], "--server", LIVE["SERVER"], *way, "--user", name.format(LIVE["ADMIN"])]
    for command in (["user", "show", LIVE["ADMIN"]], ["acl", "show", r"\\FS1\D$"], ["share", "list", "FS1"],
                    ["owner", "take", r"\\FS1\D$\Users"]):
        told = run(*place, *command, env={"TWK_LOGON_PASSWORD": LIVE["PASSWORD"], "KRB5CCNAME": "FILE:/nonexistent"},
                   codes=None)
        expect_same(told.returncode, 0, f"{way[1]} {name} {command}: {told.stderr}")


def live_a_life(name, way):
    """An account that is made with everything, used, changed, moved, renamed and deleted by an administrator who has a
    password and no ticket, and is looked at with others' tools all the time."""
    def do(*command, codes=(0,)):
        return run(TWK, "--domain", LIVE["DOMAIN"], "--yes", *way, "--user", LIVE["ADMIN"], *command, codes=codes,
                   env={"TWK_LOGON_PASSWORD": LIVE["PASSWORD"], "KRB5CCNAME": "FILE:/nonexistent"})

    def at_home(server, user, command):
        run("kinit", "-c", f"FILE:{STATE}/of-a-user", f"{user}@HQ.NORTH.EXAMPLE", text="Welcome-2-Work\n")
        return run("smbclient", ticket, f"//{server}.{LIVE['DOMAIN']}/{user}$", "-c", command).stdout

    ticket = f"--use-krb5-ccache={os.environ['KRB5CCNAME']}"
    do("user", "create", name, "Smith", "--template", "Staff", "--site", "Head Office", "--ou", MOVERS)
    expect(f"ACL:POLAR\\{name}:ALLOWED", f"the list of the home, {way[1]}",
           run("smbcacls", ticket, f"//fs1.{LIVE['DOMAIN']}/D$", f"Users/{name}").stdout)
    at_home("fs1", name, "mkdir Mine")
    do("user", "set", name, "description=Clerk", "disabled=yes")
    expect("userAccountControl: 514", f"disabled, {way[1]}", account(name, "userAccountControl", "description"))
    do("user", "set", name, "disabled=no")
    do("user", "move", name, *TO_BRANCH)
    expect("Mine", f"the home on the other server, {way[1]}", at_home("fs2", name, "ls"))
    new = name + "2"
    do("user", "rename", name, "--logon", new, "--full-name", new, "--rename-dirs")
    expect("Mine", f"the home under the new name, {way[1]}", at_home("fs2", new, "ls"))
    expect("description: Clerk", f"the renamed account, {way[1]}", account(new, "description"))
    do("user", "delete", new, *EVERYTHING)
    left = [str(path) for disk in DISKS.values() for path in disk.rglob(name + "*")]
    expect_same((account(new), left, share("fs2", new + "$")), ("", [], ""), f"what is left, {way[1]}")


def live_without_ticket():
    for method in ("ticket", "ldaps", "starttls"):
        live_a_life("Life" + method, ["--method", method, *CA])


def pause(server):
    """It says nothing for two seconds, and goes on."""
    holder = (STATE / server / "holder").read_text().strip()
    own = [int(pid) for pid in filter(str.isdigit, os.listdir("/proc")) if pid != holder and
           os.path.samefile(f"/proc/{pid}/ns/net", f"/proc/{holder}/ns/net")]
    for number in (signal.SIGSTOP, signal.SIGCONT):
        for pid in own:
            os.kill(pid, number)
        if number == signal.SIGSTOP:
            time.sleep(2)


def made_on(server):
    """Names of the accounts that the import made there."""
    told = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-H", f"ldap://{server}.{LIVE['DOMAIN']}", "-b",
               "DC=hq,DC=north,DC=example", "(sAMAccountName=over*)", "sAMAccountName").stdout
    return {line.split()[1] for line in told.splitlines() if line.startswith("sAMAccountName:")}


def fail_over():
    """The controller dies in the middle of an import, which goes on with the other one: no user is lost or made twice."""
    run(LIVE["CONTROL"], "start", "dc2")
    twk("template", "add", "Plain", "--group", "Domain Users", "--primary-group", "Domain Users")
    pathlib.Path("over.csv").write_text("".join(f"over{i},,Smith\n" for i in range(120)), encoding="utf-8")
    child = subprocess.Popen(twk_command("--json", "user", "import", "over.csv", "--template", "Plain", "--site", "Head Office",
                                         "--ou", MOVERS, "--skip-prompts"),
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
    lines = [child.stdout.readline() for _ in range(10)]
    pause("dc1")
    lines += [child.stdout.readline() for _ in range(10)]
    run(LIVE["CONTROL"], "stop", "dc1")
    rest, complaints = child.communicate(timeout=300)
    rows = [json.loads(line) for line in (*lines, *rest.splitlines())]
    lights = {row["user"]: row["light"] for row in rows if "line" in row}
    refused = {user for user, light in lights.items() if light == "RED"}
    expect("the work goes on with dc2", "what the import tells", complaints)
    expect_same((len(lights), len(refused) <= 1), (120, True), f"rows, and one at most that is not known to be made: {refused}")
    on_second = made_on("dc2")
    run(LIVE["CONTROL"], "start", "dc1")
    on_first = made_on("dc1")
    expect_same(len(on_second) >= 90 and len(on_first) >= 20, True, f"on both: {len(on_first)}, {len(on_second)}")
    expect_same(lights.keys() - refused - (on_first | on_second), set(), "who is GREEN and nowhere")


def ask_for_short_service_ticket(cache, service, seconds):
    """Into a cache, for a service that then ends the session in mid-run. The tools of Kerberos ask for no such ticket, and a server
    gives none for a ticket that is itself about to end."""
    krb5 = ctypes.CDLL("libkrb5.so.3")
    context, opened, client, server, got = (ctypes.c_void_p() for _ in range(5))
    wanted = ctypes.create_string_buffer(120)  # krb5_creds: both principals at 8, the end at 56
    for call in ((krb5.krb5_init_context, ctypes.byref(context)), (krb5.krb5_cc_resolve, context, cache.encode(), ctypes.byref(opened)),
                 (krb5.krb5_cc_get_principal, context, opened, ctypes.byref(client)),
                 (krb5.krb5_parse_name, context, f"{service}@HQ.NORTH.EXAMPLE".encode(), ctypes.byref(server))):
        expect_same(call[0](*call[1:]), 0, f"{call[0].__name__} for {service}")
    struct.pack_into("<QQ", wanted, 8, client.value, server.value)
    struct.pack_into("<i", wanted, 56, int(time.time()) + seconds)
    expect_same(krb5.krb5_get_credentials(context, 0, opened, wanted, ctypes.byref(got)), 0, f"a short ticket for {service}")


def import_with_ticket(first, meanwhile):
    """An import whose sessions with all servers end in its middle; `meanwhile` does something with the ticket. What it told, and
    its remaining lines."""
    cache = f"FILE:{STATE}/short-{first}"
    run("kinit", "-c", cache, "-l", "1h", "-r", "2h", f"{LIVE['ADMIN']}@HQ.NORTH.EXAMPLE", text=LIVE["PASSWORD"] + "\n")
    end = time.monotonic() + SHORT + 1
    for service in ("cifs/FS1", "host/fs1", f"ldap/{LIVE['SERVER']}"):
        ask_for_short_service_ticket(cache, service, SHORT)
    pathlib.Path(f"{first}.csv").write_text("".join(f"{first}{i},,Smith\n" for i in range(10)), encoding="utf-8")
    child = subprocess.Popen(twk_command("--json", "user", "import", f"{first}.csv", "--template", "Staff", "--site", "Head Office", "--ou",
                                         MOVERS, "--skip-prompts"),
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", env={**os.environ, "KRB5CCNAME": cache})
    lines = [child.stdout.readline() for _ in range(3)]
    child.send_signal(signal.SIGSTOP)
    expect_same(time.monotonic() < end, True, "three lines before the sessions end")
    meanwhile(cache)
    time.sleep(max(0, end - time.monotonic()))
    child.send_signal(signal.SIGCONT)
    rest, complaints = child.communicate(timeout=120)
    rows = [json.loads(line) for line in (*lines, *rest.splitlines())]
    told = f"{first}: {rows} {complaints}"
    remaining = pathlib.Path(rows[-1]["remaining"]).read_text(encoding="utf-8").split()
    return [row for row in rows if "line" in row], remaining, told


def renew_ticket():
    """In the middle of an import, which goes on over new sessions with nobody lost or made twice; one whose ticket has run out
    says so at each line that it leaves."""
    rows, remaining, told = import_with_ticket("Renew", lambda cache: run("kinit", "-R", "-c", cache))
    expect_same(([row["light"] for row in rows], remaining), (["GREEN"] * 10, []), told)
    there = sorted(re.findall(r"^sAMAccountName: (.*)$", account("Renew*", "sAMAccountName"), re.M))
    expect_same(there, [f"Renew{i}" for i in range(10)], f"accounts {told}")
    check_homes(there, told)

    def run_out(cache):
        run("kinit", "-c", cache, "-l", "1s", f"{LIVE['ADMIN']}@HQ.NORTH.EXAMPLE", text=LIVE["PASSWORD"] + "\n")
    rows, remaining, told = import_with_ticket("Out", run_out)
    left = [row for row in rows if row["light"] == "RED"]
    expect_same(len(left) >= 6 and all("ticket" in row["message"] and "`kinit`" in row["message"] for row in left), True, told)
    expect_same(remaining, [f"{row['user']},,Smith" for row in left], f"remaining lines {told}")


def check_homes(names, told):
    for name in names:
        home = DISKS["fs1"] / "Users" / name
        expect_same((home.is_dir(), "security.NTACL" in os.listxattr(home) if home.is_dir() else None), (True, True), f"home of {name} {told}")
        acl = run("smbcacls", f"--use-krb5-ccache={os.environ['KRB5CCNAME']}", "//fs1.hq.north.example/D$", rf"Users\{name}", codes=None).stdout
        expect(rf"ACL:POLAR\{name}:ALLOWED", f"list of {name}'s home {told}", acl)
        expect("ALLOWED/0x0/0x", f"share of {name} {told}", share("fs1", f"{name}$"))


def lose_file_server():
    """The server of the homes alone dies in the middle of an import; with it back, the import that goes on completes
    everybody: account, home, share and their lists, and nobody twice."""
    names = [f"Files{i}" for i in range(14)]
    pathlib.Path("files.csv").write_text("".join(f"{name},,Smith\n" for name in names), encoding="utf-8")
    child = subprocess.Popen(twk_command("--json", "user", "import", "files.csv", "--template", "Staff", "--site", "Head Office",
                                         "--ou", MOVERS, "--skip-prompts"),
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
    lines = [child.stdout.readline() for _ in range(2)]
    pause("fs1")
    lines += [child.stdout.readline() for _ in range(2)]
    run(LIVE["CONTROL"], "stop", "fs1")
    rest, complaints = child.communicate(timeout=300)
    lights = [row["light"] for row in map(json.loads, (*lines, *rest.splitlines())) if "line" in row]
    expect_same((len(lights), lights[-1]), (14, "RED"), f"lights without the server: {lights} {complaints}")
    run(LIVE["CONTROL"], "start", "fs1")
    done = twk("user", "import", "--resume", json.loads(rest.splitlines()[-1])["record"], codes=(0, 1))
    told = f"after the import went on:\n{lights}\n{complaints}\n{done.stdout}\n{done.stderr}"
    there = re.findall(r"^sAMAccountName: (.*)$", account("Files*", "sAMAccountName"), re.M)
    expect_same(sorted(there), sorted(names), f"accounts {told}")
    check_homes(names, told)


def name_of_controller():
    """Which one a command finds, and how long it takes."""
    start = time.monotonic()
    told = twk("--json", "doctor", codes=None).stdout
    steps = {row["step"]: row["detail"] for row in map(json.loads, told.splitlines())}
    return next((name for name in ("dc1", "dc2") if steps["name look-up"].startswith(name)), steps), time.monotonic() - start, steps


def prefer_own_site():
    """The first controller has precedence in the name service, and this workstation is in the site of the second one; when
    that one is gone without a word, it is waited for once and not by each request."""
    domain, log_on = LIVE["DOMAIN"], ("-U", f"Administrator%{LIVE['PASSWORD']}")
    expect_same(name_of_controller()[0], "dc1", "the controller without sites")
    first = "ldap://dc1." + domain
    run("samba-tool", "sites", "create", "Branch", "-H", first, *log_on)
    run("samba-tool", "sites", "subnet", "create", "192.0.2.0/28", "Branch", "-H", first, *log_on)
    run("samba-tool", "dns", "add", "dc1." + domain, "_msdcs." + domain, "_ldap._tcp.Branch._sites.dc", "SRV",
        f"dc2.{domain} 389 0 100", *log_on)
    found, _, steps = name_of_controller()
    expect_same(found, "dc2", f"the controller of the own site: {steps}")
    run("ip", "link", "set", "to-dc2", "down")
    found, seconds, steps = name_of_controller()
    expect_same((found, seconds < 8), ("dc1", True), f"the controller when that one is gone, after {seconds} s")
    expect("this workstation is in the site Branch", "the site", steps["site"])
    run("ip", "link", "set", "to-dc2", "up")


def log_on_without_ntlm():
    """With the password alone, where servers take nothing but Kerberos."""
    for server in ("dc1", "fs1", "fs2"):
        smb_conf = STATE / server / "smb.conf"
        smb_conf.write_text(smb_conf.read_text().replace("[global]", "[global]\n\tntlm auth = disabled", 1))
        run(LIVE["CONTROL"], "stop", server)
        run(LIVE["CONTROL"], "start", server)
    ntlm = run("smbclient", "--use-kerberos=off", "-U", rf"POLAR\{LIVE['ADMIN']}%{LIVE['PASSWORD']}", r"//fs1.hq.north.example/D$",
               "-c", "ls", codes=None)
    expect("NTLM_BLOCKED", "a logon by NTLM", ntlm.stdout + ntlm.stderr)
    for name in NAMES:
        log_on_as(WAYS[0], name)


def files(top):
    return {str(path.relative_to(top)): path.read_bytes() for path in top.rglob("*") if path.is_file()}


def account(name, *attributes):
    """What the directory says about accounts, of all but Jo when no name is given."""
    who = f"(sAMAccountName={name})" if name else "(&(objectCategory=person)(!(sAMAccountName=Jo)))"
    told = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-H", "ldap://" + LIVE["SERVER"], "-b",
               "DC=hq,DC=north,DC=example", who, *(attributes or ("homeDirectory", "profilePath", "memberOf"))).stdout
    return "".join(line for line in told.splitlines(True) if not line.startswith("# refldap") and line.strip())


def share(server, name):
    """Folder, remark, limit and access list of a share, by the server's own tools; nothing when there is none."""
    told = run(LIVE["CONTROL"], "on", server, "net", conf(server), "conf", "showshare", name, codes=None)
    if told.returncode != 0:
        return ""
    return "".join(sorted((told.stdout + on(server, "sharesec", conf(server), name, "--view")).splitlines(True)))


def world():
    """Folders and files with their lists, shares with theirs, and the accounts of others."""
    found = {"accounts": account("")}
    for server, disk in DISKS.items():
        shares = on(server, "net", conf(server), "conf", "list") + on(server, "sharesec", conf(server), "--view-all")
        found[server] = sorted(part.strip() for part in shares.split("\n\n"))
        for path in disk.rglob("*"):
            found[str(path)] = [os.getxattr(path, name) for name in os.listxattr(path) if name == "security.NTACL"]
            if path.is_file():
                found[str(path)].append(path.read_bytes())
    return found


HERS = (r"home=\\FS1\Jo$", r"profile=\\FS1\Profiles\Jo")
# Homes and profiles of Jo that are not hers to lose, and what the refusal names.
NOT_HERS = [
    (r"home=\\FS1\D$", " share"),
    (r"home=\\FS1\C$", " share"),
    (r"home=\\FS1\Users", "Ann"),
    (r"home=\\fs1.hq.north.example\Users\Ann", "Ann"),
    (r"home=\\FS1\C$\Users\Ann", "Ann"),
    (r"home=\\FS1\Ann$\0", "Ann"),
    (r"profile=\\FS1\Profiles", "Ann"),
    (r"profile=\\FS1\Profiles\Ann", "Ann"),
]


def attack():
    for given, named in NOT_HERS:
        twk("user", "set", "Jo", *HERS, given)
        before = world()
        for command in (("user", "delete", "Jo", *EVERYTHING), ("user", "move", "Jo", *TO_BRANCH)):
            ends = [twk(*command, *more, codes=(1, 2)) for more in (("--dry-run",), ())]
            for what, end in zip(("rehearsal", "run"), ends):
                expect(named, f"{given}: {command[1]}, {what}", end.stdout + end.stderr)
            expect_same(ends[0].returncode, ends[1].returncode, f"{given}: {command[1]}, rehearsal and run")
        after = world()
        changed = sorted(what for what in before.keys() | after.keys() if before.get(what) != after.get(what))
        expect_same(changed, [], f"{given}: what changed")
    twk("user", "set", "Jo", *HERS)


def move_and_stop(how):
    """A move to the other member that ends in its copying has taken nothing away."""
    old, new = DISKS["fs1"] / "Users/Mona", DISKS["fs2"] / "Users/Mona"
    wanted, before, there = files(old), share("fs1", "Mona$"), len(files(new))
    child = subprocess.Popen(twk_command("user", "move", "Mona", *TO_BRANCH), stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL)
    while child.poll() is None and len(list(new.rglob("*.txt"))) < there + 20:
        time.sleep(0.01)
    how(child)
    code = child.wait()
    expect_same(code != 0 and len(files(new)) < FILES, True, f"the move was stopped in its copying, exit code {code}")
    expect_same(files(old), wanted, "the home after a move that was stopped")
    expect_same(share("fs1", "Mona$"), before, "the share after a move that was stopped")
    expect(r"homeDirectory: \\FS1\Mona$", "the account after a move that was stopped", account("Mona"))
    return wanted


def move():
    move_and_stop(lambda child: child.send_signal(signal.SIGKILL))
    wanted = move_and_stop(lambda child: child.send_signal(signal.SIGINT))
    twk("user", "move", "Mona", *TO_BRANCH)
    expect_same(files(DISKS["fs2"] / "Users/Mona"), wanted, "the home after the move that was run again")
    expect_same((DISKS["fs1"] / "Users/Mona").exists(), False, "the old home is there")
    expect_same(share("fs1", "Mona$"), "", "the old share")
    expect(r"homeDirectory: \\FS2\Mona$", "the account that was moved", account("Mona"))
    expect(":ALLOWED/0x0/0xe01301bf", "the new share with its list", share("fs2", "Mona$"))


def rename():
    """To another name, another case and back, after which all is as it was, lists of folders and shares too."""
    before = world()
    for old, new in (("Jo", "Zoe"), ("Zoe", "ZOE"), ("ZOE", "Jo")):
        order = ("user", "rename", old, "--logon", new, "--full-name", new, "--rename-dirs")
        twk(*order, "--dry-run")
        expect(f"FS1\\{old}$", f"{old} after a rehearsal", account(old))
        twk(*order)
        expect(f"FS1\\{new}$", new, account(new))
        expect(f"FS1\\Profiles\\{new}", new, account(new))
        names = {path.name for path in (DISKS["fs1"] / "Users").iterdir()}
        expect_same((new in names, old in names), (True, False), f"the folder of {new}")
    after = world()
    changed = sorted(what for what in before.keys() | after.keys() if before.get(what) != after.get(what))
    expect_same(changed, [], "what three renamings changed")
    taken = twk("user", "rename", "Jo", "--full-name", "Ann", "--rename-dirs", codes=(2,))
    expect("Users\\Ann already exists", "a name that is taken", taken.stdout + taken.stderr)


def delete():
    """The data goes also where the server has no C$ to go by."""
    smb_conf = STATE / "fs2/smb.conf"
    smb_conf.write_text(smb_conf.read_text().partition("[C$]")[0])
    on("fs2", "smbcontrol", conf("fs2"), "smbd", "reload-config")
    end = twk("user", "delete", "Mona", *EVERYTHING, codes=(1,))
    expect("only its own share led to it", "the end of a deletion without C$", end.stdout + end.stderr)
    expect_same((account("Mona"), files(DISKS["fs2"] / "Users"), share("fs2", "Mona$")), ("", {}, ""), "what is left of Mona")
    twk("user", "delete", "Jo", *EVERYTHING)
    expect_same((account("Jo"), (DISKS["fs1"] / "Users/Jo").exists(), share("fs1", "Jo$")), ("", False, ""), "what is left of Jo")


go_through(prepare, log_on, live_without_ticket, attack, rename, move, delete, renew_ticket, lose_file_server, fail_over, prefer_own_site, log_on_without_ntlm)
