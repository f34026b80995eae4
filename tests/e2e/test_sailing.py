#!/usr/bin/env python3
"""The ship at sea: what the first picture shows, and how the view follows the ship."""

import unittest

from vesk_e2e import LAND, TILE, Game, terrain_colours, tile_centre

CELL = (8, 3)
# A room covers columns 241 to 265 and rows 219 to 237 of this cell; the water below and to the
# right of its lower right corner is open for many tiles.
NEAR_CORNER = tile_centre(CELL, (270, 214))
FAR_FROM_CORNER = tile_centre(CELL, (285, 214))
ROOM_ROW = 60  # a window row that crosses the room at both starts
LEFT_OF_RADAR = 1100

# The camera starts far to the lower left, so it stops as soon as the ship is a fifth of half the
# window away from the middle.
REACH = (128, 72)
START_PLACE = (640 + REACH[0], 360 - REACH[1])


class SailingTest(unittest.TestCase):
    def setUp(self):
        self.land = terrain_colours(LAND)

    def corner(self, picture):
        """The window position right of and below the room's corner."""
        land = [value in self.land for value in picture.row(ROOM_ROW, 0, LEFT_OF_RADAR)]
        self.assertIn(True, land, "the room is not in the picture")
        x = len(land) - land[::-1].index(True)
        y = ROOM_ROW
        while picture.pixel(x - 1, y) in self.land:
            y += 1
        return x, y

    def test_first_picture_shows_the_ship_on_water(self):
        with Game(start=NEAR_CORNER) as game:
            picture = game.wait_for_ship().save("start")
            self.assertEqual(game.shape(), (100, 100, 1280, 720))
            self.assertEqual(game.find_player(picture), ("ship", "right", START_PLACE))
            # The room's corner: right of column 265, below row 219.
            ship_x, ship_y = START_PLACE
            self.assertEqual(self.corner(picture), (ship_x - TILE // 2 - 4 * TILE,
                                                    ship_y + TILE // 2 - 5 * TILE))

    def test_held_key_moves_the_world_under_the_ship(self):
        with Game(start=NEAR_CORNER) as game:
            before = self.corner(game.wait_for_ship())
            game.hold("d", 0.25)
            picture = game.settle().save("sailed_right")
            after = self.corner(picture)
            self.assertEqual(game.find_player(picture), ("ship", "right", START_PLACE))
            self.assertEqual(after[1], before[1])
            self.assertLess(after[0], before[0])
            self.assertEqual((before[0] - after[0]) % TILE, 0, "the ship stops on a tile")

    def test_view_rests_while_the_ship_stays_in_the_dead_zone(self):
        with Game(start=FAR_FROM_CORNER) as game:
            picture = game.wait_for_ship()
            rested = scrolled = 0
            for key, seconds in (("a", 0.06), ("s", 0.06), ("a", 0.06), ("a", 0.4), ("d", 0.06)):
                before = self.look(game, picture)
                game.hold(key, seconds)
                picture = game.settle()
                moved, view = self.compare(before, self.look(game, picture))
                self.assertNotEqual(moved, (0, 0), f"{key} moves the ship")
                rested += view == (0, 0)
                scrolled += view != (0, 0)
            picture.save("dead_zone")
            self.assertGreaterEqual(rested, 2)
            self.assertGreaterEqual(scrolled, 1)

    def look(self, game, picture):
        kind, _, place = game.find_player(picture)
        self.assertEqual(kind, "ship")
        return place, self.corner(picture)

    def compare(self, before, after):
        """How the ship moved over the world and how the view did, per axis in window pixels."""
        moves, views = [], []
        for axis in (0, 1):
            place = after[0][axis] - before[0][axis]
            view = before[1][axis] - after[1][axis]
            offset = after[0][axis] - (640, 360)[axis]
            self.assertEqual((place + view) % TILE, 0, "the ship stops on a tile")
            self.assertLessEqual(abs(offset), REACH[axis], "the ship stays in the dead zone")
            if abs(offset) < REACH[axis]:
                self.assertEqual(view, 0, "the view rests while the ship is inside the dead zone")
            moves.append(place + view)
            views.append(view)
        return tuple(moves), tuple(views)


if __name__ == "__main__":
    unittest.main()
