// Frames and times as the program writes them: exact fractions, rounded once, halves upward.

/** `time` (0 or later) in units of `from` seconds, counted in units of `to`; both are [num, den]. */
export function rescale(time, from, to) {
    const whole = time * from[0] * to[1];
    const part = from[1] * to[0];
    if (whole + part < Number.MAX_SAFE_INTEGER) return Math.floor((whole + Math.floor(part / 2)) / part);
    const factor = BigInt(from[0]) * BigInt(to[1]);
    const divisor = BigInt(from[1]) * BigInt(to[0]);
    return Number((BigInt(time) * factor + divisor / 2n) / divisor);
}

const twoDigits = (number) => String(number).padStart(2, "0");

/** HH:MM:SS and as many decimals as told. */
export function clockText(time, unit, decimals) {
    const parts = 10 ** decimals;
    const rounded = rescale(time, unit, [1, parts]);
    const seconds = Math.floor(rounded / parts);
    const clock = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60, seconds % 60]
        .map(twoDigits)
        .join(":");
    return decimals > 0 ? `${clock}.${String(rounded % parts).padStart(decimals, "0")}` : clock;
}

/** Seconds with three decimals. */
export function secondsText(time, unit) {
    const milliseconds = rescale(time, unit, [1, 1000]);
    return `${Math.floor(milliseconds / 1000)}.${String(milliseconds % 1000).padStart(3, "0")}`;
}

/** How timecode numbers the frames of a rate: numbers a second has, and how many a minute leaves out. */
export function numberingOf(rate, isDropFrame = true) {
    const value = rate[0] / rate[1];
    const isAbout = (expected) => Math.abs(value - expected) < expected * 1e-4;
    const dropped = isAbout(30000 / 1001) ? 2 : isAbout(60000 / 1001) ? 4 : 0;
    return { perSecond: Math.max(1, Math.round(value)), dropped: isDropFrame ? dropped : 0 };
}

const framesPerTenMinutes = ({ perSecond, dropped }) => perSecond * 600 - dropped * 9;

/** Frames of 24 hours, after which timecode starts again. */
export function framesPerDay(numbering) {
    return framesPerTenMinutes(numbering) * 144;
}

/** HH:MM:SS:FF of a count of frames from 00:00:00:00 on, with `;` where numbers are left out. */
export function frameTimecode(frame, numbering) {
    const { perSecond, dropped } = numbering;
    const perTen = framesPerTenMinutes(numbering);
    const inTen = frame % perTen;
    // The first of ten minutes is whole.
    const shortMinutes =
        inTen < perSecond * 60 ? 0 : Math.floor((inTen - dropped) / (perSecond * 60 - dropped));
    const number = frame + dropped * (9 * Math.floor(frame / perTen) + shortMinutes);
    const seconds = Math.floor(number / perSecond);
    const fields = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60, seconds % 60].map(twoDigits);
    return `${fields.join(":")}${dropped > 0 ? ";" : ":"}${twoDigits(number % perSecond)}`;
}
