// CanvasRenderer: draws scenes with the 2D canvas, where there is no WebGL2 or only one that the
// processor emulates; the same methods as GlRenderer, so that the scheduler does not know which of
// the two it drives. Most plots are lines and nothing else: these LineRaster draws.
// Test: tests/viewer/browser.test.js.
import { boxesMeet, inverse, transformed, transformedBox } from './geometry.js';
import { LineRaster, dotOf } from './line_raster.js';
import { BLEND, CODE, KIND } from './scene.js';
import { cssColour, isInk } from './styles.js';

/** @typedef {import('./camera.js').Camera} Camera */
/** @typedef {import('./scene.js').Chunk} Chunk */
/** @typedef {import('./scene.js').Style} Style */
/**
 * What is drawn lies in the canvas or, while `image` is there, in that.
 * @typedef {object} Sheet
 * @property {HTMLCanvasElement} canvas
 * @property {CanvasRenderingContext2D} context
 * @property {Camera | null} camera
 * @property {ImageData | null} image
 * @property {boolean} ahead the image holds what the canvas does not
 * @property {() => void} resolve brings everything into the canvas
 */
/**
 * @typedef {object} CanvasJob
 * @property {Sheet} target
 * @property {Camera} camera
 * @property {number} ratio
 * @property {number} next
 * @property {Chunk[]} chunks
 * @property {import('./geometry.js').Box} seen
 * @property {import('./geometry.js').Matrix} matrix
 */

const COMPOSITE = /** @type {GlobalCompositeOperation[]} */ (
    ['source-over', 'darken', 'lighten', 'difference', 'source-over']);
const CAPS = /** @type {CanvasLineCap[]} */ (['round', 'butt', 'square']);
/** Fewer lines in a row are not worth fetching the dots from the canvas. */
const FEWEST_RASTERED = 1500;
/** Units of a pattern's dot: 1/300 inch. */
const PATTERN_DOT = 1016 / 300;

/** @returns {Sheet} */
function newSheet() {
    const canvas = document.createElement('canvas');
    const context = canvas.getContext('2d', { alpha: false, willReadFrequently: true });
    if (!context) throw new Error('no 2D canvas');
    /** @type {Sheet} */
    const sheet = {
        canvas, context, camera: null, image: null, ahead: false,
        resolve: () => {
            if (sheet.image && sheet.ahead) context.putImageData(sheet.image, 0, 0);
            sheet.ahead = false;
        },
    };
    return sheet;
}

export class CanvasRenderer {
    /** @param {HTMLCanvasElement} canvas @param {import('./pictures.js').Pictures} pictures */
    constructor(canvas, pictures) {
        const context = canvas.getContext('2d');
        if (!context) throw new Error('no 2D canvas');
        this.canvas = canvas;
        this.context = context;
        this.pictures = pictures;
        this.name = 'Canvas 2D';
        this.stepTimes = { moving: 7, resting: 40 };
        this.front = newSheet();
        this.back = newSheet();
        this.overview = newSheet();
        /** @type {import('./scene.js').Scene | null} */
        this.scene = null;
        this.page = 0;
        /** @type {(layer: number) => boolean} */
        this.isShown = () => true;
        this.widths = true;
        this.isBusy = false;
        /** @type {Map<string, CanvasPattern | null>} */
        this.patterns = new Map();
    }

    /** @param {import('./scene.js').Scene} scene @param {number} page */
    setScene(scene, page) {
        this.scene = scene;
        this.page = page;
        this.patterns.clear();
        this.front.camera = this.back.camera = this.overview.camera = null;
    }

    stylesChanged() {
        this.overview.camera = null;
    }

    /** @param {Camera} camera @param {number} ratio @param {Sheet} target @returns {CanvasJob} */
    begin(camera, ratio, target) {
        const { canvas, context } = target;
        target.image = null;
        canvas.width = Math.max(1, Math.round(camera.width * ratio));
        canvas.height = Math.max(1, Math.round(camera.height * ratio));
        context.fillStyle = '#fff';
        context.fillRect(0, 0, canvas.width, canvas.height);
        target.camera = camera;
        const matrix = camera.drawingToView.map((value) => value * ratio);
        const seen = transformedBox(inverse(matrix), [-2, -2, canvas.width + 2, canvas.height + 2]);
        const chunks = this.scene ? this.scene.chunksFor(camera.scale * ratio) : [];
        return { target, camera, ratio, next: 0, chunks, seen, matrix };
    }

