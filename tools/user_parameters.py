#!/usr/bin/env python3
"""Writes values of the attribute "userParameters" as the protocol document describes them, for tests and the fuzzer.

usage: user_parameters.py FOLDER        (tests/fuzz/corpus/user_parameters)

It shares nothing with the program. The layout is that of [MS-TSTS] 2.3.1 to 2.3.3.
"""
import pathlib
import struct
import sys


def prop(name, value, kind=1, digits=None):
    name = name.encode("utf-16-le")
    digits = value.hex().encode() if digits is None else digits
    return struct.pack("<HHH", len(name), len(digits), kind) + name + digits


def number(name, value):
    return prop(name, struct.pack("<I", value))


def texts(name, value):
    return [prop(name, value.encode("cp1252", "replace") + b"\0"),
            prop(name + "W", value.encode("utf-16-le") + b"\0\0")]


def blob(properties, reserved="", count=None, rest=b""):
    reserved = reserved.ljust(48).encode("utf-16-le")
    count = len(properties) if count is None else count
    return reserved + "P".encode("utf-16-le") + struct.pack("<H", count) + b"".join(properties) + rest


PRESENT = number("CtxCfgPresent", 0xB00B1E55)
# Drives yes, printers no, default printer yes; no program of the person's choice; no logon.
FLAGS = number("CtxCfgFlags1", 0x80000000 | 0x00010000 | 0x00008000 | 0x00002000)

COMPLETE = blob(
    [PRESENT, FLAGS, number("CtxCallBack", 1), number("CtxKeyboardLayout", 0x407), number("CtxShadow", 2),
     prop("CtxMinEncryptionLevel", b"\1"), number("CtxMaxConnectionTime", 60000),
     number("CtxMaxDisconnectionTime", 300000), number("CtxMaxIdleTime", 172800000)]
    + texts("CtxWFProfilePath", "\\\\fs1\\profiles\\jos\u00e9") + texts("CtxWFHomeDir", "\\\\fs1\\\u0141ukasz")
    + texts("CtxWFHomeDirDrive", "W:") + texts("CtxInitialProgram", "C:\\Tools\\menu.exe")
    + [prop("CtxWorkDirectory", b"C:\\Tools\0"), prop("SomebodyElses", b"", 7, b"left alone")],
    reserved="m: d\u0001 dial-in", rest="tail".encode("utf-16-le"))

FILES = {
    "complete": COMPLETE,
    "only-present": blob([PRESENT]),
    "not-present": blob([FLAGS]),
    "no-properties": blob([]),
    "short": "m:".encode("utf-16-le"),
    "foreign": ("#@other=" + "x" * 60).encode("utf-16-le"),
    "count-too-large": blob([PRESENT, FLAGS], count=3),
    "value-beyond-the-end": blob([PRESENT])[:-2],
    "no-digits": blob([PRESENT, prop("CtxCfgFlags1", b"", 1, b"0000zz00")]),
}

if __name__ == "__main__":
    folder = pathlib.Path(sys.argv[1])
    for name, value in FILES.items():
        (folder / name).write_bytes(value)
