"""What the tests of the real program share."""

import subprocess

import pytest
from game import IS_WINDOWS


@pytest.fixture(autouse=IS_WINDOWS)
def fresh_windows():
    """wine's desktop keeps to the screen that it began on, if any."""
    subprocess.run(["wineserver", "--kill"], check=False)
    yield
    subprocess.run(["wineserver", "--kill"], check=False)
