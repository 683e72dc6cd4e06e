#!/usr/bin/env python3
"""Reads and writes the record files of the database directory, by a description of its own.

usage: layout.py dump KIND FILE     one line a record: name=value pairs of the fields that are not empty
       layout.py make KIND FILE     the same lines from standard input into a new file

KIND is site, template or permission. Pairs stand between "|". Standard input and output are UTF-8.
"""
import struct
import sys

KINDS = {
    "site": ("<hh20s20s20s30s30s30s", 154,
             "Deleted Exchange2000 Name NTServer ExchangeServer ExchangeOrg ExchangeSite MailStore".split()),
    "template": ("<hh25s75s75s75s75s20s20s100s100s20s2s21s21s" + "21s" * 76 + "15s" * 51 + "30s" * 51, 4524,
                 "Deleted GroupCount Name ProfilePath HomeDir ProfileDirPath HomeDirPath ProfileShare HomeShare "
                 "HomeSharePoint ProfileSharePoint LogonScript HomeDrive LogonHours PrimaryGroup".split()
                 + [f"Group{i}" for i in range(76)]
                 + [f"VariableName{i}" for i in range(51)]
                 + [f"VariableValue{i}" for i in range(51)]),
    "permission": ("<h50s12s50s", 114, "NewSecurity Account Access Owner".split()),
}
RAW = {"LogonHours"}


def text_of(name, value):
    if isinstance(value, int):
        return str(value)
    if name in RAW:
        return value.hex()
    if b"\0" in value:
        sys.exit(f"{name} is not padded with blanks: {value!r}")
    return value.decode("cp1252").rstrip(" ")


def dump(layout, names, data):
    size = struct.calcsize(layout)
    if len(data) % size:
        sys.exit(f"{len(data)} bytes are not a whole number of records")
    for values in struct.iter_unpack(layout, data):
        pairs = ((name, text_of(name, value)) for name, value in zip(names, values))
        print("|".join(f"{name}={text}" for name, text in pairs if text not in ("", "0")))


def record(layout, names, line):
    given = dict(pair.split("=", 1) for pair in line.split("|") if pair)
    unknown = set(given) - set(names)
    if unknown:
        sys.exit(f"no such fields: {unknown}")
    values = []
    for name, code in zip(names, codes(layout)):
        text = given.get(name, "")
        if code == "h":
            values.append(int(text or "0"))
        elif name in RAW:
            values.append(bytes.fromhex(text))
        else:
            values.append(text.encode("cp1252").ljust(int(code[:-1]), b" "))
    return struct.pack(layout, *values)


def codes(layout):
    number = ""
    for c in layout[1:]:
        if c.isdigit():
            number += c
        else:
            yield number + c
            number = ""


def main():
    command, kind, path = sys.argv[1:]
    layout, size, names = KINDS[kind]
    if struct.calcsize(layout) != size:
        sys.exit(f"a {kind} record has {struct.calcsize(layout)} bytes")
    if command == "dump":
        with open(path, "rb") as file:
            dump(layout, names, file.read())
    else:
        with open(path, "wb") as file:
            for line in sys.stdin:
                file.write(record(layout, names, line.rstrip("\n")))


sys.stdin.reconfigure(encoding="utf-8")
sys.stdout.reconfigure(encoding="utf-8")
main()
