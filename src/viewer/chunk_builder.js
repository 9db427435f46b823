// ChunkBuilder: gathers instances and cuts them into chunks of a size that is culled and drawn at a
// time. Test: tests/viewer/parts.test.js.
import { CODE, KIND } from './scene.js';

/** @typedef {import('./scene.js').Chunk} Chunk */

const CHUNK_INSTANCES = 4096;

export class ChunkBuilder {
    /** @param {(chunk: Chunk) => void} emit */
    constructor(emit) {
        this.emit = emit;
        this.blend = 0;
        this.clip = -1;
        this.segments = new Float32Array(4 * CHUNK_INSTANCES);
        this.codes = new Uint32Array(CHUNK_INSTANCES);
        this.thirds = new Float32Array(2 * CHUNK_INSTANCES);
        this.alongs = new Float32Array(CHUNK_INSTANCES);
        this.count = 0;
        this.hasThirds = false;
        this.hasAlongs = false;
        this.originX = 0;
        this.originY = 0;
        this.left = Infinity;
        this.low = Infinity;
        this.right = -Infinity;
        this.high = -Infinity;
        this.widest = 0;
    }

    reset() {
        this.count = 0;
        this.hasThirds = false;
        this.hasAlongs = false;
        this.originX = 0;
        this.originY = 0;
        this.left = this.low = Infinity;
        this.right = this.high = -Infinity;
        this.widest = 0;
    }

    /** What holds for the instances that follow. @param {number} blend @param {number} clip */
    setState(blend, clip) {
        if (blend === this.blend && clip === this.clip) return;
        this.flush();
        this.blend = blend;
        this.clip = clip;
    }

    /** @param {number} x @param {number} y */
    widen(x, y) {
        if (x < this.left) this.left = x;
        if (x > this.right) this.right = x;
        if (y < this.low) this.low = y;
        if (y > this.high) this.high = y;
    }

    /** @param {number} x @param {number} y */
    begin(x, y) {
        if (this.count === CHUNK_INSTANCES) this.flush();
        if (this.count === 0) {
            this.originX = Math.round(x);
            this.originY = Math.round(y);
        }
    }

    /**
     * @param {number} x0 @param {number} y0 @param {number} x1 @param {number} y1
     * @param {number} code @param {number} width @param {number} along
     */
    line(x0, y0, x1, y1, code, width, along) {
        this.begin(x0, y0);
        const i = this.count++;
        const at = 4 * i;
        this.segments[at] = x0 - this.originX;
        this.segments[at + 1] = y0 - this.originY;
        this.segments[at + 2] = x1 - this.originX;
        this.segments[at + 3] = y1 - this.originY;
        this.codes[i] = code;
        this.alongs[i] = along;
        if (along > 0) this.hasAlongs = true;
        if (width > this.widest) this.widest = width;
        this.widen(x0, y0);
        this.widen(x1, y1);
    }

    /**
     * @param {number} x0 @param {number} y0 @param {number} x1 @param {number} y1
     * @param {number} x2 @param {number} y2 @param {number} code
     */
    triangle(x0, y0, x1, y1, x2, y2, code) {
        this.line(x0, y0, x1, y1, (code | CODE.triangle) >>> 0, 0, 0);
        const i = this.count - 1;
        this.thirds[2 * i] = x2 - this.originX;
        this.thirds[2 * i + 1] = y2 - this.originY;
        this.hasThirds = true;
        this.widen(x2, y2);
    }

    /** Lets the end of the last line run on: a line continues it. */
    joinLast() {
        if (this.count > 0) this.codes[this.count - 1] &= ~(3 << CODE.endCap);
    }

    /** An area of several rings as a chunk of its own. @param {Float64Array} points
     * @param {number[]} lengths @param {number} style */
    area(points, lengths, style) {
        this.flush();
        const count = lengths.reduce((sum, length) => sum + length, 0);
        const originX = points[0];
        const originY = points[1];
        const relative = new Float32Array(2 * count);
        for (let i = 0; i < 2 * count; i += 2) {
            relative[i] = points[i] - originX;
            relative[i + 1] = points[i + 1] - originY;
            this.widen(points[i], points[i + 1]);
        }
        this.emit({
            ...this.chunk(KIND.area), originX, originY, count,
            segments: relative, codes: Uint32Array.of(style, ...lengths),
        });
        this.reset();
    }

    /** @param {Float64Array} corners @param {number} picture @param {number} layer
     * @param {number} blend */
    picture(corners, picture, layer, blend) {
        this.flush();
        this.widen(corners[0], corners[1]);
        this.widen(corners[2], corners[3]);
        this.emit({ ...this.chunk(KIND.picture), count: 1, picture, layer, blend });
        this.reset();
    }

    /** @param {number} kind @returns {Chunk} */
    chunk(kind) {
        return {
            kind, blend: this.blend, clip: this.clip,
            box: [this.left, this.low, this.right, this.high], widest: this.widest,
            originX: this.originX, originY: this.originY, count: this.count,
            segments: this.segments.slice(0, 4 * this.count),
            codes: this.codes.slice(0, this.count),
            thirds: this.hasThirds ? this.thirds.slice(0, 2 * this.count) : null,
            alongs: this.hasAlongs ? this.alongs.slice(0, this.count) : null,
            picture: -1, layer: 0,
        };
    }

    flush() {
        if (this.count === 0) return;
        const chunk = this.chunk(KIND.strokes);
        this.thirds.fill(0, 0, 2 * this.count);
        this.reset();
        this.emit(chunk);
    }
}
