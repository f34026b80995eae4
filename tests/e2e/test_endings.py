#!/usr/bin/env python3
"""The ways out of the program, and the starts that fail."""

import os
import signal
import subprocess
import unittest

from vesk_e2e import Game, tile_centre, wait_until

AT_SEA = tile_centre((0, 0), (256, 256))


class EndingTest(unittest.TestCase):
    def test_escape_ends_well(self):
        with Game(start=AT_SEA) as game:
            game.wait_for_ship()
            game.tap("Escape")
            self.assertEqual(game.wait_for_exit(), 0)
            self.assertEqual(game.output(), "")

    def test_closed_window_ends_well(self):
        with Game(start=AT_SEA) as game:
            game.wait_for_ship()
            game.close_window()
            self.assertEqual(game.wait_for_exit(), 0)

    def test_escape_ends_well_in_the_midst_of_loading(self):
        with Game(start=tile_centre((8, 3), (225, 228))) as game:
            game.hold("d Escape", 0.06)  # as soon as there is a window
            self.assertEqual(game.wait_for_exit(), 0)

    def test_signals_end_well(self):
        for number in (signal.SIGHUP, signal.SIGTERM):
            with self.subTest(number), Game(start=AT_SEA) as game:
                game.wait_for_ship()
                game.process.send_signal(number)
                self.assertEqual(game.wait_for_exit(), 0)

    def test_closed_streams_are_not_taken_by_others(self):
        with Game(start=AT_SEA, prepare=lambda: os.closerange(0, 3)) as game:
            for number in range(3):
                self.assertEqual(os.readlink(f"/proc/{game.process.pid}/fd/{number}"), "/dev/null")
            game.wait_for_ship()
            game.tap("Escape")
            self.assertEqual(game.wait_for_exit(), 0)



class FailingStartTest(unittest.TestCase):
    def fails(self, operation, **variables):
        """The start names what failed, waits for one character and ends with 1."""
        with Game(environment=variables, window=False) as game:
            wait_until(lambda: game.output().endswith("\n"), "a line about what failed")
            with self.assertRaises(subprocess.TimeoutExpired, msg="it waits for a character"):
                game.process.wait(1.0)
            game.answer("\n")
            self.assertEqual(game.wait_for_exit(), 1)
            lines = game.output().splitlines()
            self.assertEqual(len(lines), 1)
            self.assertRegex(lines[0], f"^{operation} error: .+")

    def test_no_display(self):
        for name in (None, ":9999"):
            self.fails("SDL_CreateWindow", DISPLAY=name, WAYLAND_DISPLAY=None, SDL_VIDEODRIVER=None)

    def test_nobody_reads_the_output(self):
        def lose_reader():
            reader, writer = os.pipe()
            os.dup2(writer, 1)
            os.close(reader)

        with Game(environment={"SDL_VIDEODRIVER": "dummy"}, window=False,
                  prepare=lose_reader) as game:
            game.answer("\n")
            self.assertEqual(game.wait_for_exit(), 1)

    def test_no_accelerated_renderer(self):
        self.fails("SDL_CreateRenderer", SDL_VIDEODRIVER="dummy")


if __name__ == "__main__":
    unittest.main()
