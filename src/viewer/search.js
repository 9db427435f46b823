// Search in the texts of a page: finding them, the panel, going from match to match.
// Tests: tests/viewer/parts.test.js, tests/viewer/browser.test.js.
import { byId, create, speak } from './elements.js';

/** @typedef {import('./scene.js').TextItem} TextItem */

/** More matches are counted and visited, not listed. */
const MOST_LISTED = 300;

/**
 * Texts that hold `query`, without regard to case.
 * @param {TextItem[]} texts @param {string} query
 * @returns {TextItem[]}
 */
export function findTexts(texts, query) {
    const wanted = query.trim().toLocaleLowerCase();
    if (wanted === '') return [];
    return texts.filter(({ text }) => text.toLocaleLowerCase().includes(wanted));
}

export class Search {
    /**
     * @param {import('./texts.js').Texts} texts
     * @param {(match: TextItem) => void} visit brings a match into view
     * @param {() => void} changed the matches to mark are others
     */
    constructor(texts, visit, changed) {
        this.texts = texts;
        this.visit = visit;
        this.changed = changed;
        /** @type {TextItem[]} */
        this.items = [];
        /** @type {TextItem[]} */
        this.matches = [];
        this.at = -1;
        this.query = byId('query', HTMLInputElement);
        this.count = byId('match-count', HTMLElement);
        this.list = byId('match-list', HTMLUListElement);
        this.query.oninput = () => this.find();
        this.query.onkeydown = (event) => {
            if (event.key !== 'Enter') return;
            event.preventDefault();
            this.step(event.shiftKey ? -1 : 1);
        };
        byId('match-after', HTMLElement).onclick = () => this.step(1);
        byId('match-before', HTMLElement).onclick = () => this.step(-1);
    }

    /** @param {TextItem[]} items those that can be found: of layers that are shown */
    setItems(items) {
        this.items = items;
        this.find();
    }

    find() {
        this.matches = findTexts(this.items, this.query.value);
        this.at = -1;
        const listed = this.query.value.trim() === '' ? this.items : this.matches;
        this.list.replaceChildren(...listed.slice(0, MOST_LISTED).map((item) => this.row(item)));
        this.showCount();
        this.changed();
    }

    /** @param {TextItem} item */
    row(item) {
        const button = create('button', {}, item.text.trim() || '␣');
        button.title = item.text;
        button.onclick = () => {
            this.at = this.matches.indexOf(item);
            this.showCount();
            this.visit(item);
        };
        return create('li', {}, button);
    }

    /** The next match, or the one before. @param {number} by 1 or -1 */
    step(by) {
        const count = this.matches.length;
        if (count === 0) return;
        this.at = this.at < 0 ? (by > 0 ? 0 : count - 1) : (this.at + by + count) % count;
        this.showCount();
        this.visit(this.matches[this.at]);
        speak(`${this.count.textContent}: ${this.matches[this.at].text}`);
    }

    get current() {
        return this.at >= 0 ? this.matches[this.at] : null;
    }

    showCount() {
        const count = this.texts.number(this.matches.length);
        if (this.items.length === 0) this.count.textContent = this.texts.get('noTexts');
        else if (this.query.value.trim() === '') {
            this.count.textContent = this.texts.get('texts', { count: this.texts.number(this.items.length) });
        } else if (this.matches.length === 0) this.count.textContent = this.texts.get('noMatch');
        else this.count.textContent = this.texts.get('matches', { at: this.at < 0 ? '–' : this.texts.number(this.at + 1), count });
        const buttons = [...this.list.querySelectorAll('button')];
        buttons.forEach((button, i) => {
            const isCurrent = this.at >= 0 && i === this.at;
            button.setAttribute('aria-current', String(isCurrent));
            if (isCurrent) button.scrollIntoView({ block: 'nearest' });
        });
    }
}
