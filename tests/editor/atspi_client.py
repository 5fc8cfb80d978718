#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later

"""The editor of a running Corkwheel as a screen reader meets it, over AT-SPI.

Reads the accessibility tree of the process it is given, as Orca does, and presses keys
with xdotool, as a user of Orca does. It never clicks and never looks at the screen: what
it knows of the editor comes from the tree alone.

    atspi_client.py walk PID
        Picks each panel of the sidebar in turn with the arrow keys and walks the whole
        editor each time, failing on a control that has no name, or no role that says what
        it is, and on a sidebar row or stepper that is not what it should be.

    atspi_client.py keyboard PID
        Adds a clock panel with "Add Panel", switches it off in its row and steps its
        refresh interval up once, with keys alone, checking along the way that the tree
        says what happened. The caller checks the saved document.

Exits with 0 when all was well, 1 with the reasons on standard error otherwise.
"""

import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402
import pyatspi  # noqa: E402

WAIT_SECONDS = 15

# Roles of the controls a user acts on: each needs a name to be told apart.
INTERACTIVE_ROLES = {
    pyatspi.ROLE_PUSH_BUTTON,
    pyatspi.ROLE_TOGGLE_BUTTON,
    pyatspi.ROLE_CHECK_BOX,
    pyatspi.ROLE_RADIO_BUTTON,
    pyatspi.ROLE_COMBO_BOX,
    pyatspi.ROLE_SPIN_BUTTON,
    pyatspi.ROLE_SLIDER,
    pyatspi.ROLE_TEXT,
    pyatspi.ROLE_ENTRY,
    pyatspi.ROLE_LIST_ITEM,
    pyatspi.ROLE_MENU_ITEM,
    pyatspi.ROLE_CHECK_MENU_ITEM,
    pyatspi.ROLE_PAGE_TAB,
    pyatspi.ROLE_LINK,
}

# Roles that say nothing of what a control is or how to use it.
VAGUE_ROLES = {
    pyatspi.ROLE_UNKNOWN,
    pyatspi.ROLE_INVALID,
    pyatspi.ROLE_FILLER,
    pyatspi.ROLE_PANEL,
    pyatspi.ROLE_REDUNDANT_OBJECT,
}

SWITCH_ROLES = {pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_TOGGLE_BUTTON}

# Newer AT-SPI and Qt tell a button with a menu, and a switch, from the others.
for name, roles in (("ROLE_PUSH_BUTTON_MENU", (INTERACTIVE_ROLES,)),
                    ("ROLE_SWITCH", (INTERACTIVE_ROLES, SWITCH_ROLES))):
    if hasattr(pyatspi, name):
        for group in roles:
            group.add(getattr(pyatspi, name))

BUTTON_ROLES = {role for role in (pyatspi.ROLE_PUSH_BUTTON,
                                  getattr(pyatspi, "ROLE_PUSH_BUTTON_MENU", None)) if role}


class Failure(Exception):
    pass


def say(text):
    print(text, flush=True)


def key(name):
    """One key press, to whichever window has the keyboard."""
    subprocess.run(["xdotool", "key", "--clearmodifiers", name], check=True)


def wait_for(what, find):
    """The first true answer of `find`, asked again until it gives one. The events that
    came in the meantime are handled first."""
    deadline = time.monotonic() + WAIT_SECONDS
    while True:
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            found = find()
        except GLib.GError:
            # An object that went away while it was being read: ask again.
            found = None
        if found:
            return found
        if time.monotonic() > deadline:
            raise Failure("waited in vain for " + what)
        time.sleep(0.05)


def states(node):
    return node.getState()


def has(node, state):
    return states(node).contains(state)


def describe(node):
    try:
        return "%s \"%s\"" % (node.getRoleName(), node.name)
    except GLib.GError:
        return "(gone)"


def children(node):
    return [node.getChildAtIndex(i) for i in range(node.childCount)]


def descendants(node):
    """`node` and everything below it, parents before their children."""
    found = [node]
    for child in children(node):
        if child is not None:
            found += descendants(child)
    return found


