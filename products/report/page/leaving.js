// What one takes along: the command line, and the scenes as a list.

import { correctionCount } from "./corrections.js";
import { commandLine, listCommandLine } from "./command.js";
import { byId, element } from "./elements.js";
import { edlFault, listFormats } from "./lists.js";
import { texts } from "./texts.js";

/** The model's scenes as the writers of lists take them. */
export function listOf(model) {
    const { film } = model;
    return {
        run: film.run,
        scenes: model.scenes.map(({ row, end, method, name }) => ({
            start: film.placeOf(row),
            end: film.placeOf(end),
            method,
            name,
            tape: model.sources.get(row)?.tape ?? {},
        })),
    };
}

// Characters that some system forbids in names become underscores.
const fileName = (run, suffix) => run.name.replace(/[\u0000-\u001f"*/:<>?\\|]/g, "_") + suffix;

function download(name, text) {
    const link = element("a", { href: URL.createObjectURL(new Blob([text])), download: name });
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60_000);
}

async function copy(field) {
    try {
        await navigator.clipboard.writeText(field.value);
    } catch {
        // Pages from files may have no clipboard in some browsers.
        field.select();
        document.execCommand("copy");
    }
}

export class Leaving {
    constructor(model, say) {
        this.model = model;
        for (const { name, suffix, text } of listFormats)
            byId("downloads").append(
                element("button", {
                    type: "button",
                    id: `download-${name}`,
                    textContent: texts.formats[name],
                    onclick: async () => {
                        await model.settled;
                        const list = listOf(model);
                        download(fileName(model.film.run, suffix), text(list));
                        say(texts.downloaded(fileName(model.film.run, suffix), list.scenes.length));
                    },
                }),
            );
        for (const id of ["command", "list-command"])
            byId(`copy-${id}`).onclick = async () => {
                await copy(byId(id));
                say(texts.copied);
            };
    }

    showCommand() {
        const { model } = this;
        const { run } = model.film;
        byId("command").value = commandLine(run, model.settings);
        byId("list-command").value = listCommandLine(run, fileName(run, ".csv"));
        byId("command-help").textContent =
            correctionCount(model.corrections, model.runNames) > 0
                ? texts.commandCorrected
                : texts.commandExact;
    }

    showScenes() {
        const fault = edlFault(listOf(this.model));
        byId("download-edl").disabled = fault !== "";
        byId("download-edl").title = fault === "" ? "" : texts.noEdl[fault];
    }
}
