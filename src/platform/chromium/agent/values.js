// Setting, as a user's input. The setters of this world are the browser's own: frameworks that
// watch the page's setters take the input event for the user's.

const kButtons = new Set(['button', 'submit', 'reset', 'image', 'hidden', 'checkbox', 'radio']);

const isFileField = (e) => e instanceof HTMLInputElement && e.type === 'file';

const putText = (e, value) => {
    const before = e.value;
    e.value = value;
    if (kButtons.has(e.type)) return true;
    // A browser answers a value that the field cannot hold with none, or with one of its own.
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
