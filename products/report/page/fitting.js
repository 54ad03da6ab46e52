// Has the rule look for the settings that give a person's scenes best, and offers them.

import { byId } from "./elements.js";
import { texts } from "./texts.js";

const kFitted = ["cutThreshold", "darkLevel", "votes", "flashes", "fades", "dissolves"];

export class Fitting {
    #settings = null;
    #thread = null; // that is trying

    /** `startThread` makes a RuleThread: the model's own is to answer while hours of figures are tried. */
    constructor(model, startThread, say) {
        this.model = model;
        byId("fit").onclick = async () => {
            this.clear();
            byId("fitted").textContent = texts.isFitting;
            this.#thread = startThread();
            const { settings, fixed, scenes } = model;
            const rows = scenes.map((scene) => scene.row).filter((row) => !fixed.includes(row));
            const fit = await this.#thread.fit(rows, settings);
            this.clear();
            this.#show(fit, settings);
            say(byId("fitted").textContent);
        };
        byId("take-fit").onclick = () => {
            model.set({ settings: this.#settings });
            byId("fit").focus();
            say(texts.fitTaken);
        };
    }

    /** What is looked for, or was found, does not go with what is shown any more. */
    clear() {
        this.#thread?.stop();
        this.#thread = null;
        byId("fitted").textContent = "";
        byId("take-fit").hidden = true;
    }

    #show(fit, settings) {
        this.#settings = fit.settings;
        const differing = kFitted.filter((name) => fit.settings[name] !== settings[name]);
        const values = differing.map((name) => texts.fittedValue(name, fit.settings[name]));
        byId("fitted").textContent = texts.fitted(values, fit.kept, fit.kept + fit.missed, fit.added);
        byId("take-fit").hidden = differing.length === 0;
    }
}
