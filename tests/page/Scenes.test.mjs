// Corrections on top of what the rule finds, the film's rows, and the command line.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import test from "node:test";

import { commandLine, shellWord } from "../../products/report/page/command.js";
import * as edit from "../../products/report/page/corrections.js";
import { columnsOf, Film } from "../../products/report/page/film.js";
import { History } from "../../products/report/page/history.js";
import { foundScenes } from "../../products/report/page/model.js";
import { Pyramid } from "../../products/report/page/pyramid.js";
import { latestOnly } from "../../products/report/page/rulethread.js";

const kRows = 100;
const found = (...starts) => starts.map((row, i) => ({ row, end: starts[i + 1] ?? kRows, method: "video" }));
const startsOf = (scenes) => scenes.map(({ row, end, by }) => `${row}-${end} ${by}`);
const scenesOf = (rule, corrections) => startsOf(edit.corrected(rule, corrections, kRows));

test("what a person adds and removes stays when the rule finds other scenes", () => {
    let corrections = edit.addStart(edit.noCorrections, 20, false);
    corrections = edit.removeStart(corrections, 50, true);
    assert.deepEqual(scenesOf(found(0, 50, 70), corrections), ["0-20 rule", "20-70 person", "70-100 rule"]);
    assert.deepEqual(scenesOf(found(0, 20, 90), corrections), ["0-20 rule", "20-90 both", "90-100 rule"]);
    assert.deepEqual(scenesOf(found(0), corrections), ["0-20 rule", "20-100 person"]);
});

test("adding again what was removed, and removing what was added, leaves no trace", () => {
    const there = edit.addStart(edit.removeStart(edit.noCorrections, 50, true), 50, true);
    const away = edit.removeStart(edit.addStart(edit.noCorrections, 20, false), 20, false);
    assert.deepEqual([there, away], [edit.noCorrections, edit.noCorrections]);
});

test("a moved start takes its name along, and knows where it came from", () => {
    const isFound = (row) => row === 50;
    let corrections = edit.nameScene(edit.noCorrections, 50, "Arrival");
    corrections = edit.moveStart(corrections, 50, 52, isFound);
    corrections = edit.moveStart(corrections, 52, 55, isFound);
    const scenes = edit.corrected(found(0, 50), corrections, kRows);
    assert.deepEqual(startsOf(scenes), ["0-55 rule", "55-100 person"]);
    assert.deepEqual([scenes[1].from, scenes[1].name], [50, "Arrival"]);
    assert.deepEqual(
        [edit.correctionCount(corrections, {}), edit.correctionCount(corrections, { 50: "Arrival" })],
        [2, 1],
    );
    const back = edit.moveStart(corrections, 55, 50, isFound);
    assert.deepEqual(back, { added: {}, removed: {}, names: { 50: "Arrival" } });
});

test("gaps between scenes stay, and can be filled", () => {
    const gap = [
        { row: 0, end: 20, method: "video" },
        { row: 60, end: 100, method: "video" },
    ];
    assert.deepEqual(scenesOf(gap, edit.addStart(edit.noCorrections, 30, false)), [
        "0-20 rule",
        "30-60 person",
        "60-100 rule",
    ]);
    assert.deepEqual(scenesOf(gap, edit.removeStart(edit.noCorrections, 60, true)), ["0-100 rule"]);
});

test("undo takes back a held slider as one", () => {
    const history = new History(1);
    history.preview(2);
    history.preview(3);
    history.push(4);
    history.push(5);
    history.undo();
    assert.equal(history.state, 4);
    history.undo();
    assert.deepEqual([history.state, history.canUndo], [1, false]);
    history.redo();
    history.push(6);
    assert.deepEqual([history.state, history.canRedo], [6, false]);
});

test("undo and redo survive being kept, as far as there is room", () => {
    const history = new History("a");
    for (const state of ["b".repeat(199_000), "c", "d", "e"]) history.push(state);
    history.undo();
    const copy = History.of(JSON.parse(JSON.stringify(history.kept)));
    copy.redo();
    assert.equal(copy.state, "e");
    for (let i = 0; i < 4; ++i) copy.undo();
    assert.deepEqual([copy.state, copy.canUndo], ["a", false]);
    history.push("f".repeat(2000));
    history.push("g");
    assert.deepEqual(
        history.kept.past.map((state) => state[0]),
        ["c", "d", "f"],
    );
});

