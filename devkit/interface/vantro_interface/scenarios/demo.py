"""The demonstration: the built host plays real streams and is controlled over its real channels.

Without addresses it uses generated streams. With addresses it plays each of them for a while.
"""

import argparse
import pathlib
import shutil
import subprocess
import sys

from ..client import THUMBNAIL_CHANNEL, ConnectionLost, WaitTimeout
from ..display import Display, region_colours
from ..host import BUILD, ROOT, Host, Prefix, player_libraries
from .reporter import Reporter, StepFailed

sys.path.append(str(ROOT))
from tests.end_to_end.stream_server import StreamServer  # noqa: E402

START = 30.0  # time limit in seconds for a stream to begin playing
LISTEN = 4.0  # seconds for which an address is shown
TITLE_BAR = (70, 70, 95)  # its colour


def video_area(client):
    """Returns the video's rectangle on the screen: the overlay's rectangle without the strip that holds the engine's
    badge."""
    window = [window for window in client.windows("VantroFlutterOverlay") if window.visible][0]
    left, top, right, bottom = window.rect
    return left + 40, top + 40, right - 40, bottom - 40


def colour_name(path, rect):
    """Returns the plain colour of a part of a picture, or "none" if no stream has that colour."""
    _, mean = region_colours(path, rect)
    return {(1, 0, 0): "red", (0, 1, 0): "green", (0, 0, 1): "blue", (1, 1, 0): "yellow"}.get(
        tuple(int(part > 90) for part in mean), "none")


