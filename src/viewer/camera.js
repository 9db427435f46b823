// Camera: which part of the sheet is seen, and how large. The sheet's units are the drawing's, y
// down; the view's are CSS pixels from its upper left corner. Test: tests/viewer/parts.test.js.
import { combine, inverse, transformed } from './geometry.js';

/** CSS pixels a millimetre at 100 %: CSS defines an inch as 96 pixels. */
export const PIXELS_PER_MILLIMETRE = 96 / 25.4;

export class Camera {
    /** @param {import('./document_header.js').PageHeader} page */
    constructor(page) {
        this.page = page;
        this.width = 1;
        this.height = 1;
        this.x = page.width / 2;
        this.y = page.height / 2;
        /** CSS pixels a unit */
        this.scale = 1;
    }

    /** @returns {Camera} */
    copy() {
        return Object.assign(new Camera(this.page), this);
    }

    /** @param {Camera} other */
    equals(other) {
        return this.x === other.x && this.y === other.y && this.scale === other.scale &&
            this.width === other.width && this.height === other.height && this.page === other.page;
    }

    get unitsPerMillimetre() {
        return this.page.unitsPerInch / 25.4;
    }

    /** 1 is true size. */
    get zoom() {
        return (this.scale * this.unitsPerMillimetre) / PIXELS_PER_MILLIMETRE;
    }

    /** The whole sheet at once. */
    get fitScale() {
        const room = 0.96;
        return Math.max(
            Math.min((room * this.width) / this.page.width, (room * this.height) / this.page.height), 1e-9);
    }

    get smallestScale() {
        return Math.min(this.fitScale / 4, this.scaleOf(1));
    }

    get largestScale() {
        return Math.max(this.scaleOf(400), this.fitScale);
    }

    /** @param {number} zoom @returns {number} */
    scaleOf(zoom) {
        return (zoom * PIXELS_PER_MILLIMETRE) / this.unitsPerMillimetre;
    }

    fit() {
        this.x = this.page.width / 2;
        this.y = this.page.height / 2;
        this.scale = this.fitScale;
    }

    /** @param {number} width @param {number} height of the view; its centre stays */
    resize(width, height) {
        this.width = width;
        this.height = height;
    }

    /** Moves the drawing under the view. @param {number} dx @param {number} dy CSS pixels */
    pan(dx, dy) {
        this.x -= dx / this.scale;
        this.y -= dy / this.scale;
        this.stayNear();
    }

    /** Keeps a part of the sheet in view. */
    stayNear() {
        const marginX = (0.45 * this.width) / this.scale;
        const marginY = (0.45 * this.height) / this.scale;
        this.x = Math.min(Math.max(this.x, -marginX), this.page.width + marginX);
        this.y = Math.min(Math.max(this.y, -marginY), this.page.height + marginY);
    }

    /** @param {number} factor @param {number} px @param {number} py the point that stays in place */
    zoomAt(factor, px, py) {
        const scale = Math.min(Math.max(this.scale * factor, this.smallestScale), this.largestScale);
        const shift = 1 / this.scale - 1 / scale;
        this.x += (px - this.width / 2) * shift;
        this.y += (py - this.height / 2) * shift;
        this.scale = scale;
        this.stayNear();
    }

    /** Shows a box of the drawing in the middle. @param {import('./geometry.js').Box} box
     * @param {number} largest scale */
    centreOn(box, largest) {
        const centre = transformed(this.page.toSheet, (box[0] + box[2]) / 2, (box[1] + box[3]) / 2);
        const size = Math.max(Math.abs(box[2] - box[0]), Math.abs(box[3] - box[1]), 1);
        const wanted = Math.min((0.4 * Math.min(this.width, this.height)) / size, largest);
        this.scale = Math.min(Math.max(wanted, this.smallestScale), this.largestScale);
        this.x = centre.x;
        this.y = centre.y;
    }

    /** From the sheet to the view. @returns {import('./geometry.js').Matrix} */
    get sheetToView() {
        const s = this.scale;
        return [s, 0, 0, s, this.width / 2 - s * this.x, this.height / 2 - s * this.y];
    }

    /** From the drawing to the view. @returns {import('./geometry.js').Matrix} */
    get drawingToView() {
        return combine(this.sheetToView, this.page.toSheet);
    }

    /** @param {number} px @param {number} py @returns {{x: number, y: number}} in the drawing */
    drawingAt(px, py) {
        return transformed(inverse(this.drawingToView), px, py);
    }
}
