// The timeline: which of the film's rows are in sight, its marks and its cursor; a painter draws it.

import { markFrom, Painter } from "./painter.js";
import { Pyramid } from "./pyramid.js";

const kLeastSpan = 20; // rows in sight at the closest
const kMarkReach = 6; // pixels around a mark that still are it

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
        this.settings = film.run.parameters;
        this.mostDifference = 64;
        this.dragged = null;
        this.difference = null; // pyramids
        this.level = null;
        this.onDraw = () => {};
        this.#painter = new Painter(this);
        new ResizeObserver(() => this.redraw()).observe(canvas);
    }

    #drawing = 0;
    #painter;

    /** Takes the film's figures, once they are there. */
    setFigures({ difference, level }) {
        this.difference = new Pyramid(difference);
        this.level = new Pyramid(level);
        // Most material stays far below the 255 that a difference can be; that of the first frame is to black.
        if (difference.length > 1)
            this.mostDifference = Math.max(64, this.difference.mostOf(1, difference.length));
        this.redraw();
    }

    /** Scenes that start. */
    setMarks(marks) {
        this.marks = marks;
        this.redraw();
    }

    /** Their thresholds are drawn. */
    setSettings(settings) {
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
        const { top, bottom } = this.#painter.strip;
        const y = clientY - box.top;
        if (y < top - kMarkReach || y > bottom + kMarkReach) return null;
        const reach = (kMarkReach / box.width) * this.span;
        const row = this.rowAt(clientX);
        let nearest = null;
        for (let i = markFrom(this.marks, row - reach); i < this.marks.length; ++i) {
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
    setCursor(row) {
        this.cursor = row;
        this.redraw();
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
        this.#painter.draw();
        this.onDraw();
    }

    /** The most difference of some rows, for the overview; 0 without figures. */
    mostDifferenceOf(from, to) {
        return this.difference?.mostOf(from, to) ?? 0;
    }
}
