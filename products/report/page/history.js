// States that one can go back to, and forward again.

const kMostStates = 500;

export class History {
    #past = [];
    #future = [];

    constructor(state) {
        this.state = state;
    }

    get canUndo() {
        return this.#past.length > 0;
    }
    get canRedo() {
        return this.#future.length > 0;
    }

    /** A state that is none of its own yet: the next one takes its place. */
    preview(state) {
        this.#settled ??= this.state;
        this.state = state;
    }

    push(state) {
        this.#past.push(this.#settled ?? this.state);
        if (this.#past.length > kMostStates) this.#past.shift();
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

    #settled; // what a preview began with

    #step(from, to) {
        if (from.length === 0) return;
        to.push(this.state);
        this.state = from.pop();
    }
}
