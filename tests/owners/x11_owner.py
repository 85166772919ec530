#!/usr/bin/python3
# Owns the X11 CLIPBOARD with one of the offers in offers.py and serves it until killed. Prints
# "ready" once it owns the clipboard. Usage: x11_owner.py secret|files|picture|stall|flood
import sys

from Xlib import X, Xatom, display
from Xlib.protocol import event

from offers import FLOOD_BYTES, OFFERS

PIECE = 64 * 1024  # well under the core protocol's request size limit
mode = sys.argv[1]
offer = OFFERS[mode]
d = display.Display()
atom = d.intern_atom
name = d.get_atom_name
window = d.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
clipboard = atom("CLIPBOARD")
window.set_selection_owner(clipboard, X.CurrentTime)
d.sync()
if d.get_selection_owner(clipboard) != window:
    sys.exit("could not own the clipboard")
print("ready", flush=True)

pending = {}  # (requestor id, property) -> bytes still to send in pieces


def answer(request):
    requestor = request.requestor
    prop = request.property or request.target
    target = name(request.target)
    if target == "TARGETS":
        types = [atom(t) for t in ["TARGETS", *offer]]
        requestor.change_property(prop, Xatom.ATOM, 32, types)
    elif target in offer and mode == "flood":
        requestor.change_attributes(event_mask=X.PropertyChangeMask)
        requestor.change_property(prop, atom("INCR"), 32, [FLOOD_BYTES])
        pending[(requestor.id, prop)] = FLOOD_BYTES
    elif target in offer:
        requestor.change_property(prop, request.target, 8, offer[target])
    else:
        prop = X.NONE
    notice = event.SelectionNotify(time=request.time, requestor=requestor, selection=request.selection,
                                   target=request.target, property=prop)
    requestor.send_event(notice)


while True:
    e = d.next_event()
    if e.type == X.SelectionRequest and mode != "stall":
        answer(e)
    elif e.type == X.PropertyNotify and e.state == X.PropertyDelete and (e.window.id, e.atom) in pending:
        left = pending[(e.window.id, e.atom)]
        piece = min(left, PIECE)
        e.window.change_property(e.atom, atom("UTF8_STRING"), 8, b"x" * piece)
        if piece:
            pending[(e.window.id, e.atom)] = left - piece
        else:
            del pending[(e.window.id, e.atom)]
    d.flush()
