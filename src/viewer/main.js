// The page: reads the document, makes all parts and ties them together.
import { Camera } from './camera.js';
import { CanvasRenderer } from './canvas_renderer.js';
import { CoordinateLine } from './coordinates.js';
import { makeHelp } from './dialogs.js';
import { readDocumentHeader } from './document_header.js';
import { byId, speak } from './elements.js';
import { GlRenderer } from './gl_renderer.js';
import { fromBase64 } from './inflate.js';
import { listenToKeys, listenToPointers, zoomStep } from './input.js';
import { Layers } from './layers.js';
import { SceneStore } from './loading.js';
import { MeasuringTool } from './measuring_tool.js';
import { Overlay } from './overlay.js';
import { Pages } from './pages.js';
import { Pictures } from './pictures.js';
import { showProperties } from './properties.js';
import { pngName, preparePrint, saveCanvases } from './saving.js';
import { Scheduler } from './scheduler.js';
import { Search } from './search.js';
import { Texts } from './texts.js';
import { Panel, listenToButtons } from './toolbar.js';
import { pageOpener, startWorker } from './worker.js';

/** Below this width the panel is closed at first. */
const NARROW = 760;

/** @typedef {import('./document_header.js').DocumentHeader} DocumentHeader */

/** "#2d" or "#gl" at the end of the address asks for one of the two. @param {Pictures} pictures */
function makeRenderer(pictures) {
    const canvas = byId('drawing', HTMLCanvasElement);
    if (location.hash !== '#2d') {
        try {
            return new GlRenderer(canvas, pictures, location.hash === '#gl');
        } catch (error) {
            console.info(`Drawing with the 2D canvas: ${error}`);
            // A canvas that had a context of one kind gives none of another.
            canvas.replaceWith(canvas.cloneNode());
        }
    }
    return new CanvasRenderer(byId('drawing', HTMLCanvasElement), pictures);
}

class Viewer {
    /** @param {DocumentHeader} header @param {Texts} texts */
    constructor(header, texts) {
        this.header = header;
        this.texts = texts;
        this.page = -1;
        /** @type {Camera[]} one for each page, so that each keeps its view */
        this.cameras = header.pages.map((page) => new Camera(page));
        /** @type {Set<Camera>} those that have shown the whole page once */
        this.fitted = new Set();
        this.pictures = new Pictures(() => this.scheduler.changed());
        this.renderer = makeRenderer(this.pictures);
        this.canvas = byId('drawing', HTMLCanvasElement);
        this.scheduler = new Scheduler(this.renderer, {
            frame: () => this.overlay.draw(this.camera, this.scheduler.ratio),
            complete: () => this.completed(),
        });
        this.store = new SceneStore(header.pages, (page, scene) => this.grown(page, scene));
        this.layers = new Layers(texts, () => this.layersChanged());
        this.search = new Search(texts, (match) => this.visit(match), () => this.redrawOverlay());
        this.measuring = new MeasuringTool(texts, {
            camera: () => this.camera,
            scene: () => this.scene,
            isShown: (layer) => this.layers.isShown(layer),
            changed: () => this.redrawOverlay(),
        });
        this.overlay = new Overlay(this.search, this.measuring);
        this.pages = new Pages(header.pages, texts, (page) => this.turnTo(page));
        this.coordinates = new CoordinateLine(texts);
        this.panel = new Panel(() => this.resize());
        /** @type {Record<number, boolean[]>} */
        this.shownOfPage = {};
        this.renderer.isShown = (layer) => this.layers.isShown(layer);
        /** @type {import('./scene.js').Scene | null} */
        this.scene = null;
    }

    get camera() {
        return this.cameras[Math.max(this.page, 0)];
    }

