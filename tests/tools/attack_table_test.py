"""Gives an account homes and profiles that belong to someone else, or to nobody, and deletes, moves and renames it:
no file, share, list or account of another may change, and the rehearsal must tell the same end as the run.

    attack_table_test.py PATH-OF-TWK
"""

import base64
import functools
import os
import re
import shutil
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

import lab_tools
from lab_tools import CREATE

OWN, ALL_THE_SAME = None, "--even-if-shared"

# What Jo's account is given, and what a refusal to delete names: OWN where the folder is Jo's and goes. With
# ALL_THE_SAME the person insists, and the last word is what goes then. Ann has home and profile of the template, Bob
# a home elsewhere and paths for terminal servers.
ROWS = [
    (r"home=\\FS1\Users\Jo.Fox", OWN),
    (r"home=\\fs1\users\JO.FOX", OWN),
    (r"home=\\FS1\Users\\Jo.Fox\ ", OWN),
    (r"home=\\FS1\D$\Users\Jo.Fox", OWN),
    (r"home=\\FS1\jo.fox$", OWN),
    (r"home=\\FS1\Users\Jo.Fox\sub", OWN),
    (r"profile=\\FS1\Users\Jo.Fox\sub", OWN),
    (r"home=\\FS1\jo.fox$|profile=\\FS2\Profiles\Jo.Fox", OWN),
    (r"home=\\FS1\Data\Jo.Fox\Jo.Fox", OWN),
    (r"home=\\FS1\Jo.Fox\Jo.Fox", OWN),
    (r"home=\\FS1\Users\Jo.Foxton", OWN, "FS1/D/Users/Jo.Foxton"),
    (r"home=\\FS1\Users\Gone", "does not exist"),
    (r"home=\\FS1\D$\Jos\Jo.Fox", "jo.fox$"),
    # Drives, and shares that a server has for itself.
    (r"home=\\FS1\D$", "the server's own"),
    (r"home=\\fs1\d$\ ", "no folder"),
    (r"home=\\FS1\D$|" + ALL_THE_SAME, "the server's own"),
    (r"home=\\FS1\K$", "the server's own"),
    (r"home=\\FS1\Whole", "drive"),
    (r"home=\\FS1\ADMIN$", ""),
    (r"profile=\\FS1\C$", "the server's own"),
    (r"profile=\\FS1\NETLOGON\Staff", OWN),
    # Common shares and folders.
    (r"home=\\FS1\Users", "Ann.Lee"),
    (r"home=\\FS1\users\ ", "no folder"),
    (r"home=\\FS1\D$\Users", "Ann.Lee"),
    (r"home=\\FS1\Dept", "Everybody"),
    (r"home=\\FS1\Users\Pool", "Scans"),
    (r"home=\\FS1\Users\Big", "Inner"),
    (r"home=\\FS1\Data\Homes", "Bob.Ray"),
    (r"home=\\FS1\Data", "Bob.Ray"),
    (r"home=\\FS1\D$\Data\Homes", "Bob.Ray"),
    (r"profile=\\FS1\Profiles", "Ann.Lee"),
    (r"profile=\\FS1\Profiles\\ ", "no folder"),
    (r"profile=\\FS1\Users", ""),
    # Another's folder, what lies in it, what holds it, and its other spellings.
    (r"home=\\FS1\Users\Ann.Lee", "Ann.Lee"),
    (r"home=\\FS1\Users\Ann.Lee|" + ALL_THE_SAME, "Ann.Lee", "FS1(/D/Users/Ann.Lee| cn=ann.lee,cn=users,.*)"),
    (r"home=\\FS1\users\ann.LEE", "Ann.Lee"),
    (r"home=\\FS1\Users\\Ann.Lee", "Ann.Lee"),
    ("home=\\\\FS1\\Users\\Ann.Lee\\", "Ann.Lee"),
    (r"home=\\FS1\Users\Ann.Lee ", "Ann.Lee"),
    (r"home=\\FS1\Users\Ann.Lee.", ""),
    (r"home=\\FS1\Users\Ann.Lee \sub", ""),
    (r"home=\\FS1\Users\Jo.Fox\..\Ann.Lee", "elsewhere"),
    (r"home=\\FS1/Users/Ann.Lee", ""),
    (r"home=//FS1/Users/Ann.Lee", OWN),
    (r"home=\\FS1.twk.test\Users\Ann.Lee", ""),
    (r"home=\\FS1\D$\Users\Ann.Lee", "Ann.Lee"),
    (r"home=\\FS1\Alias\Ann.Lee", "Ann.Lee"),
    (r"home=\\FS1\Users\Ann.Lee\sub", "Ann.Lee"),
    (r"home=\\FS1\Users\Ann.Lee\sub|" + ALL_THE_SAME, "Ann.Lee", "FS1/D/Users/Ann.Lee/sub"),
    (r"home=\\FS1\Data\Homes\Bob.Ray", "Bob.Ray"),
    (r"home=\\FS1\Data\TS", "Bob.Ray"),
    (r"home=\\FS1\Data\TS\Bob.Ray\sub", "Bob.Ray"),
    (r"home=\\FS1\Profiles\Ann.Lee", "Ann.Lee"),
    (r"profile=\\FS1\Profiles\Bob.TS", "Bob.Ray"),
    (r"profile=\\FS1\Profiles\Ann.Lee", "Ann.Lee"),
    (r"profile=\\FS1\Profiles\Ann.Lee\sub", "Ann.Lee"),
    (r"profile=\\FS1\Data\Homes\Bob.Ray", "Bob.Ray"),
    (r"ts home=\\FS1\Users\Ann.Lee", OWN),
    (r"ts profile=\\FS1\Profiles\Ann.Lee", OWN),
    # Links: the last part, one in the middle, the folder of the share.
    (r"home=\\FS1\Users\Hop", "link"),
    (r"home=\\FS1\Users\Hop\sub", "link"),
    (r"home=\\FS1\Users\Mid\Jo.Fox", "link"),
    (r"home=\\FS1\Top\Ann.Lee", ""),
    (r"profile=\\FS1\Profiles\Hop", "link"),
    # The share of that name on another server, where it is a department's; profiles that many have.
    (r"profile=\\FS2\jo.fox$", "Dept"),
    (r"profile=\\FS1\Profiles\Staff.man", OWN),
    ("profile=\\\\FS1\\Profiles\\Staff.man\\", OWN),
    (r"profile=\\FS1\Profiles\Staff.man ", OWN),
    (r"profile=\\FS1\Profiles\Staff.MAN", OWN),
]
EVERY_SO_MANY_IN_NT = 8
JO = "(Jo.Fox|Max.Ray)"
JOS = re.compile(rf"/D/((Users|Profiles|Jos)/{JO}|Data/Jo.Fox/{JO})(/|$)|[12] (.*,)?cn={JO},cn=(users|profiles|jo.fox),|"
                 rf"FS1 cn={JO}\$,cn=shares|^cn={JO},", re.I)
