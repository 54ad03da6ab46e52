// Why a frame is or is not the start of a scene, in words.

import { texts } from "./texts.js";

/** Of a row of the model's film. */
export async function explanation(row, { film, rule, settings, scenes }) {
    const scene = scenes.find((each) => each.row === row);
    const parts = [scene ? texts.isStart(scene.method) : texts.noStart];
    if (!rule) return parts[0];
    const { filled, neighbours, needs, ...told } = await rule.explain(row, settings);
    const level = film.columns.level[row];
    parts.push(texts.figures(film.columns.difference[row], level));
    if (filled !== null) parts.push(texts.filled(filled));
    if (told.blockedBy !== "start" && told.blockedBy !== "end") {
        const list = neighbours.map((each) =>
            texts.neighbour(film.frameOf(each.row), each.difference, each.exceeded),
        );
        const exceeded = neighbours.filter((each) => each.exceeded).length;
        parts.push(texts.votes(exceeded, needs, settings.cutThreshold, list.join(", ")));
    }
    if (told.isDark) parts.push(texts.isDark(level, settings.darkLevel));
    if (told.isLongest) parts.push(texts.isLongest(settings.longestScene));
    const isBlocked = told.blockedBy !== "locked" || level <= settings.darkLevel;
    if (told.blockedBy && isBlocked) parts.push(texts.blocked[told.blockedBy]);
    return parts.join(" ");
}
