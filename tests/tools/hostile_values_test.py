#!/usr/bin/python3
"""Hostile values from a CSV file, from the directory and from a fellow's tables go through every command, format, path, filter,
name, log and console line: each stays the value that it is, or is refused, and nothing else changes. Looked at with other
eyes: the lab's LDIF, the words that a script was given, the folders of the lab's server, and the bytes of all output.

    hostile_values_test.py PATH-OF-TWK
"""

import base64
import os
import pathlib
import re
import sys
import tempfile

import lab_tools
from lab_tools import CREATE, OU

VALUES = [
    'Ann" --role admin --x "', '"', '""', "'", "\\\"", "-rf", "--", "--lab=/", "-", "%IMPORT4%", "%first%", "%UserName%", "%Domain%", "%n%", "%%",
    "%", "#U", "#", "7", "1%last%", "a\0b", "a\x01b", "a\x7fb", "a\nFORGED b", "a\r\nFORGED b", "a\rb", "\x1b[2J\x1b]0;x\x07", "\u009b2J",
    "a\u202eb", "a\u2066b\u2069", "a\u200bb", "\ufeffa", "../../x", "..", ".", "..\\..\\x", "C:\\Windows", "a\\b", "/etc/passwd", "a/b",
    "\\\\evil\\share", "\\\\?\\C:\\x", "CON", "NUL.txt", "LPT1:", "a:stream", "x;OU=y", "x+cn=y", "<x>", "a=b", "*)(cn=*", "*", "(|(cn=a))", "\\2a",
    "$(touch pwned)", "`touch pwned`", "; touch pwned", "| touch pwned", "&& touch pwned", "${HOME}", "~", "a" * 300, "\udcff\udcfe", "  lead",
    "trail  ", "trail.", "a\tb", "\U0001f600", "CN=Ann Lee", "O'Hara<script>"]
CONTROL = re.compile("[\x00-\x08\x0b-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u2069]")
RDN = re.compile(r'CN=(?:\\[0-9A-Fa-f]{2}|\\.|[^\\,+"<>;])+,' + re.escape(OU))
SCRIPT = '#!/bin/sh\nfor word; do printf "%s\\0" "$word"; done >> "$0.ran"\nprintf "=END=\\0" >> "$0.ran"\n'
faults = []


def expect(holds, *what):
    if not holds:
        faults.append(" ".join(map(repr, what)))


def look_at_lines(what, data, shown=CONTROL):
    """Nothing that moves a cursor or turns a text around, and no line of its own."""
    text = data.decode("utf-8", "replace")
    found = shown.search(text)
    expect(not found, what, "shows", text[max(0, found.start() - 40):found.end() + 20] if found else "")
    expect(not re.search("^FORGED", text, re.MULTILINE), what, "has a line that is no line")


def twk(*arguments, text=b"", codes=(0, 1, 2, 64, 65)):
    done = lab_tools.twk("lab", *(os.fsencode(one) for one in arguments), text=text, codes=None, timeout=60)
    expect(done.returncode in codes, arguments, "ends with", done.returncode, done.stderr[-300:])
    look_at_lines(arguments, done.stdout + done.stderr)
    return done


def bytes_of(value):
    return value.encode("utf-8", "surrogateescape")


def others(found):
    """What stands elsewhere, without what each account counts on."""
    counted = ("member", "uSNChanged", "whenChanged", "rIDNextRID", "rIDAllocationPool")
    return {dn: {name: values for name, values in entry.items() if name not in counted}
            for dn, entry in found.items() if not dn.endswith("," + OU)}


def files():
    return {str(path) for path in pathlib.Path(".").rglob("*") if not str(path).startswith(("lab/db", "lab/domain", "lab/settings", "script"))
            and not path.name.endswith((".ldif", ".lock"))}


def commands():
    """The words of each command since the last look."""
    ran = pathlib.Path("script.ran")
    told = ran.read_bytes().decode("utf-8", "surrogateescape") if ran.exists() else ""
    ran.unlink(missing_ok=True)
    return [one.split("\0")[:-1] for one in told.split("=END=\0")[:-1]]


def folded(text):
    return text.strip().casefold()


def check_words(words, users):
    """The script got eight words, of which each value is one, or a part of one."""
    expect(len(words) == 8, "a command of", len(words), "words:", words)
    if len(words) != 8 or folded(words[0]) not in users:
        return expect(False, "a command for nobody:", words)
    first, last, field = users[folded(words[0])]
    expect(words[1] == "--" and folded(words[2]) == folded(first).replace("#", ""), "the first name", first, "became", words)
    expect(folded(words[3]) == folded(last).replace("#", ""), "the last name", last, "became", words)
    expect(words[4:] == [field.strip(" "), f"a {field} b", f"x{field}y", "%"], "the field", field, "became", words)


