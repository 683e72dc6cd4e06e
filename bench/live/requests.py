#!/usr/bin/python3
"""Counts in the log of the controller that with-domain started what a command asks its directory for.

    tests/live/with-domain ad -- bench/live/requests.py TWK

A row for each request of one more user: what two lines of an import cost beyond one, all that a command for one user asks
for, and what is asked for between the new account and the end of the command that makes everything a template can ask for.
"""

import collections
import pathlib
import re
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "tests/live"))
from live_tools import CONF, LIVE, go_through, run, set_up, twk  # noqa: E402

LOG = pathlib.Path(LIVE["STATE"], "samba.log")
PLACE = ("--site", "Head Office", "--ou", "CN=Users,DC=twk,DC=test")
SEARCH = re.compile(r"LDAP Query: .* filter: \[(.*)\] basedn: \[(.*)\] scope: \[(\w+)\]")
WRITE = re.compile(r"\s*(Add|Modify|ModifyDN|Del)Request dn: ?(.*)")


def prepare():
    conf = pathlib.Path(CONF)
    conf.write_text(conf.read_text().replace("[global]", "[global]\n\tlog level = 10", 1))
    run(LIVE["CONTROL"], "stop")
    run(LIVE["CONTROL"], "start")
    set_up("Welcome-2-Work", "%first%", ("UM", "RunCmd", "No"), ("UM", "MailAccount", "No"))
    twk("site", "add", "Head Office", "--nt-server", "DC1")
    groups = ("--group", "One", "--group", "Two", "--group", "Domain Users", "--primary-group", "Domain Users")
    for name in ("One", "Two"):
        run("samba-tool", "group", "add", name, "-s", CONF)
    twk("template", "add", "Plain", *groups)
    twk("template", "add", "Full", *groups, "--home-dir", r"\\%Server%\%UserName%$", "--home-dir-path",
        r"D:\Users\%UserName%", "--home-share", "%UserName%$", "--home-drive", "H:", "--profile-path",
        r"\\%Server%\Profiles\%UserName%", "--profile-dir-path", r"D:\Profiles\%UserName%", "--variable", "WTS=ENABLED")
    twk("table", "set", "permissions", text="%UserName%,Change,%UserName%\nAdministrators,Full Control\n")
    twk("table", "set", "share-permissions", text="%UserName%,Full Control\n")
    twk("table", "set", "wts", text="\\\\%server%\\ts\\%UserName%\n")


def requests(*command):
    before = len(LOG.read_bytes())
    twk(*command)
    found = []
    for line in LOG.read_bytes()[before:].decode(errors="replace").splitlines():
        if search := SEARCH.search(line):
            found.append(f"search {search[3].lower()} {search[2]} {search[1]}")
        elif write := WRITE.match(line):
            found.append(f"{write[1].lower()} {write[2]}")
    return found


def of_import(template, lines):
    path = pathlib.Path(f"{lines}.csv")
    path.write_text("".join(f"Line{template}{lines}of{i},,Smith\n" for i in range(lines)), encoding="utf-8")
    return requests("user", "import", str(path), "--skip-prompts", "--template", template, *PLACE)


def tell(what, found):
    kinds = collections.Counter(one.split()[0] for one in found)
    print(f"{what}: " + ", ".join(f"{count} {kind}" for kind, count in sorted(kinds.items())))
    for one in found:
        print(f"    {one}")


def without_names(found):
    return collections.Counter(re.sub(r"Line\w+of\d+", "…", one) for one in found)


def measure():
    for what, template in (("two groups", "Plain"), ("everything", "Full")):
        one, two = (without_names(of_import(template, lines)) for lines in (1, 2))
        tell(f"a line of an import, {what}", sorted((two - one).elements()))
    tell("user create with two groups, from logon to end", requests("user", "create", "Berta", "Smith", "--template", "Plain", *PLACE))
    full = requests("user", "create", "Anna", "Smith", "--template", "Full", *PLACE)
    account = next(place for place, one in enumerate(full) if one.startswith("add "))
    tell("a full creation, from the account on", full[account:])


go_through(prepare, measure)
