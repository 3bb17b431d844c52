// The page agent: it stands in every page, in a world of its own beside the page's scripts, and
// answers the program's questions in one round trip each. The page cannot see it. The files of this
// folder are the body of one function; its calls (calls.js) are what the program uses.

if (Object.hasOwn(globalThis, 'tamrin')) return;

// A page's elements hide members of their form and document by their names (<input name="id">,
// <img name="forms">), so members are taken from where the page's names do not reach.
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
