#!/usr/bin/env python3
"""Has Chromium show the report of a film, turns its settings, corrects its scenes and has the program read them back.

report-page.py PROGRAM
"""
import csv
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile

from browser import CONTROL, SHIFT, Browser
from expectations import Expectations

NAME = "film \"1\" <&> it's.mp4"
COLORS = ["0xD01010", "0x10D010", "0x1010D0"]
# Red, green and blue at 0, 30 and 58, a fade through black, a flash, a faint cut at 200, noise amid which some are found.
FILM = (";".join(f"color=c={color}:s=160x120:r=25,trim=end_frame={frames}[{name}]"
                 for color, frames, name in zip(COLORS, (30, 28, 42), "abc")) +
        ";testsrc2=s=160x120:r=25,trim=end_frame=60,fade=out:40:20[d];smptebars=s=160x120:r=25,trim=end_frame=80,"
        "fade=in:0:16,eq=brightness=0.4:enable='eq(n,60)',eq=brightness=-0.05:enable='gte(n,40)'[e];"
        "testsrc=s=160x120:r=25,trim=end_frame=60,noise=alls=80:allf=t[f];"
        "[a][b][c][d][e][f]concat=n=6")
OPTIONS = ["--flashes", "drop", "--fades", "off", "--report-film"]
CHOICES = {"flashes": ["keep", "drop"], "fades": ["off", "start", "middle", "end"], "shortScenes": ["merge", "drop", "merge-last"]}
PARAMETERS = {"cutThreshold": (0, 60), "darkLevel": (-1, 120), "votes": (1, 4), "longestScene": (0, 70), "minScene": (0, 30)}
PICTURES = """Promise.all([...document.querySelectorAll('#sheet img')].map(async image => {
    await image.decode();
    const context = new OffscreenCanvas(1, 1).getContext('2d');
    context.drawImage(image, 0, 0, 1, 1);
    return [...context.getImageData(0, 0, 1, 1).data].slice(0, 3);
}))"""
PLOTTED = """(() => {
    const plot = document.querySelector('#plot');
    const {data} = plot.getContext('2d').getImageData(0, 0, plot.width, plot.height);
    const color = getComputedStyle(document.documentElement).getPropertyValue('--difference').match(/\\w\\w/g);
    const wanted = color.map(each => parseInt(each, 16));
    let count = 0;
    for (let i = 0; i < data.length; i += 4) count += wanted.every((each, j) => Math.abs(data[i + j] - each) < 4);
    return count;
})()"""
BRIGHTNESS = """(() => getComputedStyle(document.body).backgroundColor.match(/\\d+/g).slice(0, 3).map(Number))()"""
# With the data, and drawn.
READY = """new Promise(done => {
    const main = document.querySelector('main');
    const look = () => main.ariaBusy === 'false' && requestAnimationFrame(() => requestAnimationFrame(done));
    new MutationObserver(look).observe(main, {attributes: true});
    look();
})"""

FITTED = """new Promise(done => {
    const told = document.querySelector('#fitted');
    const look = () => told.textContent.includes('your') && done(told.textContent);
    new MutationObserver(look).observe(told, {childList: true});
    look();
})"""

expect = Expectations("report-page")


def starts(listed: bytes) -> list[int]:
    return [int(row["Start Frame"]) - 1 for row in csv.DictReader(listed.decode().splitlines())]


def page_settings(browser: Browser, settings: dict) -> None:
    """As a person sets them: each control changes, and tells so."""
    browser.run(f"""(() => {{
        for (const [name, value] of Object.entries({json.dumps(settings)})) {{
            const control = document.querySelector(`#set-${{name}}`);
            const field = control.type === 'range' ? control.parentElement.querySelector('[type=number]') : control;
            if (field.type === 'checkbox') field.checked = value;
            else field.value = value;
            field.dispatchEvent(new Event('change'));
        }}
    }})()""")


def options(settings: dict) -> list[str]:
    words = []
    for name, option in (("cutThreshold", "--cut-threshold"), ("darkLevel", "--dark-level"), ("votes", "--votes"),
                         ("longestScene", "--longest-scene"), ("flashes", "--flashes"), ("fades", "--fades")):
        words += [option, settings[name]]
    if settings["minScene"] > 0:
        words += ["--min-scene", settings["minScene"], "--short-scenes", settings["shortScenes"]]
    return [str(word) for word in words] + ["--dissolves"] * settings["dissolves"]


def random_settings(chance: random.Random) -> dict:
    settings = {name: chance.randint(*limits) for name, limits in PARAMETERS.items()}
    settings |= {name: chance.choice(words) for name, words in CHOICES.items()}
    return settings | {"dissolves": chance.random() < 0.5}


