#!/usr/bin/python3
"""Previews imports of the plain form, in which every comma separates, and compares each line with what this script makes
of the same bytes: its number, the names, the account name, and why it gets no account.

    plain_import_test.py PATH-OF-TWK
"""

import json
import os
import pathlib
import random
import re
import tempfile

import lab_tools
from name_formats import MARK, put_names, upper

LINES, SEED = 400, 23
# Arguments that say which columns hold the names, those columns, the format of account names, and that for names in use.
LAYOUTS = (((), (1, 2, 3), "%first%.%last%", "%last%%nn%"),
           (("--first", "3", "--middle", "0", "--last", "1"), (3, 0, 1), "#L1%FIRST%#U%last%4#%middle%", "%last%1%first%"),
           (("--first", "2", "--middle", "4", "--last", "5", "--id", "3"), (2, 4, 5), "%IMPORT3%", ""))
SERIAL = 8  # the number at which those begin that names in use get
LETTERS = "abcdeXYZéÅß '.-"
HOSTILE = ['"', '""', ";", "\t", "%first%", "%IMPORT2%", "%", "#", "#U", "7", "<", "\\", "*", ")(", "=", "+", "{", "?", "\u20ac", "\x01",
           "'", " ", "  ", "..", "x" * 30]
FORBIDDEN = set("<>?/\\*[]{};:'\"")


def field(chance):
    text = "".join(chance.choice(LETTERS) for _ in range(chance.randint(0, 6)))
    if chance.random() < 0.3:
        at = chance.randint(0, len(text))
        text = text[:at] + chance.choice(HOSTILE) + text[at:]
    return text


def line(chance):
    count = chance.choice((0, 1, 2, 3, 3, 3, 4, 5, 5, 5, 6, 103))
    return ",".join(field(chance) for _ in range(count))


# --- An own reading of the rules ---

def name_of(fields, column):
    text = fields[column - 1].strip(" ") if 0 < column <= min(len(fields), 100) else ""
    return upper(text[:1]) + text[1:]


def account(pattern, names, fields, serial):
    text = put_names(pattern, [(f"%{tag}%", name.strip(" ")) for tag, name in zip(("first", "middle", "last"), names)])
    if found := re.fullmatch(r" %IMPORT(\d+)% ", text):
        place = int(found[1])
        text = fields[place - 1] if place <= len(fields) else ""
    text = text.replace("%nn%", f"{serial:02}")
    return text.replace(MARK, "%").strip(" ")


def is_unseen(text):
    return any(ord(c) < 32 or 0x7F <= ord(c) < 0xA0 for c in text)


def escaped(name):
    """As a directory writes it in a path."""
    text = re.sub(r'([,+"\\<>;=])', r"\\\1", name)
    return "\\" + text if text.startswith("#") else text


class Reader:
    def __init__(self, columns, pattern, other):
        self.columns, self.pattern, self.other, self.taken = columns, pattern, other, []

    def row(self, number, text):
        """Line, account name, the kind of outcome, and the three names."""
        fields = text.split(",") if text else []
        if len(fields) < 2:
            return number, text, "too few fields", "", "", ""
        names = [name_of(fields, column) for column in self.columns]
        return number, *self.outcome(names, fields), *names

    def outcome(self, names, fields):
        pattern, serial = self.pattern, SERIAL
        user = account(pattern, names, fields, serial)
        while (kind := self.kind_of(user, names)) == "taken":
            if "%nn%" in pattern:
                serial += 1
            elif pattern == self.other or not self.other:
                return user, kind
            else:
                pattern = self.other
            last, user = user, account(pattern, names, fields, serial)
            if upper(last) == upper(user):
                return last, kind
            # A name that is empty is formed again as if none had been given.
            user = user or account(self.pattern, names, fields, serial)
        return user, kind

    def kind_of(self, user, names):
        if not 1 <= len(user) <= 20:
            return "length"
        if set(user) & FORBIDDEN or is_unseen(user) or not user.strip(".") or any(map(is_unseen, names)):
            return "character"
        if any(other.startswith(upper(user)) for other in self.taken):
            return "taken"
        if user.endswith("."):
            return "dot"
        # The look-up does not know the name as a path writes it, the directory does.
        key = upper(f"{escaped(user)},{lab_tools.OU}")
        if key in self.taken:
            return "in use"
        self.taken.append(key)
        return "made"


KINDS = (("fewer than two fields", "too few fields"), ("too long or too Short", "length"), ("Invalid Character", "character"),
         ("Already Exist", "taken"), ("is in use", "in use"), ("Would be created", "made"))


def told_kind(row):
    if "the dot at the end" in row["message"]:
        return "dot"
    return next((kind for words, kind in KINDS if words in row["message"]), row["message"])


def check(layout, columns, pattern, other, encoding, chance):
    lines = [line(chance) for _ in range(LINES)]
    text = "".join(one + chance.choice(("\r\n", "\n")) for one in lines)
    pathlib.Path("lines.csv").write_bytes(text.encode(encoding))
    lab_tools.twk("lab", "settings", "set", "Setup", "UserFormat", "5")
    lab_tools.twk("lab", "settings", "set", "Setup", "SetupID", pattern)
    lab_tools.twk("lab", "settings", "set", "Setup", "AltSetupID", other)
    lab_tools.twk("lab", "settings", "set", "Setup", "IncNumber", str(SERIAL))
    told = lab_tools.twk("lab", "--json", "user", "import", "lines.csv", *lab_tools.CREATE, "--preview", *layout, codes=(0, 1, 2))
    rows = [json.loads(one) for one in told.stdout.splitlines()]
    found = [(row["line"], row["user"], told_kind(row), row["first"], row["middle"], row["last"]) for row in rows]
    reader = Reader(columns, pattern, other)
    wanted = [reader.row(number, one) for number, one in enumerate(lines, 1)]
    lab_tools.check(f"lines of {pattern}", len(found), len(wanted))
    for text, one, right in zip(lines, found, wanted):
        lab_tools.check(f"{text!r} by {pattern}, {columns}", one, right)
    kinds = {row[2] for row in wanted}
    lab_tools.check("kinds of lines", kinds >= {"made", "length", "character", "too few fields"}, True)
    return sum(row[2] == "made" for row in wanted)


def main():
    chance = random.Random(SEED)
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        lab_tools.make_lab("lab", "--users", "0")
        made = [check(*layout, encoding, chance) for layout in LAYOUTS for encoding in ("utf-8", "cp1252")]
    print(f"{LINES * len(made)} lines read alike, {sum(made)} of them would get an account")


main()