def import_lines():
    """Lines that have a value as first name, last name, account name, each also as another field, which one line takes."""
    for place, value in enumerate(VALUES):
        if re.search("[,\r\n\udc80-\udcff]", value) is None:
            yield value, f"L{place}", f"u{place:02}", value
            yield f"F{place}", value, f"w{place:02}", value
            yield f"F{place}", f"K{place}", value, value


def check_import():
    before, there = others(lab_tools.exported("lab")), files()
    pathlib.Path("new.csv").write_bytes(b"\xef\xbb\xbf" + b"".join(b",".join(map(bytes_of, (first, "", *rest))) + b"\n" for first, *rest in import_lines()))
    users = {folded(account): (first, last, field) for first, last, account, field in import_lines()}
    # An account name that is none gives way to the format.
    users.update({folded(f"{first}.{last}1"): (first, last, field) for first, last, _, field in import_lines()})
    twk("user", "import", "new.csv", *CREATE, "--id", "4")
    found = lab_tools.exported("lab")
    expect(others(found) == before, "the import changed", [dn for dn, entry in others(found).items() if before.get(dn) != entry][:3])
    made = {dn: entry for dn, entry in found.items() if dn.endswith("," + OU) and dn != "CN=Staff," + OU}
    for dn, entry in made.items():
        expect(RDN.fullmatch(dn), "no name of one part:", dn)
        account = entry["sAMAccountName"][0].decode()
        field = users.get(folded(account), ("", "", None))[2]
        wanted = None if field is None else bytes_of(field.strip(" ") if "%" not in field else "")
        expect(entry.get("info", [b""])[0] in (wanted, b""), "info of", account, "is", entry.get("info"))
        home = entry.get("homeDirectory", [rb"\\FS1\Users" + b"\\" + account.encode()])[0].decode()
        expect(home == "\\\\FS1\\Users\\" + account, "home of", account, "is", home)
    expect(len(made) > len(VALUES), "too few users were made:", len(made))
    for path in files() - there - {"new.csv"}:
        place = re.fullmatch(r"lab/servers/FS1/D/(?:Users|Profiles)/([^/]+)", path)
        expect(place and folded(place[1]) in users, "a file or folder that is nobody's:", path)
    ran = commands()
    named = {folded(words[0]) for words in ran}
    # A name that is longer than the directory takes leaves a warning, after which no command runs.
    without = [dn for dn, entry in made.items() if folded(entry["sAMAccountName"][0].decode()) not in named
               and len(users[folded(entry["sAMAccountName"][0].decode())][2]) < 256]
    expect(not without and len(ran) == len(named), len(ran), "commands, and none for", without)
    for words in ran:
        check_words(words, users)


def check_directory():
    """People of a directory that someone else filled, as they are shown, searched and deleted."""
    lines = []
    for place, value in enumerate(VALUES):
        coded = base64.b64encode(bytes_of(value)).decode()
        for name, account in ((f"D{place}", f": d{place}"), (f"E{place}", ":: " + coded)):
            lines += [f"dn: CN={name},OU=Others,DC=twk,DC=test", "objectClass: top", "objectClass: person", "objectClass: organizationalPerson",
                      "objectClass: user", "objectCategory: CN=Person,CN=Schema,CN=Configuration,DC=twk,DC=test", "sAMAccountName" + account,
                      "sAMAccountType: 805306368", "userAccountControl: 512", "primaryGroupID: 513", *(f"{name}:: {coded}" for name in (
                          "displayName", "description", "givenName", "sn", "homeDirectory", "profilePath", "scriptPath")), ""]
    pathlib.Path("others.ldif").write_text("dn: OU=Others,DC=twk,DC=test\nobjectClass: organizationalUnit\nou: Others\n\n" + "\n".join(lines))
    twk("lab", "import", "others.ldif", codes=(0,))
    there, before = files(), lab_tools.exported("lab")
    twk("user", "list")
    for place, value in enumerate(VALUES):
        expect(twk("user", "show", f"d{place}", codes=(0, 1)).stdout, "nothing is shown of", value)
        if "\0" not in value and value.strip() and not value.startswith("-"):
            named = twk("user", "show", "--", value)
            hit = any(folded(entry.get("sAMAccountName", [b""])[0].decode("utf-8", "surrogateescape")) == folded(value) or folded(entry["dn"][0].decode().split(",")[0][3:]) == folded(value)
                      for entry in before.values())
            expect(named.returncode != 0 or hit, value, "is the name of somebody:", named.stdout[:200])
    expect(lab_tools.exported("lab") == before, "looking changed something")
    done = twk("users", "delete", "--ou", "OU=Others,DC=twk,DC=test", "--account", "--data", "--shares", "--no-prompting", "--run-command")
    after = lab_tools.exported("lab")
    ran = commands()
    expect(len(ran) > len(VALUES), "too few deletions ran a command:", len(ran))
    for words in ran:
        expect(len(words) == 3 and words[1:] == ["--", f"a {words[0]} b"], "a command after a deletion got", words)
    expect({dn for dn in before if dn not in after} <= {dn for dn in before if "OU=Others" in dn}, "others were deleted:", done.stdout[-400:])
    expect(there - files() == set(), "the deletion took", sorted(there - files())[:4])


