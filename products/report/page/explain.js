// Why a frame is or is not the start of a scene, in words.

import { texts } from "./texts.js";

/** `told` is what the rule explains of a row; `method` how the scene was found that starts there, or "". */
export function explanation(told, settings, method, frameOf) {
    const { difference, level, filled, neighbours, needs } = told;
    const exceeded = neighbours.filter((each) => each.exceeded).length;
    const list = neighbours
        .map((each) => texts.neighbour(frameOf(each.row), each.difference, each.exceeded))
        .join(", ");
    const parts = [texts.figures(difference, level)];
    if (filled !== undefined && filled !== null && filled !== difference) parts.push(texts.filled(filled));
    if (neighbours.length > 0)
        parts.push(texts.votes(exceeded, neighbours.length, needs, settings.cutThreshold, list));
    if (told.isDark) parts.push(texts.isDark(level, settings.darkLevel));
    if (told.blockedBy) parts.push(texts.blocked[told.blockedBy]);
    return [method === "" ? texts.noStart : texts.isStart(method), ...parts].join(" ");
}
