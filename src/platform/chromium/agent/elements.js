// Elements are known to the program by number. The table keeps no element alive.
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

// Collects texts for one answer: their lengths (-1 for null), a semicolon, the texts end to end.
class Packer {
    lengths = [];
    texts = [];

    add(text) {
        if (text === null) {
            this.lengths.push(-1);
        } else {
            this.lengths.push(text.length);
            if (text.length) this.texts.push(text);
        }
    }

    toString() {
        return this.lengths.join() + ';' + this.texts.join('');
    }
}

const pack = (...texts) => {
    const packer = new Packer();
    for (const text of texts) packer.add(text);
    return packer.toString();
};

const truth = (value) => pack(value ? '1' : '');

// The answers of the automation model.

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

// The keys of an element, in the order of the program's ElementKey.
const addKeys = (packer, e) => {
    const tag = capitalTag(e);
    const any = hasAttributes(e);
    packer.add(String(numberOf(e)));
    packer.add((any && attribute(e, 'id')) || '');
    packer.add((any && attribute(e, 'name')) || '');
    packer.add(tag);
    packer.add(valueOf(e, tag));
    packer.add(any ? hrefOf(e, tag) : null);
    packer.add(any || kTyped.has(tag) ? typeOf(e, tag) : null);
    packer.add(any ? attribute(e, 'alt') : null);
    packer.add(any ? attribute(e, 'onclick') : null);
};

const packElements = (elements, add_more) => {
    const packer = new Packer();
    packer.add(String(elements.length));
    for (const e of elements) {
        addKeys(packer, e);
        add_more?.(packer, e);
    }
    return packer.toString();
};

const packElement = (e) => packElements(e ? [e] : []);