def check_tables():
    """Rows of a fellow lead nowhere but to what they name: an attribute, an account or a path of their own text."""
    there, before, database = files(), others(lab_tools.exported("lab")), pathlib.Path("lab/db")
    raws = [re.sub(rb"[\r\n]", b" ", bytes_of(value)) for value in VALUES]
    records = [b"\0\0" + raw[:50].ljust(50) + (raw[:12] if place % 2 else b"Full Control").ljust(12) + raw[:50].ljust(50)
               for place, raw in enumerate(raws)]
    (database / "W2K.dat").write_bytes(b"".join(b"p,%b,x\r\np,description,%b\r\np,homeMDB,%b\r\nm,%b,%b\r\n" % ((raw,) * 5) for raw in raws))
    (database / "Mail.dat").write_bytes(b"".join(b"%b,%b\r\n" % (raw, raw) for raw in raws[:49]))
    for name in ("Permissions.dat", "SharePerm.dat"):
        (database / name).write_bytes(b"".join(records))
    for number in range(0, len(raws), 13):
        (database / "WTS.dat").write_bytes(b"".join(raw + b"\r\n" for raw in raws[number:number + 13]))
        account = f"T{number}.Row"
        done = twk("user", "create", *CREATE, f"T{number}", "Row")
        there |= {f"lab/servers/FS1/D/{kind}/{account}" for kind in ("Users", "Profiles")}
        expect(done.returncode in (1, 2), "rows of nobody were set without a word:", done.stderr)
        listed = twk("--json", "acl", "show", "\\\\FS1\\Users\\" + account, codes=(0,)).stdout.decode()
        expect("Everyone" not in listed and "Ann Lee" not in listed, "a row that names nobody gave rights:", listed)
    found = others(lab_tools.exported("lab"))
    expect(found == before, "a row changed", [dn for dn, entry in found.items() if before.get(dn) != entry][:3])
    expect(files() <= there, "a row made", sorted(files() - there)[:4])


def main():
    twk("lab", "init", "lab", "--sample", "--users", "3", codes=(0,))
    pathlib.Path("script").write_text(SCRIPT)
    pathlib.Path("script").chmod(0o755)
    words = f'{pathlib.Path("script").resolve()} %UserName% -- "%first%" %last% %IMPORT5% "a %IMPORT5% b" x%IMPORT5%y %'
    for key, name, value in (("Setup", "BatchFileCreate", words), ("Setup", "WaitNew", "Yes"), ("Setup", "WaitDelete", "Yes"), ("UM", "RunCmd", "Yes"), ("UM", "MailAccount", "No")):
        twk("settings", "set", key, name, value, codes=(0,))
    twk("table", "set", "w2k", text=b"p,info,%IMPORT5%\n", codes=(0,))
    check_import()
    twk("settings", "set", "Setup", "BatchFileDelete", f'{words.split()[0]} %UserName% -- "a %UserName% b"', codes=(0,))
    check_directory()
    twk("settings", "set", "UM", "RunCmd", "No", codes=(0,))
    check_tables()
    for path in pathlib.Path("lab/db").iterdir():
        # Tables are data, whose letters stay, and so are the lines that can be imported once more.
        if path.suffix in (".txt", ".err", ".csv", ".jsonl") and not path.name.startswith("Import Remaining"):
            look_at_lines(path.name, path.read_bytes().replace(b"\r\n", b"\n"), re.compile("[\x00-\x08\x0b-\x1f\x7f]"))
    if faults:
        sys.exit(f"{len(faults)} faults\n" + "\n".join(faults[:25]))
    print(f"{len(VALUES)} hostile values stay what they are")


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    main()
