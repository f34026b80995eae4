#!/usr/bin/env python3
"""The first minute of the game as it is shipped: sail to the island in sight, walk ashore, go back
aboard."""

import unittest

from picture import Picture, Stamp
from vesk_e2e import ENEMY, LAND, ROOT, TILE, WATER, Game, shipped_start, terrain_colours


class LandingTest(unittest.TestCase):
    def test_from_the_shipped_start_ashore_and_back(self):
        with Game(**shipped_start()) as game:
            game.wait_for_picture(
                lambda picture: game.ship("right").find(picture) and game.enemy().find(picture),
                "the first picture shows the ship and an inhabited island")
            self.check_first_picture(game, game.settle().save("shipped_start"))

            ashore = self.go_until(game, "d", game.figure("right"), "a figure walks ashore")
            self.check_ashore(game, ashore.save("ashore"))

            aboard = self.go_until(game, "a", game.ship("left"), "the figure boards the boat")
            aboard.save("aboard_again")
            self.assertEqual(game.find_player(aboard)[:2], ("ship", "left"))

    def go_until(self, game, key, stamp, what):
        """Goes a few tiles at a time until the sprite is seen, however busy the machine is."""
        def go(picture):
            if stamp.find(picture):
                return True
            game.hold(key, 0.1)
            return False

        game.wait_for_picture(go, what, deadline=120.0)
        return game.settle()

    def check_first_picture(self, game, picture):
        self.assertIsNotNone(game.marker().find(picture), "a compass marker is in sight")
        colours = picture.colours()
        for name, terrain in (("water", WATER), ("land", LAND)):
            share = sum(colours[value] for value in terrain_colours(terrain))
            self.assertGreater(share, 0.05 * picture.width * picture.height, name)
        self.check_radar(picture)

    def check_radar(self, picture):
        """The rose in the upper right corner, ten pixels from both edges, with islands on it."""
        rose = Picture(ROOT / "data/hud_compass.png")
        left = picture.width - 10 - rose.width
        likeness = Stamp(rose, rose.width).likeness(picture, left, 10)
        self.assertGreater(likeness, 0.8)
        self.assertLess(likeness, 1.0, "no island on the radar")

    def check_ashore(self, game, picture):
        kind, heading, (x, y) = game.find_player(picture)
        self.assertEqual((kind, heading), ("figure", "right"))
        tile = int(TILE * game.zoom)
        land, water = terrain_colours(LAND), terrain_colours(WATER)
        self.assertGreater(picture.count(land, x - tile // 2, y - tile // 2, tile, tile), 0,
                           "the figure stands on land")

        boat = game.boat("right").find(picture)
        self.assertIsNotNone(boat, "the boat stays behind")
        self.assertLessEqual(abs(boat[1] - y), 1, "the boat lies in the row of the figure")
        self.assertLess(boat[0], x)
        self.assertGreater(picture.count(water, boat[0] - tile // 2, boat[1] - tile // 2,
                                         tile, tile), 0, "the boat lies on water")
        self.assertIsNotNone(game.enemy().find(picture), f"{ENEMY[0]} on the island")
        self.check_radar(picture)


if __name__ == "__main__":
    unittest.main()
