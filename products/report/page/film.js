// The run that the page shows: its frames, their numbers, times and figures, and the scenes that it found.

import { firstWhere } from "./search.js";
import { clockText, frameTimecode, numberingOf, rescale, secondsText } from "./times.js";

/** The bytes of a base64 text. */
export function bytesOf(base64) {
    const text = atob(base64.trim());
    const bytes = new Uint8Array(text.length);
    for (let i = 0; i < text.length; ++i) bytes[i] = text.charCodeAt(i);
    return bytes;
}

const kColumnTypes = { variance: Uint16Array, detail: Uint16Array, duration: Uint32Array };

/** Planar little-endian columns of `rows` numbers each, by name. */
export function columnsOf(names, rows, bytes) {
    const columns = {};
    let offset = 0;
    for (const name of names) {
        const Type = kColumnTypes[name] ?? Uint8Array;
        const size = rows * Type.BYTES_PER_ELEMENT;
        if (offset + size > bytes.length) throw new RangeError("the figures are cut short");
        columns[name] = new Type(bytes.slice(offset, offset + size).buffer);
        offset += size;
    }
    return columns;
}

/**
 * Rows count the frames of the run from 0, whether they have figures or not; a place of the film is a row's frame
 * number in the file and its time in units.
 */
export class Film {
    constructor(run) {
        this.run = run;
        this.unit = run.unit;
        this.rate = run.rate;
        this.end = run.end;
        this.columns = {};
        this.times = null;
        const first = run.scenes[0] ?? { frame: 0, time: 0 };
        this.hasFigures = run.rows > 0;
        this.rows = this.hasFigures ? run.rows : Math.max(1, run.end.frame - first.frame);
        this.places = run.places;
        this.scenes = run.scenes;
        if (!this.hasFigures) {
            this.scenes = run.scenes.map((scene) => ({ ...scene, row: scene.frame - first.frame }));
            // Of times only those of the scenes are known; those between them are taken to be even.
            this.places = this.scenes.map(({ row, frame, time, endFrame, endTime }) => {
                return [row, frame, time, (endTime - time) / (endFrame - frame)];
            });
        }
        if (this.places.length === 0) this.places = [[0, first.frame, first.time]];
        this.numbering = numberingOf(run.rate);
    }

    /** Takes the figures, once they are unpacked. */
    setColumns(columns) {
        this.columns = columns;
        if (!columns.duration) return;
        this.times = new Float64Array(this.rows + 1);
        let next = 0;
        for (let row = 0; row < this.rows; ++row) {
            while (next < this.places.length && this.places[next][0] === row)
                this.times[row] = this.places[next++][2];
            this.times[row + 1] = this.times[row] + columns.duration[row];
        }
    }

    frameOf(row) {
        if (row >= this.rows) return this.end.frame;
        const place = this.#placeBefore(row);
        return place[1] + row - place[0];
    }

    /** In units; of the row after the last the end of the film. */
    timeOf(row) {
        if (row >= this.rows) return this.end.time;
        if (this.times) return this.times[row];
        const place = this.#placeBefore(row);
        return place[2] + Math.round((row - place[0]) * (place[3] ?? this.run.step));
    }

    /** The row that bears the frame's number, or the first after it. */
    rowOfFrame(frame) {
        return firstWhere(this.rows, (row) => this.frameOf(row) >= frame);
    }

    placeOf(row) {
        return { frame: this.frameOf(row), time: this.timeOf(row) };
    }

    secondsOf(row) {
        return (this.timeOf(row) * this.unit[0]) / this.unit[1];
    }

    /** The row that shows at `seconds`. */
    rowAt(seconds) {
        const time = (seconds * this.unit[1]) / this.unit[0] + 1e-6;
        return Math.max(0, firstWhere(this.rows, (row) => this.timeOf(row) > time) - 1);
    }

    /** Counted from 00:00:00:00 at the first frame of the file. */
    timecodeAt(time) {
        return frameTimecode(rescale(time, this.unit, [this.rate[1], this.rate[0]]), this.numbering);
    }

    clockAt(time, decimals) {
        return clockText(time, this.unit, decimals);
    }

    // Of those that tell where rows lie the last that is not beyond the row.
    #placeBefore(row) {
        const { places } = this;
        return places[Math.max(0, firstWhere(places.length, (i) => places[i][0] > row) - 1)];
    }

    secondsAt(time) {
        return secondsText(time, this.unit);
    }
}
