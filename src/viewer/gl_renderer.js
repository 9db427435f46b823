// GlRenderer: draws scenes with WebGL2 into targets, a part at a time, and shows them.
//
// A view (the drawing under one camera) is drawn into the back target in steps; when it is complete
// it becomes the front. Each picture on the screen shows the front moved to where the camera is now,
// so panning costs one rectangle however much the plot holds. Test: tests/viewer/browser.test.js.
import { boxesMeet, inverse, transformed, transformedBox } from './geometry.js';
import { ChunkStore, ROW_INSTANCES } from './gl_chunks.js';
import { Target, makeProgram, makeTexture } from './gl_targets.js';
import { BLEND, KIND } from './scene.js';
import {
    PICTURE_FRAGMENT, PICTURE_VERTEX, SHOW_FRAGMENT, SHOW_VERTEX, STROKE_FRAGMENT, STROKE_VERTEX,
} from './shaders.js';
import { PATTERN_SIDE, STYLE_TEXELS, STYLES_A_ROW, patternAtlas, styleTexels } from './styles.js';

/** @typedef {import('./camera.js').Camera} Camera */
/** @typedef {import('./scene.js').Chunk} Chunk */
/** @typedef {import('./scene.js').Scene} Scene */
/**
 * @typedef {object} Job
 * @property {Target} target
 * @property {Camera} camera
 * @property {number} ratio dots a CSS pixel
 * @property {number} next chunk
 * @property {Chunk[]} chunks
 * @property {import('./geometry.js').Box} seen in the drawing
 * @property {import('./geometry.js').Matrix} matrix drawing to dots
 */

const SAMPLES = 4;
const PICTURE_COST = 2000; // instances that take as long as a picture
const UNITS = Object.freeze({ segments: 0, codes: 1, extras: 2, styles: 3, dashes: 4, atlas: 5 });

/** The processor pretends to be a graphics processor. Browsers are to refuse such contexts when asked
 * to, and some do not. @param {WebGL2RenderingContext} gl */
function isEmulated(gl) {
    const names = gl.getExtension('WEBGL_debug_renderer_info');
    const renderer = String(gl.getParameter(names ? names.UNMASKED_RENDERER_WEBGL : gl.RENDERER));
    return /swiftshader|llvmpipe|softpipe|software|basic render/i.test(renderer);
}

