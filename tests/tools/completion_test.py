"""Completes command lines of twk in bash, zsh and fish, as a person at the keyboard would.

    completion_test.py PATH-OF-TWK
"""

import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import time

from lab_tools import TWK, make_lab, twk

SCRIPTS = os.path.join(os.path.dirname(__file__), "../../packaging/completion")
# A line, and what it becomes.
LINES = [("twk user imp", "twk user import"), ("twk site show He", "twk site show 'Head Office'"),
         ("twk user show Łuk", "twk user show Łukasz.Müller"),
         ("twk user create --template=St", "twk user create --template=Staff"),
         ("twk settings get Setup IncN", "twk settings get Setup IncNumber"),
         ("twk group members 'Domain Co", "twk group members 'Domain Co"),  # two fit
         ("twk user import peo", "twk user import people.csv"), ("twk user import --undo peo", "twk user import --undo people.csv"),
         ("twk nonsense show ", "twk nonsense show ")]


class Terminal:
    """A shell that somebody types in."""

    def __init__(self, words, environment, folder):
        self.child, self.fd = pty.fork()
        if self.child == 0:
            os.chdir(folder)
            os.execvpe(words[0], words, environment)
        self.read_until("READY> ")

    def read_until(self, text):
        seen = ""
        end = time.monotonic() + 60
        while not seen.endswith(text):
            assert time.monotonic() < end, f"no {text!r} in {seen!r}"
            if select.select([self.fd], [], [], 1)[0]:
                seen += os.read(self.fd, 65536).decode(errors="replace").replace("\r", "")
        return seen

    def type(self, keys):
        os.write(self.fd, keys.encode())

    def completed(self, line):
        """The words of the line after the Tab key, a line each: it is made the argument of printf."""
        self.type(line + "\t")
        time.sleep(1.5)
        quote = "'" if line.count("'") % 2 == 1 else ""
        self.type(f"{quote}\x01printf '[%s]' \x05; printf '\\nEND\\n'\r")
        seen = self.read_until("END\nREADY> ")
        return re.findall(r"\[([^\]]*)\]", seen.split("\n")[-3])


def expected(line):
    return subprocess.run(["bash", "-c", f"printf '%s\\n' {line}" + ("'" if line.count("'") % 2 else "")],
                          capture_output=True, text=True, check=True).stdout.splitlines()


def main():
    with tempfile.TemporaryDirectory() as folder:
        lab = f"{folder}/lab"
        make_lab(lab, "--users", "4")
        for first in ("Łukasz", "Lena"):
            twk(lab, "user", "create", "--template", "Staff", "--site", "Head Office", "--ou",
                "OU=New Starters,DC=twk,DC=test", first, "Müller")
        with open(f"{folder}/people.csv", "w", encoding="utf-8"):
            pass
        environment = {"PATH": os.path.dirname(os.path.abspath(TWK)) + ":/usr/bin:/bin", "TWK_LAB": lab, "HOME": folder,
                       "TERM": "dumb", "PS1": "READY> ", "LANG": "C.UTF-8", "LC_ALL": "C.UTF-8"}
        with open(f"{folder}/.zshrc", "w", encoding="utf-8") as start:
            start.write(f"PS1='READY> '; unset zle_bracketed_paste; unsetopt prompt_sp; fpath=({SCRIPTS} $fpath)\n"
                        "autoload -Uz compinit; compinit -u -D\n")
        with open(f"{folder}/.bashrc", "w", encoding="utf-8") as start:
            start.write(f"PS1='READY> '; bind 'set enable-bracketed-paste off'; source {SCRIPTS}/twk.bash\n")
        faults = []
        for shell in (["bash", "--rcfile", f"{folder}/.bashrc", "-i"], ["zsh", "-i"]):
            terminal = Terminal(shell, environment, folder)
            for line, whole in LINES:
                found = terminal.completed(line)
                if found != expected(whole):
                    faults.append(f"{shell[0]}: {line!r} became {found}")
        for line, whole in LINES:
            found = subprocess.run(["fish", "--no-config", "-c", f"source {SCRIPTS}/twk.fish; complete -C \"{line}\""],
                                   env=environment, cwd=folder, capture_output=True, text=True, check=True).stdout
            offered = [row.split("\t")[0] for row in found.splitlines()]
            last = expected(whole)[-1]
            if line != whole and last not in offered and last.split("=")[-1] not in offered:
                faults.append(f"fish: {line!r} offers {offered}")
        for fault in faults:
            print(fault)
        sys.exit(1 if faults else 0)


main()
