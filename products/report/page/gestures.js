// What wheel, mouse and fingers do to the timeline.

const kWheelSpeed = 0.002;
const kClickDistance = 4; // pixels that a pointer may move and still click

/** `on` has hover(row or null), pick(row) and, of a scene's mark, grab(row, pixels), drag(row), drop(). */
export function addGestures(timeline, on) {
    const { canvas } = timeline;
    const pointers = new Map(); // of those that are down, by id: where
    let moved = 0;
    let isGrabbed = false;

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
        isGrabbed = pointers.size === 1 && on.grab(timeline.rowAt(event.clientX), event);
    });
    canvas.addEventListener("pointermove", (event) => {
        const before = pointers.get(event.pointerId);
        if (before === undefined) {
            on.hover(timeline.rowAt(event.clientX), event);
            return;
        }
        moved += Math.abs(event.clientX - before);
        if (isGrabbed) {
            on.drag(timeline.rowAt(event.clientX));
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
        if (isGrabbed) on.drop();
        else if (event.type === "pointerup" && moved <= kClickDistance)
            on.pick(timeline.rowAt(event.clientX));
        isGrabbed = false;
    };
    canvas.addEventListener("pointerup", release);
    canvas.addEventListener("pointercancel", release);
    canvas.addEventListener("pointerleave", () => on.hover(null));
    canvas.addEventListener("dblclick", () => timeline.show(0, timeline.film.rows));
}
