// Coarser versions of a scene for small scales: what falls together within a tolerance is drawn
// once. Test: tests/viewer/parts.test.js.
import { ChunkBuilder } from './chunk_builder.js';
import { CODE, KIND } from './scene.js';

/** @typedef {import('./scene.js').Chunk} Chunk */

/** A set of numbers that forgets nothing and needs no objects: open addressing. */
class NumberSet {
    constructor() {
        this.capacity = 1 << 16;
        this.slots = new Float64Array(this.capacity);
        this.used = 0;
    }

    /** @param {number} key not 0 @returns {boolean} it is new */
    add(key) {
        if (2 * this.used > this.capacity) this.grow();
        let slot = this.slotOf(key);
        for (; this.slots[slot] !== 0; slot = (slot + 1) & (this.capacity - 1)) {
            if (this.slots[slot] === key) return false;
        }
        this.slots[slot] = key;
        this.used++;
        return true;
    }

    /** @param {number} key */
    slotOf(key) {
        const mixed = Math.imul((key % 4294967296) ^ (key / 4294967296), 0x9e3779b1);
        return ((mixed >>> 15) ^ mixed) & (this.capacity - 1);
    }

    grow() {
        const old = this.slots;
        this.capacity *= 4;
        this.slots = new Float64Array(this.capacity);
        for (const key of old) {
            if (key === 0) continue;
            let slot = this.slotOf(key);
            while (this.slots[slot] !== 0) slot = (slot + 1) & (this.capacity - 1);
            this.slots[slot] = key;
        }
    }
}

/** Two 26-bit hashes as one number. @param {number} a @param {number} b @param {number} c
 * @param {number} d @param {number} style */
function keyOf(a, b, c, d, style) {
    let high = Math.imul(a, 0x85ebca6b) ^ Math.imul(b, 0xc2b2ae35);
    high = Math.imul(high ^ (high >>> 13), 0x27d4eb2f) ^ Math.imul(c, 0x165667b1);
    high = Math.imul(high ^ (high >>> 15), 0x9e3779b1) ^ style;
    let low = Math.imul(c, 0x85ebca77) ^ Math.imul(d, 0xc2b2ae3d) ^ Math.imul(high, 0x2545f491);
    low = Math.imul(low ^ (low >>> 14), 0x94d049bb) ^ Math.imul(a, 0x68bc21eb);
    return 1 + (high >>> 6) * 67108864 + ((low ^ (low >>> 16)) >>> 6);
}

/** Gathers lines that continue each other until they are long enough to see. */
class Simplifier {
    /** @param {number} tolerance @param {import('./scene.js').Style[]} styles */
    constructor(tolerance, styles) {
        this.tolerance = tolerance;
        this.styles = styles;
        /** @type {Chunk[]} */
        this.chunks = [];
        this.builder = new ChunkBuilder((chunk) => this.chunks.push(chunk));
        this.seen = new NumberSet();
        this.pending = false;
        this.x0 = this.y0 = this.x1 = this.y1 = 0;
        this.code = 0;
    }

    finish() {
        this.endPath();
        this.builder.flush();
    }

    /** @param {Chunk} chunk */
    take(chunk) {
        this.builder.setState(chunk.blend, chunk.clip);
        // What was seen may lie below an area that came since.
        if (chunk.kind !== KIND.strokes || chunk.blend === 3) {
            this.finish();
            this.seen = new NumberSet();
            this.chunks.push(chunk);
            return;
        }
        for (let i = 0; i < chunk.count; i++) this.instance(chunk, i);
        this.endPath();
    }

    /** @param {Chunk} chunk @param {number} i */
    instance(chunk, i) {
        const at = 4 * i;
        const x0 = chunk.segments[at] + chunk.originX;
        const y0 = chunk.segments[at + 1] + chunk.originY;
        const x1 = chunk.segments[at + 2] + chunk.originX;
        const y1 = chunk.segments[at + 3] + chunk.originY;
        const code = chunk.codes[i];
        const style = this.styles[code & CODE.style];
        if (code & CODE.triangle) {
            this.endPath();
            const x2 = (chunk.thirds ? chunk.thirds[2 * i] : 0) + chunk.originX;
            const y2 = (chunk.thirds ? chunk.thirds[2 * i + 1] : 0) + chunk.originY;
            this.builder.triangle(x0, y0, x1, y1, x2, y2, code);
            return;
        }
        if (style.dashes.length > 0) {
            this.endPath();
            this.builder.line(x0, y0, x1, y1, code, style.width, chunk.alongs ? chunk.alongs[i] : 0);
            return;
        }
        const continues = this.pending && x0 === this.x1 && y0 === this.y1 && code === this.code;
        if (!continues) {
            this.endPath();
            this.pending = true;
            this.x0 = x0;
            this.y0 = y0;
            this.code = code;
        }
        this.x1 = x1;
        this.y1 = y1;
        if (Math.abs(x1 - this.x0) + Math.abs(y1 - this.y0) > 1.5 * this.tolerance) this.endPath();
    }

    endPath() {
        if (!this.pending) return;
        this.pending = false;
        const t = this.tolerance;
        const style = this.code & CODE.style;
        let a = Math.round(this.x0 / t);
        let b = Math.round(this.y0 / t);
        let c = Math.round(this.x1 / t);
        let d = Math.round(this.y1 / t);
        if (a > c || (a === c && b > d)) [a, b, c, d] = [c, d, a, b];
        if (!this.seen.add(keyOf(a, b, c, d, style))) return;
        this.builder.line(this.x0, this.y0, this.x1, this.y1, this.code, this.styles[style].width, 0);
    }
}

/** A level with more of the instances than this is not worth its memory. */
const MOST_KEPT_PART = 0.75;
/** Chunks after which this is asked for the first time. */
const TRIAL_CHUNKS = 16;

/**
 * @param {Chunk[]} chunks
 * @param {import('./scene.js').Style[]} styles
 * @param {number} tolerance in units
 * @returns {import('./scene.js').SceneLevel | null} null: it would not be much smaller
 */
export function coarserLevel(chunks, styles, tolerance) {
    const simplifier = new Simplifier(tolerance, styles);
    const isWorthwhile = (/** @type {number} */ taken) =>
        instancesOf(simplifier.chunks) <= MOST_KEPT_PART * instancesOf(chunks.slice(0, taken));
    for (let i = 0; i < chunks.length; i++) {
        simplifier.take(chunks[i]);
        if (i === TRIAL_CHUNKS && !isWorthwhile(i + 1)) return null;
    }
    simplifier.finish();
    return isWorthwhile(chunks.length) ? { tolerance, chunks: simplifier.chunks } : null;
}

/** @param {Chunk[]} chunks @returns {number} */
export function instancesOf(chunks) {
    return chunks.reduce((sum, chunk) => sum + chunk.count, 0);
}
