// Every English text of the page.

const plural = (count, word) => `${count.toLocaleString("en")} ${word}${count === 1 ? "" : "s"}`;
const scenesNow = (count) => `${plural(count, "scene")} now.`;
const keyNames = {
    ArrowLeft: "←",
    ArrowRight: "→",
    ArrowUp: "↑",
    ArrowDown: "↓",
    " ": "Space",
    PageUp: "Page up",
    PageDown: "Page down",
};
const methodNames = { video: "cut", fade: "fade", dissolve: "dissolve", manual: "added by hand" };
const methodText = (method) => methodNames[method] ?? method;

export const texts = {
    timeline: "Timeline",
    timelineHelp:
        "Turn the wheel or pinch to zoom, drag to move, click for the cursor, click twice to add or remove a start, drag a mark " +
        "between the two graphs to move it. The ? key shows all keys.",
    timelineLabel: "Position in the film",
    barLabel: "Commands at the cursor",
    scenes: "Scenes",
    settings: "Settings of the run",
    tuning: "Tuning",
    result: "Result",
    legendCut: "start of a scene",
    legendOther: "in a fade or dissolve",
    legendPerson: "by hand",
    legendGone: "of the run, now gone",
    legendNew: "new",
    legendDifference: (most, threshold) =>
        `difference to the frame before (0 to ${most}), dashed: cut threshold ${threshold}`,
    legendLevel: (level) => `level (0 to 255), dashed: dark level ${level}`,
    partial: (reason) => `Partial: ${reason}`,
    summary: (scenes, frames, length, rate, width, height) =>
        `${plural(scenes, "scene")} in ${plural(frames, "frame")}, ${length}, ${rate} frames a second` +
        (width > 0 ? `, ${width} × ${height}` : ""),

    // What is not there.
    noRule:
        "This browser does not run WebAssembly in a worker here, so the settings cannot be turned; the scenes are those of the " +
        "run. They can be corrected and downloaded all the same.",
    noFigures:
        "This run kept no figures of its pictures, so there are no settings to turn; its scenes can be corrected.",
    brokenFigures: "The figures in this page cannot be read; the scenes are those of the run.",
    noMemory:
        "This browser keeps nothing for this page: what you change here is lost when you close or reload it.",
    noFilm: (link) => `The film (${link}) is not there, or this browser does not play it.`,
    noDistances:
        "Flashes, fades and dissolves need each frame's distances to earlier ones, which the saved figures do not have: make " +
        "the report from the film, or from figures that were saved with one of these options.",
    film: "The film at the cursor",

    // The cursor.
    place: (frame, timecode) => `Frame ${frame}, ${timecode}:`,
    figures: (difference, level) => `Difference ${difference}, level ${level}.`,
    filled: (filled) =>
        `It repeats the frame before it amid motion, so that its difference counts as ${filled}.`,
    neighbour: (frame, difference, exceeded) => `frame ${frame} (${difference}) ${exceeded ? "yes" : "no"}`,
    votes: (exceeded, needs, threshold, list) =>
        `It exceeds ${exceeded} of its four neighbours by more than ${threshold}; ${needs} are asked for: ${list}.`,
    isLongest: (frames) => `The scene before it has reached the longest, ${frames} frames.`,
    isDark: (level, darkLevel) =>
        `It is the darkest of a fade: its level of ${level} is not above ${darkLevel}, nor above those beside it.`,
    blocked: {
        start: "The first four frames of a run are not judged.",
        end: "The last two frames are not judged, since a frame needs two after it.",
        beside: "A scene begins one frame earlier.",
        locked: "No frame counts as dark before one has been brighter since the last start.",
    },
    isStart: (method) => `A scene starts here (${methodText(method)}).`,
    noStart: "No scene starts here.",
    nameOfCurrent: (number) => `Name of scene ${number}`,
    nameOfGap: "No scene is here",

    // Commands, and what they say.
    commands: {
        "previous-start": "Previous start",
        "next-start": "Next start",
        "add-start": "Add start",
        "remove-start": "Remove start",
        "merge-before": "Merge with previous",
        "merge-after": "Merge with next",
        "move-back": "Move start back",
        "move-on": "Move start on",
        undo: "Undo",
        redo: "Redo",
        "zoom-in": "Zoom in",
        "zoom-out": "Zoom out",
        "zoom-all": "See all",
        play: "Play or pause",
    },
    key: (key) =>
        key
            .split(/(?<=.)\+(?=.)/)
            .map((part) => keyNames[part] ?? (part.length === 1 ? part.toUpperCase() : part))
            .join(" "),
    keysHeading: "Keys on the timeline",
    keyKeys: "Show or hide this list",
    keyName: "Name the scene",
    keyDownloads: "To the downloads",
    keyBack: "One frame back",
    keyOn: "One frame on",
    keySecondBack: "One second back",
    keySecondOn: "One second on",
    keyPageBack: "Half of what is in sight back",
    keyPageOn: "Half of what is in sight on",
    keyHome: "First frame",
    keyEnd: "Last frame",
    added: (frame, count) => `Scene added at frame ${frame}. ${scenesNow(count)}`,
    removed: (frame, count) => `Start at frame ${frame} removed. ${scenesNow(count)}`,
    moved: (from, to) => `Start moved from frame ${from} to ${to}.`,
    named: (name) => (name === "" ? "Name taken away." : `Scene named ${name}.`),
    isStartAlready: (frame) => `A scene starts at frame ${frame} already.`,
    isNoStart: (frame) => `No scene starts at frame ${frame}.`,
    firstStays: "The first scene stays.",
    cannotMove: "The start cannot move there.",
    noneBefore: "There is no scene before it.",
    noneAfter: "There is no scene after it.",
    undone: (count) => `Undone. ${scenesNow(count)}`,
    redone: (count) => `Done again. ${scenesNow(count)}`,
    nothingToUndo: "There is nothing to undo.",
    nothingToRedo: "There is nothing to do again.",

    // Settings.
    settingNames: {
        cutThreshold: "Cut threshold",
        darkLevel: "Dark level",
        votes: "Votes",
        longestScene: "Longest scene",
        minScene: "Shortest scene",
        shortScenes: "Shorter scenes",
        flashes: "Flashes",
        fades: "Fades",
        dissolves: "Dissolves",
    },
    exactly: (name) => `${name}, exactly`,
    before: (run, now, usual) => {
        if (run !== now) return `run: ${run}`;
        return now === usual ? "" : `default: ${usual}`;
    },
    minSceneHelp: "Frames that a scene must have; 0 takes all",
    shortScenesHelp: "What becomes of scenes that are shorter",
    flashesHelp:
        "Whether cuts at flashes, after which the picture comes back within four frames, begin scenes",
    fadesHelp: "Where one scene begins in a fade through black or white, whatever the dark level",
    dissolvesHelp: "Find gradual changes from one picture to another, too",
    choices: {
        shortScenes: {
            merge: "merge with the one before",
            drop: "leave out",
            "merge-last": "merge the last one only",
        },
        flashes: { keep: "begin scenes", drop: "do not begin scenes" },
        fades: {
            off: "not looked for",
            start: "at the first frame",
            middle: "in the middle",
            end: "after the last frame",
        },
    },
    reset: "As in the run",

    // The result.
    count: (count) => plural(count, "scene"),
    changed: (appeared, gone, byHand) => {
        const parts = [];
        if (appeared > 0) parts.push(`${appeared.toLocaleString("en")} new`);
        if (gone > 0) parts.push(`${gone.toLocaleString("en")} gone`);
        const against = parts.length > 0 ? `Against the run: ${parts.join(", ")}.` : "The scenes of the run.";
        return byHand > 0 ? `${against} ${plural(byHand, "correction")} by hand.` : against;
    },
    fitting: "Fitting",
    fittingHelp: "Looks for the settings that give the scenes above best without corrections.",
    isFitting: "Trying…",
    fit: "Fit settings to these scenes",
    fitted: (values, kept, count, added) => {
        const what = values.length > 0 ? values.join(", ") : "The settings as they are";
        const verb = values.length === 1 ? "gives" : "give";
        const more = added === 0 ? "no other" : `${added.toLocaleString("en")} more`;
        const best = values.length === 0 ? " No others give them better." : "";
        return `${what} ${verb} ${kept.toLocaleString("en")} of your ${plural(count, "cut")} and ${more}.${best}`;
    },
    fittedValue: (name, value) => {
        if (name === "dissolves") return value ? "dissolves looked for" : "dissolves not looked for";
        return `${texts.settingNames[name].toLowerCase()} ${texts.choices[name]?.[value] ?? value}`;
    },
    takeFit: "Take these settings",
    fitTaken: "Settings taken.",
    command: "Command line",
    commandExact: "It finds these scenes.",
    commandCorrected:
        "It finds these scenes as they are without your corrections; those go with the list below.",
    copy: "Copy",
    copied: "Copied.",
    downloadsHeading: "Download the list",
    formats: {
        csv: "CSV",
        json: "JSON",
        edl: "EDL",
        ffmeta: "Chapters (FFmpeg)",
        mkvchapters: "Chapters (Matroska)",
    },
    downloaded: (name, count) => `${name}: ${plural(count, "scene")}.`,
    noEdl: {
        variable: "An EDL counts frames at one rate, and this film's rate varies.",
        rate: "An EDL has no timecode for this rate.",
    },
    listHelp: "CSV, JSON and EDL are read back, for clips, pictures and other lists:",

    // The contact sheet.
    noPicture: "no picture",
    goTo: (number, name) => `Go to scene ${number}${name === "" ? "" : `, ${name}`}`,
    nameHere: "name",
    nameOf: (number) => `Name of scene ${number}`,
    mergeCard: "merge with previous",
    mergeOf: (number) => `merge with previous: scene ${number}`,
    isNew: "new",
    foundBy: (method, by, from) => {
        if (from !== null) return `moved by hand from frame ${from}`;
        return by === "both"
            ? `${method}, and by hand`
            : method === "manual" && by === "person"
              ? "by hand"
              : method;
    },
    sceneLength: (frame, seconds) => `frame ${frame}, ${seconds} s`,
    timecode: (text) => `timecode ${text}`,
    scenesShown: (first, last, count) => `Scenes ${first} to ${last} of ${count}`,
    earlier: "Earlier",
    later: "Later",
};
