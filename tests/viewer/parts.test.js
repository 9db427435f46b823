// The viewer's parts that need no browser: decoding, geometry, triangles, search, measuring, snapping.
// Run by scripts/test-viewer (node --test).
import assert from 'node:assert/strict';
import { deflateRawSync } from 'node:zlib';
import { test } from 'node:test';

import { arcPoints } from '../../src/viewer/arcs.js';
import { ByteReader } from '../../src/viewer/bytes.js';
import { Camera } from '../../src/viewer/camera.js';
import { combine, inverse, transformed } from '../../src/viewer/geometry.js';
import { coarserLevel, instancesOf } from '../../src/viewer/level_of_detail.js';
import { angleAt, directionOf, enclosedArea, pathLength } from '../../src/viewer/measuring.js';
import { pngName } from '../../src/viewer/saving.js';
import { CODE, Scene } from '../../src/viewer/scene.js';
import { findTexts } from '../../src/viewer/search.js';
import { SnapGrid } from '../../src/viewer/snapping.js';
import { onDarkPaper, styleTexels } from '../../src/viewer/styles.js';
import { Texts, chooseLanguage } from '../../src/viewer/texts.js';
import { triangulate } from '../../src/viewer/triangulate.js';
import { openPage } from '../../src/viewer/worker.js';

// ------------------------------------------------------------------- data as the writer makes them

/** @param {number} value */
function unsigned(value) {
    const bytes = [];
    for (; value >= 128; value = Math.floor(value / 128)) bytes.push((value % 128) | 128);
    return [...bytes, value];
}
const signed = (/** @type {number} */ value) => unsigned(value < 0 ? -2 * value - 1 : 2 * value);

const LINES = 11;
/** Style 0: layer, black, no width, and what `more` changes. */
const style = (layer = 1, { width = 0, cap = 0, join = 0, blend = 0, pattern = 0 } = {}) => [
    ...signed(layer), 0, 0, 0, 200, 100, 50, ...unsigned(width), cap, join, blend, ...unsigned(pattern), 0];

/** One block of Base64 data. @param {{records: number[], points?: number[][], bytes?: number[]}} columns */
function block({ records, points = [], bytes = [] }) {
    const x = points.flatMap(([value], i) => signed((value - (points[i - 1]?.[0] ?? 0)) | 0));
    const y = points.flatMap(([, value], i) => signed(value - (points[i - 1]?.[1] ?? 0)));
    const columns = [records, x, y, bytes];
    return [...columns.flatMap((column) => unsigned(column.length)), ...columns.flat()];
}

/** The scene of blocks. @param {...number[]} blocks */
async function sceneOf(...blocks) {
    const scene = new Scene();
    const data = deflateRawSync(Buffer.from(blocks.flat())).toString('base64');
    await openPage({ page: 0, data, size: 1000 }, (part) => scene.add(part));
    return scene;
}

/** The instances of a scene, one a line: ends and code without snapping. @param {Scene} scene */
function instances(scene) {
    return scene.chunks.flatMap((chunk) => Array.from({ length: chunk.count }, (_, i) => {
        const ends = [...chunk.segments.subarray(4 * i, 4 * i + 4)]
            .map((value, k) => value + (k % 2 === 0 ? chunk.originX : chunk.originY));
        const flags = (chunk.codes[i] >>> 24) & 0x3f;
        return `${ends.join(' ')} flags ${flags}`;
    }));
}

test('numbers are read back', () => {
    const cases = [0, 1, -1, 63, -64, 64, 2147483647, -2147483648];
    const reader = new ByteReader(Uint8Array.from(cases.flatMap(signed)));
    assert.deepEqual(cases.map(() => reader.signed()), cases);
    assert.equal(new ByteReader(Uint8Array.from(unsigned(2 ** 40 + 5))).unsigned(), 2 ** 40 + 5);
    assert.throws(() => reader.byte(), RangeError);
});

