"""Tests the title bar, its menus and its buttons with the pointer and the keyboard of a real screen."""

import pytest

from tests.support.messages import VK_ESCAPE, WM_KEYDOWN
from vantro_interface.chrome import CLOSE, FILE, FULLSCREEN, HELP, MAIN_WINDOW, MINIMIZE, SEARCH, VOLUME, Chrome
from vantro_interface.host import scripted
from vantro_interface.user import User

SCREEN = (1600, 900)
WS_MINIMIZE = 0x20000000
WS_EX_TOPMOST = 0x8

BAR = (70, 70, 95)
PRESSED = (55, 55, 80)
GREEN = (0, 200, 0)


@pytest.fixture
def chrome(screen_host, screen, tmp_path):
    """A host whose interface covers its video, like a real one."""
    user = User(screen)
    user.move(SCREEN[0] - 1, SCREEN[1] - 1)  # makes the pointer's place independent of earlier tests
    return Chrome(screen_host(glass=False, libraries=scripted("full")), user, screen, tmp_path)


# Menus.


def test_file_opens_its_menu_at_the_lower_left_corner_of_the_button_and_escape_closes_it(chrome):
    menu = chrome.open_menu(FILE)
    button = chrome.control(FILE)
    assert menu.rect[:2] == (button.rect[0], button.rect[3])
    chrome.user.key("Escape")
    chrome.client.poll(lambda: chrome.menus, lambda menus: not menus, "the end of the menu")


def test_settings_in_the_file_menu_sends_settings_requested(chrome):
    chrome.choose(FILE, "s")
    assert chrome.client.wait_for("settings_requested").arguments is None


def test_about_in_the_help_menu_sends_about_requested(chrome):
    chrome.choose(HELP, "a")
    assert chrome.client.wait_for("about_requested").arguments is None


def test_new_window_the_first_item_under_the_pointer_opens_a_second_window(chrome):
    left, top, _, _ = chrome.open_menu(FILE).rect
    chrome.user.click(left + 30, top + 10)
    chrome.client.wait_until(lambda: len(chrome.client.engines) == 2, "the second engine")
    chrome.client.poll(lambda: chrome.client.windows(MAIN_WINDOW), lambda windows: len(windows) == 2, "two windows")
    assert chrome.client.invoke("getWindowInfo", engine=2)["isMasterWindow"] is False


def test_exit_the_last_item_under_the_pointer_ends_the_process_with_0(chrome):
    left, _, _, bottom = chrome.open_menu(FILE).rect
    chrome.user.click(left + 30, bottom - 10)
    assert chrome.host.wait() == 0


def test_a_choice_two_submenus_deep_is_saved_and_loaded_at_the_next_start(chrome, screen_host):
    chrome.choose(FILE, "v", "h", "d")
    chrome.host.wait_for_log("SaveSettings: VLC Hardware Acceleration saved: dxva2")
    chrome.host.quit()
    screen_host(libraries=scripted("full")).wait_for_log("LoadSettings: VLC Hardware Acceleration loaded: dxva2")


def test_always_on_top_raises_the_overlay_and_a_second_choice_switches_it_off(chrome):
    # Wine does not set the style on a window that has a popup. The window is only placed right below the popup.
    chrome.choose(FILE, "t")
    chrome.host.wait_for_log("INFO Always on top enabled")
    chrome.client.poll(lambda: chrome.overlay.exstyle & WS_EX_TOPMOST, bool, "a topmost overlay")
    chrome.choose(FILE, "t")
    chrome.host.wait_for_log("INFO Always on top disabled")
    chrome.host.wait_for_log("SaveSettings: Always on top setting saved: disabled")


# Fullscreen.


def test_fullscreen_from_the_file_menu_fills_the_screen_and_escape_leaves_it(chrome):
    before = chrome.window.size
    chrome.choose(FILE, "f")
    chrome.wait_for_size(SCREEN)
    chrome.user.move(800, 10)
    chrome.wait_for_bar(True)
    chrome.click_caption()
    chrome.wait_for_focus(chrome.window.handle)
    chrome.user.key("Escape")
    chrome.wait_for_size(before)
    assert chrome.control(CLOSE).visible


def test_f11_on_the_window_fills_the_screen_and_gives_the_interface_the_keys(chrome):
    chrome.click_caption()
    chrome.wait_for_focus(chrome.window.handle)
    chrome.user.key("F11")
    chrome.wait_for_size(SCREEN)
    chrome.user.key("Escape")
    chrome.client.wait_until(
        lambda: (WM_KEYDOWN, VK_ESCAPE) in [(key.message, key.wparam) for key in chrome.client.inputs], "the key")
    assert chrome.window.size == SCREEN


def test_the_maximize_button_fills_the_screen_and_restores_the_window(chrome):
    before = chrome.window.size
    chrome.click(FULLSCREEN)
    chrome.wait_for_size(SCREEN)
    chrome.wait_for_bar(True)  # the pointer is still at the top
    chrome.click(FULLSCREEN)
    chrome.wait_for_size(before)


