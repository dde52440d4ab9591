"""Reads and presses the program's controls through the accessibility interface.

usage: assistive_reader.py list                 every visible object: depth, role, name, description, states
       assistive_reader.py place NAME           the centre of the object on the screen: x y
       assistive_reader.py states NAME          its states
       assistive_reader.py press NAME           presses it

Also finds names that are followed by ", " and a value. Fails if there is no such object.
"""

import sys

import pyatspi

STATES = ("checked", "focused", "focusable", "selectable", "selected")


def program():
    for application in pyatspi.Registry.getDesktop(0):
        if application is not None and application.name == "kelvinbar-demo":
            return application
    sys.exit("assistive_reader.py: the program is not among the applications")


def showing(thing):
    return thing.getState().contains(pyatspi.STATE_SHOWING)


def objects(thing, depth=0):
    """The visible objects in reading order, each with its depth."""
    yield thing, depth
    for child in thing:
        if child is not None and showing(child):
            yield from objects(child, depth + 1)


def named(name):
    for thing, _ in objects(program()):
        if thing.name == name or thing.name.startswith(name + ", "):
            if thing.getRoleName() not in ("application", "frame"):
                return thing
    sys.exit(f"assistive_reader.py: nothing is called '{name}'")


def role(thing):
    """Newer versions of the accessibility library call a push button a button."""
    name = thing.getRoleName()
    return "push button" if name == "button" else name


def states(thing):
    present = [pyatspi.stateToString(state) for state in thing.getState().getStates()]
    return " ".join(state for state in STATES if state in present)


def press(thing):
    action = thing.queryAction()
    names = [action.getName(index) for index in range(action.nActions)]
    if "Press" not in names:
        sys.exit(f"assistive_reader.py: only {names} can be done")
    action.doAction(names.index("Press"))


def main(command, name=None):
    if command == "list":
        for thing, depth in objects(program()):
            print(depth, role(thing), thing.name, thing.description, states(thing), sep="\t")
    elif command == "place":
        box = named(name).queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        print(box.x + box.width // 2, box.y + box.height // 2)
    elif command == "states":
        print(states(named(name)))
    elif command == "press":
        press(named(name))


main(*sys.argv[1:])