    /** @param {CanvasJob} job @param {number} instances @returns {number} */
    step(job, instances) {
        let drawn = 0;
        for (; job.next < job.chunks.length && drawn < instances; job.next++) {
            const chunk = job.chunks[job.next];
            if (!boxesMeet(chunk.box, job.seen, chunk.widest)) continue;
            if (this.isForRaster(job)) {
                job.target.image ??= job.target.context.getImageData(0, 0, job.target.canvas.width, job.target.canvas.height);
                this.rasterLines(job, chunk, new LineRaster(job.target.image));
                job.target.ahead = true;
                drawn += chunk.count;
                continue;
            }
            job.target.resolve();
            job.target.image = null;
            this.drawChunk(job, chunk);
            drawn += 5 * chunk.count + 500;
        }
        return drawn;
    }

    /** @param {CanvasJob} job */
    isDone(job) {
        return job.next >= job.chunks.length;
    }

    /** @param {CanvasJob} job */
    finish(job) {
        job.target.resolve();
        job.target.image = null;
        if (job.target === this.back) [this.front, this.back] = [this.back, this.front];
    }

    /** The next chunks are enough plain lines. @param {CanvasJob} job */
    isForRaster(job) {
        let lines = 0;
        for (let i = job.next; i < job.chunks.length; i++) {
            const { kind, blend, clip, thirds, count } = job.chunks[i];
            if (kind !== KIND.strokes || blend !== BLEND.normal || clip >= 0 || thirds) break;
            lines += count;
            if (job.target.image || lines >= FEWEST_RASTERED) return true;
        }
        return false;
    }

    /** @param {CanvasJob} job @param {Chunk} chunk @param {LineRaster} raster */
    rasterLines(job, chunk, raster) {
        const [a, b, c, d] = job.matrix;
        const { x, y } = transformed(job.matrix, chunk.originX, chunk.originY);
        const { segments, codes, alongs } = chunk;
        const scale = job.camera.scale * job.ratio;
        let number = -1;
        let half = 0;
        /** @type {number[]} */
        let dashes = [];
        /** @type {Style | null} */
        let style = null;
        for (let i = 0; i < chunk.count; i++) {
            const code = codes[i];
            if ((code & CODE.style) !== number) {
                number = code & CODE.style;
                style = this.styleOf(code);
                if (!style) continue;
                const width = this.widths ? style.width * scale : 0;
                half = Math.max(width, job.ratio) / 2;
                raster.setColour(dotOf(style.draw), width > 0 && width < job.ratio ? 0.5 + (0.5 * width) / job.ratio : 1);
                dashes = style.dashes.map((length) => length * scale);
            }
            if (!style) continue;
            const at = 4 * i;
            const x0 = a * segments[at] + c * segments[at + 1] + x;
            const y0 = b * segments[at] + d * segments[at + 1] + y;
            const x1 = a * segments[at + 2] + c * segments[at + 3] + x;
            const y1 = b * segments[at + 2] + d * segments[at + 3] + y;
            const startCap = (code >> CODE.startCap) & 3;
            const endCap = (code >> CODE.endCap) & 3;
            if (dashes.length === 0) raster.line(x0, y0, x1, y1, half, startCap, endCap);
            else raster.dashed(x0, y0, x1, y1, half, startCap, endCap, dashes, scale * (alongs ? alongs[i] : 0));
        }
    }

    /** @param {CanvasJob} job @param {Chunk} chunk */
    drawChunk(job, chunk) {
        const { context } = job.target;
        const [a, b, c, d] = job.matrix;
        const origin = transformed(job.matrix, chunk.originX, chunk.originY);
        context.save();
        const clip = chunk.clip >= 0 ? this.scene?.clips[chunk.clip] : null;
        if (clip) {
            const [left, top, right, bottom] = transformedBox(job.matrix, clip);
            context.beginPath();
            context.rect(left, top, right - left, bottom - top);
            context.clip();
        }
        context.globalCompositeOperation = COMPOSITE[chunk.blend];
        context.setTransform(a, b, c, d, origin.x, origin.y);
        if (chunk.kind === KIND.picture) this.drawPicture(job, chunk);
        else if (chunk.kind === KIND.area) this.drawArea(context, chunk);
        else this.drawStrokes(context, chunk, job);
        context.restore();
    }

