// Pages: turning them, and the panel with a small picture of each. Test: tests/viewer/browser.test.js.
import { Camera } from './camera.js';
import { byId, create } from './elements.js';

/** CSS pixels of the longer side of a small picture. */
const SIDE = 128;

export class Pages {
    /**
     * @param {import('./document_header.js').PageHeader[]} pages
     * @param {import('./texts.js').Texts} texts
     * @param {(page: number) => void} turn to a page
     */
    constructor(pages, texts, turn) {
        this.pages = pages;
        this.texts = texts;
        this.at = 0;
        /** @type {Set<number>} pages that have their picture */
        this.drawn = new Set();
        this.before = byId('page-before', HTMLButtonElement);
        this.after = byId('page-after', HTMLButtonElement);
        this.before.onclick = () => turn(this.at - 1);
        this.after.onclick = () => turn(this.at + 1);
        byId('page-turning', HTMLElement).hidden = pages.length < 2;
        byId('page-list', HTMLElement).replaceChildren(...pages.map((page, i) => {
            const canvas = create('canvas', { 'aria-hidden': 'true' });
            const scale = SIDE / Math.max(page.width, page.height);
            canvas.width = Math.max(1, Math.round(page.width * scale));
            canvas.height = Math.max(1, Math.round(page.height * scale));
            const button = create('button', {}, canvas, create('span', {}, page.name));
            button.onclick = () => turn(i);
            return create('li', {}, button);
        }));
    }

    /** @param {number} page */
    show(page) {
        this.at = page;
        this.before.disabled = page === 0;
        this.after.disabled = page === this.pages.length - 1;
        byId('page-number', HTMLElement).textContent = `${page + 1} / ${this.pages.length}`;
        byId('page-list', HTMLElement).querySelectorAll('button').forEach((button, i) => {
            if (i === page) button.setAttribute('aria-current', 'page');
            else button.removeAttribute('aria-current');
        });
    }

    /** Draws the small picture of the page that the renderer shows.
     * @param {number} page @param {{draw(camera: Camera, ratio: number): ImageData}} renderer */
    drawSmall(page, renderer) {
        const canvas = byId('page-list', HTMLElement).querySelectorAll('canvas')[page];
        if (!canvas) return;
        this.drawn.add(page);
        const camera = new Camera(this.pages[page]);
        const ratio = 2;
        camera.resize(canvas.width, canvas.height);
        camera.fit();
        camera.scale = canvas.width / this.pages[page].width;
        const image = renderer.draw(camera, ratio);
        const { width, height } = canvas;
        canvas.width = image.width;
        canvas.height = image.height;
        canvas.style.width = `${width}px`;
        canvas.style.height = `${height}px`;
        canvas.getContext('2d')?.putImageData(image, 0, 0);
    }
}
