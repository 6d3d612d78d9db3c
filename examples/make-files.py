#!/usr/bin/env python3
"""Writes the update files of the example archive and prints their checksums, which target.json and archive.json state.

Run it only to change the example: the files are committed. Their content is counted-up filler; only headers, sizes and
checksums matter.
"""

import json
import pathlib
import struct
import zlib

ARCHIVE = pathlib.Path(__file__).parent / "archive"
BINARY_HEADER_SIZE = 1000
BINARY_MAGIC = bytes([0x12, 0x55, 0xAA, 0x34, 0xAA, 0x18, 0x47, 0x55])
BITSTREAM_HEADER_SIZE = 92


def filler(name, size):
    """Bytes that differ from file to file."""
    seed = zlib.crc32(name.encode())
    return b"".join(struct.pack(">I", (seed + 2654435761 * i) & 0xFFFFFFFF) for i in range(size // 4))


def binary(name, size, major, minor, patch=0):
    """An update file with a binary header: magic, payload checksum and version."""
    payload = filler(name, size)
    header = bytearray(BINARY_HEADER_SIZE)
    header[40:48] = BINARY_MAGIC
    header[60:64] = struct.pack(">I", zlib.crc32(payload))
    header[76:84] = struct.pack(">BBBBHH", major, minor, patch, 0, 0, 0)
    return bytes(header) + payload, zlib.crc32(payload)


def bitstream(name, size):
    """An FPGA bitstream: magic, header length, format version, and the checksum at the header's end."""
    payload = filler(name, size)
    header = bytearray(BITSTREAM_HEADER_SIZE)
    header[0:16] = b"ZoFPGABS" + struct.pack(">II", BITSTREAM_HEADER_SIZE, 1)
    header[88:92] = struct.pack(">I", zlib.crc32(payload))
    return bytes(header) + payload, zlib.crc32(payload)


def inventory_tree(name, size, version):
    """An update file that carries an inventory tree; its history is the filler that gives it its size."""
    checksum = zlib.crc32(name.encode())
    history = filler(name, size // 2).hex()
    parameters = {"FIRMWARE/VERSION": version, "FIRMWARE/TYPE_ID": 17, "VERSION_HISTORY": history}
    tree = {"inventoryTree": {"id": "ROOT", "parameters": parameters}, "checksumCrc32": checksum}
    return (json.dumps(tree, indent=2) + "\n").encode(), checksum


def plain(name, size):
    """An image without a header."""
    image = filler(name, size)
    return image, zlib.crc32(image)


def text(content):
    return content.encode(), zlib.crc32(content.encode())


FILES = {
    "hcn-firmware.bin": lambda name: binary(name, 28000, 23, 2),
    "hcn-fpga.bit": lambda name: bitstream(name, 20000),
    "hcn-ipl.bin": lambda name: binary(name, 6000, 1, 4, 2),
    "hcn-cpld.bin": lambda name: plain(name, 8000),
    "cn-firmware.bin": lambda name: binary(name, 24000, 23, 2),
    "cn-hypervisor.json": lambda name: inventory_tree(name, 16000, "4.1"),
    "cn-ipl.bin": lambda name: binary(name, 12000, 2, 1),
    "ai-firmware.bin": lambda name: binary(name, 16000, 6, 3),
    "ai-fpga.bit": lambda name: bitstream(name, 20000),
    "ai-cpld.bin": lambda name: plain(name, 8000),
    "do-firmware.bin": lambda name: binary(name, 16000, 3, 0, 5),
    "do-fpga.bit": lambda name: bitstream(name, 16000),
    "site.cfg": lambda name: text("rack = 1\nunits = control, inputs, outputs\nwatchdog = 250 ms\n"),
}

for file_name, make in FILES.items():
    content, crc = make(file_name)
    (ARCHIVE / file_name).write_bytes(content)
    print(f"{file_name:20} {len(content):6} bytes, checksum {crc}")
