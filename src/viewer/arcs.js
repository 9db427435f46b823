// Arcs as chains of short lines, fine enough for every magnification the viewer offers.
// Test: tests/viewer/parts.test.js.

/** Plotter units that a chord may stray from its arc. */
const TOLERANCE = 0.25;
const MOST_STEPS = 1024;

/**
 * @param {number} centreX
 * @param {number} centreY
 * @param {number} radiusX
 * @param {number} radiusY
 * @param {number} start degrees, counter-clockwise from +x
 * @param {number} span degrees; 360 and more is a closed ellipse whose last point is its first
 * @returns {Float64Array} x, y, x, y, ...
 */
export function arcPoints(centreX, centreY, radiusX, radiusY, start, span) {
    const radius = Math.max(Math.abs(radiusX), Math.abs(radiusY), 2 * TOLERANCE);
    const step = 2 * Math.acos(1 - TOLERANCE / radius);
    const angle = (span * Math.PI) / 180;
    const fewest = Math.max(2, Math.ceil(Math.abs(span) / 45));
    const steps = Math.min(Math.max(Math.ceil(Math.abs(angle) / step), fewest), MOST_STEPS);
    const points = new Float64Array(2 * (steps + 1));
    const from = (start * Math.PI) / 180;
    for (let i = 0; i <= steps; i++) {
        const at = from + (angle * i) / steps;
        points[2 * i] = centreX + radiusX * Math.cos(at);
        points[2 * i + 1] = centreY + radiusY * Math.sin(at);
    }
    if (Math.abs(span) >= 360) {
        points[2 * steps] = points[0];
        points[2 * steps + 1] = points[1];
    }
    return points;
}
