// SceneStore: the scenes of the pages, decoded when they are needed and kept while there is room.
import { Scene } from './scene.js';

/** @typedef {import('./scene.js').ScenePart} ScenePart */

/** Instances that scenes together may hold besides the one that is shown. */
const MOST_KEPT = 4e6;

export class SceneStore {
    /**
     * @param {import('./document_header.js').PageHeader[]} pages
     * @param {(page: number, scene: Scene) => void} grown a part of the scene has come
     */
    constructor(pages, grown) {
        this.pages = pages;
        this.grown = grown;
        /** @type {Map<number, Scene>} the least recently used first */
        this.scenes = new Map();
        /** @type {(request: import('./worker.js').PageRequest) => void} */
        this.open = () => {};
    }

    /** @param {number} page @returns {Scene} filled as its data are decoded */
    get(page) {
        let scene = this.scenes.get(page);
        if (scene) {
            this.scenes.delete(page);
        } else {
            scene = new Scene();
            const { counts, width, height } = this.pages[page];
            scene.mayHoldAreas = counts.areas + counts.rectangles + counts.circles > 0;
            const data = document.getElementById(`page${page}`)?.textContent ?? '';
            this.open({ page, data, size: Math.max(width, height) });
        }
        this.scenes.set(page, scene);
        this.forget(page);
        return scene;
    }

    /** @param {number} page that is to stay */
    forget(page) {
        let kept = 0;
        for (const [other, scene] of [...this.scenes].reverse()) {
            kept += scene.instances;
            if (other !== page && kept > MOST_KEPT && scene.end) this.scenes.delete(other);
        }
    }

    /** @param {ScenePart} part */
    receive(part) {
        const scene = this.scenes.get(part.page);
        if (!scene) return;
        scene.add(part);
        this.grown(part.page, scene);
    }
}