    /** @param {number} code @returns {Style | null} null: not shown */
    styleOf(code) {
        const style = this.scene?.styles[code & CODE.style];
        return style && this.isShown(style.layer) ? style : null;
    }

    /** Instances of one look and continuing lines go into one path. @param {CanvasRenderingContext2D} context
     * @param {Chunk} chunk @param {CanvasJob} job */
    drawStrokes(context, chunk, job) {
        let i = 0;
        while (i < chunk.count) {
            const look = lookOf(chunk.codes[i]);
            const style = this.styleOf(look);
            const from = i;
            while (i < chunk.count && lookOf(chunk.codes[i]) === look) i++;
            if (!style) continue;
            if (look & CODE.triangle) this.fillTriangles(context, chunk, from, i, style, look);
            else this.strokeLines(context, chunk, from, i, style, job);
        }
    }

    /** @param {CanvasRenderingContext2D} context @param {Chunk} chunk @param {number} from
     * @param {number} to @param {Style} style @param {CanvasJob} job */
    strokeLines(context, chunk, from, to, style, job) {
        const pixel = 1 / job.camera.scale;
        const segments = chunk.segments;
        const width = this.widths ? style.width : 0;
        context.lineWidth = Math.max(width, pixel);
        context.globalAlpha = width > 0 && width < pixel ? 0.5 + (0.5 * width) / pixel : 1;
        context.strokeStyle = cssColour(style.draw);
        context.lineCap = CAPS[style.cap];
        context.lineJoin = style.join === 1 ? 'bevel' : 'round';
        context.setLineDash(style.dashes);
        context.beginPath();
        for (let i = from; i < to; i++) {
            const at = 4 * i;
            const goesOn = i > from && segments[at] === segments[at - 2] && segments[at + 1] === segments[at - 1];
            if (!goesOn) {
                if (style.dashes.length > 0 && i > from) {
                    context.stroke();
                    context.beginPath();
                }
                context.lineDashOffset = chunk.alongs ? chunk.alongs[i] : 0;
                context.moveTo(segments[at], segments[at + 1]);
            }
            context.lineTo(segments[at + 2], segments[at + 3]);
        }
        context.stroke();
    }

    /** @param {CanvasRenderingContext2D} context @param {Chunk} chunk @param {number} from
     * @param {number} to @param {Style} style @param {number} look */
    fillTriangles(context, chunk, from, to, style, look) {
        const { segments, thirds } = chunk;
        if (!thirds) return;
        context.beginPath();
        for (let i = from; i < to; i++) {
            context.moveTo(segments[4 * i], segments[4 * i + 1]);
            context.lineTo(segments[4 * i + 2], segments[4 * i + 3]);
            context.lineTo(thirds[2 * i], thirds[2 * i + 1]);
            context.closePath();
        }
        const drawn = (look & CODE.inDrawColour) !== 0;
        this.fill(context, chunk, drawn ? { ...style, fill: style.draw, pattern: 0 } : style);
    }

    /** @param {CanvasRenderingContext2D} context @param {Chunk} chunk */
    drawArea(context, chunk) {
        const style = this.styleOf(chunk.codes[0]);
        if (!style) return;
        context.beginPath();
        let at = 0;
        for (const length of chunk.codes.subarray(1)) {
            for (let i = 0; i < length; i++, at += 2) {
                if (i === 0) context.moveTo(chunk.segments[at], chunk.segments[at + 1]);
                else context.lineTo(chunk.segments[at], chunk.segments[at + 1]);
            }
            context.closePath();
        }
        this.fill(context, chunk, style);
    }

    /** @param {CanvasRenderingContext2D} context @param {Chunk} chunk @param {Style} style */
    fill(context, chunk, style) {
        context.globalAlpha = 1;
        context.fillStyle = cssColour(style.fill);
        const pattern = style.pattern > 0 ? this.patternOf(context, style) : null;
        if (pattern) {
            pattern.setTransform(new DOMMatrix([
                PATTERN_DOT, 0, 0, -PATTERN_DOT, -chunk.originX, -chunk.originY]));
            context.fillStyle = pattern;
        }
        context.fill('evenodd');
    }

