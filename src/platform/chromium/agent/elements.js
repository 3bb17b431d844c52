// The page agent runs in every page and frame, in an isolated world beside the page's scripts, where
// the page cannot see it. It answers each of the program's questions in one round trip. The files of
// this folder are the body of one function; the program uses the calls in calls.js. The positions of
// an answer's fields (kId, kTagName, ...) come from fields.inc.

if (Object.hasOwn(globalThis, 'tamrin')) return;

// An element's name can hide a member of its form or document (<input name="id">,
// <img name="forms">), so members are taken from the prototypes.
const uncurry = (f) => Function.prototype.call.bind(f);
const method = (type, name) => uncurry(type.prototype[name]);
const getter = (type, name) =>
    uncurry(Object.getOwnPropertyDescriptor(type.prototype, name).get);

const tagName = getter(Element, 'tagName');
const attribute = method(Element, 'getAttribute');
const hasAttributes = method(Element, 'hasAttributes');
const clientRects = method(Element, 'getClientRects');
const boundingRect = method(Element, 'getBoundingClientRect');
const scrollTo = method(Element, 'scrollIntoView');
const isConnected = getter(Node, 'isConnected');
const parentNode = getter(Node, 'parentNode');
const parentElement = getter(Node, 'parentElement');
const textContent = getter(Node, 'textContent');
const innerText = getter(HTMLElement, 'innerText');
const outerHTML = getter(Element, 'outerHTML');
const nativeClick = method(HTMLElement, 'click');
const dispatch = method(EventTarget, 'dispatchEvent');
const listen = method(EventTarget, 'addEventListener');
const unlisten = method(EventTarget, 'removeEventListener');
const byName = method(Document, 'getElementsByName');
const byId = method(Document, 'getElementById');
const byTag = method(Document, 'getElementsByTagName');
const select = method(Document, 'querySelectorAll');
const forms = getter(Document, 'forms');
const links = getter(Document, 'links');
const active = getter(Document, 'activeElement');
const focused = method(Document, 'hasFocus');
const formElements = getter(HTMLFormElement, 'elements');

// The program knows elements by number. The table keeps no element alive.
const numbers = new WeakMap();
const table = [];

const numberOf = (element) => {
    let number = numbers.get(element);
    if (number === undefined) {
        number = table.length;
        table.push(new WeakRef(element));
        numbers.set(element, number);
    }
    return number;
};

// The element of a number, null when it is no longer in the page.
const elementOf = (number) => {
    const element = table[number]?.deref();
    return element && isConnected(element) ? element : null;
};

// An answer is an array of fields, texts and nulls. On the wire: their lengths (-1 for null), a
// semicolon, the texts end to end.
const packed = (fields) => {
    const lengths = fields.map((text) => (text === null ? -1 : text.length));
    return lengths.join() + ';' + fields.join('');
};

const pack = (...fields) => packed(fields);

const truth = (value) => pack(value ? '1' : '');

// What the automation model answers.

const kValued = new Set(['INPUT', 'TEXTAREA', 'SELECT', 'BUTTON', 'OPTION', 'DATA', 'PARAM']);
const kTyped = new Set(['INPUT', 'BUTTON', 'SELECT', 'TEXTAREA']);
const kLinking = new Set(['A', 'AREA']);
const kHolding = new Set(['IFRAME', 'FRAME', 'OBJECT', 'EMBED']);

const textOr = (value, other) => (typeof value === 'string' ? value : other);
const capitalTag = (e) => tagName(e).toUpperCase();
const valueOf = (e, tag) => {
    const value = kValued.has(tag) ? textOr(e.value, '') : '';
    // The lines of a text end in CR LF, as a form sends them; pages see them without the CR.
    return tag === 'TEXTAREA' ? value.replaceAll('\n', '\r\n') : value;
};
const typeOf = (e, tag) =>
    kTyped.has(tag) ? textOr(e.type, attribute(e, 'type')) : attribute(e, 'type');

const hrefOf = (e, tag) => {
    const href = attribute(e, 'href');
    return href !== null && kLinking.has(tag) ? textOr(e.href, href) : href;
};

const innerTextOf = (e) =>
    (e instanceof HTMLElement ? innerText(e) : textContent(e)) ?? '';

const checkedOf = (e, tag) => (tag === 'INPUT' ? (e.checked ? 'True' : 'False') : '');
const selectedOf = (e, tag) => (tag === 'SELECT' ? String(e.selectedIndex) : '');
const lengthOf = (e, tag) => (tag === 'SELECT' ? String(e.options.length) : '');

const property = (e, name) => {
    const tag = capitalTag(e);
    switch (name) {
        case 'id':
        case 'name':
            return attribute(e, name) ?? '';
        case 'tagName':
            return tag;
        case 'value':
            return valueOf(e, tag);
        case 'checked':
            return checkedOf(e, tag);
        case 'selectedIndex':
            return selectedOf(e, tag);
        case 'length':
            return lengthOf(e, tag);
        case 'innerText':
            return innerTextOf(e);
        case 'outerHTML':
            return outerHTML(e);
        case 'href':
            return hrefOf(e, tag) ?? '';
        case 'src':
            return e instanceof HTMLFormElement ? '' : textOr(e.src, attribute(e, 'src') ?? '');
        default:
            return '';
    }
};

// Adds a row with the keys of an element, and answers where it begins.
const addRow = (fields, e) => {
    const tag = capitalTag(e);
    const any = hasAttributes(e);
    const row = fields.length;
    fields[row + kNumber] = String(numberOf(e));
    fields[row + kId] = (any && attribute(e, 'id')) || '';
    fields[row + kName] = (any && attribute(e, 'name')) || '';
    fields[row + kTagName] = tag;
    fields[row + kValue] = valueOf(e, tag);
    fields[row + kHref] = any ? hrefOf(e, tag) : null;
    fields[row + kType] = any || kTyped.has(tag) ? typeOf(e, tag) : null;
    fields[row + kAlt] = any ? attribute(e, 'alt') : null;
    fields[row + kOnclick] = any ? attribute(e, 'onclick') : null;
    return row;
};

const setState = (fields, row, e) => {
    const tag = capitalTag(e);
    fields[row + kChecked] = checkedOf(e, tag);
    fields[row + kSelectedIndex] = selectedOf(e, tag);
    fields[row + kLength] = lengthOf(e, tag);
};

// Packs rows of elements; `add_more` sets what a row has besides the keys.
const packElements = (elements, add_more) => {
    const fields = [];
    fields[kCount] = String(elements.length);
    for (const e of elements) {
        const row = addRow(fields, e);
        add_more?.(fields, row, e);
    }
    return packed(fields);
};

const packElement = (e) => packElements(e ? [e] : []);
