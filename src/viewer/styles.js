// Styles as the numbers the shaders read, with layers that are off and colours for the paper.
// Test: tests/viewer/parts.test.js.

/** @typedef {import('./scene.js').Style} Style */
/** @typedef {import('./scene.js').Pattern} Pattern */

export const STYLE_TEXELS = 4;
export const STYLES_A_ROW = 256;
export const PATTERN_SIDE = 256;

/**
 * Four texels a style: draw colour and width; fill colour and 1 if shown; first dash, count of
 * lengths, their sum; pattern's first row in the atlas, width, height, part of it that is ink.
 * @param {Style[]} styles
 * @param {Pattern[]} patterns
 * @param {(layer: number) => boolean} isShown
 * @returns {{texels: Float32Array<ArrayBuffer>, rows: number, dashes: Float32Array<ArrayBuffer>}}
 */
export function styleTexels(styles, patterns, isShown) {
    const rows = Math.max(1, Math.ceil(styles.length / STYLES_A_ROW));
    const texels = new Float32Array(rows * STYLES_A_ROW * STYLE_TEXELS * 4);
    const starts = patternRows(patterns);
    /** @type {number[]} */
    const dashes = [];
    styles.forEach((style, i) => {
        const [red, green, blue] = style.draw.map((part) => part / 255);
        const fill = style.fill.map((part) => part / 255);
        const sum = style.dashes.reduce((total, length) => total + length, 0);
        const pattern = style.pattern > 0 ? patterns[style.pattern - 1] : null;
        texels.set([
            red, green, blue, style.width,
            ...fill, isShown(style.layer) ? 1 : 0,
            dashes.length, style.dashes.length, sum, 0,
            pattern ? starts[style.pattern - 1] : 0, pattern ? pattern.width : 0,
            pattern ? pattern.height : 0, pattern ? inkRatio(pattern) : 1,
        ], i * STYLE_TEXELS * 4);
        dashes.push(...style.dashes);
    });
    const dashRows = Math.max(1, Math.ceil(dashes.length / PATTERN_SIDE));
    const dashTexels = new Float32Array(dashRows * PATTERN_SIDE);
    dashTexels.set(dashes);
    return { texels, rows, dashes: dashTexels };
}

/** @param {Pattern[]} patterns @returns {number[]} first row of each in the atlas */
function patternRows(patterns) {
    let row = 0;
    return patterns.map((pattern) => (row += pattern.height) - pattern.height);
}

/** Whether a dot is ink: a clear bit is. @param {Pattern} pattern @param {number} x @param {number} y */
export function isInk(pattern, x, y) {
    const stride = Math.floor((pattern.width + 15) / 16) * 2;
    return ((pattern.rows[y * stride + (x >> 3)] >> (7 - (x & 7))) & 1) === 0;
}

/** @param {Pattern} pattern @returns {number} 0 to 1 */
function inkRatio(pattern) {
    let ink = 0;
    for (let y = 0; y < pattern.height; y++) {
        for (let x = 0; x < pattern.width; x++) ink += isInk(pattern, x, y) ? 1 : 0;
    }
    return ink / (pattern.width * pattern.height);
}

/** All patterns below each other, 255 where there is ink. @param {Pattern[]} patterns
 * @returns {{dots: Uint8Array<ArrayBuffer>, rows: number}} */
export function patternAtlas(patterns) {
    const starts = patternRows(patterns);
    const rows = Math.max(1, patterns.reduce((sum, pattern) => sum + pattern.height, 0));
    const dots = new Uint8Array(rows * PATTERN_SIDE);
    patterns.forEach((pattern, i) => {
        for (let y = 0; y < pattern.height; y++) {
            for (let x = 0; x < pattern.width; x++) {
                dots[(starts[i] + y) * PATTERN_SIDE + x] = isInk(pattern, x, y) ? 255 : 0;
            }
        }
    });
    return { dots, rows };
}

/** A colour as the dark paper shows it: light and dark change places, hues stay.
 * @param {number[]} colour 0 to 255 @returns {number[]} */
export function onDarkPaper(colour) {
    const change = 255 - Math.max(...colour) - Math.min(...colour);
    return colour.map((part) => part + change);
}

/** @param {number[]} colour 0 to 255 @returns {string} */
export function cssColour(colour) {
    return `rgb(${colour.map(Math.round).join(' ')})`;
}