WAYS = {
    "delete": ("--account", "--data", "--shares", "--no-prompting"),
    "move": ("--site", "Branch", "--template", "Staff", "--data", "move", "--no-prompt"),
    "rename": ("--full-name", "Max.Ray", "--logon", "Max.Ray", "--rename-dirs"),
}


def run(lab, *arguments, codes=(0,)):
    return lab_tools.twk(lab, "--json", *arguments, codes=codes)


def make_world(lab, kind):
    lab_tools.make_lab(lab, "--kind", kind, "--users", "0")
    for folder in ("FS1/C/Kept", "FS1/D/Data/Homes/Bob.Ray", "FS1/D/Data/Jo.Fox/Jo.Fox", "FS1/D/Data/Jo.Fox/Minutes",
                   "FS1/D/Data/TS/Bob.Ray/sub", "FS1/D/Dept", "FS1/D/Jos/Jo.Fox", "FS1/D/Profiles/Bob.TS",
                   "FS1/D/Profiles/Staff.man", "FS1/D/Users/Big/in", "FS1/D/Users/Jo.Foxton",
                   "FS1/D/Users/Mid.target/Jo.Fox", "FS1/D/Users/Pool", "FS2/D/Dept", "FS2/D/Profiles/Jo.Fox",
                   "FS2/D/Users"):
        os.makedirs(f"{lab}/servers/{folder}")
    for first, last in (("Jo", "Fox"), ("Ann", "Lee"), ("Bob", "Ray")):
        run(lab, "user", "create", *(CREATE[:4] if kind == "nt" else CREATE), first, last)
        os.makedirs(f"{lab}/servers/FS1/D/Users/{first}.{last}/sub")
        os.makedirs(f"{lab}/servers/FS1/D/Profiles/{first}.{last}/sub")
    for link, target in (("Users/Hop", "Ann.Lee"), ("Users/Mid", "Mid.target"), ("Profiles/Hop", "Ann.Lee"),
                         ("Top", "Users")):
        os.symlink(target, f"{lab}/servers/FS1/D/{link}")
    for folder, folders, _ in os.walk(lab + "/servers"):
        if not folders:
            with open(f"{folder}/letter.txt", "w", encoding="utf-8") as file:
                file.write(folder)
    run(lab, "site", "add", "Branch", "--nt-server", "FS2")
    for server, share, folder in (
            ("FS1", "Dept", r"D:\Dept"), ("FS1", "Everybody", r"D:\Dept"), ("FS1", "Data", r"D:\Data"),
            ("FS1", "Jo.Fox", r"D:\Data\Jo.Fox"), ("FS1", "Scans", r"D:\Users\Pool"), ("FS1", "Inner", r"D:\Users\Big\in"), ("FS1", "Alias", r"D:\Users"),
            ("FS1", "Top", r"D:\Top"), ("FS1", "K$", r"C:\Kept"), ("FS1", "Whole", "D:\\"),
            ("FS1", "jo.fox$", r"D:\Jos\Jo.Fox"), ("FS2", "jo.fox$", r"D:\Dept"), ("FS2", "Dept", r"D:\Dept"),
            ("FS2", "Users", r"D:\Users"), ("FS2", "Profiles", r"D:\Profiles")):
        run(lab, "share", "add", server, share, folder)
    run(lab, "user", "set", "bob.ray", r"home=\\FS1\Data\Homes\Bob.Ray")
    run(lab, "ts", "set", "bob.ray", r"home=\\FS1\Data\TS\Bob.Ray", r"profile=\\FS1\Profiles\Bob.TS")


