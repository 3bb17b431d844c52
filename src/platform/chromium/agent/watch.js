// Tells the program what the user does, while it has bound `tamrinTell` in this world; the page
// sees neither. Each message brings the moment: the active element, its parent, its form and the
// form's default button.

const kFrames = new Set(['IFRAME', 'FRAME']);
const isFrame = (e) => e !== null && kFrames.has(capitalTag(e));
const kSubmitting = new Set(['submit', 'image']);
const formOf = (e) =>
    (!(e instanceof HTMLFormElement) && e.form instanceof HTMLFormElement ? e.form : null);

// The first submit button of the form of an element. The form's own list of its elements leaves
// images out.
const defaultButtonOf = (e) => {
    const form = formOf(e);
    if (!form) return null;
    for (const button of select(document, 'input:default, button:default')) {
        if (kSubmitting.has(button.type) && formOf(button) === form) return button;
    }
    return null;
};

// The text of links and buttons; that of other elements may be the whole page.
const momentText = (e, tag) => {
    const parent = parentElement(e);
    const link = tag === 'BUTTON' || attribute(e, 'href') !== null ||
        (parent !== null && attribute(parent, 'href') !== null);
    return link ? innerTextOf(e) : null;
};

const kMomentFields = 15;
const addMoment = (packer, e) => {
    if (e === null) {
        for (let i = 0; i < kMomentFields; ++i) packer.add(null);
        return;
    }
    const tag = capitalTag(e);
    addKeys(packer, e);
    packer.add(checkedOf(e, tag));
    packer.add(selectedOf(e, tag));
    packer.add(lengthOf(e, tag));
    packer.add(attribute(e, 'src'));
    packer.add(property(e, 'src'));
    packer.add(momentText(e, tag));
};

const tell = (kind, e = active(document), key = 0) => {
    if (!globalThis.tamrinTell) return;
    const packer = new Packer();
    packer.add(kind);
    packer.add(String(key));
    packer.add(document.URL);
    packer.add(focused(document) ? '1' : '');
    addMoment(packer, e);
    addMoment(packer, e && parentElement(e));
    addMoment(packer, e && formOf(e));
    addMoment(packer, e && defaultButtonOf(e));
    globalThis.tamrinTell(packer.toString());
};

// The element whose focus was told last. A window that gets the focus back focuses its element
// once more; for the user it has never left.
let focus_told = null;

const tellFocus = () => {
    const e = active(document);
    if (e === focus_told) return;
    focus_told = e;
    tell('focusin');
};

// A page is not told that the focus goes into one of its frames, but that its window has lost it,
// and nothing at all when it goes from one frame to another: then the frame says so.
const tellFrameFocus = () => {
    if (isFrame(active(document))) tellFocus();
};

// A frame of another site says so by its number; here it becomes the active element a little later,
// and what was active is left before.
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
    // Where another window takes the focus the element stays the active one.
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
        // A page of another site, which only the program can reach.
        tell('entered', active(document), frameIndex());
    }
};

// Enter in a field has the browser click the form's button. The user's act is the key.
const isEnter = (event) => event.detail === 0 && event.target !== active(document) &&
    kSubmitting.has(event.target.type);

const kWatched = {
    focusin: tellFocus,
    focusout: leaveTo,
    blur: (event) => event.target === window && tellFrameFocus(),
    focus: windowFocus,
    click: (event) => isEnter(event) || tell('click'),
    keypress: (event) => tell('key', active(document), event.keyCode),
    submit: () => tell('submit'),
    beforeunload: () => tell('leaving'),
};
const onWatched = (event) => {
    if (globalThis.tamrinTell && event.isTrusted) kWatched[event.type](event);
};

// Before the page's own scripts, one of which might keep an event from those behind it.
const attend = () => {
    for (const type of Object.keys(kWatched)) listen(window, type, onWatched, true);
};

// Also after the page has rewritten itself, which takes the listeners away.
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