test('primitives become instances', async (t) => {
    const cases = [
        { name: 'a chain of lines', records: [0, 0, ...style(), LINES + 3], points: [[0, 0], [10, 0], [10, 5]],
            want: ['0 0 10 0 flags 0', '10 0 10 5 flags 0'] },
        { name: 'flat ends, round joint', records: [0, 0, ...style(1, { cap: 1 }), LINES + 3],
            points: [[0, 0], [10, 0], [10, 5]], want: ['0 0 10 0 flags 1', '10 0 10 5 flags 4'] },
        { name: 'a closed path has no ends', records: [0, 0, ...style(1, { cap: 1 }), LINES + 3],
            points: [[0, 0], [10, 0], [0, 0]], want: ['0 0 10 0 flags 0', '10 0 0 0 flags 0'] },
        { name: 'lines that continue are one path', records: [0, 0, ...style(1, { cap: 2 }), LINES + 2, LINES + 2],
            points: [[0, 0], [9, 0], [9, 0], [9, 9]], want: ['0 0 9 0 flags 2', '9 0 9 9 flags 8'] },
        { name: 'a bevelled corner is a triangle', records: [0, 0, ...style(1, { width: 4, join: 1 }), LINES + 3],
            points: [[0, 0], [10, 0], [10, 10]],
            want: ['0 0 10 0 flags 4', '10 0 10 -2 flags 48', '10 0 10 10 flags 1'] },
        { name: 'a point', records: [0, 0, ...style(1, { cap: 1 }), LINES + 2], points: [[7, 8], [7, 8]],
            want: ['7 8 7 8 flags 0'] },
        { name: 'a square is two triangles', records: [0, 0, ...style(), 2, 1, 4],
            points: [[0, 0], [8, 0], [8, 8], [0, 8]], want: ['0 8 0 0 flags 16', '0 8 8 0 flags 16'] },
        { name: 'coordinates wrap at 32 bits', records: [0, 0, ...style(), LINES + 2],
            points: [[2147483647, 0], [-2147483648, 0]],
            want: ['2147483647 0 -2147483649 0 flags 0'] /* in 32-bit floats from the chunk's origin */ },
    ];
    for (const { name, want, ...columns } of cases) {
        await t.test(name, async () => assert.deepEqual(instances(await sceneOf(block(columns))), want));
    }
});

test('what is no simple area stays an area', async () => {
    const bow = block({ records: [0, 0, ...style(), 2, 1, 4], points: [[0, 0], [9, 9], [9, 0], [0, 9]] });
    const rings = block({ records: [0, 0, ...style(), 2, 2, 3, 3],
        points: [[0, 0], [9, 0], [9, 9], [2, 1], [8, 1], [8, 7]] });
    for (const data of [bow, rings]) assert.deepEqual((await sceneOf(data)).chunks.map((chunk) => chunk.kind), [1]);
});

test('texts, layers and widths are told at the end', async () => {
    const scene = await sceneOf(
        block({ records: [0, 0, ...style(3, { width: 14 }), LINES + 3, 6, 2], points: [[0, 0], [5, 5], [6, 6], [1, 2], [3, 4]],
            bytes: [72, 105] }),
        block({ records: [0, 0, LINES + 2], points: [[1, 1], [2, 2]] }));
    assert.deepEqual(scene.end?.texts, [{ text: 'Hi', box: [1, 2, 3, 4], layer: 3 }]);
    assert.deepEqual(scene.end?.layers, [{ layer: 3, count: 4, widths: [14] }]);
});

test('damaged data gives what stands before the damage', async () => {
    const good = block({ records: [0, 0, ...style(), LINES + 2], points: [[0, 0], [5, 5]] });
    const scene = await sceneOf(good, block({ records: [LINES + 200], points: [[1, 1]] }));
    assert.equal(scene.instances >= 1, true);
    assert.match(scene.error, /RangeError/);
});

