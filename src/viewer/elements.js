// Finding and making elements. Text goes in as text nodes only, never as markup.

/** @template {HTMLElement} T @param {string} id @param {new () => T} kind @returns {T} */
export function byId(id, kind) {
    const element = document.getElementById(id);
    if (!(element instanceof kind)) throw new Error(`the page has no ${id}`);
    return element;
}

/**
 * @template {keyof HTMLElementTagNameMap} K
 * @param {K} tag
 * @param {Record<string, string | boolean>} attributes true: present without a value, false: not there
 * @param {...(Node | string)} children
 * @returns {HTMLElementTagNameMap[K]}
 */
export function create(tag, attributes, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (value !== false) element.setAttribute(name, value === true ? '' : value);
    }
    element.append(...children);
    return element;
}

/** Says something to who cannot see the screen. @param {string} text */
export function speak(text) {
    byId('spoken', HTMLElement).textContent = text;
}
