"""The world that the examples of the vocabulary ask about, the same on every machine: files, settings of a user, and
the facts of a recorded machine."""
import os
import plistlib
import shutil
import sys
from datetime import datetime, timezone
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/queries"))
sys.dont_write_bytecode = True
from tree import make_tree  # noqa: E402

MACHINE = ROOT / "tests/machines/server"
# What a sanitizer needs goes with a query; nothing else of this machine's environment does.
KEPT = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")

BACKUP = """<plist><dict>
  <key>name</key>     <string>Nightly</string>
  <key>enabled</key>  <true/>
  <key>port</key>     <integer>873</integer>
  <key>limit</key>    <real>2.5</real>
  <key>since</key>    <date>2025-07-01T00:00:00Z</date>
  <key>token</key>    <data>YWJjAA==</data>
  <key>folders</key>  <array><string>/etc</string><string>/srv</string></array>
  <key>kept</key>     <dict><key>days</key><integer>7</integer><key>weeks</key><integer>4</integer></dict>
  <key>last</key>     <array>
    <date>2026-01-05T02:00:00Z</date><true/><integer>1843</integer>
    <dict><key>host</key><string>nas1</string></dict><array><string>/srv/cache</string></array>
  </array>
</dict></plist>
"""
# Files that an administrator meets: the name, the content, when it was modified.
SITE = {
    "passwd": ("root:x:0:0:root:/root:/bin/bash\ndaemon:x:1:1:daemon:/usr/sbin:/usr/sbin/nologin\n"
               "alice:x:1000:1000:Alice:/home/alice:/bin/bash\nbackup:x:1001:1001::/var/backups:/usr/sbin/nologin\n",
               "2026-01-05T08:00:00"),
    "server.conf": ("name = mail\n\n[network]\naddress = 192.168.0.1\nport = 8080 ; behind the proxy\n\n"
                    "[backup]\nfolder: /var/backups\nport = 873\nenabled = yes\nowner =\ncomment =; none yet\n", "2026-01-04T09:30:00"),
    "installed.txt": ("editor 2.4.1\nmailer 1.10\nviewer 1.9b2\n", "2026-01-03T12:00:00"),
    "backup.plist": (BACKUP, "2026-01-02T15:00:00"),
    "logs/mail.log": ("08:00 started\n08:05 warning: queue is long\n08:10 error: disk full\n08:15 error: disk full\n"
                      "08:20 stopped\n", "2026-01-05T08:20:00"),
    "logs/web.log": ("09:00 started\n09:30 GET /index.html\n", "2026-01-05T09:30:00"),
    "logs/old/mail.log.1": ("23:50 started\n23:55 error: no route\n", "2025-12-31T23:59:59"),
    "Report": ("Sales of the year\n", "2025-06-15T12:00:00"),
    ".profile": ("umask 022\n", "2025-01-01T00:00:00"),
    "bin/mailer": ("#!/bin/sh\n", "2026-01-01T00:00:00"),
    "bin/editor": ("#!/bin/sh\n", "2026-01-01T00:00:00"),
}
SHOWN = ("passwd", "server.conf", "backup.plist", "logs/mail.log")  # those whose content the document shows
# Items that are on or off, in the home, by their folders.
ITEMS = {
    "Startup Items": ("backup.desktop", "mailer.desktop"), "Startup Items (Disabled)": ("chat.desktop",),
    "Extensions": ("audio.ko", "wifi.ko"), "Extensions (Disabled)": ("floppy.ko",),
    "Control Panels": ("Keyboard",), "Control Panels (Disabled)": ("Modem",),
    "Shutdown Items": ("sync.sh",), "Shutdown Items (Disabled)": ("report.sh",),
}
FOLDERS = """[strt]
system = $HOME/Startup Items
[extn]
system = $HOME/Extensions
[ctrl]
system = $HOME/Control Panels
[shdf]
system = $HOME/Shutdown Items
[fram]
system = $HOME/Frameworks
[cmpd]
system = $HOME/Components
local =
network =
user =
"""
COMPONENTS = [
    {"type": "aufx", "subtype": "dely", "manufacturer": "Demo", "name": "Demo: Delay", "version": 0x00020103,
     "description": "Repeats what it hears"},
    {"type": "auou", "subtype": "sine", "manufacturer": "Demo", "version": 0x00010000},
]
DESKTOP_ENTRY = """[Desktop Entry]
Type=Application
Name=Editor
Exec={program} %f
X-Creator-Code=EDTR
"""
# The processes of the recorded machine: a number, its program, its parent.
PROCESSES = ((301, "editor", 1), (417, "mailer", 1), (418, "mailer", 417))


