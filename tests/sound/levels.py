#!/usr/bin/env python3
"""Sets levels of a real sound server, which plays to nowhere, and compares them with those that zelq tells; then all
that a sound server, ALSA's configuration and the machine may lack. Nothing may be written or printed on the way.

usage: levels.py ZELQ             where namespaces are to be had, also of a server of the whole system
       levels.py ZELQ --system    of such a server alone, for which /run must be this script's own
"""
import os
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

FULL = 65536  # of the server
NO_HARDWARE = "the platform's error -200 (no sound hardware)"
# Where ALSA's own configuration looks for a server, and nobody has changed it.
HOOKS = [Path("/usr/lib"), Path("/usr/lib64"), *Path("/usr/lib").glob("*-linux-*")]
IS_USUAL = (any((folder / "alsa-lib/libasound_module_conf_pulse.so").exists() for folder in HOOKS)
            and not Path("/etc/asound.conf").exists())
LEVELS = "; ".join(f"{side} component ({{0}}) / (full volume / 256)" for side in ("left", "right"))


class Sound:
    """A server with a home of its own, which has its cookie."""

    def __init__(self, folder, place):
        self.folder, self.socket = folder, place
        self.home, self.runtime, self.temporary = folder / "home", folder / "run", folder / "temporary"
        for path in (self.home, self.runtime, self.temporary):
            path.mkdir(mode=0o700)
        names = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS")
        self.environment = {name: os.environ[name] for name in names if name in os.environ} | {
            "HOME": str(self.home), "XDG_RUNTIME_DIR": str(self.runtime), "TMPDIR": str(self.temporary), "LC_ALL": "C"}
        self.server = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--system=no", "--use-pid-file=no",
             "-L", "module-null-sink", "-L", f"module-native-protocol-unix socket={self.socket}"],
            env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=open(folder / "server.log", "wb"))
        deadline = time.monotonic() + 20
        while subprocess.run(["pactl", "info"], env=self.told(), capture_output=True).returncode != 0:
            if time.monotonic() > deadline or self.server.poll() is not None:
                sys.exit("pulseaudio does not start: " + (folder / "server.log").read_text(errors="replace"))
            time.sleep(0.05)

    def told(self):
        return self.environment | {"PULSE_SERVER": f"unix:{self.socket}"}

    def set(self, left, right, muted):
        for command in (["set-sink-volume", "@DEFAULT_SINK@", str(left), str(right)],
                        ["set-sink-mute", "@DEFAULT_SINK@", str(int(muted))]):
            subprocess.run(["pactl", *command], env=self.told(), check=True)

    def end(self):
        self.server.terminate()
        self.server.wait(timeout=20)

    def configuration(self, text):
        """Settings of ALSA, as variables."""
        path = self.folder / f"asound{len(list(self.folder.iterdir()))}.conf"
        path.write_text(text)
        return {"ALSA_CONFIG_PATH": str(path)}

    def configured(self, place):
        return self.configuration(f'ctl.!default {{ type pulse server "unix:{place}" }}\n')


def files(sound):
    return sorted(str(path) for folder in (sound.home, sound.runtime, sound.temporary) for path in folder.rglob("*"))


class Test:
    def __init__(self, zelq, sound):
        self.zelq, self.sound, self.wrong = zelq, sound, []

    def ask(self, query, variables):
        """With the variables, and without those that are None. No server of the machine's own is found."""
        nowhere = {"PULSE_RUNTIME_PATH": str(self.sound.runtime / "pulse")}
        environment = self.sound.environment | nowhere | variables
        return subprocess.run([self.zelq, query], env={name: value for name, value in environment.items() if value is not None},
                              capture_output=True, text=True, stdin=subprocess.DEVNULL, timeout=60)

    def expect(self, what, expected, answer):
        if answer != expected:
            self.wrong.append(f"{what}: expected {expected!r}, not {answer!r}")

    def levels(self, what, expected, variables, volume="default sound volume"):
        before = files(self.sound)
        ran = self.ask(LEVELS.format(volume), variables)
        self.expect(what, ("".join(f"{level}\n" for level in expected), ""), (ran.stdout, ran.stderr))
        self.expect(what + ", files", before, files(self.sound))

    def failure(self, what, reason, variables):
        """Returns the seconds that it took."""
        before, begun = files(self.sound), time.monotonic()
        ran = self.ask("default sound volume", variables)
        first = ran.stderr.split("\n")[0]
        self.expect(what, ("", f'error: "default sound volume" failed: {reason}'), (ran.stdout, first))
        self.expect(what + ", lines", 4, ran.stderr.count("\n") + 1)
        self.expect(what + ", files", before, files(self.sound))
        return time.monotonic() - begun


