"""Kills `twk user move` at any moment, again and again: the data must be whole on one side, and no file may be
missing on both.

    killed_move_test.py PATH-OF-TWK [ROUNDS]
"""

import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile

TWK = sys.argv[1]
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 20
FILES = 600


def twk(lab, *arguments):
    return [TWK, "--lab", lab, "--yes", *arguments]


def run(lab, *arguments):
    done = subprocess.run(twk(lab, *arguments), capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"{arguments}: exit code {done.returncode}\n{done.stdout}{done.stderr}")


def contents(top):
    """Every file below a folder, with its bytes."""
    found = {}
    for folder, _, names in os.walk(top):
        for name in names:
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                found[os.path.relpath(path, top)] = file.read()
    return found


def make_lab(lab):
    run(lab, "lab", "init", lab, "--sample", "--users", "3")
    os.makedirs(f"{lab}/servers/FS2/D/Users")
    os.makedirs(f"{lab}/servers/FS2/D/Profiles")
    run(lab, "user", "create", "--template", "Staff", "--site", "Head Office", "--ou",
        "OU=New Starters,DC=twk,DC=test", "Jo", "Smith")
    run(lab, "site", "add", "Branch", "--nt-server", "FS2")
    for name in ("Users", "Profiles"):
        run(lab, "share", "add", "FS2", name, f"D:\\{name}")
    home = f"{lab}/servers/FS1/D/Users/Jo.Smith"
    for number in range(FILES):
        folder = f"{home}/{number % 7}/deep"
        os.makedirs(folder, exist_ok=True)
        with open(f"{folder}/{number}", "wb") as file:
            file.write(os.urandom(random.randrange(9000)))


def count(top):
    return sum(len(names) for _, _, names in os.walk(top))


def kill_when(child, lab, steps):
    """Waits until so many files were copied or taken away, and kills; a move that has ended needs no more."""
    while child.poll() is None:
        copied = count(f"{lab}/servers/FS2/D/Users/Jo.Smith")
        source = f"{lab}/servers/FS1/D/Users/Jo.Smith"
        if copied + (FILES - count(source) if copied >= FILES else 0) >= steps:
            break
    child.send_signal(signal.SIGKILL)
    child.wait()


MOVE = ("user", "move", "jo.smith", "--site", "Branch", "--template", "Staff", "--data", "move", "--no-prompt")


def main():
    random.seed(7)
    with tempfile.TemporaryDirectory() as folder:
        master = f"{folder}/master"
        make_lab(master)
        wanted = contents(f"{master}/servers/FS1/D/Users/Jo.Smith")
        shutil.copytree(master, f"{folder}/whole")
        run(f"{folder}/whole", *MOVE)
        assert contents(f"{folder}/whole/servers/FS2/D/Users/Jo.Smith") == wanted, "an undisturbed move"
        assert not os.path.exists(f"{folder}/whole/servers/FS1/D/Users/Jo.Smith"), "the source is left"
        seen = set()
        halves = set()
        for number in range(ROUNDS):
            lab = f"{folder}/lab"
            shutil.copytree(master, lab)
            child = subprocess.Popen(twk(lab, *MOVE), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            kill_when(child, lab, 2 * FILES * number // ROUNDS)
            source = contents(f"{lab}/servers/FS1/D/Users/Jo.Smith")
            target = contents(f"{lab}/servers/FS2/D/Users/Jo.Smith")
            whole = [side for side, held in (("source", source), ("target", target)) if held == wanted]
            seen.update(whole)
            halves.add((len(source) < FILES, len(target) < FILES))
            assert whole, f"round {number}: source holds {len(source)}, target {len(target)} of {FILES} files"
            run(lab, *MOVE)
            again = contents(f"{lab}/servers/FS2/D/Users/Jo.Smith")
            assert again == wanted, f"round {number}: the move that was repeated"
            shutil.rmtree(lab)
        # A test that never came in between has shown nothing.
        assert (False, True) in halves and seen == {"source", "target"}, f"{halves}, {seen}"
        print(f"{ROUNDS} moves killed; whole were: {', '.join(sorted(seen))}")


main()
