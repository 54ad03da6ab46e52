// The least and the most of any stretch of a column of figures in a few steps, however long the film is.

const kStep = 4; // values that one of the next level stands for

/** Over a Uint8Array; takes two thirds of its bytes besides. */
export class Pyramid {
    constructor(values) {
        this.least = [values];
        this.most = [values];
        while (this.most.at(-1).length > kStep) {
            this.least.push(Pyramid.#next(this.least.at(-1), Math.min));
            this.most.push(Pyramid.#next(this.most.at(-1), Math.max));
        }
    }

    static #next(values, pick) {
        const next = new Uint8Array(Math.ceil(values.length / kStep));
        for (let i = 0; i < next.length; ++i) {
            let value = values[i * kStep];
            const end = Math.min(values.length, (i + 1) * kStep);
            for (let j = i * kStep + 1; j < end; ++j) value = pick(value, values[j]);
            next[i] = value;
        }
        return next;
    }

    /** Of the values from `from` up to but not including `to`, of which there must be one. */
    mostOf(from, to) {
        return Pyramid.#over(this.most, from, to, Math.max);
    }
    leastOf(from, to) {
        return Pyramid.#over(this.least, from, to, Math.min);
    }

    // Single values up to a whole cell of the next level, then cells of that, and so on.
    static #over(levels, from, to, pick) {
        let value = levels[0][from];
        for (let level = 0; from < to; ++level) {
            const cells = levels[level];
            const isTop = level + 1 === levels.length;
            while (from < to && (isTop || from % kStep !== 0)) value = pick(value, cells[from++]);
            while (from < to && to % kStep !== 0) value = pick(value, cells[--to]);
            from /= kStep;
            to /= kStep;
        }
        return value;
    }
}
