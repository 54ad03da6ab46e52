#!/usr/bin/env python3
"""Has ffmpeg, GStreamer and a browser show the clips that kxscenes cuts: each begins and ends with its scene's pictures.

exact-clips.py PROGRAM
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

from browser import Browser
from expectations import Expectations

FRAMES = 120
CUTS = [0, 30, 70, 101]
X264 = "-c:v libx264 -preset veryfast -bf 3 -g 24 -x264-params scenecut=0:open-gop="
X265 = "-c:v libx265 -preset ultrafast -x265-params log-level=error:keyint=24:min-keyint=24:scenecut=0:open-gop="
FILMS = [  # file, its encoding, how it is cut
    ("closed.mp4", X264 + "0 -c:a aac", ""),
    ("open.mp4", X264 + "1 -c:a aac", ""),
    ("open.mov", X264 + "1 -c:a pcm_s16le", ""),
    ("hevc.mp4", X265 + "1 -c:a aac", ""),
    ("hevc.mov", X265 + "0 -c:a aac", ""),
    ("mpeg2.mp4", "-c:v mpeg2video -g 12 -bf 2 -sc_threshold 1000000000 -b:v 8M -c:a aac", ""),
    ("prores.mov", "-c:v prores_ks -c:a pcm_s16le", ""),
    ("encoded.mkv", X264 + "1 -c:a aac", "--split-encode libx264:qp=0:preset=ultrafast"),
]
NOISE = "testsrc2=s=320x240:r=25,noise=alls=20:allf=t"
GRAY = "color=s=160x120:r=25,geq=lum=16+1.8*N:cb=128:cr=128"  # a picture tells its number

PAGE = """<video muted></video><script>
const video = document.querySelector('video'), told = [];
const canvas = new OffscreenCanvas(160, 120).getContext('2d', {willReadFrequently: true});
const number = () => {
    canvas.drawImage(video, 0, 0);
    return Math.round(canvas.getImageData(80, 60, 1, 1).data[0] * 219 / 255 / 1.8);
};
const event = name => new Promise(done => video.addEventListener(name, done, {once: true}));
const show = async time => {
    const shown = event('seeked');
    const presented = new Promise(done => video.requestVideoFrameCallback(done));
    video.currentTime = time;
    await shown;
    await presented;
    return number();
};
const showAll = async clips => {
    for (const clip of clips) {
        const ready = event('loadeddata');
        video.src = clip;
        await ready;
        const length = video.duration;
        told.push(`${await show(0.001)}-${await show(length - 0.02)}/${length.toFixed(2)}`);
    }
    return told.join(' ');
};
</script>"""


def run(*command: object) -> str:
    return subprocess.run(
        [str(word) for word in command], check=True, capture_output=True, text=True, timeout=120).stdout


def make(film: pathlib.Path, pictures: str, encoding: str) -> None:
    run("ffmpeg", "-v", "error", "-f", "lavfi", "-i", pictures, "-f", "lavfi", "-i", "anoisesrc=r=48000:seed=7", "-t",
        FRAMES / 25, "-pix_fmt", "yuv420p" if film.stem != "prores" else "yuv422p10le", *encoding.split(), film)


def by_ffmpeg(file: pathlib.Path) -> list[str]:
    table = run("ffmpeg", "-v", "error", "-i", file, "-map", "0:v", "-vsync", "passthrough", "-f", "framemd5", "-")
    return [line.split()[-1] for line in table.splitlines() if line[0] != "#"]


def by_gstreamer(file: pathlib.Path) -> list[str]:
    told = run("gst-launch-1.0", "-q", "filesrc", f"location={file}", "!", "decodebin", "!", "video/x-raw", "!",
               "checksumsink", "hash=md5", "sync=false")
    return [line.split()[-1] for line in told.splitlines() if re.fullmatch(r"[\d:.]+ [0-9a-f]{32}", line.strip())]


def cut(program: pathlib.Path, film: pathlib.Path, options: str) -> list[pathlib.Path]:
    folder = film.parent / ("clips of " + film.name)
    marks = [word for mark in CUTS[1:] for word in ("--mark", mark)]
    run(program, "--no-config", "--method", "manual", *marks, "--split", folder, *options.split(), film)
    return sorted(folder.iterdir())


def browse(clips: list[pathlib.Path], folder: pathlib.Path) -> str:
    page = folder / "page.html"
    page.write_text(PAGE)
    with Browser("--allow-file-access-from-files") as browser:
        browser.open(page)
        return browser.run(f"showAll({json.dumps([clip.as_uri() for clip in clips])})")


def main() -> int:
    program = pathlib.Path(sys.argv[1]).resolve()
    ends = [*CUTS[1:], FRAMES]
    expect = Expectations("exact-clips")

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for file, encoding, options in FILMS:
            film = folder / file
            make(film, NOISE, encoding)
            clips = cut(program, film, options)
            for show in (by_ffmpeg, by_gstreamer):
                shown = show(film)
                expect(f"{file} {show.__name__}", len(shown), FRAMES)
                for clip, begin, end in zip(clips, CUTS, ends, strict=True):
                    found = [shown.index(each) if each in shown else None for each in show(clip)]
                    expect(f"{clip.name} {show.__name__}", found, list(range(begin, end)))
        for file, encoding in ("gray.mp4", X264 + "0 -crf 5 -c:a aac"), ("gray-open.mp4", X264 + "1 -crf 5 -c:a aac"):
            film = folder / file
            make(film, GRAY, encoding)
            wanted = " ".join(f"{begin}-{end - 1}/{(end - begin) / 25:.2f}" for begin, end in zip(CUTS, ends, strict=True))
            expect(f"{file} in the browser", browse(cut(program, film, ""), folder), wanted)
    return expect.failed != 0


if __name__ == "__main__":
    sys.exit(main())
