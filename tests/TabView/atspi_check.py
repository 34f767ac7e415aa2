#!/usr/bin/python3
"""Reads the tab view demo's accessibility tree over AT-SPI, from outside.

Usage: atspi_check.py APP_NAME BUTTON_NAME...

Finds the application, the group "TabView Group" somewhere under it and
checks that its children are exactly one push button per named tab, in
order, each with on-screen extents inside the application's window.
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

    for failure in failures:
        print("FAIL:", failure)
    if not failures:
        print("PASS")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
