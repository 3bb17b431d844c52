// Reports what the user does, while the program has bound `tamrinTell` in this world; the page sees
// neither. Each message is a snapshot: the active element, its parent, its form and the form's
// default button.

const kFrames = new Set(['IFRAME', 'FRAME']);
const isFrame = (e) => e !== null && kFrames.has(capitalTag(e));
const kSubmitting = new Set(['submit', 'image']);
const formOf = (e) =>
    (!(e instanceof HTMLFormElement) && e.form instanceof HTMLFormElement ? e.form : null);

// The first submit button of an element's form. form.elements leaves image buttons out.
const defaultButtonOf = (e) => {
    const form = formOf(e);
    if (!form) return null;
    for (const button of select(document, 'input:default, button:default')) {
        if (kSubmitting.has(button.type) && formOf(button) === form) return button;
    }
    return null;
};

// The text of links and buttons; that of other elements may be the whole page.
const eventText = (e, tag) => {
    const parent = parentElement(e);
    const link = tag === 'BUTTON' || attribute(e, 'href') !== null ||
        (parent !== null && attribute(parent, 'href') !== null);
    return link ? innerTextOf(e) : null;
};

const addSnapshot = (fields, e) => {
    if (e === null) {
        for (let i = 0; i < kEventRow; ++i) fields.push(null);
        return;
    }
    const row = addRow(fields, e);
    setState(fields, row, e);
    fields[row + kSourceAttribute] = attribute(e, 'src');
    fields[row + kSource] = property(e, 'src');
    fields[row + kEventText] = eventText(e, capitalTag(e));
};

const tell = (event, e = active(document), detail = 0) => {
    if (!globalThis.tamrinTell) return;
    const fields = [];
    fields[kEvent] = event;
    fields[kDetail] = String(detail);
    fields[kAddress] = document.URL;
    fields[kHadFocus] = focused(document) ? '1' : '';
    addSnapshot(fields, e);
    addSnapshot(fields, e && parentElement(e));
    addSnapshot(fields, e && formOf(e));
    addSnapshot(fields, e && defaultButtonOf(e));
    globalThis.tamrinTell(packed(fields));
};

// The element whose focus was reported last. A window that gets the focus back focuses its element
// again; for the user the element never lost it.
let focus_told = null;

const tellFocus = () => {
    const e = active(document);
    if (e === focus_told) return;
    focus_told = e;
    tell('focusin');
};

// When the focus goes into a frame, the page gets no focusin, only a blur of its window. When it goes
// from one frame to another, the page gets nothing at all; then the frame calls this.
const tellFrameFocus = () => {
    if (isFrame(active(document))) tellFocus();
};

// A frame of another site reports itself by its index. It becomes the active element here a little
// later, after the leave event of the element before.
const kFrameTries = 20;
const kFrameTryMs = 5;
const enterFrame = (index, tries = kFrameTries) => {
    const e = active(document);
    if (isFrame(e) && e.contentWindow === window[index]) {
        tellFocus();
    } else if (tries > 0) {
        setTimeout(enterFrame, kFrameTryMs, index, tries - 1);
    }
};

const leaveTo = (event) => {
    // When another window takes the focus, the element stays the active one.
    if (active(document) === event.target) return;
    focus_told = null;
    const left = event.target instanceof Element ? event.target : null;
    tell('leave', left, event.relatedTarget ? 1 : 0);
};

const windowFocus = (event) => {
    if (event.target !== window) return;
    if (active(document) !== focus_told) focus_told = null;
    if (window === window.parent) return;
    try {
        window.parent.tamrin?.frameFocus();
    } catch {
        // The parent is a page of another site, which only the program can reach.
        tell('entered', active(document), frameIndex());
    }
};

// A click belongs to the active element when it goes there. Enter in a field makes the browser click
// the form's button while the field stays active: what the user did is press the key. A page can also
// keep the focus where it was when another element is clicked.
const isOfActive = (event) => {
    const e = active(document);
    return e === null || event.composedPath().includes(e);
};

const kWatched = {
    focusin: tellFocus,
    focusout: leaveTo,
    blur: (event) => event.target === window && tellFrameFocus(),
    focus: windowFocus,
    click: (event) => isOfActive(event) && tell('click'),
    keypress: (event) => tell('key', active(document), event.keyCode),
    submit: () => tell('submit'),
    beforeunload: () => tell('leaving'),
};
const onWatched = (event) => {
    if (globalThis.tamrinTell && event.isTrusted) kWatched[event.type](event);
};

// Runs before the page's own scripts, which might stop an event on its way to later listeners.
const attend = () => {
    for (const type of Object.keys(kWatched)) listen(window, type, onWatched, true);
};

// Needed again after document.open(), which removes the listeners.
const watch = () => {
    attend();
    const e = active(document);
    if (e !== document.body) focus_told = e;
};

const hush = () => {
    delete globalThis.tamrinTell;
};

if (globalThis.tamrinTell) watch();
else attend();
