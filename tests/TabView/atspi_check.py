#!/usr/bin/python3
"""Reads the tab view demo's accessibility tree over AT-SPI, from outside.

Usage: atspi_check.py APP_NAME BUTTON_NAME...

Finds the application, the group "TabView Group" somewhere under it and
checks that its children are exactly one push button per named tab, in
order, each with on-screen extents inside the application's window. Then
selects the second tab through its button's press action, as a test script
would, waits for the application to announce the change (no polling: the
button's checked state and the controls' showing state), and
checks that the tab's controls ("NAME field", "NAME apply") are under its
button and on show while the first tab's are not.
Exit status 0 when everything holds.
"""
import sys
import time

import pyatspi

GROUP_NAME = "TabView Group"


def find_application(name, timeout):
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        desktop = pyatspi.Registry.getDesktop(0)
        for index in range(desktop.childCount):
            app = desktop.getChildAtIndex(index)
            if app is not None and app.name == name:
                return app
        time.sleep(0.2)
    return None


def walk(node, depth=0):
    yield node, depth
    if depth > 12:
        return
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is not None:
            yield from walk(child, depth + 1)


def extents(node):
    box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return box.x, box.y, box.width, box.height


def inside(inner, outer):
    x, y, w, h = inner
    ox, oy, ow, oh = outer
    return w > 0 and h > 0 and x >= ox and y >= oy and x + w <= ox + ow and y + h <= oy + oh


def showing(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


def press(button):
    action = button.queryAction()
    for index in range(action.nActions):
        if action.getName(index) == "Press":
            return action.doAction(index)
    return False


def controls_under(button, tab_name):
    wanted = {f"{tab_name} field": "text", f"{tab_name} apply": "push button"}
    found = {}
    for node, _ in walk(button):
        if node.name in wanted:
            found[node.name] = node
    return wanted, found


def select_and_reach(first, second):
    """Presses second's button and reaches its controls."""
    failures = []
    target = second.name
    announced = []

    # The tab's button becomes checked and its controls come on show.
    awaited = {("object:state-changed:checked", target), ("object:state-changed:showing", f"{target} field")}

    def on_event(event):
        if event.source is None or event.detail1 != 1:
            return
        heard = (str(event.type), event.source.name)
        if heard in awaited and heard not in announced:
            announced.append(heard)
            if len(announced) == len(awaited):
                pyatspi.Registry.stop()

    def do_press():
        if not press(second):
            failures.append(f"{target!r} offers no Press action")
            pyatspi.Registry.stop()
        return False

    from gi.repository import GLib

    events = ("object:state-changed:showing", "object:state-changed:checked")
    pyatspi.Registry.registerEventListener(on_event, *events)
    # Give the application a moment to learn that someone listens.
    GLib.timeout_add(1000, do_press)
    GLib.timeout_add(8000, lambda: pyatspi.Registry.stop() or False)
    pyatspi.Registry.start()
    pyatspi.Registry.deregisterEventListener(on_event, *events)
    if failures:
        return failures
    for missing in sorted(awaited - set(announced)):
        failures.append(f"no event {missing[0]!r} came from {missing[1]!r}")
    if not second.getState().contains(pyatspi.STATE_CHECKED) or first.getState().contains(pyatspi.STATE_CHECKED):
        failures.append(f"{target!r} is not the one checked button after pressing it")

    wanted, found = controls_under(second, target)
    print(f"after pressing {target!r}: controls {sorted(found)}")
    for name, role in wanted.items():
        node = found.get(name)
        if node is None:
            failures.append(f"{name!r} is not under the {target!r} button")
            continue
        if node.getRoleName() != role:
            failures.append(f"{name!r} has role {node.getRoleName()!r}, not {role!r}")
        if not showing(node):
            failures.append(f"{name!r} is not on show after pressing {target!r}")
    _, left_behind = controls_under(first, first.name)
    for name, node in left_behind.items():
        if showing(node):
            failures.append(f"{name!r} of the previous tab is still on show")
    if len(left_behind) != 2:
        failures.append(f"the controls of {first.name!r} are not under its button: {sorted(left_behind)}")
    return failures


def main():
    app_name, expected = sys.argv[1], sys.argv[2:]
    app = find_application(app_name, timeout=20)
    if app is None:
        print(f"FAIL: application {app_name!r} never appeared on the accessibility bus")
        return 1

    window = None
    groups = []
    # The tree may still be filling in right after start-up.
    for _ in range(50):
        nodes = list(walk(app))
        # The application's children are its top-level windows (a plain
        # QWidget window shows as a "filler").
        windows = [n for n, d in nodes if d == 1]
        groups = [n for n, _ in nodes if n.name == GROUP_NAME]
        if windows and groups:
            window = windows[0]
            break
        time.sleep(0.2)
    if window is None or not groups:
        print(f"FAIL: no window ({window}) or no group {GROUP_NAME!r} ({len(groups)})")
        for node, depth in walk(app):
            print("  " * depth + f"{node.getRoleName()} {node.name!r}")
        return 1
    if len(groups) != 1:
        print(f"FAIL: {len(groups)} groups named {GROUP_NAME!r}, expected one")
        return 1

    group = groups[0]
    window_box = extents(window)
    print(f"window {window.name!r} extents {window_box}")
    print(f"group role {group.getRoleName()!r} parent {group.parent.getRoleName()!r} {group.parent.name!r}")
    failures = []
    if group.getRoleName() not in ("grouping", "panel", "filler"):
        failures.append(f"group role is {group.getRoleName()!r}")
    parent = group.parent
    if parent is None or parent.getChildAtIndex(parent.childCount - 1) != group:
        failures.append("the group is not its parent's last child")

    buttons = [group.getChildAtIndex(i) for i in range(group.childCount)]
    names = [b.name for b in buttons]
    print(f"buttons {names}")
    if names != expected:
        failures.append(f"button names {names} != {expected}")
    for button in buttons:
        role = button.getRoleName()
        box = extents(button)
        print(f"  {button.name!r}: role {role!r} extents {box}")
        if role != "push button":
            failures.append(f"{button.name!r} has role {role!r}")
        if not inside(box, window_box):
            failures.append(f"{button.name!r} extents {box} are not inside the window {window_box}")
    boxes = [extents(b) for b in buttons]
    for left, right in zip(boxes, boxes[1:]):
        if right[0] - left[0] != 40:
            failures.append(f"buttons are not 40 apart: {left} {right}")

    if len(buttons) >= 2 and not failures:
        failures += select_and_reach(buttons[0], buttons[1])

    for failure in failures:
        print("FAIL:", failure)
    if not failures:
        print("PASS")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
