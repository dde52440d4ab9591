"""Waiting for something that another process does."""

import time
from collections.abc import Callable
from typing import TypeVar

POLL_SECONDS = 0.05

Value = TypeVar("Value")


def wait_until(limit: float, what: str, condition: Callable[[], Value]) -> Value:
    """The first result of the condition that is true. Fails, naming `what`, after `limit` seconds."""
    end = time.monotonic() + limit
    while not (result := condition()):
        assert time.monotonic() < end, f"{what}: not within {limit} s"
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
