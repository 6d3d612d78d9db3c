"""A fleet of simulated targets in mixed state, some of them faulty, each with a target file and a flash drive of its own."""

import copy
import fcntl
import itertools
import json
import shutil
import subprocess
import zlib
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
EXAMPLES = PROJECT / "examples"
TOOL_FOLDER = PROJECT / "build" / "release" / "bin"

# An FPGA's bitstream whose header states no checksum: the device keeps the one that it had.
BITSTREAM_WITHOUT_CHECKSUM = b"ZoFPGABS" + (88).to_bytes(4, "big") + (1).to_bytes(4, "big") + bytes(76)
NOTES = b"A file that no target lists.\n"


def make_archive(folder):
    """The example's archive, with a file for processor boards of variant "X" that they do not list, and one for element 8 of an
    output module that cannot be verified."""
    shutil.copytree(EXAMPLES / "archive", folder)
    description = json.loads((folder / "archive.json").read_text())
    for entry in description["files"]:
        if entry.get("boardType") == "KR5120":
            entry["boardVariant"] = [None, "X"]
    (folder / "notes.txt").write_bytes(NOTES)
    (folder / "tables.bit").write_bytes(BITSTREAM_WITHOUT_CHECKSUM)
    description["files"] += [
        {"name": "notes.txt", "sequence": 20, "boardType": "KR5120", "boardVariant": "X", "targetPath": "config/notes.txt",
         "version": None, "checksumCrc32": zlib.crc32(NOTES)},
        {"name": "tables.bit", "sequence": 10, "boardType": "DO8200", "boardVariant": "24 V", "id": 8, "version": None,
         "checksumCrc32": 7007},
    ]
    (folder / "archive.json").write_text(json.dumps(description, indent=1))
    return folder


def old_target():
    target = json.loads((EXAMPLES / "target.json").read_text())
    target["clock"] = "virtual"
    return target


def children(item, kind):
    return [child for child in item["items"] if child["id"].split("[")[0] == kind]


def hcn(target):
    return children(target["tree"], "HCN")[0]


def elements(board):
    return children(board, "UPDATE_INFO")[0]["items"]


def module(target, number):
    return children(children(target["tree"], "IOROUTER")[number], "IOMODULE")[0]


# The states that targets are in. Each takes an old target, and one that is up to date.

def old(target, done):
    return target


def up_to_date(target, done):
    return done


def inputs_done(target, done):
    children(target["tree"], "IOROUTER")[0]["items"] = children(done["tree"], "IOROUTER")[0]["items"]
    return target


def without_modules(target, done):
    target["tree"]["items"] = [hcn(target)]
    return target


def firmware_newer(target, done):
    elements(hcn(done))[0]["parameters"].update(VERSION="24.0", CHECKSUM_CRC32=24)
    return done


def unlisted_file(target, done):
    hcn(done)["parameters"]["PRODUCT/VARIANT"] = "X"
    return done


def customer_board(target, done):
    for element in elements(module(target, 1)):
        element["parameters"]["CUSTOM"] = 1
    return target


def corrupt_loader(target, done):
    elements(hcn(done))[2]["parameters"].update(VALID=0, CHECKSUM_CRC32=3)
    return done


class State:
    """A state of targets, and what an update finds there to do: how many elements it writes the first and the second time."""

    def __init__(self, name, change, first, second=0):
        self.name, self.change, self.first, self.second = name, change, first, second


STATES = [
    State("old", old, 12),
    State("up to date", up_to_date, 0),
    State("inputs done", inputs_done, 9),
    State("without modules", without_modules, 7),
    State("firmware newer", firmware_newer, 1),
    State("unlisted file", unlisted_file, 1, 1),
    State("customer's board", customer_board, 12),
    State("corrupt loader", corrupt_loader, 1),
]


# The faults. Each takes an old target, the folder that the target file is going to be in, and the fleet.

def script(**members):
    return {"elements": {"/ROOT/HCN#1": members}}


def error(text):
    return {"errors": [{"code": 7, "text": text}]}


def locked(target, folder, fleet):
    fleet.lock(folder / "target.json.lock")


def missing_parameter(target, folder, fleet):
    del elements(hcn(target))[0]["parameters"]["ACTIVE"]


def failing_start(target, folder, fleet):
    target["script"] = script(start=[error("no room")])


def failing_poll(target, folder, fleet):
    target["script"] = script(polls=[error("no answer")] * 2)


def failing_finish(target, folder, fleet):
    target["script"] = script(finish=[{"results": error("flash worn out")["errors"]}])


def failing_verification(target, folder, fleet):
    elements(module(target, 1)).append(
        {"id": "UPDATE_ELEMENT[4]", "parameters": {"ID": 8, "NAME": "Tables", "CHECKSUM_CRC32": 8008, "CONFIGURATION": 0,
                                                   "VALID": 1, "ACTIVE": 1}})


def refused_board(target, folder, fleet):
    hcn(target)["parameters"]["PRODUCT/BOARD_TYPE"] = "KR9999"


def full_drive(target, folder, fleet):
    target["flashDrive"] = str(fleet.full_drive(folder.name))


def no_target_file(target, folder, fleet):
    target.clear()


def stall(target, folder, fleet):
    target["script"] = script(polls=[{"status": 1, "done": 5, "total": 100}] * 400)


