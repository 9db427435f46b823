// Matrices and boxes. A matrix [a, b, c, d, e, f] means x' = a x + c y + e, y' = b x + d y + f, as in
// SVG; a box is [left, low, right, high]. Test: tests/viewer/parts.test.js.

/** @typedef {number[]} Matrix */
/** @typedef {number[]} Box */

/** First `inner`, then `outer`. @param {Matrix} outer @param {Matrix} inner @returns {Matrix} */
export function combine(outer, inner) {
    const [a, b, c, d, e, f] = outer;
    const [p, q, r, s, t, u] = inner;
    return [
        a * p + c * q, b * p + d * q,
        a * r + c * s, b * r + d * s,
        a * t + c * u + e, b * t + d * u + f,
    ];
}

/** @param {Matrix} m @returns {Matrix} */
export function inverse(m) {
    const [a, b, c, d, e, f] = m;
    const area = a * d - b * c;
    return [
        d / area, -b / area,
        -c / area, a / area,
        (c * f - d * e) / area, (b * e - a * f) / area,
    ];
}

/** @param {Matrix} m @param {number} x @param {number} y @returns {{x: number, y: number}} */
export function transformed(m, x, y) {
    return { x: m[0] * x + m[2] * y + m[4], y: m[1] * x + m[3] * y + m[5] };
}

/** The upright box around a transformed box. @param {Matrix} m @param {Box} box @returns {Box} */
export function transformedBox(m, box) {
    const corners = [
        transformed(m, box[0], box[1]), transformed(m, box[2], box[1]),
        transformed(m, box[0], box[3]), transformed(m, box[2], box[3]),
    ];
    const xs = corners.map((corner) => corner.x);
    const ys = corners.map((corner) => corner.y);
    return [Math.min(...xs), Math.min(...ys), Math.max(...xs), Math.max(...ys)];
}

/** @param {Box} a @param {Box} b @param {number} [by] @returns {boolean} closer than `by` */
export function boxesMeet(a, b, by = 0) {
    return a[0] <= b[2] + by && b[0] <= a[2] + by && a[1] <= b[3] + by && b[1] <= a[3] + by;
}
