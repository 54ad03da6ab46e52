// The contact sheet: a card a scene, a bounded number of them at a time.

import { byId, element } from "./elements.js";
import { texts } from "./texts.js";

const kCardsAtOnce = 200;

/** `scenes` are {row, end, method, source: the run's scene that starts here, if any}. */
export class Sheet {
    constructor(film) {
        this.film = film;
        this.scenes = [];
        this.first = 0;
        addEventListener("beforeprint", () => this.#fill(0, this.scenes.length));
        addEventListener("afterprint", () => this.#show(this.first));
    }

    setScenes(scenes) {
        this.scenes = scenes;
        this.#show(
            Math.min(this.first, Math.floor(Math.max(0, scenes.length - 1) / kCardsAtOnce) * kCardsAtOnce),
        );
    }

    #show(first) {
        this.first = first;
        const end = Math.min(this.scenes.length, first + kCardsAtOnce);
        this.#fill(first, end);
        const turn = (text, to) =>
            element("button", {
                type: "button",
                disabled: to < 0 || to >= this.scenes.length,
                textContent: text,
                onclick: () => this.#show(to),
            });
        byId("pages").replaceChildren();
        if (this.scenes.length > kCardsAtOnce)
            byId("pages").append(
                turn(texts.earlier, first - kCardsAtOnce),
                texts.scenesShown(first + 1, end, this.scenes.length),
                turn(texts.later, first + kCardsAtOnce),
            );
    }

    #fill(first, end) {
        const cards = [];
        for (let i = first; i < end; ++i) cards.push(this.#card(i));
        byId("sheet").replaceChildren(...cards);
    }

    #card(index) {
        const { row, end, method, source } = this.scenes[index];
        const { frame, time } = this.film.placeOf(row);
        const length = this.film.secondsAt(this.film.timeOf(end) - time);
        const caption = element(
            "figcaption",
            {},
            element("b", {}, String(index + 1)),
            this.film.timecodeAt(time),
        );
        const tape = source?.tape ?? {};
        const lines = [
            texts.sceneLength(frame, length),
            method,
            source?.timecode ? texts.timecode(source.timecode) : "",
            [tape.recording_date, tape.recording_time].filter(Boolean).join(" "),
            [tape.aspect, tape.audio].filter(Boolean).join(", "),
        ];
        for (const line of lines) if (line) caption.append(element("span", {}, line));
        const picture = this.film.run.pictures[source?.picture ?? -1];
        const card = element("figure", {});
        if (picture) card.append(element("img", { src: picture, alt: texts.pictureOf(index + 1) }));
        card.append(caption);
        return card;
    }
}
