// Where an element stands in its own viewport, in CSS pixels: its edges, and the corner at which
// it begins to be seen (of a link that is broken into lines, that of its first line). All null when
// it is not displayed.
const addPlace = (packer, e) => {
    const rects = clientRects(e);
    if (rects.length === 0) {
        for (let i = 0; i < 6; ++i) packer.add(null);
        return;
    }
    const all = boundingRect(e);
    const first = Array.prototype.find.call(rects, (r) => r.width > 0 && r.height > 0) ?? all;
    for (const edge of [all.left, all.top, all.right, all.bottom, first.left, first.top]) {
        packer.add(String(edge));
    }
};

// Where this viewport stands: how many frames up the climb came before a page of another site or
// the top, the offset in there, whether that is the top, and if so its place on the screen (CSS
// pixels of the screen, and screen pixels to one of them); then how many pixels of that page one
// pixel of this one is.
const addViewport = (packer) => {
    let x = 0, y = 0, scale = 1, levels = 0, w = window;
    for (let frame = w.frameElement; frame; frame = w.frameElement) {
        const [left, top, zoom] = contentCorner(frame);
        x = left + x * zoom;
        y = top + y * zoom;
        scale *= zoom;
        ++levels;
        w = w.parent;
    }
    const is_top = w.parent === w;
    packer.add(String(levels));
    packer.add(String(x));
    packer.add(String(y));
    packer.add(is_top ? '1' : '');
    packer.add(is_top ? String(w.screenX + (w.outerWidth - w.innerWidth) / 2) : '');
    packer.add(is_top ? String(w.screenY + w.outerHeight - w.innerHeight) : '');
    packer.add(is_top ? String(w.devicePixelRatio) : '');
    packer.add(String(scale));
};

// The corner of a frame's page in the viewport of the page that holds the frame, and how large that
// page shows the frame's (styles may zoom or scale it).
const contentCorner = (frame) => {
    const rect = boundingRect(frame);
    const zoom = frame.offsetWidth > 0 ? rect.width / frame.offsetWidth : 1;
    const style = frame.ownerDocument.defaultView.getComputedStyle(frame);
    return [
        rect.left + (frame.clientLeft + (parseFloat(style.paddingLeft) || 0)) * zoom,
        rect.top + (frame.clientTop + (parseFloat(style.paddingTop) || 0)) * zoom,
        zoom,
    ];
};

const packPlace = (e) => {
    const packer = new Packer();
    addViewport(packer);
    addPlace(packer, e);
    return packer.toString();
};

// The innermost element under the pointer, null when there is none. A label hovers its field, too,
// wherever that stands; of a label around its field nothing tells the two apart. Of what stands in
// a shadow tree its host is answered.
const hovered = () => {
    const all = Array.from(select(document, ':hover'));
    const labels = all.filter((e) => e instanceof HTMLLabelElement);
    const isLabelled = (e) => labels.some((label) => label.control === e && !label.contains(e));
    return all.findLast((e) => !isLabelled(e)) ?? null;
};

// The number of this page among the frames of the page around it.
const frameIndex = (w = window) => {
    let i = 0;
    while (i < w.parent.length && w.parent[i] !== w) ++i;
    return i;
};

// The place of this page among the frames of the pages around it, from the top: ".0.2".
const position = () => {
    let numbers = '';
    for (let w = window; w !== w.parent; w = w.parent) numbers = '.' + frameIndex(w) + numbers;
    return numbers;
};
