// Reading the numbers and texts that the writer of the page has packed (src/render/viewer/column.h).
// Test: tests/viewer/parts.test.js.

/** Reads from the start of an array of bytes to its end; reading past the end throws RangeError. */
export class ByteReader {
    /** @param {Uint8Array} bytes */
    constructor(bytes) {
        this.bytes = bytes;
        this.at = 0;
        this.view = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
    }

    /** @returns {boolean} */
    get atEnd() {
        return this.at >= this.bytes.length;
    }

    /** @returns {number} */
    byte() {
        if (this.at >= this.bytes.length) throw new RangeError('data ends too early');
        return this.bytes[this.at++];
    }

    /** A number of seven bits a byte, exact up to 2^53. @returns {number} */
    unsigned() {
        let value = 0;
        let factor = 1;
        for (;;) {
            const byte = this.byte();
            value += (byte & 127) * factor;
            if (byte < 128) return value;
            factor *= 128;
        }
    }

    /** A zigzag number of 32 bits. @returns {number} */
    signed() {
        const value = this.unsigned();
        return (value % 2 === 0 ? value / 2 : -(value + 1) / 2) | 0;
    }

    /** @returns {number} */
    float() {
        this.at += 4;
        return this.view.getFloat32(this.at - 4, true);
    }

    /** @returns {number} */
    double() {
        this.at += 8;
        return this.view.getFloat64(this.at - 8, true);
    }

    /** @param {number} length @returns {Uint8Array} a view, not a copy */
    take(length) {
        if (length > this.bytes.length - this.at) throw new RangeError('data ends too early');
        this.at += length;
        return this.bytes.subarray(this.at - length, this.at);
    }

    /** @returns {string} */
    text() {
        return new TextDecoder().decode(this.take(this.unsigned()));
    }

    /** A colour of three bytes. @returns {number[]} red, green, blue, 0 to 255 */
    colour() {
        return [this.byte(), this.byte(), this.byte()];
    }
}
