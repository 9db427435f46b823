// The view as a PNG file, and the page for the printer in true scale.
// Test: tests/viewer/browser.test.js.
import { Camera } from './camera.js';
import { byId, create } from './elements.js';

/** Dots per inch of prints, less where the page would have more than so many dots. */
const PRINT_DPI = 300;
const MOST_PRINT_DOTS = 40e6;
/** Dots of the sides of the pieces that a print is drawn in. */
const PIECE = 2048;

/** "plan.plt" and page 2 give "plan-2.png". @param {string} fileName @param {number} page from 1
 * @param {number} pages */
export function pngName(fileName, page, pages) {
    const stem = fileName.replace(/\.[^.]*$/, '') || 'plot';
    return pages > 1 ? `${stem}-${page}.png` : `${stem}.png`;
}

/**
 * Must run in the task that has drawn the canvases: browsers forget what WebGL drew afterwards.
 * @param {HTMLCanvasElement[]} layers from the lowest
 * @param {string} desk colour around the sheet
 * @param {string} name
 */
export function saveCanvases(layers, desk, name) {
    const canvas = create('canvas', {});
    canvas.width = layers[0].width;
    canvas.height = layers[0].height;
    const context = canvas.getContext('2d');
    if (!context) return;
    context.fillStyle = desk;
    context.fillRect(0, 0, canvas.width, canvas.height);
    for (const layer of layers) {
        if (layer.width > 0 && layer.height > 0) context.drawImage(layer, 0, 0, canvas.width, canvas.height);
    }
    canvas.toBlob((blob) => {
        if (!blob) return;
        const url = URL.createObjectURL(blob);
        create('a', { href: url, download: name }).click();
        setTimeout(() => URL.revokeObjectURL(url), 10000);
    });
}

/**
 * Fills the print sheet with the whole page at its true size.
 * @param {import('./document_header.js').PageHeader} page
 * @param {{draw(camera: Camera, ratio: number): ImageData}} renderer
 */
export function preparePrint(page, renderer) {
    const inches = [page.width / page.unitsPerInch, page.height / page.unitsPerInch];
    const dpi = Math.min(PRINT_DPI, Math.sqrt(MOST_PRINT_DOTS / (inches[0] * inches[1])));
    const [width, height] = inches.map((side) => Math.ceil(side * dpi));
    const sheet = byId('print-sheet', HTMLElement);
    sheet.replaceChildren();
    // A little less than the paper, of the margin: what is rounded up would take a second page.
    sheet.style.width = `${inches[0] - 0.02}in`;
    sheet.style.height = `${inches[1] - 0.02}in`;
    setPaperSize(inches);
    for (let top = 0; top < height; top += PIECE) {
        for (let left = 0; left < width; left += PIECE) {
            sheet.append(piece(page, renderer, dpi, left, top, Math.min(PIECE, width - left), Math.min(PIECE, height - top)));
        }
    }
}

/** @param {import('./document_header.js').PageHeader} page
 * @param {{draw(camera: Camera, ratio: number): ImageData}} renderer @param {number} dpi
 * @param {number} left @param {number} top @param {number} width @param {number} height in dots */
function piece(page, renderer, dpi, left, top, width, height) {
    const camera = new Camera(page);
    // Dots in place of CSS pixels, of which there are 96 an inch: pens keep their thinnest width.
    const ratio = dpi / 96;
    camera.resize(width / ratio, height / ratio);
    camera.scale = 96 / page.unitsPerInch;
    camera.x = ((left + width / 2) / dpi) * page.unitsPerInch;
    camera.y = ((top + height / 2) / dpi) * page.unitsPerInch;
    const image = renderer.draw(camera, ratio);
    const canvas = create('canvas', {});
    canvas.width = image.width;
    canvas.height = image.height;
    canvas.getContext('2d')?.putImageData(image, 0, 0);
    const inches = (/** @type {number} */ dots) => `${dots / dpi}in`;
    Object.assign(canvas.style, {
        left: inches(left), top: inches(top), width: inches(width), height: inches(height),
    });
    return canvas;
}

/** The paper as large as the sheet, through the style sheet's own rules. @param {number[]} inches */
function setPaperSize(inches) {
    const sheet = document.styleSheets[0];
    const rule = `@page { size: ${inches[0]}in ${inches[1]}in; margin: 0 }`;
    const last = sheet.cssRules.length - 1;
    if (sheet.cssRules[last].cssText.startsWith('@page')) sheet.deleteRule(last);
    sheet.insertRule(rule, sheet.cssRules.length);
}
