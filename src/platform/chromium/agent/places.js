// Sets the place of an element in its own viewport. Of a link that is broken into lines, the corner
// is that of the first line. Null when it is not displayed.
const setPlace = (fields, at, e) => {
    const rects = clientRects(e);
    if (rects.length === 0) {
        for (let i = 0; i < kPlaceFields; ++i) fields[at + i] = null;
        return;
    }
    const all = boundingRect(e);
    const first = Array.prototype.find.call(rects, (r) => r.width > 0 && r.height > 0) ?? all;
    fields[at + kLeft] = String(all.left);
    fields[at + kTop] = String(all.top);
    fields[at + kRight] = String(all.right);
    fields[at + kBottom] = String(all.bottom);
    fields[at + kCornerX] = String(first.left);
    fields[at + kCornerY] = String(first.top);
};

// Sets where this viewport stands. Climbs through the frames to the top, or to the first page of
// another site.
const setViewport = (fields, at) => {
    let x = 0, y = 0, zoom = 1, levels = 0, w = window;
    for (let frame = w.frameElement; frame; frame = w.frameElement) {
        const corner = contentCorner(frame);
        x = corner.x + x * corner.zoom;
        y = corner.y + y * corner.zoom;
        zoom *= corner.zoom;
        ++levels;
        w = w.parent;
    }
    const is_top = w.parent === w;
    fields[at + kLevels] = String(levels);
    fields[at + kOffsetX] = String(x);
    fields[at + kOffsetY] = String(y);
    fields[at + kIsTop] = is_top ? '1' : '';
    fields[at + kScreenX] = is_top ? String(w.screenX + (w.outerWidth - w.innerWidth) / 2) : '';
    fields[at + kScreenY] = is_top ? String(w.screenY + w.outerHeight - w.innerHeight) : '';
    fields[at + kPixelRatio] = is_top ? String(w.devicePixelRatio) : '';
    fields[at + kZoom] = String(zoom);
};

// The corner of a frame's page in the viewport of the page that holds the frame, and the size at
// which that page shows it (styles may zoom or scale it).
const contentCorner = (frame) => {
    const rect = boundingRect(frame);
    const zoom = frame.offsetWidth > 0 ? rect.width / frame.offsetWidth : 1;
    const style = frame.ownerDocument.defaultView.getComputedStyle(frame);
    return {
        x: rect.left + (frame.clientLeft + (parseFloat(style.paddingLeft) || 0)) * zoom,
        y: rect.top + (frame.clientTop + (parseFloat(style.paddingTop) || 0)) * zoom,
        zoom,
    };
};

const packPlace = (e) => {
    const fields = [];
    setViewport(fields, 0);
    setPlace(fields, kPlace, e);
    return packed(fields);
};

// The innermost element under the pointer, null when there is none. A hovered label makes its field
// match :hover as well, wherever the field is; with a label around its field the two cannot be told
// apart. For an element inside a shadow tree the answer is its host.
const hovered = () => {
    const all = Array.from(select(document, ':hover'));
    const labels = all.filter((e) => e instanceof HTMLLabelElement);
    const isLabelled = (e) => labels.some((label) => label.control === e && !label.contains(e));
    return all.findLast((e) => !isLabelled(e)) ?? null;
};

// The index of this page among the frames of its parent.
const frameIndex = (w = window) => {
    let i = 0;
    while (i < w.parent.length && w.parent[i] !== w) ++i;
    return i;
};

// The frame numbers that lead from the top page to this one: ".0.2".
const position = () => {
    let numbers = '';
    for (let w = window; w !== w.parent; w = w.parent) numbers = '.' + frameIndex(w) + numbers;
    return numbers;
};
