// Programs and drawing targets of WebGL2.

/** @typedef {WebGL2RenderingContext} Gl */

/**
 * A program with its uniforms looked up once.
 * @typedef {{handle: WebGLProgram, at: Record<string, WebGLUniformLocation | null>}} Program
 */

/** @param {Gl} gl @param {string} vertex @param {string} fragment @returns {Program} */
export function makeProgram(gl, vertex, fragment) {
    const handle = gl.createProgram();
    for (const [type, text] of /** @type {[number, string][]} */ (
        [[gl.VERTEX_SHADER, vertex], [gl.FRAGMENT_SHADER, fragment]])) {
        const shader = gl.createShader(type);
        if (!shader) throw new Error('no shader');
        gl.shaderSource(shader, text);
        gl.compileShader(shader);
        gl.attachShader(handle, shader);
    }
    gl.linkProgram(handle);
    if (!gl.getProgramParameter(handle, gl.LINK_STATUS)) {
        const logs = gl.getAttachedShaders(handle)?.map((shader) => gl.getShaderInfoLog(shader));
        throw new Error(`shaders: ${gl.getProgramInfoLog(handle)} ${logs?.join(' ')}`);
    }
    /** @type {Program['at']} */
    const at = {};
    const count = gl.getProgramParameter(handle, gl.ACTIVE_UNIFORMS);
    for (let i = 0; i < count; i++) {
        const name = gl.getActiveUniform(handle, i)?.name ?? '';
        at[name] = gl.getUniformLocation(handle, name);
    }
    return { handle, at };
}

/** @param {Gl} gl @param {number} filter @returns {WebGLTexture} bound to unit 0 */
export function makeTexture(gl, filter) {
    const texture = gl.createTexture();
    gl.activeTexture(gl.TEXTURE0);
    gl.bindTexture(gl.TEXTURE_2D, texture);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, filter);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, filter);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_S, gl.CLAMP_TO_EDGE);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_T, gl.CLAMP_TO_EDGE);
    return texture;
}

/** Where views are drawn: a texture to show, with a stencil, optionally multisampled before. */
export class Target {
    /** @param {Gl} gl */
    constructor(gl) {
        this.gl = gl;
        this.texture = makeTexture(gl, gl.NEAREST);
        this.framebuffer = gl.createFramebuffer();
        this.stencil = gl.createRenderbuffer();
        this.sampled = gl.createFramebuffer();
        this.sampledColour = gl.createRenderbuffer();
        this.width = 0;
        this.height = 0;
        this.samples = -1;
        /** @type {import('./camera.js').Camera | null} what it shows; null: nothing */
        this.camera = null;
        this.linear = false;
    }

    /** @param {number} width @param {number} height @param {number} samples 0: none */
    resize(width, height, samples) {
        if (width === this.width && height === this.height && samples === this.samples) return;
        const gl = this.gl;
        this.width = width;
        this.height = height;
        this.samples = samples;
        this.camera = null;
        gl.activeTexture(gl.TEXTURE0);
        gl.bindTexture(gl.TEXTURE_2D, this.texture);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, width, height, 0, gl.RGBA, gl.UNSIGNED_BYTE, null);
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.framebuffer);
        gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, this.texture, 0);
        gl.bindRenderbuffer(gl.RENDERBUFFER, this.stencil);
        gl.renderbufferStorageMultisample(gl.RENDERBUFFER, samples, gl.DEPTH24_STENCIL8, width, height);
        gl.bindFramebuffer(gl.FRAMEBUFFER, samples > 0 ? this.sampled : this.framebuffer);
        gl.framebufferRenderbuffer(gl.FRAMEBUFFER, gl.DEPTH_STENCIL_ATTACHMENT, gl.RENDERBUFFER, this.stencil);
        if (samples === 0) return;
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.framebuffer);
        gl.framebufferRenderbuffer(gl.FRAMEBUFFER, gl.DEPTH_STENCIL_ATTACHMENT, gl.RENDERBUFFER, null);
        gl.bindRenderbuffer(gl.RENDERBUFFER, this.sampledColour);
        gl.renderbufferStorageMultisample(gl.RENDERBUFFER, samples, gl.RGBA8, width, height);
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.sampled);
        gl.framebufferRenderbuffer(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.RENDERBUFFER, this.sampledColour);
    }

    bind() {
        this.gl.bindFramebuffer(this.gl.FRAMEBUFFER, this.samples > 0 ? this.sampled : this.framebuffer);
        this.gl.viewport(0, 0, this.width, this.height);
    }

    /** White paper and no marks. */
    clear() {
        const gl = this.gl;
        this.bind();
        gl.disable(gl.SCISSOR_TEST);
        gl.colorMask(true, true, true, true);
        gl.clearColor(1, 1, 1, 1);
        gl.clearStencil(0);
        gl.clear(gl.COLOR_BUFFER_BIT | gl.STENCIL_BUFFER_BIT);
    }

    /** Brings multisampled dots into the texture. */
    resolve() {
        if (this.samples === 0) return;
        const gl = this.gl;
        gl.disable(gl.SCISSOR_TEST);
        gl.bindFramebuffer(gl.READ_FRAMEBUFFER, this.sampled);
        gl.bindFramebuffer(gl.DRAW_FRAMEBUFFER, this.framebuffer);
        gl.blitFramebuffer(0, 0, this.width, this.height, 0, 0, this.width, this.height,
            gl.COLOR_BUFFER_BIT, gl.NEAREST);
    }

    /** Binds the texture, smooth or with sharp dots. @param {number} unit @param {boolean} linear */
    use(unit, linear) {
        const gl = this.gl;
        gl.activeTexture(gl.TEXTURE0 + unit);
        gl.bindTexture(gl.TEXTURE_2D, this.texture);
        if (linear === this.linear) return;
        this.linear = linear;
        const filter = linear ? gl.LINEAR : gl.NEAREST;
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, filter);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, filter);
    }

    dispose() {
        const gl = this.gl;
        gl.deleteTexture(this.texture);
        gl.deleteFramebuffer(this.framebuffer);
        gl.deleteFramebuffer(this.sampled);
        gl.deleteRenderbuffer(this.stencil);
        gl.deleteRenderbuffer(this.sampledColour);
    }
}
