// Has the rule look for the settings that give a person's scenes best, and offers them.

import { byId } from "./elements.js";
import { texts } from "./texts.js";

const kFitted = ["cutThreshold", "darkLevel", "votes"];

export class Fitting {
    #settings = null;

    constructor(model, say) {
        this.model = model;
        byId("fit").onclick = () => {
            this.#fit();
            say(byId("fitted").textContent);
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
        const rows = scenes.map((scene) => scene.row);
        const fit = rule.fit(rows, { ...settings, fixed }, { only: kFitted });
        const found = Object.fromEntries(kFitted.map((name) => [name, fit.settings[name]]));
        this.#settings = { ...settings, ...found };
        const differing = kFitted.filter((name) => found[name] !== settings[name]);
        const values = differing.map((name) => `${texts.settingNames[name]} ${found[name]}`);
        byId("fitted").textContent = texts.fitted(values, fit.kept, rows.length, fit.added);
        byId("take-fit").hidden = differing.length === 0;
    }
}
