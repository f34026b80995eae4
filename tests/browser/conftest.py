"""A Chromium without a window, and the site as any server gives it out."""

import functools
import http.server
import os
import pathlib
import threading

import pytest
from selenium import webdriver

ROOT = pathlib.Path(__file__).resolve().parents[2]
FLAGS = """headless=new no-sandbox use-angle=swiftshader enable-unsafe-swiftshader disable-dev-shm-usage
    disable-quic no-first-run disable-background-networking disable-component-update disable-sync
    window-size=1300,900""".split()


class Quiet(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


@pytest.fixture(scope="session")
def site():
    folder = os.environ.get("VESK_SITE", ROOT / "build/web/site")
    server = http.server.ThreadingHTTPServer(
        ("127.0.0.1", 0), functools.partial(Quiet, directory=folder))
    threading.Thread(target=server.serve_forever, daemon=True).start()
    yield f"http://127.0.0.1:{server.server_port}"
    server.shutdown()


@pytest.fixture(scope="session")
def browser(tmp_path_factory):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for flag in (*FLAGS, f"user-data-dir={tmp_path_factory.mktemp('profile')}"):
        options.add_argument(f"--{flag}")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    service = webdriver.chrome.service.Service("/usr/bin/chromedriver")
    with webdriver.Chrome(service=service, options=options) as started:
        started.set_script_timeout(60)
        yield started


@pytest.fixture
def chromium(browser):
    """The browser, which must not complain in its console while a test runs."""
    browser.get_log("browser")
    yield browser
    assert [line for line in browser.get_log("browser") if line["level"] != "INFO"] == []
