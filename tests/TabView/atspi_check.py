#!/usr/bin/python3
"""Reads the tab view demo's accessibility tree over AT-SPI, from outside.

Usage: atspi_check.py APP_NAME BUTTON_NAME...

The group "TabView Group" must be its parent's last child and hold one push
button per named tab, in order, 40 apart inside the window. Pressing the
second button, as a test script would, must check it (announced by events,
no polling) and put its tab's controls ("NAME field", "NAME apply"), which sit
under it, on show while the first tab's are not. Exit status 0 when all holds.
"""
import sys
import time

import pyatspi
from gi.repository import GLib


def walk(node, depth=0):
    yield node, depth
    for index in range(node.childCount if depth < 12 else 0):
        child = node.getChildAtIndex(index)
        if child is not None:
            yield from walk(child, depth + 1)


def extents(node):
    box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return box.x, box.y, box.width, box.height


def state(node, which):
    return node.getState().contains(which)


def controls(button):
    return {n.name: n for n, _ in walk(button) if n.name in (f"{button.name} field", f"{button.name} apply")}


def press_and_wait(first, second):
    failures, heard = [], set()
    awaited = {("object:state-changed:checked", second.name), ("object:state-changed:showing", f"{second.name} field")}

    def on_event(event):
        if event.source is not None and event.detail1 == 1:
            heard.add((str(event.type), event.source.name))
            if awaited <= heard:
                pyatspi.Registry.stop()

    def press():
        action = second.queryAction()
        names = [action.getName(i) for i in range(action.nActions)]
        if "Press" not in names or not action.doAction(names.index("Press")):
            failures.append(f"{second.name!r} offers no Press action")
            pyatspi.Registry.stop()
        return False

    events = ("object:state-changed:showing", "object:state-changed:checked")
    pyatspi.Registry.registerEventListener(on_event, *events)
    GLib.timeout_add(1000, press)  # a moment for the application to learn that someone listens
    GLib.timeout_add(8000, lambda: pyatspi.Registry.stop() or False)
    pyatspi.Registry.start()
    pyatspi.Registry.deregisterEventListener(on_event, *events)
    failures += [f"no event {t!r} came from {n!r}" for t, n in sorted(awaited - heard)]
    if not state(second, pyatspi.STATE_CHECKED) or state(first, pyatspi.STATE_CHECKED):
        failures.append(f"{second.name!r} is not the one checked button after pressing it")
    shown, hidden = controls(second), controls(first)
    print(f"after pressing {second.name!r}: controls {sorted(shown)}, previous {sorted(hidden)}")
    roles = {f"{second.name} field": "text", f"{second.name} apply": "push button"}
    for name, role in roles.items():
        node = shown.get(name)
        if node is None or node.getRoleName() != role or not state(node, pyatspi.STATE_SHOWING):
            failures.append(f"{name!r} is not a {role} on show under its button")
    if len(hidden) != 2 or any(state(n, pyatspi.STATE_SHOWING) for n in hidden.values()):
        failures.append(f"the controls of {first.name!r} are not under its button or still on show")
    return failures


def main():
    app_name, expected = sys.argv[1], sys.argv[2:]
    window, groups = None, []
    # The application and its tree may still be coming up.
    for _ in range(150):
        desktop = pyatspi.Registry.getDesktop(0)
        apps = [desktop.getChildAtIndex(i) for i in range(desktop.childCount)]
        app = next((a for a in apps if a is not None and a.name == app_name), None)
        if app is not None:
            nodes = list(walk(app))
            windows = [n for n, d in nodes if d == 1]
            groups = [n for n, _ in nodes if n.name == "TabView Group"]
            if windows and groups:
                window = windows[0]
                break
        time.sleep(0.2)
    if window is None or len(groups) != 1:
        print(f"FAIL: window {window}, {len(groups)} groups named 'TabView Group', expected one")
        return 1
    group = groups[0]
    failures = []
    parent = group.parent
    if parent is None or parent.getChildAtIndex(parent.childCount - 1) != group:
        failures.append("the group is not its parent's last child")
    if group.getRoleName() not in ("grouping", "panel", "filler"):
        failures.append(f"group role is {group.getRoleName()!r}")
    buttons = [group.getChildAtIndex(i) for i in range(group.childCount)]
    boxes = [extents(b) for b in buttons]
    wx, wy, ww, wh = extents(window)
    print(f"window {(wx, wy, ww, wh)}, buttons {[(b.name, b.getRoleName(), box) for b, box in zip(buttons, boxes)]}")
    if [b.name for b in buttons] != expected:
        failures.append(f"button names {[b.name for b in buttons]} != {expected}")
    for button, (x, y, w, h) in zip(buttons, boxes):
        if button.getRoleName() != "push button":
            failures.append(f"{button.name!r} has role {button.getRoleName()!r}")
        if not (w > 0 and h > 0 and x >= wx and y >= wy and x + w <= wx + ww and y + h <= wy + wh):
            failures.append(f"{button.name!r} extents {(x, y, w, h)} are not inside the window")
    if any(right[0] - left[0] != 40 for left, right in zip(boxes, boxes[1:])):
        failures.append(f"buttons are not 40 apart: {boxes}")
    if len(buttons) >= 2 and not failures:
        failures += press_and_wait(buttons[0], buttons[1])
    for failure in failures:
        print("FAIL:", failure)
    print("PASS" if not failures else "")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
