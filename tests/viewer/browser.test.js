// The viewer page in a real browser, with real mouse, wheel and keys. Run by scripts/test-viewer.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import path from 'node:path';
import { after, before, test } from 'node:test';

import {
    convert, count, decode, dots, drawn, folder, isBlack, isBlue, isRed, millimetresAt, open, placeOf, startBrowser,
} from './page.js';

const ROOT = path.resolve(import.meta.dirname ?? path.dirname(new URL(import.meta.url).pathname), '../..');
const ESC = '\x1b';
/** Two pens, a red square of 100 x 75 mm and blue lines, labels at known places; a second page. */
const PLAN = `${ESC}%-1BIN;SP1;PW0.7;PC1,200,0,0;PC2,0,0,200;PU0,0;PD4000,0,4000,3000,0,3000,0,0;PU;` +
    'SP2;PW0.7;PU500,500;PD3500,2500;PU;SP1;PU3000,200;SI0.3,0.4;LBBOILER\x03PU200,2700;LBPUMP\x03';
const TWO_PAGES = `${PLAN}PG;SP2;PU0,0;PD4000,3000;PU;PG;`;

/** @type {import('playwright-core').BrowserContext} */
let browser;
before(async () => {
    browser = await startBrowser();
});
after(async () => {
    await browser.close();
    fs.rmSync(folder, { recursive: true, force: true });
});

/** A test of one plot with a page of its own; both renderers where nothing else is said.
 * @param {string} name @param {string | Buffer} plot @param {(page: any) => Promise<void>} check @param {string[]} [hashes] */
function pageTest(name, plot, check, hashes = ['#gl', '#2d']) {
    for (const hash of hashes) {
        test(`${name} ${hash}`, async () => {
            const page = await open(browser, convert(plot), hash);
            await check(page);
            assert.deepEqual(page.faults, []);
            await page.close();
        });
    }
}

pageTest('a pen that is off takes its own dots away and no others', PLAN, async (page) => {
    const all = await dots(page);
    await page.getByRole('checkbox', { name: /no\.: 1/ }).click();
    await drawn(page);
    const without = await dots(page);
    assert.ok(count(all, isRed) > 1000 && count(all, isBlue) > 500);
    assert.equal(count(without, isRed), 0);
    assert.equal(count(without, isBlue), count(all, isBlue));
    await page.getByRole('button', { name: /^Only .*no\.: 1/ }).click();
    await drawn(page);
    const only = await dots(page);
    assert.equal(count(only, isBlue), 0);
    assert.ok(count(only, isRed) >= count(all, isRed));
});

pageTest('search finds, counts and centres', PLAN, async (page) => {
    await page.keyboard.press('/');
    await page.keyboard.type('boil');
    assert.equal(await page.locator('#match-count').textContent(), '– of 1');
    await page.keyboard.press('Enter');
    await drawn(page);
    const stage = await page.locator('#stage').boundingBox();
    const [x, y] = await millimetresAt(page, stage.width / 2, stage.height / 2);
    // The label starts at 75, 5 mm; six letters of 3 mm and 4 mm high.
    assert.ok(x > 80 && x < 92 && y > 5.5 && y < 9, `${x} ${y}`);
    await page.locator('#query').fill('nowhere');
    assert.equal(await page.locator('#match-count').textContent(), 'Nothing found');
}, ['#2d']);

pageTest('a measured distance is the plot\'s', PLAN, async (page) => {
    await page.keyboard.press('m');
    const from = await placeOf(page, 0, 0);
    const to = await placeOf(page, 100, 75);
    // Beside the corners: the points snap.
    await page.mouse.click(from.x + 4, from.y - 3);
    await page.mouse.click(to.x - 3, to.y + 4);
    assert.match(await page.locator('#measured strong').textContent(), /^125\.00 mm$/);
    assert.match(await page.locator('#measured small').textContent(), /5,000\.0 units · 100\.00 × 75\.00 · 36\.9°/);
    await page.keyboard.press('4');
    for (const [x, y] of [[0, 0], [100, 0], [100, 75]]) {
        const at = await placeOf(page, x, y);
        await page.mouse.click(at.x + 2, at.y + 2);
    }
    await page.locator('#drawing').press('Enter');
    assert.equal(await page.locator('#measured strong').textContent(), '3,750.00 mm²');
}, ['#2d']);

