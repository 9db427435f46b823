// LineRaster: smooth lines dot by dot, for machines without a graphics processor. There this is many
// times faster than WebGL or the 2D canvas, whose cost for each line is that of the general case.
// Test: tests/viewer/parts.test.js.

/** Half of the width, in dots, up to which a line is drawn column by column. */
const THIN = 1.1;
/** More dashes of one line would not be told apart. */
const MOST_DASHES = 20000;

/** @param {number[]} colour 0 to 255 @returns {number} as ImageData holds it on little-endian machines */
export function dotOf([red, green, blue]) {
    return (0xff000000 | (blue << 16) | (green << 8) | red) >>> 0;
}

export class LineRaster {
    /** @param {ImageData} image opaque dots, drawn into */
    constructor(image) {
        this.dots = new Uint32Array(image.data.buffer);
        this.width = image.width;
        this.height = image.height;
        this.redBlue = 0;
        this.green = 0;
        this.dot = 0;
        this.alpha = 1;
    }

    /** What the next lines look like. @param {number} dot see dotOf @param {number} alpha */
    setColour(dot, alpha) {
        this.dot = dot;
        this.redBlue = dot & 0xff00ff;
        this.green = dot & 0x00ff00;
        this.alpha = alpha;
    }

    /**
     * A line in dots.
     * @param {number} x0 @param {number} y0 @param {number} x1 @param {number} y1
     * @param {number} half of the width
     * @param {number} startCap 0 round, 1 flat, 2 square @param {number} endCap
     */
    line(x0, y0, x1, y1, half, startCap, endCap) {
        if (half > THIN) {
            this.wide(x0, y0, x1, y1, half, startCap, endCap);
            return;
        }
        const dx = x1 - x0;
        const dy = y1 - y0;
        if (dx * dx >= dy * dy) {
            if (dx >= 0) this.thin(x0, y0, x1, dx > 0 ? dy / dx : 0, half, startCap, endCap, 1, this.width, this.width, this.height);
            else this.thin(x1, y1, x0, dy / dx, half, endCap, startCap, 1, this.width, this.width, this.height);
        } else if (dy > 0) {
            this.thin(y0, x0, y1, dx / dy, half, startCap, endCap, this.width, 1, this.height, this.width);
        } else {
            this.thin(y1, x1, y0, dx / dy, half, endCap, startCap, this.width, 1, this.height, this.width);
        }
    }

    /**
     * Walks along the longer side, a column at a time; what the line covers of each dot of the column
     * is the ink. A round end of such a line is as good as a flat one that stands out by its area.
     * @param {number} from @param {number} beside of the start @param {number} to
     * @param {number} slope @param {number} half @param {number} startCap @param {number} endCap
     * @param {number} step dots in memory from column to column @param {number} stride from dot to dot
     * @param {number} columns @param {number} rows
     */
    thin(from, beside, to, slope, half, startCap, endCap, step, stride, columns, rows) {
        const { dots, redBlue, green, dot } = this;
        const longer = Math.sqrt(1 + slope * slope);
        const room = half * longer;
        const reach = half / longer;
        const start = from - (startCap === 1 ? 0 : startCap === 2 ? reach : 0.785 * reach);
        const end = to + (endCap === 1 ? 0 : endCap === 2 ? reach : 0.785 * reach);
        const first = start > 0 ? Math.floor(start) : 0;
        const last = end < columns ? Math.ceil(end) : columns;
        const scale = 256 * this.alpha;
        let centre = beside + (first + 0.5 - from) * slope;
        for (let column = first; column < last; column++, centre += slope) {
            const right = column + 1 < end ? column + 1 : end;
            const share = (right - (column > start ? column : start)) * scale;
            const top = centre - room;
            const bottom = centre + room;
            const lowest = bottom < rows ? Math.ceil(bottom) : rows;
            for (let row = top > 0 ? Math.floor(top) : 0; row < lowest; row++) {
                const under = row + 1 < bottom ? row + 1 : bottom;
                const part = ((under - (row > top ? row : top)) * share) | 0;
                const i = column * step + row * stride;
                if (part >= 250) {
                    dots[i] = dot;
                    continue;
                }
                const old = dots[i];
                const mixed = (old & 0xff00ff) + (Math.imul(redBlue - (old & 0xff00ff), part) >> 8);
                const mixedGreen = (old & 0xff00) + (Math.imul(green - (old & 0xff00), part) >> 8);
                dots[i] = 0xff000000 | (mixed & 0xff00ff) | (mixedGreen & 0xff00);
            }
        }
    }

