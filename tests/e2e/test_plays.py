"""Two plays in the real window: the first minute as it is shipped, and the map with the debug menu."""

from game import CELL, TILE, Game, Sprite

# At the shipped zoom, four thirds, a tile is 32 pixels wide, and so are the ship and the figure.
STEP = 32
SHIP = Sprite(STEP, "ships.png", 0, 64, 32, 32)
SHIP_LEFT = Sprite(STEP, "ships.png", 0, 32, 32, 32)
BOAT = Sprite(42, "ships.png", 0, 64, 32, 32)
FIGURE = Sprite(STEP, "link_raw.png", 91, 0, 16, 16)
ENEMY = Sprite(21, "enemies.png", 0, 0, 16, 16)
MARKER = Sprite(42, "compass.png", 0, 0, 128, 128)
ROSE = Sprite(100, "hud_compass.png", 0, 0, 100, 100)
START = (534, 429)  # where the ship lies in the window at first

# The middle of a cell that holds land, as two of the cells around it do.
AMONG_ISLANDS = tuple(cell * CELL + CELL // 2 + TILE // 2 for cell in (5, 4))

BLUE, GREEN, GREY, LIGHT_GREY = (0, 0, 255), (0, 255, 0), (128, 128, 128), (200, 200, 200)
ORANGE, RED, WHITE, YELLOW = (255, 128, 0), (255, 0, 0), (255, 255, 255), (255, 255, 0)

PANEL = (128, 72, 1152, 648)  # the map's left, top, right and bottom
BESIDE_MENU = (301, 0, 1101, 720)  # where overlays show, left of the radar

# Row of the menu, name, a colour that the overlay brings and how many pixels of it at least.
OVERLAYS = [(1, "cell_border", RED, 600), (2, "dungeon_rooms", YELLOW, 100), (3, "spanning_tree", GREEN, 100),
            (4, "hallways", RED, 100), (6, "player_info", WHITE, 100), (8, "loaded_assets", WHITE, 100)]


def count(picture, colour, box=PANEL):
    return dict((value, number) for number, value in picture.crop(box).getcolors(1 << 20)).get(colour, 0)


def map_is_open(picture):
    return picture.getpixel((PANEL[0] + 1, PANEL[1] + 1)) == BLUE


def player_mark(picture):
    """The middle of the red cross that marks the player on the map."""
    places = [divmod(index, PANEL[2] - PANEL[0])
              for index, colour in enumerate(picture.crop(PANEL).getdata()) if colour == RED]
    assert len(places) == 13, "one cross is shown"
    rows, columns = zip(*places)
    return PANEL[0] + sum(columns) // 13, PANEL[1] + sum(rows) // 13


def selected_row(picture):
    """The menu's selected row, counted from 1; None when the menu is hidden."""
    fills = [picture.getpixel((290, 22 * row + 18)) for row in range(1, 10)]
    shown = fills.count(LIGHT_GREY) == 1 and fills.count(GREY) == 8
    return fills.index(LIGHT_GREY) + 1 if shown else None


def label(picture, row):
    return picture.crop((33, 22 * row + 1, 291, 22 * row + 19))


def select(game, row):
    """Goes to a row of the menu and gives the picture that shows it."""
    while (at := selected_row(picture := game.settle())) != row:
        game.hold("s" if at < row else "w")
    return picture


def test_from_the_shipped_start_ashore_and_back(folder):
    with Game(folder) as game:
        game.wait(lambda picture: SHIP.is_at(picture, START), "the ship lies off an island")
        assert game.shape() == (100, 100, 1280, 720)
        first = game.settle("shipped_start")
        for sprite, place in ((SHIP, START), (ENEMY, (853, 493)), (ENEMY, (246, 461)), (MARKER, (789, 365))):
            assert sprite.is_at(first, place)
        assert 0.8 < ROSE.likeness(first, (1220, 60)) < 1.0, "ten pixels from the corner, with islands on it"

        game.wait(lambda picture: FIGURE.seek(picture, START[1]), "a figure walks ashore", "d")
        ashore = game.settle("ashore")
        figure, boat = FIGURE.seek(ashore, START[1]), BOAT.seek(ashore, START[1])
        assert figure > boat and (figure - boat) % STEP == 0, "the boat stays some tiles behind"
        game.wait(lambda picture: SHIP_LEFT.seek(picture, START[1]), "the figure boards the boat", "a")
        aboard = game.settle("aboard_again")
        assert BOAT.seek(aboard, START[1]) is None, "the boat is the ship again"
        game.close_window()
        assert game.wait_for_exit() == 0
        assert game.output() == "", "every image and the typeface were found"


def test_map_and_menu(folder):
    with Game(folder, start=AMONG_ISLANDS, zoom=0.05) as game:
        game.settle()
        see_the_map(game)
        game.hold("grave")
        game.wait(lambda picture: selected_row(picture) == 1, "the menu is shown")
        select(game, 9)
        game.hold("Return")
        game.wait(lambda picture: count(picture, ORANGE) >= 16, "compass points are shown")
        game.hold("BackSpace")
        game.wait(lambda picture: not map_is_open(picture), "the map is closed")
        for row, name, colour, least in OVERLAYS:
            switch(game, row, name, colour, least)
        game.hold("grave")
        game.wait(lambda picture: selected_row(picture) is None, "the menu is hidden")
        game.hold("Escape")
        assert game.wait_for_exit() == 0


def see_the_map(game):
    game.hold("BackSpace")
    game.wait(map_is_open, "the map is open")
    opened = game.settle("map")
    assert opened.getpixel((640, 360)) == RED, "the player is at the centre"
    assert opened.getpixel((636, 356)) == GREEN, "the player's cell is marked"
    assert count(opened, GREEN) > 3 * 81 and count(opened, WHITE) > 50, "and others with their labels"
    game.hold("Right Up", 0.3)
    panned = game.settle("map_panned")
    x, y = player_mark(panned)
    assert panned.getpixel((640, 360)) == YELLOW and x < 640 and y > 360, "the player has gone left and down"
    game.hold("q", 0.3)
    assert count(game.settle("map_far"), GREEN) > count(opened, GREEN), "more cells have come into view"
    for _ in range(2):  # closed and opened, it shows the player again
        game.hold("BackSpace")
        game.settle()
    game.wait(lambda picture: picture.getpixel((640, 360)) == RED, "the map is at the player again")
    game.wait(lambda picture: count(picture, YELLOW) > 500, "hallways are shown", "e")
    assert count(game.settle("map_detail"), ORANGE) == 0


def switch(game, row, name, colour, least):
    """Switches an overlay on and off again."""
    off = select(game, row)

    def shown(picture):
        return count(picture, colour, BESIDE_MENU) >= count(off, colour, BESIDE_MENU) + least

    game.hold("Return")
    on = game.keep(game.wait(shown, f"the overlay {name} is on"), f"menu_{name}")
    assert (label(on, row) == label(off, row)) == (row == 8), "all but the list's button change their labels"
    game.hold("Return")
    game.wait(lambda picture: not shown(picture) and label(picture, row) == label(off, row), f"{name} is off")
