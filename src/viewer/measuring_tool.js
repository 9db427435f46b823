// MeasuringTool: points that the user sets with mouse, finger or keys, and what they measure.
// Test: tests/viewer/browser.test.js.
import { byId, create } from './elements.js';
import { angleAt, directionOf, distanceBetween, enclosedArea, pathLength } from './measuring.js';
import { SnapGrid } from './snapping.js';

/** @typedef {import('./measuring.js').Point} Point */
/** @typedef {'distance' | 'angle' | 'path' | 'area'} Tool */

const TOOLS = /** @type {Tool[]} */ (['distance', 'angle', 'path', 'area']);
/** Points that end a measurement; the others end on demand. */
const COMPLETE = Object.freeze({ distance: 2, angle: 3, path: Infinity, area: Infinity });
/** CSS pixels within which the pointer snaps to a point. */
const REACH = 12;

export class MeasuringTool {
    /**
     * @param {import('./texts.js').Texts} texts
     * @param {{camera: () => import('./camera.js').Camera, scene: () => import('./scene.js').Scene | null,
     *     isShown: (layer: number) => boolean, changed: () => void}} viewer
     */
    constructor(texts, viewer) {
        this.texts = texts;
        this.viewer = viewer;
        this.isOn = false;
        /** @type {Tool} */
        this.tool = 'distance';
        /** @type {Point[]} */
        this.points = [];
        this.isComplete = false;
        /** @type {Point | null} where the next point would be */
        this.pointer = null;
        this.snapped = false;
        /** @type {SnapGrid | null} */
        this.grid = null;
        this.bar = byId('measuring', HTMLElement);
        this.output = byId('measured', HTMLElement);
        for (const button of this.bar.querySelectorAll('[data-tool]')) {
            if (!(button instanceof HTMLElement)) continue;
            button.onclick = () => this.choose(TOOLS.indexOf(/** @type {Tool} */ (button.dataset.tool)));
        }
        byId('measure-end', HTMLElement).onclick = () => this.turn(false);
    }

    /** @param {boolean} on */
    turn(on) {
        this.isOn = on;
        this.bar.hidden = !on;
        byId('measure', HTMLElement).setAttribute('aria-pressed', String(on));
        byId('drawing', HTMLElement).classList.toggle('measuring', on);
        this.clear();
        if (!on) byId('drawing', HTMLElement).focus();
    }

    clear() {
        this.points = [];
        this.isComplete = false;
        this.pointer = null;
        this.show();
    }

    /** @param {number} number of the tool, from 0 */
    choose(number) {
        this.tool = TOOLS[number];
        for (const button of this.bar.querySelectorAll('[data-tool]')) {
            button.setAttribute('aria-pressed', String(button.getAttribute('data-tool') === this.tool));
        }
        this.clear();
    }

    /** The pointer is over the drawing. @param {number} px @param {number} py @param {boolean} snap */
    move(px, py, snap) {
        if (!this.isOn) return;
        const camera = this.viewer.camera();
        const scene = this.viewer.scene();
        const at = camera.drawingAt(px, py);
        let found = null;
        if (snap && scene) {
            if (this.grid?.scene !== scene || this.grid.instances !== scene.instances) {
                this.grid = new SnapGrid(scene, camera.page.extent);
            }
            found = this.grid.nearest(at.x, at.y, REACH / camera.scale, this.viewer.isShown);
        }
        this.snapped = found !== null;
        this.pointer = found ?? at;
        this.show();
    }

    /** Sets a point where the pointer is. */
    set() {
        if (!this.pointer) return;
        if (this.isComplete) this.points = [];
        this.points.push(this.pointer);
        this.isComplete = this.points.length >= COMPLETE[this.tool];
        this.show();
    }

    /** Enter or a double click: the path or area is whole. */
    end() {
        const last = this.points[this.points.length - 1];
        const before = this.points[this.points.length - 2];
        // The second click of a double click has set a point where there is one.
        if (before && last.x === before.x && last.y === before.y) this.points.pop();
        if (this.points.length > 1) this.isComplete = true;
        this.show();
    }

    undo() {
        this.points.pop();
        this.isComplete = false;
        this.show();
    }

    /** The points with the one that would be set next. @returns {Point[]} */
    get shape() {
        return this.isComplete || !this.pointer ? this.points : [...this.points, this.pointer];
    }

    show() {
        const [value, about] = this.result();
        this.output.replaceChildren(create('strong', {}, value), create('small', {}, about));
        this.viewer.changed();
    }

    /** @returns {[string, string]} the value, and more about it */
    result() {
        const points = this.shape;
        const fewest = { distance: 2, angle: 3, path: 2, area: 3 }[this.tool];
        if (this.points.length === 0 || points.length < fewest) return [this.texts.get(this.tool), this.hint];
        const scale = this.viewer.camera().unitsPerMillimetre;
        if (this.tool === 'angle') {
            const [corner, a, b] = points;
            return [`${this.texts.number(angleAt(corner, a, b), 2)}°`,
                `${this.length(distanceBetween(corner, a))} · ${this.length(distanceBetween(corner, b))}`];
        }
        if (this.tool === 'distance') {
            const [a, b] = points;
            const across = this.texts.number(Math.abs(b.x - a.x) / scale, 2);
            const up = this.texts.number(Math.abs(b.y - a.y) / scale, 2);
            return [this.length(distanceBetween(a, b)),
                `${this.units(distanceBetween(a, b))} · ${across} × ${up} · ${this.texts.number(directionOf(a, b), 1)}°`];
        }
        if (this.tool === 'path') return [this.length(pathLength(points)), this.units(pathLength(points))];
        const area = enclosedArea(points);
        const around = this.length(pathLength([...points, points[0]]));
        return [`${this.texts.number(area / scale ** 2, 2)} mm²`, `${this.units(area)}² · ${around}`];
    }

    get hint() {
        const keys = /** @type {const} */ ({
            distance: 'measureDistance', angle: 'measureAngle', path: 'measurePath', area: 'measureArea',
        });
        return this.texts.get(keys[this.tool]);
    }

    /** @param {number} units */
    length(units) {
        return `${this.texts.number(units / this.viewer.camera().unitsPerMillimetre, 2)} mm`;
    }

    /** @param {number} units */
    units(units) {
        return `${this.texts.number(units, 1)} ${this.texts.get('units')}`;
    }
}
