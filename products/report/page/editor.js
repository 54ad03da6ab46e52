// What one can do at the cursor: each command once, with its button, its keys and what it says when done.

import { addStart, moveStart, nameScene, removeStart } from "./corrections.js";
import { byId, element } from "./elements.js";
import { plainName } from "./lists.js";
import { texts } from "./texts.js";

export class Editor {
    /** `on` has show(row), called when the cursor moves, and say(text). */
    constructor(model, timeline, on) {
        this.model = model;
        this.timeline = timeline;
        this.on = on;
        this.cursor = 0;
    }

    /** Moves the cursor. */
    go(row) {
        this.cursor = Math.max(0, Math.min(this.model.film.rows - 1, Math.floor(row)));
        this.timeline.setCursor(this.cursor);
        this.on.show(this.cursor);
    }

    /** To the start of a scene after (1) or before (-1) the cursor. */
    goToStart(direction) {
        const starts = this.model.scenes.map((scene) => scene.row);
        const row =
            direction > 0
                ? starts.find((each) => each > this.cursor)
                : starts.findLast((each) => each < this.cursor);
        if (row !== undefined) this.go(row);
    }

    add(row = this.cursor) {
        const { model } = this;
        if (this.#startsAt(row)) return this.on.say(texts.isStartAlready(this.#frame(row)));
        this.#correct(addStart(model.corrections, row, model.isFound(row)));
        this.on.say(texts.added(this.#frame(row), model.scenes.length));
    }

    remove(row = this.cursor) {
        const { model } = this;
        if (!this.#startsAt(row)) return this.on.say(texts.isNoStart(this.#frame(row)));
        if (row === model.scenes[0].row) return this.on.say(texts.firstStays);
        this.#correct(removeStart(model.corrections, row, model.isFound(row)));
        this.on.say(texts.removed(this.#frame(row), model.scenes.length));
    }

    /** The scene at the cursor with the one before (-1) or after (1) it. */
    merge(direction) {
        const { scenes } = this.model;
        const index = this.model.indexAt(this.cursor) + (direction > 0 ? 1 : 0);
        if (index > 0 && index < scenes.length) this.remove(scenes[index].row);
        else this.on.say(direction > 0 ? texts.noneAfter : texts.noneBefore);
    }

    /** The start at the cursor, and the cursor with it, by frames; within the scenes on either side. */
    move(frames) {
        if (!this.#startsAt(this.cursor)) return this.on.say(texts.isNoStart(this.#frame(this.cursor)));
        this.moveTo(this.cursor, this.cursor + frames);
    }

    moveTo(from, wanted) {
        const to = this.placeFor(from, wanted);
        if (to === from) return this.on.say(texts.cannotMove);
        this.#correct(moveStart(this.model.corrections, from, to, (row) => this.model.isFound(row)));
        this.go(to);
        this.on.say(texts.moved(this.#frame(from), this.#frame(to)));
    }

    /** The row nearest to the wanted one that the start at `from` may move to. */
    placeFor(from, wanted) {
        const { scenes, film } = this.model;
        const index = scenes.findIndex((scene) => scene.row === from);
        if (index <= 0) return from;
        const least = scenes[index - 1].row + 1;
        const most = Math.min(film.rows, scenes[index].end) - 1;
        return Math.max(least, Math.min(most, Math.round(wanted)));
    }

    name(row, text) {
        const name = plainName(text).trim();
        if ((this.model.corrections.names[row] ?? "") === name) return;
        this.#correct(nameScene(this.model.corrections, row, name));
        this.on.say(texts.named(name));
    }

    async undo() {
        if (!this.model.canUndo) return this.on.say(texts.nothingToUndo);
        this.model.undo();
        await this.model.settled;
        this.on.say(texts.undone(this.model.scenes.length));
    }
    async redo() {
        if (!this.model.canRedo) return this.on.say(texts.nothingToRedo);
        this.model.redo();
        await this.model.settled;
        this.on.say(texts.redone(this.model.scenes.length));
    }

    #startsAt(row) {
        return this.model.scenes.some((scene) => scene.row === row);
    }
    #frame(row) {
        return this.model.film.frameOf(row);
    }
    #correct(corrections) {
        this.model.set({ corrections });
    }
}

function showKeys() {
    const list = byId("key-list");
    list.open = !list.open;
    if (list.open) list.scrollIntoView({ block: "nearest" });
}

/** Commands by the ids of their buttons: what they do, and the keys on the timeline that do it. */
export function commandsOf(editor, player) {
    const { timeline, model } = editor;
    const second = Math.max(1, Math.round(model.film.rate[0] / model.film.rate[1]));
    const by = (rows) => () => editor.go(editor.cursor + rows);
    const page = (pages) => () => editor.go(editor.cursor + (pages * timeline.span) / 2);
    return [
        { id: "previous-start", keys: ["p", "Ctrl+ArrowLeft"], run: () => editor.goToStart(-1) },
        { id: "next-start", keys: ["n", "Ctrl+ArrowRight"], run: () => editor.goToStart(1) },
        { id: "add-start", keys: ["a", "Enter"], run: () => editor.add() },
        { id: "remove-start", keys: ["Delete", "Backspace"], run: () => editor.remove() },
        { id: "merge-before", keys: ["m"], run: () => editor.merge(-1) },
        { id: "merge-after", keys: ["Shift+M"], run: () => editor.merge(1) },
        { id: "move-back", keys: ["Shift+ArrowLeft"], run: () => editor.move(-1) },
        { id: "move-on", keys: ["Shift+ArrowRight"], run: () => editor.move(1) },
        { id: "undo", keys: ["Ctrl+z"], run: () => editor.undo(), isEverywhere: true },
        { id: "redo", keys: ["Ctrl+y", "Ctrl+Shift+Z"], run: () => editor.redo(), isEverywhere: true },
        { id: "zoom-in", keys: ["+", "="], run: () => timeline.zoom(0.5, editor.cursor) },
        { id: "zoom-out", keys: ["-"], run: () => timeline.zoom(2, editor.cursor) },
        { id: "zoom-all", keys: ["0"], run: () => timeline.show(0, model.film.rows) },
        ...(player ? [{ id: "play", keys: [" "], run: () => player.toggle() }] : []),
        { keys: ["?"], help: "keyKeys", run: showKeys },
        { keys: ["r", "F2"], help: "keyName", run: () => byId("name").focus() },
        { keys: ["d"], help: "keyDownloads", run: () => byId("downloads").firstElementChild.focus() },
        { keys: ["ArrowLeft"], help: "keyBack", run: by(-1) },
        { keys: ["ArrowRight"], help: "keyOn", run: by(1) },
        { keys: ["ArrowUp"], help: "keySecondOn", run: by(second) },
        { keys: ["ArrowDown"], help: "keySecondBack", run: by(-second) },
        { keys: ["PageUp"], help: "keyPageBack", run: page(-1) },
        { keys: ["PageDown"], help: "keyPageOn", run: page(1) },
        { keys: ["Home"], help: "keyHome", run: () => editor.go(0) },
        { keys: ["End"], help: "keyEnd", run: () => editor.go(model.film.rows - 1) },
    ];
}

// Of signs the keyboard's layout says whether they need Shift.
function keyOf({ key, ctrlKey, metaKey, shiftKey }) {
    const isSign = key.length === 1 && key.toUpperCase() === key.toLowerCase();
    return (ctrlKey || metaKey ? "Ctrl+" : "") + (shiftKey && !isSign ? "Shift+" : "") + key;
}

/** Buttons into the bar, keys onto the timeline, and the list of keys. */
export function addCommands(commands, canvas) {
    const isTyping = (target) => target.matches("input:not([type=range], [type=checkbox]), textarea");
    byId("bar").ariaLabel = texts.barLabel;
    for (const { id, keys, run } of commands.filter((command) => command.id)) {
        const button = element("button", { type: "button", id, title: keys.map(texts.key).join(", ") });
        button.textContent = texts.commands[id];
        button.onclick = run;
        byId("bar").append(button);
    }
    const runKey = (event, isAllowed) => {
        const command = commands.find((each) => each.keys.includes(keyOf(event)));
        if (!command || event.altKey || !isAllowed(command)) return;
        event.preventDefault();
        command.run();
    };
    canvas.addEventListener("keydown", (event) => runKey(event, (command) => !command.isEverywhere));
    addEventListener("keydown", (event) =>
        runKey(event, (command) => command.isEverywhere && !isTyping(event.target)),
    );
    for (const { id, keys, help } of commands)
        byId("keys").append(
            element("dt", {}, ...keys.map((key) => element("kbd", {}, texts.key(key)))),
            element("dd", {}, id ? texts.commands[id] : texts[help]),
        );
}