class Workbench:
    def __init__(self, program: pathlib.Path, folder: pathlib.Path) -> None:
        self.program = program
        self.folder = folder

    def run(self, *words: str) -> None:
        subprocess.run([str(self.program), "--no-config", *words], cwd=self.folder, check=True, timeout=120,
                       stdout=subprocess.DEVNULL)

    def listed(self, *words: str, format: str = "csv") -> bytes:
        self.run(*words, "--format", format, "--force", "-o", "wanted")
        return (self.folder / "wanted").read_bytes()

    def looks(self, browser: Browser) -> None:
        expect("title", browser.run("document.querySelector('h1').textContent"), NAME.removesuffix(".mp4"))
        for width in (390, 1366):
            brightness = {}
            for scheme in ("light", "dark"):
                browser.look(width, scheme)
                self.open(browser)
                pictures = browser.run(PICTURES)[:3]
                expect(f"{width} {scheme}: first pictures",
                       [picture.index(max(picture)) for picture in pictures], [0, 1, 2])
                expect(f"{width} {scheme}: differences are drawn", browser.run(PLOTTED) > 200, True)
                expect(f"{width} {scheme}: nothing beside the window",
                       browser.run("document.documentElement.scrollWidth <= innerWidth"), True)
                brightness[scheme] = sum(browser.run(BRIGHTNESS)) / 3
            expect(f"{width}: light and dark", brightness["light"] > 200 and brightness["dark"] < 60, True)

    def open(self, browser: Browser) -> None:
        browser.open(self.folder / "page.html")
        browser.run(READY)

    def same_rule(self, browser: Browser) -> None:
        """What the page finds with any settings is what the program finds, also by the command line that it shows."""
        chance = random.Random(16)
        for number in range(40):
            settings = random_settings(chance)
            page_settings(browser, settings)
            found = browser.download("#download-csv")
            expect(f"scenes with {settings}", found, self.listed("--from-stats", "stats.csv", *options(settings)))
            if number % 10 == 0:
                line = browser.run("document.querySelector('#command').value")
                environment = {**os.environ, "PATH": f"{self.program.parent}:{os.environ['PATH']}"}
                told = subprocess.run(["sh", "-c", line], cwd=self.folder, env=environment, capture_output=True, check=True)
                rows = csv.DictReader(told.stdout.decode().splitlines())
                expect(f"scenes of {line}", [int(row["frame"]) for row in rows], starts(found))
        browser.run("document.querySelector('#reset').click()")
        for format, suffix in ("csv", ".csv"), ("json", ".json"), ("edl", ".edl"), ("ffmeta", ".ffmeta"), ("mkvchapters", ".xml"):
            found = browser.download(f"#download-{format}")
            expect(f"{format} of the run", found, (self.folder / f"run{suffix}").read_bytes())

    def corrections(self, browser: Browser) -> list[int]:
        """By keys only; the wanted starts."""
        before = starts(browser.download("#download-csv"))
        self.open(browser)
        browser.pressed = 0
        browser.press("Tab")
        browser.press("ArrowUp", "ArrowRight", "ArrowRight", "a")  # a second and two frames: 27
        browser.press("n", "Delete")  # 30
        browser.press("n")  # 58
        browser.press("ArrowRight", "ArrowRight", modifiers=SHIFT)  # 60
        browser.press("r")
        browser.press(*"Blue", "Enter", "a", "End", "a")
        browser.press("z", modifiers=CONTROL)  # not the last frame after all
        wanted = sorted({*before, 27, 60} - {30, 58})
        for key, format in ("d", "csv"), ("Tab", "json"), ("Tab", "edl"), ("Tab", "ffmeta"), ("Tab", "mkvchapters"):
            browser.press(key, "Enter")
            listed = browser.download()
            if format == "csv":
                (self.folder / "list.csv").write_bytes(listed)
                expect("corrected starts", starts(listed), wanted)
                print(f"report-page: corrections and their list by {browser.pressed} presses of keys since the page was opened")
            if format in ("csv", "json", "edl"):
                (self.folder / "list").write_bytes(listed)
                expect(f"scenes read back from {format}", starts(self.listed("--scenes", "list", NAME)), wanted)
            expect(f"names in {format}", listed.count(b"Blue"), 1)
            expect(f"{format} of the list", self.listed("--scenes", "list.csv", NAME, format=format), listed)
        return wanted

    def film(self, browser: Browser) -> None:
        """The film shows the frame at the cursor."""
        browser.run("new Promise(done => film.readyState > 0 ? done() : film.addEventListener('loadedmetadata', done))")
        browser.run("document.querySelector('#plot').focus()")
        browser.press("Home")  # to its time the film may still be on its way
        browser.run("window.seeked = new Promise(done => film.addEventListener('seeked', () => film.currentTime > 0.1 && done(film.currentTime))); 0")
        browser.press("n")
        expect("time of the film at frame 30", round(browser.run("window.seeked"), 3), 30.5 / 25)

    def mouse(self, browser: Browser) -> None:
        """A double click adds a start, and takes away the one whose mark is hit; marks are dragged."""
        before = starts(browser.download("#download-csv"))
        left, top, width, height = browser.run(
            "(box => [box.left, box.top, box.width, box.height])(document.querySelector('#plot').getBoundingClientRect())")
        rows = browser.run("Number(document.querySelector('#plot').ariaValueMax) + 1")
        place = lambda row: left + (row + 0.5) / rows * width
        strip = top + (height - 38) * 0.6 + 9  # marks are between the two panels
        browser.click(place(15), top + 20, count=2)
        browser.click(place(30) - 0.5 * width / rows, strip, to=place(40) - 0.5 * width / rows)
        browser.click(place(100) - 0.5 * width / rows, strip, count=2)
        expect("starts by the mouse", starts(browser.download("#download-csv")), sorted({*before, 15, 40} - {30, 100}))
        for _ in range(3):
            browser.run("document.querySelector('#undo').click()")
        expect("starts after undoing", starts(browser.download("#download-csv")), before)

    def memory(self, browser: Browser, wanted: list[int]) -> None:
        self.open(browser)
        expect("scenes after a reload", starts(browser.download("#download-csv")), wanted)
        browser.run("document.querySelector('#redo').click()")
        expect("what was undone before the reload, done again", starts(browser.download("#download-csv")), [*wanted, 299])
        browser.run("document.querySelector('#undo').click()")
        page_settings(browser, {"cutThreshold": 255, "darkLevel": -1})
        expect("a person's starts without the rule's", starts(browser.download("#download-csv")), [0, 27, 60])
        page_settings(browser, {"cutThreshold": 13, "darkLevel": 25})
        expect("scenes once the sliders are back", starts(browser.download("#download-csv")), wanted)

    def fitting(self, browser: Browser) -> None:
        """Starts that lower thresholds find: the settings for them are found, too."""
        browser.run("localStorage.clear()")
        self.open(browser)
        page_settings(browser, {"cutThreshold": 7, "darkLevel": -1})
        wanted = starts(browser.download("#download-csv"))
        before = starts((self.folder / "run.csv").read_bytes())
        browser.run("document.querySelector('#reset').click()")
        expect("scenes after the reset", starts(browser.download("#download-csv")), before)  # keys act on what is shown
        browser.run("document.querySelector('#plot').focus()")
        for frame in sorted({*wanted} ^ {*before}):
            browser.press("Home", *["ArrowUp"] * (frame // 25), *["ArrowRight"] * (frame % 25))
            browser.press("a" if frame in wanted else "Delete")
        expect("corrected scenes", starts(browser.download("#download-csv")), wanted)
        browser.run("document.querySelector('#fit').click()")
        told = browser.run(FITTED)
        cuts = len(wanted) - 1  # the first scene begins with the film
        expect(f"all cuts by fitting ({told})", f" {cuts} of your {cuts} cuts and no other." in told, True)
        browser.run("document.querySelector('#take-fit').click()")
        line = browser.run("document.querySelector('#command').value")
        expect(f"scenes of {line}", starts(self.listed("--from-stats", "stats.csv", *line.split(" 'film")[0].split()[1:])), wanted)


def main() -> int:
    with tempfile.TemporaryDirectory() as name:
        bench = Workbench(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(name))
        subprocess.run(["ffmpeg", "-v", "error", "-filter_complex", FILM, "-c:v", "libx264", "-preset", "veryfast",
                        "-crf", "12", str(bench.folder / NAME)], check=True)
        bench.run("--report", "page.html", "--stats", "stats.csv", *OPTIONS, "--format", "csv,json,edl,ffmeta,mkvchapters",
                  *(word for suffix in ("csv", "json", "edl", "ffmeta", "xml") for word in ("-o", "run." + suffix)), NAME)
        with Browser() as browser:
            bench.open(browser)
            bench.looks(browser)
            bench.same_rule(browser)
            bench.film(browser)
            bench.mouse(browser)
            bench.memory(browser, bench.corrections(browser))
            bench.fitting(browser)
            expect("on the console", browser.complaints(), [])
        with Browser() as browser:
            browser.call("Page.addScriptToEvaluateOnNewDocument", source="delete globalThis.Worker")
            bench.open(browser)
            expect("without the rule's thread it says so", "WebAssembly" in browser.run("document.querySelector('#notice').innerText"), True)
            expect("and has no sliders", browser.run("document.querySelector('#tuning').hidden"), True)
            expect("but the scenes", browser.download("#download-csv"), (bench.folder / "run.csv").read_bytes())
            expect("on the console without the thread", browser.complaints(), [])
    return expect.failed != 0


if __name__ == "__main__":
    sys.exit(main())
