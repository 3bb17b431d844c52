// The functions that the program calls. Each returns a packed list of fields.
const tamrin = {
    all: (tag) => packElements(byTag(document, tag)),

    named: (name) => {
        const groups = [byName(document, name), byId(document, name), []];
        groups[1] = groups[1] ? [groups[1]] : [];
        for (const form of forms(document)) {
            const hit = formElements(form).namedItem(name);
            if (hit) groups[2].push(hit instanceof Element ? hit : hit[0]);
        }
        const fields = [];
        fields[kByName] = String(groups[0].length);
        fields[kById] = String(groups[1].length);
        fields[kInForms] = String(groups[2].length);
        setViewport(fields, kNamedViewport);
        for (const group of groups) {
            for (const e of group) {
                const row = addRow(fields, e);
                setState(fields, row, e);
                setPlace(fields, row + kRowPlace, e);
            }
        }
        return packed(fields);
    },

    links: () => packElements(links(document), (fields, row, e) => {
        fields[row + kInnerText] = innerTextOf(e);
    }),

    active: () => packElement(active(document)),

    frames: () => {
        const holders = new Map();
        for (const e of select(document, 'iframe, frame, object, embed')) {
            if (e.contentWindow) holders.set(e.contentWindow, e);
        }
        const indexes = new Map();
        for (let i = 0; i < window.length; ++i) {
            const e = holders.get(window[i]);
            if (e) indexes.set(e, i);
        }
        return packElements(Array.from(indexes.keys()), (fields, row, e) => {
            fields[row + kFrameIndex] = String(indexes.get(e));
        });
    },

    position: () => pack(position()),

    // The position of this page and the innermost element under the pointer; when that holds a
    // frame, also the frame's index.
    hovered: () => {
        const e = hovered();
        const fields = [];
        fields[kPosition] = position();
        fields[kHoveredCount] = e ? '1' : '0';
        if (e) {
            const row = addRow(fields, e);
            const holds = kHolding.has(capitalTag(e)) && e.contentWindow;
            fields[row + kFrameIndex] = holds ? String(frameIndex(e.contentWindow)) : '';
        }
        return packed(fields);
    },

    hasFocus: () => truth(focused(document)),
    url: () => pack(document.URL),

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

    // Functions of one element, called by `of`.
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
    // To the middle where it fits, away from bars that cover the edges of the page.
    scroll: (e) => {
        const fits = boundingRect(e).height < window.innerHeight;
        scrollTo(e, {block: fits ? 'center' : 'start', inline: 'nearest', behavior: 'instant'});
        return packPlace(e);
    },
    content: (e) => {
        const fields = [];
        setViewport(fields, 0);
        const {x, y, zoom} = contentCorner(e);
        fields[kFrameX] = String(x);
        fields[kFrameY] = String(y);
        fields[kFrameZoom] = String(zoom);
        return packed(fields);
    },
    // A script cannot set a file: "file" asks the program to do it.
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

// Calls a function of one element by the element's number; '' when the element is gone.
tamrin.of = (number, name, ...args) => {
    const e = elementOf(number);
    return e ? tamrin[name](e, ...args) : '';
};

// The element itself, for the program to set a file; the browser sends the change event.
tamrin.fileInput = (number) => (told = elementOf(number));

// The one file that the user has chosen in a file field, whose place only the program learns.
tamrin.chosenFile = (number) => {
    const files = elementOf(number)?.files;
    return files?.length === 1 ? files[0] : null;
};

// The element itself, scrolled into view, for the browser to highlight.
tamrin.outlined = (number) => {
    const e = elementOf(number);
    if (e) tamrin.scroll(e);
    return e;
};

// The browser itself acts on some keys, unless a handler of the page prevents it.
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
