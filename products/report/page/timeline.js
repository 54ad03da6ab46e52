// The timeline on a canvas: difference above, level below, scenes between them; zooming and moving.

import { Pyramid } from "./pyramid.js";

const kLeastSpan = 20; // rows in sight at the closest
const kMostSceneLines = 150; // more would hide what lies beneath: then marks only
const kDifferenceShare = 0.6; // of the height, for the panel of differences
const kStripHeight = 18; // between the panels: marks of scenes
const kMarkReach = 6; // pixels around a mark that still are it
const kAxisHeight = 20;
const kLeastTickDistance = 90;
const kTickSeconds = [0.04, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 30, 60, 120, 300, 600, 1200, 1800, 3600, 7200];

/** The first of the ascending `rows` that is `row` or later. */
export function indexFrom(rows, row) {
    let low = 0;
    let high = rows.length;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (rows[middle] < row) low = middle + 1;
        else high = middle;
    }
    return low;
}

export class Timeline {
    /** `colors` maps names of lines to CSS colours, and is asked again when the looks change. */
    constructor(canvas, film, colors) {
        this.canvas = canvas;
        this.film = film;
        this.colors = colors;
        this.from = 0; // rows in sight: from, span
        this.span = film.rows;
        this.cursor = null; // a row
        this.marks = []; // {row, color, isNew, isPerson, isGone}, ascending
        this.markRows = [];
        this.settings = film.run.parameters;
        this.mostDifference = 64;
        this.dragged = null;
        this.onDraw = () => {};
        new ResizeObserver(() => this.redraw()).observe(canvas);
    }

    #drawing = 0;
    #difference;
    #level;
    #layout = { difference: { bottom: 0 } };

