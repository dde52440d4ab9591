"""Desktops whose trays the program is tried in, one module each."""
