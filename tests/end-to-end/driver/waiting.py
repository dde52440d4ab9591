"""Waiting for something that another process does."""

import time
from collections.abc import Callable
from typing import TypeVar

POLL_SECONDS = 0.05

Value = TypeVar("Value")


def wait_until(
    limit: float, what: str, condition: Callable[[], Value], seen: Callable[[], object] | None = None
) -> Value:
    """The first result of the condition that is true.

    Fails after `limit` seconds, naming `what`, and what is `seen` instead.
    """
    end = time.monotonic() + limit
    while not (result := condition()):
        if time.monotonic() > end:
            instead = f", but {seen()}" if seen else ""
            raise AssertionError(f"{what}: not within {limit} s{instead}")
        time.sleep(POLL_SECONDS)
    return result


def stays(seconds: float, condition: Callable[[], object]) -> bool:
    """Whether the condition is true all the time. For what must not happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            return False
        time.sleep(POLL_SECONDS)
    return True
