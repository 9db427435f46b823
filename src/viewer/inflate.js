// The data elements of the page: Base64 to bytes, compressed bytes to bytes.
// Test: tests/viewer/parts.test.js.

/** @param {string} text @returns {Uint8Array<ArrayBuffer>} */
export function fromBase64(text) {
    const native = /** @type {any} */ (Uint8Array).fromBase64; // young: 2025
    if (native) return native.call(Uint8Array, text);
    const letters = atob(text);
    const bytes = new Uint8Array(letters.length);
    for (let i = 0; i < letters.length; i++) bytes[i] = letters.charCodeAt(i);
    return bytes;
}

/**
 * Calls `take` with one piece after the other.
 * @param {Uint8Array<ArrayBuffer>} bytes deflate-raw
 * @param {(piece: Uint8Array) => void} take
 */
export async function inflate(bytes, take) {
    const source = new Blob([bytes]).stream();
    const reader = source.pipeThrough(new DecompressionStream('deflate-raw')).getReader();
    for (;;) {
        const { done, value } = await reader.read();
        if (done) return;
        take(value);
    }
}
