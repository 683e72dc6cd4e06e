#!/usr/bin/python3
"""Starts the window program on a new lab, without a screen, and waits until it can be called by a second start; then
calls it by one, which ends while the first goes on.

    window_opens_test.py PATH-OF-TWK
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

twk = sys.argv[1]
tarnwick = re.sub("twk$", "tarnwick", twk)
with tempfile.TemporaryDirectory() as folder:
    os.chmod(folder, 0o700)
    environment = {**os.environ, "HOME": folder, "XDG_RUNTIME_DIR": folder, "QT_QPA_PLATFORM": "offscreen"}
    environment.pop("DISPLAY", None)
    environment.pop("WAYLAND_DISPLAY", None)
    lab = f"{folder}/lab"
    subprocess.run([twk, "lab", "init", lab, "--sample"], check=True, env=environment, stdout=subprocess.DEVNULL)
    window = subprocess.Popen([tarnwick, "--lab", lab], env=environment)
    try:
        end = time.monotonic() + 60
        while not pathlib.Path(folder, "tarnwick-none").is_socket():
            if window.poll() is not None or time.monotonic() > end:
                sys.exit(f"The window did not open; the program ended with {window.returncode}.")
            time.sleep(0.05)
        subprocess.run([tarnwick, "--lab", lab], check=True, env=environment, timeout=60)
        if window.poll() is not None:
            sys.exit(f"The window was open and the program ended with {window.returncode}.")
    finally:
        window.kill()
        window.wait()