test('state changes part chunks', async () => {
    const darken = style(1, { blend: 1 });
    const scene = await sceneOf(block({
        records: [0, 0, ...style(), LINES + 2, 0, 1, ...darken, LINES + 2, 9, LINES + 2, 10, LINES + 2],
        points: [[0, 0], [1, 1], [2, 2], [3, 3], [0, 0], [9, 9], [4, 4], [5, 5], [6, 6], [7, 7]] }));
    assert.deepEqual(scene.chunks.map(({ blend, clip }) => [blend, clip]), [[0, -1], [1, -1], [1, 0], [1, -1]]);
    assert.deepEqual(scene.clips, [[0, 0, 9, 9]]);
});

test('areas cut into triangles', () => {
    const cases = [
        { points: [0, 0, 4, 0, 4, 4], triangles: 1 },
        { points: [0, 0, 4, 0, 4, 4, 0, 4], triangles: 2 },
        { points: [0, 0, 0, 4, 4, 4, 4, 0, 0, 0], triangles: 2 }, // clockwise, closed
        { points: [0, 0, 4, 0, 4, 4, 2, 1, 0, 4], triangles: 3 }, // a dent
        { points: [0, 0, 2, 0, 4, 0, 4, 4], triangles: 1 }, // a corner on a straight line
        { points: [0, 0, 4, 4, 4, 0, 0, 4], triangles: null }, // crosses itself
        { points: [0, 0, 4, 0], triangles: 0 },
    ];
    for (const { points, triangles } of cases) {
        const cut = triangulate(Float64Array.from(points), points.length / 2);
        const count = cut === null ? null : cut.length / 3;
        assert.equal(count, triangles, points.join());
    }
});

test('arcs keep close to the circle and end where they should', () => {
    const points = arcPoints(100, 50, 1000, 1000, 90, -90);
    assert.deepEqual([...points.subarray(-2)].map(Math.round), [1100, 50]);
    for (let i = 2; i < points.length; i += 2) {
        const middle = Math.hypot((points[i] + points[i - 2]) / 2 - 100, (points[i + 1] + points[i - 1]) / 2 - 50);
        assert.ok(1000 - middle <= 0.26, `${1000 - middle}`);
    }
    const ring = arcPoints(0, 0, 10, 10, 0, 360);
    assert.deepEqual([...ring.subarray(0, 2)], [...ring.subarray(-2)]);
});

test('coarse levels drop what falls together', async () => {
    const points = Array.from({ length: 400 }, (_, i) => [i % 2, Math.floor(i / 2) % 2]);
    points.push([500, 0]);
    const scene = await sceneOf(block({ records: [0, 0, ...style(), 1, ...unsigned(points.length)], points }));
    const level = coarserLevel(scene.chunks, scene.styles, 10);
    assert.equal(scene.instances, 400);
    assert.ok(level && instancesOf(level.chunks) <= 3);
    const apart = Array.from({ length: 50 }, (_, i) => [100 * i, 100 * (i % 3)]);
    const wide = await sceneOf(block({ records: [0, 0, ...style(), 1, ...unsigned(50)], points: apart }));
    assert.equal(coarserLevel(wide.chunks, wide.styles, 10), null, 'nothing falls together');
    scene.levels.push(level);
    assert.equal(scene.chunksFor(0.01), level.chunks);
    assert.equal(scene.chunksFor(1), scene.chunks);
});

test('styles for the shaders', () => {
    const look = { layer: 2, draw: [255, 0, 0], fill: [0, 0, 255], width: 14, cap: 0, join: 0, blend: 0, pattern: 0, dashes: [8, 4] };
    const { texels, dashes } = styleTexels([look], [], (layer) => layer !== 2);
    assert.deepEqual([...texels.subarray(0, 11)], [1, 0, 0, 14, 0, 0, 1, 0, 0, 2, 12]);
    assert.deepEqual([...dashes.subarray(0, 2)], [8, 4]);
    assert.deepEqual([[0, 0, 0], [255, 255, 255], [255, 0, 0]].map(onDarkPaper), [[255, 255, 255], [0, 0, 0], [255, 0, 0]]);
});

