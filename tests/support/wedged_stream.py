"""A stream whose pictures stop early while its sound continues."""

import subprocess

HOPELESS = "hopeless"


def make_hopeless(folder):
    """Makes the folder with a stream of 30 s, hopeless.ts, whose pictures stop after 2 s."""
    folder.mkdir()
    picture, sound = "testsrc=size=640x360:rate=25:duration=2", "sine=frequency=440:sample_rate=48000:duration=30"
    h264 = ["-c:v", "libx264", "-preset", "ultrafast", "-tune", "zerolatency", "-pix_fmt", "yuv420p", "-g", "25"]
    subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "lavfi", "-i", picture, "-f", "lavfi",
                    "-i", sound, *h264, "-c:a", "aac", "-f", "mpegts", "-muxdelay", "0.1", folder / f"{HOPELESS}.ts"],
                   check=True, stdin=subprocess.DEVNULL)
    return folder
