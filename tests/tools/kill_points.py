"""The moments at which a program changes files, found and hit with strace."""

import os
import re
import subprocess
import tempfile

CHANGES = ("write", "pwrite64", "mkdir", "mkdirat", "rmdir", "unlink", "unlinkat", "rename", "renameat", "renameat2")
# The leak checker cannot work in a program that is traced.
ENVIRONMENT = dict(os.environ, ASAN_OPTIONS="detect_leaks=0")
CALL = re.compile(r"^(\w+)\((.*)$")


def changes_of(command, folder):
    """(call, number of that call) for each change that a command makes below a folder, in order."""
    with tempfile.NamedTemporaryFile("r") as trace:
        done = subprocess.run(["strace", "-y", "-o", trace.name, "-e", "trace=" + ",".join(CHANGES), *command],
                              capture_output=True, text=True, env=ENVIRONMENT)
        if done.returncode != 0:
            raise SystemExit(f"{command}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
        counts = dict.fromkeys(CHANGES, 0)
        changes = []
        for line in trace:
            found = CALL.match(line)
            if not found or found[1] not in counts:
                continue
            counts[found[1]] += 1
            if folder in found[2]:
                changes.append((found[1], counts[found[1]]))
    return changes


def spread(changes, most):
    """At most so many of them, over all of the run."""
    if len(changes) <= most:
        return changes
    return [changes[number * len(changes) // most] for number in range(most)]


def run_until(command, change):
    """Runs a command and kills it as it is about to make that change; False when it made it to its end."""
    call, number = change
    done = subprocess.run(["strace", "-o", os.devnull, "-e", f"trace={call}",
                           "-e", f"inject={call}:signal=KILL:when={number}", *command], capture_output=True, env=ENVIRONMENT)
    return done.returncode != 0
