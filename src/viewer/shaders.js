// The WebGL2 programs: strokes (lines and triangles pulled from data textures), pictures, and the
// one that puts the drawn view on the canvas.

/** Four corners an instance; their data come from textures, because software renderers draw
 * instanced geometry one by one. MODE 0 draws, 1 marks the stencil, 2 covers all that is marked. */
export const STROKE_VERTEX = `#version 300 es
precision highp float;
precision highp int;
precision highp sampler2D;
precision highp usampler2D;
uniform sampler2D segments;
uniform usampler2D codes;
uniform sampler2D extras;
uniform sampler2D styles;
uniform ivec2 place;
uniform bool hasExtras;
uniform int mode;
uniform mat2 turn;
uniform vec2 shift;
uniform vec2 viewport;
uniform vec4 pen;
flat out vec4 colour;
flat out vec4 line;
flat out ivec4 look;
flat out vec4 pattern;
out vec2 local;
vec4 onScreen(vec2 p) {
    return vec4(2.0 * p.x / viewport.x - 1.0, 1.0 - 2.0 * p.y / viewport.y, 0.0, 1.0);
}
void main() {
    ivec2 at = ivec2(place.x + (gl_VertexID >> 2), place.y);
    int corner = gl_VertexID & 3;
    uint code = texelFetch(codes, at, 0).x;
    int style = int(code & 0xffffffu);
    ivec2 texel = ivec2((style & 255) << 2, style >> 8);
    vec4 drawn = texelFetch(styles, texel, 0);
    vec4 filled = texelFetch(styles, texel + ivec2(1, 0), 0);
    bool triangle = (code & 0x10000000u) != 0u;
    bool area = triangle && (code & 0x20000000u) == 0u;
    colour = vec4(area ? filled.rgb : drawn.rgb, 1.0);
    pattern = vec4(0.0);
    line = vec4(0.0);
    look = ivec4(-1, 0, 0, 0);
    local = vec2(0.0);
    if (filled.a == 0.0) {
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
        return;
    }
    if (area) pattern = texelFetch(styles, texel + ivec2(3, 0), 0);
    if (mode == 2) {
        vec2 p = vec2((corner & 1) == 0 ? 0.0 : viewport.x, corner < 2 ? 0.0 : viewport.y);
        local = inverse(turn) * (p - shift);
        gl_Position = onScreen(p);
        return;
    }
    vec4 ends = texelFetch(segments, at, 0);
    vec4 extra = hasExtras ? texelFetch(extras, at, 0) : vec4(0.0);
    if (triangle) {
        local = corner == 0 ? ends.xy : corner == 1 ? ends.zw : extra.xy;
        gl_Position = onScreen(turn * local + shift);
        return;
    }
    vec2 from = turn * ends.xy + shift;
    vec2 to = turn * ends.zw + shift;
    float width = pen.z > 0.0 ? 0.0 : drawn.a * pen.x;
    if (width < pen.y) {
        if (width > 0.0) colour.a = 0.5 + 0.5 * width / pen.y;
        width = pen.y;
    }
    float halfWidth = 0.5 * width;
    vec2 along = to - from;
    float size = length(along);
    along = size > 0.0 ? along / size : vec2(1.0, 0.0);
    ivec2 caps = ivec2(code >> 24, code >> 26) & 3;
    float before = caps.x == 2 ? halfWidth : 0.0;
    float after = caps.y == 2 ? halfWidth : 0.0;
    from -= along * before;
    size += before + after;
    vec4 dashes = texelFetch(styles, texel + ivec2(2, 0), 0);
    look = ivec4(caps, int(dashes.x), dashes.z * pen.x < 2.0 ? 0 : int(dashes.y));
    if (dashes.z > 0.0 && look.w == 0) colour.a *= 0.6;
    line = vec4(size, halfWidth, extra.z - before / pen.x, dashes.z);
    float reach = halfWidth + 1.0;
    local = vec2((corner & 1) == 0 ? -reach : size + reach, corner < 2 ? -reach : reach);
    gl_Position = onScreen(from + along * local.x + vec2(-along.y, along.x) * local.y);
}
`;

