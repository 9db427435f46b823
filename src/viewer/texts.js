// The page's own words, in English and German, and numbers as the language writes them.
// Test: tests/viewer/parts.test.js.

/** @typedef {keyof typeof ENGLISH} TextKey */

const ENGLISH = {
    skip: 'Skip to the drawing', drawing: 'Drawing', pages: 'Pages', tools: 'Tools', panel: 'Side panel',
    drawingHelp: 'Arrow keys move the drawing, plus and minus zoom, question mark lists all keys.',
    pageBefore: 'Previous page (Page Up)', pageAfter: 'Next page (Page Down)', zoomOut: 'Zoom out (-)',
    zoomIn: 'Zoom in (+)', fit: 'Whole page (0)', trueSize: 'True size, 100 % (1)', find: 'Search texts (/)',
    measure: 'Measure (M)', paper: 'Dark paper (D)', save: 'Save the view as PNG (S)', print: 'Print in true scale (P); choose 100 % in the dialog',
    help: 'Keys (?)', helpTitle: 'Keys and mouse', close: 'Close (Esc)', layers: 'Pens', search: 'Search', properties: 'Properties', all: 'All',
    none: 'None', invert: 'Invert', widths: 'Show line widths (W)', only: 'Only', onlyThis: 'Only {name}',
    searchTexts: 'Search in the texts', matchBefore: 'Previous match (Shift F3)', matchAfter: 'Next match (F3)',
    noTexts: 'This page has no texts to search.', texts: '{count} texts', noMatch: 'Nothing found',
    matches: '{at} of {count}', loading: 'Loading', distance: 'Distance (1)', angle: 'Angle (2)',
    path: 'Path length (3)', area: 'Area (4)', measureEnd: 'End measuring (Esc)', drawn: '{count} drawn',
    thinnest: 'thinnest line', units: 'units', file: 'File', name: 'Name', format: 'Format', size: 'Size', page: 'Page',
    sheet: 'Sheet', extent: 'Drawing', lowerLeft: 'Lower left', resolution: 'Units per inch', turned: 'Shown turned',
    contents: 'Contents', lines: 'Lines', polylines: 'Polylines', areas: 'Filled areas', rectangles: 'Rectangles',
    circles: 'Circles', arcs: 'Arcs', textCount: 'Texts', pictures: 'Pictures', patterns: 'Fill patterns',
    display: 'Display', drawnBy: 'Drawn by', damaged: 'The data of this page is damaged: {cause}',
    noPages: 'This plot draws nothing.', old: 'This browser cannot inflate the data; use one of 2023 or later.',
    measureDistance: 'Click two points', measureAngle: 'Click the corner, then two points',
    measurePath: 'Click points, double click or Enter ends', measureArea: 'Click corners, double click or Enter ends',
    pageOf: 'Page {at} of {count}', saved: 'Saved as {name}', paperDark: 'Dark paper', paperLight: 'Light paper',
    keyMove: 'Move the drawing', keyZoom: 'Zoom', keyFit: 'Whole page', keyTrue: 'True size', keyPages: 'Pages',
    keyPanel: 'Side panel', keyFind: 'Search texts', keyMatch: 'Next, previous match',
    keyMeasure: 'Measure; there 1 to 4 choose what', keyPoint: 'Set a point at the cross, which arrow keys move',
    keyUndo: 'Take the last point back', keySnap: 'Do not snap to points (while held)', keyPaper: 'Dark or light paper', keyWidths: 'Line widths',
    keySave: 'Save as PNG', keyPrint: 'Print', keyProperties: 'Properties', keyEsc: 'End, close',
    mouse: 'Mouse and touch', mouseMove: 'Drag', mouseZoom: 'Wheel, two fingers', mouseFit: 'Double click',
    zoomHere: 'Zoom in at that place', keys: 'Keys', shift: 'Shift', enter: 'Enter', pageUp: 'Page Up', pageDown: 'Page Down', arrows: 'Arrows',
};

