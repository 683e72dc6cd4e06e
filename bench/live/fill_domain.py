#!/usr/bin/python3
"""Puts users into the database of a Samba controller that does not run: what a domain of that size holds before measuring.

    fill_domain.py SMB_CONF USERS

They stand in units of 1,000. Users that are there already count.
"""

import sys

from samba.auth import system_session
from samba.param import LoadParm
from samba.samdb import SamDB

USERS_A_UNIT = 1000


def main():
    configuration = LoadParm()
    configuration.load(sys.argv[1])
    wanted = int(sys.argv[2])
    directory = SamDB(session_info=system_session(), lp=configuration)
    top = str(directory.domain_dn())
    there = len(directory.search(top, expression="(sAMAccountName=filled*)", attrs=["cn"]))
    directory.transaction_start()
    for i in range(there, wanted):
        if i % USERS_A_UNIT == USERS_A_UNIT // 2:
            directory.transaction_commit()
            directory.transaction_start()
        unit = f"OU=Unit {i // USERS_A_UNIT:03},{top}"
        if i % USERS_A_UNIT == 0:
            directory.add({"dn": unit, "objectClass": "organizationalUnit"})
        directory.add({"dn": f"CN=Filled {i:06},{unit}", "objectClass": "user", "sAMAccountName": f"filled{i:06}",
                       "displayName": f"Filled {i:06} of the domain", "givenName": "Filled", "sn": f"{i:06}",
                       "userAccountControl": "514"})
    directory.transaction_commit()


main()
