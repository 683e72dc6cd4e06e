#!/usr/bin/env python3
"""Names of many scripts go through templates, tables, an import, its error file and its summary, and come back letter by
letter: read here with nothing but the descriptions of the files. What a record file has no place for is refused.

usage: text_round_trip_test.py TWK
"""
import pathlib
import random
import tempfile

from lab_tools import CREATE, check, exported, make_lab, twk

NAMES = 2000
TEMPLATE = 4524
VARIABLE_VALUES, VALUE = 2994, 30
MARK = b"\xef\xbb\xbf"
# A capital and small letters of each script; those of code page 1252 first. Names have at most nine characters, as the
# format of the user principal names takes them.
SCRIPTS = [("JMSTZ", "aehnorty"), ("ÄÖÜÉÑØŠŽ", "äößüéèñçøåšžœÿ"), ("ŁŚŻĆ", "ąęłńóśźż"), ("ČŘŮĎ", "čďěňřťůý"), ("ĞİŞ", "ğışöü"),
           ("АБВГДЖЯ", "абвгдежзийклмнопрстуфхцчшщыэюя"), ("ΑΒΓΔΩ", "αβγδεζηθικλμνξοπρστυφχψω"), ("ĐẠẢẤ", "ạảấầẩẫậắằẳẵặẹẻẽ"),
           ("ابتث", "جحخدذرزسشصضطظعغفقكلمنهوي"), ("אבגד", "הוזחטיכלמנסעפצקרשת"), ("कखगघ", "ािीुूनमरलवश"),
           ("กขคง", "ะาิีึืุูเแโ"), ("中山王李", "伟芳娜秀英敏静丽强磊"), ("김이박", "민준서연지우현"), ("ႠႡႢ", "აბგდევზთი"),
           ("ԱԲԳ", "աբգդեզէըթ"), ("ሀለሐ", "መሠረሰሸቀበተ"), ("𐐀𐐁", "𐐨𐐩𐐪"), ("E\u0301", "e\u0301o\u0308"), ("😀", "🎉👍")]


def fits(text):
    try:
        text.encode("cp1252")
        return True
    except UnicodeEncodeError:
        return False


def sample():
    chance = random.Random(1252)
    for number in range(NAMES):
        capitals, letters = SCRIPTS[number % len(SCRIPTS)]
        word = chance.choice(capitals) + "".join(chance.choices(letters, k=chance.randint(2, 4)))
        yield word + str(number)


def text_of(path):
    """The text of a table or a run's file, by its first bytes alone."""
    data = path.read_bytes()
    return data[3:].decode() if data.startswith(MARK) else data.decode("cp1252")


class Lab:
    def __init__(self, folder):
        self.folder, self.database = folder, folder / "db"
        make_lab(folder, "--users", "1")
        for name in ("CreateDirs", "CreateShares", "SetPermissions", "MailAccount"):
            self.run("settings", "set", "UM", name, "No")
        self.run("settings", "set", "Setup", "SetupID", "%IMPORT4%")
        self.run("settings", "set", "Setup", "AltSetupID", "")

    def run(self, *arguments, text="", code=0):
        return twk(self.folder, *arguments, text=text.encode(), codes=(code,)).stdout.decode()

    def bring_in(self, file, code=0):
        for old in self.database.glob("Import Summary*"):
            old.unlink()
        self.run("user", "import", str(file), *CREATE, "--id", "4", code=code)
        return next(self.database.glob("Import Summary*"))

    def first_names(self):
        return {entry["givenName"][0].decode() for entry in exported(self.folder).values() if "givenName" in entry}


def templates(lab, names):
    file = lab.database / "Template.dat"
    held = [name for name in names if fits(name)]
    for first in range(0, len(held), 50):
        part = held[first:first + 50]
        options = [word for at, name in enumerate(part) for word in ("--variable", f"N{at}={name}")]
        lab.run("template", "edit", "Staff", *options)
        record = file.read_bytes()[:TEMPLATE]
        got = [record[at:at + VALUE].decode("cp1252").rstrip(" ") for at in range(VARIABLE_VALUES + VALUE, TEMPLATE, VALUE)]
        check("variables of a template", got[:len(part)], part)
    before = file.read_bytes()
    for name in [name for name in names if not fits(name)][:12]:
        lab.run("template", "edit", "Staff", "--variable", f"N={name}", code=2)
        lab.run("template", "add", name, code=2)
    check("Template.dat after what it cannot hold", file.read_bytes(), before)
    return held


def tables(lab, names, held):
    rows = "".join(f"p,description,{name}\n" for name in names)
    file = lab.database / "W2K.dat"
    before = file.read_bytes() if file.exists() else b""
    lab.run("table", "set", "w2k", text=rows)
    check("mark of W2K.dat", file.read_bytes()[:3], MARK)
    check("W2K.dat", text_of(file), rows.replace("\n", "\r\n"))
    check("table show", lab.run("table", "show", "w2k"), rows)
    lab.run("table", "set", "w2k", text="".join(f"p,description,{name}\n" for name in held))
    check("W2K.dat in the code page", file.read_bytes().decode("cp1252").split("\r\n")[:-1],
          [f"p,description,{name}" for name in held])
    file.write_bytes(before)
    lab.run("table", "set", "permissions", text="".join(f"{name},Read\n" for name in names), code=65)
    lab.run("table", "set", "permissions", text="".join(f"{name},Read\n" for name in held))
    data = (lab.database / "Permissions.dat").read_bytes()
    check("Permissions.dat", [data[at + 2:at + 52].decode("cp1252").rstrip() for at in range(0, len(data), 114)], held)


def imports(folder, lab, names, mark):
    lines = [f"{name},,{name},u{number:05}" for number, name in enumerate(names)]
    source = folder / "new.csv"
    source.write_bytes("".join(line + "\n" for line in lines).encode())
    summary = lab.bring_in(source)
    missing = set(names) - lab.first_names()
    check("names that did not reach the directory", sorted(missing)[:5], [])
    rows = text_of(summary).split("\r\n")
    check("mark of the summary", summary.read_bytes().startswith(MARK), mark)
    check("summary", [row.split(",")[:2] for row in rows[1:-1]],
          [[f"{name} {name}", f"u{number:05}"] for number, name in enumerate(names)])

    # Everybody is there already, so each line is refused.
    lab.bring_in(source, code=1)
    errors = lab.database / "Import.err"
    check("mark of Import.err", errors.read_bytes().startswith(MARK), mark)
    check("Import.err", [line for line in text_of(errors).split("\r\n") if "," in line], lines)

    # The error file is taken in again, without its heading, where nobody is yet.
    data = errors.read_bytes()
    again = folder / "again.csv"
    again.write_bytes(data[:3 * mark] + b"".join(line for line in data.splitlines(True) if b"," in line))
    other = Lab(folder / "other")
    other.bring_in(again)
    check("names out of Import.err", set(names) <= other.first_names(), True)
    check("question marks in Log.txt", b"?" in (other.database / "Log.txt").read_bytes(), False)


def main():
    names = list(sample())
    check("names", len(set(names)), NAMES)
    with tempfile.TemporaryDirectory() as folder:
        lab = Lab(pathlib.Path(folder) / "lab")
        held = templates(lab, names)
        tables(lab, names, held)
        imports(pathlib.Path(folder), lab, names, True)
    with tempfile.TemporaryDirectory() as folder:
        held = [name for name in held if not name.isascii()]
        imports(pathlib.Path(folder), Lab(pathlib.Path(folder) / "lab"), held[:50], False)


main()
