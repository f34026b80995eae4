"""The ways out of the program, and the starts that fail."""

import fcntl
import os
import re
import signal
import subprocess

import pytest
from game import COMMAND, DEADLINE, IS_WINDOWS, PROGRAM, ROOT, Game

NO_DISPLAY = ["env", *"-u DISPLAY -u WAYLAND_DISPLAY -u XDG_RUNTIME_DIR -u SDL_VIDEODRIVER".split()]
CONSOLE = ROOT / "build/windows/bin/console.exe"
DUMMY = [*NO_DISPLAY, "-u", "SDL_RENDER_DRIVER", "SDL_VIDEODRIVER=dummy"]


def test_escape_ends_well_in_the_midst_of_loading(folder):
    with Game(folder) as game:
        game.hold("d Escape")  # as soon as there is a window
        assert game.end() == (0, "")


@pytest.mark.skipif(IS_WINDOWS, reason="there are no such signals")
@pytest.mark.parametrize("number", [signal.SIGHUP, signal.SIGTERM])
def test_signals_end_well_and_closed_streams_are_not_taken_by_others(folder, number):
    def prepare():
        signal.signal(number, signal.SIG_DFL)  # the tests may run where hang-ups are ignored
        os.closerange(0, 3)

    with Game(folder, preexec_fn=prepare) as game:
        for stream in range(3):
            assert os.readlink(f"/proc/{game.process.pid}/fd/{stream}") == "/dev/null"
        game.settle()
        game.process.send_signal(number)
        assert game.end() == (0, "")


@pytest.mark.skipif(not IS_WINDOWS, reason="this is about Windows")
@pytest.mark.parametrize("words", [[CONSOLE, "0", "vesk.exe"], [CONSOLE, "2", "vesk.exe"],
                                   ["wineboot", "--end-session"]])
def test_ctrl_c_a_closed_console_and_logging_off_reach_the_game(folder, words):
    command = ["env", "SDL_EVENT_LOGGING=1", *COMMAND]
    with Game(folder, command, stderr=subprocess.STDOUT) as game:
        game.settle()
        subprocess.run(["wine", *words], check=True)
        code, said = game.end()
        assert code == 0 and re.search("SDL_QUIT.*WINDOWEVENT_HIDDEN", said, re.DOTALL), (
            "wine by itself ends the program with the same code, before it closes its window")


@pytest.mark.skipif(not IS_WINDOWS, reason="this is about Windows")
def test_no_console_is_needed(folder):
    with Game(folder, ["wine", CONSOLE, "without", PROGRAM]) as game:
        game.settle()
        game.hold("Escape")
        assert game.end() == (0, "")


@pytest.mark.parametrize("operation, surroundings", [
    ("SDL_CreateWindow", NO_DISPLAY),
    ("SDL_CreateWindow", [*NO_DISPLAY, "DISPLAY=:9999", "WAYLAND_DISPLAY=gone"]),
    ("SDL_CreateRenderer", DUMMY)])
def test_a_failing_start_names_its_cause_and_waits_for_a_character(operation, surroundings):
    with subprocess.Popen(["timeout", str(DEADLINE), *surroundings, *COMMAND], text=True,
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT) as process:
        assert re.fullmatch(f"{operation} error: .+\n", process.stdout.readline())
        assert process.poll() is None, "it waits"
        print(file=process.stdin, flush=True)
        assert process.stdout.read() == "" and process.wait() == 1


@pytest.mark.skipif(IS_WINDOWS, reason="a full pipe blocks there")
def test_a_reader_that_has_stopped_does_not_hold_the_end(folder):
    _reader, writer = os.pipe()
    fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, 4096)
    os.write(writer, bytes(4096 - 100))  # the main thread's lines fit, the worker's do not
    with Game(folder, stderr=writer) as game:
        game.settle()
        game.hold("Escape")
        assert game.end() == (0, "")


def test_nobody_reads_the_output():
    reader, writer = os.pipe()
    os.close(reader)
    command = [*DUMMY, *COMMAND]
    assert subprocess.run(command, input=b"\n", stdout=writer, timeout=DEADLINE).returncode == 1
    os.close(writer)
