#!/usr/bin/python3
"""Runs `twk users set-attribute` against the domain that with-domain started, and looks at the users with others' tools.

    tests/live/with-domain ad -- tests/live/attributes_test.py TWK
"""

import json
import pathlib

from live_tools import CONF, expect_same as expect, go_through, ldap_values, run, twk

UNIT = "OU=Properties,DC=twk,DC=test"
NAMES = ("pa1", "pa2", "pa3", "zo\u00eb")


def set_attribute(*arguments, wanted, text=None, codes=(0,)):
    """Runs the command; its rows are to be these, as "LIGHT user", with the line of a file in front."""
    done = twk("--json", "users", "set-attribute", *arguments, text=text, codes=codes)
    rows = [json.loads(line) for line in done.stdout.splitlines()]
    told = [" ".join(str(row[key]) for key in ("line", "light", "user") if key in row) for row in rows if "user" in row]
    expect(sorted(told), sorted(wanted), f"rows of {arguments} ({done.stdout}{done.stderr})")
    return done


def values(name, attribute):
    return sorted(ldap_values(f"(cn={name})", attribute, UNIT))


def holds(name, attribute, *wanted):
    expect(values(name, attribute), sorted(one if isinstance(one, bytes) else one.encode() for one in wanted),
           f"{attribute} of {name}")


def prepare():
    run("samba-tool", "ou", "delete", UNIT, "--force-subtree-delete", "-s", CONF, codes=None)
    run("samba-tool", "group", "delete", "Propertied", "-s", CONF, codes=None)
    run("samba-tool", "ou", "create", UNIT, "-s", CONF)
    run("samba-tool", "computer", "create", "PC8", "--computerou", "OU=Properties", "-s", CONF, codes=None)
    for name in NAMES:
        run("samba-tool", "user", "create", name, "Welcome-2-Work", "--userou", "OU=Properties", "-s", CONF)
    run("samba-tool", "group", "add", "Propertied", "-s", CONF)
    run("samba-tool", "group", "addmembers", "Propertied", "pa1,pa3", "-s", CONF)


def one_value():
    set_attribute("title", "Clerk of %UserName%", "pa1", "zo\u00eb", "nobody-there", codes=(1,),
                  wanted=["GREEN pa1", "GREEN zo\u00eb"])
    holds("pa1", "title", "Clerk of pa1")
    holds("zo\u00eb", "title", "Clerk of zo\u00eb")
    holds("pa2", "title")
    set_attribute("department", "Members", "--group", "Propertied", wanted=["GREEN pa1", "GREEN pa3"])
    holds("pa3", "department", "Members")
    set_attribute("company", "Tarnwick", "--ou", UNIT, wanted=[f"GREEN {name}" for name in NAMES])
    holds("PC8", "company")
    # An attribute that is only in the server's own schema.
    set_attribute("msDS-cloudExtensionAttribute1", "own", "pa1", wanted=["GREEN pa1"])
    holds("pa1", "msDS-cloudExtensionAttribute1", "own")


def several_values_and_bytes():
    set_attribute("otherTelephone", "11", "pa1", wanted=["GREEN pa1"])
    set_attribute("otherTelephone", "22", "pa1", "--append", wanted=["GREEN pa1"])
    holds("pa1", "otherTelephone", "11", "22")
    set_attribute("otherTelephone", "22", "pa1", "--append", codes=(2,), wanted=["RED pa1"])
    set_attribute("otherTelephone", "33", "pa1", "--replace", wanted=["GREEN pa1"])
    holds("pa1", "otherTelephone", "33")
    set_attribute("thumbnailPhoto", "1,0, 255", "pa1", wanted=["GREEN pa1"])
    holds("pa1", "thumbnailPhoto", b"\x01\x00\xff")
    set_attribute("thumbnailPhoto", "1,256", "pa1", codes=(2,), wanted=["RED pa1"])
    holds("pa1", "thumbnailPhoto", b"\x01\x00\xff")
    set_attribute("jpegPhoto", "7", "pa1", wanted=["GREEN pa1"])
    set_attribute("jpegPhoto", "8,9", "pa1", "--append", wanted=["GREEN pa1"])
    holds("pa1", "jpegPhoto", b"\x07", b"\x08\x09")


def refusals():
    set_attribute("countryCode", "many", "pa1", "pa2", codes=(2,), wanted=["RED pa1", "RED pa2"])
    set_attribute("whenCreated", "20200101000000.0Z", "pa1", codes=(2,), wanted=["RED pa1"])
    set_attribute("manager", "CN=Nobody,DC=twk,DC=test", "pa1", codes=(2,), wanted=["RED pa1"])
    # The name of another in the middle of a run.
    set_attribute("sAMAccountName", "pa2", "pa3", "pa2", "pa1", codes=(2,), wanted=["RED pa3", "GREEN pa2", "RED pa1"])
    holds("pa3", "sAMAccountName", "pa3")
    done = set_attribute("msDS-cloudExtensionAttribute", "x", "pa1", codes=(2,), wanted=[])
    expect("msDS-cloudExtension" in done.stderr, True, f"what is near a name of the server's own schema ({done.stderr})")


def terminal_server():
    set_attribute("WTSTimeoutIdle", "5 mins", "pa1", "pa2", wanted=["GREEN pa1", "GREEN pa2"])
    set_attribute("WTSInitialProgram", "c:\\%UserName%.exe", "pa1", wanted=["GREEN pa1"])
    shown = json.loads(twk("--json", "ts", "show", "pa1").stdout)
    expect((shown["idleLimit"], shown["program"]), (300000, "c:\\pa1.exe"), "terminal-server settings of pa1")
    expect(len(values("pa2", "userParameters")), 1, "userParameters of pa2")


def values_from_a_file():
    path = pathlib.Path("values.csv")
    path.write_bytes("pa1,Head, of \"Sales\"\r\nnobody-there,x\r\nzo\u00eb,Fran\u00e7ois\r\npa2\r\npa3,\r\n".encode("cp1252"))
    set_attribute("title", "--from-file", str(path), codes=(2,),
                  wanted=["1 GREEN pa1", "2 RED nobody-there", "3 GREEN zo\u00eb", "4 RED pa2", "5 RED pa3"])
    holds("pa1", "title", "Head, of \"Sales\"")
    holds("zo\u00eb", "title", "Fran\u00e7ois")
    set_attribute("title", "--from-file", "-", text="zo\u00eb,Gar\u00e7on \u65e5\u672c\n", wanted=["1 GREEN zo\u00eb"])
    holds("zo\u00eb", "title", "Gar\u00e7on \u65e5\u672c")
    many = "".join(f"{NAMES[i % 3]},{i}\n" for i in range(300))
    set_attribute("employeeID", "--from-file", "-", text=many, wanted=[f"{i + 1} GREEN {NAMES[i % 3]}" for i in range(300)])
    holds("pa3", "employeeID", "299")


go_through(prepare, one_value, several_values_and_bytes, refusals, terminal_server, values_from_a_file, superuser=False)
