// What the page shows: settings and corrections, the scenes that follow from both, and what they were before.

import { changes, corrected, noCorrections } from "./corrections.js";
import { History } from "./history.js";
import { latestOnly } from "./rulethread.js";

const kKindMethods = ["video", "fade", "dissolve", "video"]; // by the kinds that the rule tells
const kFixed = 128; // kinds from this on: a scene stays whatever the rule finds

const partsOf = (method) => method.split("+");
const isOfRule = (part) => kKindMethods.includes(part);

/** Settings as the run had them; a shortest scene is what the run tells of it, or a number of frames. */
export function settingsOf(run) {
    const settings = Object.fromEntries(run.ranges.map(({ name }) => [name, run.parameters[name]]));
    return { ...settings, ...run.choice, minScene: run.minScene, shortScenes: run.shortScenes };
}

/** Rows of scenes of the run that something else than the rule has found: they stay, whatever the settings. */
export function fixedRows(runScenes) {
    return runScenes.filter(({ method }) => !partsOf(method).every(isOfRule)).map(({ row }) => row);
}

/** What the rule has decided, as {row, end, method}; scenes that stay keep the method of the run's, a map by rows. */
export function foundScenes(runScenes, { rows, kinds, ends }) {
    return Array.from(rows, (row, i) => {
        const method = kinds[i] < kFixed ? kKindMethods[kinds[i]] : runScenes.get(row).method;
        return { row, end: ends[i], method };
    });
}

export class Model {
    #history;
    #listeners = []; // of changes
    #sceneListeners = [];
    #asked = null; // the settings that the rule was asked about last

    /** Without a rule the scenes found are those of the run. */
    constructor(film) {
        this.film = film;
        this.rule = null;
        this.runScenes = film.scenes.map(({ row, endFrame, method }) => {
            return { row, end: film.rowOfFrame(endFrame), method };
        });
        this.sources = new Map(film.scenes.map((scene) => [scene.row, scene]));
        this.fixed = fixedRows(film.scenes);
        this.runSettings = settingsOf(film.run);
        // Names are a person's, also those of the list that the run was made of.
        const named = film.scenes.filter(({ name }) => name);
        this.runNames = Object.fromEntries(named.map(({ row, name }) => [row, name]));
        const corrections = { ...noCorrections, names: this.runNames };
        this.#history = new History({ settings: this.runSettings, corrections });
        this.found = this.runScenes;
        this.settled = Promise.resolve(); // once the scenes are those of the settings
        this.#correct();
    }

    get settings() {
        return this.#history.state.settings;
    }
    get corrections() {
        return this.#history.state.corrections;
    }
    /** What restore takes. */
    get kept() {
        return this.#history.kept;
    }
    /** Whether a slider is held. */
    get isHeld() {
        return this.#history.isPreview;
    }
    get canUndo() {
        return this.#history.canUndo;
    }
    get canRedo() {
        return this.#history.canRedo;
    }

    /** From now on settings count. Rejects when the rule fails. */
    takeRule(rule) {
        this.rule = rule;
        this.#changed();
        return this.settled;
    }

    /** `listener` is called after every change of settings or corrections, and now. */
    onChange(listener) {
        this.#listeners.push(listener);
        listener();
    }

    /** `listener` is called after every change of scenes, which may be later than what brings it, and now. */
    onScenes(listener) {
        this.#sceneListeners.push(listener);
        listener();
    }

    /** `isFinal`: not one of many while a slider is held. */
    set(part, isFinal = true) {
        const state = { ...this.#history.state, ...part };
        if (isFinal) this.#history.push(state);
        else this.#history.preview(state);
        this.#changed();
    }

    /** Takes over what was kept of an earlier look at the page. */
    restore(kept) {
        this.#history = History.of(kept);
        this.#changed();
    }

    undo() {
        this.#history.undo();
        this.#changed();
    }
    redo() {
        this.#history.redo();
        this.#changed();
    }

    /** Whether the rule, or another method of the run, finds a scene that starts here. */
    isFound(row) {
        return this.found.some((scene) => scene.row === row);
    }

    /** Of the scene that shows at the row; -1 in a gap. */
    indexAt(row) {
        return this.scenes.findIndex((scene) => scene.row <= row && row < scene.end);
    }

    #changed() {
        if (this.rule && this.#asked !== this.settings) {
            this.#asked = this.settings;
            this.settled = this.#judge(this.settings);
        }
        if (this.#corrected !== this.corrections) this.#correct();
        for (const listener of this.#listeners) listener();
    }

    #judge = latestOnly(async (settings) => {
        const decision = await this.rule.decide({ ...settings, fixed: this.fixed });
        this.found = foundScenes(this.sources, decision);
        this.#correct();
    });

    #corrected = null; // the corrections that the scenes have

    #correct() {
        this.#corrected = this.corrections;
        this.scenes = corrected(this.found, this.corrections, this.film.rows);
        this.changes = changes(this.runScenes, this.scenes);
        for (const listener of this.#sceneListeners) listener();
    }
}