def application(pid):
    """The running Corkwheel, once it has joined the accessibility bus."""

    def find():
        desktop = pyatspi.Registry.getDesktop(0)
        for app in children(desktop):
            if app is not None and app.get_process_id() == pid:
                # Every question goes to the application: the tree changes as keys are pressed.
                app.set_cache_mask(Atspi.Cache.NONE)
                return app
        return None

    return wait_for("Corkwheel on the accessibility bus", find)


def editor(app):
    def find():
        for window in children(app):
            if (window is not None and window.getRole() == pyatspi.ROLE_FRAME
                    and window.name == "Corkwheel" and has(window, pyatspi.STATE_SHOWING)):
                return window
        return None

    return wait_for("the editor window", find)


def role_in(node, roles):
    return node.getRole() in roles if isinstance(roles, set) else node.getRole() == roles


class Focus:
    """Where the keyboard is, as a screen reader follows it: from the application's focus
    events, after a first look through the tree."""

    def __init__(self, app):
        self.pid = app.get_process_id()
        self.node = None
        pyatspi.Registry.registerEventListener(self.changed, "object:state-changed:focused")
        for node in descendants(app):
            if has(node, pyatspi.STATE_FOCUSED):
                self.node = node

    def changed(self, event):
        if event.detail1 == 1 and event.source.get_process_id() == self.pid:
            self.node = event.source

    def on(self, role, name=None):
        """The control with the keyboard when it is `name` of `role`, else None."""
        node = self.node
        try:
            if node is not None and role_in(node, role) and name in (None, node.name):
                return node
        except GLib.GError:
            pass
        return None


def panel_list(frame):
    for node in descendants(frame):
        if node.getRole() == pyatspi.ROLE_LIST and node.name == "Panels":
            return node
    raise Failure("no list named \"Panels\" in the editor")


def rows(frame):
    return [row for row in children(panel_list(frame)) if row is not None]


def named(frame, role, name):
    for node in descendants(frame):
        if node.getRole() == role and node.name == name:
            return node
    return None


def tab_to(focus, role, name, backwards=False, limit=60):
    """Presses Tab (Shift+Tab) until the control `name` of `role` has the keyboard."""
    for _ in range(limit):
        node = focus.on(role, name)
        if node is not None:
            return node
        before = focus.node
        key("shift+Tab" if backwards else "Tab")
        wait_for("the keyboard to move on from " + describe(before),
                 lambda: focus.node is not None and focus.node != before)
    raise Failure("Tab never reached %s \"%s\"" % (role, name))


def problems_in(frame):
    """What a screen reader user could not tell in the editor as it is shown now."""
    problems = []
    controls = 0
    for node in descendants(frame):
        state = states(node)
        if not state.contains(pyatspi.STATE_VISIBLE):
            continue
        role = node.getRole()
        if not (state.contains(pyatspi.STATE_FOCUSABLE) or role in INTERACTIVE_ROLES):
            continue
        controls += 1
        if not node.name.strip():
            problems.append("no name: " + describe(node))
        if role in VAGUE_ROLES:
            problems.append("no role that says what it is: " + describe(node))
    return controls, problems


def check_rows(frame):
    problems = []
    for row in rows(frame):
        if row.getRole() != pyatspi.ROLE_LIST_ITEM or not row.name:
            problems.append("a sidebar row that is no named list item: " + describe(row))
            continue
        switches = [c for c in children(row) if c is not None and c.getRole() in SWITCH_ROLES]
        if len(switches) != 1:
            problems.append("the row %s holds no switch" % describe(row))
            continue
        switch = switches[0]
        # Its role says it can be checked; Qt 6.4 does not add the "checkable" state too.
        if not has(switch, pyatspi.STATE_FOCUSABLE):
            problems.append("the keyboard cannot reach the switch of " + describe(row))
        if row.name not in switch.name:
            problems.append("the switch %s does not name its panel" % describe(switch))
    return problems


