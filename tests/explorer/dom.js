// A page as the browser's objects answer it, small but honest: what is missing in the browser is
// missing here, what is Null there is null here. Names with two underscores are the double's own.
// A document of mode 11 answers as the standards say, an older one as the browser did of old.

var VOID = '|AREA|BASE|BR|COL|EMBED|FRAME|HR|IMG|INPUT|LINK|META|PARAM|';
var CONTROL = '|INPUT|SELECT|TEXTAREA|BUTTON|FIELDSET|';
var NAMED = '|INPUT|SELECT|TEXTAREA|BUTTON|FORM|A|IMG|IFRAME|FRAME|MAP|';

function has(list, tag) { return list.indexOf('|' + tag + '|') >= 0; }

function decode(text) {
    return text.replace(/&quot;/g, '"').replace(/&#39;/g, "'").replace(/&lt;/g, '<')
        .replace(/&gt;/g, '>').replace(/&amp;/g, '&');
}

// Collections know item and length; an item may be asked for by its place or by a name.
function Collection(items) {
    this.length = items.length;
    this.item = function (key) {
        if (typeof key == 'number') return key in items ? items[key] : null;
        var hits = [];
        for (var i = 0; i < items.length; ++i) {
            var attributes = items[i].__attributes;
            if (decode(attributes.id || '') == key || decode(attributes.name || '') == key)
                hits.push(items[i]);
        }
        return hits.length > 1 ? new Collection(hits) : hits.length ? hits[0] : null;
    };
}

function isBelow(e, root) {
    for (; e; e = e.parentElement) if (e == root) return true;
    return false;
}

function walk(root, visit) {
    for (var i = 0; i < root.__children.length; ++i) {
        var child = root.__children[i];
        if (child.__text !== undefined) continue;
        visit(child);
        walk(child, visit);
    }
}

function below(root, accept) {
    var hits = [];
    walk(root, function (e) { if (accept(e)) hits.push(e); });
    return hits;
}

function byTag(root, tag) {
    tag = tag.toUpperCase();
    return below(root, function (e) { return tag == '*' || e.__tag == tag; });
}

function textOf(e) {
    var text = '';
    for (var i = 0; i < e.__children.length; ++i) {
        var child = e.__children[i];
        text += child.__text !== undefined ? child.__text : textOf(child);
    }
    return text;
}

function typeOf(e) {
    var written = e.__attributes.type;
    if (e.__tag == 'SELECT') return 'multiple' in e.__attributes ? 'select-multiple' : 'select-one';
    if (e.__tag == 'TEXTAREA') return 'textarea';
    if (e.__tag == 'BUTTON') return written ? written.toLowerCase() : 'submit';
    var known = '|text|password|email|number|date|color|range|hidden|file|checkbox|radio|submit|reset|button|image|';
    return written && has(known, written.toLowerCase()) ? written.toLowerCase() : 'text';
}

function absolute(document, href) {
    var base = document.__base || document.URL;
    if (/^javascript:/i.test(href)) return href;
    href = encodeURI(decodeURI(href));
    if (/^[a-z]+:/i.test(href)) return href;
    if (href.charAt(0) == '/') return base.replace(/^([a-z]+:\/\/[^\/]*).*/, '$1') + href;
    if (href.charAt(0) == '#') return base.replace(/#.*/, '') + href;
    if (href.charAt(0) == '?') return base.replace(/[?#].*/, '') + href;
    return base.replace(/[^\/]*$/, '') + href;
}

function addControlMembers(e) {
    e.disabled = 'disabled' in e.__attributes;
    e.get_form = function () {
        for (var p = e.parentElement; p; p = p.parentElement) if (p.__tag == 'FORM') return p;
        return null;
    };
    if (e.__tag == 'SELECT') {
        e.selectedIndex = -1;
        e.get_options = function () { return new Collection(byTag(e, 'OPTION')); };
        e.get_length = function () { return e.get_options().length; };
        e.get_value = function () {
            var options = byTag(e, 'OPTION');
            return e.selectedIndex < 0 ? '' : options[e.selectedIndex].get_value();
        };
        e.put_value = function (value) {
            var options = byTag(e, 'OPTION');
            e.selectedIndex = -1;
            for (var i = options.length; i-- > 0;)
                if (options[i].get_value() == value) e.selectedIndex = i;
        };
    } else {
        var initial = e.__attributes.value;
        var toggles = e.__tag == 'INPUT' && /^(checkbox|radio)$/.test(typeOf(e));
        e.value = initial !== undefined ? decode(initial) : toggles ? 'on' : '';
        if (e.__tag == 'TEXTAREA' && e.document.documentMode >= 9)
            e.put_value = function (value) { e.value = String(value).replace(/\r\n?/g, '\n'); };
    }
    if (e.__tag == 'INPUT') {
        e.checked = 'checked' in e.__attributes;
        e.put_checked = function (value) {
            e.checked = !!value;
            if (!value || typeOf(e) != 'radio') return;
            walk(e.document.documentElement, function (other) {
                if (other != e && other.__tag == 'INPUT' && typeOf(other) == 'radio' &&
                    other.__attributes.name == e.__attributes.name) other.checked = false;
            });
        };
    }
    e.get_type = function () { return typeOf(e); };
}

function addFormMembers(e) {
    e.__kind = 'form';
    e.get_elements = function () {
        return new Collection(below(e, function (c) {
            return has(CONTROL, c.__tag) && !(c.__tag == 'INPUT' && typeOf(c) == 'image');
        }));
    };
    e.get_length = function () { return e.get_elements().length; };
}

// What an attribute is in a document of old: its value as the property has it.
function oldAttribute(e, name) {
    if (name.substr(0, 2) == 'on' && name in e.__attributes) return new Function(e.__attributes[name]);
    if (name in e.__attributes) return e.__attributes[name];
    return name == 'alt' || name == 'title' ? '' : name == 'disabled' ? false : null;
}

function addAttributeMembers(e, mode) {
    e.getAttribute = function (name, flags) {
        name = name.toLowerCase();
        if (mode < 8 && flags != 2) return oldAttribute(e, name);
        if (name in e.__attributes) return decode(e.__attributes[name]);
        return mode < 8 && (name == 'alt' || name == 'title') ? '' : null;
    };
    e.getAttributeNode = function (name) {
        name = name.toLowerCase();
        if (!(name in e.__attributes)) return mode < 8 ? {specified: false, nodeValue: ''} : null;
        return {specified: true, nodeValue: decode(e.__attributes[name])};
    };
}

function addEventMembers(e, mode) {
    if (mode < 11) {
        e.fireEvent = function (name) { return runHandlers(e, name, null); };
    }
    if (mode >= 9) {
        e.dispatchEvent = function (event) { return runHandlers(e, 'on' + event.type, event); };
    }
    e.click = function () {
        if (e.disabled) return;
        if (e.__tag == 'INPUT' && typeOf(e) == 'checkbox') e.checked = !e.checked;
        if (e.__tag == 'INPUT' && typeOf(e) == 'radio') e.put_checked(true);
        if (runHandlers(e, 'onclick', null)) followClick(e);
    };
}

// What the browser does for a click that no handler has vetoed.
function followClick(e) {
    for (var link = e; link; link = link.parentElement) {
        if (!has('|A|AREA|', link.__tag) || !('href' in link.__attributes)) continue;
        var href = absolute(e.document, decode(link.__attributes.href));
        if (/^javascript:/.test(href)) {
            new Function('document', 'say', href.substr(11))(e.document, e.document.__say);
        } else {
            host.navigate(e.document, href);
        }
        return;
    }
    var type = has('|INPUT|BUTTON|', e.__tag) && typeOf(e);
    var form = (type == 'submit' || type == 'image') && e.get_form();
    if (form && runHandlers(form, 'onsubmit', null)) submit(form, e);
}

function submit(form, button) {
    var parts = [];
    walk(form, function (e) {
        var name = e.__attributes.name;
        if (!name || !has(CONTROL, e.__tag)) return;
        if (/^(submit|image|button)$/.test(typeOf(e)) && e != button) return;
        if (/^(radio|checkbox)$/.test(typeOf(e)) && !e.checked) return;
        parts.push(name + '=' + encodeURIComponent(e.get_value ? e.get_value() : e.value)
            .replace(/%20/g, '+').replace(/(%0D)?%0A/g, '%0D%0A'));
    });
    host.navigate(form.document,
        absolute(form.document, form.__attributes.action || '') + '?' + parts.join('&'));
}

function Element(document, tag, attributes) {
    var e = this;
    e.tagName = e.__tag = tag;
    e.__attributes = attributes;
    e.__children = [];
    e.document = document;
    e.parentElement = null;
    e.get_id = function () { return decode(attributes.id || ''); };
    if (has(NAMED, tag)) e.get_name = function () { return decode(attributes.name || ''); };
    e.get_innerText = function () { return textOf(e).replace(/\s+/g, ' ').replace(/^ | $/g, ''); };
    e.get_sourceIndex = function () {
        var all = byTag(document.__root, '*');
        for (var i = 0; i < all.length; ++i) if (all[i] == e) return i;
        return -1;
    };
    e.getElementsByTagName = function (name) { return new Collection(byTag(e, name)); };
    e.contains = function (other) { return isBelow(other, e); };
    e.isContentEditable = 'contenteditable' in attributes;
    e.put_innerText = function (text) { e.__children = [{__text: String(text)}]; };
    e.get_outerHTML = function () { return '<' + tag + '>' + textOf(e) + '</' + tag + '>'; };
    e.clientLeft = e.clientTop = +(attributes['data-border'] || 0);
    e.scrollIntoView = function () { e.__scrolled = true; };
    e.getBoundingClientRect = function () {
        var box = (attributes['data-box'] || '0 0 0 0').split(' ');
        return {left: +box[0], top: +box[1], right: +box[2], bottom: +box[3]};
    };
    addAttributeMembers(e, document.documentMode);
    addEventMembers(e, document.documentMode);
    if (has(CONTROL, tag)) addControlMembers(e);
    if (tag == 'FORM') addFormMembers(e);
    if (tag == 'OPTION') {
        e.get_text = e.get_innerText;
        e.get_value = function () {
            return 'value' in attributes ? decode(attributes.value) : e.get_text();
        };
    }
    if (tag == 'LI') e.value = +(attributes.value || 0);
    if ((tag == 'A' || tag == 'AREA') && 'href' in attributes)
        e.get_href = function () {
            for (var p = e.parentElement; p; p = p.parentElement)
                if (p.__tag == 'SVG') return {baseVal: attributes.href};
            return absolute(document, decode(attributes.href));
        };
    if ((tag == 'IMG' || tag == 'IFRAME' || tag == 'FRAME' || tag == 'INPUT'))
        e.get_src = function () { return attributes.src ? absolute(document, attributes.src) : ''; };
}

// Runs a handler of the page at the element and above it, then tells those who listen from outside.
// Answers false for a veto.
function runHandlers(e, name, event) {
    var document = e.document;
    event = event || {type: name.substr(2), srcElement: e, keyCode: 0};
    event.srcElement = e;
    var goes_on = true;
    for (var at = e; at; at = at.parentElement) {
        var code = at.__attributes[name];
        if (code === undefined) continue;
        // A handler finds the members of its element and of the document by their bare names.
        code = 'with (document) with (this) {' + decode(code) + '}';
        var answer = new Function('event', 'document', 'say', code)
            .call(at, event, document, document.__say);
        if (answer === false) goes_on = false;
    }
    if (!host.fire(document, name, event)) goes_on = false;
    return goes_on;
}

function shadowMembers(document) {
    // A form's controls hide its members by their names, a page's forms and pictures the page's.
    // Under their numbers these stay what they are.
    var hide = function (object, name, e) {
        for (var prefix in {get_: 1, '': 1}) {
            if (!(prefix + name in object)) continue;
            object[prefix + '__own_' + name] = object[prefix + name];
            delete object[prefix + name];
        }
        object[name] = e;
    };
    walk(document.__root, function (e) {
        var name = e.__attributes.name;
        if (!name) return;
        var form = e.get_form && e.get_form();
        if (form && form != e) {
            hide(form, name, e);
        }
        if (has('|FORM|IMG|', e.__tag)) {
            hide(document, name, e);
        }
    });
}

// What a field holds that says so in its content.
function fillFields(document) {
    walk(document.__root, function (e) {
        if (e.__tag == 'TEXTAREA') e.value = textOf(e).replace(/\r?\n/g, '\n');
        if (e.__tag != 'SELECT') return;
        var options = byTag(e, 'OPTION');
        if (options.length && typeOf(e) == 'select-one') e.selectedIndex = 0;
        for (var i = 0; i < options.length; ++i)
            if ('selected' in options[i].__attributes) e.selectedIndex = i;
    });
}