@functools.lru_cache
def entries(ldif):
    """What a directory or a server keeps, after the changes of its journal."""
    kept = {}
    for block in ldif.replace("\n ", "").split("\n\n"):
        lines = [line for line in block.splitlines() if not line.startswith("#")]
        if not lines or not lines[0].startswith("dn:"):
            continue
        key, _, dn = lines[0].partition(": ")
        dn = (base64.b64decode(dn).decode() if key.endswith(":") else dn).casefold()
        change = lines[1].partition(": ")[2] if lines[1:] and lines[1].startswith("changetype") else "add"
        rest = [line for line in lines[1:] if not line.startswith("changetype")]
        if change == "delete":
            kept = {key: value for key, value in kept.items() if key != dn and not key.endswith("," + dn)}
        elif change in ("modrdn", "moddn"):
            new = dict(line.split(": ", 1) for line in rest)
            to = new["newrdn"].casefold() + "," + new.get("newsuperior", dn.partition(",")[2]).casefold()
            kept = {key[:-len(dn)] + to if key == dn or key.endswith("," + dn) else key: value
                    for key, value in kept.items()}
        elif change == "modify":
            for part in "\n".join(rest).split("\n-"):
                operation, _, attribute = part.strip().partition("\n")[0].partition(": ")
                values, old = set(part.strip().splitlines()[1:]), kept[dn].get(attribute, set())
                kept[dn][attribute] = (values if operation == "replace" else old | values if operation == "add"
                                       else old - values if values else set())
        else:
            kept[dn] = {}
            for line in rest:
                kept[dn].setdefault(line.partition(":")[0], set()).add(line)
    return kept


def text_of(path):
    if os.path.islink(path):
        return "-> " + os.readlink(path)
    with open(path, encoding="utf-8") as file:
        return file.read()


