// What the page knows of the plot before any drawing is decoded: names, sheets, counts, layers.
// Written by src/render/viewer/viewer_writer.cpp. Test: tests/viewer/parts.test.js.
import { ByteReader } from './bytes.js';

/**
 * @typedef {object} LayerHeader
 * @property {number} number
 * @property {string} name
 * @property {number[]} colour red, green, blue
 * @property {boolean} visible
 */
/**
 * @typedef {object} PageHeader
 * @property {string} name
 * @property {number} unitsPerInch
 * @property {number} width of the sheet, in units
 * @property {number} height
 * @property {import('./geometry.js').Matrix} toSheet from the drawing (y up) to the sheet (y down)
 * @property {import('./geometry.js').Box} extent of what is drawn
 * @property {Record<string, number>} counts of primitives by kind
 * @property {LayerHeader[]} layers
 */
/**
 * @typedef {object} DocumentHeader
 * @property {string} fileName
 * @property {string} format
 * @property {number} fileBytes
 * @property {PageHeader[]} pages
 */

const DATA_VERSION = 1;

export const COUNTED = [
    'lines', 'polylines', 'areas', 'rectangles', 'circles', 'arcs', 'texts', 'pictures', 'patterns',
];

/** @param {ByteReader} reader @returns {PageHeader} */
function readPage(reader) {
    const name = reader.text();
    const unitsPerInch = reader.double();
    const width = reader.double();
    const height = reader.double();
    const toSheet = Array.from({ length: 6 }, () => reader.double());
    const extent = Array.from({ length: 4 }, () => reader.double());
    /** @type {Record<string, number>} */
    const counts = {};
    for (const kind of COUNTED) counts[kind] = reader.unsigned();
    const layers = Array.from({ length: reader.unsigned() }, () => ({
        number: reader.signed(),
        name: reader.text(),
        colour: reader.colour(),
        visible: reader.byte() !== 0,
    }));
    return { name, unitsPerInch, width, height, toSheet, extent, counts, layers };
}

/** @param {Uint8Array} bytes @returns {DocumentHeader} */
export function readDocumentHeader(bytes) {
    const reader = new ByteReader(bytes);
    if (reader.unsigned() !== DATA_VERSION) throw new RangeError('data of another version');
    const fileName = reader.text();
    const format = reader.text();
    const fileBytes = reader.unsigned();
    const pages = Array.from({ length: reader.unsigned() }, () => readPage(reader));
    return { fileName, format, fileBytes, pages };
}
