"""Two plays in the real window: the first minute as it is shipped, and the map with the menu."""

from game import Game, Sprite

# At the shipped zoom, 1, a tile is 24 pixels wide, and so are the ship and the figure.
STEP = 24
SHIP = Sprite(STEP, "ships.png", 0, 64, 32, 32)
SHIP_LEFT = Sprite(STEP, "ships.png", 0, 32, 32, 32)
BOAT = Sprite(32, "ships.png", 0, 64, 32, 32)
FIGURE = Sprite(STEP, "link_raw.png", 91, 0, 16, 16)
ENEMY = Sprite(16, "enemies.png", 0, 0, 16, 16)
MARKER = Sprite(32, "compass.png", 0, 0, 128, 128)
ROSE = Sprite(118, "hud_compass.png", 0, 0, 118, 118)
START = (768, 288)  # where the ship lies in the window at first

BLUE, GREEN, YELLOW = (0, 0, 255), (0, 255, 0), (255, 255, 0)
RED, WHITE, GREY, LIGHT_GREY = (255, 0, 0), (255, 255, 255), (128, 128, 128), (200, 200, 200)

PANEL = (128, 72, 1152, 648)  # the map's left, top, right and bottom
CENTRE = (640, 360)
BESIDE_MENU = (301, 0, 1101, 720)  # where overlays show, left of the radar

OVERLAYS = {2: YELLOW, 6: WHITE}  # row of the menu: a colour that its overlay brings


def count(picture, colour, box=PANEL):
    colours = {value: number for number, value in picture.crop(box).getcolors(1 << 20)}
    return colours.get(colour, 0)


def map_is_open(picture):
    return picture.getpixel((PANEL[0] + 1, PANEL[1] + 1)) == BLUE


def selected_row(picture):
    """The menu's selected row, counted from 1; None when the menu is hidden."""
    fills = [picture.getpixel((290, 22 * row + 18)) for row in range(1, 10)]
    shown = fills.count(LIGHT_GREY) == 1 and fills.count(GREY) == 8
    return fills.index(LIGHT_GREY) + 1 if shown else None


def select(game, row):
    """Goes to a row of the menu and gives the picture that shows it."""
    while (at := selected_row(picture := game.settle())) != row:
        game.hold("s" if at < row else "w")
    return picture


def test_from_the_shipped_start_ashore_and_back(folder):
    with Game(folder) as game:
        game.wait(lambda picture: SHIP.is_at(picture, START), "the ship lies off an island")
        first = game.settle("shipped_start")
        assert ENEMY.is_at(first, (1008, 336)) and ENEMY.is_at(first, (360, 408))
        assert MARKER.is_at(first, (960, 240))
        assert 0.8 < ROSE.likeness(first, (1211, 69)) < 1.0, "with islands on it"

        game.wait(lambda picture: FIGURE.seek(picture, START[1]), "a figure walks ashore", "d")
        ashore = game.settle("ashore")
        figure, boat = FIGURE.seek(ashore, START[1]), BOAT.seek(ashore, START[1])
        assert figure > boat and (figure - boat) % STEP == 0, "the boat stays some tiles behind"
        game.wait(lambda picture: SHIP_LEFT.seek(picture, START[1]), "it boards the boat", "a")
        aboard = game.settle("aboard_again")
        assert BOAT.seek(aboard, START[1]) is None, "the boat is the ship again"
        game.hold("Escape")
        assert game.wait_for_exit() == 0
        assert game.output() == "", "every image and the typeface were found"


def test_map_and_menu(folder):
    with Game(folder) as game:
        game.wait(lambda picture: SHIP.is_at(picture, START), "the ship lies off an island")
        game.hold("BackSpace")
        game.wait(map_is_open, "the map is open")
        opened = game.settle("map")
        assert opened.getpixel(CENTRE) == RED, "the player is at the centre"
        assert count(opened, GREEN) > 3 * 81 and count(opened, WHITE) > 50, "islands with labels"
        game.hold("Right Up")
        panned = game.settle("map_panned")
        assert panned.getpixel(CENTRE) == YELLOW, "the player is at the centre no more"
        below_left = (PANEL[0], CENTRE[1], CENTRE[0], PANEL[3])
        assert count(panned, RED, below_left) == 13, "but the whole cross lies left and below"
        game.hold("BackSpace")
        game.wait(lambda picture: not map_is_open(picture), "the map is closed")
        game.hold("BackSpace")
        game.wait(lambda picture: picture.getpixel(CENTRE) == RED, "opened again it shows the player")
        game.wait(lambda picture: count(picture, YELLOW) > 500, "hallways are shown", "e")
        game.settle("map_detail")
        game.hold("BackSpace")
        game.wait(lambda picture: not map_is_open(picture), "the map is closed")

        game.hold("grave")
        for row, colour in OVERLAYS.items():
            off = count(select(game, row), colour, BESIDE_MENU)
            game.hold("Return")
            assert count(game.settle(f"menu_{row}"), colour, BESIDE_MENU) > off + 100
        game.hold("Escape")
        assert game.wait_for_exit() == 0
