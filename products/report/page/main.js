// Puts the page together.

import { byId, element, fillTexts } from "./elements.js";
import { bytesOf, columnsOf, Film, inflated } from "./film.js";
import { addGestures } from "./gestures.js";
import { Sheet } from "./sheet.js";
import { texts } from "./texts.js";
import { Timeline } from "./timeline.js";

const film = new Film(JSON.parse(byId("run").textContent));
const { run } = film;

function lineColors() {
    const style = getComputedStyle(document.documentElement);
    const names = ["ink", "dim", "line", "difference", "level", "cut", "dark"];
    return Object.fromEntries(names.map((name) => [name, style.getPropertyValue(`--${name}`).trim()]));
}

const timeline = new Timeline(byId("plot"), film, lineColors());
for (const query of ["(prefers-color-scheme: dark)", "print"])
    matchMedia(query).addEventListener("change", () => {
        timeline.colors = lineColors();
        timeline.draw();
    });

function showSummary() {
    const frames = film.end.frame - (run.scenes[0]?.frame ?? 0);
    const seconds = film.secondsAt(film.end.time - (run.scenes[0]?.time ?? 0));
    const rate = String(Number((film.rate[0] / film.rate[1]).toPrecision(5)));
    const [width, height] = run.quarterTurns % 2 ? [run.height, run.width] : [run.width, run.height];
    byId("title").textContent = run.name;
    byId("summary").replaceChildren(texts.summary(run.scenes.length, frames, seconds, rate, width, height));
    if (run.partial) byId("summary").prepend(element("strong", {}, texts.partial(run.partial)), "; ");
    for (const [name, value] of run.settings)
        byId("settings").append(
            element("tr", {}, element("th", { scope: "row" }, name), element("td", {}, value)),
        );
}

function showLegend() {
    const key = (name, text) => element("span", {}, element("i", { className: `key-${name}` }), text);
    byId("legend").replaceChildren(key("cut", texts.legendCut));
    if (film.hasFigures)
        byId("legend").append(
            key(
                "difference",
                texts.legendDifference(timeline.mostDifference, timeline.settings.cutThreshold),
            ),
            key("level", texts.legendLevel(timeline.settings.darkLevel)),
        );
}

function showHere(row) {
    if (row === null) {
        byId("here").textContent = "";
        return;
    }
    const { frame, time } = film.placeOf(Math.max(0, Math.min(film.rows - 1, Math.floor(row))));
    byId("here").textContent = texts.here(frame, film.clockAt(time, 2));
}

fillTexts();
showSummary();
const sheet = new Sheet(film);
const ends = [...film.scenes.slice(1).map((scene) => scene.row), film.rows];
sheet.setScenes(
    film.scenes.map((scene, i) => ({ row: scene.row, end: ends[i], method: scene.method, source: scene })),
);
timeline.setMarks(film.scenes.map(({ row }) => ({ row, color: "cut" })));
byId("plot").setAttribute("aria-label", texts.timelineLabel);
addGestures(timeline, { hover: showHere, pick: showHere, grab: () => false });
showLegend();
if (film.hasFigures) {
    const bytes = await inflated(bytesOf(byId("figures").textContent), run.compression);
    film.setColumns(columnsOf(run.columns, film.rows, bytes));
    timeline.setFigures(film.columns);
    showLegend();
}
