// The program's own rule, compiled to WebAssembly: what it finds in a run's figures, and why.

const kRuleFades = ["off", "start", "middle", "end"];
const kRuleShortScenes = ["merge", "drop", "merge-last"];
const kRuleBacks = ["back2", "back3", "back4", "back5", "back8", "back16", "back32", "back64"];

// Of the module's settings, in 32-bit words; the shortest scene is a double after them.
const kRuleLeast = 10;

export class Rule {
    /** Throws where there is no WebAssembly. `bytes` are the module. */
    static async load(bytes) {
        const { instance } = await WebAssembly.instantiate(bytes, {});
        instance.exports._initialize();
        return new Rule(instance.exports);
    }

    constructor(module) {
        this.module = module;
        this.rows = 0;
        this.hasDistances = false;
    }

    /** `columns` are typed arrays by name, `run` says where the rows lie. */
    setFigures(columns, run) {
        this.rows = run.rows;
        this.hasDistances = columns.variance !== undefined;
        const put = (index, values) => {
            const at = this.module.column(index, values.length);
            new values.constructor(this.module.memory.buffer, at, values.length).set(values);
        };
        put(0, columns.difference);
        put(1, columns.level);
        if (this.hasDistances) {
            kRuleBacks.forEach((name, i) => put(2 + i, columns[name]));
            put(10, columns.variance);
            put(11, columns.detail);
        }
        this.module.clearPlaces(run.end.frame, run.end.time);
        run.places.forEach(([row, frame, time], i) => {
            const end = i + 1 < run.places.length ? run.places[i + 1][0] : run.rows;
            if (!columns.duration) {
                this.module.place(frame, time, run.step, end - row);
                return;
            }
            for (let at = row, now = time; at < end; now += columns.duration[at++])
                this.module.place(frame + at - row, now, 0, 1);
        });
    }

    /**
     * The scenes that begin at `rows` and end before `ends`, of `kinds` 0 cut, 1 fade, 2 dissolve, 3 longest scene;
     * 128 more for what is one of `settings.fixed`, too, which are rows of scenes that stay whatever is found; and 255
     * for what is nothing else.
     */
    decide(settings) {
        this.settings = settings;
        this.#use(settings);
        this.#name(settings.fixed ?? []);
        const count = this.module.decide();
        const scenes = {
            rows: new Int32Array(count),
            ends: new Int32Array(count),
            kinds: new Uint8Array(count),
        };
        for (let i = 0; i < count; ++i) {
            scenes.rows[i] = this.module.sceneBegin(i);
            scenes.ends[i] = this.module.sceneEnd(i);
            scenes.kinds[i] = this.module.sceneKind(i);
        }
        return scenes;
    }

    /**
     * Why the comparison finds a scene at a row or none. `blockedBy`: "start" and "end" where rows are not judged,
     * "beside" where the row before begins a scene, "locked" where a dark row begins none since the film was not bright
     * again. Differences of neighbours are those that count, and null outside the film.
     */
    explain(row, settings = this.settings) {
        this.#use(settings);
        const at = this.module.explain(row) >> 2;
        const words = new Int32Array(this.module.memory.buffer).subarray(at, at + 13);
        const [isJudged, filled, isDark, isCut, exceeded, isLocked, isBeside, isLongest, ...differences] =
            words;
        let blockedBy = "";
        if (row >= this.rows - 2) blockedBy = "end";
        else if (!isJudged) blockedBy = "start";
        else if (isBeside) blockedBy = "beside";
        else if (isLocked && !isCut) blockedBy = "locked";
        return {
            difference: isJudged ? differences[2] : null,
            filled: filled < 0 ? null : filled,
            isDark: isDark !== 0,
            isCut: isCut !== 0,
            isLongest: isLongest !== 0,
            needs: settings.votes,
            neighbours: [-2, -1, 1, 2].map((step, i) => ({
                row: row + step,
                difference: isJudged ? differences[step + 2] : null,
                exceeded: ((exceeded >> i) & 1) !== 0,
            })),
            blockedBy,
        };
    }

    /** The settings whose scenes are nearest to those that begin at `rows` (ascending): {settings, kept, missed, added}. */
    fit(rows, settings) {
        this.#use(settings);
        this.#name(rows);
        const at = this.module.fit() >> 2;
        const words = new Int32Array(this.module.memory.buffer);
        const [kept, missed, added] = words.subarray(at, at + 3);
        const given = words.subarray(this.module.settings() >> 2);
        const fitted = { ...settings, cutThreshold: given[0], darkLevel: given[1], votes: given[2] };
        if (this.hasDistances) {
            fitted.flashes = given[4] ? "drop" : "keep";
            fitted.fades = kRuleFades[given[5]];
            fitted.dissolves = given[6] !== 0;
        }
        return { settings: fitted, kept, missed, added };
    }

    #use(settings) {
        // A number counts frames; the run's own may be a time.
        const least =
            typeof settings.minScene === "number" ? { frames: settings.minScene } : (settings.minScene ?? {});
        const at = this.module.settings();
        new Int32Array(this.module.memory.buffer, at, kRuleLeast).set([
            settings.cutThreshold,
            settings.darkLevel,
            settings.votes,
            settings.longestScene,
            settings.flashes === "drop" ? 1 : 0,
            Math.max(0, kRuleFades.indexOf(settings.fades)),
            settings.dissolves ? 1 : 0,
            least.frames || least.time ? 1 : 0,
            least.time ? 1 : 0,
            Math.max(0, kRuleShortScenes.indexOf(settings.shortScenes)),
        ]);
        new Float64Array(this.module.memory.buffer, at + 4 * kRuleLeast, 1)[0] =
            least.time || least.frames || 0;
    }

    #name(rows) {
        const at = this.module.input(rows.length);
        new Int32Array(this.module.memory.buffer, at, rows.length).set(rows);
    }
}