class Fault:
    """A fault, and what is expected of it. CHECK is a part of what check mode fails with, None where it cannot know, RUN of
    what the update does. CHANGED tells whether the first and the second update write something."""

    def __init__(self, name, change, result, run, check=None, changed=(True, False), second="same"):
        self.name, self.change, self.result, self.run, self.check, self.changed = name, change, result, run, check, changed
        self.second = result if second == "same" else second


FAULTS = [
    Fault("locked", locked, "failed", "The target is locked by another process.", changed=(False, False)),
    Fault("missing parameter", missing_parameter, "failed",
          "Parameter ACTIVE of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT does not exist.",
          check="Parameter ACTIVE of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT does not exist.", changed=(True, True)),
    Fault("failing start", failing_start, "failed", "Firmware: no room"),
    Fault("failing poll", failing_poll, "failed", "Firmware: no answer"),
    Fault("failing finish", failing_finish, "failed", "Firmware: flash worn out", second="success"),
    Fault("failing verification", failing_verification, "failed",
          "Tables does not have its file's content: checksum 8008, not 7007", changed=(True, True)),
    Fault("refused board", refused_board, "refused", "(board KR9999, element UserFirmware)",
          check="(board KR9999, element UserFirmware)", changed=(False, False)),
    Fault("full drive", full_drive, "failed", "SiteSettings: ERROR: Cannot write /mnt/cn/cfdrive/config/site.cfg.tmp"),
    Fault("no target file", no_target_file, "refused", "No such file or directory", check="No such file or directory",
          changed=(False, False)),
    Fault("stall", stall, "stalled", "no progress for 20 s"),
]


class Fleet:
    """COUNT targets below FOLDER, and an archive for them. Every tenth is faulty, the faults in turn."""

    def __init__(self, folder, count, faulty=True):
        self.folder = folder
        self.archive = make_archive(folder / "archive")
        self.locks = []
        self.full = None
        self.targets = folder / "targets"
        self.fault_of, self.state_of = {}, {}
        self.done = self.updated_target()
        for number in range(count):
            host = "target%04d" % number
            if faulty and number % 10 == 3:
                self.fault_of[host] = FAULTS[number // 10 % len(FAULTS)]
            else:
                self.state_of[host] = STATES[number % len(STATES)]
        self.hosts = sorted(list(self.fault_of) + list(self.state_of))
        self.restore()

    def updated_target(self):
        """The example's target after an update."""
        folder = self.folder / "done"
        self.write(folder, old_target())
        subprocess.run([TOOL_FOLDER / "trellan-update", "update", self.archive, "--target", folder / "target.json", "--quiet"],
                       check=True, stderr=subprocess.DEVNULL)
        return json.loads((folder / "target.json").read_text())

    def restore(self):
        """Makes all targets anew."""
        self.close()
        shutil.rmtree(self.targets, ignore_errors=True)
        for number, host in enumerate(self.hosts):
            folder = self.targets / host
            target = old_target()
            drive_done = host in self.state_of and self.state_of[host].change in (
                up_to_date, firmware_newer, unlisted_file, corrupt_loader)
            if host in self.state_of:
                target = self.state_of[host].change(target, copy.deepcopy(self.done))
            folder.mkdir(parents=True)
            if host in self.fault_of:
                self.fault_of[host].change(target, folder, self)
            if target:
                hcn(target)["parameters"]["PRODUCT/SERIAL_NUMBER"] = 5000 + number
            self.write(folder, target, drive_done)

    def write(self, folder, target, drive_done=False):
        shutil.copytree(self.folder / "done" / "flash" if drive_done else EXAMPLES / "flash", folder / "flash")
        if target:
            (folder / "target.json").write_text(json.dumps(target, indent=1))

    def target_file(self, host):
        return self.targets / host / "target.json"

    def inventory(self, path, hosts=None):
        """Writes the engine's list of hosts, in the group trellan."""
        python = "ansible_connection=local ansible_python_interpreter=/usr/bin/python3"
        # A folder's name may have a slash at its end.
        lines = ["%s rollout_target=%s rollout_folder=%s%s" % (host, self.target_file(host), self.folder / "lib" / host, end)
                 for host, end in zip(hosts or self.hosts, itertools.cycle(("", "/")))]
        path.write_text("[trellan]\n" + "\n".join(lines) + "\n[trellan:vars]\n" + python.replace(" ", "\n") + "\n")
        return path

    def content(self, hosts=None):
        """The bytes of all files of the targets, but for locks, by their paths."""
        return {path: path.read_bytes() for host in hosts or self.hosts for path in sorted((self.targets / host).rglob("*"))
                if path.is_file() and path.suffix != ".lock"}

    def lock(self, path):
        path.touch()
        file = open(path, "rb")
        fcntl.flock(file, fcntl.LOCK_EX)
        self.locks.append(file)

    def full_drive(self, name):
        """A folder on a drive without room, the same for all; takes a mount namespace of the tests."""
        if self.full is None:
            self.full = self.folder / "full"
            self.full.mkdir()
            subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k,nr_inodes=10000", "full", self.full], check=True)
        (self.full / name / "config").mkdir(parents=True)
        with open(self.full / "ballast", "ab", buffering=0) as ballast:
            try:
                while True:
                    ballast.write(bytes(4096))
            except OSError:
                pass
        return self.full / name

    def close(self):
        for file in self.locks:
            file.close()
        self.locks = []
        if self.full is not None:
            subprocess.run(["umount", self.full], check=True)
            self.full.rmdir()
            self.full = None
