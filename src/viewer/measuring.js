// What is measured of points in plotter units, y upward. Test: tests/viewer/parts.test.js.

/** @typedef {{x: number, y: number}} Point */

/** @param {Point} a @param {Point} b */
export function distanceBetween(a, b) {
    return Math.hypot(b.x - a.x, b.y - a.y);
}

/** Of the line from a to b, counter-clockwise from +x. @param {Point} a @param {Point} b @returns {number} 0 to 360 */
export function directionOf(a, b) {
    const degrees = (Math.atan2(b.y - a.y, b.x - a.x) * 180) / Math.PI;
    return (degrees + 360) % 360;
}

/** @param {Point} corner @param {Point} a @param {Point} b @returns {number} degrees, 0 to 180 */
export function angleAt(corner, a, b) {
    const difference = Math.abs(directionOf(corner, a) - directionOf(corner, b));
    return Math.min(difference, 360 - difference);
}

/** @param {Point[]} points */
export function pathLength(points) {
    let length = 0;
    for (let i = 1; i < points.length; i++) length += distanceBetween(points[i - 1], points[i]);
    return length;
}

/** Of the closed polygon, in square units. @param {Point[]} points */
export function enclosedArea(points) {
    let doubled = 0;
    points.forEach((point, i) => {
        const next = points[(i + 1) % points.length];
        doubled += point.x * next.y - next.x * point.y;
    });
    return Math.abs(doubled) / 2;
}
