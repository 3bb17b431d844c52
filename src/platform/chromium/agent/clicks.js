// What marks the acts of one record. A record begins with a lookup, which drops the marks.

// The element whose onclick was fired, and whether the browser's own action must not follow.
let fired = null;
// The element whose page was told of the change by the browser itself.
let told = null;

const forget = () => {
    fired = null;
    told = null;
};

// A person's click runs the page's handlers once. The program fires onclick and then clicks: the
// click that follows keeps the browser's own action only.
const mute = (event) => {
    if (!fired || !event.composedPath().includes(fired.element)) return;
    const {vetoed} = fired;
    fired = null;
    event.stopImmediatePropagation();
    if (vetoed) event.preventDefault();
};
listen(window, 'click', mute, true);

const newClick = () => new MouseEvent('click', {
    bubbles: true, cancelable: true, composed: true, view: window, detail: 1,
});

// Runs the page's click handlers without the browser's own action, and remembers their veto. The
// event must be stopped after the last handler has run: that is where its way ends, at the window
// or where a handler stopped it. A handler that stops even its neighbours leaves no place to stop
// the event; then the browser has acted already, and the click that follows must not again.
const fireClick = (e) => {
    fired = null;
    listen(window, 'click', mute, true);  // a page that rewrites itself has removed it
    const event = newClick();
    let ended = false, vetoed = true;
    const end = (seen) => {
        if (seen !== event || ended) return;
        const at_window =
            seen.currentTarget === window && seen.eventPhase === Event.BUBBLING_PHASE;
        if (!at_window && !seen.cancelBubble) return;
        ended = true;
        vetoed = seen.defaultPrevented;
        seen.preventDefault();
    };
    const way = [window];
    for (let node = e; node; node = parentNode(node) ?? node.host) way.push(node);
    for (const node of way) {
        for (const capture of [true, false]) listen(node, 'click', end, capture);
    }
    dispatch(e, event);
    for (const node of way) {
        for (const capture of [true, false]) unlisten(node, 'click', end, capture);
    }
    fired = {element: e, vetoed};
};

const kQuiet = new Set(['focus', 'blur', 'load', 'unload', 'mouseenter', 'mouseleave']);

const newEvent = (type) => {
    const init = {bubbles: !kQuiet.has(type), cancelable: true, composed: true};
    if (/^(mouse|dblclick|contextmenu)/.test(type)) {
        return new MouseEvent(type, {...init, view: window});
    }
    if (type.startsWith('key')) return new KeyboardEvent(type, {...init, view: window});
    if (/^(focus|blur)/.test(type)) return new FocusEvent(type, {...init, view: window});
    return new Event(type, init);
};

const tellInput = (e, data) => dispatch(e, new InputEvent('input', {
    bubbles: true, composed: true, inputType: 'insertReplacementText', data,
}));
