"""What the Python tests share."""

import pathlib
import sys
import tempfile

import pytest

sys.dont_write_bytecode = True


@pytest.fixture
def folder():
    """A temporary folder into which other users may look, too."""
    with tempfile.TemporaryDirectory(prefix="vesk-") as name:
        path = pathlib.Path(name)
        path.chmod(0o755)
        yield path
