// SceneBuilder: primitives as the decoder tells them into chunks of instances. Lines become
// instances with line ends, simple areas triangles, circles and arcs chains of lines.
// Test: tests/viewer/parts.test.js.
import { arcPoints } from './arcs.js';
import { ChunkBuilder } from './chunk_builder.js';
import { BLEND, CODE } from './scene.js';
import { triangulate } from './triangulate.js';

/** @typedef {import('./scene.js').ScenePart} ScenePart */

const BEVEL = 1;
const FLAT = 1;

/** A PrimitiveSink (see decode.js). */
export class SceneBuilder {
    constructor() {
        /** @type {import('./scene.js').Chunk[]} */
        this.newChunks = [];
        /** @type {import('./scene.js').Style[]} */
        this.newStyles = [];
        /** @type {import('./scene.js').Pattern[]} */
        this.newPatterns = [];
        /** @type {import('./scene.js').Box[]} */
        this.newClips = [];
        /** @type {import('./scene.js').TextItem[]} */
        this.texts = [];
        /** @type {number[]} */
        this.centres = [];
        /** @type {Map<number, {count: number, widths: Set<number>}>} */
        this.layers = new Map();
        /** @type {Map<import('./scene.js').Style, number>} */
        this.numbers = new Map();
        this.builder = new ChunkBuilder((chunk) => this.newChunks.push(chunk));
        this.clips = 0;
        this.clipped = -1;
        this.pictures = 0;
        /** @type {import('./scene.js').Style} */
        this.now = {
            layer: 0, draw: [0, 0, 0], fill: [0, 0, 0], width: 0, cap: 0, join: 0, blend: 0,
            pattern: 0, dashes: [],
        };
        this.number = 0;
        this.openStyle = -1;
        this.openX = 0;
        this.openY = 0;
        this.openAlong = 0;
    }

    /** Nothing that follows continues the last lines. */
    mark() {
        this.openStyle = -1;
        this.openX = 0;
        this.openY = 0;
        this.openAlong = 0;
    }

    /** @param {import('./scene.js').Style} style @param {boolean} isNew */
    style(style, isNew) {
        if (isNew) {
            this.numbers.set(style, this.numbers.size);
            this.newStyles.push(style);
        }
        const number = this.numbers.get(style) ?? 0;
        // Exclusive or: a path is one shape, its own crossings do not cancel out.
        if (number !== this.number && style.blend === BLEND.difference) this.builder.flush();
        this.now = style;
        this.number = number;
        this.builder.setState(style.blend, this.clipped);
    }

    /** @param {number} primitives @param {boolean} stroked */
    countIn(primitives, stroked) {
        let layer = this.layers.get(this.now.layer);
        if (!layer) {
            layer = { count: 0, widths: new Set() };
            this.layers.set(this.now.layer, layer);
        }
        layer.count += primitives;
        if (stroked) layer.widths.add(this.now.width);
    }

    /** @param {Float64Array} points @param {number} count */
    lines(points, count) {
        this.countIn(Math.max(count - 1, 1), true);
        this.chain(points, count, true);
    }

    /**
     * @param {Float64Array} points @param {number} count
     * @param {boolean} snaps the points are the plot's own
     */
    chain(points, count, snaps) {
        const style = this.now;
        const number = this.number;
        const builder = this.builder;
        const last = 2 * count - 2;
        const snapFlags = snaps ? (CODE.startSnaps | CODE.endSnaps) >>> 0 : 0;
        if (isDot(points, count)) {
            builder.line(points[0], points[1], points[0], points[1], number | snapFlags, style.width, 0);
            this.mark();
            return;
        }
        const closed = count > 2 && points[0] === points[last] && points[1] === points[last + 1];
        const joined = !closed && this.openStyle === number && this.openX === points[0] &&
            this.openY === points[1];
        if (joined && style.cap) builder.joinLast();
        const bevel = style.join === BEVEL && style.width > 0;
        const joint = bevel ? FLAT : 0;
        const dashed = style.dashes.length > 0;
        let along = joined ? this.openAlong : 0;
        for (let i = 0; i < last; i += 2) {
            const x0 = points[i];
            const y0 = points[i + 1];
            const x1 = points[i + 2];
            const y1 = points[i + 3];
            const startCap = i > 0 || closed || joined ? joint : style.cap;
            const endCap = i + 2 < last || closed ? joint : style.cap;
            const caps = (startCap << CODE.startCap) | (endCap << CODE.endCap);
            builder.line(x0, y0, x1, y1, number | caps | snapFlags, style.width, along);
            if (dashed) along += Math.hypot(x1 - x0, y1 - y0);
            if (bevel && (i + 2 < last || closed)) this.bevel(points, i, i + 2 < last ? i + 4 : 2);
        }
        this.mark();
        if (closed) return;
        this.openStyle = number;
        this.openX = points[last];
        this.openY = points[last + 1];
        this.openAlong = along;
    }

