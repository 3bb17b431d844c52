// Clicks, other events, and values that are set as if the user had entered them.

// The element whose change event the browser itself has already sent since the last write.
let told = null;

const newClick = () => new MouseEvent('click', {
    bubbles: true, cancelable: true, composed: true, view: window, detail: 1,
});

// Runs the page's click handlers without the browser's own action. preventDefault must come after the
// last handler: at the window, or where a handler calls stopPropagation. After
// stopImmediatePropagation no listener of ours runs, and the browser acts all the same.
const fireClick = (e) => {
    const event = newClick();
    const end = (seen) => {
        const at_window =
            seen.currentTarget === window && seen.eventPhase === Event.BUBBLING_PHASE;
        if (seen === event && (at_window || seen.cancelBubble)) seen.preventDefault();
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
    told = null;
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
