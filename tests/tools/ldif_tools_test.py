#!/usr/bin/env python3
"""LDIF between twk and the OpenLDAP tools: what one side writes the other reads, and nothing is lost on the way.

usage: ldif_tools_test.py TWK

A throw-away slapd on a Unix socket takes an exported lab from ldapadd and the lab's journal from ldapmodify; what
ldapsearch -LLL then writes is imported into another lab, whose export must be the same.
"""
import base64
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import urllib.parse

import lab_tools

SLAPD = next((path for path in ("/usr/sbin/slapd", "/usr/local/libexec/slapd") if os.path.exists(path)), None)
BASE = "DC=twk,DC=test"
# Kept by the server itself, or computed by the lab.
OWN = {"distinguishedname", "memberof", "ridnextrid"}
# Declared by slapd before it reads a schema.
BUILT_IN = {"objectclass", "cn", "name", "description", "uid", "userpassword", "seealso", "labeleduri"}


def run(*command, text=None, codes=(0,)):
    done = subprocess.run(command, input=text, capture_output=True, text=True, check=False)
    if done.returncode not in codes:
        sys.exit(f"{' '.join(map(str, command))} ended with {done.returncode}\n{done.stdout[-2000:]}{done.stderr[-2000:]}")
    return done.stdout


def folded(name):
    """A distinguished name in one case and with one spelling of an escaped comma."""
    return name.lower().replace("\\2c", "\\,")


def entries(ldif, left_out=frozenset(OWN)):
    """Distinguished name in lower case -> set of (attribute in lower case, value in bytes)."""
    found = {}
    unfolded = re.sub(r"\r?\n ", "", ldif)
    for block in re.split(r"\n\s*\n", unfolded):
        name, values = None, set()
        for line in block.splitlines():
            match = re.match(r"([A-Za-z][\w;.-]*)(::?) ?(.*)", line)
            if not match or match[1].lower() == "version":
                continue
            value = base64.b64decode(match[3]) if match[2] == "::" else match[3].encode()
            if match[1].lower() == "dn":
                name = folded(value.decode())
            elif match[1].lower() not in left_out:
                values.add((match[1].lower(), folded(value.decode()).encode() if match[1].lower() == "member" else value))
        if name:
            found[name] = values
    return found


def schema(ldif):
    """Declares every attribute and class of the export, so that the server takes them as they are."""
    attributes, classes = set(), set()
    for values in entries(ldif, frozenset()).values():
        attributes |= {name for name, _ in values}
        classes |= {value.decode() for name, value in values if name == "objectclass"}
    attributes -= BUILT_IN
    lines = []
    for number, name in enumerate(sorted(attributes)):
        equality = "distinguishedNameMatch" if name == "member" else "octetStringMatch"
        syntax = "1.3.6.1.4.1.1466.115.121.1." + ("12" if name == "member" else "40")
        if name in ("ou", "dc"):
            equality, syntax = "caseIgnoreMatch", "1.3.6.1.4.1.1466.115.121.1.15"
        lines.append(f"attributetype ( 1.3.6.1.4.1.99999.1.{number} NAME '{name}' EQUALITY {equality} SYNTAX {syntax} )")
    may = " $ ".join(sorted(attributes | {"cn", "description"}))
    for number, name in enumerate(sorted(classes - {"top"})):
        lines.append(f"objectclass ( 1.3.6.1.4.1.99999.2.{number} NAME '{name}' SUP top AUXILIARY MAY ( {may} ) )")
    lines.append("objectclass ( 1.3.6.1.4.1.99999.3 NAME 'anything' SUP top STRUCTURAL )")
    return "\n".join(lines) + "\n"


def with_structural_class(ldif):
    return re.sub(r"(?m)^(objectClass: top)$", r"\1\nobjectClass: anything", ldif)


def main():
    if SLAPD is None:
        sys.exit("slapd is not installed: scripts/setup installs it")
    with tempfile.TemporaryDirectory(prefix="twk-ldif-") as folder:
        folder = pathlib.Path(folder)
        lab, other = folder / "lab", folder / "other"
        lab_tools.make_lab(lab, "--users", "40")
        before = lab_tools.twk(lab, "lab", "export").stdout
        journal = lab / "domain.journal.ldif"
        known = len(journal.read_bytes())
        for first, last in (("Zoë", "Núñez"), ("Jo", "Smith")):
            lab_tools.twk(lab, "user", "create", *lab_tools.CREATE, first, last, codes=(0, 1))
        after = lab_tools.twk(lab, "lab", "export").stdout
        changes = journal.read_bytes()[known:].decode()

        (folder / "schema").write_text(schema(after), encoding="utf-8")
        (folder / "data").mkdir()
        (folder / "slapd.conf").write_text(
            f"include {folder}/schema\nmodulepath /usr/lib/ldap\nmoduleload back_mdb\n"
            f"pidfile {folder}/pid\nsizelimit unlimited\ndatabase mdb\nsuffix \"{BASE}\"\nrootdn \"cn=root,{BASE}\"\n"
            f"rootpw secret\ndirectory {folder}/data\nmaxsize 104857600\n", encoding="utf-8")
        run("slaptest", "-u", "-f", str(folder / "slapd.conf"))
        url = "ldapi://" + urllib.parse.quote(str(folder / "socket"), safe="")
        server = subprocess.Popen([SLAPD, "-d", "0", "-f", str(folder / "slapd.conf"), "-h", url],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            login = ["-x", "-H", url, "-D", f"cn=root,{BASE}", "-w", "secret"]
            for _ in range(100):
                if subprocess.run(["ldapwhoami", *login], capture_output=True, check=False).returncode == 0:
                    break
                time.sleep(0.1)
            run("ldapadd", *login, text=with_structural_class(before))
            run("ldapmodify", *login, text=with_structural_class(changes))
            found = run("ldapsearch", "-LLL", "-o", "ldif-wrap=76", *login, "-b", BASE, "*")
        finally:
            server.terminate()
            server.wait()
        found = re.sub(r"(?m)^objectClass: anything\n", "", found)
        (folder / "found.ldif").write_text(found, encoding="utf-8")
        lab_tools.twk(other, "lab", "import", str(folder / "found.ldif"))
        again = entries(lab_tools.twk(other, "lab", "export").stdout)

        wanted = entries(after)
        if len(wanted) <= len(entries(before)):
            sys.exit("the created users are not in the export")
        missing = sorted(wanted.keys() - again.keys())
        if missing:
            sys.exit(f"lost on the way: {missing}")
        for name, values in wanted.items():
            if values != again[name]:
                sys.exit(f"{name} differs:\n only before: {sorted(values - again[name])}\n only after: "
                         f"{sorted(again[name] - values)}")
        print(f"{len(wanted)} entries went through ldapadd, ldapmodify, ldapsearch and back unchanged")


if __name__ == "__main__":
    main()
