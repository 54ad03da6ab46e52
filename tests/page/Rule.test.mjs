// The module of the page finds what --from-stats finds, in films that nobody has thought of.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import test from "node:test";

import { bytesOf, columnsOf } from "../../products/report/page/film.js";
import { Rule } from "../../products/report/page/rule.js";

const kPlain = { flashes: "keep", fades: "off", dissolves: false, minScene: 0, fixed: [] };
const settingsOf = ({ parameters, choice, minScene, shortScenes }) => ({
    ...parameters,
    ...choice,
    minScene,
    shortScenes,
});

const films = execFileSync(process.env.RULE_CASES, { encoding: "utf8", maxBuffer: 2 ** 30 })
    .trimEnd()
    .split("\n")
    .map((line) => JSON.parse(line));
const rule = await Rule.load(readFileSync(process.env.RULE_MODULE));
const setFilm = ({ run, figures }) =>
    rule.setFigures(columnsOf(run.columns, run.rows, bytesOf(figures)), run);
const triples = ({ rows, ends, kinds }) => Array.from(rows, (row, i) => [row, ends[i], kinds[i]]);

test("scenes, ends and kinds are those of --from-stats", () => {
    const seen = new Set();
    let durations = 0;
    let gaps = 0;
    for (const film of films) {
        setFilm(film);
        durations += film.run.times;
        for (const { settings, scenes } of film.cases) {
            const decided = triples(rule.decide(settingsOf(settings)));
            assert.deepEqual(decided, scenes, JSON.stringify(settings));
            decided.forEach(([row, , kind], i) => {
                seen.add(kind);
                gaps += i > 0 && decided[i - 1][1] !== row;
            });
        }
    }
    assert.deepEqual([...seen].sort(), [0, 1, 2, 3]);
    assert.ok(durations > 0 && gaps > 100, `${durations} films of variable rate, ${gaps} gaps`);
});

test("an explanation says what the comparison alone finds", () => {
    for (const film of films.filter(({ run }) => run.rows < 100)) {
        setFilm(film);
        const settings = { ...settingsOf(film.cases[0].settings), ...kPlain };
        const { rows } = rule.decide(settings);
        for (let row = 1; row < film.run.rows; ++row) {
            const why = rule.explain(row);
            const votes = why.neighbours.filter(({ exceeded }) => exceeded).length;
            assert.equal(why.isCut, rows.includes(row), `row ${row}`);
            if (why.isCut) assert.ok(votes >= why.needs || why.isDark || why.isLongest, `row ${row}`);
            else assert.ok(votes < why.needs || why.blockedBy !== "", `row ${row}`);
        }
    }
});

test("scenes of other methods stay, and count for the lengths", () => {
    // Cuts at 10 and 20; with 15 between them neither scene from 10 on has eight frames.
    const difference = Uint8Array.from({ length: 40 }, (_, row) => (row === 10 || row === 20 ? 90 : 1));
    const run = { rows: 40, places: [[0, 0, 0]], step: 1, end: { frame: 40, time: 40 } };
    rule.setFigures({ difference, level: new Uint8Array(40).fill(100) }, run);
    const settings = {
        ...kPlain,
        cutThreshold: 13,
        darkLevel: 25,
        votes: 3,
        longestScene: 0,
        shortScenes: "merge",
    };
    const decided = rule.decide({ ...settings, fixed: [15, 20], minScene: 8 });
    assert.deepEqual(triples(decided), [
        [0, 20, 0],
        [20, 40, 128],
    ]);
    assert.deepEqual(triples(rule.decide({ ...settings, fixed: [15] }))[2], [15, 20, 255]);
    // Both exceed their neighbours by 89, so that a threshold finds both or none.
    assert.equal(rule.fit([10], { ...settings, cutThreshold: 95 }).missed, 1);
    const fit = rule.fit([10, 20], { ...settings, cutThreshold: 95 });
    assert.deepEqual([fit.kept, fit.missed, fit.added, fit.settings.cutThreshold], [2, 0, 0, 88]);
});
