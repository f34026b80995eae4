"""What the tests in a browser share: one browser, and the site of the web preset."""

import os
import pathlib

import pytest

import chromium as program

ROOT = pathlib.Path(__file__).resolve().parents[2]


@pytest.fixture(scope="session")
def site():
    with program.serve(os.environ.get("VESK_SITE", ROOT / "build/web/site")) as address:
        yield address


@pytest.fixture(scope="session")
def browser(tmp_path_factory):
    with program.start(tmp_path_factory.mktemp("profile")) as started:
        yield started


@pytest.fixture
def chromium(browser):
    """The browser, which must not complain in its console while a test runs."""
    browser.get_log("browser")
    yield browser
    assert [line for line in browser.get_log("browser") if line["level"] != "INFO"] == []