test("of settings that come while the rule is at work only the last are judged", async () => {
    const judged = [];
    let finish;
    const judge = latestOnly((settings) => {
        judged.push(settings);
        return new Promise((done) => (finish = done));
    });
    judge(1);
    judge(2);
    const settled = judge(3);
    finish();
    await Promise.resolve();
    await Promise.resolve();
    assert.deepEqual(judged, [1, 3]);
    finish();
    await settled;
});

test("scenes of other methods stay beside the rule's", () => {
    const run = [
        { row: 0, method: "video" },
        { row: 30, method: "timestamp+video" },
        { row: 40, method: "video" },
    ];
    const methods = ({ row, end, method }) => `${row}-${end} ${method}`;
    const decided = (rows, kinds, ends) =>
        foundScenes(new Map(run.map((scene) => [scene.row, scene])), { rows, kinds, ends }).map(methods);
    assert.deepEqual(decided([0, 30, 60], [0, 255, 1], [20, 60, 100]), [
        "0-20 video",
        "30-60 timestamp+video",
        "60-100 fade",
    ]);
});

test("rows have the frames and times of the file, also where some are missing", () => {
    const scenes = [{ row: 0, frame: 5, time: 5 }];
    const run = { rate: [25, 1], unit: [1, 25], step: 1, rows: 10, scenes, end: { frame: 20, time: 20 } };
    const film = new Film({
        ...run,
        places: [
            [0, 5, 5],
            [4, 12, 12],
        ],
    });
    assert.deepEqual(
        [0, 3, 4, 9, 10].map((row) => film.frameOf(row)),
        [5, 8, 12, 17, 20],
    );
    assert.equal(film.rowAt(12.5 / 25), 4);
    assert.deepEqual(
        [8, 10, 12, 18, 20].map((frame) => film.rowOfFrame(frame)),
        [3, 4, 4, 10, 10],
    );
    const variable = new Film({ ...run, rows: 3, places: [[0, 0, 0]] });
    const bytes = Uint8Array.of(1, 2, 3, 10, 0, 0, 0, 30, 0, 0, 0, 1, 1, 0, 0);
    variable.setColumns(columnsOf(["difference", "duration"], 3, bytes));
    assert.deepEqual(
        [0, 1, 2].map((row) => variable.timeOf(row)),
        [0, 10, 40],
    );
    assert.throws(() => columnsOf(["difference", "duration"], 3, bytes.slice(1)), RangeError);
});

test("a pyramid tells the least and the most of every stretch", () => {
    const values = Uint8Array.from({ length: 77 }, (_, i) => (i * 71) % 256);
    const pyramid = new Pyramid(values);
    for (let from = 0; from < values.length; ++from)
        for (let to = from + 1; to <= values.length; ++to) {
            const part = values.subarray(from, to);
            assert.deepEqual(
                [pyramid.leastOf(from, to), pyramid.mostOf(from, to)],
                [Math.min(...part), Math.max(...part)],
            );
        }
});

test("the shell hands on every word as it was meant", () => {
    const words = ["tape.dv", "it's", 'a "b" $HOME `c` \\d', "", "two\nlines", "ünï", "*?[a]~", "-x", "!"];
    const told = execFileSync("sh", ["-c", `printf '%s\\0' ${words.map(shellWord).join(" ")}`]).toString();
    assert.deepEqual(told.split("\0").slice(0, -1), words);
});

test("the command line names what differs from the defaults, or did so in the run", () => {
    const range = (name, option, usual) => ({ name, option, default: usual });
    const run = {
        ranges: [range("cutThreshold", "--cut-threshold", 13), range("darkLevel", "--dark-level", 25)],
        parameters: { cutThreshold: 13, darkLevel: 30 },
        choice: { flashes: "keep", fades: "off" },
        minScene: { text: "0.5s", frames: 0, time: 12 },
        command: ["--method", "video"],
        input: "-my tape.dv",
    };
    const settings = { cutThreshold: 17, darkLevel: 25, flashes: "keep", fades: "middle", dissolves: true };
    assert.equal(
        commandLine(run, { ...settings, minScene: run.minScene, shortScenes: "drop" }),
        "kxscenes --method video --cut-threshold 17 --dark-level 25 --fades middle --dissolves " +
            "--min-scene 0.5s --short-scenes drop './-my tape.dv'",
    );
});
