// Page runtime of the editor, second half: what the page objects and the
// style engine need in one round trip each (the target of a right click,
// the style at the caret, the size change over a selection).
(function () {
  'use strict';
  const K = window.__kelda;
  if (!K || K.objects) return;

  function fail(text) { throw new Error(text); }
  function winOf(d) { return d.defaultView || window; }
  function elementOf(n) { return n && n.nodeType === 1 ? n : (n ? n.parentElement : null); }

  // The image whose map holds the area, found by the point the user
  // clicked: several images may share one map.
  function imageOfArea(area, x, y) {
    const map = area.closest('map'), d = area.ownerDocument;
    if (!map) return null;
    const name = '#' + (map.name || map.id);
    for (const img of d.querySelectorAll('img[usemap]')) {
      if (img.getAttribute('usemap').toLowerCase() !== name.toLowerCase()) continue;
      const r = img.getBoundingClientRect();
      if (x >= r.left && x < r.right && y >= r.top && y < r.bottom) return img;
    }
    return null;
  }

  // A right click on a picked thing picks it as a control first, as the
  // editor always did: the menu that follows is for that thing. A click on
  // an area of an image map picks the image. Only what the user may edit is
  // picked: the whole page in design mode, or, for a CMS user who is no
  // administrator, what stands inside his areas (the page is then out of
  // design mode, and the areas alone are editable).
  function pickOnRightClick(ev) {
    const d = ev.target && ev.target.ownerDocument;
    if (!d || ev.target.nodeType !== 1) return;
    let t = ev.target;
    if (t.tagName === 'AREA') t = imageOfArea(t, ev.clientX, ev.clientY);
    if (!t || !K.controlTags[t.tagName] || !editable(t) || !t.parentNode) return;
    const s = winOf(d).getSelection(), r = d.createRange();
    r.selectNode(t);
    s.removeAllRanges(); s.addRange(r);
  }
  // On the window, so that it runs before the document's listener posts
  // the event.
  window.addEventListener('contextmenu', pickOnRightClick, true);

  // In design mode the engine calls everything editable, also what the
  // editor sealed with contenteditable="false" (the server script's output).
  function editable(e) {
    return !!e.isContentEditable && !e.closest('[contenteditable="false" i]');
  }
  // A script block is sealed, so it is never editable itself: it counts as
  // the user's where it stands in an editable place (for a CMS user who is
  // no administrator, inside his areas); elsewhere it is no object of his.
  function blockOf(e) {
    const owner = e.closest('[data-keldasp]');
    return owner && owner.parentElement && editable(owner.parentElement)
      ? 'keldaspIN#' + owner.getAttribute('data-keldasp') : '';
  }
  function describeElement(e) {
    if (!e) return { h: 0 };
    const style = e.style && e.style.getPropertyValue ? (e.getAttribute('style') || '') : '';
    return { h: K.id(e), tag: e.tagName.toUpperCase(), editable: editable(e),
             key: e.getAttribute('keldakey'), keldasp: /(^|;)\s*keldasp\s*:/i.test(style),
             block: blockOf(e),
             code: e.getAttribute('code') || '', input: e.tagName === 'INPUT' || e.tagName === 'TEXTAREA',
             connected: e.isConnected };
  }

  K.objects = {
    // What the dispatcher of a right click decides by: the selection's
    // kind, its picked control, and the element under the pointer.
    menuTarget(path, x, y) {
      const d = K.docAt(path), s = winOf(d).getSelection(), ctl = K.controlOf(s);
      const type = ctl ? 'Control' : (!s || s.rangeCount === 0 || s.isCollapsed ? 'None' : 'Text');
      return { type: type, control: describeElement(ctl), point: describeElement(d.elementFromPoint(x, y)) };
    },
    // Where an element that floats goes back into the flow: the first
    // element met on rings around the point (radius from 5 in steps of 5,
    // every 15 degrees) that is neither the element itself nor one that
    // can't hold it. Past a radius of 10000 the last one met serves. The
    // page's root, met beside a short body, is no place for content: it
    // counts as the body.
    flowParent(path, h, x, y) {
      const d = K.docAt(path), e = K.el(h), own = e.innerHTML;
      const refuse = { TEXTAREA: 1, SCRIPT: 1, TD: 1, TBODY: 1, TABLE: 1, BODY: 1, HTML: 1 };
      let last = null;
      for (let r = 5; r <= 10000; r += 5) {
        for (let deg = 0; deg <= 360; deg += 15) {
          const a = deg * 6.28 / 360;
          const c = d.elementFromPoint(x + Math.round(r * Math.sin(a)), y + Math.round(r * Math.cos(a)));
          if (!c) continue;
          last = c;
          if (c.innerHTML !== own && !refuse[c.tagName.toUpperCase()]) return K.id(c);
        }
      }
      return K.id(!last || last === d.documentElement ? d.body : last);
    }
  };

  // ---------------------------------------------------------- style engine

  function hex(rgb) {
    const m = /rgba?\((\d+),\s*(\d+),\s*(\d+)(?:,\s*([\d.]+))?\)/.exec(rgb || '');
    if (!m) return rgb || '';
    if (m[4] !== undefined && parseFloat(m[4]) === 0) return '';
    return '#' + [m[1], m[2], m[3]].map(v => ('0' + parseInt(v, 10).toString(16)).slice(-2)).join('');
  }
  // Underline is not inherited in CSS: text inside <u><b>..</b></u> has no
  // decoration of its own. The nearest decoration of the element or of an
  // inline parent counts, so the toolbar shows what the user sees.
  function underline(e, w) {
    for (let p = e; p && p.nodeType === 1; p = p.parentElement) {
      const cs = w.getComputedStyle(p);
      if (cs.textDecorationLine !== 'none') return cs.textDecorationLine === 'underline';
      if (cs.display !== 'inline') return false;
    }
    return false;
  }
  function justification(cs) {
    const a = cs.textAlign.replace('-webkit-', '');
    return a === 'start' || a === 'auto' ? 'left' : a === 'end' ? 'right' : a;
  }
  function readStyle(e) {
    if (!e) return { tag: '' };
    const w = winOf(e.ownerDocument), cs = w.getComputedStyle(e);
    return { h: K.id(e), tag: e.tagName.toUpperCase(), fontFamily: cs.fontFamily,
             fontSizePt: Math.round(parseFloat(cs.fontSize) * 0.75 * 100) / 100,
             fontWeight: cs.fontWeight, fontStyle: cs.fontStyle, underline: underline(e, w),
             color: hex(cs.color), justify: justification(cs) };
  }
  function selectionElement(d) {
    const s = winOf(d).getSelection();
    const ctl = K.controlOf(s);
    if (ctl) return ctl.parentElement;
    if (!s || s.rangeCount === 0) return d.body;
    return elementOf(s.getRangeAt(0).commonAncestorContainer);
  }

  // Tags the walk over a selection never records, and the cut elements
  // that stay whole (a size nests inside them). Elements without text of
  // their own never take a size: it would only clutter the saved page.
  const NEVER = new Set(['TR', 'BODY', 'TBODY', 'TABLE', 'COL', 'COLGROUP', 'TFOOT', 'THEAD', 'CAPTION', 'OL', 'UL', 'BLOCKQUOTE']);
  const WHOLE = new Set(['A', 'TD', 'P', 'LI', 'SPAN', 'FONT']);
  const NO_TEXT = new Set(['IMG', 'BR', 'HR', 'WBR', 'AREA', 'MAP', 'PARAM', 'EMBED', 'SCRIPT', 'STYLE', 'IFRAME']);

  // The elements below the range's common element that it enters or
  // leaves: inside (both), before (begins before the range, ends in it),
  // after (begins in it, ends behind it). An element that holds a boundary
  // of the range is cut there; telling that by containment keeps the walk
  // linear on long pages.
  function walk(r) {
    const root = elementOf(r.commonAncestorContainer), found = [];
    for (const e of root.getElementsByTagName('*')) {
      if (NEVER.has(e.tagName) || !r.intersectsNode(e)) continue;
      found.push({ e: e, entered: !e.contains(r.startContainer), exited: !e.contains(r.endContainer) });
    }
    return found;
  }
  function isEmpty(range) {
    const f = range.cloneContents();
    return f.textContent === '' && !f.querySelector('*');
  }
  // Cuts e at the point: e keeps what lies before, a copy of it (without
  // the id, which stays unique) gets what lies behind and is returned.
  function cut(e, node, offset) {
    const tail = e.ownerDocument.createRange();
    tail.setStart(node, offset); tail.setEnd(e, e.childNodes.length);
    const half = e.cloneNode(false);
    half.removeAttribute('id');
    half.appendChild(tail.extractContents());
    e.parentNode.insertBefore(half, e.nextSibling);
    return half;
  }
  function byDescendants(a, b) { return a.e.getElementsByTagName('*').length - b.e.getElementsByTagName('*').length; }

  // The halves inside the range take the size. The inner element of a
  // nest is cut before its parent: the DOM can't hold overlapping halves,
  // and cutting from the inside out gives the nest the markup tree would.
  // A cut at the very edge of an element leaves no empty half behind: the
  // element then lies wholly inside the range, or wholly outside it.
  function splitCutElements(r, size) {
    const scopes = walk(r).filter(s => s.entered !== s.exited && !WHOLE.has(s.e.tagName));
    const before = scopes.filter(s => s.exited).sort(byDescendants);
    const after = scopes.filter(s => s.entered).sort(byDescendants);
    let split = 0;
    for (const s of before) {
      const head = r.cloneRange(); head.setStartBefore(s.e); head.setEnd(r.startContainer, r.startOffset);
      const rest = r.cloneRange(); rest.setEndAfter(s.e);
      if (isEmpty(head)) { r.setStartBefore(s.e); continue; }
      if (isEmpty(rest)) { r.setStartAfter(s.e); continue; }
      const inner = cut(s.e, r.startContainer, r.startOffset);
      inner.style.fontSize = size; r.setStartBefore(inner); split++;
    }
    for (const s of after) {
      const tail = r.cloneRange(); tail.setStart(r.endContainer, r.endOffset); tail.setEndAfter(s.e);
      const part = r.cloneRange(); part.setStartBefore(s.e);
      if (isEmpty(tail)) { r.setEndAfter(s.e); continue; }
      if (isEmpty(part)) { r.setEndBefore(s.e); continue; }
      cut(s.e, r.endContainer, r.endOffset);
      s.e.style.fontSize = size; r.setEndAfter(s.e); split++;
    }
    return split;
  }
  function sizeWholeElements(r, size, sized) {
    for (const s of walk(r)) {
      if (!s.entered || !s.exited || NO_TEXT.has(s.e.tagName)) continue;
      s.e.style.fontSize = size; sized.add(s.e);
    }
  }
  function insideSized(n, root, sized) {
    for (let p = n.parentNode; p && p !== root.parentNode; p = p.parentNode)
      if (sized.has(p)) return true;
    return false;
  }
  // Bare text in the range, outside every element that took the size, is
  // wrapped run by run in a new span: a run is the text between two tags.
  // Runs of blanks only (between blocks, say) are left as they are.
  function wrapTextRuns(r, size, sized) {
    const root = elementOf(r.commonAncestorContainer), d = root.ownerDocument;
    const tw = d.createTreeWalker(root, NodeFilter.SHOW_TEXT), texts = [];
    for (let t = tw.nextNode(); t; t = tw.nextNode())
      if (r.intersectsNode(t) && !NO_TEXT.has(t.parentNode.tagName) && !insideSized(t, root, sized)) texts.push(t);
    const runs = [];
    for (let t of texts) {
      if (t === r.endContainer && r.endOffset < t.length) t.splitText(r.endOffset);
      if (t === r.startContainer && r.startOffset > 0) { t = t.splitText(r.startOffset); r.setStart(t, 0); }
      const run = runs[runs.length - 1];
      if (run && run[run.length - 1].nextSibling === t) run.push(t); else runs.push([t]);
    }
    const spans = [];
    for (const run of runs) {
      if (!/\S/.test(run.map(t => t.data).join(''))) continue;
      const span = d.createElement('span');
      span.style.fontSize = size;
      run[0].parentNode.insertBefore(span, run[0]);
      for (const t of run) span.appendChild(t);
      spans.push(span);
    }
    // Text moved into a span takes the range's ends out of it: the range
    // is made to hold the spans again, so the selection stays on the text
    // the user sized (and a second step sizes it again).
    if (spans.length === 1 && r.collapsed) r.selectNodeContents(spans[0]);
    else if (spans.length) {
      if (r.collapsed || !r.intersectsNode(spans[0])) r.setStartBefore(spans[0]);
      if (r.collapsed || !r.intersectsNode(spans[spans.length - 1])) r.setEndAfter(spans[spans.length - 1]);
    }
    return spans.length;
  }
  function cellOf(node) { const e = elementOf(node); return e ? e.closest('td,th') : null; }
  function crossesSeal(r, w) {
    for (const s of w.__keldaSeals || [])
      if (s.compareBoundaryPoints(Range.START_TO_END, r) > 0 && s.compareBoundaryPoints(Range.END_TO_START, r) < 0) return true;
    return false;
  }

  K.style = {
    atSelection(path) { return readStyle(selectionElement(K.docAt(path))); },
    atPoint(path, x, y) { return readStyle(K.docAt(path).elementFromPoint(x, y)); },
    // The size change over the selection, in one call. Refused: 'cells'
    // for a selection from one table cell into another, 'script' for one
    // that reaches into what the server's script wrote.
    fontSize(path, size) {
      const d = K.docAt(path), w = winOf(d), s = w.getSelection();
      if (!s || s.rangeCount === 0 || K.controlOf(s)) return { refused: '', changed: 0 };
      const r = s.getRangeAt(0).cloneRange();
      if (r.toString() === '') return { refused: '', changed: 0 };
      if (cellOf(r.startContainer) !== cellOf(r.endContainer)) return { refused: 'cells', changed: 0 };
      if (crossesSeal(r, w)) return { refused: 'script', changed: 0 };
      const split = splitCutElements(r, size), sized = new Set();
      sizeWholeElements(r, size, sized);
      const wrapped = wrapTextRuns(r, size, sized);
      s.removeAllRanges(); s.addRange(r);
      return { refused: '', changed: split + sized.size + wrapped, split: split, sized: sized.size, wrapped: wrapped };
    },
    // The kind of formatting under the pointer, for the style pane; the
    // selectors are those of the page's rule table. The last test that
    // hits decides.
    kindAt(path, x, y, selectors) {
      const d = K.docAt(path), e = d.elementFromPoint(x, y);
      if (!e) return { kind: 0, selector: '', heading: 0, diffs: [] };
      const tag = e.tagName.toUpperCase(), has = sel => selectors.indexOf(sel) >= 0;
      let kind = 0, selector = '', heading = 0;
      if (e.style.cssText) kind = 3;
      if (/^H[1-7]$/.test(tag)) { kind = 2; heading = parseInt(tag.slice(1), 10); }
      if (e.id && has('#' + e.id)) { kind = 5; selector = '#' + e.id; }
      else if (e.className && has('.' + e.className)) { kind = 5; selector = '.' + e.className; }
      if (kind === 0 && tag === 'FONT' && e.face) kind = 1;
      for (const sel of selectors) {
        const parts = sel.split(' ');
        if (parts.length !== 2 || parts[1].toUpperCase() !== tag) continue;
        for (let p = e.parentElement; p; p = p.parentElement)
          if (p.tagName.toUpperCase() === parts[0].toUpperCase()) { kind = 4; selector = sel; break; }
      }
      for (const sel of selectors) if (sel.toUpperCase() === tag) { kind = 6; selector = sel; }
      return { kind: kind, selector: selector, heading: heading, diffs: kind === 5 ? ruleValues(e) : [] };
    }
  };

  // What a class or id rule does to an element: the element against a bare
  // copy of it made for a moment at the top of the body.
  const MEASURED = ['backgroundColor', 'direction', 'fontFamily', 'fontSize', 'fontWeight', 'fontStyle',
                    'textDecorationLine', 'whiteSpace', 'verticalAlign', 'color'];
  function ruleValues(e) {
    const d = e.ownerDocument, w = winOf(d), scratch = d.createElement(e.tagName);
    scratch.innerHTML = e.innerHTML;
    d.body.insertAdjacentElement('afterbegin', scratch);
    const mine = w.getComputedStyle(e), bare = w.getComputedStyle(scratch), diffs = [];
    for (const name of MEASURED)
      if (mine[name] !== bare[name]) diffs.push({ name: name, value: mine[name] });
    d.body.removeChild(scratch);
    return diffs;
  }

  // A paste the editor makes itself, at the selection. A fragment without
  // script goes through the engine's own insertion, which the user can
  // undo. One with script or event attributes would lose them there, so it
  // is parsed inert (a template runs nothing and loads nothing) and put in
  // as it is; the loads of its pictures and frames are kept from reaching
  // their handlers while the page is edited.
  const pasted = new WeakSet();
  function quietLoads(w) {
    if (w.__keldaQuietLoads) return;
    w.__keldaQuietLoads = true;
    for (const type of ['load', 'error'])
      w.addEventListener(type, function (ev) { if (pasted.has(ev.target)) ev.stopImmediatePropagation(); }, true);
  }
  // The marks of a script block go in only as they are, never through
  // the engine's insertion, which drops comments.
  const RISKY = /<script\b|<iframe\b|<object\b|<embed\b|\son[a-z]+\s*=|<!--keldaspIN#/i;
  K.clip = {
    paste(path, html, asText) {
      const d = K.docAt(path), w = winOf(d), s = w.getSelection();
      if (!s || s.rangeCount === 0) return 'none';
      if (asText) return d.execCommand('insertText', false, html) ? 'text' : 'refused';
      if (!RISKY.test(html) && d.execCommand('insertHTML', false, html)) return 'engine';
      quietLoads(w);
      const t = d.createElement('template');
      t.innerHTML = html;
      const nodes = Array.prototype.slice.call(t.content.childNodes);
      for (const n of t.content.querySelectorAll('*')) pasted.add(n);
      const r = s.getRangeAt(0);
      r.deleteContents();
      const frag = d.createDocumentFragment();
      for (const n of nodes) frag.appendChild(d.adoptNode(n));
      r.insertNode(frag);
      if (nodes.length) { r.setStartAfter(nodes[nodes.length - 1]); r.collapse(true); }
      s.removeAllRanges(); s.addRange(r);
      return 'inert';
    }
  };
})();