/** Coverage is the distance to the line's edge, so that edges are smooth without multisampling. */
export const STROKE_FRAGMENT = `#version 300 es
precision highp float;
precision highp int;
precision highp sampler2D;
uniform sampler2D dashes;
uniform sampler2D atlas;
uniform int mode;
uniform int blend;
uniform vec2 origin;
uniform vec4 pen;
flat in vec4 colour;
flat in vec4 line;
flat in ivec4 look;
flat in vec4 pattern;
in vec2 local;
out vec4 result;
float edge(float x, int cap) {
    return cap == 0 ? length(vec2(max(x, 0.0), local.y)) - line.y : max(x, abs(local.y) - line.y);
}
float inkOfPattern() {
    float dots = 1016.0 / 300.0;
    if (dots * pen.x < 0.7) return pattern.w;
    vec2 cell = mod(floor(vec2(local.x + origin.x, -local.y - origin.y) / dots), pattern.yz);
    return texelFetch(atlas, ivec2(cell) + ivec2(0, int(pattern.x)), 0).r;
}
float distanceToDash() {
    float at = mod(line.z + local.x / pen.x, line.w);
    float best = line.w;
    float start = 0.0;
    for (int i = 0; i < look.w; i += 2) {
        int a = look.z + i;
        float dash = texelFetch(dashes, ivec2(a & 255, a >> 8), 0).r;
        float gap = texelFetch(dashes, ivec2((a + 1) & 255, (a + 1) >> 8), 0).r;
        float end = start + dash;
        best = min(best, max(start - at, at - end));
        best = min(best, max(start + line.w - at, at - end - line.w));
        best = min(best, max(start - line.w - at, at - end + line.w));
        start = end + gap;
    }
    return best * pen.x;
}
void main() {
    float ink = colour.a;
    if (look.x < 0) {
        if (pattern.y > 0.0) ink *= inkOfPattern();
    } else {
        float outside = local.x < 0.5 * line.x ? edge(-local.x, look.x) : edge(local.x - line.x, look.y);
        if (look.w > 0) {
            int cap = look.x == 1 || look.y == 1 ? 1 : 0;
            outside = max(outside, edge(distanceToDash(), cap));
        }
        ink *= clamp(0.5 - outside, 0.0, 1.0);
    }
    if (mode == 1 && ink < 0.5) discard;
    if (ink <= 0.0) discard;
    vec3 mixed = colour.rgb * ink;
    result = blend == 1 ? vec4(mixed + 1.0 - ink, 1.0) : vec4(mixed, blend == 2 ? 1.0 : ink);
}
`;

export const PICTURE_VERTEX = `#version 300 es
precision highp float;
uniform mat2 turn;
uniform vec2 shift;
uniform vec2 viewport;
uniform vec4 box;
out vec2 at;
void main() {
    vec2 unit = vec2(gl_VertexID & 1, gl_VertexID >> 1);
    vec2 p = turn * mix(box.xy, box.zw, unit) + shift;
    at = vec2(unit.x, 1.0 - unit.y);
    gl_Position = vec4(2.0 * p.x / viewport.x - 1.0, 1.0 - 2.0 * p.y / viewport.y, 0.0, 1.0);
}
`;

export const PICTURE_FRAGMENT = `#version 300 es
precision highp float;
uniform sampler2D picture;
uniform int blend;
in vec2 at;
out vec4 result;
void main() {
    vec4 dot = texture(picture, at);
    if (dot.a <= 0.0) discard;
    result = blend == 1 ? vec4(dot.rgb + 1.0 - dot.a, 1.0) : blend == 2 ? vec4(dot.rgb, 1.0) : dot;
}
`;

export const SHOW_VERTEX = `#version 300 es
precision highp float;
uniform vec2 viewport;
out vec2 at;
void main() {
    vec2 unit = vec2(gl_VertexID & 1, gl_VertexID >> 1);
    at = unit * viewport;
    gl_Position = vec4(2.0 * unit.x - 1.0, 1.0 - 2.0 * unit.y, 0.0, 1.0);
}
`;

/** The view as last drawn, moved to where the camera is now; around it the overview of the page. */
export const SHOW_FRAGMENT = `#version 300 es
precision highp float;
uniform sampler2D front;
uniform sampler2D overview;
uniform vec4 frontPlace;
uniform vec4 overviewPlace;
uniform vec4 sheet;
uniform bool dark;
in vec2 at;
out vec4 result;
bool inside(vec2 p) {
    return p.x >= 0.0 && p.y >= 0.0 && p.x <= 1.0 && p.y <= 1.0;
}
void main() {
    if (at.x < sheet.x || at.y < sheet.y || at.x > sheet.z || at.y > sheet.w) {
        result = vec4(0.0);
        return;
    }
    vec2 p = at * frontPlace.xy + frontPlace.zw;
    vec2 q = at * overviewPlace.xy + overviewPlace.zw;
    vec3 colour = vec3(1.0);
    if (inside(p)) colour = texture(front, vec2(p.x, 1.0 - p.y)).rgb;
    else if (inside(q)) colour = texture(overview, vec2(q.x, 1.0 - q.y)).rgb;
    if (dark) {
        float most = max(max(colour.r, colour.g), colour.b);
        float least = min(min(colour.r, colour.g), colour.b);
        colour = 0.09 + 0.91 * (colour + 1.0 - most - least);
    }
    result = vec4(colour, 1.0);
}
`;