pageTest('measuring by keys', PLAN, async (page) => {
    await page.keyboard.press('m');
    await page.keyboard.press('ArrowLeft');
    await page.keyboard.press('Enter');
    for (let i = 0; i < 10; i++) await page.keyboard.press('Shift+ArrowRight');
    await page.keyboard.press('Enter');
    const value = Number((await page.locator('#measured strong').textContent()).replace(' mm', ''));
    const [ax] = await millimetresAt(page, 100, 100);
    const [bx] = await millimetresAt(page, 110, 100);
    assert.ok(Math.abs(value - (bx - ax)) < 0.1, `${value} ${bx - ax}`);
}, ['#2d']);

pageTest('two pages, each with its own view, thumbnails', TWO_PAGES, async (page) => {
    assert.equal(await page.locator('#page-number').textContent(), '1 / 2');
    await page.keyboard.press('PageDown');
    await drawn(page);
    assert.equal(await page.locator('#page-number').textContent(), '2 / 2');
    const second = await dots(page);
    assert.equal(count(second, isRed), 0);
    assert.ok(count(second, isBlue) > 500);
    await page.getByRole('tab', { name: 'Pages' }).click();
    await page.locator('#page-list button').first().click();
    await drawn(page);
    assert.ok(count(await dots(page), isRed) > 1000);
    await page.waitForTimeout(600);
    const inked = await page.locator('#page-list canvas').evaluateAll((canvases) => canvases.map((canvas) => {
        const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
        return data.some((value, i) => i % 4 === 0 && value < 200);
    }));
    assert.deepEqual(inked, [true, true]);
});

test('what stands in a plot is never markup', async () => {
    const label = "</script><img src=x onerror=document.title='owned'><b>bold</b>";
    const page = await open(browser, convert(`${PLAN}PU0,1500;LB${label}\x03`, '<img src=x onerror=alert(1)>&.plt'));
    await page.getByRole('tab', { name: 'Search' }).click();
    await page.locator('#query').fill('onerror');
    assert.equal(await page.locator('#match-list li').first().textContent(), label);
    assert.equal(await page.locator('img, b b').count(), 0);
    assert.equal(await page.title(), '<img src=x onerror=alert(1)>&.plt');
    assert.equal(await page.locator('h1').textContent(), '<img src=x onerror=alert(1)>&.plt');
    // Even if a script got in, the policy would not let it run.
    const ran = await page.evaluate(() => {
        const script = document.createElement('script');
        script.textContent = 'window.owned = true';
        document.body.append(script);
        return 'owned' in window;
    });
    assert.equal(ran, false);
    assert.deepEqual(page.faults, []);
    await page.close();
});

/** A red and blue picture of 8 x 8 dots at 10 dots an inch, 24 bits a dot. */
const ROW = Buffer.from([...Array(4).fill([255, 0, 0]), ...Array(4).fill([0, 0, 255])].flat());
const PICTURE = Buffer.concat([
    Buffer.from(`${ESC}%-1BIN;SP1;PU0,0;PD100,0;PU;PU2000,2000;${ESC}%1A${ESC}*v6W`), Buffer.from([0, 3, 8, 8, 8, 8]),
    Buffer.from(`${ESC}*t10R${ESC}*r8S${ESC}*r8T${ESC}*b0M${ESC}*r1A`),
    ...Array.from({ length: 8 }, () => Buffer.concat([Buffer.from(`${ESC}*b24W`), ROW])),
    Buffer.from(`${ESC}*rC${ESC}%1B;PU0,0;PD0,3000;PG;`),
]);
pageTest('a picture', PICTURE, async (page) => {
    const image = await dots(page);
    const [red, blue] = [count(image, isRed), count(image, isBlue)];
    assert.ok(red > 2000 && Math.abs(red - blue) < 0.05 * red, `${red} ${blue}`);
});