/** @type {Record<TextKey, string>} */
const GERMAN = {
    skip: 'Zur Zeichnung springen', drawing: 'Zeichnung', pages: 'Seiten', tools: 'Werkzeuge', panel: 'Seitenleiste',
    drawingHelp: 'Pfeiltasten verschieben die Zeichnung, Plus und Minus zoomen, Fragezeichen nennt alle Tasten.',
    pageBefore: 'Vorige Seite (Bild auf)', pageAfter: 'Nächste Seite (Bild ab)', zoomOut: 'Verkleinern (-)',
    zoomIn: 'Vergrößern (+)', fit: 'Ganze Seite (0)', trueSize: 'Wahre Größe, 100 % (1)', find: 'Texte suchen (/)',
    measure: 'Messen (M)', paper: 'Dunkles Papier (D)', save: 'Ansicht als PNG speichern (S)', print: 'Maßstäblich drucken (P); im Dialog 100 % wählen',
    help: 'Tasten (?)', helpTitle: 'Tasten und Maus', close: 'Schließen (Esc)', layers: 'Stifte', search: 'Suche', properties: 'Eigenschaften', all: 'Alle',
    none: 'Keine', invert: 'Umkehren', widths: 'Strichstärken zeigen (W)', only: 'Nur', onlyThis: 'Nur {name}',
    searchTexts: 'In den Texten suchen', matchBefore: 'Voriger Treffer (Umschalt F3)', matchAfter: 'Nächster Treffer (F3)',
    noTexts: 'Diese Seite hat keine Texte.', texts: '{count} Texte', noMatch: 'Nichts gefunden',
    matches: '{at} von {count}', loading: 'Lädt', distance: 'Abstand (1)', angle: 'Winkel (2)',
    path: 'Länge eines Zuges (3)', area: 'Fläche (4)', measureEnd: 'Messen beenden (Esc)', drawn: '{count} gezeichnet',
    thinnest: 'dünnste Linie', units: 'Einheiten', file: 'Datei', name: 'Name', format: 'Format', size: 'Größe', page: 'Seite',
    sheet: 'Blatt', extent: 'Zeichnung', lowerLeft: 'Links unten', resolution: 'Einheiten je Zoll', turned: 'Gedreht gezeigt',
    contents: 'Inhalt', lines: 'Linien', polylines: 'Linienzüge', areas: 'Gefüllte Flächen', rectangles: 'Rechtecke',
    circles: 'Kreise', arcs: 'Bögen', textCount: 'Texte', pictures: 'Bilder', patterns: 'Füllmuster',
    display: 'Anzeige', drawnBy: 'Gezeichnet von', damaged: 'Die Daten dieser Seite sind beschädigt: {cause}',
    noPages: 'Dieser Plot zeichnet nichts.', old: 'Dieser Browser kann die Daten nicht entpacken; ab 2023 können es alle.',
    measureDistance: 'Zwei Punkte anklicken', measureAngle: 'Scheitel, dann zwei Punkte anklicken',
    measurePath: 'Punkte anklicken, Doppelklick oder Eingabe endet', measureArea: 'Ecken anklicken, Doppelklick oder Eingabe endet',
    pageOf: 'Seite {at} von {count}', saved: 'Gespeichert als {name}', paperDark: 'Dunkles Papier', paperLight: 'Helles Papier',
    keyMove: 'Zeichnung verschieben', keyZoom: 'Zoomen', keyFit: 'Ganze Seite', keyTrue: 'Wahre Größe', keyPages: 'Seiten',
    keyPanel: 'Seitenleiste', keyFind: 'Texte suchen', keyMatch: 'Nächster, voriger Treffer',
    keyMeasure: 'Messen; 1 bis 4 wählen, was', keyPoint: 'Punkt am Kreuz setzen, das die Pfeiltasten bewegen',
    keyUndo: 'Letzten Punkt zurücknehmen', keySnap: 'Nicht an Punkten fangen (gehalten)', keyPaper: 'Dunkles oder helles Papier', keyWidths: 'Strichstärken',
    keySave: 'Als PNG speichern', keyPrint: 'Drucken', keyProperties: 'Eigenschaften', keyEsc: 'Beenden, schließen',
    mouse: 'Maus und Finger', mouseMove: 'Ziehen', mouseZoom: 'Rad, zwei Finger', mouseFit: 'Doppelklick',
    zoomHere: 'An dieser Stelle vergrößern', keys: 'Tasten', shift: 'Umschalt', enter: 'Eingabe', pageUp: 'Bild auf', pageDown: 'Bild ab', arrows: 'Pfeile',
};

/** @param {readonly string[]} languages in order of preference @returns {'en' | 'de'} */
export function chooseLanguage(languages) {
    for (const language of languages) {
        if (/^de\b/i.test(language)) return 'de';
        if (/^en\b/i.test(language)) return 'en';
    }
    return 'en';
}

export class Texts {
    /** @param {readonly string[]} languages */
    constructor(languages) {
        this.language = chooseLanguage(languages);
        this.words = this.language === 'de' ? GERMAN : ENGLISH;
    }

    /** @param {TextKey} key @param {Record<string, string>} [values] for {names} in the text */
    get(key, values = {}) {
        return this.words[key].replace(/\{(\w+)\}/g, (_, name) => values[name] ?? '');
    }

    /** @param {number} value @param {number} [decimals] */
    number(value, decimals = 0) {
        return new Intl.NumberFormat(this.language, {
            minimumFractionDigits: decimals, maximumFractionDigits: decimals,
        }).format(Math.abs(value) < 0.5 / 10 ** decimals ? 0 : value);
    }

    /** Puts the words into elements that name them: data-text, data-label, data-tip. @param {ParentNode} root */
    apply(root) {
        const word = (/** @type {string | undefined} */ key) => this.words[/** @type {TextKey} */ (key)] ?? '';
        for (const element of root.querySelectorAll('[data-text], [data-label], [data-tip]')) {
            if (!(element instanceof HTMLElement)) continue;
            const { text, label, tip } = element.dataset;
            if (text) element.textContent = word(text);
            if (label) element.setAttribute('aria-label', word(label));
            if (tip) {
                element.title = word(tip);
                element.setAttribute('aria-label', word(tip));
            }
        }
    }
}
