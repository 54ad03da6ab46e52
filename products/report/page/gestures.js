// What wheel, mouse and fingers do to the timeline.

const kWheelSpeed = 0.002;
const kClickDistance = 4; // pixels that a pointer may move and still click

/** The editor gets what they change; `place` tells of the frame that is pointed to. */
export function addGestures(timeline, editor, place) {
    const { canvas, film } = timeline;
    const hover = (event) => {
        const row = Math.max(0, Math.min(film.rows - 1, Math.floor(timeline.rowAt(event.clientX))));
        canvas.classList.toggle("grab", timeline.startAt(event) !== null);
        place.point(row);
    };
    const pointers = new Map(); // of those that are down, by id: where
    let moved = 0;
    let grabbed = null; // the row whose mark is held

    canvas.addEventListener(
        "wheel",
        (event) => {
            event.preventDefault();
            if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) {
                const delta = event.deltaX || event.deltaY;
                timeline.show(timeline.from + (delta / canvas.clientWidth) * timeline.span);
            } else {
                timeline.zoom(Math.exp(event.deltaY * kWheelSpeed), timeline.rowAt(event.clientX));
            }
        },
        { passive: false },
    );
    canvas.addEventListener("pointerdown", (event) => {
        if (event.button !== 0) return;
        canvas.setPointerCapture(event.pointerId);
        pointers.set(event.pointerId, event.clientX);
        moved = 0;
        grabbed = pointers.size === 1 ? timeline.startAt(event) : null;
    });
    canvas.addEventListener("pointermove", (event) => {
        const before = pointers.get(event.pointerId);
        if (before === undefined) return hover(event);
        moved += Math.abs(event.clientX - before);
        if (grabbed !== null) {
            const to = editor.placeFor(grabbed, timeline.rowAt(event.clientX));
            timeline.setDragged(to);
            place.point(to);
        } else if (pointers.size === 1) {
            if (moved > kClickDistance)
                timeline.show(
                    timeline.from + ((before - event.clientX) / canvas.clientWidth) * timeline.span,
                );
        } else {
            const others = [...pointers].filter(([id]) => id !== event.pointerId);
            const other = others[0][1];
            const apart = Math.max(10, Math.abs(event.clientX - other));
            timeline.zoom(
                Math.max(10, Math.abs(before - other)) / apart,
                timeline.rowAt((before + other) / 2),
            );
        }
        pointers.set(event.pointerId, event.clientX);
    });
    const release = (event) => {
        if (!pointers.delete(event.pointerId)) return;
        const isDone = event.type === "pointerup";
        if (isDone && moved <= kClickDistance) editor.go(grabbed ?? timeline.rowAt(event.clientX));
        else if (isDone && grabbed !== null) editor.moveTo(grabbed, timeline.dragged);
        grabbed = null;
        timeline.setDragged(null);
    };
    canvas.addEventListener("pointerup", release);
    canvas.addEventListener("pointercancel", release);
    canvas.addEventListener("pointerleave", () => place.point(null));
    canvas.addEventListener("dblclick", (event) => {
        const start = timeline.startAt(event);
        if (start !== null) editor.remove(start);
        else editor.add(Math.floor(timeline.rowAt(event.clientX)));
    });
}
