// The command line that finds what the page shows.

/** One word for a POSIX shell. */
export function shellWord(text) {
    return /^[\w@%+=:,./-]+$/.test(text) ? text : `'${text.replaceAll("'", "'\\''")}'`;
}

// A name that begins with a dash would be an option; a single one is the standard input.
const inputWord = (input) => (input.startsWith("-") && input !== "-" ? `./${input}` : input);

/** Options are named where they differ from the default, or the run's did: its configuration may name them, too. */
export function optionWords(run, settings) {
    const words = [];
    for (const { name, option, default: usual } of run.ranges)
        if (settings[name] !== usual || run.parameters[name] !== usual)
            words.push(option, String(settings[name]));
    const { choice } = run;
    if (settings.flashes !== "keep" || choice.flashes !== "keep") words.push("--flashes", settings.flashes);
    if (settings.fades !== "off" || choice.fades !== "off") words.push("--fades", settings.fades);
    if (settings.dissolves) words.push("--dissolves");
    const minScene = settings.minScene.text ?? String(settings.minScene);
    if (minScene !== "" && (minScene !== "0" || run.minScene.text !== ""))
        words.push("--min-scene", minScene, "--short-scenes", settings.shortScenes);
    return words;
}

export function commandLine(run, settings) {
    const words = ["kxscenes", ...run.command, ...optionWords(run, settings), inputWord(run.input)];
    return words.map(shellWord).join(" ");
}

/** What reads a list back that the page has written to `file`. */
export function listCommandLine(run, file) {
    return ["kxscenes", "--scenes", inputWord(file), inputWord(run.input)].map(shellWord).join(" ");
}
