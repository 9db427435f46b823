// Opening a page: data in, parts of a scene out; in a worker, so that the page answers meanwhile.
// Test: tests/viewer/parts.test.js.
import { fromBase64, inflate } from './inflate.js';
import { PageDecoder } from './decode.js';
import { coarserLevel, instancesOf } from './level_of_detail.js';
import { SceneBuilder } from './scene_builder.js';

/** @typedef {import('./scene.js').ScenePart} ScenePart */
/**
 * @typedef {object} PageRequest
 * @property {number} page
 * @property {string} data Base64 of deflate-raw
 * @property {number} size of the sheet's longer side, in units
 */

/** Scenes of fewer instances are drawn whole at once. */
const SMALL_SCENE = 150000;
/** Milliseconds that the page has for its first picture before the levels take a processor. */
const BEFORE_LEVELS = 2000;
/** Dots of the longer side of the sheet for which the levels are made, the coarsest first. */
const LEVEL_DOTS = [1600, 6400];

/**
 * @param {PageRequest} request
 * @param {(part: ScenePart) => void} send
 */
export async function openPage(request, send) {
    const builder = new SceneBuilder();
    const decoder = new PageDecoder(builder);
    /** @type {import('./scene.js').Chunk[]} */
    const chunks = [];
    let pieces = 0;
    /** @param {boolean} done */
    const sendPart = (done) => {
        const part = builder.takePart(request.page, done);
        for (const chunk of part.chunks) chunks.push(chunk);
        send(part);
    };
    try {
        await inflate(fromBase64(request.data), (piece) => {
            decoder.push(piece);
            if (++pieces % 32 === 0) sendPart(false);
        });
        sendPart(true);
    } catch (error) {
        send({ ...builder.takePart(request.page, true), error: String(error) });
        return;
    }
    let source = chunks;
    if (instancesOf(source) < SMALL_SCENE) return;
    await new Promise((resolve) => setTimeout(resolve, BEFORE_LEVELS));
    for (const dots of [...LEVEL_DOTS].reverse()) {
        const level = coarserLevel(source, decoder.styles, (0.75 * request.size) / dots);
        if (!level) continue;
        source = level.chunks;
        send({ page: request.page, chunks: [], styles: [], patterns: [], clips: [], done: null, level });
    }
}

/** The worker's side of the program. */
export function startWorker() {
    self.onmessage = (/** @type {MessageEvent<PageRequest>} */ event) => {
        openPage(event.data, (part) => self.postMessage(part));
    };
}

/**
 * The page's side: opens pages in a worker, or where there can be none by itself.
 * @param {string} program the text of this very program
 * @param {(part: ScenePart) => void} receive
 * @returns {(request: PageRequest) => void}
 */
export function pageOpener(program, receive) {
    try {
        const url = URL.createObjectURL(new Blob([program], { type: 'text/javascript' }));
        const worker = new Worker(url);
        worker.onmessage = (/** @type {MessageEvent<ScenePart>} */ event) => receive(event.data);
        return (request) => worker.postMessage(request);
    } catch {
        return (request) => void openPage(request, receive);
    }
}
