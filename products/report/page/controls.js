// The sliders, lists and boxes of the settings.

import { byId, element } from "./elements.js";
import { texts } from "./texts.js";

// A shortest scene may be a time.
const numberOf = (value, step) =>
    typeof value === "number" ? value : value.frames || Math.ceil(value.time / step);

/** Tells the model of what is set, and shows what the model has. */
export class Controls {
    #shown = []; // functions that show the model's settings

    constructor(model, hasDistances) {
        this.model = model;
        const { run, rows } = model.film;
        const fields = byId("fields");
        for (const range of run.ranges) fields.append(this.#slider(range.name, range, rows));
        const minScene = {
            least: 0,
            most: rows,
            default: 0,
            option: "--min-scene",
            help: texts.minSceneHelp,
        };
        fields.append(
            this.#slider("minScene", minScene, rows),
            this.#choice("shortScenes", "--short-scenes", texts.shortScenesHelp),
        );
        const effects = byId("effects");
        effects.append(
            this.#choice("flashes", "--flashes", texts.flashesHelp),
            this.#choice("fades", "--fades", texts.fadesHelp),
            this.#box("dissolves", "--dissolves", texts.dissolvesHelp),
        );
        effects.disabled = !hasDistances;
        byId("no-distances").hidden = hasDistances;
        byId("reset").onclick = () => model.set({ settings: model.runSettings });
        this.show();
    }

    show() {
        for (const show of this.#shown) show(this.model.settings);
        byId("reset").disabled =
            JSON.stringify(this.model.settings) === JSON.stringify(this.model.runSettings);
    }

    #set(name, value, isFinal = true) {
        this.model.set({ settings: { ...this.model.settings, [name]: value } }, isFinal);
    }

    #slider(name, { least, most, default: usual, option, help }, rows) {
        const label = texts.settingNames[name] ?? name;
        const { step } = this.model.film.run;
        const top = Math.min(most, Math.max(rows, 255)); // lengths go on in the number's field
        const slider = element("input", { type: "range", id: `set-${name}`, min: least, max: top, step: 1 });
        const number = element("input", {
            type: "number",
            min: least,
            max: most,
            step: 1,
            ariaLabel: texts.exactly(label),
        });
        const before = element("span", { className: "before" });
        const set = (value, isFinal) => {
            if (Number.isInteger(value) && value >= least && value <= most) this.#set(name, value, isFinal);
            else this.show();
        };
        // Held, it tells of more values than can be shown.
        let pending = 0;
        slider.oninput = () => {
            pending ||= requestAnimationFrame(() => {
                pending = 0;
                set(slider.valueAsNumber, false);
            });
        };
        slider.onchange = () => {
            cancelAnimationFrame(pending);
            pending = 0;
            set(slider.valueAsNumber, true);
        };
        number.onchange = () => set(number.valueAsNumber, true);
        this.#shown.push((settings) => {
            const [now, ofRun] = [settings, this.model.runSettings].map((each) => numberOf(each[name], step));
            slider.value = number.value = now;
            before.textContent = texts.before(ofRun, now, usual);
        });
        return this.#field(name, label, option, help, slider, number, before);
    }

    #choice(name, option, help) {
        const select = element("select", { id: `set-${name}` });
        for (const [value, text] of Object.entries(texts.choices[name]))
            select.append(element("option", { value }, text));
        select.onchange = () => this.#set(name, select.value);
        this.#shown.push((settings) => {
            select.value = settings[name];
        });
        return this.#field(name, texts.settingNames[name], option, help, select);
    }

    #box(name, option, help) {
        const box = element("input", { type: "checkbox", id: `set-${name}` });
        box.onchange = () => this.#set(name, box.checked);
        this.#shown.push((settings) => {
            box.checked = settings[name];
        });
        return this.#field(name, texts.settingNames[name], option, help, box);
    }

    #field(name, label, option, help, control, ...others) {
        control.setAttribute("aria-describedby", `help-${name}`);
        return element(
            "div",
            { className: "field" },
            element("label", { htmlFor: control.id }, label, " ", element("code", {}, option)),
            element("div", { className: "inputs" }, control, ...others),
            element("p", { id: `help-${name}`, className: "help" }, help),
        );
    }
}
