// Draws the timeline: difference above, level below, the scenes' marks between them, times at the bottom.

import { firstWhere } from "./search.js";

const kMostSceneLines = 150; // more would hide what lies beneath: then marks only
const kDifferenceShare = 0.6; // of the height, for the panel of differences
const kStripHeight = 18; // between the panels: marks of scenes
const kAxisHeight = 20;
const kLeastTickDistance = 90;
const kLeastLabelGap = 8;
const kTickSeconds = [0.04, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 30, 60, 120, 300, 600, 1200, 1800, 3600, 7200];

/** Which of the ascending marks is the first at the row or later. */
export function markFrom(marks, row) {
    return firstWhere(marks.length, (i) => marks[i].row >= row);
}

export class Painter {
    #context;
    #scale = 1; // pixels of the canvas in one of the page
    #width = 0;

    constructor(timeline) {
        this.view = timeline;
        this.strip = { top: 0, bottom: 0 };
        this.bottom = 0;
        this.#context = timeline.canvas.getContext("2d");
    }

    draw() {
        const { canvas } = this.view;
        const context = this.#context;
        const scale = devicePixelRatio || 1;
        const width = canvas.clientWidth;
        const height = canvas.clientHeight;
        if (width === 0 || height === 0) return;
        if (canvas.width !== Math.round(width * scale) || canvas.height !== Math.round(height * scale)) {
            canvas.width = Math.round(width * scale);
            canvas.height = Math.round(height * scale);
        }
        context.setTransform(scale, 0, 0, scale, 0, 0);
        context.clearRect(0, 0, width, height);
        this.#scale = scale;
        this.#width = width;
        this.bottom = height - kAxisHeight;
        const top = Math.round((this.bottom - kStripHeight) * kDifferenceShare);
        this.strip = { top, bottom: top + kStripHeight };
        if (this.view.difference) this.#drawFigures();
        this.#drawMarks();
        this.#drawAxis();
        const { cursor, dragged, colors } = this.view;
        if (cursor !== null) this.#drawRow(cursor + 0.5, colors.ink);
        if (dragged !== null) this.#drawRow(dragged, colors.person);
    }

