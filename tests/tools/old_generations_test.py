#!/usr/bin/env python3
"""Database files of every older generation, written here field by field, come out of `twk db convert` with each
field in its place, and the old files stay byte for byte.

usage: old_generations_test.py TWK
       old_generations_test.py --put GENERATION DATABASE     only writes the old files; "2.3" are the tables alone
"""
import pathlib
import struct
import sys
import tempfile

from lab_tools import check, make_lab, twk

# A template's fields that every generation has, in two runs; what comes between and after differs.
HEAD = "25s75s75s75s75s20s20s"
SCRIPT = "20s2s"
# Generation: groups, variables, has logon hours, has a primary group, record length.
TEMPLATES = {"1": (51, 21, False, False, 2407),
             "2.0": (51, 51, False, False, 3757),
             "2.1": (51, 51, True, False, 3778),
             "2.2": (76, 51, True, True, 4324)}
NEW_TEMPLATE = "<hh" + HEAD + "100s100s" + SCRIPT + "21s21s" + "21s" * 76 + "15s" * 51 + "30s" * 51
# The record of 102 bytes ends within the last field.
OLD_SITE, NEW_SITE = "<hh20s20s20s20s18s", "<hh20s20s20s30s30s30s"
OLD_PERMISSION, NEW_PERMISSION = "<h50s12s", "<h50s12s50s"
DELETED = -1
HOURS = bytes(range(21))
# Every text differs, so that a field in another's place shows.
ACCENTS = "äéîøüßÆçñ€".encode("cp1252")


class Texts:
    def __init__(self):
        self.count = 0

    def full(self, length):
        """As long as the field, with accents and a number of its own."""
        self.count += 1
        return (str(self.count).encode() + ACCENTS * 10)[:length]

    def short(self, length):
        self.count += 1
        return str(self.count).encode()[:length].ljust(length)


def lengths(layout):
    return [int(part) for part in layout.split("s") if part]


def old_template(generation, text, deleted=0):
    groups, variables, has_hours, has_primary, size = TEMPLATES[generation]
    fields = {"head": [text(n) for n in lengths(HEAD)], "script": [text(n) for n in lengths(SCRIPT)],
              "hours": [HOURS] if has_hours else [], "primary": [text(21)] if has_primary else [],
              "groups": [text(21) for _ in range(groups)], "names": [text(15) for _ in range(variables)],
              "values": [text(30) for _ in range(variables)]}
    layout = ("<hh" + HEAD + SCRIPT + "21s" * (has_hours + has_primary) + "21s" * groups + "15s" * variables
              + "30s" * variables)
    check(f"length of a template of {generation}", struct.calcsize(layout), size)
    values = [value for part in fields.values() for value in part]
    return fields, struct.pack(layout, deleted, min(groups, 75), *values)


def new_template(fields):
    def padded(values, count, length):
        return values + [b" " * length] * (count - len(values))

    groups = fields["groups"]
    return (0, min(len(groups), 75), *fields["head"], b" " * 100, b" " * 100, *fields["script"],
            (fields["hours"] or [b"\xff" * 21])[0], (fields["primary"] or [b"Domain Users".ljust(21)])[0],
            *padded(groups, 76, 21), *padded(fields["names"], 51, 15), *padded(fields["values"], 51, 30))


def put_templates(database, generation, texts):
    """Writes the old file; gives its bytes and the records wanted of it."""
    first, first_bytes = old_template(generation, texts.full)
    _, deleted_bytes = old_template(generation, texts.full, DELETED)
    second, second_bytes = old_template(generation, texts.short)
    data = deleted_bytes + first_bytes + deleted_bytes + second_bytes
    (database / "Template.dat").write_bytes(data)
    return data, [new_template(first), new_template(second)]


def put_sites(database, texts):
    data, wanted = b"", []
    for deleted, exchange2000, text in ((0, -1, texts.full), (DELETED, 0, texts.full), (0, 0, texts.short)):
        values = [text(n) for n in (20, 20, 20, 20, 18)]
        data += struct.pack(OLD_SITE, deleted, exchange2000, *values)
        if not deleted:
            wanted.append((0, exchange2000, *values[:3], *(v.ljust(30) for v in values[3:]), b" " * 30))
    (database / "Site.dat").write_bytes(data)
    return data, wanted


def put_permissions(database, file, texts):
    rows = [(-1, texts.full(50), b"Full Control"), (0, texts.short(50), b"Read".ljust(12))]
    data = b"".join(struct.pack(OLD_PERMISSION, *row) for row in rows)
    (database / file).write_bytes(data)
    return data, [(*row, b" " * 50) for row in rows]


def put_files(database, generation, texts):
    """Writes all old files of a generation; of each: name, name kept under, layout of today, bytes, records wanted."""
    files = []
    if generation == "1":
        files.append(("Site.dat", "Site.v22", NEW_SITE, *put_sites(database, texts)))
    if generation in TEMPLATES:
        files.append(("Template.dat", "Template.v23", NEW_TEMPLATE, *put_templates(database, generation, texts)))
    for file, kept in (("Permissions.dat", "Permissions.v24"), ("SharePerm.dat", "SharePerm.v24")):
        files.append((file, kept, NEW_PERMISSION, *put_permissions(database, file, texts)))
    return files


def records(path, layout):
    data = path.read_bytes()
    check(f"stray bytes of {path.name}", len(data) % struct.calcsize(layout), 0)
    return list(struct.iter_unpack(layout, data))


def convert(folder, generation, version):
    lab = folder / "lab"

    def run(*arguments):
        return twk(lab, *arguments, cwd=folder).stdout.strip()

    make_lab(lab, "--users", "2")
    database = lab / "db"
    files = put_files(database, generation, Texts())
    untouched = {name: (database / name).read_bytes() for name in ("Site.dat", "Template.dat")
                 if name not in [file[0] for file in files]}

    run("settings", "set", "Version", "DBVersion", version)
    check(f"answer for {version}", run("db", "convert"), "Databases converted.")
    check("DBVersion", run("settings", "get", "Version", "DBVersion"), "2.4")

    for name, kept, layout, old, wanted in files:
        check(f"{version}: {kept}", (database / kept).read_bytes(), old)
        got = records(database / name, layout)
        check(f"{version}: number of records of {name}", len(got), len(wanted))
        for number, (got_record, wanted_record) in enumerate(zip(got, wanted), 1):
            for field, (a, b) in enumerate(zip(got_record, wanted_record)):
                check(f"{version}: {name}, record {number}, field {field}", a, b)
    for name, data in untouched.items():
        check(f"{version}: {name} is not to be touched", (database / name).read_bytes(), data)
    check("files left over", [path.name for path in database.iterdir() if path.suffix == ".new"], [])
    check("second answer", run("db", "convert"), "No database is of an older generation; nothing was converted.")
    if not (folder / "Convert.log").read_bytes().count(b"\r\n"):
        sys.exit("Convert.log is empty")


def main():
    if sys.argv[1] == "--put":
        put_files(pathlib.Path(sys.argv[3]), sys.argv[2], Texts())
        return
    check("length of a template of today", struct.calcsize(NEW_TEMPLATE), 4524)
    check("length of an old site", struct.calcsize(OLD_SITE), 102)
    check("length of a site of today", struct.calcsize(NEW_SITE), 154)
    for generation, version in (("1", "1.3"), ("2.0", "2.0"), ("2.1", "2.1"), ("2.2", "2.2"), ("2.3", "2.3")):
        with tempfile.TemporaryDirectory() as folder:
            convert(pathlib.Path(folder), generation, version)


main()
