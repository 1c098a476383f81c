#!/usr/bin/env python3
"""Sets levels of a real sound server, which plays to nowhere, and compares them with those that zelq tells; then all
that a sound server, ALSA's configuration and the machine may lack.

usage: levels.py ZELQ
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
LEVELS = "; ".join(f"{side} component ({{0}}) / (full volume / 256)" for side in ("left", "right"))


class Sound:
    """A server with a home of its own, which has its cookie."""

    def __init__(self, folder):
        self.folder = folder
        self.home, self.runtime, self.socket = folder / "home", folder / "run", folder / "socket"
        for path in (self.home, self.runtime):
            path.mkdir(mode=0o700)
        names = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS")
        self.environment = {name: os.environ[name] for name in names if name in os.environ} | {
            "HOME": str(self.home), "XDG_RUNTIME_DIR": str(self.runtime), "LC_ALL": "C"}
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
        path = self.folder / "asound.conf"
        path.write_text(text)
        return {"ALSA_CONFIG_PATH": str(path)}

    def configured(self, place):
        return self.configuration(f'ctl.!default {{ type pulse server "unix:{place}" }}\n')


def files(sound):
    return sorted(str(path) for path in (*sound.home.rglob("*"), *sound.runtime.rglob("*")))


class Test:
    def __init__(self, zelq, sound):
        self.zelq, self.sound, self.wrong = zelq, sound, []

    def ask(self, query, variables):
        return subprocess.run([self.zelq, query], env=self.sound.environment | variables, capture_output=True, text=True,
                              stdin=subprocess.DEVNULL, timeout=60)

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
    test.levels("the configuration that the packages bring", [128, 256], {"PULSE_SERVER": f"unix:{sound.socket}"})
    usual = sound.runtime / "pulse/native"
    usual.parent.mkdir(exist_ok=True)
    usual.symlink_to(sound.socket)
    test.levels("a server in the usual place", [128, 256], {})
    test.levels("a server in the usual place, of a configuration", [128, 256], sound.configuration("ctl.!default { type pulse }\n"))
    usual.unlink()
    (sound.home / ".asoundrc").write_text(f'ctl.!default {{ type pulse server "unix:{sound.socket}" }}\n')
    test.levels("a server that only the user's settings name", [128, 256], {})
    (sound.home / ".asoundrc").unlink()
    test.levels("a mixer of another name", [128, 256], sound.configuration(
        f'ctl.!default "other"\nctl.other {{ type pulse server "unix:{sound.socket}" }}\n'))
    elsewhere = sound.folder / "elsewhere"
    elsewhere.mkdir()
    cookie = elsewhere / ".config/pulse/cookie"
    reason = f"the platform's error -200 (asking the sound server would write the file \"{cookie}\", which is not there)"
    for variables in (own, {"PULSE_SERVER": f"unix:{sound.socket}"}):
        test.failure("no cookie", reason, variables | {"HOME": str(elsewhere)})
    test.expect("the home of no cookie", [], list(elsewhere.iterdir()))
    test.failure("a recorded machine", NO_HARDWARE, own | {"ZELQ_MACHINE_ROOT": str(sound.home)})


def ask_of_a_silent_server(test, sound):
    with socket.socket(socket.AF_UNIX) as silent:
        place = sound.folder / "silent"
        silent.bind(str(place))
        silent.listen(10)
        reason = "the platform's error -200 (the sound server did not answer within 3 seconds)"
        for variables in (sound.configured(place), {"PULSE_SERVER": f"unix:{place}"}):
            seconds = test.failure("a server that never answers", reason, variables)
            test.expect(f"not less than 3 seconds ({seconds:.1f})", True, seconds > 2.9)


def ask_of_nobody(test, sound):
    test.failure("no server", NO_HARDWARE, sound.configured(sound.folder / "nobody"))
    test.failure("a server that has ended", NO_HARDWARE, sound.configured(sound.socket))
    ran = test.ask("default sound volume", {})
    test.expect("no server by the packages' configuration", True, ran.stdout == "stereo volume\n" or NO_HARDWARE in ran.stderr)
    test.expect("folders of a server", [], list(sound.runtime.glob("pulse")))
    for name in (".asoundrc", ".config/alsa/asoundrc"):
        settings = sound.home / name
        settings.parent.mkdir(exist_ok=True)
        settings.write_text("ctl {\n")
        test.failure(f"a mistake in {name}",
                     "the platform's error -200 (the configuration of ALSA cannot be used: _toplevel_:2:0:Unexpected char)", {})
        settings.write_text("defaults.ctl.card 31\n")
        test.failure(f"a card of {name}", NO_HARDWARE, {})
        settings.unlink()
    left_over = sound.runtime / "pulse/native"
    left_over.parent.mkdir()
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


def main():
    with tempfile.TemporaryDirectory() as folder:
        sound = Sound(Path(folder).resolve())
        test = Test(sys.argv[1], sound)
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
    if test.wrong:
        sys.exit("\n".join(test.wrong))
    print("the same levels, and nothing written")


main()
