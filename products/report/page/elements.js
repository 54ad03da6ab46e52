// Elements of the page, found and made.

import { texts } from "./texts.js";

export function byId(id) {
    return document.getElementById(id);
}

/** An element with these properties, and children that are elements or texts. */
export function element(name, properties = {}, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(properties)) {
        if (key in made) made[key] = value;
        else made.setAttribute(key, value);
    }
    made.append(...children);
    return made;
}

/** Puts the texts where the page names them. */
export function fillTexts() {
    for (const each of document.querySelectorAll("[data-text]")) each.textContent = texts[each.dataset.text];
}
