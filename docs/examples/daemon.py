#!/usr/bin/env python3
"""A small agent daemon: python3 daemon.py AGENT_DIRECTORY INSTALLED_FILE

It reports low health and offers an update. A reassess request is answered with high health. The first
download request fails; the second one succeeds and reports INSTALLED_FILE as installed. It runs on
Windows, as an administrator, and on POSIX beside the native applet. docs/interfaces.md explains it."""
import os, socket, struct, sys, time
from pathlib import Path

agent, installed_file = Path(sys.argv[1]), sys.argv[2]
KEY = r"SOFTWARE\Corvane Systems\TessaraLink"
REG_BINARY = 3

def replace(name, text):
    """Writes a file that the applet watches: complete, stamped one second ahead, renamed into place."""
    new = agent / (name + ".new")
    new.write_bytes(text.encode())
    ahead = time.time() + 1
    os.utime(new, (ahead, ahead))
    while True:
        try:
            return os.replace(new, agent / name)
        except PermissionError:  # on Windows, while the applet has the old file open
            time.sleep(0.02)

def report_health(state):
    replace("healthnotif.txt", f"""<?xml version="1.0" encoding="UTF-8"?>
<HLXHealthResult version="1.0">
<AutoInstall>no</AutoInstall>
<Enabled>yes</Enabled>
<HealthState>{state}</HealthState>
<DisplayHealthIcon>yes</DisplayHealthIcon>
<Message popup="yes">The health of this machine is {state}.</Message>
</HLXHealthResult>
""")

def report_result(subkey, name, code):
    """Writes one result: a FILETIME and a code, 12 bytes, little-endian."""
    ticks = (int(time.time()) + 11_644_473_600) * 10_000_000  # seconds from 1601 to 1970
    data = struct.pack("<QI", ticks, code)
    if os.name == "nt":
        import winreg
        access = winreg.KEY_WRITE | winreg.KEY_WOW64_32KEY  # the view of a 32-bit program
        with winreg.CreateKeyEx(winreg.HKEY_LOCAL_MACHINE, KEY + "\\" + subkey, 0, access) as key:
            winreg.SetValueEx(key, name, 0, REG_BINARY, data)
        return
    steps = (KEY + "\\" + subkey).lower().split("\\")
    folder = Path(os.environ["WIN32_REGISTRY"], "HKEY_LOCAL_MACHINE", *steps)
    folder.mkdir(parents=True, exist_ok=True)
    plain = "abcdefghijklmnopqrstuvwxyz0123456789 _-{}().,"
    escaped = "".join(c if c in plain else "".join(f"%{b:02x}" for b in c.encode()) for c in name.lower())
    (folder / "new").write_bytes(struct.pack("=II", REG_BINARY, len(name)) + name.encode() + data)
    os.replace(folder / "new", folder / ("=" + escaped))

with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as commands:
    commands.bind(("127.0.0.1", 30022))  # before the first result: nothing is lost
    report_health("low")
    replace("swcache", "Example update:99.0.0-0::\n")
    outcomes = [0x80070002, 0]  # of the downloads: file not found, success
    while True:
        frame = commands.recv(65536)
        if len(frame) < 8 or len(frame) != 8 + int.from_bytes(frame[4:8], "big"):
            continue
        command = int.from_bytes(frame[:4], "big")
        if command == 4:
            report_health("high")
        elif command == 7 and outcomes:
            code = outcomes.pop(0)
            report_result("downloads", "example.cab", code)
            if code == 0:
                report_result(r"updates\results", installed_file, 0)
