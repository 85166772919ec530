#!/usr/bin/python3
# The real program seen through the accessibility bus (AT-SPI), as a screen reader sees it, in English
# and in French: every control that takes focus has a name, Tab goes round them in screen order, and a
# translation from the stand-in service can be read from the result box.
# Usage (inside tests/xsession.sh --openbox): bus_check.py <build dir> <source dir>. Exit 77: skipped.
import os
import shutil
import subprocess
import sys
import tempfile
import time

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
try:
    import pyatspi
except ImportError:
    print("SKIP: python3-pyatspi is not installed")
    sys.exit(77)
if not os.access(LAUNCHER, os.X_OK) or not shutil.which("xdotool"):
    print("SKIP: at-spi2-core's bus launcher or xdotool is missing")
    sys.exit(77)
build, source = sys.argv[1], sys.argv[2]


def wait_for(what, seconds=30):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        found = what()
        if found:
            return found
        time.sleep(0.1)
    raise AssertionError("timed out")


def table_text(language, offset):
    with open(f"{source}/resources/strings/lang{language}.txt", encoding="utf-8") as table:
        for line in table:
            if line.startswith(f"{offset}\t"):
                return line.rstrip("\n").split("\t", 1)[1].replace("&", "")
    raise AssertionError(f"no text {offset}")


def spoken(control):
    """A picker is spoken by the label that names it, any other control by its own name."""
    if control.getRole() == pyatspi.ROLE_COMBO_BOX:
        for relation in control.getRelationSet():
            if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
                return relation.getTarget(0).name.strip()
    return control.name.strip()


def place(control):
    box = control.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return (box.x, box.y, box.width, box.height)


def controls(node):
    """The controls on screen that take focus, in screen order: rows top down, each left to right."""
    found = []
    for child in node:
        state = child.getState()
        if not state.contains(pyatspi.STATE_SHOWING) or child.getRole() == pyatspi.ROLE_MENU_BAR:
            continue
        if state.contains(pyatspi.STATE_FOCUSABLE):
            found.append(child)
        if child.getRole() != pyatspi.ROLE_COMBO_BOX:  # its list items are no controls of the window
            found += controls(child)
    return sorted(found, key=lambda c: (place(c)[1], place(c)[0]))


def goes_on(a, b):
    """Whether b follows a on screen: further right on the same row, or on a lower row."""
    (ax, ay, _, ah), (bx, by, _, bh) = a, b
    same_row = by < ay + ah and ay < by + bh
    return bx > ax if same_row else by > ay


def session(language, standin_port):
    config = tempfile.mkdtemp()
    os.makedirs(f"{config}/Quillora")
    with open(f"{config}/Quillora/Quillora.conf", "w") as settings:  # English into French, no watching
        settings.write(f"[Setup]\nLanguage={language}\nOptions=17|19|1|1|15|0|1\n")
    url = f"http://127.0.0.1:{standin_port}"
    env = dict(os.environ, XDG_CONFIG_HOME=config, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
               QUILLORA_SERVICE_URL=url, QUILLORA_API_URL=url, QUILLORA_SITE_URL=url)
    program = subprocess.Popen([f"{build}/src/quillora"], env=env)
    try:
        desktop = pyatspi.Registry.getDesktop(0)
        app = wait_for(lambda: next((a for a in desktop if a and a.get_process_id() == program.pid), None))
        frame = wait_for(lambda: next((w for w in app if w.getRole() == pyatspi.ROLE_FRAME), None))
        window = wait_for(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(program.pid)],
                                                 capture_output=True, text=True).stdout.split())[0]
        subprocess.run(["xdotool", "windowactivate", "--sync", window], check=True)

        texts = [c for c in controls(frame) if c.getRole() == pyatspi.ROLE_TEXT]
        texts[0].queryEditableText().setTextContents("hello world")
        translate = next(c for c in controls(frame) if c.name == table_text(language, 25))
        translate.queryAction().doAction(0)
        result = texts[1].queryText()
        wait_for(lambda: result.getText(0, -1) == "bonjour monde")

        found = controls(frame)  # the speakers show now
        names = [spoken(c) for c in found]
        assert all(names), f"unnamed: {[c.getRoleName() for c, n in zip(found, names) if not n]}"

        # Round the Tab chain from the source box until it comes back.
        texts[0].queryComponent().grabFocus()
        def focus_left(where):
            now = next((c for c in found if c.getState().contains(pyatspi.STATE_FOCUSED)), None)
            return now if now is not None and place(now) != where else None

        visited = [wait_for(lambda: focus_left(None))]
        assert place(visited[0]) == place(texts[0]), "the source box did not take the focus"
        while len(visited) <= len(found):
            subprocess.run(["xdotool", "key", "Tab"], check=True)
            now = wait_for(lambda: focus_left(place(visited[-1])))
            if place(now) == place(visited[0]):
                break
            visited.append(now)
        else:
            raise AssertionError(f"Tab does not come back to the source box: {[spoken(c) for c in visited]}")
        at = [place(c) for c in visited]
        upward = [i for i in range(len(at)) if not goes_on(at[i], at[(i + 1) % len(at)])]
        assert len(upward) == 1, f"Tab goes back up after {[spoken(visited[i]) for i in upward]}"
        # Text that only shows (the promotion without a link) is reached by the mouse, not by Tab.
        skipped = [spoken(c) for c in found if place(c) not in at and c.getRole() != pyatspi.ROLE_LABEL]
        assert not skipped, f"Tab never reaches {skipped}"
        return names
    finally:
        program.terminate()
        program.wait()
        shutil.rmtree(config)


bus = subprocess.Popen([LAUNCHER, "--launch-immediately"])
wait_for(lambda: "true" in subprocess.run(
    ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
     "org.freedesktop.DBus.NameHasOwner", "string:org.a11y.Bus"], capture_output=True, text=True).stdout)
standin = subprocess.Popen([f"{build}/tests/quillora-standin"], stdout=subprocess.PIPE, text=True)
try:
    port = standin.stdout.readline().split()[1]
    english = session(1, port)
    french = session(7, port)
    assert len(english) == len(french), (english, french)
    same = [e for e, f in zip(english, french) if e == f]
    assert not same, f"left in English: {same}"
    print(f"{len(english)} controls named in English and French, Tab in screen order, result readable")
finally:
    standin.terminate()
    bus.terminate()
