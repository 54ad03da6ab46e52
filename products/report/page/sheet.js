// The contact sheet: a card a scene, a bounded number of them at a time.

import { byId, element } from "./elements.js";
import { texts } from "./texts.js";

const kCardsAtOnce = 200;

export class Sheet {
    #cards = new Map(); // by row, so that what is typed in stays when sliders move

    /** Shows the model's scenes, and gives the editor what is done with their cards. */
    constructor(model, editor) {
        this.model = model;
        this.editor = editor;
        this.first = 0;
        addEventListener("beforeprint", () => this.#fill(0, model.scenes.length));
        addEventListener("afterprint", () => this.#turnTo(this.first));
    }

    show() {
        const last = Math.max(0, this.model.scenes.length - 1);
        this.#turnTo(Math.min(this.first, last - (last % kCardsAtOnce)));
    }

    #turnTo(first) {
        this.first = first;
        const { length } = this.model.scenes;
        const end = Math.min(length, first + kCardsAtOnce);
        this.#fill(first, end);
        byId("pages").hidden = length <= kCardsAtOnce;
        const turn = (textContent, to) =>
            element("button", {
                type: "button",
                disabled: to < 0 || to >= length,
                textContent,
                onclick: () => this.#turnTo(to),
            });
        byId("pages").replaceChildren(
            turn(texts.earlier, first - kCardsAtOnce),
            texts.scenesShown(first + 1, end, length),
            turn(texts.later, first + kCardsAtOnce),
        );
    }

    #fill(first, end) {
        const appeared = new Set(this.model.changes.appeared);
        const cards = new Map();
        for (let i = first; i < end; ++i) {
            const scene = this.model.scenes[i];
            const card = this.#cards.get(scene.row) ?? this.#card(scene.row);
            this.#update(card, i, appeared.has(scene.row));
            cards.set(scene.row, card);
        }
        this.#cards = cards;
        const sheet = byId("sheet");
        const wanted = [...cards.values()];
        // Only what differs is touched, so that the focus stays where it is.
        for (const child of [...sheet.children]) if (!wanted.includes(child)) child.remove();
        wanted.forEach((card, i) => {
            if (sheet.children[i] !== card) sheet.insertBefore(card, sheet.children[i] ?? null);
        });
    }

    #card(row) {
        const { model, editor } = this;
        const source = model.sources.get(row);
        const picture = model.film.run.pictures[source?.picture ?? -1];
        const image = picture
            ? element("img", { src: picture, alt: "" })
            : element("span", { className: "none", "data-empty": texts.noPicture });
        const go = element("button", { type: "button", className: "go" }, image);
        go.onclick = () => {
            editor.go(row);
            editor.timeline.canvas.focus();
        };
        const name = element("input", {
            type: "text",
            placeholder: texts.nameHere,
            onchange: () => editor.name(row, name.value),
        });
        const merge = element("button", { type: "button", className: "small", textContent: texts.mergeCard });
        merge.onclick = () => {
            const before = merge.closest("li").previousElementSibling;
            editor.remove(row);
            before?.querySelector(".go").focus();
        };
        const card = element("li", {}, go, element("p", { className: "caption" }), name, merge);
        Object.assign(card, { row, go, name, merge, source });
        return card;
    }

    #update(card, index, isNew) {
        const { film } = this.model;
        const { row, end, method, by, from, name } = this.model.scenes[index];
        if (document.activeElement !== card.name) card.name.value = name;
        // Of many that a slider leaves as they are none is made again.
        const content = [index, end, method, by, from, name, isNew].join();
        if (card.content === content) return;
        card.content = content;
        const { frame, time } = film.placeOf(row);
        const tape = card.source?.tape ?? {};
        const length = film.secondsAt(film.timeOf(end) - time);
        const lines = [
            texts.sceneLength(frame, length),
            texts.foundBy(method, by, from === null ? null : film.frameOf(from)),
            card.source?.timecode ? texts.timecode(card.source.timecode) : "",
            [tape.recording_date, tape.recording_time].filter(Boolean).join(" "),
            [tape.aspect, tape.audio].filter(Boolean).join(", "),
        ];
        const number = element("b", {}, String(index + 1));
        const badge = isNew ? [element("mark", {}, texts.isNew)] : [];
        card.querySelector(".caption").replaceChildren(
            number,
            film.timecodeAt(time),
            ...badge,
            ...lines.filter(Boolean).map((line) => element("span", {}, line)),
        );
        card.classList.toggle("new", isNew);
        card.go.ariaLabel = texts.goTo(index + 1, name);
        card.name.ariaLabel = texts.nameOf(index + 1);
        card.merge.ariaLabel = texts.mergeOf(index + 1);
        card.merge.disabled = index === 0;
    }
}
