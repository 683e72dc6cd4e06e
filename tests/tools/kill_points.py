"""Where a command changes files, found with strace, and how to kill it there."""

import os
import re
import subprocess
import tempfile

CHANGES = ("write", "pwrite64", "copy_file_range", "mkdir", "mkdirat", "rmdir", "unlink", "unlinkat", "rename", "renameat",
           "renameat2")
CALL = re.compile(r"^\d+ +(\w+)\((.*)$")
# The leak checker cannot work in a program that is traced.
ENVIRONMENT = dict(os.environ, ASAN_OPTIONS="detect_leaks=0")


def changes_of(command, folder, holding=""):
    """(call, number of that call) for each change that a command makes below a folder, in order; only of those whose line of
    the trace holds that text, which reaches 32 bytes into what is written."""
    with tempfile.NamedTemporaryFile("r", errors="replace") as trace:
        done = subprocess.run(["strace", "-f", "-qq", "-y", "-o", trace.name, "-e", "trace=" + ",".join(CHANGES), *command],
                              capture_output=True, text=True, env=ENVIRONMENT, check=False)
        if done.returncode != 0:
            raise SystemExit(f"{command}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
        counts = dict.fromkeys(CHANGES, 0)
        changes = []
        for found in filter(None, map(CALL.match, trace)):
            counts[found[1]] += 1
            if folder in found[2] and holding in found[2]:
                changes.append((found[1], counts[found[1]]))
    return changes


def is_killed_at(change, command):
    """Runs a command that is killed as it is about to make that change; False when it made it to its end."""
    call, number = change
    done = subprocess.run(["strace", "-f", "-o", os.devnull, "-e", f"trace={call}",
                           "-e", f"inject={call}:signal=KILL:when={number}", *command],
                          capture_output=True, env=ENVIRONMENT, check=False)
    return done.returncode != 0
