#!/usr/bin/python3
"""Imports users whose names and fields hold tags, and compares every attribute that a row of the directory table gave
them with what this script makes of the same rows: tags of the administrator count, those of the data are text.

    filled_texts_test.py PATH-OF-TWK
"""

import os
import pathlib
import random
import re
import sys
import tempfile
from itertools import zip_longest

import lab_tools
from name_formats import MARK, inert, put_names

USERS, FIELDS, SEED = 420, 6, 20
ATTRIBUTES = ("description", "title", "department", "company", "info", "physicalDeliveryOfficeName", "street", "l", "st",
              "postalCode", "telephoneNumber", "mobile")
# A value may hold the tag of a later row, and tags of the steps that follow.
VARIABLES = [("Dept", "Sales %Town%"), ("Town", "York"), ("Head", "%last% of %Dept%"), ("Nick", "1%first%")]
DOMAIN = "twk.test"
PIECES = ["%first%", "%LAST%", "%middle%", "1%first%", "#2%last%", "%last%3", "#U%first%", "#L2%last%", "%Domain%", "%domain%",
          "%Dept%", "%TOWN%", "%Head%", "%Nick%", "%IMPORT1%", "%import3%", "%IMPORT6%", "%IMPORT60%", "%unknown%", "a", "Z", " ",
          "-", "4", "x\u00e9", "\u0142"]
HOSTILE = ["%IMPORT4%", "%first%", "%Domain%", "%Dept%", "%UserName%", "%n%", "50%", "%%", "%IMPORT", "1%last%", "%Head%", "#U", "7", "#L2"]


def data(chance, letters):
    """A value of the data; a third of them try to be a format."""
    text = "".join(chance.choice(letters) for _ in range(chance.randint(2, 7)))
    return text + chance.choice(HOSTILE) + chance.choice(letters) if chance.random() < 0.34 else text


# --- An own reading of the rules, with data marked so that no later step sees a tag in it ---

OF_DATA = 0xE000  # what in data could change a tag after it


def put(text, tag, value):
    marked = inert(value).translate({ord(c): OF_DATA + ord(c) for c in "#123456789"})
    return re.sub(re.escape(tag), lambda _: marked, text, flags=re.IGNORECASE)


def unmarked(text):
    return re.sub("[\ue000-\ue0ff]", lambda found: chr(ord(found[0]) - OF_DATA), text.replace(MARK, "%"))


def filled(row, names, fields):
    text = row
    for name, value in VARIABLES:
        text = re.sub(re.escape(f"%{name}%"), lambda _: value, text, flags=re.IGNORECASE)
    text = put_names(text, names)
    for place in range(1, 100):
        text = put(text, f"%IMPORT{place}%", fields[place - 1] if place <= len(fields) else "")
    text = put(text.strip(" "), "%Domain%", DOMAIN)
    return unmarked(text)


def filled_word(word, names, fields, account):
    """The order of a command."""
    body = word.strip(" ")
    if not set("%#") & set(word) or not body:
        return word
    text = body
    for place, field in enumerate(fields, 1):
        text = put(text, f"%IMPORT{place}%", field)
    for tag, value in (("%Domain%", DOMAIN), ("%UserName%", account)):
        text = put(text, tag, value)
    text = put_names(text, names)
    for place in range(len(fields) + 1, 100):
        text = put(text, f"%IMPORT{place}%", "")
    text = text.strip(" ")
    for name, value in VARIABLES:
        text = re.sub(re.escape(f"%{name}%"), lambda _: value, text, flags=re.IGNORECASE)
    return word[:len(word) - len(word.lstrip(" "))] + unmarked(text) + word[len(word.rstrip(" ")):]


def twk(*arguments, **options):
    return lab_tools.twk("lab", *arguments, **options)


def format_of(chance):
    return "".join(chance.choice(PIECES) for _ in range(chance.randint(1, 5))).strip() or "-"


def people(chance):
    letters = "abcdeXYZ\u00e9\u0142 "
    for place in range(USERS):
        first, middle, last, *more = ((data(chance, letters).strip() or "o") for _ in range(FIELDS - 1))
        yield *(name[0].upper() + name[1:] for name in (first, middle, last)), f"u{place:04}", *more


def commands_ran(path):
    lines = path.read_text().split("\n")[:-1]
    ran = [line.split("\x1f")[1:] for line in lines]
    return {words[0]: words[1:] for words in ran}


def main():
    chance = random.Random(SEED)
    lab_tools.make_lab("lab", "--users", "0")
    rows = [format_of(chance) for _ in ATTRIBUTES]
    words = [format_of(chance) for _ in range(12)]
    twk("table", "set", "w2k", text="".join(f"p,{name},{row}\n" for name, row in zip(ATTRIBUTES, rows)))
    twk("template", "edit", "Staff", *(f"--variable={name}={value}" for name, value in VARIABLES))
    script = pathlib.Path("script")
    script.write_text('#!/bin/sh\nfor word; do printf "\\037%s" "$word"; done >> ran\nprintf "\\n" >> ran\n')
    script.chmod(0o755)
    twk("settings", "set", "Setup", "BatchFileCreate", f"{script.resolve()} %UserName% " + " ".join(f'"{word}"' for word in words))
    twk("settings", "set", "Setup", "WaitNew", "Yes")
    twk("settings", "set", "UM", "RunCmd", "Yes")
    them = list(people(chance))
    pathlib.Path("new.csv").write_text("".join(",".join(one) + "\n" for one in them))
    twk("user", "import", "new.csv", *lab_tools.CREATE, "--id", "4", codes=(0, 1))
    found = {entry["sAMAccountName"][0].decode(): {name: values[0].decode(errors="replace") for name, values in entry.items()}
             for entry in lab_tools.exported("lab").values() if "sAMAccountName" in entry}
    ran = commands_ran(pathlib.Path("ran"))
    faults, compared = [], 0
    for first, middle, last, account, *more in them:
        names = (("%FIRST%", first), ("%MIDDLE%", middle), ("%LAST%", last))
        fields = (first, middle, last, account, *more)
        for name, row in zip(ATTRIBUTES, rows):
            wanted = filled(row, names, fields)
            wanted = None if "%" in wanted or not wanted else wanted
            faults += [] if found[account].get(name) == wanted else [(account, row, fields, wanted, found[account].get(name))]
            compared += 1
        for word, given in zip_longest(words, ran.get(account, [])):
            wanted = filled_word(word, names, fields, account)
            faults += [] if given == wanted else [(account, word, fields, wanted, given)]
            compared += 1
    if faults or compared < 5000:
        sys.exit(f"{len(faults)} of {compared} texts are not what was meant; the first:\n" + "\n".join(map(repr, faults[:5])))
    print(f"{compared} texts are what was meant")


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    main()
