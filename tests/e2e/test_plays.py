"""A play in the real window: the first minute as it is shipped, then the map and the menu."""

from game import Game, Sprite

# At the shipped zoom, 1, a tile is 24 pixels wide, and so are the ship and the figure.
STEP = 24
SHIP = Sprite(STEP, "ships.png", 0, 64, 32, 32)
SHIP_LEFT = Sprite(STEP, "ships.png", 0, 32, 32, 32)
BOAT = Sprite(32, "ships.png", 0, 64, 32, 32)
FIGURE = Sprite(STEP, "link_raw.png", 91, 0, 16, 16)
ENEMY = Sprite(16, "enemies.png", 0, 0, 16, 16)
MARKER = Sprite(32, "compass.png", 0, 0, 128, 128)
ROSE = Sprite(118, "hud_compass.png", 0, 31, 118, 118)
START = (768, 288)  # where the ship lies in the window at first

BLUE, GREEN, YELLOW = (0, 0, 255), (0, 255, 0), (255, 255, 0)
RED, WHITE = (255, 0, 0), (255, 255, 255)

PANEL = (128, 72, 1152, 648)  # the map's left, top, right and bottom
CENTRE = (640, 360)
BESIDE_MENU = (301, 0, 1101, 720)  # where overlays show, left of the radar


def count(picture, colour, box=PANEL):
    colours = {value: number for number, value in picture.crop(box).getcolors(1 << 20)}
    return colours.get(colour, 0)


def map_is_open(picture):
    return picture.getpixel((PANEL[0] + 1, PANEL[1] + 1)) == BLUE


def test_from_the_shipped_start_ashore_and_back_to_map_and_menu(folder):
    with Game(folder) as game:
        game.wait(lambda picture: SHIP.is_at(picture, START), "the ship lies off an island")
        first = game.settle("shipped_start")
        assert ENEMY.is_at(first, (960, 336)) and ENEMY.is_at(first, (1200, 408))
        assert MARKER.is_at(first, (1128, 336))
        assert 0.8 < ROSE.likeness(first, (1211, 100)) < 1.0, "with islands on it"

        game.wait(lambda picture: FIGURE.seek(picture, START[1]), "a figure walks ashore", "d")
        ashore = game.settle("ashore")
        figure, boat = FIGURE.seek(ashore, START[1]), BOAT.seek(ashore, START[1])
        assert figure > boat and (figure - boat) % STEP == 0, "the boat stays some tiles behind"
        game.wait(lambda picture: SHIP_LEFT.seek(picture, START[1]), "it boards the boat", "a")
        assert BOAT.seek(game.settle("aboard"), START[1]) is None, "the boat is the ship again"

        game.hold("BackSpace")
        game.wait(map_is_open, "the map is open")
        opened = game.settle("map")
        assert opened.getpixel(CENTRE) == RED, "the player is at the centre"
        assert count(opened, GREEN) > 3 * 81 and count(opened, WHITE) > 50, "islands with labels"
        game.wait(lambda picture: picture.getpixel(CENTRE) == YELLOW,
                  "the player is at the centre no more", "Right Up")
        panned = game.settle("map_panned")
        below_left = (PANEL[0], CENTRE[1], CENTRE[0], PANEL[3])
        assert count(panned, RED, below_left) == 13, "but the whole cross lies left and below"
        game.hold("BackSpace")
        game.wait(lambda picture: not map_is_open(picture), "the map is closed")
        game.hold("BackSpace")
        game.wait(lambda picture: picture.getpixel(CENTRE) == RED, "opened again it shows the player")
        game.wait(lambda picture: count(picture, YELLOW) > 500, "hallways are shown", "e")
        game.hold("BackSpace")
        game.wait(lambda picture: not map_is_open(picture), "the map is closed")

        game.hold("grave")
        game.settle("menu")
        game.hold("s")
        off = count(game.settle(), YELLOW, BESIDE_MENU)
        game.hold("Return")
        shown = game.settle("menu_rooms")
        assert count(shown, YELLOW, BESIDE_MENU) > off + 100, "the second row shows the rooms"
        game.hold("Escape")
        assert game.end() == (0, ""), "every image and the typeface were found"