    /** @param {CanvasRenderingContext2D} context @param {Style} style @returns {CanvasPattern | null} */
    patternOf(context, style) {
        const id = `${style.pattern} ${style.fill}`;
        const known = this.patterns.get(id);
        if (known !== undefined) return known;
        const pattern = this.scene?.patterns[style.pattern - 1];
        if (!pattern) return null;
        const image = new ImageData(pattern.width, pattern.height);
        for (let y = 0; y < pattern.height; y++) {
            for (let x = 0; x < pattern.width; x++) {
                const ink = isInk(pattern, x, y) ? 255 : 0;
                image.data.set([...style.fill, ink], 4 * (y * pattern.width + x));
            }
        }
        const tile = document.createElement('canvas');
        tile.width = pattern.width;
        tile.height = pattern.height;
        tile.getContext('2d')?.putImageData(image, 0, 0);
        const made = context.createPattern(tile, 'repeat');
        this.patterns.set(id, made);
        return made;
    }

    /** @param {CanvasJob} job @param {Chunk} chunk */
    drawPicture(job, chunk) {
        const bitmap = this.isShown(chunk.layer) && this.pictures.get(this.page, chunk.picture, 8192);
        if (!bitmap) return;
        const { context } = job.target;
        const [left, low, right, high] = chunk.box;
        context.translate(left, high);
        context.scale(1, -1);
        context.imageSmoothingEnabled = (right - left) * job.camera.scale * job.ratio < 2 * bitmap.width;
        context.drawImage(bitmap, 0, 0, right - left, high - low);
    }

    /** @param {Camera} camera @param {number} ratio @param {boolean} dark @param {Sheet} [shown] */
    present(camera, ratio, dark, shown = this.front) {
        const { canvas, context } = this;
        const width = Math.max(1, Math.round(camera.width * ratio));
        const height = Math.max(1, Math.round(camera.height * ratio));
        if (canvas.width !== width || canvas.height !== height) {
            canvas.width = width;
            canvas.height = height;
        }
        context.setTransform(1, 0, 0, 1, 0, 0);
        context.globalCompositeOperation = 'copy';
        context.filter = 'none';
        context.fillStyle = 'transparent';
        context.fillRect(0, 0, width, height);
        context.globalCompositeOperation = 'source-over';
        context.save();
        const [left, top, right, bottom] =
            transformedBox(camera.sheetToView, [0, 0, camera.page.width, camera.page.height]);
        context.beginPath();
        // Whole dots, or the edges would blend with the desk.
        const [x0, y0, x1, y1] = [left, top, right, bottom].map((value) => Math.round(value * ratio));
        context.rect(x0, y0, x1 - x0, y1 - y0);
        context.clip();
        context.fillStyle = '#fff';
        context.fillRect(0, 0, width, height);
        for (const sheet of [this.overview, shown]) {
            const drawn = sheet.camera;
            if (!drawn || drawn.page !== camera.page) continue;
            const k = camera.scale / drawn.scale;
            const [, , , , sx, sy] = camera.sheetToView;
            const [, , , , tx, ty] = drawn.sheetToView;
            context.setTransform(k, 0, 0, k, (sx - k * tx) * ratio, (sy - k * ty) * ratio);
            context.drawImage(sheet.canvas, 0, 0);
        }
        context.setTransform(1, 0, 0, 1, 0, 0);
        if (dark) darken(context, width, height);
        context.restore();
    }

    /** @param {Camera} camera @param {number} ratio @returns {ImageData} */
    draw(camera, ratio) {
        const sheet = newSheet();
        const job = this.begin(camera, ratio, sheet);
        while (!this.isDone(job)) this.step(job, Infinity);
        sheet.resolve();
        return sheet.context.getImageData(0, 0, sheet.canvas.width, sheet.canvas.height);
    }
}

/** What parts instances into paths: style and kind, not line ends. @param {number} code */
function lookOf(code) {
    return code & (CODE.style | CODE.triangle | CODE.inDrawColour);
}

/** Light and dark change places, and the paper is a dark grey. @param {CanvasRenderingContext2D} context
 * @param {number} width @param {number} height */
function darken(context, width, height) {
    context.globalCompositeOperation = 'difference';
    context.fillStyle = '#fff';
    context.fillRect(0, 0, width, height);
    // Inverting turned the hues around; the colour circle turns them back.
    context.globalCompositeOperation = 'copy';
    context.filter = 'hue-rotate(180deg)';
    context.drawImage(context.canvas, 0, 0);
    context.filter = 'none';
    context.globalCompositeOperation = 'lighten';
    context.fillStyle = '#171717';
    context.fillRect(0, 0, width, height);
}
