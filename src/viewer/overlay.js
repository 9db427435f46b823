// Overlay: what lies over the drawing and is no part of it: matches of the search, measurements.
import { byId } from './elements.js';
import { transformed } from './geometry.js';

/** @typedef {import('./camera.js').Camera} Camera */

const MATCH = '#b45309';
const MEASURE = '#0b62c4';

export class Overlay {
    /**
     * @param {import('./search.js').Search} search
     * @param {import('./measuring_tool.js').MeasuringTool} measuring
     */
    constructor(search, measuring) {
        this.search = search;
        this.measuring = measuring;
        this.canvas = byId('overlay', HTMLCanvasElement);
        this.context = this.canvas.getContext('2d');
        this.isEmpty = true;
    }

    /** @param {Camera} camera @param {number} ratio */
    draw(camera, ratio) {
        const width = Math.round(camera.width * ratio);
        const height = Math.round(camera.height * ratio);
        const wanted = this.search.matches.length > 0 || this.measuring.isOn || this.search.current !== null;
        if (!wanted && this.isEmpty) return;
        if (this.canvas.width !== width || this.canvas.height !== height) {
            this.canvas.width = width;
            this.canvas.height = height;
        }
        const context = this.context;
        if (!context) return;
        context.setTransform(ratio, 0, 0, ratio, 0, 0);
        context.clearRect(0, 0, camera.width, camera.height);
        this.isEmpty = !wanted;
        if (wanted) this.paint(context, camera);
    }

    /** @param {CanvasRenderingContext2D} context @param {Camera} camera */
    paint(context, camera) {
        const matrix = camera.drawingToView;
        for (const match of this.search.matches) this.markMatch(context, match, matrix, match === this.search.current);
        if (this.measuring.isOn) this.drawMeasure(context, camera);
    }

    /** @param {CanvasRenderingContext2D} context @param {import('./scene.js').TextItem} match
     * @param {import('./geometry.js').Matrix} matrix @param {boolean} isCurrent */
    markMatch(context, match, matrix, isCurrent) {
        const [left, low, right, high] = match.box;
        if (right < left || high < low) return;
        const a = transformed(matrix, left, low);
        const b = transformed(matrix, right, high);
        const room = isCurrent ? 5 : 2;
        const x = Math.min(a.x, b.x) - room;
        const y = Math.min(a.y, b.y) - room;
        const width = Math.abs(b.x - a.x) + 2 * room;
        const height = Math.abs(b.y - a.y) + 2 * room;
        context.fillStyle = isCurrent ? 'rgb(245 158 11 / 30%)' : 'rgb(250 204 21 / 28%)';
        context.strokeStyle = MATCH;
        context.lineWidth = isCurrent ? 2.5 : 1;
        context.beginPath();
        context.roundRect(x, y, width, height, 4);
        context.fill();
        context.stroke();
    }

    /** @param {CanvasRenderingContext2D} context @param {Camera} camera */
    drawMeasure(context, camera) {
        const tool = this.measuring;
        const matrix = camera.drawingToView;
        const points = tool.shape.map(({ x, y }) => transformed(matrix, x, y));
        // An angle's corner comes first, its legs run to the other two.
        const path = tool.tool === 'angle' && points.length === 3 ? [points[1], points[0], points[2]] : points;
        context.lineJoin = 'round';
        context.beginPath();
        path.forEach(({ x, y }, i) => (i === 0 ? context.moveTo(x, y) : context.lineTo(x, y)));
        if (tool.tool === 'area' && points.length > 2) {
            context.closePath();
            context.fillStyle = 'rgb(11 98 196 / 16%)';
            context.fill();
        }
        for (const [width, colour] of /** @type {[number, string][]} */ ([[5, 'rgb(255 255 255 / 85%)'], [2, MEASURE]])) {
            context.lineWidth = width;
            context.strokeStyle = colour;
            context.stroke();
        }
        for (const { x, y } of points.slice(0, tool.points.length)) this.dot(context, x, y);
        if (tool.pointer && !tool.isComplete) this.cross(context, transformed(matrix, tool.pointer.x, tool.pointer.y));
    }

    /** @param {CanvasRenderingContext2D} context @param {number} x @param {number} y */
    dot(context, x, y) {
        context.beginPath();
        context.arc(x, y, 4.5, 0, 2 * Math.PI);
        context.fillStyle = MEASURE;
        context.fill();
        context.lineWidth = 1.5;
        context.strokeStyle = '#fff';
        context.stroke();
    }

    /** The next point; a square where it snaps. @param {CanvasRenderingContext2D} context
     * @param {{x: number, y: number}} at */
    cross(context, { x, y }) {
        context.strokeStyle = MEASURE;
        context.lineWidth = 1.5;
        context.beginPath();
        if (this.measuring.snapped) context.rect(x - 6, y - 6, 12, 12);
        for (const [dx, dy] of [[1, 0], [-1, 0], [0, 1], [0, -1]]) {
            context.moveTo(x + 3 * dx, y + 3 * dy);
            context.lineTo(x + 12 * dx, y + 12 * dy);
        }
        context.stroke();
    }
}
