"""The panel as screen readers see it: roles, names, values, descriptions, states and order."""

import re
import time

import pytest

from driver.assistive import Assistive, Seen
from driver.desktop import Desktop
from driver.program import Panel, Program
from driver.waiting import wait_until

# What is visible: role, name and description as patterns, and the states if they are always the same.
OBJECTS = [
    ("heading", "Kelvinbar", "", None),
    ("push button", "About", "", "focusable"),
    ("list", "CPU", "Package, cores, diode, PECI and CPU power, 10", ""),
    (
        "list item",
        "CPU Proximity",
        "[0-9.]+°, 1 of 88. Showing this key in the tray. sp78 • °C. Enter: Remove from tray. Delete: Hide.",
        "focusable selectable selected",
    ),
    (
        "list item",
        "CPU Package",
        "[0-9.]+°, 2 of 88. sp78 • °C. Enter: Show in tray. Delete: Hide.",
        "focusable selectable",
    ),
    ("push button", "Hide this property from the list", "CPU Package", "focusable"),
    ("check box", "Fast, 1s", "On: fast 1s sampling. Off: medium 3s sampling.", "focusable"),
    ("check box", "Dynamic, vertical", "Keeps the window at the compact standard size.", "focusable"),
    ("push button", "Decrease height", "", "focusable"),
    ("label", "Height 690", "", None),
    ("push button", "Reset height", "", "focusable"),
    ("push button", "Increase height", "", "focusable"),
    ("check box", "Login", "Enable or disable starting Kelvinbar with the session.", "focusable"),
    ("push button", "Refresh", "", "focusable"),
    ("push button", "Copy", "", "focusable"),
    ("push button", "ShowAll", "Show all hidden properties again", "focusable"),
    ("push button", "Quit", "", "focusable"),
]

READING_ORDER = [
    *("About", "CPU", "Fast, 1s", "Dynamic, vertical", "Decrease height", "Reset height"),
    *("Increase height", "Login", "Refresh", "Copy", "ShowAll", "Quit"),
]


@pytest.fixture(autouse=True)
def _opened(program: Program, panel: Panel, assistive: Assistive) -> None:
    program.prefer(KelvinbarMenuBarKeys="TC0P")
    program.start()
    program.start_again()
    panel.wait_open()
    assistive.wait_shown("CPU Proximity", "the program among the applications", limit=10)


@pytest.fixture
def tree(desktop: Desktop, assistive: Assistive) -> list[Seen]:
    time.sleep(0.5)  # rows that are just being added
    tree = assistive.tree()
    lines = ["\t".join([str(seen.depth), seen.role, seen.name, seen.description]) for seen in tree]
    desktop.artefact("tree.txt").write_text("\n".join(lines) + "\n")
    return tree


def test_every_object_is_there(tree: list[Seen]) -> None:
    assert [wanted for wanted in OBJECTS if not any(matches(seen, *wanted) for seen in tree)] == []


def matches(seen: Seen, role: str, name: str, description: str, states: str | None) -> bool:
    return (
        seen.role == role
        and re.fullmatch(name, seen.name) is not None
        and re.fullmatch(description, seen.description) is not None
        and (states is None or seen.states == set(states.split()))
    )


def test_what_can_have_the_focus_has_a_name(tree: list[Seen]) -> None:
    assert [seen for seen in tree if "focusable" in seen.states and not seen.name] == []


def test_nothing_of_another_state_of_the_panel_is_visible(tree: list[Seen]) -> None:
    assert [seen for seen in tree if "Scanning" in seen.name] == []


def test_the_objects_are_in_reading_order(tree: list[Seen]) -> None:
    controls = [seen.name for seen in tree if seen.role in ("push button", "check box", "list")]
    assert [name for name in controls if not name.startswith("Hide")] == READING_ORDER


def test_tools_can_press_controls_and_see_the_new_state(assistive: Assistive) -> None:
    assistive.press("Dynamic")
    assistive.wait_state("Dynamic", "checked", "the mark")
    wait_until(3, "its description", lambda: any("Expands only" in seen.description for seen in assistive.tree()))
    assistive.press("CPU Package")
    assistive.wait_state("CPU Package", "selected", "the pinned row")