def ask_of_a_server(test, sound):
    own = sound.configured(sound.socket)
    for left, right in ((0, 0), (FULL // 2, FULL), (FULL, FULL // 4), (FULL * 3 // 2, 0), (100, 200), (FULL - 129, FULL - 127)):
        expected = [(level * 256 + FULL // 2) // FULL for level in (left, right)]
        for muted in (False, True):
            sound.set(left, right, muted)
            test.levels(f"{left} {right} muted {muted}", [0, 0] if muted else expected, own)
    sound.set(FULL // 2, FULL, False)
    test.levels("the beep, which has no level of its own", [128, 256], own, "system beep volume")
    named = {"PULSE_SERVER": f"unix:{sound.socket}"}
    usual = sound.runtime / "pulse/native"
    usual.parent.mkdir(mode=0o700, exist_ok=True)
    usual.symlink_to(sound.socket)
    for variables in ({}, {"PULSE_RUNTIME_PATH": None}):
        if IS_USUAL:
            test.levels("a server in the usual place", [128, 256], variables)
    if IS_USUAL:
        test.levels("the configuration that the packages bring", [128, 256], named)
    test.levels("a server in the usual place, of a configuration", [128, 256], sound.configuration("ctl.!default { type pulse }\n"))
    usual.unlink()
    (sound.home / ".asoundrc").write_text(f'ctl.!default {{ type pulse server "unix:{sound.socket}" }}\n')
    test.levels("a server that only the user's settings name", [128, 256], {})
    (sound.home / ".asoundrc").unlink()
    test.levels("a mixer of another name", [128, 256], sound.configuration(
        f'ctl.!default "other"\nctl.other {{ type pulse server "unix:{sound.socket}" }}\n'))
    test.levels("a mixer that a missing server turns to", [128, 256], sound.configuration(
        f'ctl.!default {{ type pulse fallback "other" }}\nctl.other {{ type pulse server "unix:{sound.socket}" }}\n'))
    elsewhere = sound.folder / "elsewhere"
    elsewhere.mkdir()
    cookie = elsewhere / ".config/pulse/cookie"
    reason = f"the platform's error -200 (asking the sound server would write the file \"{cookie}\", which is not there)"
    asked = (own, named) if IS_USUAL else (own,)
    for variables in asked:
        test.failure("no cookie", reason, variables | {"HOME": str(elsewhere)})
    test.expect("the home of no cookie", [], list(elsewhere.iterdir()))
    cookie.mkdir(parents=True)
    reason = f"the platform's error -200 (the sound server's cookie \"{cookie}\" is no file of at least 256 bytes that can be read)"
    for variables in asked:
        test.failure("a folder for a cookie", reason, variables | {"HOME": str(elsewhere)})
    if foreign := folder_of_another_user(sound):
        reason = f"the platform's error -200 (the sound server's folder \"{foreign / 'pulse'}\" belongs to another user)"
        test.failure("another user's folder", reason,
                     sound.configuration("ctl.!default { type pulse }\n") | {"PULSE_RUNTIME_PATH": str(foreign / "pulse")})
        for variables in asked:
            test.levels("a server that is named, beside another user's folder", [128, 256],
                        variables | {"PULSE_RUNTIME_PATH": None, "XDG_RUNTIME_DIR": str(foreign)})
    test.failure("a recorded machine", NO_HARDWARE, own | {"ZELQ_MACHINE_ROOT": str(sound.home)})


def folder_of_another_user(sound):
    """With the server's socket in it; None where it cannot be given away."""
    foreign = sound.folder / "foreign"
    (foreign / "pulse").mkdir(parents=True)
    (foreign / "pulse/native").symlink_to(sound.socket)
    try:
        for path in (foreign, foreign / "pulse"):
            os.chown(path, 1, 1)
    except OSError:
        return None
    return foreign


def ask_of_the_systems_server(test, sound):
    sound.set(FULL // 2, FULL, False)
    own = sound.folder / "own"
    own.mkdir(mode=0o700)
    foreign = folder_of_another_user(sound)
    configurations = [sound.configuration("ctl.!default { type pulse }\n")] + ([{}] if IS_USUAL else [])
    for configuration in configurations:
        for runtime in (None, str(own), *([str(foreign)] if foreign else [])):
            test.levels(f"the system's server, {runtime}", [128, 256],
                        configuration | {"PULSE_RUNTIME_PATH": None, "XDG_RUNTIME_DIR": runtime})
    test.expect("the asker's folder", [], list(own.iterdir()))
    test.failure("a folder of servers without one", NO_HARDWARE, configurations[0])


def ask_of_a_silent_server(test, sound):
    with socket.socket(socket.AF_UNIX) as silent:
        place = sound.folder / "silent"
        silent.bind(str(place))
        silent.listen(10)
        reason = "the platform's error -200 (the sound server did not answer within 3 seconds)"
        for variables in (sound.configured(place), {"PULSE_SERVER": f"unix:{place}"})[:2 if IS_USUAL else 1]:
            seconds = test.failure("a server that never answers", reason, variables)
            test.expect(f"not less than 3 seconds ({seconds:.1f})", True, seconds > 2.9)


def ask_of_nobody(test, sound):
    test.failure("no server", NO_HARDWARE, sound.configured(sound.folder / "nobody"))
    test.failure("a server that has ended", NO_HARDWARE, sound.configured(sound.socket))
    for name in (".asoundrc", ".config/alsa/asoundrc"):
        settings = sound.home / name
        settings.parent.mkdir(exist_ok=True)
        if IS_USUAL:
            settings.write_text("ctl {\n")
            test.failure(f"a mistake in {name}",
                         "the platform's error -200 (the configuration of ALSA cannot be used: _toplevel_:2:0:Unexpected char)", {})
            settings.write_text("defaults.ctl.card 31\n")
            test.failure(f"a card of {name}", NO_HARDWARE, {})
        settings.write_text("ctl.!default { type hw card 31 }\n")
        test.failure(f"a mixer of {name}", NO_HARDWARE, {})
        settings.unlink()
    test.expect("folders of a server", [], list(sound.runtime.glob("pulse")))
    left_over = sound.runtime / "pulse/native"
    left_over.parent.mkdir(mode=0o700, exist_ok=True)
    with socket.socket(socket.AF_UNIX) as ended:
        ended.bind(str(left_over))
    test.failure("a socket that is left over", NO_HARDWARE, sound.configuration("ctl.!default { type pulse }\n"))
    test.failure("a configuration with a mistake", "the platform's error -200 (the configuration of ALSA cannot be used: "
                 "_toplevel_:2:0:Unexpected char)", sound.configuration("ctl {\n"))
    test.failure("a configuration without a mixer", NO_HARDWARE, sound.configuration("pcm.default { type null }\n"))
    test.failure("a mixer of an unknown kind", NO_HARDWARE, sound.configuration("ctl.default { type nonsense }\n"))
    test.failure("mixers that lead to one another", NO_HARDWARE, sound.configuration('ctl.default "a"\nctl.a "default"\n'))
    test.failure("a card that is not there", NO_HARDWARE, sound.configuration("ctl.default { type hw card 31 }\n"))
    libraries = sound.folder / "libraries"
    libraries.mkdir()
    (libraries / "libasound.so.2").write_text("no library\n")
    paths = f"{libraries}:{sound.environment.get('LD_LIBRARY_PATH', '')}"
    test.failure("no library", NO_HARDWARE, {"LD_LIBRARY_PATH": paths})


def ask_of_a_server_of_the_system(zelq):
    """In a namespace whose /run is empty; returns whether one was to be had."""
    namespace = ["unshare", "--mount", *([] if os.geteuid() == 0 else ["--map-root-user"]),
                 "sh", "-c", 'mount -t tmpfs tmpfs /run && exec "$@"', "sh"]
    if subprocess.run([*namespace, "true"], capture_output=True).returncode != 0:
        return False
    if subprocess.run([*namespace, sys.executable, "-B", __file__, zelq, "--system"]).returncode != 0:
        sys.exit("the system's server is not asked as it should be")
    return True


def ask_of_all(test, sound):
    try:
        # The server's own folder is of no interest.
        for path in sound.runtime.rglob("*"):
            path.rmdir()
        ask_of_a_server(test, sound)
        ask_of_a_silent_server(test, sound)
    finally:
        sound.end()
    for path in sound.runtime.rglob("*"):
        path.rmdir()
    ask_of_nobody(test, sound)


def ask_of_the_system(test, sound):
    try:
        for path in sound.runtime.rglob("*"):
            path.rmdir()
        ask_of_the_systems_server(test, sound)
    finally:
        sound.end()


def main():
    zelq, is_system = sys.argv[1], sys.argv[2:] == ["--system"]
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name).resolve()
        place = Path("/run/pulse/native") if is_system else folder / "socket"
        place.parent.mkdir(exist_ok=True)
        test = Test(zelq, Sound(folder, place))
        try:
            (ask_of_the_system if is_system else ask_of_all)(test, test.sound)
        finally:
            print("\n".join(test.wrong), end="\n" if test.wrong else "", flush=True)
    if test.wrong:
        sys.exit(1)
    if not is_system:
        tried = ask_of_a_server_of_the_system(zelq)
        print("the same levels, and nothing written" + ("" if tried else "; no server of the system was tried"))


main()
