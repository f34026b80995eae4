#!/usr/bin/env python3
"""The world map and the debug menu in the real window: every overlay is switched on and looked at."""

import unittest

from picture import colour
from vesk_e2e import CELL, Game, TILE

# The middle of a cell that holds land, as two of the cells around it do.
AMONG_ISLANDS = (5 * CELL + CELL // 2 + TILE // 2, 4 * CELL + CELL // 2 + TILE // 2)

BLUE = colour(0, 0, 255)
GREEN = colour(0, 255, 0)
GREY = colour(128, 128, 128)
LIGHT_GREY = colour(200, 200, 200)
ORANGE = colour(255, 128, 0)
RED = colour(255, 0, 0)
WHITE = colour(255, 255, 255)
YELLOW = colour(255, 255, 0)

HOLD = 0.2  # seconds; a busy machine draws the map so slowly that it misses shorter releases

PANEL = (128, 72, 1024, 576)  # the map's, in a window of 1280 x 720
BESIDE_MENU = (301, 0, 800, 720)  # where overlays show, left of the radar

# Row of the menu, name, a colour that the overlay brings and how many pixels of it at least.
OVERLAYS = [
    (1, "cell_border", RED, 600),
    (2, "dungeon_rooms", YELLOW, 100),
    (3, "spanning_tree", GREEN, 100),
    (4, "hallways", RED, 100),
    (6, "player_info", WHITE, 100),
    (8, "loaded_assets", WHITE, 100),
]


def map_is_open(picture):
    return picture.pixel(PANEL[0] + 1, PANEL[1] + 1) == BLUE


def player_mark(picture):
    """The middle of the red cross that marks the player on the map."""
    left, top, width, height = PANEL
    mark = [place for place in picture.where(RED)
            if left < place[0] < left + width and top < place[1] < top + height]
    assert len(mark) == 13, f"the map shows {len(mark)} red pixels instead of one cross"
    return tuple(sum(place[axis] for place in mark) // len(mark) for axis in (0, 1))


def selected_row(picture):
    """The menu's selected row, counted from 1; None when the menu is hidden."""
    fills = [picture.pixel(290, 22 * row + 18) for row in range(1, 10)]
    if fills.count(LIGHT_GREY) == 1 and fills.count(GREY) == 8:
        return fills.index(LIGHT_GREY) + 1
    return None


def label(picture, row):
    return [list(picture.row(y, 33, 291)) for y in range(22 * row + 1, 22 * row + 19)]


class MapTest(unittest.TestCase):
    def test_map_opens_pans_zooms_and_closes(self):
        with Game(start=AMONG_ISLANDS) as game:
            game.wait_for_ship().save("map_closed")

            game.hold("BackSpace", HOLD)
            opened = game.wait_for_picture(map_is_open, "the map is open").save("map_open")
            self.assertEqual(opened.pixel(640, 360), RED, "the player is not at the centre")
            self.assertEqual(opened.pixel(636, 356), GREEN, "the player's cell is not marked")
            self.assertGreater(opened.count({GREEN}, *PANEL), 3 * 81, "few cells are marked")
            self.assertGreater(opened.count({WHITE}, *PANEL), 50, "the cells have no labels")

            game.hold("Right Up", 0.3)
            panned = game.settle().save("map_panned")
            self.assertEqual(panned.pixel(640, 360), YELLOW, "the map has not moved")
            x, y = player_mark(panned)
            self.assertTrue(x < 640 and y > 360, "the player has not moved left and down")
            for _ in range(20):  # a busy machine pans more slowly
                if x > 640 and y < 360:
                    break
                game.hold("Left Down", 0.1)
                x, y = player_mark(game.settle())
            self.assertTrue(x > 640 and y < 360, "the player has not moved right and up")
            game.hold("q", 0.2)
            far = game.settle().save("map_far")
            self.assertGreater(far.count({GREEN}, *PANEL), opened.count({GREEN}, *PANEL),
                               "no more cells have come into view")

            game.hold("BackSpace", HOLD)
            game.wait_for_picture(lambda picture: not map_is_open(picture), "the map is closed")
            game.hold("BackSpace", HOLD)
            game.wait_for_picture(lambda picture: picture.pixel(640, 360) == RED,
                                  "the map is open at the player again")
            game.press("e")
            game.wait_for_picture(lambda picture: picture.count({YELLOW}, *PANEL) > 500,
                                  "hallways are shown")
            game.release("e")
            detail = game.settle().save("map_detail")
            self.assertGreater(detail.count({GREEN}, *PANEL), 100, "no rooms are shown")
            self.assertEqual(detail.count({ORANGE}, *PANEL), 0)

            self.show_compasses(game)

            game.hold("BackSpace", HOLD)
            game.wait_for_picture(lambda picture: not map_is_open(picture), "the map is closed")
            game.tap("Escape")
            self.assertEqual(game.wait_for_exit(), 0)

    def show_compasses(self, game):
        game.hold("grave", HOLD)
        game.wait_for_picture(lambda picture: selected_row(picture) == 1, "the menu is shown")
        for _ in range(8):
            game.hold("s", HOLD)
        game.wait_for_picture(lambda picture: selected_row(picture) == 9, "the last row is selected")
        game.hold("Return", HOLD)
        game.wait_for_picture(lambda picture: picture.count({ORANGE}, *PANEL) >= 16,
                              "compass points are shown").save("map_compasses")


class MenuTest(unittest.TestCase):
    def test_menu_switches_every_overlay(self):
        with Game(start=AMONG_ISLANDS, zoom=0.05) as game:
            game.settle().save("menu_hidden")
            game.hold("grave", HOLD)
            game.wait_for_picture(lambda picture: selected_row(picture) == 1,
                                  "the menu is shown").save("menu_shown")
            at = 1
            for row, name, mark, least in OVERLAYS:
                for _ in range(row - at):
                    game.hold("s", HOLD)
                at = row
                self.switch(game, row, name, mark, least)
            for _ in range(at - 1):
                game.hold("w", HOLD)
            game.wait_for_picture(lambda picture: selected_row(picture) == 1,
                                  "the first row is selected again")
            game.hold("grave", HOLD)
            game.wait_for_picture(lambda picture: selected_row(picture) is None,
                                  "the menu is hidden")
            game.tap("Escape")
            self.assertEqual(game.wait_for_exit(), 0)

    def switch(self, game, row, name, mark, least):
        def shown(picture):
            return picture.count({mark}, *BESIDE_MENU) >= before + least

        off = game.wait_for_picture(lambda picture: selected_row(picture) == row,
                                    f"row {row} is selected")
        before = off.count({mark}, *BESIDE_MENU)
        game.hold("Return", HOLD)
        on = game.wait_for_picture(shown, f"the overlay {name} is on").save(f"menu_{name}")
        if row != 8:  # the list's button keeps its label
            self.assertNotEqual(label(on, row), label(off, row), "the label has not changed")
        game.hold("Return", HOLD)
        game.wait_for_picture(lambda picture: not shown(picture) and
                              label(picture, row) == label(off, row),
                              f"the overlay {name} is off")


if __name__ == "__main__":
    unittest.main()
