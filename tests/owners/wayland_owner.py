#!/usr/bin/python3
# Owns the Wayland clipboard through the compositor's data-control protocol with one of the offers
# in offers.py and serves it until killed; speaks the wire protocol itself. Prints "ready" once the
# compositor took the offer. Usage: wayland_owner.py secret|files|picture|stall|flood
import array
import os
import socket
import struct
import sys

from offers import FLOOD_BYTES, OFFERS

mode = sys.argv[1]
offer = OFFERS[mode]
path = os.environ["WAYLAND_DISPLAY"]
if not path.startswith("/"):
    path = os.path.join(os.environ["XDG_RUNTIME_DIR"], path)
sock = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
sock.connect(path)
ids = iter(range(2, 1 << 24))
fds = []
buffer = b""


def string(text):
    raw = text.encode() + b"\0"
    return struct.pack("<I", len(raw)) + raw + b"\0" * (-len(raw) % 4)


def request(obj, opcode, *words, tail=b""):
    payload = struct.pack("<%dI" % len(words), *words) + tail
    sock.sendall(struct.pack("<II", obj, (8 + len(payload)) << 16 | opcode) + payload)


def read_string(payload, at):
    size = struct.unpack_from("<I", payload, at)[0]
    return payload[at + 4:at + 3 + size].decode()


def events():
    global buffer
    while True:
        while len(buffer) >= 8:
            obj, word = struct.unpack_from("<II", buffer)
            if len(buffer) < word >> 16:
                break
            yield obj, word & 0xFFFF, buffer[8:word >> 16]
            buffer = buffer[word >> 16:]
        data, ancillary, _, _ = sock.recvmsg(65536, socket.CMSG_SPACE(64))
        if not data:
            sys.exit(0)
        for level, kind, raw in ancillary:
            if level == socket.SOL_SOCKET and kind == socket.SCM_RIGHTS:
                fds.extend(array.array("i", raw[:len(raw) - len(raw) % 4]))
        buffer += data


def roundtrip(on_event=lambda obj, opcode, payload: None):
    callback = next(ids)
    request(1, 0, callback)  # wl_display.sync
    for obj, opcode, payload in events():
        if obj == callback:
            return
        if obj == 1 and opcode == 0:
            sys.exit("protocol error: " + read_string(payload, 8))
        on_event(obj, opcode, payload)


registry = next(ids)
request(1, 1, registry)  # wl_display.get_registry
names = {}
roundtrip(lambda obj, opcode, p: names.setdefault(read_string(p, 4), struct.unpack_from("<I", p)[0])
          if obj == registry and opcode == 0 else None)


def bind(interface):
    new = next(ids)
    request(registry, 0, names[interface], tail=string(interface) + struct.pack("<II", 1, new))
    return new


manager = bind("zwlr_data_control_manager_v1")
seat = bind("wl_seat")
source, device = next(ids), next(ids)
request(manager, 0, source)  # create_data_source
request(manager, 1, device, seat)  # get_data_device
for mime in offer:
    request(source, 0, tail=string(mime))  # offer
request(device, 0, source)  # set_selection
roundtrip()
print("ready", flush=True)

held = []
for obj, opcode, payload in events():
    if obj == source and opcode == 1:  # cancelled: another program copied
        sys.exit(0)
    if obj != source or opcode != 0:  # anything but send
        continue
    fd = fds.pop(0)
    if mode == "stall":
        held.append(fd)
        continue
    try:
        with os.fdopen(fd, "wb") as pipe:
            if mode == "flood":
                for _ in range(FLOOD_BYTES // 65536):
                    pipe.write(b"x" * 65536)
            else:
                pipe.write(offer.get(read_string(payload, 0)) or b"")
    except BrokenPipeError:
        pass
