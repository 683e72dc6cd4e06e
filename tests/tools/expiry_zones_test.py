#!/usr/bin/env python3
"""A day on which accounts end is the day of the workstation's zone, in every kind of domain: what twk stores is
compared with the FILETIME of that midnight as Python's zones have it, and what it shows with what they show.

usage: expiry_zones_test.py TWK
"""
import datetime
import json
import os
import pathlib
import sys
import tempfile
import zoneinfo

import lab_tools
from lab_tools import CREATE, check

ZONES = ("UTC", "America/Los_Angeles", "Europe/Berlin", "Pacific/Auckland", "Asia/Kolkata")
# Winter and summer, and the days around which clocks are changed in these zones.
DAYS = [datetime.date.fromisoformat(day) for day in (
    "2026-12-31", "2026-07-01", "2026-03-08", "2026-03-09", "2026-03-29", "2026-03-30", "2026-04-05", "2026-04-06",
    "2026-09-27", "2026-09-28", "2026-10-25", "2026-10-26", "2026-11-01", "2026-11-02")]
EPOCH = datetime.datetime(1601, 1, 1, tzinfo=datetime.timezone.utc)
NEVER = (0, 0x7FFFFFFFFFFFFFFF)
ONE_DAY = datetime.timedelta(days=1)


def filetime(moment):
    since = moment - EPOCH
    return (since.days * 86400 + since.seconds) * 10**7


def midnight(day, zone):
    return filetime(datetime.datetime.combine(day, datetime.time(), zoneinfo.ZoneInfo(zone)))


def shown(stored, zone):
    """What `user show` prints for a stored moment in a zone."""
    local = (EPOCH + datetime.timedelta(microseconds=stored // 10)).astimezone(zoneinfo.ZoneInfo(zone))
    return local.strftime("%Y-%m-%d" if local.time() == datetime.time() else "%Y-%m-%d %H:%M:%S")


class Lab:
    def __init__(self, folder, kind):
        self.folder = folder
        self.kind = kind
        self.twk("UTC", "lab", "init", folder, "--kind", kind, "--sample", "--users", str(2 * len(DAYS)))
        rows = self.read("UTC", "user", "list")[:2 * len(DAYS)]
        self.users = [row["name"] for row in rows]
        # Hits of a search are printed by their distinguished name, if there is one.
        self.names = {row["dn"] or row["name"]: row["name"] for row in rows}

    def twk(self, zone, *words):
        return lab_tools.twk(self.folder, *words, env={**os.environ, "TZ": zone}).stdout

    def read(self, zone, *words):
        return [json.loads(line) for line in self.twk(zone, "--json", *words).splitlines()]

    def entries(self):
        """Account name -> what its entry holds, one value of each attribute."""
        return {entry["sAMAccountName"][0].decode(): {name: values[0].decode(errors="replace") for name, values in entry.items()}
                for entry in lab_tools.exported(self.folder).values() if "sAMAccountName" in entry}

    def stored(self):
        return {name: int(entry["accountExpires"]) for name, entry in self.entries().items() if "accountExpires" in entry}

    def expired(self, zone, before):
        hits = self.read(zone, "users", "find-expired", "--before", before)
        return {self.names.get(hit["dn"] or hit["user"]) for hit in hits} - {None}


def days_are_stored_and_shown(lab, zone):
    for number, day in enumerate(DAYS):
        first, second = lab.users[2 * number:2 * number + 2]
        lab.twk(zone, "user", "set", first, f"expires={day}")
        lab.twk(zone, "user", "set", second, "--expires-after", (day - ONE_DAY).strftime("%d/%m/%Y"))
    stored = lab.stored()
    for number, day in enumerate(DAYS):
        for name in lab.users[2 * number:2 * number + 2]:
            check(f"{lab.kind}, {zone}, {day}", stored[name], midnight(day, zone))
        for other in ZONES if number < 2 else (zone,):
            user = lab.read(other, "user", "show", lab.users[2 * number])[0]
            check(f"{lab.kind}, {day} of {zone} in {other}", user["expires"], shown(midnight(day, zone), other))
    for before in (DAYS[0], DAYS[4], DAYS[4] + ONE_DAY):
        wanted = {name for number, name in enumerate(lab.users) if DAYS[number // 2] < before}
        check(f"{lab.kind}, {zone}, before {before}", lab.expired(zone, str(before)), wanted)


def never_is_never(lab, forms):
    for name, form in zip(lab.users, forms):
        check(f"{lab.kind}, never", lab.stored()[name], form)
        for zone in ZONES:
            check(f"{lab.kind}, {form} in {zone}", lab.read(zone, "user", "show", name)[0]["expires"], None)
            check(f"{lab.kind}, {form} in {zone}", name in lab.expired(zone, "1/1/9999"), False)


def new_accounts_are_of_now(lab, zone, number):
    place = CREATE[:4] if lab.kind == "nt" else CREATE
    file = pathlib.Path(lab.folder, "new.csv")
    file.write_text(f"Jo,,Doe{number},31/12/2026\nAl,,Doe{number},\nCy,,Doe{number},never\n")
    before = filetime(datetime.datetime.now(datetime.timezone.utc)) - 10**7
    lab.twk(zone, "user", "import", str(file), *place, "--expires-after", "%IMPORT4%")
    after = filetime(datetime.datetime.now(datetime.timezone.utc)) + 10**7
    stored, entries = lab.stored(), lab.entries()
    check(f"{lab.kind}, {zone}, import", stored[f"Jo.Doe{number}"], midnight(datetime.date(2027, 1, 1), zone))
    check(f"{lab.kind}, {zone}, import", stored[f"Al.Doe{number}"] in NEVER, True)
    entry = entries[f"Jo.Doe{number}"]
    created_at = filetime(datetime.datetime.strptime(entry["whenCreated"][:14] + "+0000", "%Y%m%d%H%M%S%z"))
    for what, moment in (("pwdLastSet", int(entry["pwdLastSet"])), ("whenCreated", created_at)):
        if moment != 0 and not before <= moment <= after:
            sys.exit(f"{lab.kind}, {zone}: {what} is {moment}, and it is {before} to {after}")


def main():
    for kind in ("native", "mixed", "nt"):
        with tempfile.TemporaryDirectory() as folder:
            lab = Lab(folder, kind)
            for number, zone in enumerate(ZONES):
                days_are_stored_and_shown(lab, zone)
                new_accounts_are_of_now(lab, zone, number)
            for name in lab.users:
                lab.twk("Asia/Kolkata", "user", "set", name, "expires=never")
            never_is_never(lab, (NEVER[1],))
            name = lab.users[1]
            dn = lab.entries()[name]["dn"]
            change = pathlib.Path(folder, "change.ldif")
            change.write_text(f"dn: {dn}\nchangetype: modify\nreplace: accountExpires\naccountExpires: 0\n-\n")
            lab.twk("UTC", "lab", "import", str(change))
            never_is_never(lab, (NEVER[1], 0))


if __name__ == "__main__":
    main()