    #x(row) {
        return ((row - this.view.from) / this.view.span) * this.#width;
    }

    #differenceY(value) {
        const { mostDifference } = this.view;
        return this.strip.top - (Math.min(value, mostDifference) / mostDifference) * (this.strip.top - 2);
    }
    #levelY(value) {
        return this.bottom - (value / 255) * (this.bottom - this.strip.bottom);
    }

    // Of each column of pixels the most and the least of the rows in it, or of each row a column. On whole pixels,
    // which is fast also where no graphics hardware draws.
    #drawFigures() {
        const { film, from, span, difference, level, colors } = this.view;
        const context = this.#context;
        const pixel = 1 / this.#scale;
        const whole = (place) => Math.round(place * this.#scale) * pixel;
        const draw = (x, size, first, end, isLevel) => {
            if (isLevel) {
                const top = whole(this.#levelY(level.mostOf(first, end)) - 1);
                context.fillRect(
                    x,
                    top,
                    size,
                    Math.max(2, whole(this.#levelY(level.leastOf(first, end))) - top),
                );
            } else {
                const top = whole(this.#differenceY(difference.mostOf(first, end)));
                context.fillRect(x, top, size, this.strip.top - top);
            }
        };
        const perPixel = (span / this.#width) * pixel;
        for (const isLevel of [false, true]) {
            context.fillStyle = isLevel ? colors.level : colors.difference;
            if (perPixel < 1) {
                const gap = span * 4 < this.#width && !isLevel ? 1 : 0;
                const end = Math.min(film.rows, Math.ceil(from + span));
                for (let row = Math.floor(from); row < end; ++row) {
                    const x = whole(this.#x(row));
                    draw(x, Math.max(pixel, whole(this.#x(row + 1)) - x - gap), row, row + 1, isLevel);
                }
                continue;
            }
            const columns = Math.round(this.#width * this.#scale);
            for (let i = 0; i < columns; ++i) {
                const first = Math.min(film.rows - 1, Math.floor(from + i * perPixel));
                const end = Math.min(film.rows, Math.max(first + 1, Math.floor(from + (i + 1) * perPixel)));
                draw(i * pixel, pixel, first, end, isLevel);
            }
        }
        this.#drawThresholds();
    }

    #drawThresholds() {
        const { settings, colors } = this.view;
        const context = this.#context;
        for (const y of [this.#differenceY(settings.cutThreshold), this.#levelY(settings.darkLevel)]) {
            // Also over hours of figures, which leave nothing of the ground.
            context.strokeStyle = colors.card;
            context.lineWidth = 3;
            this.#line(0, y, this.#width, y);
            context.strokeStyle = colors.ink;
            context.lineWidth = 1;
            context.setLineDash([5, 4]);
            this.#line(0, y, this.#width, y);
            context.setLineDash([]);
        }
    }

    #line(x, y, toX, toY) {
        const context = this.#context;
        context.beginPath();
        context.moveTo(x, y);
        context.lineTo(toX, toY);
        context.stroke();
    }

    #drawMarks() {
        const { marks, from, span, colors } = this.view;
        const { top, bottom } = this.strip;
        const context = this.#context;
        context.strokeStyle = colors.line;
        this.#line(0, top + 0.5, this.#width, top + 0.5);
        this.#line(0, bottom - 0.5, this.#width, bottom - 0.5);
        const first = markFrom(marks, Math.floor(from));
        const end = markFrom(marks, from + span);
        if (end - first > kMostSceneLines) return this.#drawDense(first, end);
        for (const mark of marks.slice(first, end)) {
            const x = this.#x(mark.row);
            context.strokeStyle = context.fillStyle = colors[mark.color];
            context.globalAlpha = 0.6;
            context.setLineDash(mark.isGone ? [3, 3] : []);
            this.#line(x, 0, x, top);
            this.#line(x, bottom, x, this.bottom);
            context.globalAlpha = 1;
            this.#drawSign(x, (top + bottom) / 2, mark);
        }
        context.setLineDash([]);
    }

    // A pixel each, and at most one a pixel.
    #drawDense(first, end) {
        const { marks, colors } = this.view;
        const context = this.#context;
        let last = -1;
        for (let i = first; i < end; ++i) {
            const x = Math.round(this.#x(marks[i].row) * this.#scale) / this.#scale;
            if (x === last) continue;
            last = x;
            context.fillStyle = colors[marks[i].color];
            context.fillRect(x, this.strip.top + 3, 1 / this.#scale, kStripHeight - 6);
        }
    }

    // Also without colours: a bar, of a person's a diamond, of one that is gone an outline; new ones have a tip.
    #drawSign(x, y, mark) {
        const half = kStripHeight / 2 - 3;
        const sign = new Path2D();
        const polygon = (...points) => {
            for (const [across, down] of points) sign.lineTo(x + across, y + down);
            sign.closePath();
        };
        if (mark.isPerson) polygon([0, -half], [half, 0], [0, half], [-half, 0]);
        else sign.rect(x - 1.5, y - half, 3, 2 * half);
        if (mark.isNew) polygon([-5, -half - 3], [5, -half - 3], [0, 4 - half]);
        if (mark.isGone) this.#context.stroke(sign);
        else this.#context.fill(sign);
    }

    #drawAxis() {
        const { film, from, span, colors } = this.view;
        const context = this.#context;
        const seconds = (row) => film.secondsOf(Math.min(film.rows, Math.max(0, Math.round(row))));
        const start = seconds(from);
        const length = Math.max(0.001, seconds(from + span) - start);
        const least = (length * kLeastTickDistance) / this.#width;
        const step = kTickSeconds.find((each) => each >= least) ?? 14400;
        context.fillStyle = colors.dim;
        context.strokeStyle = colors.line;
        context.font = "12px system-ui, sans-serif";
        context.textBaseline = "bottom";
        let end = -Infinity; // of the label before
        for (let tick = Math.ceil(start / step); tick * step <= start + length; ++tick) {
            const x = ((tick * step - start) / length) * this.#width;
            this.#line(x + 0.5, this.bottom, x + 0.5, this.bottom + 5);
            const time = Math.round((tick * step * film.unit[1]) / film.unit[0]);
            const text = film.clockAt(time, step < 1 ? 2 : 0);
            const wide = context.measureText(text).width;
            const left = Math.max(0, Math.min(this.#width - wide, x - wide / 2));
            if (left < end) continue;
            context.fillText(text, left, this.bottom + kAxisHeight);
            end = left + wide + kLeastLabelGap;
        }
    }

    #drawRow(row, color) {
        const x = this.#x(row);
        if (x < 0 || x > this.#width) return;
        this.#context.fillStyle = color;
        this.#context.fillRect(x - 0.75, 0, 1.5, this.bottom);
    }
}