    /**
     * A line of any width: each row's dots lie between two pairs of parallels, the line's sides and its
     * ends, and a dot's coverage is its distance to the nearest of them.
     * @param {number} x0 @param {number} y0 @param {number} x1 @param {number} y1
     * @param {number} half of the width
     * @param {number} startCap 0 round, 1 flat, 2 square @param {number} endCap
     */
    wide(x0, y0, x1, y1, half, startCap, endCap) {
        const reach = half + 1;
        const low = Math.max(Math.floor((y0 < y1 ? y0 : y1) - reach), 0);
        const high = Math.min(Math.ceil((y0 < y1 ? y1 : y0) + reach), this.height);
        const first = Math.max(Math.floor((x0 < x1 ? x0 : x1) - reach), 0);
        const last = Math.min(Math.ceil((x0 < x1 ? x1 : x0) + reach), this.width);
        if (low >= high || first >= last) return;
        const dx = x1 - x0;
        const dy = y1 - y0;
        const size = Math.sqrt(dx * dx + dy * dy);
        const ux = size > 0 ? dx / size : 1;
        const uy = size > 0 ? dy / size : 0;
        const before = startCap === 1 ? 0 : half;
        const after = size + (endCap === 1 ? 0 : half);
        const side = half + 0.5;
        const steep = Math.abs(uy) > 1e-9 ? 1 / uy : 0;
        const along = Math.abs(ux) > 1e-9 ? 1 / ux : 0;
        for (let y = low; y < high; y++) {
            const ry = y + 0.5 - y0;
            let from = first;
            let to = last;
            if (steep !== 0) {
                // |ux ry - uy rx| <= side
                const middle = ux * ry * steep;
                const room = Math.abs(side * steep);
                from = Math.max(from, Math.floor(x0 + middle - room - 0.5));
                to = Math.min(to, Math.ceil(x0 + middle + room + 0.5));
            }
            if (along !== 0) {
                // -before - 0.5 <= ux rx + uy ry <= after + 0.5
                const a = (-before - 0.5 - uy * ry) * along;
                const b = (after + 0.5 - uy * ry) * along;
                from = Math.max(from, Math.floor(x0 + (a < b ? a : b) - 0.5));
                to = Math.min(to, Math.ceil(x0 + (a < b ? b : a) + 0.5));
            }
            if (from < to) this.row(y, from, to, x0, ry, ux, uy, half, size, startCap, endCap);
        }
    }

    /**
     * @param {number} y @param {number} from @param {number} to @param {number} x0 @param {number} ry
     * @param {number} ux @param {number} uy @param {number} half @param {number} size
     * @param {number} startCap @param {number} endCap
     */
    row(y, from, to, x0, ry, ux, uy, half, size, startCap, endCap) {
        const { dots, redBlue, green, alpha } = this;
        const rx = from + 0.5 - x0;
        let across = ux * ry - uy * rx;
        let at = ux * rx + uy * ry;
        for (let i = y * this.width + from, end = y * this.width + to; i < end; i++, across -= uy, at += ux) {
            const sideways = across < 0 ? -across : across;
            let ink = half + 0.5 - sideways;
            if (at < 0 || at > size) {
                const beyond = at < 0 ? -at : at - size;
                const cap = at < 0 ? startCap : endCap;
                const rest = cap === 0 ? half + 0.5 - Math.sqrt(beyond * beyond + sideways * sideways) :
                    (cap === 2 ? half : 0) + 0.5 - beyond;
                if (rest < ink) ink = rest;
            } else if ((startCap === 1 && at < 0.5) || (endCap === 1 && size - at < 0.5)) {
                const rest = 0.5 + (at < 0.5 && startCap === 1 ? at : size - at);
                if (rest < ink) ink = rest;
            }
            if (ink <= 0) continue;
            const share = ((ink < 1 ? ink : 1) * alpha * 256) | 0;
            if (share >= 255) {
                dots[i] = this.dot;
                continue;
            }
            const dot = dots[i];
            const mixed = (dot & 0xff00ff) + (Math.imul(redBlue - (dot & 0xff00ff), share) >> 8);
            const mixedGreen = (dot & 0xff00) + (Math.imul(green - (dot & 0xff00), share) >> 8);
            dots[i] = 0xff000000 | (mixed & 0xff00ff) | (mixedGreen & 0xff00);
        }
    }

    /**
     * A line of dashes.
     * @param {number} x0 @param {number} y0 @param {number} x1 @param {number} y1 @param {number} half
     * @param {number} startCap @param {number} endCap
     * @param {number[]} dashes lengths of dash, gap, ... in dots
     * @param {number} along dots of the path before this line
     */
    dashed(x0, y0, x1, y1, half, startCap, endCap, dashes, along) {
        const period = dashes.reduce((sum, length) => sum + length, 0);
        const size = Math.hypot(x1 - x0, y1 - y0);
        if (period < 2 || size / period > MOST_DASHES) {
            const { alpha } = this;
            this.alpha = 0.6 * alpha;
            this.line(x0, y0, x1, y1, half, startCap, endCap);
            this.alpha = alpha;
            return;
        }
        const cap = startCap === 1 || endCap === 1 ? 1 : startCap;
        const ux = size > 0 ? (x1 - x0) / size : 1;
        const uy = size > 0 ? (y1 - y0) / size : 0;
        for (let start = -(along % period); start < size; start += period) {
            let from = start;
            for (let i = 0; i < dashes.length; i += 2) {
                const to = from + dashes[i];
                if (to >= 0 && from <= size) {
                    const a = Math.max(from, 0);
                    const b = Math.min(to, size);
                    this.line(x0 + ux * a, y0 + uy * a, x0 + ux * b, y0 + uy * b, half,
                        from < 0 ? startCap : cap, to > size ? endCap : cap);
                }
                from = to + dashes[i + 1];
            }
        }
    }
}
