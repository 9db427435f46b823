// Mouse, wheel, fingers and keys on the drawing. Test: tests/viewer/browser.test.js.

/** @typedef {import('./camera.js').Camera} Camera */
/**
 * @typedef {object} InputTarget
 * @property {() => Camera} camera
 * @property {() => void} moved the camera has changed
 * @property {import('./measuring_tool.js').MeasuringTool} measuring
 * @property {(at: {x: number, y: number} | null) => void} pointed at a place of the drawing
 * @property {Record<string, () => void>} actions by key
 */

/** CSS pixels that a click may move. */
const CLICK_ROOM = 4;
const KEY_PAN = 80;
const KEY_ZOOM = 1.25;

/** Fingers and mouse. @param {HTMLCanvasElement} canvas @param {InputTarget} target */
export function listenToPointers(canvas, target) {
    /** @type {Map<number, {x: number, y: number}>} */
    const down = new Map();
    let travelled = 0;
    let pinched = false;
    const place = (/** @type {MouseEvent} */ event) => {
        const box = canvas.getBoundingClientRect();
        return { x: event.clientX - box.left, y: event.clientY - box.top };
    };
    canvas.addEventListener('pointerdown', (event) => {
        if (event.button > 1) return;
        canvas.setPointerCapture(event.pointerId);
        canvas.focus({ preventScroll: true });
        if (down.size === 0) {
            travelled = 0;
            pinched = false;
        }
        down.set(event.pointerId, place(event));
        canvas.classList.add('grabbing');
        if (event.pointerType !== 'mouse') target.measuring.move(place(event).x, place(event).y, true);
    });
    canvas.addEventListener('pointermove', (event) => {
        const to = place(event);
        const camera = target.camera();
        const from = down.get(event.pointerId);
        if (from) {
            const [other] = [...down].filter(([id]) => id !== event.pointerId).map(([, at]) => at);
            if (other) {
                pinched = true;
                const before = Math.hypot(from.x - other.x, from.y - other.y);
                const now = Math.hypot(to.x - other.x, to.y - other.y);
                camera.pan((to.x - from.x) / 2, (to.y - from.y) / 2);
                camera.zoomAt(now / Math.max(before, 1), (to.x + other.x) / 2, (to.y + other.y) / 2);
                target.moved();
            } else {
                travelled += Math.hypot(to.x - from.x, to.y - from.y);
                if (travelled > CLICK_ROOM) {
                    camera.pan(to.x - from.x, to.y - from.y);
                    target.moved();
                }
            }
            down.set(event.pointerId, to);
        }
        target.pointed(camera.drawingAt(to.x, to.y));
        target.measuring.move(to.x, to.y, !event.shiftKey);
    });
    const up = (/** @type {PointerEvent} */ event) => {
        if (!down.delete(event.pointerId) || down.size > 0) return;
        canvas.classList.remove('grabbing');
        const isClick = event.type === 'pointerup' && travelled <= CLICK_ROOM && !pinched && event.button === 0;
        if (isClick && target.measuring.isOn) {
            const at = place(event);
            target.measuring.move(at.x, at.y, !event.shiftKey);
            target.measuring.set();
        }
    };
    canvas.addEventListener('pointerup', up);
    canvas.addEventListener('pointercancel', up);
    canvas.addEventListener('pointerleave', () => target.pointed(null));
    canvas.addEventListener('dblclick', (event) => {
        if (target.measuring.isOn) return target.measuring.end();
        const at = place(event);
        target.camera().zoomAt(2, at.x, at.y);
        target.moved();
    });
    canvas.addEventListener('wheel', (event) => {
        event.preventDefault();
        const at = place(event);
        const lines = event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? event.deltaY / 100 : event.deltaY / 3;
        // A pinch on a touch pad comes as a wheel with Ctrl and small numbers.
        const speed = event.ctrlKey ? 1 : 0.25;
        target.camera().zoomAt(Math.exp(-speed * Math.min(Math.max(lines, -4), 4)), at.x, at.y);
        target.moved();
    }, { passive: false });
}

/** Keys: those of the drawing when it has the focus, the others everywhere but in text fields.
 * @param {HTMLCanvasElement} canvas @param {InputTarget} target */
export function listenToKeys(canvas, target) {
    /** @type {{x: number, y: number} | null} where the cross stands that keys move */
    let cross = null;
    const arrows = /** @type {Record<string, [number, number]>} */ ({
        ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1],
    });
    document.addEventListener('keydown', (event) => {
        if (event.target !== canvas && event.target !== document.body) return;
        const arrow = arrows[event.key];
        const { measuring } = target;
        if (arrow && !event.ctrlKey && !event.metaKey && !event.altKey) {
            event.preventDefault();
            const camera = target.camera();
            if (measuring.isOn) {
                cross ??= { x: camera.width / 2, y: camera.height / 2 };
                const step = event.shiftKey ? 1 : 10;
                cross.x = Math.min(Math.max(cross.x + step * arrow[0], 0), camera.width);
                cross.y = Math.min(Math.max(cross.y + step * arrow[1], 0), camera.height);
                measuring.move(cross.x, cross.y, !event.shiftKey);
            } else {
                const step = event.shiftKey ? 4 * KEY_PAN : KEY_PAN;
                camera.pan(-step * arrow[0], -step * arrow[1]);
                target.moved();
            }
        } else if (measuring.isOn && (event.key === 'Enter' || event.key === ' ')) {
            event.preventDefault();
            const last = measuring.points[measuring.points.length - 1];
            const again = last && measuring.pointer && last.x === measuring.pointer.x && last.y === measuring.pointer.y;
            if (again) measuring.end();
            else measuring.set();
        } else if (measuring.isOn && event.key === 'Backspace') {
            measuring.undo();
        }
    });
    canvas.addEventListener('pointermove', () => (cross = null));
    document.addEventListener('keydown', (event) => {
        const writes = event.target instanceof HTMLInputElement && event.target.type !== 'checkbox';
        const isFind = (event.ctrlKey || event.metaKey) && event.key === 'f';
        const isPrint = (event.ctrlKey || event.metaKey) && event.key === 'p';
        if (!isFind && !isPrint && (event.ctrlKey || event.metaKey || event.altKey)) return;
        if (writes && !isFind && !isPrint && event.key !== 'Escape' && event.key !== 'F3') return;
        let key = isFind ? '/' : isPrint ? 'p' : event.key.length === 1 ? event.key.toLowerCase() : event.key;
        if (event.key === 'F3' && event.shiftKey) key = 'Shift F3';
        if (target.measuring.isOn && '1234'.includes(key)) {
            target.measuring.choose(Number(key) - 1);
            return;
        }
        const action = target.actions[key];
        if (!action || document.querySelector('dialog[open]')) return;
        event.preventDefault();
        action();
    });
}

/** Zooms about the middle. @param {Camera} camera @param {number} direction 1 or -1 */
export function zoomStep(camera, direction) {
    camera.zoomAt(KEY_ZOOM ** direction, camera.width / 2, camera.height / 2);
}
