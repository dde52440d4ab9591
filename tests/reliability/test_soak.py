"""An hour of sampling, half of it with the panel open."""

import time
from collections.abc import Callable
from pathlib import Path
from statistics import median

import pytest

from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.program import Panel, Program
from footprint import Footprint, footprint_of

SAMPLE_SECONDS = 1
SETTLING = 0.2  # of the time: caches fill at first
GROWTH = 0.01


def soak(pid: int, minutes: float) -> list[Footprint]:
    """Samples after the program has settled."""
    samples, started = [], time.monotonic()
    while (passed := time.monotonic() - started) < 60 * minutes:
        if passed > 60 * minutes * SETTLING:
            samples.append(footprint_of(pid))
        time.sleep(SAMPLE_SECONDS)
    return samples


def ends_of(samples: list[Footprint], part: Callable[[Footprint], int]) -> tuple[float, float]:
    """The medians of the first and the last fifth: a sample may fall into a pass."""
    fifth = max(1, len(samples) // 5)
    return median(map(part, samples[:fifth])), median(map(part, samples[-fifth:]))


def is_level(samples: list[Footprint]) -> bool:
    first, last = ends_of(samples, lambda sample: sample.kibibytes)
    return (
        abs(last - first) <= GROWTH * first
        and len(set(ends_of(samples, lambda sample: sample.descriptors))) == 1
        and len(set(ends_of(samples, lambda sample: sample.threads))) == 1
    )


def figures_of(samples: list[Footprint]) -> str:
    memory, descriptors, threads = (
        ends_of(samples, part) for part in (lambda s: s.kibibytes / 1024, lambda s: s.descriptors, lambda s: s.threads)
    )
    return (
        f"{memory[0]:.1f} to {memory[1]:.1f} MB, {descriptors[0]:.0f} to {descriptors[1]:.0f} descriptors,"
        f" {threads[0]:.0f} to {threads[1]:.0f} threads"
    )


@pytest.mark.night
@pytest.mark.parametrize("state", ["closed", "open"])
def test_nothing_grows(desktop: Desktop, program: Path, state: str, soak_minutes: float, record) -> None:
    kelvinbar = Program(program, desktop)
    kelvinbar.prefer(KelvinbarMenuBarKeys="TC0P", KelvinbarSamplingRate="fast")
    with NoBar(desktop) as host:
        kelvinbar.start()
        panel = Panel(host.windows(), host.scale, host.shadow)
        if state == "open":
            kelvinbar.start_again()
            panel.wait_open()
        samples = soak(kelvinbar.pid, soak_minutes / 2)
        assert panel.is_open() == (state == "open")
        kelvinbar.finish()
    record(f"soak, panel {state}", f"{soak_minutes / 2:g} min, {figures_of(samples)}", is_level(samples))
