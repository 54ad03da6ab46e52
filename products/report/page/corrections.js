// What a person changes about the scenes that the rule finds, kept apart from these: sliders move on below it.
// Scenes are {row, end, method}, ascending; `end` is the row after the last one's, and gaps may lie between.

/** Plain data that is never changed; keys are rows. `added` tells the row that a moved start came from, or null. */
export const noCorrections = Object.freeze({ added: {}, removed: {}, names: {} });

/** How many there are: a start that was moved is one, and names that the run had are none. */
export function correctionCount({ added, removed, names }, runNames) {
    const origins = Object.values(added).map(String);
    const gone = Object.keys(removed).filter((row) => !origins.includes(row));
    const named = Object.keys({ ...names, ...runNames }).filter(
        (row) => names[row] !== runNames[added[row] ?? row] && !removed[row],
    );
    return origins.length + gone.length + named.length;
}

const without = (rows, row) =>
    Object.fromEntries(Object.entries(rows).filter(([key]) => key !== String(row)));
const withRow = (rows, row, value) => ({ ...rows, [row]: value });

/** A start of a scene; where the person removed one before, that comes back. */
export function addStart(corrections, row, isFound, from = null) {
    const removed = without(corrections.removed, row);
    const added = isFound ? corrections.added : withRow(corrections.added, row, from);
    return { ...corrections, removed, added };
}

/** The scene at `row` becomes part of the one before it; `isFound`: also without the person there is one. */
export function removeStart(corrections, row, isFound) {
    return {
        added: without(corrections.added, row),
        removed: isFound ? withRow(corrections.removed, row, true) : corrections.removed,
        names: without(corrections.names, row),
    };
}

/** `isFound` tells of a row whether the rule finds a start there. */
export function moveStart(corrections, from, to, isFound) {
    if (from === to) return corrections;
    const origin = corrections.added[from] ?? from;
    const name = corrections.names[from];
    const moved = addStart(
        removeStart(corrections, from, isFound(from)),
        to,
        isFound(to),
        origin === to ? null : origin,
    );
    return name === undefined ? moved : nameScene(moved, to, name);
}

/** Of the scene that starts at `row`; an empty name takes it away. */
export function nameScene(corrections, row, name) {
    return {
        ...corrections,
        names: name === "" ? without(corrections.names, row) : withRow(corrections.names, row, name),
    };
}

/**
 * The found scenes with the corrections on top, and of each who says so: `by` is "rule", "person" or "both", `from` the
 * row that the person moved it from, if any, `name` the name or "". `rows` is how many the film has.
 */
export function corrected(found, corrections, rows) {
    const scenes = [];
    for (const scene of found) {
        const last = scenes.at(-1);
        if (last && corrections.removed[scene.row]) last.end = scene.end;
        else scenes.push({ ...scene, by: "rule", from: null });
    }
    const added = Object.keys(corrections.added).map(Number);
    for (const row of added.filter((each) => each < rows).sort((a, b) => a - b)) {
        const next = scenes.findIndex((scene) => scene.row >= row);
        const after = next < 0 ? scenes.length : next;
        if (scenes[after]?.row === row) {
            scenes[after].by = "both";
            continue;
        }
        const start = {
            row,
            end: scenes[after]?.row ?? rows,
            method: "manual",
            by: "person",
            from: corrections.added[row],
        };
        const before = scenes[after - 1];
        if (before && before.end > row) {
            start.end = before.end;
            before.end = row;
        }
        scenes.splice(after, 0, start);
    }
    for (const scene of scenes) scene.name = corrections.names[scene.row] ?? "";
    return scenes;
}

/** Which rows start a scene in one of the two lists only. */
export function changes(before, after) {
    const missing = (scenes, others) => {
        let next = 0;
        const isMissing = ({ row }) => {
            while (others[next]?.row < row) ++next;
            return others[next]?.row !== row;
        };
        return scenes.filter(isMissing).map(({ row }) => row);
    };
    return { appeared: missing(after, before), gone: missing(before, after) };
}
