"""The title bar of a host's window, and a user who operates it, for tests and pictures of what a viewer sees.

Every wait asks the host or the screen until the condition holds.
"""

from .display import region_colours
from .user import centre

FILE, HELP, SEARCH, VOLUME = 40010, 40011, 104, 1001
CLOSE, FULLSCREEN, MINIMIZE = 999, 998, 997

MAIN_WINDOW = "VantroWindowClass"
OVERLAY = "VantroFlutterOverlay"
MENU = "#32768"


class Chrome:
    """The newest host's first window, read at each access, and a user who operates it."""

    def __init__(self, host, user, display, folder):
        self.host, self.client, self.user = host, host.client, user
        self._display, self._folder = display, folder
        self._shift = 6

    @property
    def window(self):
        """The main window of the first interface. Later windows are above it."""
        return self.client.windows(MAIN_WINDOW)[-1]

    @property
    def overlay(self):
        (overlay,) = self.client.windows(OVERLAY)
        return overlay

    @property
    def menus(self):
        return self.client.windows(MENU)

    def control(self, number):
        window = self.window.handle
        (control,) = [found for found in self.client.windows() if found.id == number and found.parent == window]
        return control

    def click(self, number):
        """Clicks beside the place of the previous click, so that two clicks are never a double click."""
        x, y = centre(self.control(number))
        self._shift = -self._shift
        self.user.click(x + self._shift, y)

    def drag(self, start, end):
        """Drags the window by its bar or frame. The pointer moves when the window has captured it.

        The button is released after the window has moved. An X server reports the pointer relative to the window. If
        the button were released earlier, Wine would add the movement twice."""
        before = self.window.rect
        self.user.press(*start)
        self.client.poll(lambda: self.client.focus()["capture"], lambda seen: seen == self.window.handle, "the capture")
        self.user.move(*end)
        self.client.poll(lambda: self.window.rect, lambda rect: rect != before, "a moved window")
        self.user.release()

    def click_caption(self):
        """Clicks on the free strip right of Help."""
        _, top, right, bottom = self.control(HELP).rect
        self.user.click(right + 60, (top + bottom) // 2)

    def open_menu(self, number):
        self.click(number)
        return self.client.poll(lambda: self.menus, lambda menus: len(menus) == 1, "the menu")[0]

    def choose(self, number, *keys):
        """Opens a menu of the bar, then presses the given keys one by one."""
        self.open_menu(number)
        for count, key in enumerate(keys[:-1], 2):
            self.user.key(key)
            self.client.poll(lambda: self.menus, lambda menus: len(menus) == count, "the submenu")
        self.user.key(keys[-1])
        self.client.poll(lambda: self.menus, lambda menus: not menus, "the end of the menu")

    def wait_for_size(self, size):
        self.client.poll(lambda: self.window.size, lambda seen: seen == size, f"size {size}")

    def wait_for_bar(self, visible):
        """Waits until the fullscreen controls are visible, or hidden."""
        self.client.poll(lambda: self.control(CLOSE).visible, lambda seen: seen is visible, f"controls: {visible}")

    def wait_for_focus(self, handle):
        self.client.poll(lambda: self.client.focus()["focus"], lambda seen: seen == handle, "the focus")

    def colour(self, x, y):
        """Returns the colour of four pixels of the screen."""
        return self._look(x, y, x + 2, y + 2)[1]

    def wait_for_colour(self, x, y, colour):
        self.client.poll(lambda: self.colour(x, y), lambda seen: seen == colour, f"colour {colour}")

    def drawn_in(self, left, top, right, bottom):
        """Returns whether a part of the screen has more than one colour."""
        return self._look(left, top, right, bottom)[0] > 1

    def _look(self, left, top, right, bottom):
        picture = self._display.screenshot(self._folder / "screen.png", (left, top, right, bottom))
        return region_colours(picture, (0, 0, right - left, bottom - top))
