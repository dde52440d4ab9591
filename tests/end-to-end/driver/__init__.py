"""Drives the whole program from outside: a desktop of its own, hosts with a tray, pointer, keyboard and pictures.

A scenario asks `conftest.py` for a desktop, starts a host of `driver.hosts` on it, and the program after that. Whatever
is waited for has a limit and a name, so that a failure says what did not happen.
"""