def test_the_bar_is_shown_while_the_pointer_is_at_the_top(chrome):
    chrome.choose(FILE, "f")
    chrome.wait_for_size(SCREEN)
    chrome.user.move(800, 400)
    chrome.wait_for_bar(False)
    assert chrome.overlay.rect == (0, 0, *SCREEN)
    chrome.user.move(800, 50)
    chrome.wait_for_bar(True)
    assert chrome.overlay.rect == (0, 30, *SCREEN)
    chrome.user.move(800, 51)
    chrome.wait_for_bar(False)
    assert chrome.overlay.rect == (0, 0, *SCREEN)


# The volume control.


def test_dragging_the_slider_sets_the_volume_and_shows_it_until_the_button_is_released(chrome):
    left, top, right, bottom = chrome.control(VOLUME).rect
    upper_left = (left + 24, top + 3, left + 40, top + 8)  # above the slope, where only the percentage can be
    chrome.user.press(left + 20, top + 10)
    chrome.host.wait_for_log("VLC volume set to: 25")
    chrome.user.move(left + 40, top + 10)
    chrome.host.wait_for_log("VLC volume set to: 50")
    chrome.client.poll(lambda: chrome.drawn_in(*upper_left), bool, "the percentage")
    chrome.wait_for_colour(left + 36, bottom - 4, GREEN)
    chrome.wait_for_colour(right - 8, bottom - 6, BAR)
    chrome.user.release()
    chrome.client.poll(lambda: chrome.drawn_in(*upper_left), lambda seen: not seen, "the end of the percentage")


def test_a_drag_beyond_the_ends_sets_0_and_100(chrome):
    left, top, right, _ = chrome.control(VOLUME).rect
    chrome.user.press(left + 40, top + 10)
    chrome.host.wait_for_log("VLC volume set to: 50")
    chrome.user.move(left - 200, top + 200)
    chrome.host.wait_for_log("VLC volume set to: 0")
    chrome.user.move(right + 60, top + 200)
    chrome.host.wait_for_log("VLC volume set to: 100")
    chrome.user.release()


# The search box.


def queries(client, mark):
    return [event.arguments for event in client.since(mark) if event.method == "search_query_changed"]


def test_typing_sends_the_last_text_once_and_clearing_it_sends_no_argument(chrome):
    mark = chrome.client.mark()
    chrome.click(SEARCH)
    chrome.wait_for_focus(chrome.control(SEARCH).handle)
    chrome.user.type("news")
    chrome.client.wait_for("search_query_changed", after=mark)
    chrome.user.key(*["BackSpace"] * 4)
    chrome.client.wait_for("search_query_changed", lambda event: event.arguments is None, after=mark)
    assert queries(chrome.client, mark) == ["news", None]


def test_f11_and_escape_do_nothing_in_the_search_box(chrome):
    before = chrome.window.size
    mark = chrome.client.mark()
    chrome.click(SEARCH)
    chrome.wait_for_focus(chrome.control(SEARCH).handle)
    chrome.user.key("F11", "Escape", "a")
    assert chrome.client.wait_for("search_query_changed", after=mark).arguments == "a"
    assert chrome.window.size == before


# The window's buttons and edges.


def test_a_pressed_button_is_darker_and_does_nothing_when_released_elsewhere(chrome):
    left, top, _, _ = chrome.control(CLOSE).rect
    chrome.user.press(left + 10, top + 5)
    chrome.wait_for_colour(left + 3, top + 3, PRESSED)
    chrome.user.move(left + 10, top + 200)
    chrome.wait_for_colour(left + 3, top + 3, BAR)
    chrome.user.release()
    chrome.client.settle()
    assert chrome.window.visible


def test_minimize_minimizes(chrome):
    chrome.click(MINIMIZE)
    chrome.client.poll(lambda: chrome.window.style & WS_MINIMIZE, bool, "a minimized window")


def test_the_close_button_ends_the_process_with_0(chrome):
    chrome.click(CLOSE)
    assert chrome.host.wait() == 0


def test_the_bar_moves_the_window_with_its_overlay(chrome):
    before = chrome.window.rect
    _, top, right, _ = chrome.control(HELP).rect
    chrome.drag((right + 60, top + 10), (right + 160, top + 70))
    moved = tuple(edge + by for edge, by in zip(before, (100, 60, 100, 60)))
    chrome.client.poll(lambda: chrome.window.rect, lambda rect: rect == moved, f"the window at {moved}")
    left, top, right, bottom = chrome.overlay.rect
    frame = 3  # the thick frame on each side
    assert (left, top, right, bottom) == (moved[0] + frame, moved[1] + frame + 30, moved[2] - frame, moved[3] - frame)


def test_the_lower_right_corner_makes_the_window_no_smaller_than_640_by_360(chrome):
    _, _, right, bottom = chrome.window.rect
    chrome.drag((right - 2, bottom - 2), (200, 200))  # drags the frame, because the overlay covers the rest of the edge
    chrome.wait_for_size((640, 360))