    start() {
        if (window.innerWidth <= NARROW) this.panel.turn(false);
        const program = byId('program', HTMLScriptElement).textContent ?? '';
        this.store.open = pageOpener(program, (part) => this.store.receive(part));
        const actions = this.actions();
        listenToButtons({
            'zoom-in': actions['+'], 'zoom-out': actions['-'], fit: actions['0'], 'true-size': actions['1'],
            find: actions['/'], measure: actions.m, paper: actions.d, save: actions.s, print: actions.p,
            help: actions['?'], 'panel-switch': actions.l,
        });
        byId('widths', HTMLInputElement).onchange = () => this.widthsChanged();
        const target = {
            camera: () => this.camera,
            moved: () => this.moved(),
            measuring: this.measuring,
            pointed: (/** @type {{x: number, y: number} | null} */ at) => this.coordinates.showPoint(this.camera, at),
            actions,
        };
        listenToPointers(this.canvas, target);
        listenToKeys(this.canvas, target);
        new ResizeObserver(() => this.resize()).observe(byId('stage', HTMLElement));
        this.canvas.addEventListener('webglcontextlost', () => location.reload());
        window.addEventListener('beforeprint', () => this.preparePrint());
        this.turnTo(0);
    }

    /** @returns {Record<string, () => void>} by key */
    actions() {
        const zoom = (/** @type {number} */ by) => () => {
            zoomStep(this.camera, by);
            this.moved();
        };
        return {
            '+': zoom(1), '=': zoom(1), '-': zoom(-1),
            0: () => this.fit(), f: () => this.fit(), Home: () => this.fit(),
            1: () => {
                const { camera } = this;
                camera.zoomAt(camera.scaleOf(1) / camera.scale, camera.width / 2, camera.height / 2);
                this.moved();
            },
            PageUp: () => this.turnTo(this.page - 1),
            PageDown: () => this.turnTo(this.page + 1),
            l: () => this.panel.turn(!this.panel.isOpen),
            i: () => this.panel.open('properties'),
            '/': () => {
                this.panel.open('search');
                byId('query', HTMLInputElement).select();
            },
            F3: () => this.search.step(1),
            'Shift F3': () => this.search.step(-1),
            m: () => {
                this.measuring.turn(!this.measuring.isOn);
                this.canvas.focus();
            },
            d: () => this.turnPaper(),
            w: () => {
                const box = byId('widths', HTMLInputElement);
                box.checked = !box.checked;
                this.widthsChanged();
            },
            s: () => this.save(),
            p: () => window.print(),
            '?': () => byId('help-dialog', HTMLDialogElement).showModal(),
            Escape: () => {
                if (this.measuring.points.length > 0) this.measuring.clear();
                else if (this.measuring.isOn) this.measuring.turn(false);
                else this.canvas.focus();
            },
        };
    }

    /** @param {number} page */
    turnTo(page) {
        if (page === this.page || !this.header.pages[page]) return;
        this.rememberLayers();
        this.page = page;
        this.measuring.clear();
        this.layers.show(this.header.pages[page].layers);
        this.scene = this.store.get(page);
        this.renderer.setScene(this.scene, page);
        this.scheduler.hasEnd = false;
        this.scheduler.camera = this.camera;
        this.search.setItems([]);
        this.pages.show(page);
        showProperties(this.header, page, this.renderer.name, this.texts);
        this.coordinates.showSheet(this.camera, this.renderer.name);
        this.resize();
        if (this.scene.end) this.ended(this.scene);
        else byId('busy', HTMLElement).classList.add('on');
        this.scheduler.changed();
        const count = this.header.pages.length;
        if (count > 1) speak(this.texts.get('pageOf', { at: String(page + 1), count: String(count) }));
    }

    /** @param {number} page @param {import('./scene.js').Scene} scene a part of it has come */
    grown(page, scene) {
        if (page !== this.page) return;
        if (scene.end && !this.scheduler.hasEnd) this.ended(scene);
        if (scene.levels.length === 0) this.scheduler.changed();
    }

    /** All of the page is decoded. @param {import('./scene.js').Scene} scene */
    ended(scene) {
        this.scheduler.hasEnd = true;
        byId('busy', HTMLElement).classList.remove('on');
        const message = byId('message', HTMLElement);
        message.hidden = scene.error === '';
        message.textContent = this.texts.get('damaged', { cause: scene.error });
        this.layers.showCounts(scene.end?.layers ?? [], this.camera.unitsPerMillimetre);
        this.restoreLayers();
        this.setSearchItems();
        performance.mark('decoded');
    }

