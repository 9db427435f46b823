// The recommended rules and a few that bite in browsers. Run by scripts/test-viewer.
import js from '@eslint/js';

const browser = [
    'window', 'document', 'navigator', 'location', 'console', 'performance', 'self', 'setTimeout', 'URL', 'Blob',
    'Worker', 'TextDecoder', 'DecompressionStream', 'ImageData', 'ImageBitmap', 'createImageBitmap', 'DOMMatrix',
    'HTMLElement', 'HTMLInputElement', 'HTMLButtonElement', 'HTMLCanvasElement', 'HTMLScriptElement',
    'HTMLUListElement', 'HTMLDialogElement', 'ResizeObserver', 'WheelEvent', 'Intl', 'atob',
    'requestAnimationFrame', 'getComputedStyle', 'process', 'Buffer',
];

export default [
    js.configs.recommended,
    {
        languageOptions: { globals: Object.fromEntries(browser.map((name) => [name, 'readonly'])) },
        rules: {
            eqeqeq: 'error', 'no-var': 'error', 'prefer-const': 'error', 'no-implied-eval': 'error', 'no-eval': 'error',
            'no-new-func': 'error', 'no-restricted-properties': ['error',
                { property: 'innerHTML', message: 'Plot text must not become markup.' },
                { property: 'outerHTML', message: 'Plot text must not become markup.' },
                { property: 'insertAdjacentHTML', message: 'Plot text must not become markup.' },
                { object: 'document', property: 'write', message: 'Plot text must not become markup.' }],
        },
    },
];
