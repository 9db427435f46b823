// Simple polygons as triangles, by cutting ears. What is not simple (rings that cross themselves or
// have holes) is left to the renderers' even-odd filling. Test: tests/viewer/parts.test.js.

/** More corners take too long here: the time grows with the square. */
const MOST_CORNERS = 96;

/**
 * @param {Float64Array} points x, y, ...
 * @param {number} from first corner
 * @param {number} count corners
 * @returns {number} twice the area, positive counter-clockwise
 */
export function doubledArea(points, from, count) {
    let area = 0;
    for (let i = 0, j = count - 1; i < count; j = i++) {
        const a = 2 * (from + j);
        const b = 2 * (from + i);
        area += points[a] * points[b + 1] - points[b] * points[a + 1];
    }
    return area;
}

/**
 * @param {Float64Array} p @param {number} a @param {number} b @param {number} c corner numbers
 * @returns {number}
 */
function turn(p, a, b, c) {
    const ax = p[2 * a];
    const ay = p[2 * a + 1];
    return (p[2 * b] - ax) * (p[2 * c + 1] - ay) - (p[2 * b + 1] - ay) * (p[2 * c] - ax);
}

/**
 * @param {Float64Array} p @param {number[]} corners @param {number} i
 * @returns {boolean} no other corner lies in the triangle at corner i
 */
function isEar(p, corners, i) {
    const n = corners.length;
    const a = corners[(i + n - 1) % n];
    const b = corners[i];
    const c = corners[(i + 1) % n];
    if (turn(p, a, b, c) <= 0) return false;
    for (const q of corners) {
        if (q === a || q === b || q === c) continue;
        if (turn(p, a, b, q) >= 0 && turn(p, b, c, q) >= 0 && turn(p, c, a, q) >= 0) return false;
    }
    return true;
}

/**
 * @param {Float64Array} points x, y, ...; a last corner that repeats the first is ignored
 * @param {number} count corners
 * @returns {number[] | null} three corner numbers a triangle; null when the ring is not simple
 */
export function triangulate(points, count) {
    let n = count;
    while (n > 1 && points[0] === points[2 * n - 2] && points[1] === points[2 * n - 1]) n--;
    if (n < 3) return [];
    if (n > MOST_CORNERS) return null;
    const area = doubledArea(points, 0, n);
    if (area === 0) return null;
    const corners = Array.from({ length: n }, (_, i) => (area > 0 ? i : n - 1 - i));
    /** @type {number[]} */
    const triangles = [];
    let covered = 0;
    while (corners.length > 2) {
        const size = corners.length;
        // Corners on a straight line bound nothing.
        let i = corners.findIndex((corner, k) =>
            turn(points, corners[(k + size - 1) % size], corner, corners[(k + 1) % size]) === 0);
        if (i < 0) {
            i = corners.findIndex((_, k) => isEar(points, corners, k));
            if (i < 0) return null;
            const ear = [corners[(i + size - 1) % size], corners[i], corners[(i + 1) % size]];
            triangles.push(...ear);
            covered += turn(points, ear[0], ear[1], ear[2]);
        }
        corners.splice(i, 1);
    }
    // Rings that cross themselves cut into ears of another sum than their area.
    return Math.abs(covered - Math.abs(area)) <= 1e-6 * Math.abs(area) ? triangles : null;
}