class Demo:
    def __init__(self, reporter, out, display, prefix, host):
        self.reporter, self.out, self.display, self.prefix, self.host = reporter, out, display, prefix, host
        self.pictures = []

    @property
    def client(self):
        return self.host.client

    # Helpers of several steps.

    def call(self, method, arguments=None, **options):
        self.reporter.expect(self.client, method, arguments, **options)

    def play(self, url, **options):
        """Loads a stream and waits until it plays and its time rises."""
        mark = self.client.mark()
        self.call("setMedia", {"url": url, "networkCacheMs": 500, **options})
        outcomes = ("onPlaying", "onError")
        self.client.wait_until(lambda: any(event.method in outcomes for event in self.client.events[mark:]),
                               "onPlaying", START)
        for event in self.client.since(mark):
            if event.method == "onError":
                raise StepFailed(f"{url} can't be played: the host reported onError ({event.arguments}). "
                                  "Does the address answer, and is there a stream?")
        self.rising_time(mark)

    def rising_time(self, mark, milliseconds=1000):
        """Waits until the time has risen by that much. Late events of the previous stream do not count."""

        def risen():
            lowest = None
            for event in self.client.events[mark:]:
                if event.method == "onTimeChanged":
                    lowest = min(int(event.arguments), lowest or int(event.arguments))
                    if int(event.arguments) >= lowest + milliseconds:
                        return True
            return False

        self.client.wait_until(risen, f"a time that rises by {milliseconds} ms", START)

    def picture(self, name, colours=16):
        """Saves a screenshot and checks that there is a picture in the video area."""

        def look():
            path = self.display.screenshot(self.out / f"{name}.png")
            return region_colours(path, video_area(self.client))[0]

        seen = self.client.poll(look, lambda count: count >= colours, f"a picture in the video area ({name})")
        self.reporter.line(f"   screenshot {name}.png: {seen} colours in the video area")
        self.pictures.append(f"{name}.png")

    def filled_picture(self, name):
        """Saves a screenshot in which the picture reaches the lower right corner, where it is never black."""

        def look():
            path = self.display.screenshot(self.out / f"{name}.png")
            _, _, right, bottom = video_area(self.client)
            return max(region_colours(path, (right - 60, bottom - 60, right, bottom))[1])

        self.client.poll(look, lambda brightest: brightest > 60, "a picture over the whole screen", pause=0.3)
        self.reporter.line(f"   screenshot {name}.png: the picture fills the screen")
        self.pictures.append(f"{name}.png")

    def yellow_picture(self, name):
        """Saves a screenshot in which the newest window shows the yellow stream."""

        def look():
            path = self.display.screenshot(self.out / f"{name}.png")
            return colour_name(path, video_area(self.client))

        self.client.poll(look, lambda colour: colour == "yellow", "yellow in the second window", pause=0.3)
        self.reporter.line(f"   screenshot {name}.png: yellow in the second window, the test picture in the first")
        self.pictures.append(f"{name}.png")

    # The steps.

    def show_playback(self, server):
        with self.reporter.step("Playing a stream over HTTP"):
            self.play(server.url("test.ts"), title="Test picture")
            self.picture("1-playing")
        with self.reporter.step("Pausing and resuming"):
            mark = self.client.mark()
            self.call("pause")
            self.client.wait_for("onPaused", after=mark)
            self.call("isPlaying", reply=False)
            mark = self.client.mark()
            self.call("play")
            self.rising_time(mark, 500)

    def show_seeking(self, server):
        with self.reporter.step("Seeking and tracks in a file"):
            self.play(server.url("film.mp4"), title="Film", isLiveStream=False)
            self.reporter.invoke(self.client, "getDuration")
            mark = self.client.mark()
            self.call("seek", {"positionMs": 30000})
            self.client.wait_for("onTimeChanged", lambda event: int(event.arguments) >= 29000, after=mark)
            self.reporter.invoke(self.client, "getPosition")
            mark = self.client.mark()
            self.call("getTracksInfo")
            self.client.wait_for("spuTracks", after=mark)
            self.client.wait_for("audioTracks", after=mark)
            self.picture("2-seeked")

    def show_grid(self, server):
        with self.reporter.step("A grid of four"):
            self.play(server.url("test.ts"), title="First tile")
            mark = self.client.mark()
            self.call("enableMultiView")
            self.client.wait_for("showMultiViewOverlay", after=mark)
            for name in ("red", "green", "blue"):
                self.call("mvAddStream", {"url": server.url(f"{name}.ts"), "name": name})
            self.call("mvSetActiveIndex", {"index": 2})
            self.tile_pictures()
            mark = self.client.mark()
            self.call("disableMultiView")
            self.client.wait_for("hideMultiViewOverlay", after=mark)
            # The end of the grid leaves the video over the title bar.
            self.call("resizeVLCFull")
            self.title_bar_picture("5-after-grid")

    def title_bar_picture(self, name):
        """Saves a screenshot in which the title bar is above the video."""

        def look():
            path = self.display.screenshot(self.out / f"{name}.png")
            left, top, right, _ = self.client.windows("VantroWindowClass")[0].rect
            _, free = region_colours(path, (left + 200, top + 6, left + 215, top + 24))
            parts = {"File": (left + 95, top + 8, left + 125, top + 26),
                     "the close button": (right - 32, top + 6, right - 10, top + 26)}
            missing = [part for part, rect in parts.items() if region_colours(path, rect)[0] < 2]
            if region_colours(path, video_area(self.client))[0] < 16:
                missing.append("the picture")
            return missing if all(abs(a - b) < 12 for a, b in zip(free, TITLE_BAR)) else ["the bar", *missing]

        self.client.poll(look, lambda missing: not missing, "the title bar above the video", pause=0.3)
        self.reporter.line(f"   screenshot {name}.png: the title bar is back")
        self.pictures.append(f"{name}.png")

    def tile_pictures(self):
        """Waits until the three plain tiles show their colours. Tiles are in row order; the test picture is the
        first."""

        def show():
            path = self.display.screenshot(self.out / "4-grid.png")
            left, top, right, bottom = video_area(self.client)
            middle, half = (left + right) // 2, (top + bottom) // 2
            corners = {"red": (right - 90, top + 40), "green": (left + 40, bottom - 90),
                       "blue": (middle + 90, half + 90)}
            return {name: colour_name(path, (x, y, x + 50, y + 50)) for name, (x, y) in corners.items()}

        self.client.poll(show, lambda seen: all(name == colour for name, colour in seen.items()),
                         "red, green and blue in their tiles", pause=0.3)
        self.reporter.line("   screenshot 4-grid.png: red, green, blue and the test picture in their tiles")
        self.pictures.append("4-grid.png")

    def show_fullscreen(self, server):
        with self.reporter.step("Entering and leaving fullscreen"):
            self.play(server.url("test.ts"))
            before = self.client.windows("VantroWindowClass")[0].size
            self.call("toggleFullscreen")
            self.client.poll(lambda: self.client.windows("VantroWindowClass")[0].size, lambda size: size > before,
                             "a window as large as the screen")
            self.filled_picture("3-fullscreen")
            self.call("toggleFullscreen")
            self.client.poll(lambda: self.client.windows("VantroWindowClass")[0].size, lambda size: size == before,
                             "the window's former size")

    def show_second_window(self, server):
        with self.reporter.step("A second window in the same process"):
            second = Host(self.prefix, self.out / "second-launch", libraries=player_libraries(), glass=True)
            second.start(connect=False)
            code = second.wait()
            self.reporter.line(f"   the second launch ended with {code}")
            self.client.wait_until(lambda: len(self.client.engines) == 2, "the second engine")
            engine = self.client.engines[-1]
            self.client.poll(lambda: self.client.windows("VantroWindowClass"), lambda windows: len(windows) == 2,
                             "the second window")
            self.reporter.invoke(self.client, "getWindowInfo", engine=engine)
            self.call("setMedia", {"url": server.url("yellow.ts")}, engine=engine)
            self.client.wait_for("onPlaying", engine=engine, timeout=START)
            self.yellow_picture("6-two-windows")

    def show_thumbnail(self, server):
        with self.reporter.step("A thumbnail of a moment in a film"):
            self.call("initialize", channel=THUMBNAIL_CHANNEL)
            request = {"mediaId": "demo", "proxyUrl": server.url("film.mp4"), "timeSeconds": 20.0, "width": 320,
                       "height": 180}
            reply = self.reporter.invoke(self.client, "getFrame", request, channel=THUMBNAIL_CHANNEL, timeout=30)
            if not reply.get("success"):
                raise StepFailed(f"no thumbnail: {reply.get('error')}")
            path = self.out / "7-thumbnail.png"
            path.write_bytes(reply["bytes"])
            seen, _ = region_colours(path, (0, 0, request["width"], request["height"]))
            self.reporter.line(f"   thumbnail {path.name}: {seen} colours")
            if seen < 16:
                raise StepFailed("the thumbnail does not show the film")
            self.pictures.append(path.name)
            self.call("dispose", reply=None, channel=THUMBNAIL_CHANNEL)

    def show_addresses(self, urls):
        for number, url in enumerate(urls, 1):
            with self.reporter.step(f"Playing {url}"):
                self.play(url)
                mark = self.client.mark()
                self.rising_time(mark, int(LISTEN * 1000))
                self.reporter.invoke(self.client, "getTracksInfo")
                self.picture(f"address-{number}")

    def close_windows(self):
        with self.reporter.step("Closing the windows"):
            code = self.host.quit()
            self.reporter.line(f"   the process ended with {code}")
            if code != 0:
                raise StepFailed(f"the host ended with {code:#x}, not 0")
            if self.client.violations:
                raise StepFailed(f"the host did not answer every message once: {self.client.violations}")