test('the camera keeps the point under the pointer', () => {
    const page = { name: '', unitsPerInch: 1016, width: 4000, height: 2000, toSheet: [0, 1, 1, 0, 0, 0], extent: [0, 0, 1, 1], counts: {}, layers: [] };
    const camera = new Camera(page);
    camera.resize(800, 600);
    camera.fit();
    const before = camera.drawingAt(200, 250);
    camera.zoomAt(3, 200, 250);
    const after = camera.drawingAt(200, 250);
    assert.ok(Math.hypot(after.x - before.x, after.y - before.y) < 1e-6);
    camera.zoomAt(camera.scaleOf(1) / camera.scale, 0, 0);
    assert.ok(Math.abs(camera.scale * 40 - 96 / 25.4) < 1e-9, 'true size: 40 units a millimetre');
    const there = transformed(combine(inverse(camera.drawingToView), camera.drawingToView), 5, 7);
    assert.ok(Math.hypot(there.x - 5, there.y - 7) < 1e-9);
});

test('texts are found without regard to case', () => {
    const items = ['Boiler ROOM', 'ROOM 2', 'Kitchen', 'Küche', '</script>'].map((text) => ({ text, box: [0, 0, 1, 1], layer: 1 }));
    const cases = [['room', 2], ['KÜCHE', 1], [' ', 0], ['</scr', 1], ['.', 0]];
    for (const [query, count] of cases) assert.equal(findTexts(items, String(query)).length, count, String(query));
});

test('measures', () => {
    const at = (/** @type {number} */ x, /** @type {number} */ y) => ({ x, y });
    assert.equal(pathLength([at(0, 0), at(3, 4), at(3, 10)]), 11);
    assert.equal(enclosedArea([at(0, 0), at(0, 10), at(10, 10), at(10, 0)]), 100);
    assert.equal(directionOf(at(0, 0), at(0, -2)), 270);
    assert.equal(angleAt(at(0, 0), at(10, -10), at(10, 10)), 90);
});

test('the nearest end point of a shown layer is snapped to', async () => {
    const records = [0, 0, ...style(1), LINES + 2, 0, 1, ...style(2), LINES + 2, 3, ...unsigned(50)];
    const scene = await sceneOf(block({ records, points: [[0, 0], [100, 0], [100, 8], [200, 0], [300, 300]] }));
    const grid = new SnapGrid(scene, [0, 0, 350, 350]);
    const all = () => true;
    assert.deepEqual(grid.nearest(103, 2, 10, all), { x: 100, y: 0 });
    assert.deepEqual(grid.nearest(103, 2, 10, (layer) => layer !== 1), { x: 100, y: 8 });
    assert.deepEqual(grid.nearest(298, 301, 10, all), { x: 300, y: 300 }, 'centre of a circle');
    assert.equal(grid.nearest(350, 300, 3, all), null, 'curves have no end points');
    assert.equal(scene.chunks[0].codes[0] & CODE.startSnaps, CODE.startSnaps);
});

test('words and names', () => {
    assert.deepEqual([['fr', 'de-AT'], ['en-GB', 'de'], [], ['deutsch']].map(chooseLanguage), ['de', 'en', 'en', 'en']);
    assert.equal(new Texts(['de']).number(1234.5, 1), '1.234,5');
    assert.equal(new Texts(['en']).get('matches', { at: '1', count: '3' }), '1 of 3');
    assert.deepEqual([pngName('plan.plt', 2, 3), pngName('plan.v2.plt', 1, 1), pngName('.plt', 1, 1)], ['plan-2.png', 'plan.v2.png', 'plot.png']);
});
