// Page runtime of the editor. It runs in its own script world in every frame.
// The top frame keeps the handle table: a number for each node C++ holds, so
// nodes of same-origin frames are reached from there by their index path.
(function () {
  'use strict';
  if (window.__kelda) return;
  const K = { nodes: new Map(), ranges: new Map(), next: 1, queue: [], sink: null,
              rules: { swallowKeys: [], cancelPaste: false, cancelDrop: false } };
  window.__kelda = K;

  function fail(text) { throw new Error(text); }
  function top() {
    if (window === window.top) return K;
    try { return window.top.__kelda || null; } catch (e) { return null; }
  }

  // Reading anything inside a frame of another origin throws; the editor
  // has always reported that as "Permission denied".
  function docAt(path) {
    let w = window;
    for (const i of path || []) {
      const f = w.frames[i];
      if (!f) fail('No frame at index ' + i);
      try { void f.document.body; } catch (e) { fail('Permission denied'); }
      if (!f.document) fail('Permission denied');
      w = f;
    }
    return w.document;
  }
  K.docAt = docAt;

  K.id = function (n) {
    if (!n) return 0;
    if (!n.__keldaId) { n.__keldaId = K.next++; K.nodes.set(n.__keldaId, n); }
    else if (!K.nodes.has(n.__keldaId)) K.nodes.set(n.__keldaId, n);
    return n.__keldaId;
  };
  K.el = function (h) { const n = K.nodes.get(h); if (!n) fail('Unknown element'); return n; };
  K.ids = function (list) { return Array.prototype.map.call(list, K.id); };

  function winOf(d) { return d.defaultView || window; }

  K.doc = {
    info(path) {
      const d = docAt(path);
      const dt = d.doctype;
      return { title: d.title, URL: d.URL, href: d.location.href, pathname: d.location.pathname,
               characterSet: d.characterSet,
               designMode: d.designMode === 'on' ? 'On' : 'Off', readyState: d.readyState,
               frames: winOf(d).frames.length, doctype: dt ? new XMLSerializer().serializeToString(dt) : '' };
    },
    set(path, name, value) {
      const d = docAt(path);
      if (name === 'designMode') d.designMode = String(value).toLowerCase() === 'on' ? 'on' : 'off';
      else d[name] = value;
      return true;
    },
    element(path, which) { return K.id(docAt(path)[which]); },
    all(path) { return K.ids(docAt(path).getElementsByTagName('*')); },
    count(path) { return docAt(path).getElementsByTagName('*').length; },
    tags(path, tag) { return K.ids(docAt(path).getElementsByTagName(tag)); },
    byId(path, id) { return K.id(docAt(path).getElementById(id)); },
    create(path, tag) { return K.id(docAt(path).createElement(tag)); },
    fromPoint(path, x, y) { return K.id(docAt(path).elementFromPoint(x, y)); },
    exec(path, cmd, ui, value) {
      const d = docAt(path);
      if (cmd.toLowerCase() === 'refresh') { winOf(d).location.reload(); return true; }
      return d.execCommand(cmd, !!ui, value === undefined || value === null ? null : String(value));
    },
    queryEnabled(path, cmd) { return docAt(path).queryCommandEnabled(cmd); },
    queryState(path, cmd) { return docAt(path).queryCommandState(cmd); },
    // The editor's own style elements are its look, never part of the file:
    // each one's text is cut out of the page's text where it stands.
    serialize(path) {
      const d = docAt(path);
      const dt = d.doctype ? new XMLSerializer().serializeToString(d.doctype) + '\r\n' : '';
      let html = d.documentElement.outerHTML;
      for (const own of d.querySelectorAll('[data-kelda]')) {
        const text = own.outerHTML, at = html.indexOf(text);
        if (at >= 0) html = html.slice(0, at) + html.slice(at + text.length);
      }
      return dt + html;
    },
    // The page as it stands, for lining up with its source: everything the
    // document holds, also the comments before and after its root element,
    // where the marks of server script at the top of a page end up.
    // Rows and cells the table commands put in (known as added in this
    // script world only) carry the attribute addedMark while the page is
    // read, so that the save never gives them the author's tags; it is
    // taken off again before anything else runs.
    snapshot(path, addedMark) {
      const d = docAt(path);
      const added = addedMark ? Array.prototype.filter.call(d.querySelectorAll('tr,td,th'), e => e.__keldaAdded) : [];
      added.forEach(e => e.setAttribute(addedMark, ''));
      try {
        let out = '';
        for (const n of d.childNodes) {
          if (n.nodeType === 10) out += new XMLSerializer().serializeToString(n);
          else if (n.nodeType === 8) out += '<!--' + n.data + '-->';
          else if (n.nodeType === 1) out += K.doc.serialize(path).replace(/^<!DOCTYPE[^>]*>\r\n/i, '');
        }
        return out;
      } finally {
        added.forEach(e => e.removeAttribute(addedMark));
      }
    },
    // Server script's output stands between two marker comments. None of it
    // may be edited: the elements in it are made read-only, and an input
    // whose range reaches into it is refused before the engine acts. Each
    // block gets the look of one sealed object; its number comes back.
    sealScript(path) {
      const d = docAt(path), seals = [], blocks = new Map();
      const walker = d.createTreeWalker(d, NodeFilter.SHOW_COMMENT);
      const open = new Map();
      for (let c = walker.nextNode(); c; c = walker.nextNode()) {
        const m = /^keldasp(IN|OUT)#(\d{5})$/.exec(c.data);
        if (!m) continue;
        if (m[1] === 'IN') { open.set(m[2], c); continue; }
        const start = open.get(m[2]);
        if (!start) continue;
        const r = d.createRange();
        r.setStartAfter(start); r.setEndBefore(c);
        seals.push(r);
        blocks.set(m[2], [start, c]);
        const all = r.commonAncestorContainer.nodeType === 1
          ? r.commonAncestorContainer.querySelectorAll('*') : [];
        const inside = new Set();
        for (const e of all) {
          if (r.intersectsNode(e) && r.comparePoint(e, 0) === 0 && r.comparePoint(e, e.childNodes.length) === 0) {
            e.setAttribute('contenteditable', 'false');
            inside.add(e);
          }
        }
        K.markBlock(d, start, c, m[2], inside);
      }
      const w = winOf(d);
      w.__keldaSeals = seals;
      w.__keldaBlocks = blocks;
      // The block's look: the output inverted on cyan, so it shows red with
      // its colours turned, as script blocks have always looked in this
      // editor. The inversion keeps it apart from the author's own text
      // whatever colours the page uses, pictures in the output included.
      // It can't be picked up by dragging; a click picks it whole.
      K.look.styleFor(d, '__kelda_asp').textContent =
        '[data-keldasp]{background-color:cyan!important;filter:invert(1);cursor:default;-webkit-user-select:none;user-select:none}';
      if (!w.__keldaSealed) {
        w.__keldaSealed = true;
        d.addEventListener('beforeinput', function (ev) {
          const ranges = ev.getTargetRanges ? ev.getTargetRanges() : [];
          const sel = w.getSelection();
          const check = ranges.length ? ranges : (sel && sel.rangeCount ? [sel.getRangeAt(0)] : []);
          for (const t of check)
            if (K.touchesSeal(w, t)) { ev.preventDefault(); return; }
        }, true);
      }
      return Array.from(blocks.keys());
    },
    styleSheets(path) {
      return Array.prototype.map.call(docAt(path).styleSheets, function (s) {
        let rules = null;
        try { rules = s.cssRules; } catch (e) { return { href: s.href || '', readOnly: true, selectors: [] }; }
        return { href: s.href || '', readOnly: !!s.href,
                 selectors: Array.prototype.filter.call(rules, r => r.selectorText).map(r => r.selectorText) };
      });
    },
    selection(path) {
      const d = docAt(path), s = winOf(d).getSelection();
      const ctl = K.controlOf(s);
      if (ctl) return { type: 'Control', text: '', htmlText: ctl.outerHTML, control: K.id(ctl) };
      if (!s || s.rangeCount === 0 || s.isCollapsed) return { type: 'None', text: '', htmlText: '' };
      const r = s.getRangeAt(0);
      return { type: 'Text', text: s.toString(), htmlText: K.htmlOf(r) };
    }
  };

  // A selection that holds exactly one image, table or form control counts
  // as a control selection, the way the editor treats picked objects.
  K.controlTags = { IMG: 1, TABLE: 1, INPUT: 1, SELECT: 1, TEXTAREA: 1, OBJECT: 1, APPLET: 1, HR: 1 };
  K.controlOf = function (s) {
    if (!s || s.rangeCount !== 1) return null;
    const r = s.getRangeAt(0);
    if (r.startContainer !== r.endContainer || r.endOffset - r.startOffset !== 1) return null;
    const n = r.startContainer.childNodes[r.startOffset];
    return n && n.nodeType === 1 && K.controlTags[n.tagName] ? n : null;
  };
  K.htmlOf = function (r) {
    const box = document.createElement('div');
    box.appendChild(r.cloneContents());
    return box.innerHTML;
  };

  // The style attribute's own text: names the CSS engine does not know are
  // dropped from the style object but stay in the text.
  function styleText(e) {
    const out = {};
    for (const part of (e.getAttribute('style') || '').split(';')) {
      const c = part.indexOf(':');
      if (c > 0) out[part.slice(0, c).trim().toLowerCase()] = part.slice(c + 1).trim();
    }
    return out;
  }
  function writeStyleText(e, map) {
    const text = Object.keys(map).map(k => k + ': ' + map[k]).join('; ');
    if (text) e.setAttribute('style', text); else e.removeAttribute('style');
  }
  // After a change through the style object: names the CSS engine doesn't
  // know (the editor's own marks among them) are put back from the text as
  // it was, and a style left empty goes altogether.
  function keepUnknownStyle(e, before) {
    const map = styleText(e);
    for (const k of Object.keys(before))
      if (!(k in map) && !CSS.supports(k, before[k])) map[k] = before[k];
    writeStyleText(e, map);
  }
  function cssName(name) { return name.replace(/[A-Z]/g, m => '-' + m.toLowerCase()).toLowerCase(); }

  K.elm = {
    getAttr(h, name) { const v = K.el(h).getAttribute(name); return v === null ? null : v; },
    setAttr(h, name, value) { K.el(h).setAttribute(name, String(value)); return true; },
    removeAttr(h, name) {
      const e = K.el(h), had = e.hasAttribute(name);
      e.removeAttribute(name); return had;
    },
    get(h, name) {
      const e = K.el(h);
      switch (name) {
        case 'tagName': return e.nodeType === 1 ? e.tagName.toUpperCase() : '';
        case 'innerText': return e.innerText;
        case 'contentEditable': return e.contentEditable;
        default: return e[name];
      }
    },
    set(h, name, value) {
      const e = K.el(h);
      if (name === 'contentEditable') e.contentEditable = value === true ? 'true' : value === false ? 'false' : String(value);
      else e[name] = value;
      return true;
    },
    styleGet(h, name) {
      const e = K.el(h), key = cssName(name), known = e.style.getPropertyValue(key);
      if (known) return known;
      const raw = styleText(e)[key];
      return raw === undefined ? null : raw;
    },
    // A write through the style object rewrites the attribute from what the
    // CSS engine knows, so names it does not know are put back afterwards.
    styleSet(h, name, value) {
      const e = K.el(h), key = cssName(name), before = styleText(e), text = String(value);
      e.style.setProperty(key, text);
      const lost = Object.keys(before).filter(k => k !== key && e.style.getPropertyValue(k) === '');
      if (e.style.getPropertyValue(key) === '' && text !== '') { before[key] = text; lost.push(key); }
      if (lost.length) {
        const map = styleText(e);
        for (const k of lost) map[k] = before[k];
        writeStyleText(e, map);
      }
      return true;
    },
    styleRemove(h, name) {
      const e = K.el(h), key = cssName(name), map = styleText(e);
      if (!(key in map)) return false;
      delete map[key]; writeStyleText(e, map); return true;
    },
    current(h) {
      const e = K.el(h), cs = winOf(e.ownerDocument).getComputedStyle(e);
      return { fontFamily: cs.fontFamily, fontSizePt: parseFloat(cs.fontSize) * 0.75,
               fontWeight: cs.fontWeight, fontStyle: cs.fontStyle,
               textDecoration: cs.textDecorationLine, color: cs.color,
               backgroundColor: cs.backgroundColor, display: cs.display, visibility: cs.visibility };
    },
    parent(h) { return K.id(K.el(h).parentElement); },
    children(h) { return K.ids(K.el(h).children); },
    all(h) { return K.ids(K.el(h).getElementsByTagName('*')); },
    // Without deep the children stay where the element was.
    removeNode(h, deep) {
      const e = K.el(h), p = e.parentNode;
      if (!p) return false;
      if (!deep) while (e.firstChild) p.insertBefore(e.firstChild, e);
      p.removeChild(e); return true;
    },
    insertAdjacentElement(h, where, other) { return K.id(K.el(h).insertAdjacentElement(where, K.el(other))); },
    insertAdjacentHTML(h, where, html) { K.el(h).insertAdjacentHTML(where, html); return true; },
    appendChild(h, other) { return K.id(K.el(h).appendChild(K.el(other))); },
    document(h) { return K.id(K.el(h).ownerDocument.documentElement); }
  };

  // Bulk work that must not cost one round trip per element.
  K.bulk = {
    setAttrOnTags(path, tag, name, value) {
      const list = docAt(path).getElementsByTagName(tag);
      for (let i = 0; i < list.length; i++) list[i].setAttribute(name, typeof value === 'function' ? value(i) : value);
      return list.length;
    },
    // Numbers every element of one tag with a key from 0 and strips the
    // named attributes from every element, in one pass over the document.
    keyAndStrip(path, tag, keyName, names) {
      const list = docAt(path).getElementsByTagName('*'), upper = tag.toUpperCase();
      let key = 0;
      for (let i = 0; i < list.length; i++) {
        const e = list[i];
        for (const name of names) e.removeAttribute(name);
        if (e.tagName === upper) e.setAttribute(keyName, String(key++));
      }
      return key;
    },
    // The marks of edit mode go before a save: keys, clip and layer marks, the
    // layer state written back into the style, and the pending backgrounds
    // of elements handed back (read before their attributes go) so that
    // the caller can upload them.
    stripEditMarks(path) {
      const marks = ['keldaKey', 'keldamedia', 'keldacontrols', 'vismark', 'no_visibility', 'relativepath', 'uploadpath', 'bgchange', 'bgbytad'];
      const list = docAt(path).querySelectorAll(marks.map(m => '[' + m + ']').join(',')), pending = [];
      for (let i = 0; i < list.length; i++) {
        const e = list[i];
        const hide = e.getAttribute('vismark') === 'true', show = e.getAttribute('no_visibility') === 'true';
        if (hide || show) {
          const before = styleText(e);
          e.style.visibility = hide ? 'hidden' : '';
          keepUnknownStyle(e, before);
        }
        if (e.getAttribute('bgchange') === 'true')
          pending.push({ element: K.id(e), relativepath: e.getAttribute('relativepath') || '',
                         uploadpath: e.getAttribute('uploadpath') || '', background: e.getAttribute('background') || '',
                         bgbytad: e.getAttribute('bgbytad') || '' });
        // A sound the author keeps out of sight had a player only so that
        // its box could show.
        if (e.hasAttribute('keldacontrols')) e.removeAttribute('controls');
        for (const name of marks) e.removeAttribute(name);
      }
      return pending;
    },
    // The marks of a CMS-locked page: what made its areas editable and the
    // frames drawn round them. The keldaedit attribute itself stays.
    stripLockMarks(path, properties) {
      const d = docAt(path), list = d.querySelectorAll('[keldaedit]');
      if (d.body) d.body.removeAttribute('contenteditable');
      let n = 0;
      for (let i = 0; i < list.length; i++) {
        const e = list[i], mark = e.getAttribute('keldaedit');
        if (mark !== '1' && mark !== '0') continue;
        for (const name of ['contenteditable', 'disabled', 'unselectable']) e.removeAttribute(name);
        const before = styleText(e);
        for (const p of properties) e.style.removeProperty(cssName(p));
        // The frame was set as a whole border, which in this engine also
        // resets the border image: what is left of that goes too.
        if (e.style.getPropertyValue('border-image') === 'initial') e.style.removeProperty('border-image');
        keepUnknownStyle(e, before);
        n++;
      }
      return n;
    },
    // Every change made to the document from now on is recorded, so that
    // undoHeld can take it back: the save's own steps then run on the page
    // the user is editing and leave it as he had it, the very same nodes in
    // their places (the handles C++ holds stay good, and the engine's undo
    // of the user's typing still works).
    hold(path) {
      const d = docAt(path), w = winOf(d);
      if (w.__keldaHeld) w.__keldaHeld.observer.disconnect();
      // The engine hands the changes to the callback between two calls, and
      // hands them only once: they are gathered as they come.
      const held = { changes: [] };
      held.observer = new MutationObserver(list => { held.changes.push(...list); });
      held.observer.observe(d, { subtree: true, childList: true, attributes: true, attributeOldValue: true,
                                 characterData: true, characterDataOldValue: true });
      w.__keldaHeld = held;
      return true;
    },
    // Takes back what changed since hold, the last change first; gives the
    // count of changes taken back, or -1 when nothing was held.
    undoHeld(path) {
      const d = docAt(path), w = winOf(d), held = w.__keldaHeld;
      if (!held) return -1;
      const changes = held.changes.concat(held.observer.takeRecords());
      held.observer.disconnect();
      delete w.__keldaHeld;
      for (let i = changes.length - 1; i >= 0; i--) {
        const c = changes[i], t = c.target;
        if (c.type === 'attributes') {
          const ns = c.attributeNamespace;
          if (c.oldValue === null) t.removeAttributeNS(ns, c.attributeName);
          else t.setAttributeNS(ns, c.attributeName, c.oldValue);
        } else if (c.type === 'characterData') {
          t.data = c.oldValue;
        } else {
          for (const n of c.addedNodes) if (n.parentNode === t) t.removeChild(n);
          for (const n of c.removedNodes) t.insertBefore(n, c.nextSibling);
        }
      }
      return changes.length;
    },
    removeAttrs(path, names) {
      const list = docAt(path).getElementsByTagName('*');
      let n = 0;
      for (let i = 0; i < list.length; i++)
        for (const name of names) if (list[i].hasAttribute(name)) { list[i].removeAttribute(name); n++; }
      return n;
    }
  };

  // Whether a range lies in or reaches into server script's output. The
  // ranges an input event targets are static ones, which can't be
  // compared: they are taken as live ranges first.
  K.touchesSeal = function (w, t) {
    if (typeof t.comparePoint !== 'function') {
      const r = (t.startContainer.ownerDocument || t.startContainer).createRange();
      r.setStart(t.startContainer, t.startOffset); r.setEnd(t.endContainer, t.endOffset);
      t = r;
    }
    for (const s of w.__keldaSeals || []) {
      const inside = s.compareBoundaryPoints(Range.START_TO_END, t) > 0 &&
                     s.compareBoundaryPoints(Range.END_TO_START, t) < 0;
      const touches = !t.collapsed && (s.comparePoint(t.startContainer, t.startOffset) === 0 ||
                                       s.comparePoint(t.endContainer, t.endOffset) === 0 ||
                                       (t.comparePoint(s.startContainer, s.startOffset) === 0 && t.comparePoint(s.endContainer, s.endOffset) === 0));
      if (inside || touches) return true;
    }
    return false;
  };

  // The output of one block takes the block's number: its outermost
  // elements as they stand, its loose text in a span of its own. Where the
  // two marks stand in different parents only whole elements are marked.
  K.markBlock = function (d, open, close, id, inside) {
    const tag = function (e) { e.setAttribute('data-keldasp', id); e.setAttribute('contenteditable', 'false'); };
    if (open.parentNode !== close.parentNode) {
      for (const e of inside) if (!inside.has(e.parentElement)) tag(e);
      return;
    }
    for (let n = open.nextSibling; n && n !== close; n = n.nextSibling) {
      if (n.nodeType === 1) { tag(n); continue; }
      if (n.nodeType !== 3 || !/\S/.test(n.data)) continue;
      const span = d.createElement('span');
      tag(span);
      n.parentNode.insertBefore(span, n);
      span.appendChild(n);
      n = span;
    }
  };

  K.range = {
    store(r) { const h = K.next++; K.ranges.set(h, r); return h; },
    get(h) { const r = K.ranges.get(h); if (!r) fail('Unknown range'); return r; },
    fromSelection(path) {
      const d = docAt(path), s = winOf(d).getSelection();
      if (s.rangeCount === 0) { const r = d.createRange(); r.selectNodeContents(d.body); r.collapse(true); return K.range.store(r); }
      return K.range.store(s.getRangeAt(0).cloneRange());
    },
    aroundElement(h) {
      const e = K.el(h), r = e.ownerDocument.createRange();
      r.selectNodeContents(e); return K.range.store(r);
    },
    info(h) {
      const r = K.range.get(h);
      return { text: r.toString(), htmlText: K.htmlOf(r), parent: K.id(r.commonAncestorContainer.nodeType === 1 ? r.commonAncestorContainer : r.commonAncestorContainer.parentElement), collapsed: r.collapsed };
    },
    select(h) {
      const r = K.range.get(h), s = winOf(r.startContainer.ownerDocument || r.startContainer).getSelection();
      s.removeAllRanges(); s.addRange(r); return true;
    },
    pasteHTML(h, html) {
      const r = K.range.get(h);
      r.deleteContents(); r.insertNode(r.createContextualFragment(html)); r.collapse(false); return true;
    },
    // Wraps the range in the element; an element the range cuts in two is
    // split first, so the wrapper never crosses a tag boundary.
    surround(h, elh) {
      const r = K.range.get(h), e = K.el(elh);
      e.appendChild(r.extractContents()); r.insertNode(e); r.selectNode(e); return K.id(e);
    },
    // Cuts element el at the range's start: the part after the cut moves into
    // a shallow clone placed right after the element. Gives the clone.
    splitAt(h, elh) {
      const r = K.range.get(h), e = K.el(elh), d = e.ownerDocument;
      const tail = d.createRange();
      tail.setStart(r.startContainer, r.startOffset);
      tail.setEnd(e, e.childNodes.length);
      const clone = e.cloneNode(false);
      clone.removeAttribute('id');
      clone.appendChild(tail.extractContents());
      e.parentNode.insertBefore(clone, e.nextSibling);
      return K.id(clone);
    },
    sealed(h) { const r = K.range.get(h); return K.touchesSeal(winOf(r.startContainer.ownerDocument || r.startContainer), r); },
    release(h) { K.ranges.delete(h); return true; }
  };

  // The editing look: glyphs at tags, dashed zero borders, hidden content
  // shown, and the hatched look of a page that is not edited.
  K.look = {
    styleFor(d, id) {
      let s = d.getElementById(id);
      if (!s) { s = d.createElement('style'); s.id = id; s.setAttribute('data-kelda', '1'); (d.head || d.documentElement).appendChild(s); }
      return s;
    },
    drop(d, id) { const s = d.getElementById(id); if (s) s.remove(); },
    picture(tag, side, w, h) {
      const label = (side ? '/' : '') + tag.toUpperCase();
      const svg = "<svg xmlns='http://www.w3.org/2000/svg' width='" + w + "' height='" + h + "'>" +
        "<rect x='0.5' y='0.5' width='" + (w - 1) + "' height='" + (h - 1) + "' fill='#ffe680' stroke='#806000'/>" +
        "<text x='" + (w / 2) + "' y='" + (h / 2 + 3) + "' font-size='7' text-anchor='middle' font-family='sans-serif' fill='#402000'>" + label + "</text></svg>";
      return 'url("data:image/svg+xml,' + encodeURIComponent(svg) + '")';
    },
    glyphs(path, rows) {
      const d = docAt(path);
      if (!rows || !rows.length) { K.look.drop(d, '__kelda_glyphs'); return true; }
      const css = rows.map(function (r) {
        const pseudo = r.side ? '::after' : '::before';
        const pic = K.look.picture(r.tag, r.side, r.w, r.h);
        if (r.tag === 'script')
          return 'script{display:inline-block!important;width:' + r.w + 'px;height:' + r.h + 'px;overflow:hidden;font-size:0;color:transparent;white-space:nowrap;background:' + pic + ' no-repeat}';
        return r.tag + pseudo + '{content:"";display:inline-block;width:' + r.w + 'px;height:' + r.h + 'px;background:' + pic + ' no-repeat;vertical-align:bottom}';
      }).join('\n');
      K.look.styleFor(d, '__kelda_glyphs').textContent = css;
      return true;
    },
    design(path, which, on) {
      const d = docAt(path);
      const css = { visibility: '[style*="visibility"],[style*="VISIBILITY"]{visibility:visible!important}',
                    zeroBorders: 'table[border="0"],table:not([border]),table[border="0"] td,table:not([border]) td,table[border="0"] th,table:not([border]) th{outline:1px dashed #a0a0a0;outline-offset:-1px}',
                    hatched: 'html{filter:grayscale(0.3) contrast(0.9)}body{background-image:repeating-linear-gradient(45deg,rgba(0,0,0,0.10) 0 1px,transparent 1px 5px)!important}' }[which];
      if (!css) fail('Unknown design look ' + which);
      if (on) K.look.styleFor(d, '__kelda_' + which).textContent = css; else K.look.drop(d, '__kelda_' + which);
      return true;
    }
  };

  // Events: decided here, then posted to C++.
  K.setRules = function (rules) { Object.assign(K.rules, rules); return true; };
  K.post = function (ev) {
    if (K.sink) K.sink.post(JSON.stringify(ev)); else K.queue.push(ev);
  };
  function framePath(w) {
    const path = [];
    try {
      while (w !== w.parent) {
        const p = w.parent;
        let i = 0; for (; i < p.frames.length; i++) if (p.frames[i] === w) break;
        path.unshift(i); w = p;
      }
    } catch (e) { /* cut off by another origin */ }
    return path;
  }
  function describe(ev) {
    const t = top();
    const target = ev.target && ev.target.nodeType === 1 ? ev.target : (ev.target && ev.target.parentElement);
    return { type: ev.type, frame: framePath(window), element: t ? t.id(target) : 0,
             x: ev.clientX || 0, y: ev.clientY || 0, button: ev.button || 0,
             keyCode: ev.keyCode || 0, key: ev.key || '', shift: !!ev.shiftKey, ctrl: !!ev.ctrlKey, alt: !!ev.altKey,
             cancelled: false };
  }
  function handle(ev) {
    const t = top(); if (!t) return;
    const info = describe(ev), r = t.rules;
    let cancel = ev.type === 'contextmenu';
    if (ev.type === 'keydown' || ev.type === 'keypress' || ev.type === 'keyup')
      cancel = r.swallowKeys.indexOf(ev.keyCode) >= 0;
    // A form field takes its paste as the engine gives it: the editor's
    // own paste is for the page's content.
    if (ev.type === 'paste') cancel = r.cancelPaste && !/^(INPUT|TEXTAREA)$/.test((ev.target && ev.target.tagName) || '');
    if (ev.type === 'drop') cancel = r.cancelDrop;
    if (cancel) { ev.preventDefault(); ev.stopPropagation(); info.cancelled = true; }
    t.post(info);
    if (ev.type === 'mousedown' && pickable(ev.target))
      t.post(Object.assign({}, info, { type: 'controlselect' }));
  }
  // A press on a picture, a table or a field picks it, which the editor
  // counts as a change: only where the user may edit. A press on the
  // sealed output of server script, or outside the areas of a CMS user who
  // is no administrator, picks nothing and changes nothing.
  function pickable(e) {
    return !!e && e.nodeType === 1 && !!K.controlTags[e.tagName] && e.isContentEditable &&
           !e.closest('[contenteditable="false" i]');
  }
  for (const type of ['mousedown', 'mouseup', 'click', 'contextmenu', 'keydown', 'keypress', 'keyup',
                      'paste', 'copy', 'cut', 'drop', 'dragover', 'dragend'])
    document.addEventListener(type, handle, true);

  // A frame of another origin cannot reach the top frame's runtime, so its
  // completion is not reported: the editor cannot touch its document anyway.
  window.addEventListener('load', function () {
    const t = top();
    if (t) t.post({ type: 'documentcomplete', frame: framePath(window), key: location.href });
  });

  if (window === window.top && typeof qt !== 'undefined' && typeof QWebChannel !== 'undefined') {
    new QWebChannel(qt.webChannelTransport, function (channel) {
      K.sink = channel.objects.keldaSink;
      const waiting = K.queue; K.queue = [];
      for (const ev of waiting) K.post(ev);
    });
  }
})();