def world(lab):
    """Files, shares and folders with their lists, accounts."""
    found = {}
    for folder, folders, files in os.walk(lab + "/servers"):
        for name in folders + files:
            path = os.path.join(folder, name)
            if not name.endswith(".ldif"):
                found[path[len(lab):]] = "" if name in folders and not os.path.islink(path) else text_of(path)
    for kept in [f"servers/{server}/server" for server in os.listdir(lab + "/servers")] + ["domain"]:
        ldif = "\n\n".join(text_of(f"{lab}/{kept}{end}") for end in (".ldif", ".journal.ldif")
                           if os.path.exists(f"{lab}/{kept}{end}"))
        for dn, entry in entries(ldif).items():
            told = {name: values for name, values in entry.items() if values and name.lower() not in (
                "objectclass", "member", "usnchanged", "whenchanged", "ridnextrid")}
            if told:
                found[f"{kept[8:11]} {dn}".strip()] = told
    return found


def commands_of(number, given):
    """Words of a command that are tried on a row, of the two deletions by turns."""
    insist = (ALL_THE_SAME,) if ALL_THE_SAME in given else ()
    yield (("user", "users")[number % 2], "delete", "jo.fox", *WAYS["delete"], *insist)
    yield "user", "move", "jo.fox", *WAYS["move"], *insist
    if not insist:
        yield "user", "rename", "jo.fox", *WAYS["rename"]
    if "profile=" in given:
        yield "profile", "delete", "jo.fox", *insist


def attack(lab, number, given, named, goes=""):
    """The faults that one row finds."""
    for field in given.split("|"):
        if field.startswith("ts "):
            run(lab, "ts", "set", "jo.fox", field[3:])
        elif field != ALL_THE_SAME:
            run(lab, "user", "set", "jo.fox", field)
    before = world(lab)
    allowed = re.compile(JOS.pattern + (f"|{goes}(/|$)" if goes else ""), re.I)
    for command in commands_of(number, given):
        row = f"{given}: {' '.join(command[:2])}"
        dry = run(lab, *command, "--dry-run", codes=(0, 1, 2)) if command[1] != "rename" else None
        shutil.copytree(lab, lab + "-run", symlinks=True)
        real = run(lab + "-run", *command, codes=(0, 1, 2))
        after = world(lab + "-run")
        shutil.rmtree(lab + "-run")
        harmed = [what for what in before.keys() | after.keys()
                  if not allowed.search(what) and before.get(what) != after.get(what)]
        if harmed:
            yield f"{row} harms {sorted(harmed)[:5]}, {len(harmed)} in all"
        # A lab keeps a folder that a share holds, and the old share stays where the template has none: only the run
        # sees that the emptied folder cannot go.
        kept = command[1] == "move" and r"home=\\FS1\jo.fox$" in given
        if dry and dry.returncode != real.returncode and not kept:
            yield f"{row}: rehearsal {dry.returncode}, run {real.returncode}"
        if command[1] == "delete" and command[0] != "profile":
            ends = [("the rehearsal", dry), ("the run", real)]
            yield from (f"{row}: {what} does not name {named!r}:\n{done.stdout}{done.stderr}" for what, done in ends
                        if named and not goes and named not in done.stdout + done.stderr)
            if real.returncode != (0 if named is OWN or goes else real.returncode or 3):
                yield f"{row} ends with {real.returncode}:\n{real.stdout}{real.stderr}"
    if world(lab) != before:
        yield f"{given}: the rehearsals changed something"


def main():
    with tempfile.TemporaryDirectory(dir="/dev/shm" if os.path.isdir("/dev/shm") else None) as folder:
        make_world(f"{folder}/native", "native")
        make_world(f"{folder}/nt", "nt")
        rows = [("native", *row) for row in ROWS] + [("nt", *row) for row in ROWS[::EVERY_SO_MANY_IN_NT]]

        def attack_copy(number):
            kind, *row = rows[number]
            lab = shutil.copytree(f"{folder}/{kind}", f"{folder}/{number}", symlinks=True)
            faults = [f"{kind}: {fault}" for fault in attack(lab, number, *row)]
            shutil.rmtree(lab)
            return faults

        with ThreadPoolExecutor(2) as pool:
            faults = sum(pool.map(attack_copy, range(len(rows))), [])
    print(f"{len(rows)} rows, {len(faults)} faults")
    if faults:
        sys.exit("\n".join(faults))


main()
