// The list of keys.
import { byId, create } from './elements.js';

/** @typedef {import('./texts.js').TextKey} TextKey */

/** @param {import('./texts.js').Texts} texts */
export function makeHelp(texts) {
    const shift = texts.get('shift');
    const enter = texts.get('enter');
    /** @type {[TextKey, string[]][]} */
    const keys = [
        ['keyMove', [texts.get('arrows')]], ['keyZoom', ['+', '−']], ['keyFit', ['0']], ['keyTrue', ['1']],
        ['keyPages', [texts.get('pageUp'), texts.get('pageDown')]], ['keyPanel', ['L']], ['keyFind', ['/']],
        ['keyMatch', ['F3', `${shift} F3`]], ['keyMeasure', ['M']], ['keyPoint', [enter]],
        ['keyUndo', ['Backspace']], ['keySnap', [shift]], ['keyPaper', ['D']], ['keyWidths', ['W']],
        ['keyProperties', ['I']], ['keySave', ['S']], ['keyPrint', ['P']], ['help', ['?']], ['keyEsc', ['Esc']],
    ];
    /** @type {[TextKey, TextKey][]} */
    const mouse = [['keyMove', 'mouseMove'], ['keyZoom', 'mouseZoom'], ['zoomHere', 'mouseFit']];
    const list = byId('help-list', HTMLElement);
    list.append(create('h2', {}, texts.get('keys')));
    for (const [key, names] of keys) {
        list.append(create('dt', {}, texts.get(key).replace(/ \(.*\)$/, '')),
            create('dd', {}, ...names.flatMap((name) => [create('kbd', {}, name), ' '])));
    }
    list.append(create('h2', {}, texts.get('mouse')));
    for (const [what, how] of mouse) list.append(create('dt', {}, texts.get(what)), create('dd', {}, texts.get(how)));
}
