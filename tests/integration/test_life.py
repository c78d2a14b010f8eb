"""Tests the life of the process from its start to its end."""

from tests.support.messages import VK_F11, WM_KEYDOWN


def test_a_start_opens_one_window_with_its_overlay_and_view(host):
    client = host().client
    (window,) = client.windows("VantroWindowClass")
    (overlay,) = client.windows("VantroFlutterOverlay")
    (view,) = client.windows("LoopbackEngineView")
    assert window.visible and overlay.visible and view.visible
    assert overlay.owner == window.handle
    assert view.parent == overlay.handle


def test_closing_the_only_window_ends_the_process_with_0(host):
    vantro = host()
    assert vantro.quit() == 0
    assert vantro.log[-1].endswith("Application terminated")


def test_every_answer_is_given_once_until_the_engines_are_gone(host):
    vantro = host()
    vantro.client.invoke("getPosition")
    vantro.quit()
    vantro.client.wait_closed()
    assert (vantro.client.engines, vantro.client.violations) == ([], [])


def test_a_second_launch_opens_a_second_window_and_ends_with_0(host):
    first = host()
    second = host(connect=False)
    assert second.wait() == 0
    first.client.wait_until(lambda: len(first.client.engines) == 2, "the second engine")
    first.client.poll(lambda: first.client.windows("VantroWindowClass"), lambda windows: len(windows) == 2,
                      "the second window")
    assert first.client.invoke("getWindowInfo", engine=1)["isMasterWindow"] is True
    assert first.client.invoke("getWindowInfo", engine=2)["isMasterWindow"] is False


def test_a_shipped_start_writes_no_log(host):
    vantro = host(log=False)
    assert vantro.quit() == 0
    assert not (vantro.folder / "vantro_debug.log").exists()


def test_a_key_on_the_overlay_reaches_the_view(host):
    client = host().client
    (overlay,) = client.windows("VantroFlutterOverlay")
    client.post(overlay.handle, WM_KEYDOWN, ord("A"), 1)
    client.wait_until(lambda: (WM_KEYDOWN, ord("A")) in [(key.message, key.wparam) for key in client.inputs], "the key")


def test_f11_on_the_overlay_enters_and_leaves_fullscreen(host):
    client = host().client
    (overlay,) = client.windows("VantroFlutterOverlay")
    (window,) = client.windows("VantroWindowClass")
    for expected in ((1024, 768), window.size):
        client.post(overlay.handle, WM_KEYDOWN, VK_F11, 1)
        client.poll(lambda: client.windows("VantroWindowClass")[0].size, lambda size: size == expected,
                    f"size {expected}")
