// Lists as docs/outputs.md shows them, of a PAL tape with scenes at 0, 60, 130 and 175.
import assert from "node:assert/strict";
import test from "node:test";

import { edlFault, listFormats } from "../../products/report/page/lists.js";
import { clockText, frameTimecode, numberingOf } from "../../products/report/page/times.js";

const textOf = (format, list) => listFormats.find(({ name }) => name === format).text(list);
const tape = {
    timecode: "01:00:00:00",
    recording_date: "2004-07-17",
    recording_time: "10:30:00",
    aspect: "4:3",
    audio: "48000 Hz 16 bits 2 channels",
};
const run = {
    input: "folder/tape.dv",
    name: "tape",
    rate: [25, 1],
    unit: [1, 25],
    startTimecode: "01:00:00:00",
    sourceStart: 90000,
    dropFrame: false,
    frameCount: 250,
    pixelAspect: [16, 15],
    delay: 0,
    width: 720,
    height: 576,
    partial: "",
};
const scene = (start, end, more = {}) => ({
    start: { frame: start, time: start },
    end: { frame: end, time: end },
    method: "video",
    name: "",
    tape: {},
    ...more,
});
const list = { run, scenes: [scene(0, 60, { tape }), scene(60, 130), scene(130, 175), scene(175, 250)] };
const named = (name) => ({ run, scenes: [scene(0, 60, { name })] });

test("CSV counts from 1, and has names only where there are some", () => {
    const [header, first, second] = textOf("csv", list).split("\r\n");
    assert.match(
        header,
        /^Scene Number,Start Frame,Start Timecode.*,Source Timecode,Tape Timecode.*,Aspect,Audio$/,
    );
    assert.equal(
        first,
        "1,1,00:00:00.000,0.000,60,00:00:02.400,2.400,60,00:00:02.400,2.400,video," +
            "01:00:00:00,01:00:00:00,2004-07-17,10:30:00,4:3,48000 Hz 16 bits 2 channels",
    );
    assert.equal(
        second,
        "2,61,00:00:02.400,2.400,130,00:00:05.200,5.200,70,00:00:02.800,2.800,video,01:00:02:10,,,,,",
    );
    assert.match(textOf("csv", named('a "b", c')), /,Name\r\n.*,"a ""b"", c"\r\n$/);
});

test("JSON has exact times, and whole seconds as the program writes them", () => {
    const text = textOf("json", list);
    const { scenes, ...head } = JSON.parse(text);
    assert.deepEqual(
        [head.pixel_aspect, head.rate, head.constant_rate, "partial" in head],
        ["16/15", "25/1", true, false],
    );
    assert.deepEqual(scenes[0].end, {
        frame: 60,
        time: "12/5",
        seconds: 2.4,
        timecode: "00:00:02:10",
        source_timecode: "01:00:02:10",
    });
    assert.deepEqual([scenes[0].tape, scenes[1].tape], [tape, undefined]);
    assert.match(text, /"seconds": 0\.0,[^]*"seconds": 2\.4,[^]*"seconds": 10\.0,/);
    assert.equal(JSON.parse(textOf("json", named('"seconds": 5,'))).scenes[0].name, '"seconds": 5,');
});

test("EDL has the file's timecode as its source, and the record side without gaps", () => {
    const gap = { run, scenes: [scene(0, 60), scene(130, 175, { name: "Arrival" })] };
    assert.deepEqual(textOf("edl", gap).split("\r\n"), [
        "TITLE: tape",
        "FCM: NON-DROP FRAME",
        "001  TAPE     V     C        01:00:00:00 01:00:02:10 01:00:00:00 01:00:02:10",
        "* FROM CLIP NAME: tape.dv",
        "002  TAPE     V     C        01:00:05:05 01:00:07:00 01:00:02:10 01:00:04:05",
        "* FROM CLIP NAME: tape.dv",
        "* COMMENT: Arrival",
        "",
    ]);
    const ntsc = {
        ...run,
        startTimecode: null,
        sourceStart: 0,
        rate: [30000, 1001],
        unit: [1001, 30000],
        dropFrame: true,
    };
    const text = textOf("edl", { run: ntsc, scenes: [scene(1800, 17982)] });
    assert.match(
        text,
        /FCM: DROP FRAME\r\n001  AX       V     C        00:01:00;02 00:10:00;00 01:00:00;00 /,
    );
});

test("an EDL needs one rate that can be counted", () => {
    const late = { run, scenes: [{ ...scene(0, 60), end: { frame: 60, time: 70 } }] };
    const odd = { run: { ...run, rate: [47, 2], unit: [2, 47] }, scenes: [scene(0, 60)] };
    const film = { run: { ...run, rate: [24000, 1001], unit: [1001, 24000] }, scenes: [scene(0, 60)] };
    assert.deepEqual([list, late, odd, film].map(edlFault), ["", "variable", "rate", ""]);
});

test("chapters count from the start of the file, and bear the names", () => {
    const delayed = {
        run: { ...run, delay: 5 },
        scenes: [scene(0, 60, { name: "a=b & <c>" }), scene(60, 250)],
    };
    assert.equal(
        textOf("ffmeta", delayed),
        ";FFMETADATA1\ntitle=tape\n[CHAPTER]\nTIMEBASE=1/25\nSTART=5\nEND=65\ntitle=a\\=b & <c>\n" +
            "[CHAPTER]\nTIMEBASE=1/25\nSTART=65\nEND=255\ntitle=Scene 2\n",
    );
    const xml = textOf("mkvchapters", delayed);
    assert.match(xml, /<ChapterTimeStart>00:00:00\.200000000<[^]*<ChapterString>a=b &amp; &lt;c&gt;</);
    assert.match(xml, /<ChapterTimeEnd>00:00:10\.200000000<[^]*<ChapterString>Scene 2</);
    assert.match(textOf("mkvchapters", { run, scenes: [] }), /<Chapters>\n  <EditionEntry \/>\n<\/Chapters>/);
});

test("times are exact where numbers of 53 bits are not", () => {
    assert.equal(clockText(35_999_999_999, [1, 1_000_000], 9), "09:59:59.999999000");
    assert.equal(frameTimecode(107_892, numberingOf([30000, 1001])), "01:00:00;00");
    assert.equal(frameTimecode(3600, numberingOf([60000, 1001])), "00:01:00;04");
});
