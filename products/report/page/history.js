// States that one can go back to, and forward again.

const kMostSteps = 500;
const kMostKept = 200_000; // characters of what is kept of them: browsers have some millions for all pages of a kind

export class History {
    #past = [];
    #future = [];
    #settled; // what a preview began with

    constructor(state) {
        this.state = state;
    }

    /** What `kept` has told of another one. */
    static of({ past, state, future }) {
        const history = new History(state);
        history.#past = past;
        history.#future = future;
        return history;
    }

    get canUndo() {
        return this.#past.length > 0;
    }
    get canRedo() {
        return this.#future.length > 0;
    }
    /** Whether the state is a preview. */
    get isPreview() {
        return this.#settled !== undefined;
    }

    /** The state and the steps nearest to it, as many as have room. */
    get kept() {
        let room = kMostKept;
        const nearest = (steps) => {
            let first = steps.length;
            while (first > 0 && (room -= JSON.stringify(steps[first - 1]).length) >= 0) --first;
            return steps.slice(first);
        };
        return { past: nearest(this.#past), state: this.state, future: nearest(this.#future) };
    }

    /** A state that is none of its own yet: the next one takes its place. */
    preview(state) {
        this.#settled ??= this.state;
        this.state = state;
    }

    push(state) {
        this.#past.push(this.#settled ?? this.state);
        if (this.#past.length > kMostSteps) this.#past.shift();
        this.#settled = undefined;
        this.#future = [];
        this.state = state;
    }

    undo() {
        this.#step(this.#past, this.#future);
    }
    redo() {
        this.#step(this.#future, this.#past);
    }

    #step(from, to) {
        if (from.length === 0) return;
        to.push(this.#settled ?? this.state);
        this.#settled = undefined;
        this.state = from.pop();
    }
}