def check_stepper(frame):
    stepper = named(frame, pyatspi.ROLE_SPIN_BUTTON, "Refresh interval")
    if stepper is None:
        return ["no spin button named \"Refresh interval\""]
    value = stepper.queryValue()
    if not value.minimumValue <= value.currentValue <= value.maximumValue < float("inf"):
        return ["the refresh interval's value %s is outside %s...%s"
                % (value.currentValue, value.minimumValue, value.maximumValue)]
    return []


def walk(pid):
    app = application(pid)
    frame = editor(app)
    names = [row.name for row in rows(frame)]
    say("panels in the sidebar: " + ", ".join(names))
    if len(names) < 2:
        raise Failure("the sidebar lists %d panels" % len(names))
    problems = []
    focus = Focus(app)
    # The keyboard starts in the list, on the first panel.
    wait_for("the first row to have the keyboard",
             lambda: focus.on(pyatspi.ROLE_LIST_ITEM, names[0]))
    for index, name in enumerate(names):
        if index > 0:
            key("Down")
            wait_for("the row \"%s\" to have the keyboard" % name,
                     lambda: focus.on(pyatspi.ROLE_LIST_ITEM, name))
        # The inspector's heading names the panel it edits.
        wait_for("the inspector of \"%s\"" % name,
                 lambda: named(frame, pyatspi.ROLE_LABEL, name))
        controls, found = problems_in(frame)
        found += check_rows(frame) + check_stepper(frame)
        say("%s: %d controls, %d problems" % (name, controls, len(found)))
        problems += ["%s: %s" % (name, problem) for problem in found]
    if problems:
        raise Failure("\n".join(problems))


def keyboard(pid):
    app = application(pid)
    frame = editor(app)
    before = [row.name for row in rows(frame)]
    focus = Focus(app)

    # Add Panel, and the clock from its menu.
    tab_to(focus, BUTTON_ROLES, "Add Panel")
    key("Return")
    for _ in range(12):
        if focus.on(pyatspi.ROLE_MENU_ITEM, "Clock"):
            break
        chosen = focus.node
        key("Down")
        wait_for("the menu's choice to move on from " + describe(chosen),
                 lambda: focus.on(pyatspi.ROLE_MENU_ITEM) and focus.node != chosen)
    else:
        raise Failure("the arrows never reached \"Clock\" in the menu")
    key("Return")
    wait_for("a row for the new clock",
             lambda: [row.name for row in rows(frame)] == before + ["Clock"])
    say("added a clock panel")

    # Its switch, the last row's, is just before "Add Panel", where the keyboard is back.
    wait_for("the keyboard back on Add Panel",
             lambda: focus.on(BUTTON_ROLES, "Add Panel"))
    key("shift+Tab")
    switch = wait_for("the new row's switch to have the keyboard",
                      lambda: focus.node if focus.node.name == "Clock enabled" else None)
    if switch.getRole() not in SWITCH_ROLES or not has(switch, pyatspi.STATE_CHECKED):
        raise Failure("the new row's switch is %s, %s" % (
            describe(switch), "on" if has(switch, pyatspi.STATE_CHECKED) else "off"))
    key("space")
    wait_for("the switch to read as off", lambda: not has(switch, pyatspi.STATE_CHECKED))
    say("switched it off")

    # Back to the list, to the last row, and on to its refresh interval.
    tab_to(focus, pyatspi.ROLE_LIST_ITEM, None, backwards=True)
    key("End")
    wait_for("the new row to have the keyboard",
             lambda: focus.on(pyatspi.ROLE_LIST_ITEM, "Clock"))
    wait_for("the inspector of the new clock", lambda: named(frame, pyatspi.ROLE_LABEL, "Clock"))
    stepper = tab_to(focus, pyatspi.ROLE_SPIN_BUTTON, "Refresh interval")
    start = stepper.queryValue().currentValue
    key("Up")
    wait_for("the refresh interval to step up",
             lambda: stepper.queryValue().currentValue == start + 1)
    say("stepped its refresh interval from %g to %g" % (start, start + 1))


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in ("walk", "keyboard"):
        print(__doc__, file=sys.stderr)
        return 2
    try:
        {"walk": walk, "keyboard": keyboard}[sys.argv[1]](int(sys.argv[2]))
    except Failure as failure:
        print(failure, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