pageTest('wheel, drag and keys move the view', PLAN, async (page) => {
    const [x, y] = await millimetresAt(page, 300, 200);
    await page.mouse.wheel(0, -300);
    await drawn(page);
    const zoomed = await millimetresAt(page, 300, 200);
    assert.ok(Math.hypot(zoomed[0] - x, zoomed[1] - y) < 0.05, 'the point under the pointer stays');
    await page.mouse.down();
    await page.mouse.move(400 + (await page.locator('#stage').boundingBox()).x, 250, { steps: 5 });
    await page.mouse.up();
    await drawn(page);
    const [dragged] = await millimetresAt(page, 400, 200);
    assert.ok(Math.abs(dragged - x) < 0.05, 'the drawing goes with the pointer');
    await page.keyboard.press('ArrowRight');
    const [moved] = await millimetresAt(page, 320, 200);
    assert.ok(Math.abs(moved - dragged) < 0.05, 'an arrow moves by 80 pixels');
    const zoom = async () => parseFloat(await page.locator('#zoom').textContent());
    const before = await zoom();
    await page.keyboard.press('+');
    assert.ok((await zoom()) > before);
    await page.keyboard.press('1');
    assert.equal(await zoom(), 100);
    const [a] = await millimetresAt(page, 300, 200);
    const [b] = await millimetresAt(page, 396, 200);
    assert.ok(Math.abs(b - a - 25.4) < 0.02, '96 CSS pixels an inch at 100 %');
}, ['#2d']);

test('German by the browser\'s language, and a narrow screen', async () => {
    const german = await startBrowser({ locale: 'de-DE', viewport: { width: 360, height: 640 }, hasTouch: true });
    const page = await open(german, convert(TWO_PAGES));
    assert.equal(await page.locator('#tab-layers').textContent(), 'Stifte');
    assert.equal(await page.locator('html').getAttribute('lang'), 'de');
    const wide = await page.evaluate(() => document.documentElement.scrollWidth);
    assert.ok(wide <= 360, `${wide}`);
    assert.equal(await page.locator('#panel').isVisible(), false);
    await page.locator('#panel-switch').tap();
    assert.equal(await page.locator('#panel').isVisible(), true);
    // Every button and field has a name.
    const nameless = await page.locator('button, input').evaluateAll((all) => all.filter((element) => {
        const name = element.getAttribute('aria-label') || element.textContent || element.closest('label')?.textContent;
        return !name?.trim();
    }).length);
    assert.equal(nameless, 0);
    assert.deepEqual(page.faults, []);
    await german.close();
});

pageTest('dark paper and a saved view', PLAN, async (page) => {
    await page.keyboard.press('d');
    await page.waitForTimeout(100);
    const dark = await dots(page);
    assert.equal(count(dark, (r, g, b) => r > 250 && g > 250 && b > 250), 0);
    const download = page.waitForEvent('download');
    await page.keyboard.press('s');
    const saved = await download;
    assert.equal(saved.suggestedFilename(), 'plot.png');
    const image = await decode(page.context(), fs.readFileSync(await saved.path()));
    assert.equal(count(image, () => true), count(dark, () => true));
    assert.ok(count(image, isRed) > 500);
});

pageTest('prints in true size', PLAN, async (page) => {
    const pdf = (await page.pdf({ preferCSSPageSize: true })).toString('latin1');
    const [, width, height] = /\/MediaBox \[0 0 ([\d.]+) ([\d.]+)\]/.exec(pdf).map(Number);
    // 100 x 75 mm, half of the pen on each side and a margin of 5 mm, in points.
    assert.ok(Math.abs(width - (110.7 / 25.4) * 72) < 1.5, `${width}`);
    assert.ok(Math.abs(height - (85.7 / 25.4) * 72) < 1.5, `${height}`);
    assert.equal(pdf.match(/\/Type \/Page\b/g).length, 1);
}, ['#2d']);

/** Mean differences of red, green, blue between blocks of two images. @param {any} a @param {any} b @param {number} side */
function worstBlock(a, b, side) {
    let worst = 0;
    for (let top = 0; top + side <= a.height; top += side) {
        for (let left = 0; left + side <= a.width; left += side) {
            const sums = [0, 0, 0];
            for (let y = top; y < top + side; y++) {
                for (let x = left; x < left + side; x++) {
                    for (let part = 0; part < 3; part++) {
                        const at = 4 * (y * a.width + x) + part;
                        sums[part] += a.data[at] - b.data[at];
                    }
                }
            }
            worst = Math.max(worst, ...sums.map((sum) => Math.abs(sum) / side ** 2));
        }
    }
    return worst;
}

