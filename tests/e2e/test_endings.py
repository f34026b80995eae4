"""The ways out of the program, and the starts that fail."""

import os
import re
import signal

import pytest
from game import DEADLINE, Game, wait_until

NO_DISPLAY = {"DISPLAY": None, "WAYLAND_DISPLAY": None, "SDL_VIDEODRIVER": None}


def test_escape_ends_well_in_the_midst_of_loading(folder):
    with Game(folder) as game:
        game.hold("d Escape")  # as soon as there is a window
        assert game.wait_for_exit() == 0


@pytest.mark.parametrize("number", [signal.SIGHUP, signal.SIGTERM])
def test_signals_end_well(folder, number):
    # The tests themselves may run where hang-ups are ignored.
    with Game(folder, preexec_fn=lambda: signal.signal(number, signal.SIG_DFL)) as game:
        game.settle()
        game.process.send_signal(number)
        assert game.wait_for_exit() == 0


def test_closed_streams_are_not_taken_by_others(folder):
    with Game(folder, preexec_fn=lambda: os.closerange(0, 3)) as game:
        for number in range(3):
            assert os.readlink(f"/proc/{game.process.pid}/fd/{number}") == "/dev/null"
        game.settle()
        game.hold("Escape")
        assert game.wait_for_exit() == 0


@pytest.mark.parametrize("operation, environment", [
    ("SDL_CreateWindow", NO_DISPLAY), ("SDL_CreateWindow", NO_DISPLAY | {"DISPLAY": ":9999"}),
    ("SDL_CreateRenderer", {"SDL_VIDEODRIVER": "dummy"})])
def test_a_failing_start_names_its_cause_and_waits_for_a_character(folder, operation, environment):
    with Game(folder, window=False, environment=environment) as game:
        wait_until(lambda: game.output().endswith("\n"), "a line about what failed")
        assert re.fullmatch(f"{operation} error: .+\n", game.output())
        assert game.process.poll() is None, "it waits"
        game.process.communicate(b"\n", timeout=DEADLINE)
        assert game.process.returncode == 1


def test_nobody_reads_the_output(folder):
    def lose_reader():
        reader, writer = os.pipe()
        os.dup2(writer, 1)
        os.close(reader)

    with Game(folder, window=False, environment={"SDL_VIDEODRIVER": "dummy"},
              preexec_fn=lose_reader) as game:
        game.process.communicate(b"\n", timeout=DEADLINE)
        assert game.process.returncode == 1
