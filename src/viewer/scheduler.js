// Scheduler: decides when what is drawn. A picture on the screen (a frame) shows the front moved to
// where the camera is; the exact view is drawn in steps short enough not to hold up frames.
// Test: tests/viewer/browser.test.js.

/** @typedef {import('./camera.js').Camera} Camera */
/** @typedef {import('./gl_renderer.js').GlRenderer | import('./canvas_renderer.js').CanvasRenderer} Renderer */

/** Instances of a step at the least and at first. */
const SMALLEST_STEP = 2000;
const FIRST_STEP = 20000;
/** Milliseconds without movement after which nobody moves the view. */
const REST_AFTER = 120;
/** A view drawn for a scale further off than this factor is not worth finishing. */
const MOST_SCALE_CHANGE = 1.6;

export class Scheduler {
    /**
     * @param {Renderer} renderer
     * @param {{frame: () => void, complete: () => void}} listeners told after each frame, and when
     *     the view is complete
     */
    constructor(renderer, listeners) {
        // The two renderers take their own kinds of targets and jobs.
        this.renderer = /** @type {import('./gl_renderer.js').GlRenderer} */ (renderer);
        this.listeners = listeners;
        /** @type {Camera | null} */
        this.camera = null;
        this.dark = false;
        /** @type {import('./gl_renderer.js').Job | null} */
        this.job = null;
        this.stale = true; // the front does not show what it should
        this.hasEnd = false; // the scene is complete
        this.requested = false;
        this.lastMove = 0;
        /** Instances a step: while somebody moves the view, and when nobody does. */
        this.stepSizes = { moving: FIRST_STEP, resting: FIRST_STEP };
        /** @type {'moving' | 'resting'} */
        this.pace = 'resting';
        this.stepStart = 0;
        this.stepInstances = 0;
    }

    get ratio() {
        return window.devicePixelRatio || 1;
    }

    /** The view moves. */
    moved() {
        this.lastMove = performance.now();
        this.request();
    }

    /** The content changed. */
    changed() {
        this.stale = true;
        if (this.job && this.hasEnd) this.job = null;
        this.request();
    }

    request() {
        if (this.requested) return;
        this.requested = true;
        requestAnimationFrame(() => {
            this.requested = false;
            this.frame();
        });
    }

    /** Everything is drawn as it should be. */
    get isSettled() {
        return !this.stale && !this.job && this.camera !== null &&
            (this.renderer.front.camera?.equals(this.camera) ?? false);
    }

    frame() {
        const { camera, renderer } = this;
        if (!camera) return;
        this.work(camera);
        const partial = this.job && !renderer.front.camera && this.job.target === renderer.back;
        if (partial) renderer.back.resolve();
        renderer.present(camera, this.ratio, this.dark, partial ? renderer.back : renderer.front);
        this.listeners.frame();
        if (!this.isSettled || this.wantsOverview) this.request();
    }

    /** @param {Camera} camera */
    work(camera) {
        const renderer = this.renderer;
        if (renderer.isBusy) return;
        this.measureStep();
        if (this.job && this.isOutdated(this.job)) {
            this.job.target.camera = null;
            this.job = null;
        }
        if (!this.job) this.job = this.newJob(camera);
        if (!this.job) return;
        this.pace = performance.now() - this.lastMove < REST_AFTER ? 'moving' : 'resting';
        this.stepStart = performance.now();
        this.stepInstances = renderer.step(this.job, this.stepSizes[this.pace]);
        // Without a graphics processor of its own the step is over now.
        if (!('fence' in renderer)) this.measureStep();
        if (renderer.isDone(this.job) && this.hasEnd) {
            const isView = this.job.target === renderer.back;
            renderer.finish(this.job);
            this.job = null;
            if (isView) {
                this.stale = false;
                this.listeners.complete();
            }
        }
    }

    /** Learns from how long the last step took. */
    measureStep() {
        const size = this.stepSizes[this.pace];
        if (this.stepInstances < size / 2) return;
        const part = (performance.now() - this.stepStart) / this.renderer.stepTimes[this.pace];
        const change = part > 1.2 ? Math.max(1 / part, 0.4) : part < 0.8 ? Math.min(1 / part, 1.7) : 1;
        this.stepSizes[this.pace] = Math.max(size * change, SMALLEST_STEP);
        this.stepInstances = 0;
    }

    /** @param {import('./gl_renderer.js').Job} job */
    isOutdated(job) {
        if (!this.camera || job.camera.page !== this.camera.page) return true;
        if (job.target === this.renderer.overview) {
            return performance.now() - this.lastMove < REST_AFTER;
        }
        const change = job.camera.scale / this.camera.scale;
        return change > MOST_SCALE_CHANGE || change < 1 / MOST_SCALE_CHANGE ||
            job.camera.width !== this.camera.width || job.camera.height !== this.camera.height;
    }

    get wantsOverview() {
        return this.hasEnd && this.renderer.overview.camera?.page !== this.camera?.page;
    }

    /** @param {Camera} camera */
    newJob(camera) {
        const { renderer } = this;
        if (this.stale || !renderer.front.camera?.equals(camera)) {
            return renderer.begin(camera.copy(), this.ratio, renderer.back);
        }
        if (this.wantsOverview) {
            const overview = camera.copy();
            overview.fit();
            return renderer.begin(overview, Math.min(this.ratio, 1), renderer.overview);
        }
        return null;
    }
}
