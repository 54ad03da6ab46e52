// Keeps the state of the page in the browser, by what the page holds: a copy of the file finds it again.

const kPrefix = "kxscenes 2 "; // the number changes with what is kept

/** Two numbers of 32 bits over a text, as a word. */
export function contentKey(text) {
    let one = 0x811c9dc5;
    let other = 0x9747b28c;
    for (let i = 0; i < text.length; ++i) {
        one = Math.imul(one ^ text.charCodeAt(i), 0x01000193);
        other = Math.imul(other ^ text.charCodeAt(i), 0x5bd1e995) ^ (other >>> 15);
    }
    return `${(one >>> 0).toString(16)}${(other >>> 0).toString(16)}`;
}

export class Memory {
    constructor(content) {
        this.key = kPrefix + contentKey(content);
        this.isAvailable = true;
    }

    /** What was kept; null without any. */
    load() {
        try {
            return JSON.parse(localStorage.getItem(this.key));
        } catch {
            this.isAvailable = false;
            return null;
        }
    }

    keep(state) {
        try {
            localStorage.setItem(this.key, JSON.stringify(state));
            this.isAvailable = true;
        } catch {
            this.isAvailable = false;
        }
    }
}
