"""The files that queries of tests ask about; README.md shows them."""
import os
import plistlib
from datetime import datetime, timezone

SETTINGS = {
    "name": "Editor", "size": 42, "scale": 2.5, "large": 1 << 40, "enabled": True, "since": datetime(2001, 1, 1),
    "token": b"abc\0", "recent": ["a.txt", 7, {"page": 3}, []], "window": {"title": "caf\u00e9", "width": 640}, "none": {},
}
BUNDLE = {"CFBundleIdentifier": "org.example.editor", "CFBundleShortVersionString": "2.5b3", "CFBundleVersion": "build 7"}
PREFERENCES = {"font": "Mono", "recent": ["a.txt", "b.txt"], "tabs": 4, "wrap": False, "window": {"width": 640},
               "opened": datetime(2026, 1, 2, 3, 4, 5)}

# Internet settings as they are stored: a byte for the length of a text, and numbers with their high byte in front.
INTERNET = {
    "Email": b"\x0dme@stored.org", "UseSocks": b"\1", "PrinterFont": b"\0\x0c\0\0\6Monaco".ljust(260, b"\0"),
    "Services": b"\0\5\4http\0\x50\0\3\4ntp4\0\x7b\0\2\5https\1\xbb\0\1\3ftp\0\x15\0\1\4last\0\1\0\1",
    "ArchieAll": b"\0\2\x0barchie.a.fi\4more", "Helper\u2022mailto": b"MAIL\6Mailer".ljust(68, b"\0"),
    "Helper\u2022spoilt": b"MAIL",
}

# Components, of which the second has nothing but codes.
COMPONENTS = {"AudioComponents": [
    {"type": "aufx", "subtype": "lowp", "manufacturer": "Acme", "name": "Acme: Low Pass", "description": "Cuts the t\u00f6p",
     "version": 0x00020001},
    {"type": "aumu", "subtype": "sine", "manufacturer": "Acme"},
    {"type": "no code", "subtype": "lowp", "manufacturer": "Acme", "name": "none"},
]}


def make_lists(folder):
    """Property lists, a bundle, and the preferences of a user whose home this is."""
    def write(name, content):
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)

    write("settings.plist", plistlib.dumps(SETTINGS, sort_keys=False))
    write("binary.plist", plistlib.dumps(SETTINGS, sort_keys=False, fmt=plistlib.FMT_BINARY))
    write("array.plist", plistlib.dumps(["a"]))
    write("spoilt.plist", b"<plist>\n<dict><key>a</key></dict>\n</plist>\n")
    write("Editor.app/Contents/Info.plist", plistlib.dumps(BUNDLE))
    write("Editor.app/Contents/PkgInfo", b"APPLEdit")
    write(".local/share/components/Filters.component/Contents/Info.plist", plistlib.dumps(COMPONENTS))
    write(".local/share/components/Empty.component/Contents/Info.plist", plistlib.dumps({}))
    write("Packed.bundle/Info.plist", plistlib.dumps({"CFBundleVersion": "1.2.3b69"}))
    write("Numbered.bundle/Info.plist", plistlib.dumps({"CFBundleShortVersionString": 2.5}))
    write("Library/Preferences/org.example.editor.plist", plistlib.dumps(PREFERENCES))
    stored = {key: {"ic-data": value} for key, value in INTERNET.items()}
    write("Library/Preferences/com.apple.internetconfig.plist", plistlib.dumps({"Version 2.5.4": {"ic-added": stored}}))
    write(".signature", b"-- \nMe, of the tests\n")
    write(".config/user-dirs.dirs", b'XDG_DOWNLOAD_DIR="$HOME/Editor.app"\n')


def make_machine(root):
    """The facts of a machine that has no components but those of the user."""
    table = root / "etc/zelq/folders.conf"
    table.parent.mkdir(parents=True)
    table.write_text("[cmpd]\nuser = $HOME/.local/share/components\nlocal =\nnetwork =\nsystem =\n")


def make_tree(root):
    """The files that the queries ask about; README.md shows them."""
    def write(name, content, modified):
        path = os.path.join(os.fsencode(root), name)
        with open(path, "wb") as file:
            file.write(content)
        when = datetime.fromisoformat(modified).replace(tzinfo=timezone.utc).timestamp()
        os.utime(path, (when, when))

    os.makedirs(root / "letters/deeper")
    write(b"notes.txt", b"one\ntwo\nred\n", "2026-01-02T03:04:05")
    write(b"empty.txt", b"", "2026-01-01T00:00:00")
    write(b"two words.txt", b"two words\n", "2025-12-31T23:59:59")
    write(b"caf\xe9.txt", b"latin\n", "2025-06-15T12:00:00")
    write(b"letters/a.txt", b"A\n", "2024-02-29T00:00:01")
    write(b"letters/b.txt", b"BB\n", "2024-03-01T00:00:01")
    write(b"letters/deeper/c.txt", b"CCC\n", "2024-03-02T00:00:01")
    write(b"endings.txt", b"unix\nmac\rwindows\r\nodd\n\r\nlast", "2026-01-03T00:00:00")
    write(b"versions.txt", b"1.10\n1.9\n1.9b2\n1.05\n", "2026-01-05T00:00:00")
    write(b"settings.ini", b"user = root\n[client]\n  Port = 3306 ; the usual one\nname:\t\"alpha\" \nempty =\n"
          b"none=;x\n\n<server>\nport=80\nzone=north\n[Server]\nport = 8080\nportable=1\n[void]\n[end]\n", "2026-01-04T00:00:00")
    make_lists(root / "lists")
    os.symlink("notes.txt", root / "link.txt")
    os.symlink("letters", root / "link to letters")
    os.symlink("nowhere", root / "dangling")
