#!/usr/bin/env python3
"""Reads bundles that other people's programs ship, and holds what is found to Python's reading of their files.

usage: bundles_of_others.py ZELQ gnustep              bundles of Debian's packages of GNUstep
       bundles_of_others.py ZELQ application FOLDER   a macOS application that an npm package in FOLDER ships

packaging/set-up installs both. Without them the test fails and names what is missing.
"""
import glob
import os
import plistlib
import subprocess
import sys

import lists

GNUSTEP = "/usr/share/GNUstep"
# Below GNUSTEP: each layout that the packages have.
BUNDLES = ["Libraries/gnustep-base/Versions/1.28", "Libraries/gnustep-gui/Versions/0.29", "GWorkspace.app",
           "Frameworks/FSNode.framework", "AppViewer.inspector"]


def old_style(path):
    """An old-style list, by way of GNUstep's own converter."""
    with open(path, "rb") as file:
        xml = subprocess.run(["plutil", "-convert", "xml1", "-"], stdin=file, stdout=subprocess.PIPE, check=True).stdout
    return plistlib.loads(xml)


def ask(zelq, query):
    result = subprocess.run([zelq, query], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return result.stdout.strip()


def in_order(dictionary, zelq, expression):
    """The dictionary in the order of the file, which the converter does not keep; keys that differ stay as they are."""
    keys = ask(zelq, f"keys of {expression}").splitlines()
    return {key: dictionary[key] for key in keys} if sorted(keys) == sorted(dictionary) else dictionary


def check_answers(zelq, bundle, expected):
    """`expected` has the answer to each question about the bundle, "it"."""
    for question, answer in expected.items():
        found = ask(zelq, f'({question}) of bundle of folder "{bundle}"')
        if found != answer:
            yield f"{question} of {bundle} is {found!r}, not {answer!r}"


def codes(kind, creator):
    """Questions about the codes of a package, which have no texts of their own."""
    return {f'type of it = file type "{kind}"': "true", f'creator of it = file signature "{creator}"': "true"}


def check_dictionary(zelq, bundle, which, expected):
    expression = f'{which} dictionary of bundle of folder "{bundle}"'
    fault = lists.difference(zelq, expression, lists.dictionary_questions(in_order(expected, zelq, expression), "it"))
    if fault:
        yield fault


def gnustep(zelq):
    for below in BUNDLES:
        bundle = os.path.join(GNUSTEP, below)
        infos = glob.glob(os.path.join(bundle, "Info-gnustep.plist")) + glob.glob(os.path.join(bundle, "Resources/Info-gnustep.plist"))
        if not infos:
            yield f"{bundle}: no information dictionary; packages gnustep-base-common, gnustep-gui-common and gworkspace-common have it"
            continue
        info = old_style(infos[0])
        yield from check_dictionary(zelq, bundle, "global", info)
        kind = "APPL" if bundle.endswith(".app") else "FMWK" if bundle.endswith(".framework") else "BNDL"
        expected = codes(kind, "????")
        if "CFBundleShortVersionString" in info:
            expected |= {f'version of it = version "{info["CFBundleShortVersionString"]}"': "true",
                         f'bundle version of it = version "{info["CFBundleVersion"]}"': "true"}
        yield from check_answers(zelq, bundle, expected)


def application(zelq, folder):
    bundle = os.path.join(folder, "package/vendor/mac.noindex/terminal-notifier.app")
    if not os.path.isdir(bundle):
        yield f"{bundle}: not there; packaging/set-up installs the package node-notifier with npm"
        return
    with open(os.path.join(bundle, "Contents/Info.plist"), "rb") as file:
        info = plistlib.load(file)
    yield from check_dictionary(zelq, bundle, "global", info)
    with open(os.path.join(bundle, "Contents/PkgInfo"), "rb") as file:
        package = file.read().decode()
    assert info["CFBundleVersion"] == "17", "a packed number: seventeen"
    yield from check_answers(zelq, bundle, {**codes(package[:4], package[4:8]), "version of it as string": "17.0",
                                            "bundle version of it as string": "17.0"})
    # Its InfoPlist.strings holds a comment only.
    yield from check_dictionary(zelq, bundle, "local", {})
    yield from check_archive(zelq, os.path.join(bundle, "Contents/Resources/en.lproj/MainMenu.nib"))


def check_archive(zelq, path):
    """A binary list as archives are: hundreds of objects, which refer to one another by identifiers."""
    with open(path, "rb") as file:
        objects = plistlib.load(file)["$objects"]
    questions = [("size of it as string", [b"%d" % len(objects)]),
                 ("types of values of it", [lists.type_name(value) for value in objects]),
                 ("strings of values of it", [lists.mac_roman(value) if isinstance(value, str) else value
                                              for value in objects if isinstance(value, (str, bytes))]),
                 ("(sizes of dictionaries of values of it) as string",
                  [b"%d" % len(value) for value in objects if isinstance(value, dict)])]
    fault = lists.difference(zelq, f'array "$objects" of dictionary of file "{path}"', questions)
    if fault:
        yield fault


def main():
    zelq, kind, *folders = sys.argv[1:]
    faults = list(gnustep(zelq) if kind == "gnustep" else application(zelq, folders[0]))
    print("\n\n".join(faults) or "all agree")
    sys.exit(1 if faults else 0)


main()
