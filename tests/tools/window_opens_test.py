#!/usr/bin/python3
"""Starts the window program on a new lab, without a screen, and waits until it can be called by a second start; then
calls it by one, which ends while the first goes on and says why it opens no other lab. Without the module for real domains both programs say so.

    window_opens_test.py PATH-OF-TWK
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

twk = sys.argv[1]
tarnwick = re.sub("twk$", "tarnwick", twk)
with tempfile.TemporaryDirectory() as folder:
    os.chmod(folder, 0o700)
    # The screen that the platform has by itself is too small for the window, and a box would say so.
    screen = pathlib.Path(folder, "screen.json")
    screen.write_text('{"screens": [{"name": "one", "x": 0, "y": 0, "width": 1280, "height": 900}]}')
    environment = {**os.environ, "HOME": folder, "XDG_RUNTIME_DIR": folder,
                   "QT_QPA_PLATFORM": f"offscreen:configfile={screen}"}
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
        other = subprocess.run([tarnwick, "--lab", f"{folder}/other"], env=environment, timeout=60, capture_output=True, text=True)
        if "Open the lab or the domain there" not in other.stderr:
            sys.exit(f"A second start on another lab did not say why it opened none: {other.stderr}")
        if window.poll() is not None:
            sys.exit(f"The window was open and the program ended with {window.returncode}.")
    finally:
        window.kill()
        window.wait()

    alone = pathlib.Path(folder, "alone", "bin")
    alone.mkdir(parents=True)
    programs = [shutil.copy(program, alone) for program in (twk, tarnwick)]
    lacking = "real domains cannot be loaded"
    told = subprocess.run([programs[0], "--domain", "corp.test", "user", "list"], env=environment, capture_output=True, text=True)
    if told.returncode != 70 or lacking not in told.stderr:
        sys.exit(f"twk without its module: {told.returncode} {told.stderr}")
    box = subprocess.Popen([programs[1], "--domain", "corp.test"], env=environment, stderr=subprocess.PIPE, text=True)
    try:
        while lacking not in (line := box.stderr.readline()):
            if not line:
                sys.exit(f"tarnwick without its module ended with {box.wait()} and without a word.")
        try:
            sys.exit(f"tarnwick without its module ended with {box.wait(1)} instead of showing a box.")
        except subprocess.TimeoutExpired:
            pass
    finally:
        box.kill()
        box.wait()
