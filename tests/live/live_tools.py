"""What the scripts have in common that run `twk` in the domain that with-domain started and look at it with others'
tools. The first argument is the program."""

import base64
import os
import subprocess
import sys
import tempfile

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


def go_through(*steps, superuser=True):
    """Takes the steps one after the other, of a home of their own, and ends the program with what failed."""
    with tempfile.TemporaryDirectory() as home:
        at_home(home, superuser)
        os.chdir(home)
        for step in steps:
            step()
    if failures:
        sys.exit("\n\n".join(failures[:10]) + f"\n{len(failures)} failures")


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


def set_up(password, account_names, *settings):
    """What a creation goes by; each setting is a key, a name and a value."""
    for setting in (("Setup", "UserFormat", "5"), ("Setup", "SetupID", account_names),
                    ("Preferences", "ForcePasswdChange", "No"), *settings):
        twk("settings", "set", *setting)
    twk("settings", "set", "Setup", "Password", text=password)


def ldap_entries(filter_text, *attributes, base="DC=twk,DC=test"):
    """Of each entry of the domain that fits, by attribute, its values as bytes."""
    done = run("ldapsearch", "-LLL", "-Q", "-N", "-Y", "GSSAPI", "-o", "ldif-wrap=no", "-E", "pr=1000/noprompt", "-H",
               f"ldap://{LIVE['SERVER']}", "-b", base, filter_text, *attributes)
    entries = []
    for line in done.stdout.split("\n"):
        kind, _, value = line.partition(": ")
        name = kind.rstrip(":")
        if name == "dn":
            entries.append({})
        if name in ("dn", *attributes):
            entries[-1].setdefault(name, []).append(base64.b64decode(value) if kind.endswith(":") else value.encode())
    return entries


def ldap_values(filter_text, attribute, base="DC=twk,DC=test"):
    """Values of an attribute, as bytes, of all entries of the domain that fit."""
    return [value for entry in ldap_entries(filter_text, attribute, base=base) for value in entry.get(attribute, [])]


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


def log_on(name, password, codes=None, folder="IPC$"):
    """As that user, who needs nothing but the password."""
    if IS_AD:
        return run("kinit", "-c", f"FILE:{LIVE['STATE']}/of-a-user", f"{name}@TWK.TEST", text=password + "\n", codes=codes)
    return run("smbclient", "-U", f"OLDNT\\{name}%{password}", f"//{LIVE['SERVER']}/{folder}", "-c", "exit", codes=codes)
