"""What the scripts have in common that run `twk` in the domain that with-domain started and look at it with others'
tools. The first argument is the program."""

import os
import subprocess
import sys

TWK = sys.argv[1]
LIVE = {name: os.environ.get(f"TWK_LIVE_{name}", "") for name in (
    "DOMAIN", "SERVER", "ADMIN", "PASSWORD", "STATE", "CONTROL", "EXCHANGE", "SUPERUSER_TICKET")}
IS_AD = "." in LIVE["DOMAIN"]
CONF = LIVE["STATE"] + ("/domain/etc/smb.conf" if IS_AD else "/smb.conf")
failures = []


def at_home(home, superuser=True):
    """Keeps settings and databases in a folder, and logs on as the account that the server takes for its superuser, or
    as another administrator of an Active Directory domain."""
    os.environ.update(XDG_CONFIG_HOME=home + "/config", XDG_DATA_HOME=home + "/data")
    if IS_AD and superuser:
        os.environ["KRB5CCNAME"] = LIVE["SUPERUSER_TICKET"]
    elif not IS_AD:
        os.environ["TWK_LOGON_PASSWORD"] = LIVE["PASSWORD"]


def run(*command, text=None, codes=(0,), env=None):
    done = subprocess.run(command, input=text, capture_output=True, encoding="utf-8",
                          errors="replace", check=False, timeout=300,
                          env={**os.environ, **(env or {})})
    if codes is not None and done.returncode not in codes:
        sys.exit(f"{' '.join(command)}: {done.returncode}\n{done.stdout}\n{done.stderr}")
    return done


def twk_command(*arguments):
    return [TWK, "--domain", LIVE["DOMAIN"], "--server", LIVE["SERVER"], *([] if IS_AD else ["--user", LIVE["ADMIN"]]),
            *arguments]


def twk(*arguments, **options):
    return run(*twk_command(*arguments), **options)


def expect(what, found, text):
    """Text found with a tool that is not ours must hold what was asked for."""
    if what not in text:
        failures.append(f"{found}: {what!r} is missing in:\n{text}")


def expect_same(found, wanted, what):
    if found != wanted:
        failures.append(f"{what}: {found!r}, not {wanted!r}")


def admin_logon():
    """The account that the server takes for its superuser, for tools that take a name."""
    return f"{'TWK' if IS_AD else 'OLDNT'}\\{'Administrator' if IS_AD else 'root'}%{LIVE['PASSWORD']}"
