// Pictures of a page: decoded from the data elements by the browser, in the background.
import { fromBase64 } from './inflate.js';

/** More dots are reduced: they would take gigabytes. */
const MOST_DOTS = 48e6;

export class Pictures {
    /** @param {(page: number) => void} arrived another picture can be drawn */
    constructor(arrived) {
        this.arrived = arrived;
        /** @type {Map<string, ImageBitmap | null>} null while it is decoded, and when it cannot be */
        this.bitmaps = new Map();
        /** Pictures that are being decoded. */
        this.waiting = 0;
    }

    /**
     * @param {number} page @param {number} number
     * @param {number} mostSide longest side that can be drawn
     * @returns {ImageBitmap | null} null: not there yet
     */
    get(page, number, mostSide) {
        const id = `page${page}-picture${number}`;
        const known = this.bitmaps.get(id);
        if (known !== undefined) return known;
        this.bitmaps.set(id, null);
        const data = document.getElementById(id)?.textContent;
        if (data) void this.decode(id, data, page, mostSide);
        return null;
    }

    /** @param {string} id @param {string} data @param {number} page @param {number} mostSide */
    async decode(id, data, page, mostSide) {
        this.waiting++;
        try {
            const blob = new Blob([fromBase64(data)], { type: 'image/png' });
            let bitmap = await createImageBitmap(blob);
            const reduction = Math.min(1, mostSide / Math.max(bitmap.width, bitmap.height),
                Math.sqrt(MOST_DOTS / (bitmap.width * bitmap.height)));
            if (reduction < 1) {
                const whole = bitmap;
                bitmap = await createImageBitmap(whole, {
                    resizeWidth: Math.max(1, Math.floor(whole.width * reduction)),
                    resizeHeight: Math.max(1, Math.floor(whole.height * reduction)),
                    resizeQuality: 'high',
                });
                whole.close();
            }
            this.bitmaps.set(id, bitmap);
        } catch (error) {
            console.error(`${id} cannot be decoded`, error);
        }
        this.waiting--;
        this.arrived(page);
    }
}
