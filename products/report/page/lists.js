// Scene lists in the program's own formats: what is the same here is so to the byte.

import { clockText, frameTimecode, framesPerDay, numberingOf, rescale, secondsText } from "./times.js";

// A list is {run, scenes}; its scenes are {start, end, method, name, tape}, places {frame, time}, ends exclusive.

const kTapeColumns = [
    ["timecode", "Tape Timecode"],
    ["recording_date", "Recording Date"],
    ["recording_time", "Recording Time"],
    ["aspect", "Aspect"],
    ["audio", "Audio"],
];

/** A name on one line, of characters that every format takes. */
export const plainName = (name) =>
    name.replace(/[\u0000-\u001f\u007f-\u009f]/g, " ").replace(/[\ufffe\uffff]/g, "\ufffd");
const editFrame = (run, place) => rescale(place.time, run.unit, [run.rate[1], run.rate[0]]);
const sourceTimecode = (run, place) =>
    frameTimecode(run.sourceStart + editFrame(run, place), numberingOf(run.rate, run.dropFrame));
const hasConstantRate = ({ run, scenes }) =>
    scenes.every(({ start, end }) => [start, end].every((place) => editFrame(run, place) === place.frame));

const csvField = (text) => (/[,"\r\n]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text);

function csvText({ run, scenes }) {
    const hasNames = scenes.some((scene) => scene.name);
    const threeColumns = (frames, time) => [
        frames,
        clockText(time, run.unit, 3),
        secondsText(time, run.unit),
    ];
    const header =
        "Scene Number,Start Frame,Start Timecode,Start Time (seconds),End Frame,End Timecode,End Time (seconds)," +
        "Length (frames),Length (timecode),Length (seconds),Method,Source Timecode";
    const lines = [[header, ...kTapeColumns.map(([, title]) => title), ...(hasNames ? ["Name"] : [])]];
    scenes.forEach(({ start, end, method, name, tape }, index) => {
        lines.push([
            index + 1,
            ...threeColumns(start.frame + 1, start.time),
            ...threeColumns(end.frame, end.time),
            ...threeColumns(end.frame - start.frame, end.time - start.time),
            csvField(method),
            run.startTimecode === null ? "" : sourceTimecode(run, start),
            ...kTapeColumns.map(([key]) => tape[key] ?? ""),
            ...(hasNames ? [csvField(name)] : []),
        ]);
    });
    return lines.map((line) => `${line.join(",")}\r\n`).join("");
}

function ratioText(num, den) {
    const lowest = (a, b) => (b === 0n ? a : lowest(b, a % b));
    const common = lowest(num, den);
    return `${num / common}/${den / common}`;
}

function jsonText(list) {
    const { run, scenes } = list;
    const placeOf = (place) => ({
        frame: place.frame,
        time: ratioText(BigInt(place.time) * BigInt(run.unit[0]), BigInt(run.unit[1])),
        seconds: (place.time * run.unit[0]) / run.unit[1],
        timecode: frameTimecode(editFrame(run, place), numberingOf(run.rate)),
        ...(run.startTimecode === null ? {} : { source_timecode: sourceTimecode(run, place) }),
    });
    const table = {
        schema: "kxscenes",
        version: 1,
        input: run.input,
        name: run.name,
        width: run.width,
        height: run.height,
        pixel_aspect: ratioText(...run.pixelAspect.map(BigInt)),
        rate: ratioText(...run.rate.map(BigInt)),
        constant_rate: hasConstantRate(list),
        frame_count: run.frameCount,
        ...(run.partial ? { partial: run.partial } : {}),
        scenes: scenes.map(({ start, end, method, name, tape }, index) => ({
            scene: index + 1,
            method,
            ...(name ? { name } : {}),
            start: placeOf(start),
            end: placeOf(end),
            length: end.frame - start.frame,
            ...(Object.keys(tape).length > 0 ? { tape } : {}),
        })),
    };
    // The program writes whole seconds as 2.0.
    return `${JSON.stringify(table, null, 2).replace(/^( *"seconds": \d+)(?=,$)/gm, "$1.0")}\n`;
}

/** Why the scenes make no EDL: "variable", "rate" or "". */
export function edlFault(list) {
    if (!hasConstantRate(list)) return "variable";
    const rate = list.run.rate[0] / list.run.rate[1];
    const whole = Math.round(rate);
    const isAbout = (value) => Math.abs(rate - value) < value * 2e-4;
    return whole >= 1 && whole <= 100 && (isAbout(whole) || isAbout(whole / 1.001)) ? "" : "rate";
}

// As many of the characters as make no more than `most` bytes.
function cutToBytes(text, most) {
    let bytes = 0;
    let cut = "";
    for (const character of text) {
        bytes += new TextEncoder().encode(character).length;
        if (bytes > most) break;
        cut += character;
    }
    return cut;
}

function reelName(run) {
    const reel = run.name
        .replace(/[^A-Za-z0-9]/g, "")
        .slice(0, 8)
        .toUpperCase();
    return run.startTimecode === null || reel === "" || reel === "BL" ? "AX" : reel;
}

function edlText({ run, scenes }) {
    const numbering = numberingOf(run.rate, run.dropFrame);
    const day = framesPerDay(numbering);
    const timecode = (frame) => frameTimecode(frame % day, numbering);
    const reel = reelName(run).padEnd(8);
    const clip = plainName(run.input === "-" ? run.name : run.input.slice(run.input.lastIndexOf("/") + 1));
    let record = day / 24;
    const lines = [
        `TITLE: ${cutToBytes(plainName(run.name), 70)}`,
        `FCM: ${numbering.dropped > 0 ? "" : "NON-"}DROP FRAME`,
    ];
    scenes.forEach(({ start, end, name }, index) => {
        const source = [start, end].map((place) => timecode(run.sourceStart + place.frame));
        const length = end.frame - start.frame;
        const recorded = [record, record + length].map(timecode);
        const number = String(index + 1).padStart(3, "0");
        lines.push(`${number}  ${reel} V     C        ${[...source, ...recorded].join(" ")}`);
        lines.push(`* FROM CLIP NAME: ${clip}`);
        if (name) lines.push(`* COMMENT: ${name}`);
        record += length;
    });
    return lines.map((line) => `${line}\r\n`).join("");
}

const chapterTitle = ({ name }, index) => name || `Scene ${index + 1}`;

function metadataText({ run, scenes }) {
    const escaped = (text) => text.replace(/[=;#\\]/g, "\\$&");
    const chapters = scenes.map(
        (scene, index) =>
            `[CHAPTER]\nTIMEBASE=${run.unit.join("/")}\nSTART=${run.delay + scene.start.time}\n` +
            `END=${run.delay + scene.end.time}\ntitle=${escaped(chapterTitle(scene, index))}\n`,
    );
    return `;FFMETADATA1\ntitle=${escaped(plainName(run.name))}\n${chapters.join("")}`;
}

function matroskaText({ run, scenes }) {
    const entities = { "&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;" };
    const escaped = (text) => text.replace(/[&<>"]/g, (each) => entities[each]);
    const clock = (place) => clockText(run.delay + place.time, run.unit, 9);
    const atoms = scenes.flatMap((scene, index) => [
        "    <ChapterAtom>",
        `      <ChapterTimeStart>${clock(scene.start)}</ChapterTimeStart>`,
        `      <ChapterTimeEnd>${clock(scene.end)}</ChapterTimeEnd>`,
        "      <ChapterDisplay>",
        `        <ChapterString>${escaped(chapterTitle(scene, index))}</ChapterString>`,
        "        <ChapterLanguage>eng</ChapterLanguage>",
        "      </ChapterDisplay>",
        "    </ChapterAtom>",
    ]);
    const edition =
        atoms.length > 0 ? ["  <EditionEntry>", ...atoms, "  </EditionEntry>"] : ["  <EditionEntry />"];
    const head = ['<?xml version="1.0" encoding="UTF-8"?>', "<Chapters>"];
    return `${[...head, ...edition, "</Chapters>"].join("\n")}\n`;
}

/** The formats of the page: what the program calls them, suffix, and the text of a list. */
export const listFormats = [
    { name: "csv", suffix: ".csv", text: csvText },
    { name: "json", suffix: ".json", text: jsonText },
    { name: "edl", suffix: ".edl", text: edlText },
    { name: "ffmeta", suffix: ".ffmeta", text: metadataText },
    { name: "mkvchapters", suffix: ".chapters.xml", text: matroskaText },
];
