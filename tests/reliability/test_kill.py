"""kill -9 while preferences change."""

import os
import random
import re
import signal
import subprocess
import time
from collections.abc import Callable
from pathlib import Path
from typing import NamedTuple

from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.program import Program
from driver.waiting import wait_until

KILLS = {"quick": 50, "night": 1000}
PROGRAM_KILLS = {"quick": 3, "night": 50}
LONGEST_LIFE = 0.2  # seconds, after the first change

BEFORE = "[General]\nPins=TC0P, F0Ac\n"


class Words(NamedTuple):
    """What a victim has said."""

    loaded: int
    changed: int
    saved: int


def lives(victim: Path, folder: Path, seconds: float) -> Words:
    """Starts the victim, and kills it after its first change."""
    environment = {**os.environ, "XDG_CONFIG_HOME": str(folder), "HOME": str(folder)}
    process = subprocess.Popen([victim], env=environment, stdout=subprocess.PIPE, text=True)
    said = process.stdout.readline() + process.stdout.readline()
    time.sleep(seconds)
    process.send_signal(signal.SIGKILL)
    said += process.communicate(timeout=20)[0]
    assert process.returncode == -signal.SIGKILL, f"the victim could not write: {said[-200:]}"
    return Words(*(last_number(word, said) for word in ("loaded", "change", "saved")))


def last_number(word: str, said: str) -> int:
    numbers = re.findall(rf"^{word} (\d+)$", said, re.MULTILINE)
    return int(numbers[-1]) if numbers else 0


def values_in(file: Path) -> dict[str, str]:
    """Fails if the file is torn."""
    header, *lines = file.read_text().splitlines()
    assert header == "[General]" and all("=" in line for line in lines), "the file is torn"
    return dict(line.split("=", 1) for line in lines)


def test_a_kill_loses_at_most_the_change_that_is_being_written(
    attack_file: Callable[[str], Path], tmp_path: Path, scale: str, record
) -> None:
    victim, moments = attack_file("kelvinbar_preferences_victim"), random.Random(1)
    file = tmp_path / "kelvinbar/victim.conf"
    file.parent.mkdir()
    file.write_text(BEFORE)
    torn = lost = changes = number = 0
    for _ in range(KILLS[scale]):
        words = lives(victim, tmp_path, moments.uniform(0, LONGEST_LIFE))
        changes += words.changed - words.loaded
        lost += words.loaded != number
        try:
            values = values_in(file)
        except AssertionError:
            torn += 1
            break
        numbers = set(values.get("List", "0").split(", "))
        torn += len(numbers) != 1
        number = int(max(numbers, key=int))
        lost += not max(words.saved, words.loaded) <= number <= words.changed or values["Pins"] != "TC0P, F0Ac"
    record(
        "kill -9 while preferences change",
        f"{KILLS[scale]} kills, {changes} changes, {torn} torn, {lost} lost but the last",
        torn == 0 and lost == 0,
    )


def test_the_program_starts_with_its_preferences_after_a_kill(
    desktop: Desktop, program: Path, scale: str, record
) -> None:
    moments = random.Random(2)
    kelvinbar = Program(program, desktop)
    kelvinbar.prefer(KelvinbarMenuBarKeys="TC0P", KelvinbarHiddenKeys="F0Ac", KelvinbarSamplingRate="fast")
    expected = kelvinbar.preferences()
    lost = 0
    with NoBar(desktop):
        for _ in range(PROGRAM_KILLS[scale]):
            kelvinbar.start()
            wait_until(10, "the pinned reading", lambda: len(kelvinbar.item().menu()) > 6)
            change_for(kelvinbar, moments.uniform(0, LONGEST_LIFE))
            kelvinbar.kill()
            kept = kelvinbar.preferences()
            lost += any(kept.get(name) != value for name, value in expected.items())
    record(
        "kill -9 of the whole program while its menu changes a preference",
        f"{PROGRAM_KILLS[scale]} kills, {lost} with lost preferences",
        lost == 0,
    )


def change_for(kelvinbar: Program, seconds: float) -> None:
    item, end = kelvinbar.item(), time.monotonic() + seconds
    while True:
        item.choose("Alternate Readings in Icon")
        time.sleep(0.05)  # faster calls are refused
        if time.monotonic() > end:
            return
