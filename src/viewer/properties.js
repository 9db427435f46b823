// The properties panel: file, page and display in words and numbers.
import { byId, create } from './elements.js';
import { COUNTED } from './document_header.js';

/** @typedef {import('./texts.js').TextKey} TextKey */

/**
 * @param {import('./document_header.js').DocumentHeader} header
 * @param {number} number of the page, from 0
 * @param {string} drawnBy
 * @param {import('./texts.js').Texts} texts
 */
export function showProperties(header, number, drawnBy, texts) {
    const page = header.pages[number];
    /** @type {HTMLElement[]} */
    const rows = [];
    const title = (/** @type {TextKey} */ key) => rows.push(create('h2', {}, texts.get(key)));
    const row = (/** @type {TextKey} */ key, /** @type {string} */ value) =>
        rows.push(create('dt', {}, texts.get(key)), create('dd', {}, value));
    const millimetres = (/** @type {number} */ units) => texts.number((units / page.unitsPerInch) * 25.4, 1);
    const [left, low, right, high] = page.extent;

    title('file');
    row('name', header.fileName);
    row('format', header.format);
    row('size', `${texts.number(header.fileBytes)} Byte`);
    title('page');
    row('name', page.name);
    row('sheet', `${millimetres(page.width)} × ${millimetres(page.height)} mm`);
    row('extent', `${millimetres(right - left)} × ${millimetres(high - low)} mm`);
    row('lowerLeft', `${texts.number(left)}, ${texts.number(low)} ${texts.get('units')}`);
    row('resolution', texts.number(page.unitsPerInch));
    const degrees = Math.round((Math.atan2(-page.toSheet[1], page.toSheet[0]) * 180) / Math.PI);
    if (degrees !== 0) row('turned', `${texts.number(degrees)}°`);
    title('contents');
    for (const kind of COUNTED) {
        if (page.counts[kind] === 0) continue;
        row(kind === 'texts' ? 'textCount' : /** @type {TextKey} */ (kind), texts.number(page.counts[kind]));
    }
    title('display');
    row('drawnBy', drawnBy);
    byId('property-list', HTMLElement).replaceChildren(...rows);
}