// The same sheet as SVG in the same place: where blocks of 16 x 16 dots differ by more than thin lines do, something
// is missing or of another colour.
for (const example of fs.readdirSync(path.join(ROOT, 'examples')).filter((name) => /^(chart|detail|gear|spheres)\.plt$/.test(name))) {
    for (const hash of ['#gl', '#2d']) {
        test(`${example} looks as its SVG does ${hash}`, async () => {
            const plot = fs.readFileSync(path.join(ROOT, 'examples', example));
            const svg = convert(plot, example, 'svg');
            const page = await open(browser, convert(plot, example), hash);
            const stage = await page.locator('#stage').boundingBox();
            const ours = await dots(page);
            const [left, top] = await page.evaluate(() => [0, 0]);
            const size = /viewBox="0 0 ([\d.]+) ([\d.]+)"/.exec(fs.readFileSync(svg, 'utf8'));
            const scale = 0.96 * Math.min(stage.width / Number(size[1]), stage.height / Number(size[2]));
            const [width, height] = [Number(size[1]) * scale, Number(size[2]) * scale];
            const other = await browser.newPage();
            await other.setContent(`<body style="margin:0;background:#c9ced6"><img style="position:absolute;background:#fff;` +
                `left:${left + (stage.width - width) / 2}px;top:${top + (stage.height - height) / 2}px;width:${width}px;height:${height}px" ` +
                `src="data:image/svg+xml;base64,${fs.readFileSync(svg).toString('base64')}">`);
            await other.waitForTimeout(300);
            const theirs = await decode(browser, await other.screenshot({ clip: { x: 0, y: 0, width: stage.width, height: stage.height } }));
            await other.close();
            await page.close();
            const worst = worstBlock(ours, theirs, 16);
            assert.ok(worst < 48, `${worst}`);
        });
    }
}

test('a million lines', async (t) => {
    let plot = 'IN;SP1;';
    let seed = 1;
    const next = (/** @type {number} */ below) => {
        seed = (Math.imul(seed, 1664525) + 1013904223) >>> 0;
        return (seed >>> 8) % below;
    };
    for (let i = 0; i < 100000; i++) {
        let [x, y] = [next(39000), next(25000)];
        plot += `${i % 50 === 0 ? `SP${1 + next(8)};` : ''}PU${x},${y};PD`;
        plot += Array.from({ length: 10 }, () => `${(x += next(400))},${(y += next(400))}`).join() + ';';
    }
    const file = convert(plot);
    const page = await open(browser, file);
    const marks = await page.evaluate(() => Object.fromEntries(performance.getEntriesByType('mark').map((mark) => [mark.name, mark.startTime])));
    const stage = await page.locator('#stage').boundingBox();
    await page.evaluate(() => {
        const times = (window.frameTimes = []);
        const next = (/** @type {number} */ time) => {
            times.push(time);
            requestAnimationFrame(next);
        };
        requestAnimationFrame(next);
    });
    await page.mouse.move(stage.x + 300, stage.y + 300);
    await page.mouse.wheel(0, -400);
    await page.mouse.down();
    for (let i = 0; i < 120; i++) {
        await page.mouse.move(stage.x + 300 + i, stage.y + 300 + (i % 50));
        await page.waitForTimeout(8);
    }
    await page.mouse.up();
    const between = await page.evaluate(() => window.frameTimes.slice(1).map((time, i) => time - window.frameTimes[i]).sort((a, b) => a - b));
    await drawn(page);
    t.diagnostic(`plot ${(plot.length / 1e6).toFixed(1)} MB, page ${(fs.statSync(file).size / 1e6).toFixed(1)} MB`);
    t.diagnostic(`decoded ${Math.round(marks.decoded)} ms, drawn ${Math.round(marks.drawn)} ms after opening`);
    t.diagnostic(`panning: median ${between[between.length >> 1].toFixed(1)} ms between pictures, 95 % below ${between[Math.floor(0.95 * between.length)].toFixed(1)} ms`);
    assert.ok(count(await dots(page), isBlack) > 1000);
    assert.ok(fs.statSync(file).size < plot.length);
    assert.deepEqual(page.faults, []);
    await page.close();
});
