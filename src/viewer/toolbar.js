// Buttons and tabs. Test: tests/viewer/browser.test.js.
import { byId } from './elements.js';

/** @param {Record<string, () => void>} actions by the button's id */
export function listenToButtons(actions) {
    for (const [id, action] of Object.entries(actions)) byId(id, HTMLElement).onclick = action;
}

export class Panel {
    /** @param {() => void} resized the drawing has another room now */
    constructor(resized) {
        this.resized = resized;
        this.element = byId('panel', HTMLElement);
        this.tabs = [...this.element.querySelectorAll('[role="tab"]')].filter((tab) => tab instanceof HTMLElement);
        this.tabs.forEach((tab, i) => {
            tab.onclick = () => this.open(tab.getAttribute('aria-controls') ?? '');
            tab.onkeydown = (event) => {
                const by = event.key === 'ArrowRight' ? 1 : event.key === 'ArrowLeft' ? -1 : 0;
                if (by === 0) return;
                const next = this.tabs[(i + by + this.tabs.length) % this.tabs.length];
                this.open(next.getAttribute('aria-controls') ?? '');
                next.focus();
            };
        });
    }

    get isOpen() {
        return !this.element.hidden;
    }

    /** @param {boolean} open */
    turn(open) {
        if (open === this.isOpen) return;
        this.element.hidden = !open;
        byId('panel-switch', HTMLElement).setAttribute('aria-expanded', String(open));
        this.resized();
    }

    /** @param {string} id of a section */
    open(id) {
        this.turn(true);
        for (const tab of this.tabs) {
            const isChosen = tab.getAttribute('aria-controls') === id;
            tab.setAttribute('aria-selected', String(isChosen));
            tab.tabIndex = isChosen ? 0 : -1;
            byId(tab.getAttribute('aria-controls') ?? '', HTMLElement).hidden = !isChosen;
        }
    }
}
