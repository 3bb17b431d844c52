// What the program calls. Each answers a packed list of texts.
const tamrin = {
    all: (tag) => {
        forget();
        return packElements(byTag(document, tag));
    },

    named: (name) => {
        forget();
        const groups = [byName(document, name), byId(document, name), []];
        groups[1] = groups[1] ? [groups[1]] : [];
        for (const form of forms(document)) {
            const hit = formElements(form).namedItem(name);
            if (hit) groups[2].push(hit instanceof Element ? hit : hit[0]);
        }
        const packer = new Packer();
        for (const group of groups) packer.add(String(group.length));
        addViewport(packer);
        for (const group of groups) {
            for (const e of group) {
                const tag = capitalTag(e);
                addKeys(packer, e);
                packer.add(checkedOf(e, tag));
                packer.add(selectedOf(e, tag));
                packer.add(lengthOf(e, tag));
                addPlace(packer, e);
            }
        }
        return packer.toString();
    },

    links: () => {
        forget();
        return packElements(links(document), (packer, e) => packer.add(innerTextOf(e)));
    },

    active: () => {
        forget();
        return packElement(active(document));
    },

    frames: () => {
        forget();
        const holders = new Map();
        for (const e of select(document, 'iframe, frame, object, embed')) {
            if (e.contentWindow) holders.set(e.contentWindow, e);
        }
        const elements = [];
        for (let i = 0; i < window.length; ++i) {
            const e = holders.get(window[i]);
            if (e) elements.push([i, e]);
        }
        const packer = new Packer();
        packer.add(String(elements.length));
        for (const [index, e] of elements) {
            addKeys(packer, e);
            packer.add(String(index));
        }
        return packer.toString();
    },

    position: () => pack(position()),

    // The place of this page and the innermost element under the pointer, with the index of its
    // page among the frames when it holds one.
    hovered: () => {
        const e = hovered();
        const packer = new Packer();
        packer.add(position());
        packer.add(e ? '1' : '0');
        if (e) {
            addKeys(packer, e);
            packer.add(kHolding.has(capitalTag(e)) && e.contentWindow
                ? String(frameIndex(e.contentWindow)) : '');
        }
        return packer.toString();
    },

    hasFocus: () => truth(focused(document)),
    url: () => pack(document.URL),
    viewport: () => {
        const packer = new Packer();
        addViewport(packer);
        return packer.toString();
    },
    forget: () => {
        forget();
        return truth(true);
    },

    watch: () => {
        watch();
        return truth(true);
    },
    hush: () => {
        hush();
        return truth(true);
    },
    frameFocus: () => {
        tellFrameFocus();
        return truth(true);
    },
    enterFrame: (index) => {
        enterFrame(index);
        return truth(true);
    },

    // Of one element. Each answers an empty list when it is gone.
    get: (e, name) => pack(property(e, name)),
    attribute: (e, name) => {
        const tag = capitalTag(e);
        const lower = name.toLowerCase();
        if (lower === 'type') return pack(typeOf(e, tag));
        return pack(lower === 'href' ? hrefOf(e, tag) : attribute(e, name));
    },
    parent: (e) => packElement(parentElement(e)),
    form: (e) => packElement(formOf(e)),
    defaultButton: (e) => packElement(defaultButtonOf(e)),
    options: (e) =>
        (e instanceof HTMLSelectElement ? pack('', ...Array.from(e.options, (o) => o.text))
                                        : pack('')),
    place: packPlace,
    // In the middle where it fits, clear of bars that lie over the edges of the page.
    scroll: (e) => {
        const fits = boundingRect(e).height < window.innerHeight;
        scrollTo(e, {block: fits ? 'center' : 'start', inline: 'nearest', behavior: 'instant'});
        return packPlace(e);
    },
    content: (e) => {
        const packer = new Packer();
        addViewport(packer);
        for (const edge of contentCorner(e)) packer.add(String(edge));
        return packer.toString();
    },
    // A file cannot be put by a script: "file" asks the program to do it.
    put: (e, name, value) => (isFileField(e) ? pack('file') : truth(put(e, name, value))),
    change: (e, name, value) => {
        if (isFileField(e)) return pack('file');
        return put(e, name, value) ? tamrin.fire(e, 'change') : truth(false);
    },
    fire: (e, type) => {
        if (type === 'click') {
            fireClick(e);
        } else if (type !== 'change' || told !== e) {
            dispatch(e, newEvent(type));
        }
        told = null;
        return truth(true);
    },
    click: (e) => {
        if (e instanceof HTMLElement) nativeClick(e);
        else dispatch(e, newClick());
        return truth(true);
    },
};

// Calls a function of one element by the element's number.
tamrin.of = (number, name, ...args) => {
    const e = elementOf(number);
    return e ? tamrin[name](e, ...args) : '';
};

// The element itself, for a file to be put into it; the browser tells the page of the change.
tamrin.fileInput = (number) => (told = elementOf(number));

// The element itself, for the browser to draw round it where it is seen.
tamrin.outlined = (number) => {
    const e = elementOf(number);
    if (e) tamrin.scroll(e);
    return e;
};

// Some keys the browser itself acts on, unless a handler of the page has prevented it.
let key_event = null;
const seeKey = (event) => {
    key_event = event;
};
tamrin.watchKeys = () => {
    key_event = null;
    listen(window, 'keydown', seeKey, true);
    return truth(true);
};
tamrin.keyTaken = () => {
    unlisten(window, 'keydown', seeKey, true);
    return truth(key_event?.defaultPrevented);
};

Object.defineProperty(globalThis, 'tamrin', {value: tamrin});