    /** The view is drawn as it should be. */
    completed() {
        if (this.pictures.waiting > 0) return;
        performance.mark('drawn');
        document.documentElement.dataset.drawn = String(this.page + 1);
        if (!this.pages.drawn.has(this.page)) {
            setTimeout(() => this.pages.drawSmall(this.page, this.renderer), 300);
        }
    }

    moved() {
        this.coordinates.showZoom(this.camera);
        delete document.documentElement.dataset.drawn;
        this.scheduler.moved();
    }

    redrawOverlay() {
        this.scheduler.request();
    }

    fit() {
        this.camera.fit();
        this.moved();
    }

    resize() {
        const { clientWidth, clientHeight } = byId('stage', HTMLElement);
        const { camera } = this;
        const showedAll = !this.fitted.has(camera) || camera.scale === camera.fitScale;
        camera.resize(Math.max(clientWidth, 1), Math.max(clientHeight, 1));
        if (showedAll) camera.fit();
        this.fitted.add(camera);
        this.moved();
    }

    /** @param {import('./scene.js').TextItem} match */
    visit(match) {
        const [left, low, right, high] = match.box;
        if (right >= left && high >= low) {
            this.camera.centreOn(match.box, Math.max(this.camera.scale, this.camera.scaleOf(1)));
        }
        this.moved();
    }

    // ------------------------------------------------------------------------------------- look

    layersChanged() {
        this.renderer.stylesChanged();
        delete document.documentElement.dataset.drawn;
        this.setSearchItems();
        this.scheduler.changed();
    }

    setSearchItems() {
        this.search.setItems((this.scene?.end?.texts ?? []).filter(({ layer }) => this.layers.isShown(layer)));
    }

    rememberLayers() {
        if (this.page < 0) return;
        this.shownOfPage[this.page] = [...this.layers.rows.values()].map(({ box }) => box.checked);
    }

    restoreLayers() {
        const shown = this.shownOfPage[this.page];
        if (!shown) return;
        const numbers = [...this.layers.rows.keys()];
        this.layers.set((layer, was) => shown[numbers.indexOf(layer)] ?? was);
    }

    widthsChanged() {
        this.renderer.widths = byId('widths', HTMLInputElement).checked;
        this.layersChanged();
    }

    turnPaper() {
        const dark = !this.scheduler.dark;
        this.scheduler.dark = dark;
        document.documentElement.classList.toggle('dark', dark);
        byId('paper', HTMLElement).setAttribute('aria-pressed', String(dark));
        this.layers.setPaper(dark);
        speak(this.texts.get(dark ? 'paperDark' : 'paperLight'));
        this.scheduler.request();
    }

    // ----------------------------------------------------------------------------------- output

    save() {
        const name = pngName(this.header.fileName, this.page + 1, this.header.pages.length);
        this.renderer.present(this.camera, this.scheduler.ratio, this.scheduler.dark);
        const overlay = byId('overlay', HTMLCanvasElement);
        const desk = getComputedStyle(byId('stage', HTMLElement)).backgroundColor;
        saveCanvases(this.overlay.isEmpty ? [this.canvas] : [this.canvas, overlay], desk, name);
        speak(this.texts.get('saved', { name }));
    }

    preparePrint() {
        preparePrint(this.header.pages[this.page], this.renderer);
    }
}

function startPage() {
    const texts = new Texts(navigator.languages);
    document.documentElement.lang = texts.language;
    texts.apply(document);
    makeHelp(texts);
    const header = readDocumentHeader(fromBase64(byId('document', HTMLScriptElement).textContent ?? ''));
    byId('file-name', HTMLElement).title = header.fileName;
    byId('file-format', HTMLElement).textContent = header.format;
    const problem = typeof DecompressionStream === 'undefined' ? 'old' : header.pages.length === 0 ? 'noPages' : null;
    if (problem) {
        const message = byId('message', HTMLElement);
        message.hidden = false;
        message.textContent = texts.get(problem);
        return;
    }
    new Viewer(header, texts).start();
}

if (typeof document === 'undefined') startWorker();
else startPage();
