"""Takes the pictures of docs/pictures: python3 -m vantro_interface.scenarios.pictures [FOLDER]

It does not take three-windows.png, which tests/end_to_end/test_windows.py makes.

Look at the pictures before you commit them.
"""

import os
import pathlib
import subprocess
import sys
import tempfile

from ..chrome import CLOSE, FILE, HELP, VOLUME, Chrome
from ..display import Display, region_colours
from ..host import ROOT, Host, Prefix, player_libraries
from ..user import User, centre

sys.path.append(str(ROOT))
from tests.end_to_end.grid import ScreenPart, cells, client_area  # noqa: E402
from tests.end_to_end.stream_server import StreamServer  # noqa: E402

WIDTHS = {640: "640x480", 1280: "1280x720", 1920: "1920x1080"}
BAR_HEIGHT = 36  # with the frame
MARGIN = 12
VIDEO = 500  # a picture that contains the video has more colours than this


class Session:
    """A host that plays the test picture on a desktop of the given size."""

    def __init__(self, desktop, server, scratch):
        os.environ["VANTRO_DESKTOP"] = desktop
        self.display = Display(use_existing=False)
        self.prefix = Prefix(ROOT / "out/wine" / f"pictures-{os.getpid()}", "x11", self.display.name)
        self.host = Host(self.prefix, scratch / desktop, libraries=player_libraries(), glass=True).start()
        self.user = User(self.display)
        self.chrome = Chrome(self.host, self.user, self.display, scratch)
        self.client = self.host.client
        self.client.invoke("setMedia", {"url": server.url("test.ts"), "networkCacheMs": 500})
        self.client.wait_for("onPlaying")

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        for part in (self.host, self.prefix, self.display):
            part.close()

    def set_width(self, width):
        left, top, right, bottom = self.chrome.window.rect
        if right - left == width:
            return
        self.chrome.drag((right - 2, (top + bottom) // 2), (left + width - 2, (top + bottom) // 2))
        self.client.poll(lambda: self.chrome.window.size[0], lambda seen: seen == width, f"a width of {width}")

    def shoot(self, path, rect, colours=2):
        """Saves a part of the screen once it has at least as many colours."""

        def look():
            self.display.screenshot(path, rect)
            return region_colours(path, (0, 0, rect[2] - rect[0], rect[3] - rect[1]))[0]

        self.client.poll(look, lambda seen: seen >= colours, f"{path.name} with {colours} colours")
        print(path, flush=True)


def take_bar(session, folder, width):
    chrome, user = session.chrome, session.user
    session.set_width(width)
    bar = (0, 0, width, BAR_HEIGHT)
    close = chrome.control(CLOSE).rect
    user.move(width // 2, 200)
    session.shoot(folder / f"title-bar-{width}.png", bar)
    user.press(*centre(chrome.control(CLOSE)))
    chrome.wait_for_colour(close[0] + 3, close[1] + 3, (55, 55, 80))
    session.shoot(folder / f"title-bar-pressed-{width}.png", bar)
    user.move(width // 2, 200)
    user.release()
    volume = chrome.control(VOLUME).rect
    user.press((volume[0] + volume[2]) // 2, volume[1] + 10)
    chrome.wait_for_colour(volume[2] - 8, volume[3] - 6, (70, 70, 95))
    session.shoot(folder / f"volume-{width}.png", bar)
    user.move(volume[2] + 1, volume[1] + 10)
    user.release()


def take_menus(session, folder, width):
    chrome, user = session.chrome, session.user
    chrome.open_menu(FILE)
    for count, key in enumerate(("v", "h"), 2):
        user.key(key)
        session.client.poll(lambda: len(chrome.menus), lambda seen: seen == count, "the submenu")
    reach = [menu.rect for menu in chrome.menus]
    area = (0, 0, max(rect[2] for rect in reach) + MARGIN, max(rect[3] for rect in reach) + MARGIN)
    session.shoot(folder / f"menu-file-{width}.png", area, colours=40)
    while chrome.menus:
        count = len(chrome.menus)
        user.key("Escape")
        session.client.poll(lambda: len(chrome.menus), lambda seen: seen < count, "the end of a menu")
    menu = chrome.open_menu(HELP).rect
    session.shoot(folder / f"menu-help-{width}.png", (0, 0, menu[2] + MARGIN, menu[3] + MARGIN), colours=40)
    user.key("Escape")
    session.client.poll(lambda: chrome.menus, lambda seen: not seen, "the end of the menu")


def take_fullscreen(session, folder, width):
    chrome, user = session.chrome, session.user
    session.client.invoke("toggleFullscreen")
    session.client.poll(lambda: chrome.window.size[0], lambda seen: seen == width, "fullscreen")
    user.move(width // 2, 10)
    chrome.wait_for_bar(True)
    session.shoot(folder / f"fullscreen-{width}.png", (0, 0, width, 120), colours=VIDEO)


def take_streams(session, folder, server):
    """Takes the single view and grids of one to five tiles, each as soon as every plain tile shows its colour."""
    client, names = session.client, ("test picture", "red", "green", "blue", "yellow")
    area = session.chrome.window.rect
    session.shoot(folder / "single-view.png", area, colours=VIDEO)
    client.invoke("enableMultiView")
    for count, name in enumerate(names, 1):
        if count > 1:
            client.invoke("mvAddStream", {"url": server.url(f"{name}.ts"), "name": name})
        path = folder / f"grid-{count}.png"
        # The fifth tile covers the cell of the fourth.
        shown = names[:3] + names[4:] if count == 5 else names[:count]

        def wrong_tiles():
            part = ScreenPart(session.display, path, client_area(client))
            middles = [((left + right) // 2, (top + bottom) // 2)
                       for left, top, right, bottom in cells(len(shown), part.width, part.height)]
            return [name for name, middle in zip(shown[1:], middles[1:]) if part.colour(*middle) != name]

        client.poll(wrong_tiles, lambda wrong: not wrong, f"the colours of {count} tiles")
        print(path, flush=True)


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "docs/pictures")
    folder.mkdir(parents=True, exist_ok=True)
    streams = ROOT / "out/streams"
    subprocess.run([ROOT / "devkit/streams/make-streams", streams], check=True, stdin=subprocess.DEVNULL)
    with tempfile.TemporaryDirectory() as scratch, StreamServer(streams) as server:
        with Session(WIDTHS[1920], server, pathlib.Path(scratch)) as session:
            for width in WIDTHS:
                take_bar(session, folder, width)
                take_menus(session, folder, width)
            take_fullscreen(session, folder, 1920)
        with Session(WIDTHS[1920], server, pathlib.Path(scratch)) as session:
            take_streams(session, folder, server)
        for width in (640, 1280):
            with Session(WIDTHS[width], server, pathlib.Path(scratch)) as session:
                take_fullscreen(session, folder, width)


if __name__ == "__main__":
    main()
