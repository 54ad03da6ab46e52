// The rule in a thread of its own, so that the page goes on while hours of figures are judged.

export class RuleThread {
    #worker;
    #asked = []; // who waits for an answer; they come in the order of the questions

    /** `source` is the thread's script, `bytes` the rule's module; `hasDistances` fails where the browser runs neither. */
    constructor(source, bytes, columns, { rows, places, step, end }) {
        const address = URL.createObjectURL(new Blob([source], { type: "text/javascript" }));
        this.#worker = new Worker(address);
        this.#worker.onmessage = ({ data: { value, fault } }) => {
            const { resolve, reject } = this.#asked.shift();
            if (fault === undefined) resolve(value);
            else reject(new Error(fault));
        };
        this.#worker.onerror = () => {
            for (const { reject } of this.#asked.splice(0)) reject(new Error("the thread has ended"));
        };
        this.hasDistances = this.#ask("load", bytes, columns, { rows, places, step, end });
    }

    /** As those of Rule. */
    decide(settings) {
        return this.#ask("decide", settings);
    }
    explain(row, settings) {
        return this.#ask("explain", row, settings);
    }
    fit(rows, settings) {
        return this.#ask("fit", rows, settings);
    }

    /** Whoever waits for an answer gets none. */
    stop() {
        this.#worker.terminate();
    }

    #ask(...question) {
        return new Promise((resolve, reject) => {
            this.#asked.push({ resolve, reject });
            this.#worker.postMessage(question);
        });
    }
}

/**
 * `work` takes a value, and its time. The function for it has one value done at a time, and of those that come meanwhile
 * only the last; its promise is kept once there is nothing left to do.
 */
export function latestOnly(work) {
    const waiting = [];
    let running = null;
    const run = async () => {
        try {
            while (waiting.length > 0) await work(waiting.splice(0).at(-1));
        } finally {
            running = null;
        }
    };
    return (value) => {
        waiting.push(value);
        return (running ??= run());
    };
}
