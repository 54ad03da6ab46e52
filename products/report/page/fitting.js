// Has the rule look for the settings that give a person's scenes best, and offers them.

import { byId } from "./elements.js";
import { texts } from "./texts.js";

const kFitted = ["cutThreshold", "darkLevel", "votes", "flashes", "fades", "dissolves"];

export class Fitting {
    #settings = null;

    constructor(model, say) {
        this.model = model;
        byId("fit").onclick = () => {
            byId("fitted").textContent = texts.isFitting;
            // Hours of figures take a moment, and the browser is to show that.
            setTimeout(() => {
                this.#fit();
                say(byId("fitted").textContent);
            });
        };
        byId("take-fit").onclick = () => {
            model.set({ settings: this.#settings });
            byId("fit").focus();
            say(texts.fitTaken);
        };
    }

    /** What was found no longer goes with what is shown. */
    clear() {
        byId("fitted").textContent = "";
        byId("take-fit").hidden = true;
    }

    #fit() {
        const { settings, fixed, scenes, rule } = this.model;
        const rows = scenes.map((scene) => scene.row).filter((row) => !fixed.includes(row));
        const fit = rule.fit(rows, settings);
        this.#settings = fit.settings;
        const differing = kFitted.filter((name) => fit.settings[name] !== settings[name]);
        const values = differing.map((name) => texts.fittedValue(name, fit.settings[name]));
        byId("fitted").textContent = texts.fitted(values, fit.kept, fit.kept + fit.missed, fit.added);
        byId("take-fit").hidden = differing.length === 0;
    }
}