def numbers(*pairs):
    """Numbers in so many bytes each, the high byte in front."""
    return b"".join(number.to_bytes(size, "big") for number, size in pairs)


def resource_fork(versions):
    """A fork that holds resources of versions, by their numbers."""
    data = references = b""
    for number, version in versions.items():
        references += numbers((number, 2), (0xFFFF, 2), (len(data), 4), (0, 4))
        data += numbers((len(version), 4)) + version
    types = numbers((0, 2)) + b"vers" + numbers((len(versions) - 1, 2), (10, 2)) + references
    header = numbers((256, 4), (256 + len(data), 4), (len(data), 4), (28 + len(types), 4))
    return header.ljust(256, b"\0") + data + header + bytes(8) + numbers((28, 2), (28 + len(types), 2)) + types


def apple_double(entries):
    """A file that keeps what a file system cannot: entries by their kinds."""
    head = numbers((0x00051607, 4), (0x00020000, 4)) + bytes(16) + numbers((len(entries), 2))
    body, offset = b"", len(head) + 12 * len(entries)
    for kind, content in entries.items():
        head += numbers((kind, 4), (offset + len(body), 4), (len(content), 4))
        body += content
    return head + body


def write(path, content, modified="2026-01-01T00:00:00"):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content.encode() if isinstance(content, str) else content)
    when = datetime.fromisoformat(modified).replace(tzinfo=timezone.utc).timestamp()
    os.utime(path, (when, when))


def make_site(site):
    for name, (content, modified) in SITE.items():
        write(site / name, content, modified)
    for program in ("mailer", "editor"):
        (site / "bin" / program).chmod(0o755)
    os.symlink("logs/mail.log", site / "latest.log")
    # Seconds since 2000; the others of its dates are unknown.
    backup = (datetime(2025, 7, 1) - datetime(2000, 1, 1)).days * 86400
    dates = numbers((0x80000000, 4), (0x80000000, 4), (backup, 4), (0x80000000, 4))
    # A locked text of an editor, made from a pattern; its version, and that of what it belongs to.
    versions = resource_fork({1: numbers((0x02136004, 4)) + b"\0\0", 2: numbers((0x10408000, 4)) + b"\0\0"})
    kept = {8: dates, 9: b"TEXTEDTR" + numbers((0x0800, 2)) + bytes(22), 10: numbers((1, 4)), 2: versions}
    write(site / "._Report", apple_double(kept))


def make_home(home, site):
    """What the user of the examples has, beside property lists, preferences and Internet settings."""
    for folder, names in ITEMS.items():
        for name in names:
            write(home / folder / name, "")
    framework = plistlib.dumps({"CFBundleIdentifier": "org.example.mail"})
    write(home / "Frameworks/Mail.framework/Resources/Info.plist", framework)
    write(home / "Components/Demo.component/Contents/Info.plist", plistlib.dumps({"AudioComponents": COMPONENTS}))
    write(home / ".local/share/applications/editor.desktop", DESKTOP_ENTRY.format(program=site / "bin/editor"))
    write(home / ".config/editor.conf", "font = Mono\n")


def make_machine(machine, site):
    """A copy of the recorded machine, with processes of this user and folders of the home."""
    if MACHINE.is_dir():
        shutil.copytree(MACHINE, machine, symlinks=True)
    write(machine / "etc/zelq/folders.conf", FOLDERS)
    user = os.getuid()
    for number, program, parent in PROCESSES:
        folder = machine / "proc" / str(number)
        write(folder / "stat", f"{number} ({program}) S {parent} 1 1 0 -1 4194304 10 20 30 40 7 3 5 6 20 0 1 0 "
                               f"{number}00 4096 100 1\n")
        write(folder / "status", f"Name:\t{program}\nTgid:\t{number}\nUid:\t{user}\t{user}\t{user}\t{user}\n")
        os.symlink(site / "bin" / program, folder / "exe")


class World:
    """The files, below a folder, and the environment in which a query is asked there."""

    def __init__(self, folder):
        self.tree, home, machine = folder / "tree", folder / "tree/lists", folder / "machine"
        self.tree.mkdir()
        make_tree(self.tree)
        make_site(self.tree / "site")
        make_home(home, self.tree / "site")
        make_machine(machine, self.tree / "site")
        (folder / "temporary").mkdir()
        self.environment = {name: os.environ[name] for name in KEPT if name in os.environ} | {
            "HOME": str(home), "TZ": "UTC", "LANG": "C.UTF-8", "ZELQ_MACHINE_ROOT": str(machine),
            "TMPDIR": str(folder / "temporary"), "XDG_DATA_DIRS": str(folder / "data"),
            "XDG_CONFIG_DIRS": str(folder / "configuration"), "GIT_CONFIG_GLOBAL": os.devnull}