def run_steps(demo, urls, stay):
    if urls:
        demo.show_addresses(urls)
    else:
        streams = ROOT / "out/streams"
        with demo.reporter.step("Making the test streams"):
            subprocess.run([ROOT / "devkit/streams/make-streams", streams], check=True, stdin=subprocess.DEVNULL)
        with StreamServer(streams) as server:
            # Fullscreen comes before the grid, because the scale that the end of the grid sets is kept when the window
            # grows.
            for step in (demo.show_playback, demo.show_seeking, demo.show_fullscreen, demo.show_grid,
                         demo.show_second_window, demo.show_thumbnail):
                step(server)
            if stay:
                wait_for_the_user(demo, server)
    if not stay:
        demo.close_windows()
    elif urls:
        wait_for_the_user(demo, None)


def wait_for_the_user(demo, server):
    """Leaves the host running for ./dev console until the user presses Ctrl-C."""
    demo.client.close()
    demo.reporter.line("the host keeps running; ./dev console in another terminal talks to it. Ctrl-C ends it.")
    if server:
        demo.reporter.line(f"streams for it: {server.url('test.ts')} {server.url('film.mp4')}")
    try:
        demo.host.process.wait()
    except KeyboardInterrupt:
        pass


def summarise(reporter, out, pictures, failure):
    lines = [f"{'failed' if failure else 'passed'}: {reporter.requests} requests, {reporter.events} events"]
    lines += [f"  {seconds:6.1f} s  {title}" for title, seconds in reporter.steps]
    lines += [f"  picture {out / picture}" for picture in pictures]
    if failure:
        lines.append(f"  reason: {failure}")
    (out / "summary.txt").write_text("\n".join(lines) + "\n")
    print("\n".join(lines))


def main():
    parser = argparse.ArgumentParser(prog="./dev demo", description=__doc__)
    parser.add_argument("urls", nargs="*", metavar="URL", help="addresses to play instead of the generated streams")
    parser.add_argument("--out", type=pathlib.Path, default=ROOT / "out/demo", help="where pictures and traces go")
    parser.add_argument("--stay", action="store_true", help="leave the host running for ./dev console")
    arguments = parser.parse_args()
    out = arguments.out.absolute()
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    reporter = Reporter(out / "trace.txt")
    pictures, failure = [], None
    try:
        with Display() as display, Prefix(ROOT / "out/wine/demo", "x11", display.name) as prefix, \
                Host(prefix, out / "host", libraries=player_libraries(), glass=True,
                     on_event=reporter.on_event) as host:
            with reporter.step(f"Starting {BUILD / 'vantro.exe'}"):
                host.start()
                reporter.line(f"   process {host.client.hello['pid']} on display {display.name}")
            demo = Demo(reporter, out, display, prefix, host)
            pictures = demo.pictures
            try:
                run_steps(demo, arguments.urls, arguments.stay)
            except (StepFailed, WaitTimeout, ConnectionLost) as error:
                failure = str(error)
                display.screenshot(out / "failure.png")
    except (RuntimeError, WaitTimeout) as error:
        failure = str(error)
    reporter.close()
    summarise(reporter, out, pictures, failure)
    return 1 if failure else 0


if __name__ == "__main__":
    sys.exit(main())
