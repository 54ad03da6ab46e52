// Every English text of the page.

const plural = (count, word) => `${count.toLocaleString("en")} ${word}${count === 1 ? "" : "s"}`;

export const texts = {
    timeline: "Timeline",
    timelineHelp: "Turn the wheel to zoom, drag to move, click twice to see all.",
    timelineLabel: "Position in the film",
    scenes: "Scenes",
    settings: "Settings",
    legendCut: "start of a scene",
    legendDifference: (most, threshold) =>
        `difference to the frame before (0 to ${most}), dashed: cut threshold ${threshold}`,
    legendLevel: (level) => `level (0 to 255), dashed: dark level ${level}`,
    partial: (reason) => `Partial: ${reason}`,
    summary: (scenes, frames, seconds, rate, width, height) =>
        `${plural(scenes, "scene")} in ${plural(frames, "frame")}, ${seconds} s, ${rate} frames a second` +
        (width > 0 ? `, ${width} × ${height}` : ""),
    pictureOf: (number) => `First frame of scene ${number}`,
    sceneLength: (frame, seconds) => `frame ${frame}, ${seconds} s`,
    timecode: (text) => `timecode ${text}`,
    here: (frame, clock) => `frame ${frame}, ${clock}`,
    scenesShown: (first, last, count) => `Scenes ${first} to ${last} of ${count}`,
    earlier: "Earlier",
    later: "Later",
};
