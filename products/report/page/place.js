// Tells of the frame at the cursor, or under the mouse, what it is, and why it is or is not the start of a scene.

import { byId } from "./elements.js";
import { explanation } from "./explain.js";
import { texts } from "./texts.js";

export class Place {
    #cursor = 0;
    #pointed;

    constructor(model, canvas, player) {
        this.model = model;
        this.canvas = canvas;
        this.player = player;
        canvas.ariaLabel = texts.timelineLabel;
        canvas.ariaValueMin = "0";
        canvas.ariaValueMax = String(model.film.rows - 1);
        byId("bar").ariaLabel = texts.barLabel;
    }

    /** The cursor is at the row now. */
    go(row) {
        this.#cursor = row;
        const { scenes } = this.model;
        const index = this.model.indexAt(row);
        this.#tell(row);
        this.canvas.ariaValueNow = String(row);
        this.canvas.ariaValueText = `${byId("place").textContent} ${byId("explanation").textContent}`;
        byId("name-label").textContent = index < 0 ? texts.nameOfGap : texts.nameOfCurrent(index + 1);
        byId("name").disabled = index < 0;
        if (document.activeElement !== byId("name")) byId("name").value = scenes[index]?.name ?? "";
    }

    /** The mouse is over the row, or over none (null). */
    point(row) {
        const isWaiting = this.#pointed !== undefined;
        this.#pointed = row;
        // The rule goes through the figures up to the row: once a picture of the screen is enough.
        if (!isWaiting)
            requestAnimationFrame(() => {
                this.#tell(this.#pointed ?? this.#cursor);
                this.#pointed = undefined;
            });
    }

    #tell(row) {
        const { film } = this.model;
        const { frame, time } = film.placeOf(row);
        byId("place").textContent = texts.place(frame, film.timecodeAt(time));
        byId("explanation").textContent = explanation(row, this.model);
        this.player?.show(row);
    }
}
