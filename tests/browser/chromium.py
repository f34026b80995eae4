"""A Chromium without a window, and a server that gives out a folder as any other would."""

import contextlib
import functools
import http.server
import threading

from selenium import webdriver

FLAGS = """headless=new no-sandbox use-angle=swiftshader enable-unsafe-swiftshader disable-dev-shm-usage
    disable-quic no-first-run disable-background-networking disable-component-update disable-sync""".split()


class Quiet(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


@contextlib.contextmanager
def serve(folder):
    server = http.server.ThreadingHTTPServer(
        ("127.0.0.1", 0), functools.partial(Quiet, directory=folder))
    threading.Thread(target=server.serve_forever, daemon=True).start()
    yield f"http://127.0.0.1:{server.server_port}"
    server.shutdown()


@contextlib.contextmanager
def start(profile, width=1280, height=720, touch=False, ratio=1):
    """The browser with an empty profile in that folder, its view so large: in the page's pixels, each of
    `ratio` x `ratio` of the screen's."""
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for flag in (*FLAGS, f"user-data-dir={profile}"):
        options.add_argument(f"--{flag}")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    metrics = {"width": width, "height": height, "pixelRatio": ratio, "touch": touch}
    options.add_experimental_option("mobileEmulation", {"deviceMetrics": metrics})
    service = webdriver.chrome.service.Service("/usr/bin/chromedriver")
    with webdriver.Chrome(service=service, options=options) as browser:
        browser.set_script_timeout(60)
        yield browser
