// Tells of the frame at the cursor, or under the mouse, what it is, and why it is or is not the start of a scene.

import { byId } from "./elements.js";
import { explanation } from "./explain.js";
import { latestOnly } from "./rulethread.js";
import { texts } from "./texts.js";

export class Place {
    #cursor = 0;

    constructor(model, canvas, player) {
        this.model = model;
        this.canvas = canvas;
        this.player = player;
        canvas.ariaLabel = texts.timelineLabel;
        canvas.ariaValueMin = "0";
        canvas.ariaValueMax = String(model.film.rows - 1);
    }

    /** The cursor is at the row now. */
    go(row) {
        this.#cursor = row;
        const { scenes } = this.model;
        const index = this.model.indexAt(row);
        this.#tell(row);
        byId("name-label").textContent = index < 0 ? texts.nameOfGap : texts.nameOfCurrent(index + 1);
        byId("name").disabled = index < 0;
        if (document.activeElement !== byId("name")) byId("name").value = scenes[index]?.name ?? "";
    }

    /** The mouse is over the row, or over none (null). */
    point(row) {
        this.#tell(row ?? this.#cursor);
    }

    #tell(row) {
        this.#explain(row);
        this.player?.show(row);
    }

    // The rule goes through the figures up to the row, which may take longer than the next one takes to come.
    #explain = latestOnly(async (row) => {
        const { film } = this.model;
        const { frame, time } = film.placeOf(row);
        const why = await explanation(row, this.model);
        byId("place").textContent = texts.place(frame, film.timecodeAt(time));
        byId("explanation").textContent = why;
        if (row !== this.#cursor) return;
        this.canvas.ariaValueNow = String(row);
        this.canvas.ariaValueText = `${byId("place").textContent} ${why}`;
    });
}
