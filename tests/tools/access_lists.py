#!/usr/bin/env python3
"""The access lists that tests/resources expects, put together here field by field as [MS-DTYP] 2.4.2.2, 2.4.4.2
and 2.4.5 lay them out.

usage: access_lists.py FILE            fails unless the file holds these lists
       access_lists.py --write FILE
"""
import pathlib
import struct
import sys

ALLOW, DENY = 0, 1
FOR_FILES, FOR_FOLDERS = 9, 2
FULL, CHANGE, READ = 0x1F01FF, 0x1301BF, 0x1200A9
SHARE_FULL, SHARE_CHANGE, SHARE_READ = 0x10000000, 0xE0010000, 0xA0000000


def sid(authority, *subs):
    return struct.pack("<BB", 1, len(subs)) + authority.to_bytes(6, "big") + struct.pack(f"<{len(subs)}I", *subs)


SYSTEM = sid(5, 18)
EVERYONE = sid(1, 0)
ADMINISTRATORS = sid(5, 32, 544)
JO = sid(5, 21, 1, 2, 3, 1001)
STAFF = sid(5, 21, 1, 2, 3, 1002)


def ace(kind, flags, mask, who):
    return struct.pack("<BBHI", kind, flags, 8 + len(who), mask) + who


def grant(kind, mask, who):
    """The pair that each account gets: what stands in front was added last."""
    return [ace(kind, FOR_FOLDERS, mask, who), ace(kind, FOR_FILES, mask, who)]


def acl(aces, size=None, revision=2):
    body = b"".join(aces)
    size = 8 + len(body) if size is None else size
    return (struct.pack("<BBHHH", revision, 0, size, len(aces), 0) + body).ljust(size, b"\0")


# What the folder has before: System and Everyone, without spare room.
OLD_ACES = [ace(ALLOW, 3, FULL, SYSTEM), ace(ALLOW, 3, READ, EVERYONE)]
OLD = acl(OLD_ACES)
GROWN = len(OLD) + 200

LISTS = {
    "old": OLD,
    "change": acl(grant(ALLOW, CHANGE, JO) + OLD_ACES, GROWN),
    "read": acl(grant(ALLOW, READ, JO) + OLD_ACES, GROWN),
    "full": acl(grant(ALLOW, FULL, JO) + OLD_ACES, GROWN),
    "no access": acl(grant(DENY, FULL, JO) + OLD_ACES, GROWN),
    "stripped of Everyone": acl(OLD_ACES[:1], GROWN),
    "System alone kept": acl(grant(ALLOW, FULL, JO) + OLD_ACES[:1], GROWN),
    "absent before": acl(grant(ALLOW, FULL, JO), 200),
    "old, revision 4": acl(OLD_ACES, revision=4),
    "read, revision 4": acl(grant(ALLOW, READ, JO) + OLD_ACES, GROWN, revision=4),
    "share of the table": acl([ace(ALLOW, 0, SHARE_FULL, ADMINISTRATORS), ace(ALLOW, 0, SHARE_CHANGE, JO),
                               ace(ALLOW, 0, SHARE_READ, EVERYONE)]),
    "share for everybody": acl([ace(ALLOW, 0, SHARE_FULL, EVERYONE)]),
    "share merged": acl([ace(DENY, 0, SHARE_FULL, STAFF), ace(ALLOW, 0, SHARE_READ, ADMINISTRATORS),
                         ace(ALLOW, 0, SHARE_CHANGE, JO)]),
}

if __name__ == "__main__":
    text = "".join(f"{name}: {data.hex()}\n" for name, data in LISTS.items())
    file = pathlib.Path(sys.argv[-1])
    if sys.argv[1] == "--write":
        file.write_text(text)
    elif file.read_text() != text:
        sys.exit(f"{file} does not hold the lists of this script; --write puts them there")
