// Puts the page together.

import { Controls } from "./controls.js";
import { correctionCount } from "./corrections.js";
import { addCommands, commandsOf, Editor } from "./editor.js";
import { byId, element, fillTexts } from "./elements.js";
import { bytesOf, columnsOf, Film } from "./film.js";
import { Fitting } from "./fitting.js";
import { addGestures } from "./gestures.js";
import { Leaving } from "./leaving.js";
import { Memory } from "./memory.js";
import { marksOf, showLegend } from "./marks.js";
import { Model } from "./model.js";
import { Overview } from "./overview.js";
import { Place } from "./place.js";
import { Player } from "./player.js";
import { RuleThread } from "./rulethread.js";
import { Sheet } from "./sheet.js";
import { texts } from "./texts.js";
import { Timeline } from "./timeline.js";

const kKeyedFigures = 100_000; // characters, by which what was kept is found again
const kColors = ["ink", "dim", "line", "card", "difference", "level", "cut", "dark", "person"];

function lineColors() {
    const style = getComputedStyle(document.documentElement);
    return Object.fromEntries(kColors.map((name) => [name, style.getPropertyValue(`--${name}`).trim()]));
}

function tell(text) {
    byId("notice").hidden = false;
    byId("notice").append(element("span", {}, text));
}

function showRun(film) {
    const { run, end, rate } = film;
    const first = run.scenes[0] ?? { frame: 0, time: 0 };
    const length = film.clockAt(end.time - first.time, 3);
    const rateText = String(Number((rate[0] / rate[1]).toPrecision(5)));
    const [width, height] = run.quarterTurns % 2 ? [run.height, run.width] : [run.width, run.height];
    byId("title").textContent = run.name;
    byId("summary").textContent = texts.summary(
        run.scenes.length,
        end.frame - first.frame,
        length,
        rateText,
        width,
        height,
    );
    if (run.partial) byId("summary").prepend(element("strong", {}, texts.partial(run.partial)), "; ");
    for (const [name, value] of run.settings)
        byId("settings").append(
            element("tr", {}, element("th", { scope: "row" }, name), element("td", {}, value)),
        );
}

// --- at once: the run as it is, and what corrects it ---

const film = new Film(JSON.parse(byId("run").textContent));
const model = new Model(film);
const timeline = new Timeline(byId("plot"), film, lineColors());
const overview = new Overview(byId("overview"), timeline);
timeline.onDraw = () => overview.draw();
for (const query of ["(prefers-color-scheme: dark)", "print"])
    matchMedia(query).addEventListener("change", () => {
        timeline.colors = lineColors();
        timeline.draw();
    });

const say = (text) => {
    byId("live").textContent = text;
};
fillTexts();
showRun(film);
const player = film.run.film === null ? null : new Player(film, (row) => editor.go(row));
const place = new Place(model, timeline.canvas, player);
const editor = new Editor(model, timeline, { show: (row) => place.go(row), say });
const sheet = new Sheet(model, editor);
const leaving = new Leaving(model, say);
byId("name").onchange = () => {
    const scene = model.scenes[model.indexAt(editor.cursor)];
    if (scene) editor.name(scene.row, byId("name").value);
};
byId("name").onkeydown = ({ key }) => {
    if (key === "Escape") byId("name").value = model.scenes[model.indexAt(editor.cursor)].name;
    if (key === "Enter" || key === "Escape") timeline.canvas.focus();
};
addCommands(commandsOf(editor, player), timeline.canvas);
addGestures(timeline, editor, place);

const memory = new Memory(byId("run").textContent + byId("figures").textContent.slice(0, kKeyedFigures));
const kept = memory.load();
if (kept) model.restore(kept);
model.onScenes(() => {
    const { appeared, gone } = model.changes;
    const byHand = correctionCount(model.corrections, model.runNames);
    timeline.setMarks(marksOf(model));
    showLegend(timeline);
    byId("count").textContent = texts.count(model.scenes.length);
    byId("changed").textContent = texts.changed(appeared.length, gone.length, byHand);
    sheet.show();
    leaving.showScenes();
    place.go(editor.cursor);
});
model.onChange(() => {
    timeline.setSettings(model.settings);
    showLegend(timeline);
    byId("undo").disabled = !model.canUndo;
    byId("redo").disabled = !model.canRedo;
    leaving.showCommand();
    if (!model.isHeld && (model.canUndo || model.canRedo)) memory.keep(model.kept);
    byId("no-memory").hidden = memory.isAvailable;
});

// --- the figures and the rule, once the browser has shown what there is ---

async function takeFigures() {
    if (!film.hasFigures) return tell(texts.noFigures);
    try {
        film.setColumns(columnsOf(film.run.columns, film.rows, bytesOf(byId("figures").textContent)));
    } catch {
        return tell(texts.brokenFigures);
    }
    timeline.setFigures(film.columns);
    showLegend(timeline);
    const startThread = () =>
        new RuleThread(byId("worker").textContent, bytesOf(byId("rule").textContent), film.columns, film.run);
    let hasDistances;
    try {
        const rule = startThread();
        hasDistances = await rule.hasDistances;
        await model.takeRule(rule);
    } catch {
        return tell(texts.noRule);
    }
    const controls = new Controls(model, hasDistances);
    const fitting = new Fitting(model, startThread, say);
    model.onChange(() => {
        controls.show();
        fitting.clear();
    });
    byId("tuning").hidden = byId("fitting").hidden = false;
}

await new Promise((done) => {
    requestAnimationFrame(() => setTimeout(done));
    setTimeout(done, 200); // a page that nobody sees is not drawn
});
await takeFigures();
byId("main").ariaBusy = "false";
