// Opens plots as pages in Chromium, for browser.test.js: converts a plot, drives mouse and keys, reads the drawn dots.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { pathToFileURL } from 'node:url';
import { chromium } from 'playwright-core';

const QMPLOT = process.env.QMPLOT ?? 'build/release/bin/qmplot';
const CHROMIUM = process.env.CHROMIUM ?? '/usr/bin/chromium';
const ARGUMENTS = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
    '--disable-background-networking', '--disable-component-update', '--disable-sync'];

export const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'viewer-test-'));

/** @param {object} [options] of playwright's context: viewport, locale, ... */
export async function startBrowser(options = {}) {
    const profile = fs.mkdtempSync(path.join(folder, 'profile-'));
    return chromium.launchPersistentContext(profile, {
        executablePath: CHROMIUM, headless: true, args: ARGUMENTS, viewport: { width: 1000, height: 700 },
        locale: 'en-GB', ...options,
    });
}

/** Writes a plot and converts it. @param {string | Buffer} plot @param {string} [name] @returns {string} the page's file */
export function convert(plot, name = 'plot.plt', ending = 'html') {
    const input = path.join(folder, name);
    fs.writeFileSync(input, plot);
    const output = path.join(folder, `page.${ending}`);
    execFileSync(QMPLOT, ['convert', input, output]);
    return output;
}

/** Opens a page and waits until it is drawn. Everything it asks of a network, and every error, fails the test.
 * @param {import('playwright-core').BrowserContext} browser @param {string} file @param {string} [hash] */
export async function open(browser, file, hash = '') {
    const page = await browser.newPage();
    /** @type {string[]} */
    const faults = [];
    page.on('pageerror', (error) => faults.push(String(error)));
    page.on('request', (request) => {
        if (!/^(file|blob|data):/.test(request.url())) faults.push(`asked for ${request.url()}`);
    });
    await page.goto(pathToFileURL(file).href + hash);
    await drawn(page);
    return Object.assign(page, { faults });
}

/** @param {import('playwright-core').Page} page */
export async function drawn(page) {
    await page.waitForFunction(() => document.documentElement.dataset.drawn, null, { timeout: 120000 });
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
}

/** The dots of the drawing. @param {import('playwright-core').Page} page
 * @returns {Promise<{width: number, height: number, data: Uint8Array}>} */
export async function dots(page) {
    const shot = await page.locator('#stage').screenshot();
    return decode(page.context(), shot);
}

/** A PNG's dots, decoded by a blank page. @param {import('playwright-core').BrowserContext} browser @param {Buffer} png */
export async function decode(browser, png) {
    const page = await browser.newPage();
    const image = await page.evaluate(async (text) => {
        const bytes = Uint8Array.from(atob(text), (letter) => letter.charCodeAt(0));
        const bitmap = await createImageBitmap(new Blob([bytes], { type: 'image/png' }));
        const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
        const context = canvas.getContext('2d');
        context.drawImage(bitmap, 0, 0);
        const { data } = context.getImageData(0, 0, bitmap.width, bitmap.height);
        let packed = '';
        for (let i = 0; i < data.length; i += 8192) packed += String.fromCharCode(...data.subarray(i, i + 8192));
        return { width: bitmap.width, height: bitmap.height, text: btoa(packed) };
    }, png.toString('base64'));
    await page.close();
    return { width: image.width, height: image.height, data: new Uint8Array(Buffer.from(image.text, 'base64')) };
}

/** How many dots are of a kind. @param {{data: Uint8Array}} image
 * @param {(red: number, green: number, blue: number) => boolean} isOf */
export function count({ data }, isOf) {
    let found = 0;
    for (let i = 0; i < data.length; i += 4) found += isOf(data[i], data[i + 1], data[i + 2]) ? 1 : 0;
    return found;
}

export const isRed = (/** @type {number} */ r, /** @type {number} */ g, /** @type {number} */ b) => r > 150 && g < 100 && b < 100;
export const isBlue = (/** @type {number} */ r, /** @type {number} */ g, /** @type {number} */ b) => b > 150 && r < 100 && g < 100;
export const isBlack = (/** @type {number} */ r, /** @type {number} */ g, /** @type {number} */ b) => r + g + b < 200;

/** Millimetres at a place of the drawing, as the page tells them. @param {import('playwright-core').Page} page
 * @param {number} x @param {number} y from the stage's corner */
export async function millimetresAt(page, x, y) {
    const box = await page.locator('#stage').boundingBox();
    await page.mouse.move(box.x + x, box.y + y);
    const text = await page.locator('#at-mm').textContent();
    return [...text.matchAll(/[XY] (-?[\d.,]+)/g)].map((match) => Number(match[1].replaceAll(',', '')));
}

/** The place on the screen of a point in millimetres. @param {import('playwright-core').Page} page
 * @param {number} x @param {number} y */
export async function placeOf(page, x, y) {
    const box = await page.locator('#stage').boundingBox();
    const [ax, ay] = await millimetresAt(page, 100, 100);
    const [bx, by] = await millimetresAt(page, 500, 400);
    return {
        x: box.x + 100 + ((x - ax) * 400) / (bx - ax),
        y: box.y + 100 + ((y - ay) * 300) / (by - ay),
    };
}
