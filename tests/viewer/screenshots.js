// Makes the pictures of docs/screenshots/: node tests/viewer/screenshots.js, after scripts/test-viewer has installed
// what it takes.
import fs from 'node:fs';
import { convert, drawn, folder, open, startBrowser } from './page.js';

const browser = await startBrowser({ viewport: { width: 1120, height: 680 } });
const example = (/** @type {string} */ name) => convert(fs.readFileSync(`examples/${name}.plt`), `${name}.plt`);

const plan = await open(browser, example('floor-plan'));
await plan.keyboard.press('m');
const stage = await plan.locator('#stage').boundingBox();
await plan.mouse.click(stage.x + 0.185 * stage.width, stage.y + 0.750 * stage.height);
await plan.mouse.click(stage.x + 0.4885 * stage.width, stage.y + 0.481 * stage.height);
await plan.mouse.move(stage.x + 0.62 * stage.width, stage.y + 0.6 * stage.height);
await plan.screenshot({ path: 'docs/screenshots/viewer-measuring.png' });

const detail = await open(browser, example('detail'));
await detail.keyboard.press('d');
await detail.keyboard.press('/');
await detail.keyboard.type('teeth');
await detail.keyboard.press('Enter');
await drawn(detail);
await detail.waitForTimeout(300);
await detail.screenshot({ path: 'docs/screenshots/viewer-search.png' });

await browser.close();
fs.rmSync(folder, { recursive: true, force: true });
