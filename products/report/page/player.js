// The film itself, beside the timeline, where the page has a link to it and the browser plays it.

import { byId } from "./elements.js";
import { texts } from "./texts.js";

export class Player {
    /** `onTime` is called with the row that shows while the film plays. */
    constructor(film, onTime) {
        this.film = film;
        this.video = byId("film");
        this.video.hidden = false;
        this.video.setAttribute("aria-label", texts.film);
        this.delay = (film.run.delay * film.unit[0]) / film.unit[1];
        this.video.onerror = () => {
            this.video.hidden = true;
            byId("no-film").hidden = false;
            byId("no-film").textContent = texts.noFilm(film.run.film);
        };
        this.video.ontimeupdate = () => {
            if (!this.video.paused) onTime(film.rowAt(this.video.currentTime - this.delay));
        };
        this.video.onseeked = () => this.#seekWanted();
        this.video.src = film.run.film;
    }

    #wanted = null;

    /** Shows the row; of many in short time the last. */
    show(row) {
        if (!this.video.paused) return;
        // Into the frame, not at its edge.
        const length = this.film.secondsOf(row + 1) - this.film.secondsOf(row);
        this.#wanted = this.delay + this.film.secondsOf(row) + length / 2;
        if (!this.video.seeking) this.#seekWanted();
    }

    toggle() {
        if (this.video.paused) this.video.play().catch(() => {});
        else this.video.pause();
    }

    #seekWanted() {
        if (this.#wanted === null) return;
        this.video.currentTime = this.#wanted;
        this.#wanted = null;
    }
}