export class GlRenderer {
    /**
     * Throws where there is no WebGL2, or none in hardware: an emulated one takes seconds for what
     * CanvasRenderer draws in a tenth of one.
     * @param {HTMLCanvasElement} canvas
     * @param {import('./pictures.js').Pictures} pictures
     * @param {boolean} emulated take that one, too
     */
    constructor(canvas, pictures, emulated) {
        const gl = canvas.getContext('webgl2', {
            antialias: false, depth: false, stencil: false, failIfMajorPerformanceCaveat: !emulated,
        });
        if (!gl) throw new Error('no WebGL2 in hardware');
        if (!emulated && isEmulated(gl)) {
            gl.getExtension('WEBGL_lose_context')?.loseContext();
            throw new Error('WebGL2 is emulated');
        }
        this.gl = gl;
        this.canvas = canvas;
        this.pictures = pictures;
        this.name = 'WebGL2';
        /** Milliseconds: a step is over when a later frame finds it so. */
        this.stepTimes = { moving: 20, resting: 70 };
        this.strokes = makeProgram(gl, STROKE_VERTEX, STROKE_FRAGMENT);
        this.picture = makeProgram(gl, PICTURE_VERTEX, PICTURE_FRAGMENT);
        this.show = makeProgram(gl, SHOW_VERTEX, SHOW_FRAGMENT);
        this.corners = gl.createBuffer();
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, this.corners);
        const indices = new Uint16Array(6 * ROW_INSTANCES);
        for (let i = 0; i < ROW_INSTANCES; i++) {
            indices.set([0, 1, 2, 2, 1, 3].map((corner) => 4 * i + corner), 6 * i);
        }
        gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, indices, gl.STATIC_DRAW);
        this.styles = makeTexture(gl, gl.NEAREST);
        this.dashes = makeTexture(gl, gl.NEAREST);
        this.atlas = makeTexture(gl, gl.NEAREST);
        this.none = makeTexture(gl, gl.NEAREST);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, 1, 1, 0, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4));
        this.store = new ChunkStore(gl);
        this.front = new Target(gl);
        this.back = new Target(gl);
        this.overview = new Target(gl);
        /** @type {WeakMap<ImageBitmap, WebGLTexture>} */
        this.textures = new WeakMap();
        this.largest = Math.min(gl.getParameter(gl.MAX_TEXTURE_SIZE), 8192);
        /** @type {Scene | null} */
        this.scene = null;
        this.page = 0;
        /** @type {(layer: number) => boolean} */
        this.isShown = () => true;
        this.widths = true;
        this.stylesKnown = -1;
        /** @type {WebGLSync | null} */
        this.fence = null;
    }

    /** @param {Scene} scene @param {number} page */
    setScene(scene, page) {
        this.store.dispose();
        this.scene = scene;
        this.page = page;
        this.stylesKnown = -1;
        this.front.camera = this.back.camera = this.overview.camera = null;
    }

    /** Layers or widths changed: styles are to be read anew. */
    stylesChanged() {
        this.stylesKnown = -1;
        this.overview.camera = null;
    }

    get sampleCount() {
        return this.scene?.mayHoldAreas ? SAMPLES : 0;
    }

    uploadStyles() {
        const scene = this.scene;
        if (!scene || this.stylesKnown === scene.styles.length) return;
        this.stylesKnown = scene.styles.length;
        const gl = this.gl;
        const { texels, rows, dashes } = styleTexels(scene.styles, scene.patterns, this.isShown);
        const { dots, rows: atlasRows } = patternAtlas(scene.patterns);
        gl.activeTexture(gl.TEXTURE0);
        gl.bindTexture(gl.TEXTURE_2D, this.styles);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA32F, STYLES_A_ROW * STYLE_TEXELS, rows, 0, gl.RGBA, gl.FLOAT, texels);
        gl.bindTexture(gl.TEXTURE_2D, this.dashes);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.R32F, PATTERN_SIDE, dashes.length / PATTERN_SIDE, 0, gl.RED, gl.FLOAT, dashes);
        gl.bindTexture(gl.TEXTURE_2D, this.atlas);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.R8, PATTERN_SIDE, atlasRows, 0, gl.RED, gl.UNSIGNED_BYTE, dots);
    }

    /**
     * @param {Camera} camera @param {number} ratio @param {Target} target
     * @returns {Job}
     */
    begin(camera, ratio, target) {
        const width = Math.max(1, Math.round(camera.width * ratio));
        const height = Math.max(1, Math.round(camera.height * ratio));
        target.resize(width, height, this.sampleCount);
        target.clear();
        target.camera = camera;
        const matrix = camera.drawingToView.map((value) => value * ratio);
        const seen = transformedBox(inverse(matrix), [-2, -2, width + 2, height + 2]);
        const chunks = this.scene ? this.scene.chunksFor(camera.scale * ratio) : [];
        return { target, camera, ratio, next: 0, chunks, seen, matrix };
    }

    /**
     * Draws on, at most about `instances` of them.
     * @param {Job} job @param {number} instances
     * @returns {number} how many were drawn
     */
    step(job, instances) {
        const gl = this.gl;
        this.uploadStyles();
        job.target.bind();
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, this.corners);
        gl.enable(gl.BLEND);
        this.useStrokes(job);
        let drawn = 0;
        for (; job.next < job.chunks.length && drawn < instances; job.next++) {
            const chunk = job.chunks[job.next];
            if (!boxesMeet(chunk.box, job.seen, chunk.widest)) continue;
            drawn += this.drawChunk(job, chunk);
        }
        gl.disable(gl.SCISSOR_TEST);
        gl.disable(gl.STENCIL_TEST);
        gl.disable(gl.BLEND);
        if (drawn > 0) {
            if (this.fence) gl.deleteSync(this.fence);
            this.fence = gl.fenceSync(gl.SYNC_GPU_COMMANDS_COMPLETE, 0);
            gl.flush();
        }
        return drawn;
    }

    /** @param {Job} job @returns {boolean} all chunks that there are now are drawn */
    isDone(job) {
        return job.next >= job.chunks.length;
    }

    /** The graphics processor still works on the last step. */
    get isBusy() {
        const gl = this.gl;
        if (!this.fence) return false;
        if (gl.getSyncParameter(this.fence, gl.SYNC_STATUS) !== gl.SIGNALED) return true;
        gl.deleteSync(this.fence);
        this.fence = null;
        return false;
    }

    /** The finished view is the one to show. @param {Job} job */
    finish(job) {
        job.target.resolve();
        if (job.target === this.back) [this.front, this.back] = [this.back, this.front];
    }

    /** @param {Job} job */
    useStrokes(job) {
        const gl = this.gl;
        const { handle, at } = this.strokes;
        const { matrix, target, camera, ratio } = job;
        gl.useProgram(handle);
        for (const [name, unit] of Object.entries(UNITS)) gl.uniform1i(at[name], unit);
        gl.uniformMatrix2fv(at.turn, false, matrix.slice(0, 4));
        gl.uniform2f(at.viewport, target.width, target.height);
        // Dots a unit, the thinnest line (a CSS pixel), whether all lines are that thin.
        gl.uniform4f(at.pen, camera.scale * ratio, ratio, this.widths ? 0 : 1, 0);
        for (const [unit, texture] of /** @type {[number, WebGLTexture][]} */ (
            [[UNITS.styles, this.styles], [UNITS.dashes, this.dashes], [UNITS.atlas, this.atlas]])) {
            gl.activeTexture(gl.TEXTURE0 + unit);
            gl.bindTexture(gl.TEXTURE_2D, texture);
        }
    }

    /** @param {number} blend */
    setBlend(blend) {
        const gl = this.gl;
        gl.blendEquation(blend === BLEND.darken ? gl.MIN : blend === BLEND.lighten ? gl.MAX : gl.FUNC_ADD);
        if (blend === BLEND.difference) {
            gl.blendFuncSeparate(gl.ONE_MINUS_DST_COLOR, gl.ONE_MINUS_SRC_COLOR, gl.ZERO, gl.ONE);
        } else {
            gl.blendFunc(gl.ONE, gl.ONE_MINUS_SRC_ALPHA);
        }
    }

    /** Nothing outside of a box of the drawing. @param {Job} job @param {import('./geometry.js').Box} box */
    setScissor(job, box) {
        const [left, top, right, bottom] = transformedBox(job.matrix, box);
        const x = Math.min(Math.max(Math.floor(left), 0), job.target.width);
        const y = Math.min(Math.max(Math.floor(top), 0), job.target.height);
        const width = Math.min(Math.max(Math.ceil(right) - x, 0), job.target.width);
        const height = Math.min(Math.max(Math.ceil(bottom) - y, 0), job.target.height);
        this.gl.enable(this.gl.SCISSOR_TEST);
        this.gl.scissor(x, job.target.height - y - height, width, height);
    }

    /** @param {Job} job @param {Chunk} chunk @returns {number} what it cost, in instances */
    drawChunk(job, chunk) {
        const gl = this.gl;
        const clip = chunk.clip >= 0 ? this.scene?.clips[chunk.clip] : null;
        if (clip) this.setScissor(job, clip);
        else gl.disable(gl.SCISSOR_TEST);
        this.setBlend(chunk.blend);
        if (chunk.kind === KIND.picture) {
            if (!this.isShown(chunk.layer)) return 0;
            this.drawPicture(job, chunk);
            this.useStrokes(job);
            return PICTURE_COST;
        }
        const { at } = this.strokes;
        const origin = transformed(job.matrix, chunk.originX, chunk.originY);
        gl.uniform2f(at.shift, origin.x, origin.y);
        gl.uniform2f(at.origin, chunk.originX, chunk.originY);
        gl.uniform1i(at.blend, chunk.blend);
        const runs = this.store.runsOf(chunk);
        if (chunk.kind === KIND.strokes && chunk.blend !== BLEND.difference) {
            gl.uniform1i(at.mode, 0);
            for (const run of runs) this.drawRun(run, run.count);
            return chunk.count;
        }
        this.mark(runs, chunk.kind === KIND.area ? gl.INVERT : gl.REPLACE);
        if (chunk.kind === KIND.area && !clip) this.setScissor(job, chunk.box);
        gl.stencilFunc(gl.NOTEQUAL, 0, 255);
        gl.stencilOp(gl.KEEP, gl.KEEP, gl.ZERO);
        gl.uniform1i(at.mode, 2);
        if (runs.length > 0) this.drawRun(runs[0], 1);
        gl.disable(gl.STENCIL_TEST);
        return chunk.count + 200;
    }

    /** Marks what runs cover in the stencil. @param {import('./gl_chunks.js').Run[]} runs
     * @param {number} operation */
    mark(runs, operation) {
        const gl = this.gl;
        gl.enable(gl.STENCIL_TEST);
        gl.colorMask(false, false, false, false);
        gl.stencilFunc(gl.ALWAYS, 255, 255);
        gl.stencilOp(gl.KEEP, gl.KEEP, operation);
        gl.uniform1i(this.strokes.at.mode, 1);
        for (const run of runs) this.drawRun(run, run.count);
        gl.colorMask(true, true, true, true);
    }

    /** @param {import('./gl_chunks.js').Run} run @param {number} count */
    drawRun(run, count) {
        const gl = this.gl;
        const { at } = this.strokes;
        gl.activeTexture(gl.TEXTURE0 + UNITS.segments);
        gl.bindTexture(gl.TEXTURE_2D, run.block.segments);
        gl.activeTexture(gl.TEXTURE0 + UNITS.codes);
        gl.bindTexture(gl.TEXTURE_2D, run.block.codes);
        gl.activeTexture(gl.TEXTURE0 + UNITS.extras);
        gl.bindTexture(gl.TEXTURE_2D, run.block.extras ?? this.none);
        gl.uniform2i(at.place, run.column, run.row);
        gl.uniform1i(at.hasExtras, run.hasExtras ? 1 : 0);
        gl.drawElements(gl.TRIANGLES, 6 * count, gl.UNSIGNED_SHORT, 0);
    }

    /** @param {Job} job @param {Chunk} chunk */
    drawPicture(job, chunk) {
        const gl = this.gl;
        const bitmap = this.pictures.get(this.page, chunk.picture, this.largest);
        if (!bitmap) return;
        let texture = this.textures.get(bitmap);
        if (!texture) {
            texture = makeTexture(gl, gl.LINEAR);
            gl.pixelStorei(gl.UNPACK_PREMULTIPLY_ALPHA_WEBGL, true);
            gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, gl.RGBA, gl.UNSIGNED_BYTE, bitmap);
            gl.pixelStorei(gl.UNPACK_PREMULTIPLY_ALPHA_WEBGL, false);
            gl.generateMipmap(gl.TEXTURE_2D);
            gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, gl.LINEAR_MIPMAP_LINEAR);
            gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, gl.NEAREST);
            this.textures.set(bitmap, texture);
        }
        const { handle, at } = this.picture;
        const { matrix, target } = job;
        const [left, low, right, high] = chunk.box;
        // Corners relative to the lower left one, for 32-bit floats.
        const origin = transformed(matrix, left, low);
        gl.useProgram(handle);
        gl.activeTexture(gl.TEXTURE0);
        gl.bindTexture(gl.TEXTURE_2D, texture);
        gl.uniform1i(at.picture, 0);
        gl.uniform1i(at.blend, chunk.blend);
        gl.uniformMatrix2fv(at.turn, false, matrix.slice(0, 4));
        gl.uniform2f(at.shift, origin.x, origin.y);
        gl.uniform2f(at.viewport, target.width, target.height);
        gl.uniform4f(at.box, 0, 0, right - left, high - low);
        gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
    }

    /**
     * Puts on the canvas what there is of the view.
     * @param {Camera} camera @param {number} ratio @param {boolean} dark
     * @param {Target} [shown] the front if not given
     */
    present(camera, ratio, dark, shown = this.front) {
        const gl = this.gl;
        const width = Math.max(1, Math.round(camera.width * ratio));
        const height = Math.max(1, Math.round(camera.height * ratio));
        if (this.canvas.width !== width || this.canvas.height !== height) {
            this.canvas.width = width;
            this.canvas.height = height;
        }
        const { handle, at } = this.show;
        gl.bindFramebuffer(gl.FRAMEBUFFER, null);
        gl.viewport(0, 0, width, height);
        gl.disable(gl.SCISSOR_TEST);
        gl.disable(gl.BLEND);
        gl.useProgram(handle);
        gl.uniform2f(at.viewport, width, height);
        this.placeTarget(shown, camera, ratio, 0, at.front, at.frontPlace);
        this.placeTarget(this.overview, camera, ratio, 1, at.overview, at.overviewPlace);
        const [left, top, right, bottom] =
            transformedBox(camera.sheetToView, [0, 0, camera.page.width, camera.page.height]);
        gl.uniform4f(at.sheet, left * ratio, top * ratio, right * ratio, bottom * ratio);
        gl.uniform1i(at.dark, dark ? 1 : 0);
        gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
    }

    /**
     * Where the canvas's dots lie in a target, as factor and shift to 0 ... 1.
     * @param {Target} target @param {Camera} camera @param {number} ratio @param {number} unit
     * @param {WebGLUniformLocation | null} sampler @param {WebGLUniformLocation | null} place
     */
    placeTarget(target, camera, ratio, unit, sampler, place) {
        const gl = this.gl;
        gl.uniform1i(sampler, unit);
        const drawn = target.camera;
        if (!drawn || drawn.page !== camera.page) {
            gl.activeTexture(gl.TEXTURE0 + unit);
            gl.bindTexture(gl.TEXTURE_2D, this.none);
            gl.uniform4f(place, 0, 0, -1, -1);
            return;
        }
        const k = drawn.scale / camera.scale;
        const [, , , , sx, sy] = camera.sheetToView;
        const [, , , , tx, ty] = drawn.sheetToView;
        const dots = target.width / drawn.width;
        const shiftX = (tx - k * sx) * dots;
        const shiftY = (ty - k * sy) * dots;
        const exact = Math.abs(k - 1) < 1e-9 && dots === ratio &&
            Math.abs(shiftX - Math.round(shiftX)) + Math.abs(shiftY - Math.round(shiftY)) < 1e-3;
        target.use(unit, !exact);
        gl.uniform4f(place, (k * dots) / ratio / target.width, (k * dots) / ratio / target.height,
            shiftX / target.width, shiftY / target.height);
    }

    /**
     * A view as a picture of its own, drawn at once: for thumbnails and printing.
     * @param {Camera} camera @param {number} ratio
     * @returns {ImageData}
     */
    draw(camera, ratio) {
        const target = new Target(this.gl);
        const job = this.begin(camera, ratio, target);
        while (!this.isDone(job)) this.step(job, Infinity);
        target.resolve();
        const { width, height } = target;
        const gl = this.gl;
        const image = new ImageData(width, height);
        const rows = new Uint8Array(4 * width * height);
        gl.bindFramebuffer(gl.FRAMEBUFFER, target.framebuffer);
        gl.readPixels(0, 0, width, height, gl.RGBA, gl.UNSIGNED_BYTE, rows);
        for (let y = 0; y < height; y++) {
            const from = 4 * width * (height - 1 - y);
            image.data.set(rows.subarray(from, from + 4 * width), 4 * width * y);
        }
        target.dispose();
        return image;
    }
}
