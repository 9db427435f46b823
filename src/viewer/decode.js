// PageDecoder: the compact data of a page (src/render/viewer/page_encoder.h) back into primitives.
// It takes the data piece by piece as it is inflated and calls a sink, the scene builder.
// Test: tests/viewer/parts.test.js.
import { ByteReader } from './bytes.js';

/**
 * @typedef {object} Style
 * @property {number} layer
 * @property {number[]} draw colour of lines: red, green, blue, 0 to 255
 * @property {number[]} fill colour of areas
 * @property {number} width of lines in units; 0 is the thinnest line of the screen
 * @property {number} cap 0 round, 1 flat, 2 square
 * @property {number} join 0 round, 1 bevelled
 * @property {number} blend see BLEND in scene.js
 * @property {number} pattern number of the fill pattern + 1; 0 is solid
 * @property {number[]} dashes lengths of dash, gap, ... in units; none for solid lines
 */
/**
 * What a decoder calls; `points` (x, y, ...) are valid during the call only.
 * @typedef {object} PrimitiveSink
 * @property {(style: Style, isNew: boolean) => void} style holds from here on
 * @property {(points: Float64Array, count: number) => void} lines
 * @property {(points: Float64Array, lengths: number[]) => void} area
 * @property {(x: number, y: number, radius: number, filled: boolean) => void} circle
 * @property {(points: Float64Array, start: number, span: number) => void} arc centre, radii
 * @property {(points: Float64Array, text: string) => void} text two corners
 * @property {(points: Float64Array, blend: number) => void} picture two corners
 * @property {(width: number, height: number, rows: Uint8Array) => void} pattern
 * @property {(points: Float64Array) => void} clip two corners
 * @property {() => void} endClip
 */

const RECORD = Object.freeze({
    style: 0, lines: 1, area: 2, circle: 3, disc: 4, arc: 5, text: 6, picture: 7, pattern: 8, clip: 9,
    endClip: 10, linesOfCount0: 11,
});

/** Signed differences, summed up. */
class Coordinates {
    /** @param {Uint8Array} bytes */
    constructor(bytes) {
        this.bytes = bytes;
        this.at = 0;
        this.value = 0;
    }

    /**
     * The hot loop of decoding: writes `count` numbers to every second place of `out`.
     * @param {Float64Array} out @param {number} from @param {number} count
     */
    read(out, from, count) {
        const bytes = this.bytes;
        let at = this.at;
        let value = this.value;
        for (let i = from, end = from + 2 * count; i < end; i += 2) {
            let byte = bytes[at++];
            let bits = byte & 127;
            for (let shift = 7; byte > 127; shift += 7) {
                byte = bytes[at++];
                bits |= (byte & 127) << shift;
            }
            value = (value + ((bits >>> 1) ^ -(bits & 1))) | 0;
            out[i] = value;
        }
        if (at > bytes.length) throw new RangeError('data ends too early');
        this.at = at;
        this.value = value;
    }
}

export class PageDecoder {
    /** @param {PrimitiveSink} sink */
    constructor(sink) {
        this.sink = sink;
        /** @type {Style[]} */
        this.styles = [];
        this.held = new Uint8Array(0);
        this.points = new Float64Array(1024);
    }

    /** Decodes all blocks that are complete now. @param {Uint8Array} piece */
    push(piece) {
        const joined = new Uint8Array(this.held.length + piece.length);
        joined.set(this.held);
        joined.set(piece, this.held.length);
        this.held = joined;
        while (this.takeBlock());
    }

    /** @returns {boolean} there was a whole block */
    takeBlock() {
        const most = 40; // bytes of the four lengths
        const reader = new ByteReader(this.held);
        if (this.held.length === 0) return false;
        let lengths;
        try {
            lengths = [0, 0, 0, 0].map(() => reader.unsigned());
        } catch (error) {
            if (this.held.length < most) return false;
            throw error;
        }
        const size = lengths.reduce((sum, length) => sum + length, 0);
        if (this.held.length < reader.at + size) return false;
        const [records, x, y, bytes] = lengths.map((length) => reader.take(length));
        this.held = this.held.subarray(reader.at);
        this.decode(new ByteReader(records), new Coordinates(x), new Coordinates(y), new ByteReader(bytes));
        return true;
    }

    /**
     * @param {ByteReader} records @param {Coordinates} x @param {Coordinates} y
     * @param {ByteReader} bytes
     */
    decode(records, x, y, bytes) {
        const sink = this.sink;
        /** @param {number} count */
        const read = (count) => {
            if (this.points.length < 2 * count) this.points = new Float64Array(4 * count);
            x.read(this.points, 0, count);
            y.read(this.points, 1, count);
            return this.points;
        };
        while (!records.atEnd) {
            const kind = records.byte();
            if (kind >= RECORD.linesOfCount0) {
                const count = kind - RECORD.linesOfCount0;
                sink.lines(read(count), count);
            } else if (kind === RECORD.style) {
                this.readStyle(records);
            } else if (kind === RECORD.lines) {
                const count = records.unsigned();
                sink.lines(read(count), count);
            } else if (kind === RECORD.area) {
                const lengths = Array.from({ length: records.unsigned() }, () => records.unsigned());
                sink.area(read(lengths.reduce((sum, length) => sum + length, 0)), lengths);
            } else if (kind === RECORD.circle || kind === RECORD.disc) {
                const radius = records.unsigned();
                const points = read(1);
                sink.circle(points[0], points[1], radius, kind === RECORD.disc);
            } else if (kind === RECORD.arc) {
                sink.arc(read(2), bytes.float(), bytes.float());
            } else if (kind === RECORD.text) {
                const length = records.unsigned();
                sink.text(read(2), new TextDecoder().decode(bytes.take(length)));
            } else if (kind === RECORD.picture) {
                const blend = records.byte();
                sink.picture(read(2), blend);
            } else if (kind === RECORD.pattern) {
                const width = records.unsigned();
                const height = records.unsigned();
                const stride = Math.floor((width + 15) / 16) * 2;
                sink.pattern(width, height, bytes.take(stride * height));
            } else if (kind === RECORD.clip) {
                sink.clip(read(2));
            } else {
                sink.endClip();
            }
        }
    }

    /** @param {ByteReader} records */
    readStyle(records) {
        const number = records.unsigned();
        const isNew = number === this.styles.length;
        if (isNew) {
            this.styles.push({
                layer: records.signed(),
                draw: records.colour(),
                fill: records.colour(),
                width: records.unsigned(),
                cap: records.byte(),
                join: records.byte(),
                blend: records.byte(),
                pattern: records.unsigned(),
                dashes: Array.from({ length: records.unsigned() }, () => records.float()),
            });
        }
        this.sink.style(this.styles[number], isNew);
    }
}
