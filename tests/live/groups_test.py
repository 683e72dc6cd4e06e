#!/usr/bin/python3
"""Makes, fills, copies and deletes groups in the domain that with-domain started, and looks at them with others' tools.

    tests/live/with-domain ad|nt -- tests/live/groups_test.py TWK
"""

import json

from live_tools import CONF, IS_AD, LIVE, admin_logon, expect, expect_same as check, go_through, run, twk

# A Samba controller of the NT4 kind takes no member whose name has a capital letter.
USERS = ("gann", "gbob", "gcyd")


def rpc(*arguments, **options):
    return run("net", "rpc", *arguments, "-S", LIVE["SERVER"], "-U", admin_logon(), **options).stdout


def stored_members(group):
    """Account names, by the server's own tool."""
    if IS_AD:
        text = run("samba-tool", "group", "listmembers", group, "-s", CONF).stdout
    else:
        text = rpc("group", "members", group)
    return sorted(line.rpartition("\\")[2] for line in text.splitlines() if line.strip())


def rows(*arguments, codes=(0,)):
    told = twk("--json", "group", *arguments, codes=codes)
    return [json.loads(line) for line in told.stdout.splitlines()]


def lights(told):
    return [row["light"] for row in told]


def prepare():
    for user in USERS:
        if IS_AD:
            run("samba-tool", "user", "create", user, "Welcome-2-Work", "-s", CONF)
        else:
            rpc("user", "add", user)


def make_groups():
    check(lights(rows("create", "gdrivers", "--description", "Who drive")), ["GREEN"], "a new group")
    check(lights(rows("create", "gother")), ["GREEN"], "a second group")
    check(lights(rows("create", "gdrivers", codes=(2,))), ["RED"], "a group that is there")
    if IS_AD:
        shown = run("samba-tool", "group", "show", "gdrivers", "-s", CONF).stdout
        for what in ("groupType: -2147483646", "description: Who drive", "dn: CN=gdrivers,CN=Users,DC=twk,DC=test"):
            expect(what, "the new group", shown)
        rows("create", "gmail", "--scope", "universal", "--kind", "distribution")
        expect("groupType: 8", "the list for mail", run("samba-tool", "group", "show", "gmail", "-s", CONF).stdout)
    else:
        shown = run("rpcclient", "-U", admin_logon(), LIVE["SERVER"], "-c", "enumdomgroups").stdout
        expect("[gdrivers]", "groups of the domain", shown)


def change_members():
    told = rows("add-member", "gdrivers", "gann", "nobody-at-all", "gbob", "gann", codes=(2,))
    check(sorted(lights(told)), ["GREEN", "GREEN", "RED"], "adding members")
    check(stored_members("gdrivers"), ["gann", "gbob"], "members")
    check(lights(rows("add-member", "gdrivers", "gbob", codes=(1,))), ["YELLOW"], "adding a member again")
    listed = rows("members", "gdrivers")
    check([row["name"] for row in listed], ["gann", "gbob"], "members listed")
    check([row["primary"] for row in listed], [False, False] if IS_AD else [None, None], "primary groups")
    check(lights(rows("remove-member", "gdrivers", "gann", "gcyd", codes=(1,))), ["YELLOW", "GREEN"], "removing members")
    check(stored_members("gdrivers"), ["gbob"], "members that are left")


def change_groups_of_users():
    """One is in one of the groups already, one does not exist, and nobody can leave the primary group."""
    def change(*arguments, codes=(0,)):
        told = [json.loads(line) for line in twk("--json", "users", "groups", *arguments, *USERS, codes=codes).stdout.splitlines()]
        return [(row["user"], row["light"], row["message"].partition(": ")[2]) for row in told[:-1]]

    check(change("--add", "gdrivers", "--add", "gother", "nobody-at-all", codes=(1,)),
          [(user, "GREEN", f"{'in gdrivers already' if user == 'gbob' else 'added to gdrivers'}; added to gother") for user in USERS],
          "users added to groups")
    check((stored_members("gdrivers"), stored_members("gother")), (sorted(USERS), sorted(USERS)), "members of two groups")
    steps = twk("users", "groups", "--remove", "gother", "--remove", "gdrivers", "--dry-run", *USERS).stdout
    check(steps.count("Remove "), 6, "steps of a rehearsal")
    twk("group", "remove-member", "gdrivers", "gcyd")
    check(change("--remove", "gother", "--remove", "gdrivers", "--add", "gdrivers", codes=(0,)),
          [(user, "GREEN", f"removed from gother; {'not in' if user == 'gcyd' else 'removed from'} gdrivers; added to gdrivers")
           for user in USERS], "users removed from groups")
    twk("group", "remove-member", "gdrivers", "gann", "gcyd")
    check((stored_members("gdrivers"), stored_members("gother")), (["gbob"], []), "members that are left of two groups")
    if IS_AD:
        check([light for _, light, _ in change("--remove", "Domain Users", "--remove", "gdrivers", codes=(1, 2))],
              ["YELLOW"] * 3, "users leaving their primary group")
        # By name and by unit: the second look finds what the first one did.
        told = twk("users", "groups", "--add", "gother", "gann", "--ou", "CN=Users,DC=twk,DC=test").stdout
        check((told.count("gann: added to gother"), told.count("gann: in gother already")), (1, 1), "a user who is met twice")
        twk("users", "groups", "--remove", "gother", "--ou", "CN=Users,DC=twk,DC=test")
        twk("group", "add-member", "gdrivers", "gbob")


def look_at_primary_group():
    everybody = {row["name"]: row["primary"] for row in rows("members", "Domain Users")}
    check({user: everybody.get(user) for user in USERS}, dict.fromkeys(USERS, True), "who is in Domain Users")
    refused = twk("group", "remove-member", "Domain Users", "gann", codes=(1,))
    expect("Can't remove user 'gann' from 'Domain Users'", "leaving a primary group", refused.stderr)
    run("samba-tool", "group", "addmembers", "gdrivers", "gother", "-s", CONF)
    check([row["name"] for row in rows("members", "gdrivers")], ["gbob"], "members beside a nested group")


def copy_members():
    """One of them is a member already, for which a server refuses all that came with it."""
    twk("group", "add-member", "gother", "gcyd")
    twk("group", "add-member", "gdrivers", "gann", "gcyd")
    copied = twk("--yes", "--json", "group", "copy", "gdrivers", "gother", codes=(1,)).stdout.splitlines()
    check(sorted(json.loads(line)["light"] for line in copied), ["GREEN", "GREEN", "YELLOW", "YELLOW"], "a copy and its sum")
    check(stored_members("gother"), ["gann", "gbob", "gcyd"], "members after a copy")


def delete_groups():
    for group in ("gdrivers", "gother", *(["gmail"] if IS_AD else [])):
        twk("--yes", "group", "delete", group)
    left = run("samba-tool", "group", "list", "-s", CONF).stdout if IS_AD else rpc("group", "list")
    for group in ("gdrivers", "gother", "gmail"):
        check(group in left.split(), False, f"the group {group} is there")
    twk("group", "members", "gdrivers", codes=(2,))


go_through(prepare, make_groups, change_members, change_groups_of_users, *([look_at_primary_group] if IS_AD else []), copy_members, delete_groups)