    /** The corner between the line from `at` and the one to `next`. @param {Float64Array} points
     * @param {number} at @param {number} next */
    bevel(points, at, next) {
        const x = points[at + 2];
        const y = points[at + 3];
        const before = Math.hypot(x - points[at], y - points[at + 1]);
        const after = Math.hypot(points[next] - x, points[next + 1] - y);
        if (before === 0 || after === 0) return;
        const half = this.now.width / 2;
        const ux = (half * (x - points[at])) / before;
        const uy = (half * (y - points[at + 1])) / before;
        const vx = (half * (points[next] - x)) / after;
        const vy = (half * (points[next + 1] - y)) / after;
        const outside = ux * vy - uy * vx > 0 ? 1 : -1;
        this.builder.triangle(x, y, x + outside * uy, y - outside * ux, x + outside * vy,
            y - outside * vx, this.number | CODE.inDrawColour);
    }

    /** @param {Float64Array} points @param {number[]} lengths */
    area(points, lengths) {
        this.countIn(1, false);
        this.mark();
        const triangles = lengths.length === 1 ? triangulate(points, lengths[0]) : null;
        if (!triangles) {
            this.builder.area(points, lengths, this.number);
            return;
        }
        this.triangles(points, triangles);
    }

    /** @param {Float64Array} points @param {number[]} triangles */
    triangles(points, triangles) {
        for (let i = 0; i < triangles.length; i += 3) {
            const a = 2 * triangles[i];
            const b = 2 * triangles[i + 1];
            const c = 2 * triangles[i + 2];
            this.builder.triangle(points[a], points[a + 1], points[b], points[b + 1], points[c],
                points[c + 1], this.number);
        }
    }

    /** @param {number} x @param {number} y @param {number} radius @param {boolean} filled */
    circle(x, y, radius, filled) {
        this.countIn(1, !filled);
        this.centres.push(x, y);
        const points = arcPoints(x, y, radius, radius, 0, 360);
        const corners = points.length / 2 - 1;
        if (!filled) {
            this.chain(points, corners + 1, false);
            this.mark();
            return;
        }
        const triangles = [];
        for (let i = 2; i < corners; i++) triangles.push(0, i - 1, i);
        this.triangles(points, triangles);
        this.mark();
    }

    /** @param {Float64Array} points @param {number} start @param {number} span */
    arc(points, start, span) {
        this.countIn(1, true);
        const [x, y, radiusX, radiusY] = points;
        this.centres.push(x, y);
        const chain = arcPoints(x, y, radiusX, radiusY, start, span);
        this.mark();
        this.chain(chain, chain.length / 2, false);
        this.mark();
        if (Math.abs(span) >= 360) return;
        const end = chain.length - 2;
        this.centres.push(chain[0], chain[1], chain[end], chain[end + 1]);
    }

    /** @param {Float64Array} points @param {string} text */
    text(points, text) {
        this.texts.push({ text, box: Array.from(points.subarray(0, 4)), layer: this.now.layer });
        this.countIn(1, false);
    }

    /** @param {Float64Array} points @param {number} blend */
    picture(points, blend) {
        this.countIn(1, false);
        this.mark();
        this.builder.picture(points, this.pictures++, this.now.layer, blend);
    }

    /** @param {number} width @param {number} height @param {Uint8Array} rows */
    pattern(width, height, rows) {
        this.newPatterns.push({ width, height, rows: rows.slice() });
    }

    /** @param {Float64Array} points */
    clip(points) {
        this.newClips.push([points[0], points[1], points[2], points[3]]);
        this.clipped = this.clips++;
        this.mark();
        this.builder.setState(this.now.blend, this.clipped);
    }

    endClip() {
        this.clipped = -1;
        this.mark();
        this.builder.setState(this.now.blend, -1);
    }

    /**
     * What has come since the last call.
     * @param {number} page
     * @param {boolean} done nothing follows
     * @returns {ScenePart}
     */
    takePart(page, done) {
        if (done) this.builder.flush();
        const part = {
            page, chunks: this.newChunks, styles: this.newStyles, patterns: this.newPatterns,
            clips: this.newClips, level: null,
            done: done ? {
                texts: this.texts,
                layers: [...this.layers].map(([layer, { count, widths }]) => ({
                    layer, count, widths: [...widths].sort((a, b) => a - b),
                })),
                centres: Float64Array.from(this.centres),
            } : null,
        };
        this.newChunks = [];
        this.newStyles = [];
        this.newPatterns = [];
        this.newClips = [];
        return part;
    }
}

/** @param {Float64Array} points @param {number} count */
function isDot(points, count) {
    for (let i = 2; i < 2 * count; i += 2) {
        if (points[i] !== points[0] || points[i + 1] !== points[1]) return false;
    }
    return true;
}
