#!/usr/bin/python3
"""Measures commands in the domain that with-domain started beside the OpenLDAP tools that do the same, in turns.

    tests/live/with-domain ad -- bench/live/pairs.py TWK [USERS [ROUNDS]]

The controller is filled first. A row is the best of the rounds of either side, and the median of what a round's two times
make of each other; the whole process counts, with its start and its logon.
"""

import pathlib
import statistics
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parents[1] / "tests/live"))
from live_tools import CONF, LIVE, go_through, run, set_up, twk, twk_command  # noqa: E402

USERS = int(sys.argv[2]) if len(sys.argv) > 2 else 5000
ROUNDS = int(sys.argv[3]) if len(sys.argv) > 3 else 5
TOP = "DC=twk,DC=test"
SERVER = ("-Q", "-Y", "GSSAPI", "-N", "-H", f"ldap://{LIVE['SERVER']}")
MEMBERS = 2000
LINES = 200
PLACE = ("--template", "Plain", "--site", "Head Office", "--ou", f"CN=Users,{TOP}")
UNITS = [f"OU=Unit {number:03},{TOP}" for number in range(MEMBERS // 1000)]
FILLED = [f"CN=Filled {i:06},{UNITS[i // 1000]}" for i in range(MEMBERS)]


def seconds(*command, text=None, codes=(0,)):
    start = time.monotonic()
    run(*command, text=text, codes=codes)
    return time.monotonic() - start


def write(text):
    return seconds("ldapmodify", *SERVER, text=text)


def group(name):
    return f"dn: CN={name},CN=Users,{TOP}\nchangetype: add\nobjectClass: group\nsAMAccountName: {name}\n\n"


def change_of_members(name, operation="add", members=tuple(FILLED)):
    """In requests of a thousand, as the program makes them."""
    requests = [f"dn: CN={name},CN=Users,{TOP}\nchangetype: modify\n{operation}: member\n" +
                "".join(f"member: {dn}\n" for dn in members[first:first + 1000]) + "\n"
                for first in range(0, len(members), 1000)]
    return "".join(requests)


def prepare():
    run(LIVE["CONTROL"], "stop")
    run(str(HERE / "fill_domain.py"), CONF, str(USERS), codes=(0,))
    run(LIVE["CONTROL"], "start")
    write(group("One") + group("Two"))
    set_up("Welcome-2-Work", "%first%", ("UM", "RunCmd", "No"), ("UM", "MailAccount", "No"))
    twk("site", "add", "Head Office", "--nt-server", "DC1")
    twk("template", "add", "Plain", "--group", "One", "--group", "Two", "--group", "Domain Users", "--primary-group",
        "Domain Users")


def tell(what, ours, theirs, goal=""):
    ratio = statistics.median(mine / other for mine, other in zip(ours, theirs))
    print(f"{what}: {min(ours):.2f} s, tool {min(theirs):.2f} s, {ratio:.2f} times{goal}", flush=True)


def pair(what, ours, theirs, goal=""):
    """Each side takes the round's number and gives seconds."""
    found = []
    for number in range(ROUNDS):
        # Who begins has a server that has just done something else.
        sides = [ours, theirs] if number % 2 == 0 else [theirs, ours]
        times = {side: side(number) for side in sides}
        found.append((times[ours], times[theirs]))
    tell(what, [one for one, _ in found], [other for _, other in found], goal)


def measure_members():
    def new_group(name):
        write(group(name))
        return name

    write(group("Source") + change_of_members("Source"))
    pair(f"{MEMBERS} members copied",
         lambda i: seconds(*twk_command("--yes", "group", "copy", "Source", new_group(f"Copy{i}"))),
         lambda i: write(change_of_members(new_group(f"Replay{i}"))), " (goal 2 s)")
    units = [argument for unit in UNITS for argument in ("--ou", unit)]
    pair(f"{MEMBERS} users added to a group",
         lambda i: seconds(*twk_command("users", "groups", "--add", new_group(f"Add{i}"), *units)),
         lambda i: write(change_of_members(new_group(f"Added{i}"))))
    pair(f"{MEMBERS} users removed from it",
         lambda i: seconds(*twk_command("users", "groups", "--remove", f"Add{i}", *units)),
         lambda i: write(change_of_members(f"Added{i}", "delete")))


def measure_searches():
    pair("locked users found",
         lambda _: seconds(*twk_command("users", "find-locked"), codes=(0, 1)),
         lambda _: seconds("ldapsearch", *SERVER, "-LLL", "-b", TOP, "-E", "pr=1000/noprompt",
                           "(&(objectClass=user)(lockoutTime>=1))", "name"), " (goal 2)")
    pair("users listed",
         lambda _: seconds(*twk_command("user", "list")),
         lambda _: seconds("ldapsearch", *SERVER, "-LLL", "-b", TOP, "-E", "pr=1000/noprompt",
                           "(&(objectCategory=person)(objectClass=user))", "sAMAccountName", "displayName", "description",
                           "userAccountControl"), " (goal 1.05)")


def requests_of(name):
    """The three that a new user with two groups costs."""
    dn = f"CN={name} Smith,CN=Users,{TOP}"
    joins = "".join(change_of_members(one, members=[dn]) for one in ("One", "Two"))
    return (f"dn: {dn}\nchangetype: add\nobjectClass: user\nsAMAccountName: {name}\ngivenName: {name}\nsn: Smith\n"
            f"displayName: {name} Smith\nuserPrincipalName: {name}@twk.test\nuserAccountControl: 512\n"
            f"unicodePwd:: IgBXAGUAbABjAG8AbQBlAC0AMgAtAFcAbwByAGsAIgA=\n\n" + joins)


def measure_creation():
    def of_import(number):
        path = pathlib.Path(f"{number}.csv")
        path.write_text("".join(f"r{number}l{i},,Smith\n" for i in range(LINES)), encoding="utf-8")
        return seconds(*twk_command("user", "import", str(path), "--skip-prompts", *PLACE))

    pair(f"{LINES} users with two groups imported", of_import,
         lambda number: write("".join(requests_of(f"t{number}l{i}") for i in range(LINES))), " (goal 1.05)")
    pair("a user with two groups created",
         lambda number: seconds(*twk_command("user", "create", f"one{number}", "Smith", *PLACE)),
         lambda number: write(requests_of(f"two{number}")), " (goal 3)")


# Groups with many members slow down whatever lists groups, so they come last.
go_through(prepare, measure_creation, measure_searches, measure_members)
