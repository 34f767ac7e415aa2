#!/usr/bin/python3
"""atspi_check.py APP_NAME BUTTON_NAME...: the group "TabView Group" holds one push button per named
tab, in order; pressing the second checks it alone, heard as events, and shows its tab's "NAME field"."""
import sys
import time

import pyatspi
from gi.repository import GLib


def walk(node, depth=0):
    yield node
    for index in range(node.childCount if depth < 12 else 0):
        child = node.getChildAtIndex(index)
        if child is not None:
            yield from walk(child, depth + 1)


def find_groups(app_name):
    for _ in range(150):  # the application and its tree may still be coming up
        desktop = pyatspi.Registry.getDesktop(0)
        for app in (desktop.getChildAtIndex(i) for i in range(desktop.childCount)):
            if app is not None and app.name == app_name:
                groups = [n for n in walk(app) if n.name == "TabView Group"]
                if groups:
                    return groups
        time.sleep(0.2)
    return []


def press_and_wait(button):
    heard = set()
    awaited = {("object:state-changed:checked", button.name), ("object:state-changed:showing", f"{button.name} field")}

    def on_event(event):
        if event.source is not None and event.detail1 == 1:
            heard.add((str(event.type), event.source.name))
            if awaited <= heard:
                pyatspi.Registry.stop()

    def press():
        action = button.queryAction()
        names = [action.getName(i) for i in range(action.nActions)]
        if "Press" in names:
            action.doAction(names.index("Press"))
        return False

    events = [event for event, _ in awaited]
    pyatspi.Registry.registerEventListener(on_event, *events)
    GLib.timeout_add(1000, press)  # a moment for the application to learn that someone listens
    GLib.timeout_add(8000, lambda: pyatspi.Registry.stop() or False)
    pyatspi.Registry.start()
    return [f"no event {t!r} came from {n!r}" for t, n in sorted(awaited - heard)]


def main():
    app_name, expected = sys.argv[1], sys.argv[2:]
    groups = find_groups(app_name)
    if len(groups) != 1:
        print(f"FAIL: {len(groups)} groups named 'TabView Group', expected one")
        return 1
    buttons = [groups[0].getChildAtIndex(i) for i in range(groups[0].childCount)]
    found = [(b.name, b.getRoleName()) for b in buttons]
    if found != [(name, "push button") for name in expected]:
        print(f"FAIL: buttons {found}, expected push buttons {expected}")
        return 1
    failures = press_and_wait(buttons[1])
    checked = [b.name for b in buttons if b.getState().contains(pyatspi.STATE_CHECKED)]
    if checked != [buttons[1].name]:
        failures.append(f"checked after pressing {buttons[1].name!r}: {checked}")
    if not any(n.name == f"{buttons[1].name} field" for n in walk(buttons[1])):
        failures.append(f"{buttons[1].name!r} does not hold its tab's field")
    for failure in failures:
        print("FAIL:", failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
