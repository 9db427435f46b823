// The scene: a page in the form that the renderers draw, made by SceneBuilder in a worker.
//
// A scene is a list of chunks in drawing order. A chunk of strokes holds instances: lines and
// triangles that one call draws; areas that are no simple polygons and pictures are chunks of their
// own. Coordinates are relative to the chunk's origin, so that 32-bit floats hold them exactly.

/** @typedef {import('./decode.js').Style} Style */
/** @typedef {import('./geometry.js').Box} Box */
/**
 * @typedef {object} Chunk
 * @property {number} kind see KIND
 * @property {number} blend see BLEND
 * @property {number} clip number of the clip box, -1 for none
 * @property {Box} box of all its points, without line widths
 * @property {number} widest line, in units
 * @property {number} originX
 * @property {number} originY
 * @property {number} count instances; of an area its points
 * @property {Float32Array} segments strokes: x0, y0, x1, y1; area: x, y of each point
 * @property {Uint32Array} codes strokes: style and flags (see CODE); area: style, then ring lengths
 * @property {Float32Array | null} thirds third corners of triangles; null: there are none
 * @property {Float32Array | null} alongs length of the path before the line, for dashes
 * @property {number} picture its number
 * @property {number} layer of a picture
 * @property {any} [gl] what the WebGL renderer keeps with it
 */
/**
 * @typedef {object} TextItem
 * @property {string} text
 * @property {Box} box in drawing units; inverted for texts without strokes
 * @property {number} layer
 */
/** @typedef {{width: number, height: number, rows: Uint8Array}} Pattern */
/** @typedef {{layer: number, count: number, widths: number[]}} LayerCount */
/**
 * What the worker sends, several times for a page, the last with `done`.
 * @typedef {object} ScenePart
 * @property {number} page
 * @property {Chunk[]} chunks
 * @property {Style[]} styles new ones
 * @property {Pattern[]} patterns new ones
 * @property {Box[]} clips new ones
 * @property {SceneEnd | null} done
 * @property {SceneLevel | null} level
 * @property {string} [error]
 */
/**
 * @typedef {object} SceneEnd
 * @property {TextItem[]} texts
 * @property {LayerCount[]} layers in the order of their first primitive
 * @property {Float64Array} centres of circles and arcs: x, y, ...
 */
/** A coarser version for small scales. @typedef {{tolerance: number, chunks: Chunk[]}} SceneLevel */

export const KIND = Object.freeze({ strokes: 0, area: 1, picture: 2 });
/** As render/line_look.h has them. */
export const BLEND = Object.freeze({ normal: 0, darken: 1, lighten: 2, difference: 3, none: 4 });
/** Parts of an instance's code. */
export const CODE = Object.freeze({
    style: 0xffffff,
    startCap: 24, // two bits: 0 round, 1 flat, 2 square
    endCap: 26,
    triangle: 1 << 28,
    inDrawColour: 1 << 29, // a triangle of a line's join
    startSnaps: 1 << 30, // the plot has a point there; not set inside of curves
    endSnaps: 2 ** 31,
});

export class Scene {
    constructor() {
        /** @type {Chunk[]} */
        this.chunks = [];
        /** @type {Style[]} */
        this.styles = [];
        /** @type {Pattern[]} */
        this.patterns = [];
        /** @type {Box[]} */
        this.clips = [];
        /** @type {SceneLevel[]} */
        this.levels = [];
        /** @type {SceneEnd | null} */
        this.end = null;
        /** @type {string} */
        this.error = '';
        this.instances = 0;
        /** Areas have smooth edges by multisampling only, lines without. */
        this.mayHoldAreas = false;
    }

    /** @param {ScenePart} part */
    add(part) {
        for (const chunk of part.chunks) {
            this.chunks.push(chunk);
            this.instances += chunk.count;
        }
        this.styles.push(...part.styles);
        this.patterns.push(...part.patterns);
        this.clips.push(...part.clips);
        if (part.done) this.end = part.done;
        if (part.error) this.error = part.error;
        if (part.level) this.levels.push(part.level);
    }

    /**
     * The chunks to draw at a scale: the coarsest level that looks the same.
     * @param {number} scale dots a unit
     * @returns {Chunk[]}
     */
    chunksFor(scale) {
        const mostDots = 0.75;
        let best = this.chunks;
        let tolerance = 0;
        for (const level of this.levels) {
            if (level.tolerance * scale <= mostDots && level.tolerance > tolerance) {
                best = level.chunks;
                tolerance = level.tolerance;
            }
        }
        return best;
    }
}