    /** Takes the film's figures, once they are there. */
    setFigures({ difference, level }) {
        this.#difference = new Pyramid(difference);
        this.#level = new Pyramid(level);
        // Most material stays far below the 255 that a difference can be; that of the first frame is to black.
        if (difference.length > 1)
            this.mostDifference = Math.max(64, this.#difference.mostOf(1, difference.length));
        this.redraw();
    }

    /** Scenes that start, and the settings whose thresholds are drawn. */
    setMarks(marks, settings) {
        this.marks = marks;
        this.markRows = marks.map((mark) => mark.row);
        this.settings = settings;
        this.redraw();
    }

    /** Where a start is about to be moved to, if one is. */
    setDragged(row) {
        this.dragged = row;
        this.redraw();
    }

    /** The start whose mark between the panels is near the mouse, if one is. */
    startAt({ clientX, clientY }) {
        const box = this.canvas.getBoundingClientRect();
        const y = clientY - box.top - this.#layout.difference.bottom;
        if (y < -kMarkReach || y > kStripHeight + kMarkReach) return null;
        const reach = (kMarkReach / box.width) * this.span;
        const row = this.rowAt(clientX);
        let nearest = null;
        for (let i = indexFrom(this.markRows, row - reach); i < this.marks.length; ++i) {
            const mark = this.marks[i];
            if (mark.row > row + reach) break;
            if (!mark.isGone && (nearest === null || Math.abs(mark.row - row) < Math.abs(nearest - row)))
                nearest = mark.row;
        }
        return nearest;
    }

    redraw() {
        this.#drawing ||= requestAnimationFrame(() => {
            this.#drawing = 0;
            this.draw();
        });
    }

    /** `row` stays where it is in sight. */
    zoom(factor, row) {
        const span = Math.min(
            this.film.rows,
            Math.max(Math.min(kLeastSpan, this.film.rows), this.span * factor),
        );
        this.show(row - ((row - this.from) * span) / this.span, span);
    }

    show(from, span = this.span) {
        this.span = span;
        this.from = Math.min(this.film.rows - span, Math.max(0, from));
        this.redraw();
    }

    /** Moves the view by as little as brings the row into sight. */
    reveal(row) {
        const margin = this.span / 20;
        if (row < this.from + margin) this.show(row - margin);
        else if (row > this.from + this.span - margin) this.show(row + margin - this.span);
    }

    /** The row (with its fraction) at a place of the window. */
    rowAt(clientX) {
        const box = this.canvas.getBoundingClientRect();
        return this.from + ((clientX - box.left) / box.width) * this.span;
    }

    draw() {
        const { canvas } = this;
        const scale = devicePixelRatio || 1;
        const width = canvas.clientWidth;
        const height = canvas.clientHeight;
        if (width === 0 || height === 0) return;
        if (canvas.width !== Math.round(width * scale) || canvas.height !== Math.round(height * scale)) {
            canvas.width = Math.round(width * scale);
            canvas.height = Math.round(height * scale);
        }
        const context = canvas.getContext("2d");
        context.setTransform(scale, 0, 0, scale, 0, 0);
        context.clearRect(0, 0, width, height);
        const plotHeight = height - kAxisHeight - kStripHeight;
        const layout = {
            width,
            column: 1 / scale,
            difference: { top: 0, bottom: Math.round(plotHeight * kDifferenceShare) },
            bottom: height - kAxisHeight,
        };
        layout.level = { top: layout.difference.bottom + kStripHeight, bottom: layout.bottom };
        this.#layout = layout;
        if (this.#difference) this.#drawFigures(context, layout);
        this.#drawMarks(context, layout);
        this.#drawAxis(context, layout);
        if (this.cursor !== null) this.#drawRow(context, layout, this.cursor + 0.5, this.colors.ink);
        if (this.dragged !== null) this.#drawRow(context, layout, this.dragged, this.colors.person);
        this.onDraw();
    }

    /** The most difference of some rows, for the overview; 0 without figures. */
    mostDifferenceOf(from, to) {
        return this.#difference?.mostOf(from, to) ?? 0;
    }

    #x(row, layout) {
        return ((row - this.from) / this.span) * layout.width;
    }

    // One column of pixels after the other: of rows in it, the most and the least.
    #drawFigures(context, layout) {
        const { difference, level, width, column } = layout;
        const differenceY = (value) =>
            difference.bottom -
            (Math.min(value, this.mostDifference) / this.mostDifference) * (difference.bottom - 2);
        const levelY = (value) => level.bottom - (value / 255) * (level.bottom - level.top);
        const peaks = new Path2D();
        const band = new Path2D();
        const perColumn = (this.span / width) * column;
        const last = this.film.rows;
        const add = (x, size, from, to) => {
            const peak = differenceY(this.#difference.mostOf(from, to));
            peaks.rect(x, peak, size, difference.bottom - peak);
            const top = levelY(this.#level.mostOf(from, to));
            band.rect(x, top - 1, size, Math.max(2, levelY(this.#level.leastOf(from, to)) - top + 1));
        };
        if (perColumn < 1) {
            const end = Math.min(last, Math.ceil(this.from + this.span));
            const size = width / this.span;
            for (let row = Math.floor(this.from); row < end; ++row)
                add(this.#x(row, layout), Math.max(column, size > 4 ? size - 1 : size), row, row + 1);
        } else {
            for (let x = 0, edge = this.from; x < width; x += column, edge += perColumn) {
                const from = Math.min(last - 1, Math.floor(edge));
                add(x, column, from, Math.min(last, Math.max(from + 1, Math.floor(edge + perColumn))));
            }
        }
        context.fillStyle = this.colors.difference;
        context.fill(peaks);
        context.fillStyle = this.colors.level;
        context.fill(band);
        context.setLineDash([5, 4]);
        context.lineWidth = 1;
        context.strokeStyle = this.colors.dim;
        for (const y of [differenceY(this.settings.cutThreshold), levelY(this.settings.darkLevel)]) {
            context.beginPath();
            context.moveTo(0, y);
            context.lineTo(width, y);
            context.stroke();
        }
        context.setLineDash([]);
    }

    #drawMarks(context, layout) {
        const { difference, level, bottom } = layout;
        context.strokeStyle = this.colors.line;
        context.strokeRect(-1, difference.bottom + 0.5, layout.width + 2, kStripHeight - 1);
        const first = indexFrom(this.markRows, Math.floor(this.from));
        const end = indexFrom(this.markRows, this.from + this.span);
        const isDense = end - first > kMostSceneLines;
        let lastX = -2;
        for (let i = first; i < end; ++i) {
            const mark = this.marks[i];
            const x = this.#x(mark.row, layout);
            if (isDense && x - lastX < 1) continue;
            lastX = x;
            context.strokeStyle = context.fillStyle = this.colors[mark.color];
            if (!isDense) {
                context.globalAlpha = 0.6;
                context.setLineDash(mark.isGone ? [3, 3] : []);
                context.beginPath();
                context.moveTo(x, 0);
                context.lineTo(x, difference.bottom);
                context.moveTo(x, level.top);
                context.lineTo(x, bottom);
                context.stroke();
                context.globalAlpha = 1;
            }
            this.#drawSign(context, x, difference.bottom + kStripHeight / 2, mark, isDense);
        }
        context.setLineDash([]);
    }

    // Also without colours: a bar, of a person's a diamond, of one that is gone an outline; new ones have a tip.
    #drawSign(context, x, y, mark, isDense) {
        const half = kStripHeight / 2 - 3;
        const wide = isDense ? 0.5 : 1.5;
        const sign = new Path2D();
        if (mark.isPerson && !isDense) {
            sign.moveTo(x, y - half);
            for (const [across, down] of [
                [half, 0],
                [0, half],
                [-half, 0],
            ])
                sign.lineTo(x + across, y + down);
            sign.closePath();
        } else {
            sign.rect(x - wide, y - half, 2 * wide, 2 * half);
        }
        if (mark.isNew && !isDense) {
            sign.moveTo(x - 5, y - half - 3);
            sign.lineTo(x + 5, y - half - 3);
            sign.lineTo(x, y - half + 4);
            sign.closePath();
        }
        if (mark.isGone) context.stroke(sign);
        else context.fill(sign);
    }

    #drawAxis(context, layout) {
        const seconds = (row) => this.film.secondsOf(Math.min(this.film.rows, Math.max(0, Math.round(row))));
        const start = seconds(this.from);
        const length = Math.max(0.001, seconds(this.from + this.span) - start);
        const least = (length * kLeastTickDistance) / layout.width;
        const step = kTickSeconds.find((each) => each >= least) ?? 14400;
        const decimals = step < 1 ? 2 : 0;
        context.fillStyle = this.colors.dim;
        context.strokeStyle = this.colors.line;
        context.font = "12px system-ui, sans-serif";
        context.textBaseline = "bottom";
        for (let tick = Math.ceil(start / step); tick * step <= start + length; ++tick) {
            const x = ((tick * step - start) / length) * layout.width;
            context.beginPath();
            context.moveTo(x + 0.5, layout.bottom);
            context.lineTo(x + 0.5, layout.bottom + 5);
            context.stroke();
            const text = this.film.clockAt(
                Math.round((tick * step * this.film.unit[1]) / this.film.unit[0]),
                decimals,
            );
            const wide = context.measureText(text).width;
            context.fillText(
                text,
                Math.max(0, Math.min(layout.width - wide, x - wide / 2)),
                layout.bottom + kAxisHeight,
            );
        }
    }

    #drawRow(context, layout, row, color) {
        const x = this.#x(row, layout);
        if (x < 0 || x > layout.width) return;
        context.fillStyle = color;
        context.fillRect(x - 0.75, 0, 1.5, layout.bottom);
    }
}
