// Clicks, other events, and values that are set as if the user had entered them.

// Two marks that hold during one record; a record begins with a lookup, which drops them.
// The element whose onclick was fired, and whether its handlers prevented the browser's own action.
let fired = null;
// The element whose change event the browser itself has already sent.
let told = null;

const forget = () => {
    fired = null;
    told = null;
};

// A user's click runs the page's handlers once. The program fires onclick and then clicks, so the
// handlers are skipped in that second click and only the browser's own action is left.
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

// Runs the page's click handlers without the browser's own action, and remembers whether they
// prevented it. preventDefault must come after the last handler: at the window, or where a handler
// calls stopPropagation. After stopImmediatePropagation no listener of ours runs; then the browser
// has acted already, and the click that follows must not act again.
const fireClick = (e) => {
    fired = null;
    listen(window, 'click', mute, true);  // document.open() may have removed it
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

// The setters of the isolated world are the browser's own, so a framework that replaces the page's
// setters sees only the input event, as after a user's input.

const kButtons = new Set(['button', 'submit', 'reset', 'image', 'hidden', 'checkbox', 'radio']);

const isFileField = (e) => e instanceof HTMLInputElement && e.type === 'file';

const putText = (e, value) => {
    const before = e.value;
    e.value = value;
    if (kButtons.has(e.type)) return true;
    // A field that cannot hold the value becomes empty or takes a value of its own.
    const own = e.type === 'color' ? e.value !== value.toLowerCase()
        : e.type === 'range' && Number(e.value) !== Number(value);
    if ((value !== '' && e.value === '') || own) {
        e.value = before;
        return false;
    }
    tellInput(e, value);
    return true;
};

const putOption = (e, index) => {
    if (!Number.isInteger(index) || index < 0 || index >= e.options.length) return false;
    if (e.selectedIndex !== index) {
        e.selectedIndex = index;
        dispatch(e, new Event('input', {bubbles: true, composed: true}));
    }
    return true;
};

const putValue = (e, value) => {
    switch (capitalTag(e)) {
        case 'INPUT':
            return putText(e, value);
        case 'TEXTAREA':
            e.value = value;
            tellInput(e, value);
            return true;
        case 'SELECT':
            return putOption(e, Array.from(e.options, (o) => o.value).indexOf(value));
        case 'BUTTON':
            e.value = value;
            return true;
        default:
            if (!e.isContentEditable) return false;
            e.textContent = value;
            tellInput(e, value);
            return true;
    }
};

const putChecked = (e, want) => {
    if (capitalTag(e) !== 'INPUT' || (e.type !== 'checkbox' && e.type !== 'radio')) return false;
    told = null;
    if (e.checked === want) return true;
    if (!e.disabled && (want || e.type === 'checkbox')) {
        nativeClick(e);
        if (e.checked === want) told = e;
        return true;
    }
    e.checked = want;
    dispatch(e, new Event('input', {bubbles: true, composed: true}));
    return true;
};

const put = (e, name, value) => {
    switch (name) {
        case 'value':
            return putValue(e, value);
        case 'checked':
            return putChecked(e, value === 'True');
        case 'selectedIndex':
            return capitalTag(e) === 'SELECT' && putOption(e, value === '' ? NaN : Number(value));
        default:
            return false;
    }
};
