// The line at the foot of the page: where the pointer is, how large the sheet is, the zoom.
import { byId } from './elements.js';

export class CoordinateLine {
    /** @param {import('./texts.js').Texts} texts */
    constructor(texts) {
        this.texts = texts;
        this.millimetres = byId('at-mm', HTMLElement);
        this.units = byId('at-units', HTMLElement);
        this.zoom = byId('zoom', HTMLElement);
    }

    /** @param {import('./camera.js').Camera} camera @param {{x: number, y: number} | null} at in the drawing */
    showPoint(camera, at) {
        const scale = camera.unitsPerMillimetre;
        const { texts } = this;
        this.millimetres.textContent = at ? `X ${texts.number(at.x / scale, 2)}  Y ${texts.number(at.y / scale, 2)} mm` : '';
        this.units.textContent = at ? `${texts.number(at.x)}  ${texts.number(at.y)} ${texts.get('units')}` : '';
    }

    /** @param {import('./camera.js').Camera} camera */
    showZoom(camera) {
        const percent = 100 * camera.zoom;
        const decimals = percent < 10 ? 1 : 0;
        const text = `${this.texts.number(percent, decimals)} %`;
        if (this.zoom.textContent !== text) this.zoom.textContent = text;
    }

    /** @param {import('./camera.js').Camera} camera @param {string} drawnBy */
    showSheet(camera, drawnBy) {
        const { page, unitsPerMillimetre: scale } = camera;
        const size = (/** @type {number} */ units) => this.texts.number(units / scale, 0);
        byId('sheet-size', HTMLElement).textContent = `${size(page.width)} × ${size(page.height)} mm`;
        byId('drawn-by', HTMLElement).textContent = drawnBy;
    }
}
