// What the timeline marks of the scenes, and the key to it.

import { byId, element } from "./elements.js";
import { texts } from "./texts.js";

/** Of the model's scenes, and of those that are gone since the run, by rows. */
export function marksOf({ scenes, changes }) {
    const appeared = new Set(changes.appeared);
    const marks = scenes.map(({ row, method, by }) => ({
        row,
        color: by !== "rule" ? "person" : /fade|dissolve/.test(method) ? "dark" : "cut",
        isNew: appeared.has(row),
        isPerson: by !== "rule",
        isGone: false,
    }));
    for (const row of changes.gone)
        marks.push({ row, color: "dim", isNew: false, isPerson: false, isGone: true });
    return marks.sort((a, b) => a.row - b.row);
}

/** Of what there is to be seen. */
export function showLegend({ film, marks, settings, mostDifference }) {
    const key = (name, text) => element("span", {}, element("i", { className: `key-${name}` }), text);
    const keys = [key("cut", texts.legendCut)];
    if (marks.some(({ color }) => color === "dark")) keys.push(key("dark", texts.legendOther));
    if (marks.some(({ isPerson }) => isPerson)) keys.push(key("person", texts.legendPerson));
    if (marks.some(({ isNew }) => isNew)) keys.push(key("new", texts.legendNew));
    if (marks.some(({ isGone }) => isGone)) keys.push(key("gone", texts.legendGone));
    if (film.hasFigures)
        keys.push(
            key("difference", texts.legendDifference(mostDifference, settings.cutThreshold)),
            key("level", texts.legendLevel(settings.darkLevel)),
        );
    byId("legend").replaceChildren(...keys);
}
