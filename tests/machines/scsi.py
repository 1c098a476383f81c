#!/usr/bin/env python3
"""Asks the recorded machines beside this file for their SCSI buses and devices and their USB.

usage: scsi.py ZELQ
"""
import sys

sys.dont_write_bytecode = True
from recorded import NONE, hold  # noqa: E402

ANSWERS = {
    "laptop": {
        "number of scsibuses": "3",
        "versions of scsibuses": "43.0|43.0|43.0",
        "fast scsis of scsibuses": "false|false|false",
        "number of scsidevices": "2",
        "vendors of scsidevices": "ATA     |Generic ",
        "products of scsidevices": "SOLID STATE 512G|Card Reader     ",
        "revisions of scsidevices": "7.1 |0100",
        "types of scsidevices": "DISK|DISK",
        "product of scsidevice 0": "SOLID STATE 512G",
        "product of scsidevice 0 of scsibus 2": "Card Reader     ",
        "number of scsidevices of scsibus 1": "0",
        "exists scsidevice 0 of scsibus 1": "false",
        "scsibus 3": NONE,
        "exists usb": "true",
        "number of usbs": "1",
        "version of usb": "3.1",
        "isochronous of usb": "true",
    },
    "server": {
        "number of scsibuses": "2",
        "fast scsis of scsibuses": "true|false",
        "wide16 scsis of scsibuses": "true|false",
        "wide32 scsis of scsibuses": "false|false",
        "version of scsibus 1": "43.0",
        "scsibus 2": NONE,
        # Targets above 7 have numbers, and are not listed.
        "number of scsidevices": "8",
        "types of scsidevices": "DISK|TAPE|UNKNOWN|CDROM|DISK|DISK|UNKNOWN|UNKNOWN",
        "vendors of scsidevices of scsibus 0": "NORTH   |NORTH   |NORTH   |EAST    |EAST    ",
        "products of scsidevices of scsibus 1": "ARRAY           |SHELF           |NOTHING         ",
        "product of scsidevice 9": "SPINDLE 146     ",
        "revision of scsidevice 9 of scsibus 0": "0043",
        "type of scsidevice 4": "DISK",
        "type of scsidevice 2 of scsibus 1": "UNKNOWN",
        "revision of scsidevice 2 of scsibus 1": "    ",
        "scsidevice 5": NONE,
        "scsidevice 3 of scsibus 1": NONE,
        "scsidevice 256": NONE,
        "scsidevice 265": NONE,
        "scsidevice 9223372036854775807": NONE,
        "scsidevice (-1)": NONE,
        "scsibus 256": NONE,
        "scsibus (-1)": NONE,
        "scsidevice 9 of scsibus 256": NONE,
        # More devices than are remembered, and the first ones again.
        "products of (scsidevice 0; scsidevice 1; scsidevice 2; scsidevice 3; scsidevice 4; scsidevice 9; "
        "scsidevice 0 of scsibus 1; scsidevice 1 of scsibus 1; scsidevice 2 of scsibus 1; scsidevice 0; scsidevice 1)":
            "SPINDLE 73      |REEL 400        |PICKER 24       |SILVER DISC     |MAGNETO OPTIC   |SPINDLE 146     |"
            "ARRAY           |SHELF           |NOTHING         |SPINDLE 73      |REEL 400        ",
        'products of scsidevices whose (type of it = "TAPE")': "REEL 400        ",
        "lengths of unique values of vendors of scsidevices": "8|8|8",
        "exists usb": "false",
        "usb": NONE,
        "version of usb": NONE,
    },
    "vm": {
        "scsibuses": "",
        "scsidevices": "",
        "number of scsidevices": "0",
        "exists scsibus 0": "false",
        "scsibus 0": NONE,
        "scsidevice 0": NONE,
        "exists usb": "false",
        "version of usb": NONE,
    },
}


hold(sys.argv[1], [(machine, *case) for machine, answers in ANSWERS.items() for case in answers.items()])
