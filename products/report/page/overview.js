// The whole film in a narrow strip below the timeline, with a window over what is in sight.

const kLeastWindow = 6; // pixels

export class Overview {
    #drawn = []; // what the picture was drawn for
    #picture = document.createElement("canvas"); // of the figures

    constructor(canvas, timeline) {
        this.canvas = canvas;
        this.timeline = timeline;
        const center = (event) => {
            const box = canvas.getBoundingClientRect();
            const row = ((event.clientX - box.left) / box.width) * timeline.film.rows;
            timeline.show(row - timeline.span / 2);
        };
        canvas.onpointerdown = (event) => {
            canvas.setPointerCapture(event.pointerId);
            center(event);
        };
        canvas.onpointermove = (event) => {
            if (canvas.hasPointerCapture(event.pointerId)) center(event);
        };
    }

    draw() {
        const { canvas, timeline } = this;
        const { from, span, film, colors } = timeline;
        const scale = devicePixelRatio || 1;
        const width = Math.round(canvas.clientWidth * scale);
        const height = Math.round(canvas.clientHeight * scale);
        if (width === 0 || height === 0) return;
        const looks = [timeline.difference, colors, width, height];
        if (looks.some((each, i) => each !== this.#drawn[i])) {
            this.#drawn = looks;
            this.#drawFigures(width, height);
        }
        if (canvas.width !== width) canvas.width = width;
        if (canvas.height !== height) canvas.height = height;
        const context = canvas.getContext("2d");
        context.clearRect(0, 0, width, height);
        context.drawImage(this.#picture, 0, 0);
        this.#drawMarks(context, width, height);
        const wide = Math.max(kLeastWindow * scale, (span / film.rows) * width);
        const left = Math.min(width - wide, (from / film.rows) * width);
        context.fillStyle = colors.ink;
        context.globalAlpha = 0.15;
        context.fillRect(left, 0, wide, height);
        context.globalAlpha = 1;
        context.strokeStyle = colors.ink;
        context.lineWidth = scale;
        context.strokeRect(left + 0.5, 0.5, wide - 1, height - 1);
    }

    #drawFigures(width, height) {
        const { timeline } = this;
        const { film, colors, mostDifference } = timeline;
        this.#picture.width = width;
        this.#picture.height = height;
        const context = this.#picture.getContext("2d");
        context.fillStyle = colors.difference;
        if (film.columns.difference)
            for (let x = 0; x < width; ++x) {
                const row = Math.min(film.rows - 1, Math.floor((x / width) * film.rows));
                const end = Math.min(film.rows, Math.max(row + 1, Math.floor(((x + 1) / width) * film.rows)));
                const most = Math.min(1, timeline.mostDifferenceOf(row, end) / mostDifference);
                context.fillRect(x, height * (1 - most), 1, height * most);
            }
    }

    // At most one a pixel.
    #drawMarks(context, width, height) {
        const { film, colors, marks } = this.timeline;
        let last = -1;
        for (const { row, color } of marks) {
            const x = Math.round((row / film.rows) * width);
            if (x === last) continue;
            last = x;
            context.fillStyle = colors[color];
            context.fillRect(x, 0, 1, height / 3);
        }
    }
}
