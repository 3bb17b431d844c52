// Documents and windows made of the elements, and what a user does in them.

function alert() { host.box('alert'); }
function confirm() { return host.box('confirm'); }

var ENDED_BY = {OPTION: '|OPTION|', OPTGROUP: '|OPTION|OPTGROUP|', LI: '|LI|'};

function parse(document, html) {
    var root = {__children: []};
    var stack = [root];
    var token = /<!--[^]*?-->|<!doctype[^>]*>|<\/([a-z0-9]+)>|<([a-z0-9]+)((?:"[^"]*"|'[^']*'|[^>"'])*)>|[^<]+/gi;
    var match;
    while ((match = token.exec(html)) !== null) {
        var top = stack[stack.length - 1];
        if (match[2]) {
            var tag = match[2].toUpperCase();
            // Options and what groups them end where the next one begins.
            while (ENDED_BY[tag] && has(ENDED_BY[tag], top.__tag)) {
                stack.pop();
                top = stack[stack.length - 1];
            }
            var e = new Element(document, tag, attributesOf(match[3]));
            e.parentElement = top == root ? null : top;
            top.__children.push(e);
            if (tag == 'SCRIPT') {
                // What stands in a script is no page, whatever it looks like.
                var end = html.indexOf('</script>', token.lastIndex);
                e.__children.push({__text: html.substring(token.lastIndex, end)});
                token.lastIndex = end + '</script>'.length;
            } else if (!has(VOID, tag)) {
                stack.push(e);
            }
        } else if (match[1]) {
            closeTag(stack, match[1].toUpperCase());
        } else if (match[0].charAt(0) != '<') {
            top.__children.push({__text: decode(match[0])});
        }
    }
    return root;
}

function closeTag(stack, tag) {
    for (var i = stack.length; i-- > 1;) {
        if (stack[i].__tag != tag) continue;
        stack.length = i;
        return;
    }
}

function attributesOf(text) {
    var attributes = {};
    var pattern = /([^\s=]+)(?:\s*=\s*("[^"]*"|'[^']*'|[^\s]+))?/g;
    var match;
    while ((match = pattern.exec(text)) !== null) {
        var value = match[2] || '';
        if (/^["']/.test(value)) value = value.substr(1, value.length - 2);
        attributes[match[1].toLowerCase()] = value;
    }
    return attributes;
}

// The pages in frames are given by their address; one of another origin refuses itself.
function Window(document, holder) {
    this.__kind = 'window';
    this.document = document;
    this.get_name = function () { return holder ? holder.__attributes.name || '' : ''; };
    this.get_frameElement = function () { return holder; };
    this.screen = {deviceXDPI: 96, logicalXDPI: 96};
    this.get_length = function () { return document.__frames.length; };
    this.item = function (key) {
        if (typeof key == 'number') {
            if (!(key in document.__frames)) throw new Error('引数が無効です。');
            return document.__frames[key];
        }
        for (var i = 0; i < document.__frames.length; ++i) {
            if (document.__frames[i].get_name() == key) return document.__frames[i];
        }
        return null;
    };
    this.get_frames = function () { return this; };
}

function makePage(url, html, mode, site) {
    return makeDocument(url, html, mode, site, null);
}

function makeDocument(url, html, mode, site, holder) {
    var document = {__kind: 'document', URL: url, documentMode: mode, __said: [],
        readyState: 'complete', location: {href: url}};
    document.__say = function (word) {
        document.__said.push(word);
        var log = document.getElementById('log');
        if (log) log.__children = [{__text: document.__said.join(' ')}];
    };
    document.__root = parse(document, /<body/i.test(html) ? html : '<html><body>' + html + '</body></html>');
    document.documentElement = byTag(document.__root, 'HTML')[0] || document.__root.__children[0];
    document.body = byTag(document.__root, 'BODY')[0] || byTag(document.__root, 'FRAMESET')[0];
    document.activeElement = document.body;
    document.__focused = false;
    document.hasFocus = function () { return document.__focused; };
    addLookups(document);
    addFrames(document, mode, site);
    document.__window = new Window(document, holder);
    if (mode < 11) {
        document.parentWindow = document.__window;
        document.frames = document.__window;
    }
    if (mode >= 9) {
        document.defaultView = document.__window;
        document.createEvent = function () {
            return {initEvent: function (type) { this.type = type; }, type: ''};
        };
    }
    var bases = byTag(document.__root, 'BASE');
    if (bases.length) document.__base = bases[0].__attributes.href;
    fillFields(document);
    walk(document.__root, function (e) {
        if ('autofocus' in e.__attributes) document.activeElement = e;
    });
    shadowMembers(document);
    runScripts(document);
    return document;
}

// Runs what this engine understands of a page's scripts.
function runScripts(document) {
    walk(document.__root, function (e) {
        if (e.__tag != 'SCRIPT') return;
        try {
            new Function('document', 'say', e.__children[0].__text)(document, document.__say);
        } catch (error) {
        }
    });
}

function addLookups(document) {
    var all = function (accept) { return new Collection(below(document.__root, accept)); };
    document.getElementsByTagName = function (tag) {
        return new Collection(byTag(document.__root, tag));
    };
    document.getElementsByName = function (name) {
        return all(function (e) { return has(NAMED, e.__tag) && decode(e.__attributes.name || '') == name; });
    };
    document.getElementById = function (id) {
        return below(document.__root, function (e) { return id && decode(e.__attributes.id || '') == id; })[0] || null;
    };
    // The last element whose box the point is in; boxes stand in data-box.
    document.elementFromPoint = function (x, y) {
        var hits = below(document.__root, function (e) {
            var box = e.getBoundingClientRect();
            return x >= box.left && x < box.right && y >= box.top && y < box.bottom;
        });
        return hits.length ? hits[hits.length - 1] : null;
    };
    document.get_forms = function () { return all(function (e) { return e.__tag == 'FORM'; }); };
    document.get_links = function () {
        return all(function (e) { return has('|A|AREA|', e.__tag) && 'href' in e.__attributes; });
    };
}

function originOf(url) { return url.replace(/^([a-z]+:\/\/[^\/]*).*/, '$1'); }

function addFrames(document, mode, site) {
    document.__frames = [];
    walk(document.__root, function (e) {
        if (!has('|IFRAME|FRAME|', e.__tag)) return;
        var src = e.__attributes.src || 'about:blank';
        var url = absolute(document, src);
        var html = site && src in site ? site[src] : host.fetch(url);
        if (e.__attributes.srcdoc) html = decode(e.__attributes.srcdoc);
        var inner = makeDocument(url, html || '', mode, site, e);
        var view = inner.__window;
        e.contentWindow = view;
        if (/^http/.test(url) && originOf(url) != originOf(document.URL)) view.__denied = '|DOCUMENT|FRAMEELEMENT|NAME|';
        document.__frames.push(view);
    });
}

// The user. Each act answers nothing; it tells what the browser would tell.
var user = {
    focus: function (e) {
        var document = e.document;
        var left = document.activeElement;
        if (left == e) return;
        if (left && left != document.body) runHandlers(left, 'onbeforedeactivate', null);
        document.activeElement = e;
        runHandlers(e, 'onfocusin', null);
    },
    click: function (e) {
        user.focus(e);
        e.click();
    },
    type: function (e, text) {
        for (var i = 0; i < text.length; ++i) {
            runHandlers(e, 'onkeypress', {type: 'keypress', keyCode: text.charCodeAt(i)});
            e.value += text.charAt(i);
        }
    },
    enter: function (e) { runHandlers(e, 'onkeypress', {type: 'keypress', keyCode: 13}); },
    submit: function (form) {
        host.fire(form, 'onsubmit', {type: 'submit', srcElement: form, keyCode: 0});
    }
};
