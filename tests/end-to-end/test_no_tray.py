"""A desktop without a tray: starting the program again opens the panel of the first instance."""


import pytest

from driver.desktop import Desktop
from driver.program import Panel, Program


@pytest.fixture(autouse=True)
def _started(program: Program) -> None:
    program.prefer(KelvinbarMenuBarKeys="TC0P", KelvinbarSamplingRate="fast")
    program.start()


def test_a_second_start_opens_the_panel_and_escape_closes_it(desktop: Desktop, program: Program, panel: Panel) -> None:
    program.start_again()
    assert desktop.screen.area.contains(panel.wait_open())
    desktop.keep_picture("panel")
    panel.wait_focus()
    desktop.screen.type_key("Escape")
    panel.wait_closed("closing by Escape")


def test_of_two_starts_at_once_both_hand_over(program: Program, panel: Panel) -> None:
    program.start_again_at_once(2)
    panel.wait_open()


def test_killing_the_program_leaves_the_preferences(program: Program) -> None:
    before = program.preferences()
    program.kill()
    assert program.preferences() == before
    program.start()


def test_the_doctor_finds_no_tray_and_says_what_to_do(own_program: Program) -> None:
    own_program.start()
    diagnosis = own_program.diagnosis("Tray")
    assert diagnosis["tray"]["state"] == "problem"
    assert "tray" in diagnosis["tray"]["advice"]
    assert diagnosis["status item"]["found"] == "cannot be seen: the program runs, and no tray shows it"
