# What each hostile clipboard owner of the tests offers: type -> content. FLOOD marks a text sent
# in pieces without end (200 MB); STALL an owner that takes every request and never answers.
FLOOD_BYTES = 200 * 1024 * 1024
PATH = b"/srv/private/salary-2024.ods"

OFFERS = {
    "secret": {"UTF8_STRING": b"hunter2", "text/plain;charset=utf-8": b"hunter2",
               "x-kde-passwordManagerHint": b"secret"},
    "files": {"x-special/gnome-copied-files": b"copy\nfile://" + PATH, "text/uri-list": b"file://" + PATH + b"\r\n",
              "text/plain;charset=utf-8": PATH, "UTF8_STRING": PATH},
    "picture": {"image/png": b"\x89PNG\r\n\x1a\n", "UTF8_STRING": b"cells", "text/plain;charset=utf-8": b"cells"},
    "stall": {"UTF8_STRING": None, "text/plain;charset=utf-8": None},
    "flood": {"UTF8_STRING": None, "text/plain;charset=utf-8": None},
}
