// Pens, each a layer of the page: which are shown, and the panel that lists them.
// Test: tests/viewer/browser.test.js.
import { byId, create } from './elements.js';
import { cssColour, onDarkPaper } from './styles.js';

/** @typedef {import('./document_header.js').LayerHeader} LayerHeader */
/** @typedef {{box: HTMLInputElement, row: HTMLElement, swatch: HTMLElement, about: HTMLElement, layer: LayerHeader}} Row */

export class Layers {
    /** @param {import('./texts.js').Texts} texts @param {() => void} changed */
    constructor(texts, changed) {
        this.texts = texts;
        this.changed = changed;
        this.list = byId('layer-list', HTMLUListElement);
        /** @type {Map<number, Row>} */
        this.rows = new Map();
        this.dark = false;
        byId('layers-all', HTMLElement).onclick = () => this.set(() => true);
        byId('layers-none', HTMLElement).onclick = () => this.set(() => false);
        byId('layers-invert', HTMLElement).onclick = () => this.set((_, shown) => !shown);
    }

    /** @param {number} layer @returns {boolean} */
    isShown(layer) {
        return this.rows.get(layer)?.box.checked ?? true;
    }

    /** @param {LayerHeader[]} layers of the page, as its file has them */
    show(layers) {
        this.rows.clear();
        for (const layer of [...layers].sort((a, b) => a.number - b.number)) this.add(layer);
        this.list.replaceChildren(...[...this.rows.values()].map((row) => row.row));
    }

    /** @param {LayerHeader} layer */
    add(layer) {
        const box = create('input', { type: 'checkbox' });
        box.checked = layer.visible;
        const swatch = create('span', { class: 'swatch', 'aria-hidden': 'true' }, create('i', {}));
        const about = create('small', {});
        const what = create('span', { class: 'what' }, create('b', {}, layer.name), about);
        const only = create('button', { class: 'only' }, this.texts.get('only'));
        const label = this.texts.get('onlyThis', { name: layer.name });
        only.title = label;
        only.setAttribute('aria-label', label);
        const row = create('li', {}, create('label', {}, box, swatch, what), only);
        box.onchange = () => {
            row.classList.toggle('off', !box.checked);
            this.changed();
        };
        only.onclick = () => this.set((number) => number === layer.number);
        row.classList.toggle('off', !box.checked);
        this.rows.set(layer.number, { box, row, swatch, about, layer });
        this.colour(layer.number, layer.colour, 0);
    }

    /** @param {(layer: number, shown: boolean) => boolean} choose */
    set(choose) {
        for (const [number, { box, row }] of this.rows) {
            box.checked = choose(number, box.checked);
            row.classList.toggle('off', !box.checked);
        }
        this.changed();
    }

    /** @param {number} number @param {number[]} colour @param {number} pixels line width */
    colour(number, colour, pixels) {
        const line = this.rows.get(number)?.swatch.firstElementChild;
        if (!(line instanceof HTMLElement)) return;
        line.dataset.colour = colour.join(',');
        line.style.height = `${Math.min(Math.max(pixels, 2), 18)}px`;
        line.style.background = cssColour(this.dark ? onDarkPaper(colour) : colour);
    }

    /**
     * Counts and widths, known when the page is decoded. Layers that its file does not list are added.
     * @param {import('./scene.js').LayerCount[]} counts @param {number} unitsPerMillimetre
     */
    showCounts(counts, unitsPerMillimetre) {
        // Pens that the plot selects without drawing with them.
        const used = new Set(counts.map(({ layer }) => layer));
        for (const [number, { row }] of this.rows) row.hidden = !used.has(number);
        for (const { layer, count, widths } of counts) {
            if (!this.rows.has(layer)) {
                this.add({ number: layer, name: String(layer), colour: [0, 0, 0], visible: true });
                this.list.append(/** @type {Row} */ (this.rows.get(layer)).row);
            }
            const row = /** @type {Row} */ (this.rows.get(layer));
            const millimetres = widths.map((width) => width / unitsPerMillimetre);
            const parts = [this.texts.get('drawn', { count: this.texts.number(count) })];
            if (widths.length > 0) parts.unshift(this.widthText(millimetres));
            row.about.textContent = parts.join(' · ');
            this.colour(layer, row.layer.colour, 4 * (millimetres[millimetres.length - 1] ?? 0));
        }
    }

    /** @param {number[]} widths in millimetres, rising */
    widthText(widths) {
        const name = (/** @type {number} */ width) =>
            width === 0 ? this.texts.get('thinnest') : `${this.texts.number(width, 2)} mm`;
        if (widths.length === 1) return name(widths[0]);
        return `${this.texts.number(widths[0], 2)} – ${name(widths[widths.length - 1])}`;
    }

    /** @param {boolean} dark */
    setPaper(dark) {
        this.dark = dark;
        for (const { swatch } of this.rows.values()) {
            const line = swatch.firstElementChild;
            if (!(line instanceof HTMLElement)) continue;
            const colour = (line.dataset.colour ?? '0,0,0').split(',').map(Number);
            line.style.background = cssColour(dark ? onDarkPaper(colour) : colour);
        }
    }
}
