// Page runtime of the editor, third part: the keys whose engine defaults a
// page in design mode must not get, and what the style pane asks of the
// block around the caret. It acts only in a document in design mode; while
// browsing every key is the engine's.
(function () {
  'use strict';
  const K = window.__kelda;
  if (!K || K.events) return;

  function winOf(d) { return d.defaultView || window; }
  function elementOf(n) { return n && n.nodeType === 1 ? n : (n ? n.parentElement : null); }
  function editable(e) { return !!e && !!e.isContentEditable && !e.closest('[contenteditable="false" i]'); }
  // "None", or "Text" with nothing selected: a bare caret.
  function bareCaret(s) { return !!s && s.rangeCount === 1 && s.isCollapsed; }
  function pad(n) { return ('0' + n).slice(-2); }
  function timeId() { const t = new Date(); return pad(t.getMinutes()) + pad(t.getSeconds()); }

  // Where the pointer was last in each document, for a layer made by key.
  const pointer = new WeakMap();
  document.addEventListener('mousemove', function (ev) {
    pointer.set(document, { x: ev.pageX, y: ev.pageY });
  }, true);

  // The caret goes right behind the node.
  function caretBehind(s, node) {
    const r = node.ownerDocument.createRange();
    r.setStartAfter(node); r.collapse(true);
    s.removeAllRanges(); s.addRange(r);
  }

  // A positioned DIV at the pointer: Ctrl+D, hidden with Shift too. It goes
  // in at the caret as it is: the engine's own insertion would take a DIV
  // inside a paragraph apart.
  function insertLayer(d, s, hidden) {
    const at = pointer.get(d) || { x: 0, y: 0 }, layer = d.createElement('div');
    layer.id = timeId();
    layer.setAttribute('style', 'position: absolute; top: ' + at.y + 'px; left: ' + at.x + 'px; visibility: ' +
                       (hidden ? 'hidden' : 'visible'));
    layer.textContent = hidden ? 'DIV Tag - hidden' : 'DIV Tag';
    s.getRangeAt(0).insertNode(layer);
    caretBehind(s, layer);
  }

  // The engine gives a block it splits the id of the first part as well:
  // the new part must not stand under the same name.
  function dropCopiedId(d, s, before) {
    const now = elementOf(s.anchorNode), block = now && now.closest(before.tagName);
    if (block && block !== before && before.id && block.id === before.id) block.removeAttribute('id');
  }

  // Enter makes a line break, not a new paragraph; in a list item it makes
  // the next item of the same list. Shift+Enter makes a paragraph, and
  // Ctrl+Enter an empty span, except in a list item, where the engine's
  // own way stands.
  function lineKey(ev, d, s) {
    const e = elementOf(s.anchorNode);
    if (!editable(e)) return false;
    const item = e.closest('li');
    if (ev.ctrlKey) {
      if (item) return false;
      const span = d.createElement('span');
      s.getRangeAt(0).insertNode(span);
      caretBehind(s, span);
      return true;
    }
    if (ev.shiftKey) {
      if (item) return false;
      const block = e.closest('p,div,h1,h2,h3,h4,h5,h6,pre,td,li') || e;
      d.execCommand('defaultParagraphSeparator', false, 'p');
      const done = d.execCommand('insertParagraph');
      dropCopiedId(d, s, block);
      return done;
    }
    if (!item) return d.execCommand('insertLineBreak');
    const done = d.execCommand('insertParagraph');
    dropCopiedId(d, s, item);
    return done;
  }

  // Backspace and Delete beside the output of server script would take a
  // character of it: the character the key would take is found by moving
  // the selection's end one character, and a key that reaches into the
  // output does nothing. So does one whose selection reaches into it.
  function reachesScript(d, s, forward) {
    const seals = winOf(d).__keldaSeals;
    if (!seals || !seals.length || !s || s.rangeCount === 0) return false;
    let t = s.getRangeAt(0).cloneRange();
    if (t.collapsed) {
      const keep = t.cloneRange();
      s.modify('extend', forward ? 'forward' : 'backward', 'character');
      t = s.getRangeAt(0).cloneRange();
      s.removeAllRanges(); s.addRange(keep);
    }
    return seals.some(seal => seal.compareBoundaryPoints(Range.START_TO_END, t) > 0 &&
                              seal.compareBoundaryPoints(Range.END_TO_START, t) < 0);
  }

  // Ctrl with E, F, H, I, R or F5, and F5, F6, F7 and F11 alone, are the
  // editor's; the engine must not search, print or reload on them.
  const CTRL_KEYS = [69, 70, 72, 73, 82, 116], PLAIN_KEYS = [116, 117, 118, 122];
  function onKeyDown(ev) {
    const d = (ev.target && ev.target.ownerDocument) || document;
    if (d.designMode !== 'on' || ev.altKey) return;
    const s = winOf(d).getSelection();
    let handled = false;
    if (ev.ctrlKey && ev.keyCode === 68) {
      if (bareCaret(s)) insertLayer(d, s, ev.shiftKey);
      handled = true;
    } else if (ev.ctrlKey ? CTRL_KEYS.indexOf(ev.keyCode) >= 0 : PLAIN_KEYS.indexOf(ev.keyCode) >= 0) {
      handled = true;
    } else if ((ev.keyCode === 8 || ev.keyCode === 46) && !ev.ctrlKey) {
      handled = reachesScript(d, s, ev.keyCode === 46);
    } else if (ev.keyCode === 13 && !ev.isComposing && bareCaret(s)) {
      handled = lineKey(ev, d, s);
    }
    if (handled) ev.preventDefault();
  }
  window.addEventListener('keydown', onKeyDown, true);

  // A script block is one object: a press of a mouse button on it picks
  // it whole, marks included, and the caret never goes into it. Copied,
  // it goes to the clipboard as its start mark, which a paste in this
  // program turns into a block of its own.
  function blockAt(ev) {
    const d = (ev.target && ev.target.ownerDocument) || document;
    const e = ev.target && ev.target.nodeType === 1 ? ev.target : (ev.target ? ev.target.parentElement : null);
    const owner = d.designMode === 'on' && e ? e.closest('[data-keldasp]') : null;
    const marks = owner && winOf(d).__keldaBlocks ? winOf(d).__keldaBlocks.get(owner.getAttribute('data-keldasp')) : null;
    return marks ? { d: d, id: owner.getAttribute('data-keldasp'), open: marks[0], close: marks[1] } : null;
  }
  function pickBlock(ev) {
    const b = blockAt(ev);
    if (!b) return;
    // The engine's own press would put a caret there; the page still
    // takes the keys, for Ctrl+C.
    ev.preventDefault();
    winOf(b.d).focus();
    const r = b.d.createRange(), s = winOf(b.d).getSelection();
    r.setStartBefore(b.open); r.setEndAfter(b.close);
    s.removeAllRanges(); s.addRange(r);
  }
  window.addEventListener('mousedown', pickBlock, true);
  window.addEventListener('selectstart', function (ev) { if (blockAt(ev)) ev.preventDefault(); }, true);
  window.addEventListener('dragstart', function (ev) { if (blockAt(ev)) ev.preventDefault(); }, true);
  function pickedBlock(d) {
    const s = winOf(d).getSelection(), blocks = winOf(d).__keldaBlocks;
    if (!s || s.rangeCount !== 1 || !blocks) return null;
    const r = s.getRangeAt(0);
    for (const [id, marks] of blocks) {
      const whole = d.createRange();
      whole.setStartBefore(marks[0]); whole.setEndAfter(marks[1]);
      if (r.compareBoundaryPoints(Range.START_TO_START, whole) === 0 && r.compareBoundaryPoints(Range.END_TO_END, whole) === 0)
        return id;
    }
    return null;
  }
  // The selection grown to hold whole every block it reaches into; null
  // when it reaches none.
  function wholeBlocks(d, sel) {
    const r = sel.cloneRange(), blocks = winOf(d).__keldaBlocks;
    let touched = false;
    for (const [, marks] of blocks || []) {
      const whole = d.createRange();
      whole.setStartBefore(marks[0]); whole.setEndAfter(marks[1]);
      if (whole.compareBoundaryPoints(Range.END_TO_START, r) >= 0 || whole.compareBoundaryPoints(Range.START_TO_END, r) <= 0)
        continue;
      touched = true;
      if (whole.compareBoundaryPoints(Range.START_TO_START, r) < 0) r.setStartBefore(marks[0]);
      if (whole.compareBoundaryPoints(Range.END_TO_END, r) > 0) r.setEndAfter(marks[1]);
    }
    return touched ? r : null;
  }
  // A stretch of the page with blocks in it is copied with their marks,
  // which the engine's own copy leaves out: pasted in this program, each
  // block in it is a block again, never its output frozen as text.
  // A cut is the same copy: the keys can't take a block out of the page.
  function copyBlocks(ev) {
    const d = (ev.target && ev.target.ownerDocument) || document, s = winOf(d).getSelection();
    if (d.designMode !== 'on' || !ev.clipboardData || !s || s.rangeCount !== 1 || s.isCollapsed) return;
    const id = pickedBlock(d);
    if (id) {
      ev.clipboardData.setData('text/plain', 'keldaspIN#' + id);
      ev.preventDefault();
      return;
    }
    const r = wholeBlocks(d, s.getRangeAt(0));
    if (!r) return;
    ev.clipboardData.setData('text/html', K.htmlOf(r));
    ev.clipboardData.setData('text/plain', r.toString());
    ev.preventDefault();
  }
  document.addEventListener('copy', copyBlocks, true);
  document.addEventListener('cut', copyBlocks, true);

  const FORMAT = { P: 1, H1: 2, H2: 3, H3: 4, H4: 5, H5: 6, H6: 7, PRE: 8, OL: 9, UL: 10, DIV: 11 };
  const CLASS_HOLDERS = 'p,span,div,td,table,pre,li,ol,ul,blockquote,form,input,textarea,select,option';
  function caretElement(d) {
    const s = winOf(d).getSelection();
    return s && s.rangeCount ? elementOf(s.getRangeAt(0).startContainer) : null;
  }

  K.events = {
    // The block format (its place in the pane's list, 0 for none) and the
    // class of the block that holds the caret.
    block(path) {
      const d = K.docAt(path), e = caretElement(d);
      let format = 0;
      for (let p = e; p && p !== d.body; p = p.parentElement) {
        const tag = p.tagName.toUpperCase();
        if (tag === 'LI') continue;
        if (FORMAT[tag]) { format = FORMAT[tag]; break; }
      }
      const holder = e ? e.closest(CLASS_HOLDERS) : null;
      return { format: format, className: holder ? holder.className : '' };
    },
    // Gives the block around the caret the class ("" takes it away).
    setBlockClass(path, name) {
      const d = K.docAt(path), e = caretElement(d), holder = e ? e.closest(CLASS_HOLDERS) : null;
      if (!holder || !editable(holder)) return false;
      if (name) holder.className = name; else holder.removeAttribute('class');
      return true;
    },
    // A copy of the script's output between the two marks of the block,
    // marks included, put in at the caret. The copy stands for the same
    // script: the save writes the block's source there as well.
    pasteRegion(path, marker) {
      const d = K.docAt(path), s = winOf(d).getSelection();
      const end = marker.replace('IN#', 'OUT#');
      const walker = d.createTreeWalker(d, NodeFilter.SHOW_COMMENT);
      let open = null, close = null;
      for (let c = walker.nextNode(); c; c = walker.nextNode()) {
        if (!open && c.data === marker) open = c;
        else if (open && c.data === end) { close = c; break; }
      }
      if (!open || !close || !s || s.rangeCount === 0) return 0;
      const source = d.createRange();
      source.setStartBefore(open); source.setEndAfter(close);
      const copy = source.cloneContents(), last = copy.lastChild;
      const r = s.getRangeAt(0);
      r.deleteContents();
      r.insertNode(copy);
      caretBehind(s, last);
      return 1;
    },
    // A block whose marks stand in the page a second time is a pasted copy:
    // from the second on, each pair of marks takes the next free number,
    // from `next` on in steps of 2. Gives the pairs [old, new].
    renumberCopies(path, next) {
      const d = K.docAt(path), seen = new Set(), done = [];
      const walker = d.createTreeWalker(d, NodeFilter.SHOW_COMMENT);
      for (let c = walker.nextNode(); c; c = walker.nextNode()) {
        const m = /^keldaspIN#(\d{5})$/.exec(c.data);
        if (!m) continue;
        if (!seen.has(m[1])) { seen.add(m[1]); continue; }
        const end = 'keldaspOUT#' + m[1], twin = d.createTreeWalker(d, NodeFilter.SHOW_COMMENT);
        twin.currentNode = c;
        let close = twin.nextNode();
        while (close && close.data !== end) close = twin.nextNode();
        if (!close) continue;
        const id = ('0000' + next).slice(-5);
        c.data = 'keldaspIN#' + id; close.data = 'keldaspOUT#' + id;
        done.push([m[1], id]);
        next += 2;
      }
      return done;
    }
  };
})();
