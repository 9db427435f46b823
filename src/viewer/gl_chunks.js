// ChunkStore: the instances of a scene in data textures, from which the stroke program pulls them.
import { CODE, KIND } from './scene.js';
import { makeTexture } from './gl_targets.js';

/** @typedef {import('./scene.js').Chunk} Chunk */
/**
 * Instances that stand in one row of one block of textures.
 * @typedef {object} Run
 * @property {Block} block
 * @property {number} column
 * @property {number} row
 * @property {number} count
 * @property {boolean} hasExtras
 */
/** @typedef {{segments: WebGLTexture, codes: WebGLTexture, extras: WebGLTexture | null}} Block */

export const ROW_INSTANCES = 4096;
const BLOCK_ROWS = 32;

/** The fans of an area's rings as triangle instances: where an odd number of them lies is inside.
 * @param {Chunk} chunk */
function fansOf(chunk) {
    const lengths = chunk.codes.subarray(1);
    const count = lengths.reduce((sum, length) => sum + Math.max(length - 2, 0), 0);
    const segments = new Float32Array(4 * count);
    const thirds = new Float32Array(2 * count);
    const points = chunk.segments;
    let first = 0;
    let at = 0;
    for (const length of lengths) {
        for (let i = first + 1; i + 1 < first + length; i++, at++) {
            segments.set([points[2 * first], points[2 * first + 1], points[2 * i], points[2 * i + 1]], 4 * at);
            thirds.set([points[2 * i + 2], points[2 * i + 3]], 2 * at);
        }
        first += length;
    }
    const codes = new Uint32Array(count).fill((chunk.codes[0] | CODE.triangle) >>> 0);
    return { count, segments, codes, thirds, alongs: null };
}

export class ChunkStore {
    /** @param {WebGL2RenderingContext} gl */
    constructor(gl) {
        this.gl = gl;
        /** @type {Block[]} */
        this.blocks = [];
        /** @type {Chunk[]} */
        this.chunks = [];
        this.column = 0;
        this.row = BLOCK_ROWS;
    }

    /** The runs of a chunk, uploaded when first asked for. @param {Chunk} chunk @returns {Run[]} */
    runsOf(chunk) {
        if (chunk.gl) return chunk.gl;
        const data = chunk.kind === KIND.area ? fansOf(chunk) : chunk;
        /** @type {Run[]} */
        const runs = [];
        for (let from = 0; from < data.count; from += ROW_INSTANCES) {
            runs.push(this.upload(data, from, Math.min(data.count - from, ROW_INSTANCES)));
        }
        chunk.gl = runs;
        this.chunks.push(chunk);
        return runs;
    }

    /**
     * @param {Pick<Chunk, 'segments' | 'codes' | 'thirds' | 'alongs'>} data
     * @param {number} from @param {number} count
     * @returns {Run}
     */
    upload(data, from, count) {
        const gl = this.gl;
        if (this.column + count > ROW_INSTANCES) {
            this.column = 0;
            this.row++;
        }
        if (this.row >= BLOCK_ROWS) this.newBlock();
        const block = this.blocks[this.blocks.length - 1];
        const { column, row } = this;
        const hasExtras = Boolean(data.thirds || data.alongs);
        /** @param {WebGLTexture} texture @param {number} format @param {number} type
         * @param {ArrayBufferView} values */
        const put = (texture, format, type, values) => {
            gl.bindTexture(gl.TEXTURE_2D, texture);
            gl.texSubImage2D(gl.TEXTURE_2D, 0, column, row, count, 1, format, type, values);
        };
        gl.activeTexture(gl.TEXTURE0);
        put(block.segments, gl.RGBA, gl.FLOAT, data.segments.subarray(4 * from, 4 * (from + count)));
        put(block.codes, gl.RED_INTEGER, gl.UNSIGNED_INT, data.codes.subarray(from, from + count));
        if (hasExtras) {
            block.extras ??= this.newTexture(gl.RGBA32F);
            const extras = new Float32Array(4 * count);
            for (let i = 0; i < count; i++) {
                if (data.thirds) extras.set(data.thirds.subarray(2 * (from + i), 2 * (from + i) + 2), 4 * i);
                if (data.alongs) extras[4 * i + 2] = data.alongs[from + i];
            }
            put(block.extras, gl.RGBA, gl.FLOAT, extras);
        }
        this.column += count;
        return { block, column, row, count, hasExtras };
    }

    newBlock() {
        const gl = this.gl;
        this.blocks.push({
            segments: this.newTexture(gl.RGBA32F), codes: this.newTexture(gl.R32UI), extras: null,
        });
        this.row = 0;
        this.column = 0;
    }

    /** @param {number} format @returns {WebGLTexture} */
    newTexture(format) {
        const gl = this.gl;
        const texture = makeTexture(gl, gl.NEAREST);
        gl.texStorage2D(gl.TEXTURE_2D, 1, format, ROW_INSTANCES, BLOCK_ROWS);
        return texture;
    }

    dispose() {
        for (const block of this.blocks) {
            for (const texture of Object.values(block)) this.gl.deleteTexture(texture);
        }
        for (const chunk of this.chunks) delete chunk.gl;
        this.blocks = [];
        this.chunks = [];
        this.row = BLOCK_ROWS;
    }
}
